// The pictures of the image module.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/pictures/canvas.h"

namespace velmora {

struct Picture {
    std::string name;  // of the bitmap in the module, upper case as modules have names
    int width;         // pixels
    int height;
    Color background;
    std::function<void(Canvas&)> draw;
};

// The printer with and without its options.
std::vector<Picture> PrinterPictures();

}  // namespace velmora
