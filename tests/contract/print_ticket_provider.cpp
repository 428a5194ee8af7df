#include "tests/contract/print_ticket_provider.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>

#include "tests/contract/transcript.h"

namespace contract {
namespace {

void Check(bool isDone, const char* what) {
    if (!isDone) {
        throw std::runtime_error(std::string("the provider refuses ") + what);
    }
}

}  // namespace

ComReference<IClassFactory> FactoryOf(const InstalledPrinter& printer) {
    void* factory = nullptr;
    EXPECT_EQ(printer.Driver().DllGetClassObject(kProviderClass, IID_IClassFactory, &factory), S_OK);
    return ComReference<IClassFactory>(static_cast<IClassFactory*>(factory));
}

ComReference<IPrintTicketProvider> ProviderOf(const InstalledPrinter& printer) {
    void* provider = nullptr;
    EXPECT_EQ(FactoryOf(printer)->CreateInstance(nullptr, IID_IPrintTicketProvider, &provider), S_OK);
    return ComReference<IPrintTicketProvider>(static_cast<IPrintTicketProvider*>(provider));
}

Binding Bind(IPrintTicketProvider* provider, HANDLE printer, INT version) {
    Binding binding = {};
    INT count = 77;
    BSTR* namespaces = nullptr;
    binding.result = provider->BindPrinter(printer, version, &binding.options, &binding.fields, &count, &namespaces);
    for (INT i = 0; i < count; ++i) {
        binding.namespaces.push_back(Printable(namespaces[i]));
        SysFreeString(namespaces[i]);
    }
    CoTaskMemFree(namespaces);
    return binding;
}

ComReference<IPrintTicketProvider> BoundProviderOf(const InstalledPrinter& printer) {
    auto provider = ProviderOf(printer);
    Check(provider && Bind(provider.Get(), printer.Handle()).result == S_OK, "the printer");
    return provider;
}

ComReference<IXMLDOMDocument2> TicketOf(IPrintTicketProvider* provider, const velmora::VelmoraDevMode& devMode) {
    velmora::VelmoraDevMode input = devMode;
    auto ticket = NewTicket();
    Check(provider->ConvertDevModeToPrintTicket(sizeof(input), &input.publicPart, ticket.Get()) == S_OK,
          "a device mode");
    return ticket;
}

velmora::VelmoraDevMode DevModeOf(IPrintTicketProvider* provider, IXMLDOMDocument2* ticket,
                                  const velmora::VelmoraDevMode& devMode) {
    velmora::VelmoraDevMode converted = devMode;
    ULONG size = 0;
    PDEVMODEW output = nullptr;
    Check(provider->ConvertPrintTicketToDevMode(ticket, sizeof(converted), &converted.publicPart, &size, &output) ==
                  S_OK &&
              size == sizeof(converted),
          "a ticket");
    memcpy(&converted, output, sizeof(converted));
    CoTaskMemFree(output);
    return converted;
}

ComReference<IXMLDOMDocument2> CapabilitiesOf(IPrintTicketProvider* provider, IXMLDOMDocument2* ticket) {
    ComReference<IXMLDOMDocument2> capabilities;
    Check(provider->GetPrintCapabilities(ticket, capabilities.Receive()) == S_OK && capabilities, "capabilities");
    return capabilities;
}

void Validate(IPrintTicketProvider* provider, IXMLDOMDocument2* ticket) {
    Check(provider->ValidatePrintTicket(ticket) == S_PT_NO_CONFLICT, "a ticket's validation");
}

ComReference<IXMLDOMDocument2> NewTicket(const std::string& content) {
    return LoadDocument("<psf:PrintTicket version='1' xmlns:psf='{psf}' xmlns:psk='{psk}'>" + content +
                        "</psf:PrintTicket>");
}

}  // namespace contract
