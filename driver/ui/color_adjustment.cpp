#include "driver/ui/color_adjustment.h"

#include <algorithm>
#include <cmath>

#include "driver/ui/lab_tables.h"

namespace velmora {
namespace {

constexpr size_t kAdjustments = 2 * kMostAdjustment + 1;

// By value, from the least to the most.
using Factors = double[kAdjustments];
// Exponents of lightness.
constexpr Factors kBrightnessFactors = {2.0,  1.9,  1.8,  1.7,  1.6, 1.5,  1.4,  1.3,  1.2,  1.1, 1.0,
                                        0.96, 0.92, 0.88, 0.84, 0.8, 0.76, 0.72, 0.68, 0.64, 0.6};
// Parts of the straight line in the curve of lightness; the rest of it is steep in the middle.
constexpr Factors kContrastFactors = {2.0, 1.9, 1.8, 1.7, 1.6, 1.5, 1.4, 1.3, 1.2, 1.1, 1.0,
                                      0.9, 0.8, 0.7, 0.6, 0.5, 0.4, 0.3, 0.2, 0.1, 0.0};
// Factors of a and b. The middle one is more vivid than the colours are.
constexpr Factors kSaturationFactors = {0.1,  0.2,  0.3,  0.4,  0.5,  0.6,  0.7,  0.8,  0.9,  1.0, 1.1,
                                        1.17, 1.24, 1.31, 1.38, 1.45, 1.52, 1.59, 1.66, 1.73, 1.8};

// XYZ of linear red, green and blue, and of white.
constexpr double kRedXyz[3] = {0.4361, 0.2225, 0.0139};
constexpr double kGreenXyz[3] = {0.3851, 0.7169, 0.0971};
constexpr double kBlueXyz[3] = {0.1431, 0.0606, 0.7141};
constexpr double kWhiteXyz[3] = {0.9643, 1.0, 0.8251};

constexpr double kLeastA = -120;
constexpr double kMostA = 90;
constexpr double kLeastB = -120;
constexpr double kMostB = 100;

// A value that is whole but for the noise of its last bits must not lose one when it is cut.
constexpr double kRoundingNoise = 1e-7;

int Bounded(int value) {
    return std::clamp(value, -kMostAdjustment, kMostAdjustment);
}

double FactorOf(const Factors& factors, int value) {
    return factors[Bounded(value) + kMostAdjustment];
}

// The levels of a channel's nodes, linear, 0 to 1.
struct LinearChannel {
    double levels[kAdjustmentSteps];
};

LinearChannel Linearize(int balance) {
    const double exponent = 2.2 / (0.5 + 0.05 * (Bounded(balance) + kMostAdjustment));
    LinearChannel channel = {};
    for (size_t i = 0; i < kAdjustmentSteps; ++i) {
        const double level = std::min(16.0 * static_cast<double>(i), 255.0);
        channel.levels[i] = std::pow(level / 255, exponent);
    }
    return channel;
}

struct Lab {
    double lightness;
    double a;
    double b;
};

double LabCurve(double part) {
    return part > 0.008856 ? std::cbrt(part) : 7.787 * part + 16.0 / 116;
}

Lab LabOf(double red, double green, double blue) {
    double curved[3];
    for (size_t i = 0; i < 3; ++i) {
        curved[i] = LabCurve((kRedXyz[i] * red + kGreenXyz[i] * green + kBlueXyz[i] * blue) / kWhiteXyz[i]);
    }
    return {std::max(0.0, 116 * curved[1] - 16), 500 * (curved[0] - curved[1]), 200 * (curved[1] - curved[2])};
}

// Brings a coordinate into its range and another, which makes the hue with it, nearer to grey by the same ratio.
void Limit(double least, double most, double* limited, double* other) {
    const double within = std::clamp(*limited, least, most);
    if (within != *limited) {
        *other *= within / *limited;
        *limited = within;
    }
}

struct LabFactors {
    double brightness;
    double contrast;
    double saturation;
};

Lab Adjust(const Lab& color, const LabFactors& factors) {
    Lab adjusted = color;
    if (adjusted.lightness > 0 && factors.brightness != 1) {
        adjusted.lightness = 100 * std::pow(adjusted.lightness / 100, factors.brightness);
    }
    if (factors.contrast != 1) {
        const double part = adjusted.lightness / 100;
        const double curve = factors.contrast + (1 - factors.contrast) * (3 * part - 2 * part * part);
        adjusted.lightness = std::clamp(adjusted.lightness * curve, 0.0, 100.0);
    }
    adjusted.a *= factors.saturation;
    adjusted.b *= factors.saturation;
    Limit(kLeastA, kMostA, &adjusted.a, &adjusted.b);
    Limit(kLeastB, kMostB, &adjusted.b, &adjusted.a);
    return adjusted;
}

// Between two neighbouring nodes of an axis.
struct Place {
    size_t node;      // the lower one, never the last
    double fraction;  // 0 to 1
};

Place PlaceOf(const int16_t (&nodes)[kLabSteps], double value) {
    size_t node = 0;
    while (node < kLabSteps - 2 && value >= nodes[node + 1]) {
        ++node;
    }
    const double fraction = (value - nodes[node]) / (nodes[node + 1] - nodes[node]);
    return {node, std::clamp(fraction, 0.0, 1.0)};
}

double Between(double low, double high, double fraction) {
    return low + (high - low) * fraction;
}

void Render(const LabTable& table, const Lab& color, uint8_t (&rgb)[3]) {
    const Place lightness = PlaceOf(kLightnessNodes, color.lightness);
    const Place a = PlaceOf(kANodes, color.a);
    const Place b = PlaceOf(kBNodes, color.b);
    const uint8_t* const origin = table + lightness.node * kLightnessStride + a.node * kAStride + b.node * kBStride;
    for (size_t channel = 0; channel < 3; ++channel) {
        const auto alongB = [&](const uint8_t* node) {
            return Between(node[channel], node[channel + kBStride], b.fraction);
        };
        const auto alongA = [&](const uint8_t* node) {
            return Between(alongB(node), alongB(node + kAStride), a.fraction);
        };
        const double value = Between(alongA(origin), alongA(origin + kLightnessStride), lightness.fraction);
        rgb[channel] = static_cast<uint8_t>(value + kRoundingNoise);
    }
}

const LabTable& TableOf(int baseColor) {
    return kLabTables[baseColor == 1 || baseColor == 2 || baseColor == 4 ? baseColor - 1 : 2];
}

// 2^16 / k.
constexpr uint32_t kReciprocals[16] = {0,    65536, 32768, 21845, 16384, 13107, 10922, 9362,
                                       8192, 7281,  6553,  5957,  5461,  5041,  4681,  4369};

constexpr size_t kBlueStep = 3;
constexpr size_t kGreenStep = kBlueStep * kAdjustmentSteps;
constexpr size_t kRedStep = kGreenStep * kAdjustmentSteps;

// A channel of a pixel within a cell: the way to the next node and how much of it, in sixteenths.
struct CellAxis {
    size_t step;
    uint32_t fraction;
};

}  // namespace

void BuildAdjustmentTable(const ColorAdjustment& values, AdjustmentTable* table) {
    const LinearChannel red = Linearize(values.cyanRed);
    const LinearChannel green = Linearize(values.magentaGreen);
    const LinearChannel blue = Linearize(values.yellowBlue);
    const LabFactors factors = {FactorOf(kBrightnessFactors, values.brightness),
                                FactorOf(kContrastFactors, values.contrast),
                                FactorOf(kSaturationFactors, values.saturation)};
    const LabTable& rendering = TableOf(values.baseColor);
    for (size_t r = 0; r < kAdjustmentSteps; ++r) {
        for (size_t g = 0; g < kAdjustmentSteps; ++g) {
            for (size_t b = 0; b < kAdjustmentSteps; ++b) {
                const Lab color = LabOf(red.levels[r], green.levels[g], blue.levels[b]);
                Render(rendering, Adjust(color, factors), table->nodes[r][g][b]);
            }
        }
    }
}

// A cell is cut into three pyramids from its origin to the faces across the axes; the last cell counts as wide as the
// others.
uint32_t MapPixel(const AdjustmentTable& table, uint32_t pixel) {
    const uint32_t red = pixel >> 16 & 0xFF;
    const uint32_t green = pixel >> 8 & 0xFF;
    const uint32_t blue = pixel & 0xFF;
    const uint8_t* const origin = table.nodes[red >> 4][green >> 4][blue >> 4];
    const CellAxis redAxis = {kRedStep, red & 15};
    const CellAxis greenAxis = {kGreenStep, green & 15};
    const CellAxis blueAxis = {kBlueStep, blue & 15};
    // The axis of the pyramid, and those of its face.
    CellAxis main = redAxis;
    CellAxis first = greenAxis;
    CellAxis second = blueAxis;
    if (redAxis.fraction < greenAxis.fraction || redAxis.fraction < blueAxis.fraction) {
        first = redAxis;
        const bool isBlue = greenAxis.fraction < redAxis.fraction || greenAxis.fraction < blueAxis.fraction;
        main = isBlue ? blueAxis : greenAxis;
        second = isBlue ? greenAxis : blueAxis;
    }
    const uint8_t* const face = origin + main.step;
    const uint32_t weights[4] = {
        (main.fraction - first.fraction) * (main.fraction - second.fraction),
        first.fraction * (main.fraction - second.fraction),
        (main.fraction - first.fraction) * second.fraction,
        first.fraction * second.fraction,
    };
    uint32_t mapped = pixel & 0xFF000000;
    for (size_t channel = 0; channel < 3; ++channel) {
        const uint32_t start = origin[channel];
        const uint32_t sum = face[channel] * weights[0] + face[channel + first.step] * weights[1] +
                             face[channel + second.step] * weights[2] +
                             face[channel + first.step + second.step] * weights[3];
        const uint32_t value = start + (sum * kReciprocals[main.fraction] >> 20) - (start * main.fraction >> 4);
        mapped |= (value & 0xFF) << (16 - 8 * channel);
    }
    return mapped;
}

void MapPixels(const AdjustmentTable& table, uint32_t* pixels, size_t count) {
    for (size_t i = 0; i < count; ++i) {
        pixels[i] = MapPixel(table, pixels[i]);
    }
}

}  // namespace velmora
