#include "driver/ui/information_page.h"

#include <prsht.h>

#include "driver/ui/color_page.h"
#include "driver/ui/controls.h"
#include "driver/ui/default_settings.h"
#include "driver/ui/output_page.h"
#include "driver/ui/page.h"
#include "driver/ui/paper_page.h"
#include "driver/ui/pictures.h"
#include "driver/ui/watermark_page.h"
#include "driver/ui/watermark_rules.h"

namespace velmora {
namespace {

// Controls. Lines of text and the button have the text of the string of their own number.
constexpr int kLogo = 10002;
constexpr int kRestoreAll = 10009;
constexpr int kTexts[] = {10004, 10005, 10006, 10007, 10008, kRestoreAll};
constexpr const WCHAR* kLogoBitmap = TEXT("ABOUT_LOGO");

// Of the question before the defaults are restored.
constexpr UINT kQuestionText = 10010;
constexpr UINT kQuestionCaption = 10011;

constexpr int kBelowSheet = 80;  // pixels from the sheet's top

BOOL InitInformationPage(HWND dialog, SheetContext*) {
    SetOwnTexts(dialog, kTexts);
    PlaceDialog(dialog, kCentred, kBelowSheet);
    return TRUE;
}

bool AskWhetherToRestore(HWND dialog, const SheetContext& context) {
    WCHAR text[kMessageCapacity];
    WCHAR caption[kMessageCapacity];
    LoadText(context, kQuestionText, text, ARRAYSIZE(text));
    LoadText(context, kQuestionCaption, caption, ARRAYSIZE(caption));
    return MessageBoxW(dialog, text, caption, MB_OKCANCEL) == IDOK;
}

void RestorePaperPage(HWND page, SheetContext* context) {
    PrivateDevMode& own = context->devMode->privatePart;
    ResetLayoutSettings(&own);
    RestorePaperDefaults(page, context);
    context->paper.details = ReadPageDetails(own);
    own.uiStale = 1;
}

// Open pages show their defaults, and write what they show when the sheet is applied. Where they aren't open, the
// device mode takes the defaults here, but for the Paper page's: that one is closed only in sheets that never show it.
void RestoreAllDefaults(SheetContext* context) {
    if (const HWND page = context->dialogs[kPaperSlot]) {
        RestorePaperPage(page, context);
    }
    ResetColorSettings(context);
    if (const HWND page = context->dialogs[kColorSlot]) {
        RestoreColorDefaults(page, context);
    }
    if (const HWND page = context->dialogs[kWatermarkSlot]) {
        RestoreBuiltinWatermarks(page, context);
    } else {
        ResetBuiltinWatermarks(context);
    }
    if (const HWND page = context->dialogs[kOutputSlot]) {
        RestoreOutputDefaults(page, context);
    } else {
        ResetOutputSettings(&context->devMode->privatePart);
    }
}

// The sheet can be applied then; the page itself has nothing to apply, so it carries no mark that would keep the others
// from being committed.
void OnInformationCommand(HWND dialog, SheetContext* context, int id, int code) {
    if (id == kRestoreAll && code == BN_CLICKED && AskWhetherToRestore(dialog, *context)) {
        RestoreAllDefaults(context);
        SendMessageW(GetParent(dialog), PSM_CHANGED, reinterpret_cast<WPARAM>(dialog), 0);
    }
}

void PaintInformationPage(HWND dialog, SheetContext* context, HDC target) {
    DrawBitmapTransparent(dialog, target, context->resources.Get(), kLogoBitmap, kLogo);
}

constexpr PageFunctions kInformationPage = {
    kInformationSlot, InitInformationPage, OnInformationCommand, nullptr, nullptr, PaintInformationPage, nullptr,
    nullptr,
};

}  // namespace

INT_PTR CALLBACK InformationPageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return RoutePageMessage(kInformationPage, dialog, message, wParam, lParam);
}

}  // namespace velmora
