#include "tools/velmora/commands.h"

#include <span>

#include "tools/velmora/capability_report.h"
#include "tools/velmora/model_report.h"
#include "tools/velmora/printer_report.h"
#include "tools/velmora/settings_report.h"
#include "tools/velmora/spooler_client.h"

namespace velmora {
namespace {

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

}  // namespace

void InstallCommand(const Request& request) {
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

void PrintersCommand(const Request& request) {
    const auto machine = OpenMachine(request);
    PrintOne(request, ReportPrinters(), "this machine has no printers; install one: velmora install MODEL.json");
}

void RemoveCommand(const Request& request) {
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

void CapabilitiesCommand(const Request& request) {
    const auto machine = OpenMachine(request);
    NoteOtherDriver(request);
    Print(request, ReportCapabilities(request.printer));
}

void ModelCommand(const Request& request) {
    const auto machine = OpenMachine(request);
    Print(request, ReportModel(request.printer));
}

void DataCommand(const Request& request) {
    const auto machine = OpenMachine(request);
    const std::vector<Table> tables = ReportPrinterData(request.printer);
    if (tables.front().rows.empty() && !request.json) {
        request.output << "\"" << request.printer << "\" has no printer data\n";
    } else {
        Print(request, tables);
    }
}

void SettingsCommand(const Request& request) {
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

}  // namespace velmora
