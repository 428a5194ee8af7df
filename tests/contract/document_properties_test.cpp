// Document settings without property sheets, as the spooler and applications ask for them.
#include <cstring>
#include <string>
#include <vector>

#include "tests/contract/contract_test.h"
#include "tests/contract/sheet_host.h"
#include "tests/contract/transcript.h"
#include "tests/driver/changed_devmode.h"

namespace contract {
namespace {

using driver_test::With;
using velmora::VelmoraDevMode;
using Texts = std::vector<std::string>;

constexpr DWORD kBoth = DM_IN_BUFFER | DM_OUT_BUFFER;

class DocumentSettings : public ContractTest {
  protected:
    static DOCUMENTPROPERTYHEADER Header(InstalledPrinter& printer, DWORD mode, VelmoraDevMode* input,
                                         VelmoraDevMode* output) {
        DOCUMENTPROPERTYHEADER header = {};
        header.cbSize = sizeof(header);
        header.hPrinter = printer.Handle();
        header.pszPrinterName = printer.NameArgument();
        header.pdmIn = input ? &input->publicPart : nullptr;
        header.pdmOut = &output->publicPart;
        header.cbOut = sizeof(*output);
        header.fMode = mode;
        return header;
    }

    // As the spooler asks the driver.
    static VelmoraDevMode AskDriver(InstalledPrinter& printer, DWORD mode, VelmoraDevMode* input,
                                    const VelmoraDevMode& before = {}) {
        VelmoraDevMode output = before;
        DOCUMENTPROPERTYHEADER header = Header(printer, mode, input, &output);
        EXPECT_EQ(printer.Driver().DrvDocumentPropertySheets(nullptr, reinterpret_cast<LPARAM>(&header)), 1);
        return output;
    }

    // As an application asks the spooler.
    static VelmoraDevMode AskSpooler(InstalledPrinter& printer, DWORD mode, VelmoraDevMode* input) {
        VelmoraDevMode output = {};
        EXPECT_EQ(DocumentPropertiesW(nullptr, printer.Handle(), printer.NameArgument(), &output.publicPart,
                                      input ? &input->publicPart : nullptr, mode),
                  1);
        return output;
    }

    static void RecordDifferences(const std::string& title, const VelmoraDevMode& a, const VelmoraDevMode& b) {
        Record(title);
        for (const std::string& line : Differences(a, b)) {
            Record("  " + line);
        }
    }
};

TEST_F(DocumentSettings, ApplicationsOnEveryModel) {
    const char* const requests[] = {
        "dmCopies=3 dmOrientation=2 dmFields=0x101",
        "dmPaperSize=1",
        "dmPaperSize=256 dmPaperWidth=1500 dmPaperLength=2000",
        "dmPaperSize=256 dmPaperWidth=0",
        "dmDefaultSource=2001",
        "dmDuplex=3 dmFields=0x1000 booklet=4",
        "dmColor=1 colorPreset=6",
        "dmColor=2 dmMediaType=0",
        "dmPrintQuality=1200 dmYResolution=1200 watermarkOffsetX=100",
        "dmPrintQuality=75",
        "collateCopy=1",
        "watermarkFlags=36",
        "privateSignature=0 dmCopies=7",
        "dmSpecVersion=0x400 dmCopies=7",
    };
    for (const std::string& model : DescriptionFiles()) {
        SCOPED_TRACE(model);
        InstalledPrinter printer(*environment_, PackageOf(model));
        EXPECT_EQ(DocumentPropertiesW(nullptr, printer.Handle(), printer.NameArgument(), nullptr, nullptr, 0), 4088);
        const VelmoraDevMode built = *DefaultDevMode(printer, printer.Name()).content;
        const VelmoraDevMode first = AskSpooler(printer, DM_OUT_BUFFER, nullptr);
        RecordDifferences(model, built, first);
        for (const char* request : requests) {
            SCOPED_TRACE(request);
            VelmoraDevMode input = With(first, request);
            VelmoraDevMode again = input;
            const VelmoraDevMode output = AskSpooler(printer, kBoth, &input);
            EXPECT_EQ(Differences(AskDriver(printer, kBoth, &again), output), Texts());
            EXPECT_EQ(Differences(input, again), Texts()) << "the repairs of the input";
            RecordDifferences(request, first, output);
            // Asked again, the answer may be repaired once; then it stays.
            VelmoraDevMode answer = output;
            const VelmoraDevMode second = AskSpooler(printer, kBoth, &answer);
            answer = second;
            EXPECT_EQ(Differences(second, AskSpooler(printer, kBoth, &answer)), Texts());
        }
        VelmoraDevMode input = With(first, "dmCopies=3 dmOrientation=2 dmDuplex=2");
        const VelmoraDevMode output = AskSpooler(printer, kBoth, &input);
        EXPECT_EQ(output.publicPart.dmCopies, 3);
        EXPECT_EQ(output.publicPart.dmOrientation, DMORIENT_LANDSCAPE);
        EXPECT_EQ(output.publicPart.dmDuplex, 0) << "no duplex unit is installed";
        EXPECT_EQ(output.publicPart.dmFields & DM_DUPLEX, 0u);
    }
}

TEST_F(DocumentSettings, OfInputsWithoutThePrivatePart) {
    InstalledPrinter printer(*environment_, PackageOf(DescriptionFiles().at(0)));
    const VelmoraDevMode before = With(*DefaultDevMode(printer, printer.Name()).content, "dmCopies=9 psContrast=7");
    for (const char* settings : {"dmCopies=0 dmOrientation=2", "dmCopies=4 dmCollate=1 dmPaperSize=1",
                                 "dmCollate=3 dmDefaultSource=-1 dmPaperSize=-1 dmOrientation=9"}) {
        VelmoraDevMode input = With(VelmoraDevMode(), std::string("dmSize=220 ") + settings);
        RecordDifferences(settings, before, AskDriver(printer, kBoth, &input, before));
    }
    VelmoraDevMode bare = With(VelmoraDevMode(), "dmSize=220 dmCopies=0 dmOrientation=2");
    const VelmoraDevMode output = AskDriver(printer, kBoth, &bare, before);
    const DWORD color = before.publicPart.dmFields & DM_COLOR;
    const VelmoraDevMode expected =
        With(before, "dmCopies=1 dmOrientation=2 dmFields=" + std::to_string(0x830F | color));
    EXPECT_EQ(Differences(expected, output), Texts());
}

// DrvDocumentProperties says that the output is as large as the input's public part, which is enough only where that is
// the whole device mode.
TEST_F(DocumentSettings, ByTheOlderExport) {
    InstalledPrinter printer(*environment_, PackageOf(DescriptionFiles().at(0)));
    const VelmoraDevMode built = With(*DefaultDevMode(printer, printer.Name()).content, "dmCopies=3");
    const VelmoraDevMode whole = With(built, "dmSize=4088 dmDriverExtra=0");
    const struct {
        DWORD mode;
        const VelmoraDevMode* input;
        bool isWritten;
    } cases[] = {{DM_OUT_BUFFER, nullptr, false}, {DM_OUT_BUFFER, &whole, false}, {kBoth, nullptr, false},
                 {kBoth, &built, false},          {kBoth, &whole, true},          {DM_IN_BUFFER, &whole, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        DevModeBuffer output;
        VelmoraDevMode input = c.input ? *c.input : VelmoraDevMode();
        EXPECT_EQ(printer.Driver().DrvDocumentProperties(nullptr, printer.Handle(), printer.NameArgument(),
                                                         output.Get(), c.input ? &input.publicPart : nullptr, c.mode),
                  1);
        EXPECT_EQ(output.Untouched(), !c.isWritten);
        if (c.isWritten) {
            VelmoraDevMode again = built;
            EXPECT_EQ(Differences(AskDriver(printer, kBoth, &again), *output.content), Texts());
        }
    }
}

TEST_F(DocumentSettings, OfAPrinterWithItsOwnDeviceMode) {
    InstalledPrinter printer(*environment_, PackageOf(DescriptionFiles().at(0)));
    const VelmoraDevMode stored = With(*DefaultDevMode(printer, printer.Name()).content, "dmCopies=5 psContrast=7");
    printer.SetDevMode(stored.publicPart);
    EXPECT_EQ(Differences(stored, AskSpooler(printer, DM_OUT_BUFFER, nullptr)), Texts());

    // The sheets start from the caller's settings as far as they are valid. Nothing is brought into line yet.
    const struct {
        const char* input;     // null: none
        const char* expected;  // beside the stored device mode
    } cases[] = {
        {nullptr, ""},
        {"dmCopies=3 dmDuplex=2 psContrast=9", "dmCopies=3 dmDuplex=2 psContrast=9"},
        {"dmCopies=3 dmOrientation=2 dmDuplex=2 psContrast=9 privateSignature=0",
         "dmCopies=3 dmOrientation=2 dmDuplex=2"},
        {"dmCopies=3 psContrast=9 dmSpecVersion=0x400", ""},
    };
    for (const auto& c : cases) {
        VelmoraDevMode input = With(stored, c.input ? c.input : "");
        VelmoraDevMode output = {};
        DOCUMENTPROPERTYHEADER header = Header(printer, kBoth | DM_PROMPT, c.input ? &input : nullptr, &output);
        SheetHost host(printer.Driver().DrvDocumentPropertySheets, &header);
        host.RefusePage(1);
        EXPECT_LT(host.Run(), 0);
        // A device mode without a settings folder gets the user's.
        VelmoraDevMode expected = With(stored, c.expected);
        auto& folder = output.privatePart.settingsFolder;
        EXPECT_TRUE(TextOf(folder).ends_with(TEXT("\\Velmora Contract")));
        memcpy(expected.privatePart.settingsFolder, folder, sizeof(folder));
        EXPECT_EQ(Differences(expected, output), Texts()) << (c.input ? c.input : "none");
    }
}

}  // namespace
}  // namespace contract
