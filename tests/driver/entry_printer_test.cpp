#include "driver/entry/printer_access.h"

#include "driver/entry/spool_directory.h"
#include "driver/entry/stored_devmode.h"
#include "tests/driver/machine.h"
#include "tests/driver/resource_file.h"
#include "tools/velmora/devmode_differences.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

WideText FileNamePartOf(const WideText& path) {
    return path.substr(path.rfind(u'\\') + 1);
}

class PrinterAccess : public MachineTest {
  protected:
    // The name of the printer that a name opens; "none" for none.
    static std::string Opened(const WideText& name) {
        const OwnedPrinter printer = OpenPrinterLocal(name.c_str());
        const HeapOwner<PRINTER_INFO_2W> info = GetPrinterInfo2(printer.Get());
        return printer ? ToText(info->pPrinterName) : "none";
    }

    std::string Found(const WCHAR* valueName, const WCHAR* fragment) const {
        WCHAR path[MAX_PATH] = TEXT("#");
        const bool found = FindDriverFile(Printer(), valueName, fragment, path);
        EXPECT_EQ(found, path[0] != 0);
        return ToText(FileNamePartOf(path));
    }

    // A printer string in a buffer of 8 characters; "none" for none.
    std::string Settings() const {
        WCHAR text[8] = TEXT("#");
        const bool found = GetSettingsString(Printer(), text, ARRAYSIZE(text));
        EXPECT_EQ(found, text[0] != 0);
        return found ? ToText(text) : "none";
    }
};

TEST_F(PrinterAccess, PrinterNamesAreCutAndMadeLocal) {
    const WideText longest(127, u'P');
    Install("");
    InstallPrinter(PackageOf(""), u"DEVMODE");
    InstallPrinter(PackageOf(""), longest);
    const std::pair<WideText, std::string> cases[] = {
        {u"\\\\VELMORA-PC\\Test Printer", "Test Printer"},
        {u"\\\\VELMORA-PC\\Test Printer,Local", "Test Printer"},
        {u"Test Printer,LocalOnly,Job 3", "Test Printer"},
        {u"Test Printer,DrvConvert", "Test Printer"},
        {u"Test Printer,DEVMODE,DrvConvert,Local", "Test Printer"},
        {u"DEVMODE,Local", "DEVMODE"},
        {u"\\\\VELMORA-PX\\Test Printer", "none"},
        {u"\\\\VELMORA-PC", "none"},
        {u"Test Printer,Other", "none"},
        {u",Local", "none"},
        {longest, ToText(longest)},
        {longest + u"tail", ToText(longest)},  // cut to 127 characters
    };
    for (const auto& [name, opened] : cases) {
        EXPECT_EQ(Opened(name), opened) << ToText(name);
    }
}

TEST_F(PrinterAccess, TheMostAccessThatIsGrantedIsTaken) {
    Install("");
    constexpr struct {
        DWORD granted;
        bool opens;
        int refused;  // TestPrinterDataAccess
        uint64_t attempts;
    } kCases[] = {
        {PRINTER_ALL_ACCESS, true, 0, 1},
        {PRINTER_ACCESS_ADMINISTER | PRINTER_ACCESS_USE, true, 0, 2},
        {PRINTER_ACCESS_USE, true, 1, 3},
        {0, false, 1, 3},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.granted);
        machine_.SetGrantedPrinterAccess(c.granted);
        const uint64_t before = host::CallsSoFar("OpenPrinterW");
        const OwnedPrinter printer = OpenPrinterLocal(kPrinterName);
        EXPECT_EQ(static_cast<bool>(printer), c.opens);
        EXPECT_EQ(host::CallsSoFar("OpenPrinterW") - before, c.attempts);
        EXPECT_EQ(TestPrinterDataAccess(printer.Get()), c.refused);
    }
    EXPECT_EQ(GetData(Printer(), u"Test"), std::nullopt);
    host::FailCall("GetPrinterDataW", ERROR_INVALID_HANDLE);
    EXPECT_EQ(TestPrinterDataAccess(Printer()), 1);
}

TEST_F(PrinterAccess, DriverFilesAreSearchedInOrder) {
    DriverPackage package = PackageOf("");
    package.core.name = u"set-core.dll";
    package.data = {u"set-p1.dat", "d"};
    package.help = {u"set-p1p2.hlp", "h"};
    package.configuration.name = u"set-p2.dll";
    package.dependent = {{u"set-one.txt", "1"}, {u"set-two.txt", "2"}};
    Install(package);
    constexpr std::pair<const WCHAR*, const char*> kCases[] = {
        {u"SET-", "SET-ONE.TXT"},
        {u"set-two", "SET-TWO.TXT"},
        {u"P1", "SET-P1.DAT"},
        {u"P2", "SET-P1P2.HLP"},
        {u".DLL", "SET-P2.DLL"},  // the rendering core is never searched
        {u"CORE", ""},
        {u"\\3\\", "SET-ONE.TXT"},  // the whole path counts
        {u"", ""},
        {nullptr, ""},
    };
    for (const auto& [fragment, found] : kCases) {
        EXPECT_EQ(Found(nullptr, fragment), found) << ToText(fragment ? fragment : u"null");
    }
    // A value of the printer's data names one; there is no way back to the fragment then.
    const std::pair<WideText, std::string> values[] = {
        {u"set-Two", "SET-TWO.TXT"}, {u"set-three", ""}, {u"", "SET-ONE.TXT"}};
    for (const auto& [value, found] : values) {
        SetString(Printer(), u"File", value);
        EXPECT_EQ(Found(TEXT("File"), TEXT(".TXT")), found) << ToText(value);
    }
    SetData(Printer(), u"File", REG_DWORD, "1234", 4);
    EXPECT_EQ(Found(TEXT("File"), TEXT(".TXT")), "SET-ONE.TXT");
    EXPECT_EQ(Found(TEXT(""), TEXT(".TXT")), "SET-ONE.TXT");
    EXPECT_EQ(Found(TEXT("File"), nullptr), "");
}

TEST_F(PrinterAccess, TheRenderingCore) {
    DriverPackage package = PackageOf("");
    package.dependent = {{u"kv62core.dll", "c"}, {u"other.dll", "o"}};
    Install(package);
    WCHAR path[MAX_PATH];
    const auto core = [&] {
        EXPECT_TRUE(GetRenderCorePath(Printer(), path));
        return ToText(FileNamePartOf(path));
    };
    EXPECT_EQ(core(), "KV62R.DLL");
    EXPECT_EQ(ToText(path), ToText(InstalledPath(u"KV62R.DLL")));
    SetString(Printer(), u"XPSCoreName", u"other");
    EXPECT_EQ(core(), "OTHER.DLL");
    SetString(Printer(), u"NTCoreName", u"kv62core");
    EXPECT_EQ(core(), "KV62CORE.DLL");
    EXPECT_FALSE(GetRenderCorePath(INVALID_HANDLE_VALUE, path));
    EXPECT_EQ(path[0], 0);
}

TEST_F(PrinterAccess, FileVersions) {
    const Translation japanese = {0x0411, 1200};
    const struct {
        const char* what;
        std::string file;
        WORD version;
    } cases[] = {
        {"two numbers of four", VersionedFile(u"10.0.5.3"), 0x0A00},
        {"one number", VersionedFile(u"3"), 3},
        {"wide numbers", VersionedFile(u"300.7"), static_cast<WORD>((300 << 8) + 7)},
        {"a wide minor number", VersionedFile(u"3.300"), 0x0300 + 300},
        {"text behind the number", VersionedFile(u"4.1 beta"), 0x0401},
        {"the first translation",
         VersionedFile({japanese, {0x0409, 1252}}, {{u"041104B0", u"5.6"}, {u"040904E4", u"7.8"}}), 0x0506},
        {"an empty text", VersionedFile({japanese}, {{u"041104B0", u""}, {u"040904E4", u"7.8"}}), 0x0708},
        {"no text in its language", VersionedFile({japanese}, {{u"040904E4", u"7.8"}}), 0x0708},
        {"no translation", VersionedFile(std::vector<Translation>(), {{u"040904E4", u"7.8"}}), 0x0708},
        {"only another language", VersionedFile({japanese}, {{u"040704E4", u"7.8"}}), 0},
        {"no version resource", StringModule({{1, u"text"}}), 0},
        {"no resource file", "text", 0},
    };
    for (const auto& c : cases) {
        WriteDriveFile(u"C:\\core.dll", c.file);
        EXPECT_EQ(GetDriverVersion(TEXT("C:\\core.dll")), c.version) << c.what;
    }
    EXPECT_EQ(GetDriverVersion(TEXT("C:\\missing.dll")), 0);
    EXPECT_EQ(GetDriverVersion(TEXT("")), 0);
}

TEST_F(PrinterAccess, StoredStrings) {
    Install("");
    EXPECT_EQ(Settings(), "none");
    EXPECT_TRUE(SetSettingsString(Printer(), TEXT("1234567")));
    EXPECT_EQ(Settings(), "1234567");
    EXPECT_EQ(GetData(Printer(), u"Settings")->size(), 16u);
    EXPECT_TRUE(SetSettingsString(Printer(), TEXT("12345678")));
    EXPECT_EQ(Settings(), "none");
    const struct {
        DWORD type;
        DWORD size;
        const char* text;
    } cases[] = {
        {REG_SZ, 14, "1234567"},  // without its terminator
        {REG_SZ, 3, "1"},         // half a character
        {REG_BINARY, 6, "none"},
        {REG_SZ, 0, "none"},
    };
    for (const auto& c : cases) {
        SetData(Printer(), u"Settings", c.type, TEXT("1234567"), c.size);
        EXPECT_EQ(Settings(), c.text) << c.type << " " << c.size;
    }
}

TEST_F(PrinterAccess, MemoryAndFontSubstitutions) {
    Install("");
    EXPECT_EQ(GetMemorySetting(Printer()), 0u);
    EXPECT_TRUE(SetMemorySetting(Printer(), 512));
    EXPECT_EQ(GetMemorySetting(Printer()), 512u);
    SetData(Printer(), u"Memory", REG_DWORD, "\1\0", 2);
    EXPECT_EQ(GetMemorySetting(Printer()), 0u);

    HeapOwner<WCHAR> table;
    EXPECT_EQ(GetFontSubs(Printer(), &table), 0u);
    EXPECT_FALSE(table);
    const WCHAR pairs[] = TEXT("Arial\0Univers\0");
    EXPECT_TRUE(SetFontSubs(Printer(), pairs, ARRAYSIZE(pairs)));
    ASSERT_EQ(GetFontSubs(Printer(), &table), ARRAYSIZE(pairs));
    EXPECT_EQ(memcmp(table.Get(), pairs, sizeof(pairs)), 0);
    machine_.SetMayWritePrinterData(false);
    EXPECT_FALSE(SetFontSubs(Printer(), pairs, ARRAYSIZE(pairs)));
    EXPECT_FALSE(SetMemorySetting(Printer(), 1));
    EXPECT_FALSE(SetSettingsString(Printer(), TEXT("x")));
}

TEST_F(PrinterAccess, DeviceNames) {
    constexpr struct {
        const WCHAR* printer;
        size_t limit;
        const char* device;
    } kCases[] = {
        {u"\\\\SERVER\\Test,Local Printer", 32, "Test"},
        {u",Local", 32, ""},
        {u"12345678", 8, "1234567"},
        {u"12345678", 9, "12345678"},
        {u"1234567,Local", 8, "1234567"},
        {u"ends\\", 32, ""},
    };
    for (const auto& c : kCases) {
        WCHAR device[32];
        DeviceNameFromPrinterName(device, c.printer, c.limit);
        EXPECT_EQ(ToText(device), c.device) << ToText(c.printer);
    }
}

TEST_F(PrinterAccess, TheStoredDeviceMode) {
    Install(SmallModel(kPdlPcl6).Build());
    VelmoraDevMode devMode;
    EXPECT_EQ(GetPrinterDevMode(Printer(), &devMode), 0);  // the printer has none: the default
    const VelmoraDevMode built = devMode;
    EXPECT_EQ(ValueOf(built.privatePart.modelCode), 0x4321);
    devMode.privatePart.modelCode = 0x1234;
    EXPECT_TRUE(SetPrinterDevMode(Printer(), &devMode.publicPart));
    const HeapOwner<PRINTER_INFO_2W> info = GetPrinterInfo2(Printer());
    ASSERT_TRUE(info && info->pDevMode);
    EXPECT_EQ(DifferenceLines(devMode, *reinterpret_cast<VelmoraDevMode*>(info->pDevMode)), Texts());
    EXPECT_EQ(GetPrinterDevMode(INVALID_HANDLE_VALUE, &devMode), 0);
    EXPECT_EQ(ValueOf(devMode.privatePart.modelCode), 0x1234);  // left as it is

    // Its own, repaired: a feature of the model has no options to select from.
    VelmoraDevMode repaired = devMode;
    ASSERT_EQ(ValueOf(devMode.privatePart.featureSelection[1]), -1);
    repaired.privatePart.featureSelection[1] = 0;
    EXPECT_EQ(GetPrinterDevMode(Printer(), &devMode), 1);
    EXPECT_EQ(DifferenceLines(repaired, devMode), Texts());

    // One that is rejected gives way to the default.
    for (const bool isPublic : {true, false}) {
        VelmoraDevMode rejected = repaired;
        if (isPublic) {
            rejected.publicPart.dmSpecVersion = 0x400;
        } else {
            rejected.privatePart.privateSignature = 0;
        }
        EXPECT_TRUE(SetPrinterDevMode(Printer(), &rejected.publicPart));
        EXPECT_EQ(GetPrinterDevMode(Printer(), &devMode), 1);
        EXPECT_EQ(DifferenceLines(built, devMode), Texts());
    }
    EXPECT_FALSE(SetPrinterDevMode(INVALID_HANDLE_VALUE, &devMode.publicPart));
    host::FailCall("SetPrinterW", ERROR_ACCESS_DENIED);
    EXPECT_FALSE(SetPrinterDevMode(Printer(), &devMode.publicPart));
}

// Registered for image printers on systems from 5.1 on, where the printer's data name a directory.
TEST_F(PrinterAccess, TheSpoolDirectory) {
    Install(SmallModel(kPdlImage, kColor).Build());
    HKEY opened = nullptr;
    ASSERT_EQ(
        RegCreateKeyExW(HKEY_LOCAL_MACHINE, TEXT("SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Test Printer"),
                        0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &opened, nullptr),
        ERROR_SUCCESS);
    const OwnedRegistryKey key(opened);
    const auto registered = [&](DWORD major, DWORD minor, const WCHAR* printer) -> std::string {
        RegDeleteValueW(key.Get(), TEXT("SpoolDirectory"));
        machine_.SetSystemVersion(major, minor);
        RegisterSpoolDirectory(Printer(), printer);
        WCHAR text[MAX_PATH];
        DWORD bytes = sizeof(text);
        DWORD type = 0;
        if (RegQueryValueExW(key.Get(), TEXT("SpoolDirectory"), nullptr, &type, reinterpret_cast<BYTE*>(text),
                             &bytes) != ERROR_SUCCESS) {
            return "none";
        }
        EXPECT_EQ(type, DWORD{REG_SZ});
        EXPECT_EQ(bytes, (WideText(text).size() + 1) * sizeof(WCHAR));
        return ToText(text);
    };
    EXPECT_EQ(registered(10, 0, kPrinterName), "none");
    SetString(Printer(), u"DefaultSpoolDirectory", u"D:\\Spool");
    for (const auto& [major, minor] : {std::pair(4u, 9u), {5u, 0u}, {5u, 1u}, {6u, 0u}, {10u, 0u}}) {
        EXPECT_EQ(registered(major, minor, TEXT("\\\\VELMORA-PC\\Test Printer,Local")),
                  major * 10 + minor > 50 ? "D:\\Spool" : "none")
            << major << "." << minor;
    }
    EXPECT_EQ(registered(10, 0, TEXT("Unknown")), "none");
    Describe(SmallModel(kPdlPcl6, kColor));
    EXPECT_EQ(registered(10, 0, kPrinterName), "none");
    Describe(SmallModel(kPdlImage, kColor));
    SetData(Printer(), u"DefaultSpoolDirectory", REG_DWORD, "1234", 4);
    EXPECT_EQ(registered(10, 0, kPrinterName), "none");
}

}  // namespace
}  // namespace velmora
