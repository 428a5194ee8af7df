#include "tests/contract/print_ticket_provider.h"

#include <gtest/gtest.h>

namespace contract {

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

WideText TicketText(const std::string& content, const std::string& declarations) {
    const std::string text =
        "<psf:PrintTicket version='1' xmlns:psf='http://schemas.microsoft.com/windows/2003/08/printing/"
        "printschemaframework' xmlns:psk='http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords'" +
        declarations + ">" + content + "</psf:PrintTicket>";
    return WideText(text.begin(), text.end());
}

}  // namespace contract
