#include "driver/ui/color_rules.h"

#include <algorithm>
#include <iterator>

#include "driver/base/text.h"
#include "driver/devdesc/model_tables.h"
#include "driver/ui/color_values.h"
#include "driver/ui/preset_rules.h"

namespace velmora {
namespace {

constexpr int kDefaultResolutionItem = 1;
constexpr uint16_t kDefaultRendering = 1;
constexpr uint16_t kDefaultChoiceA = 1;
constexpr uint16_t kChoiceAOfColors = 3;  // not offered in monochrome

constexpr int kLastSimpleControl = 6019;  // the advanced panel follows
constexpr int kManagePresets = 6014;
constexpr int kSetIntent = 6017;

int ItemWithText(const PresetList& list, const WCHAR* text) {
    PresetItem item;
    for (int i = 0; GetPresetItem(list, i, &item); ++i) {
        if (TextsEqual(item.text, text)) {
            return i;
        }
    }
    return -1;
}

int ItemWithValue(const PresetList& list, uint32_t value) {
    PresetItem item;
    for (int i = 0; GetPresetItem(list, i, &item); ++i) {
        if (item.value == value) {
            return i;
        }
    }
    return 0;
}

// As FindPresetItem for a field of the device mode, which may lack its terminator.
template <size_t length>
PresetSelection FindStored(const PresetList& list, int value, const WCHAR (&field)[length]) {
    WCHAR text[length + 1];
    CopyText<WCHAR>(text, ARRAYSIZE(text), field);
    return SelectPresetItem(list, FindPresetItem(list, value, text));
}

// The selected preset of the user's; null where a row is selected or the table has it no longer.
const ColorPreset* PresetOf(const PresetSelection& selection, const ColorPreset* presets) {
    if (selection.value == kUserPreset) {
        for (int i = 0; const ColorPreset* const preset = NamedPreset(presets, i); ++i) {
            if (TextsEqual(preset->name, selection.text)) {
                return preset;
            }
        }
    }
    return nullptr;
}

// The choice of a list that stands for a value: the first one where none has it.
uint16_t OfferedValue(const ChoiceEntry* choices, uint16_t value) {
    for (const ChoiceEntry* choice = choices; choice->stringId != 0; ++choice) {
        if (choice->value == value) {
            return value;
        }
    }
    return static_cast<uint16_t>(choices->value);
}

uint16_t ChoiceAInMode(uint16_t mode, uint16_t choice) {
    return mode == kPageModeMonochrome && choice == kChoiceAOfColors ? kDefaultChoiceA : choice;
}

void StoreColor(WORD color, VelmoraDevMode* devMode) {
    devMode->publicPart.dmColor = static_cast<short>(color);
    devMode->privatePart.colorMode = 1;
}

void ApplyMode(const ColorPage& page, const ColorPreset* presets, VelmoraDevMode* devMode) {
    PrivateDevMode& own = devMode->privatePart;
    const auto hasValue = [&](const RadioValue& radio) { return radio.value == page.mode; };
    if (std::any_of(std::begin(kColorModeRadios), std::end(kColorModeRadios), hasValue)) {
        const bool isMonochrome = page.mode == kPageModeMonochrome;
        own.colorPreset = page.mode;
        own.colorAuto = isMonochrome ? 0 : 1;
        StoreColor(isMonochrome ? DMCOLOR_MONOCHROME : DMCOLOR_COLOR, devMode);
    }
    std::fill(std::begin(own.colorPresetName), std::end(own.colorPresetName), WCHAR{0});
    if (page.mode == kPageModeAdjusted) {
        if (const ColorPreset* const preset = PresetOf(page.preset, presets)) {
            WriteAdjustment(*preset, kWholeAdjustment, &own);
        }
        CopyText<WCHAR>(own.colorPresetName, ARRAYSIZE(own.colorPresetName), page.preset.text);
    }
}

void ApplyResolution(int item, const DeviceModel* model, VelmoraDevMode* devMode) {
    const ResolutionRecord* const resolution =
        model && item >= 0 ? RecordAt(model->resolutionTable, static_cast<size_t>(item)) : nullptr;
    if (!resolution) {
        return;
    }
    devMode->privatePart.resolutionIndex = static_cast<int16_t>(item);
    devMode->privatePart.resolutionId = resolution->resolutionId;
    devMode->publicPart.dmPrintQuality = static_cast<int16_t>(resolution->xDpi);
    devMode->publicPart.dmYResolution = static_cast<int16_t>(resolution->yDpi);
}

void ApplyTreatment(const PresetSelection& selection, const ColorPreset* presets, ObjectColor* object) {
    object->mode = static_cast<uint16_t>(selection.value);
    object->flag = 1;
    std::fill(std::begin(object->values), std::end(object->values), uint16_t{0});
    if (const ColorPreset* const preset = PresetOf(selection, presets)) {
        WriteObjectValues(*preset, object);
    }
}

}  // namespace

bool GetPresetItem(const PresetList& list, int index, PresetItem* item) {
    if (index < 0) {
        return false;
    }
    int row = 0;
    for (; list.rows[row].stringId != 0; ++row) {
        if (row == index) {
            *item = {list.texts[row], list.rows[row].value, nullptr};
            return true;
        }
    }
    const ColorPreset* const preset = NamedPreset(list.presets, index - row);
    if (!preset) {
        return false;
    }
    *item = {preset->name, kUserPreset, preset};
    return true;
}

int FindPresetItem(const PresetList& list, int value, const WCHAR* text) {
    const int item = ItemWithText(list, text);
    return item >= 0 || value < 0 ? item : ItemWithValue(list, static_cast<uint32_t>(value));
}

PresetSelection SelectPresetItem(const PresetList& list, int index) {
    PresetSelection selection = {-1, 0, {}};
    PresetItem item;
    if (GetPresetItem(list, index, &item)) {
        selection.item = index;
        selection.value = item.value;
        CopyText<WCHAR>(selection.text, ARRAYSIZE(selection.text), item.text);
    }
    return selection;
}

ColorPage ReadColorPage(const VelmoraDevMode& devMode, const ColorLists& lists) {
    const PrivateDevMode& own = devMode.privatePart;
    ColorPage page = {};
    page.mode = own.colorPreset;
    page.preset = FindStored(lists.presets, 0, own.colorPresetName);
    for (size_t kind = 0; kind < kObjectKinds; ++kind) {
        page.treatments[kind] = FindStored(lists.treatments, own.objectColor[kind].mode, own.objectPresetNames[kind]);
    }
    const int resolutions = static_cast<int>(std::size(kResolutionChoices)) - 1;
    page.resolutionItem = own.resolutionIndex >= 0 && own.resolutionIndex < resolutions ? own.resolutionIndex : -1;
    page.rendering = OfferedValue(kRenderingChoices, own.colorRendering);
    page.choiceA = ChoiceAInMode(page.mode, OfferedValue(kColorChoicesA, own.colorChoiceA));
    page.resolutionFlag = own.resolutionFlag != 0;
    page.isAdvanced = own.colorFlagB != 0;
    return page;
}

ColorPanels UpdateColorPanels(const ColorPage& page) {
    ColorPanels panels;
    for (size_t i = 0; i < panels.size(); ++i) {
        const int control = kFirstPanelControl + static_cast<int>(i);
        const bool isShown = (control > kLastSimpleControl) == page.isAdvanced;
        bool isEnabled = isShown;
        switch (control) {
            case kColorPresetControl:
                isEnabled = isShown && page.mode == kPageModeAdjusted;
                break;
            case kManagePresets:
                isEnabled = isShown && page.mode == kPageModeAdjusted && page.preset.item == 0;
                break;
            case kSetIntent:
                isEnabled = isShown && page.mode == kPageModeMatched;
                break;
            default:
                break;
        }
        panels[i] = {control, isShown, isEnabled};
    }
    return panels;
}

void ChooseColorMode(uint16_t mode, ColorPage* page, VelmoraDevMode* devMode) {
    page->mode = mode;
    page->choiceA = ChoiceAInMode(mode, page->choiceA);
    devMode->publicPart.dmICMMethod = mode == kPageModeMatched ? DMICMMETHOD_SYSTEM : DMICMMETHOD_NONE;
}

void FindSelectionsAgain(const ColorLists& lists, ColorPage* page) {
    page->preset = SelectPresetItem(lists.presets, FindPresetItem(lists.presets, 0, page->preset.text));
    for (size_t kind = 0; kind < kObjectKinds; ++kind) {
        PresetSelection& treatment = page->treatments[kind];
        treatment = SelectPresetItem(lists.treatments,
                                     FindPresetItem(lists.treatments, kDefaultTreatments[kind], treatment.text));
    }
}

bool OffersAdjustmentPage(const ColorPage& page) {
    return page.mode == kPageModeAdjusted && !page.isAdvanced;
}

void BeginAdjustment(const ColorPage& page, const ColorPreset* presets, PrivateDevMode* devMode) {
    const ColorPreset* const preset = PresetOf(page.preset, presets);
    if (preset && OffersAdjustmentPage(page)) {
        WriteAdjustment(*preset, kWholeAdjustment, devMode);
    }
}

void EndAdjustment(const ColorLists& lists, ColorPage* page) {
    if (OffersAdjustmentPage(*page)) {
        page->preset = SelectPresetItem(lists.presets, 0);
    }
}

void TakeColorDefaults(const ColorLists& lists, ColorPage* page, VelmoraDevMode* devMode) {
    PrivateDevMode& own = devMode->privatePart;
    *page = {};
    ChooseColorMode(kPageModeFirst, page, devMode);
    page->preset = SelectPresetItem(lists.presets, 0);
    CopyText<WCHAR>(own.colorPresetName, ARRAYSIZE(own.colorPresetName), page->preset.text);
    for (size_t kind = 0; kind < kObjectKinds; ++kind) {
        page->treatments[kind] =
            SelectPresetItem(lists.treatments, ItemWithValue(lists.treatments, kDefaultTreatments[kind]));
    }
    page->resolutionItem = kDefaultResolutionItem;
    page->rendering = kDefaultRendering;
    page->choiceA = kDefaultChoiceA;
}

void ApplyColorPage(const ColorPage& page, const ColorPreset* presets, const DeviceModel* model,
                    VelmoraDevMode* devMode) {
    PrivateDevMode& own = devMode->privatePart;
    ApplyMode(page, presets, devMode);
    ApplyResolution(page.resolutionItem, model, devMode);
    own.colorRendering = page.rendering;
    own.colorChoiceA = page.choiceA;
    own.resolutionFlag = page.resolutionFlag ? 1 : 0;
    own.colorFlagB = page.isAdvanced ? 1 : 0;
    if (page.isAdvanced) {
        StoreColor(DMCOLOR_COLOR, devMode);
    }
    for (size_t kind = 0; kind < kObjectKinds; ++kind) {
        const PresetSelection& treatment = page.treatments[kind];
        if (treatment.item >= 0) {
            ApplyTreatment(treatment, presets, &own.objectColor[kind]);
            CopyText<WCHAR>(own.objectPresetNames[kind], ARRAYSIZE(own.objectPresetNames[kind]), treatment.text);
        }
    }
}

uint16_t ShownIntent(const DEVMODEW& devMode) {
    for (const RadioValue& radio : kIntentRadios) {
        if (radio.value == devMode.dmICMIntent) {
            return radio.value;
        }
    }
    return kDefaultIntent;
}

void StoreIntent(uint16_t intent, VelmoraDevMode* devMode) {
    devMode->publicPart.dmICMIntent = intent;
    devMode->publicPart.dmICMMethod = DMICMMETHOD_SYSTEM;
    devMode->privatePart.colorPreset = kPageModeMatched;
    StoreColor(DMCOLOR_COLOR, devMode);
}

}  // namespace velmora
