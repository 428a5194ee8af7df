#include "driver/ui/notice.h"

#include "driver/base/format.h"
#include "driver/base/text.h"
#include "driver/devdesc/description_file.h"
#include "driver/ui/controls.h"
#include "driver/ui/modal_dialog.h"

namespace velmora {
namespace {

constexpr UINT kNoticeTemplate = 1050;

// Controls. Buttons have the text of the string of their own number.
constexpr int kIcon = 1815;
constexpr int kModelMessage = 1816;
constexpr int kFirstLine = 1821;
constexpr int kLineCount = 4;
constexpr int kFirstAnswer = 1602;
constexpr int kSecondAnswer = 1603;
constexpr int kOk = 1604;

// Results of the dialog.
constexpr INT_PTR kAnsweredFirst = 0;
constexpr INT_PTR kClosed = 1;

constexpr int kBelowOwner = 25;  // pixels from the owner's top

// What a kind shows.
struct Notice {
    NoticeKind kind;
    LPCWSTR icon;        // of the system
    uint16_t firstLine;  // string of the first of four lines
    bool isQuestion;     // two answers in place of OK
};

const Notice* FindNotice(uint16_t kind) {
    static const Notice notices[] = {
        {kNoticeError, IDI_ERROR, 2533, false},        {kNoticeConflict, IDI_ERROR, 2509, false},
        {kNoticeCustomLimits, IDI_ERROR, 2513, false}, {kNoticeQuestion, IDI_WARNING, 2505, true},
        {kNoticeJobPrompt, IDI_ERROR, 2529, false},    {kNoticeSecondQuestion, IDI_WARNING, 2537, true},
    };
    for (const Notice& notice : notices) {
        if (notice.kind == kind) {
            return &notice;
        }
    }
    return nullptr;
}

// A limit in both units, towards the inside of what is allowed: minimums are rounded up, maximums down.
struct ShownLimit {
    int inchHundredths;
    int millimetreTenths;
};

ShownLimit ShowLimit(int tenths, bool isMinimum) {
    constexpr int kTenthsPerInch = 254;
    return {(tenths * 100 + (isMinimum ? kTenthsPerInch - 1 : 0)) / kTenthsPerInch, tenths};
}

// The lines of the custom sizes' limits are formats of the inches and their hundredths, the millimetres and their
// tenths.
void FormatLimit(const DeviceModel& model, int line, WCHAR* text, size_t capacity) {
    const int limits[kLineCount] = {model.customMinWidth, model.customMaxWidth, model.customMinLength,
                                    model.customMaxLength};
    const ShownLimit shown = ShowLimit(limits[line], line % 2 == 0);
    WCHAR format[kMessageCapacity];
    CopyText<WCHAR>(format, ARRAYSIZE(format), text);
    FormatWide(text, capacity, format, shown.inchHundredths / 100, shown.inchHundredths % 100,
               shown.millimetreTenths / 10, shown.millimetreTenths % 10);
}

void ShowLines(HWND dialog, const SheetContext& context, const Notice& notice) {
    for (int line = 0; line < kLineCount; ++line) {
        WCHAR text[kMessageCapacity];
        LoadText(context, notice.firstLine + static_cast<UINT>(line), text, ARRAYSIZE(text));
        if (notice.kind == kNoticeCustomLimits && context.model) {
            FormatLimit(*context.model, line, text, ARRAYSIZE(text));
        }
        SetDlgItemTextW(dialog, kFirstLine + line, text);
    }
}

// What the model itself says of a conflict takes the place of the lines.
void ShowModelMessage(HWND dialog, const SheetContext& context) {
    WCHAR text[kMessageCapacity];
    ReadLocalizedString(context.descriptionFile.Get(), context.locale.language, context.resources.Get(),
                        static_cast<int16_t>(context.noticeMessageRef), text, ARRAYSIZE(text));
    SetDlgItemTextW(dialog, kModelMessage, text);
    ShowControl(dialog, kModelMessage, true);
    for (int line = 0; line < kLineCount; ++line) {
        ShowControl(dialog, kFirstLine + line, false);
    }
}

void InitNotice(HWND dialog, const SheetContext& context) {
    const Notice* const notice = FindNotice(context.noticeKind);
    if (!notice) {
        return;
    }
    SetDialogTitle(dialog, notice->kind);
    SendDlgItemMessageW(dialog, kIcon, STM_SETICON, reinterpret_cast<WPARAM>(LoadIconW(nullptr, notice->icon)), 0);
    ShowControl(dialog, kModelMessage, false);
    if (notice->kind == kNoticeConflict && context.noticeMessageRef != 0) {
        ShowModelMessage(dialog, context);
    } else {
        ShowLines(dialog, context, *notice);
    }
    for (const int button : {kFirstAnswer, kSecondAnswer, kOk}) {
        SetControlText(dialog, button, static_cast<UINT>(button));
        ShowControl(dialog, button, (button != kOk) == notice->isQuestion);
    }
    const int defaultButton = notice->isQuestion ? kFirstAnswer : kOk;
    SendMessageW(dialog, DM_SETDEFID, static_cast<WPARAM>(defaultButton), 0);
    SetFocus(GetDlgItem(dialog, defaultButton));
    if (notice->kind == kNoticeJobPrompt) {
        SetForegroundWindow(dialog);
    } else {
        PlaceDialog(dialog, kCentred, kBelowOwner);
    }
}

INT_PTR AnswerNotice(HWND dialog, SheetContext*, UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_COMMAND) {
        switch (LOWORD(wParam)) {
            case kFirstAnswer:
                EndDialog(dialog, kAnsweredFirst);
                return TRUE;
            case kSecondAnswer:
            case kOk:
            case IDCANCEL:
                EndDialog(dialog, kClosed);
                return TRUE;
            default:
                return FALSE;
        }
    }
    return FALSE;
}

BOOL Open(HWND dialog, SheetContext* context) {
    InitNotice(dialog, *context);
    return FALSE;  // the focus is where it belongs
}

constexpr DialogFunctions kDialog = {kNoSlot, Open, AnswerNotice};

INT_PTR CALLBACK NoticeProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return RouteDialogMessage(kDialog, dialog, message, wParam, lParam);
}

}  // namespace

INT_PTR ShowNotice(SheetContext* context, HWND owner, NoticeKind kind) {
    context->noticeKind = kind;
    return RunDialog(context, kNoticeTemplate, owner, NoticeProc);
}

void ShowJobPrompt(HANDLE printer) {
    const OwnedSheetContext context(CreateNoticeContext(printer));
    if (context) {
        ShowNotice(context.Get(), nullptr, kNoticeJobPrompt);
    }
}

}  // namespace velmora
