// The library of a printer's driver, called by its exports as the spooler and applications call it.
#pragma once

#include <windows.h>

#include <string>

#include "driver/devmode/private_devmode.h"

namespace velmora {

struct Conversion {
    bool isDone;  // the export's result
    DWORD lastError;
    LONG neededBytes;
    VelmoraDevMode output;  // all 0 where the driver gave none
};

// DrvConvertDevMode of the driver of an open printer: asked for the size first, then for `input` converted; null: for
// the printer's default device mode. Throws a CommandError for a driver that can't be called, or whose device modes
// have another size.
Conversion ConvertByDriver(HANDLE printer, const std::string& printerName, const VelmoraDevMode* input);

// The printer's default device mode, or a CommandError where the driver gives none.
VelmoraDevMode DefaultByDriver(HANDLE printer, const std::string& printerName);

}  // namespace velmora
