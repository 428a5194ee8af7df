// What pictures are drawn on, and the colours that they have in common.
#pragma once

#include <cairo.h>

#include <initializer_list>
#include <memory>
#include <string_view>

namespace velmora {

struct Color {
    double red, green, blue;  // 0 to 1
};

// 0xRRGGBB.
constexpr Color FromRgb(unsigned rgb) {
    return {(rgb >> 16 & 255) / 255.0, (rgb >> 8 & 255) / 255.0, (rgb & 255) / 255.0};
}

// From one colour (share 0) to another (share 1).
constexpr Color Mix(const Color& from, const Color& to, double share) {
    return {from.red + (to.red - from.red) * share, from.green + (to.green - from.green) * share,
            from.blue + (to.blue - from.blue) * share};
}

constexpr Color kDialogFace = FromRgb(0xF0F0F0);
constexpr Color kAccent = FromRgb(0x2F7EC8);       // what a picture is about
constexpr Color kAccentLight = FromRgb(0xA9CBEA);  // a face of what it is about
constexpr Color kLine = FromRgb(0x5C6B7A);         // edges
constexpr Color kDark = FromRgb(0x4A5866);         // openings, handles
constexpr Color kPaper = FromRgb(0xFFFFFF);
constexpr Color kShadow = FromRgb(0xDDE1E5);  // on the ground
constexpr Color kFrame = FromRgb(0xC4CBD2);   // around a picture

struct Point {
    double x, y;  // pixels from the top left corner
};

struct Rect {
    double x, y, width, height;

    double Right() const { return x + width; }
    double Bottom() const { return y + height; }
    Point Center() const { return {x + width / 2, y + height / 2}; }
};

// A picture in memory, transparent at first. Calls throw std::bad_alloc where there is no memory.
class Canvas {
  public:
    Canvas(int width, int height);

    int Width() const { return width_; }
    int Height() const { return height_; }
    // The colour of a pixel, 0xRRGGBB, and how much of it there is, 0 to 255.
    unsigned Pixel(int x, int y) const;
    unsigned Alpha(int x, int y) const;
    void SetPixel(int x, int y, Color color);
    void ReplaceColor(Color color, Color by);

    void Fill(Color color);
    void FillRect(const Rect& rect, Color fill);
    void FillPolygon(std::initializer_list<Point> corners, Color fill);
    // With an edge around, a pixel wide.
    void FillEdgedPolygon(std::initializer_list<Point> corners, Color fill, Color edge);
    // Around the whole picture, a pixel wide.
    void DrawFrame(Color color);
    void DrawEdge(const Rect& rect, Color color);
    void DrawLine(Point from, Point to, Color color, double width);
    // A line of "M x y", "L x y" and "C x y x y x y", as in vector pictures: to, straight to, and on a cubic curve to.
    // It is moved to `origin` once it is scaled; the width isn't.
    void DrawPath(std::string_view path, Point origin, double scale, Color color, double width);
    // As DrawPath.
    void FillPath(std::string_view path, Point origin, double scale, Color fill);

    // For what the calls above don't draw.
    cairo_t* Context() { return context_.get(); }

  private:
    struct Deleter {
        void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
        void operator()(cairo_t* context) const { cairo_destroy(context); }
    };

    unsigned char* Address(int x, int y) const;
    void SetColor(Color color);
    void AddPolygon(std::initializer_list<Point> corners);
    void AddPath(std::string_view path, Point origin, double scale);

    int width_;
    int height_;
    std::unique_ptr<cairo_surface_t, Deleter> surface_;
    std::unique_ptr<cairo_t, Deleter> context_;
};

}  // namespace velmora
