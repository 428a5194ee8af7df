// The output options page of the document sheet: how pages are finished.
#pragma once

#include <windows.h>

#include "driver/ui/sheet_context.h"

namespace velmora {

INT_PTR CALLBACK OutputPageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

// Does what the page's button for it does: the open page shows the defaults and is marked as changed. The device mode
// takes them at Apply.
void RestoreOutputDefaults(HWND page, SheetContext* context);

}  // namespace velmora
