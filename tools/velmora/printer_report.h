// The machine's printers, and the data of one.
#pragma once

#include <string>

#include "tools/velmora/table.h"

namespace velmora {

Table ReportPrinters();

// Name, type and value of everything in the printer's data. Throws a CommandError for an unknown printer.
Table ReportPrinterData(const std::string& printerName);

}  // namespace velmora
