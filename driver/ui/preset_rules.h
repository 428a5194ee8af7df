// What the preset manager decides, apart from its window: over a table of kColorPresets presets, the process's. The
// window shows the record after each call and lets the file follow: SaveColorPreset with the name after a save,
// DeleteColorPreset with it before a deletion.
#pragma once

#include <windows.h>

#include <cstddef>

#include "driver/devmode/private_devmode.h"
#include "driver/settings/color_presets.h"

namespace velmora {

// Characters of a preset's name, and bytes of it in the ANSI code page, at most.
inline constexpr size_t kPresetNameLength = 10;

// Loads the process's table anew as the colour page opens: what another printer's file left in it goes.
void RefreshColorPresets();

// The preset at an item of the list of names, from 0, in the order of the table; null where there is none.
const ColorPreset* NamedPreset(const ColorPreset* presets, int item);

struct PresetManager {
    int selected;                                           // item of the list of names, -1 none
    WCHAR name[sizeof(ColorPreset::name) / sizeof(WCHAR)];  // what is typed
    bool canSave;                                           // button 6307
    bool canChange;                                         // buttons 6308 and 6309
};

PresetManager OpenPresetManager(const ColorPreset* presets);

void TypePresetName(const ColorPreset* presets, const WCHAR* name, PresetManager* manager);
void SelectPreset(const ColorPreset* presets, int item, PresetManager* manager);

// A double click in the list: takes the selected preset's name.
void TakePresetName(const ColorPreset* presets, PresetManager* manager);

enum class PresetSaving {
    kDone,       // the dialog ends, the colour page is changed
    kDuplicate,  // there is one of the name, which the user is told; the dialog stays
    kImpossible  // no name or no room, or nothing selected: what a disabled button stands for
};

// Stores the device mode's values under the typed name in the first free record, or in the selected preset's record.
// The device mode's preset is then that one.
PresetSaving SaveNewPreset(ColorPreset* presets, PresetManager* manager, PrivateDevMode* devMode);
PresetSaving OverwritePreset(ColorPreset* presets, const PresetManager& manager, PrivateDevMode* devMode);

// Frees the selected preset's record and selects the first one that remains.
void DeletePreset(ColorPreset* presets, PresetManager* manager);

// The edit of the name: its text, and the selection from one character to before another.
struct NameEdit {
    const WCHAR* text;
    size_t selectionStart;
    size_t selectionEnd;
};

// What the edit takes; the user hears that it takes no more.
bool AcceptsCharacter(const NameEdit& edit, WCHAR character);  // WM_CHAR
bool AcceptsPaste(const NameEdit& edit, const WCHAR* pasted);  // WM_PASTE; null: there is no text to paste
bool AcceptsCutOrCopy(const NameEdit& edit);                   // WM_CUT and WM_COPY

}  // namespace velmora
