// The settings file that a user has for a printer.
#pragma once

#include <string>
#include <vector>

#include "tools/velmora/table.h"

namespace velmora {

struct SettingsFile {
    std::string path;  // on the machine; empty: the printer has none
    bool isWritten;    // the file exists: something was stored
};

// Throws a CommandError for an unknown printer.
SettingsFile FindSettingsFile(const std::string& printerName);

// What a written file holds: single values, then custom sizes, watermarks and named colour presets. Custom sizes and
// watermarks are as the driver reads them; a list that it reads as empty is shown by its keys.
std::vector<Table> ReportSettings(const SettingsFile& file);

// The file's text with "\n" as line ends, in UTF-8. Throws a CommandError where it can't be read.
std::string ReadSettingsText(const SettingsFile& file);

}  // namespace velmora
