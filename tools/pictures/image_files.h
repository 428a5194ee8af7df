// Bitmap files (.BMP) and icon files (.ICO), rows from the bottom up.
#pragma once

#include <string>

#include "tools/pictures/canvas.h"

namespace velmora {

// 8 bits a pixel where a palette holds the picture's colours, else 24.
std::string EncodeBitmap(const Canvas& canvas);

// One image of 32 bits a pixel, and the mask of what isn't drawn. A side is at most 255 pixels.
std::string EncodeIcon(const Canvas& canvas);

}  // namespace velmora
