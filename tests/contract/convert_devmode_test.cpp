// DrvConvertDevMode: its errors, the names by which it opens a printer, and what it takes and repairs of an input.
#include <string>
#include <vector>

#include "tests/contract/contract_test.h"
#include "tests/contract/transcript.h"
#include "tests/driver/changed_devmode.h"

namespace contract {
namespace {

using driver_test::With;
using velmora::VelmoraDevMode;
using Texts = std::vector<std::string>;

class ConvertDevMode : public ContractTest {
  protected:
    static VelmoraDevMode Convert(InstalledPrinter& printer, VelmoraDevMode* input) {
        VelmoraDevMode output = {};
        LONG size = sizeof(output);
        SetLastError(77);
        EXPECT_TRUE(printer.Driver().DrvConvertDevMode(printer.NameArgument(), &input->publicPart, &output.publicPart,
                                                       &size, 0));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_SUCCESS});
        EXPECT_EQ(size, 4088);
        return output;
    }

    InstalledPrinter printer_{*environment_, PackageOf(DescriptionFiles().at(0))};
};

TEST_F(ConvertDevMode, Refusals) {
    DevModeBuffer output;
    const struct {
        const WCHAR* printer;
        DEVMODEW* output;
        LONG size;
        DWORD error;
    } cases[] = {
        {TEXT("Contract"), output.Get(), 4087, ERROR_INSUFFICIENT_BUFFER},
        {TEXT("Contract"), output.Get(), -1, ERROR_INSUFFICIENT_BUFFER},
        {TEXT("Contract"), nullptr, 4088, ERROR_INSUFFICIENT_BUFFER},
        {TEXT("Nobody"), nullptr, 0, ERROR_INSUFFICIENT_BUFFER},
        {TEXT("Nobody"), output.Get(), 4088, ERROR_INVALID_PRINTER_NAME},
        {TEXT("\\\\VELMORA-ELSEWHERE\\Contract"), output.Get(), 4088, ERROR_INVALID_PRINTER_NAME},
        {TEXT(""), output.Get(), 4088, ERROR_INVALID_PRINTER_NAME},
    };
    const auto convert = [&](const WCHAR* printer, DEVMODEW* to, LONG* size) {
        WideText name = printer;
        SetLastError(0);
        return printer_.Driver().DrvConvertDevMode(name.data(), nullptr, to, size, 0);
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(Printable(c.printer) + " " + std::to_string(c.size));
        LONG size = c.size;
        EXPECT_FALSE(convert(c.printer, c.output, &size));
        EXPECT_EQ(GetLastError(), c.error);
        EXPECT_EQ(size, 4088);
    }
    EXPECT_FALSE(convert(TEXT("Contract"), output.Get(), nullptr));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_TRUE(output.Untouched());

    LONG larger = 100000;
    EXPECT_TRUE(convert(TEXT("Contract"), output.Get(), &larger));
    EXPECT_EQ(larger, 4088);
    EXPECT_FALSE(output.Untouched());
}

TEST_F(ConvertDevMode, PrinterNames) {
    const WideText server = TEXT("\\\\") + ComputerName() + TEXT("\\");

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

// What the checks make of a damaged default: what they repair in the input, and whether the output is then the input or
// a device mode built anew.
TEST_F(ConvertDevMode, DamagedInputs) {
    const VelmoraDevMode built = *DefaultDevMode(printer_, printer_.Name()).content;
    const struct {
        bool isMetric;
        const char* damage;
        const char* repaired;
        bool isTaken;
    } cases[] = {
        {true, "dmCopies=3 dmOrientation=2 psContrast=9", "", true},
        {true, "dmSize=4088 dmDriverExtra=0", "dmSize=220 dmDriverExtra=3868", true},
        {true, "dmScale=50", "dmScale=100", true},
        {true, "dmDriverVersion=0", "dmDriverVersion=2560", true},
        {true, "dmPaperSize=200", "dmPaperSize=9", true},
        {false, "dmPaperSize=200", "dmPaperSize=1", true},
        {true, "dmPaperWidth=1 dmPaperLength=1", "dmPaperWidth=2100 dmPaperLength=2970", true},
        {true, "dmPaperWidth=1 dmOrientation=2", "dmPaperWidth=2970 dmPaperLength=2100", true},
        {false, "dmPaperSize=400 dmPaperWidth=1", "dmPaperWidth=2159 dmPaperLength=2794", true},
        {true, "dmScale=50 dmCopies=0", "dmScale=100 dmCopies=1", true},
        {true, "dmScale=50 dmCopies=0 dmOrientation=3", "dmScale=100 dmCopies=1 dmOrientation=1", false},
        {true, "psBrightness=101", "psBrightness=0", true},
        {true, "pagesPerSheet=3 uiZoomPercent=20", "pagesPerSheet=1 uiZoomPercent=100", true},
        {true, "pagesPerSheet=3 uiZoomPercent=20 outputLevel=25", "pagesPerSheet=1 uiZoomPercent=100 outputLevel=0",
         false},
        {true, "dmScale=50 dmCopies=0 pagesPerSheet=3 uiZoomPercent=20",
         "dmScale=100 dmCopies=1 pagesPerSheet=1 uiZoomPercent=100", true},
        {true, "dmScale=50 dmCopies=0 dmOrientation=3 pagesPerSheet=3", "dmScale=100 dmCopies=1 dmOrientation=1",
         false},
        {true, "acceptMark=0x42 psBrightness=101 uiZoomPercent=20 pagesPerSheet=3", "", true},
        {true, "dmSpecVersion=0x400 psBrightness=101", "", false},
        {true, "dmDriverExtra=3867", "", false},
        {true, "dmFields=0", "", false},
        {true, "dmScale=50 privateSignature=0", "dmScale=100", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.damage);
        environment_->SetMetric(c.isMetric);
        VelmoraDevMode input = With(built, c.damage);
        const VelmoraDevMode after = With(input, c.repaired);
        const VelmoraDevMode output = Convert(printer_, &input);
        EXPECT_EQ(Differences(after, input), Texts());
        EXPECT_EQ(Differences(c.isTaken ? after : built, output), Texts());
        Record(std::string(c.damage) + (c.isTaken ? ": taken" : ": built anew"));
        for (const std::string& line : Differences(built, input)) {
            Record("  " + line);
        }
    }
}

TEST_F(ConvertDevMode, InputAsOutput) {
    const VelmoraDevMode built = *DefaultDevMode(printer_, printer_.Name()).content;
    for (const char* damage : {"dmCopies=3 dmScale=50", "dmCopies=3 privateSignature=0"}) {
        VelmoraDevMode input = With(built, damage);
        const VelmoraDevMode output = Convert(printer_, &input);
        VelmoraDevMode both = With(built, damage);
        LONG size = sizeof(both);
        EXPECT_TRUE(
            printer_.Driver().DrvConvertDevMode(printer_.NameArgument(), &both.publicPart, &both.publicPart, &size, 0));
        EXPECT_EQ(Differences(output, both), Texts()) << damage;
    }
}

// A new device mode is valid, whatever the model; that of another model isn't.
TEST_F(ConvertDevMode, DefaultsOfEveryModel) {
    const VelmoraDevMode foreign = *DefaultDevMode(printer_, printer_.Name()).content;
    const std::string own = DescriptionFiles().at(0);
    for (const std::string& model : DescriptionFiles()) {
        SCOPED_TRACE(model);
        DriverPackage package = PackageOf(model);
        package.driverName = TEXT("Velmora of every model");
        InstalledPrinter printer(*environment_, package, TEXT("Every"));
        const VelmoraDevMode built = *DefaultDevMode(printer, printer.Name()).content;
        VelmoraDevMode input = built;
        const VelmoraDevMode output = Convert(printer, &input);
        // A feature without options counts down in new device modes, which isn't one of its values.
        const Texts repaired = model == "VELMORA-C3200.XPI" ? Texts{"featureSelection[6] is 0, not -1"} : Texts();
        EXPECT_EQ(Differences(built, output), repaired);
        EXPECT_EQ(Differences(output, input), Texts());
        VelmoraDevMode other = With(foreign, "dmCopies=3");
        EXPECT_EQ(Differences(model == own ? other : built, Convert(printer, &other)), Texts());
        Record(model + ": " + std::to_string(repaired.size()) + " repairs");
    }
}

}  // namespace
}  // namespace contract
