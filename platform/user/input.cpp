// What the keyboard and the mouse do, and the messages that it makes.
#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "platform/kernel/failures.h"
#include "platform/user/windows.h"

namespace host {
namespace {

constexpr BYTE kDown = 0x80;
constexpr BYTE kToggled = 0x01;
constexpr DWORD kDoubleClickTime = 500;  // milliseconds
constexpr LONG kDoubleClickSlack = 2;    // pixels either way

bool IsDown(int key) {
    return (ThisThread().keys[key & 0xFF] & kDown) != 0;
}

void NoteKey(int key, bool down) {
    BYTE& state = ThisThread().keys[key & 0xFF];
    if (down && (state & kDown) == 0) {
        state ^= kToggled;
    }
    state = static_cast<BYTE>(down ? state | kDown : state & ~kDown);
}

DWORD TimeOf(DWORD time) {
    return time != 0 ? time : GetTickCount();
}

// --- Keyboard --------------------------------------------------------------------------------------------------------

// Of WM_KEYDOWN's and its fellows' lParam.
constexpr DWORD kAltHeld = 1u << 29;
constexpr DWORD kWasDown = 1u << 30;
constexpr DWORD kGoesUp = 1u << 31;

bool MakeKeyMessage(const InputEvent& event, MSG* message) {
    const KEYBDINPUT& key = event.input.ki;
    const bool isUnicode = (key.dwFlags & KEYEVENTF_UNICODE) != 0;
    const bool goesUp = (key.dwFlags & KEYEVENTF_KEYUP) != 0;
    const WORD code = isUnicode ? VK_PACKET : key.wVk;
    ThreadWindows& thread = ThisThread();
    const bool wasDown = IsDown(code);
    NoteKey(code, !goesUp);
    const HWND target = thread.focus != nullptr ? thread.focus : thread.active;
    if (target == nullptr) {
        return false;
    }
    const bool alt = IsDown(VK_MENU);
    const bool isSystem = !isUnicode && ((alt && !IsDown(VK_CONTROL)) || code == VK_MENU || thread.focus == nullptr);
    DWORD parameter = 1 | static_cast<DWORD>(key.wScan & 0xFF) << 16;
    parameter |= (isSystem && alt ? kAltHeld : 0) | (wasDown ? kWasDown : 0) | (goesUp ? kGoesUp : 0);
    const UINT plain = goesUp ? WM_KEYUP : WM_KEYDOWN;
    const UINT system = goesUp ? WM_SYSKEYUP : WM_SYSKEYDOWN;
    *message = {target,
                isSystem ? system : plain,
                isUnicode ? MAKEWPARAM(VK_PACKET, key.wScan) : code,
                static_cast<LPARAM>(parameter),
                TimeOf(key.time),
                event.cursor};
    return true;
}

// Keys of a US keyboard that make characters: plain, with Shift, with Ctrl (0: none).
struct KeyCharacters {
    WORD key;
    char16_t plain;
    char16_t shifted;
    char16_t withControl;
};
constexpr KeyCharacters kKeys[] = {
    {VK_BACK, 8, 8, 127}, {VK_TAB, 9, 9, 0},   {VK_RETURN, 13, 13, 10}, {VK_ESCAPE, 27, 27, 27}, {VK_SPACE, 32, 32, 32},
    {'0', '0', ')', 0},   {'1', '1', '!', 0},  {'2', '2', '@', 0},      {'3', '3', '#', 0},      {'4', '4', '$', 0},
    {'5', '5', '%', 0},   {'6', '6', '^', 0},  {'7', '7', '&', 0},      {'8', '8', '*', 0},      {'9', '9', '(', 0},
    {0x6A, '*', '*', 0},  {0x6B, '+', '+', 0}, {0x6D, '-', '-', 0},     {0x6E, '.', '.', 0},     {0x6F, '/', '/', 0},
    {0xBA, ';', ':', 0},  {0xBB, '=', '+', 0}, {0xBC, ',', '<', 0},     {0xBD, '-', '_', 0},     {0xBE, '.', '>', 0},
    {0xBF, '/', '?', 0},  {0xC0, '`', '~', 0}, {0xDB, '[', '{', 27},    {0xDC, '\\', '|', 28},   {0xDD, ']', '}', 29},
    {0xDE, '\'', '"', 0},
};
constexpr WORD kKeypad0 = 0x60;  // VK_NUMPAD0

// 0 where the key makes none.
char16_t CharacterOf(WORD key) {
    const bool shift = IsDown(VK_SHIFT);
    const bool control = IsDown(VK_CONTROL);
    if (key >= 'A' && key <= 'Z') {
        return static_cast<char16_t>(control ? key - 'A' + 1 : shift ? key : key - 'A' + 'a');
    }
    if (key >= kKeypad0 && key < kKeypad0 + 10) {
        return static_cast<char16_t>(key - kKeypad0 + '0');
    }
    const auto* const row = std::find_if(std::begin(kKeys), std::end(kKeys),
                                         [key](const KeyCharacters& found) { return found.key == key; });
    if (row == std::end(kKeys)) {
        return 0;
    }
    return control ? row->withControl : shift ? row->shifted : row->plain;
}

// --- Mouse -----------------------------------------------------------------------------------------------------------

struct MouseAction {
    DWORD flag;
    int button;  // virtual key; 0: none
    bool down;
    UINT message;       // in a client area
    UINT frameMessage;  // on a frame; 0: none
};
constexpr MouseAction kActions[] = {
    {MOUSEEVENTF_MOVE, 0, false, WM_MOUSEMOVE, WM_NCMOUSEMOVE},
    {MOUSEEVENTF_LEFTDOWN, VK_LBUTTON, true, WM_LBUTTONDOWN, WM_NCLBUTTONDOWN},
    {MOUSEEVENTF_LEFTUP, VK_LBUTTON, false, WM_LBUTTONUP, WM_NCLBUTTONUP},
    {MOUSEEVENTF_RIGHTDOWN, VK_RBUTTON, true, WM_RBUTTONDOWN, WM_NCRBUTTONDOWN},
    {MOUSEEVENTF_RIGHTUP, VK_RBUTTON, false, WM_RBUTTONUP, WM_NCRBUTTONUP},
    {MOUSEEVENTF_WHEEL, 0, false, WM_MOUSEWHEEL, WM_MOUSEWHEEL},
};

const MouseAction& ActionOf(DWORD flags) {
    return *std::find_if(std::begin(kActions), std::end(kActions),
                         [flags](const MouseAction& action) { return (flags & action.flag) != 0; });
}

WPARAM HeldKeys() {
    struct Row {
        int key;
        WPARAM flag;
    };
    constexpr Row kRows[] = {
        {VK_LBUTTON, MK_LBUTTON}, {VK_RBUTTON, MK_RBUTTON}, {VK_SHIFT, MK_SHIFT}, {VK_CONTROL, MK_CONTROL}};
    WPARAM held = 0;
    for (const Row& row : kRows) {
        held |= IsDown(row.key) ? row.flag : 0;
    }
    return held;
}

// A press soon after the one before it, on the same window and place, is the second half of a double click.
bool IsSecondClick(const MSG& message, const Window& window) {
    MSG& last = ThisThread().lastClick;
    const bool isSecond = (window.windowClass->style & CS_DBLCLKS) != 0 && last.hwnd == message.hwnd &&
                          last.message == message.message && message.time - last.time <= kDoubleClickTime &&
                          std::abs(message.pt.x - last.pt.x) <= kDoubleClickSlack &&
                          std::abs(message.pt.y - last.pt.y) <= kDoubleClickSlack;
    last = isSecond ? MSG{} : message;
    return isSecond;
}

// A press activates the window that it is on, unless that refuses.
void ActivateByMouse(HWND window, LRESULT hit, UINT message) {
    Window* const found = FindWindowObject(window);
    const HWND root = found != nullptr ? RootOf(*found).handle : nullptr;
    if (root == nullptr || root == ThisThread().active) {
        return;
    }
    const LRESULT answer = Send(window, WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(root), MAKELPARAM(hit, message));
    if (answer != MA_NOACTIVATE && IsWindow(root)) {
        ActivateWindow(root);
    }
}

bool MakeMouseMessage(const InputEvent& event, MSG* message) {
    const MOUSEINPUT& mouse = event.input.mi;
    const MouseAction& action = ActionOf(mouse.dwFlags);
    if (action.button != 0) {
        NoteKey(action.button, action.down);
    }
    const bool isWheel = action.flag == MOUSEEVENTF_WHEEL;
    const HWND capture = ThisThread().capture;
    HWND target = capture;
    LRESULT hit = HTCLIENT;
    if (capture == nullptr) {
        target = WindowFromPoint(event.cursor);
        const Window* const found = FindWindowObject(target);
        if (found == nullptr || found->thread == 0 || (found->style & WS_DISABLED) != 0) {
            return false;
        }
        hit = Send(target, WM_NCHITTEST, 0, PointParameter(event.cursor));
        if (hit == HTNOWHERE) {
            return false;
        }
    }
    const bool inClient = hit == HTCLIENT;
    const WPARAM wheel = isWheel ? MAKEWPARAM(0, mouse.mouseData) : 0;
    *message = {target,
                inClient ? action.message : action.frameMessage,
                inClient || isWheel ? HeldKeys() | wheel : static_cast<WPARAM>(hit),
                0,
                TimeOf(mouse.time),
                event.cursor};
    if (capture == nullptr && !isWheel) {
        if (action.down) {
            ActivateByMouse(target, hit, action.message);
        }
        Send(target, WM_SETCURSOR, reinterpret_cast<WPARAM>(target), MAKELPARAM(hit, action.message));
    }
    const Window* const found = IsWindow(target) ? FindWindowObject(target) : nullptr;
    if (found == nullptr) {
        return false;
    }
    POINT at = event.cursor;
    if (inClient && !isWheel) {
        ScreenToClient(target, &at);
    }
    message->lParam = PointParameter(at);
    if (message->message == WM_LBUTTONDOWN && IsSecondClick(*message, *found)) {
        message->message = WM_LBUTTONDBLCLK;
    }
    return true;
}

// Pixels of a coordinate that runs from 0 to 65535 across the screen.
LONG OnScreen(LONG value, LONG size) {
    return static_cast<LONG>(static_cast<int64_t>(value) * size / 65536);
}

void AddMouseInput(const INPUT& input) {
    ThreadWindows& thread = ThisThread();
    const MOUSEINPUT& mouse = input.mi;
    if ((mouse.dwFlags & MOUSEEVENTF_MOVE) != 0) {
        const bool isAbsolute = (mouse.dwFlags & MOUSEEVENTF_ABSOLUTE) != 0;
        const POINT to = isAbsolute ? POINT{OnScreen(mouse.dx, kScreenWidth), OnScreen(mouse.dy, kScreenHeight)}
                                    : POINT{thread.cursor.x + mouse.dx, thread.cursor.y + mouse.dy};
        thread.cursor = {std::clamp<LONG>(to.x, 0, kScreenWidth - 1), std::clamp<LONG>(to.y, 0, kScreenHeight - 1)};
    }
    for (const MouseAction& action : kActions) {
        if ((mouse.dwFlags & action.flag) != 0) {
            InputEvent event = {input, thread.cursor};
            event.input.mi.dwFlags = action.flag;
            thread.input.push_back(event);
        }
    }
}

bool IsSupportedInput(const INPUT& input) {
    DWORD known = KEYEVENTF_KEYUP | KEYEVENTF_UNICODE;
    DWORD flags = input.ki.dwFlags;
    if (input.type == INPUT_MOUSE) {
        flags = input.mi.dwFlags;
        known = MOUSEEVENTF_ABSOLUTE;
        for (const MouseAction& action : kActions) {
            known |= action.flag;
        }
    }
    return (input.type == INPUT_MOUSE || input.type == INPUT_KEYBOARD) && (flags & ~known) == 0;
}

}  // namespace

bool TakeInput(MSG* message) {
    std::deque<InputEvent>& input = ThisThread().input;
    while (!input.empty()) {
        const InputEvent event = input.front();
        input.pop_front();
        if (event.input.type == INPUT_MOUSE ? MakeMouseMessage(event, message) : MakeKeyMessage(event, message)) {
            return true;
        }
    }
    return false;
}

}  // namespace host

using namespace host;

extern "C" {

UINT WINAPI SendInput(UINT count, LPINPUT inputs, int bytesOfOne) {
    if (inputs == nullptr || bytesOfOne != sizeof(INPUT)) {
        Fail(ERROR_INVALID_PARAMETER);
        return 0;
    }
    ThreadWindows& thread = ThisThread();
    for (UINT i = 0; i < count; ++i) {
        if (!IsSupportedInput(inputs[i])) {
            FailUnsupported("SendInput of that kind");
            return i;
        }
        ++thread.changes;
        if (inputs[i].type == INPUT_MOUSE) {
            AddMouseInput(inputs[i]);
        } else {
            thread.input.push_back({inputs[i], thread.cursor});
        }
    }
    return count;
}

BOOL WINAPI TranslateMessage(const MSG* message) {
    const bool isSystem = message->message == WM_SYSKEYDOWN;
    if (message->message != WM_KEYDOWN && !isSystem) {
        return message->message == WM_KEYUP || message->message == WM_SYSKEYUP;
    }
    const WORD key = LOWORD(message->wParam);
    const char16_t character = key == VK_PACKET ? HIWORD(message->wParam) : CharacterOf(key);
    if (character != 0) {
        ThreadWindows& thread = ThisThread();
        thread.posted.push_back({message->hwnd, static_cast<UINT>(isSystem ? WM_SYSCHAR : WM_CHAR), character,
                                 message->lParam, message->time, message->pt});
    }
    return TRUE;
}

SHORT WINAPI GetKeyState(int key) {
    const BYTE state = ThisThread().keys[key & 0xFF];
    return static_cast<SHORT>(((state & kDown) != 0 ? 0xFF80 : 0) | (state & kToggled));
}

BOOL WINAPI GetCursorPos(LPPOINT point) {
    *point = ThisThread().cursor;
    return TRUE;
}

}  // extern "C"
