// The dialog for the Paper page's custom size.
#pragma once

#include <windows.h>

#include "driver/ui/sheet_context.h"

namespace velmora {

// Runs the dialog over the page. True where the user chose a size: it is in context->paper then, and is the selected
// paper there.
bool RunCustomSizeDialog(HWND page, SheetContext* context);

}  // namespace velmora
