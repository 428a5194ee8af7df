#include "driver/ui/custom_size_dialog.h"

#include <commctrl.h>

#include <cstddef>

#include "driver/base/text.h"
#include "driver/ui/controls.h"
#include "driver/ui/custom_size.h"
#include "driver/ui/modal_dialog.h"
#include "driver/ui/pictures.h"

namespace velmora {
namespace {

constexpr UINT kTemplate = 5300;  // its title is the string of the same number

// Controls. Labels and buttons have the text of the string of their own number.
constexpr int kUnitMillimetres = 5312;
constexpr int kUnitInches = 5313;
constexpr int kFeedIcon = 5315;
constexpr int kFeedText = 5316;
constexpr int kOk = 5317;
constexpr int kCancel = 5318;
constexpr int kTexts[] = {5301, 5306, 5311, 5314, kOk, kCancel};

constexpr INT_PTR kCancelled = 0;
constexpr INT_PTR kChosen = 1;

constexpr WPARAM kLengthCharacters = 5;
constexpr size_t kLengthCapacity = 24;
constexpr size_t kRangeCapacity = 64;

// Strings on both sides of the decimal separator, of the units' radio buttons.
constexpr UINT kUnitBegin = 5362;
constexpr UINT kMillimetresEnd = 5363;
constexpr UINT kInchesEnd = 5364;

// A side of the paper.
struct Side {
    int edit;
    int spin;
    int unit;
    int range;
    int32_t CustomSize::*length;
    RangeTexts CustomSizeTexts::*texts;
    int32_t CustomSizeLimits::*lowest;
    int32_t CustomSizeLimits::*highest;
};
constexpr Side kSides[] = {
    {5302, 5303, 5304, 5305, &CustomSize::width, &CustomSizeTexts::width, &CustomSizeLimits::minWidth,
     &CustomSizeLimits::maxWidth},
    {5307, 5308, 5309, 5310, &CustomSize::length, &CustomSizeTexts::length, &CustomSizeLimits::minLength,
     &CustomSizeLimits::maxLength},
};

// The unit that the lengths are shown in, which is the dialog's own datum: the radio buttons are ahead of it while the
// unit changes.
uint16_t ShownUnit(HWND dialog) {
    return static_cast<uint16_t>(GetWindowLongPtrW(dialog, GWLP_USERDATA));
}

int32_t ReadSide(HWND dialog, const SheetContext& context, const Side& side) {
    WCHAR text[kLengthCapacity] = {};
    GetDlgItemTextW(dialog, side.edit, text, ARRAYSIZE(text));
    return ReadLength(text, ShownUnit(dialog), context.locale.decimalSeparator);
}

CustomSize ReadSize(HWND dialog, const SheetContext& context) {
    CustomSize size = {};
    size.unit = ShownUnit(dialog);
    for (const Side& side : kSides) {
        size.*side.length = ReadSide(dialog, context, side);
    }
    return size;
}

void ShowSide(HWND dialog, const SheetContext& context, const Side& side, int32_t length, LengthRounding rounding) {
    WCHAR text[kLengthCapacity];
    FormatLength(length, ShownUnit(dialog), context.locale.decimalSeparator, rounding, text, ARRAYSIZE(text));
    UpdateControlText(dialog, side.edit, text);
}

// Texts of strings with the decimal separator between them.
template <size_t N>
void ShowSeparated(HWND dialog, const SheetContext& context, int control, const UINT (&strings)[N]) {
    WCHAR text[kRangeCapacity] = {};
    for (size_t i = 0; i < N; ++i) {
        WCHAR part[kRangeCapacity];
        LoadText(context, strings[i], part, ARRAYSIZE(part));
        if (i > 0) {
            AppendText(text, ARRAYSIZE(text), context.locale.decimalSeparator);
        }
        AppendText<WCHAR>(text, ARRAYSIZE(text), part);
    }
    SetDlgItemTextW(dialog, control, text);
}

// Shows a size in its unit, which is the dialog's from here on.
void ShowSize(HWND dialog, const SheetContext& context, const CustomSize& size) {
    SetWindowLongPtrW(dialog, GWLP_USERDATA, size.unit);
    const CustomSizeTexts& texts = CustomSizeTextsOf(context.paper, size.unit);
    for (const Side& side : kSides) {
        ShowSide(dialog, context, side, size.*side.length, LengthRounding::kNearest);
        SetControlText(dialog, side.unit, texts.unit);
        const RangeTexts& range = texts.*side.texts;
        ShowSeparated(dialog, context, side.range, {range.beforeFirst, range.beforeSecond, range.end});
    }
}

void ShowFeedDirection(HWND dialog, const SheetContext& context) {
    const CustomSize size = ReadSize(dialog, context);
    SetControlText(dialog, kFeedText, FeedDirectionOf(size.width, size.length).text);
    InvalidateControl(dialog, kFeedIcon);
}

void InitCustomSizeDialog(HWND dialog, const SheetContext& context) {
    SetDialogTitle(dialog, kTemplate);
    SetOwnTexts(dialog, kTexts);
    ShowSeparated(dialog, context, kUnitMillimetres, {kUnitBegin, kMillimetresEnd});
    ShowSeparated(dialog, context, kUnitInches, {kUnitBegin, kInchesEnd});
    for (const Side& side : kSides) {
        SendDlgItemMessageW(dialog, side.edit, EM_LIMITTEXT, kLengthCharacters, 0);
        // Its position stays in the middle, so it always has a step in both directions.
        SendDlgItemMessageW(dialog, side.spin, UDM_SETRANGE32, 0, 2);
        SendDlgItemMessageW(dialog, side.spin, UDM_SETPOS32, 0, 1);
    }
    const CustomSize size = StartCustomSize(context.paper);
    CheckRadioButton(dialog, kUnitMillimetres, kUnitInches, size.unit == kInches ? kUnitInches : kUnitMillimetres);
    ShowSize(dialog, context, size);
    ShowFeedDirection(dialog, context);
}

void Step(HWND dialog, const SheetContext& context, const NMUPDOWN& change) {
    for (const Side& side : kSides) {
        if (static_cast<int>(change.hdr.idFrom) == side.spin) {
            const CustomSizeLimits& limits = CustomSizeLimitsOf(context.paper);
            const SteppedLength stepped = StepLength(ReadSide(dialog, context, side), ShownUnit(dialog),
                                                     change.iDelta > 0, limits.*side.lowest, limits.*side.highest);
            ShowSide(dialog, context, side, stepped.length, stepped.rounding);
        }
    }
}

void OnCustomSizeCommand(HWND dialog, SheetContext* context, int id, int code) {
    switch (id) {
        case kUnitMillimetres:
        case kUnitInches: {
            const uint16_t unit = id == kUnitInches ? kInches : kMillimetres;
            if (code == BN_CLICKED && unit != ShownUnit(dialog)) {
                CustomSize size = ReadSize(dialog, *context);
                size.unit = unit;
                ShowSize(dialog, *context, size);
            }
            break;
        }
        case kOk:
            StoreCustomSize(&context->paper, ReadSize(dialog, *context));
            EndDialog(dialog, kChosen);
            break;
        case kCancel:
        case IDCANCEL:
            EndDialog(dialog, kCancelled);
            break;
        default:
            if (code == EN_CHANGE) {
                ShowFeedDirection(dialog, *context);
            }
            break;
    }
}

void PaintFeedDirection(HWND dialog, const SheetContext& context) {
    PAINTSTRUCT paint;
    if (const HDC target = BeginPaint(dialog, &paint)) {
        const CustomSize size = ReadSize(dialog, context);
        const OwnedModule pictures = LoadImageModule(context);
        DrawIconInControl(dialog, target, pictures.Get(), FeedDirectionOf(size.width, size.length).icon, kFeedIcon);
        EndPaint(dialog, &paint);
    }
}

INT_PTR AnswerCustomSize(HWND dialog, SheetContext* context, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            OnCustomSizeCommand(dialog, context, LOWORD(wParam), HIWORD(wParam));
            return TRUE;
        case WM_NOTIFY:
            if (reinterpret_cast<const NMHDR*>(lParam)->code != UDN_DELTAPOS) {
                return FALSE;
            }
            Step(dialog, *context, *reinterpret_cast<const NMUPDOWN*>(lParam));
            SetWindowLongPtrW(dialog, DWLP_MSGRESULT, TRUE);  // the spin control stays where it is
            return TRUE;
        case WM_PAINT:
            PaintFeedDirection(dialog, *context);
            return TRUE;
        default:
            return FALSE;
    }
}

BOOL Open(HWND dialog, SheetContext* context) {
    InitCustomSizeDialog(dialog, *context);
    return TRUE;
}

constexpr DialogFunctions kDialog = {kNoSlot, Open, AnswerCustomSize};

INT_PTR CALLBACK CustomSizeProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return RouteDialogMessage(kDialog, dialog, message, wParam, lParam);
}

}  // namespace

bool RunCustomSizeDialog(HWND page, SheetContext* context) {
    return RunDialog(context, kTemplate, page, CustomSizeProc) == kChosen;
}

}  // namespace velmora
