// The library of a printer's driver, called by its exports as the spooler and applications call it.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "driver/base/handles.h"
#include "driver/devmode/private_devmode.h"
#include "tools/velmora/spooler_client.h"

namespace velmora {

// The library with the exports of the printer's driver. Throws a CommandError where it can't be loaded.
OwnedModule LoadDriverOf(HANDLE printer, const std::string& printerName);

// An export of a loaded driver. Throws a CommandError where it has none of this name.
template <class Function>
Function DriverExport(const OwnedModule& driver, const char* name) {
    const FARPROC address = GetProcAddress(driver.Get(), name);
    if (!address) {
        ThrowRefused(std::string("GetProcAddress of ") + name);
    }
    return reinterpret_cast<Function>(reinterpret_cast<void*>(address));
}

// What is open on the machine and isn't in `openBefore`, as host::StillOpen gave it: a line each.
std::vector<std::string> OpenedSince(std::vector<std::string> openBefore);

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

// What a job hook gave for the job's stream.
struct JobBlock {
    const char* hook;         // the export's name
    unsigned sheet;           // 1-based; 0: the block is no sheet's
    DWORD toldBytes;          // needed, as told to the question for the size
    std::vector<BYTE> bytes;  // as many as the hook then said; empty: no block
};

struct PrintedJob {
    std::vector<JobBlock> blocks;       // start, sheets, end
    std::vector<std::string> leftOpen;  // by the hooks, a line each
};

// Prints a job of `sheets` sheets as a rendering side does: calls GuiStartJob, GuiStartSheet for each sheet and
// GuiEndJob of the driver of an open printer, each without a buffer first and then with what it told. `devMode` may be
// repaired in place; null: the printer's own. Throws a CommandError for a driver that can't be called, and where a hook
// fails.
PrintedJob PrintByDriver(HANDLE printer, const std::string& printerName, const std::string& jobName, unsigned sheets,
                         VelmoraDevMode* devMode);

}  // namespace velmora
