// The geometry of the watermark's preview, against places computed by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <ostream>

#include "driver/ui/page_geometry.h"

bool operator==(const RECT& a, const RECT& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

std::ostream& operator<<(std::ostream& out, const RECT& rect) {
    return out << rect.left << ',' << rect.top << ' ' << rect.right << ',' << rect.bottom;
}

namespace velmora {
namespace {

constexpr int32_t kMost = std::numeric_limits<int32_t>::max();
constexpr int32_t kLeast = std::numeric_limits<int32_t>::min();
constexpr SIZE kA4 = {21000, 29700};

TEST(PageGeometry, Sines) {
    for (int degree = 0; degree <= 90; ++degree) {
        EXPECT_EQ(SineOf(degree * 10), std::lround(10000 * std::sin(degree * std::numbers::pi / 180))) << degree;
    }
    constexpr struct {
        int32_t angle, sine, cosine;
    } kCases[] = {
        {0, 0, 10000},     {300, 5000, 8660}, {455, 7132, 7009}, {900, 10000, 0},   {1800, 0, -10000},
        {2700, -10000, 0}, {3599, -17, 9999}, {3600, 0, 10000},  {-900, -10000, 0}, {36300, 5000, 8660},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(SineOf(c.angle), c.sine) << c.angle;
        EXPECT_EQ(CosineOf(c.angle), c.cosine) << c.angle;
    }
    for (const int32_t angle : {kLeast, kMost}) {
        EXPECT_LE(std::abs(SineOf(angle)), 10000);
        EXPECT_LE(std::abs(CosineOf(angle)), 10000);
    }
}

TEST(PageGeometry, TurnsPoints) {
    constexpr struct {
        POINT point;
        int32_t angle;
        POINT turned;
    } kCases[] = {
        {{0, 100}, 0, {0, 100}},     {{0, 100}, 450, {-70, 70}},  {{0, 100}, 900, {-100, 0}},
        {{0, 100}, 1800, {0, -100}}, {{30, 40}, 2700, {40, -30}}, {{kMost, kMost}, 450, {0, kMost}},
    };
    for (const auto& c : kCases) {
        const POINT turned = RotatePoint(c.point, c.angle);
        EXPECT_EQ(turned.x, c.turned.x) << c.angle;
        EXPECT_EQ(turned.y, c.turned.y) << c.angle;
    }
}

TEST(PageGeometry, LimitsPapers) {
    constexpr struct {
        SIZE paper, limited;
    } kCases[] = {
        {kA4, kA4},
        {{40000, 30000}, {35560, 26670}},
        {{20000, 71120}, {10000, 35560}},
        {{80000, 40000}, {35560, 17780}},
        {{0, -5}, {1, 1}},
        {{kMost, 1}, {35560, 1}},
        {{kMost, kMost}, {35560, 35560}},
    };
    for (const auto& c : kCases) {
        const SIZE limited = LimitPaper(c.paper);
        EXPECT_EQ(limited.cx, c.limited.cx) << c.paper.cx;
        EXPECT_EQ(limited.cy, c.limited.cy) << c.paper.cx;
    }
}

TEST(PageGeometry, FitsSheets) {
    EXPECT_EQ(SquareIn({10, 20, 110, 80}), (RECT{30, 20, 90, 80}));
    EXPECT_EQ(SquareIn({10, 20, 40, 120}), (RECT{10, 55, 40, 85}));
    constexpr RECT kArea = {0, 0, 100, 100};
    EXPECT_EQ(FitInto(kA4, kArea), (RECT{14, 0, 85, 100}));
    EXPECT_EQ(FitInto({29700, 21000}, kArea), (RECT{0, 14, 100, 85}));
    EXPECT_EQ(FitInto({1, 1}, {5, 5, 15, 15}), (RECT{5, 5, 15, 15}));
    EXPECT_EQ(FitInto({1, 35560}, kArea), (RECT{49, 0, 50, 100}));
}

TEST(PageGeometry, LaysOutPages) {
    constexpr struct {
        uint32_t pages;
        bool isLandscape;
        int columns, rows;
        RECT first, last;  // cells
    } kCases[] = {
        {1, false, 1, 1, {3, 5, 104, 205}, {3, 5, 104, 205}},   {1, true, 1, 1, {3, 5, 104, 205}, {3, 5, 104, 205}},
        {2, false, 1, 2, {3, 5, 104, 105}, {3, 105, 104, 205}}, {2, true, 2, 1, {3, 5, 53, 205}, {53, 5, 104, 205}},
        {4, false, 2, 2, {3, 5, 53, 105}, {53, 105, 104, 205}}, {4, true, 2, 2, {3, 5, 53, 105}, {53, 105, 104, 205}},
    };
    constexpr RECT kSheet = {3, 5, 104, 205};
    for (const auto& c : kCases) {
        const PageGrid grid = GridOf(c.pages, c.isLandscape);
        EXPECT_EQ(grid.columns, c.columns) << c.pages;
        EXPECT_EQ(grid.rows, c.rows) << c.pages;
        EXPECT_EQ(CellOf(kSheet, grid, 0, 0), c.first) << c.pages;
        EXPECT_EQ(CellOf(kSheet, grid, grid.columns - 1, grid.rows - 1), c.last) << c.pages;
    }
}

// A4 is 842 points long. Two pages are turned and as wide as their cell, four have half the sheet's sides.
TEST(PageGeometry, ScalesPages) {
    constexpr struct {
        SIZE sheet;
        PageGrid grid;
        RECT cell;
        int points, pixels;
    } kCases[] = {
        {kA4, {1, 1}, {0, 0, 93, 132}, 842, 132}, {kA4, {1, 2}, {0, 0, 93, 66}, 842, 93},
        {kA4, {2, 2}, {10, 20, 56, 86}, 842, 65}, {{29700, 21000}, {2, 1}, {0, 0, 66, 93}, 842, 93},
        {{1, 1}, {2, 2}, {0, 0, 0, 0}, 1, 1},
    };
    for (const auto& c : kCases) {
        const PageScale scale = ScaleOf(c.sheet, c.grid, c.cell);
        EXPECT_EQ(scale.points, c.points) << c.cell;
        EXPECT_EQ(scale.pixels, c.pixels) << c.cell;
    }
    EXPECT_EQ(PageIn({10, 20, 56, 86}, {842, 65}), (RECT{0, 0, 596, 855}));
}

TEST(PageGeometry, MarksGiveWayToLabels) {
    EXPECT_EQ(LabelBox({20, 10, 113, 142}, kA4), (RECT{23, 13, 46, 36}));
    EXPECT_EQ(LabelBox({20, 10, 113, 142}, {35560, 30000}), (RECT{23, 13, 56, 46}));
    constexpr struct {
        RECT sheet, mark;
    } kCases[] = {
        {{20, 10, 113, 142}, {74, 103, 112, 141}}, {{0, 0, 50, 90}, {11, 51, 49, 89}},  // above each other
        {{0, 0, 90, 50}, {51, 11, 89, 49}},                                             // beside each other
        {{0, 0, 50, 60}, {16, 26, 49, 59}},                                             // 15 pixels across, 5 down
        {{0, 0, 30, 30}, {26, 26, 29, 29}},        {{0, 0, 20, 20}, {19, 19, 19, 19}},  // no room
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(MarkBox(c.sheet, kA4, LabelBox(c.sheet, kA4)), c.mark) << c.sheet;
    }
}

TEST(PageGeometry, PlacesText) {
    constexpr RECT kPage = {100, 200, 300, 600};
    constexpr SIZE kText = {40, 20};
    constexpr struct {
        uint16_t placement;
        POINT point;  // of a text without offset
    } kCases[] = {
        {0, {200, 400}}, {2, {200, 210}}, {3, {280, 400}}, {4, {200, 590}}, {5, {120, 400}}, {6, {120, 210}},
        {7, {280, 210}}, {8, {120, 590}}, {9, {280, 590}}, {1, {0, 0}},     {10, {0, 0}},    {65535, {0, 0}},
    };
    constexpr struct {
        int32_t angle;
        POINT offset;  // a quarter of the text's height, turned
    } kTurns[] = {{0, {0, 5}}, {450, {-3, 3}}, {900, {-5, 0}}};
    for (const auto& c : kCases) {
        for (const auto& turn : kTurns) {
            const POINT at = PlaceText(c.placement, kPage, kText, RotatePoint({0, kText.cy / 4}, turn.angle));
            EXPECT_EQ(at.x, c.point.x + turn.offset.x) << c.placement << ' ' << turn.angle;
            EXPECT_EQ(at.y, c.point.y + turn.offset.y) << c.placement << ' ' << turn.angle;
        }
    }
    constexpr RECT kEverything = {kLeast, kLeast, kMost, kMost};
    EXPECT_EQ(PlaceText(9, kEverything, {-kMost, -kMost}, {kMost, kMost}).x, kMost);
}

}  // namespace
}  // namespace velmora
