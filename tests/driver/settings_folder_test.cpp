#include "driver/settings/settings_folder.h"

#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

const WideText kFolder = TEXT("C:\\Data\\Kestranix Inc.\\Velmora Test\\");

class SettingsFolder : public MachineTest {
  protected:
    void SetUp() override { machine_.SetVariable(TEXT("APPDATA"), TEXT("C:\\Data")); }

    static std::string Folder() {
        WCHAR folder[MAX_PATH] = TEXT("#");
        GetSettingsFolder(kPrinterName, folder, ARRAYSIZE(folder));
        return ToText(folder);
    }
    static std::string FilePath(const WCHAR* printerName = kPrinterName) {
        WCHAR path[MAX_PATH] = TEXT("#");
        const bool found = GetSettingsFilePath(printerName, path, ARRAYSIZE(path));
        EXPECT_EQ(found, path[0] != 0);
        return ToText(path);
    }
    std::string SettingsValue() const {
        const auto value = GetData(Printer(), TEXT("Settings"));
        return value ? ToText(reinterpret_cast<const WCHAR*>(value->c_str())) : "none";
    }
};

TEST_F(SettingsFolder, LiesInTheUsersApplicationData) {
    DriverPackage package = PackageOf("");
    package.driverName = TEXT("Velmora 62/B: why?");  // is cleaned
    Install(package);
    EXPECT_EQ(Folder(), "C:\\Data\\Kestranix Inc.\\Velmora 62-B  why ");
    machine_.SetVariable(TEXT("APPDATA"), TEXT(""));
    machine_.SetVariable(TEXT("USERPROFILE"), TEXT("C:\\Users\\Other"));
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(Folder(), "C:\\Users\\Other\\Application Data\\Kestranix Inc.\\Velmora 62-B  why ");
        EXPECT_TRUE(DriveFileExists(TEXT("C:\\Users\\Other\\Application Data\\Kestranix Inc.\\Velmora 62-B  why ")));
    }
    machine_.SetVariable(TEXT("APPDATA"), TEXT("C:\\") + WideText(300, TEXT('a')));
    machine_.SetVariable(TEXT("USERPROFILE"), TEXT("C:\\") + WideText(250, TEXT('u')));
    EXPECT_EQ(Folder().size(), static_cast<size_t>(MAX_PATH - 1));
    // A file's name isn't cut, whether it is to be given or is there.
    PrepareSettingsFile(kPrinterName);
    EXPECT_EQ(SettingsValue(), "none");
    SetSettingsString(Printer(), TEXT("0000ABCD.ini"));
    EXPECT_EQ(FilePath(), "");
}

TEST_F(SettingsFolder, NamesAreCleanedCharacterByCharacter) {
    WCHAR text[] = TEXT("a\"*:?|/\\<>b.c");
    CleanFileName(text, ARRAYSIZE(text));
    EXPECT_EQ(ToText(text), "a'    --()b.c");
    WCHAR part[] = TEXT("::::");
    CleanFileName(part, 2);
    EXPECT_EQ(ToText(part), "  ::");
}

TEST_F(SettingsFolder, APrinterGetsItsFileNameOnce) {
    Install("");
    EXPECT_EQ(FilePath(), "");
    machine_.SetTickCount(0xABCD);
    EXPECT_EQ(PrepareSettingsFile(kPrinterName), 0);
    EXPECT_EQ(SettingsValue(), "0000ABCD.ini");
    const std::string path = ToText(kFolder) + "0000ABCD.ini";
    EXPECT_EQ(FilePath(), path);
    EXPECT_EQ(ToText(CurrentSettingsFile()), path);
    EXPECT_FALSE(DriveFileExists(kFolder + TEXT("0000ABCD.ini")));

    machine_.SetTickCount(0x99999999);
    InstallPrinter(PackageOf(""), TEXT("Second"));
    PrepareSettingsFile(TEXT("Second"));
    EXPECT_EQ(ToText(CurrentSettingsFile()), ToText(kFolder) + "99999999.ini");
    PrepareSettingsFile(kPrinterName);
    EXPECT_EQ(ToText(CurrentSettingsFile()), path);
    EXPECT_EQ(SettingsValue(), "0000ABCD.ini");
    PrepareSettingsFile(TEXT("Unknown"));  // nothing of another printer's is left
    EXPECT_EQ(ToText(CurrentSettingsFile()), "");
}

// The search for a free name ends when there is none among the numbers tried.
TEST_F(SettingsFolder, NamesOfExistingFilesArePassedOver) {
    Install("");
    machine_.SetTickCount(0x10);
    for (WCHAR digit : WideText(TEXT("0123456789ABCDEF"))) {
        if (digit != TEXT('2')) {
            WriteDriveFile(kFolder + TEXT("0000001") + digit + TEXT(".INI"), "");
        }
        WriteDriveFile(kFolder + TEXT("0000002") + digit + TEXT(".INI"), "");
        WriteDriveFile(kFolder + TEXT("0000003") + digit + TEXT(".INI"), "");
    }
    PrepareSettingsFile(kPrinterName);
    EXPECT_EQ(SettingsValue(), "00000012.ini");
    WriteDriveFile(kFolder + TEXT("00000012.ini"), "");
    InstallPrinter(PackageOf(""), TEXT("Second"));
    PrepareSettingsFile(TEXT("Second"));
    EXPECT_TRUE(FilePath(TEXT("Second")).starts_with(ToText(kFolder) + "0000002"));
}

TEST_F(SettingsFolder, APrinterThatCannotKeepItsName) {
    Install("");
    machine_.SetMayWritePrinterData(false);
    for (const WCHAR* printer : {kPrinterName, TEXT("Unknown")}) {
        EXPECT_EQ(PrepareSettingsFile(printer), 0);
        EXPECT_EQ(FilePath(printer), "");
    }
    EXPECT_EQ(SettingsValue(), "none");
}

TEST_F(SettingsFolder, ProfileNames) {
    Install("");
    const auto read = [](auto operation) {
        WCHAR text[16] = TEXT("#");
        operation(kPrinterName, text, ARRAYSIZE(text));
        return ToText(text);
    };
    WriteProfileName(kPrinterName, TEXT("lost"));  // there is no file name yet
    PrepareSettingsFile(kPrinterName);
    EXPECT_EQ(read(ReadProfileName) + read(ReadScreenProfileName), "");
    WriteProfileName(kPrinterName, TEXT("printer.icm"));
    WriteScreenProfileName(kPrinterName, TEXT("a screen's profile.icm"));
    EXPECT_EQ(read(ReadProfileName), "printer.icm");
    EXPECT_EQ(read(ReadScreenProfileName), "a screen's prof");
    EXPECT_TRUE(ReadDriveFile(CurrentSettingsFile()).starts_with("[Velmora]\r\nProfile=printer.icm\r\n"));
}

TEST_F(SettingsFolder, StoresAreReadFromTheUsersFileOrTheDrivers) {
    Install(PackageOf("", "[Other]\r\n"));
    WCHAR path[MAX_PATH];
    const auto store = [&path] {
        EXPECT_TRUE(FindStoreToRead(kPrinterName, path));
        return ToText(path).substr(ToText(path).rfind('\\') + 1);
    };
    EXPECT_EQ(store(), "KV62.INI");
    PrepareSettingsFile(kPrinterName);
    EXPECT_EQ(store(), "KV62.INI");
    WriteProfileName(kPrinterName, TEXT("p"));
    EXPECT_EQ(store(), SettingsValue());
    EXPECT_FALSE(FindDriverIniFile(INVALID_HANDLE_VALUE, path));
    EXPECT_EQ(path[0], 0);
    EXPECT_FALSE(FindStoreToRead(TEXT("Unknown"), path));
}

TEST_F(SettingsFolder, ShortPaths) {
    const auto shortName = [](const WideText& path) {
        WIN32_FIND_DATAW found = {};
        const OwnedSearch search(FindFirstFileW(path.c_str(), &found));
        return ToText(found.cAlternateFileName);
    };
    const WideText folder = TEXT("C:\\A long folder name");
    const WideText file = folder + TEXT("\\another long name.text");
    WriteDriveFile(file, "");
    WriteDriveFile(TEXT("C:\\short.txt"), "");
    const std::string shortFolder = "C:\\" + shortName(folder);
    const struct {
        WideText path;
        size_t capacity;
        std::string expected;
    } cases[] = {
        {folder, MAX_PATH, shortFolder},
        {file, MAX_PATH, shortFolder + "\\" + shortName(file)},
        {folder + TEXT("\\missing folder\\missing"), MAX_PATH, shortFolder + "\\missing folder\\missing"},
        {TEXT("C:\\SHORT.TXT"), MAX_PATH, "C:\\short.txt"},  // the name as the file system has it
        {TEXT("C:\\short.txt"), 13, "C:\\short.txt"},
        {TEXT("C:\\short.txt"), 12, "C:\\short.tx"},
        {TEXT("C:"), MAX_PATH, "C:"},
        {TEXT(""), MAX_PATH, ""},
    };
    for (const auto& c : cases) {
        WCHAR text[MAX_PATH] = {};
        c.path.copy(text, MAX_PATH - 1);
        GetShortPath(text, c.capacity);
        EXPECT_EQ(ToText(text), c.expected) << ToText(c.path);
    }
}

}  // namespace
}  // namespace velmora
