// CIELAB to the screen's RGB in the four renderings that the colour adjustment offers as base colours.
#pragma once

#include <cstddef>
#include <cstdint>

namespace velmora {

inline constexpr size_t kLabSteps = 17;  // nodes along each axis
inline constexpr size_t kBaseColors = 4;

// Where the nodes lie; a runs from green to red, b from blue to yellow.
inline constexpr int16_t kLightnessNodes[kLabSteps] = {0,  10, 16, 22, 28, 34, 40, 46, 52,
                                                       58, 64, 70, 76, 82, 88, 94, 100};
inline constexpr int16_t kANodes[kLabSteps] = {-120, -90, -75, -60, -45, -30, -20, -10, 0,
                                               10,   20,  30,  45,  60,  70,  80,  90};
inline constexpr int16_t kBNodes[kLabSteps] = {-120, -80, -70, -60, -50, -35, -20, -10, 0,
                                               10,   20,  35,  50,  60,  70,  85,  100};

// The nodes' red, green and blue, by lightness, a and b: 14739 bytes. The numbers give how far apart the nodes of an
// axis lie in it.
inline constexpr size_t kBStride = 3;
inline constexpr size_t kAStride = kBStride * kLabSteps;
inline constexpr size_t kLightnessStride = kAStride * kLabSteps;
using LabTable = uint8_t[kLightnessStride * kLabSteps];

// Of base colours 1 to 4. tools/lab_tables writes them.
extern const LabTable kLabTables[kBaseColors];

}  // namespace velmora
