// What the numbers of a device mode stand for.
#pragma once

#include <cstdint>
#include <string>

#include "tools/velmora/devmode_values.h"
#include "tools/velmora/printer_model.h"

namespace velmora {

// Versions, bits and colours by themselves; papers, trays, media and other records by `model`, in the user's language.
// `model` must outlive the result; null: its records go without names.
NumberNames NamesOfNumbers(const PrinterModel* model);

// A version of the high byte and the low one, "4.1".
std::string NameVersion(int64_t version);

// dmFields as a number and the names of its bits, "0x3 DM_ORIENTATION DM_PAPERSIZE".
std::string NameFieldBits(int64_t fields);

}  // namespace velmora
