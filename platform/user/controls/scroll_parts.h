// A scroll bar's parts and how they look: of scroll bar controls, and of the bars inside list boxes.
#pragma once

#include <windows.h>

namespace host {

struct ScrollState {
    int lowest = 0;
    int highest = 0;
    int position = 0;
    int page = 0;  // 0: the thumb has its least size

    int LastPosition() const;  // the highest that the thumb reaches
    bool CanScroll() const { return LastPosition() > lowest; }
    int Clamp(int position) const;
};

enum class ScrollPart { kNone, kLineBack, kPageBack, kThumb, kPageOn, kLineOn };

struct ScrollLayout {
    bool vertical;
    RECT lineBack;
    RECT lineOn;
    RECT track;  // between the arrows
    RECT thumb;  // empty where nothing scrolls
};

ScrollLayout LayOutScrollBar(const RECT& bar, bool vertical, const ScrollState& state);
ScrollPart ScrollPartAt(const ScrollLayout& layout, POINT point);
// The position for a thumb that was taken hold of at `grip`, when it began as `layout` says, and is now at `point`.
int DraggedPosition(const ScrollLayout& layout, const ScrollState& state, POINT grip, POINT point);
void PaintScrollBar(HDC context, const RECT& bar, bool vertical, const ScrollState& state, ScrollPart pressed,
                    bool enabled);

}  // namespace host
