// Comparing device modes so that every difference is told by field.
#pragma once

#include <string>
#include <vector>

#include "tools/velmora/devmode_values.h"

namespace velmora {

// The value of an element of a field, or bytes that make up no value: those that no field names, those of fields that
// are areas of bytes, those behind the NUL of a text that is the same in both device modes.
struct DevModeDifference {
    DevModeElement element;  // field null: bytes that no field names
    bool isValue;            // the element's value; false: the bytes alone
    size_t offset;           // of the value or the bytes, from the start of the part
    size_t size;             // bytes

    std::string Name() const;  // "dmScale", "colorAdjust[2]", "private[2668]"
};

// In the order of their offsets, the public part first. Differing bytes in a row are one difference; bytes that two
// fields share are told for both.
std::vector<DevModeDifference> CompareDevModes(const VelmoraDevMode& before, const VelmoraDevMode& after);

// One side of a difference. The value of bytes is their hexadecimal text.
ElementValue ReadSide(const DevModeDifference& difference, const VelmoraDevMode& side, const NumberNames& names = {});

// "dmScale: 100 -> 50", a line for each difference, without line ends.
std::vector<std::string> DifferenceLines(const VelmoraDevMode& before, const VelmoraDevMode& after);

}  // namespace velmora
