#include "tools/velmora/request.h"

#include <algorithm>

#include "tools/velmora/devmode_check.h"
#include "tools/velmora/devmode_file.h"
#include "tools/velmora/spooler_client.h"
#include "tools/wm/watermark_program.h"

namespace velmora {

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

}  // namespace velmora
