#include "driver/devmode/color_preset.h"

#include "driver/devmode/default_devmode.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

using Numbers = std::vector<int>;
// "start+length" of a slice.
using Slice = std::pair<int, int>;
using Slices = std::vector<Slice>;

const std::vector<ColorModeRecord> kModes = {
    {kColorModeSystem, 1, -1},                         // 0
    {kColorModeManual, 1, 0},                          // 1: manual, its settings don't count
    {kColorModeHasDefaults, 1, 0},                     // 2
    {kColorModeHasDefaults | kColorModeManual, 1, 0},  // 3: manual too
    {1, 1, 0},                                         // 4: nothing
    {kColorModeHasDefaults, 1, -1},                    // 5: no settings of its own
    {kColorModeHasDefaults, 1, 5},                     // 6
    {kColorModeHasDefaults | kColorModeSystem, 1, 5},  // 7
};

// Groups count text, image, graphics, general; the second list's last five rows name what there isn't.
const std::vector<PresetSettingRecord> kSettings = {
    {1, 0, 1}, {2, 0, 1}, {3, 1, 1}, {4, 0, 1}, {}, {1, 1, 1}, {5, 0, 1}, {-1, 0, 1}, {1, 4, 1}, {1, -1, 1}, {4, 1, 99},
};

// Values of the features of the four groups, each list ended by {}. A slice has one pair (start, length), a value that
// fills its group's pairs two.
const std::vector<ColorValueRecord> kValues = {
    {1, 10, 1, 0, 0},
    {1, 11, 12, 13, 14},
    {},  // 0: text, feature 0
    {1, 20, 2, 0, 0},
    {1, 21, 0x1FFF, 0, 0},
    {},  // 3: text, feature 1
    {1, 30, 3, 0, 0},
    {1, 31, 32, 33, 34},
    {},  // 6: image, feature 0
    {1, 40, 4, 0, 0},
    {},  // 9: graphics, feature 0
    {1, 50, 5, 0, 0},
    {1, 51, 52, 53, 54},
    {},  // 11: graphics, feature 1
    {1, 60, 6, 0, 0},
    {1, 61, 62, 63, 64},
    {},                // 14: general, feature 0
    {1, 70, 7, 0, 0},  // 17: general, feature 1
};

class ColorPreset : public MachineTest {
  protected:
    static DescriptionBuilder ColorModel(uint16_t pdlType) {
        DescriptionBuilder builder = SmallModel(pdlType, kColor);
        builder.Table(offsetof(DeviceModel, colorModeTable), kModes);
        builder.Table(offsetof(DeviceModel, presetSettings), kSettings);
        builder.Table(offsetof(DeviceModel, colorOptionValues), kValues);
        builder.Table(offsetof(DeviceModel, textColorFeatures), std::vector<ColorFeatureRecord>{{1, 0}, {1, 3}});
        builder.Table(offsetof(DeviceModel, imageColorFeatures), std::vector<ColorFeatureRecord>{{1, 6}});
        builder.Table(offsetof(DeviceModel, graphicsColorFeatures), std::vector<ColorFeatureRecord>{{1, 9}, {1, 11}});
        builder.Table(offsetof(DeviceModel, generalColorFeatures), std::vector<ColorFeatureRecord>{{1, 14}, {1, 17}});
        return builder;
    }

    void SetUp() override { model_ = Load(ColorModel(kPdlPcl6).Build()); }

    // Applies a mode to a device mode that holds what another mode left.
    void Apply(uint16_t mode) {
        memset(&devMode_.blobRefs, 0x77, sizeof(devMode_.blobRefs));
        memset(&devMode_.blobSlices, 0, sizeof(devMode_.blobSlices));
        devMode_.sliceCount = 0;
        ApplyColorModeSelections(*model_, mode, &devMode_);
    }

    Slices UsedSlices() const {
        Slices slices;
        for (int i = 0; i < 16; ++i) {
            const BlobSlice& slice = devMode_.blobSlices[i];
            if (i < devMode_.sliceCount) {
                slices.emplace_back(slice.start, slice.length);
            } else {
                EXPECT_EQ(slice.start + slice.length, 0) << i;
            }
        }
        return slices;
    }
    Numbers Pairs() const {
        Numbers pairs;
        for (const BlobRef& pair : devMode_.blobRefs) {
            pairs.insert(pairs.end(), {pair.first, pair.second});
        }
        return pairs;
    }
    // The first two of the groups text, image, graphics, general.
    Numbers Selections() const {
        const PrivateDevMode& own = devMode_;
        return {own.textColorOptions[0],    own.textColorOptions[1],     own.imageColorOptions[0],
                own.imageColorOptions[1],   own.graphicsColorOptions[0], own.graphicsColorOptions[1],
                own.generalColorOptions[0], own.generalColorOptions[1]};
    }
    bool NothingCompiled() const { return devMode_.blobRefs[0].first == 0x7777 && devMode_.sliceCount == 0; }

    PrivateDevMode devMode_ = {};
};

TEST_F(ColorPreset, SystemModesAndOthersWithoutValuesChangeNothing) {
    for (const uint16_t mode : {0, 4, 8, 0xFFFF}) {
        Apply(mode);
        EXPECT_TRUE(NothingCompiled()) << mode;
        EXPECT_EQ(Selections(), Numbers(8, 0)) << mode;
    }
}

TEST_F(ColorPreset, ManualModesCompileWhatIsSelected) {
    for (const uint16_t mode : {1, 3, 5}) {
        devMode_.generalColorOptions[0] = mode == 5;
        Apply(mode);
        Slices expected = {{10, 0x8001}, {20, 0x8002}, {30, 0x4003}, {40, 0x2004}, {50, 0x2005}, {60, 6}, {70, 7}};
        expected[5] = mode == 5 ? Slice(61, 62) : Slice(60, 6);
        EXPECT_EQ(UsedSlices(), expected) << mode;
        EXPECT_EQ(Selections(), Numbers({0, 0, 0, 0, 0, 0, mode == 5, 0})) << mode;
        EXPECT_EQ(Pairs(), Numbers(12, 0)) << mode;
    }
}

// Preset settings count groups in another order than that in which the device mode holds them.
TEST_F(ColorPreset, ModesWithDefaultsSelectAndCompile) {
    Apply(2);
    EXPECT_EQ(Selections(), Numbers({1, 0, 1, 0, 0, 1, 1, 0}));
    EXPECT_EQ(Pairs(), Numbers({11, 12, 31, 32, 51, 52, 13, 14, 33, 34, 53, 54}));
    EXPECT_EQ(UsedSlices(), Slices({{20, 0x8002}, {40, 0x2004}, {61, 62}, {70, 7}}));
}

// A value that there isn't gives nothing; the rest is compiled.
TEST_F(ColorPreset, SettingsOutsideTheModelAreLeftOut) {
    for (const uint16_t mode : {6, 7}) {
        devMode_ = {};
        Apply(mode);
        EXPECT_EQ(Selections(), Numbers({0, 1, 0, 0, 0, 0, 0, 99})) << mode;
        EXPECT_EQ(UsedSlices(), Slices({{10, 0x8001}, {21, 0x9FFF}, {30, 0x4003}, {40, 0x2004}, {50, 0x2005}, {60, 6}}))
            << mode;
    }
    for (const int16_t selection : {int16_t{-1}, int16_t{-32768}, int16_t{32767}, int16_t{20}}) {
        devMode_.textColorOptions[0] = selection;
        devMode_.generalColorOptions[1] = selection;
        Apply(1);
        EXPECT_EQ(UsedSlices().front(), Slice(21, 0x9FFF)) << selection;
    }
}

TEST_F(ColorPreset, OnlyLanguagesWithColourCommandsCompile) {
    for (const uint16_t pdlType : {kPdlPcl6, kPdlPcl5, kPdlPostScript, kPdlImage, kPdlXps, kPdlOwn}) {
        model_->pdlType = pdlType;
        devMode_ = {};
        Apply(2);
        EXPECT_EQ(NothingCompiled(), pdlType > kPdlPostScript) << pdlType;
        EXPECT_EQ(Selections()[0], 1) << pdlType;
    }
}

TEST_F(ColorPreset, FourFeaturesAGroupAtMost) {
    DescriptionBuilder builder = ColorModel(kPdlPcl6);
    for (const size_t slot :
         {offsetof(DeviceModel, textColorFeatures), offsetof(DeviceModel, imageColorFeatures),
          offsetof(DeviceModel, graphicsColorFeatures), offsetof(DeviceModel, generalColorFeatures)}) {
        builder.Table(slot, std::vector<ColorFeatureRecord>(9, {1, 3}));
    }
    model_ = Load(builder.Build());
    Apply(1);
    EXPECT_EQ(UsedSlices().size(), 16u);
    EXPECT_EQ(ValueOf(devMode_.featureSelection[0]), 0);
}

// The built default device mode has the effect of its default colour mode.
TEST_F(ColorPreset, TheDefaultDeviceMode) {
    Install(ColorModel(kPdlPcl6).Build());
    constexpr struct {
        uint16_t mode;
        DWORD icmMethod;
        int sliceCount;
        int16_t firstTextOption;
    } kCases[] = {{0, 2, 0, 0}, {1, 1, 7, 0}, {2, 1, 4, 1}, {7, 1, 6, 0}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.mode);
        DescriptionBuilder builder = ColorModel(kPdlPcl6);
        builder.fields.defaultColorMode = c.mode;
        Describe(builder);
        VelmoraDevMode devMode;
        BuildDefaultDevMode(Printer(), kPrinterName, &devMode);
        EXPECT_EQ(ValueOf(devMode.publicPart.dmICMMethod), c.icmMethod);
        EXPECT_EQ(ValueOf(devMode.publicPart.dmFields), 0x380EF0Fu);
        EXPECT_EQ(ValueOf(devMode.privatePart.colorModeIndex), c.mode);
        EXPECT_EQ(ValueOf(devMode.privatePart.sliceCount), c.sliceCount);
        EXPECT_EQ(ValueOf(devMode.privatePart.textColorOptions[0]), c.firstTextOption);
    }
}

}  // namespace
}  // namespace velmora
