// The device mode that a printer has before anyone has set anything.
#pragma once

#include <windows.h>

#include "driver/devmode/private_devmode.h"

namespace velmora {

// Fills `devMode` for an open printer. A printer without a readable description file gets what doesn't depend on its
// model. Reports nothing.
void BuildDefaultDevMode(HANDLE printer, const WCHAR* printerName, VelmoraDevMode* devMode);

}  // namespace velmora
