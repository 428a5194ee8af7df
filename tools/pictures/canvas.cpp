#include "tools/pictures/canvas.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <new>
#include <sstream>
#include <string>

namespace velmora {
namespace {

constexpr int kAlphaShift = 24;

uint32_t ToPixel(Color color) {
    const auto byte = [](double share) { return static_cast<uint32_t>(std::lround(share * 255)); };
    return 255U << kAlphaShift | byte(color.red) << 16 | byte(color.green) << 8 | byte(color.blue);
}

}  // namespace

Canvas::Canvas(int width, int height)
    : width_(width),
      height_(height),
      surface_(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height)),
      context_(cairo_create(surface_.get())) {
    if (cairo_status(context_.get()) != CAIRO_STATUS_SUCCESS) {
        throw std::bad_alloc();
    }
    cairo_set_line_join(context_.get(), CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_cap(context_.get(), CAIRO_LINE_CAP_ROUND);
}

unsigned Canvas::Pixel(int x, int y) const {
    const unsigned alpha = Alpha(x, y);
    if (alpha == 0) {
        return 0;
    }
    uint32_t pixel;
    memcpy(&pixel, Address(x, y), sizeof(pixel));
    unsigned color = 0;
    for (int shift = 0; shift < kAlphaShift; shift += 8) {
        color |= ((pixel >> shift & 255) * 255 + alpha / 2) / alpha << shift;
    }
    return color;
}

unsigned Canvas::Alpha(int x, int y) const {
    uint32_t pixel;
    memcpy(&pixel, Address(x, y), sizeof(pixel));
    return pixel >> kAlphaShift;
}

void Canvas::SetPixel(int x, int y, Color color) {
    const uint32_t pixel = ToPixel(color);
    memcpy(Address(x, y), &pixel, sizeof(pixel));
    cairo_surface_mark_dirty(surface_.get());
}

void Canvas::ReplaceColor(Color color, Color by) {
    const uint32_t replaced = ToPixel(color);
    for (int y = 0; y < height_; ++y) {
        for (int x = 0; x < width_; ++x) {
            if (memcmp(Address(x, y), &replaced, sizeof(replaced)) == 0) {
                SetPixel(x, y, by);
            }
        }
    }
}

void Canvas::Fill(Color color) {
    SetColor(color);
    cairo_paint(context_.get());
}

void Canvas::FillRect(const Rect& rect, Color fill) {
    cairo_rectangle(context_.get(), rect.x, rect.y, rect.width, rect.height);
    SetColor(fill);
    cairo_fill(context_.get());
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
    DrawEdge({0.5, 0.5, width_ - 1.0, height_ - 1.0}, color);
}

void Canvas::DrawEdge(const Rect& rect, Color color) {
    cairo_rectangle(context_.get(), rect.x, rect.y, rect.width, rect.height);
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

void Canvas::DrawPath(std::string_view path, Point origin, double scale, Color color, double width) {
    AddPath(path, origin, scale);
    SetColor(color);
    cairo_set_line_width(context_.get(), width);
    cairo_stroke(context_.get());
}

void Canvas::FillPath(std::string_view path, Point origin, double scale, Color fill) {
    AddPath(path, origin, scale);
    SetColor(fill);
    cairo_fill(context_.get());
}

unsigned char* Canvas::Address(int x, int y) const {
    cairo_surface_flush(surface_.get());
    return cairo_image_surface_get_data(surface_.get()) + y * cairo_image_surface_get_stride(surface_.get()) +
           x * static_cast<int>(sizeof(uint32_t));
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

void Canvas::AddPath(std::string_view path, Point origin, double scale) {
    std::istringstream steps{std::string(path)};
    const auto take = [&]() -> Point {
        Point point = {};
        steps >> point.x >> point.y;
        return {origin.x + point.x * scale, origin.y + point.y * scale};
    };
    for (char step; steps >> step;) {
        const Point first = take();
        if (step == 'M') {
            cairo_move_to(context_.get(), first.x, first.y);
        } else if (step == 'L') {
            cairo_line_to(context_.get(), first.x, first.y);
        } else {
            const Point second = take();
            const Point end = take();
            cairo_curve_to(context_.get(), first.x, first.y, second.x, second.y, end.x, end.y);
        }
    }
}

}  // namespace velmora
