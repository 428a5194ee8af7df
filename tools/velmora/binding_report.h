// What a printer's print-ticket provider says when it is bound.
#pragma once

#include <vector>

#include "tools/velmora/table.h"
#include "tools/velmora/ticket_provider.h"

namespace velmora {

// The answers by the calls that gave them, and the namespaces.
std::vector<Table> ReportBinding(const ProviderBinding& binding);

// The same as members.
Json ToJson(const ProviderBinding& binding);

}  // namespace velmora
