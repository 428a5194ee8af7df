// Colour adjustment and what the colour page and its dialogs decide, apart from their windows.
#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

#include "driver/base/text.h"
#include "driver/devmode/devmode_fields.h"
#include "driver/ui/color_adjustment.h"
#include "driver/ui/color_rules.h"
#include "driver/ui/color_values.h"
#include "driver/ui/lab_tables.h"
#include "driver/ui/preset_rules.h"
#include "tests/driver/machine.h"
#include "tools/lab_tables/rendering.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

TEST(LabTables, AreWhatTheirGeneratorMakes) {
    for (size_t baseColor = 1; baseColor <= kBaseColors; ++baseColor) {
        for (size_t i = 0; i < sizeof(LabTable); ++i) {
            ASSERT_EQ(kLabTables[baseColor - 1][i],
                      RenderLab(baseColor, i % 3, kLightnessNodes[i / kLightnessStride],
                                kANodes[i / kAStride % kLabSteps], kBNodes[i / kBStride % kLabSteps]))
                << baseColor << " " << i << ": run ./dev tables";
        }
    }
}

// What becomes of the colours at some nodes, by a computation apart from the driver's.
TEST(AdjustmentTable, HoldsWhatTheModelOfColorsGives) {
    const struct {
        ColorAdjustment values;
        size_t node[3];
        uint8_t color[3];
    } cases[] = {
        // Each rendering, each adjustment up and down.
        {{1, -10, -3, 6, 0, 5, 9}, {12, 11, 12}, {168, 164, 230}},
        {{2, -9, 9, -5, 7, -4, 10}, {13, 8, 12}, {114, 34, 172}},
        {{3, -8, 6, 3, 2, 0, -4}, {9, 8, 10}, {111, 72, 136}},
        {{4, -7, 4, 7, -8, 4, -6}, {11, 7, 9}, {115, 92, 63}},
        {{1, -6, 1, 1, 4, -7, -10}, {9, 9, 9}, {145, 69, 49}},
        {{2, -5, 3, 5, -6, 2, -7}, {9, 5, 7}, {96, 44, 29}},
        {{3, -4, 10, -1, -5, -10, 7}, {5, 9, 11}, {25, 69, 159}},
        {{4, -3, -4, 0, -3, -9, -2}, {8, 14, 13}, {106, 225, 169}},
        {{4, 9, -6, 8, 8, -1, 3}, {4, 6, 4}, {164, 148, 107}},
        {{1, 10, 0, -9, -7, 1, 5}, {5, 4, 13}, {155, 148, 223}},
        // Limited in a, in b and in both.
        {{1, 0, 0, 10, 0, 0, 0}, {15, 0, 0}, {255, 10, 20}},
        {{2, 0, 0, 10, 0, 0, 0}, {12, 0, 12}, {124, 0, 254}},
        {{1, 0, 0, 10, 0, 0, 0}, {14, 13, 0}, {241, 239, 0}},
        {{1, 0, 0, 10, 0, 0, 0}, {0, 0, 14}, {75, 11, 255}},
    };
    for (const auto& c : cases) {
        AdjustmentTable table;
        BuildAdjustmentTable(c.values, &table);
        const auto& color = table.nodes[c.node[0]][c.node[1]][c.node[2]];
        EXPECT_TRUE(std::equal(std::begin(color), std::end(color), c.color))
            << c.values.baseColor << ' ' << c.values.brightness << ": " << int{color[0]} << ' ' << int{color[1]} << ' '
            << int{color[2]};
    }
}

TEST(AdjustmentTable, KeepsBlackWhiteAndTheOrderOfGreys) {
    for (const int baseColor : {1, 2, 3, 4}) {
        for (const int value : {-10, -1, 0, 1, 10}) {
            AdjustmentTable table;
            BuildAdjustmentTable({baseColor, value, value, value, 0, 0, 0}, &table);
            for (size_t channel = 0; channel < 3; ++channel) {
                EXPECT_EQ(table.nodes[0][0][0][channel], 0);
                EXPECT_EQ(table.nodes[16][16][16][channel], 255);
                for (size_t i = 1; i < 17; ++i) {
                    EXPECT_GE(table.nodes[i][i][i][channel], table.nodes[i - 1][i - 1][i - 1][channel]);
                    // The renderings' greys are a little blue, by the measured 15 levels at most.
                    EXPECT_NEAR(table.nodes[i][i][i][channel], table.nodes[i][i][i][1], 16);
                }
            }
        }
    }
}

TEST(AdjustmentTable, TakesValuesBeyondTheirRangeAsTheNearest) {
    const ColorAdjustment pairs[][2] = {
        {{0, 0, 0, 0, 0, 0, 0}, {3, 0, 0, 0, 0, 0, 0}},
        {{99, 99, 99, 99, 99, 99, 99}, {3, 10, 10, 10, 10, 10, 10}},
        {{-1, -99, -99, -99, INT_MIN, INT_MIN, INT_MIN}, {3, -10, -10, -10, -10, -10, -10}},
    };
    for (const auto& [beyond, nearest] : pairs) {
        AdjustmentTable tables[2];
        BuildAdjustmentTable(beyond, &tables[0]);
        BuildAdjustmentTable(nearest, &tables[1]);
        EXPECT_EQ(memcmp(&tables[0], &tables[1], sizeof(tables[0])), 0);
    }
}

TEST(MapPixels, InterpolatesInTheThreePyramidsOfACell) {
    AdjustmentTable table;
    uint32_t noise = 1;
    for (auto* byte = &table.nodes[0][0][0][0]; byte != &table.nodes[0][0][0][0] + sizeof(table); ++byte) {
        noise = noise * 1664525 + 1013904223;
        *byte = static_cast<uint8_t>(noise >> 24);
    }
    // Every length of the way along an axis, each axis in turn; the nodes; the last cell; ways of the same length.
    const std::pair<uint32_t, uint32_t> cases[] = {
        {0xA5D0C1A0, 0xA5682561}, {0xA5A021B2, 0xA541DEC6}, {0xA5E302C2, 0xA56BBA9A}, {0xA5912430, 0xA57263DA},
        {0xA5818215, 0xA539649D}, {0xA5D684C4, 0xA554237E}, {0xA5F2A726, 0xA5BEB083}, {0xA554D028, 0xA5B25F83},
        {0xA5892471, 0xA5799EBA}, {0xA5E80AA4, 0xA5492C63}, {0xA541127B, 0xA59E9C2F}, {0xA51C5A64, 0xA53B947F},
        {0xA5689DE2, 0xA5618F5B}, {0xA584B00E, 0xA5A75F5E}, {0xA50F6EF7, 0xA5926E2E}, {0xA5000000, 0xA53C5E81},
        {0xA5304050, 0xA51D3C3E}, {0xA5FFFFFF, 0xA5C32228}, {0xA5F8F0FC, 0xA5449F99}, {0xA5383830, 0xA5806762},
        {0xA5383038, 0xA5A21EB0}, {0xA5303838, 0xA566239C}, {0xA5383838, 0xA5CB3E7F}, {0xA530383F, 0xA5813268},
        {0xA5303F38, 0xA558129E}, {0xA50000FF, 0xA590D951},
    };
    for (const auto& [pixel, mapped] : cases) {
        uint32_t one = pixel;
        MapPixels(table, &one, 1);
        EXPECT_EQ(one, mapped) << std::hex << pixel;
    }
}

template <class... Number>
std::vector<int> Numbers(Number... numbers) {
    return {static_cast<int>(numbers)...};
}

class ColorRules : public MachineTest {
  protected:
    ColorRules() {
        Copy(texts_[0], TEXT("(none)"));
        for (size_t i = 0; i < 3; ++i) {
            Copy(treatmentTexts_[i], WideText(1, static_cast<WCHAR>(TEXT('X') + i)) + TEXT(" as the device does it"));
        }
        devMode_ = {};
        for (ResolutionRecord& resolution : resolutions_) {
            const auto dpi = static_cast<uint16_t>(300 * (&resolution - resolutions_ + 1));
            resolution.mark = &resolution != &resolutions_[2];
            resolution.resolutionId = static_cast<int16_t>(dpi);
            resolution.xDpi = dpi;
            resolution.yDpi = static_cast<uint16_t>(2 * dpi);
        }
        modelRecord_.resolutionTable = resolutions_;
    }

    template <size_t capacity>
    static void Copy(WCHAR (&destination)[capacity], const WideText& text) {
        CopyText<WCHAR>(destination, capacity, text.c_str());
    }
    // A preset whose values all differ, within their ranges.
    void Put(size_t slot, const WideText& name) {
        const auto n = static_cast<int32_t>(slot);
        presets_[slot] = {{}, 2, 4, -n, n, -9, 8, -7, 6, 11, 0, -5, 4, -3, 2};
        Copy(presets_[slot].name, name);
    }
    static std::vector<int> ChoicesOf(const ColorPage& page) {
        return Numbers(page.mode, page.preset.item, page.treatments[0].item, page.treatments[1].item,
                       page.treatments[2].item, page.resolutionItem, page.rendering, page.choiceA, page.resolutionFlag,
                       page.isAdvanced);
    }
    // A page of these selected items.
    ColorPage PageOf(uint16_t mode, int presetItem, const std::array<int, 3>& treatmentItems, bool isAdvanced) {
        ColorPage page = {mode, SelectPresetItem(lists_.presets, presetItem), {}, 1, 4, 2, true, isAdvanced};
        for (size_t kind = 0; kind < kObjectKinds; ++kind) {
            page.treatments[kind] = SelectPresetItem(lists_.treatments, treatmentItems[kind]);
        }
        return page;
    }
    ColorPage Read() { return ReadColorPage(devMode_, lists_); }
    void Apply(const ColorPage& page) { ApplyColorPage(page, presets_, &modelRecord_, &devMode_); }

    ColorPreset presets_[kColorPresets] = {};
    WCHAR texts_[1][kChoiceTextCapacity] = {};
    WCHAR treatmentTexts_[3][kChoiceTextCapacity] = {};
    ColorLists lists_ = {{kPresetChoices, texts_, presets_}, {kTreatmentChoices, treatmentTexts_, presets_}};
    VelmoraDevMode devMode_;
    PrivateDevMode& own_ = devMode_.privatePart;
    ResolutionRecord resolutions_[3] = {};
    DeviceModel modelRecord_ = {};
};

TEST_F(ColorRules, ItemsAreFoundByTextThenByValue) {
    Put(2, TEXT("Mine"));
    Put(7, TEXT("Other"));
    const struct {
        int value;
        const WCHAR* text;
        int item;
    } cases[] = {{0, TEXT("Other"), 4}, {5, TEXT("Mine"), 3}, {5, TEXT("gone"), 3},   {2, TEXT("gone"), 1},
                 {0, TEXT("gone"), 0},  {9, TEXT("gone"), 0}, {-1, TEXT("gone"), -1}, {1, treatmentTexts_[2], 2}};
    for (const auto& c : cases) {
        EXPECT_EQ(FindPresetItem(lists_.treatments, c.value, c.text), c.item) << c.value << ToText(c.text);
    }
    PresetItem item;
    ASSERT_TRUE(GetPresetItem(lists_.presets, 2, &item));
    EXPECT_EQ(item.preset, &presets_[7]);
    EXPECT_EQ(item.value, 5u);
    EXPECT_FALSE(GetPresetItem(lists_.presets, 3, &item));
    EXPECT_FALSE(GetPresetItem(lists_.presets, -1, &item));
}

TEST_F(ColorRules, ReadingAndApplyingKeepsAPage) {
    Put(0, TEXT("Mine"));
    const ColorPage page = PageOf(5, 1, {2, 3, 0}, false);
    Apply(page);
    EXPECT_EQ(memcmp(own_.colorPresetName, TEXT("Mine\0\0\0"), 16), 0);
    EXPECT_EQ(WideText(own_.objectPresetNames[0]), TEXT("Z as the d"));
    EXPECT_EQ(ChoicesOf(Read()), ChoicesOf(page));
    Put(1, WideText(11, TEXT('x')));
    std::fill_n(own_.objectPresetNames[1], 11, TEXT('x'));  // the next one follows without a terminator
    EXPECT_EQ(Read().treatments[1].item, 4);
    own_.resolutionIndex = 3;
    EXPECT_EQ(Read().resolutionItem, -1);
}

TEST_F(ColorRules, ResolutionIsTheModelsOrStays) {
    const auto stored = [&] {
        return Numbers(own_.resolutionIndex, own_.resolutionId, devMode_.publicPart.dmPrintQuality,
                       devMode_.publicPart.dmYResolution);
    };
    ColorPage page = Read();
    page.resolutionItem = 1;
    Apply(page);
    const std::vector<int> second = Numbers(1, 600, 600, 1200);
    EXPECT_EQ(stored(), second);
    for (const int item : {2, -1}) {
        page.resolutionItem = item;
        Apply(page);
        EXPECT_EQ(stored(), second);
    }
    page.resolutionItem = 0;
    ApplyColorPage(page, presets_, nullptr, &devMode_);
    EXPECT_EQ(stored(), second);
}

// Presets are those that the lists showed, whatever has become of the table; values that a field doesn't take become
// its default.
TEST_F(ColorRules, PresetsFillTheAdjustmentAndTheObjectKinds) {
    Put(3, TEXT("Mine"));
    presets_[3].magenta = 99;
    ColorPage page = Read();
    page.mode = 5;
    page.preset = SelectPresetItem(lists_.presets, 1);
    page.treatments[1] = SelectPresetItem(lists_.treatments, 3);
    Put(0, TEXT("New"));
    own_.objectColor[0].values[0] = 7;
    Apply(page);
    EXPECT_EQ(
        Numbers(own_.outputSetting, own_.colorChoiceB, own_.colorAdjust[0], own_.colorAdjust[1], own_.colorAdjust[2],
                own_.colorBalance[0], own_.colorBalance[1], own_.colorBalance[2], own_.imageValueB, own_.colorFlagA,
                own_.colorLevels[0], own_.colorLevels[1], own_.colorLevels[2], own_.colorLevels[3]),
        Numbers(2, 4, -3, -9, 3, 8, -7, 6, 11, 0, -5, 4, 0, 2));
    const ObjectColor& treated = own_.objectColor[1];
    EXPECT_EQ(Numbers(treated.mode, treated.flag), Numbers(5, 1));
    const std::vector<int16_t> values = {-3, -9, 3, 4, 8, -7, 6};
    EXPECT_EQ(memcmp(treated.values, values.data(), sizeof(treated.values)), 0);
    EXPECT_EQ(WideText(own_.objectPresetNames[1]), TEXT("Mine"));
    const ObjectColor& plain = own_.objectColor[0];
    EXPECT_EQ(Numbers(plain.mode, plain.flag, plain.values[0]), Numbers(1, 1, 0));
    // In the other modes a preset that is still selected changes nothing.
    own_.colorAdjust[0] = 1;
    page.mode = 6;
    Apply(page);
    EXPECT_EQ(ValueOf(own_.colorAdjust[0]), 1);
    EXPECT_EQ(WideText(own_.colorPresetName), TEXT(""));
    const ColorAdjustment shown = AdjustmentOf(presets_[3]);
    EXPECT_EQ(Numbers(shown.baseColor, shown.brightness, shown.contrast, shown.saturation, shown.cyanRed,
                      shown.magentaGreen, shown.yellowBlue),
              Numbers(4, -3, -9, 3, 8, -7, 6));
}

TEST_F(ColorRules, SelectionsOutliveThePresetManager) {
    Put(4, TEXT("Kept"));
    Put(6, TEXT("Gone"));
    ColorPage page = PageOf(5, 0, {3, 4, 4}, false);
    presets_[6] = {};
    Put(0, TEXT("New"));
    FindSelectionsAgain(lists_, &page);
    EXPECT_EQ(page.preset.item, 0);
    EXPECT_EQ(page.treatments[0].item, 4);  // behind the new one
    EXPECT_EQ(page.treatments[1].item, 2);  // value 3
    EXPECT_EQ(page.treatments[2].item, 1);  // value 2
}

TEST_F(ColorRules, OtherIntentsAreShownAsTheDefault) {
    for (const DWORD intent : {0u, 4u, 256u}) {
        devMode_.publicPart.dmICMIntent = intent;
        EXPECT_EQ(ShownIntent(devMode_.publicPart), kDefaultIntent);
    }
}

// What the dialog's disabled buttons keep the user from.
TEST_F(ColorRules, PresetsNeedANameRoomAndASelection) {
    PresetManager manager = OpenPresetManager(presets_);
    EXPECT_FALSE(manager.canSave || manager.canChange);
    EXPECT_EQ(manager.selected, -1);
    EXPECT_EQ(SaveNewPreset(presets_, &manager, &own_), PresetSaving::kImpossible);
    EXPECT_EQ(OverwritePreset(presets_, manager, &own_), PresetSaving::kImpossible);
    for (size_t i = 0; i < kColorPresets; ++i) {
        Put(i, WideText(1, static_cast<WCHAR>(TEXT('a') + i)));
    }
    TypePresetName(presets_, TEXT("k"), &manager);
    EXPECT_EQ(SaveNewPreset(presets_, &manager, &own_), PresetSaving::kImpossible);
    // The first free slot is taken, wherever it lies.
    SelectPreset(presets_, 3, &manager);
    DeletePreset(presets_, &manager);
    EXPECT_TRUE(manager.canSave && manager.canChange);
    EXPECT_EQ(manager.selected, 0);
    EXPECT_EQ(SaveNewPreset(presets_, &manager, &own_), PresetSaving::kDone);
    EXPECT_EQ(WideText(presets_[3].name), TEXT("k"));
    for (size_t i = 0; i < kColorPresets; ++i) {
        EXPECT_TRUE(manager.canChange);
        DeletePreset(presets_, &manager);
    }
    EXPECT_FALSE(manager.canChange);
    EXPECT_EQ(manager.selected, -1);
}

TEST_F(ColorRules, AnotherPrintersPresetsGo) {
    ColorPresetTable()[3] = {{TEXT('M')}, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14};
    RefreshColorPresets();
    EXPECT_EQ(NamedPreset(ColorPresetTable(), 0), nullptr);
}

TEST_F(ColorRules, NamesHaveTenCharactersAndBytesAtMost) {
    const struct {
        NameEdit edit;
        const WCHAR* inserted;  // a text of one character is typed, too
        bool fits;
    } cases[] = {
        {{TEXT("123456789"), 9, 9}, TEXT("0"), true},
        {{TEXT("1234567890"), 10, 10}, TEXT("x"), false},
        {{TEXT("1234567890"), 4, 5}, TEXT("x"), true},
        {{TEXT(""), 0, 0}, TEXT("1234567890"), true},
        {{TEXT(""), 0, 0}, TEXT("12345678901"), false},
        {{TEXT("12345678"), 0, 8}, TEXT("1234567890"), true},
        {{TEXT("12345678"), 1, 8}, TEXT("1234567890"), false},
        {{TEXT("\u3042\u3044\u3046\u3048"), 4, 4}, TEXT("\u304A"), true},
        {{TEXT("\u3042\u3044\u3046\u3048\u304A"), 5, 5}, TEXT("x"), false},
        {{TEXT("\u3042\u3044\u3046\u3048\u304A"), 5, 9}, TEXT("\u304B"), false},
        {{TEXT("\u3042\u3044\u3046\u3048\u304A"), 2, 3}, TEXT("xy"), true},
        {{TEXT("1234567890"), 10, 10}, TEXT("\b"), true},
        {{TEXT("1234567890"), 10, 10}, TEXT("\x7F"), true},
    };
    machine_.SetAnsiCodePage(932);
    for (const auto& c : cases) {
        const WCHAR first = c.inserted[0];
        if (c.inserted[1] == 0) {
            EXPECT_EQ(AcceptsCharacter(c.edit, first), c.fits) << ToText(c.edit.text) << ToText(c.inserted);
        }
        if (first >= TEXT(' ') && first != 0x7F) {
            EXPECT_EQ(AcceptsPaste(c.edit, c.inserted), c.fits) << ToText(c.edit.text) << ToText(c.inserted);
        }
    }
    machine_.SetAnsiCodePage(1252);
    EXPECT_TRUE(AcceptsCharacter({TEXT("\u3042\u3044\u3046\u3048\u304A"), 5, 5}, TEXT('x')));
    EXPECT_TRUE(AcceptsPaste({TEXT("1234567890"), 0, 0}, nullptr));
    EXPECT_TRUE(AcceptsCutOrCopy({TEXT("12"), 0, 1}));
    EXPECT_FALSE(AcceptsCutOrCopy({TEXT("12"), 1, 1}));
}

}  // namespace
}  // namespace velmora
