// DrvDeviceCapabilities: what it says of the driver itself, and the spool directory that DC_VERSION registers.
#include <string>
#include <vector>

#include "tests/contract/contract_test.h"
#include "tests/contract/transcript.h"

namespace contract {
namespace {

class Capabilities : public ContractTest {};

TEST_F(Capabilities, OfTheDriver) {
    InstalledPrinter printer(*environment_, PackageOf(DescriptionFiles().at(0)));
    DevModeBuffer foreign;  // not consulted
    const struct {
        WORD capability;
        DWORD answer;
    } cases[] = {{DC_SIZE, 220}, {DC_EXTRA, 3868}, {DC_VERSION, 0x401}, {DC_DRIVER, 2560}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.capability);
        const auto ask = printer.Driver().DrvDeviceCapabilities;
        EXPECT_EQ(ask(printer.Handle(), printer.NameArgument(), c.capability, nullptr, nullptr), c.answer);
        EXPECT_EQ(ask(printer.Handle(), printer.NameArgument(), c.capability, nullptr, foreign.Get()), c.answer);
    }
    EXPECT_TRUE(foreign.Untouched());
}

// The value "SpoolDirectory" of the printer's key; empty where there is none.
WideText SpoolDirectory(const WideText& printerName) {
    const WideText path = TEXT("SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\") + printerName;
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_QUERY_VALUE, &key), ERROR_SUCCESS);
    WCHAR directory[MAX_PATH] = {};
    DWORD size = sizeof(directory) - sizeof(WCHAR);
    DWORD type = 0;
    const LSTATUS read =
        RegQueryValueExW(key, TEXT("SpoolDirectory"), nullptr, &type, reinterpret_cast<BYTE*>(directory), &size);
    RegCloseKey(key);
    EXPECT_TRUE(read == ERROR_FILE_NOT_FOUND || (read == ERROR_SUCCESS && type == REG_SZ));
    return directory;
}

TEST_F(Capabilities, VersionRegistersTheSpoolDirectoryOfImagePrinters) {
    size_t registered = 0;
    const std::vector<std::string> models = DescriptionFiles();
    for (const std::string& model : models) {
        SCOPED_TRACE(model);
        InstalledPrinter printer(*environment_, PackageOf(model));
        WideText name = printer.Name() + TEXT(",Local");
        const auto askVersion = [&] {
            printer.Driver().DrvDeviceCapabilities(printer.Handle(), name.data(), DC_VERSION, nullptr, nullptr);
        };
        askVersion();
        EXPECT_EQ(Printable(SpoolDirectory(printer.Name())), "") << "no directory is known yet";
        printer.SetString(TEXT("DefaultSpoolDirectory"), TEXT("C:\\Spool"));
        askVersion();
        const WideText directory = SpoolDirectory(printer.Name());
        EXPECT_TRUE(directory.empty() || directory == TEXT("C:\\Spool"));
        registered += directory.empty() ? 0 : 1;
        Record(model + (directory.empty() ? ": not registered" : ": registered"));
    }
    EXPECT_GT(registered, 0u);
    EXPECT_LT(registered, models.size()) << "of image printers only";
}

}  // namespace
}  // namespace contract
