// The scales of the colour adjustments, from the lowest value on the left to the highest, and the process colours.
#include <algorithm>
#include <cmath>

#include "tools/pictures/picture.h"

namespace velmora {
namespace {

constexpr int kScaleWidth = 120;
constexpr int kScaleHeight = 12;
constexpr int kSwatchWidth = 32;
constexpr int kSwatchHeight = 16;

constexpr Color kCyan = FromRgb(0x00AEEF);
constexpr Color kMagenta = FromRgb(0xEC008C);
constexpr Color kYellow = FromRgb(0xFFF200);
constexpr Color kBlack = FromRgb(0x231F20);
constexpr Color kRed = FromRgb(0xED1C24);
constexpr Color kGreen = FromRgb(0x00A651);
constexpr Color kBlue = FromRgb(0x2E3192);
constexpr Color kGray = FromRgb(0x9A9A9A);

// A colour at a place of a scale, both shares 0 to 1: from the left, and from the top.
using ScaleColor = Color (*)(double, double);

Color Between(const Color& left, const Color& right, double across) {
    return across < 0.5 ? Mix(left, kGray, across * 2) : Mix(kGray, right, across * 2 - 1);
}

// The hue from 0 to 1, red to red.
Color Hue(double hue) {
    const auto channel = [hue](double peak) {
        const double distance = std::abs(std::remainder(hue - peak, 1.0));
        return std::clamp(2 - distance * 6, 0.0, 1.0);
    };
    return {channel(0), channel(1.0 / 3), channel(2.0 / 3)};
}

constexpr struct {
    const char* name;
    ScaleColor color;
} kScales[] = {
    {"IDB_BRIGHTNESS_16M",
     [](double across, double) {
         return Mix({0.1, 0.1, 0.1}, {1, 1, 1}, across);
     }},
    // Dark and light drift apart from the same gray.
    {"IDB_CONTRAST_16M",
     [](double across, double down) {
         const double gray = 0.5 + (0.5 - down) * across;
         return Color{gray, gray, gray};
     }},
    {"IDB_SATURATION_16M",
     [](double across, double down) {
         return Mix({0.6, 0.6, 0.6}, Hue(down * 5 / 6), across);
     }},
    {"IDB_CYAN2RED_16M", [](double across, double) { return Between(kCyan, kRed, across); }},
    {"IDB_MAGENTA2GREEN_16M", [](double across, double) { return Between(kMagenta, kGreen, across); }},
    {"IDB_YELLOW2BLUE_16M", [](double across, double) { return Between(kYellow, kBlue, across); }},
};

constexpr struct {
    const char* name;
    Color color;
} kSwatches[] = {{"IDB_CYAN", kCyan}, {"IDB_MAGENTA", kMagenta}, {"IDB_YELLOW", kYellow}, {"IDB_BLACK", kBlack}};

void DrawScale(Canvas& canvas, ScaleColor color) {
    for (int y = 0; y < canvas.Height(); ++y) {
        for (int x = 0; x < canvas.Width(); ++x) {
            canvas.SetPixel(x, y, color(x / (canvas.Width() - 1.0), y / (canvas.Height() - 1.0)));
        }
    }
    canvas.DrawFrame(kFrame);
}

}  // namespace

std::vector<Picture> ColorPictures() {
    std::vector<Picture> pictures;
    for (const auto& scale : kScales) {
        pictures.push_back({scale.name, PictureKind::kBitmap, kScaleWidth, kScaleHeight,
                            [color = scale.color](Canvas& canvas) { DrawScale(canvas, color); }});
    }
    for (const auto& swatch : kSwatches) {
        pictures.push_back(
            {swatch.name, PictureKind::kBitmap, kSwatchWidth, kSwatchHeight, [color = swatch.color](Canvas& canvas) {
                 canvas.Fill(color);
                 canvas.DrawFrame(kLine);
             }});
    }
    return pictures;
}

}  // namespace velmora
