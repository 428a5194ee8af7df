#include "tools/xpic/pattern_generator.h"

#include <algorithm>
#include <numeric>

namespace velmora {
namespace {

constexpr size_t kGreyLevels = 256;

constexpr Word kShapes[] = {
    {"dispersed", static_cast<int64_t>(PatternShape::kDispersed)},
    {"clustered", static_cast<int64_t>(PatternShape::kClustered)},
};

// The place of a pixel in the order in which an ordered dither of side 2^n turns pixels black.
size_t DispersedRank(size_t x, size_t y, size_t size) {
    size_t rank = 0;
    for (size_t bit = 1; bit < size; bit *= 2) {
        const bool inX = (x & bit) != 0;
        const bool inY = (y & bit) != 0;
        rank = rank * 4 + (inX != inY ? 2 : 0) + (inY ? 1 : 0);
    }
    return rank;
}

// Twice the distance of a pixel from the cell's middle, squared.
size_t ClusteredRank(size_t x, size_t y, size_t size) {
    const size_t dx = 2 * x + 1 > size ? 2 * x + 1 - size : size - 2 * x - 1;
    const size_t dy = 2 * y + 1 > size ? 2 * y + 1 - size : size - 2 * y - 1;
    return dx * dx + dy * dy;
}

}  // namespace

Bytes GeneratePatternBlock(PatternShape shape, size_t size) {
    const size_t pixels = size * size;
    std::vector<size_t> order(pixels);
    std::iota(order.begin(), order.end(), size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) {
        const auto rank = shape == PatternShape::kDispersed ? DispersedRank : ClusteredRank;
        return rank(a % size, a / size, size) < rank(b % size, b / size, size);
    });
    Bytes block(kGreyLevels * pixels / 8);
    for (size_t level = 0; level < kGreyLevels; ++level) {
        const size_t black = pixels * (kGreyLevels - 1 - level) / (kGreyLevels - 1);
        for (size_t i = 0; i < black; ++i) {
            block[(level * pixels + order[i]) / 8] |= std::byte{0x80} >> (order[i] % 8);
        }
    }
    return block;
}

constinit const Words kPatternShapeWords = kShapes;

const Word* FindPatternShape(size_t size, const Bytes& block) {
    for (const Word& word : kShapes) {
        if (GeneratePatternBlock(static_cast<PatternShape>(word.value), size) == block) {
            return &word;
        }
    }
    return nullptr;
}

}  // namespace velmora
