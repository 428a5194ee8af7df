#include "driver/ui/watermark_page.h"

#include <commctrl.h>

#include "driver/base/format.h"
#include "driver/base/text.h"
#include "driver/ui/controls.h"
#include "driver/ui/edit_filter.h"
#include "driver/ui/number_control.h"
#include "driver/ui/page.h"
#include "driver/ui/page_preview.h"
#include "driver/ui/watermark_maker.h"
#include "driver/ui/watermark_rules.h"

namespace velmora {
namespace {

// Controls beside those of the rules. Labels, boxes and buttons have the text of the string of their own number.
constexpr int kNameLabel = 7004;
constexpr int kAdd = 7006;
constexpr int kChange = 7007;
constexpr int kDelete = 7008;
constexpr int kFaceLabel = 7009;  // the first of the controls that the watermark is described by
constexpr int kFace = 7010;
constexpr int kStyle = 7012;
constexpr NumberControl kSize = {7014, 7015};
constexpr int kFamily = 7017;
constexpr int kPosition = 7019;
constexpr int kShade = 7023;
constexpr int kAngle = 7025;
constexpr int kAngleSlider = 7026;  // the last of them
constexpr int kPreview = 7029;
constexpr int kRestore = 7030;
constexpr int kReady = 3107;
constexpr int kTexts[] = {
    kWatermarkSwitch,
    kNameLabel,
    kAdd,
    kChange,
    kDelete,
    kFaceLabel,
    7011,
    7013,
    7016,
    7018,
    7020,
    7021,
    7022,
    7024,
    7027,
    kRestore,
};
constexpr UINT kNoneText = 3048;

constexpr EditFilter kSizeFilter = {kDigits, kSize.spin};
constexpr int kAngleDigits = 3;

struct SliderRange {
    int slider;
    int highest;  // from 0 on
    int line;
    int page;
    int ticks;  // from one to the next
};
constexpr SliderRange kSliders[] = {
    {kShade, kLastShade, 1, 3, 1},
    {kAngleSlider, kMostDegrees, 5, 30, 10},
};

void MoveSlider(HWND dialog, int slider, int position) {
    SendDlgItemMessageW(dialog, slider, TBM_SETPOS, TRUE, position);
}

// The edit within the name's combo box, whose reading order is the watermark's.
HWND NameEdit(HWND dialog) {
    const HWND combo = GetDlgItem(dialog, kWatermarkName);
    return combo ? GetWindow(combo, GW_CHILD) : nullptr;
}

bool ReadsNameFromRight(HWND dialog) {
    const HWND edit = NameEdit(dialog);
    return edit && (GetWindowLongPtrW(edit, GWL_EXSTYLE) & WS_EX_RTLREADING) != 0;
}

// The edit tells nobody of a change.
void TakeReadingOrder(HWND dialog, SheetContext* context) {
    context->watermarkEdit.choices.isRightToLeft = ReadsNameFromRight(dialog);
}

void ShowReadingOrder(HWND dialog, bool isRightToLeft) {
    if (ReadsNameFromRight(dialog) != isRightToLeft) {
        const HWND edit = NameEdit(dialog);
        SetWindowLongPtrW(edit, GWL_EXSTYLE, GetWindowLongPtrW(edit, GWL_EXSTYLE) ^ WS_EX_RTLREADING);
        InvalidateRect(edit, nullptr, TRUE);
    }
}

void FillFaces(HWND dialog, const FontList& fonts) {
    const WCHAR* face = fonts.faces.Get();
    for (size_t i = 0; i < fonts.count; ++i, face += TextLength(face) + 1) {
        if (fonts.types.Get()[i] == kTrueTypeFont) {
            AddComboItem(dialog, kFace, face, static_cast<uint32_t>(i));
        }
    }
}

// Fills the list of names and selects the current one. An empty list may tell of its empty text in between.
void ShowNames(HWND dialog, SheetContext* context) {
    WatermarkEdit& edit = context->watermarkEdit;
    edit.isFillingNames = true;
    SendDlgItemMessageW(dialog, kWatermarkName, CB_RESETCONTENT, 0, 0);
    for (size_t i = 0; i < context->watermarks.count; ++i) {
        if (const WatermarkRecord* const record = WatermarkAt(*context, i)) {
            AddComboItem(dialog, kWatermarkName, record->text, static_cast<uint32_t>(i));
        }
    }
    SelectComboByData(dialog, kWatermarkName, static_cast<uint32_t>(edit.current));
    edit.isFillingNames = false;
}

void AddReadyItem(HWND dialog, const WCHAR* text, int value) {
    const LRESULT item = SendDlgItemMessageW(dialog, kReady, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
    if (item >= 0) {
        SendDlgItemMessageW(dialog, kReady, LB_SETITEMDATA, static_cast<WPARAM>(item), value);
    }
}

// The watermarks that are rendered, with that of the device mode selected.
void ShowReady(HWND dialog, const SheetContext& context) {
    WCHAR none[kMessageCapacity];
    LoadText(context, kNoneText, none, ARRAYSIZE(none));
    SendDlgItemMessageW(dialog, kReady, LB_RESETCONTENT, 0, 0);
    AddReadyItem(dialog, none, kNoneReady);
    for (size_t i = 0; i < context.watermarks.count; ++i) {
        if (IsReady(context, i)) {
            AddReadyItem(dialog, WatermarkAt(context, i)->text, static_cast<int>(i));
        }
    }
    SelectListByData(dialog, kReady, static_cast<uint32_t>(SelectedReady(context)));
}

void ShowFace(HWND dialog, const SheetContext& context) {
    const WCHAR* const face = context.watermarkEdit.choices.face;
    if (face[0] != 0) {
        SelectComboByData(dialog, kFace, static_cast<uint32_t>(FindFont(context.fonts, face)));
    } else {
        SendDlgItemMessageW(dialog, kFace, CB_SETCURSEL, static_cast<WPARAM>(-1), 0);
    }
}

void ShowAngle(HWND dialog, int angle) {
    WCHAR text[16];
    FormatWide(text, ARRAYSIZE(text), TEXT("%d"), angle);
    UpdateControlText(dialog, kAngle, text);
    MoveSlider(dialog, kAngleSlider, angle);
}

// Shows the watermark that is selected, apart from its name.
void LoadWatermarkControls(HWND dialog, const SheetContext& context) {
    const WatermarkChoices& choices = context.watermarkEdit.choices;
    ShowReadingOrder(dialog, choices.isRightToLeft);
    ShowFace(dialog, context);
    SelectComboByData(dialog, kStyle, choices.style);
    ShowNumber(dialog, kSize, choices.size);
    SelectComboByData(dialog, kFamily, static_cast<uint32_t>(choices.shade.family));
    MoveSlider(dialog, kShade, choices.shade.shade);
    SelectComboByData(dialog, kPosition, choices.position);
    ShowAngle(dialog, choices.angle);
}

void EnableControls(HWND dialog, const WatermarkEdit& edit) {
    EnableControl(dialog, kNameLabel, edit.choices.isOn);
    EnableControl(dialog, kWatermarkName, edit.choices.isOn);
    EnableControl(dialog, kAdd, edit.buttons.canAdd);
    EnableControl(dialog, kChange, edit.buttons.canChange);
    EnableControl(dialog, kDelete, edit.buttons.canDelete);
    for (int control = kFaceLabel; control <= kAngleSlider; ++control) {
        EnableControl(dialog, control, edit.choices.isOn);
    }
}

void CheckWatermarkChanged(HWND dialog, SheetContext* context) {
    if (!context->isChanged[kWatermarkSlot] && IsWatermarkChanged(*context)) {
        MarkPageChanged(dialog, context, kWatermarkSlot);
    }
}

BOOL InitWatermarkPage(HWND dialog, SheetContext* context) {
    SetOwnTexts(dialog, kTexts);
    OpenWatermarks(context);
    const WatermarkEdit& edit = context->watermarkEdit;
    CheckControl(dialog, kWatermarkSwitch, edit.choices.isOn);
    SendDlgItemMessageW(dialog, kWatermarkName, CB_LIMITTEXT, kNameLimit, 0);
    ShowNames(dialog, context);
    FillFaces(dialog, context->fonts);
    FillChoiceCombo(dialog, kStyle, kStyleChoices, kEveryChoice);
    FillChoiceCombo(dialog, kFamily, kFamilyChoices, kEveryChoice);
    FillChoiceCombo(dialog, kPosition, kPositionChoices, kEveryChoice);
    for (const SliderRange& range : kSliders) {
        SendDlgItemMessageW(dialog, range.slider, TBM_SETRANGE, TRUE, MAKELPARAM(0, range.highest));
        SendDlgItemMessageW(dialog, range.slider, TBM_SETLINESIZE, 0, range.line);
        SendDlgItemMessageW(dialog, range.slider, TBM_SETPAGESIZE, 0, range.page);
        SendDlgItemMessageW(dialog, range.slider, TBM_SETTICFREQ, static_cast<WPARAM>(range.ticks), 0);
    }
    FilterEdit(dialog, kSize.edit, &kSizeFilter);
    InitNumber(dialog, kSize, edit.choices.size);
    SendDlgItemMessageW(dialog, kAngle, EM_LIMITTEXT, kAngleDigits, 0);
    LoadWatermarkControls(dialog, *context);
    EnableControls(dialog, edit);
    ShowReady(dialog, *context);
    SetFocus(GetDlgItem(dialog, kReady));
    return FALSE;
}

// What the user typed as the angle, where it is a number. False where that is what the slider shows.
bool TakeAngle(HWND dialog, SheetContext* context) {
    const WatermarkChoices& choices = context->watermarkEdit.choices;
    const int before = choices.angle;
    WCHAR text[kAngleDigits + 1] = {};
    int angle = 0;
    GetDlgItemTextW(dialog, kAngle, text, ARRAYSIZE(text));
    if (!ReadNumber(text, &angle)) {
        return false;
    }
    TurnWatermark(context, angle, false);
    if (choices.angle == before) {
        return false;
    }
    MoveSlider(dialog, kAngleSlider, choices.angle);
    return true;
}

// Text in an edit, which may be the page's own.
bool TakeText(HWND dialog, SheetContext* context, int id) {
    WatermarkChoices& choices = context->watermarkEdit.choices;
    if (id == kAngle) {
        return TakeAngle(dialog, context);
    }
    if (id == kSize.edit && TakeNumber(dialog, kSize, &choices.size)) {
        EditWatermark(context);
        return true;
    }
    return false;
}

// An edit is left: it shows the number that it stands for.
bool SettleText(HWND dialog, SheetContext* context, int id) {
    WatermarkChoices& choices = context->watermarkEdit.choices;
    if (id == kSize.edit) {
        SettleNumber(&choices.size, kFewestPoints, kMostPoints);
        ShowNumber(dialog, kSize, choices.size);
    } else if (id == kAngle) {
        ShowAngle(dialog, choices.angle);
    } else {
        return false;
    }
    return true;
}

void TakeFace(HWND dialog, WatermarkChoices* choices) {
    const LRESULT item = SendDlgItemMessageW(dialog, kFace, CB_GETCURSEL, 0, 0);
    if (item >= 0 && SendDlgItemMessageW(dialog, kFace, CB_GETLBTEXTLEN, static_cast<WPARAM>(item), 0) <
                         static_cast<LRESULT>(ARRAYSIZE(choices->face))) {
        SendDlgItemMessageW(dialog, kFace, CB_GETLBTEXT, static_cast<WPARAM>(item),
                            reinterpret_cast<LPARAM>(choices->face));
    }
}

// Combo boxes may tell that nothing is selected any more; the choice stays then.
bool TakeSelection(HWND dialog, SheetContext* context, int id) {
    WatermarkChoices& choices = context->watermarkEdit.choices;
    const uint32_t selected = GetComboData(dialog, id);
    if (selected == UINT32_MAX) {
        return false;
    }
    switch (id) {
        case kWatermarkName:
            SelectWatermark(context, selected);
            LoadWatermarkControls(dialog, *context);
            return true;
        case kFamily:
            ChooseWatermarkColor(context, static_cast<int>(selected), choices.shade.shade);
            return true;
        case kFace:
            TakeFace(dialog, &choices);
            break;
        case kStyle:
            choices.style = selected;
            break;
        case kPosition:
            choices.position = selected;
            break;
        default:
            return false;
    }
    EditWatermark(context);
    return true;
}

bool TakeClick(HWND dialog, SheetContext* context, int id) {
    switch (id) {
        case kWatermarkSwitch:
            SwitchWatermark(context, IsChecked(dialog, kWatermarkSwitch));
            return true;
        case kAdd:
            TakeReadingOrder(dialog, context);
            AddWatermark(context);
            break;
        case kChange:
            TakeReadingOrder(dialog, context);
            ChangeWatermark(context);
            break;
        case kDelete:
            DeleteWatermark(context);
            break;
        case kRestore:
            RestoreWatermarks(context);
            CheckControl(dialog, kWatermarkSwitch, context->watermarkEdit.choices.isOn);
            break;
        default:
            return false;
    }
    ShowNames(dialog, context);
    LoadWatermarkControls(dialog, *context);
    return true;
}

bool TakeName(HWND dialog, SheetContext* context) {
    if (context->watermarkEdit.isFillingNames) {
        return false;
    }
    WCHAR name[ARRAYSIZE(WatermarkChoices::name)] = {};
    GetDlgItemTextW(dialog, kWatermarkName, name, ARRAYSIZE(name));
    EditWatermarkName(context, name);
    return true;
}

bool TakeCommand(HWND dialog, SheetContext* context, int id, int code) {
    // Codes mean different things from one kind of control to the next.
    switch (id) {
        case kSize.edit:
        case kAngle:
            return code == EN_CHANGE      ? TakeText(dialog, context, id)
                   : code == EN_KILLFOCUS ? SettleText(dialog, context, id)
                                          : false;
        case kWatermarkName:
        case kFace:
        case kStyle:
        case kFamily:
        case kPosition:
            return code == CBN_SELCHANGE                            ? TakeSelection(dialog, context, id)
                   : code == CBN_EDITCHANGE && id == kWatermarkName ? TakeName(dialog, context)
                                                                    : false;
        default:
            return code == BN_CLICKED && TakeClick(dialog, context, id);
    }
}

// After every change.
void ShowChange(HWND dialog, SheetContext* context) {
    EnableControls(dialog, context->watermarkEdit);
    InvalidateControl(dialog, kPreview);
    CheckWatermarkChanged(dialog, context);
}

void OnWatermarkCommand(HWND dialog, SheetContext* context, int id, int code) {
    if (TakeCommand(dialog, context, id, code)) {
        ShowChange(dialog, context);
    }
}

void OnWatermarkScroll(HWND dialog, SheetContext* context, UINT message, int code, int position, HWND slider) {
    if (message != WM_HSCROLL || !slider) {
        return;
    }
    WatermarkChoices& choices = context->watermarkEdit.choices;
    const bool isThumb = code == TB_THUMBTRACK || code == TB_THUMBPOSITION;
    if (!isThumb) {
        position = static_cast<int>(SendMessageW(slider, TBM_GETPOS, 0, 0));
    }
    switch (GetDlgCtrlID(slider)) {
        case kShade:
            ChooseWatermarkColor(context, choices.shade.family, position);
            break;
        case kAngleSlider:
            TurnWatermark(context, position, isThumb);
            ShowAngle(dialog, choices.angle);
            break;
        default:
            return;
    }
    ShowChange(dialog, context);
}

void ApplyWatermarkPage(HWND dialog, SheetContext* context) {
    TakeReadingOrder(dialog, context);
    ApplyWatermarks(context, MakeWatermarkFile);
    if (context->watermarkEdit.choices.isOn) {
        ShowNames(dialog, context);
    }
    EnableControls(dialog, context->watermarkEdit);
    ShowReady(dialog, *context);
    CommitPage(context, kWatermarkSlot);
}

void PaintWatermarkPage(HWND dialog, SheetContext* context, HDC target) {
    if (context->watermarkEdit.choices.isOn) {
        WatermarkRecord shown = ShownWatermark(*context);
        shown.style.rightToLeft = ReadsNameFromRight(dialog) ? 1 : 0;
        PaintPagePreview(dialog, context, target, MakePreviewRequest(*context, shown));
    }
}

constexpr PageFunctions kWatermarkPage = {
    kWatermarkSlot, InitWatermarkPage,  OnWatermarkCommand, ApplyWatermarkPage,
    nullptr,        PaintWatermarkPage, OnWatermarkScroll,  nullptr,
};

}  // namespace

void RestoreBuiltinWatermarks(HWND dialog, SheetContext* context) {
    OnWatermarkCommand(dialog, context, kRestore, BN_CLICKED);
}

INT_PTR CALLBACK WatermarkPageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return RoutePageMessage(kWatermarkPage, dialog, message, wParam, lParam);
}

}  // namespace velmora
