// The blocks that a printer's driver puts around a job and its sheets.
#pragma once

#include <string>

#include "tools/velmora/driver_library.h"
#include "tools/velmora/printer_model.h"
#include "tools/velmora/table.h"

namespace velmora {

// Each block below its hook's name and bytes: printer language as its lines (control characters escaped, a line's CR LF
// as the line's end), an image printer's description as its entries or its record's fields. Blocks of sheets that are
// the same are printed once, and so is one that repeats the block before it.
std::string FormatJob(const PrintedJob& job, const PrinterModel& model);

// An array with all of them.
Json ToJson(const PrintedJob& job, const PrinterModel& model);

}  // namespace velmora
