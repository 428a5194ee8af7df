// A model's plain values.
#pragma once

#include "tools/velmora/printer_model.h"
#include "tools/velmora/table.h"

namespace velmora {

// Each as it stands there, what that stands for, and what the value means.
Table ReportModelValues(const PrinterModel& model);

}  // namespace velmora
