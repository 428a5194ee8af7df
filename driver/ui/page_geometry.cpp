#include "driver/ui/page_geometry.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace velmora {
namespace {

constexpr int64_t kLongestSide = 35560;  // 0.01 mm
constexpr LONG kLabelSide = 40;          // pixels on the largest paper, as the next
constexpr LONG kMarkSide = 65;
constexpr LONG kLabelMargin = 3;  // pixels from the sheet's edges

constexpr int32_t kSineUnit = 10000;
constexpr int32_t kQuarter = 900;
constexpr int32_t kHalf = 1800;
constexpr int32_t kWhole = 3600;

// Of the whole degrees from 0 to 90.
constexpr int16_t kSines[] = {
    0,     175,  349,  523,  698,  872,  1045, 1219, 1392, 1564,  //
    1736,  1908, 2079, 2250, 2419, 2588, 2756, 2924, 3090, 3256,  // 10
    3420,  3584, 3746, 3907, 4067, 4226, 4384, 4540, 4695, 4848,  // 20
    5000,  5150, 5299, 5446, 5592, 5736, 5878, 6018, 6157, 6293,  // 30
    6428,  6561, 6691, 6820, 6947, 7071, 7193, 7314, 7431, 7547,  // 40
    7660,  7771, 7880, 7986, 8090, 8192, 8290, 8387, 8480, 8572,  // 50
    8660,  8746, 8829, 8910, 8988, 9063, 9135, 9205, 9272, 9336,  // 60
    9397,  9455, 9511, 9563, 9613, 9659, 9703, 9744, 9781, 9816,  // 70
    9848,  9877, 9903, 9925, 9945, 9962, 9976, 9986, 9994, 9998,  // 80
    10000,                                                        // 90
};

// Of an angle from 0 to 90 degrees.
int32_t SineInQuarter(int32_t angle) {
    const int32_t degree = angle / 10;
    const int32_t tenths = angle % 10;
    return tenths == 0 ? kSines[degree] : kSines[degree] + (kSines[degree + 1] - kSines[degree]) * tenths / 10;
}

LONG ToLong(int64_t value) {
    using Limits = std::numeric_limits<LONG>;
    return static_cast<LONG>(std::clamp<int64_t>(value, Limits::min(), Limits::max()));
}

// `value` × `numerator` / `denominator`, rounded, none of them negative.
LONG Scaled(int64_t value, int64_t numerator, int64_t denominator) {
    return ToLong((value * numerator + denominator / 2) / denominator);
}

int64_t WidthOf(const RECT& rect) {
    return int64_t{rect.right} - rect.left;
}

int64_t HeightOf(const RECT& rect) {
    return int64_t{rect.bottom} - rect.top;
}

RECT InMiddle(const RECT& area, LONG width, LONG height) {
    const LONG left = ToLong(area.left + (WidthOf(area) - width) / 2);
    const LONG top = ToLong(area.top + (HeightOf(area) - height) / 2);
    return {left, top, left + width, top + height};
}

// Pixels of a length that is proportional to the paper's shorter side.
LONG SideOn(SIZE paper, LONG onLargest) {
    return ToLong(int64_t{std::min(paper.cx, paper.cy)} * onLargest / kLongestSide);
}

enum class Part { kMiddle, kStart, kEnd };

// By the watermark's placement; other placements have no reference point.
struct Reference {
    uint16_t placement;
    Part across;
    Part along;
};
constexpr Reference kReferences[] = {
    {0, Part::kMiddle, Part::kMiddle},  //
    {2, Part::kMiddle, Part::kStart},   //
    {3, Part::kEnd, Part::kMiddle},     //
    {4, Part::kMiddle, Part::kEnd},     //
    {5, Part::kStart, Part::kMiddle},   //
    {6, Part::kStart, Part::kStart},    //
    {7, Part::kEnd, Part::kStart},      //
    {8, Part::kStart, Part::kEnd},      //
    {9, Part::kEnd, Part::kEnd},
};

int64_t PlaceAlong(Part part, LONG start, LONG end, LONG extent) {
    switch (part) {
        case Part::kStart:
            return int64_t{start} + extent / 2;
        case Part::kEnd:
            return int64_t{end} - extent / 2;
        case Part::kMiddle:
            break;
    }
    return (int64_t{start} + end) / 2;
}

}  // namespace

int32_t SineOf(int32_t angle) {
    angle %= kWhole;
    angle += angle < 0 ? kWhole : 0;
    const bool isNegative = angle >= kHalf;
    angle -= isNegative ? kHalf : 0;
    const int32_t sine = SineInQuarter(angle >= kQuarter ? kHalf - angle : angle);
    return isNegative ? -sine : sine;
}

int32_t CosineOf(int32_t angle) {
    return SineOf(angle % kWhole + kQuarter);
}

POINT RotatePoint(POINT point, int32_t angle) {
    const int64_t sine = SineOf(angle);
    const int64_t cosine = CosineOf(angle);
    return {ToLong((point.x * cosine - point.y * sine) / kSineUnit),
            ToLong((point.y * cosine + point.x * sine) / kSineUnit)};
}

SIZE LimitPaper(SIZE paper) {
    int64_t width = std::max<int64_t>(paper.cx, 1);
    int64_t length = std::max<int64_t>(paper.cy, 1);
    if (length > kLongestSide) {
        width = width * kLongestSide / length;
        length = kLongestSide;
    }
    if (width > kLongestSide) {
        length = length * kLongestSide / width;
        width = kLongestSide;
    }
    return {ToLong(std::max<int64_t>(width, 1)), ToLong(std::max<int64_t>(length, 1))};
}

RECT SquareIn(const RECT& area) {
    const LONG side = ToLong(std::min(WidthOf(area), HeightOf(area)));
    return InMiddle(area, side, side);
}

RECT FitInto(SIZE sheet, const RECT& area) {
    const int64_t width = WidthOf(area);
    const int64_t height = HeightOf(area);
    if (width * sheet.cy > height * sheet.cx) {
        return InMiddle(area, std::max(LONG{1}, Scaled(height, sheet.cx, sheet.cy)), ToLong(height));
    }
    return InMiddle(area, ToLong(width), std::max(LONG{1}, Scaled(width, sheet.cy, sheet.cx)));
}

PageGrid GridOf(uint32_t pagesPerSheet, bool isLandscape) {
    switch (pagesPerSheet) {
        case 2:
            return isLandscape ? PageGrid{2, 1} : PageGrid{1, 2};
        case 4:
            return {2, 2};
        default:
            return {1, 1};
    }
}

RECT CellOf(const RECT& sheet, const PageGrid& grid, int column, int row) {
    const auto edge = [](LONG start, int64_t extent, int index, int count) {
        return ToLong(start + extent * index / count);
    };
    const int64_t width = WidthOf(sheet);
    const int64_t height = HeightOf(sheet);
    return {edge(sheet.left, width, column, grid.columns), edge(sheet.top, height, row, grid.rows),
            edge(sheet.left, width, column + 1, grid.columns), edge(sheet.top, height, row + 1, grid.rows)};
}

PageScale ScaleOf(SIZE sheet, const PageGrid& grid, const RECT& cell) {
    const SIZE page = grid.columns == grid.rows ? sheet : SIZE{sheet.cy, sheet.cx};
    const RECT place = FitInto(page, cell);
    const bool isWide = page.cx > page.cy;  // its longer side is the more exact one
    constexpr int64_t kPointsOfInch = 72;
    constexpr int64_t kUnitsOfInch = 2540;
    const LONG points = Scaled(isWide ? page.cx : page.cy, kPointsOfInch, kUnitsOfInch);
    const LONG pixels = ToLong(isWide ? WidthOf(place) : HeightOf(place));
    return {static_cast<int>(std::max(points, LONG{1})), static_cast<int>(std::max(pixels, LONG{1}))};
}

RECT PageIn(const RECT& cell, const PageScale& scale) {
    return {0, 0, Scaled(WidthOf(cell), scale.points, scale.pixels),
            Scaled(HeightOf(cell), scale.points, scale.pixels)};
}

RECT LabelBox(const RECT& sheet, SIZE paper) {
    const LONG side = SideOn(paper, kLabelSide);
    const LONG left = sheet.left + kLabelMargin;
    const LONG top = sheet.top + kLabelMargin;
    return {left, top, left + side, top + side};
}

RECT MarkBox(const RECT& sheet, SIZE paper, const RECT& label) {
    const LONG right = sheet.right - 1;
    const LONG bottom = sheet.bottom - 1;
    LONG side = SideOn(paper, kMarkSide);
    const LONG across = label.right - (right - side);
    const LONG along = label.bottom - (bottom - side);
    if (across > 0 && along > 0) {
        side = std::max(LONG{0}, side - std::min(across, along));
    }
    return {right - side, bottom - side, right, bottom};
}

POINT PlaceText(uint16_t placement, const RECT& page, SIZE text, POINT offset) {
    for (const Reference& reference : kReferences) {
        if (reference.placement == placement) {
            return {ToLong(PlaceAlong(reference.across, page.left, page.right, text.cx) + offset.x),
                    ToLong(PlaceAlong(reference.along, page.top, page.bottom, text.cy) + offset.y)};
        }
    }
    return offset;
}

}  // namespace velmora
