// Device modes and what differs between them, field by field.
#pragma once

#include <string>
#include <vector>

#include "tools/velmora/devmode_values.h"
#include "tools/velmora/table.h"

namespace velmora {

// Every field with its value and its meaning: a table of the public and one of the private part.
std::vector<Table> ReportDevMode(const VelmoraDevMode& devMode, const NumberNames& names);

// What differs, a row each, below the headings given for the two sides. Its key is "differences".
Table ReportDifferences(const VelmoraDevMode& before, const VelmoraDevMode& after, const NumberNames& names,
                        const std::string& beforeHeading, const std::string& afterHeading);

}  // namespace velmora
