#include "driver/ui/nup_border.h"

namespace velmora {
namespace {

// Values of layoutMode, beside kNoBorder.
constexpr uint16_t kBorder = 1;
constexpr uint16_t kBorderAndMargin = 3;

// Lengths in dots at the coarsest resolution and at the others.
struct Dots {
    int16_t coarse;
    int16_t fine;
};
constexpr Dots kMargin = {59, 118};
constexpr Dots kWidth = {3, 6};

}  // namespace

void ApplyBorderRule(PrivateDevMode* devMode, int resolutionIndex) {
    const auto atResolution = [resolutionIndex](const Dots& dots) {
        return resolutionIndex == 0 ? dots.coarse : dots.fine;
    };
    if (devMode->uiFlagE == 0) {
        devMode->layoutMode = kNoBorder;
        return;
    }
    devMode->layoutMode = kBorder;
    if (devMode->uiChoice == kBorderWithMargin) {
        devMode->layoutMode = kBorderAndMargin;
        devMode->marginValue = atResolution(kMargin);
    }
    devMode->nupBorderWidth = atResolution(kWidth);
}

}  // namespace velmora
