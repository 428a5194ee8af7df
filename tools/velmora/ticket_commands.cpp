#include "tools/velmora/commands.h"

#include <functional>
#include <optional>
#include <span>

#include "tools/velmora/binding_report.h"
#include "tools/velmora/devmode_names.h"
#include "tools/velmora/devmode_report.h"
#include "tools/velmora/driver_library.h"
#include "tools/velmora/feature_report.h"
#include "tools/velmora/output_file.h"
#include "tools/velmora/spooler_client.h"
#include "tools/velmora/text_list_report.h"
#include "tools/velmora/ticket_calls.h"
#include "tools/velmora/ticket_provider.h"

namespace velmora {
namespace {

// Carries out a command whose answer is an XML document: prints it in lines, or writes it as it is to the file that the
// command line names. `what` names it for a message.
void GiveDocument(const Request& request, const std::string& what,
                  const std::function<ProviderDocument(HANDLE printer)>& ask) {
    if (request.json) {
        throw UsageError("--json: the answer is an XML document; leave --json out");
    }
    const auto machine = OpenMachine(request);
    NoteOtherDriver(request);
    const OwnedPrinter printer = OpenNamedPrinter(request.printer);
    const ProviderDocument answer = ask(printer.Get());
    TellLeftOpen(request, "the provider", answer.leftOpen);
    if (request.outputFile.empty()) {
        request.output << answer.lines;
    } else if (request.exitCode == kDone) {
        WriteOutputFile(request.outputFile, std::as_bytes(std::span(answer.bytes)), {request.file, request.ticketFile});
        request.output << request.outputFile << ": " << what << ", " << answer.bytes.size() << " bytes\n";
    }
}

}  // namespace

void BindCommand(const Request& request) {
    const auto machine = OpenMachine(request);
    NoteOtherDriver(request);
    const OwnedPrinter printer = OpenNamedPrinter(request.printer);
    const ProviderBinding binding = BindByDriver(printer.Get(), request.printer);
    request.output << (request.json ? FormatJson(ToJson(binding)) : FormatText(ReportBinding(binding)));
    if (!binding.mayUnload) {
        request.errors
            << "velmora: the driver's library doesn't let itself be unloaded after its provider was released\n";
        request.exitCode = kFailed;
    }
    TellLeftOpen(request, "the provider", binding.leftOpen);
}

void ListsCommand(const Request& request) {
    const auto machine = OpenMachine(request);
    const PrinterModel model(request.printer);
    const std::optional<VelmoraDevMode> given = GivenDevMode(request);
    const TextListReport report = ReportTextLists(model, given);
    const bool isGivenTaken = report.source == DevModeSource::kGiven;
    const Table repairs =
        isGivenTaken ? ReportDifferences(*given, report.given->repaired, NamesOfNumbers(&model), request.file, "Used")
                     : Table{"", "differences", {}};
    if (request.json) {
        Json members = ToJson(report);
        members.update(ToJson(std::span(&repairs, 1)));
        request.output << FormatJson(members);
        return;
    }
    request.output << DescribeSource(report, request.file) << "\n\n" << FormatText(ToTables(report));
    if (!repairs.rows.empty()) {
        request.output << "\nThe driver repaired the device mode:\n\n" << FormatText(std::span(&repairs, 1));
    }
}

void TicketCommand(const Request& request) {
    GiveDocument(request, "the print ticket of " + NameDevMode(request), [&](HANDLE printer) {
        const std::optional<VelmoraDevMode> given = GivenDevMode(request);
        if (given) {
            NoteCheck(request, PrinterModel(request.printer), *given);
        }
        return TicketByDriver(printer, request.printer, given ? *given : DefaultByDriver(printer, request.printer));
    });
}

void ValidateCommand(const Request& request) {
    GiveDocument(request, request.ticketFile + " as \"" + request.printer + "\" validates it",
                 [&](HANDLE printer) { return ValidatedByDriver(printer, request.printer, request.ticketFile); });
}

void PrintCapabilitiesCommand(const Request& request) {
    GiveDocument(
        request,
        "the print capabilities of \"" + request.printer + "\"" +
            (request.ticketFile.empty() ? "" : " under " + request.ticketFile),
        [&](HANDLE printer) { return PrintCapabilitiesByDriver(printer, request.printer, request.ticketFile); });
}

void FeaturesCommand(const Request& request) {
    if (request.markdown) {
        request.output << MakeFeaturePage();
    } else {
        Print(request, ReportFeatures());
    }
}

}  // namespace velmora
