// Scroll bar controls and the calls that set them. The position is the parent's to move: the control tells what the
// user did and waits for the new position.
#include <windows.h>

#include "platform/kernel/failures.h"
#include "platform/user/controls/controls.h"
#include "platform/user/controls/scroll_control.h"
#include "platform/user/controls/scroll_parts.h"
#include "platform/user/controls/style.h"

namespace host {
namespace {

class ScrollBar : public ScrollControl {
  public:
    explicit ScrollBar(HWND window) : ScrollControl(window, {SBM_SETPOS, SBM_GETSCROLLINFO + 5}, SBS_VERT) {}
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    int SetState(const ScrollState& state, bool redraw);
    int SetInfo(const SCROLLINFO& info, bool redraw);
    bool GetInfo(SCROLLINFO* info) const;
    void Step(UINT code) override { Tell(code); }
    void Press(POINT point) override;
    void Drag(POINT point) override;
    void Release() override;
    void Paint(HDC context, const RECT& client) override;

    ScrollState state_;
    ScrollPart pressed_ = ScrollPart::kNone;
    ScrollLayout layoutAtPress_ = {};
    POINT grip_ = {};
    int trackPosition_ = 0;  // of the dragged thumb
};

// The position before.
int ScrollBar::SetState(const ScrollState& state, bool redraw) {
    const int previous = state_.position;
    state_ = state;
    state_.position = state_.Clamp(state_.position);
    if (redraw) {
        Redraw();
    }
    return previous;
}

int ScrollBar::SetInfo(const SCROLLINFO& info, bool redraw) {
    ScrollState state = state_;
    if (info.fMask & SIF_RANGE) {
        state.lowest = info.nMin;
        state.highest = info.nMax < info.nMin ? info.nMin : info.nMax;
    }
    if (info.fMask & SIF_PAGE) {
        state.page = static_cast<int>(info.nPage);
    }
    if (info.fMask & SIF_POS) {
        state.position = info.nPos;
    }
    SetState(state, redraw);
    return state_.position;
}

bool ScrollBar::GetInfo(SCROLLINFO* info) const {
    if (info->fMask & SIF_RANGE) {
        info->nMin = state_.lowest;
        info->nMax = state_.highest;
    }
    if (info->fMask & SIF_PAGE) {
        info->nPage = static_cast<UINT>(state_.page);
    }
    if (info->fMask & SIF_POS) {
        info->nPos = state_.position;
    }
    if (info->fMask & SIF_TRACKPOS) {
        info->nTrackPos = pressed_ == ScrollPart::kThumb ? trackPosition_ : state_.position;
    }
    return (info->fMask & SIF_ALL) != 0;
}

void ScrollBar::Press(POINT point) {
    layoutAtPress_ = LayOutScrollBar(Client(), IsVertical(), state_);
    pressed_ = state_.CanScroll() ? ScrollPartAt(layoutAtPress_, point) : ScrollPart::kNone;
    if (Style() & WS_TABSTOP) {
        SetFocus(window_);
    }
    if (pressed_ == ScrollPart::kNone) {
        return;
    }
    SetCapture(window_);
    grip_ = point;
    trackPosition_ = state_.position;
    Redraw();
    switch (pressed_) {
        case ScrollPart::kLineBack:
            return Tell(SB_LINEUP);
        case ScrollPart::kLineOn:
            return Tell(SB_LINEDOWN);
        case ScrollPart::kPageBack:
            return Tell(SB_PAGEUP);
        case ScrollPart::kPageOn:
            return Tell(SB_PAGEDOWN);
        default:
            return Tell(SB_THUMBTRACK, trackPosition_);
    }
}

void ScrollBar::Drag(POINT point) {
    if (pressed_ != ScrollPart::kThumb) {
        return;
    }
    const int position = DraggedPosition(layoutAtPress_, state_, grip_, point);
    if (position != trackPosition_) {
        trackPosition_ = position;
        Redraw();
        Tell(SB_THUMBTRACK, position);
    }
}

void ScrollBar::Release() {
    const ScrollPart released = pressed_;
    if (released == ScrollPart::kNone) {
        return;
    }
    pressed_ = ScrollPart::kNone;
    ReleaseCapture();
    Redraw();
    if (released == ScrollPart::kThumb) {
        Tell(SB_THUMBPOSITION, trackPosition_);
    }
    Tell(SB_ENDSCROLL);
}

LRESULT ScrollBar::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case SBM_SETPOS: {
            ScrollState state = state_;
            state.position = static_cast<int>(wParam);
            return SetState(state, lParam != 0);
        }
        case SBM_GETPOS:
            return state_.position;
        case SBM_SETRANGE: {
            ScrollState state = state_;
            state.lowest = static_cast<int>(wParam);
            state.highest = static_cast<int>(lParam) < state.lowest ? state.lowest : static_cast<int>(lParam);
            const int previous = SetState(state, false);
            return previous != state_.position ? previous : 0;
        }
        case SBM_GETRANGE:
            *reinterpret_cast<int*>(wParam) = state_.lowest;
            *reinterpret_cast<int*>(lParam) = state_.highest;
            return 0;
        case SBM_SETSCROLLINFO:
            return SetInfo(*reinterpret_cast<const SCROLLINFO*>(lParam), wParam != 0);
        case SBM_GETSCROLLINFO:
            return GetInfo(reinterpret_cast<SCROLLINFO*>(lParam));
        default:
            return HandleInput(message, wParam, lParam);
    }
}

void ScrollBar::Paint(HDC context, const RECT& client) {
    ScrollState shown = state_;
    if (pressed_ == ScrollPart::kThumb) {
        shown.position = trackPosition_;
    }
    PaintScrollBar(context, client, IsVertical(), shown, pressed_, IsEnabled());
    if (HasFocus()) {
        const RECT thumb = Inset(LayOutScrollBar(client, IsVertical(), shown).thumb, 3, 3);
        DrawFocusRect(context, &thumb);
    }
}

// True where the bar is a control: windows have no bars of their own here.
bool IsControl(const char* call, int bar) {
    return bar == SB_CTL || FailUnsupported((std::string(call) + " for a window's own bar").c_str());
}

}  // namespace

LRESULT CALLBACK ScrollBarProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return ControlProc<ScrollBar>(window, message, wParam, lParam);
}

}  // namespace host

using namespace host;

extern "C" {

int WINAPI SetScrollPos(HWND window, int bar, int position, BOOL redraw) {
    return IsControl("SetScrollPos", bar)
               ? static_cast<int>(SendMessageW(window, SBM_SETPOS, static_cast<WPARAM>(position), redraw))
               : 0;
}

int WINAPI GetScrollPos(HWND window, int bar) {
    return IsControl("GetScrollPos", bar) ? static_cast<int>(SendMessageW(window, SBM_GETPOS, 0, 0)) : 0;
}

BOOL WINAPI SetScrollRange(HWND window, int bar, int lowest, int highest, BOOL redraw) {
    if (!IsControl("SetScrollRange", bar)) {
        return FALSE;
    }
    SendMessageW(window, SBM_SETRANGE, static_cast<WPARAM>(lowest), highest);
    if (redraw) {
        InvalidateRect(window, nullptr, TRUE);
    }
    return TRUE;
}

BOOL WINAPI GetScrollRange(HWND window, int bar, int* lowest, int* highest) {
    if (!IsControl("GetScrollRange", bar)) {
        return FALSE;
    }
    SendMessageW(window, SBM_GETRANGE, reinterpret_cast<WPARAM>(lowest), reinterpret_cast<LPARAM>(highest));
    return TRUE;
}

int WINAPI SetScrollInfo(HWND window, int bar, LPCSCROLLINFO info, BOOL redraw) {
    return IsControl("SetScrollInfo", bar)
               ? static_cast<int>(SendMessageW(window, SBM_SETSCROLLINFO, static_cast<WPARAM>(redraw),
                                               reinterpret_cast<LPARAM>(info)))
               : 0;
}

BOOL WINAPI GetScrollInfo(HWND window, int bar, LPSCROLLINFO info) {
    return IsControl("GetScrollInfo", bar) &&
           SendMessageW(window, SBM_GETSCROLLINFO, 0, reinterpret_cast<LPARAM>(info)) != 0;
}

}  // extern "C"
