// Pixels of a canvas: colours, filled rectangles, and Cairo for what isn't made of whole pixels.
#pragma once

#include <cairo.h>
#include <windows.h>

#include "platform/gdi/device_contexts.h"

namespace host {

inline constexpr uint32_t kColorBits = 0x00FFFFFF;

// 0x00BBGGRR to 0x00RRGGBB and back.
inline uint32_t SwapRedAndBlue(uint32_t color) {
    return ((color & 0xFF) << 16) | (color & 0xFF00) | ((color >> 16) & 0xFF);
}

// The surface's pixel for a colour: on a monochrome one black or white, whichever is nearer.
uint32_t PixelOf(const Surface& surface, COLORREF color);

// A rectangle of logical positions in the surface's pixels, with left <= right and top <= bottom.
RECT ToSurface(const Canvas& canvas, const RECT& rect);
POINT ToSurface(const Canvas& canvas, int x, int y);

// Positions in the surface's pixels, clipped.
void FillPixels(const Canvas& canvas, const RECT& rect, uint32_t pixel);
inline void SetOnePixel(const Canvas& canvas, POINT at, uint32_t pixel) {
    if (PtInRect(&canvas.clip, at)) {
        canvas.surface->Row(at.y)[at.x] = pixel;
    }
}
// The outline of the rectangle, one pixel wide and within it.
void FramePixels(const Canvas& canvas, const RECT& rect, uint32_t pixel);

// Cairo on a surface. Positions are the surface's pixels; what is antialiased on a monochrome one is not.
class Painter {
  public:
    Painter(Surface* surface, const RECT& clip);
    explicit Painter(const Canvas& canvas) : Painter(canvas.surface, canvas.clip) {}
    ~Painter();
    Painter(const Painter&) = delete;
    Painter& operator=(const Painter&) = delete;

    void SetPixelColor(uint32_t pixel);
    operator cairo_t*() const { return cairo_; }

  private:
    cairo_surface_t* surface_;
    cairo_t* cairo_;
};

}  // namespace host
