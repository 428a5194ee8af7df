#include "driver/ui/controls.h"

#include "driver/base/text.h"
#include "driver/ui/sheet_context.h"

namespace velmora {
namespace {

// The messages of a kind of list.
struct ListMessages {
    UINT getCount;
    UINT getData;
    UINT select;
};
constexpr ListMessages kComboMessages = {CB_GETCOUNT, CB_GETITEMDATA, CB_SETCURSEL};
constexpr ListMessages kListMessages = {LB_GETCOUNT, LB_GETITEMDATA, LB_SETCURSEL};

int SelectByData(HWND dialog, int control, uint32_t value, const ListMessages& messages) {
    const LRESULT count = SendDlgItemMessageW(dialog, control, messages.getCount, 0, 0);
    for (int i = 0; i < count; ++i) {
        const LRESULT data = SendDlgItemMessageW(dialog, control, messages.getData, static_cast<WPARAM>(i), 0);
        if (static_cast<uint32_t>(data) == value) {
            SendDlgItemMessageW(dialog, control, messages.select, static_cast<WPARAM>(i), 0);
            return i;
        }
    }
    SendDlgItemMessageW(dialog, control, messages.select, 0, 0);
    return -1;
}

void SetTextOf(HWND window, const SheetContext* context, UINT stringId) {
    if (context && window) {
        WCHAR text[kMessageCapacity];
        LoadText(*context, stringId, text, ARRAYSIZE(text));
        SetWindowTextW(window, text);
    }
}

int WidthOf(const RECT& rect) {
    return rect.right - rect.left;
}

int HeightOf(const RECT& rect) {
    return rect.bottom - rect.top;
}

}  // namespace

void AddComboItem(HWND dialog, int control, const WCHAR* text, uint32_t value) {
    const LRESULT item = SendDlgItemMessageW(dialog, control, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
    if (item >= 0) {
        SendDlgItemMessageW(dialog, control, CB_SETITEMDATA, static_cast<WPARAM>(item), static_cast<LPARAM>(value));
    }
}

void FillChoiceCombo(HWND dialog, int control, const ChoiceEntry* choices, uint32_t filter) {
    const SheetContext* const context = ContextOf(dialog);
    SendDlgItemMessageW(dialog, control, CB_RESETCONTENT, 0, 0);
    for (; context && choices->stringId != 0; ++choices) {
        if (!IsOffered(*choices, filter)) {
            continue;
        }
        WCHAR text[kMessageCapacity];
        LoadText(*context, choices->stringId, text, ARRAYSIZE(text));
        AddComboItem(dialog, control, text, choices->value);
    }
}

int SelectComboByData(HWND dialog, int control, uint32_t value) {
    return SelectByData(dialog, control, value, kComboMessages);
}

int SelectListByData(HWND dialog, int control, uint32_t value) {
    return SelectByData(dialog, control, value, kListMessages);
}

uint32_t GetComboData(HWND dialog, int control) {
    const LRESULT selected = SendDlgItemMessageW(dialog, control, CB_GETCURSEL, 0, 0);
    return selected < 0 ? UINT32_MAX
                        : static_cast<uint32_t>(
                              SendDlgItemMessageW(dialog, control, CB_GETITEMDATA, static_cast<WPARAM>(selected), 0));
}

void SetControlText(HWND dialog, int control, UINT stringId) {
    SetTextOf(GetDlgItem(dialog, control), ContextOf(dialog), stringId);
}

void SetDialogTitle(HWND dialog, UINT stringId) {
    SetTextOf(dialog, ContextOf(dialog), stringId);
}

void SetOwnTexts(HWND dialog, std::span<const int> controls) {
    for (const int control : controls) {
        SetControlText(dialog, control, static_cast<UINT>(control));
    }
}

void UpdateControlText(HWND dialog, int control, const WCHAR* text) {
    WCHAR shown[kMessageCapacity] = {};
    GetDlgItemTextW(dialog, control, shown, ARRAYSIZE(shown));
    if (!TextsEqual<WCHAR>(shown, text)) {
        SetDlgItemTextW(dialog, control, text);
    }
}

void ReadAnsiText(HWND dialog, int control, char* field, size_t size) {
    constexpr size_t kMostBytes = 4;  // of a character
    WCHAR text[kMessageCapacity] = {};
    char bytes[kMostBytes * kMessageCapacity] = {};
    const auto length = static_cast<int>(GetDlgItemTextW(dialog, control, text, ARRAYSIZE(text)));
    const int count = WideCharToMultiByte(CP_ACP, 0, text, length, bytes, sizeof(bytes) - 1, nullptr, nullptr);
    bytes[count] = 0;
    StoreAnsiText(field, size, bytes);
}

bool IsChecked(HWND dialog, int control) {
    return IsDlgButtonChecked(dialog, control) == BST_CHECKED;
}

void CheckControl(HWND dialog, int control, bool isChecked) {
    if (IsChecked(dialog, control) != isChecked) {
        CheckDlgButton(dialog, control, isChecked ? BST_CHECKED : BST_UNCHECKED);
    }
}

uint16_t CheckedRadio(HWND dialog, std::span<const RadioValue> radios, uint16_t otherwise) {
    for (const RadioValue& radio : radios) {
        if (IsChecked(dialog, radio.control)) {
            return radio.value;
        }
    }
    return otherwise;
}

void CheckRadio(HWND dialog, std::span<const RadioValue> radios, uint16_t value) {
    for (const RadioValue& radio : radios) {
        CheckControl(dialog, radio.control, radio.value == value);
    }
}

void EnableControl(HWND dialog, int control, bool isEnabled) {
    if (const HWND window = GetDlgItem(dialog, control)) {
        EnableWindow(window, isEnabled ? TRUE : FALSE);
    }
}

void ShowControl(HWND dialog, int control, bool isShown) {
    if (const HWND window = GetDlgItem(dialog, control)) {
        ShowWindow(window, isShown ? SW_SHOW : SW_HIDE);
        EnableWindow(window, isShown ? TRUE : FALSE);
    }
}

RECT ControlRect(HWND dialog, int control) {
    RECT rect = {};
    if (const HWND window = GetDlgItem(dialog, control)) {
        GetWindowRect(window, &rect);
        MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&rect), 2);
    }
    return rect;
}

void InvalidateControl(HWND dialog, int control) {
    const RECT rect = ControlRect(dialog, control);
    InvalidateRect(dialog, &rect, TRUE);
}

void PlaceDialog(HWND dialog, int x, int y) {
    const HWND parent = GetParent(dialog);
    WINDOWPLACEMENT placement = {};
    placement.length = sizeof(placement);
    RECT rect;
    if (!parent || !GetWindowPlacement(parent, &placement) || !GetWindowRect(dialog, &rect)) {
        return;
    }
    const RECT& outer = placement.rcNormalPosition;
    // A page's place counts from its sheet, not from the screen.
    const bool isPage = (GetWindowLongPtrW(dialog, GWL_STYLE) & WS_CHILD) != 0;
    const int left = isPage ? 0 : outer.left;
    const int top = isPage ? 0 : outer.top;
    SetWindowPos(dialog, nullptr, (x == kCentred ? (WidthOf(outer) - WidthOf(rect)) / 2 : x) + left,
                 (y == kCentredDown ? (HeightOf(outer) - HeightOf(rect)) / 2 : y) + top, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace velmora
