// Sliders. A slider moves by itself and tells its parent the new position afterwards.
#include <commctrl.h>
#include <windows.h>

#include <algorithm>

#include "platform/user/controls/controls.h"
#include "platform/user/controls/scroll_control.h"
#include "platform/user/controls/style.h"

namespace host {
namespace {

constexpr int kThumbBreadth = 11;
constexpr int kThumbHeight = 19;
constexpr int kChannelHeight = 4;

class TrackBar : public ScrollControl {
  public:
    explicit TrackBar(HWND window) : ScrollControl(window, {WM_USER, WM_USER + 0xFF}, TBS_VERT) {}
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    int PageSize() const { return pageSize_ > 0 ? pageSize_ : std::max((highest_ - lowest_) / 5, 1); }
    void SetRange(int lowest, int highest, bool redraw);
    void SetPosition(int position, bool redraw);
    void Step(UINT code) override;
    void Press(POINT point) override;
    void Drag(POINT point) override;
    void Release() override;

    // Along the channel and across it, as the slider lies.
    struct Geometry {
        int length;  // of the control
        int middle;  // of the channel, across
        int first;   // where the thumb's middle is at the lowest position
        int room;    // from there to the highest
    };
    Geometry Measure() const;
    int OffsetOf(int position) const;
    RECT Lay(int from, int to, int top, int bottom) const;
    RECT ThumbRect() const;
    void Paint(HDC context, const RECT& client) override;
    void PaintTicks(HDC context) const;

    int lowest_ = 0;
    int highest_ = 100;
    int position_ = 0;
    int lineSize_ = 1;
    int pageSize_ = 0;  // 0: a fifth of the range
    int tickEvery_ = 1;
    bool held_ = false;      // the mouse is down on the slider
    bool dragging_ = false;  // and holds the thumb
    int gripOffset_ = 0;     // from the thumb's middle to where it is held
};

void TrackBar::SetRange(int lowest, int highest, bool redraw) {
    lowest_ = lowest;
    highest_ = std::max(lowest, highest);
    SetPosition(position_, redraw);
}

void TrackBar::SetPosition(int position, bool redraw) {
    position_ = std::clamp(position, lowest_, highest_);
    if (redraw) {
        Redraw();
    }
}

void TrackBar::Step(UINT code) {
    int position = position_;
    switch (code) {
        case TB_LINEUP:
            position -= lineSize_;
            break;
        case TB_LINEDOWN:
            position += lineSize_;
            break;
        case TB_PAGEUP:
            position -= PageSize();
            break;
        case TB_PAGEDOWN:
            position += PageSize();
            break;
        case TB_TOP:
            position = lowest_;
            break;
        default:
            position = highest_;
            break;
    }
    position = std::clamp(position, lowest_, highest_);
    if (position != position_) {
        SetPosition(position, true);
        Tell(code);
    }
}

void TrackBar::Press(POINT point) {
    SetFocus(window_);
    SetCapture(window_);
    held_ = true;
    const RECT thumb = ThumbRect();
    const int along = IsVertical() ? point.y : point.x;
    dragging_ = PtInRect(&thumb, point) != 0;
    gripOffset_ = along - OffsetOf(position_);
    Redraw();
    if (!dragging_) {
        Step(gripOffset_ < 0 ? TB_PAGEUP : TB_PAGEDOWN);
    }
}

void TrackBar::Drag(POINT point) {
    if (!dragging_) {
        return;
    }
    const Geometry geometry = Measure();
    const int offset = std::clamp((IsVertical() ? point.y : point.x) - gripOffset_ - geometry.first, 0, geometry.room);
    const INT64 steps = static_cast<INT64>(highest_) - lowest_;
    const int position =
        lowest_ + (geometry.room > 0 ? static_cast<int>((steps * offset + geometry.room / 2) / geometry.room) : 0);
    if (position != position_) {
        SetPosition(position, true);
        Tell(TB_THUMBTRACK, position_);
    }
}

void TrackBar::Release() {
    if (!held_) {
        return;
    }
    const bool dragged = dragging_;
    held_ = false;
    dragging_ = false;
    ReleaseCapture();
    Redraw();
    if (dragged) {
        Tell(TB_THUMBPOSITION, position_);
    }
    Tell(TB_ENDTRACK);
}

LRESULT TrackBar::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    const int value = static_cast<int>(lParam);
    switch (message) {
        case WM_MOUSEWHEEL:
            for (int notches = WheelNotches(wParam); notches != 0; notches += notches < 0 ? 1 : -1) {
                Step(notches > 0 ? TB_LINEUP : TB_LINEDOWN);
            }
            Tell(TB_ENDTRACK);
            return 0;

        case TBM_GETPOS:
            return position_;
        case TBM_GETRANGEMIN:
            return lowest_;
        case TBM_GETRANGEMAX:
            return highest_;
        case TBM_SETPOS:
            SetPosition(value, wParam != 0);
            return 0;
        case TBM_SETRANGE:
            SetRange(static_cast<SHORT>(LOWORD(lParam)), static_cast<SHORT>(HIWORD(lParam)), wParam != 0);
            return 0;
        case TBM_SETRANGEMIN:
            SetRange(value, highest_, wParam != 0);
            return 0;
        case TBM_SETRANGEMAX:
            SetRange(lowest_, value, wParam != 0);
            return 0;
        case TBM_SETTICFREQ:
            tickEvery_ = std::max(static_cast<int>(wParam), 1);
            Redraw();
            return 0;
        case TBM_SETPAGESIZE:
        case TBM_SETLINESIZE: {
            int& size = message == TBM_SETPAGESIZE ? pageSize_ : lineSize_;
            const int previous = message == TBM_SETPAGESIZE ? PageSize() : lineSize_;
            size = value;
            return previous;
        }
        case TBM_GETPAGESIZE:
            return PageSize();
        case TBM_GETLINESIZE:
            return lineSize_;
        default:
            return HandleInput(message, wParam, lParam);
    }
}

TrackBar::Geometry TrackBar::Measure() const {
    const RECT client = Client();
    const int length = IsVertical() ? Height(client) : Width(client);
    const int breadth = IsVertical() ? Width(client) : Height(client);
    const int margin = kThumbBreadth / 2 + 3;
    // Ticks lie on one side, so the channel moves to the other.
    const bool ticks = !(Style() & (TBS_NOTICKS | TBS_BOTH));
    const int middle =
        ticks ? (Style() & TBS_TOP ? breadth - kThumbHeight / 2 - 2 : kThumbHeight / 2 + 2) : breadth / 2;
    return {length, std::min(middle, std::max(breadth / 2, 1)), margin, std::max(length - 2 * margin, 0)};
}

int TrackBar::OffsetOf(int position) const {
    const Geometry geometry = Measure();
    const INT64 steps = std::max<INT64>(static_cast<INT64>(highest_) - lowest_, 1);
    return geometry.first +
           static_cast<int>((geometry.room * (static_cast<INT64>(position) - lowest_) + steps / 2) / steps);
}

RECT TrackBar::Lay(int from, int to, int top, int bottom) const {
    return IsVertical() ? RECT{top, from, bottom, to} : RECT{from, top, to, bottom};
}

RECT TrackBar::ThumbRect() const {
    const int offset = OffsetOf(position_);
    const int middle = Measure().middle;
    return Lay(offset - kThumbBreadth / 2, offset + kThumbBreadth / 2 + 1, middle - kThumbHeight / 2,
               middle + kThumbHeight / 2 + 1);
}

void TrackBar::Paint(HDC context, const RECT& client) {
    FillRect(context, &client, AskColors(context, WM_CTLCOLORSTATIC));
    const Geometry geometry = Measure();
    const bool enabled = IsEnabled();
    const int top = geometry.middle - kChannelHeight / 2;
    const int offset = OffsetOf(position_);
    FillRound(context, Lay(geometry.first - 4, geometry.first + geometry.room + 5, top, top + kChannelHeight), 2,
              enabled ? kThumb : kFieldLineDisabled);
    if (enabled) {
        FillRound(context, Lay(geometry.first - 4, offset, top, top + kChannelHeight), 2, kAccent);
    }
    PaintTicks(context);
    FillRound(context, ThumbRect(), 3, !enabled ? kMarkDisabled : dragging_ ? kAccentPressed : kAccent);
    if (HasFocus()) {
        DrawFocusRect(context, &client);
    }
}

void TrackBar::PaintTicks(HDC context) const {
    const DWORD style = Style();
    if (style & TBS_NOTICKS) {
        return;
    }
    const int middle = Measure().middle;
    const bool every = (style & TBS_AUTOTICKS) != 0;
    const auto draw = [&](int position) {
        const int offset = OffsetOf(position);
        const int across = kThumbHeight / 2 + 3;
        if (!(style & TBS_TOP) || style & TBS_BOTH) {
            FillColor(context, Lay(offset, offset + 1, middle + across, middle + across + 3), kFieldLine);
        }
        if (style & (TBS_TOP | TBS_BOTH)) {
            FillColor(context, Lay(offset, offset + 1, middle - across - 2, middle - across + 1), kFieldLine);
        }
    };
    for (INT64 position = lowest_; position < highest_; position += every ? tickEvery_ : INT64{highest_} - lowest_) {
        draw(static_cast<int>(position));
    }
    draw(highest_);
}

}  // namespace

LRESULT CALLBACK TrackBarProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return ControlProc<TrackBar>(window, message, wParam, lParam);
}

}  // namespace host
