#include "platform/gdi/system_icons.h"

#include <cairo.h>

#include <numbers>

namespace host {
namespace {

// Everything is drawn in a square of this side and scaled.
constexpr double kSide = 32;
constexpr double kFullTurn = 2 * std::numbers::pi;

void SetColor(cairo_t* cairo, uint32_t color) {
    cairo_set_source_rgb(cairo, ((color >> 16) & 0xFF) / 255.0, ((color >> 8) & 0xFF) / 255.0, (color & 0xFF) / 255.0);
}

void Circle(cairo_t* cairo) {
    cairo_arc(cairo, 16, 16, 14, 0, kFullTurn);
    cairo_fill(cairo);
}

void Triangle(cairo_t* cairo) {
    cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_width(cairo, 3);
    cairo_move_to(cairo, 16, 4);
    cairo_line_to(cairo, 29, 27);
    cairo_line_to(cairo, 3, 27);
    cairo_close_path(cairo);
    cairo_fill_preserve(cairo);
    cairo_stroke(cairo);
}

void Window(cairo_t* cairo) {
    cairo_rectangle(cairo, 3, 5, 26, 22);
    cairo_fill(cairo);
}

void Line(cairo_t* cairo, double x1, double y1, double x2, double y2) {
    cairo_move_to(cairo, x1, y1);
    cairo_line_to(cairo, x2, y2);
    cairo_stroke(cairo);
}

void Dot(cairo_t* cairo, double x, double y) {
    cairo_arc(cairo, x, y, 1.8, 0, kFullTurn);
    cairo_fill(cairo);
}

void Cross(cairo_t* cairo) {
    Line(cairo, 11, 11, 21, 21);
    Line(cairo, 21, 11, 11, 21);
}

void QuestionMark(cairo_t* cairo) {
    cairo_arc(cairo, 16, 12.5, 4, std::numbers::pi, kFullTurn + 0.8);
    cairo_line_to(cairo, 16, 18.5);
    cairo_stroke(cairo);
    Dot(cairo, 16, 23);
}

void ExclamationMark(cairo_t* cairo) {
    Line(cairo, 16, 11, 16, 19);
    Dot(cairo, 16, 23.5);
}

void LetterI(cairo_t* cairo) {
    Dot(cairo, 16, 9.5);
    Line(cairo, 16, 15, 16, 23);
}

void WindowContents(cairo_t* cairo) {
    cairo_rectangle(cairo, 5, 10, 22, 15);
    cairo_fill(cairo);
}

struct SystemIcon {
    LPCWSTR id;
    uint32_t shapeColor;
    void (*shape)(cairo_t*);
    uint32_t signColor;
    void (*sign)(cairo_t*);
};

const SystemIcon kIcons[] = {
    {IDI_APPLICATION, 0x3A6EA5, Window, 0xFFFFFF, WindowContents},
    {IDI_ERROR, 0xD13438, Circle, 0xFFFFFF, Cross},
    {IDI_QUESTION, 0x0078D7, Circle, 0xFFFFFF, QuestionMark},
    {IDI_WARNING, 0xFFC83D, Triangle, 0x000000, ExclamationMark},
    {IDI_INFORMATION, 0x0078D7, Circle, 0xFFFFFF, LetterI},
};

void Draw(const SystemIcon& icon, Picture* picture) {
    cairo_surface_t* const surface =
        cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(picture->pixels.data()),
                                            CAIRO_FORMAT_ARGB32, picture->width, picture->height, picture->width * 4);
    cairo_t* const cairo = cairo_create(surface);
    cairo_scale(cairo, picture->width / kSide, picture->height / kSide);
    SetColor(cairo, icon.shapeColor);
    icon.shape(cairo);
    SetColor(cairo, icon.signColor);
    cairo_set_line_width(cairo, 3);
    cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
    icon.sign(cairo);
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);
}

}  // namespace

std::optional<Picture> DrawSystemIcon(WORD id, int width, int height) {
    for (const SystemIcon& icon : kIcons) {
        if (icon.id == MAKEINTRESOURCEW(id)) {
            Picture picture = {width, height,
                               std::vector<uint32_t>(static_cast<size_t>(width) * static_cast<size_t>(height))};
            Draw(icon, &picture);
            return picture;
        }
    }
    return std::nullopt;
}

}  // namespace host
