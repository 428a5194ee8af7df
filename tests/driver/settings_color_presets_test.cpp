#include "driver/settings/color_presets.h"

#include <string>

#include "driver/settings/settings_folder.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

class ColorPresets : public MachineTest {
  protected:
    void SetUp() override {
        Install(SmallModel(kPdlPcl6).Build());
        PrepareSettingsFile(kPrinterName);
        Clear();
    }
    void TearDown() override {
        Clear();
        MachineTest::TearDown();
    }
    static void Clear() {
        for (size_t i = 0; i < kColorPresets; ++i) {
            ColorPresetTable()[i] = {};
        }
    }
    static void Put(size_t index, const WideText& name, int32_t number) {
        ColorPreset& preset = ColorPresetTable()[index];
        name.copy(preset.name, ARRAYSIZE(preset.name) - 1);
        preset.brightness = number;
        preset.yellow = -number;
        preset.workingValue = 5;
    }
    static WideText Stored(const WideText& section, const WideText& key) {
        WCHAR value[64];
        GetPrivateProfileStringW(section.c_str(), key.c_str(), TEXT("missing"), value, ARRAYSIZE(value),
                                 CurrentSettingsFile());
        return value;
    }
};

TEST_F(ColorPresets, SavedLoadedOverwrittenAndDeleted) {
    LoadColorPresets();
    for (size_t i = 0; i < kColorPresets; ++i) {
        Put(i, TEXT("Preset ") + WideText(1, static_cast<WCHAR>(TEXT('0') + i)), static_cast<int32_t>(i) + 10);
        EXPECT_TRUE(SaveColorPreset(ColorPresetTable()[i].name));
    }
    Put(0, TEXT("Eleventh!"), 1);
    EXPECT_FALSE(SaveColorPreset(TEXT("Eleventh!")));  // no slot is free
    Put(0, TEXT("Preset 4!"), 99);
    ColorPresetTable()[0].name[8] = 0;  // a second record of the name
    EXPECT_TRUE(SaveColorPreset(TEXT("Preset 4")));
    EXPECT_EQ(Stored(TEXT("UserEnt4"), TEXT("Yellow")), TEXT("-99"));
    EXPECT_FALSE(DeleteColorPreset(TEXT("preset 4")));
    EXPECT_TRUE(DeleteColorPreset(TEXT("Preset 4")));
    EXPECT_FALSE(DeleteColorPreset(TEXT("Preset 4")));
    EXPECT_EQ(Stored(TEXT("UserEnt4"), TEXT("Yellow")), TEXT("-99"));
    EXPECT_FALSE(SaveColorPreset(TEXT("Unknown")));  // a slot, but no record

    Clear();
    WritePrivateProfileStringW(TEXT("UserEnt5"), TEXT("Gamma"), nullptr, CurrentSettingsFile());
    EXPECT_EQ(LoadColorPresets(), 1);
    EXPECT_EQ(WideText(ColorPresetTable()[5].name), TEXT("Preset 5"));
    EXPECT_EQ(ColorPresetTable()[5].brightness, 15);
    EXPECT_EQ(ColorPresetTable()[5].yellow, -15);
    EXPECT_EQ(ColorPresetTable()[5].gamma, 99);
    EXPECT_EQ(ColorPresetTable()[5].workingValue, 0);
    EXPECT_EQ(WideText(ColorPresetTable()[4].name), TEXT(""));

    const WideText longName(19, TEXT('x'));
    Put(4, longName, 1);
    EXPECT_TRUE(SaveColorPreset(longName.c_str()));
    Clear();
    LoadColorPresets();
    EXPECT_EQ(WideText(ColorPresetTable()[4].name), longName.substr(0, 17));
}

TEST_F(ColorPresets, ReadAgainWithoutTouchingTheFile) {
    LoadColorPresets();
    for (const size_t i : {0, 2, 4}) {
        Put(i, WideText(1, static_cast<WCHAR>(TEXT('a') + i)), 7);
        SaveColorPreset(ColorPresetTable()[i].name);  // into slots 0 to 2
    }
    WritePrivateProfileStringW(TEXT("UserEnt2"), TEXT("UserEntName"), nullptr, CurrentSettingsFile());
    Put(0, TEXT("a"), 1);
    Put(1, TEXT("other"), 1);
    ReadColorPresetsAgain();
    const struct {
        WideText name;
        int32_t brightness;
        int32_t workingValue;
    } records[] = {{TEXT("a"), 7, 5}, {TEXT("c"), 7, 0}, {TEXT(""), 0, 0}, {TEXT(""), 0, 0}, {TEXT(""), 0, 0}};
    for (size_t i = 0; i < std::size(records); ++i) {
        EXPECT_EQ(WideText(ColorPresetTable()[i].name), records[i].name);
        EXPECT_EQ(ColorPresetTable()[i].brightness, records[i].brightness);
        EXPECT_EQ(ColorPresetTable()[i].workingValue, records[i].workingValue);
    }
    EXPECT_EQ(Stored(TEXT("UserEnt2"), TEXT("UserEntName")), TEXT("missing"));
}

}  // namespace
}  // namespace velmora
