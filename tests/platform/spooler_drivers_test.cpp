// Drivers and print processors: installing, replacing, deleting, the files they bring.
#include "tests/platform/spooler_fixture.h"

namespace host {
namespace {

const std::filesystem::path kInstalled = "Windows/System32/spool/drivers/x64/3";

std::vector<std::u16string> Strings(LPCWSTR multiString) {
    std::vector<std::u16string> strings;
    for (; multiString && *multiString; multiString += strings.back().size() + 1) {
        strings.emplace_back(multiString);
    }
    return strings;
}

TEST_F(SpoolerTest, InstalledFilesAreCopiedAndNamedInFull) {
    const std::u16string folder = kInstalledFolder;
    const std::vector<BYTE> block = Driver3();
    const auto* const info = reinterpret_cast<const DRIVER_INFO_3W*>(block.data());
    EXPECT_EQ(info->cVersion, 3u);
    EXPECT_EQ(std::u16string(info->pName), u"Probe Driver");
    EXPECT_EQ(std::u16string(info->pEnvironment), u"Windows x64");
    EXPECT_EQ(std::u16string(info->pDriverPath), folder + u"core.dll");
    EXPECT_EQ(std::u16string(info->pDataFile), folder + u"model.dat");
    EXPECT_EQ(std::u16string(info->pConfigFile), folder + u"config.dll");
    EXPECT_EQ(info->pHelpFile, nullptr);
    EXPECT_EQ(info->pMonitorName, nullptr);
    EXPECT_EQ(Strings(info->pDependentFiles), (std::vector<std::u16string>{folder + u"one.dll", folder + u"two.ini"}));
    for (const char* file : {"core.dll", "model.dat", "config.dll", "one.dll", "two.ini"}) {
        EXPECT_EQ(ReadOnDrive(machine_, kInstalled / file), std::string("content of ") + file);
    }
}

TEST_F(SpoolerTest, DriverRequestsThatAreRefused) {
    constexpr DWORD kAll = APD_COPY_ALL_FILES | APD_COPY_FROM_DIRECTORY;
    const struct {
        DriverRequest request;
        DWORD flags;
        DWORD error;
    } cases[] = {
        {{.name = u""}, kAll, ERROR_INVALID_PARAMETER},
        {{.driverPath = u""}, kAll, ERROR_INVALID_PARAMETER},
        {{.dataFile = u""}, kAll, ERROR_INVALID_PARAMETER},
        {{.configFile = u""}, kAll, ERROR_INVALID_PARAMETER},
        {{.version = 4}, kAll, ERROR_INVALID_PARAMETER},
        {{}, 0, ERROR_INVALID_PARAMETER},
        {{}, APD_COPY_FROM_DIRECTORY, ERROR_INVALID_PARAMETER},
        {{}, APD_COPY_ALL_FILES | APD_COPY_NEW_FILES, ERROR_INVALID_PARAMETER},
        {{}, kAll | 0x100, ERROR_INVALID_PARAMETER},
        {{.environment = u"Windows NT x86"}, kAll, ERROR_INVALID_ENVIRONMENT},
        {{.dataFile = u"C:\\Package\\none"}, kAll, ERROR_FILE_NOT_FOUND},
        {{.dataFile = u"C:\\Package"}, kAll, ERROR_FILE_NOT_FOUND},
        {{.dataFile = u"none"}, kAll, ERROR_FILE_NOT_FOUND},
        {{.dependentFiles = {u"C:\\Package\\one.dll", u"D:\\one.dll"}}, kAll, ERROR_FILE_NOT_FOUND},
    };
    WriteOnDrive(machine_, "Package/core.dll", "changed");
    for (const auto& test : cases) {
        DriverRequest request = test.request;
        EXPECT_FALSE(request.Add(test.flags));
        EXPECT_EQ(GetLastError(), test.error) << &test - cases;
    }
    // Nothing was copied: a package is looked through before its first file is.
    EXPECT_EQ(ReadOnDrive(machine_, kInstalled / "core.dll"), "content of core.dll");
}

TEST_F(SpoolerTest, InstallingAgainReplacesTheDriver) {
    namespace fs = std::filesystem;
    const auto hour = std::chrono::hours(1);
    for (const char* file : {"core.dll", "model.dat"}) {
        WriteOnDrive(machine_, fs::path("Package") / file, "second");
    }
    // Copying new files only leaves a file that is newer than the package's.
    const fs::file_time_type installed = fs::last_write_time(machine_.Drive() / kInstalled / "core.dll");
    fs::last_write_time(machine_.Drive() / "Package/core.dll", installed - hour);
    fs::last_write_time(machine_.Drive() / "Package/model.dat", installed + hour);
    DriverRequest request = {.name = u"PROBE driver", .helpFile = u"C:\\Package\\help.hlp", .dependentFiles = {}};
    ASSERT_TRUE(request.Add(APD_COPY_NEW_FILES | APD_COPY_FROM_DIRECTORY)) << GetLastError();
    EXPECT_EQ(ReadOnDrive(machine_, kInstalled / "core.dll"), "content of core.dll");
    EXPECT_EQ(ReadOnDrive(machine_, kInstalled / "model.dat"), "second");
    ASSERT_TRUE(request.Add());
    EXPECT_EQ(ReadOnDrive(machine_, kInstalled / "core.dll"), "second");

    const std::vector<BYTE> block = Driver3();
    const auto* const info = reinterpret_cast<const DRIVER_INFO_3W*>(block.data());
    EXPECT_EQ(std::u16string(info->pHelpFile), std::u16string(kInstalledFolder) + u"help.hlp");
    EXPECT_EQ(info->pDependentFiles, nullptr);
}

TEST_F(SpoolerTest, BareNamesAreFilesOfTheDriverDirectory) {
    DWORD needed = 0;
    EXPECT_FALSE(GetPrinterDriverDirectoryW(nullptr, nullptr, 1, nullptr, 0, &needed));
    std::u16string directory(needed / sizeof(WCHAR), 0);
    ASSERT_TRUE(
        GetPrinterDriverDirectoryW(nullptr, nullptr, 1, reinterpret_cast<BYTE*>(directory.data()), needed, &needed));
    EXPECT_EQ(directory.c_str(), std::u16string(u"C:\\Windows\\System32\\spool\\drivers\\x64"));
    WriteOnDrive(machine_, kInstalled.parent_path() / "Fresh.dll", "fresh");
    // The configuration file is installed already.
    DriverRequest request = {
        .name = u"Second", .driverPath = u"FRESH.DLL", .configFile = u"config.dll", .dependentFiles = {}};
    ASSERT_TRUE(request.Add(APD_COPY_ALL_FILES)) << GetLastError();
    EXPECT_EQ(ReadOnDrive(machine_, kInstalled / "FRESH.DLL"), "fresh");
}

TEST_F(SpoolerTest, DeletingADriver) {
    const auto remove = [](std::u16string name, DWORD flags, DWORD version = 0) -> DWORD {
        return DeletePrinterDriverExW(nullptr, nullptr, name.data(), flags, version) ? ERROR_SUCCESS : GetLastError();
    };
    const auto isThere = [this](const char* file) {
        return std::filesystem::exists(machine_.Drive() / kInstalled / file);
    };
    ASSERT_TRUE((DriverRequest{.name = u"Second", .dependentFiles = {u"C:\\Package\\TWO.INI"}}.Add()));
    EXPECT_EQ(remove(u"Probe Driver", 0), DWORD{ERROR_PRINTER_DRIVER_IN_USE});
    EXPECT_EQ(remove(u"None", 0), DWORD{ERROR_UNKNOWN_PRINTER_DRIVER});
    EXPECT_EQ(remove(u"Second", DPD_DELETE_SPECIFIC_VERSION, 2), DWORD{ERROR_UNKNOWN_PRINTER_DRIVER});
    EXPECT_EQ(remove(u"Second", 0x80), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(remove(u"", 0), DWORD{ERROR_INVALID_PARAMETER});
    ASSERT_TRUE(DeletePrinter(printer_));

    // All of one driver's files while another shares some: refused; the unused ones: only those go.
    EXPECT_EQ(remove(u"Probe Driver", DPD_DELETE_ALL_FILES), DWORD{ERROR_PRINTER_DRIVER_IN_USE});
    EXPECT_EQ(remove(u"probe driver", DPD_DELETE_UNUSED_FILES), DWORD{ERROR_SUCCESS});
    EXPECT_FALSE(isThere("one.dll"));
    EXPECT_TRUE(isThere("two.ini"));
    EXPECT_TRUE(isThere("core.dll"));
    EXPECT_EQ(remove(u"Second", DPD_DELETE_SPECIFIC_VERSION | DPD_DELETE_ALL_FILES, 3), DWORD{ERROR_SUCCESS});
    EXPECT_FALSE(isThere("two.ini"));
    EXPECT_FALSE(isThere("core.dll"));
    DWORD needed = kUntouched;
    DWORD count = kUntouched;
    EXPECT_TRUE(EnumPrinterDriversW(nullptr, nullptr, 3, nullptr, 0, &needed, &count));
    EXPECT_EQ(needed, 0u);
    EXPECT_EQ(count, 0u);
}

TEST_F(SpoolerTest, PrintProcessors) {
    const auto names = [] {
        DWORD count = 0;
        const auto list = ReadSized(
            [](LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD returned) {
                return EnumPrintProcessorsW(nullptr, nullptr, 1, buffer, size, needed, returned);
            },
            &count);
        std::vector<std::u16string> found;
        for (DWORD i = 0; i < count; ++i) {
            found.emplace_back(reinterpret_cast<const PRINTPROCESSOR_INFO_1W*>(list->data())[i].pName);
        }
        return found;
    };
    const auto add = [](std::u16string file, std::u16string name) -> DWORD {
        return AddPrintProcessorW(nullptr, nullptr, file.data(), name.data()) ? ERROR_SUCCESS : GetLastError();
    };
    EXPECT_EQ(names(), std::vector<std::u16string>{u"winprint"});
    EXPECT_EQ(add(u"Mine.dll", u"Mine"), DWORD{ERROR_MOD_NOT_FOUND});
    WriteOnDrive(machine_, "Windows/System32/spool/prtprocs/x64/MINE.DLL", "processor");
    EXPECT_EQ(add(u"Mine.dll", u"Mine"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(add(u"Mine.dll", u"MINE"), DWORD{ERROR_PRINT_PROCESSOR_ALREADY_INSTALLED});
    EXPECT_EQ(add(u"", u"Other"), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(names(), (std::vector<std::u16string>{u"winprint", u"Mine"}));

    // A printer takes it by its name, whatever the case.
    std::vector<BYTE> block = Info2();
    std::u16string processor = u"mine";
    reinterpret_cast<PRINTER_INFO_2W*>(block.data())->pPrintProcessor = processor.data();
    EXPECT_TRUE(SetPrinterW(printer_, 2, block.data(), 0));
    block = Info2();
    EXPECT_EQ(std::u16string(reinterpret_cast<PRINTER_INFO_2W*>(block.data())->pPrintProcessor), u"Mine");
}

}  // namespace
}  // namespace host
