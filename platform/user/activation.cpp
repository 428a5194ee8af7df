// Which window is active, which has the keyboard's focus and which the mouse.
#include <windows.h>

#include <algorithm>

#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/user/windows.h"

namespace host {
namespace {

bool IsEnabledToRoot(const Window& window) {
    const Window* found = &window;
    while (found != nullptr && (found->style & WS_DISABLED) == 0) {
        if (found->parent == nullptr) {
            return true;
        }
        found = FindWindowObject(found->parent);
    }
    return false;
}

// Whose colour says whether the window is active.
void InvalidateCaption(HWND handle) {
    Window* const window = IsWindow(handle) ? FindWindowObject(handle) : nullptr;
    if (window != nullptr && (window->style & WS_CAPTION) == WS_CAPTION) {
        constexpr RECT kNone = {};
        Invalidate(*window, &kNone, false, true);
    }
}

// The focus without a look at what is active.
void GiveFocus(HWND window) {
    ThreadWindows& thread = ThisThread();
    const HWND before = thread.focus;
    if (before == window) {
        return;
    }
    thread.focus = window;
    ++thread.changes;
    if (before != nullptr && IsWindow(before)) {
        Send(before, WM_KILLFOCUS, reinterpret_cast<WPARAM>(window));
    }
    // A procedure that takes the focus elsewhere has the last word.
    if (window != nullptr && thread.focus == window && IsWindow(window)) {
        Send(window, WM_SETFOCUS, reinterpret_cast<WPARAM>(before));
    }
}

}  // namespace

bool ActivateWindow(HWND window) {
    ThreadWindows& thread = ThisThread();
    const HWND before = thread.active;
    if (before == window) {
        return true;
    }
    thread.active = window;
    ++thread.changes;
    if (before != nullptr && IsWindow(before)) {
        Send(before, WM_ACTIVATE, WA_INACTIVE, reinterpret_cast<LPARAM>(window));
        InvalidateCaption(before);
    }
    if (thread.active != window) {
        return false;
    }
    if (!IsInside(thread.focus, window)) {
        GiveFocus(nullptr);
    }
    Window* const found = window != nullptr && IsWindow(window) ? FindWindowObject(window) : nullptr;
    if (found == nullptr || thread.active != window) {
        return window == nullptr;
    }
    PlaceInOrder(*found, HWND_TOP);
    InvalidateCaption(window);
    Send(window, WM_ACTIVATE, WA_ACTIVE, reinterpret_cast<LPARAM>(before));
    return true;
}

void ActivateAnother(HWND window) {
    ThreadWindows& thread = ThisThread();
    if (thread.active != window) {
        return;
    }
    const auto canBeActive = [window](HWND other) {
        const Window* const found = other != window && IsWindow(other) ? FindWindowObject(other) : nullptr;
        return found != nullptr && found->IsMarkedVisible() && (found->style & WS_DISABLED) == 0 &&
               !found->isBeingDestroyed;
    };
    const Window* const left = FindWindowObject(window);
    HWND next = left != nullptr ? left->owner : nullptr;
    if (next == nullptr || !canBeActive(next)) {
        const auto found = std::find_if(thread.topLevels.begin(), thread.topLevels.end(), canBeActive);
        next = found != thread.topLevels.end() ? *found : nullptr;
    }
    ActivateWindow(next);
}

void MoveFocusOut(HWND window, HWND to) {
    if (IsInside(ThisThread().focus, window)) {
        SetFocus(to);
    }
}

}  // namespace host

using namespace host;

extern "C" {

HWND WINAPI GetActiveWindow() {
    return ThisThread().active;
}

BOOL WINAPI SetForegroundWindow(HWND window) {
    Window* const found = FindWindowObject(window);
    return found != nullptr && ActivateWindow(RootOf(*found).handle);
}

HWND WINAPI SetFocus(HWND window) {
    ThreadWindows& thread = ThisThread();
    const HWND before = thread.focus;
    if (window == nullptr) {
        GiveFocus(nullptr);
        return before;
    }
    Window* const found = FindWindowObject(window);
    if (found == nullptr) {
        return nullptr;
    }
    if (!IsEnabledToRoot(*found)) {
        Fail(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    const HWND root = RootOf(*found).handle;
    if (thread.active != root && !ActivateWindow(root)) {
        return nullptr;
    }
    if (!IsWindow(window)) {
        return nullptr;
    }
    GiveFocus(window);
    return before;
}

HWND WINAPI GetFocus() {
    return ThisThread().focus;
}

HWND WINAPI SetCapture(HWND window) {
    if (FindWindowObject(window) == nullptr) {
        return nullptr;
    }
    ThreadWindows& thread = ThisThread();
    const HWND before = thread.capture;
    thread.capture = window;
    if (before != nullptr && before != window) {
        Send(before, WM_CAPTURECHANGED, 0, reinterpret_cast<LPARAM>(window));
    }
    return before;
}

HWND WINAPI GetCapture() {
    return ThisThread().capture;
}

BOOL WINAPI ReleaseCapture() {
    ThreadWindows& thread = ThisThread();
    const HWND before = thread.capture;
    thread.capture = nullptr;
    if (before != nullptr && IsWindow(before)) {
        Send(before, WM_CAPTURECHANGED);
    }
    return TRUE;
}

BOOL WINAPI EnableWindow(HWND window, BOOL enable) {
    Window* const found = FindWindowObject(window);
    if (found == nullptr || found->thread == 0) {
        return FALSE;
    }
    const bool wasDisabled = (found->style & WS_DISABLED) != 0;
    if (wasDisabled == (enable == FALSE)) {
        return wasDisabled;
    }
    ThreadWindows& thread = ThisThread();
    ++thread.changes;
    if (enable) {
        found->style &= ~WS_DISABLED;
    } else {
        found->style |= WS_DISABLED;
        if (IsInside(thread.capture, window)) {
            ReleaseCapture();
        }
        if (thread.focus == window) {
            GiveFocus(nullptr);
        }
    }
    Send(window, WM_ENABLE, enable != FALSE);
    return wasDisabled;
}

BOOL WINAPI IsWindowEnabled(HWND window) {
    const Window* const found = FindWindowObject(window);
    return found != nullptr && (found->style & WS_DISABLED) == 0;
}

}  // extern "C"
