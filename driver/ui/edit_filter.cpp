#include "driver/ui/edit_filter.h"

#include <commctrl.h>

#include <algorithm>

#include "driver/base/text.h"
#include "driver/ui/clipboard_text.h"
#include "driver/ui/sheet_context.h"

namespace velmora {
namespace {

constexpr WCHAR kFirstPrintable = TEXT(' ');
constexpr WCHAR kPasteKey = 0x16;  // what Ctrl+V types

// The characters of a text that the filter allows stay.
void KeepAllowed(const SheetContext& context, const EditFilter& filter, WCHAR* text) {
    WCHAR allowed[kMessageCapacity];
    LoadText(context, filter.allowed, allowed, ARRAYSIZE(allowed));
    const WCHAR* const allowedEnd = allowed + TextLength(allowed);
    WCHAR* kept = text;
    for (const WCHAR* character = text; *character != 0; ++character) {
        if (std::find(static_cast<const WCHAR*>(allowed), allowedEnd, *character) != allowedEnd) {
            *kept++ = *character;
        }
    }
    *kept = 0;
}

bool IsAllowed(const SheetContext& context, const EditFilter& filter, WCHAR character) {
    WCHAR text[] = {character, 0};
    KeepAllowed(context, filter, text);
    return text[0] != 0;
}

// How many characters can take the selection's place.
size_t RoomIn(HWND edit) {
    DWORD start = 0;
    DWORD end = 0;
    SendMessageW(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    const LRESULT room =
        SendMessageW(edit, EM_GETLIMITTEXT, 0, 0) - GetWindowTextLengthW(edit) + static_cast<LRESULT>(end - start);
    return static_cast<size_t>(std::max<LRESULT>(room, 0));
}

void Paste(HWND edit, const SheetContext& context, const EditFilter& filter) {
    WCHAR text[kMessageCapacity];
    if (ReadClipboardText(edit, text, ARRAYSIZE(text))) {
        KeepAllowed(context, filter, text);
        text[std::min(RoomIn(edit), TextLength(text))] = 0;
        SendMessageW(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text));
    }
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
    const bool isTyped = message == WM_CHAR || message == WM_IME_CHAR;
    const auto character = static_cast<WCHAR>(wParam);
    if (message == WM_PASTE || (message == WM_CHAR && character == kPasteKey)) {
        Paste(edit, *context, *filter);
        return 0;
    }
    if (isTyped && character >= kFirstPrintable && !IsAllowed(*context, *filter, character)) {
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
