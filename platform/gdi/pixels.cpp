#include "platform/gdi/pixels.h"

#include <algorithm>
#include <cmath>

namespace host {

uint32_t PixelOf(const Surface& surface, COLORREF color) {
    if (!surface.monochrome) {
        return SwapRedAndBlue(color);
    }
    const int lightness = (299 * GetRValue(color) + 587 * GetGValue(color) + 114 * GetBValue(color)) / 1000;
    return lightness >= 128 ? kColorBits : 0;
}

RECT ToSurface(const Canvas& canvas, const RECT& rect) {
    const POINT first = ToSurface(canvas, rect.left, rect.top);
    const POINT second = ToSurface(canvas, rect.right, rect.bottom);
    return {std::min(first.x, second.x), std::min(first.y, second.y), std::max(first.x, second.x),
            std::max(first.y, second.y)};
}

POINT ToSurface(const Canvas& canvas, int x, int y) {
    const auto inPixels = [&](int length) {
        return canvas.scale == 1 ? length : static_cast<LONG>(std::lround(length * canvas.scale));
    };
    return {inPixels(x) + canvas.origin.x, inPixels(y) + canvas.origin.y};
}

void FillPixels(const Canvas& canvas, const RECT& rect, uint32_t pixel) {
    RECT visible;
    if (!IntersectRect(&visible, &rect, &canvas.clip)) {
        return;
    }
    for (int y = visible.top; y < visible.bottom; ++y) {
        uint32_t* const row = canvas.surface->Row(y);
        std::fill(row + visible.left, row + visible.right, pixel);
    }
}

void FramePixels(const Canvas& canvas, const RECT& rect, uint32_t pixel) {
    FillPixels(canvas, {rect.left, rect.top, rect.right, rect.top + 1}, pixel);
    FillPixels(canvas, {rect.left, rect.bottom - 1, rect.right, rect.bottom}, pixel);
    FillPixels(canvas, {rect.left, rect.top, rect.left + 1, rect.bottom}, pixel);
    FillPixels(canvas, {rect.right - 1, rect.top, rect.right, rect.bottom}, pixel);
}

Painter::Painter(Surface* surface, const RECT& clip)
    : surface_(cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(surface->Row(0)),
                                                   CAIRO_FORMAT_RGB24, surface->width, surface->height,
                                                   surface->Stride())),
      cairo_(cairo_create(surface_)) {
    cairo_rectangle(cairo_, clip.left, clip.top, clip.right - clip.left, clip.bottom - clip.top);
    cairo_clip(cairo_);
    cairo_set_antialias(cairo_, surface->monochrome ? CAIRO_ANTIALIAS_NONE : CAIRO_ANTIALIAS_GRAY);
}

Painter::~Painter() {
    cairo_destroy(cairo_);
    cairo_surface_destroy(surface_);
}

void Painter::SetPixelColor(uint32_t pixel) {
    cairo_set_source_rgb(cairo_, ((pixel >> 16) & 0xFF) / 255.0, ((pixel >> 8) & 0xFF) / 255.0, (pixel & 0xFF) / 255.0);
}

}  // namespace host
