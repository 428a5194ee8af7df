#include "driver/ui/paper_page.h"

#include <algorithm>
#include <iterator>

#include "driver/base/text.h"
#include "driver/devdesc/paper_lookup.h"
#include "driver/ui/color_rules.h"
#include "driver/ui/controls.h"
#include "driver/ui/custom_size.h"
#include "driver/ui/custom_size_dialog.h"
#include "driver/ui/edit_filter.h"
#include "driver/ui/layout_details_dialog.h"
#include "driver/ui/number_control.h"
#include "driver/ui/page.h"
#include "driver/ui/paper_choices.h"
#include "driver/ui/paper_preview.h"
#include "driver/ui/paper_rules.h"
#include "driver/ui/paper_summary.h"
#include "driver/ui/watermark_page.h"
#include "driver/ui/watermark_rules.h"

namespace velmora {
namespace {

// Controls beside those of the rules. Labels, boxes and buttons have the text of the string of their own number.
constexpr int kCopiesSpin = 5018;
constexpr int kZoomSpin = 5023;
constexpr int kZoomLabel = 5024;
constexpr int kDetails = 5034;
constexpr int kTexts[] = {
    5003,
    5005,
    5007,
    5009,
    5011,
    kFlagAControl,
    5015,
    5016,
    kCollateControl,
    kZoomControl,
    kZoomLabel,
    kPortraitControl,
    kLandscapeControl,
    kRotate180Control,
    kDuplexControl,
    kFlagBControl,
    kFlagCControl,
    5032,
    kDetails,
    kPaperDefaultsControl,
};
constexpr UINT kLabelText = 5122;  // for uiLabel

// The controls of the record's members.
struct ListControl {
    int control;
    ChoiceList PaperChoices::*list;
};
constexpr ListControl kLists[] = {
    {kPaperControl, &PaperChoices::paper},   {kFitPaperControl, &PaperChoices::fitPaper},
    {kSourceControl, &PaperChoices::source}, {kMediumControl, &PaperChoices::medium},
    {kLayoutControl, &PaperChoices::layout},
};

struct BoxControl {
    int control;
    CheckBox PaperChoices::*box;
};
constexpr BoxControl kBoxes[] = {
    {kCollateControl, &PaperChoices::collate},     {kZoomControl, &PaperChoices::zoom},
    {kRotate180Control, &PaperChoices::rotate180}, {kDuplexControl, &PaperChoices::duplex},
    {kFlagBControl, &PaperChoices::flagB},         {kFlagCControl, &PaperChoices::flagC},
};

struct NumberEdit {
    NumberControl control;
    NumberField PaperChoices::*field;
    void (*settle)(PaperChoices*);
};
constexpr NumberEdit kNumbers[] = {
    {{kCopiesControl, kCopiesSpin}, &PaperChoices::copies, SettleCopies},
    {{kZoomPercentControl, kZoomSpin}, &PaperChoices::zoomPercent, SettleZoomPercent},
};

constexpr EditFilter kCodeFilter = {kCodeCharacters, 0};
constexpr EditFilter kCopiesFilter = {kDigits, kCopiesSpin};
constexpr EditFilter kZoomFilter = {kDigits, kZoomSpin};

bool IsSameSize(const PageDetails& a, const PageDetails& b) {
    return a.customWidth == b.customWidth && a.customLength == b.customLength && a.customUnit == b.customUnit;
}

void AddCustomSize(HWND dialog, const SheetContext& context) {
    constexpr size_t kWordCapacity = 32;
    WCHAR name[kMessageCapacity];
    WCHAR unit[kWordCapacity];
    WCHAR text[kMessageCapacity];
    LoadText(context, kCustomSizeChoice.stringId, name, ARRAYSIZE(name));
    LoadText(context, CustomSizeUnitText(context.paper.details.customUnit), unit, ARRAYSIZE(unit));
    FormatCustomSizeEntry(context.paper.details, name, unit, context.locale.decimalSeparator, text, ARRAYSIZE(text));
    AddComboItem(dialog, kPaperControl, text, kCustomSizeChoice.value);
}

void ShowList(HWND dialog, const SheetContext& context, const ListControl& row, const PaperChoices* before) {
    const ChoiceList& list = context.paper.*row.list;
    const ChoiceList* const shown = before ? &(before->*row.list) : nullptr;
    const bool isSizeShown = !list.lastChoice || (before && IsSameSize(before->details, context.paper.details));
    if (!shown || shown->source != list.source || shown->lastChoice != list.lastChoice || !isSizeShown) {
        FillChoiceCombo(dialog, row.control, list.source.choices, list.source.filter);
        if (list.lastChoice) {
            AddCustomSize(dialog, context);
        }
    }
    SelectComboByData(dialog, row.control, list.selected);
}

void ShowBox(HWND dialog, int control, const CheckBox& box) {
    CheckControl(dialog, control, box.isChecked);
    ShowControl(dialog, control, box.isShown);
    EnableControl(dialog, control, box.isShown && box.isEnabled);
}

void ShowCode(HWND dialog, const PaperChoices& choices) {
    WCHAR text[sizeof(choices.code)];
    WidenText(text, ARRAYSIZE(text), choices.code, sizeof(choices.code));
    UpdateControlText(dialog, kCodeControl, text);
    EnableControl(dialog, kCodeControl, choices.isCodeEnabled);
}

// Shows the record. Only controls whose part of it differs from `before` are set; null: all.
void ShowChoices(HWND dialog, const SheetContext& context, const PaperChoices* before) {
    const PaperChoices& choices = context.paper;
    for (const ListControl& row : kLists) {
        ShowList(dialog, context, row, before);
    }
    for (const BoxControl& row : kBoxes) {
        if (!before || before->*row.box != choices.*row.box) {
            ShowBox(dialog, row.control, choices.*row.box);
        }
    }
    for (const NumberEdit& row : kNumbers) {
        ShowNumber(dialog, row.control, choices.*row.field);
    }
    if (!before || before->zoom.isShown != choices.zoom.isShown ||
        before->isZoomPercentEnabled != choices.isZoomPercentEnabled) {
        for (const int control : {kZoomPercentControl, kZoomSpin, kZoomLabel}) {
            ShowControl(dialog, control, choices.zoom.isShown);
            EnableControl(dialog, control, choices.zoom.isShown && choices.isZoomPercentEnabled);
        }
    }
    CheckControl(dialog, kFlagAControl, choices.isFlagA);
    ShowCode(dialog, choices);
    CheckRadioButton(dialog, kPortraitControl, kLandscapeControl,
                     choices.isLandscape ? kLandscapeControl : kPortraitControl);
    EnableControl(dialog, kDetails, choices.isDetailsEnabled);
}

// Repaints the pictures that aren't as before.
void RedrawPictures(HWND dialog, const PaperChoices& before, const PaperChoices& now) {
    if (PreviewOf(before, before.details.uiPageOrder) != PreviewOf(now, now.details.uiPageOrder)) {
        InvalidateControl(dialog, kPreviewControl);
    }
    if (before.collate.isChecked != now.collate.isChecked) {
        InvalidateControl(dialog, kCollatePictureControl);
    }
}

// Takes what the controls show into the record.

bool TakeCode(HWND dialog, PaperChoices* choices) {
    char code[sizeof(choices->code)];
    ReadAnsiText(dialog, kCodeControl, code, sizeof(code));
    const bool isOther = !TextsEqual<char>(code, choices->code);
    std::copy(std::begin(code), std::end(code), choices->code);
    return isOther;
}

// False for an edit that shows what the record has already, as it does after the page set it.
bool TakeControl(HWND dialog, int control, PaperChoices* choices) {
    for (const ListControl& row : kLists) {
        if (row.control == control) {
            SelectChoice(&(choices->*row.list), GetComboData(dialog, control));
        }
    }
    for (const BoxControl& row : kBoxes) {
        if (row.control == control) {
            (choices->*row.box).isChecked = IsChecked(dialog, control);
        }
    }
    for (const NumberEdit& row : kNumbers) {
        if (row.control.edit == control) {
            return TakeNumber(dialog, row.control, &(choices->*row.field));
        }
    }
    switch (control) {
        case kFlagAControl:
            choices->isFlagA = IsChecked(dialog, control);
            return true;
        case kPortraitControl:
        case kLandscapeControl:
            choices->isLandscape = control == kLandscapeControl;
            return true;
        case kCodeControl:
            return TakeCode(dialog, choices);
        default:
            return true;
    }
}

// The summary.

// `name` is for the name of a preset.
void ReadColorSettings(const SheetContext& context, WCHAR (&name)[kMessageCapacity], OtherSettings* other) {
    const PrivateDevMode& own = context.devMode->privatePart;
    other->baseColor = own.colorChoiceB;
    other->presetName = name;
    if (const HWND page = context.dialogs[kColorSlot]) {
        other->colorPreset = CheckedRadio(page, kColorModeRadios, 0);
        other->isAdvanced = IsChecked(page, kAdvancedControl);
        GetDlgItemTextW(page, kColorPresetControl, name, ARRAYSIZE(name));
        other->resolutionIndex = static_cast<int>(GetComboData(page, kResolutionControl));
        other->colorRendering = static_cast<int>(GetComboData(page, kRenderingControl));
        other->colorChoiceA = static_cast<int>(GetComboData(page, kChoiceAControl));
    } else {
        other->colorPreset = own.colorPreset;
        other->isAdvanced = own.colorFlagB != 0;
        CopyText(name, std::min(ARRAYSIZE(name), std::size(own.colorPresetName) + 1), own.colorPresetName);
        other->resolutionIndex = own.resolutionIndex;
        other->colorRendering = own.colorRendering;
        other->colorChoiceA = own.colorChoiceA;
    }
}

// `name` is for the watermark's name.
void ReadWatermark(const SheetContext& context, WCHAR (&name)[kMessageCapacity], OtherSettings* other) {
    const PrivateDevMode& own = context.devMode->privatePart;
    const HWND page = context.dialogs[kWatermarkSlot];
    if (page ? !IsChecked(page, kWatermarkSwitch) : own.outputFlag == 0) {
        return;
    }
    other->watermark = name;
    if (page) {
        GetDlgItemTextW(page, kWatermarkName, name, ARRAYSIZE(name));
    } else if (const WatermarkRecord* const record = WatermarkAt(context, static_cast<size_t>(own.outputLevel))) {
        CopyText<WCHAR>(name, ARRAYSIZE(name), record->text);
    }
}

void UpdateSettingsSummary(HWND dialog, const SheetContext& context) {
    WCHAR preset[kMessageCapacity] = {};
    WCHAR watermark[kMessageCapacity] = {};
    OtherSettings other = {};
    ReadColorSettings(context, preset, &other);
    ReadWatermark(context, watermark, &other);
    SummaryRow rows[kMostSummaryRows];
    const size_t count = MakeSummary(context.paper, other, rows);
    size_t row = 0;
    for (int control = kFirstSummaryControl; control <= kLastSummaryControl; control += 3, ++row) {
        WCHAR label[kMessageCapacity] = {};
        WCHAR separator[kMessageCapacity] = {};
        WCHAR value[kMessageCapacity] = {};
        if (row < count) {
            LoadText(context, rows[row].label, label, ARRAYSIZE(label));
            LoadText(context, kSummarySeparator, separator, ARRAYSIZE(separator));
            if (rows[row].value != 0) {
                LoadText(context, rows[row].value, value, ARRAYSIZE(value));
            } else {
                CopyText(value, ARRAYSIZE(value), rows[row].text);
            }
        }
        UpdateControlText(dialog, control, label);
        UpdateControlText(dialog, control + 1, separator);
        UpdateControlText(dialog, control + 2, value);
    }
}

// After every change: other pages look at the device mode for what the page's dialogs edit.
void ShowChange(HWND dialog, SheetContext* context, const PaperChoices& before) {
    WritePageDetails(context->paper, before.details, &context->devMode->privatePart);
    ShowChoices(dialog, *context, &before);
    RedrawPictures(dialog, before, context->paper);
    UpdateSettingsSummary(dialog, *context);
}

BOOL InitPaperPage(HWND dialog, SheetContext* context) {
    SetOwnTexts(dialog, kTexts);
    PaperChoices& choices = context->paper;
    PrivateDevMode& own = context->devMode->privatePart;
    InitPaperChoices(&choices, context->devMode, context->deviceInfo, context->locale.language == LANG_JAPANESE);
    UpdatePaperDependencies(&choices, kOpening);
    WritePageDetails(choices, ReadPageDetails(own), &own);
    for (const NumberEdit& row : kNumbers) {
        InitNumber(dialog, row.control, choices.*row.field);
    }
    SendDlgItemMessageW(dialog, kCodeControl, EM_LIMITTEXT, sizeof(choices.code) - 1, 0);
    FilterEdit(dialog, kCodeControl, &kCodeFilter);
    FilterEdit(dialog, kCopiesControl, &kCopiesFilter);
    FilterEdit(dialog, kZoomPercentControl, &kZoomFilter);
    ShowChoices(dialog, *context, nullptr);
    UpdateSettingsSummary(dialog, *context);
    return TRUE;
}

// Sizes that the user enters go to the device mode at once, as restored ones do.
void StoreEnteredSize(const PageDetails& details, DEVMODEW* devMode) {
    devMode->dmPaperWidth = static_cast<short>(details.customWidth / 10);
    devMode->dmPaperLength = static_cast<short>(details.customLength / 10);
}

// Commands that change settings.
bool TakeCommand(HWND dialog, SheetContext* context, const PaperCommand& command) {
    PaperChoices& choices = context->paper;
    const bool isCustomSize =
        command.control == kPaperControl && GetComboData(dialog, kPaperControl) == kCustomSizePaper;
    const bool isEntered = isCustomSize && RunCustomSizeDialog(dialog, context);
    if (!TakeControl(dialog, command.control, &choices)) {
        return false;
    }
    TakePaperCommand(&choices, command);
    if (isEntered || command.control == kPaperDefaultsControl) {
        StoreEnteredSize(choices.details, &context->devMode->publicPart);
    }
    MarkPageChanged(dialog, context, kPaperSlot);
    return true;
}

// What an edit holds is settled as the user leaves it.
bool SettleEdit(int edit, PaperChoices* choices) {
    for (const NumberEdit& row : kNumbers) {
        if (row.control.edit == edit) {
            row.settle(choices);
            return true;
        }
    }
    return false;
}

void OnPaperCommand(HWND dialog, SheetContext* context, int id, int code) {
    const PaperChoices before = context->paper;
    const PaperCommand* const command = FindPaperCommand(id, code);
    const bool isChange = command                                ? TakeCommand(dialog, context, *command)
                          : id == kDetails && code == BN_CLICKED ? RunLayoutDetailsDialog(dialog, context)
                          : code == EN_KILLFOCUS                 ? SettleEdit(id, &context->paper)
                                                                 : false;
    if (isChange) {
        ShowChange(dialog, context, before);
    }
}

PaperSize LookUpSize(const void* sheet, int paperId) {
    const auto& context = *static_cast<const SheetContext*>(sheet);
    return LookupPaperSize(context.printer, context.model.Get(), paperId);
}

void ApplyPaperPage(HWND dialog, SheetContext* context) {
    WCHAR text[kMessageCapacity];
    LoadText(*context, kLabelText, text, ARRAYSIZE(text));
    const HeapOwner<char> label = Narrow(text);
    const HWND colorPage = context->dialogs[kColorSlot];
    const int resolution = colorPage ? static_cast<int>(GetComboData(colorPage, kResolutionControl))
                                     : context->devMode->privatePart.resolutionIndex;
    const PaperChoices before = context->paper;
    ApplyPaperChoices(&context->paper,
                      {LookUpSize, context, context->model.Get(), resolution, label ? label.Get() : ""},
                      context->devMode);
    ShowChange(dialog, context, before);
    CommitPage(context, kPaperSlot);
}

// Other pages may have changed what this one depends on, and what its summary says.
void ActivatePaperPage(HWND dialog, SheetContext* context) {
    PrivateDevMode& own = context->devMode->privatePart;
    const uint32_t changes = TakeStaleMark(&own);
    if (changes == 0) {
        UpdateSettingsSummary(dialog, *context);
        return;
    }
    const PaperChoices before = context->paper;
    context->paper.details = ReadPageDetails(own);
    UpdatePaperDependencies(&context->paper, changes);
    ShowChange(dialog, context, before);
}

constexpr PageFunctions kPaperPage = {
    kPaperSlot, InitPaperPage, OnPaperCommand, ApplyPaperPage, ActivatePaperPage, PaintPaperPreview, nullptr, nullptr,
};

}  // namespace

void RestorePaperDefaults(HWND page, SheetContext* context) {
    OnPaperCommand(page, context, kPaperDefaultsControl, BN_CLICKED);
}

INT_PTR CALLBACK PaperPageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return RoutePageMessage(kPaperPage, dialog, message, wParam, lParam);
}

}  // namespace velmora
