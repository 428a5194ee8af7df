// The printer's own device mode.
#pragma once

#include <windows.h>
#include <winspool.h>

#include "driver/base/heap.h"
#include "driver/devmode/private_devmode.h"

namespace velmora {

// Fills `devMode` with the printer's device mode, validated and repaired, or with the built default where it has none
// that is valid. Returns 1 where the printer has a device mode, 0 where it has none. A printer that can't be read: 0,
// and `devMode` unchanged.
int GetPrinterDevMode(HANDLE printer, VelmoraDevMode* devMode);

// The device mode in the printer's information, or null where it has none that is as long as this driver's. It isn't
// validated.
VelmoraDevMode* FindStoredDevMode(const HeapOwner<PRINTER_INFO_2W>& info);

}  // namespace velmora
