#include "tools/velmora/commands.h"

#include <optional>

#include "tools/velmora/devmode_assignment.h"
#include "tools/velmora/devmode_check.h"
#include "tools/velmora/devmode_file.h"
#include "tools/velmora/devmode_names.h"
#include "tools/velmora/devmode_report.h"
#include "tools/velmora/driver_library.h"
#include "tools/velmora/field_report.h"
#include "tools/velmora/ticket_calls.h"

namespace velmora {
namespace {

// The device mode with what the ticket that the command line names says.
void ConvertTicket(const Request& request, const PrinterModel& model, const VelmoraDevMode& devMode) {
    NoteCheck(request, model, devMode);
    const ProviderDevMode answer = DevModeByDriver(model.Printer(), request.printer, request.ticketFile, devMode);
    TellLeftOpen(request, "the provider", answer.leftOpen);
    std::string sentence = NameDevMode(request) + ", converted by " + request.ticketFile;
    Json file;
    if (!request.outputFile.empty() && request.exitCode == kDone) {
        WriteDevModeFile(request.outputFile, answer.devMode, {request.file, request.ticketFile});
        sentence = request.outputFile + ": " + sentence;
        file = request.outputFile;
    }
    const Table differences = ReportDifferences(devMode, answer.devMode, NamesOfNumbers(&model), "Before", "Converted");
    PrintDifferences(request, sentence + (differences.rows.empty() ? ", which changes nothing" : ""),
                     {{"file", file}, {"bytes", sizeof(answer.devMode)}}, differences);
}

}  // namespace

void DevModeCommand(const Request& request) {
    const auto machine = OpenMachine(request);
    NoteOtherDriver(request);
    const PrinterModel model(request.printer);
    const NumberNames names = NamesOfNumbers(&model);
    const std::optional<VelmoraDevMode> given = GivenDevMode(request);
    const VelmoraDevMode unchanged = given ? *given : DefaultByDriver(model.Printer(), request.printer);
    VelmoraDevMode devMode = unchanged;
    std::vector<std::string> notes;
    for (const std::string& assignment : request.assignments) {
        Assign(assignment, &devMode, &notes);
    }
    if (!request.ticketFile.empty()) {
        ConvertTicket(request, model, devMode);
    } else if (request.outputFile.empty()) {
        Print(request, ReportDevMode(devMode, names));
    } else {
        WriteDevModeFile(request.outputFile, devMode, {request.file});
        PrintDifferences(request,
                         request.outputFile + ": " + NameDevMode(request) +
                             (request.assignments.empty() ? "" : ", changed as asked"),
                         {{"file", request.outputFile}, {"bytes", sizeof(devMode)}},
                         ReportDifferences(unchanged, devMode, names, given ? request.file : "Default", "Changed to"));
    }
    for (const std::string& note : notes) {
        request.errors << "velmora: note: " << note << "\n";
    }
}

void DiffCommand(const Request& request) {
    const auto machine = OpenMachine(request);
    std::optional<PrinterModel> model;
    if (!request.printer.empty()) {
        model.emplace(request.printer);
    }
    const Table differences =
        ReportDifferences(ReadDevModeFile(request.file), ReadDevModeFile(request.secondFile),
                          NamesOfNumbers(model ? &*model : nullptr), request.file, request.secondFile);
    PrintOne(request, differences, "the device modes are the same");
    request.exitCode = differences.rows.empty() ? kDone : kNo;
}

void ConvertCommand(const Request& request) {
    const auto machine = OpenMachine(request);
    NoteOtherDriver(request);
    const PrinterModel model(request.printer);
    const std::optional<VelmoraDevMode> input = GivenDevMode(request);
    const Conversion conversion = ConvertByDriver(model.Printer(), request.printer, input ? &*input : nullptr);
    if (conversion.isDone && !request.outputFile.empty()) {
        WriteDevModeFile(request.outputFile, conversion.output, {request.file});
    }
    const VelmoraDevMode& before = input && conversion.isDone ? *input : conversion.output;
    const Table differences =
        ReportDifferences(before, conversion.output, NamesOfNumbers(&model), request.file, "Converted");
    PrintDifferences(
        request,
        std::string("DrvConvertDevMode: ") + (conversion.isDone ? "TRUE" : "FALSE") + ", last " +
            DescribeError(conversion.lastError) +
            (input && conversion.isDone && differences.rows.empty() ? "; the device mode is as it was given" : ""),
        {{"result", conversion.isDone}, {"lastError", conversion.lastError}, {"neededBytes", conversion.neededBytes}},
        differences);
    request.exitCode = conversion.isDone ? kDone : kFailed;
}

void CheckCommand(const Request& request) {
    const auto machine = OpenMachine(request);
    const PrinterModel model(request.printer);
    const VelmoraDevMode devMode = ReadDevModeFile(request.file);
    const DevModeCheck check = CheckDevMode(model, devMode);
    PrintDifferences(request,
                     "public part: " + Describe(check.publicPart) + "\nprivate part: " + Describe(check.privatePart),
                     {{"accepted", check.IsAccepted()},
                      {"public", ToJson(check.publicPart)},
                      {"private", ToJson(check.privatePart)}},
                     ReportDifferences(devMode, check.repaired, NamesOfNumbers(&model), request.file, "Repaired"));
    request.exitCode = check.IsAccepted() ? kDone : kNo;
}

void FieldsCommand(const Request& request) {
    if (request.markdown) {
        request.output << MakeFieldPage();
    } else {
        Print(request, ReportFields());
    }
}

}  // namespace velmora
