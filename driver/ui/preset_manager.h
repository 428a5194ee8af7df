// The dialog of the Color page that keeps the user's named colour adjustments.
#pragma once

#include <windows.h>

#include "driver/ui/sheet_context.h"

namespace velmora {

// Shows the dialog until the user closes it or has saved a preset. Presets change in the process's table and in the
// current settings file; one that is saved becomes the device mode's and marks the Color page as changed.
void RunPresetManager(HWND colorPage, SheetContext* context);

}  // namespace velmora
