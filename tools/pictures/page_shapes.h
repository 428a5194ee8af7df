// Sheets and the pages on them.
#pragma once

#include <string_view>

#include "tools/pictures/canvas.h"

namespace velmora {

// The place of a sheet of about A4's proportions in the middle of a square picture, its edges on whole pixels. `length`
// is the longer side's.
Rect PlaceSheet(double side, double length, bool isLandscape);

// Pages in the cells of a sheet, which are named in rows from the top, a letter each: one, two or four. Two pages lie
// on a sheet that is turned, so that they keep their shape.
struct PageGrid {
    std::string_view letters;
    bool areLandscape;  // the pages

    bool IsSheetLandscape() const { return letters.size() == 2 ? !areLandscape : areLandscape; }
    int Columns() const;
    int Rows() const { return static_cast<int>(letters.size()) / Columns(); }
    // Of the page with this index in the letters, its edges on whole pixels.
    Rect Cell(const Rect& sheet, int index) const;
};

}  // namespace velmora
