// Drivers and print processors: installing, replacing, deleting, the files they bring.
#include "tests/platform/spooler_fixture.h"

namespace host {
namespace {

const std::filesystem::path kInstalled = "Windows/System32/spool/drivers/x64/3";
const std::u16string kFolder = kInstalledFolder;

class DriversTest : public SpoolerTest {
  protected:
    Block<DRIVER_INFO_3W> Driver3() { return Read<DRIVER_INFO_3W>(printer_, "GetPrinterDriverW"); }
};

TEST_F(DriversTest, InstalledFilesAreCopiedAndNamedInFull) {
    const auto info = Driver3();
    EXPECT_EQ(info->cVersion, 3u);
    EXPECT_EQ(std::u16string(info->pName), u"Probe Driver");
    EXPECT_EQ(std::u16string(info->pEnvironment), u"Windows x64");
    EXPECT_EQ(std::u16string(info->pDriverPath), kFolder + u"core.dll");
    EXPECT_EQ(std::u16string(info->pDataFile), kFolder + u"model.dat");
    EXPECT_EQ(std::u16string(info->pConfigFile), kFolder + u"config.dll");
    EXPECT_EQ(info->pHelpFile, nullptr);
    const std::u16string dependent = kFolder + u"one.dll" + u'\0' + kFolder + u"two.ini" + u'\0' + u'\0';
    EXPECT_EQ(std::u16string(info->pDependentFiles, dependent.size()), dependent);
    for (const char* file : {"core.dll", "model.dat", "config.dll", "one.dll", "two.ini"}) {
        EXPECT_EQ(Get(kInstalled / file), std::string("content of ") + file);
    }
}

TEST_F(DriversTest, RequestsThatAreRefused) {
    constexpr DWORD kAll = APD_COPY_ALL_FILES | APD_COPY_FROM_DIRECTORY;
    const struct {
        DriverRequest request;
        DWORD flags;
        LONG error;
    } cases[] = {
        {{.name = u""}, kAll, ERROR_INVALID_PARAMETER},
        {{.driverPath = u""}, kAll, ERROR_INVALID_PARAMETER},
        {{.version = 4}, kAll, ERROR_INVALID_PARAMETER},
        {{}, APD_COPY_FROM_DIRECTORY, ERROR_INVALID_PARAMETER},
        {{}, APD_COPY_ALL_FILES | APD_COPY_NEW_FILES, ERROR_INVALID_PARAMETER},
        {{}, kAll | 0x100, ERROR_INVALID_PARAMETER},
        {{.environment = u"Windows NT x86"}, kAll, ERROR_INVALID_ENVIRONMENT},
        {{.dataFile = u"C:\\Package"}, kAll, ERROR_FILE_NOT_FOUND},
        {{.dataFile = u"none"}, kAll, ERROR_FILE_NOT_FOUND},
        {{.dependentFiles = {u"C:\\Package\\one.dll", u"D:\\one.dll"}}, kAll, ERROR_FILE_NOT_FOUND},
    };
    Put("Package/core.dll", "changed");
    for (const auto& c : cases) {
        DriverRequest request = c.request;
        EXPECT_EQ(FailureOf([&] { return request.Add(c.flags); }), c.error) << "row " << &c - cases;
    }
    // Nothing was copied: a package is looked through before its first file is.
    EXPECT_EQ(Get(kInstalled / "core.dll"), "content of core.dll");
}

TEST_F(DriversTest, InstallingAgainReplacesTheDriver) {
    // Copying new files only leaves a file that is newer than the package's.
    const auto installed = std::filesystem::last_write_time(machine_->Drive() / kInstalled / "core.dll");
    for (const auto& [file, hours] : {std::pair("Package/core.dll", -1), std::pair("Package/model.dat", 1)}) {
        Put(file, "second");
        std::filesystem::last_write_time(machine_->Drive() / file, installed + std::chrono::hours(hours));
    }
    DriverRequest request = {.name = u"PROBE driver", .helpFile = u"C:\\Package\\help.hlp", .dependentFiles = {}};
    ASSERT_TRUE(request.Add(APD_COPY_NEW_FILES | APD_COPY_FROM_DIRECTORY)) << GetLastError();
    EXPECT_EQ(Get(kInstalled / "core.dll"), "content of core.dll");
    EXPECT_EQ(Get(kInstalled / "model.dat"), "second");
    ASSERT_TRUE(request.Add());
    EXPECT_EQ(Get(kInstalled / "core.dll"), "second");
    const auto info = Driver3();
    EXPECT_EQ(std::u16string(info->pHelpFile), kFolder + u"help.hlp");
    EXPECT_EQ(info->pDependentFiles, nullptr);
}

TEST_F(DriversTest, BareNamesAreFilesOfTheDriverDirectory) {
    Put(kInstalled.parent_path() / "Fresh.dll", "fresh");
    // The configuration file is installed already.
    DriverRequest request = {
        .name = u"Second", .driverPath = u"FRESH.DLL", .configFile = u"config.dll", .dependentFiles = {}};
    ASSERT_TRUE(request.Add(APD_COPY_ALL_FILES)) << GetLastError();
    EXPECT_EQ(Get(kInstalled / "FRESH.DLL"), "fresh");
}

TEST_F(DriversTest, DeletingADriver) {
    const auto remove = [](std::u16string name, DWORD flags, DWORD version = 0) {
        return DeletePrinterDriverExW(nullptr, nullptr, name.data(), flags, version);
    };
    const auto installed = [this](const char* file) { return Exists(kInstalled / file); };
    ASSERT_TRUE((DriverRequest{.name = u"Second", .dependentFiles = {u"C:\\Package\\TWO.INI"}}.Add()));
    ExpectErrors({
        {"used", [&] { return remove(u"Probe Driver", 0); }, ERROR_PRINTER_DRIVER_IN_USE},
        {"missing", [&] { return remove(u"None", 0); }, ERROR_UNKNOWN_PRINTER_DRIVER},
        {"version", [&] { return remove(u"Second", DPD_DELETE_SPECIFIC_VERSION, 2); }, ERROR_UNKNOWN_PRINTER_DRIVER},
        {"flags", [&] { return remove(u"Second", 0x80); }, ERROR_INVALID_PARAMETER},
        {"no name", [&] { return remove(u"", 0); }, ERROR_INVALID_PARAMETER},
        {"the printer", [&] { return DeletePrinter(printer_); }},
        // All of one driver's files while another shares some: refused; the unused ones: only those go.
        {"all", [&] { return remove(u"Probe Driver", DPD_DELETE_ALL_FILES); }, ERROR_PRINTER_DRIVER_IN_USE},
        {"unused files", [&] { return remove(u"probe driver", DPD_DELETE_UNUSED_FILES); }},
        {"those went", [&] { return !installed("one.dll") && installed("two.ini") && installed("core.dll"); }},
        {"the last", [&] { return remove(u"Second", DPD_DELETE_SPECIFIC_VERSION | DPD_DELETE_ALL_FILES, 3); }},
        {"all went", [&] { return !installed("two.ini") && !installed("core.dll"); }},
    });
    EXPECT_EQ(Read<DRIVER_INFO_3W>(printer_, "EnumPrinterDriversW").bytes.size(), 0u);
}

TEST_F(DriversTest, PrintProcessors) {
    Put(std::string(kProcessorFolder) + "/MINE.DLL", "processor");
    ExpectErrors({
        {"no file", [] { return AddProcessor(u"None.dll", u"Mine"); }, ERROR_MOD_NOT_FOUND},
        {"add", [] { return AddProcessor(u"Mine.dll", u"Mine"); }},
        {"again", [] { return AddProcessor(u"Mine.dll", u"MINE"); }, ERROR_PRINT_PROCESSOR_ALREADY_INSTALLED},
        {"no name of a file", [] { return AddProcessor(u"", u"Other"); }, ERROR_INVALID_PARAMETER},
    });
    const auto list = Read<PRINTPROCESSOR_INFO_1W>(nullptr, "EnumPrintProcessorsW");
    ASSERT_EQ(list.count, 2u);
    EXPECT_EQ(std::u16string(list.begin()[0].pName), u"winprint");
    EXPECT_EQ(std::u16string(list.begin()[1].pName), u"Mine");
    // A printer takes it by its name, whatever the case.
    auto info = Info2();
    std::u16string processor = u"mine";
    reinterpret_cast<PRINTER_INFO_2W*>(info.bytes.data())->pPrintProcessor = processor.data();
    EXPECT_TRUE(SetPrinterW(printer_, 2, info.bytes.data(), 0));
    EXPECT_EQ(std::u16string(Info2()->pPrintProcessor), u"Mine");
}

}  // namespace
}  // namespace host
