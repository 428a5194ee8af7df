#include "tests/platform/controls_fixture.h"

#include <utility>

#include "platform/kernel/text.h"

namespace host {
namespace {

constexpr WCHAR kParentClass[] = TEXT("ControlTestParent");

struct NotificationName {
    const char16_t* className;
    UINT code;
    const char* name;
};
constexpr NotificationName kNames[] = {
    {u"Button", BN_CLICKED, "BN_CLICKED"},
    {u"Button", BN_SETFOCUS, "BN_SETFOCUS"},
    {u"Button", BN_KILLFOCUS, "BN_KILLFOCUS"},
    {u"Static", STN_CLICKED, "STN_CLICKED"},
    {u"Static", STN_DBLCLK, "STN_DBLCLK"},
    {u"Edit", EN_SETFOCUS, "EN_SETFOCUS"},
    {u"Edit", EN_KILLFOCUS, "EN_KILLFOCUS"},
    {u"Edit", EN_CHANGE, "EN_CHANGE"},
    {u"Edit", EN_UPDATE, "EN_UPDATE"},
    {u"Edit", EN_MAXTEXT, "EN_MAXTEXT"},
    {u"ListBox", LBN_SELCHANGE, "LBN_SELCHANGE"},
    {u"ListBox", LBN_DBLCLK, "LBN_DBLCLK"},
    {u"ListBox", LBN_SETFOCUS, "LBN_SETFOCUS"},
    {u"ListBox", LBN_KILLFOCUS, "LBN_KILLFOCUS"},
    {u"ComboBox", CBN_SELCHANGE, "CBN_SELCHANGE"},
    {u"ComboBox", CBN_DBLCLK, "CBN_DBLCLK"},
    {u"ComboBox", CBN_SETFOCUS, "CBN_SETFOCUS"},
    {u"ComboBox", CBN_KILLFOCUS, "CBN_KILLFOCUS"},
    {u"ComboBox", CBN_EDITCHANGE, "CBN_EDITCHANGE"},
    {u"ComboBox", CBN_EDITUPDATE, "CBN_EDITUPDATE"},
    {u"ComboBox", CBN_DROPDOWN, "CBN_DROPDOWN"},
    {u"ComboBox", CBN_CLOSEUP, "CBN_CLOSEUP"},
    {u"ComboBox", CBN_SELENDOK, "CBN_SELENDOK"},
    {u"ComboBox", CBN_SELENDCANCEL, "CBN_SELENDCANCEL"},
    {UPDOWN_CLASSW, UDN_DELTAPOS, "UDN_DELTAPOS"},
    {WC_TABCONTROLW, TCN_SELCHANGE, "TCN_SELCHANGE"},
    {WC_TABCONTROLW, TCN_SELCHANGING, "TCN_SELCHANGING"},
    {WC_TABCONTROLW, NM_CLICK, "NM_CLICK"},
};

std::string NameOf(HWND control, UINT code) {
    WCHAR className[64] = {};
    GetClassNameW(control, className, ARRAYSIZE(className));
    for (const NotificationName& row : kNames) {
        if (row.code == code && EqualsIgnoringCase(row.className, className)) {
            return row.name;
        }
    }
    return std::to_string(code);
}

}  // namespace

ControlTest::ControlTest() {
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = Proc;
    windowClass.cbWndExtra = sizeof(LONG_PTR);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_3DFACE + 1));
    windowClass.lpszClassName = kParentClass;
    RegisterClassW(&windowClass);
    parent_ = CreateWindowExW(0, kParentClass, TEXT(""), WS_POPUP | WS_VISIBLE, 0, 0, 640, 480, nullptr, nullptr,
                              nullptr, nullptr);
    SetWindowLongPtrW(parent_, 0, reinterpret_cast<LONG_PTR>(this));
}

void ControlTest::TearDown() {
    SetWindowLongPtrW(parent_, 0, 0);
    DestroyWindow(parent_);
    KernelTest::TearDown();
}

HWND ControlTest::Make(LPCWSTR className, DWORD style, LPCWSTR text, RECT place) {
    return CreateWindowExW(0, className, text, style | WS_CHILD | WS_VISIBLE, place.left, place.top,
                           place.right - place.left, place.bottom - place.top, parent_,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(++made_)), nullptr, nullptr);
}

Lines ControlTest::Told() {
    return std::exchange(told_, {});
}

void ControlTest::Press(WPARAM key, bool shift) {
    INPUT inputs[4] = {};
    UINT count = 0;
    const auto add = [&](WPARAM which, DWORD flags) {
        inputs[count].type = INPUT_KEYBOARD;
        inputs[count].ki.wVk = static_cast<WORD>(which);
        inputs[count++].ki.dwFlags = flags;
    };
    if (shift) {
        add(VK_SHIFT, 0);
    }
    add(key, 0);
    add(key, KEYEVENTF_KEYUP);
    if (shift) {
        add(VK_SHIFT, KEYEVENTF_KEYUP);
    }
    SendInput(count, inputs, sizeof(INPUT));
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

void ControlTest::Type(std::u16string_view text) {
    for (const char16_t c : text) {
        SendMessageW(GetFocus(), WM_CHAR, c, 0);
    }
}

void ControlTest::Click(HWND control, int x, int y) {
    SendMessageW(control, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    SendMessageW(control, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

std::u16string ControlTest::TextOf(HWND window) {
    WCHAR text[128] = {};
    GetWindowTextW(window, text, ARRAYSIZE(text));
    return text;
}

LRESULT CALLBACK ControlTest::Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* test = reinterpret_cast<ControlTest*>(GetWindowLongPtrW(window, 0));
    const auto control = reinterpret_cast<HWND>(lParam);
    if (test && message == WM_COMMAND) {
        test->told_.push_back(std::to_string(LOWORD(wParam)) + " " + NameOf(control, HIWORD(wParam)));
        if (test->destroyControlWhenTold_) {
            DestroyWindow(control);
        }
        return 0;
    }
    if (test && message == WM_NOTIFY) {
        const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
        std::string line = std::to_string(header.idFrom) + " " + NameOf(header.hwndFrom, header.code);
        if (header.code == UDN_DELTAPOS) {
            const auto& change = reinterpret_cast<const NMUPDOWN&>(header);
            line += " " + std::to_string(change.iPos) + " " + std::to_string(change.iDelta);
        }
        test->told_.push_back(line);
        return test->notifyAnswer_;
    }
    if (test && (message == WM_HSCROLL || message == WM_VSCROLL)) {
        test->told_.push_back(
            std::to_string(GetDlgCtrlID(control)) + (message == WM_HSCROLL ? " WM_HSCROLL " : " WM_VSCROLL ") +
            std::to_string(LOWORD(wParam)) + " " + std::to_string(static_cast<SHORT>(HIWORD(wParam))));
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace host
