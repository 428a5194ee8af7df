// The dialog for the details of the Paper page's layout: order of pages, binding edge, shifts, borders.
#pragma once

#include <windows.h>

#include "driver/ui/sheet_context.h"

namespace velmora {

// Runs the dialog over the page. True where the user closed it by OK: what it showed is in context->paper then, and the
// page is marked as changed.
bool RunLayoutDetailsDialog(HWND page, SheetContext* context);

}  // namespace velmora
