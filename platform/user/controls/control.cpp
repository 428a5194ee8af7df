#include "platform/user/controls/control.h"

#include <algorithm>
#include <cstdio>

#include "platform/kernel/failures.h"
#include "platform/kernel/text.h"
#include "platform/user/controls/style.h"
#include "platform/user/windows.h"

namespace host {
namespace {

// A context that text can be measured in.
class MeasuringContext {
  public:
    // The display's: nothing is drawn, and a window's own would keep what is over it.
    explicit MeasuringContext(HFONT font) : context_(OpenContext(nullptr, false)) {
        previous_ = font ? SelectObject(context_, font) : nullptr;
    }
    ~MeasuringContext() {
        if (previous_) {
            SelectObject(context_, previous_);
        }
        CloseContext(context_);
    }
    HDC Get() const { return context_; }

  private:
    const HDC context_;
    HGDIOBJ previous_;
};

void ReportUnsupported(HWND window, UINT message) {
    WCHAR name[64] = {};
    GetClassNameW(window, name, ARRAYSIZE(name));
    char number[16];
    snprintf(number, sizeof(number), "0x%04X", message);
    FailUnsupported(("message " + std::string(number) + " to " + ToUtf8(name)).c_str());
}

}  // namespace

LRESULT RunControl(HWND window, UINT message, WPARAM wParam, LPARAM lParam, std::shared_ptr<Control> (*make)(HWND)) {
    auto* slot = reinterpret_cast<std::shared_ptr<Control>*>(GetWindowLongPtrW(window, 0));
    if (!slot) {
        if (message == WM_NCCREATE) {
            slot = new std::shared_ptr<Control>(make(window));
            SetWindowLongPtrW(window, 0, reinterpret_cast<LONG_PTR>(slot));
        }
        return DefWindowProcW(window, message, wParam, lParam);
    }
    const std::shared_ptr<Control> control = *slot;
    if (message == WM_NCDESTROY) {
        SetWindowLongPtrW(window, 0, 0);
        delete slot;
        return DefWindowProcW(window, message, wParam, lParam);
    }
    return control->Handle(message, wParam, lParam);
}

LRESULT Control::HandleCommon(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SETFONT:
            font_ = reinterpret_cast<HFONT>(wParam);
            if (LOWORD(lParam)) {
                Redraw();
            }
            return 0;
        case WM_GETFONT:
            return reinterpret_cast<LRESULT>(font_);
        case WM_ENABLE:
            Redraw();
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT: {
            PAINTSTRUCT paint;
            if (const HDC context = BeginPaint(window_, &paint)) {
                const int saved = SaveDC(context);
                if (font_) {
                    SelectObject(context, font_);
                }
                Paint(context, Client());
                RestoreDC(context, saved);
                EndPaint(window_, &paint);
            }
            return 0;
        }
        default:
            if (message >= ownMessages_.first && message <= ownMessages_.last) {
                ReportUnsupported(window_, message);
                return 0;
            }
            return DefWindowProcW(window_, message, wParam, lParam);
    }
}

RECT Control::Client() const {
    RECT client = {};
    GetClientRect(window_, &client);
    return client;
}

std::u16string Control::Text() const {
    std::u16string text(static_cast<size_t>(GetWindowTextLengthW(window_)) + 1, u'\0');
    text.resize(static_cast<size_t>(GetWindowTextW(window_, text.data(), static_cast<int>(text.size()))));
    return text;
}

void Control::SendCommand(UINT code) const {
    SendMessageW(GetParent(window_), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(window_), code),
                 reinterpret_cast<LPARAM>(window_));
}

LRESULT Control::SendNotify(NMHDR* header, UINT code) const {
    header->hwndFrom = window_;
    header->idFrom = static_cast<UINT_PTR>(GetDlgCtrlID(window_));
    header->code = code;
    return SendMessageW(GetParent(window_), WM_NOTIFY, header->idFrom, reinterpret_cast<LPARAM>(header));
}

HBRUSH Control::AskColors(HDC context, UINT message) const {
    const auto answer = reinterpret_cast<HBRUSH>(SendMessageW(
        GetParent(window_), message, reinterpret_cast<WPARAM>(context), reinterpret_cast<LPARAM>(window_)));
    if (answer) {
        return answer;
    }
    const int color = message == WM_CTLCOLOREDIT || message == WM_CTLCOLORLISTBOX ? COLOR_WINDOW : COLOR_3DFACE;
    SetTextColor(context, GetSysColor(COLOR_WINDOWTEXT));
    SetBkColor(context, GetSysColor(color));
    return GetSysColorBrush(color);
}

void Control::PaintParentBackground(HDC context) const {
    const HWND parent = GetParent(window_);
    POINT place = {0, 0};
    MapWindowPoints(window_, parent, &place, 1);
    POINT previous = {};
    SetViewportOrgEx(context, 0, 0, &previous);
    SetViewportOrgEx(context, previous.x - place.x, previous.y - place.y, nullptr);
    SendMessageW(parent, WM_ERASEBKGND, reinterpret_cast<WPARAM>(context), 0);
    SetViewportOrgEx(context, previous.x, previous.y, nullptr);
}

void Control::PaintFieldFrame(COLORREF field, bool focused) const {
    RECT outer;
    GetWindowRect(window_, &outer);
    OffsetRect(&outer, -outer.left, -outer.top);
    const RECT client = Client();
    const int thickness = (Width(outer) - Width(client)) / 2;
    const HDC context = thickness > 0 ? GetWindowDC(window_) : nullptr;
    if (!context) {
        return;
    }
    FrameField(context, outer, focused ? kAccent : IsEnabled() ? kFieldLine : kFieldLineDisabled);
    for (int ring = 1; ring < thickness; ++ring) {
        FrameColor(context, Inset(outer, ring, ring), field);
    }
    ReleaseDC(window_, context);
}

int Control::FontHeight() const {
    const MeasuringContext context(font_);
    TEXTMETRICW metrics = {};
    GetTextMetricsW(context.Get(), &metrics);
    return std::max<int>(metrics.tmHeight, 1);  // where nothing can be measured, too
}

int Control::TextWidth(std::u16string_view text) const {
    const MeasuringContext context(font_);
    SIZE size = {};
    GetTextExtentPoint32W(context.Get(), text.data(), static_cast<int>(text.size()), &size);
    return size.cx;
}

void DrawByOwner(HWND window, DRAWITEMSTRUCT item) {
    item.hwndItem = window;
    item.CtlID = static_cast<UINT>(GetDlgCtrlID(window));
    item.itemState |= IsWindowEnabled(window) ? 0u : UINT{ODS_DISABLED};
    SendMessageW(GetParent(window), WM_DRAWITEM, item.CtlID, reinterpret_cast<LPARAM>(&item));
}

}  // namespace host
