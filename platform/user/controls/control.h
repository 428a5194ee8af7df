// What the control classes share. A control is an object that is kept in its window's extra bytes, made by WM_NCCREATE
// and let go by WM_NCDESTROY; while it handles a message it lives on, also where a notification destroys the window.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <string_view>

namespace host {

// The messages that a class has for itself. Those of them that it doesn't handle are reported as unsupported.
struct MessageRange {
    UINT first;
    UINT last;
};

// Between the layer's own controls: an edit field's keys that step or drop down what stands beside it are offered to
// that control first. To an edit field: wParam is the window that wants them, or null.
inline constexpr UINT kSetKeyTaker = WM_USER + 0x300;
// From the edit field: wParam is the virtual key, lParam that of the key's message. Nonzero: taken.
inline constexpr UINT kOfferKey = WM_USER + 0x301;

class Control {
  public:
    Control(HWND window, MessageRange ownMessages) : window_(window), ownMessages_(ownMessages) {}
    virtual ~Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    virtual LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) = 0;

  protected:
    // Covers the whole client area. The context has the control's font; what is changed in it is put back afterwards.
    virtual void Paint(HDC context, const RECT& client) = 0;

    // What controls do alike: painting, the font, enabling. Unknown messages go to DefWindowProcW.
    LRESULT HandleCommon(UINT message, WPARAM wParam, LPARAM lParam);

    DWORD Style() const { return static_cast<DWORD>(GetWindowLongW(window_, GWL_STYLE)); }
    RECT Client() const;
    bool HasFocus() const { return GetFocus() == window_; }
    bool IsEnabled() const { return IsWindowEnabled(window_) != 0; }
    void Redraw() const { InvalidateRect(window_, nullptr, TRUE); }
    std::u16string Text() const;

    // WM_COMMAND with the control's id and the code, WM_NOTIFY with its header (only its code is the caller's), to the
    // parent.
    void SendCommand(UINT code) const;
    LRESULT SendNotify(NMHDR* header, UINT code) const;

    // The parent's answer to a WM_CTLCOLOR… message; never null. Text colour and background are set in the context.
    HBRUSH AskColors(HDC context, UINT message) const;
    // Lets the parent erase what lies behind the control.
    void PaintParentBackground(HDC context) const;
    // The frame of a field around the client area, where the window has one.
    void PaintFieldFrame(COLORREF field, bool focused) const;

    int FontHeight() const;
    int TextWidth(std::u16string_view text) const;

    const HWND window_;
    HFONT font_ = nullptr;

  private:
    const MessageRange ownMessages_;
};

// The window procedure of the class whose controls are of type T.
LRESULT RunControl(HWND window, UINT message, WPARAM wParam, LPARAM lParam, std::shared_ptr<Control> (*make)(HWND));

template <class T>
LRESULT CALLBACK ControlProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return RunControl(window, message, wParam, lParam,
                      [](HWND own) -> std::shared_ptr<Control> { return std::make_shared<T>(own); });
}

// Has a window's parent draw it or one of its items, by WM_DRAWITEM. The window's own are set in `item`: its handle and
// id, and ODS_DISABLED.
void DrawByOwner(HWND window, DRAWITEMSTRUCT item);

inline POINT PointOf(LPARAM lParam) {
    return {static_cast<SHORT>(LOWORD(lParam)), static_cast<SHORT>(HIWORD(lParam))};
}

inline bool IsKeyDown(int key) {
    return GetKeyState(key) < 0;
}

// The notches that a WM_MOUSEWHEEL stands for, positive away from the user.
inline int WheelNotches(WPARAM wParam) {
    return GET_WHEEL_DELTA_WPARAM(wParam) / WHEEL_DELTA;
}

}  // namespace host
