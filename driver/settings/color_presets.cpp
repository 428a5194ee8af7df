#include "driver/settings/color_presets.h"

#include "driver/base/format.h"
#include "driver/base/text.h"
#include "driver/settings/ini_keys.h"
#include "driver/settings/settings_folder.h"

namespace velmora {
namespace {

constexpr const WCHAR* kSectionName = TEXT("UserEnt");
constexpr const WCHAR* kNameKey = TEXT("UserEntName");
constexpr const WCHAR* kMissingName = TEXT("DummyDummyDummy");
constexpr size_t kNameCapacity = 18;  // of a stored name
constexpr int32_t kMissingNumber = 99;

struct NumberKey {
    const WCHAR* key;
    int32_t ColorPreset::*number;
};

// In the order of writing.
constexpr NumberKey kNumberKeys[] = {
    {TEXT("ColorSample"), &ColorPreset::colorSample},
    {TEXT("BaseColor"), &ColorPreset::baseColor},
    {TEXT("Brightness"), &ColorPreset::brightness},
    {TEXT("Saturation"), &ColorPreset::saturation},
    {TEXT("Contrast"), &ColorPreset::contrast},
    {TEXT("CyanRed"), &ColorPreset::cyanRed},
    {TEXT("MagentaGreen"), &ColorPreset::magentaGreen},
    {TEXT("YellowBlue"), &ColorPreset::yellowBlue},
    {TEXT("Gamma"), &ColorPreset::gamma},
    {TEXT("Black"), &ColorPreset::black},
    {TEXT("Cyan"), &ColorPreset::cyan},
    {TEXT("Magenta"), &ColorPreset::magenta},
    {TEXT("Yellow"), &ColorPreset::yellow},
};

ColorPreset g_table[kColorPresets];

// A slot of the current settings file.
class Slot {
  public:
    explicit Slot(size_t index) { FormListKey(section_, kSectionName, static_cast<unsigned>(index)); }

    // The slot's name, empty where it is free; kMissingName where the file has no such slot.
    void ReadName(WCHAR (&name)[kNameCapacity]) const {
        GetPrivateProfileStringW(section_, kNameKey, kMissingName, name, ARRAYSIZE(name), CurrentSettingsFile());
    }
    void WriteName(const WCHAR* name) const {
        WriteTextKey(section_, kNameKey, name, ARRAYSIZE(ColorPreset::name), CurrentSettingsFile());
    }
    void ReadNumbers(ColorPreset* preset) const {
        for (const NumberKey& key : kNumberKeys) {
            preset->*key.number =
                static_cast<int32_t>(GetPrivateProfileIntW(section_, key.key, kMissingNumber, CurrentSettingsFile()));
        }
    }
    void Write(const ColorPreset& preset) const {
        WriteName(preset.name);
        for (const NumberKey& key : kNumberKeys) {
            WCHAR text[16];
            FormatWide(text, ARRAYSIZE(text), TEXT("%d"), preset.*key.number);
            WritePrivateProfileStringW(section_, key.key, text, CurrentSettingsFile());
        }
    }

  private:
    WCHAR section_[kListKeyCapacity];
};

// The first slot of this name, kColorPresets where there is none.
size_t FindSlot(const WCHAR* name) {
    for (size_t i = 0; i < kColorPresets; ++i) {
        WCHAR stored[kNameCapacity];
        Slot(i).ReadName(stored);
        if (TextsEqual<WCHAR>(stored, name)) {
            return i;
        }
    }
    return kColorPresets;
}

const ColorPreset* FindInTable(const WCHAR* name) {
    for (const ColorPreset& preset : g_table) {
        if (TextsEqual<WCHAR>(preset.name, name)) {
            return &preset;
        }
    }
    return nullptr;
}

}  // namespace

ColorPreset* ColorPresetTable() {
    return g_table;
}

int LoadColorPresets() {
    for (size_t i = 0; i < kColorPresets; ++i) {
        WCHAR name[kNameCapacity];
        Slot(i).ReadName(name);
        if (TextsEqual<WCHAR>(name, kMissingName)) {
            for (size_t slot = 0; slot < kColorPresets; ++slot) {
                Slot(slot).Write(ColorPreset{});
            }
            return 1;
        }
        if (name[0] != 0) {
            CopyText<WCHAR>(g_table[i].name, ARRAYSIZE(g_table[i].name), name);
            Slot(i).ReadNumbers(&g_table[i]);
        }
    }
    return 1;
}

void ReadColorPresetsAgain() {
    for (size_t i = 0; i < kColorPresets; ++i) {
        ColorPreset& preset = g_table[i];
        WCHAR name[kNameCapacity];
        Slot(i).ReadName(name);
        const bool isNamed = name[0] != 0 && !TextsEqual<WCHAR>(name, kMissingName);
        if (!isNamed || !TextsEqual<WCHAR>(name, preset.name)) {
            preset = {};
        }
        if (isNamed) {
            CopyText<WCHAR>(preset.name, ARRAYSIZE(preset.name), name);
            Slot(i).ReadNumbers(&preset);
        }
    }
}

BOOL SaveColorPreset(const WCHAR* name) {
    size_t slot = FindSlot(name);
    if (slot == kColorPresets) {
        slot = FindSlot(TEXT(""));
    }
    const ColorPreset* const preset = slot < kColorPresets ? FindInTable(name) : nullptr;
    if (!preset) {
        return FALSE;
    }
    Slot(slot).Write(*preset);
    return TRUE;
}

BOOL DeleteColorPreset(const WCHAR* name) {
    const size_t slot = FindSlot(name);
    if (slot == kColorPresets) {
        return FALSE;
    }
    Slot(slot).WriteName(TEXT(""));
    return TRUE;
}

}  // namespace velmora
