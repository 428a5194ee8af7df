// A printer's property sheets, opened by the published calls and used by a list of steps in place of a user.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "driver/devmode/private_devmode.h"
#include "platform/host.h"
#include "tools/velmora/sheet_steps.h"
#include "tools/velmora/table.h"

namespace velmora {

enum class SheetEnd { kCancelled, kApplied, kOk };  // kApplied: cancelled after something had been applied

struct SheetSession {
    bool isDeviceSheet;
    SheetEnd end;
    std::vector<std::string> pictures;  // a line each
    std::vector<Table> controls;        // as the steps asked for them
    VelmoraDevMode devMode;             // as the sheet left it; of the document sheet
    std::vector<std::string> leftOpen;  // by the sheet, a line each
};

// Opens the sheet that the first page of the steps is on, the document sheet where they name none, and does the steps;
// a sheet that is open after them is cancelled, as are dialogs in front of it. `devMode` is what the document sheet
// starts from. Throws a UsageError for a page that there can't be and a CommandError where a step can't be done, which
// is told with its place; nothing is applied after that.
SheetSession RunSheet(host::Machine& machine, HANDLE printer, const std::string& printerName,
                      const std::vector<SheetStep>& steps, const VelmoraDevMode& devMode);

}  // namespace velmora
