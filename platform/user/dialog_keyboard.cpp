// How the keyboard moves through dialogs.
#include <windows.h>

#include <algorithm>

#include "platform/kernel/text.h"
#include "platform/user/dialogs.h"

namespace host {
namespace {

bool IsUsable(const Window& window) {
    return window.IsMarkedVisible() && (window.style & WS_DISABLED) == 0;
}

// The controls in their order; those of inner dialogs stand for these.
void AddControls(const Window& parent, std::vector<HWND>* controls) {
    for (const HWND handle : parent.children) {
        const Window* const child = FindWindowObject(handle);
        if (child == nullptr) {
            continue;
        }
        if ((child->exStyle & WS_EX_CONTROLPARENT) == 0) {
            controls->push_back(handle);
        } else if (IsUsable(*child)) {
            AddControls(*child, controls);
        }
    }
}

std::vector<HWND> ControlsOf(HWND dialog) {
    std::vector<HWND> controls;
    if (const Window* const window = FindWindowObject(dialog)) {
        AddControls(*window, &controls);
    }
    return controls;
}

// Where a window stands among the controls, by itself or by what it is inside; their number where it doesn't.
size_t PlaceAmong(const std::vector<HWND>& controls, HWND window) {
    const auto found =
        std::find_if(controls.begin(), controls.end(), [window](HWND control) { return IsInside(window, control); });
    return static_cast<size_t>(found - controls.begin());
}

// From the place on round, to the first control that `wanted` takes. Null: none.
template <class Wanted>
HWND Round(const std::vector<HWND>& controls, size_t from, bool backward, Wanted wanted) {
    const size_t count = controls.size();
    for (size_t step = 1; step <= count; ++step) {
        const HWND control = controls[(from + (backward ? count - step : step)) % count];
        const Window* const window = FindWindowObject(control);
        if (window != nullptr && wanted(*window)) {
            return control;
        }
    }
    return nullptr;
}

bool IsTabStop(const Window& window) {
    return IsUsable(window) && (window.style & WS_TABSTOP) != 0;
}

// The character behind the text's '&', upper case; 0: none. Two of them are one to be shown.
char16_t AccessKey(const std::u16string& text) {
    for (size_t i = 0; i + 1 < text.size(); ++i) {
        if (text[i] == u'&') {
            if (text[i + 1] != u'&') {
                return UpperCase(text[i + 1]);
            }
            ++i;
        }
    }
    return 0;
}

bool AnswersTo(const Window& window, char16_t key) {
    const LRESULT code = DialogCode(window.handle);
    const bool hasKey = (code & DLGC_BUTTON) != 0 || ((code & DLGC_STATIC) != 0 && (window.style & SS_NOPREFIX) == 0);
    return IsUsable(window) && hasKey && AccessKey(window.text) == key;
}

// Texts hand their key on to the control behind them; a button is pressed, unless others have the same key.
bool PressAccessKey(HWND dialog, char16_t character) {
    const char16_t key = UpperCase(character);
    const std::vector<HWND> controls = ControlsOf(dialog);
    if (controls.empty()) {
        return false;
    }
    const auto answers = [key](const Window& window) { return AnswersTo(window, key); };
    const size_t focus = PlaceAmong(controls, GetFocus());
    const size_t before = focus < controls.size() ? focus : controls.size() - 1;
    const HWND found = Round(controls, before, false, answers);
    if (found == nullptr) {
        return false;
    }
    if ((DialogCode(found) & DLGC_BUTTON) == 0) {
        const HWND next = Round(controls, PlaceAmong(controls, found), false, IsTabStop);
        if (next != nullptr) {
            FocusControl(next);
        }
        return true;
    }
    const bool isOnly = Round(controls, PlaceAmong(controls, found), false, answers) == found;
    FocusControl(found);
    if (isOnly && IsWindow(found)) {
        Send(found, BM_CLICK);
    }
    return true;
}

void SendCommand(HWND dialog, int id) {
    const HWND control = GetDlgItem(dialog, id);
    if (control != nullptr && !IsWindowEnabled(control)) {
        MessageBeep(0);
        return;
    }
    Send(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(control));
}

void PressEnter(HWND dialog) {
    const HWND focus = GetFocus();
    if (focus != nullptr && IsInside(focus, dialog) && (DialogCode(focus) & DLGC_DEFPUSHBUTTON) != 0) {
        const HWND parent = GetParent(focus);
        Send(parent, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(focus), BN_CLICKED), reinterpret_cast<LPARAM>(focus));
        return;
    }
    const LRESULT answer = Send(dialog, DM_GETDEFID);
    SendCommand(dialog, HIWORD(answer) == DC_HASDEFID ? LOWORD(answer) : IDOK);
}

// Within a group; a radio button that is reached so is checked.
void MoveInGroup(HWND dialog, bool previous) {
    const HWND next = GetNextDlgGroupItem(dialog, GetFocus(), previous);
    if (next == nullptr) {
        return;
    }
    const LRESULT code = DialogCode(next);
    FocusControl(next);
    if ((code & DLGC_RADIOBUTTON) != 0 && IsWindow(next) &&
        (GetWindowLongW(next, GWL_STYLE) & BS_TYPEMASK) == BS_AUTORADIOBUTTON) {
        Send(next, BM_CLICK);
    }
}

// True where the dialog has the key for itself.
bool PressKey(HWND dialog, const MSG& message) {
    const LRESULT code = DialogCode(message.hwnd, &message);
    if ((code & DLGC_WANTMESSAGE) != 0) {
        return false;
    }
    switch (message.wParam) {
        case VK_TAB:
            if ((code & DLGC_WANTTAB) != 0) {
                return false;
            }
            Send(dialog, WM_NEXTDLGCTL, GetKeyState(VK_SHIFT) < 0, FALSE);
            return true;
        case VK_LEFT:
        case VK_UP:
        case VK_RIGHT:
        case VK_DOWN:
            if ((code & DLGC_WANTARROWS) != 0) {
                return false;
            }
            MoveInGroup(dialog, message.wParam == VK_LEFT || message.wParam == VK_UP);
            return true;
        case VK_RETURN:
            PressEnter(dialog);
            return true;
        case VK_ESCAPE:
            SendCommand(dialog, IDCANCEL);
            return true;
        default:
            return false;
    }
}

bool HasForItself(HWND dialog, const MSG& message) {
    switch (message.message) {
        case WM_KEYDOWN:
            return PressKey(dialog, message);
        case WM_CHAR:
            return (DialogCode(message.hwnd, &message) & (DLGC_WANTCHARS | DLGC_WANTMESSAGE)) == 0 &&
                   message.wParam > VK_SPACE && PressAccessKey(dialog, static_cast<char16_t>(message.wParam));
        case WM_SYSCHAR:
            return PressAccessKey(dialog, static_cast<char16_t>(message.wParam));
        default:
            return false;
    }
}

}  // namespace

LRESULT DialogCode(HWND control, const MSG* message) {
    return Send(control, WM_GETDLGCODE, message != nullptr ? message->wParam : 0, reinterpret_cast<LPARAM>(message));
}

void FocusControl(HWND control) {
    if ((DialogCode(control) & DLGC_HASSETSEL) != 0) {
        Send(control, EM_SETSEL, 0, -1);
    }
    if (IsWindow(control)) {
        SetFocus(control);
    }
}

void ShowDefaultButton(HWND dialog, HWND focus) {
    const DialogState* const state = FindDialog(dialog);
    if (state == nullptr) {
        return;
    }
    constexpr LRESULT kPushButton = DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON;
    const bool onButton = focus != nullptr && IsWindow(focus) && (DialogCode(focus) & kPushButton) != 0;
    const HWND wanted = onButton ? focus : GetDlgItem(dialog, state->defaultId);
    for (const HWND control : ControlsOf(dialog)) {
        const LRESULT code = IsWindow(control) ? DialogCode(control) : 0;
        if ((code & DLGC_DEFPUSHBUTTON) != 0 && control != wanted) {
            Send(control, BM_SETSTYLE, BS_PUSHBUTTON, TRUE);
        } else if ((code & DLGC_UNDEFPUSHBUTTON) != 0 && control == wanted) {
            Send(control, BM_SETSTYLE, BS_DEFPUSHBUTTON, TRUE);
        }
    }
}

}  // namespace host

using namespace host;

extern "C" {

BOOL WINAPI IsDialogMessageW(HWND dialog, LPMSG message) {
    if (message->hwnd == nullptr || !IsWindow(dialog) || !IsInside(message->hwnd, dialog)) {
        return FALSE;
    }
    const HWND focus = GetFocus();
    if (!HasForItself(dialog, *message)) {
        TranslateMessage(message);
        DispatchMessageW(message);
    }
    const HWND now = GetFocus();
    if (now != focus && IsWindow(dialog) && IsInside(now, dialog)) {
        ShowDefaultButton(dialog, now);
    }
    return TRUE;
}

HWND WINAPI GetNextDlgTabItem(HWND dialog, HWND control, BOOL previous) {
    const std::vector<HWND> controls = ControlsOf(dialog);
    if (controls.empty()) {
        return nullptr;
    }
    size_t from = control != nullptr ? PlaceAmong(controls, control) : controls.size();
    if (from == controls.size()) {
        from = previous ? 0 : controls.size() - 1;
    }
    return Round(controls, from, previous != FALSE, IsTabStop);
}

HWND WINAPI GetNextDlgGroupItem(HWND dialog, HWND control, BOOL previous) {
    const std::vector<HWND> controls = ControlsOf(dialog);
    const size_t at = control != nullptr ? PlaceAmong(controls, control) : 0;
    if (at >= controls.size()) {
        return nullptr;
    }
    const auto begins = [&](size_t place) {
        const Window* const window = FindWindowObject(controls[place]);
        return window != nullptr && (window->style & WS_GROUP) != 0;
    };
    size_t first = at;
    while (first > 0 && !begins(first)) {
        --first;
    }
    size_t end = at + 1;
    while (end < controls.size() && !begins(end)) {
        ++end;
    }
    const std::vector<HWND> group(controls.begin() + static_cast<std::ptrdiff_t>(first),
                                  controls.begin() + static_cast<std::ptrdiff_t>(end));
    const HWND next = Round(group, at - first, previous != FALSE, IsUsable);
    return next != nullptr ? next : control;
}

}  // extern "C"
