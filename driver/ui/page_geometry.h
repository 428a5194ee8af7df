// Where the watermark's preview draws what: arithmetic alone. Papers are in 0.01 mm, angles in 0.1 degree; places are
// in the units of the rectangle that they are found in, y grows downwards.
#pragma once

#include <windows.h>

#include <cstdint>

namespace velmora {

// Sines and cosines are in 1/10000. Any angle may be asked for.
int32_t SineOf(int32_t angle);
int32_t CosineOf(int32_t angle);

// A point turned about (0, 0).
POINT RotatePoint(POINT point, int32_t angle);

// The paper as it is previewed: in its own ratio, no side longer than 355.60 mm, none empty.
SIZE LimitPaper(SIZE paper);

// The square in the middle of an area.
RECT SquareIn(const RECT& area);

// The place of a sheet of this ratio in the middle of an area, as large as it can be.
RECT FitInto(SIZE sheet, const RECT& area);

// The pages of a sheet, without gaps.
struct PageGrid {
    int columns;
    int rows;
};
PageGrid GridOf(uint32_t pagesPerSheet, bool isLandscape);
RECT CellOf(const RECT& sheet, const PageGrid& grid, int column, int row);

// How large a page is drawn: as many of its points (1/72 inch) as pixels, both at least 1.
struct PageScale {
    int points;
    int pixels;
};

// That of a page in its cell. `sheet` is the limited paper as it is turned; two pages lie across it.
PageScale ScaleOf(SIZE sheet, const PageGrid& grid, const RECT& cell);

// The page that fills a cell, in points from its upper left corner.
RECT PageIn(const RECT& cell, const PageScale& scale);

// The box of the page's label at the upper left of a sheet, and the mark at its lower right, which gives way to it.
// `paper` is limited. Pixels.
RECT LabelBox(const RECT& sheet, SIZE paper);
RECT MarkBox(const RECT& sheet, SIZE paper, const RECT& label);

// Where the middle of a text's baseline lies on a page. `placement` is the watermark's, `text` the text's extent as if
// it weren't turned. `offset`, which RotatePoint has turned, is added; it is all that other placements than 0 and 2 to
// 9 have.
POINT PlaceText(uint16_t placement, const RECT& page, SIZE text, POINT offset);

}  // namespace velmora
