// The renderings that the tables of driver/ui/lab_tables.h hold, as functions over the whole of CIELAB.
#pragma once

#include <cstddef>
#include <cstdint>

namespace velmora {

// A node of the rendering of base colour `baseColor` (1 to 4) for channel 0 to 2: red, green, blue. Lightness 0 to 100.
uint8_t RenderLab(size_t baseColor, size_t channel, int lightness, int a, int b);

}  // namespace velmora
