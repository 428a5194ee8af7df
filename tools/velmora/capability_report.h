// What a printer's driver answers to applications that ask what the printer can do.
#pragma once

#include <string>
#include <vector>

#include "tools/velmora/table.h"

namespace velmora {

// The answer to every DC_ index (wingdi.h) by the driver's export DrvDeviceCapabilities, asked for the number of
// entries first as applications do, and then papers, paper sources and media as the lists together describe them.
// Throws a CommandError for an unknown printer and where the driver can't be asked.
std::vector<Table> ReportCapabilities(const std::string& printerName);

}  // namespace velmora
