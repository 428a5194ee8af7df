// Controls of a dialog by their ids.
#include <windows.h>

#include <algorithm>
#include <limits>
#include <optional>

#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/text.h"
#include "platform/user/windows.h"

namespace host {
namespace {

// None where the text isn't a number that fits.
std::optional<UINT> ParseNumber(std::u16string_view text, bool isSigned) {
    text.remove_prefix(std::min(text.find_first_not_of(u' '), text.size()));
    const bool isNegative = isSigned && !text.empty() && text.front() == u'-';
    text.remove_prefix(isNegative ? 1 : 0);
    if (text.empty()) {
        return std::nullopt;
    }
    const int64_t highest = !isSigned    ? int64_t{std::numeric_limits<UINT>::max()}
                            : isNegative ? -int64_t{std::numeric_limits<int>::min()}
                                         : int64_t{std::numeric_limits<int>::max()};
    int64_t value = 0;
    for (const char16_t c : text) {
        if (c < u'0' || c > u'9') {
            return std::nullopt;
        }
        value = value * 10 + (c - u'0');
        if (value > highest) {
            return std::nullopt;
        }
    }
    return static_cast<UINT>(isNegative ? -value : value);
}

}  // namespace
}  // namespace host

using namespace host;

extern "C" {

HWND WINAPI GetDlgItem(HWND dialog, int id) {
    Window* const found = FindWindowObject(dialog);
    if (found == nullptr) {
        return nullptr;
    }
    for (const HWND child : found->children) {
        const Window* const window = FindWindowObject(child);
        if (window != nullptr && static_cast<int>(window->id) == id) {
            return child;
        }
    }
    Fail(ERROR_CONTROL_ID_NOT_FOUND);
    return nullptr;
}

int WINAPI GetDlgCtrlID(HWND window) {
    const Window* const found = FindWindowObject(window);
    return found != nullptr && found->IsChild() ? static_cast<int>(found->id) : 0;
}

LRESULT WINAPI SendDlgItemMessageW(HWND dialog, int id, UINT message, WPARAM wParam, LPARAM lParam) {
    const HWND control = GetDlgItem(dialog, id);
    return control != nullptr ? Send(control, message, wParam, lParam) : 0;
}

BOOL WINAPI SetDlgItemTextW(HWND dialog, int id, LPCWSTR text) {
    if (FaultAsked("SetDlgItemTextW")) {
        return FALSE;
    }
    const HWND control = GetDlgItem(dialog, id);
    return control != nullptr && SetWindowTextW(control, text);
}

UINT WINAPI GetDlgItemTextW(HWND dialog, int id, LPWSTR text, int capacity) {
    if (text == nullptr || capacity <= 0) {
        return 0;
    }
    text[0] = 0;
    const HWND control = !FaultAsked("GetDlgItemTextW") ? GetDlgItem(dialog, id) : nullptr;
    return control != nullptr ? static_cast<UINT>(GetWindowTextW(control, text, capacity)) : 0;
}

BOOL WINAPI SetDlgItemInt(HWND dialog, int id, UINT value, BOOL isSigned) {
    const std::string text = isSigned ? std::to_string(static_cast<int>(value)) : std::to_string(value);
    return SetDlgItemTextW(dialog, id, ToWide(text).c_str());
}

UINT WINAPI GetDlgItemInt(HWND dialog, int id, BOOL* translated, BOOL isSigned) {
    constexpr int kLongest = 64;  // characters; no number is as long
    WCHAR text[kLongest];
    GetDlgItemTextW(dialog, id, text, kLongest);
    const std::optional<UINT> value = ParseNumber(text, isSigned != FALSE);
    if (translated != nullptr) {
        *translated = value.has_value();
    }
    return value.value_or(0);
}

BOOL WINAPI CheckDlgButton(HWND dialog, int id, UINT check) {
    const HWND control = GetDlgItem(dialog, id);
    if (control == nullptr) {
        return FALSE;
    }
    Send(control, BM_SETCHECK, check);
    return TRUE;
}

UINT WINAPI IsDlgButtonChecked(HWND dialog, int id) {
    return static_cast<UINT>(SendDlgItemMessageW(dialog, id, BM_GETCHECK, 0, 0));
}

BOOL WINAPI CheckRadioButton(HWND dialog, int first, int last, int check) {
    if (FindWindowObject(dialog) == nullptr) {
        return FALSE;
    }
    for (int id = first; id <= last; ++id) {
        SendDlgItemMessageW(dialog, id, BM_SETCHECK, id == check ? BST_CHECKED : BST_UNCHECKED, 0);
    }
    return TRUE;
}

}  // extern "C"
