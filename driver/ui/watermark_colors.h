// The colours that the Watermark page offers for watermarks: families of sixteen shades, from light to dark.
#pragma once

#include <windows.h>

namespace velmora {

// Families, as the values of their list.
inline constexpr int kGrayFamily = 0;   // behind it red, green, blue, cyan, magenta and yellow
inline constexpr int kWhiteFamily = 7;  // its shades are all white
inline constexpr int kColorFamilies = 8;
inline constexpr int kLastShade = 15;  // of 0 to 15

struct ShadedColor {
    int family;
    int shade;
    bool isLastShade;  // the device mode's shadeMaxFlag

    bool operator==(const ShadedColor&) const = default;
};

// A family's shade, both limited.
ShadedColor ShadeOf(int family, int shade);

// The colour of a family's shade.
COLORREF ColorOf(const ShadedColor& shaded);

// What the page shows of a watermark's colour as it opens: white in the given shade, a colour of no family as the
// darkest grey.
ShadedColor FindOpeningShade(COLORREF color, int whiteShade);

// The same once a watermark is selected: white and a colour of no family in white's last shade, which doesn't count as
// that.
ShadedColor FindSelectedShade(COLORREF color);

}  // namespace velmora
