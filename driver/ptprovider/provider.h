// The print-ticket provider of one printer.
#pragma once

#include "driver/ptprovider/com_object.h"
#include "driver/ptprovider/print_ticket_provider.h"

namespace velmora {

// Unbound until BindPrinter succeeds. Keeps nothing between calls but the printer's handle, which stays the caller's;
// every other method may be called from any thread at any time.
class IPTProvider final : public ComObject<IPTProvider, IPrintTicketProvider, IID_IPrintTicketProvider> {
  public:
    IPTProvider();
    ~IPTProvider();

    HRESULT STDMETHODCALLTYPE GetSupportedVersions(HANDLE hPrinter, INT** versions, INT* count) override;
    HRESULT STDMETHODCALLTYPE BindPrinter(HANDLE hPrinter, INT version, SHIMOPTS* options, DWORD* devModeFlags,
                                          INT* namespaceCount, BSTR** namespaces) override;
    HRESULT STDMETHODCALLTYPE QueryDeviceNamespace(BSTR* defaultNamespace) override;
    HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2* ticket, ULONG inputSize,
                                                          PDEVMODEW inputDevMode, ULONG* outputSize,
                                                          PDEVMODEW* outputDevMode) override;
    HRESULT STDMETHODCALLTYPE ConvertDevModeToPrintTicket(ULONG inputSize, PDEVMODEW inputDevMode,
                                                          IXMLDOMDocument2* ticket) override;
    HRESULT STDMETHODCALLTYPE GetPrintCapabilities(IXMLDOMDocument2* ticket, IXMLDOMDocument2** capabilities) override;
    HRESULT STDMETHODCALLTYPE ValidatePrintTicket(IXMLDOMDocument2* ticket) override;

  private:
    HANDLE printer_ = nullptr;
};

}  // namespace velmora
