// What a printer's description file holds beside the device block: where its sections lie, and the records that they
// are made of.
#pragma once

#include <vector>

#include "tools/velmora/printer_model.h"
#include "tools/velmora/table.h"

namespace velmora {

// Sections, languages, halftone patterns, fonts and images. Throws a CommandError where the file can't be read.
std::vector<Table> ReportDescription(const PrinterModel& model);

}  // namespace velmora
