// Borders around the pages of a sheet, which depend on choices of two pages of the sheets.
#pragma once

#include "driver/devmode/private_devmode.h"

namespace velmora {

// Values of uiChoice: the styles of the borders.
inline constexpr uint16_t kPlainBorder = 1;
inline constexpr uint16_t kBorderWithMargin = 3;

// Of layoutMode.
inline constexpr uint16_t kNoBorder = 0;

// Sets layoutMode, marginValue and nupBorderWidth by uiFlagE (whether there are borders) and uiChoice, for the
// resolution at `resolutionIndex` (a value of the field of that name, 0 for the coarsest).
void ApplyBorderRule(PrivateDevMode* devMode, int resolutionIndex);

}  // namespace velmora
