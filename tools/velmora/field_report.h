// The table of the device mode's fields, as a report and as the page docs/device-mode.md.
#pragma once

#include <string>
#include <vector>

#include "driver/devmode/devmode_fields.h"
#include "tools/velmora/table.h"

namespace velmora {

// What the driver accepts in a field: "1 to 2", "0, 2 to 5", with what its row says beyond that; or "any".
std::string ValidValues(const FieldDescriptor& field);

// The public and the private fields.
std::vector<Table> ReportFields();

// The whole page, Markdown.
std::string MakeFieldPage();

}  // namespace velmora
