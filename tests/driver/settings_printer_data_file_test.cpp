#include "driver/settings/printer_data_file.h"

#include <winspool.h>

#include "driver/entry/printer_access.h"
#include "platform/spooler/state.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

class PrinterDataFile : public MachineTest {
  protected:
    void InstallWithData(const WideText& name, size_t size) {
        DriverPackage package = PackageOf("");
        package.data = {name, std::string(size, 'd')};
        Install(package);
    }
};

TEST_F(PrinterDataFile, IsOpenedUnsharedAndWritable) {
    InstallWithData(u"kv62.dat", 1234);
    const WideText path = InstalledPath(u"kv62.dat");
    ASSERT_TRUE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY));
    {
        const OwnedFile file = OpenPrinterDataFile(kPrinterName, GENERIC_READ);
        EXPECT_TRUE(file);
        const OwnedFile second(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                           FILE_ATTRIBUTE_NORMAL, nullptr));
        EXPECT_FALSE(second);
    }
    EXPECT_TRUE(OpenPrinterDataFile(kPrinterName, GENERIC_READ | GENERIC_WRITE));
    EXPECT_EQ(GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_READONLY, 0u);
    EXPECT_EQ(GetPrinterDataFileSize(kPrinterName), 1234u);
    EXPECT_EQ(GetBasePdfSize(Printer()), 1234u);
    const DWORD stored = 7;
    SetData(Printer(), u"BasePDFSize", REG_DWORD, &stored, sizeof(stored));
    EXPECT_EQ(GetBasePdfSize(Printer()), 7u);
}

TEST_F(PrinterDataFile, TheDescriptionFileIsNone) {
    InstallWithData(u"kv62.xpi", 1234);
    EXPECT_FALSE(OpenPrinterDataFile(kPrinterName, GENERIC_READ));
    EXPECT_EQ(GetPrinterDataFileSize(kPrinterName), kNoPrinterDataFile);
    EXPECT_EQ(GetBasePdfSize(Printer()), 0u);
}

TEST_F(PrinterDataFile, Missing) {
    InstallWithData(u"kv62.dat", 10);
    std::filesystem::remove(DrivePath(InstalledPath(u"kv62.dat")));
    EXPECT_EQ(GetPrinterDataFileSize(kPrinterName), kNoPrinterDataFile);
    EXPECT_EQ(GetBasePdfSize(Printer()), 0u);
    EXPECT_FALSE(DriveFileExists(InstalledPath(u"kv62.dat")));
    EXPECT_EQ(GetPrinterDataFileSize(TEXT("Unknown")), kNoPrinterDataFile);
    SyncPrinterDataFileCopies(kPrinterName);
    SyncPrinterDataFileCopies(TEXT("Unknown"));
}

class PrinterDataFileCopies : public PrinterDataFile {
  protected:
    static WideText Copy(char16_t version) {
        return WideText(u"C:\\Windows\\System32\\spool\\drivers\\W32X86\\") + version + u"\\kv62.dat";
    }

    // The driver of a 32-bit system: its files lie in a folder that this machine's spooler doesn't use.
    void InstallBelow(const WideText& dataFile) {
        InstallWithData(u"kv62.dat", 10);
        host::FindDriver(u"Velmora Test")->dataFile = dataFile;
    }
};

TEST_F(PrinterDataFileCopies, SmallerOnesAreReplaced) {
    InstallBelow(Copy(u'3'));
    const std::string current = "the current file";
    WriteDriveFile(Copy(u'1'), "");
    WriteDriveFile(Copy(u'2'), "smaller");
    WriteDriveFile(Copy(u'3'), current);
    WriteDriveFile(Copy(u'4'), "as long as that.");
    SyncPrinterDataFileCopies(kPrinterName);
    EXPECT_EQ(ReadDriveFile(Copy(u'1')), "");
    EXPECT_EQ(ReadDriveFile(Copy(u'2')), current);
    EXPECT_EQ(ReadDriveFile(Copy(u'3')), current);
    EXPECT_EQ(ReadDriveFile(Copy(u'4')), "as long as that.");
}

TEST_F(PrinterDataFileCopies, MissingOnesStayMissing) {
    InstallBelow(Copy(u'2'));
    WriteDriveFile(Copy(u'2'), "current");
    WriteDriveFile(Copy(u'4'), "old");
    SyncPrinterDataFileCopies(kPrinterName);
    EXPECT_FALSE(DriveFileExists(Copy(u'3')));
    EXPECT_EQ(ReadDriveFile(Copy(u'4')), "current");
}

TEST_F(PrinterDataFileCopies, OtherFoldersHaveNone) {
    InstallWithData(u"kv62.dat", 10);
    WriteDriveFile(Copy(u'2'), "");
    SyncPrinterDataFileCopies(kPrinterName);
    EXPECT_EQ(ReadDriveFile(Copy(u'2')), "");
}

}  // namespace
}  // namespace velmora
