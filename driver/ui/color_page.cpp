#include "driver/ui/color_page.h"

#include <commctrl.h>

#include <iterator>

#include "driver/ui/adjustment_sheet.h"
#include "driver/ui/color_rules.h"
#include "driver/ui/controls.h"
#include "driver/ui/intent_dialog.h"
#include "driver/ui/nup_border.h"
#include "driver/ui/page.h"
#include "driver/ui/preset_manager.h"
#include "driver/ui/preset_rules.h"

namespace velmora {
namespace {

// Controls. Labels and buttons have the text of the string of their own number.
constexpr int kManagePresets = 6014;
constexpr int kSetIntent = 6017;
constexpr int kTreatments[kObjectKinds] = {6021, 6023, 6025};
constexpr int kAdjust = 6026;
constexpr int kResolutionFlag = 6033;
constexpr int kRestore = 6035;
constexpr int kTexts[] = {
    6002,
    6004,
    6006,
    6008,
    6010,
    6011,
    6012,
    kManagePresets,
    6016,
    kSetIntent,
    6019,
    6020,
    6022,
    6024,
    kAdjust,
    6027,
    6029,
    6031,
    kResolutionFlag,
    kAdvancedControl,
    kRestore,
};

// The lists' texts, in the language of the sheet.
struct ListTexts {
    WCHAR presets[std::size(kPresetChoices) - 1][kChoiceTextCapacity];
    WCHAR treatments[std::size(kTreatmentChoices) - 1][kChoiceTextCapacity];
};

template <size_t count>
void LoadListTexts(const SheetContext& context, const ChoiceEntry* rows, WCHAR (&texts)[count][kChoiceTextCapacity]) {
    for (size_t i = 0; i < count; ++i) {
        LoadText(context, rows[i].stringId, texts[i], static_cast<int>(kChoiceTextCapacity));
    }
}

// Lists over `texts`, which must outlive them.
ColorLists LoadLists(const SheetContext& context, ListTexts* texts) {
    LoadListTexts(context, kPresetChoices, texts->presets);
    LoadListTexts(context, kTreatmentChoices, texts->treatments);
    const ColorPreset* const presets = ColorPresetTable();
    return {{kPresetChoices, texts->presets, presets}, {kTreatmentChoices, texts->treatments, presets}};
}

void FillPresetCombo(HWND dialog, int control, const PresetList& list) {
    SendDlgItemMessageW(dialog, control, CB_RESETCONTENT, 0, 0);
    PresetItem item;
    for (int i = 0; GetPresetItem(list, i, &item); ++i) {
        AddComboItem(dialog, control, item.text, item.value);
    }
}

void FillPresetCombos(HWND dialog, const ColorLists& lists) {
    FillPresetCombo(dialog, kColorPresetControl, lists.presets);
    for (const int control : kTreatments) {
        FillPresetCombo(dialog, control, lists.treatments);
    }
}

int SelectedItem(HWND dialog, int control) {
    return static_cast<int>(SendDlgItemMessageW(dialog, control, CB_GETCURSEL, 0, 0));
}

void SelectItem(HWND dialog, int control, int item) {
    SendDlgItemMessageW(dialog, control, CB_SETCURSEL, static_cast<WPARAM>(item), 0);
}

PresetSelection ReadSelection(HWND dialog, int control) {
    PresetSelection selection = {SelectedItem(dialog, control), GetComboData(dialog, control), {}};
    GetDlgItemTextW(dialog, control, selection.text, ARRAYSIZE(selection.text));
    return selection;
}

ColorPage ReadControls(HWND dialog) {
    ColorPage page = {};
    page.mode = CheckedRadio(dialog, kColorModeRadios, 0);
    page.preset = ReadSelection(dialog, kColorPresetControl);
    for (size_t kind = 0; kind < kObjectKinds; ++kind) {
        page.treatments[kind] = ReadSelection(dialog, kTreatments[kind]);
    }
    page.resolutionItem = SelectedItem(dialog, kResolutionControl);
    page.rendering = static_cast<uint16_t>(GetComboData(dialog, kRenderingControl));
    page.choiceA = static_cast<uint16_t>(GetComboData(dialog, kChoiceAControl));
    page.resolutionFlag = IsChecked(dialog, kResolutionFlag);
    page.isAdvanced = IsChecked(dialog, kAdvancedControl);
    return page;
}

void ShowPage(HWND dialog, const ColorPage& page) {
    CheckRadio(dialog, kColorModeRadios, page.mode);
    SelectItem(dialog, kColorPresetControl, page.preset.item);
    for (size_t kind = 0; kind < kObjectKinds; ++kind) {
        SelectItem(dialog, kTreatments[kind], page.treatments[kind].item);
    }
    SelectItem(dialog, kResolutionControl, page.resolutionItem);
    SelectComboByData(dialog, kRenderingControl, page.rendering);
    SelectComboByData(dialog, kChoiceAControl, page.choiceA);
    CheckControl(dialog, kResolutionFlag, page.resolutionFlag);
    CheckControl(dialog, kAdvancedControl, page.isAdvanced);
}

void ShowPanels(HWND dialog) {
    for (const ControlState& state : UpdateColorPanels(ReadControls(dialog))) {
        if (const HWND window = GetDlgItem(dialog, state.control)) {
            ShowWindow(window, state.isShown ? SW_SHOW : SW_HIDE);
        }
        EnableControl(dialog, state.control, state.isEnabled);
    }
}

BOOL InitColorPage(HWND dialog, SheetContext* context) {
    SetOwnTexts(dialog, kTexts);
    RefreshColorPresets();
    ListTexts texts;
    const ColorLists lists = LoadLists(*context, &texts);
    const ColorPage page = ReadColorPage(*context->devMode, lists);
    FillPresetCombos(dialog, lists);
    FillChoiceCombo(dialog, kResolutionControl, kResolutionChoices, kEveryChoice);
    FillChoiceCombo(dialog, kRenderingControl, kRenderingChoices, kEveryChoice);
    FillChoiceCombo(dialog, kChoiceAControl, kColorChoicesA, ColorFilterA(page.mode));
    ShowPage(dialog, page);
    ShowPanels(dialog);
    return TRUE;
}

void OnMode(HWND dialog, SheetContext* context) {
    ColorPage page = ReadControls(dialog);
    ChooseColorMode(page.mode, &page, context->devMode);
    FillChoiceCombo(dialog, kChoiceAControl, kColorChoicesA, ColorFilterA(page.mode));
    SelectComboByData(dialog, kChoiceAControl, page.choiceA);
    MarkColorPageChanged(context);
}

void OnManagePresets(HWND dialog, SheetContext* context) {
    ColorPage page = ReadControls(dialog);
    RunPresetManager(dialog, context);
    ListTexts texts;
    const ColorLists lists = LoadLists(*context, &texts);
    FindSelectionsAgain(lists, &page);
    FillPresetCombos(dialog, lists);
    ShowPage(dialog, page);
}

void OnAdjust(HWND dialog, SheetContext* context) {
    ColorPage page = ReadControls(dialog);
    BeginAdjustment(page, ColorPresetTable(), &context->devMode->privatePart);
    RunAdjustmentSheet(dialog, context, OffersAdjustmentPage(page));
    ListTexts texts;
    EndAdjustment(LoadLists(*context, &texts), &page);
    ShowPage(dialog, page);
}

void OnRestore(HWND dialog, SheetContext* context) {
    ListTexts texts;
    ColorPage page;
    TakeColorDefaults(LoadLists(*context, &texts), &page, context->devMode);
    FillChoiceCombo(dialog, kRenderingControl, kRenderingChoices, kEveryChoice);
    FillChoiceCombo(dialog, kChoiceAControl, kColorChoicesA, kEveryChoice);
    ShowPage(dialog, page);
    MarkColorPageChanged(context);
}

void OnClick(HWND dialog, SheetContext* context, int id) {
    for (const RadioValue& radio : kColorModeRadios) {
        if (radio.control == id) {
            OnMode(dialog, context);
            return;
        }
    }
    switch (id) {
        case kManagePresets:
            OnManagePresets(dialog, context);
            break;
        case kSetIntent:
            RunIntentDialog(dialog, context);
            break;
        case kAdjust:
            OnAdjust(dialog, context);
            break;
        case kRestore:
            OnRestore(dialog, context);
            break;
        case kResolutionFlag:
        case kAdvancedControl:
            MarkColorPageChanged(context);
            break;
        default:
            break;
    }
}

void OnSelection(HWND dialog, SheetContext* context, int id) {
    switch (id) {
        case kResolutionControl:
            ApplyBorderRule(&context->devMode->privatePart, SelectedItem(dialog, kResolutionControl));
            MarkColorPageChanged(context);
            break;
        case kColorPresetControl:
        case kRenderingControl:
        case kChoiceAControl:
            MarkColorPageChanged(context);
            break;
        default:
            for (const int control : kTreatments) {
                if (id == control && IsChecked(dialog, kAdvancedControl)) {
                    MarkColorPageChanged(context);
                }
            }
            break;
    }
}

void OnColorCommand(HWND dialog, SheetContext* context, int id, int code) {
    if (code == BN_CLICKED) {
        OnClick(dialog, context, id);
    } else if (code == CBN_SELCHANGE) {
        OnSelection(dialog, context, id);
    }
    ShowPanels(dialog);
}

void ApplyPage(HWND dialog, SheetContext* context) {
    ApplyColorPage(ReadControls(dialog), ColorPresetTable(), context->model.Get(), context->devMode);
    CommitPage(context, kColorSlot);
}

constexpr PageFunctions kColorPage = {
    kColorSlot, InitColorPage, OnColorCommand, ApplyPage, nullptr, nullptr, nullptr, nullptr,
};

}  // namespace

void RestoreColorDefaults(HWND page, SheetContext* context) {
    OnColorCommand(page, context, kRestore, BN_CLICKED);
}

INT_PTR CALLBACK ColorPageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    InitCommonControls();
    return RoutePageMessage(kColorPage, dialog, message, wParam, lParam);
}

}  // namespace velmora
