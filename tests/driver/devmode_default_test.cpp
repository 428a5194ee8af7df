#include "driver/devmode/default_devmode.h"

#include <cstring>
#include <string>
#include <vector>

#include "driver/base/text.h"
#include "driver/devmode/devmode_fields.h"
#include "tests/driver/description_builder.h"
#include "tests/driver/devmode_differences.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

using Lines = std::vector<std::string>;

constexpr const char* kNameLine = "@PJL JOB NAME=\"!JOBNAME\"\r\n";
constexpr const char* kStartLine = "@PJL SET GUISTARTJOB=1\r\n";

void SetWide(WCHAR* text, size_t capacity, const char* ascii) {
    WidenText(text, capacity, ascii, strlen(ascii));
}

// What a device mode holds that knows of no model.
VelmoraDevMode WithoutModel() {
    VelmoraDevMode devMode = {};
    DEVMODEW& open = devMode.publicPart;
    SetWide(open.dmDeviceName, ARRAYSIZE(open.dmDeviceName), "Test Printer");
    open.dmSpecVersion = 0x401;
    open.dmDriverVersion = 0x0A00;
    open.dmSize = 220;
    open.dmDriverExtra = 3868;
    open.dmFields = 0xE70F;
    open.dmOrientation = 1;
    open.dmPaperSize = 1;
    open.dmScale = 100;
    open.dmCopies = 1;
    open.dmTTOption = 2;
    open.dmICMMethod = 1;

    PrivateDevMode& own = devMode.privatePart;
    own.privateVersion = 1;
    own.privateSignature = 0xCACA;
    SetWide(own.primaryFont, ARRAYSIZE(own.primaryFont), "Courier");
    SetWide(own.secondaryFont, ARRAYSIZE(own.secondaryFont), "Arial");
    own.defaultFontSize = 10;
    own.resolutionId = 600;
    own.scaleValue = -1;
    own.pagesPerSheet = 1;
    own.frontCoverBin = 261;
    own.frontCoverPaper = -1;
    own.frontCoverNup = 1;
    own.frontCoverBothSides = 1;
    own.backCoverBin = 264;
    own.backCoverPaper = -1;
    own.interleavePaper = -1;
    CopyText(own.pjlJobEnd, sizeof(own.pjlJobEnd), "@PJL SET GUIENDJOB=1\r\n");
    own.optionAreaOffset = 332;
    own.backCoverBothSides = 1;
    own.optionFlags = 0x00080200;
    own.nonPostScriptFlag = 1;
    own.exceptionAreaOffset = 1255;
    own.separatorBin = 1025;
    own.separatorPaper = -1;
    own.sliceTableOffset = 660;
    own.extensionTag = 1;
    own.extensionMagicA = 2033;
    own.extensionMagicB = 15;
    own.uiFitToPaper = 65535;
    own.uiZoomPercent = 100;
    own.uiPageLayout = 1;
    own.uiFlagD = 1;
    own.uiChoice = 1;
    own.customWidth = 21000;
    own.customLength = 29700;
    own.customUnit = 1;
    own.colorPreset = 1;
    own.colorRendering = 1;
    own.colorAuto = 1;
    own.colorChoiceA = 1;
    own.colorChoiceB = 3;
    own.colorFlagA = 1;
    own.resolutionIndex = 1;
    own.objectColor[0].mode = 1;
    own.objectColor[1].mode = 3;
    own.objectColor[2].mode = 2;
    own.outputStep = 8;
    own.finishSide = 1;
    own.finishFlagC = 1;
    return devMode;
}

// What a device mode of SmallModel holds on every page description language, monochrome.
VelmoraDevMode OfSmallModel() {
    VelmoraDevMode devMode = WithoutModel();
    DEVMODEW& open = devMode.publicPart;
    open.dmPaperSize = 9;
    open.dmPaperWidth = 2101;
    open.dmPaperLength = 2971;
    open.dmDefaultSource = 7;
    open.dmPrintQuality = 1200;
    open.dmYResolution = 600;
    PrivateDevMode& own = devMode.privatePart;
    WideText path = InstalledPath(u"KV62.XPI");
    CharUpperW(path.data());
    CopyText<WCHAR>(own.descriptionPath, ARRAYSIZE(own.descriptionPath), path.c_str());
    SetWide(own.primaryFont, ARRAYSIZE(own.primaryFont), "CG Times");
    SetWide(own.secondaryFont, ARRAYSIZE(own.secondaryFont), "Univers");
    own.defaultFontSize = 12;
    own.resolutionId = 1200;
    own.interleaveBin = 7;
    own.separatorBin = 7;
    own.mediaIndex = 2;
    own.frontCoverMedia = 2;
    own.backCoverMedia = 2;
    own.interleaveMedia = 2;
    own.separatorMedia = 2;
    own.modelCode = 0x4321;
    own.optionFlags = 0x00080300;
    own.featureSelection[1] = -1;
    CopyText(own.pjlJobStart, sizeof(own.pjlJobStart), kNameLine);
    AppendText(own.pjlJobStart, sizeof(own.pjlJobStart), kStartLine);
    return devMode;
}

void AddColor(VelmoraDevMode* devMode) {
    devMode->publicPart.dmColor = 2;
    devMode->publicPart.dmFields = 0x380EF0F;
    devMode->publicPart.dmICMIntent = 2;
    devMode->publicPart.dmMediaType = 258;
    devMode->privatePart.colorMode = 1;
}

class DefaultDevMode : public MachineTest {
  protected:
    const VelmoraDevMode& Build(const WCHAR* name = kPrinterName) {
        memset(&built_, 0x55, sizeof(built_));
        BuildDefaultDevMode(Printer(), name, &built_);
        return built_;
    }

    const VelmoraDevMode& BuildFor(const DescriptionBuilder& builder) {
        Install(builder.Build());
        return Build();
    }

    VelmoraDevMode built_;
};

TEST_F(DefaultDevMode, WithoutADescriptionFile) {
    Install("");
    EXPECT_EQ(Differences(WithoutModel(), Build()), Lines());
}

TEST_F(DefaultDevMode, WithADescriptionFileThatCannotBeLoaded) {
    Install("no description");
    VelmoraDevMode expected = WithoutModel();
    CopyText<WCHAR>(expected.privatePart.descriptionPath, 160, OfSmallModel().privatePart.descriptionPath);
    EXPECT_EQ(Differences(expected, Build()), Lines());
}

TEST_F(DefaultDevMode, MonochromePcl6) {
    EXPECT_EQ(Differences(OfSmallModel(), BuildFor(SmallModel(kPdlPcl6))), Lines());
}

TEST_F(DefaultDevMode, ColourPcl6) {
    VelmoraDevMode expected = OfSmallModel();
    AddColor(&expected);
    EXPECT_EQ(Differences(expected, BuildFor(SmallModel(kPdlPcl6, kColor))), Lines());
}

TEST_F(DefaultDevMode, ColourOfTheSecondKind) {
    VelmoraDevMode expected = OfSmallModel();
    expected.privatePart.colorMode = 42;
    EXPECT_EQ(Differences(expected, BuildFor(SmallModel(kPdlPcl6, kColorSecondKind))), Lines());
}

// Patterns are those of the default resolution, everything else of the second.
TEST_F(DefaultDevMode, MonochromePcl5HasPatterns) {
    DescriptionBuilder builder = SmallModel(kPdlPcl5);
    builder.AddFont("font");
    builder.AddFont("font");
    DriverPackage package = PackageOf("");
    package.data = {u"KV62.DAT", std::string(5000, 'd')};
    package.dependent.push_back({u"KV62.XPI", builder.Build()});
    Install(package);
    VelmoraDevMode expected = OfSmallModel();
    expected.privatePart.patternMode = 2;
    expected.privatePart.patternSize = 8;
    expected.privatePart.patternOffset = 5000 + 32;  // behind the 32 bytes in front of the block
    expected.privatePart.fontRecordCount = 2;
    expected.privatePart.fontDataOffset = 5000 + 32 * 8 * 8 + 32 * 16 * 16;
    EXPECT_EQ(Differences(expected, Build()), Lines());

    // Once the patterns and fonts are in the file, the size that it had before counts.
    const DWORD baseSize = 3000;
    SetData(Printer(), u"BasePDFSize", REG_DWORD, &baseSize, sizeof(baseSize));
    expected.privatePart.patternOffset = 3000 + 32;
    expected.privatePart.fontDataOffset = 3000 + 32 * 8 * 8 + 32 * 16 * 16;
    EXPECT_EQ(Differences(expected, Build()), Lines());
}

TEST_F(DefaultDevMode, OtherModelsHaveNoPatterns) {
    DriverPackage package = PackageOf("");
    package.data = {u"KV62.DAT", std::string(5000, 'd')};
    package.dependent.push_back({u"KV62.XPI", SmallModel(kPdlPcl5, kColor).Build()});
    Install(package);
    VelmoraDevMode expected = OfSmallModel();
    AddColor(&expected);
    expected.privatePart.fontDataOffset = 5000;
    EXPECT_EQ(Differences(expected, Build()), Lines());
}

TEST_F(DefaultDevMode, PatternsOfADefaultResolutionThatHasNone) {
    Install(SmallModel(kPdlPcl5).Build());
    for (const int16_t resolution : {2, 3, -1, 32767}) {
        DescriptionBuilder builder = SmallModel(kPdlPcl5);
        builder.fields.defaultResolution = resolution;
        WriteDriveFile(InstalledPath(u"KV62.XPI"), builder.Build());
        Build();
        EXPECT_EQ(ValueOf(built_.privatePart.patternMode), 0u) << resolution;
        EXPECT_EQ(ValueOf(built_.privatePart.patternSize), 0u) << resolution;
        EXPECT_EQ(ValueOf(built_.privatePart.patternOffset), 0u) << resolution;
        EXPECT_EQ(ValueOf(built_.privatePart.fontDataOffset), 32u * 8 * 8 + 32 * 16 * 16) << resolution;
    }
}

TEST_F(DefaultDevMode, MonochromePostScript) {
    VelmoraDevMode expected = OfSmallModel();
    expected.privatePart.nonPostScriptFlag = 0;
    expected.privatePart.outputOption = 2;
    EXPECT_EQ(Differences(expected, BuildFor(SmallModel(kPdlPostScript))), Lines());
}

TEST_F(DefaultDevMode, ColourPostScriptWithoutJobName) {
    DescriptionBuilder builder = SmallModel(kPdlPostScript, kColor);
    builder.fields.defaultOptionFlags = 1u << 6;
    builder.fields.jobNameFlags = 1u << 2;
    VelmoraDevMode expected = OfSmallModel();
    Install(builder.Build());
    AddColor(&expected);
    PrivateDevMode& own = expected.privatePart;
    own.nonPostScriptFlag = 0;
    own.noJobName = 1;
    own.optionFlags = 0x00080240;
    memset(own.pjlJobStart, 0, sizeof(own.pjlJobStart));
    CopyText(own.pjlJobStart, sizeof(own.pjlJobStart), kStartLine);
    EXPECT_EQ(Differences(expected, Build()), Lines());
}

// Bit 6 means this on PostScript models only.
TEST_F(DefaultDevMode, JobNameLines) {
    DescriptionBuilder builder = SmallModel(kPdlPcl6);
    builder.fields.defaultOptionFlags = 1u << 6;
    builder.fields.jobNameFlags = 1u << 2;
    BuildFor(builder);
    EXPECT_EQ(ValueOf(built_.privatePart.noJobName), 0);
    EXPECT_EQ(std::string(built_.privatePart.pjlJobStart),
              std::string("@PJL JOB DISPLAY=\"!JOBNAME\"\r\n") + kStartLine);
}

TEST_F(DefaultDevMode, ColourImageModel) {
    DescriptionBuilder builder = SmallModel(kPdlImage, kColor);
    builder.fields.imageModeDefault = 0x12345678;
    const ColorModeRecord system = {kColorModeSystem, 0, -1};
    builder.Table(offsetof(DeviceModel, colorModeTable), std::vector<ColorModeRecord>{system});
    VelmoraDevMode expected = OfSmallModel();
    Install(builder.Build());
    expected.publicPart.dmColor = 2;
    expected.publicPart.dmFields = 0xEF0F;
    expected.privatePart.colorMode = 1;
    expected.privatePart.imageMode = 0x12345678;
    EXPECT_EQ(Differences(expected, Build()), Lines());
}

TEST_F(DefaultDevMode, MonochromeImageModelHasNoImageMode) {
    DescriptionBuilder builder = SmallModel(kPdlImage);
    builder.fields.imageModeDefault = 7;
    EXPECT_EQ(Differences(OfSmallModel(), BuildFor(builder)), Lines());
}

// A model's own resolution is taken where there is no second one, and nothing where there is none.
TEST_F(DefaultDevMode, ModelsWithFewResolutions) {
    Install(SmallModel(kPdlPcl5).Build());
    for (const size_t count : {1u, 0u}) {
        DescriptionBuilder builder = SmallModel(kPdlPcl5);
        std::vector<ResolutionRecord> resolutions(count);
        for (ResolutionRecord& record : resolutions) {
            record.mark = 1;
            record.resolutionId = 300;
            record.xDpi = 300;
            record.yDpi = 150;
        }
        builder.Table(offsetof(DeviceModel, resolutionTable), resolutions);
        WriteDriveFile(InstalledPath(u"KV62.XPI"), builder.Build());
        VelmoraDevMode expected = OfSmallModel();
        expected.publicPart.dmPrintQuality = count == 1 ? 300 : 0;
        expected.publicPart.dmYResolution = count == 1 ? 150 : 0;
        expected.privatePart.resolutionId = count == 1 ? 300 : 600;
        expected.privatePart.resolutionIndex = count == 1 ? 0 : 1;
        EXPECT_EQ(Differences(expected, Build()), Lines()) << count;
    }
}

TEST_F(DefaultDevMode, FeaturesWithoutOptionsCountDown) {
    Install(SmallModel(kPdlPcl6).Build());
    for (const uint16_t pdlType : {kPdlPcl6, kPdlImage}) {
        // Options: 0 and 1 a feature's two, 2 its end, 3 an empty run, 4 a feature's one, 5 its end.
        DescriptionBuilder builder = SmallModel(pdlType);
        std::string options;
        for (const uint16_t nameRef : {1, 1, 0, 0, 1, 0}) {
            const OptionRecord record = {nameRef, 1, 1};
            options.append(reinterpret_cast<const char*>(&record), sizeof(record));
            options.resize(options.size() + (pdlType == kPdlImage ? 2 : 0));
        }
        builder.Bytes(offsetof(DeviceModel, optionTable), options);
        std::vector<FeatureRecord> features;
        for (const int16_t first : {0, 3, 4, 5, -1, 32767}) {
            features.push_back({1, 0, 0, first, 0});
        }
        builder.Table(offsetof(DeviceModel, featureTable), features);
        WriteDriveFile(InstalledPath(u"KV62.XPI"), builder.Build());
        VelmoraDevMode expected = OfSmallModel();
        const int selections[] = {0, 65535, 0, 65534, 65533, 65532};
        for (size_t i = 0; i < std::size(selections); ++i) {
            expected.privatePart.featureSelection[i] = static_cast<int16_t>(selections[i]);
        }
        EXPECT_EQ(Differences(expected, Build()), Lines()) << pdlType;
    }
}

TEST_F(DefaultDevMode, MoreFeaturesThanThereIsRoomFor) {
    DescriptionBuilder builder = SmallModel(kPdlPcl6);
    builder.Table(offsetof(DeviceModel, featureTable), std::vector<FeatureRecord>(40, {1, 0, 0, 3, 0}));
    BuildFor(builder);
    EXPECT_EQ(ValueOf(built_.privatePart.featureSelection[31]), static_cast<int16_t>(65535 - 31));
    EXPECT_EQ(ValueOf(built_.privatePart.extraKeywordIndex), 0);
    EXPECT_EQ(ValueOf(built_.privatePart.extraFlag), 0);
}

TEST_F(DefaultDevMode, A4OnALetterLocale) {
    machine_.SetMetric(false);
    EXPECT_EQ(Differences(OfSmallModel(), BuildFor(SmallModel(kPdlPcl6))), Lines());
}

TEST_F(DefaultDevMode, ALetterLocaleWithoutPapers) {
    machine_.SetMetric(false);
    DescriptionBuilder builder = SmallModel(kPdlPcl6);
    builder.SetSlot(offsetof(DeviceModel, paperTable), 0);
    BuildFor(builder);
    EXPECT_EQ(ValueOf(built_.publicPart.dmPaperSize), 9);
    EXPECT_EQ(ValueOf(built_.publicPart.dmPaperWidth), 2159);
    EXPECT_EQ(ValueOf(built_.publicPart.dmPaperLength), 2794);
}

// dmMediaType and dmICMMethod where the model's tables don't hold what its fields name.
TEST_F(DefaultDevMode, MediaAndColourModesOutOfRange) {
    Install(SmallModel(kPdlPcl6, kColor).Build());
    for (const uint16_t medium : {0, 3, 0xFFFF}) {
        DescriptionBuilder builder = SmallModel(kPdlPcl6, kColor);
        builder.fields.defaultMedia = medium;
        builder.fields.defaultColorMode = medium;
        WriteDriveFile(InstalledPath(u"KV62.XPI"), builder.Build());
        Build();
        EXPECT_EQ(ValueOf(built_.publicPart.dmMediaType), 1u) << medium;
        EXPECT_EQ(ValueOf(built_.publicPart.dmICMMethod), 1u) << medium;
        EXPECT_EQ(ValueOf(built_.privatePart.mediaIndex), static_cast<int16_t>(medium));
        EXPECT_EQ(ValueOf(built_.privatePart.colorModeIndex), static_cast<int16_t>(medium));
    }
    DescriptionBuilder builder = SmallModel(kPdlPcl6, kColor);
    builder.SetSlot(offsetof(DeviceModel, mediaTable), 0);
    WriteDriveFile(InstalledPath(u"KV62.XPI"), builder.Build());
    EXPECT_EQ(ValueOf(Build().publicPart.dmMediaType), 1u);
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
    EXPECT_EQ(Build(TEXT("Short,Local")).publicPart.dmDeviceName[5], 0);
}

}  // namespace
}  // namespace velmora
