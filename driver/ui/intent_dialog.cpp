#include "driver/ui/intent_dialog.h"

#include "driver/ui/color_rules.h"
#include "driver/ui/controls.h"
#include "driver/ui/modal_dialog.h"
#include "driver/ui/page.h"

namespace velmora {
namespace {

constexpr UINT kTemplate = 6400;
constexpr UINT kTitle = 6401;

// Controls, and their texts where these aren't the string of their own number.
constexpr int kRestore = 6405;
constexpr UINT kOkText = 6406;
constexpr UINT kCancelText = 6407;
constexpr UINT kRestoreText = 6408;

void Store(SheetContext* context, uint16_t intent) {
    StoreIntent(intent, context->devMode);
    MarkColorPageChanged(context);
}

void InitDialog(HWND dialog, const SheetContext& context) {
    SetDialogTitle(dialog, kTitle);
    for (const RadioValue& radio : kIntentRadios) {
        SetControlText(dialog, radio.control, static_cast<UINT>(radio.control));
    }
    SetControlText(dialog, IDOK, kOkText);
    SetControlText(dialog, IDCANCEL, kCancelText);
    SetControlText(dialog, kRestore, kRestoreText);
    CheckRadio(dialog, kIntentRadios, ShownIntent(context.devMode->publicPart));
    PlaceDialog(dialog, kCentred, kCentredDown);
}

INT_PTR AnswerIntent(HWND dialog, SheetContext* context, UINT message, WPARAM wParam, LPARAM) {
    if (message != WM_COMMAND || HIWORD(wParam) != BN_CLICKED) {
        return FALSE;
    }
    switch (LOWORD(wParam)) {
        case kRestore:
            CheckRadio(dialog, kIntentRadios, kDefaultIntent);
            Store(context, kDefaultIntent);
            return TRUE;
        case IDOK:
            Store(context, CheckedRadio(dialog, kIntentRadios, kDefaultIntent));
            [[fallthrough]];
        case IDCANCEL:
            EndDialog(dialog, LOWORD(wParam));
            return TRUE;
        default:
            return FALSE;
    }
}

BOOL Open(HWND dialog, SheetContext* context) {
    InitDialog(dialog, *context);
    return TRUE;
}

constexpr DialogFunctions kDialog = {kColorDialogsSlot, Open, AnswerIntent};

INT_PTR CALLBACK IntentProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return RouteDialogMessage(kDialog, dialog, message, wParam, lParam);
}

}  // namespace

void RunIntentDialog(HWND colorPage, SheetContext* context) {
    RunDialog(context, kTemplate, colorPage, IntentProc);
}

}  // namespace velmora
