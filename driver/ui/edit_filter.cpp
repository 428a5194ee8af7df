#include "driver/ui/edit_filter.h"

#include <commctrl.h>

#include "driver/ui/paper_rules.h"
#include "driver/ui/sheet_context.h"

namespace velmora {
namespace {

bool IsAllowed(const SheetContext& context, const EditFilter& filter, WCHAR character) {
    WCHAR allowed[kMessageCapacity];
    LoadText(context, filter.allowed, allowed, ARRAYSIZE(allowed));
    return IsTypeable(allowed, character);
}

void StepSpin(HWND dialog, int spin, int steps) {
    const LRESULT position = SendDlgItemMessageW(dialog, spin, UDM_GETPOS32, 0, 0);
    SendDlgItemMessageW(dialog, spin, UDM_SETPOS32, 0, position + steps);
}

// Steps that a key or the wheel makes, 0 for any other message.
int StepsOf(UINT message, WPARAM wParam) {
    if (message == WM_KEYDOWN) {
        return wParam == VK_UP ? 1 : wParam == VK_DOWN ? -1 : 0;
    }
    return message != WM_MOUSEWHEEL ? 0 : GET_WHEEL_DELTA_WPARAM(wParam) > 0 ? 1 : -1;
}

LRESULT CALLBACK FilterProc(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) {
    const HWND dialog = GetParent(edit);
    const SheetContext* const context = ContextOf(dialog);
    if (!context) {  // freed while the edit is still there, and with it what stood behind the filter
        return DefWindowProcW(edit, message, wParam, lParam);
    }
    const auto* const filter = reinterpret_cast<const EditFilter*>(GetWindowLongPtrW(edit, GWLP_USERDATA));
    if ((message == WM_CHAR || message == WM_IME_CHAR) && !IsAllowed(*context, *filter, static_cast<WCHAR>(wParam))) {
        return 0;
    }
    const int steps = filter->spin != 0 ? StepsOf(message, wParam) : 0;
    if (steps != 0) {
        StepSpin(dialog, filter->spin, steps);
        return 0;
    }
    return CallWindowProcW(context->replacedEditProc, edit, message, wParam, lParam);
}

}  // namespace

void FilterEdit(HWND dialog, int edit, const EditFilter* filter) {
    const HWND window = GetDlgItem(dialog, edit);
    SheetContext* const context = ContextOf(dialog);
    if (!window || !context) {
        return;
    }
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(filter));
    context->replacedEditProc = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC));
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(FilterProc));
}

}  // namespace velmora
