// What a command line asks of a command, and what commands share: the machine, their output, their notes.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <vector>

#include "driver/devmode/private_devmode.h"
#include "platform/host.h"
#include "tools/velmora/command_error.h"
#include "tools/velmora/driver_package.h"
#include "tools/velmora/machine_settings.h"
#include "tools/velmora/printer_model.h"
#include "tools/velmora/table.h"

namespace velmora {

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
std::unique_ptr<host::Machine> OpenMachine(const Request& request);

// Says where the printer's driver, which a command is about to call, isn't the one that was built with this program.
void NoteOtherDriver(const Request& request);

void Print(const Request& request, std::span<const Table> tables);

// One table, and what stands in place of an empty one.
void PrintOne(const Request& request, const Table& table, const std::string& whenEmpty);

// A sentence or, in JSON, what it says; then what differs between device modes.
void PrintDifferences(const Request& request, const std::string& sentence, Json members, const Table& differences);

// The device mode of the file that the command line names; empty where it names none.
std::optional<VelmoraDevMode> GivenDevMode(const Request& request);

// The device mode that a command works on, for a message.
std::string NameDevMode(const Request& request);

// Says where the driver doesn't work on the device mode as it is.
void NoteCheck(const Request& request, const PrinterModel& model, const VelmoraDevMode& devMode);

// What a part of the driver left open fails the command.
void TellLeftOpen(const Request& request, const std::string& who, const std::vector<std::string>& leftOpen);

}  // namespace velmora
