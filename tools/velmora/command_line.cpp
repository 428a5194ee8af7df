#include "tools/velmora/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "platform/host.h"
#include "platform/kernel/drive.h"
#include "platform/kernel/text.h"
#include "tools/velmora/binding_report.h"
#include "tools/velmora/capability_report.h"
#include "tools/velmora/command_error.h"
#include "tools/velmora/devmode_assignment.h"
#include "tools/velmora/devmode_check.h"
#include "tools/velmora/devmode_file.h"
#include "tools/velmora/devmode_names.h"
#include "tools/velmora/devmode_report.h"
#include "tools/velmora/driver_library.h"
#include "tools/velmora/driver_package.h"
#include "tools/velmora/feature_report.h"
#include "tools/velmora/field_report.h"
#include "tools/velmora/job_report.h"
#include "tools/velmora/machine_settings.h"
#include "tools/velmora/model_report.h"
#include "tools/velmora/output_file.h"
#include "tools/velmora/printer_model.h"
#include "tools/velmora/printer_report.h"
#include "tools/velmora/settings_report.h"
#include "tools/velmora/sheet_session.h"
#include "tools/velmora/spooler_client.h"
#include "tools/velmora/table.h"
#include "tools/velmora/text_list_report.h"
#include "tools/velmora/ticket_calls.h"
#include "tools/velmora/ticket_provider.h"
#include "tools/velmora/watermark_report.h"
#include "tools/wm/watermark_program.h"
#include "tools/xpic/diagnostic.h"

namespace velmora {
namespace {

// What a command line says, and where its command writes.
struct Request {
    const std::filesystem::path& programFolder;
    std::ostream& output;
    std::ostream& errors;
    ExitCode& exitCode;  // of a command that isn't simply done

    std::string machineFolder = {};
    MachineSettings settings = {};
    bool json = false;

    std::string model = {};
    std::optional<std::string> name = {};
    PackageExtras extras = {};
    std::string printer = {};
    bool markdown = false;
    std::vector<std::string> assignments = {};
    std::string file = {};
    std::string secondFile = {};
    std::string ticketFile = {};
    std::string outputFile = {};
    std::string jobName = "Test page";
    unsigned sheets = 1;
    bool raw = false;

    std::string page = {};
    std::string scriptFile = {};
    bool isWholeSheet = false;
    bool isApplied = false;
    bool isOk = false;
};

// The machine of the command, set as the command line says.
std::unique_ptr<host::Machine> OpenMachine(const Request& request) {
    const std::filesystem::path folder =
        request.machineFolder.empty() ? DefaultMachineFolder() : std::filesystem::path(request.machineFolder);
    std::unique_ptr<host::Machine> machine;
    try {
        machine = std::make_unique<host::Machine>(folder);
    } catch (const std::exception& error) {
        throw CommandError("the machine in " + folder.string() + " can't be used: " + error.what() +
                           "; name another folder with --machine");
    }
    Apply(request.settings, *machine);
    machine->SetProgram(u"KV62WM.EXE",
                        [](const std::string& commandLine) { RunWatermarkProgram(commandLine.c_str()); });
    return machine;
}

// Says where the printer's driver, which a command is about to call, isn't the one that was built with this program.
void NoteOtherDriver(const Request& request) {
    const OwnedPrinter printer = OpenNamedPrinter(request.printer);
    if (!HasBuiltDriver(printer.Get(), FindBuiltFiles(request.programFolder))) {
        request.errors << "velmora: note: the driver of \"" << request.printer
                       << "\" is of another build; remove the printer and install its model again to have this one\n";
    }
}

void Print(const Request& request, std::span<const Table> tables) {
    request.output << (request.json ? FormatJson(ToJson(tables)) : FormatText(tables));
}

// One table, and what stands in place of an empty one.
void PrintOne(const Request& request, const Table& table, const std::string& whenEmpty) {
    if (table.rows.empty() && !request.json) {
        request.output << whenEmpty << "\n";
    } else {
        Print(request, std::span(&table, 1));
    }
}

// What a driver did when it was told of a new printer, a line each.
std::string DescribeWork(const Installation& done) {
    const auto count = [](size_t number, const std::string& noun) {
        return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
    };
    std::string lines = "  " + count(done.valueCount, "value") + " of printer data written\n";
    if (!done.forms.empty()) {
        lines += "  " + count(done.forms.size(), "form") + " made: " + ListCell(done.forms).text + "\n";
    }
    if (done.appended) {
        lines += "  " + (*done.appended == 0 ? "nothing" : count(static_cast<size_t>(*done.appended), "byte")) +
                 " appended to the printer data file\n";
    }
    if (!done.printProcessor.empty()) {
        lines += "  print processor chosen: " + done.printProcessor + "\n";
    }
    return lines + (done.hasStoredSettings ? "  settings stored\n" : "");
}

void Install(const Request& request) {
    const PackagedModel model = ReadModel(request.model);
    const BuiltFiles files = FindBuiltFiles(request.programFolder);
    const auto machine = OpenMachine(request);
    machine->SetTickCount(UnusedTickCount());
    const Installation done =
        InstallPrinter(*machine, files, model, request.name.value_or(model.modelName), request.extras);
    if (request.json) {
        request.output << FormatJson(
            {{"printer", done.printer},
             {"driver", done.driver},
             {"renewedDriver", done.renewedDriver},
             {"otherPrinters", done.otherPrinters},
             {"valueCount", done.valueCount},
             {"forms", done.forms},
             {"appendedBytes", done.appended ? Json(*done.appended) : Json()},
             {"printProcessor", done.printProcessor.empty() ? Json() : Json(done.printProcessor)},
             {"hasStoredSettings", done.hasStoredSettings}});
        return;
    }
    request.output << "installed printer \"" << done.printer << "\", "
                   << (done.renewedDriver ? "driver renewed: " : "driver ") << done.driver << "\n";
    for (const std::string& other : done.otherPrinters) {
        request.output << "also of this driver: \"" << other << "\"\n";
    }
    request.output << "the driver was told of it:\n" << DescribeWork(done);
}

void Printers(const Request& request) {
    const auto machine = OpenMachine(request);
    PrintOne(request, ReportPrinters(), "this machine has no printers; install one: velmora install MODEL.json");
}

void Remove(const Request& request) {
    const auto machine = OpenMachine(request);
    const Removal removal = RemovePrinter(request.printer);
    if (request.json) {
        request.output << FormatJson(
            {{"printer", request.printer}, {"driverRemoved", removal.driver}, {"settingsRemoved", removal.settings}});
    } else {
        request.output << "removed printer \"" << request.printer << "\""
                       << (removal.settings ? " with its settings" : "")
                       << (removal.driver ? " and its driver" : "; its driver stays") << "\n";
    }
}

// A sentence or, in JSON, what it says; then what differs between device modes.
void PrintDifferences(const Request& request, const std::string& sentence, Json members, const Table& differences) {
    if (request.json) {
        members.update(ToJson(std::span(&differences, 1)));
        request.output << FormatJson(members);
        return;
    }
    request.output << sentence << "\n" << (differences.rows.empty() ? "" : "\n");
    Print(request, std::span(&differences, 1));
}

// The device mode of the file that the command line names; empty where it names none.
std::optional<VelmoraDevMode> GivenDevMode(const Request& request) {
    return request.file.empty() ? std::nullopt : std::optional(ReadDevModeFile(request.file));
}

// The device mode that a command works on, for a message.
std::string NameDevMode(const Request& request) {
    return request.file.empty() ? "the default device mode of \"" + request.printer + "\"" : request.file;
}

// Says where the driver doesn't work on the device mode as it is.
void NoteCheck(const Request& request, const PrinterModel& model, const VelmoraDevMode& devMode) {
    const DevModeCheck check = CheckDevMode(model, devMode);
    if (!check.IsAccepted()) {
        request.errors << "velmora: note: " << DescribeRejection(check, NameDevMode(request))
                       << "\n  a device mode of the printer's own stands in for it\n";
    } else if (check.publicPart.repairs + check.privatePart.repairs > 0) {
        request.errors << "velmora: note: " << NameDevMode(request)
                       << " is repaired first:\n  public part: " << Describe(check.publicPart)
                       << "\n  private part: " << Describe(check.privatePart) << "\n";
    }
}

// What a part of the driver left open fails the command.
void TellLeftOpen(const Request& request, const std::string& who, const std::vector<std::string>& leftOpen) {
    for (const std::string& resource : leftOpen) {
        request.errors << "velmora: " << who << " left open: " << resource << "\n";
        request.exitCode = kFailed;
    }
}

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

void DevMode(const Request& request) {
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

void Diff(const Request& request) {
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

void Convert(const Request& request) {
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

void Check(const Request& request) {
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

void Capabilities(const Request& request) {
    const auto machine = OpenMachine(request);
    NoteOtherDriver(request);
    Print(request, ReportCapabilities(request.printer));
}

void Model(const Request& request) {
    const auto machine = OpenMachine(request);
    Print(request, ReportModel(request.printer));
}

void Data(const Request& request) {
    const auto machine = OpenMachine(request);
    const std::vector<Table> tables = ReportPrinterData(request.printer);
    if (tables.front().rows.empty() && !request.json) {
        request.output << "\"" << request.printer << "\" has no printer data\n";
    } else {
        Print(request, tables);
    }
}

void Settings(const Request& request) {
    const auto machine = OpenMachine(request);
    const SettingsFile file = FindSettingsFile(request.printer);
    const std::string text = request.raw && file.isWritten ? ReadSettingsText(file) : "";
    const std::vector<Table> tables = !request.raw && file.isWritten ? ReportSettings(file) : std::vector<Table>();
    if (request.json) {
        Json members = {{"path", file.path.empty() ? Json() : Json(file.path)}, {"isWritten", file.isWritten}};
        if (request.raw) {
            members["text"] = text;
        } else {
            members.update(ToJson(tables));
        }
        request.output << FormatJson(members);
    } else if (file.path.empty()) {
        request.output << "\"" << request.printer
                       << "\" has no settings file: its data names none (the value \"Settings\")\n";
    } else if (!file.isWritten) {
        request.output << file.path << "\nnot written yet: no settings have been stored for \"" << request.printer
                       << "\"\n";
    } else if (request.raw) {
        request.output << text;
    } else {
        request.output << file.path << "\n\n" << FormatText(tables);
    }
}

void Job(const Request& request) {
    const auto machine = OpenMachine(request);
    NoteOtherDriver(request);
    const PrinterModel model(request.printer);
    const std::optional<VelmoraDevMode> given = GivenDevMode(request);
    std::optional<VelmoraDevMode> devMode = given;
    const PrintedJob job =
        PrintByDriver(model.Printer(), request.printer, request.jobName, request.sheets, devMode ? &*devMode : nullptr);
    const Table repairs = given ? ReportDifferences(*given, *devMode, NamesOfNumbers(&model), request.file, "Used")
                                : Table{"", "differences", {}};
    if (request.json) {
        Json members = {{"printer", request.printer}, {"blocks", ToJson(job, model)}};
        members.update(ToJson(std::span(&repairs, 1)));
        request.output << FormatJson(members);
    } else {
        request.output << FormatJob(job, model);
        if (!repairs.rows.empty()) {
            request.output << "\nThe hooks changed the device mode:\n\n" << FormatText(std::span(&repairs, 1));
        }
    }
    TellLeftOpen(request, "the hooks", job.leftOpen);
}

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

void Watermark(const Request& request) {
    const std::filesystem::path file = FileOnHost(request);
    const WatermarkPicture picture = ReadWatermark(file);
    if (!request.outputFile.empty()) {
        WriteWatermarkPng(picture, request.outputFile, file);
    }
    const Table table = ReportWatermark(picture);
    const std::span tables(&table, 1);
    request.output << (request.json ? FormatJson(ToJson(tables).at(0)) : FormatText(tables));
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

void Sheet(const Request& request) {
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

void Bind(const Request& request) {
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

void Lists(const Request& request) {
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

void Ticket(const Request& request) {
    GiveDocument(request, "the print ticket of " + NameDevMode(request), [&](HANDLE printer) {
        const std::optional<VelmoraDevMode> given = GivenDevMode(request);
        if (given) {
            NoteCheck(request, PrinterModel(request.printer), *given);
        }
        return TicketByDriver(printer, request.printer, given ? *given : DefaultByDriver(printer, request.printer));
    });
}

void Validate(const Request& request) {
    GiveDocument(request, request.ticketFile + " as \"" + request.printer + "\" validates it",
                 [&](HANDLE printer) { return ValidatedByDriver(printer, request.printer, request.ticketFile); });
}

void PrintCapabilities(const Request& request) {
    GiveDocument(
        request,
        "the print capabilities of \"" + request.printer + "\"" +
            (request.ticketFile.empty() ? "" : " under " + request.ticketFile),
        [&](HANDLE printer) { return PrintCapabilitiesByDriver(printer, request.printer, request.ticketFile); });
}

void Fields(const Request& request) {
    if (request.markdown) {
        request.output << MakeFieldPage();
    } else {
        Print(request, ReportFields());
    }
}

void Features(const Request& request) {
    if (request.markdown) {
        request.output << MakeFeaturePage();
    } else {
        Print(request, ReportFeatures());
    }
}

// An option whose text a function reads; a text that it can't read is a wrong command line.
template <class Value>
void AddParsed(CLI::App& app, const std::string& name, std::optional<Value>& target,
               std::optional<Value> (*parse)(const std::string&), const char* typeName, const std::string& expected,
               const std::string& description) {
    app.add_option_function<std::string>(
           name,
           [&target, parse, name, expected](const std::string& text) {
               target = parse(text);
               if (!target) {
                   throw CLI::ValidationError(name, "\"" + text + "\" is not " + expected);
               }
           },
           description)
        ->type_name(typeName)
        ->group("Machine (kept with it until set again)");
}

void AddGlobalOptions(CLI::App& app, Request& request) {
    app.add_option("--machine", request.machineFolder,
                   "Folder of the machine (default: below $XDG_DATA_HOME or ~/.local/share)")
        ->type_name("DIR");
    app.add_flag("--json", request.json, "Print JSON");
    AddParsed<LANGID>(app, "--language", request.settings.language, ParseLanguage, "CODE",
                      "a language: a code such as de or GERM, or an id such as 0x0407",
                      "The user's language: de, GERM or 0x0407");
    AddParsed<bool>(app, "--measurement", request.settings.isMetric, ParseMeasurement, "SYSTEM", "metric or us",
                    "The user's measurement system: metric or us");
    AddParsed<MachineSettings::Version>(app, "--system-version", request.settings.systemVersion, ParseVersion,
                                        "VERSION", "a version such as 10.0", "The system's version: 10.0");
    AddParsed<std::string>(app, "--computer-name", request.settings.computerName, ParseComputerName, "NAME",
                           "a computer name: 1 to 15 letters, digits, \"-\" and \"_\"", "The computer's name");
}

struct Command {
    const char* name;
    const char* description;
    const char* more;  // for its own help
    const char* example;
    void (*run)(const Request& request);
    void (*addArguments)(CLI::App& app, Request& request);
    ExitCode onFailure = kFailed;
};

void AddPrinterArgument(CLI::App& app, Request& request) {
    app.add_option("PRINTER", request.printer, "Name of the printer")->required();
}

void AddModelArguments(CLI::App& app, Request& request) {
    app.add_option("MODEL", request.model, "Model source (.json) or compiled description (.XPI)")->required();
    app.add_option("--name", request.name, "The printer's name (default: the model's)");
    app.add_option("--ini", request.extras.iniFile,
                   "The driver's INI data file: custom sizes and watermarks to begin with")
        ->type_name("FILE");
    app.add_option("--data-file", request.extras.dataFile,
                   "A separate printer data file, which the driver appends the model's patterns and fonts to")
        ->type_name("FILE");
}

void AddOutputOption(CLI::App& app, Request& request, const char* description) {
    app.add_option("-o,--output", request.outputFile, description)->type_name("FILE");
}

constexpr const char* kDevModeOutput = "File to write the device mode to, 4088 bytes";
constexpr const char* kDocumentOutput = "File to write the document to, in UTF-8 and as it is";

void AddDevModeOption(CLI::App& app, Request& request) {
    app.add_option("--devmode", request.file, "File of a device mode (default: the printer's own)")->type_name("FILE");
}

void AddTicketOption(CLI::App& app, Request& request, const char* description) {
    app.add_option("--ticket", request.ticketFile, description)->type_name("FILE");
}

void AddDevModeArguments(CLI::App& app, Request& request) {
    AddPrinterArgument(app, request);
    app.add_option("--set", request.assignments,
                   "Set a field first, to anything it can hold: dmScale=50, \"dmDuplex=long edge\", colorAdjust[2]=5, "
                   "watermarkText=Draft, private[2668]=0x41 (bytes). May be given several times.")
        ->allow_extra_args(false)
        ->type_name("FIELD=VALUE");
    AddDevModeOption(app, request);
    AddTicketOption(app, request, "Print what a print ticket changes of the device mode");
    AddOutputOption(app, request, kDevModeOutput);
}

void AddDiffArguments(CLI::App& app, Request& request) {
    app.add_option("A", request.file, "File of a device mode")->required();
    app.add_option("B", request.secondFile, "The one that it is compared with")->required();
    app.add_option("--printer", request.printer, "Name papers, trays and media by this printer's model");
}

void AddConvertArguments(CLI::App& app, Request& request) {
    AddPrinterArgument(app, request);
    app.add_option("FILE", request.file, "File of a device mode (default: the printer's default device mode)");
    AddOutputOption(app, request, kDevModeOutput);
}

void AddCheckArguments(CLI::App& app, Request& request) {
    AddPrinterArgument(app, request);
    app.add_option("FILE", request.file, "File of a device mode")->required();
}

void AddFieldArguments(CLI::App& app, Request& request) {
    app.add_flag("--markdown", request.markdown, "Print the page docs/device-mode.md");
}

void AddFeatureArguments(CLI::App& app, Request& request) {
    app.add_flag("--markdown", request.markdown, "Print the page docs/tickets.md");
}

void AddListArguments(CLI::App& app, Request& request) {
    AddPrinterArgument(app, request);
    AddDevModeOption(app, request);
}

void AddTicketArguments(CLI::App& app, Request& request) {
    AddListArguments(app, request);
    AddOutputOption(app, request, kDocumentOutput);
}

void AddValidateArguments(CLI::App& app, Request& request) {
    AddPrinterArgument(app, request);
    app.add_option("FILE", request.ticketFile, "File of a print ticket")->required();
    AddOutputOption(app, request, kDocumentOutput);
}

void AddPrintCapabilitiesArguments(CLI::App& app, Request& request) {
    AddPrinterArgument(app, request);
    AddTicketOption(app, request, "File of a print ticket whose settings are selected (default: the printer's own)");
    AddOutputOption(app, request, kDocumentOutput);
}

void AddJobArguments(CLI::App& app, Request& request) {
    AddListArguments(app, request);
    app.add_option("--name", request.jobName, "The job's name (default: Test page)");
    app.add_option("--sheets", request.sheets, "Sheets of the job, 0 to 1000 (default: 1)")
        ->check(CLI::Range(0u, 1000u));
}

void AddSettingsArguments(CLI::App& app, Request& request) {
    AddPrinterArgument(app, request);
    app.add_flag("--raw", request.raw, "Print the file as it is");
}

void AddWatermarkArguments(CLI::App& app, Request& request) {
    app.add_option("FILE", request.file, "File of a rendered watermark (.WM, .CWM), here or on the machine's drive C:")
        ->required();
    AddOutputOption(app, request, "File to draw it to, as PNG, a dot a pixel");
}

void AddSheetArguments(CLI::App& app, Request& request) {
    AddPrinterArgument(app, request);
    app.add_option("--page", request.page,
                   "Page to show first: device, of the device sheet; paper, color, watermark, output, information or "
                   "about, of the document sheet")
        ->type_name("PAGE");
    app.add_option("--set", request.assignments,
                   "Set a control by its id: 11004=\"Paper feed unit\" (text or data of an item, text of a field, 0 or "
                   "1 of a box, position of a slider), or press a button: press=11005. May be given several times.")
        ->allow_extra_args(false)
        ->type_name("CONTROL=VALUE");
    app.add_option("--script", request.scriptFile, "File of steps, one a line, behind what is set")->type_name("FILE");
    AddOutputOption(app, request, "File to draw the page to, as PNG, behind the steps");
    app.add_flag("--sheet", request.isWholeSheet, "Draw the whole sheet");
    app.add_flag("--apply", request.isApplied, "Press Apply in the end");
    app.add_flag("--ok", request.isOk, "Close the sheet by OK; otherwise it is cancelled");
    AddDevModeOption(app, request);
}

void AddNoArguments(CLI::App&, Request&) {}

constexpr Command kCommands[] = {
    {"install", "Install a printer from a model",
     "A source is compiled first. The model's driver is installed with the printer, or renewed for all its printers.",
     "velmora install models/velmora-c3200.json --name \"Third floor\"", Install, AddModelArguments},
    {"printers", "List the machine's printers", "", "velmora printers", Printers, AddNoArguments},
    {"remove", "Remove a printer", "Its driver goes with the last printer of it.", "velmora remove \"Third floor\"",
     Remove, AddPrinterArgument},
    {"devmode", "Print a printer's default device mode, write it to a file, or convert a print ticket to it",
     "Every field, with what its value means. With --output the file is written and only what was set is printed. With "
     "--ticket the device mode, as it was given and set, is converted by the provider, and what that changes is "
     "printed.",
     "velmora devmode \"Velmora C3200\" --set dmOrientation=landscape --set dmScale=50 -o damaged.bin", DevMode,
     AddDevModeArguments},
    {"diff", "Print what differs between two device modes",
     "Fields, and bytes of the public or private part that no field names.\n"
     "Exit codes: 0 the same, 1 they differ, 2 failed.",
     "velmora diff before.bin after.bin --printer \"Velmora C3200\"", Diff, AddDiffArguments, kUsage},
    {"convert", "Print what a printer's driver makes of a device mode",
     "Calls the driver's DrvConvertDevMode as the spooler does. A device mode that the driver rejects (velmora check "
     "says why) gives the printer's default one.",
     "velmora convert \"Velmora C3200\" damaged.bin -o converted.bin", Convert, AddConvertArguments},
    {"check", "Check a device mode as a printer's driver does",
     "Says of the public and of the private part whether it is accepted, with which repairs (the third rejects), and "
     "what they and completions that don't count change. The driver itself doesn't look at the private part once it "
     "has rejected the public one.\n"
     "Exit codes: 0 accepted, repaired or not; 1 rejected; 2 failed.",
     "velmora check \"Velmora C3200\" damaged.bin", Check, AddCheckArguments, kUsage},
    {"capabilities", "Print what a printer can do, as its driver tells applications",
     "The answer to every index of DeviceCapabilities, and the papers, paper sources and media that it offers.",
     "velmora capabilities \"Velmora C3200\" --measurement us", Capabilities, AddPrinterArgument},
    {"model", "Print a printer's model", "Every value and table as the driver reads them, in the user's language.",
     "velmora model \"Velmora C3200\" --language de", Model, AddPrinterArgument},
    {"data", "Print a printer's data",
     "The named values that the driver keeps with the printer, and what the binary ones hold.",
     "velmora data \"Velmora C3200\"", Data, AddPrinterArgument},
    {"settings", "Print the settings that the user has for a printer",
     "The settings file's path and, once something is stored, its custom sizes, watermarks and colour presets.",
     "velmora settings \"Velmora C3200\" --raw", Settings, AddSettingsArguments},
    {"watermark", "Print what a rendered watermark is, and draw it",
     "The driver has the watermarks of its sheet rendered to files, which velmora settings names.",
     "velmora watermark 'C:\\Users\\User\\AppData\\Roaming\\...\\01000000.WM' -o watermark.png", Watermark,
     AddWatermarkArguments},
    {"job", "Print what a printer's driver adds to a job",
     "Calls the driver's job hooks as a rendering side does: the blocks at the start of the job, before each sheet and "
     "at the end, with their bytes, terminators included. A device mode that the driver doesn't accept is repaired, "
     "which is told.",
     "velmora job \"Velmora C3200\" --name Invoice --sheets 3", Job, AddJobArguments},
    {"sheet", "Open a printer's property sheet, use it, draw it, and print what that changes",
     "Goes through the published calls, as an application does. Without anything to do it prints the page's controls. "
     "Steps of a script: page PAGE, set CONTROL VALUE, press CONTROL, controls, picture FILE, sheet-picture FILE, "
     "apply, ok, cancel; \"#\" begins a comment, double quotes hold blanks together. A step acts on the dialog that "
     "is in front.",
     "velmora sheet \"Velmora C3200\" --page device -o page.png", Sheet, AddSheetArguments},
    {"bind", "Print what a printer's print-ticket provider says when it is bound",
     "Loads the driver's library, makes its provider and binds it to the printer as the print system does: the "
     "versions "
     "that it supports, the device mode's fields and the namespaces that its tickets use.",
     "velmora bind \"Velmora C3200\"", Bind, AddPrinterArgument},
    {"lists", "Print the lists of commands that a printer's tickets carry",
     "The job's descriptions, colour-correction commands and job lines for a device mode, and its exceptions. A device "
     "mode that the driver doesn't take, and why, is told; the printer's own then stands in for it.",
     "velmora lists \"Velmora C3200\" --devmode damaged.bin", Lists, AddListArguments},
    {"ticket", "Print a device mode as a print ticket",
     "What the driver's print-ticket provider writes into a new ticket for the printer's default device mode or the "
     "one "
     "given. One that the driver repairs or doesn't take, and why, is told.",
     "velmora ticket \"Velmora C3200\" -o ticket.xml", Ticket, AddTicketArguments},
    {"validate", "Print a print ticket as a printer's driver validates it",
     "What the ticket says stays; what it lacks is added.", "velmora validate \"Velmora C3200\" ticket.xml", Validate,
     AddValidateArguments},
    {"printcaps", "Print a printer's print capabilities",
     "The features, options and parameters that its print tickets may name, in the user's language.",
     "velmora printcaps \"Velmora C3200\" --ticket ticket.xml", PrintCapabilities, AddPrintCapabilitiesArguments},
    {"fields", "Print the table of the device mode's fields", "Place, type, meaning, default and valid values of each.",
     "velmora fields --markdown", Fields, AddFieldArguments},
    {"features", "Print the table of the features that print tickets share with the device mode",
     "Names, options, settings and who has them.", "velmora features --markdown", Features, AddFeatureArguments},
};

// What is said of a word that should be a command.
std::string ExplainUnknownCommand(const std::string& word) {
    std::vector<std::string_view> names;
    for (const Command& command : kCommands) {
        names.emplace_back(command.name);
    }
    const std::string_view nearest = NearestName(word, names);
    return "there is no command \"" + word + "\"" +
           (nearest.empty() ? "" : ", nearest \"" + std::string(nearest) + "\"");
}

std::string ExplainUsageError(const CLI::App* app, const CLI::Error& error) {
    const std::vector<CLI::App*> commands = app->get_subcommands();
    const std::vector<std::string> unknown = app->remaining();
    if (commands.empty() && !unknown.empty() && !unknown[0].starts_with('-')) {
        return "velmora: " + ExplainUnknownCommand(unknown[0]) + "\nTry: velmora --help\n";
    }
    const std::string command = commands.empty() ? "" : " " + commands.front()->get_name();
    return std::string("velmora: ") + error.what() + "\nTry: velmora" + command + " --help\n";
}

}  // namespace

int RunCommandLine(const std::vector<std::string>& arguments, const std::filesystem::path& programFolder,
                   std::ostream& output, std::ostream& errors) {
    ExitCode exitCode = kDone;
    Request request = {programFolder, output, errors, exitCode};
    CLI::App app(
        "The printer driver's workbench: installs printers on a machine of its own and shows what the driver "
        "makes of them.",
        "velmora");
    app.require_subcommand(0, 1);  // a word that names no command is told as such
    app.fallthrough();
    app.failure_message(ExplainUsageError);
    app.footer(
        "Example: velmora install models/velmora-c3200.json && velmora devmode \"Velmora C3200\"\n"
        "Exit codes: 0 done, 1 failed, 2 wrong command line.");
    AddGlobalOptions(app, request);
    const Command* chosen = nullptr;
    for (const Command& command : kCommands) {
        CLI::App* const subcommand = app.add_subcommand(command.name, command.description);
        subcommand->footer(std::string(command.more) + (*command.more != 0 ? "\n" : "") +
                           "Example: " + command.example);
        command.addArguments(*subcommand, request);
        subcommand->callback([&chosen, &command] { chosen = &command; });
    }
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());  // as CLI11 takes them
        app.parse(std::move(reversed));
        if (!chosen) {
            throw CLI::RequiredError("A command");
        }
    } catch (const CLI::ParseError& error) {
        return app.exit(error, output, errors) == 0 ? kDone : kUsage;
    }
    try {
        chosen->run(request);
        output.flush();
        if (!output) {
            throw CommandError("the output can't be written");
        }
        return exitCode;
    } catch (const UsageError& error) {
        errors << "velmora: " << error.what() << "\nTry: velmora " << chosen->name << " --help\n";
        return kUsage;
    } catch (const CommandError& error) {
        errors << error.Details() << "velmora: " << error.what() << "\n";
    } catch (const std::exception& error) {
        errors << "velmora: " << error.what() << "\n";
    }
    return chosen->onFailure;
}

}  // namespace velmora
