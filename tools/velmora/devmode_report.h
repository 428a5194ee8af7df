// Device modes and what differs between them, field by field.
#pragma once

#include <string>
#include <vector>

#include "tools/velmora/devmode_values.h"
#include "tools/velmora/table.h"

namespace velmora {

// Every field with its value and its meaning: a table of the public and one of the private part.
std::vector<Table> ReportDevMode(const VelmoraDevMode& devMode, const NumberNames& names);

// The elements of a field one after the other, equal ones in a row once with their number; in JSON "value" and
// "valueName", arrays where there are several.
Cell ElementsCell(const std::vector<ElementValue>& elements);

// What differs, a row each, below the headings given for the two sides. Its key is "differences".
Table ReportDifferences(const VelmoraDevMode& before, const VelmoraDevMode& after, const NumberNames& names,
                        const std::string& beforeHeading, const std::string& afterHeading);

}  // namespace velmora
