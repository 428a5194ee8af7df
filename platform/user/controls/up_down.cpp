// Up-down buttons: two arrows that step a position, which the buddy beside them shows as its text. A button that is
// held down steps once.
#include <commctrl.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/user/controls/control.h"
#include "platform/user/controls/controls.h"
#include "platform/user/controls/style.h"

namespace host {
namespace {

constexpr int kUpDownWidth = 16;

class UpDown : public Control {
  public:
    explicit UpDown(HWND window) : Control(window, {WM_USER, WM_USER + 0xFF}) {}
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    enum class Half { kNone, kUp, kDown };

    bool IsHorizontal() const { return (Style() & UDS_HORZ) != 0; }
    HWND SetBuddy(HWND buddy);
    void PlaceBesideBuddy() const;
    int Clamp(int position) const { return std::clamp(position, std::min(low_, high_), std::max(low_, high_)); }
    int SetPosition(int position);
    // False where the buddy's text is no number of the range; the position is the last good one then.
    bool ReadPosition();
    void ShowPosition() const;
    void SetAccelerators(const UDACCEL* accelerators, size_t count);
    LRESULT GetAccelerators(UDACCEL* accelerators, size_t count) const;

    void Step(int steps);
    RECT HalfRect(Half half) const;
    Half HalfAt(POINT point) const;
    void Release();
    void Paint(HDC context, const RECT& client) override;

    HWND buddy_ = nullptr;
    int low_ = 100;  // where the lower arrow leads to; it may be above `high_`
    int high_ = 0;
    int position_ = 0;
    std::vector<UDACCEL> accelerators_ = {{0, 1}, {2, 5}, {5, 20}};
    Half pressed_ = Half::kNone;
};

HWND UpDown::SetBuddy(HWND buddy) {
    const HWND previous = buddy_;
    const bool takesKeys = (Style() & UDS_ARROWKEYS) != 0;
    if (previous && takesKeys) {
        SendMessageW(previous, kSetKeyTaker, 0, 0);
    }
    buddy_ = buddy;
    if (buddy_) {
        if (takesKeys) {
            SendMessageW(buddy_, kSetKeyTaker, reinterpret_cast<WPARAM>(window_), 0);
        }
        PlaceBesideBuddy();
    }
    return previous;
}

// Takes its width from the buddy.
void UpDown::PlaceBesideBuddy() const {
    const DWORD side = Style() & (UDS_ALIGNLEFT | UDS_ALIGNRIGHT);
    if (!side) {
        return;
    }
    RECT rect;
    GetWindowRect(buddy_, &rect);
    MapWindowPoints(nullptr, GetParent(window_), reinterpret_cast<POINT*>(&rect), 2);
    RECT own = rect;
    if (side & UDS_ALIGNRIGHT) {
        rect.right -= kUpDownWidth;
        own.left = rect.right;
    } else {
        rect.left += kUpDownWidth;
        own.right = rect.left;
    }
    MoveWindow(buddy_, rect.left, rect.top, Width(rect), Height(rect), TRUE);
    SetWindowPos(window_, nullptr, own.left, own.top, Width(own), Height(own), SWP_NOZORDER | SWP_NOACTIVATE);
}

int UpDown::SetPosition(int position) {
    ReadPosition();
    const int previous = position_;
    position_ = Clamp(position);
    ShowPosition();
    return previous;
}

bool UpDown::ReadPosition() {
    if (!buddy_ || !(Style() & UDS_SETBUDDYINT)) {
        return true;
    }
    WCHAR text[32] = {};
    GetWindowTextW(buddy_, text, ARRAYSIZE(text));
    INT64 value = 0;
    bool digits = false;
    const WCHAR* next = text;
    while (*next == u' ') {
        ++next;
    }
    const bool negative = *next == u'-';
    for (next += negative || *next == u'+' ? 1 : 0; *next && value <= INT32_MAX; ++next) {
        if (*next == u',' && digits) {
            continue;
        }
        if (*next < u'0' || *next > u'9') {
            return false;
        }
        digits = true;
        value = value * 10 + (*next - u'0');
    }
    value = negative ? -value : value;
    if (!digits || value < std::min(low_, high_) || value > std::max(low_, high_)) {
        return false;
    }
    position_ = static_cast<int>(value);
    return true;
}

void UpDown::ShowPosition() const {
    if (!buddy_ || !(Style() & UDS_SETBUDDYINT)) {
        return;
    }
    const std::string digits = std::to_string(position_);
    std::u16string text(digits.begin(), digits.end());
    if (!(Style() & UDS_NOTHOUSANDS)) {
        for (size_t end = text.size(); end > 3 + (position_ < 0 ? 1u : 0u); end -= 3) {
            text.insert(end - 3, 1, u',');
        }
    }
    WCHAR shown[32] = {};
    GetWindowTextW(buddy_, shown, ARRAYSIZE(shown));
    if (text != shown) {
        SetWindowTextW(buddy_, text.c_str());
    }
}

void UpDown::SetAccelerators(const UDACCEL* accelerators, size_t count) {
    accelerators_.assign(accelerators, accelerators + count);
}

LRESULT UpDown::GetAccelerators(UDACCEL* accelerators, size_t count) const {
    std::copy_n(accelerators_.begin(), std::min(count, accelerators_.size()), accelerators);
    return static_cast<LRESULT>(accelerators_.size());
}

// Towards `high_` where `steps` is positive.
void UpDown::Step(int steps) {
    ReadPosition();
    const int increment = static_cast<int>(accelerators_.front().nInc) * steps;
    NMUPDOWN change = {};
    change.iPos = position_;
    change.iDelta = high_ < low_ ? -increment : increment;
    if (SendNotify(&change.hdr, UDN_DELTAPOS) != 0 || !IsWindow(window_)) {
        return;
    }
    int position = position_ + change.iDelta;
    if (Style() & UDS_WRAP && Clamp(position) != position) {
        position = position > std::max(low_, high_) ? std::min(low_, high_) : std::max(low_, high_);
    }
    position_ = Clamp(position);
    ShowPosition();
    SendMessageW(GetParent(window_), IsHorizontal() ? WM_HSCROLL : WM_VSCROLL, MAKEWPARAM(SB_THUMBPOSITION, position_),
                 reinterpret_cast<LPARAM>(window_));
}

void UpDown::Release() {
    if (pressed_ == Half::kNone) {
        return;
    }
    pressed_ = Half::kNone;
    ReleaseCapture();
    Redraw();
    SendMessageW(GetParent(window_), IsHorizontal() ? WM_HSCROLL : WM_VSCROLL, MAKEWPARAM(SB_ENDSCROLL, position_),
                 reinterpret_cast<LPARAM>(window_));
}

LRESULT UpDown::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE:
            if (Style() & UDS_AUTOBUDDY) {
                SetBuddy(GetWindow(window_, GW_HWNDPREV));
            }
            return 0;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            pressed_ = HalfAt(PointOf(lParam));
            SetCapture(window_);
            if (buddy_ && IsWindowEnabled(buddy_)) {
                SetFocus(buddy_);
            }
            Redraw();
            Step(pressed_ == Half::kUp ? 1 : -1);
            return 0;
        case WM_LBUTTONUP:
        case WM_CAPTURECHANGED:
            Release();
            return 0;
        case WM_MOUSEWHEEL:
            if (WheelNotches(wParam) != 0) {
                Step(WheelNotches(wParam));
            }
            return 0;
        case kOfferKey:
            if (wParam != VK_UP && wParam != VK_DOWN) {
                return FALSE;
            }
            Step(wParam == VK_UP ? 1 : -1);
            return TRUE;

        case UDM_SETRANGE:
            high_ = static_cast<SHORT>(LOWORD(lParam));
            low_ = static_cast<SHORT>(HIWORD(lParam));
            return 0;
        case UDM_GETRANGE:
            return MAKELRESULT(high_, low_);
        case UDM_SETRANGE32:
            low_ = static_cast<int>(wParam);
            high_ = static_cast<int>(lParam);
            return 0;
        case UDM_GETRANGE32:
            if (wParam) {
                *reinterpret_cast<int*>(wParam) = low_;
            }
            if (lParam) {
                *reinterpret_cast<int*>(lParam) = high_;
            }
            return 0;
        case UDM_SETPOS:
            return SetPosition(static_cast<SHORT>(LOWORD(lParam)));
        case UDM_GETPOS: {
            const bool valid = ReadPosition();
            return MAKELRESULT(position_, valid ? 0 : 1);
        }
        case UDM_SETPOS32:
            return SetPosition(static_cast<int>(lParam));
        case UDM_GETPOS32: {
            const bool valid = ReadPosition();
            if (lParam) {
                *reinterpret_cast<BOOL*>(lParam) = !valid;
            }
            return position_;
        }
        case UDM_SETBUDDY:
            return reinterpret_cast<LRESULT>(SetBuddy(reinterpret_cast<HWND>(wParam)));
        case UDM_GETBUDDY:
            return reinterpret_cast<LRESULT>(buddy_);
        case UDM_SETACCEL:
            if (wParam == 0 || !lParam) {
                return FALSE;
            }
            SetAccelerators(reinterpret_cast<const UDACCEL*>(lParam), wParam);
            return TRUE;
        case UDM_GETACCEL:
            return GetAccelerators(reinterpret_cast<UDACCEL*>(lParam), wParam);
        default:
            return HandleCommon(message, wParam, lParam);
    }
}

RECT UpDown::HalfRect(Half half) const {
    RECT rect = Client();
    if (IsHorizontal()) {
        (half == Half::kUp ? rect.left : rect.right) = Width(rect) / 2;
    } else {
        (half == Half::kUp ? rect.bottom : rect.top) = Height(rect) / 2;
    }
    return rect;
}

UpDown::Half UpDown::HalfAt(POINT point) const {
    const RECT up = HalfRect(Half::kUp);
    return PtInRect(&up, point) ? Half::kUp : Half::kDown;
}

void UpDown::Paint(HDC context, const RECT& client) {
    PaintParentBackground(context);
    const bool enabled = IsEnabled() && (!buddy_ || IsWindowEnabled(buddy_));
    FillFramedRound(context, client, 1, enabled ? kButton : kFieldDisabled, enabled ? kButtonLine : kFieldLineDisabled);
    for (const Half half : {Half::kUp, Half::kDown}) {
        const RECT rect = HalfRect(half);
        if (pressed_ == half) {
            FillRound(context, Inset(rect, 1, 1), kCornerRadius - 1, kButtonPressed);
        }
        const Direction direction = IsHorizontal() ? (half == Half::kUp ? Direction::kRight : Direction::kLeft)
                                                   : (half == Half::kUp ? Direction::kUp : Direction::kDown);
        DrawArrow(context, rect, direction, 2.5, enabled ? kMark : kMarkDisabled);
    }
}

}  // namespace

LRESULT CALLBACK UpDownProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return ControlProc<UpDown>(window, message, wParam, lParam);
}

}  // namespace host
