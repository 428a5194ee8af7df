// Print tickets of any shape: the four conversions on a printer of each of the project's models. What a ticket becomes
// is a device mode that the validations accept or repair, never one that they reject for what it is; what a ticket has
// stays in it, and nothing is written twice; documents grow by no more than the model has; nothing is left open.
//
// An input is a header and steps, each of which adds to the ticket by the object model or changes the device mode that
// goes in. Any bytes are an input.
#include <objbase.h>
#include <oleauto.h>
#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "driver/base/com.h"
#include "driver/ptprovider/print_schema.h"
#include "driver/ptprovider/provider.h"
#include "driver/ptprovider/ticket_conversion.h"
#include "fuzz/model_printers.h"
#include "fuzz/stop.h"
#include "fuzz/ticket_builder.h"
#include "fuzz/ticket_printer.h"
#include "fuzz/ticket_steps.h"
#include "platform/host.h"
#include "platform/kernel/text.h"

namespace {

using namespace fuzz;     // NOLINT(google-build-using-namespace): the targets' kit
using namespace velmora;  // NOLINT(google-build-using-namespace): the operations under test

struct Printers {
    host::Machine machine;
    std::vector<TicketPrinter> models;

    Printers() {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        for (const std::filesystem::path& source : ModelSources()) {
            models.emplace_back(source, models.size() % 2 == 1);
        }
    }
};

// --- What is asserted

size_t CountNodes(IXMLDOMNode* parent) {
    size_t count = 1;
    Node child;
    parent->get_firstChild(child.Receive());
    while (child) {
        count += CountNodes(child.Get());
        Node next;
        child->get_nextSibling(next.Receive());
        child = std::move(next);
    }
    return count;
}

Text AttributeOf(IXMLDOMNode* element, const Text& name) {
    OwnedVariant value;
    static_cast<IXMLDOMElement*>(element)->getAttribute(OwnedBstr(name.c_str()).Get(), value.Receive());
    return value.Text() ? value.Text() : u"";
}

// How often each name is one of a feature on the root.
std::map<Name, int> CountFeatures(IXMLDOMDocument2* document) {
    std::map<Name, int> counts;
    ComReference<IXMLDOMElement> root;
    document->get_documentElement(root.Receive());
    Node child;
    root->get_firstChild(child.Receive());
    while (child) {
        OwnedBstr kind;
        child->get_baseName(kind.Receive());
        if (kind.Is(u"Feature")) {
            const Text written = AttributeOf(child.Get(), u"name");
            const size_t colon = std::min(written.find(u':'), written.size());
            const Text declaration = u"xmlns:" + written.substr(0, colon);
            const Text own = AttributeOf(child.Get(), declaration);
            const Text uri = own.empty() ? AttributeOf(root.Get(), declaration) : own;
            if (!uri.empty()) {
                ++counts[{uri, written.substr(colon + 1)}];
            }
        }
        Node next;
        child->get_nextSibling(next.Receive());
        child = std::move(next);
    }
    return counts;
}

// A document holds no more than it did and what the model has.
void CheckSize(IXMLDOMDocument2* document, size_t before, const TicketPrinter& printer) {
    constexpr size_t kMostNodes = 16384;
    constexpr size_t kMostNodesPerEntry = 128;
    if (CountNodes(document) > before + kMostNodes + printer.entries * kMostNodesPerEntry) {
        Stop("a document grows beyond what the model has");
    }
}

// What a ticket had before something was written into it.
class TicketBefore {
  public:
    explicit TicketBefore(IXMLDOMDocument2* ticket)
        : ticket_(ticket), nodes_(CountNodes(ticket)), features_(CountFeatures(ticket)) {}

    void CheckWritten(const TicketPrinter& printer) const {
        CheckSize(ticket_, nodes_, printer);
        for (const auto& [name, count] : CountFeatures(ticket_)) {
            const auto before = features_.find(name);
            const bool isWrittenAlways = name == Name(kKeywordsNamespace, u"JobDeviceLanguage");
            if (!isWrittenAlways && count != (before == features_.end() ? 1 : before->second)) {
                Stop(("a feature is written that there was: " + host::ToUtf8(name.second)).c_str());
            }
        }
    }

  private:
    IXMLDOMDocument2* ticket_;
    size_t nodes_;
    std::map<Name, int> features_;
};

// One validation at a time until nothing is left to repair, which takes at least three repairs each.
void CheckRepairable(const TicketPrinter& printer, VelmoraDevMode devMode) {
    constexpr size_t kMostRounds = sizeof(devMode) / ValidationReport::kRepairLimit;
    for (size_t round = 0; round < kMostRounds; ++round) {
        ValidationReport report;
        CheckPublicDevMode(printer.printer.Get(), *printer.model, &devMode.publicPart, &report);
        if (report.IsAccepted()) {
            report = {};
            CheckPrivateDevMode(printer.facts, *printer.model, &devMode.privatePart, &report);
        }
        if (report.rejectedBy) {
            Stop("a ticket's device mode isn't the driver's", report);
        }
        if (report.IsAccepted()) {
            return;
        }
    }
    Stop("a ticket's device mode can't be repaired");
}

// The conversions with the snapshot in hand, as the provider runs them.
struct Conversion {
    Conversion(ConversionMode mode, const TicketPrinter& printer, IXMLDOMDocument2* document,
               const VelmoraDevMode* input)
        : context(mode) {
        context.Bind(printer.printer.Get(), printer.snapshot.Get());
        if (document) {
            context.document.AttachDocument(document);
        }
        working.Bind(printer.printer.Get(), printer.snapshot.Get());
        const auto given = input ? std::make_unique<VelmoraDevMode>(*input) : nullptr;
        working.Prepare(given ? &given->publicPart : nullptr, given ? sizeof(*given) : 0);
    }

    ConversionContext context;
    WorkingDevMode working;
};

VelmoraDevMode Read(const TicketPrinter& printer, IXMLDOMDocument2* ticket, const VelmoraDevMode& input) {
    Conversion conversion(ConversionMode::kTicket, printer, ticket, &input);
    ReadTicket(conversion.context, conversion.working);
    const VelmoraDevMode output = *conversion.working.DevMode();
    CheckRepairable(printer, output);
    return output;
}

void Write(const TicketPrinter& printer, IXMLDOMDocument2* ticket, const VelmoraDevMode& input) {
    const TicketBefore before(ticket);
    Conversion conversion(ConversionMode::kTicket, printer, ticket, &input);
    WriteTicket(conversion.context, conversion.working);
    before.CheckWritten(printer);
}

void Validate(const TicketPrinter& printer, IXMLDOMDocument2* ticket) {
    const TicketBefore before(ticket);
    Conversion conversion(ConversionMode::kValidation, printer, ticket, nullptr);
    ReadTicket(conversion.context, conversion.working);
    WriteTicket(conversion.context, conversion.working);
    before.CheckWritten(printer);
}

// `output`: what the ticket becomes of the input.
void CallProvider(const TicketPrinter& printer, IXMLDOMDocument2* ticket, const VelmoraDevMode& input,
                  const VelmoraDevMode& output) {
    const ComReference<IPTProvider> provider(new IPTProvider);
    SHIMOPTS options = {};
    DWORD fields = 0;
    INT count = 0;
    BSTR* namespaces = nullptr;
    if (provider->BindPrinter(printer.printer.Get(), 1, &options, &fields, &count, &namespaces) != S_OK) {
        Stop("the provider isn't bound");
    }
    while (count > 0) {
        SysFreeString(namespaces[--count]);
    }
    CoTaskMemFree(namespaces);

    const auto given = std::make_unique<VelmoraDevMode>(input);
    ULONG size = 0;
    PDEVMODEW made = nullptr;
    if (provider->ConvertPrintTicketToDevMode(ticket, sizeof(*given), &given->publicPart, &size, &made) != S_OK ||
        size != sizeof(output) || memcmp(made, &output, sizeof(output)) != 0) {
        Stop("the provider gives another device mode");
    }
    CoTaskMemFree(made);

    ComReference<IXMLDOMDocument2> capabilities;
    if (provider->GetPrintCapabilities(ticket, capabilities.Receive()) != S_OK) {
        Stop("there are no capabilities");
    }
    CheckSize(capabilities.Get(), 0, printer);
    for (const auto& [name, times] : CountFeatures(capabilities.Get())) {
        if (times != 1) {
            Stop(("a feature stands twice in the capabilities: " + host::ToUtf8(name.second)).c_str());
        }
    }
    const TicketBefore before(ticket);
    if (provider->ConvertDevModeToPrintTicket(sizeof(*given), &given->publicPart, ticket) != S_OK ||
        provider->ValidatePrintTicket(ticket) != S_PT_NO_CONFLICT) {
        Stop("the provider refuses a ticket");
    }
    before.CheckWritten(printer);
}

void Run(const TicketPrinter& printer, const Header& header, std::span<const Step> steps) {
    TicketBuilder ticket(printer, (header.flags & kExchangedPrefixes) != 0);
    VelmoraDevMode input = printer.valid;
    for (const Step& step : steps) {
        if (step.kind % kStepKinds == kDevModeEdit || step.kind % kStepKinds == kDevModeNumber) {
            const auto kind = step.kind % kStepKinds == kDevModeEdit ? kByte : kLimit;
            Apply({kind, static_cast<uint16_t>(step.feature << 8 | step.word), step.space, step.number}, &input);
        } else {
            ticket.Take(step);
        }
    }
    const VelmoraDevMode output = Read(printer, ticket.Document(), input);
    const TicketBuilder made(printer, false);
    Write(printer, made.Document(), output);
    Read(printer, made.Document(), output);
    if (header.flags <= kCallsProvider) {
        CallProvider(printer, ticket.Document(), input, output);
    }
    Validate(printer, ticket.Document());
}

}  // namespace

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t most);

// Mostly changes whole steps: one is put in, taken out, put in another's place, or changed in its bytes.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t most, unsigned seed) {
    std::minstd_rand random(seed);
    const auto below = [&](size_t end) { return std::uniform_int_distribution<size_t>(0, end - 1)(random); };
    const size_t count = size < sizeof(Header) ? 0 : (size - sizeof(Header)) / sizeof(Step);
    const auto kind = below(8);
    if (kind == 0 || size < sizeof(Header)) {
        return LLVMFuzzerMutate(data, size, most);
    }
    // Else most inputs that are kept would be of those that call the provider, which reach the most.
    data[offsetof(Header, flags)] = static_cast<uint8_t>(below(256));
    const size_t end = sizeof(Header) + count * sizeof(Step);
    uint8_t* const place = data + sizeof(Header) + below(count + 1) * sizeof(Step);
    const auto rest = static_cast<size_t>(data + end - place);
    if (kind == 1 && rest > 0) {
        memmove(place, place + sizeof(Step), rest - sizeof(Step));
        return end - sizeof(Step);
    }
    if (kind <= 4 && end + sizeof(Step) <= most) {
        memmove(place + sizeof(Step), place, rest);
        for (size_t i = 0; i < sizeof(Step); ++i) {
            place[i] = static_cast<uint8_t>(below(256));
        }
        if (kind == 2) {
            *place = static_cast<uint8_t>(below(kScoredRef + 1));
        }
        return end + sizeof(Step);
    }
    if (rest > 0) {
        if (kind == 5) {
            memcpy(place, data + sizeof(Header) + below(count) * sizeof(Step), sizeof(Step));
        } else {
            LLVMFuzzerMutate(place, sizeof(Step), sizeof(Step));
        }
    }
    return end;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Printers printers;
    Header header;
    if (size < sizeof(header)) {
        return 0;
    }
    memcpy(&header, data, sizeof(header));
    std::vector<Step> steps((size - sizeof(header)) / sizeof(Step));
    for (size_t i = 0; i < steps.size(); ++i) {
        memcpy(&steps[i], data + sizeof(header) + i * sizeof(Step), sizeof(Step));
    }
    const OpenCheck open;
    Run(printers.models[header.printer % printers.models.size()], header, steps);
    return 0;
}
