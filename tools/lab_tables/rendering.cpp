#include "tools/lab_tables/rendering.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace velmora {
namespace {

// Where the renderings are measured: the grey of middle lightness, four colours around it, and the corners of the
// space. A value beyond 0 to 255 is one that the screen cuts; how far beyond shapes the colours on the way to it.
constexpr double kMiddle = 52;
constexpr double kRed = 60;  // a
constexpr double kGreen = -60;
constexpr double kYellow = 60;  // b
constexpr double kBlue = -50;
constexpr double kWarmCorner[] = {100, 90, 100};
constexpr double kCoolCorner[] = {0, -120, -120};

// A channel of a rendering.
struct Measured {
    double grey;
    double red;
    double green;
    double yellow;
    double blue;
    std::optional<double> warm;  // none: as the rest has it
    std::optional<double> cool;
};

constexpr Measured kMeasured[4][3] = {
    {{153, 251, 53, 176, 106, {}, {}}, {154, 61, 255, 154, 162, 107, 182}, {161, 250, 94, -70, 300, 73, 188}},
    {{136, 251, -20, 175, 0, {}, {}}, {133, 19, 191, 134, 109, 100, 182}, {148, 186, 20, -70, 238, 53, 253}},
    {{149, 255, 57, 219, 91, {}, {}}, {149, 18, 255, 173, 203, 120, 63}, {158, 262, 96, -80, 262, 106, 163}},
    {{149, 255, 16, 190, 73, {}, {}}, {149, 41, 214, 141, 175, 103, 178}, {158, 188, 42, -70, 262, 62, 251}},
};

// A smooth bend at 0, straight away from it.
double Bend(double x) {
    constexpr double kWidth = 30;
    return std::sqrt(x * x + kWidth * kWidth) - kWidth;
}

// How far a channel moves along an axis: nothing at 0, straight away from it on both sides.
class Response {
  public:
    // Through a point on each side of 0.
    Response(double positive, double positiveMove, double negative, double negativeMove) {
        const double determinant = positive * Bend(negative) - negative * Bend(positive);
        slope_ = (positiveMove * Bend(negative) - negativeMove * Bend(positive)) / determinant;
        bend_ = (positive * negativeMove - negative * positiveMove) / determinant;
    }
    double operator()(double x) const { return slope_ * x + bend_ * Bend(x); }

  private:
    double slope_;
    double bend_;
};

// 0 at black, 255 at white, through the middle grey.
double Grey(const Measured& measured, double lightness) {
    const double middle = kMiddle / 100;
    const double lift = (measured.grey / 255 - middle) / (middle * (1 - middle));
    const double part = lightness / 100;
    return 255 * (part + lift * part * (1 - part));
}

// Dark colours are less vivid, down to this part of the middle lightness's.
double Vividness(double lightness) {
    constexpr double kAtBlack = 0.55;
    const double dark = std::max(0.0, 1 - lightness / kMiddle);
    return 1 - (1 - kAtBlack) * dark * dark * (3 - 2 * dark);
}

double RenderWithoutCorners(const Measured& measured, double lightness, double a, double b) {
    const Response redGreen(kRed, measured.red - measured.grey, kGreen, measured.green - measured.grey);
    const Response yellowBlue(kYellow, measured.yellow - measured.grey, kBlue, measured.blue - measured.grey);
    return Grey(measured, lightness) + Vividness(lightness) * (redGreen(a) + yellowBlue(b));
}

// What a corner adds to a colour between the neutral planes and it.
double CornerPart(const Measured& measured, const std::optional<double>& wanted, const double (&corner)[3],
                  double lightnessPart, double a, double b) {
    const double aPart = std::max(0.0, a / corner[1]);
    const double bPart = std::max(0.0, b / corner[2]);
    return wanted ? (*wanted - RenderWithoutCorners(measured, corner[0], corner[1], corner[2])) * lightnessPart *
                        aPart * aPart * bPart * bPart
                  : 0;
}

}  // namespace

uint8_t RenderLab(size_t baseColor, size_t channel, int lightness, int a, int b) {
    const Measured& measured = kMeasured[baseColor - 1][channel];
    const double light = lightness / 100.0;
    const double value = RenderWithoutCorners(measured, lightness, a, b) +
                         CornerPart(measured, measured.warm, kWarmCorner, light, a, b) +
                         CornerPart(measured, measured.cool, kCoolCorner, 1 - light * light, a, b);
    return static_cast<uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
}

}  // namespace velmora
