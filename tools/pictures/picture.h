// The pictures that the build draws, by the resources' names, which are upper case as modules have names.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/pictures/canvas.h"

namespace velmora {

enum class PictureKind {
    kBitmap,             // on the dialog's face
    kTransparentBitmap,  // drawn on the dialog's face, whose pixels become white: the driver leaves white out
    kIcon,
};

struct Picture {
    std::string name;
    PictureKind kind;
    int width;  // pixels
    int height;
    std::function<void(Canvas&)> draw;
};

// Of the image module.

// The printer with and without its options.
std::vector<Picture> PrinterPictures();
// How pages lie on the sheet, for every layout, the edges where it is bound, and how copies are sorted.
std::vector<Picture> PagePictures();
// The orders of pages on a sheet, and how paper is fed.
std::vector<Picture> PageIcons();
// What the colour adjustments' scales run over, and the process colours.
std::vector<Picture> ColorPictures();
// Scenes to try colour adjustments on.
std::vector<Picture> SamplePictures();

// Of the language modules: the maker's logo.
std::vector<Picture> LogoPictures();

}  // namespace velmora
