// The sheet of colour adjustments that the Color page opens: sliders of brightness, saturation, contrast and balances
// with sample pictures on one page, densities of the four toners on the other.
#pragma once

#include <windows.h>

#include "driver/ui/sheet_context.h"

namespace velmora {

// Shows the sheet until the user closes it. OK writes what its pages show into the device mode and marks the Color page
// as changed. Without the adjustment page it has the toners' page alone. Nothing where it can't be shown.
void RunAdjustmentSheet(HWND colorPage, SheetContext* context, bool hasAdjustmentPage);

}  // namespace velmora
