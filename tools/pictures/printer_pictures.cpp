// The printer, seen from the front and a little from its right and from above, made of boxes.
#include "tools/pictures/picture.h"

namespace velmora {
namespace {

// The size of the device page's picture, 144 x 100 dialog units, at 96 dpi.
constexpr int kWidth = 216;
constexpr int kHeight = 162;

constexpr double kTrayHeight = 22;
constexpr double kGap = 1;  // between parts that lie on each other

// A point of the printer: to the right, up, and away from the viewer; in pixels where nothing is foreshortened. The
// origin is the corner on the ground at the front, on the left.
struct Place {
    double x, y, z;
};

Point Project(Place place) {
    return {32 + place.x + place.z * 0.5, 148 - place.y - place.z * 0.32};
}

struct Shade {
    Color front, side, top;
};

constexpr Shade kCase = {FromRgb(0xD3DBE3), FromRgb(0xA9B6C3), FromRgb(0xE6EBF0)};
constexpr Shade kTray = {FromRgb(0xBFCAD5), FromRgb(0x97A6B5), FromRgb(0xD3DBE3)};
constexpr Shade kOption = {kAccentLight, FromRgb(0x7FB0DD), FromRgb(0xC8DFF3)};  // what was added to the printer

struct Box {
    Place corner;  // the one on the ground at the front, on the left
    double width, height, depth;
};

void DrawBox(Canvas& canvas, const Box& box, const Shade& shade) {
    const auto at = [&](double right, double up, double back) {
        return Project(
            {box.corner.x + right * box.width, box.corner.y + up * box.height, box.corner.z + back * box.depth});
    };
    canvas.FillEdgedPolygon({at(1, 0, 0), at(1, 1, 0), at(1, 1, 1), at(1, 0, 1)}, shade.side, kLine);
    canvas.FillEdgedPolygon({at(0, 1, 0), at(1, 1, 0), at(1, 1, 1), at(0, 1, 1)}, shade.top, kLine);
    canvas.FillEdgedPolygon({at(0, 0, 0), at(1, 0, 0), at(1, 1, 0), at(0, 1, 0)}, shade.front, kLine);
}

// A rectangle on a box's front.
void DrawOnFront(Canvas& canvas, Place corner, double width, double height, Color color) {
    canvas.FillPolygon(
        {Project(corner), Project({corner.x + width, corner.y, corner.z}),
         Project({corner.x + width, corner.y + height, corner.z}), Project({corner.x, corner.y + height, corner.z})},
        color);
}

// A rectangle that lies flat.
void DrawFlat(Canvas& canvas, Place corner, double width, double depth, Color color, Color edge) {
    canvas.FillEdgedPolygon(
        {Project(corner), Project({corner.x + width, corner.y, corner.z}),
         Project({corner.x + width, corner.y, corner.z + depth}), Project({corner.x, corner.y, corner.z + depth})},
        color, edge);
}

void DrawTray(Canvas& canvas, double bottom, const Shade& shade) {
    DrawBox(canvas, {{0, bottom, 0}, 104, kTrayHeight - kGap, 84}, shade);
    DrawOnFront(canvas, {38, bottom + 7, 0}, 28, 6, kDark);
}

void DrawPrinter(Canvas& canvas, bool secondTray, bool duplexUnit) {
    // Pages of sheets are white where windows have themes: there the picture is seen to be one.
    canvas.DrawFrame(kFrame);
    DrawFlat(canvas, {-4, 0, -6}, 116, duplexUnit ? 132 : 104, kShadow, kShadow);
    const double body = secondTray ? 2 * kTrayHeight : kTrayHeight;
    // From the back to the front.
    if (duplexUnit) {
        DrawBox(canvas, {{4, body - 8, 84 + kGap}, 100, 44, 28}, kOption);
    }
    if (secondTray) {
        DrawTray(canvas, 0, kOption);
    }
    DrawTray(canvas, body - kTrayHeight, kTray);
    DrawBox(canvas, {{0, body, 0}, 104, 44, 84}, kCase);
    DrawOnFront(canvas, {8, body + 10, 0}, 56, 4, kDark);
    DrawOnFront(canvas, {74, body + 8, 0}, 22, 14, kDark);
    DrawOnFront(canvas, {76, body + 12, 0}, 18, 8, kAccent);
    // Where sheets come out, and a printed one.
    const double top = body + 44;
    DrawFlat(canvas, {12, top, 12}, 80, 58, kDark, kLine);
    DrawFlat(canvas, {20, top + 4, 8}, 64, 56, kPaper, kLine);
    for (const double z : {22.0, 32.0, 42.0, 52.0}) {
        canvas.DrawLine(Project({30, top + 4, z}), Project({z > 50 ? 54.0 : 74.0, top + 4, z}), kShadow, 2);
    }
}

}  // namespace

std::vector<Picture> PrinterPictures() {
    const auto picture = [](const char* name, bool secondTray, bool duplexUnit) -> Picture {
        return {name, PictureKind::kBitmap, kWidth, kHeight,
                [=](Canvas& canvas) { DrawPrinter(canvas, secondTray, duplexUnit); }};
    };
    return {
        picture("IDB_TRAY1A", false, false),
        picture("IDB_TRAY2A", true, false),
        picture("IDB_DUP1A", false, true),
        picture("IDB_DUP2A", true, true),
    };
}

}  // namespace velmora
