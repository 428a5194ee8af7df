// The pages of the document sheet and of the device sheet, and how they are given to the common property-sheet host.
#pragma once

#include <windows.h>

#include <compstui.h>

#include "driver/ui/sheet_context.h"

namespace velmora {

// Adds the context's pages through the host and hands it the context: `info`'s UserData, from here on the host's until
// its DESTROY, and Result. Returns what the host is told: 1, or 0 where it refused a page; pages added before stay.
LONG AddSheetPages(SheetContext* context, PROPSHEETUI_INFO* info);

}  // namespace velmora
