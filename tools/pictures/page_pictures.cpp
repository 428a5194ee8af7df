// The Paper page's pictures: the sheet with its pages, the edges where it is bound, posters, and copies.
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "tools/pictures/letters.h"
#include "tools/pictures/page_shapes.h"
#include "tools/pictures/picture.h"

namespace velmora {
namespace {

constexpr int kSide = 96;
constexpr double kSheetLength = 78;
constexpr double kFold = 10;  // the turned corner of a sheet that is printed on both sides, at the bottom right

// What the pages of all layouts are called: one, two in both orders, four in all orders.
constexpr const char* kLetters[] = {"A", "AB", "BA", "ABCD", "ACBD", "BADC", "CADB"};

std::string OrientationName(bool isLandscape) {
    return isLandscape ? "IDB_LAND" : "IDB_PORT";
}

Rect Sheet(bool isLandscape) {
    return PlaceSheet(kSide, kSheetLength, isLandscape);
}

Rect Inside(const Rect& rect, double margin) {
    return {rect.x + margin, rect.y + margin, rect.width - 2 * margin, rect.height - 2 * margin};
}

void DrawSheet(Canvas& canvas, const Rect& sheet) {
    canvas.FillRect({sheet.x + 2, sheet.y + 2, sheet.width + 0.5, sheet.height + 0.5}, kShadow);
    canvas.FillRect(sheet, kPaper);
    canvas.DrawEdge(sheet, kLine);
}

// Over a sheet that is drawn.
void DrawFold(Canvas& canvas, const Rect& sheet) {
    const Point top = {sheet.Right(), sheet.Bottom() - kFold};
    const Point left = {sheet.Right() - kFold, sheet.Bottom()};
    // What was there: the corner, its edge and its shadow.
    canvas.FillPolygon({top, {top.x + 4, top.y}, {top.x + 4, left.y + 4}, {left.x, left.y + 4}, left}, kDialogFace);
    canvas.DrawLine({top.x + 2, top.y}, {left.x + 2, left.y}, kShadow, 2);
    canvas.FillEdgedPolygon({top, left, {left.x, top.y}}, kAccentLight, kLine);
}

// A page's letter with lines of text below it.
void DrawPage(Canvas& canvas, const Rect& page, std::string_view letter) {
    const double height = std::round(0.42 * std::min(page.width, page.height));
    DrawLetters(canvas, letter, {page.Center().x, page.y + 0.36 * page.height}, height, kAccent, 0.9 + height * 0.075);
    const double gap = page.height > 50 ? 5 : 4;
    const int lines = 1 + static_cast<int>(0.2 * page.height / gap);
    for (int i = 0; i < lines; ++i) {
        const double y = std::floor(page.y + 0.66 * page.height) + i * gap;
        const double width = i + 1 < lines ? 0.64 : 0.4;  // the last line is shorter
        canvas.FillRect({std::round(page.x + 0.18 * page.width), y, std::round(width * page.width), 1}, kFrame);
    }
}

void DrawPages(Canvas& canvas, const PageGrid& grid, bool isDuplex, bool isRotated) {
    canvas.DrawFrame(kFrame);
    const Rect sheet = Sheet(grid.IsSheetLandscape());
    DrawSheet(canvas, sheet);
    cairo_t* const context = canvas.Context();
    cairo_save(context);
    if (isRotated) {
        const Point center = sheet.Center();
        cairo_translate(context, center.x, center.y);
        cairo_rotate(context, std::numbers::pi);
        cairo_translate(context, -center.x, -center.y);
    }
    for (size_t i = 0; i < grid.letters.size(); ++i) {
        const Rect cell = grid.Cell(sheet, static_cast<int>(i));
        const Rect page = grid.letters.size() == 1 ? cell : Inside(cell, 3);
        if (grid.letters.size() > 1) {
            canvas.DrawEdge(page, kFrame);
        }
        DrawPage(canvas, page, grid.letters.substr(i, 1));
    }
    cairo_restore(context);
    if (isDuplex) {
        DrawFold(canvas, sheet);
    }
}

// Rings along an edge of the sheet, clear of the turned corner where it has one.
void DrawBinding(Canvas& canvas, const Rect& sheet, std::string_view edge, bool isDuplex) {
    constexpr double kMargin = 8;  // at least
    constexpr double kGap = 12;
    constexpr double kOutside = 3.5;
    constexpr double kRing = 4;  // inside
    const bool isUpright = edge == "LEFT" || edge == "RIGHT";
    const double length = (isUpright ? sheet.height : sheet.width) - (isDuplex ? kFold - kMargin / 2 : 0);
    const double gaps = std::floor((length - 2 * kMargin) / kGap);
    for (int i = 0; i <= gaps; ++i) {
        const double along = std::floor((length - gaps * kGap) / 2) + i * kGap;
        const double inward = edge == "LEFT" || edge == "TOP" ? 1 : -1;
        const Point at = isUpright ? Point{inward > 0 ? sheet.x : sheet.Right(), sheet.y + along}
                                   : Point{sheet.x + along, inward > 0 ? sheet.y : sheet.Bottom()};
        const auto across = [&](double depth) {
            return isUpright ? Point{at.x + inward * depth, at.y} : Point{at.x, at.y + inward * depth};
        };
        canvas.DrawLine(across(-kOutside), across(kRing), kAccent, 3);
    }
}

// A page that is enlarged over `count` sheets across and down.
void DrawPoster(Canvas& canvas, int count, bool isLandscape) {
    constexpr double kGap = 3;
    canvas.DrawFrame(kFrame);
    const Rect poster = PlaceSheet(kSide, kSheetLength + 4, isLandscape);
    canvas.FillRect(poster, kPaper);
    const double letter = 0.8 * std::min(poster.width * 1.08, poster.height);
    DrawLetters(canvas, "A", poster.Center(), letter, kAccent, 6);
    const double width = (poster.width - (count - 1) * kGap) / count;
    const double height = (poster.height - (count - 1) * kGap) / count;
    const auto edges = [&](double first, double size, int i) {
        const double start = std::floor(first + i * (size + kGap)) + 0.5;
        return std::array<double, 2>{start, std::floor(first + i * (size + kGap) + size) + 0.5 - start};
    };
    for (int i = 1; i < count; ++i) {
        const auto [x, columnWidth] = edges(poster.x, width, i);
        const auto [y, rowHeight] = edges(poster.y, height, i);
        canvas.FillRect({x - kGap, poster.y - 1, kGap, poster.height + 2}, kDialogFace);
        canvas.FillRect({poster.x - 1, y - kGap, poster.width + 2, kGap}, kDialogFace);
    }
    for (int i = 0; i < count * count; ++i) {
        const auto [x, columnWidth] = edges(poster.x, width, i % count);
        const auto [y, rowHeight] = edges(poster.y, height, i / count);
        canvas.DrawEdge({x, y, columnWidth, rowHeight}, kLine);
    }
}

// Stacks of sheets, the first in front; `letters` of all stacks, one after the other.
void DrawCopies(Canvas& canvas, std::string_view letters, int stacks) {
    constexpr double kWidth = 17;
    constexpr double kHeight = 24;
    constexpr Point kStep = {9, -4};  // to the sheet behind
    constexpr double kGap = 5;
    canvas.DrawFrame(kFrame);
    const int sheets = static_cast<int>(letters.size()) / stacks;
    const double width = kWidth + (sheets - 1) * kStep.x;
    const double height = kHeight - (sheets - 1) * kStep.y;
    Rect sheet = {std::floor((canvas.Width() - stacks * width - (stacks - 1) * kGap) / 2) + 0.5, 0, kWidth, kHeight};
    for (int stack = 0; stack < stacks; ++stack) {
        for (int i = sheets - 1; i >= 0; --i) {
            Rect place = sheet;
            place.x += i * kStep.x;
            place.y = std::floor((canvas.Height() + height) / 2) - 0.5 - kHeight + i * kStep.y;
            canvas.FillRect(place, kPaper);
            canvas.DrawEdge(place, kLine);
            DrawLetters(canvas, letters.substr(static_cast<size_t>(stack * sheets + i), 1),
                        {place.Right() - kStep.x / 2, place.y + 6.5}, 7, kAccent, 1.4);
        }
        sheet.x += width + kGap;
    }
}

}  // namespace

std::vector<Picture> PagePictures() {
    std::vector<Picture> pictures;
    const auto add = [&](const std::string& name, PictureKind kind, std::function<void(Canvas&)> draw) {
        pictures.push_back({name, kind, kSide, kSide, std::move(draw)});
    };
    for (const bool isLandscape : {false, true}) {
        const std::string orientation = OrientationName(isLandscape);
        for (const bool isDuplex : {false, true}) {
            const std::string sides = orientation + (isDuplex ? "_DUP" : "");
            for (const bool isRotated : {false, true}) {
                for (const char* letters : kLetters) {
                    add(sides + (isRotated ? "_R" : "_") + letters, PictureKind::kBitmap, [=](Canvas& canvas) {
                        DrawPages(canvas, {letters, isLandscape}, isDuplex, isRotated);
                    });
                }
            }
            for (const char* edge : {"LEFT", "TOP", "RIGHT", "BOTTOM"}) {
                const bool isBesideFold = edge == std::string_view("RIGHT") || edge == std::string_view("BOTTOM");
                if (!isDuplex || isBesideFold) {
                    add(sides + "_" + edge, PictureKind::kTransparentBitmap,
                        [=](Canvas& canvas) { DrawBinding(canvas, Sheet(isLandscape), edge, isDuplex); });
                }
            }
        }
        for (const int count : {2, 3, 4}) {
            const std::string side = std::to_string(count);
            add(orientation + "_P" + side + "X" + side, PictureKind::kBitmap,
                [=](Canvas& canvas) { DrawPoster(canvas, count, isLandscape); });
        }
    }
    pictures.push_back(
        {"BMP_COLLATED", PictureKind::kBitmap, kSide, 40, [](Canvas& canvas) { DrawCopies(canvas, "123123", 2); }});
    pictures.push_back(
        {"BMP_UNCOLLATE", PictureKind::kBitmap, kSide, 40, [](Canvas& canvas) { DrawCopies(canvas, "112233", 3); }});
    return pictures;
}

}  // namespace velmora
