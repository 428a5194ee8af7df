#include <cstring>

#include "driver/entry/printer_access.h"
#include "driver/entry/spool_directory.h"
#include "driver/entry/stored_devmode.h"
#include "tests/driver/description_builder.h"
#include "tests/driver/machine.h"
#include "tests/driver/resource_file.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

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

    static WideText FileNamePartOf(const WideText& path) { return path.substr(path.rfind(u'\\') + 1); }
};

TEST_F(PrinterAccess, PrinterNamesAreCutAndMadeLocal) {
    Install("");
    InstallPrinter(PackageOf(""), u"DEVMODE");
    constexpr struct {
        const WCHAR* name;
        const char* opened;
    } kCases[] = {
        {u"Test Printer", "Test Printer"},
        {u"\\\\VELMORA-PC\\Test Printer", "Test Printer"},
        {u"\\\\VELMORA-PC\\Test Printer,Local", "Test Printer"},
        {u"Test Printer,Local", "Test Printer"},
        {u"Test Printer,LocalOnly,Job 3", "Test Printer"},
        {u"Test Printer,DrvConvert", "Test Printer"},
        {u"Test Printer,DEVMODE", "Test Printer"},
        {u"Test Printer,DEVMODE,DrvConvert,Local", "Test Printer"},
        {u"DEVMODE,Local", "DEVMODE"},
        {u"\\\\VELMORA-PX\\Test Printer", "none"},
        {u"\\\\VELMORA-PC", "none"},
        {u"Test Printer,Other", "none"},
        {u",Local", "none"},
        {u"", "none"},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(Opened(c.name), c.opened) << ToText(c.name);
    }
}

TEST_F(PrinterAccess, NamesAreCutTo127Characters) {
    const WideText longest(127, u'P');
    Install(PackageOf(""), longest);
    EXPECT_EQ(Opened(longest), ToText(longest));
    EXPECT_EQ(Opened(longest + u"tail"), ToText(longest));
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
}

TEST_F(PrinterAccess, WritingPrinterDataIsTried) {
    Install("");
    EXPECT_EQ(TestPrinterDataAccess(Printer()), 0);
    EXPECT_EQ(GetData(Printer(), u"Test"), std::nullopt);
    host::FailCall("GetPrinterDataW", ERROR_INVALID_HANDLE);
    EXPECT_EQ(TestPrinterDataAccess(Printer()), 1);
    machine_.SetMayWritePrinterData(false);
    EXPECT_EQ(TestPrinterDataAccess(Printer()), 1);
    EXPECT_EQ(TestPrinterDataAccess(INVALID_HANDLE_VALUE), 1);
}

TEST_F(PrinterAccess, DriverFilesAreSearchedInOrder) {
    DriverPackage package = PackageOf("");
    package.core.name = u"set-core.dll";
    package.data = {u"set-p1.dat", "d"};
    package.help = {u"set-p1p2.hlp", "h"};
    package.configuration.name = u"set-p2.dll";
    package.dependent = {{u"set-one.txt", "1"}, {u"set-two.txt", "2"}};
    Install(package);
    constexpr struct {
        const WCHAR* fragment;
        const char* found;
    } kCases[] = {
        {u"SET-", "SET-ONE.TXT"},
        {u"set-two", "SET-TWO.TXT"},
        {u".t", "SET-ONE.TXT"},
        {u"P1", "SET-P1.DAT"},
        {u"P2", "SET-P1P2.HLP"},
        {u".DLL", "SET-P2.DLL"},  // the rendering core is never searched
        {u"CORE", ""},
        {u"\\3\\", "SET-ONE.TXT"},  // the whole path counts
        {u"", ""},
        {nullptr, ""},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(Found(nullptr, c.fragment), c.found) << ToText(c.fragment ? c.fragment : u"null");
    }
    WCHAR path[MAX_PATH];
    EXPECT_TRUE(FindDriverFile(Printer(), nullptr, TEXT("hlp"), path));
    WideText installed = InstalledPath(u"set-p1p2.hlp");
    CharUpperW(installed.data());
    EXPECT_EQ(ToText(path), ToText(installed));
}

TEST_F(PrinterAccess, APrinterDataValueNamesTheDriverFile) {
    DriverPackage package = PackageOf("");
    package.dependent = {{u"first.xpi", "1"}, {u"second.xpi", "2"}};
    Install(package);
    EXPECT_EQ(Found(TEXT("XPI"), TEXT(".XPI")), "FIRST.XPI");
    SetString(Printer(), u"XPI", u"Second");
    EXPECT_EQ(Found(TEXT("XPI"), TEXT(".XPI")), "SECOND.XPI");
    EXPECT_EQ(Found(TEXT("XPI"), nullptr), "SECOND.XPI");
    EXPECT_EQ(Found(TEXT(""), TEXT(".XPI")), "FIRST.XPI");
    SetString(Printer(), u"XPI", u"third");
    EXPECT_EQ(Found(TEXT("XPI"), TEXT(".XPI")), "");  // no way back to the fragment
    SetString(Printer(), u"XPI", u"");
    EXPECT_EQ(Found(TEXT("XPI"), TEXT(".XPI")), "FIRST.XPI");
    const DWORD number = 7;
    SetData(Printer(), u"XPI", REG_DWORD, &number, sizeof(number));
    EXPECT_EQ(Found(TEXT("XPI"), TEXT(".XPI")), "FIRST.XPI");
}

TEST_F(PrinterAccess, TheRenderingCore) {
    Install("");
    WCHAR path[MAX_PATH];
    EXPECT_TRUE(GetRenderCorePath(Printer(), path));
    EXPECT_EQ(ToText(path), ToText(InstalledPath(u"KV62R.DLL")));
    host::FailCall("GetPrinterDriverW", ERROR_UNKNOWN_PRINTER_DRIVER, 1);
    EXPECT_FALSE(GetRenderCorePath(INVALID_HANDLE_VALUE, path));
    EXPECT_EQ(path[0], 0);
}

TEST_F(PrinterAccess, TheRenderingCoreOfXpsAndByName) {
    DriverPackage package = PackageOf("");
    package.dependent = {{u"kv62xps.dll", "x"}, {u"kv62core.dll", "c"}, {u"other.dll", "o"}};
    Install(package);
    WCHAR path[MAX_PATH];
    const auto core = [&] {
        EXPECT_TRUE(GetRenderCorePath(Printer(), path));
        return ToText(FileNamePartOf(path));
    };
    EXPECT_EQ(core(), "KV62XPS.DLL");
    SetString(Printer(), u"XPSCoreName", u"other");
    EXPECT_EQ(core(), "OTHER.DLL");
    SetString(Printer(), u"NTCoreName", u"kv62core");
    EXPECT_EQ(core(), "KV62CORE.DLL");
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
        {"two numbers", VersionedFile(u"1.2"), 0x0102},
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
    WCHAR text[8];
    EXPECT_FALSE(ReadPrinterString(Printer(), TEXT("Settings"), text, ARRAYSIZE(text)));
    EXPECT_EQ(text[0], 0);
    EXPECT_TRUE(SetSettingsString(Printer(), TEXT("1234567")));
    EXPECT_TRUE(GetSettingsString(Printer(), text, ARRAYSIZE(text)));
    EXPECT_EQ(ToText(text), "1234567");
    EXPECT_EQ(GetData(Printer(), u"Settings")->size(), 16u);
    EXPECT_TRUE(SetSettingsString(Printer(), TEXT("12345678")));
    EXPECT_FALSE(GetSettingsString(Printer(), text, ARRAYSIZE(text)));
    EXPECT_EQ(text[0], 0);

    // A value whose writer left the terminator out, or stored half a character.
    SetData(Printer(), u"Settings", REG_SZ, TEXT("1234567"), 14);
    EXPECT_TRUE(GetSettingsString(Printer(), text, ARRAYSIZE(text)));
    EXPECT_EQ(ToText(text), "1234567");
    SetData(Printer(), u"Settings", REG_SZ, TEXT("12"), 3);
    EXPECT_TRUE(GetSettingsString(Printer(), text, ARRAYSIZE(text)));
    EXPECT_EQ(ToText(text), "1");
    SetData(Printer(), u"Settings", REG_BINARY, TEXT("12"), 6);
    EXPECT_FALSE(GetSettingsString(Printer(), text, ARRAYSIZE(text)));
    SetData(Printer(), u"Settings", REG_SZ, "", 0);
    EXPECT_FALSE(GetSettingsString(Printer(), text, ARRAYSIZE(text)));
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
    table.Reset(nullptr);
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
        {u"Test Printer", 32, "Test Printer"},
        {u"\\\\SERVER\\Test Printer", 32, "Test Printer"},
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

TEST_F(PrinterAccess, TheLocaleSaysThePaper) {
    machine_.SetMetric(true);
    EXPECT_TRUE(IsMetricLocale());
    EXPECT_EQ(DefaultPaperForLocale(), DMPAPER_A4);
    machine_.SetMetric(false);
    EXPECT_FALSE(IsMetricLocale());
    EXPECT_EQ(DefaultPaperForLocale(), DMPAPER_LETTER);
}

TEST_F(PrinterAccess, TheStoredDeviceMode) {
    Install(SmallModel(kPdlPcl6).Build());
    const auto devMode = HeapOwner<VelmoraDevMode>::Allocate();
    EXPECT_EQ(GetPrinterDevMode(Printer(), devMode.Get()), 0);  // the printer has none: the default
    EXPECT_EQ(ValueOf(devMode->privatePart.modelCode), 0x4321);
    EXPECT_EQ(ToText(devMode->publicPart.dmDeviceName), "Test Printer");

    EXPECT_TRUE(SetPrinterDevMode(Printer(), &devMode->publicPart));
    EXPECT_EQ(GetPrinterDevMode(Printer(), devMode.Get()), 1);
    const HeapOwner<PRINTER_INFO_2W> info = GetPrinterInfo2(Printer());
    ASSERT_TRUE(info && info->pDevMode);
    EXPECT_EQ(ValueOf(info->pDevMode->dmDriverExtra), kPrivateDevModeSize);
    EXPECT_EQ(memcmp(info->pDevMode, devMode.Get(), sizeof(VelmoraDevMode)), 0);
    EXPECT_EQ(ToText(info->pPrinterName), "Test Printer");

    memset(devMode.Get(), 0x55, sizeof(VelmoraDevMode));
    EXPECT_EQ(GetPrinterDevMode(INVALID_HANDLE_VALUE, devMode.Get()), 0);
    EXPECT_EQ(ValueOf(devMode->privatePart.jobImageType), 0x5555);
    EXPECT_FALSE(SetPrinterDevMode(INVALID_HANDLE_VALUE, &devMode->publicPart));
    host::FailCall("SetPrinterW", ERROR_ACCESS_DENIED);
    EXPECT_FALSE(SetPrinterDevMode(Printer(), &devMode->publicPart));
}

class SpoolDirectory : public MachineTest {
  protected:
    static constexpr const WCHAR* kKey = TEXT("SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Test Printer");

    void SetUp() override { machine_.SetSystemVersion(6, 1); }

    void InstallWithDirectory(uint16_t pdlType) {
        Install(SmallModel(pdlType, kColor).Build());
        SetString(Printer(), u"DefaultSpoolDirectory", u"D:\\Spool");
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_SET_VALUE, nullptr,
                                  &key, nullptr),
                  ERROR_SUCCESS);
        RegDeleteValueW(key, TEXT("SpoolDirectory"));
        RegCloseKey(key);
    }

    static std::string Registered() {
        HKEY opened = nullptr;
        if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS) {
            return "no key";
        }
        const OwnedRegistryKey key(opened);
        WCHAR text[MAX_PATH];
        DWORD bytes = sizeof(text);
        DWORD type = 0;
        if (RegQueryValueExW(key.Get(), TEXT("SpoolDirectory"), nullptr, &type, reinterpret_cast<BYTE*>(text),
                             &bytes) != ERROR_SUCCESS) {
            return "none";
        }
        EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
        EXPECT_EQ(bytes, (std::u16string(text).size() + 1) * sizeof(WCHAR));
        return ToText(text);
    }
};

TEST_F(SpoolDirectory, IsRegisteredForImagePrintersOnSystemsFrom51On) {
    InstallWithDirectory(kPdlImage);
    constexpr struct {
        DWORD major;
        DWORD minor;
        bool registers;
    } kCases[] = {{4, 0, false}, {4, 9, false}, {5, 0, false}, {5, 1, true}, {5, 2, true}, {6, 0, true}, {10, 0, true}};
    for (const auto& c : kCases) {
        HKEY key = nullptr;
        ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, KEY_SET_VALUE, &key), ERROR_SUCCESS);
        RegDeleteValueW(key, TEXT("SpoolDirectory"));
        RegCloseKey(key);
        machine_.SetSystemVersion(c.major, c.minor);
        RegisterSpoolDirectory(Printer(), TEXT("\\\\VELMORA-PC\\Test Printer,Local"));
        EXPECT_EQ(Registered(), c.registers ? "D:\\Spool" : "none") << c.major << "." << c.minor;
    }
}

TEST_F(SpoolDirectory, NotForOtherModels) {
    InstallWithDirectory(kPdlPcl6);
    RegisterSpoolDirectory(Printer(), kPrinterName);
    EXPECT_EQ(Registered(), "none");
}

TEST_F(SpoolDirectory, NotWithoutADirectoryOrAKey) {
    InstallWithDirectory(kPdlImage);
    RegisterSpoolDirectory(Printer(), TEXT("Unknown"));
    EXPECT_EQ(Registered(), "none");
    const DWORD number = 1;
    SetData(Printer(), u"DefaultSpoolDirectory", REG_DWORD, &number, sizeof(number));
    RegisterSpoolDirectory(Printer(), kPrinterName);
    EXPECT_EQ(Registered(), "none");
}

}  // namespace
}  // namespace velmora
