#include "platform/user/controls/style.h"

#include <algorithm>
#include <cmath>

namespace host {
namespace {

BYTE MixChannel(BYTE below, BYTE above, double coverage) {
    return static_cast<BYTE>(std::lround(below + (above - below) * coverage));
}

COLORREF Mix(COLORREF below, COLORREF above, double coverage) {
    return RGB(MixChannel(GetRValue(below), GetRValue(above), coverage),
               MixChannel(GetGValue(below), GetGValue(above), coverage),
               MixChannel(GetBValue(below), GetBValue(above), coverage));
}

void BlendPixel(HDC context, int x, int y, COLORREF color, double coverage) {
    if (coverage <= 0) {
        return;
    }
    if (coverage < 1) {
        const COLORREF below = GetPixel(context, x, y);
        if (below == CLR_INVALID) {
            return;
        }
        color = Mix(below, color, coverage);
    }
    SetPixel(context, x, y, color);
}

// What a shape covers of a pixel whose middle lies `inside` pixels within the shape's edge.
double Coverage(double inside) {
    return std::clamp(inside + 0.5, 0.0, 1.0);
}

double DistanceToSegment(PointF p, PointF a, PointF b) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double length = dx * dx + dy * dy;
    const double along = length == 0 ? 0 : std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / length, 0.0, 1.0);
    return std::hypot(p.x - (a.x + along * dx), p.y - (a.y + along * dy));
}

}  // namespace

int Width(const RECT& rect) {
    return rect.right - rect.left;
}

int Height(const RECT& rect) {
    return rect.bottom - rect.top;
}

RECT Inset(const RECT& rect, int dx, int dy) {
    return {rect.left + dx, rect.top + dy, rect.right - dx, rect.bottom - dy};
}

void FillColor(HDC context, const RECT& rect, COLORREF color) {
    const COLORREF previous = SetBkColor(context, color);
    ExtTextOutW(context, 0, 0, ETO_OPAQUE, &rect, nullptr, 0, nullptr);
    SetBkColor(context, previous);
}

void FrameColor(HDC context, const RECT& rect, COLORREF color) {
    FillColor(context, {rect.left, rect.top, rect.right, rect.top + 1}, color);
    FillColor(context, {rect.left, rect.bottom - 1, rect.right, rect.bottom}, color);
    FillColor(context, {rect.left, rect.top + 1, rect.left + 1, rect.bottom - 1}, color);
    FillColor(context, {rect.right - 1, rect.top + 1, rect.right, rect.bottom - 1}, color);
}

void FrameField(HDC context, const RECT& rect, COLORREF color) {
    FrameColor(context, rect, color);
    const COLORREF corner = Mix(GetSysColor(COLOR_3DFACE), color, 0.4);
    for (const int y : {rect.top, rect.bottom - 1}) {
        SetPixel(context, rect.left, y, corner);
        SetPixel(context, rect.right - 1, y, corner);
    }
}

void FillRound(HDC context, const RECT& rect, double radius, COLORREF color) {
    if (rect.right <= rect.left || rect.bottom <= rect.top) {
        return;
    }
    radius = std::min(radius, std::min(Width(rect), Height(rect)) / 2.0);
    const int corner = static_cast<int>(std::floor(radius));
    FillColor(context, {rect.left, rect.top + corner, rect.right, rect.bottom - corner}, color);
    FillColor(context, {rect.left + corner, rect.top, rect.right - corner, rect.top + corner}, color);
    FillColor(context, {rect.left + corner, rect.bottom - corner, rect.right - corner, rect.bottom}, color);
    for (int y = 0; y < corner; ++y) {
        for (int x = 0; x < corner; ++x) {
            const double coverage = Coverage(radius - std::hypot(radius - x - 0.5, radius - y - 0.5));
            BlendPixel(context, rect.left + x, rect.top + y, color, coverage);
            BlendPixel(context, rect.right - 1 - x, rect.top + y, color, coverage);
            BlendPixel(context, rect.left + x, rect.bottom - 1 - y, color, coverage);
            BlendPixel(context, rect.right - 1 - x, rect.bottom - 1 - y, color, coverage);
        }
    }
}

void FillFramedRound(HDC context, const RECT& rect, int thickness, COLORREF fill, COLORREF line) {
    FillRound(context, rect, kCornerRadius, line);
    FillRound(context, Inset(rect, thickness, thickness), kCornerRadius - thickness, fill);
}

void FillDisc(HDC context, PointF center, double radius, COLORREF color) {
    for (int y = static_cast<int>(std::floor(center.y - radius)); y < center.y + radius; ++y) {
        for (int x = static_cast<int>(std::floor(center.x - radius)); x < center.x + radius; ++x) {
            BlendPixel(context, x, y, color, Coverage(radius - std::hypot(x + 0.5 - center.x, y + 0.5 - center.y)));
        }
    }
}

void StrokeLines(HDC context, std::span<const PointF> points, double width, COLORREF color) {
    const auto [left, right] = std::ranges::minmax(points, {}, &PointF::x);
    const auto [top, bottom] = std::ranges::minmax(points, {}, &PointF::y);
    for (int y = static_cast<int>(std::floor(top.y - width)); y < bottom.y + width; ++y) {
        for (int x = static_cast<int>(std::floor(left.x - width)); x < right.x + width; ++x) {
            double distance = width + 1;
            for (size_t i = 1; i < points.size(); ++i) {
                distance = std::min(distance, DistanceToSegment({x + 0.5, y + 0.5}, points[i - 1], points[i]));
            }
            BlendPixel(context, x, y, color, Coverage(width / 2 - distance));
        }
    }
}

void DrawTick(HDC context, const RECT& box, COLORREF color) {
    const double unit = Width(box) / 13.0;
    const PointF points[] = {{box.left + 3.2 * unit, box.top + 6.7 * unit},
                             {box.left + 5.5 * unit, box.top + 9.0 * unit},
                             {box.left + 9.8 * unit, box.top + 4.3 * unit}};
    StrokeLines(context, points, 1.4 * unit, color);
}

void DrawArrow(HDC context, const RECT& box, Direction direction, double size, COLORREF color) {
    const PointF middle = {(box.left + box.right) / 2.0, (box.top + box.bottom) / 2.0};
    const bool vertical = direction == Direction::kUp || direction == Direction::kDown;
    const double tip = direction == Direction::kUp || direction == Direction::kLeft ? -size / 2 : size / 2;
    const PointF points[] = {
        vertical ? PointF{middle.x - size, middle.y - tip} : PointF{middle.x - tip, middle.y - size},
        vertical ? PointF{middle.x, middle.y + tip} : PointF{middle.x + tip, middle.y},
        vertical ? PointF{middle.x + size, middle.y - tip} : PointF{middle.x - tip, middle.y + size}};
    StrokeLines(context, points, 1.2, color);
}

void DrawLabel(HDC context, std::u16string_view text, RECT rect, UINT format, COLORREF color) {
    const int mode = SetBkMode(context, TRANSPARENT);
    const COLORREF previous = SetTextColor(context, color);
    DrawTextW(context, text.data(), static_cast<int>(text.size()), &rect, format);
    SetTextColor(context, previous);
    SetBkMode(context, mode);
}

SIZE MeasureLabel(HDC context, std::u16string_view text, int width, UINT format) {
    RECT rect = {0, 0, width, 0};
    DrawTextW(context, text.data(), static_cast<int>(text.size()), &rect, format | DT_CALCRECT);
    return {rect.right, rect.bottom};
}

}  // namespace host
