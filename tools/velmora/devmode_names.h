// What the numbers of a device mode stand for.
#pragma once

#include "tools/velmora/devmode_values.h"
#include "tools/velmora/printer_model.h"

namespace velmora {

// Versions, bits and colours by themselves; papers, trays, media and other records by `model`, in the user's language.
// `model` must outlive the result; null: its records go without names.
NumberNames NamesOfNumbers(const PrinterModel* model);

}  // namespace velmora
