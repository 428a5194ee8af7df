// What the print-ticket provider writes is good for every reader of the Print Schema, whatever the model and whatever
// the ticket began with, and says what the device mode says.
#include "tests/print_schema/print_schema_checker.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/contract/canonical_document.h"
#include "tests/contract/contract_test.h"
#include "tests/contract/print_ticket_provider.h"
#include "tests/contract/transcript.h"
#include "tests/driver/changed_devmode.h"
#include "tests/print_schema/xml_tree.h"

namespace contract {
namespace {

using velmora::VelmoraDevMode;

constexpr const char* kColor = "VELMORA-C3200.XPI";

// A document as its reader gets it: saved and read again. Some DOMs save a declaration that was set beside the same one
// that was read or is the element's own; it counts once.
ComReference<IXMLDOMDocument2> Saved(IXMLDOMDocument2* document) {
    OwnedBstr saved;
    EXPECT_EQ(document->get_xml(saved.Receive()), S_OK);
    WideText text = saved.Text();
    const WideText prefixes = TEXT(" xmlns:");
    size_t place = text.find(prefixes);
    while (place < text.find(TEXT('>'), text.find(TEXT(":Print")))) {
        const WideText declaration =
            text.substr(place, text.find(TEXT('"'), text.find(TEXT('"'), place) + 1) + 1 - place);
        const bool isRepeated = text.find(declaration) < place;
        text.erase(place, isRepeated ? declaration.size() : 0);
        place = text.find(prefixes, isRepeated ? place : place + 1);
    }
    return LoadDocument(text);
}

// A line for each finding in a document, as it is and as its reader gets it.
std::string Findings(IXMLDOMDocument2* document) {
    std::ostringstream lines;
    for (const print_schema::Finding& finding : print_schema::CheckPrintSchema(document)) {
        lines << finding << '\n';
    }
    for (const print_schema::Finding& finding : print_schema::CheckPrintSchema(Saved(document).Get())) {
        lines << "saved: " << finding << '\n';
    }
    return lines.str();
}

// What a ticket's elements say, in the order of the lines: without comments and bindings of prefixes.
std::vector<std::string> Content(IXMLDOMDocument2* document) {
    std::istringstream lines(CanonicalText(document));
    std::vector<std::string> content;
    for (std::string line; std::getline(lines, line);) {
        const size_t begin = line.find_first_not_of(' ');
        if (line[begin] != '#' && line.compare(begin, 6, "xmlns:") != 0) {
            content.push_back(line);
        }
    }
    std::sort(content.begin(), content.end());
    return content;
}

// The names of the features on the root, "uri|name", as the reader of the saved document resolves them.
std::multiset<std::string> Features(IXMLDOMDocument2* document) {
    const print_schema::XmlTree tree(Saved(document).Get());
    std::multiset<std::string> names;
    for (size_t i = 0; i < tree.Nodes().size(); ++i) {
        const print_schema::XmlNode& node = tree.Nodes()[i];
        for (const print_schema::XmlAttribute& attribute : node.attributes) {
            if (node.depth == 1 && node.name == TEXT("Feature") && attribute.name == TEXT("name")) {
                const size_t colon = attribute.value.find(TEXT(':'));
                const auto uri = tree.Resolve(i, attribute.value.substr(0, colon));
                names.insert(Printable(uri.value_or(WideText())) + '|' + Printable(attribute.value.substr(colon + 1)));
            }
        }
    }
    return names;
}

DriverPackage XpsWriterPackage(const std::string& model) {
    DriverPackage package = PackageOf(model);
    package.dependentFiles.push_back({TEXT("KV62.INI"), {}, "[PrinterDriver]\r\nMXDWConfig=1\r\n"});
    return package;
}

// A printer's default device mode as a conversion begins with it: features without options lose their numbers.
VelmoraDevMode PreparedDevMode(const InstalledPrinter& printer, IPrintTicketProvider* provider) {
    const auto empty = NewTicket();
    return DevModeOf(provider, empty.Get(), *DefaultDevMode(printer, printer.Name()).content);
}

class PrintSchema : public ContractTest {
  protected:
    const ComOnThread com_;
};

TEST_F(PrintSchema, HoldsForEveryModelsDocuments) {
    for (const std::string& model : DescriptionFiles()) {
        SCOPED_TRACE(model);
        InstalledPrinter printer(*environment_, PackageOf(model));
        auto provider = BoundProviderOf(printer);
        const auto record = [&model](const char* what, IXMLDOMDocument2* document) {
            EXPECT_EQ(Findings(document), "") << what;
            Record(model + ": " + what);
            RecordDocument(document);
        };

        const VelmoraDevMode devMode = PreparedDevMode(printer, provider.Get());
        const auto ticket = TicketOf(provider.Get(), devMode);
        record("ticket", ticket.Get());
        EXPECT_EQ(Differences(devMode, DevModeOf(provider.Get(), ticket.Get(), devMode)), std::vector<std::string>());
        // It lacks nothing.
        const std::vector<std::string> content = Content(ticket.Get());
        Validate(provider.Get(), ticket.Get());
        EXPECT_EQ(Findings(ticket.Get()), "");
        EXPECT_EQ(Content(ticket.Get()), content);

        const auto empty = NewTicket();
        Validate(provider.Get(), empty.Get());
        record("validated", empty.Get());

        record("capabilities", CapabilitiesOf(provider.Get(), nullptr).Get());
    }
}

TEST_F(PrintSchema, KeepsWhatApplicationsSayInTheirWords) {
    // Every prefix that the driver would take stands for another namespace.
    const char* const prefixes[] = {"psf", "psk", "kxp", "oem", "velmora", "xsd", "xsi", "ns0000", "ns0001"};
    std::string declarations;
    std::string features;
    for (const std::string prefix : prefixes) {
        declarations += " xmlns:" + prefix + "='u:" + prefix + "'";
        features += "<f:Feature name='" + prefix + ":Fold'><f:Option name='" + prefix + ":Once'/></f:Feature>";
    }
    const std::string text =
        "<f:PrintTicket version='1' xmlns:f='{psf}' xmlns:k='{psk}' xmlns:i='{xsi}' xmlns:s='{xsd}'" + declarations +
        ">" + features +
        "<f:Feature name='k:PageOrientation'><f:Option name='k:Landscape'/></f:Feature>"
        "<f:ParameterInit name='k:PageCopies'><f:Value i:type='s:integer'>2</f:Value></f:ParameterInit>"
        "</f:PrintTicket>";
    for (const bool isXpsWriter : {false, true}) {
        SCOPED_TRACE(isXpsWriter);
        InstalledPrinter printer(*environment_, isXpsWriter ? XpsWriterPackage(kColor) : PackageOf(kColor));
        auto provider = BoundProviderOf(printer);
        const auto ticket = LoadDocument(text);
        Validate(provider.Get(), ticket.Get());
        EXPECT_EQ(Findings(ticket.Get()), "");
        RecordDocument(ticket.Get());

        const std::multiset<std::string> names = Features(ticket.Get());
        for (const std::string prefix : prefixes) {
            EXPECT_EQ(names.count("u:" + prefix + "|Fold"), 1u) << prefix;
        }
        const std::string keywords = "http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords|";
        EXPECT_EQ(names.count(keywords + "PageOrientation"), 1u);
        EXPECT_EQ(names.count(keywords + "PageMediaSize"), 1u);
        EXPECT_EQ(names.count("http://www.kestranix.com/ptpc/2006/1|DocumentOverlay"), 1u);
        EXPECT_EQ(names.count("http://schemas.microsoft.com/windows/2006/06/printing/printschemakeywords/"
                              "microsoftxpsdocumentwriter|JobImageType"),
                  isXpsWriter ? 1u : 0u);
        const VelmoraDevMode devMode = PreparedDevMode(printer, provider.Get());
        EXPECT_EQ(Differences(devMode, DevModeOf(provider.Get(), Saved(ticket.Get()).Get(), devMode)),
                  Differences(devMode, driver_test::With(devMode, "dmOrientation=2 dmCopies=2")));
    }
}

TEST_F(PrintSchema, HasTheFeaturesOfXpsWriters) {
    InstalledPrinter printer(*environment_, XpsWriterPackage(kColor));
    auto provider = ProviderOf(printer);
    const std::string uri =
        "http://schemas.microsoft.com/windows/2006/06/printing/printschemakeywords/microsoftxpsdocumentwriter";
    const Binding binding = Bind(provider.Get(), printer.Handle());
    ASSERT_EQ(binding.namespaces.size(), 7u);
    EXPECT_EQ(binding.namespaces.back(), uri);

    const VelmoraDevMode devMode = PreparedDevMode(printer, provider.Get());
    const VelmoraDevMode changed = driver_test::With(devMode, "jobInterleaving=1 jobImageType=3");
    const auto ticket = TicketOf(provider.Get(), changed);
    const auto empty = NewTicket();
    Validate(provider.Get(), empty.Get());
    const auto capabilities = CapabilitiesOf(provider.Get(), nullptr);
    for (IXMLDOMDocument2* document : {ticket.Get(), empty.Get(), capabilities.Get()}) {
        EXPECT_EQ(Findings(document), "");
        EXPECT_EQ(Features(document).count(uri + "|JobInterleaving"), 1u);
        EXPECT_NE(CanonicalText(document).find("name=\"ns0000:JobImageType\""), std::string::npos);
        RecordDocument(document);
    }
    EXPECT_EQ(Differences(changed, DevModeOf(provider.Get(), Saved(ticket.Get()).Get(), devMode)),
              std::vector<std::string>());
}

// A device mode that becomes a ticket, which becomes a device mode again on top of the default one.
TEST_F(PrintSchema, TicketsSayWhatDeviceModesSay) {
    const auto check = [this](const char* model, const char* settings, const std::vector<std::string>& lost = {}) {
        SCOPED_TRACE(settings);
        InstalledPrinter printer(*environment_, PackageOf(model));
        auto provider = BoundProviderOf(printer);
        const VelmoraDevMode devMode = PreparedDevMode(printer, provider.Get());
        VelmoraDevMode changed = driver_test::With(devMode, settings);
        if (changed.privatePart.watermarkFlags != 0) {
            memcpy(changed.privatePart.watermarkText, TEXT("Draft"), sizeof(TEXT("Draft")));
            memcpy(changed.privatePart.watermarkFont, TEXT("Courier New"), sizeof(TEXT("Courier New")));
        }
        const auto ticket = TicketOf(provider.Get(), changed);
        EXPECT_EQ(Findings(ticket.Get()), "");
        EXPECT_EQ(Differences(changed, DevModeOf(provider.Get(), ticket.Get(), devMode)), lost);
    };
    check(kColor, "dmOrientation=2 rotate180=1 dmCopies=12 dmColor=1 dmCollate=1 collateCopy=1 pageOrderFlags=1");
    // What isn't bound has no order of pages.
    check(kColor, "pagesPerSheet=4 nupOrder=17 layoutMode=1 nupBorderWidth=60 posterMode=3",
          {"nupOrder[0] is 0, not 17"});
    check(kColor, "booklet=4 nupOrder=1 bookletGutter=60 separatorSheet=2");
    // A gutter has no sign: the edge tells it.
    check(kColor, "gutterShiftX=-60", {"gutterShiftX[0] is 60, not -60", "finishingOption[0] is 6, not 0"});
    check(kColor, "scaleMode=66 scaleValue=70 optionFlags=524824 blackText=1 trueTypeMode=0");
    check(kColor, "scaleMode=33 scaleValue=11 scaleLength=2100 scaleWidth=1480");
    check(kColor,
          "frontCoverMode=1 frontCoverBin=257 frontCoverMedia=2 backCoverMode=2 interleaveMode=1 interleaveBin=257");
    check(kColor, "watermarkFlags=21 watermarkFontSize=9000 watermarkAngle=300 watermarkPosition=2 watermarkItalic=1");
    check("VELMORA-M4500.XPI",
          "psContrast=-50 psBrightness=7 optionFlags=524384 extraFlag=1 psHalftoneFrequency=600 psHalftoneAngle=300");
    check("VELMORA-I700.XPI",
          "pagesPerSheet=12 mediaIndex=2 resolutionIndex=0 resolutionId=300 dmPrintQuality=300 dmYResolution=300");
}

// The printer's overlays are what the user's settings folder holds.
TEST_F(PrintSchema, ListsTheUsersOverlays) {
    InstalledPrinter printer(*environment_, PackageOf(kColor));
    const auto folder = environment_->HostPath(Variable(TEXT("APPDATA")) + TEXT("\\Kestranix Inc.\\Velmora Contract"));
    std::filesystem::create_directories(folder);
    // A device mode holds twelve characters.
    for (const char* name : {"LETTER.ovl", "12345678.ovl", "123456789.ovl", "OTHER.txt"}) {
        std::ofstream(folder / name) << "overlay";
    }
    auto provider = BoundProviderOf(printer);
    const auto listed = [](IXMLDOMDocument2* document) {
        std::multiset<std::string> names;
        for (const std::string& line : Content(document)) {
            const std::string backslash = Printable(TEXT("\\"));
            const size_t begin = line.rfind(backslash);
            if (begin != std::string::npos && line.ends_with(".ovl\"")) {
                names.insert(line.substr(begin + backslash.size()));
            }
        }
        return names;
    };
    const auto capabilities = CapabilitiesOf(provider.Get(), nullptr);
    EXPECT_EQ(Findings(capabilities.Get()), "");
    // The feature has two lists, and each of the three exceptions has one.
    std::multiset<std::string> expected;
    for (int i = 0; i < 5; ++i) {
        expected.insert({"12345678.ovl\"", "LETTER.ovl\""});
    }
    EXPECT_EQ(listed(capabilities.Get()), expected);

    const VelmoraDevMode devMode = PreparedDevMode(printer, provider.Get());
    VelmoraDevMode changed = driver_test::With(devMode, "overlayMode=6");
    memcpy(changed.privatePart.overlayName, TEXT("LETTER.ovl"), sizeof(TEXT("LETTER.ovl")));
    memcpy(changed.privatePart.overlayName2, TEXT("12345678.ovl"), sizeof(TEXT("12345678.ovl")));
    const auto ticket = TicketOf(provider.Get(), changed);
    EXPECT_EQ(Findings(ticket.Get()), "");
    EXPECT_EQ(listed(ticket.Get()), (std::multiset<std::string>{"12345678.ovl\"", "LETTER.ovl\""}));
    EXPECT_EQ(Differences(changed, DevModeOf(provider.Get(), ticket.Get(), devMode)), std::vector<std::string>());
}

// What is printable is told of the paper that is printed on, whatever the document's pages are.
TEST_F(PrintSchema, ListsThePaperThatPagesAreFittedTo) {
    InstalledPrinter printer(*environment_, PackageOf(kColor));
    auto provider = BoundProviderOf(printer);
    const auto scored = [](const char* name, const char* value) {
        return std::string("<psf:ScoredProperty name='psk:") + name + "'><psf:Value>" + value +
               "</psf:Value></psf:ScoredProperty>";
    };
    const std::string paper = "<psf:Feature name='psk:PageMediaSize'><psf:Option name='psk:ISOA5'>" +
                              scored("MediaSizeWidth", "148000") + scored("MediaSizeHeight", "210000") +
                              "</psf:Option></psf:Feature>";
    const std::string fit =
        "<psf:Feature name='psk:PageScaling'><psf:Option name='psk:FitApplicationMediaSizeToPageMediaSize'/>"
        "</psf:Feature>";
    const auto ticket = NewTicket(paper + fit);
    const auto capabilities = CapabilitiesOf(provider.Get(), ticket.Get());
    EXPECT_EQ(Findings(capabilities.Get()), "");
    const std::string text = CanonicalText(capabilities.Get());
    const size_t width = text.find("xsd:integer\"", text.find("psk:ImageableSizeWidth"));
    ASSERT_NE(width, std::string::npos);
    EXPECT_EQ(text.substr(text.find('"', width + 12), 8), "\"148000\"");
}

}  // namespace
}  // namespace contract
