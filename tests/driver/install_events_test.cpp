#include "driver/install/printer_events.h"

#include <algorithm>

#include "driver/entry/stored_devmode.h"
#include "driver/settings/custom_sizes.h"
#include "driver/settings/settings_folder.h"
#include "platform/spooler/state.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

constexpr const char* kCustomSizes =
    "[CustomSizes]\r\nNumCustomSizes=2\r\nCustomName0=One\r\nCustomWidth0=10008\r\nCustomLength0=20009\r\n"
    "CustomMetric0=1\r\nCustomName1=Two\r\nCustomWidth1=30000\r\nCustomLength1=50000\r\nCustomMetric1=1\r\n";

std::string Words(std::initializer_list<int> words) {
    std::string bytes;
    for (const int word : words) {
        bytes += static_cast<char>(word & 0xFF);
        bytes += static_cast<char>((word >> 8) & 0xFF);
    }
    return bytes;
}

std::string Wide(WideText text) {
    text.push_back(0);
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(WCHAR)};
}

class InstallEvents : public MachineTest {
  protected:
    // A driver whose data file is a printer data file of these bytes; empty: the description file.
    static DriverPackage PackageWith(const DescriptionBuilder& builder, const std::string& dataFile,
                                     const std::string& iniFile = "") {
        DriverPackage package = PackageOf(builder.Build(), iniFile);
        if (!dataFile.empty()) {
            package.dependent.push_back(package.data);
            package.data = {u"KV62.DAT", dataFile};
        }
        return package;
    }

    std::optional<DWORD> BaseSize() const {
        const auto value = GetData(Printer(), u"BasePDFSize");
        DWORD size = 0;
        if (value) {
            memcpy(&size, value->data(), sizeof(size));
        }
        return value ? std::optional(size) : std::nullopt;
    }

    static std::string DataFile() { return ReadDriveFile(InstalledPath(u"KV62.DAT")); }
};

// A model with something for each of the values.
DescriptionBuilder ValuesModel(uint16_t pdlType, uint16_t colorCapability) {
    DescriptionBuilder builder = SmallModel(pdlType, colorCapability);
    const uint16_t name = builder.AddString("Paper");
    builder.Table(offsetof(DeviceModel, paperTable),
                  std::vector<PaperRecord>{
                      {name, 9, 0, 2100, 2970, 1, {}, 26, 0, builder.AddName("A4"), {}},
                      {name, 1, 0, 2159, 2794, 0, {}, 0, 0, 0, {}},
                      {name, 256, 0, 1000, 1500, 0, {}, -1, 0, builder.AddName("fourteen chars and more"), {}},
                      {name, 257, 0, 1016, 1524, 0, {}, -2, 0, 0, {}},
                      {name, 300, 0, 300, 12000, 0, {}, 101, 0, builder.AddName("Card"), {}}});
    builder.Table(offsetof(DeviceModel, mediaTable),
                  std::vector<MediaRecord>{{1, 0, 0, static_cast<int16_t>(builder.AddName("Plain")), 0, 257, {}},
                                           {2, 0, 0, 0, 0, 258, {}},
                                           {4, 0, 0, static_cast<int16_t>(builder.AddName("Thick")), 0, 259, {}}});
    return builder;
}

TEST_F(InstallEvents, ValuesOfTheModelForTheRenderer) {
    using Change = void (*)(DescriptionBuilder*);
    struct Case {
        const char* name;
        uint16_t pdlType;
        uint16_t colorCapability;
        Change change;
        const char16_t* value;
        std::optional<std::string> expected;
    };
    using namespace std::string_literals;  // NOLINT(google-build-using-namespace): texts with zeros in them
    const Change asIs = [](DescriptionBuilder*) {};
    const Case cases[] = {
        {"own papers", kPdlPcl6, 0, asIs, u"PaperSizes", Words({257, 1016, 1524, 300, 300, 12000})},
        {"standard papers of PCL 6", kPdlPcl6, 0, asIs, u"StdPapers", Words({9, 26, 1, 0, 300, 101})},
        {"standard papers of others", kPdlPostScript, 0, asIs, u"StdPapers", std::nullopt},
        {"paper names", kPdlPcl6, 0, asIs, u"PaperNames",
         Words({9}) + "A4\0"s + Words({256}) + "fourteen chars\0"s + Words({300}) + "Card\0"s},
        {"paper names of others", kPdlPcl5, 0, asIs, u"PaperNames", std::nullopt},
        {"commands", kPdlPcl6, kColor, asIs, u"ColorData", std::string(1000, 'b')},
        {"no commands", kPdlPcl6, kColor, [](DescriptionBuilder* builder) { builder->blob.clear(); }, u"ColorData",
         std::string(1, '\0')},
        {"no colour", kPdlPcl6, kColorNone, asIs, u"ColorData", std::nullopt},
        {"media", kPdlXps, 0, asIs, u"MediaTypes", "Plain\0\0Thick\0\0"s},
        {"no media", kPdlXps, 0,
         [](DescriptionBuilder* builder) { builder->SetSlot(offsetof(DeviceModel, mediaTable), 0); }, u"MediaTypes",
         std::nullopt},
        {"memory", kPdlXps, 0, asIs, u"Memory", Words({128, 0})},
        {"memory without its key", kPdlXps, 0, [](DescriptionBuilder* builder) { builder->fields.memoryKeyStep = 9; },
         u"Memory", Words({64, 0})},
        {"no memory table", kPdlXps, 0,
         [](DescriptionBuilder* builder) { builder->SetSlot(offsetof(DeviceModel, memoryTable), 0); }, u"Memory",
         std::nullopt},
    };
    Install(PackageWith(ValuesModel(kPdlXps, 0), ""));
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        WideText value = c.value;
        DeletePrinterDataW(Printer(), value.data());
        DescriptionBuilder builder = ValuesModel(c.pdlType, c.colorCapability);
        c.change(&builder);
        Describe(builder);
        ASSERT_TRUE(OnInitialize(kPrinterName));
        EXPECT_EQ(GetData(Printer(), c.value), c.expected);
    }
    // The whole table of margins with the record that ends it.
    const HeapOwner<DeviceModel> model = LoadDeviceModel(OpenDescriptionFile(Printer()).Get());
    const auto margins = GetData(Printer(), u"Margin");
    ASSERT_TRUE(margins && margins->size() == 2 * 54);
    EXPECT_EQ(memcmp(margins->data(), model->marginTable, 54), 0);
    EXPECT_EQ(margins->find_first_not_of('\0', 54), std::string::npos);
}

TEST_F(InstallEvents, FilesOfTheDriverAreNamed) {
    DriverPackage package = PackageWith(SmallModel(kPdlPcl6), "", kCustomSizes);
    Install(package);
    ASSERT_TRUE(OnInitialize(kPrinterName));
    EXPECT_EQ(GetData(Printer(), u"FontLst"), Wide(u"KV62.fl"));
    EXPECT_EQ(GetData(Printer(), u"Ocm"), Wide(u"KV62o.dll"));
    EXPECT_EQ(GetData(Printer(), u"RenderLib"), Wide(u"KV62E.DLL"));
    // The data file is the description file, which nothing is appended to; there is no user-mode part.
    for (const char16_t* value : {u"PDFName", u"BasePDFSize", u"SPLUserModePrinterDriver"}) {
        EXPECT_FALSE(GetData(Printer(), value));
    }
    EXPECT_EQ(ReadDriveFile(InstalledPath(u"KV62.XPI")), package.data.bytes);
}

TEST_F(InstallEvents, UserModePartHasToBeNamed) {
    DriverPackage package = PackageWith(SmallModel(kPdlPcl6), "data");
    Install(package);
    EXPECT_TRUE(OnInitialize(kPrinterName));
    EXPECT_EQ(GetData(Printer(), u"PDFName"), Wide(u"KV62.DAT"));
    EXPECT_FALSE(GetData(Printer(), u"FontLst"));  // no INI data file
    package.dependent.push_back({u"kv62umpd.dll", ""});
    InstallPrinter(package, u"Second");
    machine_.SetMayWritePrinterData(false);
    EXPECT_FALSE(OnInitialize(u"Second"));
    machine_.SetMayWritePrinterData(true);
    EXPECT_TRUE(OnInitialize(u"Second"));
    const OwnedPrinter second = OpenWithAllAccess(u"Second");
    EXPECT_EQ(GetData(second.Get(), u"SPLUserModePrinterDriver"), Wide(u"KV62UMPD.DLL"));
    EXPECT_FALSE(OnInitialize(u"Unknown"));
}

TEST_F(InstallEvents, FontInstallerIsStarted) {
    DriverPackage package = PackageWith(SmallModel(kPdlPcl6), "");
    package.dependent.push_back({u"KV62FONT.EXE", ""});
    package.dependent.push_back({u"OTHER.EXE", ""});
    Install(package);
    Texts started;
    for (const char16_t* name : {u"KV62FONT.EXE", u"OTHER.EXE"}) {
        machine_.SetProgram(name, [&](const std::string& commandLine) { started.push_back(commandLine); });
    }
    const auto quoted = [](const WideText& file) {
        WideText path = InstalledPath(file);
        CharUpperW(path.data());
        return "\"" + ToText(path) + "\"";
    };
    OnInitialize(kPrinterName);
    OnAddConnection(kPrinterName);
    SetString(Printer(), u"FontInstaller", u"other.exe");  // printers name another one
    OnInitialize(kPrinterName);
    EXPECT_EQ(started, Texts({quoted(u"KV62FONT.EXE"), quoted(u"KV62FONT.EXE"), quoted(u"OTHER.EXE")}));
    machine_.SetProgram(u"OTHER.EXE", nullptr);
    EXPECT_TRUE(OnInitialize(kPrinterName));  // one that can't be started is left out
}

// The printer data file: the base, two patterns and the fonts. Whatever can't be written, the base stays, and a second
// installation leaves patterns and fonts behind the base that it tells.
TEST_F(InstallEvents, PatternsAndFontsAreAppended) {
    struct Case {
        const char* name;
        size_t baseSize;
        size_t fontSize;
        uint64_t failedWrite;  // 0: none
        uint16_t pdlType;
    };
    const Case cases[] = {
        {"base a little smaller than what is appended", 10240 + 299, 300, 0, kPdlPcl5},
        {"more fonts than are read at a time", 65536, 65536 + 70000, 0, kPdlPostScript},
        {"no fonts", 100, 0, 0, kPdlXps},
        {"second pattern fails", 100, 300, 2, kPdlPcl6},
        {"fonts fail", 100, 300, 3, kPdlPcl6},
        {"second part of the fonts fails", 100, 70000, 4, kPdlPcl6},
    };
    DriverPackage package = PackageWith(SmallModel(kPdlPcl6), "data");
    Install(package);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string base(c.baseSize, 'd');
        const std::string patterns = std::string(2048, 'q') + std::string(8192, 'r');
        DescriptionBuilder builder = SmallModel(c.pdlType);
        std::string fonts;
        for (size_t i = 0; i < c.fontSize; i += c.fontSize / 3 + 1) {
            fonts += std::string(std::min(c.fontSize - i, c.fontSize / 3 + 1), static_cast<char>('f' + i % 7));
            builder.AddFont(fonts.substr(i));
        }
        const auto first = static_cast<int16_t>(builder.AddPattern(std::string(2048, 'q')));
        const auto second = static_cast<int16_t>(builder.AddPattern(std::string(8192, 'r')));
        builder.Table(offsetof(DeviceModel, resolutionTable),
                      std::vector<ResolutionRecord>{{1, 600, 0, 1, 600, 600, 8, first, 0, {}},
                                                    {1, 300, 0, 1, 300, 300, 0, 0, 0, {}},
                                                    {1, 1200, 0, 1, 1200, 600, -16, second, 0, {}}});
        Describe(builder);
        WriteDriveFile(InstalledPath(u"KV62.DAT"), base);
        if (c.failedWrite > 0) {
            host::FailCall("WriteFile", ERROR_DISK_FULL, c.failedWrite);
        }
        ASSERT_TRUE(OnInitialize(kPrinterName));
        host::ClearFaults();
        EXPECT_EQ(BaseSize(), base.size());
        const std::string whole = base + patterns + fonts;
        const std::string written[] = {whole, base + fonts, base + patterns.substr(0, 2048) + fonts, base + patterns,
                                       base + patterns + fonts.substr(0, 65536)};
        ASSERT_TRUE(DataFile() == written[c.failedWrite]);
        for (int again = 0; again < 2; ++again) {
            const std::string before = DataFile();
            ASSERT_TRUE(OnInitialize(kPrinterName));
            const std::string file = DataFile();
            EXPECT_TRUE(file.starts_with(base));
            ASSERT_TRUE(BaseSize() && *BaseSize() <= file.size());
            EXPECT_TRUE(file.substr(*BaseSize()) == patterns + fonts);
            EXPECT_TRUE(again == 0 && c.failedWrite > 0 ? file.starts_with(before) : file == before);
        }
    }
    // Image models keep no such data.
    WriteDriveFile(InstalledPath(u"KV62.DAT"), "base");
    Describe(SmallModel(kPdlImage));
    ASSERT_TRUE(OnInitialize(kPrinterName));
    EXPECT_EQ(DataFile(), "base");
    EXPECT_EQ(BaseSize(), 4u);
}

// What patterns' records say isn't believed: a block greater than the file isn't read.
TEST_F(InstallEvents, HostilePatternSizes) {
    DescriptionBuilder builder = SmallModel(kPdlPcl6);
    builder.AddFont("font");
    builder.Table(offsetof(DeviceModel, resolutionTable),
                  std::vector<ResolutionRecord>{{1, 600, 0, 1, 600, 600, -32768, 0, 0, {}},
                                                {1, 300, 0, 1, 300, 300, 8, -1, 0, {}}});
    Install(PackageWith(builder, "base"));
    EXPECT_TRUE(OnInitialize(kPrinterName));
    EXPECT_EQ(DataFile(), "basefont");
}

TEST_F(InstallEvents, FormsOfOwnPapersAndCustomSizes) {
    DescriptionBuilder builder = ValuesModel(kPdlPcl6, 0);
    const uint16_t card = builder.AddString("Card");
    builder.Table(offsetof(DeviceModel, paperTable),
                  std::vector<PaperRecord>{{card, 255, 0, 1000, 1500, 1, {}, 0, 0, 0, {}},
                                           {builder.AddString("Least"), 256, 0, 1000, 1500, 1, {}, 0, 0, 0, {}},
                                           {card, 300, 0, 1016, 1524, 1, {}, 0, 0, 0, {}},
                                           {9999, 301, 0, 1016, 1524, 1, {}, 0, 0, 0, {}},  // no name
                                           {builder.AddString("Own"), 500, 0, 1100, 2000, 1, {}, 0, 0, 0, {}}});
    Install(PackageWith(builder, "", kCustomSizes));
    AddForm(u"Card", FORM_USER, 1, 2);
    const size_t before = host::Spooler().forms.size();
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(OnInitialize(kPrinterName));
        EXPECT_EQ(host::Spooler().forms.size(), before + 4);  // of five one is a form that was there
    }
    // Margins in micrometres: 100, 110, 120, 130 of 1/600 inch, or a quarter inch for what has none.
    const struct {
        const char16_t* name;
        RECTL area;
        SIZEL size;
    } forms[] = {{u"Least", {4233, 4656, 100000 - 5080, 150000 - 5503}, {100000, 150000}},
                 {u"Card", {4233, 4656, 101600 - 5080, 152400 - 5503}, {101600, 152400}},
                 {u"Own", {4233, 4656, 110000 - 5080, 200000 - 5503}, {110000, 200000}},
                 {u"One", {4233, 4656, 100080 - 5080, 200090 - 5503}, {100080, 200090}},
                 {u"Two", {6350, 6350, 300000 - 6350, 500000 - 6350}, {300000, 500000}}};
    for (const auto& form : forms) {
        SCOPED_TRACE(ToText(form.name));
        const host::Form* const found = host::FindForm(form.name);
        ASSERT_TRUE(found);
        EXPECT_EQ(found->flags, DWORD{FORM_PRINTER});
        EXPECT_EQ(memcmp(&found->size, &form.size, sizeof(form.size)), 0);
        EXPECT_EQ(memcmp(&found->imageableArea, &form.area, sizeof(form.area)), 0);
    }
    // The custom sizes follow the model's own papers, in 0.1 mm, and are the user's from now on.
    EXPECT_EQ(GetData(Printer(), u"PaperSizes"),
              Words({300, 1016, 1524, 301, 1016, 1524, 500, 1100, 2000, 448, 1000, 2000, 449, 3000, 5000}));
    EXPECT_EQ(LoadCustomSizes(kPrinterName).count, 2);
}

TEST_F(InstallEvents, ThePrintersDeviceModeTellsWhereTheFontsAre) {
    DescriptionBuilder builder = SmallModel(kPdlPcl5);
    builder.AddFont("font");
    Install(PackageWith(builder, "data"));
    ASSERT_TRUE(OnInitialize(kPrinterName));
    VelmoraDevMode stored;
    EXPECT_EQ(GetPrinterDevMode(Printer(), &stored), 1);
    EXPECT_EQ(DataFile().substr(stored.privatePart.fontDataOffset), "font");
}

// A connection's own copy of the printer data file gets the data where it has none yet.
TEST_F(InstallEvents, ConnectionsAppendToTheirDataFile) {
    const struct {
        DWORD baseSize;  // 0: the value is absent
        uint16_t pdlType;
        bool appends;
    } cases[] = {{4, kPdlPcl6, true}, {3, kPdlPcl6, false}, {0, kPdlPcl6, false}, {4, kPdlImage, false}};
    DescriptionBuilder builder = SmallModel(kPdlPcl6);
    Install(PackageWith(builder, "base"));
    const std::string patterns = std::string(2048, 'q') + std::string(8192, 'q');
    for (const auto& c : cases) {
        Describe(SmallModel(c.pdlType));
        WriteDriveFile(InstalledPath(u"KV62.DAT"), "base");
        WideText value = u"BasePDFSize";
        DeletePrinterDataW(Printer(), value.data());
        if (c.baseSize > 0) {
            SetData(Printer(), value, REG_DWORD, &c.baseSize, sizeof(c.baseSize));
        }
        OnAddConnection(kPrinterName);
        OnAddConnection(kPrinterName);
        EXPECT_TRUE(DataFile() == (c.appends ? "base" + patterns : "base"));
        EXPECT_NE(CurrentSettingsFile()[0], 0);
    }
}

}  // namespace
}  // namespace velmora
