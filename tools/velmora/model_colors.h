// A model's colour modes, and the features that they select values of.
#pragma once

#include <vector>

#include "tools/velmora/printer_model.h"
#include "tools/velmora/table.h"

namespace velmora {

std::vector<Table> ReportModelColors(const PrinterModel& model);

}  // namespace velmora
