// The published interface of a driver's print-ticket provider, version 1, for SDKs that don't declare it.
#pragma once

#include <msxml2.h>
#include <unknwn.h>
#include <windows.h>
#include <wingdi.h>

// {BB5116DB-0A23-4C3A-A6B6-89E5558DFB5D}
inline constexpr IID IID_IPrintTicketProvider = {
    0xbb5116db, 0x0a23, 0x4c3a, {0xa6, 0xb6, 0x89, 0xe5, 0x55, 0x8d, 0xfb, 0x5d}};

// What a provider asks of the print system when it is bound.
enum SHIMOPTS {
    SHIMOPTS_NOSNAPSHOT = 0x1,  // no snapshot of the printer is made for the provider
};

// Results beside COM's own.
inline constexpr HRESULT E_VERSION_NOT_SUPPORTED = static_cast<HRESULT>(0x80040001);
inline constexpr HRESULT S_PT_NO_CONFLICT = static_cast<HRESULT>(0x00040001);

// Memory of arrays and device modes is task memory (CoTaskMemAlloc) and texts are BSTRs; all of it is the caller's.
struct IPrintTicketProvider : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetSupportedVersions(HANDLE hPrinter, INT** ppVersions, INT* cVersions) = 0;
    virtual HRESULT STDMETHODCALLTYPE BindPrinter(HANDLE hPrinter, INT version, SHIMOPTS* pOptions,
                                                  DWORD* pDevModeFlags, INT* cNamespaces, BSTR** ppNamespaces) = 0;
    virtual HRESULT STDMETHODCALLTYPE QueryDeviceNamespace(BSTR* pDefaultNamespace) = 0;
    virtual HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2* pPrintTicket, ULONG cbDevmodeIn,
                                                                  PDEVMODEW pDevmodeIn, ULONG* pcbDevmodeOut,
                                                                  PDEVMODEW* ppDevmodeOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE ConvertDevModeToPrintTicket(ULONG cbDevmode, PDEVMODEW pDevmode,
                                                                  IXMLDOMDocument2* pPrintTicket) = 0;
    // *ppCapabilities: a document to write into, or null for a new one.
    virtual HRESULT STDMETHODCALLTYPE GetPrintCapabilities(IXMLDOMDocument2* pPrintTicket,
                                                           IXMLDOMDocument2** ppCapabilities) = 0;
    virtual HRESULT STDMETHODCALLTYPE ValidatePrintTicket(IXMLDOMDocument2* pBaseTicket) = 0;
};
