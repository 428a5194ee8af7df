// Reads a description file back into a model: the inverse of what the compiler does.
#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "tools/xpic/finding.h"
#include "tools/xpic/model_source.h"

namespace velmora {

struct DescriptionReading {
    // What the readers of the file get: masks and slices as they stand, texts as bytes in their languages' code pages,
    // patterns in the order of their number in the file, records without names. Absent when the file has no device
    // block to read, or one that describes more records than a block can hold.
    std::optional<ModelSource> model;
    // In the order of the device block's tables. Without errors the model can be said by a source, and the compiler
    // takes that source; with errors the model is what could be read.
    Findings findings;
};

// `file` is a description file's contents, which aren't trusted: any bytes are read in time and memory that grow with
// their number. Throws only what memory or a missing code page of the system brings.
//
// The model's languages are the one that languages without texts of their own are served with, English where it is
// among those, followed by the known languages that have texts of their own. Paths of findings are by the records'
// positions: "$.features[1].options[0]".
DescriptionReading ReadDescription(std::span<const std::byte> file);

}  // namespace velmora
