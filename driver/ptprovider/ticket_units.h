// The units of print tickets and of the device mode: micrometres, tenths of a millimetre and the dots of the chosen
// resolution. Conversions truncate.
#pragma once

#include <windows.h>

#include <cstdint>

namespace velmora {

inline constexpr LONG kMicronsPerTenth = 100;  // in a tenth of a millimetre
inline constexpr LONG kMicronsPerInch = 25400;

// Angles are tenths of a degree in device modes and stored watermarks.
inline constexpr LONG kTenthsPerDegree = 10;

// 0 where the device mode's resolution is no resolution.
constexpr LONG DotsToMicrons(int32_t dots, int16_t dotsPerInch) {
    return dotsPerInch > 0 ? static_cast<LONG>(int64_t{dots} * kMicronsPerInch / dotsPerInch) : 0;
}
constexpr int32_t MicronsToDots(LONG microns, int16_t dotsPerInch) {
    return dotsPerInch > 0 ? static_cast<int32_t>(int64_t{microns} * dotsPerInch / kMicronsPerInch) : 0;
}

}  // namespace velmora
