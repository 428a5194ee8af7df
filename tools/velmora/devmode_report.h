// A printer's default device mode, field by field.
#pragma once

#include <string>
#include <vector>

#include "tools/velmora/table.h"

namespace velmora {

// The device mode that the printer's driver gives for "no device mode" (its export DrvConvertDevMode, as an application
// reaches it), as a table of its public and one of its private fields. Throws a CommandError for an unknown printer and
// where the driver gives none.
std::vector<Table> ReportDefaultDevMode(const std::string& printerName);

}  // namespace velmora
