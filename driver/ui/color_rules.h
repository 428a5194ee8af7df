// What the colour page and its intent dialog decide, apart from their windows. What the page's controls show is a
// ColorPage: read from the device mode when the page opens, from the controls afterwards, and changed by the rule of
// what the user did. After opening and after every command the panels are shown as UpdateColorPanels says.
// User-interface thread only, as the table of presets is.
#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "driver/devdesc/device_model.h"
#include "driver/devmode/private_devmode.h"
#include "driver/settings/color_presets.h"
#include "driver/ui/controls.h"

namespace velmora {

inline constexpr size_t kObjectKinds = 3;  // of objectColor

// Values of colorPreset that the rules tell apart.
enum ColorPageMode : uint16_t {
    kPageModeFirst = 1,
    kPageModeMonochrome = 4,
    kPageModeAdjusted = 5,  // adjusted by the values, or by a preset
    kPageModeMatched = 6,   // matched by the system
};

// Controls that other pages look at, too.
inline constexpr int kColorPresetControl = 6013;
inline constexpr int kResolutionControl = 6028;
inline constexpr int kRenderingControl = 6030;
inline constexpr int kChoiceAControl = 6032;
inline constexpr int kAdvancedControl = 6034;

inline constexpr RadioValue kColorModeRadios[] = {
    {6004, kPageModeFirst},   {6006, 2}, {6008, 3}, {6010, kPageModeMonochrome}, {6012, kPageModeAdjusted},
    {6016, kPageModeMatched}, {6019, 7},
};

// The choices of combo boxes: 6013 (rows before the presets), 6021, 6023 and 6025 (likewise), 6028, 6030, 6032.
inline constexpr ChoiceEntry kPresetChoices[] = {{kAlwaysOffered, 3160, 0}, {}};
inline constexpr ChoiceEntry kTreatmentChoices[] = {
    {kAlwaysOffered, 6156, 1}, {kAlwaysOffered, 6154, 2}, {kAlwaysOffered, 6157, 3}, {}};
inline constexpr ChoiceEntry kResolutionChoices[] = {
    {kAlwaysOffered, 5094, 0}, {kAlwaysOffered, 5095, 1}, {kAlwaysOffered, 5096, 2}, {}};
inline constexpr ChoiceEntry kRenderingChoices[] = {
    {kAlwaysOffered, 5097, 1}, {kAlwaysOffered, 5098, 2}, {kAlwaysOffered, 5099, 3}, {kAlwaysOffered, 5100, 4}, {}};
inline constexpr ChoiceEntry kColorChoicesA[] = {{1, 5102, 2}, {1, 5101, 1}, {2, 5103, 3}, {}};

// The object kinds' treatments in a new device mode.
inline constexpr uint16_t kDefaultTreatments[kObjectKinds] = {1, 3, 2};

// The filter of kColorChoicesA in a mode.
constexpr uint32_t ColorFilterA(uint16_t mode) {
    return mode == kPageModeMonochrome ? 1 : 3;
}

// A list that goes on with the user's presets behind its rows: each record with a name, in the table's order. Refers to
// its parts, which must outlive it.
inline constexpr size_t kChoiceTextCapacity = 128;  // characters
struct PresetList {
    const ChoiceEntry* rows;
    const WCHAR (*texts)[kChoiceTextCapacity];  // of the rows, in the user's language
    const ColorPreset* presets;                 // kColorPresets records
};

inline constexpr uint32_t kUserPreset = 5;  // the value of items that are presets

struct PresetItem {
    const WCHAR* text;
    uint32_t value;
    const ColorPreset* preset;  // null for a row
};

// The item at an index from 0; false where the list has none. A combo box is filled with them all.
bool GetPresetItem(const PresetList& list, int index, PresetItem* item);

// The index to select: of the item with this text, else of the first one with this value, else 0; where none has the
// text and the value is negative, -1.
int FindPresetItem(const PresetList& list, int value, const WCHAR* text);

// A list's selection as a combo box holds it. A preset is told by the text: the table may have changed since the combo
// box was filled.
struct PresetSelection {
    int item;  // -1: nothing is selected
    uint32_t value;
    WCHAR text[kChoiceTextCapacity];
};

// The selection of an item; of nothing, without text, where the list has no such item.
PresetSelection SelectPresetItem(const PresetList& list, int index);

struct ColorLists {
    PresetList presets;     // of kPresetChoices
    PresetList treatments;  // of kTreatmentChoices, for each object kind
};

// What the page's controls hold. The border of pages that share a sheet follows the resolution by the rule that the
// paper page has for that.
struct ColorPage {
    uint16_t mode;                             // the radio buttons
    PresetSelection preset;                    // 6013
    PresetSelection treatments[kObjectKinds];  // 6021, 6023, 6025
    int resolutionItem;                        // 6028, an index; -1: the device mode's resolution isn't offered
    uint16_t rendering;                        // 6030
    uint16_t choiceA;                          // 6032
    bool resolutionFlag;                       // 6033
    bool isAdvanced;                           // 6034
};

ColorPage ReadColorPage(const VelmoraDevMode& devMode, const ColorLists& lists);

// How the controls 6003 to 6025 are shown, numbers among them that the dialog doesn't have.
struct ControlState {
    int control;
    bool isShown;
    bool isEnabled;
};
inline constexpr int kFirstPanelControl = 6003;
inline constexpr int kLastPanelControl = 6025;
using ColorPanels = std::array<ControlState, kLastPanelControl - kFirstPanelControl + 1>;
ColorPanels UpdateColorPanels(const ColorPage& page);

// A mode's radio button; colour matching follows at once. 6032 is to be filled again by the mode's filter.
void ChooseColorMode(uint16_t mode, ColorPage* page, VelmoraDevMode* devMode);

// 6014: the texts that were selected before the preset manager are found again after it, among other presets. A
// treatment that is gone becomes that of a new device mode.
void FindSelectionsAgain(const ColorLists& lists, ColorPage* page);

// 6026 opens a sheet of the adjustment page and the CMYK page where the former is offered, else of the CMYK page alone.
// Before, a selected preset's values go into the device mode; afterwards they are the user's own, no preset's.
bool OffersAdjustmentPage(const ColorPage& page);
void BeginAdjustment(const ColorPage& page, const ColorPreset* presets, PrivateDevMode* devMode);
void EndAdjustment(const ColorLists& lists, ColorPage* page);

// 6035. 6030 and 6032 are to be filled again, with every choice.
void TakeColorDefaults(const ColorLists& lists, ColorPage* page, VelmoraDevMode* devMode);

// Writes the page into the device mode, with the values of the selected presets of the table; CommitPage comes after
// it. The device mode keeps its resolution where the model (null: unknown) hasn't the selected one.
void ApplyColorPage(const ColorPage& page, const ColorPreset* presets, const DeviceModel* model,
                    VelmoraDevMode* devMode);

// The intent dialog: 6405 stores the default intent at once, OK the selected one. The colour page is changed.
inline constexpr RadioValue kIntentRadios[] = {{6402, 1}, {6403, 2}, {6404, 3}};
inline constexpr uint16_t kDefaultIntent = 2;

// The intent to select.
uint16_t ShownIntent(const DEVMODEW& devMode);
void StoreIntent(uint16_t intent, VelmoraDevMode* devMode);

}  // namespace velmora
