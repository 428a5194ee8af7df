// Setting fields of a device mode by name, to anything that they can hold: what the driver makes of values that it
// doesn't accept is to be tried.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "driver/devmode/private_devmode.h"

namespace velmora {

// Carries out "FIELD=VALUE":
//   dmScale=50, psContrast=-0x10           numbers
//   dmDuplex=long edge                     names of values, as the table of fields has them
//   colorAdjust[2]=5, blobSlices.start[3]=7  elements
//   watermarkText=Draft                    texts, up to the field's whole width; the rest of the field becomes 0
//   exceptionArea=01 00 06                 areas of bytes, in hexadecimal, from their start
//   private[2668]=41, public[66]=0x0102    bytes of a part from an offset on, in hexadecimal
// Appends what the one who gave it may want to know, such as a value that the driver doesn't accept, to `notes`, a line
// each. Throws a UsageError, and changes nothing, for an unknown field and for a value that the field can't hold.
void Assign(std::string_view assignment, VelmoraDevMode* devMode, std::vector<std::string>* notes);

}  // namespace velmora
