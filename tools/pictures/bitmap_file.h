// Bitmap files (.BMP): 24 bits a pixel, rows from the bottom up.
#pragma once

#include <string>

#include "tools/pictures/canvas.h"

namespace velmora {

std::string EncodeBitmap(const Canvas& canvas);

}  // namespace velmora
