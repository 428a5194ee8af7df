// Where windows lie, and whether they are shown.
#include <windows.h>

#include <algorithm>

#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/user/windows.h"

namespace host {
namespace {

constexpr LONG kCaptionHeight = 30;
constexpr LONG kEdge = 2;        // of WS_EX_CLIENTEDGE
constexpr LONG kScrollBar = 17;  // width of an upright one, height of a lying one
constexpr LONG kIcon = 32;

struct Metric {
    int index;
    LONG value;  // pixels
};
constexpr Metric kMetrics[] = {
    {SM_CXSCREEN, kScreenWidth},
    {SM_CYSCREEN, kScreenHeight},
    {SM_CXVSCROLL, kScrollBar},
    {SM_CYHSCROLL, kScrollBar},
    {SM_CYCAPTION, kCaptionHeight},
    {SM_CXBORDER, 1},
    {SM_CYBORDER, 1},
    {SM_CXICON, kIcon},
    {SM_CYICON, kIcon},
    {SM_CXEDGE, kEdge},
    {SM_CYEDGE, kEdge},
};

constexpr UINT kKnownPlacing = SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOREDRAW | SWP_NOACTIVATE |
                               SWP_FRAMECHANGED | SWP_SHOWWINDOW | SWP_HIDEWINDOW;

POINT Subtract(POINT a, POINT b) {
    return {a.x - b.x, a.y - b.y};
}

// The corner of a window on the screen.
POINT Corner(const Window& window) {
    const Window* const parent = TreeParent(window);
    const POINT origin = parent != nullptr && parent->thread != 0 ? ClientOrigin(*parent) : POINT{0, 0};
    return {origin.x + window.rect.left, origin.y + window.rect.top};
}

// The client area's corner on the screen; null is the screen. False where there is no such window.
bool OriginOf(HWND window, POINT* origin) {
    *origin = {0, 0};
    if (window == nullptr) {
        return true;
    }
    const Window* const found = FindWindowObject(window);
    if (found != nullptr) {
        *origin = ClientOrigin(*found);
    }
    return found != nullptr;
}

void SetShown(HWND window, bool shown, bool activate) {
    Send(window, WM_SHOWWINDOW, shown, 0);
    Window* const found = FindWindowObject(window);
    if (found == nullptr) {
        return;
    }
    ++ThisThread().changes;
    if (shown) {
        found->style |= WS_VISIBLE;
        Invalidate(*found, nullptr, true, true, true);
        if (activate && !found->IsChild()) {
            ActivateWindow(window);
        }
        return;
    }
    const HWND parent = found->parent;
    found->style &= ~WS_VISIBLE;
    found->isInvalid = false;
    InvalidatePlace(*found, found->rect);
    if (parent != nullptr) {
        MoveFocusOut(window, parent);
    } else {
        ActivateAnother(window);
    }
}

// The top-most window at a point of the screen that isn't transparent to the mouse. Null: none.
HWND HitWindow(const std::vector<HWND>& siblings, POINT screen) {
    for (const HWND handle : std::vector<HWND>(siblings)) {
        Window* window = IsWindow(handle) ? FindWindowObject(handle) : nullptr;
        if (window == nullptr || !window->IsMarkedVisible() ||
            (window->IsChild() && (window->style & WS_DISABLED) != 0)) {
            continue;
        }
        const RECT rect = ScreenRect(*window);
        if (!PtInRect(&rect, screen)) {
            continue;
        }
        const POINT origin = ClientOrigin(*window);
        const SIZE size = ClientSize(*window);
        const RECT client = {origin.x, origin.y, origin.x + size.cx, origin.y + size.cy};
        if (PtInRect(&client, screen) && (window->style & WS_DISABLED) == 0) {
            if (const HWND child = HitWindow(window->children, screen)) {
                return child;
            }
        }
        if ((window->style & WS_DISABLED) != 0 ||
            Send(handle, WM_NCHITTEST, 0, PointParameter(screen)) != HTTRANSPARENT) {
            return handle;
        }
    }
    return nullptr;
}

}  // namespace

POINT ClientOrigin(const Window& window) {
    const POINT corner = Corner(window);
    return {corner.x + window.client.left, corner.y + window.client.top};
}

RECT ScreenRect(const Window& window) {
    const POINT corner = Corner(window);
    return Moved(window.rect, corner.x - window.rect.left, corner.y - window.rect.top);
}

SIZE ClientSize(const Window& window) {
    return {window.client.right - window.client.left, window.client.bottom - window.client.top};
}

bool IsEmptyRect(const RECT& rect) {
    return rect.left >= rect.right || rect.top >= rect.bottom;
}

RECT Intersection(const RECT& a, const RECT& b) {
    const RECT both = {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                       std::min(a.bottom, b.bottom)};
    return IsEmptyRect(both) ? RECT{} : both;
}

RECT Moved(const RECT& rect, LONG dx, LONG dy) {
    return {rect.left + dx, rect.top + dy, rect.right + dx, rect.bottom + dy};
}

RECT FrameOf(DWORD style, DWORD exStyle) {
    LONG side = 0;
    if ((style & (WS_CAPTION | WS_THICKFRAME)) != 0 || (exStyle & WS_EX_DLGMODALFRAME) != 0) {
        side = 1;
    }
    if ((exStyle & WS_EX_CLIENTEDGE) != 0) {
        side += kEdge;
    } else if ((exStyle & WS_EX_STATICEDGE) != 0) {
        side += 1;
    }
    return {side, (style & WS_CAPTION) == WS_CAPTION ? side + kCaptionHeight : side, side, side};
}

void CalculateClient(HWND window) {
    const Window* found = FindWindowObject(window);
    if (found == nullptr) {
        return;
    }
    const RECT rect = found->rect;
    RECT client = rect;
    Send(window, WM_NCCALCSIZE, FALSE, reinterpret_cast<LPARAM>(&client));
    if (Window* const left = FindWindowObject(window)) {
        left->client = Moved(Intersection(client, rect), -rect.left, -rect.top);
    }
}

LPARAM PointParameter(POINT point) {
    return MAKELPARAM(point.x, point.y);
}

POINT PointFrom(LPARAM parameter) {
    return {static_cast<SHORT>(LOWORD(parameter)), static_cast<SHORT>(HIWORD(parameter))};
}

}  // namespace host

using namespace host;

extern "C" {

int WINAPI GetSystemMetrics(int index) {
    for (const Metric& metric : kMetrics) {
        if (metric.index == index) {
            return metric.value;
        }
    }
    return FailUnsupported(("GetSystemMetrics at index " + std::to_string(index)).c_str());
}

BOOL WINAPI ShowWindow(HWND window, int command) {
    const Window* const found = FindWindowObject(window);
    if (found == nullptr || found->thread == 0) {
        return FALSE;
    }
    if (command != SW_HIDE && command != SW_SHOWNORMAL && command != SW_SHOWNOACTIVATE && command != SW_SHOW &&
        command != SW_SHOWNA) {
        return FailUnsupported(("ShowWindow with command " + std::to_string(command)).c_str());
    }
    const bool was = found->IsMarkedVisible();
    const bool shown = command != SW_HIDE;
    const bool activate = command == SW_SHOWNORMAL || command == SW_SHOW;
    if (was != shown) {
        SetShown(window, shown, activate);
    } else if (activate && !found->IsChild()) {
        ActivateWindow(window);
    }
    return was;
}

BOOL WINAPI IsWindowVisible(HWND window) {
    const Window* found = FindWindowObject(window);
    while (found != nullptr && found->IsMarkedVisible()) {
        if (found->parent == nullptr) {
            return TRUE;
        }
        found = FindWindowObject(found->parent);
    }
    return FALSE;
}

BOOL WINAPI SetWindowPos(HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
    if (FaultAsked("SetWindowPos")) {
        return FALSE;
    }
    Window* found = FindWindowObject(window);
    if (found == nullptr || found->thread == 0) {
        return FALSE;
    }
    if ((flags & ~kKnownPlacing) != 0) {
        return FailUnsupported("SetWindowPos with such flags");
    }
    const RECT before = found->rect;
    const SIZE sizeBefore = ClientSize(*found);
    RECT rect = before;
    if ((flags & SWP_NOMOVE) == 0) {
        rect = Moved(rect, x - rect.left, y - rect.top);
    }
    if ((flags & SWP_NOSIZE) == 0) {
        rect.right = rect.left + std::max(width, 0);
        rect.bottom = rect.top + std::max(height, 0);
    }
    if ((flags & SWP_NOZORDER) == 0 && after != window) {
        PlaceInOrder(*found, after);
    }
    const bool moved = rect.left != before.left || rect.top != before.top;
    const bool sized =
        rect.right - rect.left != before.right - before.left || rect.bottom - rect.top != before.bottom - before.top;
    found->rect = rect;
    ++ThisThread().changes;
    if (sized || (flags & SWP_FRAMECHANGED) != 0) {
        CalculateClient(window);
    }
    if ((flags & SWP_HIDEWINDOW) != 0 || (flags & SWP_SHOWWINDOW) != 0) {
        const bool shown = (flags & SWP_SHOWWINDOW) != 0;
        found = FindWindowObject(window);
        if (found != nullptr && found->IsMarkedVisible() != shown) {
            SetShown(window, shown, false);
        }
    }
    found = FindWindowObject(window);
    if (found == nullptr) {
        return TRUE;
    }
    if ((flags & SWP_NOREDRAW) == 0 &&
        (sized || (moved && found->IsChild()) || (flags & (SWP_FRAMECHANGED | SWP_NOZORDER)) != SWP_NOZORDER)) {
        InvalidatePlace(*found, before);
        Invalidate(*found, nullptr, true, true, true);
    }
    if (!found->IsChild() && (flags & (SWP_NOACTIVATE | SWP_HIDEWINDOW)) == 0 && found->IsMarkedVisible()) {
        ActivateWindow(window);
        found = FindWindowObject(window);
    }
    if (found != nullptr && moved) {
        Send(window, WM_MOVE, 0,
             MAKELPARAM(found->rect.left + found->client.left, found->rect.top + found->client.top));
        found = FindWindowObject(window);
    }
    if (found != nullptr) {
        const SIZE size = ClientSize(*found);
        if (size.cx != sizeBefore.cx || size.cy != sizeBefore.cy) {
            Send(window, WM_SIZE, 0, MAKELPARAM(size.cx, size.cy));
        }
    }
    return TRUE;
}

BOOL WINAPI MoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint) {
    return SetWindowPos(window, nullptr, x, y, width, height,
                        SWP_NOZORDER | SWP_NOACTIVATE | (repaint ? 0u : static_cast<UINT>(SWP_NOREDRAW)));
}

BOOL WINAPI GetWindowPlacement(HWND window, WINDOWPLACEMENT* placement) {
    if (FaultAsked("GetWindowPlacement")) {
        return FALSE;
    }
    const Window* const found = FindWindowObject(window);
    if (found == nullptr) {
        return FALSE;
    }
    if (placement->length != sizeof(WINDOWPLACEMENT)) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    placement->flags = 0;
    placement->showCmd = found->IsMarkedVisible() ? SW_SHOWNORMAL : SW_HIDE;
    placement->ptMinPosition = placement->ptMaxPosition = {-1, -1};
    placement->rcNormalPosition = found->rect;
    return TRUE;
}

BOOL WINAPI GetWindowRect(HWND window, LPRECT rect) {
    if (FaultAsked("GetWindowRect")) {
        return FALSE;
    }
    const Window* const found = FindWindowObject(window);
    if (found == nullptr) {
        return FALSE;
    }
    *rect = ScreenRect(*found);
    return TRUE;
}

BOOL WINAPI GetClientRect(HWND window, LPRECT rect) {
    if (FaultAsked("GetClientRect")) {
        return FALSE;
    }
    const Window* const found = FindWindowObject(window);
    if (found == nullptr) {
        return FALSE;
    }
    const SIZE size = ClientSize(*found);
    *rect = {0, 0, size.cx, size.cy};
    return TRUE;
}

BOOL WINAPI AdjustWindowRectEx(LPRECT rect, DWORD style, BOOL menu, DWORD exStyle) {
    if (menu) {
        return FailUnsupported("AdjustWindowRectEx with a menu");
    }
    const RECT frame = FrameOf(style, exStyle);
    *rect = {rect->left - frame.left, rect->top - frame.top, rect->right + frame.right, rect->bottom + frame.bottom};
    return TRUE;
}

BOOL WINAPI ClientToScreen(HWND window, LPPOINT point) {
    POINT origin;
    if (window == nullptr || !OriginOf(window, &origin)) {
        return FALSE;
    }
    *point = {point->x + origin.x, point->y + origin.y};
    return TRUE;
}

BOOL WINAPI ScreenToClient(HWND window, LPPOINT point) {
    POINT origin;
    if (window == nullptr || !OriginOf(window, &origin)) {
        return FALSE;
    }
    *point = Subtract(*point, origin);
    return TRUE;
}

int WINAPI MapWindowPoints(HWND from, HWND to, LPPOINT points, UINT count) {
    POINT source;
    POINT target;
    if (!OriginOf(from, &source) || !OriginOf(to, &target)) {
        return 0;
    }
    const POINT offset = Subtract(source, target);
    for (UINT i = 0; i < count; ++i) {
        points[i] = {points[i].x + offset.x, points[i].y + offset.y};
    }
    return MAKELONG(offset.x, offset.y);
}

HWND WINAPI WindowFromPoint(POINT point) {
    const HWND hit = HitWindow(ThisThread().topLevels, point);
    return hit != nullptr ? hit : GetDesktopWindow();
}

}  // extern "C"
