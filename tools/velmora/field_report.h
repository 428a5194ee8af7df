// The table of the device mode's fields, as a report and as the page docs/device-mode.md.
#pragma once

#include <string>
#include <vector>

#include "tools/velmora/table.h"

namespace velmora {

// The public and the private fields.
std::vector<Table> ReportFields();

// The whole page, Markdown.
std::string MakeFieldPage();

}  // namespace velmora
