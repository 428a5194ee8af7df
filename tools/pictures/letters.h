// Letters of lines, so that pictures need no fonts.
#pragma once

#include <string_view>

#include "tools/pictures/canvas.h"

namespace velmora {

// The width of what DrawLetters draws at a height, in pixels, without that of its lines.
double LettersWidth(std::string_view letters, double height);

// Draws letters of those that pictures have (see the table in letters.cpp) around a point. Throws std::out_of_range for
// another letter.
void DrawLetters(Canvas& canvas, std::string_view letters, Point center, double height, Color color, double lineWidth);

}  // namespace velmora
