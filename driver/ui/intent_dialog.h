// The dialog of the Color page that says how the system matches colours.
#pragma once

#include <windows.h>

#include "driver/ui/sheet_context.h"

namespace velmora {

// Shows the dialog until the user closes it. What is stored in the device mode marks the Color page as changed.
void RunIntentDialog(HWND colorPage, SheetContext* context);

}  // namespace velmora
