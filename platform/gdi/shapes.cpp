// Lines, rectangles and what is filled. Lines and straight edges cover whole pixels; round edges are antialiased.
#include <windows.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <optional>
#include <string>

#include "platform/gdi/pixels.h"
#include "platform/gdi/system_colors.h"
#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"

namespace host {
namespace {

// Pixels drawn and left out by turns.
constexpr struct {
    int style;
    int drawn;
    int left;
} kBrokenLines[] = {{PS_DASH, 18, 6}, {PS_DOT, 3, 3}};

// A brush's handle, or a system colour's index plus 1.
std::optional<Brush> FindBrush(HBRUSH handle) {
    const auto value = reinterpret_cast<uintptr_t>(handle);
    if (value != 0 && value <= kSystemColors) {
        const auto color = SystemColor(static_cast<int>(value) - 1);
        if (!color) {
            FailUnsupported("a brush of this system colour");
            return std::nullopt;
        }
        return Brush{*color};
    }
    const auto found = FindThing<Brush>(handle);
    return found ? std::optional(*found) : std::nullopt;
}

// Draws the canvas's pen along lines, a broken line's gaps going on from one to the next.
class PenStroke {
  public:
    explicit PenStroke(const Canvas& canvas)
        : canvas_(canvas),
          pen_(*canvas.context->state.pen.thing),
          color_(PixelOf(*canvas.surface, pen_.color)),
          back_(PixelOf(*canvas.surface, canvas.context->state.backColor)),
          fillsGaps_(canvas.context->state.backMode == OPAQUE) {
        for (const auto& row : kBrokenLines) {
            if (row.style == pen_.style) {
                drawn_ = row.drawn;
                left_ = row.left;
            }
        }
    }

    // In the surface's pixels; the last pixel is left out.
    void Line(POINT from, POINT to) {
        if (pen_.style == PS_NULL) {
            return;
        }
        if (pen_.width > 1) {
            WideLine(from, to);
            return;
        }
        const LONG dx = std::abs(to.x - from.x);
        const LONG dy = std::abs(to.y - from.y);
        const LONG stepX = from.x < to.x ? 1 : -1;
        const LONG stepY = from.y < to.y ? 1 : -1;
        // The shorter way steps where the longer one has passed the middle between two pixels.
        LONG error = std::max(dx, dy) / 2;
        for (LONG i = std::max(dx, dy); i > 0; --i) {
            Dot(from);
            error -= std::min(dx, dy);
            const bool both = error < 0;
            error += both ? std::max(dx, dy) : 0;
            from.x += dx >= dy || both ? stepX : 0;
            from.y += dx < dy || both ? stepY : 0;
        }
    }

  private:
    void Dot(POINT at) {
        const bool isGap = left_ > 0 && step_ >= drawn_;
        step_ = left_ > 0 ? (step_ + 1) % (drawn_ + left_) : 0;
        if (!isGap || fillsGaps_) {
            SetOnePixel(canvas_, at, isGap ? back_ : color_);
        }
    }

    void WideLine(POINT from, POINT to) {
        Painter painter(canvas_);
        cairo_set_antialias(painter, CAIRO_ANTIALIAS_NONE);
        cairo_set_line_cap(painter, CAIRO_LINE_CAP_ROUND);
        cairo_set_line_width(painter, pen_.width);
        painter.SetPixelColor(color_);
        cairo_move_to(painter, from.x + 0.5, from.y + 0.5);
        cairo_line_to(painter, to.x + 0.5, to.y + 0.5);
        cairo_stroke(painter);
    }

    const Canvas& canvas_;
    const Pen pen_;
    const uint32_t color_;
    const uint32_t back_;
    const bool fillsGaps_;
    int drawn_ = 0;
    int left_ = 0;
    int step_ = 0;
};

// Fills the painter's path with the canvas's brush and draws it with its pen.
void FillAndStroke(const Canvas& canvas, cairo_t* cairo, Painter* painter) {
    const ContextState& state = canvas.context->state;
    if (!state.brush.thing->hollow) {
        painter->SetPixelColor(PixelOf(*canvas.surface, state.brush.thing->color));
        cairo_fill_preserve(cairo);
    }
    if (state.pen.thing->style != PS_NULL) {
        painter->SetPixelColor(PixelOf(*canvas.surface, state.pen.thing->color));
        cairo_set_line_width(cairo, state.pen.thing->width);
        cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
        cairo_stroke(cairo);
    }
    cairo_new_path(cairo);
}

// The path that the pen takes within the rectangle: through the middles of the outermost pixels.
struct EllipsePath {
    double x;
    double y;
    double radiusX;
    double radiusY;
};

EllipsePath EllipseIn(const RECT& rect, bool hasPen) {
    const double outer = hasPen ? 0 : 1;  // without a pen the last column and row stay free
    return {(rect.left + rect.right - outer) / 2.0, (rect.top + rect.bottom - outer) / 2.0,
            std::max(0.0, (rect.right - rect.left - 1) / 2.0), std::max(0.0, (rect.bottom - rect.top - 1) / 2.0)};
}

// An arc against the clock between two angles (radians, clockwise as y grows downwards).
void AddArc(cairo_t* cairo, const EllipsePath& ellipse, double from, double to) {
    cairo_save(cairo);
    cairo_translate(cairo, ellipse.x, ellipse.y);
    cairo_scale(cairo, ellipse.radiusX, ellipse.radiusY);
    cairo_arc_negative(cairo, 0, 0, 1, from, to);
    cairo_restore(cairo);
}

// The canvas of a shape with round edges, which are drawn with unbroken pens only.
std::optional<Canvas> FindRoundCanvas(HDC context, const char* call) {
    auto canvas = FindCanvas(context, call);
    if (canvas) {
        const int style = canvas->context->state.pen.thing->style;
        if (style != PS_SOLID && style != PS_NULL) {
            FailUnsupported((std::string(call) + " (with a broken pen)").c_str());
            return std::nullopt;
        }
    }
    return canvas;
}

}  // namespace
}  // namespace host

using namespace host;

extern "C" {

BOOL WINAPI LineTo(HDC context, int x, int y) {
    const MachineLock lock;
    const auto canvas = FindCanvas(context, "LineTo");
    if (!canvas) {
        return FALSE;
    }
    const POINT from = std::exchange(canvas->context->state.position, POINT{x, y});
    PenStroke(*canvas).Line(ToSurface(*canvas, from.x, from.y), ToSurface(*canvas, x, y));
    return TRUE;
}

BOOL WINAPI Rectangle(HDC context, int left, int top, int right, int bottom) {
    const MachineLock lock;
    const auto canvas = FindCanvas(context, "Rectangle");
    if (!canvas) {
        return FALSE;
    }
    const ContextState& state = canvas->context->state;
    const Pen& pen = *state.pen.thing;
    const RECT rect = ToSurface(*canvas, {left, top, right, bottom});
    const RECT last = {rect.left, rect.top, rect.right - 1, rect.bottom - 1};  // without a pen they stay free
    if (rect.left == rect.right || rect.top == rect.bottom) {
        return TRUE;
    }
    if (!state.brush.thing->hollow) {
        FillPixels(*canvas, pen.style == PS_NULL ? last : rect, PixelOf(*canvas->surface, state.brush.thing->color));
    }
    if (pen.style == PS_SOLID && pen.width == 1) {
        FramePixels(*canvas, rect, PixelOf(*canvas->surface, pen.color));
        return TRUE;
    }
    const POINT corners[] = {
        {last.left, last.top}, {last.right, last.top}, {last.right, last.bottom}, {last.left, last.bottom}};
    PenStroke stroke(*canvas);
    for (size_t i = 0; i < std::size(corners); ++i) {
        stroke.Line(corners[i], corners[(i + 1) % std::size(corners)]);
    }
    return TRUE;
}

BOOL WINAPI Pie(HDC context, int left, int top, int right, int bottom, int x1, int y1, int x2, int y2) {
    const MachineLock lock;
    const auto canvas = FindRoundCanvas(context, "Pie");
    if (!canvas) {
        return FALSE;
    }
    const bool hasPen = canvas->context->state.pen.thing->style != PS_NULL;
    const EllipsePath ellipse = EllipseIn(ToSurface(*canvas, {left, top, right, bottom}), hasPen);
    if (ellipse.radiusX == 0 || ellipse.radiusY == 0) {
        return TRUE;
    }
    const auto angleOf = [&](int x, int y) {
        const POINT at = ToSurface(*canvas, x, y);
        return std::atan2((at.y - ellipse.y) / ellipse.radiusY, (at.x - ellipse.x) / ellipse.radiusX);
    };
    const double from = angleOf(x1, y1);
    double to = angleOf(x2, y2);
    if (to >= from) {
        to -= 2 * std::numbers::pi;  // equal radials: the whole ellipse
    }
    Painter painter(*canvas);
    cairo_move_to(painter, ellipse.x, ellipse.y);
    AddArc(painter, ellipse, from, to);
    cairo_close_path(painter);
    FillAndStroke(*canvas, painter, &painter);
    return TRUE;
}

int WINAPI FillRect(HDC context, const RECT* rect, HBRUSH brush) {
    const MachineLock lock;
    const auto canvas = FindCanvas(context, "FillRect");
    const auto found = canvas ? FindBrush(brush) : std::nullopt;
    if (!found) {
        return 0;
    }
    if (!rect) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    if (!found->hollow) {
        FillPixels(*canvas, ToSurface(*canvas, *rect), PixelOf(*canvas->surface, found->color));
    }
    return 1;
}

int WINAPI FrameRect(HDC context, const RECT* rect, HBRUSH brush) {
    const MachineLock lock;
    const auto canvas = FindCanvas(context, "FrameRect");
    const auto found = canvas ? FindBrush(brush) : std::nullopt;
    if (!found) {
        return 0;
    }
    if (IsRectEmpty(rect)) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    if (!found->hollow) {
        FramePixels(*canvas, ToSurface(*canvas, *rect), PixelOf(*canvas->surface, found->color));
    }
    return 1;
}

BOOL WINAPI DrawFocusRect(HDC context, const RECT* rect) {
    const MachineLock lock;
    const auto canvas = FindCanvas(context, "DrawFocusRect");
    if (!canvas) {
        return FALSE;
    }
    if (!rect) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    const RECT frame = ToSurface(*canvas, *rect);
    RECT visible;
    IntersectRect(&visible, &frame, &canvas->clip);
    for (LONG y = visible.top; y < visible.bottom; ++y) {
        uint32_t* const row = canvas->surface->Row(y);
        const bool whole = y == frame.top || y == frame.bottom - 1;
        for (LONG x = visible.left; x < visible.right; ++x) {
            const bool isEdge = whole || x == frame.left || x == frame.right - 1;
            // Every second pixel is inverted, so that drawing again takes the frame away.
            if (isEdge && ((x - frame.left + y - frame.top) & 1) == 0) {
                row[x] ^= kColorBits;
            }
        }
    }
    return TRUE;
}

COLORREF WINAPI SetPixel(HDC context, int x, int y, COLORREF color) {
    const MachineLock lock;
    const auto canvas = FindCanvas(context, "SetPixel");
    if (!canvas) {
        return CLR_INVALID;
    }
    const POINT at = ToSurface(*canvas, x, y);
    if (!PtInRect(&canvas->clip, at)) {
        return CLR_INVALID;
    }
    const uint32_t pixel = PixelOf(*canvas->surface, color);
    SetOnePixel(*canvas, at, pixel);
    return SwapRedAndBlue(pixel);
}

COLORREF WINAPI GetPixel(HDC context, int x, int y) {
    const MachineLock lock;
    const auto canvas = FindCanvas(context, "GetPixel");
    if (!canvas) {
        return CLR_INVALID;
    }
    const POINT at = ToSurface(*canvas, x, y);
    return PtInRect(&canvas->clip, at) ? SwapRedAndBlue(canvas->surface->Row(at.y)[at.x]) : CLR_INVALID;
}

}  // extern "C"
