#include "platform/user/controls/scroll_parts.h"

#include <algorithm>

#include "platform/user/controls/style.h"

namespace host {
namespace {

constexpr int kLeastThumb = 16;

// The part of a bar from `from` to `to` along it.
RECT Along(const RECT& bar, bool vertical, int from, int to) {
    return vertical ? RECT{bar.left, bar.top + from, bar.right, bar.top + to}
                    : RECT{bar.left + from, bar.top, bar.left + to, bar.bottom};
}

int LengthOf(const RECT& rect, bool vertical) {
    return vertical ? Height(rect) : Width(rect);
}

}  // namespace

int ScrollState::LastPosition() const {
    return std::max(lowest, highest - std::max(page - 1, 0));
}

int ScrollState::Clamp(int wanted) const {
    return std::clamp(wanted, lowest, LastPosition());
}

ScrollLayout LayOutScrollBar(const RECT& bar, bool vertical, const ScrollState& state) {
    const int length = LengthOf(bar, vertical);
    const int arrow = std::min(kScrollWidth, length / 2);
    ScrollLayout layout = {vertical,
                           Along(bar, vertical, 0, arrow),
                           Along(bar, vertical, length - arrow, length),
                           Along(bar, vertical, arrow, length - arrow),
                           {}};
    const int room = length - 2 * arrow;
    if (!state.CanScroll() || room <= kLeastThumb) {
        return layout;
    }
    const INT64 range = static_cast<INT64>(state.highest) - state.lowest + 1;
    const int thumb = std::max(static_cast<int>(room * static_cast<INT64>(state.page) / range), kLeastThumb);
    const INT64 steps = static_cast<INT64>(state.LastPosition()) - state.lowest;
    const int from =
        arrow +
        static_cast<int>(((room - thumb) * (static_cast<INT64>(state.position) - state.lowest) + steps / 2) / steps);
    layout.thumb = Along(bar, vertical, from, from + thumb);
    return layout;
}

ScrollPart ScrollPartAt(const ScrollLayout& layout, POINT point) {
    if (PtInRect(&layout.lineBack, point)) {
        return ScrollPart::kLineBack;
    }
    if (PtInRect(&layout.lineOn, point)) {
        return ScrollPart::kLineOn;
    }
    if (!PtInRect(&layout.track, point) || IsRectEmpty(&layout.thumb)) {
        return ScrollPart::kNone;
    }
    if (PtInRect(&layout.thumb, point)) {
        return ScrollPart::kThumb;
    }
    return (layout.vertical ? point.y < layout.thumb.top : point.x < layout.thumb.left) ? ScrollPart::kPageBack
                                                                                        : ScrollPart::kPageOn;
}

int DraggedPosition(const ScrollLayout& layout, const ScrollState& state, POINT grip, POINT point) {
    const int room = LengthOf(layout.track, layout.vertical) - LengthOf(layout.thumb, layout.vertical);
    const int start = layout.vertical ? layout.thumb.top - layout.track.top : layout.thumb.left - layout.track.left;
    const int offset = std::clamp(start + (layout.vertical ? point.y - grip.y : point.x - grip.x), 0, room);
    const INT64 steps = static_cast<INT64>(state.LastPosition()) - state.lowest;
    return room > 0 ? state.lowest + static_cast<int>((steps * offset + room / 2) / room) : state.position;
}

void PaintScrollBar(HDC context, const RECT& bar, bool vertical, const ScrollState& state, ScrollPart pressed,
                    bool enabled) {
    const ScrollLayout layout = LayOutScrollBar(bar, vertical, state);
    const bool live = enabled && state.CanScroll();
    FillColor(context, bar, kTrack);
    const struct {
        const RECT& box;
        ScrollPart part;
        Direction direction;
    } arrows[] = {{layout.lineBack, ScrollPart::kLineBack, vertical ? Direction::kUp : Direction::kLeft},
                  {layout.lineOn, ScrollPart::kLineOn, vertical ? Direction::kDown : Direction::kRight}};
    for (const auto& arrow : arrows) {
        const bool down = live && pressed == arrow.part;
        if (down) {
            FillColor(context, arrow.box, kThumbPressed);
        }
        DrawArrow(context, arrow.box, arrow.direction, 3, !live ? kMarkDisabled : down ? kOnAccent : kMark);
    }
    if (live) {
        const RECT thumb = vertical ? Inset(layout.thumb, 3, 0) : Inset(layout.thumb, 0, 3);
        FillRound(context, thumb, kCornerRadius, pressed == ScrollPart::kThumb ? kThumbPressed : kThumb);
    }
}

}  // namespace host
