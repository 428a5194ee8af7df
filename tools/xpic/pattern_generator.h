// Halftone pattern blocks made by rule instead of drawn.
#pragma once

#include "tools/xpic/model_source.h"

namespace velmora {

enum class PatternShape {
    kDispersed,  // ordered dither: dots spread evenly
    kClustered,  // round dots that grow from the cell's middle
};

// The block of `size` k (8, 16 or 32): for each of 256 grey levels, black (0) first, k rows of k pixels, one bit a
// pixel, the leftmost in the highest bit, 1 for black. 32*k*k bytes.
Bytes GeneratePatternBlock(PatternShape shape, size_t size);

extern const Words kPatternShapeWords;
// The word of the shape whose block of this size it is; null for another block.
const Word* FindPatternShape(size_t size, const Bytes& block);

}  // namespace velmora
