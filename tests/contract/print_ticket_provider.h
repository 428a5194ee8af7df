// The driver's print-ticket provider, and print tickets for it.
#pragma once

#include "driver/ptprovider/print_ticket_provider.h"

#include <string>
#include <vector>

#include "driver/devmode/private_devmode.h"
#include "tests/contract/dom_document.h"
#include "tests/contract/package.h"

namespace contract {

inline constexpr CLSID kProviderClass = {0x46AC151B, 0x8490, 0x4531, {0x96, 0xCC, 0x55, 0xBF, 0x2B, 0xF1, 0x9E, 0x11}};

// The class factory of a printer's driver, and a provider of its making that isn't bound yet. A test failure and none
// where the driver gives none.
ComReference<IClassFactory> FactoryOf(const InstalledPrinter& printer);
ComReference<IPrintTicketProvider> ProviderOf(const InstalledPrinter& printer);

// What binding gives; the namespaces are freed.
struct Binding {
    HRESULT result;
    SHIMOPTS options = {};
    DWORD fields = 0;
    std::vector<std::string> namespaces;
};
Binding Bind(IPrintTicketProvider* provider, HANDLE printer, INT version = 1);

// A provider that is bound to the printer. Throws std::runtime_error where there is none.
ComReference<IPrintTicketProvider> BoundProviderOf(const InstalledPrinter& printer);

// What a bound provider makes of a device mode, of a ticket with a device mode for what it doesn't say, and of the
// printer under a ticket (null: none). Throw std::runtime_error where it refuses.
ComReference<IXMLDOMDocument2> TicketOf(IPrintTicketProvider* provider, const velmora::VelmoraDevMode& devMode);
velmora::VelmoraDevMode DevModeOf(IPrintTicketProvider* provider, IXMLDOMDocument2* ticket,
                                  const velmora::VelmoraDevMode& devMode);
ComReference<IXMLDOMDocument2> CapabilitiesOf(IPrintTicketProvider* provider, IXMLDOMDocument2* ticket);
// Adds to a ticket what it lacks.
void Validate(IPrintTicketProvider* provider, IXMLDOMDocument2* ticket);

// A ticket that holds `content`, where psf and psk are bound.
ComReference<IXMLDOMDocument2> NewTicket(const std::string& content = {});

}  // namespace contract
