// The table of print-ticket features, as a report and as the page docs/tickets.md.
#pragma once

#include <string>
#include <vector>

#include "tools/velmora/table.h"

namespace velmora {

// The features that are a row each, and those with code of their own. Throws std::logic_error for a row that there are
// no words for, saying where they go.
std::vector<Table> ReportFeatures();

// The whole page, Markdown.
std::string MakeFeaturePage();

}  // namespace velmora
