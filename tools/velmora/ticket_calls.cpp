#include "tools/velmora/ticket_calls.h"

#include <objbase.h>

#include <cstring>
#include <functional>
#include <memory>

#include "platform/xml/xml_files.h"
#include "tools/velmora/command_error.h"
#include "tools/velmora/ticket_document.h"
#include "tools/velmora/ticket_provider.h"

namespace velmora {
namespace {

// Has a provider, bound to the printer, make a document or write into one.
ProviderDocument AskForDocument(HANDLE printer, const std::string& printerName,
                                const std::function<XmlDocument(TicketProvider& provider)>& ask) {
    ProviderDocument answer;
    answer.leftOpen = AskProvider(printer, printerName, [&](TicketProvider& provider) {
        BindProvider(provider, printer, printerName);
        const XmlDocument document = ask(provider);
        answer.bytes = host::SaveXml(document.Get(), false);
        answer.lines = host::SaveXml(document.Get(), true);
    });
    return answer;
}

}  // namespace

ProviderDocument TicketByDriver(HANDLE printer, const std::string& printerName, const VelmoraDevMode& devMode) {
    return AskForDocument(printer, printerName, [&](TicketProvider& provider) {
        XmlDocument ticket = NewTicket();
        VelmoraDevMode input = devMode;  // the driver may repair it in place
        Demand("ConvertDevModeToPrintTicket",
               provider->ConvertDevModeToPrintTicket(sizeof(input), &input.publicPart, ticket.Get()));
        return ticket;
    });
}

ProviderDevMode DevModeByDriver(HANDLE printer, const std::string& printerName, const std::filesystem::path& ticketFile,
                                const VelmoraDevMode& devMode) {
    ProviderDevMode answer = {};
    answer.leftOpen = AskProvider(printer, printerName, [&](TicketProvider& provider) {
        BindProvider(provider, printer, printerName);
        const XmlDocument ticket = ReadTicketFile(ticketFile);
        VelmoraDevMode input = devMode;  // the driver may repair it in place
        ULONG size = 0;
        DEVMODEW* output = nullptr;
        Demand("ConvertPrintTicketToDevMode",
               provider->ConvertPrintTicketToDevMode(ticket.Get(), sizeof(input), &input.publicPart, &size, &output));
        const std::unique_ptr<DEVMODEW, decltype(&CoTaskMemFree)> owner(output, CoTaskMemFree);
        if (!output || size != sizeof(answer.devMode)) {
            throw CommandError("ConvertPrintTicketToDevMode gave a device mode of " + std::to_string(size) +
                               " bytes; this workbench knows those of " + std::to_string(sizeof(answer.devMode)));
        }
        memcpy(&answer.devMode, output, sizeof(answer.devMode));
    });
    return answer;
}

ProviderDocument ValidatedByDriver(HANDLE printer, const std::string& printerName,
                                   const std::filesystem::path& ticketFile) {
    return AskForDocument(printer, printerName, [&](TicketProvider& provider) {
        XmlDocument ticket = ReadTicketFile(ticketFile);
        Demand("ValidatePrintTicket", provider->ValidatePrintTicket(ticket.Get()));
        return ticket;
    });
}

ProviderDocument PrintCapabilitiesByDriver(HANDLE printer, const std::string& printerName,
                                           const std::filesystem::path& ticketFile) {
    return AskForDocument(printer, printerName, [&](TicketProvider& provider) {
        const XmlDocument ticket = ticketFile.empty() ? XmlDocument() : ReadTicketFile(ticketFile);
        XmlDocument capabilities;
        Demand("GetPrintCapabilities", provider->GetPrintCapabilities(ticket.Get(), capabilities.Receive()));
        return capabilities;
    });
}

}  // namespace velmora
