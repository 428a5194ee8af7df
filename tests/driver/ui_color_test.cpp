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

const uint8_t* LabNode(size_t baseColor, size_t lightness, size_t a, size_t b) {
    return &kLabTables[baseColor - 1][((lightness * 17 + a) * 17 + b) * 3];
}

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

TEST(LabTables, HoldTheMeasuredColors) {
    const struct {
        size_t lightness, a, b;
        int colors[kBaseColors][3];
    } nodes[] = {
        {0, 8, 8, {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}}},
        {8, 8, 8, {{153, 154, 161}, {136, 133, 148}, {149, 149, 158}, {149, 149, 158}}},
        {16, 8, 8, {{255, 255, 255}, {255, 255, 255}, {255, 255, 255}, {255, 255, 255}}},
        {8, 13, 8, {{251, 61, 250}, {251, 19, 186}, {255, 18, 255}, {255, 41, 188}}},
        {8, 3, 8, {{53, 255, 94}, {0, 191, 20}, {57, 255, 96}, {16, 214, 42}}},
        {8, 8, 13, {{176, 154, 0}, {175, 134, 0}, {219, 173, 0}, {190, 141, 0}}},
        {8, 8, 4, {{106, 162, 255}, {0, 109, 238}, {91, 203, 255}, {73, 175, 255}}},
        {16, 16, 16, {{255, 107, 73}, {255, 100, 53}, {255, 120, 106}, {255, 103, 62}}},
        {0, 0, 0, {{0, 182, 188}, {0, 182, 253}, {0, 63, 163}, {0, 178, 251}}},
    };
    for (const auto& node : nodes) {
        for (size_t baseColor = 1; baseColor <= kBaseColors; ++baseColor) {
            const uint8_t* const color = LabNode(baseColor, node.lightness, node.a, node.b);
            EXPECT_TRUE(std::equal(color, color + 3, node.colors[baseColor - 1])) << baseColor;
        }
    }
}

TEST(LabTables, AreSmoothAndTheirGreysRise) {
    constexpr double kSteepest = 8.5;  // levels a unit of CIELAB
    for (size_t baseColor = 1; baseColor <= kBaseColors; ++baseColor) {
        for (size_t i = 0; i < sizeof(LabTable); ++i) {
            const struct {
                size_t at;
                const int16_t* nodes;
                size_t stride;
            } axes[] = {{i / kLightnessStride, kLightnessNodes, kLightnessStride},
                        {i / kAStride % kLabSteps, kANodes, kAStride},
                        {i / kBStride % kLabSteps, kBNodes, kBStride}};
            for (const auto& axis : axes) {
                if (axis.at + 1 < kLabSteps) {
                    const int step = kLabTables[baseColor - 1][i + axis.stride] - kLabTables[baseColor - 1][i];
                    ASSERT_LE(std::abs(step), kSteepest * (axis.nodes[axis.at + 1] - axis.nodes[axis.at]))
                        << baseColor << " " << i;
                    if (axis.nodes == kLightnessNodes && axes[1].at == 8 && axes[2].at == 8) {
                        EXPECT_GT(step, 0);
                    }
                }
            }
        }
    }
}

// The adjustment once more, a step at a time and by other means: formulas for the factors, powers for roots, weights of
// all eight nodes.
struct PlainColor {
    double lab[3];
    double rgb[3];  // not cut to whole levels
    bool isLimited;
};

PlainColor AdjustPlainly(const ColorAdjustment& v, const int (&levels)[3]) {
    const double brightness = v.brightness < 0 ? 1 - 0.1 * v.brightness : 1 - 0.04 * v.brightness;
    const double contrast = 1 - v.contrast / 10.0;
    const double saturation = v.saturation < 0 ? (11 + v.saturation) / 10.0 : 1.1 + 0.07 * v.saturation;
    const int balances[3] = {v.cyanRed, v.magentaGreen, v.yellowBlue};
    double linear[3];
    for (int i = 0; i < 3; ++i) {
        linear[i] = std::pow(levels[i] / 255.0, 2.2 / (1 + 0.05 * balances[i]));
    }
    const double xyz[3] = {(0.4361 * linear[0] + 0.3851 * linear[1] + 0.1431 * linear[2]) / 0.9643,
                           0.2225 * linear[0] + 0.7169 * linear[1] + 0.0606 * linear[2],
                           (0.0139 * linear[0] + 0.0971 * linear[1] + 0.7141 * linear[2]) / 0.8251};
    double f[3];
    for (int i = 0; i < 3; ++i) {
        f[i] = xyz[i] > 0.008856 ? std::exp(std::log(xyz[i]) / 3) : 7.787 * xyz[i] + 16 / 116.0;
    }
    double lightness = std::fmax(116 * f[1] - 16, 0);
    if (lightness > 0) {
        lightness = 100 * std::exp(brightness * std::log(lightness / 100));
    }
    const double t = lightness / 100;
    lightness = std::fmin(std::fmax(lightness * (contrast + (1 - contrast) * t * (3 - 2 * t)), 0), 100);
    double a = 500 * (f[0] - f[1]) * saturation;
    double b = 200 * (f[1] - f[2]) * saturation;
    const double aPart = std::fmin(1, a > 0 ? 90 / a : a < 0 ? -120 / a : 1);
    const double bPart = std::fmin(1, b > 0 ? 100 / (b * aPart) : b < 0 ? -120 / (b * aPart) : 1);
    a *= aPart * bPart;
    b *= aPart * bPart;
    PlainColor color = {{lightness, a, b}, {}, aPart < 1 || bPart < 1};
    const int16_t* const axes[3] = {kLightnessNodes, kANodes, kBNodes};
    size_t upper[3];
    double parts[3];
    for (int i = 0; i < 3; ++i) {
        upper[i] = static_cast<size_t>(std::upper_bound(axes[i] + 1, axes[i] + 16, color.lab[i]) - axes[i]);
        const int low = axes[i][upper[i] - 1];
        parts[i] = (color.lab[i] - low) / (axes[i][upper[i]] - low);
    }
    for (size_t corner = 0; corner < 8; ++corner) {
        double weight = 1;
        size_t at[3];
        for (size_t i = 0; i < 3; ++i) {
            const bool isUpper = (corner >> i & 1) != 0;
            at[i] = upper[i] - (isUpper ? 0 : 1);
            weight *= isUpper ? parts[i] : 1 - parts[i];
        }
        const uint8_t* const node = LabNode(static_cast<size_t>(v.baseColor), at[0], at[1], at[2]);
        for (int i = 0; i < 3; ++i) {
            color.rgb[i] += weight * node[i];
        }
    }
    return color;
}

int NodeLevel(size_t node) {
    return node == 16 ? 255 : static_cast<int>(16 * node);
}

TEST(AdjustmentTable, AgreesWithThePlainComputation) {
    const ColorAdjustment cases[] = {
        {1, 0, 0, 0, 0, 0, 0},       {2, 0, 0, 0, 0, 0, 0},         {3, 0, 0, 0, 0, 0, 0},
        {4, 0, 0, 0, 0, 0, 0},       {3, 10, 10, 10, 10, 10, 10},   {1, -10, -10, -10, -10, -10, -10},
        {2, 5, -3, 10, -10, 0, 7},   {4, -6, 8, -1, 3, -9, 10},     {3, 1, 1, 1, 1, 1, 1},
        {1, -1, -1, -1, -1, -1, -1}, {2, 10, -10, 10, 10, -10, 10}, {4, -10, 10, 9, -10, 10, -10},
    };
    for (const ColorAdjustment& values : cases) {
        AdjustmentTable table;
        BuildAdjustmentTable(values, &table);
        for (size_t node = 0; node < 17 * 17 * 17; ++node) {
            const size_t at[3] = {node / 289, node / 17 % 17, node % 17};
            const PlainColor plain = AdjustPlainly(values, {NodeLevel(at[0]), NodeLevel(at[1]), NodeLevel(at[2])});
            for (size_t channel = 0; channel < 3; ++channel) {
                const int level = table.nodes[at[0]][at[1]][at[2]][channel];
                ASSERT_TRUE(level <= plain.rgb[channel] + 1e-6 && level > plain.rgb[channel] - 1 - 1e-6)
                    << level << " for " << plain.rgb[channel] << ", node " << node << " of base " << values.baseColor;
            }
        }
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

TEST(AdjustmentTable, KeepsTheHueWhereSaturationIsLimited) {
    const PlainColor vivid = AdjustPlainly({3, 0, 0, 10, 0, 0, 0}, {240, 0, 0});
    const PlainColor red = AdjustPlainly({3, 0, 0, -1, 0, 0, 0}, {240, 0, 0});
    ASSERT_TRUE(vivid.isLimited);
    EXPECT_NEAR(vivid.lab[1], 90, 1e-9);
    EXPECT_NEAR(vivid.lab[2] / vivid.lab[1], red.lab[2] / red.lab[1], 1e-9);
    AdjustmentTable table;
    BuildAdjustmentTable({3, 0, 0, 10, 0, 0, 0}, &table);
    EXPECT_NEAR(table.nodes[15][0][0][1], vivid.rgb[1], 1);
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

// The pixel once more, each pyramid by its own sums.
uint32_t MapPlainly(const AdjustmentTable& table, uint32_t pixel) {
    const uint32_t r = pixel >> 16 & 0xFF;
    const uint32_t g = pixel >> 8 & 0xFF;
    const uint32_t b = pixel & 0xFF;
    const uint32_t fr = r % 16;
    const uint32_t fg = g % 16;
    const uint32_t fb = b % 16;
    uint32_t mapped = pixel & 0xFF000000;
    for (size_t channel = 0; channel < 3; ++channel) {
        const auto c = [&](uint32_t i, uint32_t j, uint32_t k) -> uint32_t {
            return table.nodes[r / 16 + i][g / 16 + j][b / 16 + k][channel];
        };
        uint32_t longest = fr;
        uint32_t sum = 0;
        if (fr >= fg && fr >= fb) {
            sum = (c(1, 0, 0) * (fr - fg) + c(1, 1, 0) * fg) * (fr - fb) +
                  (c(1, 0, 1) * (fr - fg) + c(1, 1, 1) * fg) * fb;
        } else if (fg < fr || fg < fb) {
            longest = fb;
            sum = (c(0, 1, 1) * (fb - fr) + c(1, 1, 1) * fr) * fg +
                  (c(0, 0, 1) * (fb - fr) + c(1, 0, 1) * fr) * (fb - fg);
        } else {
            longest = fg;
            sum = (c(0, 1, 1) * (fg - fr) + c(1, 1, 1) * fr) * fb +
                  (c(0, 1, 0) * (fg - fr) + c(1, 1, 0) * fr) * (fg - fb);
        }
        const uint32_t origin = c(0, 0, 0);
        const uint32_t level =
            longest == 0 ? origin : origin + (sum * (65536 / longest) >> 20) - (origin * longest >> 4);
        mapped |= (level & 0xFF) << (16 - 8 * channel);
    }
    return mapped;
}

TEST(MapPixels, InterpolatesInTheThreePyramidsOfACell) {
    AdjustmentTable table;
    uint32_t noise = 1;
    for (auto* byte = &table.nodes[0][0][0][0]; byte != &table.nodes[0][0][0][0] + sizeof(table); ++byte) {
        noise = noise * 1664525 + 1013904223;
        *byte = static_cast<uint8_t>(noise >> 24);
    }
    // All colours whose channels are multiples of 3: every cell, also the last one, and every mix of fractions.
    std::vector<uint32_t> pixels;
    for (uint32_t red = 0; red < 256; red += 3) {
        for (uint32_t green = 0; green < 256; green += 3) {
            for (uint32_t blue = 0; blue < 256; blue += 3) {
                pixels.push_back(0xA5000000 | red << 16 | green << 8 | blue);
            }
        }
    }
    std::vector<uint32_t> mapped = pixels;
    MapPixels(table, mapped.data(), mapped.size());
    for (size_t i = 0; i < pixels.size(); ++i) {
        ASSERT_EQ(mapped[i], MapPlainly(table, pixels[i])) << std::hex << pixels[i];
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

TEST_F(ColorRules, PanelsFollowTheModeAndTheForm) {
    Put(0, TEXT("Mine"));
    const struct {
        uint16_t mode;
        int presetItem;
        bool isAdvanced;
        std::vector<int> disabled;  // of those that are shown
    } cases[] = {
        {1, 0, false, {6013, 6014, 6017}}, {4, 0, false, {6013, 6014, 6017}}, {5, 0, false, {6017}},
        {5, 1, false, {6014, 6017}},       {6, 0, false, {6013, 6014}},       {5, 0, true, {}},
    };
    for (const auto& c : cases) {
        const ColorPanels panels = UpdateColorPanels(PageOf(c.mode, c.presetItem, {}, c.isAdvanced));
        EXPECT_EQ(panels.front().control, 6003);
        EXPECT_EQ(panels.back().control, 6025);
        for (const ControlState& state : panels) {
            EXPECT_EQ(state.isShown, (state.control >= 6020) == c.isAdvanced) << state.control;
            const bool isDisabled = std::find(c.disabled.begin(), c.disabled.end(), state.control) != c.disabled.end();
            EXPECT_EQ(state.isEnabled, state.isShown && !isDisabled) << state.control << " in mode " << c.mode;
        }
    }
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

TEST_F(ColorRules, ModesSetTheirFields) {
    for (const RadioValue& radio : kColorModeRadios) {
        for (const bool isAdvanced : {false, true}) {
            const bool isMonochrome = radio.value == 4;
            CopyText<WCHAR>(own_.colorPresetName, 32, TEXT("old"));
            ColorPage page = Read();
            page.choiceA = 3;
            page.isAdvanced = isAdvanced;
            ChooseColorMode(radio.value, &page, &devMode_);
            EXPECT_EQ(page.choiceA, isMonochrome ? 1 : 3);
            EXPECT_EQ(devMode_.publicPart.dmICMMethod, radio.value == 6 ? 2u : 1u);
            Apply(page);
            EXPECT_EQ(ValueOf(own_.colorPreset), radio.value);
            EXPECT_EQ(ValueOf(own_.colorAuto), isMonochrome ? 0u : 1u);
            EXPECT_EQ(devMode_.publicPart.dmColor, isMonochrome && !isAdvanced ? 1 : 2);
            EXPECT_EQ(ValueOf(own_.colorMode), 1u);
            EXPECT_EQ(ValueOf(own_.colorFlagB), isAdvanced);
            EXPECT_EQ(WideText(own_.colorPresetName), radio.value == 5 ? TEXT("(none)") : TEXT(""));
        }
    }
    own_.colorPreset = 4;
    own_.colorChoiceA = 3;
    EXPECT_EQ(Read().choiceA, 1);
    EXPECT_EQ(ColorFilterA(4), 1u);
    EXPECT_EQ(ColorFilterA(5), 3u);
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
}

TEST_F(ColorRules, AdjustmentSheetTakesTheSelectedPreset) {
    Put(0, TEXT("Mine"));
    const struct {
        uint16_t mode;
        bool isAdvanced;
        bool offers;
    } cases[] = {{5, true, false}, {6, false, false}, {5, false, true}};
    for (const auto& c : cases) {
        own_.colorAdjust[1] = 1;
        ColorPage page = PageOf(c.mode, 1, {}, c.isAdvanced);
        EXPECT_EQ(OffersAdjustmentPage(page), c.offers);
        BeginAdjustment(page, presets_, &own_);
        EXPECT_EQ(ValueOf(own_.colorAdjust[1]), c.offers ? -9 : 1);
        EndAdjustment(lists_, &page);
        EXPECT_EQ(page.preset.item, c.offers ? 0 : 1);
    }
}

TEST_F(ColorRules, PagesOfTheAdjustmentWriteTheirOwnPart) {
    Put(1, TEXT("Mine"));
    own_.colorFlagA = 1;
    ColorPreset read = {};
    WriteAdjustment(presets_[1], kAdjustmentPart, &own_);
    ReadAdjustment(own_, &read);
    const auto some = [&] { return Numbers(read.baseColor, read.contrast, read.gamma, read.black, read.workingValue); };
    EXPECT_EQ(some(), Numbers(4, -9, 1, 0, 0));
    WriteAdjustment(presets_[1], kCmykPart, &own_);
    ReadAdjustment(own_, &read);
    EXPECT_EQ(some(), Numbers(4, -9, 0, -5, 0));
    ResetAdjustment(kAdjustmentPart, &read);
    EXPECT_EQ(some(), Numbers(3, 0, 0, -5, 0));
    ResetAdjustment(kCmykPart, &read);
    EXPECT_EQ(some(), Numbers(3, 0, 1, 0, 0));
    const ColorAdjustment shown = AdjustmentOf(presets_[1]);
    const int values[] = {4, -1, -9, 1, 8, -7, 6};
    EXPECT_EQ(memcmp(&shown, values, sizeof(values)), 0);
}

TEST_F(ColorRules, DefaultsAreThoseOfANewDeviceMode) {
    Put(0, TEXT("Mine"));
    ColorPage page = PageOf(6, 1, {3, 3, 3}, true);
    devMode_.publicPart.dmICMMethod = 2;
    TakeColorDefaults(lists_, &page, &devMode_);
    EXPECT_EQ(devMode_.publicPart.dmICMMethod, 1u);
    EXPECT_EQ(WideText(own_.colorPresetName), TEXT("(none)"));
    WriteDevModeTemplate(&devMode_);
    for (size_t kind = 0; kind < kObjectKinds; ++kind) {
        own_.objectColor[kind].mode = std::array<uint16_t, 3>{1, 3, 2}[kind];
    }
    EXPECT_EQ(ChoicesOf(page), ChoicesOf(Read()));
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

TEST_F(ColorRules, IntentIsStoredWithTheMatchedMode) {
    const struct {
        DWORD stored;
        uint16_t shown;
    } cases[] = {{0, 2}, {1, 1}, {2, 2}, {3, 3}, {4, 2}, {256, 2}};
    for (const auto& c : cases) {
        devMode_ = {};
        devMode_.publicPart.dmICMIntent = c.stored;
        EXPECT_EQ(ShownIntent(devMode_.publicPart), c.shown);
        StoreIntent(c.shown, &devMode_);
        const DEVMODEW& common = devMode_.publicPart;
        EXPECT_EQ(Numbers(common.dmICMIntent, common.dmICMMethod, common.dmColor, own_.colorMode, own_.colorPreset),
                  Numbers(c.shown, 2, 2, 1, 6));
    }
}

TEST_F(ColorRules, PresetsAreSavedUntilThereAreTen) {
    PresetManager manager = OpenPresetManager(presets_);
    EXPECT_FALSE(manager.canSave || manager.canChange);
    EXPECT_EQ(manager.selected, -1);
    EXPECT_EQ(SaveNewPreset(presets_, &manager, &own_), PresetSaving::kImpossible);
    EXPECT_EQ(OverwritePreset(presets_, manager, &own_), PresetSaving::kImpossible);
    for (size_t i = 0; i < kColorPresets; ++i) {
        own_.colorAdjust[0] = static_cast<int16_t>(i);
        const WideText name(1, static_cast<WCHAR>(TEXT('a') + i));
        TypePresetName(presets_, name.c_str(), &manager);
        EXPECT_TRUE(manager.canSave);
        EXPECT_EQ(SaveNewPreset(presets_, &manager, &own_), PresetSaving::kDone);
        EXPECT_EQ(WideText(own_.colorPresetName), name);
        EXPECT_EQ(SaveNewPreset(presets_, &manager, &own_), PresetSaving::kDuplicate);
    }
    EXPECT_EQ(presets_[9].brightness, 9);
    TypePresetName(presets_, TEXT("k"), &manager);
    EXPECT_FALSE(manager.canSave);
    EXPECT_EQ(SaveNewPreset(presets_, &manager, &own_), PresetSaving::kImpossible);

    manager = OpenPresetManager(presets_);
    EXPECT_TRUE(!manager.canSave && manager.canChange);
    SelectPreset(presets_, 3, &manager);
    EXPECT_EQ(WideText(manager.name), TEXT("a"));
    TakePresetName(presets_, &manager);
    EXPECT_EQ(WideText(manager.name), TEXT("d"));
    EXPECT_EQ(OverwritePreset(presets_, manager, &own_), PresetSaving::kDone);
    EXPECT_EQ(presets_[3].brightness, 9);
    EXPECT_EQ(WideText(own_.colorPresetName), TEXT("d"));

    DeletePreset(presets_, &manager);
    EXPECT_EQ(presets_[3].name[0], 0);
    EXPECT_EQ(presets_[3].brightness, 0);
    EXPECT_EQ(manager.selected, 0);
    TypePresetName(presets_, TEXT("k"), &manager);
    EXPECT_TRUE(manager.canSave);
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
