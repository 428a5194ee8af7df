#include "tools/pictures/canvas.h"

#include <cstdint>
#include <cstring>
#include <new>

namespace velmora {

Canvas::Canvas(int width, int height, Color background)
    : width_(width),
      height_(height),
      surface_(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height)),
      context_(cairo_create(surface_.get())) {
    if (cairo_status(context_.get()) != CAIRO_STATUS_SUCCESS) {
        throw std::bad_alloc();
    }
    cairo_set_line_join(context_.get(), CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_cap(context_.get(), CAIRO_LINE_CAP_ROUND);
    SetColor(background);
    cairo_paint(context_.get());
}

unsigned Canvas::Pixel(int x, int y) const {
    cairo_surface_flush(surface_.get());
    const unsigned char* row =
        cairo_image_surface_get_data(surface_.get()) + y * cairo_image_surface_get_stride(surface_.get());
    uint32_t pixel;
    memcpy(&pixel, row + x * sizeof(pixel), sizeof(pixel));
    return pixel & 0xFFFFFF;
}

void Canvas::FillPolygon(std::initializer_list<Point> corners, Color fill) {
    AddPolygon(corners);
    SetColor(fill);
    cairo_fill(context_.get());
}

void Canvas::FillEdgedPolygon(std::initializer_list<Point> corners, Color fill, Color edge) {
    FillPolygon(corners, fill);
    AddPolygon(corners);
    SetColor(edge);
    cairo_set_line_width(context_.get(), 1);
    cairo_stroke(context_.get());
}

void Canvas::DrawFrame(Color color) {
    cairo_rectangle(context_.get(), 0.5, 0.5, width_ - 1, height_ - 1);
    SetColor(color);
    cairo_set_line_width(context_.get(), 1);
    cairo_stroke(context_.get());
}

void Canvas::DrawLine(Point from, Point to, Color color, double width) {
    cairo_move_to(context_.get(), from.x, from.y);
    cairo_line_to(context_.get(), to.x, to.y);
    SetColor(color);
    cairo_set_line_width(context_.get(), width);
    cairo_stroke(context_.get());
}

void Canvas::SetColor(Color color) {
    cairo_set_source_rgb(context_.get(), color.red, color.green, color.blue);
}

void Canvas::AddPolygon(std::initializer_list<Point> corners) {
    for (const Point& corner : corners) {
        cairo_line_to(context_.get(), corner.x, corner.y);
    }
    cairo_close_path(context_.get());
}

}  // namespace velmora
