// The default device mode of each model, and what of the driver's files and the printer's data goes into it.
#include <cctype>
#include <string>
#include <vector>

#include "tests/contract/contract_test.h"
#include "tests/contract/transcript.h"

namespace contract {
namespace {

class DefaultDevModes : public ContractTest {};

WideText UpperCase(const std::string& ascii) {
    WideText text;
    for (const char character : ascii) {
        text += static_cast<WCHAR>(std::toupper(static_cast<unsigned char>(character)));
    }
    return text;
}

TEST_F(DefaultDevModes, OfEveryModel) {
    for (const std::string& model : DescriptionFiles()) {
        SCOPED_TRACE(model);
        InstalledPrinter printer(*environment_, PackageOf(model));
        DevModeBuffer output = DefaultDevMode(printer, printer.Name());
        Record(model);
        RecordDevMode(output.Get());

        const DEVMODEW& publicPart = *output.Get();
        const velmora::PrivateDevMode& privatePart = output.PrivatePart();
        EXPECT_EQ(publicPart.dmSpecVersion, 0x401);
        EXPECT_EQ(publicPart.dmSize, 220);
        EXPECT_EQ(publicPart.dmDriverExtra, 3868);
        EXPECT_EQ(publicPart.dmDriverVersion, 2560) << "10.0.5.3 of the rendering core";
        EXPECT_EQ(publicPart.dmPaperSize, DMPAPER_A4);
        EXPECT_EQ(publicPart.dmPaperWidth, 2100);
        EXPECT_EQ(publicPart.dmPaperLength, 2970);
        EXPECT_EQ(privatePart.privateVersion | privatePart.privateSignature << 16, static_cast<int>(0xCACA0001));
        EXPECT_EQ(FileName(TextOf(privatePart.descriptionPath)), UpperCase(model));
        EXPECT_EQ(TextOf(privatePart.pjlJobEnd), "@PJL SET GUIENDJOB=1\r\n");
        environment_->SetMetric(false);
        EXPECT_EQ(Differences(*output.content, *DefaultDevMode(printer, printer.Name()).content),
                  std::vector<std::string>())
            << "A4 in every measurement system";
        environment_->SetMetric(true);
    }
}

TEST_F(DefaultDevModes, DescriptionFileNamedByPrinterData) {
    const std::vector<std::string> models = DescriptionFiles();
    DriverPackage package = PackageOf(models.front());
    package.dependentFiles.insert(package.dependentFiles.begin(),
                                  {{TEXT("Other.XPI"), models.front(), {}}, {TEXT("Second.xpi"), models.back(), {}}});
    InstalledPrinter printer(*environment_, package);
    const struct {
        WideText value;  // empty: the printer has no value "XPI"
        const char* descriptionFile;
    } cases[] = {
        {TEXT(""), "OTHER.XPI"},
        {TEXT("second.xpi"), "SECOND.XPI"},  // found whatever its case
        {TEXT("cond.x"), "SECOND.XPI"},      // any part of a path will do
        {TEXT("NOWHERE.XPI"), ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(Printable(c.value));
        if (!c.value.empty()) {
            printer.SetString(TEXT("XPI"), c.value);
        }
        DevModeBuffer output = DefaultDevMode(printer, printer.Name());
        const WideText path = TextOf(output.PrivatePart().descriptionPath);
        EXPECT_EQ(Printable(FileName(path)), c.descriptionFile);
        Record(Printable(c.value) + " -> " + Printable(FileName(path)) + ", model code " +
               std::to_string(output.PrivatePart().modelCode));
    }
}

TEST_F(DefaultDevModes, DescriptionFileInThePlaceOfTheHelpFileOrNone) {
    DriverPackage package = PackageOf(DescriptionFiles().at(0));
    package.helpFile = {TEXT("AsHelp.xpi"), package.dataFile.builtFile, {}};
    package.dataFile = {TEXT("PLAIN.BIN"), {}, "no description"};
    {
        InstalledPrinter printer(*environment_, package);
        DevModeBuffer output = DefaultDevMode(printer, printer.Name());
        EXPECT_EQ(Printable(FileName(TextOf(output.PrivatePart().descriptionPath))), "ASHELP.XPI");
        EXPECT_NE(output.PrivatePart().modelCode, 0);
    }
    package.helpFile = {};
    package.dependentFiles.clear();
    InstalledPrinter printer(*environment_, package);
    DevModeBuffer output = DefaultDevMode(printer, printer.Name());
    EXPECT_TRUE(TextOf(output.PrivatePart().descriptionPath).empty());
    EXPECT_EQ(output.Get()->dmPaperSize, DMPAPER_LETTER) << "the template's, as there is no model to take A4 from";
    RecordDevMode(output.Get());
}

TEST_F(DefaultDevModes, DriverVersionIsTheRenderingCores) {
    // Core files of other versions: "3", and none at all.
    const PackageFile versionThree = {TEXT("KV62XPS.DLL"), "KV62V3.DLL", {}};
    const PackageFile versionless = {TEXT("KV62OLD.DLL"), "KV62NOVER.DLL", {}};
    const std::string model = DescriptionFiles().at(0);
    const struct {
        const char* what;
        std::vector<PackageFile> dependentFiles;
        WideText valueName;  // empty: no value is set
        WideText value;
        WORD version;
    } cases[] = {
        {"the driver file", {versionless}, TEXT(""), TEXT(""), 2560},
        {"a file with XPS.DLL in its name", {versionless, versionThree}, TEXT(""), TEXT(""), 3},
        {"NTCoreName", {versionless, versionThree}, TEXT("NTCoreName"), TEXT("KV62OLD.DLL"), 0},
        {"XPSCoreName", {versionless, versionThree}, TEXT("XPSCoreName"), TEXT("kv62xps"), 3},
        {"NTCoreName of no file", {versionless}, TEXT("NTCoreName"), TEXT("ELSEWHERE.DLL"), 2560},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        DriverPackage package = PackageOf(model);
        package.dependentFiles = c.dependentFiles;
        InstalledPrinter printer(*environment_, package);
        if (!c.valueName.empty()) {
            printer.SetString(c.valueName, c.value);
        }
        DevModeBuffer output = DefaultDevMode(printer, printer.Name());
        EXPECT_EQ(output.Get()->dmDriverVersion, c.version);
        Record(std::string(c.what) + ": " + std::to_string(output.Get()->dmDriverVersion));
    }
}

// Where pattern and font data begin in the printer data file is what it was long before they were appended: printer
// data "BasePDFSize", or else the file's size, which is that of a data file of its own.
TEST_F(DefaultDevModes, PrinterDataFile) {
    const std::string printerData(1000, 'P');
    const DWORD baseSize = 300;
    for (const std::string& model : DescriptionFiles()) {
        SCOPED_TRACE(model);
        DriverPackage package = PackageOf(model);
        package.dependentFiles.push_back(package.dataFile);
        package.dataFile = {TEXT("PRINTER.PDF"), {}, printerData};
        InstalledPrinter printer(*environment_, package);
        DevModeBuffer measured = DefaultDevMode(printer, printer.Name());
        printer.SetData(TEXT("BasePDFSize"), REG_DWORD, &baseSize, sizeof(baseSize));
        DevModeBuffer told = DefaultDevMode(printer, printer.Name());

        const velmora::PrivateDevMode& first = measured.PrivatePart();
        const velmora::PrivateDevMode& second = told.PrivatePart();
        const DWORD difference = static_cast<DWORD>(printerData.size()) - baseSize;
        if (first.patternSize != 0) {
            EXPECT_EQ(first.patternOffset - second.patternOffset, difference);
            EXPECT_GE(second.patternOffset, baseSize);
        } else {
            EXPECT_EQ(first.patternOffset, 0u);
        }
        if (first.fontDataOffset != 0) {
            EXPECT_EQ(first.fontDataOffset - second.fontDataOffset, difference);
        }
        Record(model + ": patterns at " + std::to_string(first.patternOffset) + ", fonts at " +
               std::to_string(first.fontDataOffset));
    }
}

}  // namespace
}  // namespace contract
