// Forms that every machine has.
#pragma once

#include <vector>

#include "platform/spooler/state.h"

namespace host {

std::vector<Form> BuiltInForms();

}  // namespace host
