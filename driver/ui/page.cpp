#include "driver/ui/page.h"

#include "driver/ui/constraints.h"
#include "driver/ui/controls.h"
#include "driver/ui/help.h"
#include "driver/ui/modal_dialog.h"
#include "driver/ui/notice.h"

namespace velmora {
namespace {

// Controls that every document page has, and the texts of the list of saved settings.
constexpr int kSavedSettings = 3136;
constexpr int kSavedSettingsLabel = 1657;
constexpr int kCommonLabel = 1601;
constexpr ChoiceEntry kSavedSettingsChoices[] = {
    {kAlwaysOffered, 2630, 2},
    {kAlwaysOffered, 2631, 1},
    {},
};

// A program that hangs isn't waited for longer than this when others are told of a change.
constexpr UINT kBroadcastMilliseconds = 1000;

void InitPage(HWND dialog, const PROPSHEETPAGEW& sheetPage, int slot) {
    auto* const context = reinterpret_cast<SheetContext*>(sheetPage.lParam);
    SetWindowLongPtrW(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(context));
    if (slot == kNoSlot) {
        return;
    }
    context->dialogs[slot] = dialog;
    context->isChanged[slot] = false;
    SendMessageW(GetParent(dialog), PSM_UNCHANGED, reinterpret_cast<WPARAM>(dialog), 0);
    if (!context->isDeviceSheet) {
        // Settings are saved nowhere but in the device mode, so the list has the two standing entries alone.
        FillChoiceCombo(dialog, kSavedSettings, kSavedSettingsChoices, kEveryChoice);
        SendDlgItemMessageW(dialog, kSavedSettings, CB_SETCURSEL, 0, 0);
        SetControlText(dialog, kSavedSettingsLabel, kSavedSettingsLabel);
    }
    SetControlText(dialog, kCommonLabel, kCommonLabel);
}

// True where the device can't print what is asked, which the user is told.
bool CheckConstraints(HWND owner, SheetContext* context) {
    if (!context->model) {
        return false;
    }
    const ConstraintRecord* const conflict =
        FindConflict({context->printer, *context->model, context->deviceInfo, *context->devMode,
                      size_t{context->customSizes.count} + context->forms.count});
    if (!conflict) {
        return false;
    }
    context->noticeMessageRef = conflict->messageRef;
    ShowNotice(context, owner, kNoticeConflict);
    return true;
}

// Every message that reaches the dialog meanwhile clears its answer, so that is given last.
void ApplyPage(const PageFunctions& page, HWND dialog, SheetContext* context) {
    context->applyAnswer = PSNRET_NOERROR;
    if (page.slot == kNoSlot) {
        page.apply(dialog, context);
    } else if (page.apply && context->isChanged[page.slot]) {
        page.apply(dialog, context);
        SendMessageW(GetParent(dialog), context->isChanged[page.slot] ? PSM_CHANGED : PSM_UNCHANGED,
                     reinterpret_cast<WPARAM>(dialog), 0);
    }
    SetWindowLongPtrW(dialog, DWLP_MSGRESULT, context->applyAnswer);
}

INT_PTR OnNotify(const PageFunctions& page, HWND dialog, SheetContext* context, const NMHDR& notification) {
    switch (notification.code) {
        case PSN_SETACTIVE:
            if (!page.activate) {
                return FALSE;
            }
            page.activate(dialog, context);
            return TRUE;
        case PSN_APPLY:
            ApplyPage(page, dialog, context);
            return TRUE;
        case PSN_HELP:
            ShowPageHelp(dialog, *context);
            return TRUE;
        default:
            return FALSE;
    }
}

}  // namespace

INT_PTR RoutePageMessage(const PageFunctions& page, HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        InitPage(dialog, *reinterpret_cast<const PROPSHEETPAGEW*>(lParam), page.slot);
        return page.initialize(dialog, ContextOf(dialog));
    }
    SheetContext* const context = ContextOf(dialog);
    if (!context) {
        return FALSE;
    }
    if (RouteHelpMessage(dialog, message, wParam, lParam)) {
        return TRUE;
    }
    switch (message) {
        case WM_COMMAND:
            page.command(dialog, context, LOWORD(wParam), HIWORD(wParam));
            return TRUE;
        case WM_NOTIFY:
            return OnNotify(page, dialog, context, *reinterpret_cast<const NMHDR*>(lParam));
        case WM_PAINT:
            if (page.paint) {
                PAINTSTRUCT paint;
                if (const HDC target = BeginPaint(dialog, &paint)) {
                    page.paint(dialog, context, target);
                    EndPaint(dialog, &paint);
                }
                return TRUE;
            }
            return FALSE;
        case WM_HSCROLL:
        case WM_VSCROLL:
            if (page.scroll) {
                page.scroll(dialog, context, message, LOWORD(wParam), static_cast<SHORT>(HIWORD(wParam)),
                            reinterpret_cast<HWND>(lParam));
                return TRUE;
            }
            return FALSE;
        case WM_MOUSEMOVE:
        case WM_LBUTTONDOWN:
        case WM_LBUTTONUP:
            if (page.mouse) {
                page.mouse(dialog, context, message,
                           {static_cast<SHORT>(LOWORD(lParam)), static_cast<SHORT>(HIWORD(lParam))});
                return TRUE;
            }
            return FALSE;
        case WM_DESTROY:
            ReleaseSlot(dialog, page.slot);
            return TRUE;
        default:
            return FALSE;
    }
}

void MarkPageChanged(HWND dialog, SheetContext* context, int slot) {
    SendMessageW(GetParent(dialog), PSM_CHANGED, reinterpret_cast<WPARAM>(dialog), 0);
    context->isChanged[slot] = true;
}

void MarkColorPageChanged(SheetContext* context) {
    if (const HWND page = context->dialogs[kColorSlot]) {
        MarkPageChanged(page, context, kColorSlot);
    }
}

void CommitPage(SheetContext* context, int slot) {
    context->isChanged[slot] = false;
    for (const bool isChanged : context->isChanged) {
        if (isChanged) {
            return;
        }
    }
    if (CheckConstraints(context->dialogs[slot], context)) {
        context->isChanged[slot] = true;
        context->applyAnswer = PSNRET_INVALID_NOCHANGEPAGE;
        return;
    }
    DEVMODEW& publicPart = context->devMode->publicPart;
    if (publicPart.dmICMMethod > DMICMMETHOD_USER) {
        publicPart.dmICMMethod = DMICMMETHOD_NONE;
    }
    if (context->hostCallback) {
        context->hostCallback(context->host, CPSFUNC_SET_RESULT, context->hostPages[slot], CPSUI_OK);
    }
    if (context->isDeviceSheet) {
        SendMessageTimeoutW(HWND_BROADCAST, WM_DEVMODECHANGE, 0, reinterpret_cast<LPARAM>(context->printerName),
                            SMTO_ABORTIFHUNG, kBroadcastMilliseconds, nullptr);
    }
    context->committedPrivate = context->devMode->privatePart;
    context->committedDeviceInfo = context->deviceInfo;
}

}  // namespace velmora
