#include "tools/pictures/letters.h"

#include <map>

namespace velmora {
namespace {

constexpr double kHeight = 10;
constexpr double kGap = 2.8;  // between letters

struct Letter {
    double width;
    const char* path;  // as Canvas::DrawPath has it, from the top left corner
};

const std::map<char, Letter>& Letters() {
    static const std::map<char, Letter> letters = {
        {'1', {3, "M 0.2 2.2 L 3 0 L 3 10"}},
        {'2', {6.2, "M 0.3 2.4 C 0.8 -0.8 6.2 -0.8 6 2.7 C 5.8 5 1.5 7 0 10 L 6.2 10"}},
        {'3',
         {6.4,
          "M 0.3 1.5 C 1.8 -0.7 6 -0.4 6 2.4 C 6 4.2 4.4 4.7 2.6 4.7 C 4.6 4.7 6.4 5.2 6.4 7.3 "
          "C 6.4 10.6 1.6 10.7 0 8.4"}},
        {'A', {8, "M 0 10 L 4 0 L 8 10 M 1.4 6.6 L 6.6 6.6"}},
        {'B', {6.6, "M 0 4.7 L 3.5 4.7 C 7.6 4.7 7.6 10 3.5 10 L 0 10 L 0 0 L 3.2 0 C 6.8 0 6.8 4.7 3.2 4.7"}},
        {'C', {7.8, "M 7.8 2.2 C 5.9 -0.9 0 -0.9 0 5 C 0 10.9 5.9 10.9 7.8 7.8"}},
        {'D', {7.4, "M 0 0 L 3 0 C 8.9 0 8.9 10 3 10 L 0 10 L 0 0"}},
        {'E', {5.6, "M 5.6 0 L 0 0 L 0 10 L 5.6 10 M 0 4.8 L 4.8 4.8"}},
        {'L', {5.4, "M 0 0 L 0 10 L 5.4 10"}},
        {'M', {9, "M 0 10 L 0 0 L 4.5 6.6 L 9 0 L 9 10"}},
        {'O', {9.4, "M 4.7 0 C -1.5 0 -1.5 10 4.7 10 C 10.9 10 10.9 0 4.7 0"}},
        {'R', {6.6, "M 0 10 L 0 0 L 3.4 0 C 7.2 0 7.2 5.2 3.4 5.2 L 0 5.2 M 3.2 5.2 L 6.6 10"}},
        {'V', {8, "M 0 0 L 4 10 L 8 0"}},
    };
    return letters;
}

}  // namespace

double LettersWidth(std::string_view letters, double height) {
    double width = -kGap;
    for (const char letter : letters) {
        width += Letters().at(letter).width + kGap;
    }
    return width * height / kHeight;
}

void DrawLetters(Canvas& canvas, std::string_view letters, Point center, double height, Color color, double lineWidth) {
    const double scale = height / kHeight;
    Point corner = {center.x - LettersWidth(letters, height) / 2, center.y - height / 2};
    for (const char letter : letters) {
        const Letter& shape = Letters().at(letter);
        canvas.DrawPath(shape.path, corner, scale, color, lineWidth);
        corner.x += (shape.width + kGap) * scale;
    }
}

}  // namespace velmora
