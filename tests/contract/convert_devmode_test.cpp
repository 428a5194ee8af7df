// DrvConvertDevMode: its errors, and the names by which it opens a printer.
#include <string>

#include "tests/contract/contract_test.h"
#include "tests/contract/transcript.h"

namespace contract {
namespace {

class ConvertDevMode : public ContractTest {
  protected:
    InstalledPrinter printer_{*environment_, PackageOf(DescriptionFiles().at(0))};
};

TEST_F(ConvertDevMode, NeedsASize) {
    DevModeBuffer output;
    SetLastError(0);
    EXPECT_FALSE(printer_.Driver().DrvConvertDevMode(printer_.NameArgument(), nullptr, output.Get(), nullptr, 0));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_TRUE(output.Untouched());
}

TEST_F(ConvertDevMode, Refusals) {
    DevModeBuffer output;
    const struct {
        const WCHAR* printer;
        DEVMODEW* output;
        LONG size;
        DWORD error;
    } cases[] = {
        {TEXT("Contract"), output.Get(), 220, ERROR_INSUFFICIENT_BUFFER},
        {TEXT("Contract"), output.Get(), 4087, ERROR_INSUFFICIENT_BUFFER},
        {TEXT("Contract"), output.Get(), 0, ERROR_INSUFFICIENT_BUFFER},
        {TEXT("Contract"), output.Get(), -1, ERROR_INSUFFICIENT_BUFFER},
        {TEXT("Contract"), nullptr, 4088, ERROR_INSUFFICIENT_BUFFER},
        {TEXT("Nobody"), nullptr, 0, ERROR_INSUFFICIENT_BUFFER},
        {TEXT("Nobody"), output.Get(), 4088, ERROR_INVALID_PRINTER_NAME},
        {TEXT("\\\\VELMORA-ELSEWHERE\\Contract"), output.Get(), 4088, ERROR_INVALID_PRINTER_NAME},
        {TEXT(""), output.Get(), 4088, ERROR_INVALID_PRINTER_NAME},
    };
    for (const auto& c : cases) {
        WideText name = c.printer;
        SCOPED_TRACE(Printable(name) + " " + std::to_string(c.size));
        LONG size = c.size;
        SetLastError(0);
        EXPECT_FALSE(printer_.Driver().DrvConvertDevMode(name.data(), nullptr, c.output, &size, 0));
        EXPECT_EQ(GetLastError(), c.error);
        EXPECT_EQ(size, 4088);
    }
    EXPECT_TRUE(output.Untouched());
}

TEST_F(ConvertDevMode, LargerBufferIsFilledUpToTheDeviceMode) {
    DevModeBuffer output;
    LONG size = 100000;
    EXPECT_TRUE(printer_.Driver().DrvConvertDevMode(printer_.NameArgument(), nullptr, output.Get(), &size, 0));
    EXPECT_EQ(size, 4088);
    EXPECT_FALSE(output.Untouched());
}

TEST_F(ConvertDevMode, PrinterNames) {
    WCHAR computer[MAX_COMPUTERNAME_LENGTH + 1];
    DWORD length = MAX_COMPUTERNAME_LENGTH + 1;
    ASSERT_TRUE(GetComputerNameW(computer, &length));
    const WideText server = TEXT("\\\\") + WideText(computer) + TEXT("\\");

    const WideText longName = TEXT("A printer whose name is longer than a device name");
    DriverPackage package = PackageOf(DescriptionFiles().at(0));
    package.driverName = TEXT("Velmora: second/driver?");
    InstalledPrinter second(*environment_, package, longName);

    const struct {
        WideText printer;
        WideText deviceName;
    } cases[] = {
        {TEXT("Contract"), TEXT("Contract")},
        {TEXT("Contract,Local"), TEXT("Contract")},
        {TEXT("Contract,LocalOnly,Local"), TEXT("Contract")},
        {TEXT("Contract,DrvConvert"), TEXT("Contract,DrvConvert")},
        {TEXT("Contract,DEVMODE"), TEXT("Contract,DEVMODE")},
        {server + TEXT("Contract"), TEXT("Contract")},
        {server + TEXT("Contract,Local"), TEXT("Contract")},
        {longName, longName.substr(0, 31)},
        {longName + TEXT(",Local"), longName.substr(0, 31)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(Printable(c.printer));
        DevModeBuffer output = DefaultDevMode(printer_, c.printer);
        EXPECT_EQ(TextOf(output.Get()->dmDeviceName), c.deviceName);
        Record(Printable(FileName(c.printer)) + " -> " + Printable(TextOf(output.Get()->dmDeviceName)));
    }
}

}  // namespace
}  // namespace contract
