// The printer's own device mode.
#pragma once

#include <windows.h>

#include "driver/devmode/private_devmode.h"

namespace velmora {

// Fills `devMode` with the printer's device mode, validated and repaired, or with the built default where it has none
// that is valid. Returns 1 where the printer has a device mode, 0 where it has none. A printer that can't be read: 0,
// and `devMode` unchanged.
int GetPrinterDevMode(HANDLE printer, VelmoraDevMode* devMode);

}  // namespace velmora
