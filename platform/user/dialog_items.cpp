// Controls of a dialog by their ids.
#include <windows.h>

#include <algorithm>

#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/text.h"
#include "platform/user/windows.h"

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
