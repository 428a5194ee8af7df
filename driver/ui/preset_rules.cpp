#include "driver/ui/preset_rules.h"

#include <algorithm>

#include "driver/base/text.h"
#include "driver/ui/color_values.h"

namespace velmora {
namespace {

bool HasName(const ColorPreset& preset) {
    return preset.name[0] != 0;
}

size_t CountPresets(const ColorPreset* presets) {
    return static_cast<size_t>(std::count_if(presets, presets + kColorPresets, HasName));
}

void UpdateButtons(const ColorPreset* presets, PresetManager* manager) {
    manager->canSave = manager->name[0] != 0 && CountPresets(presets) < kColorPresets;
    manager->canChange = CountPresets(presets) > 0;
}

ColorPreset* SelectedPreset(ColorPreset* presets, const PresetManager& manager) {
    return const_cast<ColorPreset*>(NamedPreset(presets, manager.selected));
}

void StoreValues(PrivateDevMode* devMode, ColorPreset* preset) {
    ReadAdjustment(*devMode, preset);
    CopyText<WCHAR>(devMode->colorPresetName, ARRAYSIZE(devMode->colorPresetName), preset->name);
}

// Whether the edit has room for `length` characters in place of its selection.
bool HasRoom(const NameEdit& edit, const WCHAR* inserted, size_t length) {
    const size_t oldLength = TextLength(edit.text);
    const size_t end = std::min(edit.selectionEnd, oldLength);
    const size_t start = std::min(edit.selectionStart, end);
    if (length > kPresetNameLength || oldLength - (end - start) > kPresetNameLength - length) {
        return false;
    }
    WCHAR text[kPresetNameLength];
    WCHAR* place = std::copy(edit.text, edit.text + start, text);
    place = std::copy(inserted, inserted + length, place);
    place = std::copy(edit.text + end, edit.text + oldLength, place);
    const int bytes = place == text ? 0
                                    : WideCharToMultiByte(CP_ACP, 0, text, static_cast<int>(place - text), nullptr, 0,
                                                          nullptr, nullptr);
    return bytes <= static_cast<int>(kPresetNameLength);
}

}  // namespace

void RefreshColorPresets() {
    std::fill_n(ColorPresetTable(), kColorPresets, ColorPreset{});
    LoadColorPresets();
}

const ColorPreset* NamedPreset(const ColorPreset* presets, int item) {
    for (size_t i = 0; item >= 0 && i < kColorPresets; ++i) {
        if (HasName(presets[i]) && item-- == 0) {
            return &presets[i];
        }
    }
    return nullptr;
}

PresetManager OpenPresetManager(const ColorPreset* presets) {
    PresetManager manager = {};
    manager.selected = CountPresets(presets) > 0 ? 0 : -1;
    TakePresetName(presets, &manager);
    return manager;
}

void TypePresetName(const ColorPreset* presets, const WCHAR* name, PresetManager* manager) {
    CopyText<WCHAR>(manager->name, ARRAYSIZE(manager->name), name);
    UpdateButtons(presets, manager);
}

void SelectPreset(const ColorPreset* presets, int item, PresetManager* manager) {
    manager->selected = item;
    UpdateButtons(presets, manager);
}

void TakePresetName(const ColorPreset* presets, PresetManager* manager) {
    if (const ColorPreset* const preset = NamedPreset(presets, manager->selected)) {
        CopyText<WCHAR>(manager->name, ARRAYSIZE(manager->name), preset->name);
    }
    UpdateButtons(presets, manager);
}

PresetSaving SaveNewPreset(ColorPreset* presets, PresetManager* manager, PrivateDevMode* devMode) {
    if (manager->name[0] == 0) {
        return PresetSaving::kImpossible;
    }
    ColorPreset* vacant = nullptr;
    for (ColorPreset* preset = presets; preset != presets + kColorPresets; ++preset) {
        if (TextsEqual<WCHAR>(preset->name, manager->name)) {
            return PresetSaving::kDuplicate;
        }
        if (!HasName(*preset) && !vacant) {
            vacant = preset;
        }
    }
    if (!vacant) {
        return PresetSaving::kImpossible;
    }
    CopyText<WCHAR>(vacant->name, ARRAYSIZE(vacant->name), manager->name);
    StoreValues(devMode, vacant);
    UpdateButtons(presets, manager);
    return PresetSaving::kDone;
}

PresetSaving OverwritePreset(ColorPreset* presets, const PresetManager& manager, PrivateDevMode* devMode) {
    ColorPreset* const preset = SelectedPreset(presets, manager);
    if (!preset) {
        return PresetSaving::kImpossible;
    }
    StoreValues(devMode, preset);
    return PresetSaving::kDone;
}

void DeletePreset(ColorPreset* presets, PresetManager* manager) {
    if (ColorPreset* const preset = SelectedPreset(presets, *manager)) {
        *preset = {};
        SelectPreset(presets, CountPresets(presets) > 0 ? 0 : -1, manager);
    }
}

bool AcceptsCharacter(const NameEdit& edit, WCHAR character) {
    constexpr WCHAR kDelete = 0x7F;
    return character < TEXT(' ') || character == kDelete || HasRoom(edit, &character, 1);
}

bool AcceptsPaste(const NameEdit& edit, const WCHAR* pasted) {
    return !pasted || HasRoom(edit, pasted, TextLength(pasted, kPresetNameLength + 1));
}

bool AcceptsCutOrCopy(const NameEdit& edit) {
    return edit.selectionStart != edit.selectionEnd;
}

}  // namespace velmora
