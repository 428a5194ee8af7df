// The Paper page of the document sheet: paper, scaling, source, medium, copies, orientation, both sides, page layout.
#pragma once

#include <windows.h>

#include "driver/ui/sheet_context.h"

namespace velmora {

INT_PTR CALLBACK PaperPageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

// Does what the page's button does: the open page shows the defaults and is marked as changed. The device mode takes
// the sizes at once, the rest at Apply.
void RestorePaperDefaults(HWND page, SheetContext* context);

}  // namespace velmora
