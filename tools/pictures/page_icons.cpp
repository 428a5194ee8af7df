// Icons of the Paper page's dialogs.
#include "tools/pictures/letters.h"
#include "tools/pictures/page_shapes.h"
#include "tools/pictures/picture.h"

namespace velmora {
namespace {

constexpr int kSide = 32;

// An order's name tells the place of each page, its cells counted in rows; the letters tell the page in each cell. Both
// are the same but for the last one.
constexpr struct {
    const char* name;
    const char* letters;
} kOrders[] = {{"AB", "AB"}, {"BA", "BA"}, {"ABCD", "ABCD"}, {"ACBD", "ACBD"}, {"BADC", "BADC"}, {"BDAC", "CADB"}};

// On white, or as selected: white on the highlight's colour.
void DrawOrder(Canvas& canvas, const PageGrid& grid, bool isSelected) {
    const Rect sheet = PlaceSheet(kSide, kSide - 1, grid.IsSheetLandscape());
    const Color edge = isSelected ? kPaper : kLine;
    if (!isSelected) {
        canvas.FillRect(sheet, kPaper);
    }
    for (size_t i = 0; i < grid.letters.size(); ++i) {
        const Rect cell = grid.Cell(sheet, static_cast<int>(i));
        canvas.DrawEdge(cell, edge);
        const double height = grid.letters.size() == 2 ? 9 : 7;
        DrawLetters(canvas, grid.letters.substr(i, 1), cell.Center(), height, isSelected ? kPaper : kAccent,
                    isSelected ? 1.5 : 1.6);
    }
}

// The sheet below the slot that it goes into, and which way.
void DrawFeed(Canvas& canvas, bool isLandscape) {
    constexpr double kTop = 5;
    const double width = isLandscape ? 25 : 18;
    const double height = isLandscape ? 18 : 25;
    const double middle = kSide / 2.0;
    canvas.FillRect({0, 1, kSide, kTop}, kDark);
    const Rect sheet = {middle - width / 2 + (isLandscape ? 0 : 0.5), kTop + 0.5, width - (isLandscape ? 0 : 1),
                        height};
    canvas.FillRect(sheet, kPaper);
    canvas.DrawEdge(sheet, kLine);
    const double top = kTop + 4;
    const double bottom = sheet.Bottom() - 4;
    canvas.DrawLine({middle, bottom}, {middle, top + 3}, kAccent, 2.5);
    canvas.FillPolygon({{middle, top - 1}, {middle + 5, top + 5}, {middle - 5, top + 5}}, kAccent);
}

}  // namespace

std::vector<Picture> PageIcons() {
    std::vector<Picture> icons;
    for (const bool isLandscape : {false, true}) {
        const std::string orientation = isLandscape ? "LAND" : "PORT";
        for (const bool isSelected : {false, true}) {
            for (const auto& order : kOrders) {
                icons.push_back({(isSelected ? "ICO_SEL_" : "ICO_") + orientation + "_" + order.name,
                                 PictureKind::kIcon, kSide, kSide, [=](Canvas& canvas) {
                                     DrawOrder(canvas, {order.letters, isLandscape}, isSelected);
                                 }});
            }
        }
        icons.push_back({isLandscape ? "ICO_LANDSCAPE_FEED" : "ICO_PORTRAIT_FEED", PictureKind::kIcon, kSide, kSide,
                         [=](Canvas& canvas) { DrawFeed(canvas, isLandscape); }});
    }
    return icons;
}

}  // namespace velmora
