#include "driver/settings/settings_folder.h"

#include "driver/entry/printer_access.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

class SettingsFolder : public MachineTest {
  protected:
    static std::string Folder(const WCHAR* printerName = kPrinterName) {
        WCHAR folder[MAX_PATH] = TEXT("#");
        GetSettingsFolder(printerName, folder, ARRAYSIZE(folder));
        return ToText(folder);
    }
    static std::string FilePath(const WCHAR* printerName = kPrinterName) {
        WCHAR path[MAX_PATH] = TEXT("#");
        const bool found = GetSettingsFilePath(printerName, path, ARRAYSIZE(path));
        EXPECT_EQ(found, path[0] != 0);
        return ToText(path);
    }
    std::string SettingsValue() const {
        const auto value = GetData(Printer(), u"Settings");
        return value ? ToText(reinterpret_cast<const char16_t*>(value->c_str())) : "none";
    }
};

TEST_F(SettingsFolder, LiesInTheUsersApplicationData) {
    Install("");
    machine_.SetVariable(u"APPDATA", u"C:\\Users\\Someone\\AppData\\Roaming");
    EXPECT_EQ(Folder(), "C:\\Users\\Someone\\AppData\\Roaming\\Kestranix Inc.\\Velmora Test");
    EXPECT_TRUE(DriveFileExists(u"C:\\Users\\Someone\\AppData\\Roaming\\Kestranix Inc.\\Velmora Test"));
    machine_.SetVariable(u"APPDATA", u"");
    machine_.SetVariable(u"USERPROFILE", u"C:\\Users\\Other");
    EXPECT_EQ(Folder(), "C:\\Users\\Other\\Application Data\\Kestranix Inc.\\Velmora Test");
    EXPECT_TRUE(DriveFileExists(u"C:\\Users\\Other\\Application Data\\Kestranix Inc.\\Velmora Test"));
    EXPECT_EQ(Folder(), "C:\\Users\\Other\\Application Data\\Kestranix Inc.\\Velmora Test");
}

TEST_F(SettingsFolder, TheDriversNameIsCleaned) {
    DriverPackage package = PackageOf("");
    package.driverName = u"Velmora 62/B: why?";
    Install(package);
    machine_.SetVariable(u"APPDATA", u"C:\\Data");
    EXPECT_EQ(Folder(), "C:\\Data\\Kestranix Inc.\\Velmora 62-B  why ");
}

TEST_F(SettingsFolder, NamesAreCleanedCharacterByCharacter) {
    WCHAR text[] = TEXT("a\"*:?|/\\<>b.c");
    CleanFileName(text, ARRAYSIZE(text));
    EXPECT_EQ(ToText(text), "a'    --()b.c");
    WCHAR part[] = TEXT("::::");
    CleanFileName(part, 2);
    EXPECT_EQ(ToText(part), "  ::");
}

TEST_F(SettingsFolder, LongVariablesAreCut) {
    Install("");
    machine_.SetVariable(u"APPDATA", u"C:\\" + WideText(300, u'a'));
    machine_.SetVariable(u"USERPROFILE", u"C:\\" + WideText(250, u'u'));
    EXPECT_EQ(Folder().size(), static_cast<size_t>(MAX_PATH - 1));
}

TEST_F(SettingsFolder, APrinterGetsItsFileNameOnce) {
    Install("");
    machine_.SetVariable(u"APPDATA", u"C:\\Data");
    EXPECT_EQ(FilePath(), "");
    machine_.SetTickCount(0xABCD);
    EXPECT_EQ(PrepareSettingsFile(kPrinterName), 0);
    EXPECT_EQ(SettingsValue(), "0000ABCD.ini");
    const std::string path = "C:\\Data\\Kestranix Inc.\\Velmora Test\\0000ABCD.ini";
    EXPECT_EQ(FilePath(), path);
    EXPECT_EQ(ToText(CurrentSettingsFile()), path);
    EXPECT_FALSE(DriveFileExists(u"C:\\Data\\Kestranix Inc.\\Velmora Test\\0000ABCD.ini"));

    machine_.SetTickCount(0x99999999);
    InstallPrinter(PackageOf(""), u"Second");
    PrepareSettingsFile(TEXT("Second"));
    EXPECT_EQ(ToText(CurrentSettingsFile()), "C:\\Data\\Kestranix Inc.\\Velmora Test\\99999999.ini");
    PrepareSettingsFile(kPrinterName);
    EXPECT_EQ(ToText(CurrentSettingsFile()), path);
    EXPECT_EQ(SettingsValue(), "0000ABCD.ini");
}

TEST_F(SettingsFolder, NamesOfExistingFilesArePassedOver) {
    Install("");
    machine_.SetVariable(u"APPDATA", u"C:\\Data");
    machine_.SetTickCount(0x10);
    for (const WideText name : {u"00000010", u"00000011", u"00000013"}) {
        WriteDriveFile(u"C:\\Data\\Kestranix Inc.\\Velmora Test\\" + name + u".INI", "");
    }
    PrepareSettingsFile(kPrinterName);
    EXPECT_EQ(SettingsValue(), "00000012.ini");
}

// The search for a free name ends when there is none among the numbers tried.
TEST_F(SettingsFolder, TheSearchForANameEnds) {
    Install("");
    machine_.SetVariable(u"APPDATA", u"C:\\Data");
    machine_.SetTickCount(0);
    for (int i = 0; i < 40; ++i) {
        constexpr char16_t kDigits[] = u"0123456789ABCDEF";
        const WideText name = WideText(u"000000") + kDigits[i / 16] + kDigits[i % 16] + u".ini";
        WriteDriveFile(u"C:\\Data\\Kestranix Inc.\\Velmora Test\\" + name, "");
    }
    PrepareSettingsFile(kPrinterName);
    EXPECT_EQ(SettingsValue().substr(0, 7), "0000001");
}

TEST_F(SettingsFolder, APrinterThatCannotKeepItsName) {
    Install("");
    machine_.SetMayWritePrinterData(false);
    EXPECT_EQ(PrepareSettingsFile(kPrinterName), 0);
    EXPECT_EQ(SettingsValue(), "none");
    EXPECT_EQ(FilePath(), "");
    EXPECT_EQ(PrepareSettingsFile(TEXT("Unknown")), 0);
    EXPECT_EQ(FilePath(TEXT("Unknown")), "");
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
    EXPECT_EQ(read(ReadProfileName), "");
    EXPECT_EQ(read(ReadScreenProfileName), "");
    WriteProfileName(kPrinterName, TEXT("printer.icm"));
    WriteScreenProfileName(kPrinterName, TEXT("a screen's profile.icm"));
    EXPECT_EQ(read(ReadProfileName), "printer.icm");
    EXPECT_EQ(read(ReadScreenProfileName), "a screen's prof");
    WCHAR section[64];
    GetPrivateProfileSectionW(TEXT("Velmora"), section, ARRAYSIZE(section), CurrentSettingsFile());
    EXPECT_EQ(ToText(section), "Profile=printer.icm");
}

TEST_F(SettingsFolder, StoresAreReadFromTheUsersFileOrTheDrivers) {
    DriverPackage package = PackageOf("");
    package.dependent.push_back({u"KV62.INI", "[Other]\r\n"});
    Install(package);
    const auto store = [] {
        WCHAR path[MAX_PATH] = TEXT("#");
        const bool found = FindStoreToRead(kPrinterName, path);
        EXPECT_EQ(found, path[0] != 0);
        return ToText(path).substr(ToText(path).rfind('\\') + 1);
    };
    EXPECT_EQ(store(), "KV62.INI");
    PrepareSettingsFile(kPrinterName);
    EXPECT_EQ(store(), "KV62.INI");
    WriteProfileName(kPrinterName, TEXT("p"));
    EXPECT_EQ(store(), SettingsValue());
    WCHAR path[MAX_PATH];
    EXPECT_TRUE(FindDriverIniFile(Printer(), path));
    EXPECT_FALSE(FindDriverIniFile(INVALID_HANDLE_VALUE, path));
    EXPECT_EQ(path[0], 0);
    EXPECT_FALSE(FindStoreToRead(TEXT("Unknown"), path));
}

class ShortPaths : public MachineTest {
  protected:
    static WideText ShortNameOf(const WideText& path) {
        WIN32_FIND_DATAW found;
        const OwnedSearch search(FindFirstFileW(path.c_str(), &found));
        EXPECT_TRUE(search);
        return found.cAlternateFileName[0] != 0 ? found.cAlternateFileName : found.cFileName;
    }
    static std::string Short(const WideText& path, size_t capacity = MAX_PATH) {
        WCHAR text[MAX_PATH] = {};
        path.copy(text, MAX_PATH - 1);
        GetShortPath(text, capacity);
        return ToText(text);
    }
};

TEST_F(ShortPaths, TakeTheShortNameOfWhatExists) {
    const WideText folder = u"C:\\A long folder name";
    const WideText file = folder + u"\\another long name.text";
    WriteDriveFile(file, "");
    WriteDriveFile(u"C:\\short.txt", "");
    const std::string shortFolder = "C:\\" + ToText(ShortNameOf(folder));
    EXPECT_NE(shortFolder, ToText(folder));
    EXPECT_EQ(Short(folder), shortFolder);
    EXPECT_EQ(Short(file), shortFolder + "\\" + ToText(ShortNameOf(file)));
    EXPECT_EQ(Short(folder + u"\\missing folder\\missing file.text"),
              shortFolder + "\\missing folder\\missing file.text");
    EXPECT_EQ(Short(u"C:\\SHORT.TXT"), "C:\\short.txt");  // the name as the file system has it
    EXPECT_EQ(Short(u"C:"), "C:");
    EXPECT_EQ(Short(u""), "");
}

TEST_F(ShortPaths, AreCutToTheCapacity) {
    WriteDriveFile(u"C:\\folder\\file", "");
    EXPECT_EQ(Short(u"C:\\folder\\file", 8), "C:\\fold");
    EXPECT_EQ(Short(u"C:\\folder\\file", 15), "C:\\folder\\file");
    EXPECT_EQ(Short(u"C:\\folder\\file", 14), "C:\\folder\\fil");
}

}  // namespace
}  // namespace velmora
