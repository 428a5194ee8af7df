// The conversions of a printer's print-ticket provider, each as the print system asks for it: the provider is made,
// bound to the printer, asked and let go. All of them throw a CommandError where a call fails, and a UsageError for a
// file that holds no print ticket.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

#include "driver/devmode/private_devmode.h"

namespace velmora {

// An XML document that a provider made or wrote into, in UTF-8.
struct ProviderDocument {
    std::string bytes;                  // as the document is
    std::string lines;                  // the same for people to read
    std::vector<std::string> leftOpen;  // by the provider and its library, a line each
};

struct ProviderDevMode {
    VelmoraDevMode devMode;
    std::vector<std::string> leftOpen;
};

// ConvertDevModeToPrintTicket: the device mode as a new print ticket.
ProviderDocument TicketByDriver(HANDLE printer, const std::string& printerName, const VelmoraDevMode& devMode);

// ConvertPrintTicketToDevMode: the device mode with what the ticket in the file says.
ProviderDevMode DevModeByDriver(HANDLE printer, const std::string& printerName, const std::filesystem::path& ticketFile,
                                const VelmoraDevMode& devMode);

// ValidatePrintTicket: the ticket in the file, completed.
ProviderDocument ValidatedByDriver(HANDLE printer, const std::string& printerName,
                                   const std::filesystem::path& ticketFile);

// GetPrintCapabilities, under the settings of the ticket in the file; an empty name: under the printer's own.
ProviderDocument PrintCapabilitiesByDriver(HANDLE printer, const std::string& printerName,
                                           const std::filesystem::path& ticketFile);

}  // namespace velmora
