// The printer's own device mode.
#pragma once

#include <windows.h>

#include "driver/devmode/private_devmode.h"

namespace velmora {

// Fills `devMode` with the printer's device mode. Returns 1 where the printer has one, 0 where it has none; in either
// case the built default is what a printer gets whose device mode isn't known to be valid. A printer that can't be
// read: 0, and `devMode` unchanged.
int GetPrinterDevMode(HANDLE printer, VelmoraDevMode* devMode);

}  // namespace velmora
