// What pictures are drawn on, and the colours that they have in common.
#pragma once

#include <cairo.h>

#include <initializer_list>
#include <memory>
#include <vector>

namespace velmora {

struct Color {
    double red, green, blue;  // 0 to 1
};

// 0xRRGGBB.
constexpr Color FromRgb(unsigned rgb) {
    return {(rgb >> 16 & 255) / 255.0, (rgb >> 8 & 255) / 255.0, (rgb & 255) / 255.0};
}

constexpr Color kDialogFace = FromRgb(0xF0F0F0);
constexpr Color kAccent = FromRgb(0x2F7EC8);  // what a picture is about
constexpr Color kLine = FromRgb(0x5C6B7A);    // edges
constexpr Color kDark = FromRgb(0x4A5866);    // openings, handles
constexpr Color kPaper = FromRgb(0xFFFFFF);
constexpr Color kShadow = FromRgb(0xDDE1E5);  // on the ground
constexpr Color kFrame = FromRgb(0xC4CBD2);   // around a picture

struct Point {
    double x, y;  // pixels from the top left corner
};

// A bitmap in memory, 24 bits a pixel. Calls throw std::bad_alloc where there is no memory.
class Canvas {
  public:
    Canvas(int width, int height, Color background);

    int Width() const { return width_; }
    int Height() const { return height_; }
    // The colour of a pixel, 0xRRGGBB.
    unsigned Pixel(int x, int y) const;

    void FillPolygon(std::initializer_list<Point> corners, Color fill);
    // With an edge around, a pixel wide.
    void FillEdgedPolygon(std::initializer_list<Point> corners, Color fill, Color edge);
    // Around the whole picture, a pixel wide.
    void DrawFrame(Color color);
    void DrawLine(Point from, Point to, Color color, double width);

  private:
    struct Deleter {
        void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
        void operator()(cairo_t* context) const { cairo_destroy(context); }
    };

    void SetColor(Color color);
    void AddPolygon(std::initializer_list<Point> corners);

    int width_;
    int height_;
    std::unique_ptr<cairo_surface_t, Deleter> surface_;
    std::unique_ptr<cairo_t, Deleter> context_;
};

}  // namespace velmora
