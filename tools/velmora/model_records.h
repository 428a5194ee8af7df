// A model's tables of what can be chosen, and of what limits the choice.
#pragma once

#include <string>
#include <vector>

#include "driver/devdesc/device_model.h"
#include "tools/velmora/printer_model.h"
#include "tools/velmora/table.h"

namespace velmora {

// Papers, trays, extra keywords, media, resolutions, memory, margins, constraints, features and their options.
std::vector<Table> ReportModelRecords(const PrinterModel& model);

// A list of margins, papers named by `model`. Null: no rows.
Table ReportMarginRecords(std::string title, std::string key, const PrinterModel& model, const MarginRecord* records);

}  // namespace velmora
