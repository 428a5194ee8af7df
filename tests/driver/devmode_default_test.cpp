#include "driver/devmode/default_devmode.h"

#include "driver/base/text.h"
#include "tests/driver/changed_devmode.h"
#include "tests/driver/machine.h"
#include "tools/velmora/devmode_differences.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

constexpr const char* kJobLine = "@PJL JOB NAME=\"!JOBNAME\"\r\n";
constexpr const char* kStartLine = "@PJL SET GUISTARTJOB=1\r\n";

void SetWide(WCHAR* text, size_t capacity, const char* ascii) {
    WidenText(text, capacity, ascii, strlen(ascii));
}

void SetJobStart(PrivateDevMode* own, const std::string& lines) {
    memset(own->pjlJobStart, 0, sizeof(own->pjlJobStart));
    CopyText(own->pjlJobStart, sizeof(own->pjlJobStart), lines.c_str());
}

// What a device mode holds that knows of no model.
VelmoraDevMode WithoutModel() {
    VelmoraDevMode devMode = With(
        {},
        "dmSpecVersion=0x401 dmDriverVersion=0x0A00 dmSize=220 dmDriverExtra=3868 dmFields=0xE70F dmOrientation=1 "
        "dmPaperSize=1 dmScale=100 dmCopies=1 dmTTOption=2 dmICMMethod=1 privateVersion=1 privateSignature=0xCACA "
        "defaultFontSize=10 resolutionId=600 scaleValue=-1 pagesPerSheet=1 frontCoverBin=261 frontCoverPaper=-1 "
        "frontCoverNup=1 frontCoverBothSides=1 backCoverBin=264 backCoverPaper=-1 backCoverBothSides=1 "
        "interleavePaper=-1 optionAreaOffset=332 optionFlags=0x00080200 nonPostScriptFlag=1 exceptionAreaOffset=1255 "
        "separatorBin=1025 separatorPaper=-1 sliceTableOffset=660 extensionTag=1 extensionMagicA=2033 "
        "extensionMagicB=15 uiFitToPaper=65535 uiZoomPercent=100 uiPageLayout=1 uiFlagD=1 uiChoice=1 customWidth=21000 "
        "customLength=29700 customUnit=1 colorPreset=1 colorRendering=1 colorAuto=1 colorChoiceA=1 colorChoiceB=3 "
        "colorFlagA=1 resolutionIndex=1 outputStep=8 finishSide=1 finishFlagC=1");
    PrivateDevMode& own = devMode.privatePart;
    SetWide(devMode.publicPart.dmDeviceName, ARRAYSIZE(devMode.publicPart.dmDeviceName), "Test Printer");
    SetWide(own.primaryFont, ARRAYSIZE(own.primaryFont), "Courier");
    SetWide(own.secondaryFont, ARRAYSIZE(own.secondaryFont), "Arial");
    CopyText(own.pjlJobEnd, sizeof(own.pjlJobEnd), "@PJL SET GUIENDJOB=1\r\n");
    own.objectColor[0].mode = 1;
    own.objectColor[1].mode = 3;
    own.objectColor[2].mode = 2;
    return devMode;
}

// What a device mode of SmallModel holds on every page description language, monochrome.
VelmoraDevMode OfSmallModel() {
    VelmoraDevMode devMode =
        With(WithoutModel(),
             "dmPaperSize=9 dmPaperWidth=2101 dmPaperLength=2971 dmDefaultSource=7 dmPrintQuality=1200 "
             "dmYResolution=600 defaultFontSize=12 resolutionId=1200 interleaveBin=7 separatorBin=7 mediaIndex=2 "
             "frontCoverMedia=2 backCoverMedia=2 interleaveMedia=2 separatorMedia=2 modelCode=0x4321 "
             "optionFlags=0x00080300");
    PrivateDevMode& own = devMode.privatePart;
    WideText path = InstalledPath(TEXT("KV62.XPI"));
    CharUpperW(path.data());
    CopyText<WCHAR>(own.descriptionPath, ARRAYSIZE(own.descriptionPath), path.c_str());
    SetWide(own.primaryFont, ARRAYSIZE(own.primaryFont), "CG Times");
    SetWide(own.secondaryFont, ARRAYSIZE(own.secondaryFont), "Univers");
    own.featureSelection[1] = -1;
    SetJobStart(&own, std::string(kJobLine) + kStartLine);
    return devMode;
}

// What is set on colour models.
constexpr const char* kInColor = "dmColor=2 dmFields=0x380EF0F dmICMIntent=2 dmMediaType=258 colorMode=1";

class DefaultDevMode : public MachineTest {
  protected:
    // What differs in the device mode that is built now.
    Texts DifferencesTo(const VelmoraDevMode& expected) { return DifferenceLines(expected, Build()); }

    const VelmoraDevMode& Build(const WCHAR* name = kPrinterName) {
        memset(&built_, 0x55, sizeof(built_));
        BuildDefaultDevMode(Printer(), name, &built_);
        return built_;
    }

    VelmoraDevMode built_;
};

TEST_F(DefaultDevMode, WithoutADescriptionFileThatCanBeLoaded) {
    Install("no description");
    VelmoraDevMode expected = WithoutModel();
    CopyText<WCHAR>(expected.privatePart.descriptionPath, 160, OfSmallModel().privatePart.descriptionPath);
    EXPECT_EQ(DifferencesTo(expected), Texts());
    SetString(Printer(), TEXT("XPI"), TEXT("missing"));
    EXPECT_EQ(DifferencesTo(WithoutModel()), Texts());
}

// What a kind of models changes in a small model, and in the device mode that is made of it.
TEST_F(DefaultDevMode, OfEveryKindOfModel) {
    const struct {
        const char* what;
        uint16_t pdlType, colorCapability;
        std::string settings;  // that differ
        const char* jobLine = kJobLine;
        void (*model)(DescriptionBuilder* builder) = [](DescriptionBuilder*) {};
    } cases[] = {
        {"monochrome PCL 6", kPdlPcl6, kColorNone, ""},
        {"colour PCL 6", kPdlPcl6, kColor, kInColor},
        {"colour of the second kind", kPdlPcl6, kColorSecondKind, "colorMode=42"},
        {"monochrome PostScript", kPdlPostScript, kColorNone, "nonPostScriptFlag=0 outputOption=2"},
        {"colour PostScript without job name", kPdlPostScript, kColor,
         std::string(kInColor) + " nonPostScriptFlag=0 noJobName=1 optionFlags=0x00080240", "",
         [](DescriptionBuilder* builder) {
             builder->fields.defaultOptionFlags = 1u << 6;
             builder->fields.jobNameFlags = 1u << 2;
         }},
        // Bit 6 means this on PostScript models only.
        {"job name shown", kPdlPcl6, kColorNone, "optionFlags=0x00080240", "@PJL JOB DISPLAY=\"!JOBNAME\"\r\n",
         [](DescriptionBuilder* builder) {
             builder->fields.defaultOptionFlags = 1u << 6;
             builder->fields.jobNameFlags = 1u << 2;
         }},
        {"colour image model", kPdlImage, kColor, "dmColor=2 dmFields=0xEF0F colorMode=1 imageMode=0x12345678",
         kJobLine,
         [](DescriptionBuilder* builder) {
             builder->fields.imageModeDefault = 0x12345678;
             builder->Table(offsetof(DeviceModel, colorModeTable),
                            std::vector<ColorModeRecord>{{kColorModeSystem, 0, -1}});
         }},
        {"monochrome image model", kPdlImage, kColorNone, "", kJobLine,
         [](DescriptionBuilder* builder) { builder->fields.imageModeDefault = 7; }},
    };
    Install(SmallModel(kPdlPcl6).Build());
    for (const bool isMetric : {true, false}) {  // A4 in any case, as the model has it
        machine_.SetMetric(isMetric);
        for (const auto& c : cases) {
            DescriptionBuilder builder = SmallModel(c.pdlType, c.colorCapability);
            c.model(&builder);
            Describe(builder);
            VelmoraDevMode expected = With(OfSmallModel(), c.settings);
            SetJobStart(&expected.privatePart, std::string(c.jobLine) + kStartLine);
            EXPECT_EQ(DifferencesTo(expected), Texts()) << c.what;
        }
    }
}

// Patterns are those of the default resolution, everything else of the second.
TEST_F(DefaultDevMode, MonochromePcl5HasPatterns) {
    DescriptionBuilder builder = SmallModel(kPdlPcl5);
    builder.AddFont("font");
    builder.AddFont("font");
    DriverPackage package = PackageOf(builder.Build());
    package.dependent.push_back(package.data);
    package.data = {TEXT("KV62.DAT"), std::string(5000, 'd')};
    Install(package);
    VelmoraDevMode expected = OfSmallModel();
    PrivateDevMode& own = expected.privatePart;
    own.patternMode = 2;
    own.patternSize = 8;
    own.patternOffset = 5000 + 32;  // behind the 32 bytes in front of the block
    own.fontRecordCount = 2;
    own.fontDataOffset = 5000 + 32 * 8 * 8 + 32 * 16 * 16;
    EXPECT_EQ(DifferencesTo(expected), Texts());

    // Once the patterns and fonts are in the file, the size that it had before counts.
    const DWORD baseSize = 3000;
    SetData(Printer(), TEXT("BasePDFSize"), REG_DWORD, &baseSize, sizeof(baseSize));
    own.patternOffset = own.patternOffset - 2000;
    own.fontDataOffset = own.fontDataOffset - 2000;
    EXPECT_EQ(DifferencesTo(expected), Texts());

    for (const int16_t resolution : {2, 3, -1, 32767}) {  // has none, or isn't there
        builder.fields.defaultResolution = resolution;
        Describe(builder);
        own.patternMode = 0;
        own.patternSize = 0;
        own.patternOffset = 0;
        EXPECT_EQ(DifferencesTo(expected), Texts()) << resolution;
    }
    Describe(SmallModel(kPdlPcl5, kColor));
    expected = With(OfSmallModel(), kInColor);
    expected.privatePart.fontDataOffset = 3000;
    EXPECT_EQ(DifferencesTo(expected), Texts());
}

// A model's own resolution is taken where there is no second one, and nothing where there is none.
TEST_F(DefaultDevMode, ModelsWithFewResolutions) {
    Install(SmallModel(kPdlPcl5).Build());
    for (const bool hasOne : {true, false}) {
        ResolutionRecord record = {};
        record.mark = hasOne;
        record.resolutionId = 300;
        record.xDpi = 300;
        record.yDpi = 150;
        DescriptionBuilder builder = SmallModel(kPdlPcl5);
        builder.Table(offsetof(DeviceModel, resolutionTable), std::vector{record});
        Describe(builder);
        VelmoraDevMode expected = OfSmallModel();
        expected = With(expected, hasOne ? "dmPrintQuality=300 dmYResolution=150 resolutionId=300 resolutionIndex=0"
                                         : "dmPrintQuality=0 dmYResolution=0 resolutionId=600 resolutionIndex=1");
        EXPECT_EQ(DifferencesTo(expected), Texts()) << hasOne;
    }
}

// Features without options count down; there is room for 32.
TEST_F(DefaultDevMode, Features) {
    Install(SmallModel(kPdlPcl6).Build());
    for (const uint16_t pdlType : {kPdlPcl6, kPdlImage}) {
        // Options: 0 and 1 a feature's two, 2 its end, 3 an empty run, 4 a feature's one, 5 its end.
        DescriptionBuilder builder = SmallModel(pdlType);
        builder.Bytes(offsetof(DeviceModel, optionTable), OptionBytes({1, 1, 0, 0, 1, 0}, pdlType));
        std::vector<FeatureRecord> features;
        VelmoraDevMode expected = OfSmallModel();
        int i = 0;
        for (const auto& [first, selected] : {std::pair(0, 0), {3, -1}, {4, 0}, {5, -2}, {-1, -3}, {32767, -4}}) {
            features.push_back({1, 0, 0, static_cast<int16_t>(first), 0});
            expected.privatePart.featureSelection[i++] = static_cast<int16_t>(selected);
        }
        builder.Table(offsetof(DeviceModel, featureTable), features);
        Describe(builder);
        EXPECT_EQ(DifferencesTo(expected), Texts()) << pdlType;
    }
    DescriptionBuilder builder = SmallModel(kPdlPcl6);
    builder.Table(offsetof(DeviceModel, featureTable), std::vector<FeatureRecord>(40, {1, 0, 0, 3, 0}));
    Describe(builder);
    VelmoraDevMode expected = OfSmallModel();
    for (int i = 0; i < 32; ++i) {
        expected.privatePart.featureSelection[i] = static_cast<int16_t>(-1 - i);
    }
    EXPECT_EQ(DifferencesTo(expected), Texts());
}

// Where the model's tables don't hold what its fields name.
TEST_F(DefaultDevMode, PapersMediaAndColourModesThatAreMissing) {
    machine_.SetMetric(false);
    Install(SmallModel(kPdlPcl6, kColor).Build());
    VelmoraDevMode expected = With(OfSmallModel(), kInColor);
    expected.publicPart.dmPaperWidth = 2159;
    expected.publicPart.dmPaperLength = 2794;
    expected.publicPart.dmMediaType = 1;
    for (const uint16_t medium : {2, 0, 3, 0xFFFF}) {
        DescriptionBuilder builder = SmallModel(kPdlPcl6, kColor);
        builder.SetSlot(offsetof(DeviceModel, paperTable), 0);
        if (medium == 2) {
            builder.SetSlot(offsetof(DeviceModel, mediaTable), 0);
        }
        builder.fields.defaultMedia = medium;
        builder.fields.defaultColorMode = medium;
        Describe(builder);
        PrivateDevMode& own = expected.privatePart;
        const auto index = static_cast<int16_t>(medium);
        own.mediaIndex = own.frontCoverMedia = own.backCoverMedia = own.interleaveMedia = own.separatorMedia = index;
        own.colorModeIndex = index;
        EXPECT_EQ(DifferencesTo(expected), Texts()) << medium;
    }
}

TEST_F(DefaultDevMode, NamesAreCutToTheirFields) {
    DescriptionBuilder builder = SmallModel(kPdlPcl6);
    builder.Text(offsetof(DeviceModel, defaultFontA), std::string(40, 'A'));
    builder.SetSlot(offsetof(DeviceModel, defaultFontB), 0);
    Install(builder.Build());
    Build(TEXT("\\\\SERVER\\A printer with a name of more than 31 characters,Local"));
    EXPECT_EQ(ToText(built_.publicPart.dmDeviceName), "A printer with a name of more t");
    EXPECT_EQ(ToText(built_.privatePart.primaryFont), std::string(31, 'A'));
    EXPECT_EQ(ToText(built_.privatePart.secondaryFont), "Arial");
}

}  // namespace
}  // namespace velmora
