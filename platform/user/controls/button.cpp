// Push buttons, check boxes, radio buttons, group boxes and owner-drawn buttons.
#include <windows.h>

#include <algorithm>

#include "platform/user/controls/control.h"
#include "platform/user/controls/controls.h"
#include "platform/user/controls/images.h"
#include "platform/user/controls/style.h"

namespace host {
namespace {

class Button : public Control {
  public:
    explicit Button(HWND window) : Control(window, {BM_GETCHECK, BM_SETIMAGE + 8}) {}
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    UINT Kind() const { return Style() & BS_TYPEMASK; }
    bool IsRadio() const { return Kind() == BS_RADIOBUTTON || Kind() == BS_AUTORADIOBUTTON; }
    bool IsPush() const { return Kind() == BS_PUSHBUTTON || Kind() == BS_DEFPUSHBUTTON; }
    LRESULT DialogCode() const;

    void SetCheck(UINT check);
    void SetPushed(bool pushed);
    void CheckAloneInGroup();
    void Click();
    void ChangeFocus(bool focused);

    void Paint(HDC context, const RECT& client) override;
    void PaintPush(HDC context, const RECT& client) const;
    void PaintCheck(HDC context, const RECT& client) const;
    void PaintBox(HDC context, const RECT& box) const;
    void PaintGroup(HDC context, const RECT& client) const;
    void DrawByOwner(HDC context, const RECT& client, UINT action) const;
    COLORREF LabelColor(COLORREF enabled) const { return IsEnabled() ? enabled : GetSysColor(COLOR_GRAYTEXT); }

    UINT check_ = BST_UNCHECKED;
    bool pushed_ = false;
    bool heldByKey_ = false;    // the space bar is down
    bool heldByMouse_ = false;  // the left button went down here and isn't up
    bool clicking_ = false;     // BM_CLICK is at work: the mouse counts as over the button
    Image image_;
};

LRESULT Button::DialogCode() const {
    switch (Kind()) {
        case BS_PUSHBUTTON:
            return DLGC_BUTTON | DLGC_UNDEFPUSHBUTTON;
        case BS_DEFPUSHBUTTON:
            return DLGC_BUTTON | DLGC_DEFPUSHBUTTON;
        case BS_RADIOBUTTON:
        case BS_AUTORADIOBUTTON:
            return DLGC_BUTTON | DLGC_RADIOBUTTON;
        case BS_GROUPBOX:
            return DLGC_STATIC;
        default:
            return DLGC_BUTTON;
    }
}

void Button::SetCheck(UINT check) {
    const bool isCheckBox = Kind() == BS_CHECKBOX || Kind() == BS_AUTOCHECKBOX;
    if (!isCheckBox && !IsRadio()) {
        return;
    }
    check_ = std::min<UINT>(check, BST_CHECKED);
    if (IsRadio()) {
        const DWORD style = Style();
        SetWindowLongW(window_, GWL_STYLE, static_cast<LONG>(check_ ? style | WS_TABSTOP : style & ~WS_TABSTOP));
    }
    Redraw();
}

void Button::SetPushed(bool pushed) {
    if (pushed_ == pushed) {
        return;
    }
    pushed_ = pushed;
    Redraw();
}

// The group goes from a control with WS_GROUP up to the next one.
void Button::CheckAloneInGroup() {
    HWND first = window_;
    while (!(GetWindowLongW(first, GWL_STYLE) & static_cast<LONG>(WS_GROUP))) {
        const HWND before = GetWindow(first, GW_HWNDPREV);
        if (!before) {
            break;
        }
        first = before;
    }
    for (HWND other = first; other; other = GetWindow(other, GW_HWNDNEXT)) {
        if (other != first && GetWindowLongW(other, GWL_STYLE) & static_cast<LONG>(WS_GROUP)) {
            break;
        }
        if (other != window_ && SendMessageW(other, WM_GETDLGCODE, 0, 0) & DLGC_RADIOBUTTON) {
            SendMessageW(other, BM_SETCHECK, BST_UNCHECKED, 0);
        }
    }
    SendMessageW(window_, BM_SETCHECK, BST_CHECKED, 0);
}

void Button::Click() {
    if (Kind() == BS_AUTOCHECKBOX) {
        SendMessageW(window_, BM_SETCHECK, check_ ? BST_UNCHECKED : BST_CHECKED, 0);
    } else if (Kind() == BS_AUTORADIOBUTTON) {
        CheckAloneInGroup();
    }
    if (IsWindow(window_)) {
        SendCommand(BN_CLICKED);
    }
}

void Button::ChangeFocus(bool focused) {
    if (!focused) {
        heldByKey_ = false;
        if (!heldByMouse_) {
            SetPushed(false);
        }
    }
    Redraw();
    if (Style() & BS_NOTIFY) {
        SendCommand(focused ? BN_SETFOCUS : BN_KILLFOCUS);
    }
}

LRESULT Button::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    const auto isOver = [&] {
        const RECT client = Client();
        return clicking_ || PtInRect(&client, PointOf(lParam));
    };
    switch (message) {
        case WM_GETDLGCODE:
            return DialogCode();
        case WM_NCHITTEST:
            return Kind() == BS_GROUPBOX ? HTTRANSPARENT : HandleCommon(message, wParam, lParam);
        case WM_SETTEXT: {
            const LRESULT result = HandleCommon(message, wParam, lParam);
            Redraw();
            return result;
        }
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            ChangeFocus(message == WM_SETFOCUS);
            return 0;

        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            if (Kind() == BS_GROUPBOX) {
                return 0;
            }
            heldByMouse_ = true;
            SetCapture(window_);
            SetFocus(window_);
            SetPushed(true);
            return 0;
        case WM_MOUSEMOVE:
            if (heldByMouse_) {
                SetPushed(isOver());
            }
            return 0;
        case WM_LBUTTONUP:
            if (heldByMouse_) {
                const bool clicked = isOver();
                heldByMouse_ = false;
                SetPushed(false);
                ReleaseCapture();
                if (clicked) {
                    Click();
                }
            }
            return 0;
        case WM_CAPTURECHANGED:
            heldByMouse_ = false;
            SetPushed(false);
            return 0;

        case WM_KEYDOWN:
            if (wParam == VK_SPACE) {
                heldByKey_ = true;
                SetPushed(true);
                return 0;
            }
            return HandleCommon(message, wParam, lParam);
        case WM_KEYUP:
            if (wParam == VK_SPACE && heldByKey_) {
                heldByKey_ = false;
                SetPushed(false);
                Click();
                return 0;
            }
            return HandleCommon(message, wParam, lParam);

        case BM_GETCHECK:
            return check_;
        case BM_SETCHECK:
            SetCheck(static_cast<UINT>(wParam));
            return 0;
        case BM_GETSTATE:
            return static_cast<LRESULT>(check_ | (pushed_ ? BST_PUSHED : 0u) | (HasFocus() ? BST_FOCUS : 0u));
        case BM_SETSTATE:
            SetPushed(wParam != 0);
            return 0;
        case BM_SETSTYLE:
            SetWindowLongW(window_, GWL_STYLE, static_cast<LONG>((Style() & 0xFFFF0000u) | LOWORD(wParam)));
            if (LOWORD(lParam)) {
                Redraw();
            }
            return 0;
        case BM_CLICK:
            if (!clicking_) {
                clicking_ = true;
                SendMessageW(window_, WM_LBUTTONDOWN, MK_LBUTTON, 0);
                SendMessageW(window_, WM_LBUTTONUP, 0, 0);
                clicking_ = false;
            }
            return 0;
        case BM_GETIMAGE:
            return reinterpret_cast<LRESULT>(image_.handle);
        case BM_SETIMAGE: {
            const HANDLE previous = image_.handle;
            image_ = {static_cast<UINT>(wParam), reinterpret_cast<HANDLE>(lParam)};
            Redraw();
            return reinterpret_cast<LRESULT>(previous);
        }
        default:
            return HandleCommon(message, wParam, lParam);
    }
}

void Button::Paint(HDC context, const RECT& client) {
    if (Kind() == BS_OWNERDRAW) {
        DrawByOwner(context, client, ODA_DRAWENTIRE);
    } else if (IsPush()) {
        PaintPush(context, client);
    } else if (Kind() == BS_GROUPBOX) {
        PaintGroup(context, client);
    } else {
        PaintCheck(context, client);
    }
}

void Button::PaintPush(HDC context, const RECT& client) const {
    FillRect(context, &client, AskColors(context, WM_CTLCOLORBTN));
    const bool strong = Kind() == BS_DEFPUSHBUTTON && IsEnabled();
    const COLORREF fill = strong ? (pushed_ ? kAccentPressed : kAccent)
                                 : (!IsEnabled() ? kFieldDisabled
                                    : pushed_    ? kButtonPressed
                                                 : kButton);
    const bool focused = HasFocus();
    FillFramedRound(context, client, focused && !strong ? 2 : 1, fill,
                    strong    ? fill
                    : focused ? kAccent
                              : (IsEnabled() ? kButtonLine : kFieldLineDisabled));
    if (focused && strong) {
        FillFramedRound(context, Inset(client, 2, 2), 1, fill, kOnAccent);
    }
    const RECT inner = Inset(client, 3, 2);
    if (image_.handle) {
        DrawImageCentered(context, inner, image_);
        return;
    }
    const COLORREF color = LabelColor(strong ? kOnAccent : GetSysColor(COLOR_BTNTEXT));
    const std::u16string text = Text();
    if (Style() & BS_MULTILINE) {
        const SIZE size = MeasureLabel(context, text, Width(inner), DT_WORDBREAK | DT_CENTER);
        RECT lines = inner;
        lines.top += std::max<LONG>((Height(inner) - size.cy) / 2, 0);
        DrawLabel(context, text, lines, DT_WORDBREAK | DT_CENTER, color);
    } else {
        DrawLabel(context, text, inner, DT_SINGLELINE | DT_CENTER | DT_VCENTER, color);
    }
}

void Button::PaintCheck(HDC context, const RECT& client) const {
    FillRect(context, &client, AskColors(context, WM_CTLCOLORSTATIC));
    const COLORREF color = LabelColor(GetTextColor(context));
    const std::u16string text = Text();
    const bool multiline = (Style() & BS_MULTILINE) != 0;
    const UINT format = multiline ? DT_WORDBREAK : DT_SINGLELINE;
    const bool boxAtRight = (Style() & BS_LEFTTEXT) != 0;
    RECT label = client;
    (boxAtRight ? label.right : label.left) += boxAtRight ? -(kCheckSize + kCheckGap) : kCheckSize + kCheckGap;
    const SIZE size = MeasureLabel(context, text, Width(label), format);
    label.top += std::max<LONG>((Height(client) - size.cy) / 2, 0);
    label.bottom = label.top + size.cy;
    DrawLabel(context, text, label, format, color);

    // The box stands beside the first line.
    const int lineHeight = multiline ? MeasureLabel(context, u"X", Width(label), DT_SINGLELINE).cy : size.cy;
    const int top = text.empty() ? (Height(client) - kCheckSize) / 2 : label.top + (lineHeight - kCheckSize) / 2;
    const int left = boxAtRight ? client.right - kCheckSize : client.left;
    PaintBox(context, {left, top, left + kCheckSize, top + kCheckSize});
    if (HasFocus() && !text.empty()) {
        const RECT focus = {label.left - 2, std::max(label.top - 1, client.top),
                            std::min<LONG>(label.left + size.cx + 2, client.right),
                            std::min(label.bottom + 1, client.bottom)};
        DrawFocusRect(context, &focus);
    }
}

void Button::PaintBox(HDC context, const RECT& box) const {
    const bool enabled = IsEnabled();
    const COLORREF on = !enabled ? kMarkDisabled : pushed_ ? kAccentPressed : kAccent;
    const COLORREF line = check_ ? on : enabled ? (pushed_ || HasFocus() ? kAccent : kFieldLine) : kFieldLineDisabled;
    const COLORREF fill = check_ ? on : !enabled ? kFieldDisabled : pushed_ ? kButtonPressed : kField;
    if (IsRadio()) {
        const PointF middle = {(box.left + box.right) / 2.0, (box.top + box.bottom) / 2.0};
        FillDisc(context, middle, kCheckSize / 2.0, line);
        FillDisc(context, middle, kCheckSize / 2.0 - 1, fill);
        if (check_) {
            FillDisc(context, middle, pushed_ ? 2 : 2.6, kOnAccent);
        }
        return;
    }
    FillFramedRound(context, box, 1, fill, line);
    if (check_) {
        DrawTick(context, box, kOnAccent);
    }
}

// The frame lies around other controls, so only what it draws is covered.
void Button::PaintGroup(HDC context, const RECT& client) const {
    const HBRUSH brush = AskColors(context, WM_CTLCOLORSTATIC);
    const COLORREF color = LabelColor(GetTextColor(context));
    const std::u16string text = Text();
    const SIZE size = MeasureLabel(context, text.empty() ? u"X" : text, Width(client), DT_SINGLELINE);
    RECT frame = client;
    frame.top += size.cy / 2;
    FrameColor(context, frame, kGroupLine);
    if (text.empty()) {
        return;
    }
    const RECT label = {client.left + 9, client.top, std::min<LONG>(client.left + 9 + size.cx, client.right - 4),
                        client.top + size.cy};
    const RECT gap = Inset(label, -3, 0);
    FillRect(context, &gap, brush);
    DrawLabel(context, text, label, DT_SINGLELINE, color);
}

void Button::DrawByOwner(HDC context, const RECT& client, UINT action) const {
    AskColors(context, WM_CTLCOLORBTN);
    DRAWITEMSTRUCT item = {};
    item.CtlType = ODT_BUTTON;
    item.itemAction = action;
    item.itemState = (pushed_ ? ODS_SELECTED : 0u) | (HasFocus() ? ODS_FOCUS : 0u);
    item.hDC = context;
    item.rcItem = client;
    host::DrawByOwner(window_, item);
}

}  // namespace

LRESULT CALLBACK ButtonProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return ControlProc<Button>(window, message, wParam, lParam);
}

}  // namespace host
