// MessageBoxW: a dialog of a picture, a text and buttons.
#include <windows.h>

#include <algorithm>
#include <vector>

#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/user/dialogs.h"

namespace host {
namespace {

constexpr UINT kButtonsMask = 0x0F;
constexpr UINT kIconMask = 0xF0;
constexpr int kIconId = 20;
constexpr int kTextId = 0xFFFF;

// Pixels.
constexpr int kMargin = 16;
constexpr int kIconSize = 32;
constexpr int kWidestText = 420;
constexpr int kButtonWidth = 88;
constexpr int kButtonHeight = 26;
constexpr int kButtonGap = 8;

struct Button {
    int id;
    LPCWSTR text;
};
struct ButtonSet {
    UINT type;
    std::vector<Button> buttons;
    int cancels;  // what the cross and Escape stand for; 0: nothing
};

const std::vector<ButtonSet>& ButtonSets() {
    static const auto& sets = *new std::vector<ButtonSet>{
        {MB_OK, {{IDOK, TEXT("OK")}}, IDOK},
        {MB_OKCANCEL, {{IDOK, TEXT("OK")}, {IDCANCEL, TEXT("Cancel")}}, IDCANCEL},
        {MB_YESNO, {{IDYES, TEXT("&Yes")}, {IDNO, TEXT("&No")}}, 0},
    };
    return sets;
}

struct IconOfType {
    UINT type;
    LPCWSTR icon;
};
const IconOfType kIcons[] = {{MB_ICONERROR, IDI_ERROR},
                             {MB_ICONQUESTION, IDI_QUESTION},
                             {MB_ICONWARNING, IDI_WARNING},
                             {MB_ICONINFORMATION, IDI_INFORMATION}};

struct Message {
    LPCWSTR text;
    const ButtonSet* set;
    LPCWSTR icon;  // null: none
};

SIZE MeasureText(HWND dialog, LPCWSTR text) {
    RECT rect = {0, 0, kWidestText, 0};
    const HDC context = OpenContext(dialog, false);
    const HGDIOBJ before = SelectObject(context, reinterpret_cast<HFONT>(Send(dialog, WM_GETFONT)));
    DrawTextW(context, text, -1, &rect, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    SelectObject(context, before);
    CloseContext(context);
    return {rect.right, rect.bottom};
}

bool AddControl(HWND dialog, LPCWSTR className, LPCWSTR text, DWORD style, const RECT& rect, int id) {
    const HWND control =
        CreateWindowExW(WS_EX_NOPARENTNOTIFY, className, text, style | WS_CHILD | WS_VISIBLE, rect.left, rect.top,
                        rect.right - rect.left, rect.bottom - rect.top, dialog,
                        reinterpret_cast<HMENU>(static_cast<UINT_PTR>(static_cast<UINT>(id))), nullptr, nullptr);
    Send(control, WM_SETFONT, static_cast<WPARAM>(Send(dialog, WM_GETFONT)), FALSE);
    return control != nullptr;
}

// False where a control can't be made.
bool LayOut(HWND dialog, const Message& message) {
    const SIZE text = MeasureText(dialog, message.text);
    const int textLeft = message.icon != nullptr ? kMargin + kIconSize + kMargin : kMargin;
    const auto buttons = static_cast<int>(message.set->buttons.size());
    const int buttonsWidth = buttons * kButtonWidth + (buttons - 1) * kButtonGap;
    const int width = std::max<int>(textLeft + text.cx, kMargin + buttonsWidth) + kMargin;
    const int height = std::max<int>(text.cy, kIconSize);
    bool made = true;
    if (message.icon != nullptr) {
        made &= AddControl(dialog, TEXT("Static"), nullptr, SS_ICON,
                           {kMargin, kMargin, kMargin + kIconSize, kMargin + kIconSize}, kIconId);
        SendDlgItemMessageW(dialog, kIconId, STM_SETICON, reinterpret_cast<WPARAM>(LoadIconW(nullptr, message.icon)),
                            0);
    }
    const int textTop = kMargin + (height - text.cy) / 2;
    made &= AddControl(dialog, TEXT("Static"), message.text, SS_NOPREFIX,
                       {textLeft, textTop, textLeft + text.cx, textTop + text.cy}, kTextId);
    const int top = kMargin + height + kMargin;
    int left = width - kMargin - buttonsWidth;
    for (const Button& button : message.set->buttons) {
        const bool isFirst = &button == &message.set->buttons.front();
        made &=
            AddControl(dialog, TEXT("Button"), button.text, WS_TABSTOP | (isFirst ? BS_DEFPUSHBUTTON | WS_GROUP : 0u),
                       {left, top, left + kButtonWidth, top + kButtonHeight}, button.id);
        left += kButtonWidth + kButtonGap;
    }
    Send(dialog, DM_SETDEFID, static_cast<WPARAM>(message.set->buttons.front().id));
    RECT whole = {0, 0, width, top + kButtonHeight + kMargin};
    AdjustWindowRectEx(&whole, static_cast<DWORD>(GetWindowLongW(dialog, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongW(dialog, GWL_EXSTYLE)));
    const LONG wholeWidth = whole.right - whole.left;
    const LONG wholeHeight = whole.bottom - whole.top;
    SetWindowPos(dialog, nullptr, (kScreenWidth - wholeWidth) / 2, (kScreenHeight - wholeHeight) / 2, wholeWidth,
                 wholeHeight, SWP_NOZORDER | SWP_NOACTIVATE);
    return made;
}

INT_PTR CALLBACK BoxProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            SetWindowLongPtrW(dialog, DWLP_USER, lParam);
            if (!LayOut(dialog, *reinterpret_cast<const Message*>(lParam))) {
                EndDialog(dialog, 0);
            }
            return TRUE;
        case WM_COMMAND: {
            const auto& box = *reinterpret_cast<const Message*>(GetWindowLongPtrW(dialog, DWLP_USER));
            const int id = LOWORD(wParam);
            const bool isButton = std::any_of(box.set->buttons.begin(), box.set->buttons.end(),
                                              [id](const Button& button) { return button.id == id; });
            if (isButton) {
                EndDialog(dialog, id);
            } else if (id == IDCANCEL && box.set->cancels != 0) {
                EndDialog(dialog, box.set->cancels);
            }
            return TRUE;
        }
        default:
            return FALSE;
    }
}

}  // namespace
}  // namespace host

using namespace host;

extern "C" {

int WINAPI MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type) {
    if (FaultAsked("MessageBoxW")) {
        return 0;
    }
    const auto& sets = ButtonSets();
    const auto set = std::find_if(sets.begin(), sets.end(),
                                  [type](const ButtonSet& row) { return row.type == (type & kButtonsMask); });
    const auto* const icon = std::find_if(std::begin(kIcons), std::end(kIcons),
                                          [type](const IconOfType& row) { return row.type == (type & kIconMask); });
    if (set == sets.end() || (type & ~(kButtonsMask | kIconMask)) != 0 ||
        ((type & kIconMask) != 0 && icon == std::end(kIcons))) {
        return FailUnsupported("MessageBoxW of that type");
    }
    const Message message = {text != nullptr ? text : TEXT(""), &*set, icon != std::end(kIcons) ? icon->icon : nullptr};
    DialogTemplate dialogTemplate;
    dialogTemplate.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_SETFONT;
    dialogTemplate.title = caption != nullptr ? caption : u"Error";
    dialogTemplate.font = DialogFont{9, FW_NORMAL, false, DEFAULT_CHARSET, u"Segoe UI"};
    const INT_PTR result = RunDialog(nullptr, dialogTemplate, owner, BoxProc, reinterpret_cast<LPARAM>(&message));
    return static_cast<int>(std::max<INT_PTR>(result, 0));
}

BOOL WINAPI MessageBeep(UINT) {
    return TRUE;
}

}  // extern "C"
