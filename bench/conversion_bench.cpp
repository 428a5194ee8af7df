#include "bench/conversion_bench.h"

#include <objbase.h>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "bench/bench_printer.h"
#include "bench/call_tables.h"
#include "bench/generated_model.h"
#include "bench/plain_document.h"
#include "driver/base/com.h"
#include "driver/devmode/default_devmode.h"
#include "driver/ptprovider/conversion_context.h"
#include "driver/ptprovider/dom_classes.h"
#include "driver/ptprovider/provider.h"
#include "driver/ptprovider/ticket_conversion.h"
#include "driver/ptprovider/working_devmode.h"
#include "tools/xpic/compile.h"

namespace velmora {
namespace {

constexpr double kMostRatio = 3;

// The conversions, each as a call of the provider and as the provider runs it, with the printer's snapshot in hand.
enum Direction { kWriting, kDescribing, kReading, kDirections };
// Reading begins with the text of a ticket, on both sides.
constexpr const char* kDirectionNames[] = {"ticket of a device mode", "print capabilities", "device mode of a ticket"};
constexpr const char* kInHand = ", snapshot in hand";
constexpr const char* kPlain = ", by libxml2";
constexpr const char* kSnapshot = "snapshot of a printer";
constexpr const char* kPreparation = "device mode prepared";

using Document = ComReference<IXMLDOMDocument2>;

Document NewTicket() {
    void* made = nullptr;
    Require(CoCreateInstance(kDomDocument60, nullptr, CLSCTX_INPROC_SERVER, kIidDomDocument2, &made) == S_OK,
            "a document can't be made");
    return Document(static_cast<IXMLDOMDocument2*>(made));
}

// A printer with a provider that is bound to it, a device mode, and the ticket that this is written into.
class TicketPrinter {
  public:
    TicketPrinter(const host::Machine& machine, const std::string& name, const CompileResult& compiled)
        : provider_(new IPTProvider), ticket_(NewTicket()), written_(NewTicket()) {
        if (!compiled.Succeeded()) {
            Require(false, FormatDiagnostic(compiled.diagnostics.front()));
        }
        printer_ = InstallDescription(machine, name, compiled.bytes);
        snapshot_ = LoadPrinterSnapshot(printer_.Get());
        BuildDefaultDevMode(printer_.Get(), u"Bench", &devMode_);
        // The last entry of each list is what is looked for the longest.
        if (const size_t papers = snapshot_.Get()->papers.count; papers > 0) {
            const PaperEntry& last = snapshot_.Get()->papers[papers - 1];
            devMode_.publicPart.dmPaperSize = last.paperId;
            devMode_.publicPart.dmPaperWidth = static_cast<short>(last.width / 100);
            devMode_.publicPart.dmPaperLength = static_cast<short>(last.length / 100);
        }
        devMode_.privatePart.mediaIndex = static_cast<uint16_t>(snapshot_.Get()->media.count);
        Bind();
        Load(written_, emptyTicket_);
        Require(provider_->ConvertDevModeToPrintTicket(sizeof(devMode_), &devMode_.publicPart, written_.Get()) == S_OK,
                "no ticket is written");
        // Converting attaches a document, which adds to it: each call has a ticket of its own.
        Require(written_->get_xml(writtenTicket_.Receive()) == S_OK, "a ticket has no text");
    }

    HANDLE Printer() const { return printer_.Get(); }
    std::string TicketText() const { return TextOf(written_.Get()); }
    std::string CapabilitiesText() { return TextOf(Describe().Get()); }

    void Call(Direction direction) {
        switch (direction) {
            case kWriting:
                Load(ticket_, emptyTicket_);
                provider_->ConvertDevModeToPrintTicket(sizeof(devMode_), &devMode_.publicPart, ticket_.Get());
                break;
            case kDescribing:
                Describe();
                break;
            default: {
                Load(ticket_, writtenTicket_);
                ULONG size = 0;
                PDEVMODEW made = nullptr;
                provider_->ConvertPrintTicketToDevMode(ticket_.Get(), sizeof(devMode_), &devMode_.publicPart, &size,
                                                       &made);
                Require(made && made->dmPaperSize == devMode_.publicPart.dmPaperSize, "a ticket isn't read");
                CoTaskMemFree(made);
            }
        }
    }

    void CallInHand(Direction direction) {
        ConversionContext context(direction == kDescribing ? ConversionMode::kCapabilities : ConversionMode::kTicket);
        context.Bind(printer_.Get(), snapshot_.Get());
        if (direction != kDescribing) {
            Load(ticket_, direction == kWriting ? emptyTicket_ : writtenTicket_);
            context.document.AttachDocument(ticket_.Get());
        }
        WorkingDevMode working;
        Prepare(&working, direction == kDescribing);
        switch (direction) {
            case kWriting:
                WriteTicket(context, working);
                break;
            case kDescribing:
                BuildPrintCapabilities(context, working);
                break;
            default:
                ReadTicket(context, working);
        }
    }

    void Prepare(WorkingDevMode* working, bool isDefault) {
        working->Bind(printer_.Get(), snapshot_.Get());
        const DevModeSource source =
            working->Prepare(isDefault ? nullptr : &devMode_.publicPart, isDefault ? 0 : sizeof(devMode_));
        Require(isDefault || source == DevModeSource::kGiven, "the device mode isn't accepted");
    }

  private:
    static void Load(const Document& ticket, const OwnedBstr& text) {
        VARIANT_BOOL isLoaded = VARIANT_FALSE;
        Require(ticket->loadXML(text.Get(), &isLoaded) == S_OK, "a ticket can't be loaded");
    }

    void Bind() {
        SHIMOPTS options = {};
        DWORD fields = 0;
        INT count = 0;
        BSTR* namespaces = nullptr;
        Require(provider_->BindPrinter(printer_.Get(), 1, &options, &fields, &count, &namespaces) == S_OK,
                "the provider isn't bound");
        while (count > 0) {
            SysFreeString(namespaces[--count]);
        }
        CoTaskMemFree(namespaces);
    }

    Document Describe() {
        Document capabilities;
        Require(provider_->GetPrintCapabilities(nullptr, capabilities.Receive()) == S_OK, "there are no capabilities");
        return capabilities;
    }

    OwnedPrinter printer_;
    OwnedSnapshot snapshot_;
    ComReference<IPTProvider> provider_;
    VelmoraDevMode devMode_ = {};
    const OwnedBstr emptyTicket_{
        TEXT("<psf:PrintTicket xmlns:psf='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework' "
             "version='1'/>")};
    Document ticket_;
    Document written_;
    OwnedBstr writtenTicket_;
};

std::string NameOf(Direction direction, const ModelExtent& extent) {
    return kDirectionNames[direction] + (", " + extent.Name());
}

PlainRecording Record(const std::string& text) {
    const PlainDocument document = ParsePlain(text);
    PlainRecording recording(document.get());
    Require(CanonicalText(recording.Build().get()) == CanonicalText(document.get()),
            "libxml2 doesn't build the same document again");
    return recording;
}

}  // namespace

struct ConversionBench::Parts {
    ComUse com;
    std::unique_ptr<TicketPrinter> richest;
    std::string modelName;
    int elements[kDirections] = {};
    std::vector<std::unique_ptr<TicketPrinter>> generated;
};

ConversionBench::ConversionBench(const host::Machine& machine) : parts_(std::make_unique<Parts>()) {
    std::string ofRichest;
    for (const std::filesystem::path& source : ProjectModels()) {
        auto printer =
            std::make_unique<TicketPrinter>(machine, "TICKET-" + source.stem().string(), CompileModel(source));
        std::string text = printer->CapabilitiesText();
        if (text.size() > ofRichest.size()) {
            ofRichest = std::move(text);
            parts_->richest = std::move(printer);
            parts_->modelName = source.filename().string();
        }
    }
    TicketPrinter* const richest = parts_->richest.get();
    for (const Direction direction : {kWriting, kDescribing, kReading}) {
        const std::string name = kDirectionNames[direction];
        RegisterWork(name, [=] { richest->Call(direction); });
        RegisterWork(name + kInHand, [=] { richest->CallInHand(direction); });
    }
    RegisterWork(kSnapshot,
                 [=] { Require(static_cast<bool>(LoadPrinterSnapshot(richest->Printer())), "there is no snapshot"); });
    RegisterWork(kPreparation, [=] {
        WorkingDevMode working;
        richest->Prepare(&working, false);
    });
    const std::string texts[] = {richest->TicketText(), ofRichest};
    for (const Direction direction : {kWriting, kDescribing}) {
        RegisterWork(std::string(kDirectionNames[direction]) + kPlain, [recording = Record(texts[direction])] {
            Require(recording.Build() != nullptr, "libxml2 builds nothing");
        });
        parts_->elements[direction] = CountElements(ParsePlain(texts[direction])->children);
    }
    RegisterWork(std::string(kDirectionNames[kReading]) + kPlain,
                 [text = texts[kWriting]] { Require(WalkPlain(ParsePlain(text).get()) > 0, "libxml2 reads nothing"); });

    for (const ModelExtent& extent : kTenfolds) {
        auto printer = std::make_unique<TicketPrinter>(machine, "TICKET-" + std::to_string(extent.papers),
                                                       CompileModelText(GeneratedSource(extent), "bench.json"));
        for (const Direction direction : {kWriting, kDescribing, kReading}) {
            RegisterWork(NameOf(direction, extent), [=, printer = printer.get()] { printer->Call(direction); });
        }
        parts_->generated.push_back(std::move(printer));
    }
}

ConversionBench::~ConversionBench() = default;

bool ConversionBench::Judge(const Times&) const {
    return true;
}

void ConversionBench::AddRows(CallTables* tables) const {
    // What is read has the elements of what is written.
    const int elements[] = {parts_->elements[kWriting], parts_->elements[kDescribing], parts_->elements[kWriting]};
    for (const Direction direction : {kWriting, kDescribing, kReading}) {
        const std::string name = kDirectionNames[direction];
        const char* const floor = direction == kReading ? "libxml2, parsed and walked" : "libxml2, same tree";
        tables->Add(CallRow{CallGroup::kTickets, name + ", " + std::to_string(elements[direction]) + " elements", name,
                            floor, name + kPlain, MostRatio(kMostRatio)});
        tables->Add(CallRow{CallGroup::kTickets, "  with the snapshot in hand", name + kInHand, floor, name + kPlain,
                            MostRatio(kMostRatio)});
        GrowthRow growth = {name, {}};
        for (const ModelExtent& extent : kTenfolds) {
            growth.works.push_back(NameOf(direction, extent));
        }
        tables->Add(std::move(growth));
    }
    tables->Add(CallRow{CallGroup::kTickets, std::string(kSnapshot) + ", " + parts_->modelName, kSnapshot});
    tables->Add(CallRow{CallGroup::kTickets, kPreparation, kPreparation});
}

}  // namespace velmora
