#include "driver/ui/watermark_colors.h"

#include <algorithm>

namespace velmora {
namespace {

constexpr int kLightest = 240;  // level of the first shade
constexpr int kStep = 16;       // levels from one shade to the next
constexpr int kFull = 255;

// Which channels of a family have the shade's level; the others are full.
struct FamilyChannels {
    bool red;
    bool green;
    bool blue;
};
constexpr FamilyChannels kFamilies[kColorFamilies] = {
    {true, true, true},    // grey
    {false, true, true},   // red
    {true, false, true},   // green
    {true, true, false},   // blue
    {true, false, false},  // cyan
    {false, true, false},  // magenta
    {false, false, true},  // yellow
    {false, false, false},
};

// The first shade of the families below `end` that has the colour; false where there is none.
bool FindShade(COLORREF color, int end, ShadedColor* found) {
    for (int family = 0; family < end; ++family) {
        for (int shade = 0; shade <= kLastShade; ++shade) {
            *found = ShadeOf(family, shade);
            if (ColorOf(*found) == color) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace

ShadedColor ShadeOf(int family, int shade) {
    shade = std::clamp(shade, 0, kLastShade);
    return {std::clamp(family, 0, kColorFamilies - 1), shade, shade == kLastShade};
}

COLORREF ColorOf(const ShadedColor& shaded) {
    const FamilyChannels& channels = kFamilies[shaded.family];
    const int level = kLightest - kStep * shaded.shade;
    return RGB(channels.red ? level : kFull, channels.green ? level : kFull, channels.blue ? level : kFull);
}

ShadedColor FindOpeningShade(COLORREF color, int whiteShade) {
    ShadedColor found;
    if (!FindShade(color, kColorFamilies, &found)) {
        return ShadeOf(kGrayFamily, kLastShade);
    }
    return found.family == kWhiteFamily ? ShadeOf(kWhiteFamily, whiteShade) : found;
}

ShadedColor FindSelectedShade(COLORREF color) {
    ShadedColor found;
    return FindShade(color, kWhiteFamily, &found) ? found : ShadedColor{kWhiteFamily, kLastShade, false};
}

}  // namespace velmora
