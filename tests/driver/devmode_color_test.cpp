#include "driver/devmode/color_preset.h"

#include <cstring>
#include <vector>

#include "driver/devdesc/description_file.h"
#include "driver/devmode/default_devmode.h"
#include "tests/driver/description_builder.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

// Values of the four groups' features. A slice has one pair, a value that fills its group's pairs two.
ColorValueRecord Slice(uint16_t start, uint16_t length) {
    return {1, start, length, 0, 0};
}
ColorValueRecord Pairs(uint16_t first, uint16_t second, uint16_t third, uint16_t fourth) {
    return {1, first, second, third, fourth};
}

constexpr ColorModeRecord kModes[] = {
    {kColorModeSystem, 1, -1},                         // 0
    {kColorModeManual, 1, 0},                          // 1: manual, its settings don't count
    {kColorModeHasDefaults, 1, 0},                     // 2
    {kColorModeHasDefaults | kColorModeManual, 1, 0},  // 3: manual too
    {1, 1, 0},                                         // 4: nothing
    {kColorModeHasDefaults, 1, -1},                    // 5: no settings of its own
    {kColorModeHasDefaults, 1, 5},                     // 6
    {kColorModeHasDefaults | kColorModeSystem, 1, 5},  // 7
};

class ColorPreset : public MachineTest {
  protected:
    static DescriptionBuilder ColorModel(uint16_t pdlType) {
        DescriptionBuilder builder = SmallModel(pdlType, kColor);
        builder.Table(offsetof(DeviceModel, colorModeTable),
                      std::vector<ColorModeRecord>(std::begin(kModes), std::end(kModes)));
        builder.Table(offsetof(DeviceModel, presetSettings), std::vector<PresetSettingRecord>{
                                                                 {1, 0, 1},
                                                                 {2, 0, 1},
                                                                 {3, 1, 1},
                                                                 {4, 0, 1},
                                                                 {},
                                                                 {1, 1, 1},
                                                                 {5, 0, 1},  // no such group
                                                                 {-1, 0, 1},
                                                                 {1, 4, 1},  // no such feature
                                                                 {1, -1, 1},
                                                                 {4, 1, 99},  // no such value
                                                             });
        builder.Table(offsetof(DeviceModel, colorOptionValues), std::vector<ColorValueRecord>{
                                                                    Slice(10, 1),           // 0: text, feature 0
                                                                    Pairs(11, 12, 13, 14),  // 1
                                                                    {},                     // 2
                                                                    Slice(20, 2),           // 3: text, feature 1
                                                                    Slice(21, 0x1FFF),      // 4
                                                                    {},                     // 5
                                                                    Slice(30, 3),           // 6: image, feature 0
                                                                    Pairs(31, 32, 33, 34),  // 7
                                                                    {},                     // 8
                                                                    Slice(40, 4),           // 9: graphics, feature 0
                                                                    {},                     // 10
                                                                    Slice(50, 5),           // 11: graphics, feature 1
                                                                    Pairs(51, 52, 53, 54),  // 12
                                                                    {},                     // 13
                                                                    Slice(60, 6),           // 14: general, feature 0
                                                                    Pairs(61, 62, 63, 64),  // 15
                                                                    {},                     // 16
                                                                    Slice(70, 7),           // 17: general, feature 1
                                                                });
        builder.Table(offsetof(DeviceModel, textColorFeatures), std::vector<ColorFeatureRecord>{{1, 0}, {1, 3}});
        builder.Table(offsetof(DeviceModel, imageColorFeatures), std::vector<ColorFeatureRecord>{{1, 6}});
        builder.Table(offsetof(DeviceModel, graphicsColorFeatures), std::vector<ColorFeatureRecord>{{1, 9}, {1, 11}});
        builder.Table(offsetof(DeviceModel, generalColorFeatures), std::vector<ColorFeatureRecord>{{1, 14}, {1, 17}});
        return builder;
    }

    void LoadModel(const DescriptionBuilder& builder) {
        WriteDriveFile(u"C:\\test.xpi", builder.Build());
        const OwnedFile file(CreateFileW(TEXT("C:\\test.xpi"), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                         FILE_ATTRIBUTE_NORMAL, nullptr));
        model_ = LoadDeviceModel(file.Get());
        ASSERT_TRUE(model_);
    }

    void TearDown() override {
        model_.Reset(nullptr);
        MachineTest::TearDown();
    }

    // "start+length" of each slice in use, and what is in the others where anything is.
    static std::vector<std::string> Slices(const PrivateDevMode& devMode) {
        std::vector<std::string> slices;
        for (int i = 0; i < 16; ++i) {
            const BlobSlice& slice = devMode.blobSlices[i];
            if (i < devMode.sliceCount) {
                slices.push_back(std::to_string(slice.start) + "+" + std::to_string(slice.length));
            } else {
                EXPECT_EQ(ValueOf(slice.start), 0) << i;
                EXPECT_EQ(ValueOf(slice.length), 0) << i;
            }
        }
        return slices;
    }
    static std::vector<int> Pairs6(const PrivateDevMode& devMode) {
        std::vector<int> pairs;
        for (const BlobRef& pair : devMode.blobRefs) {
            pairs.insert(pairs.end(), {pair.first, pair.second});
        }
        return pairs;
    }

    const PrivateDevMode& Apply(uint16_t mode) {
        memset(&devMode_.blobRefs, 0x77, sizeof(devMode_.blobRefs));
        memset(&devMode_.blobSlices, 0, sizeof(devMode_.blobSlices));
        devMode_.sliceCount = 0;
        ApplyColorModeSelections(*model_, mode, &devMode_);
        return devMode_;
    }

    bool NothingCompiled() const { return devMode_.blobRefs[0].first == 0x7777 && devMode_.sliceCount == 0; }

    using Texts = std::vector<std::string>;
    using Numbers = std::vector<int>;

    PrivateDevMode devMode_ = {};
    HeapOwner<DeviceModel> model_;
};

TEST_F(ColorPreset, SystemModesAndOthersWithoutValuesChangeNothing) {
    LoadModel(ColorModel(kPdlPcl6));
    for (const uint16_t mode : {0, 4, 8, 0xFFFF}) {
        Apply(mode);
        EXPECT_TRUE(NothingCompiled()) << mode;
        EXPECT_EQ(ValueOf(devMode_.textColorOptions[0]), 0) << mode;
    }
}

TEST_F(ColorPreset, ManualModesCompileWhatIsSelected) {
    LoadModel(ColorModel(kPdlPcl6));
    for (const uint16_t mode : {1, 3}) {
        Apply(mode);
        EXPECT_EQ(Slices(devMode_),
                  Texts({std::to_string(10) + "+" + std::to_string(0x8001), "20+" + std::to_string(0x8002),
                         "30+" + std::to_string(0x4003), "40+" + std::to_string(0x2004), "50+" + std::to_string(0x2005),
                         "60+6", "70+7"}));
        EXPECT_EQ(Pairs6(devMode_), Numbers(12, 0));
        EXPECT_EQ(ValueOf(devMode_.textColorOptions[0]), 0);
    }
}

// Preset settings count groups text, image, graphics, general; the device mode holds them in another order.
TEST_F(ColorPreset, ModesWithDefaultsSelectAndCompile) {
    LoadModel(ColorModel(kPdlPcl6));
    Apply(2);
    EXPECT_EQ(ValueOf(devMode_.textColorOptions[0]), 1);
    EXPECT_EQ(ValueOf(devMode_.textColorOptions[1]), 0);
    EXPECT_EQ(ValueOf(devMode_.imageColorOptions[0]), 1);
    EXPECT_EQ(ValueOf(devMode_.graphicsColorOptions[0]), 0);
    EXPECT_EQ(ValueOf(devMode_.graphicsColorOptions[1]), 1);
    EXPECT_EQ(ValueOf(devMode_.generalColorOptions[0]), 1);
    EXPECT_EQ(Pairs6(devMode_), Numbers({11, 12, 31, 32, 51, 52, 13, 14, 33, 34, 53, 54}));
    EXPECT_EQ(Slices(devMode_),
              Texts({"20+" + std::to_string(0x8002), "40+" + std::to_string(0x2004), "61+62", "70+7"}));
}

TEST_F(ColorPreset, SettingsOutsideTheModelAreLeftOut) {
    LoadModel(ColorModel(kPdlPcl6));
    for (const uint16_t mode : {6, 7}) {
        devMode_ = {};
        Apply(mode);
        EXPECT_EQ(ValueOf(devMode_.textColorOptions[0]), 0);
        EXPECT_EQ(ValueOf(devMode_.textColorOptions[1]), 1);
        EXPECT_EQ(ValueOf(devMode_.generalColorOptions[1]), 99);
        // The value that there isn't gives nothing; the rest is compiled.
        EXPECT_EQ(Slices(devMode_),
                  Texts({"10+" + std::to_string(0x8001), "21+" + std::to_string(0x9FFF), "30+" + std::to_string(0x4003),
                         "40+" + std::to_string(0x2004), "50+" + std::to_string(0x2005), "60+6"}));
    }
}

TEST_F(ColorPreset, AModeWithoutSettingsCompilesOnly) {
    LoadModel(ColorModel(kPdlPcl6));
    devMode_.generalColorOptions[0] = 1;
    Apply(5);
    EXPECT_EQ(ValueOf(devMode_.textColorOptions[0]), 0);
    EXPECT_EQ(ValueOf(devMode_.sliceCount), 7);
    EXPECT_EQ(ValueOf(devMode_.blobSlices[5].start), 61);
}

TEST_F(ColorPreset, OnlyLanguagesWithColourCommandsCompile) {
    LoadModel(ColorModel(kPdlPcl6));
    for (const uint16_t pdlType : {kPdlPcl6, kPdlPcl5, kPdlPostScript, kPdlImage, kPdlXps, kPdlOwn}) {
        model_->pdlType = pdlType;
        devMode_ = {};
        Apply(2);
        EXPECT_EQ(NothingCompiled(), pdlType > kPdlPostScript) << pdlType;
        EXPECT_EQ(ValueOf(devMode_.textColorOptions[0]), 1) << pdlType;
    }
}

TEST_F(ColorPreset, FourFeaturesAGroupAtMost) {
    DescriptionBuilder builder = ColorModel(kPdlPcl6);
    for (const size_t slot :
         {offsetof(DeviceModel, textColorFeatures), offsetof(DeviceModel, imageColorFeatures),
          offsetof(DeviceModel, graphicsColorFeatures), offsetof(DeviceModel, generalColorFeatures)}) {
        builder.Table(slot, std::vector<ColorFeatureRecord>(9, {1, 3}));
    }
    LoadModel(builder);
    Apply(1);
    EXPECT_EQ(ValueOf(devMode_.sliceCount), 16);
    EXPECT_EQ(ValueOf(devMode_.featureSelection[0]), 0);
}

TEST_F(ColorPreset, HostileSelectionsGiveNothing) {
    LoadModel(ColorModel(kPdlPcl6));
    for (const int16_t selection : {int16_t{-1}, int16_t{-32768}, int16_t{32767}, int16_t{20}}) {
        devMode_.textColorOptions[0] = selection;
        devMode_.generalColorOptions[1] = selection;
        Apply(1);
        EXPECT_EQ(Slices(devMode_).front(), "20+" + std::to_string(0x8002)) << selection;
    }
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
        DescriptionBuilder builder = ColorModel(kPdlPcl6);
        builder.fields.defaultColorMode = c.mode;
        WriteDriveFile(InstalledPath(u"KV62.XPI"), builder.Build());
        VelmoraDevMode devMode;
        BuildDefaultDevMode(Printer(), kPrinterName, &devMode);
        EXPECT_EQ(ValueOf(devMode.publicPart.dmICMMethod), c.icmMethod) << c.mode;
        EXPECT_EQ(ValueOf(devMode.publicPart.dmFields), 0x380EF0Fu) << c.mode;
        EXPECT_EQ(ValueOf(devMode.privatePart.colorModeIndex), c.mode);
        EXPECT_EQ(ValueOf(devMode.privatePart.sliceCount), c.sliceCount) << c.mode;
        EXPECT_EQ(ValueOf(devMode.privatePart.textColorOptions[0]), c.firstTextOption) << c.mode;
    }
}

}  // namespace
}  // namespace velmora
