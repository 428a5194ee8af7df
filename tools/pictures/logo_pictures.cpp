// The maker's logo. What is white in it is a little less than that: white itself isn't drawn.
#include "tools/pictures/letters.h"
#include "tools/pictures/picture.h"

namespace velmora {
namespace {

constexpr Color kAlmostWhite = FromRgb(0xFEFEFE);

// A sheet with a V on it, and the name.
void DrawLogo(Canvas& canvas) {
    canvas.FillPath(
        "M 12 4 L 36 4 C 40.4 4 44 7.6 44 12 L 44 36 C 44 40.4 40.4 44 36 44 L 12 44 C 7.6 44 4 40.4 4 36 "
        "L 4 12 C 4 7.6 7.6 4 12 4",
        {0, 0}, 1, kAccent);
    canvas.FillPath("M 26 4 L 36 4 C 40.4 4 44 7.6 44 12 L 44 22", {0, 0}, 1, kAccentLight);
    DrawLetters(canvas, "V", {23, 26}, 18, kAlmostWhite, 4.5);
    DrawLetters(canvas, "VELMORA", {124, 24}, 18, kDark, 3);
}

}  // namespace

std::vector<Picture> LogoPictures() {
    return {{"ABOUT_LOGO", PictureKind::kTransparentBitmap, 200, 48, DrawLogo}};
}

}  // namespace velmora
