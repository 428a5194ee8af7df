// A small model whose records all have job texts, for the tests of what is sent with jobs.
#pragma once

#include <cstdint>

#include "tests/driver/description_builder.h"

namespace driver_test {

// SmallModel with job texts: its resolutions "R0\r\n" and "R1\r\n" (the third has none), its media "M0\r\n" and
// "M1\r\n"; the extra keyword's key "EXTRA" and values "E1" (text reference kExtraValue) and "E2" behind it; four
// features, each with two options that write a line and a third that writes none:
//   "FA" A0 A1    "FB" B0 B1, needs a stapler    "FC" C0 C1, of the mask 8    "FD" D0 D1
// and colour features: three of text, four of images, one of graphics, two general; value v of feature f in a group is
// "t" (i, g, a), f, v: "t01".
DescriptionBuilder JobModel(uint16_t pdlType, uint16_t colorCapability = velmora::kColorNone);

inline constexpr int16_t kExtraValue = 1;

}  // namespace driver_test
