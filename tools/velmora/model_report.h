// A printer's model as the driver reads it: its plain values and every table, names resolved.
#pragma once

#include <string>
#include <vector>

#include "tools/velmora/table.h"

namespace velmora {

// The first table holds the plain values. Throws a CommandError for an unknown printer and for one without a model.
std::vector<Table> ReportModel(const std::string& printerName);

}  // namespace velmora
