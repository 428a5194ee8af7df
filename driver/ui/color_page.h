// The Color page of the document sheet: how colours are printed, and the resolution.
#pragma once

#include <windows.h>

#include "driver/ui/sheet_context.h"

namespace velmora {

INT_PTR CALLBACK ColorPageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

// Does what the page's button for it does: the open page shows the defaults and is marked as changed. The device mode
// takes the preset's name and the method of colour matching at once, the rest at Apply.
void RestoreColorDefaults(HWND page, SheetContext* context);

}  // namespace velmora
