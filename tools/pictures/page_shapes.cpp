#include "tools/pictures/page_shapes.h"

#include <cmath>

namespace velmora {
namespace {

// Where an edge a pixel wide fills whole pixels.
double Snap(double place) {
    return std::floor(place) + 0.5;
}

}  // namespace

Rect PlaceSheet(double side, double length, bool isLandscape) {
    const double breadth = std::round(length / std::sqrt(2));
    const double width = isLandscape ? length : breadth;
    const double height = isLandscape ? breadth : length;
    return {Snap((side - 1 - width) / 2), Snap((side - 1 - height) / 2), width, height};
}

int PageGrid::Columns() const {
    return letters.size() == 4 || (letters.size() == 2 && !areLandscape) ? 2 : 1;
}

Rect PageGrid::Cell(const Rect& sheet, int index) const {
    const double width = sheet.width / Columns();
    const double height = sheet.height / Rows();
    const double x = Snap(sheet.x + index % Columns() * width);
    const double y = Snap(sheet.y + index / Columns() * height);
    return {x, y, Snap(sheet.x + (index % Columns() + 1) * width) - x,
            Snap(sheet.y + (index / Columns() + 1) * height) - y};
}

}  // namespace velmora
