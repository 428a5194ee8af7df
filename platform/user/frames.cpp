#include "platform/user/frames.h"

#include <string>

namespace host {
namespace {

constexpr COLORREF kCaption = RGB(255, 255, 255);
constexpr COLORREF kTitle = RGB(26, 26, 26);
constexpr COLORREF kIdleTitle = RGB(140, 140, 140);
constexpr COLORREF kBorder = RGB(140, 140, 140);
constexpr COLORREF kChildBorder = RGB(200, 200, 200);
constexpr COLORREF kField = RGB(255, 255, 255);
constexpr LONG kCloseWidth = 46;  // of the button with the cross
constexpr LONG kCross = 10;
constexpr LONG kTitleIndent = 10;

bool HasCaption(const Window& window) {
    return (window.style & WS_CAPTION) == WS_CAPTION;
}

// Relative to the window's corner. Empty where there is no caption.
RECT CaptionRect(const Window& window) {
    if (!HasCaption(window)) {
        return {};
    }
    return {1, 1, window.rect.right - window.rect.left - 1, 1 + GetSystemMetrics(SM_CYCAPTION)};
}

RECT CloseRect(const Window& window) {
    RECT close = CaptionRect(window);
    if ((window.style & WS_SYSMENU) == 0) {
        return {};
    }
    close.left = close.right - kCloseWidth;
    return close;
}

void Fill(HDC context, const RECT& rect, COLORREF color) {
    const HBRUSH brush = CreateSolidBrush(color);
    FillRect(context, &rect, brush);
    DeleteObject(brush);
}

void Outline(HDC context, const RECT& rect, COLORREF color) {
    const HBRUSH brush = CreateSolidBrush(color);
    FrameRect(context, &rect, brush);
    DeleteObject(brush);
}

void DrawCross(HDC context, const RECT& rect, COLORREF color) {
    const LONG left = (rect.left + rect.right - kCross) / 2;
    const LONG top = (rect.top + rect.bottom - kCross) / 2;
    for (LONG i = 0; i < kCross; ++i) {
        SetPixel(context, left + i, top + i, color);
        SetPixel(context, left + kCross - 1 - i, top + i, color);
    }
}

void DrawCaption(const Window& window, HDC context) {
    RECT rect = CaptionRect(window);
    Fill(context, rect, kCaption);
    const COLORREF color = ThisThread().active == window.handle ? kTitle : kIdleTitle;
    const RECT close = CloseRect(window);
    if (!IsEmptyRect(close)) {
        DrawCross(context, close, color);
        rect.right = close.left;
    }
    rect.left += kTitleIndent;
    SelectObject(context, GetStockObject(DEFAULT_GUI_FONT));
    SetTextColor(context, color);
    SetBkMode(context, TRANSPARENT);
    DrawTextW(context, window.text.c_str(), static_cast<int>(window.text.size()), &rect,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
}

RECT Shrunk(const RECT& rect) {
    return {rect.left + 1, rect.top + 1, rect.right - 1, rect.bottom - 1};
}

}  // namespace

void DrawFrame(Window& window) {
    const RECT frame = FrameOf(window.style, window.exStyle);
    if (frame.left == 0 && frame.top == 0) {
        return;
    }
    const HWND handle = window.handle;
    const HDC context = OpenContext(handle, true);
    if (context == nullptr) {
        return;
    }
    RECT rect = {0, 0, window.rect.right - window.rect.left, window.rect.bottom - window.rect.top};
    const bool isField = (window.exStyle & (WS_EX_CLIENTEDGE | WS_EX_STATICEDGE)) != 0;
    for (LONG i = 0; i < frame.left; ++i, rect = Shrunk(rect)) {
        Outline(context, rect, isField && i > 0 ? kField : window.IsChild() && !isField ? kChildBorder : kBorder);
    }
    if (HasCaption(window)) {
        DrawCaption(window, context);
    }
    CloseContext(context);
}

LRESULT HitFrame(const Window& window, POINT screen) {
    const RECT whole = ScreenRect(window);
    if (!PtInRect(&whole, screen)) {
        return HTNOWHERE;
    }
    const POINT inWindow = {screen.x - whole.left, screen.y - whole.top};
    const RECT close = CloseRect(window);
    const RECT caption = CaptionRect(window);
    return PtInRect(&window.client, inWindow) ? HTCLIENT
           : PtInRect(&close, inWindow)       ? HTCLOSE
           : PtInRect(&caption, inWindow)     ? HTCAPTION
                                              : HTBORDER;
}

}  // namespace host
