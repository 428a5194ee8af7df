#include "tools/velmora/commands.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <span>

#include "platform/kernel/drive.h"
#include "platform/kernel/text.h"
#include "tools/velmora/devmode_names.h"
#include "tools/velmora/devmode_report.h"
#include "tools/velmora/driver_library.h"
#include "tools/velmora/printer_report.h"
#include "tools/velmora/sheet_session.h"
#include "tools/velmora/spooler_client.h"
#include "tools/velmora/watermark_report.h"

namespace velmora {
namespace {

// Where the file that the command line names lies for this host: a path of drive C: is the machine's.
std::filesystem::path FileOnHost(const Request& request) {
    if (request.file.size() < 2 || request.file[1] != ':') {
        return request.file;
    }
    const auto machine = OpenMachine(request);
    const auto path = host::HostPath(host::ToWide(request.file));
    if (!path) {
        throw CommandError(request.file + " isn't on the machine's drive");
    }
    return *path;
}

// The steps that the options of a sheet stand for, in the order in which a user takes them. Without any, the controls
// of the page are reported.
std::vector<SheetStep> StepsOf(const Request& request) {
    std::vector<SheetStep> steps;
    if (!request.page.empty()) {
        steps.push_back({SheetVerb::kPage, 0, request.page, "--page"});
    }
    const size_t chosen = steps.size();
    for (const std::string& assignment : request.assignments) {
        steps.push_back(ParseAssignmentStep(assignment));
    }
    if (!request.scriptFile.empty()) {
        std::ranges::copy(ReadSheetScript(request.scriptFile), std::back_inserter(steps));
    }
    if (!request.outputFile.empty()) {
        steps.push_back(
            {request.isWholeSheet ? SheetVerb::kSheetPicture : SheetVerb::kPicture, 0, request.outputFile, "--output"});
    }
    if (request.isApplied) {
        steps.push_back({SheetVerb::kApply, 0, "", "--apply"});
    }
    if (request.isOk) {
        steps.push_back({SheetVerb::kOk, 0, "", "--ok"});
    }
    if (steps.size() == chosen) {
        steps.push_back({SheetVerb::kControls, 0, "", "--page"});
    }
    return steps;
}

}  // namespace

void WatermarkCommand(const Request& request) {
    const std::filesystem::path file = FileOnHost(request);
    const WatermarkPicture picture = ReadWatermark(file);
    if (!request.outputFile.empty()) {
        WriteWatermarkPng(picture, request.outputFile, file);
    }
    const Table table = ReportWatermark(picture);
    const std::span tables(&table, 1);
    request.output << (request.json ? FormatJson(ToJson(tables).at(0)) : FormatText(tables));
}

void SheetCommand(const Request& request) {
    const std::vector<SheetStep> steps = StepsOf(request);
    const auto machine = OpenMachine(request);
    NoteOtherDriver(request);
    const OwnedPrinter printer = OpenNamedPrinter(request.printer);
    const std::optional<VelmoraDevMode> given = GivenDevMode(request);
    const VelmoraDevMode before = given ? *given : DefaultByDriver(printer.Get(), request.printer);
    const std::vector<PrinterValue> dataBefore = ListPrinterData(printer.Get());
    const SheetSession session = RunSheet(*machine, printer.Get(), request.printer, steps, before);
    TellLeftOpen(request, "the sheet", session.leftOpen);

    constexpr struct {
        const char* text;
        const char* json;
    } kEnds[] = {{"cancelled", "cancel"}, {"cancelled after something was applied", "apply"}, {"closed by OK", "ok"}};
    const auto& end = kEnds[static_cast<size_t>(session.end)];
    const std::optional<PrinterModel> model = ModelOf(request.printer);
    Table changes[] = {
        ReportDifferences(before, session.devMode, NamesOfNumbers(model ? &*model : nullptr), "Before", "After"),
        ReportDataDifferences(request.printer, dataBefore, ListPrinterData(printer.Get()))};
    changes[0].title = "Device mode";
    if (request.json) {
        Json members = {{"printer", request.printer},
                        {"sheet", session.isDeviceSheet ? "device" : "document"},
                        {"end", end.json},
                        {"pictures", session.pictures},
                        {"dialogs", Json::array()}};
        for (const Table& controls : session.controls) {
            Json dialog = {{"title", controls.title}};
            dialog.update(ToJson(std::span(&controls, 1)));
            members["dialogs"].push_back(std::move(dialog));
        }
        members.update(ToJson(changes));
        request.output << FormatJson(members);
        return;
    }
    std::vector<Table> tables = session.controls;
    std::ranges::copy(changes, std::back_inserter(tables));
    for (const std::string& picture : session.pictures) {
        request.output << picture << "\n";
    }
    request.output << "the " << (session.isDeviceSheet ? "device" : "document") << " sheet of \"" << request.printer
                   << "\" was " << end.text << "\n";
    const bool isShown = std::ranges::any_of(tables, [](const Table& table) { return !table.rows.empty(); });
    request.output << (isShown ? "\n" : "") << FormatText(tables);
}

}  // namespace velmora
