#include "driver/ui/modal_dialog.h"

#include "driver/ui/help.h"

namespace velmora {
namespace {

// Slots of dialogs that use no help of their own.
constexpr int kFirstHelplessSlot = 8;
constexpr int kLastHelplessSlot = 9;

}  // namespace

INT_PTR RunDialog(SheetContext* context, UINT dialogTemplate, HWND owner, DLGPROC proc) {
    if (!context->resources) {
        return -1;  // no module means the program's own
    }
    return DialogBoxParamW(context->resources.Get(), MAKEINTRESOURCEW(dialogTemplate), owner, proc,
                           reinterpret_cast<LPARAM>(context));
}

INT_PTR RouteDialogMessage(const DialogFunctions& functions, HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(dialog, DWLP_USER, lParam);
        return functions.initialize(dialog, ContextOf(dialog));
    }
    SheetContext* const context = ContextOf(dialog);
    if (!context) {
        return FALSE;
    }
    if (RouteHelpMessage(dialog, message, wParam, lParam)) {
        return TRUE;
    }
    if (message == WM_DESTROY) {
        ReleaseSlot(dialog, functions.slot);
    }
    return functions.answer(dialog, context, message, wParam, lParam);
}

bool RouteHelpMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    const SheetContext* const context = ContextOf(dialog);
    if (!context || (message != WM_HELP && message != WM_CONTEXTMENU)) {
        return false;
    }
    if (message == WM_HELP) {
        ShowControlHelp(*context, *reinterpret_cast<const HELPINFO*>(lParam));
    } else {
        ShowContextHelp(dialog, *context, reinterpret_cast<HWND>(wParam),
                        {static_cast<SHORT>(LOWORD(lParam)), static_cast<SHORT>(HIWORD(lParam))});
    }
    return true;
}

void ReleaseSlot(HWND dialog, int slot) {
    SheetContext* const context = ContextOf(dialog);
    if (slot == kNoSlot || !context) {
        return;
    }
    if (slot < kFirstHelplessSlot || slot > kLastHelplessSlot) {
        EndHelp();
    }
    context->dialogs[slot] = nullptr;
}

}  // namespace velmora
