// The machine's printers, and the data of one.
#pragma once

#include <string>
#include <vector>

#include "tools/velmora/spooler_client.h"
#include "tools/velmora/table.h"

namespace velmora {

Table ReportPrinters();

// Name, type and value of everything in the printer's data, and a table for each value that has a structure, as far as
// the printer's model can be read. Throws a CommandError for an unknown printer.
std::vector<Table> ReportPrinterData(const std::string& printerName);

// The values that differ, the installed options field by field. Its key is "printerData".
Table ReportDataDifferences(const std::string& printerName, const std::vector<PrinterValue>& before,
                            const std::vector<PrinterValue>& after);

}  // namespace velmora
