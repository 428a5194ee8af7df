// The commands of the workbench. Each does what its request asks for on the request's machine, prints what it found,
// and sets the exit code where it isn't simply done. They throw a CommandError where they fail.
#pragma once

#include "tools/velmora/request.h"

namespace velmora {

// Printers and what they have.
void InstallCommand(const Request& request);
void PrintersCommand(const Request& request);
void RemoveCommand(const Request& request);
void CapabilitiesCommand(const Request& request);
void ModelCommand(const Request& request);
void DataCommand(const Request& request);
void SettingsCommand(const Request& request);

// Device modes.
void DevModeCommand(const Request& request);
void DiffCommand(const Request& request);
void ConvertCommand(const Request& request);
void CheckCommand(const Request& request);
void FieldsCommand(const Request& request);

// Print tickets, and what they carry.
void BindCommand(const Request& request);
void ListsCommand(const Request& request);
void TicketCommand(const Request& request);
void ValidateCommand(const Request& request);
void PrintCapabilitiesCommand(const Request& request);
void FeaturesCommand(const Request& request);

// What the driver does for a job and on the screen.
void JobCommand(const Request& request);
void WatermarkCommand(const Request& request);
void SheetCommand(const Request& request);

}  // namespace velmora
