// A printer's model as the driver reads it: its plain values and every table, names resolved.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "driver/devdesc/device_model.h"
#include "tools/velmora/printer_model.h"
#include "tools/velmora/table.h"

namespace velmora {

// The first table holds the plain values. Throws a CommandError for an unknown printer and for one without a model.
std::vector<Table> ReportModel(const std::string& printerName);

// A list of margins, papers named by `model`. Null: no rows.
Table ReportMarginRecords(std::string title, std::string key, const PrinterModel& model, const MarginRecord* records);

// The options whose bits are set in DeviceInfo's installedOptions and optionFlags, by name; "bit 5" for one without.
std::vector<std::string> TrayOptionNames(uint32_t mask);
std::vector<std::string> DeviceOptionNames(uint32_t mask);

}  // namespace velmora
