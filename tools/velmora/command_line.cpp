#include "tools/velmora/command_line.h"

#include <CLI/CLI.hpp>
#include <optional>
#include <string_view>

#include "tools/velmora/commands.h"
#include "tools/velmora/machine_settings.h"
#include "tools/xpic/diagnostic.h"

namespace velmora {
namespace {

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
     "velmora install models/velmora-c3200.json --name \"Third floor\"", InstallCommand, AddModelArguments},
    {"printers", "List the machine's printers", "", "velmora printers", PrintersCommand, AddNoArguments},
    {"remove", "Remove a printer", "Its driver goes with the last printer of it.", "velmora remove \"Third floor\"",
     RemoveCommand, AddPrinterArgument},
    {"devmode", "Print a printer's default device mode, write it to a file, or convert a print ticket to it",
     "Every field, with what its value means. With --output the file is written and only what was set is printed. With "
     "--ticket the device mode, as it was given and set, is converted by the provider, and what that changes is "
     "printed.",
     "velmora devmode \"Velmora C3200\" --set dmOrientation=landscape --set dmScale=50 -o damaged.bin", DevModeCommand,
     AddDevModeArguments},
    {"diff", "Print what differs between two device modes",
     "Fields, and bytes of the public or private part that no field names.\n"
     "Exit codes: 0 the same, 1 they differ, 2 failed.",
     "velmora diff before.bin after.bin --printer \"Velmora C3200\"", DiffCommand, AddDiffArguments, kUsage},
    {"convert", "Print what a printer's driver makes of a device mode",
     "Calls the driver's DrvConvertDevMode as the spooler does. A device mode that the driver rejects (velmora check "
     "says why) gives the printer's default one.",
     "velmora convert \"Velmora C3200\" damaged.bin -o converted.bin", ConvertCommand, AddConvertArguments},
    {"check", "Check a device mode as a printer's driver does",
     "Says of the public and of the private part whether it is accepted, with which repairs (the third rejects), and "
     "what they and completions that don't count change. The driver itself doesn't look at the private part once it "
     "has rejected the public one.\n"
     "Exit codes: 0 accepted, repaired or not; 1 rejected; 2 failed.",
     "velmora check \"Velmora C3200\" damaged.bin", CheckCommand, AddCheckArguments, kUsage},
    {"capabilities", "Print what a printer can do, as its driver tells applications",
     "The answer to every index of DeviceCapabilities, and the papers, paper sources and media that it offers.",
     "velmora capabilities \"Velmora C3200\" --measurement us", CapabilitiesCommand, AddPrinterArgument},
    {"model", "Print a printer's model", "Every value and table as the driver reads them, in the user's language.",
     "velmora model \"Velmora C3200\" --language de", ModelCommand, AddPrinterArgument},
    {"data", "Print a printer's data",
     "The named values that the driver keeps with the printer, and what the binary ones hold.",
     "velmora data \"Velmora C3200\"", DataCommand, AddPrinterArgument},
    {"settings", "Print the settings that the user has for a printer",
     "The settings file's path and, once something is stored, its custom sizes, watermarks and colour presets.",
     "velmora settings \"Velmora C3200\" --raw", SettingsCommand, AddSettingsArguments},
    {"watermark", "Print what a rendered watermark is, and draw it",
     "The driver has the watermarks of its sheet rendered to files, which velmora settings names.",
     "velmora watermark 'C:\\Users\\User\\AppData\\Roaming\\...\\01000000.WM' -o watermark.png", WatermarkCommand,
     AddWatermarkArguments},
    {"job", "Print what a printer's driver adds to a job",
     "Calls the driver's job hooks as a rendering side does: the blocks at the start of the job, before each sheet and "
     "at the end, with their bytes, terminators included. A device mode that the driver doesn't accept is repaired, "
     "which is told.",
     "velmora job \"Velmora C3200\" --name Invoice --sheets 3", JobCommand, AddJobArguments},
    {"sheet", "Open a printer's property sheet, use it, draw it, and print what that changes",
     "Goes through the published calls, as an application does. Without anything to do it prints the page's controls. "
     "Steps of a script: page PAGE, set CONTROL VALUE, press CONTROL, controls, picture FILE, sheet-picture FILE, "
     "apply, ok, cancel; \"#\" begins a comment, double quotes hold blanks together. A step acts on the dialog that "
     "is in front.",
     "velmora sheet \"Velmora C3200\" --page device -o page.png", SheetCommand, AddSheetArguments},
    {"bind", "Print what a printer's print-ticket provider says when it is bound",
     "Loads the driver's library, makes its provider and binds it to the printer as the print system does: the "
     "versions "
     "that it supports, the device mode's fields and the namespaces that its tickets use.",
     "velmora bind \"Velmora C3200\"", BindCommand, AddPrinterArgument},
    {"lists", "Print the lists of commands that a printer's tickets carry",
     "The job's descriptions, colour-correction commands and job lines for a device mode, and its exceptions. A device "
     "mode that the driver doesn't take, and why, is told; the printer's own then stands in for it.",
     "velmora lists \"Velmora C3200\" --devmode damaged.bin", ListsCommand, AddListArguments},
    {"ticket", "Print a device mode as a print ticket",
     "What the driver's print-ticket provider writes into a new ticket for the printer's default device mode or the "
     "one "
     "given. One that the driver repairs or doesn't take, and why, is told.",
     "velmora ticket \"Velmora C3200\" -o ticket.xml", TicketCommand, AddTicketArguments},
    {"validate", "Print a print ticket as a printer's driver validates it",
     "What the ticket says stays; what it lacks is added.", "velmora validate \"Velmora C3200\" ticket.xml",
     ValidateCommand, AddValidateArguments},
    {"printcaps", "Print a printer's print capabilities",
     "The features, options and parameters that its print tickets may name, in the user's language.",
     "velmora printcaps \"Velmora C3200\" --ticket ticket.xml", PrintCapabilitiesCommand,
     AddPrintCapabilitiesArguments},
    {"fields", "Print the table of the device mode's fields", "Place, type, meaning, default and valid values of each.",
     "velmora fields --markdown", FieldsCommand, AddFieldArguments},
    {"features", "Print the table of the features that print tickets share with the device mode",
     "Names, options, settings and who has them.", "velmora features --markdown", FeaturesCommand, AddFeatureArguments},
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
