// The machine's printers, and the data of one.
#pragma once

#include <string>
#include <vector>

#include "tools/velmora/table.h"

namespace velmora {

Table ReportPrinters();

// Name, type and value of everything in the printer's data, and a table for each value that has a structure, as far as
// the printer's model can be read. Throws a CommandError for an unknown printer.
std::vector<Table> ReportPrinterData(const std::string& printerName);

}  // namespace velmora
