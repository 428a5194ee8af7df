// The driver's print-ticket provider, and print tickets for it.
#pragma once

#include "driver/ptprovider/print_ticket_provider.h"

#include <string>

#include "tests/contract/dom_document.h"
#include "tests/contract/package.h"

namespace contract {

inline constexpr CLSID kProviderClass = {0x46AC151B, 0x8490, 0x4531, {0x96, 0xCC, 0x55, 0xBF, 0x2B, 0xF1, 0x9E, 0x11}};

// The class factory of a printer's driver, and a provider of its making that isn't bound yet. A test failure and none
// where the driver gives none.
ComReference<IClassFactory> FactoryOf(const InstalledPrinter& printer);
ComReference<IPrintTicketProvider> ProviderOf(const InstalledPrinter& printer);

// A ticket that holds `content`; `declarations` are attributes of its root, each after a blank.
WideText TicketText(const std::string& content, const std::string& declarations = {});

}  // namespace contract
