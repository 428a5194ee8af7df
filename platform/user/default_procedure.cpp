// DefWindowProcW: what windows do where their procedures have no other mind.
#include <windows.h>

#include <algorithm>

#include "platform/kernel/failures.h"
#include "platform/user/frames.h"
#include "platform/user/windows.h"

namespace host {
namespace {

constexpr WORD kSystemCommandMask = 0xFFF0;

LRESULT GetText(const Window& window, WPARAM capacity, LPWSTR text) {
    if (capacity == 0) {
        return 0;
    }
    const size_t length = window.text.copy(text, capacity - 1);
    text[length] = 0;
    return static_cast<LRESULT>(length);
}

LRESULT SetText(Window& window, LPCWSTR text) {
    window.text = text != nullptr ? text : u"";
    ++ThisThread().changes;
    if ((window.style & WS_CAPTION) == WS_CAPTION) {
        constexpr RECT kNone = {};
        Invalidate(window, &kNone, false, true);
    }
    return TRUE;
}

LRESULT EraseBackground(const Window& window, HDC context) {
    const HBRUSH brush = window.windowClass->background;
    if (brush == nullptr) {
        return FALSE;
    }
    const SIZE size = ClientSize(window);
    const RECT client = {0, 0, size.cx, size.cy};
    FillRect(context, &client, brush);
    return TRUE;
}

LRESULT ColorControl(HDC context, UINT message) {
    const bool isField = message == WM_CTLCOLOREDIT || message == WM_CTLCOLORLISTBOX;
    const int back = isField ? COLOR_WINDOW : COLOR_BTNFACE;
    SetBkColor(context, GetSysColor(back));
    SetTextColor(context, GetSysColor(isField ? COLOR_WINDOWTEXT : COLOR_BTNTEXT));
    return reinterpret_cast<LRESULT>(GetSysColorBrush(back));
}

// The parent decides first, then the class.
LRESULT ChooseCursor(const Window& window, WPARAM wParam, LPARAM lParam) {
    if (window.IsChild() && Send(window.parent, WM_SETCURSOR, wParam, lParam) != FALSE) {
        return TRUE;
    }
    if (LOWORD(lParam) == HTCLIENT && window.windowClass->cursor != nullptr) {
        SetCursor(window.windowClass->cursor);
        return TRUE;
    }
    SetCursor(LoadCursorW(nullptr, IDC_ARROW));
    return FALSE;
}

void AskForHelp(const Window& window) {
    HELPINFO help = {};
    help.cbSize = sizeof help;
    help.iContextType = HELPINFO_WINDOW;
    help.iCtrlId = window.IsChild() ? static_cast<int>(window.id) : 0;
    help.hItemHandle = window.handle;
    help.MousePos = ThisThread().cursor;
    Send(window.handle, WM_HELP, 0, reinterpret_cast<LPARAM>(&help));
}

// To the parent of a child, as help and menus are asked for.
LRESULT PassUp(const Window& window, UINT message, WPARAM wParam, LPARAM lParam) {
    return window.IsChild() ? Send(window.parent, message, wParam, lParam) : 0;
}

void PressKey(Window& window, UINT message, WPARAM key) {
    if (key == VK_F1) {
        AskForHelp(window);
    } else if (message == WM_SYSKEYDOWN && key == VK_F4) {
        PostMessageW(RootOf(window).handle, WM_SYSCOMMAND, SC_CLOSE, 0);
    } else if (key == VK_F10 && GetKeyState(VK_SHIFT) < 0) {
        Send(window.handle, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(window.handle), -1);
    }
}

LRESULT SetIcon(Window& window, WPARAM which, LPARAM icon) {
    HICON& slot = window.icons[which == ICON_BIG ? 1 : 0];
    const HICON before = slot;
    slot = reinterpret_cast<HICON>(icon);
    return reinterpret_cast<LRESULT>(before);
}

}  // namespace
}  // namespace host

using namespace host;

extern "C" {

LRESULT WINAPI DefWindowProcW(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    Window* const found = FindWindowObject(handle);
    if (found == nullptr) {
        return 0;
    }
    Window& window = *found;
    switch (message) {
        case WM_NCCREATE: {
            const auto* const create = reinterpret_cast<const CREATESTRUCTW*>(lParam);
            // A number in the text's place is none.
            if (create->lpszName != nullptr && create->lpszName[0] != 0xFFFF) {
                window.text = create->lpszName;
            }
            return TRUE;
        }
        case WM_SETTEXT:
            return SetText(window, reinterpret_cast<LPCWSTR>(lParam));
        case WM_GETTEXT:
            return GetText(window, wParam, reinterpret_cast<LPWSTR>(lParam));
        case WM_GETTEXTLENGTH:
            return static_cast<LRESULT>(window.text.size());
        case WM_NCCALCSIZE: {
            auto* const rect = reinterpret_cast<RECT*>(lParam);
            const RECT frame = FrameOf(window.style, window.exStyle);
            *rect = {rect->left + frame.left, rect->top + frame.top, rect->right - frame.right,
                     rect->bottom - frame.bottom};
            return 0;
        }
        case WM_NCHITTEST:
            return HitFrame(window, PointFrom(lParam));
        case WM_NCPAINT:
            DrawFrame(window);
            return 0;
        case WM_PAINT: {
            PAINTSTRUCT paint;
            if (BeginPaint(handle, &paint) != nullptr) {
                EndPaint(handle, &paint);
            }
            return 0;
        }
        case WM_ERASEBKGND:
            return EraseBackground(window, reinterpret_cast<HDC>(wParam));
        case WM_SETREDRAW:
            window.redraws = wParam != FALSE;
            return 0;
        case WM_CTLCOLORMSGBOX:
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORLISTBOX:
        case WM_CTLCOLORBTN:
        case WM_CTLCOLORDLG:
        case WM_CTLCOLORSCROLLBAR:
        case WM_CTLCOLORSTATIC:
            return ColorControl(reinterpret_cast<HDC>(wParam), message);
        case WM_CLOSE:
            DestroyWindow(handle);
            return 0;
        case WM_SYSCOMMAND:
            if ((wParam & kSystemCommandMask) == SC_CLOSE) {
                Send(handle, WM_CLOSE);
            }
            return 0;
        case WM_NCLBUTTONUP:
            if (wParam == HTCLOSE) {
                Send(handle, WM_SYSCOMMAND, SC_CLOSE, lParam);
            }
            return 0;
        case WM_ACTIVATE:
            if (LOWORD(wParam) != WA_INACTIVE) {
                SetFocus(handle);
            }
            return 0;
        case WM_MOUSEACTIVATE: {
            const LRESULT answer = PassUp(window, message, wParam, lParam);
            return answer != 0 ? answer : MA_ACTIVATE;
        }
        case WM_SETCURSOR:
            return ChooseCursor(window, wParam, lParam);
        case WM_MOUSEWHEEL:
        case WM_HELP:
        case WM_CONTEXTMENU:
            return PassUp(window, message, wParam, lParam);
        case WM_RBUTTONUP: {
            POINT at = PointFrom(lParam);
            ClientToScreen(handle, &at);
            return Send(handle, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(handle), PointParameter(at));
        }
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN:
            PressKey(window, message, wParam);
            return 0;
        case WM_KEYUP:
            if (wParam == VK_APPS) {
                Send(handle, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(handle), -1);
            }
            return 0;
        case WM_SETICON:
            return SetIcon(window, wParam, lParam);
        case WM_GETICON:
            return reinterpret_cast<LRESULT>(window.icons[wParam == ICON_BIG ? 1 : 0]);
        default:
            return 0;
    }
}

}  // extern "C"
