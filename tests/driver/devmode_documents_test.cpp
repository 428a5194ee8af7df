#include "driver/base/text.h"
#include "driver/devmode/default_devmode.h"
#include "driver/devmode/devmode_adjustments.h"
#include "driver/devmode/devmode_fields.h"
#include "driver/devmode/document_properties.h"
#include "driver/entry/driver_interface.h"
#include "driver/settings/device_info.h"
#include "driver/settings/settings_folder.h"
#include "driver/settings/watermark_list.h"
#include "tests/driver/changed_devmode.h"
#include "tests/driver/machine.h"
#include "tools/velmora/devmode_differences.h"

namespace velmora {
namespace {

using namespace driver_test;            // NOLINT(google-build-using-namespace): the test kit
using namespace std::literals;          // NOLINT(google-build-using-namespace): texts that hold NULs
using Result = std::pair<DWORD, bool>;  // the last error, and what a call says

// A small model whose default device mode needs no repair.
DescriptionBuilder Model(uint16_t pdlType, uint16_t capability = kColorNone) {
    DescriptionBuilder builder = SmallModel(pdlType, capability);
    builder.Table(offsetof(DeviceModel, featureTable), std::vector<FeatureRecord>{{1, 0, 0, 0, 0}});
    return builder;
}

class Documents : public MachineTest {
  protected:
    void SetUp() override {
        Install(Model(kPdlPcl6, kColor).Build());
        Use(Model(kPdlPcl6, kColor));
    }

    void Use(const DescriptionBuilder& builder) {
        Describe(builder);
        BuildDefaultDevMode(Printer(), kPrinterName, &default_);
        adjusted_ = Adjusted(default_);
    }

    VelmoraDevMode Adjusted(VelmoraDevMode devMode, const WCHAR* name = kPrinterName) const {
        const OwnedFile file = OpenDescriptionFile(Printer());
        const HeapOwner<DeviceModel> model = LoadDeviceModel(file.Get());
        AdjustDevMode({Printer(), name, file.Get(), model.Get()}, &devMode);
        return devMode;
    }

    // What is set in the adjusted default, and what the adjustment then sets.
    void Check(const std::vector<std::pair<std::string, std::string>>& cases) const {
        for (const auto& [before, after] : cases) {
            const VelmoraDevMode devMode = With(adjusted_, before);
            EXPECT_EQ(DifferenceLines(With(devMode, after), Adjusted(devMode)), Texts()) << before;
        }
    }

    // A request whose output is output_.
    DOCUMENTPROPERTYHEADER Request(DWORD mode, DEVMODEW* input) {
        DOCUMENTPROPERTYHEADER header = {};
        header.hPrinter = Printer();
        header.pszPrinterName = name_.data();
        header.pdmIn = input;
        header.pdmOut = &output_.publicPart;
        header.cbOut = sizeof(output_);
        header.fMode = mode;
        return header;
    }
    void Answer(DWORD mode, DEVMODEW* input) { DocumentPropertiesNoUI(Request(mode, input)); }

    WideText name_ = kPrinterName;
    VelmoraDevMode default_;
    VelmoraDevMode adjusted_;  // the default as a request writes it
    VelmoraDevMode output_ = {};
};

TEST_F(Documents, PapersAndMediumSources) {
    DescriptionBuilder builder = Model(kPdlPcl6, kColor);
    builder.Table(offsetof(DeviceModel, paperTable),
                  std::vector<PaperRecord>{{1, 9, 0, 2101, 2971, 1, {}, 0, 0, 0, {}},
                                           {1, 1, 0, 2159, 2794, 0, {}, 0, 0, 0, {}},
                                           {1, 8, 0, 2970, 4200, 1, {}, 0, 9, 0, {}}});  // onto A4
    Use(builder);
    EXPECT_EQ(DifferenceLines(default_, adjusted_), Texts()) << "a new device mode is in line with its printer";
    const std::string toA4 = "dmPaperSize=9 dmPaperWidth=2101 dmPaperLength=2971";
    const std::string toLetter = "dmPaperSize=1 dmPaperWidth=2159 dmPaperLength=2794";
    const std::string ofA3 = "dmPaperWidth=2970 dmPaperLength=4200";
    const std::string fitted = ofA3 + " scaleMode=1 scaleValue=9 scaleWidth=2101 scaleLength=2971";
    Check({
        {"dmPaperWidth=5", toA4},
        {"dmPaperSize=1", toLetter},
        {"dmPaperSize=118", "dmPaperWidth=2100 dmPaperLength=2970"},  // none of the model's
        {"dmPaperSize=119", toA4},
        {"dmPaperSize=255", toA4},
        {"dmPaperSize=256 dmPaperWidth=7", ""},
        {"dmPaperSize=256 dmPaperWidth=0 dmPaperLength=7", toA4},
        {"dmPaperSize=256 dmPaperWidth=7 dmPaperLength=0", toA4},
        {"dmPaperSize=8", fitted},
        {"dmPaperSize=8 scaleMode=2", fitted},
        {"dmPaperSize=8 scaleMode=1", ofA3},
        {"dmPaperSize=8 scaleMode=33", ofA3},
        {"dmDefaultSource=1999", ""},
        {"dmDefaultSource=2000", "mediaIndex=1 dmMediaType=257"},
        {"dmDefaultSource=2001 mediaIndex=1", "mediaIndex=2 dmMediaType=258"},
        {"dmDefaultSource=2002 mediaIndex=1", ""},
    });
    machine_.SetMetric(false);
    Check({{"dmPaperSize=200", toLetter}, {"dmPaperSize=256 dmPaperWidth=0", toLetter}});
}

TEST_F(Documents, ColourAndCollation) {
    for (const uint16_t capability : {kColorNone, kColor, ColorCapability{2}, kColorSecondKind}) {
        Use(Model(kPdlPcl6, capability));
        Check({
            {"colorPreset=6", "dmICMMethod=2"},
            {"dmICMMethod=4", "dmICMMethod=1"},
            {"collateCopy=1", "dmCollate=1"},
            {"dmCollate=1", "dmCollate=0"},
        });
        if (IsMonochrome(capability)) {
            Check({{"dmFields=0x380EF0F dmColor=2 dmICMIntent=3 dmMediaType=5",
                    "dmFields=0xE70F dmColor=0 dmICMIntent=0"},
                   {"dmColor=1 colorMode=42 watermarkFlags=2", "dmColor=0"}});  // no watermark is looked for
        } else {
            Check({{"dmFields=0xE70F dmMediaType=5", "dmFields=0x380EF0F"},
                   {"dmFields=0x380EF0F dmMediaType=0", "dmFields=0x180EF0F"},
                   {"dmColor=1 colorMode=1 dmMediaType=5", "dmFields=0x380EF0F"},
                   {"dmColor=1 colorMode=42 dmMediaType=5", "dmFields=0x380EF0F dmColor=2"},
                   {"dmColor=0 colorMode=0 dmMediaType=5", "dmFields=0x380EF0F dmColor=2"}});
        }
    }
}

TEST_F(Documents, Resolutions) {
    // In dots of 1200 to the inch, the resolution of the default.
    adjusted_ = With(adjusted_, "watermarkOffsetX=240 gutterShiftY=-120");
    const std::string halved = "resolutionIndex=0 resolutionId=600 watermarkOffsetX=120 gutterShiftY=-60";
    Check({
        {"dmPrintQuality=600", halved},
        {"dmPrintQuality=600 resolutionId=0", "resolutionIndex=0 resolutionId=600"},
        {"dmPrintQuality=600 resolutionId=600", "resolutionIndex=0"},
        {"dmPrintQuality=150", halved + " dmPrintQuality=600"},
        {"dmYResolution=-600", halved + " dmPrintQuality=600 dmYResolution=600"},
        {"dmYResolution=1200 gutterShiftY=0", "resolutionIndex=2 resolutionId=1201"},  // 240.2
        {"resolutionIndex=7", "resolutionIndex=1"},
        {"resolutionIndex=-1", "resolutionIndex=1"},
        {"resolutionId=9", ""},  // its record is the chosen one
        {"resolutionIndex=0 resolutionId=-1",
         "resolutionIndex=1 resolutionId=1200 watermarkOffsetX=-288000 gutterShiftY=144000"},
    });
    DescriptionBuilder builder = Model(kPdlPcl6, kColor);
    builder.SetSlot(offsetof(DeviceModel, resolutionTable), 0);
    Describe(builder);
    Check({{"dmPrintQuality=150", ""}});
}

TEST_F(Documents, RescaledFields) {
    VelmoraDevMode after = With(default_, "customMargins=11 marginValue=11 bookletValue=11");
    RescaleDots(&after.privatePart, 600, 1200);
    EXPECT_EQ(DifferenceLines(With(default_, "customMargins=22 marginValue=22 bookletValue=22"), after), Texts());

    // Products have 32 bits, quotients lose their fraction.
    const struct {
        int32_t dots;
        int16_t from, to;
        int32_t result;
        uint16_t narrow;  // of the low 16 bits of the dots, unsigned
    } cases[] = {
        {301, 1200, 600, 150, 150},       {-301, 1200, 600, -150, 32617},
        {40000, 600, 1200, 80000, 14464}, {2000000000, 600, 1200, -1477864, 10240},
        {INT32_MIN, -1, 1, INT32_MIN, 0},
    };
    for (const auto& c : cases) {
        after.privatePart.gutterShiftX = c.dots;
        after.privatePart.bookletGutter = static_cast<uint16_t>(c.dots);
        RescaleDots(&after.privatePart, c.from, c.to);
        EXPECT_EQ(ValueOf(after.privatePart.gutterShiftX), c.result) << c.dots;
        EXPECT_EQ(ValueOf(after.privatePart.bookletGutter), c.narrow) << c.dots;
    }
}

TEST_F(Documents, InstalledOptions) {
    DescriptionBuilder builder = Model(kPdlPcl6, kColor);
    builder.fields.extraTextRef = builder.AddText("twelve bytes");
    Use(builder);
    const auto extraTextWith = [this](uint32_t options) {
        SetDeviceInfo(Printer(), {1, 0, options, 0});
        VelmoraDevMode devMode = adjusted_;
        CopyText(devMode.privatePart.extraText, sizeof(devMode.privatePart.extraText), "stored");
        return std::string(Adjusted(devMode).privatePart.extraText);
    };
    EXPECT_EQ(extraTextWith(kExtraInstalled), "twelve byte");
    EXPECT_EQ(extraTextWith(kDuplexInstalled), "");
    Describe(Model(kPdlPcl6, kColor));
    EXPECT_EQ(extraTextWith(kExtraInstalled), "stored");

    Check({{"dmFields=0x380FF0F dmDuplex=2 booklet=4", "dmFields=0x380EF0F dmDuplex=0 booklet=0"}});
    SetDeviceInfo(Printer(), {1, 0, kDuplexInstalled, 0});
    Check({{"dmFields=0x380EF0F dmDuplex=2", "dmFields=0x380FF0F"},
           {"dmFields=0x380EF0F dmDuplex=2 booklet=4", "dmFields=0x380FF0F dmDuplex=3 dmCollate=1"}});
}

TEST_F(Documents, WatermarksOfTheList) {
    const WideText longName = u"C:\\" + WideText(120, u'm');
    std::vector<WatermarkRecord> marks;
    for (const auto& [file, colorFile] :
         {std::pair(u"C:\\mono"s, u"C:\\color"s), {u"C:\\only"s, u""s}, {longName, u"C:\\c"s}}) {
        WatermarkRecord& mark = marks.emplace_back();
        MakeBlankWatermark(&mark);
        mark.type = kTextWatermark;
        mark.resolution = mark.width = mark.height = 600;
        CopyText(mark.text, ARRAYSIZE(mark.text), TEXT("Draft"));
        CopyText(mark.fileName, ARRAYSIZE(mark.fileName), file.c_str());
        CopyText(mark.colorFileName, ARRAYSIZE(mark.colorFileName), colorFile.c_str());
    }
    // A device mode's file, and the one that it has afterwards; the watermark is switched off where `flags` is 0.
    struct Case {
        uint16_t pdlType;
        SHORT color;
        WideText file;
        uint32_t flags;
        WideText fileAfter;
    };
    const auto check = [&](const WideText& printer, const std::vector<Case>& cases) {
        PrepareSettingsFile(printer.c_str());
        SaveWatermarkList(printer.c_str(), marks.data(), static_cast<uint16_t>(marks.size()));
        for (const Case& c : cases) {
            Describe(Model(c.pdlType, kColor));
            VelmoraDevMode devMode = adjusted_;
            devMode.publicPart.dmColor = c.color;
            devMode.privatePart.watermarkFlags = 36;
            CopyText<WCHAR>(devMode.privatePart.watermarkFile, 96, c.file.c_str());
            const VelmoraDevMode after = Adjusted(devMode, printer.c_str());
            EXPECT_EQ(ValueOf(after.privatePart.watermarkFlags), c.flags) << ToText(c.file) << " " << c.pdlType;
            EXPECT_EQ(ToText(after.privatePart.watermarkFile), ToText(c.fileAfter)) << ToText(c.file) << c.pdlType;
        }
    };
    check(kPrinterName, {{kPdlPcl6, 2, u"C:\\mono", 36, u"C:\\color"},
                         {kPdlPcl5, 1, u"C:\\color", 36, u"C:\\mono"},
                         {kPdlPcl6, 1, u"C:\\only", 36, u"C:\\only"},
                         {kPdlPcl6, 2, u"C:\\only", 0, u""},
                         {kPdlPcl6, 1, u"C:\\c", 36, longName.substr(0, 95)},
                         {kPdlPcl6, 2, longName.substr(0, 95), 36, u"C:\\c"},
                         {kPdlPcl6, 2, u"C:\\gone", 0, u"C:\\gone"},
                         {kPdlPcl6, 2, u"", 0, u""},
                         {kPdlImage, 2, u"C:\\mono", 36, u"C:\\mono"},
                         {kPdlXps, 2, u"C:\\only", 36, u"C:\\only"},
                         {kPdlXps, 2, u"C:\\gone", 0, u"C:\\gone"}});
    VelmoraDevMode named = With(adjusted_, "watermarkFlags=36");
    CopyText<WCHAR>(named.privatePart.watermarkFile, 96, TEXT("C:\\color"));
    EXPECT_EQ(DifferenceLines(With(named, "watermarkFlags=0"), Adjusted(named, nullptr)), Texts()) << "no printer name";

    DriverPackage package = PackageOf(Model(kPdlPcl6, kColor).Build());
    package.driverName = u"Velmora Pipeline";
    package.dependent.push_back({u"PipelineConfig.xml", "<Filters/>"});
    Install(package, u"Pipeline");
    check(u"Pipeline", {{kPdlPcl6, 2, u"C:\\mono", 36, u"C:\\mono"}, {kPdlPcl6, 2, u"C:\\gone", 0, u"C:\\gone"}});
}

TEST_F(Documents, AnOverlayThatIsThereIsNotCreatedAgain) {
    WriteDriveFile(u"C:\\Overlays\\There.ovl", "overlay");
    const struct {
        uint16_t pdlType, capability;
        uint32_t modelFlags;
        uint16_t mode;
        const WCHAR* name;
        bool isDropped;
        uint32_t flagsAdded;
    } cases[] = {
        {kPdlImage, kColor, 1, 1, TEXT("There.ovl"), true, 1},
        {kPdlImage, kColor, 1, 1, TEXT("Gone.ovl"), false, 0},
        {kPdlImage, kColor, 1, 1, TEXT(""), false, 0},
        {kPdlImage, kColor, 1, 2, TEXT("There.ovl"), false, 0},
        {kPdlImage, kColor, 0x100, 1, TEXT("There.ovl"), true, 0},
        {kPdlImage, kColorNone, 1, 1, TEXT("There.ovl"), true, 0},
        {kPdlPcl6, kColor, 1, 1, TEXT("There.ovl"), true, 0},
    };
    for (const auto& c : cases) {
        DescriptionBuilder builder = Model(c.pdlType, c.capability);
        builder.fields.defaultOptionFlags = c.modelFlags;
        Use(builder);
        VelmoraDevMode devMode = adjusted_;
        PrivateDevMode& own = devMode.privatePart;
        own.overlayMode = c.mode;
        CopyText<WCHAR>(own.settingsFolder, ARRAYSIZE(own.settingsFolder), TEXT("C:\\Overlays"));
        CopyText<WCHAR>(own.overlayName, ARRAYSIZE(own.overlayName), c.name);
        CopyText<WCHAR>(own.watermarkText, ARRAYSIZE(own.watermarkText), TEXT("Text"));
        own.optionFlags = 0x10;
        VelmoraDevMode expected = devMode;
        if (c.isDropped) {
            expected.privatePart.overlayMode = 0;
            expected.privatePart.overlayName[0] = 0;
            expected.privatePart.watermarkText[0] = 0;
            expected.privatePart.optionFlags |= c.flagsAdded;
        }
        EXPECT_EQ(DifferenceLines(expected, Adjusted(devMode)), Texts()) << &c - cases;
    }
}

TEST_F(Documents, WithoutAModelThePrinterIsMonochrome) {
    WriteDriveFile(InstalledPath(u"KV62.XPI"), "no description");
    Check({{"dmDefaultSource=2000 resolutionIndex=9 dmPaperSize=8",
            "dmFields=0xE70F dmColor=0 dmICMIntent=0 dmPaperWidth=2100 dmPaperLength=2970"}});
}

// The printer's device mode prints 5 copies with a contrast of 7, the input 3 with 9.
TEST_F(Documents, SourcesOfARequest) {
    constexpr DWORD kTaking = DM_COPY | DM_IN_BUFFER;
    const struct {
        DWORD mode;
        const char* damage;
        const char* repaired;
        bool isPublicTaken, isPrivateTaken;
    } cases[] = {
        {DM_COPY, "", "", false, false},
        {kTaking, "", "", true, true},
        {DM_UPDATE | DM_IN_BUFFER, "", "", true, true},
        {kTaking, "dmSize=4088 dmDriverExtra=0", "dmSize=220 dmDriverExtra=3868", true, true},
        {kTaking, "dmScale=50", "dmScale=100", true, true},
        {kTaking, "psBrightness=101", "psBrightness=0", true, true},
        {kTaking, "dmSpecVersion=0x400 psBrightness=101", "", false, false},
        {kTaking, "dmScale=50 dmOrientation=0 dmTTOption=0", "dmScale=100 dmOrientation=1 dmTTOption=2", false, false},
        {kTaking, "dmScale=50 privateSignature=0", "dmScale=100", true, false},
    };
    for (const bool isStored : {false, true}) {
        VelmoraDevMode printers = default_;
        if (isStored) {
            printers = With(printers, "dmCopies=5 psContrast=7");
            ASSERT_TRUE(SetPrinterDevMode(Printer(), &printers.publicPart));
        }
        for (const auto& c : cases) {
            VelmoraDevMode input = With(With(default_, "dmCopies=3 psContrast=9"), c.damage);
            const VelmoraDevMode after = With(input, c.repaired);
            const VelmoraDevMode expected = {c.isPublicTaken ? after.publicPart : printers.publicPart,
                                             c.isPrivateTaken ? after.privatePart : printers.privatePart};
            memset(&output_, 0x55, sizeof(output_));
            Answer(c.mode, &input.publicPart);
            EXPECT_EQ(DifferenceLines(Adjusted(expected), output_), Texts()) << c.damage << isStored;
            EXPECT_EQ(DifferenceLines(after, input), Texts()) << c.damage;
            output_ = With(With(default_, "dmCopies=3 psContrast=9"), c.damage);
            Answer(c.mode, &output_.publicPart);
            EXPECT_EQ(DifferenceLines(Adjusted(expected), output_), Texts()) << c.damage << " in place";
        }
        Answer(kTaking, nullptr);
        EXPECT_EQ(DifferenceLines(Adjusted(printers), output_), Texts());
    }
}

TEST_F(Documents, RequestsThatWriteNothing) {
    memset(&output_, 0x55, sizeof(output_));
    const VelmoraDevMode untouched = output_;
    const struct {
        DWORD mode, size;
        SHORT scaleAfter;  // 100: the input was looked at and repaired
    } cases[] = {{DM_COPY | DM_IN_BUFFER, 4087, 50}, {DM_COPY | DM_IN_BUFFER, 0, 50}, {DM_IN_BUFFER, 4088, 100}};
    for (const auto& c : cases) {
        VelmoraDevMode input = With(default_, "dmScale=50");
        DOCUMENTPROPERTYHEADER header = Request(c.mode, &input.publicPart);
        header.cbOut = c.size;
        DocumentPropertiesNoUI(header);
        EXPECT_EQ(ValueOf(input.publicPart.dmScale), c.scaleAfter) << c.mode << " " << c.size;
        EXPECT_EQ(DifferenceLines(untouched, output_), Texts()) << c.mode << " " << c.size;
    }
    host::FailCall("GetPrinterW", ERROR_ACCESS_DENIED);  // the printer's device mode can't be read
    Answer(DM_COPY, nullptr);
    EXPECT_EQ(DifferenceLines(untouched, output_), Texts());
}

// Of an input without this driver's private part, a few settings go into the output as it is.
TEST_F(Documents, ForeignInputs) {
    const struct {
        const char* input;
        const char* expected;
    } cases[] = {
        {"dmSize=220 dmCopies=0 dmOrientation=2", "dmOrientation=2"},
        {"dmSize=220 dmDriverExtra=3867 dmCopies=7 dmCollate=1", "dmCopies=7 dmCollate=1"},
        {"dmSize=220 dmCopies=-1 dmCollate=2 dmOrientation=3", ""},
        {"dmSize=220 dmDefaultSource=261 dmPaperSize=1",
         "dmDefaultSource=261 dmPaperSize=1 dmPaperWidth=2159 dmPaperLength=2794"},
        {"dmSize=220 dmDefaultSource=-1 dmPaperSize=-1 dmPaperWidth=5 dmScale=50", ""},
        // Up to dmPaperSize, and up to dmCopies: what lies behind isn't read.
        {"dmSize=80 dmPaperSize=1 dmCopies=7", "dmPaperSize=1 dmPaperWidth=2159 dmPaperLength=2794"},
        {"dmSize=88 dmCopies=7 dmDefaultSource=261", "dmCopies=7"},
    };
    for (const DWORD mode : {DM_IN_BUFFER, DM_IN_BUFFER | DM_COPY}) {
        for (const auto& c : cases) {
            const VelmoraDevMode input = With({}, c.input);
            // On the heap, where reading past its end is noticed.
            const auto* begin = reinterpret_cast<const char*>(&input);
            std::vector<char> bytes(begin, begin + input.publicPart.dmSize);
            memset(&output_, 0x11, sizeof(output_));
            const VelmoraDevMode expected =
                With(With(output_,
                          "dmFields=0x8B0F dmCopies=1 dmCollate=0 dmDefaultSource=7 dmOrientation=1 "
                          "dmPaperSize=9 dmPaperWidth=2101 dmPaperLength=2971 dmColor=2"),
                     c.expected);
            Answer(mode, reinterpret_cast<DEVMODEW*>(bytes.data()));
            EXPECT_EQ(DifferenceLines(expected, output_), Texts()) << c.input;
        }
    }
    const auto check = [this](const std::string& before, const std::string& after) {
        DEVMODEW bare = {};
        bare.dmSize = sizeof(bare);
        output_ = With(output_, before);
        const VelmoraDevMode expected = With(output_, after);
        Answer(DM_IN_BUFFER, &bare);
        EXPECT_EQ(DifferenceLines(expected, output_), Texts()) << before;
    };
    check("dmColor=1", "dmFields=0x8B0F dmCopies=1 dmDefaultSource=7");
    Describe(Model(kPdlPcl6, kColorSecondKind));
    check("dmColor=9", "dmFields=0x830F");
    WriteDriveFile(InstalledPath(u"KV62.XPI"), "no description");
    check("dmColor=9", "dmDefaultSource=1025 dmPaperWidth=2100 dmPaperLength=2970");
}

TEST_F(Documents, EveryRequestRegistersTheSpoolDirectory) {
    Describe(Model(kPdlImage));
    SetString(Printer(), u"DefaultSpoolDirectory", u"D:\\Spool");
    HKEY key = nullptr;
    constexpr const WCHAR* kKey = TEXT("SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Test Printer");
    ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, KEY_QUERY_VALUE | KEY_SET_VALUE, &key), ERROR_SUCCESS);
    DOCUMENTPROPERTYHEADER header = Request(DM_COPY, nullptr);
    header.cbOut = 0;
    // Under the printer's own name where the request leaves it out.
    for (WCHAR* name : {name_.data(), static_cast<WCHAR*>(nullptr)}) {
        RegDeleteValueW(key, TEXT("SpoolDirectory"));
        header.pszPrinterName = name;
        DocumentPropertiesNoUI(header);
        EXPECT_EQ(RegQueryValueExW(key, TEXT("SpoolDirectory"), nullptr, nullptr, nullptr, nullptr), ERROR_SUCCESS);
    }
    RegCloseKey(key);
}

class Conversion : public Documents {
  protected:
    Result Convert(DEVMODEW* input, DEVMODEW* output, LONG size = 4088) {
        SetLastError(77);
        const bool result = DrvConvertDevMode(name_.data(), input, output, &size, 0);
        EXPECT_EQ(size, 4088);
        return {GetLastError(), result};
    }
    // Without an output large enough.
    Result Ask(const WideText& printerName) {
        name_ = printerName;
        return Convert(nullptr, &output_.publicPart, 220);
    }
    void SetInstalledBy(const WideText& computers, DWORD type = REG_MULTI_SZ) {
        SetData(Printer(), u"VMNetworkInstall", type, computers.data(), computers.size() * sizeof(WCHAR));
    }
};

TEST_F(Conversion, WithoutAModelNoInputIsValid) {
    VelmoraDevMode input = default_;
    WriteDriveFile(InstalledPath(u"KV62.XPI"), "no description");
    BuildDefaultDevMode(Printer(), kPrinterName, &default_);
    EXPECT_EQ(Convert(&input.publicPart, &output_.publicPart), Result(ERROR_SUCCESS, true));
    EXPECT_EQ(DifferenceLines(default_, output_), Texts());
}

TEST_F(Conversion, ConnectionsOnSystemsOfVersion4) {
    const Result no(ERROR_INSUFFICIENT_BUFFER, false);
    const Result yes(ERROR_INSUFFICIENT_BUFFER, true);
    const Result unknown(ERROR_FILE_NOT_FOUND, false);
    // The spooler takes its own server's name in any case. To the driver, this is another machine.
    const WideText connection = u"\\\\velmora-pc\\Test Printer";
    EXPECT_EQ(Ask(connection), no) << "a later system";
    machine_.SetSystemVersion(4, 0);
    EXPECT_EQ(Ask(kPrinterName), no);
    EXPECT_EQ(Ask(u"\\\\VELMORA-PC\\Test Printer"), no);
    EXPECT_EQ(Ask(u"\\\\VELMORA-PC-2\\Test Printer"), Result(ERROR_INVALID_PRINTER_NAME, true));
    EXPECT_EQ(Ask(connection), yes) << "no such value";
    for (const WideText& computers :
         {u""s, u"\0\0"s, u"OTHER\0\0"s, u"OTHER\0\0VELMORA-PC\0\0"s, u"velmora-pc\0VELMORA-PC-2\0VELMORA-P\0\0"s}) {
        SetInstalledBy(computers);
        EXPECT_EQ(Ask(connection), yes) << ToText(computers);
    }
    constexpr char kOdd[] = {'A', 0, 'B'};  // half a character at its end
    SetData(Printer(), u"VMNetworkInstall", REG_MULTI_SZ, kOdd, sizeof(kOdd));
    EXPECT_EQ(Ask(connection), yes);
    SetInstalledBy(u"VELMORA-PC"s, REG_SZ);
    EXPECT_EQ(Ask(connection), unknown);
    SetInstalledBy(u"OTHER\0VELMORA-PC"s);  // without terminators
    host::FailCall("GetPrinterDataW", ERROR_ACCESS_DENIED, 2);
    EXPECT_EQ(Ask(connection), unknown);

    host::FailCall("CreateSemaphoreW", ERROR_ACCESS_DENIED);
    EXPECT_EQ(Ask(connection), no);

    // Once this computer is found there, the printer isn't asked again.
    EXPECT_EQ(Ask(connection), no);
    keptOpen_ = {"semaphore //velmora-pc/Test Printer"};
    SetInstalledBy(u"OTHER\0\0"s);
    const uint64_t opened = host::CallsSoFar("OpenPrinterW");
    EXPECT_EQ(Ask(connection), no);
    EXPECT_EQ(host::CallsSoFar("OpenPrinterW"), opened);
}

}  // namespace
}  // namespace velmora
