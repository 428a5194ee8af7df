#include "driver/settings/printer_data_file.h"

#include "platform/spooler/state.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

class PrinterDataFile : public MachineTest {
  protected:
    void InstallWithData(const WideText& name) {
        DriverPackage package = PackageOf("");
        package.data = {name, std::string(1234, 'd')};
        Install(package);
    }
    static WideText Copy(WCHAR version) {
        return WideText(TEXT("C:\\Windows\\System32\\spool\\drivers\\W32X86\\")) + version + TEXT("\\kv62.dat");
    }
};

TEST_F(PrinterDataFile, IsOpenedUnsharedAndWritable) {
    InstallWithData(TEXT("kv62.dat"));
    const WideText path = InstalledPath(TEXT("kv62.dat"));
    ASSERT_TRUE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY));
    file_ = OpenPrinterDataFile(kPrinterName, GENERIC_READ);
    EXPECT_TRUE(file_);
    EXPECT_FALSE(
        OwnedFile(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr)));
    file_.Close();
    EXPECT_TRUE(OpenPrinterDataFile(kPrinterName, GENERIC_READ | GENERIC_WRITE));
    EXPECT_EQ(GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_READONLY, 0u);
    EXPECT_EQ(GetPrinterDataFileSize(kPrinterName), 1234u);
    EXPECT_EQ(GetBasePdfSize(Printer()), 1234u);
    const DWORD stored = 7;
    SetData(Printer(), TEXT("BasePDFSize"), REG_DWORD, &stored, sizeof(stored));
    EXPECT_EQ(GetBasePdfSize(Printer()), 7u);
}

TEST_F(PrinterDataFile, TheDescriptionFileIsNoneAndNeitherIsAMissingOne) {
    InstallWithData(TEXT("kv62.xpi"));
    for (const char* what : {"a description file", "missing"}) {
        EXPECT_FALSE(OpenPrinterDataFile(kPrinterName, GENERIC_READ)) << what;
        EXPECT_EQ(GetPrinterDataFileSize(kPrinterName), kNoPrinterDataFile) << what;
        EXPECT_EQ(GetBasePdfSize(Printer()), 0u) << what;
        host::FindDriver(TEXT("Velmora Test"))->dataFile = InstalledPath(TEXT("kv62.dat"));
    }
    EXPECT_FALSE(DriveFileExists(InstalledPath(TEXT("kv62.dat"))));
    SyncPrinterDataFileCopies(kPrinterName);
    SyncPrinterDataFileCopies(TEXT("Unknown"));
}

// The driver of a 32-bit system: its files lie in a folder that this machine's spooler doesn't use.
TEST_F(PrinterDataFile, SmallerCopiesAreReplaced) {
    InstallWithData(TEXT("kv62.dat"));
    WriteDriveFile(Copy(TEXT('2')), "smaller");
    SyncPrinterDataFileCopies(kPrinterName);  // the driver's folder has no copies
    EXPECT_EQ(ReadDriveFile(Copy(TEXT('2'))), "smaller");
    host::FindDriver(TEXT("Velmora Test"))->dataFile = Copy(TEXT('3'));
    WriteDriveFile(Copy(TEXT('1')), "");
    WriteDriveFile(Copy(TEXT('3')), "the current file");
    std::filesystem::create_directories(DrivePath(Copy(TEXT('4'))).parent_path());
    SyncPrinterDataFileCopies(kPrinterName);
    EXPECT_EQ(ReadDriveFile(Copy(TEXT('1'))), "");
    EXPECT_EQ(ReadDriveFile(Copy(TEXT('2'))), "the current file");
    EXPECT_FALSE(DriveFileExists(Copy(TEXT('4'))));  // missing ones stay missing
    WriteDriveFile(Copy(TEXT('4')), "as long as that.");
    SyncPrinterDataFileCopies(kPrinterName);
    EXPECT_EQ(ReadDriveFile(Copy(TEXT('4'))), "as long as that.");
    WriteDriveFile(Copy(TEXT('4')), "old");
    SyncPrinterDataFileCopies(kPrinterName);
    EXPECT_EQ(ReadDriveFile(Copy(TEXT('4'))), "the current file");
}

}  // namespace
}  // namespace velmora
