#include "driver/ptprovider/provider.h"

#include <objbase.h>
#include <oleauto.h>

#include "driver/ptprovider/class_factory.h"
#include "driver/ptprovider/conversion_context.h"
#include "driver/ptprovider/print_schema.h"
#include "driver/ptprovider/printer_snapshot.h"
#include "driver/ptprovider/ticket_conversion.h"
#include "driver/ptprovider/working_devmode.h"

namespace velmora {
namespace {

constexpr INT kVersion = 1;

// The public fields that print tickets and the device mode share (wingdi.h).
constexpr DWORD kSharedFields = DM_ORIENTATION | DM_PAPERSIZE | DM_PAPERLENGTH | DM_PAPERWIDTH | DM_SCALE | DM_COPIES |
                                DM_DEFAULTSOURCE | DM_PRINTQUALITY | DM_COLOR | DM_DUPLEX | DM_YRESOLUTION |
                                DM_TTOPTION | DM_COLLATE | DM_ICMMETHOD | DM_ICMINTENT | DM_MEDIATYPE;
static_assert(kSharedFields == 0x0380FF1F);

// Makes the array of the namespaces that the printer's documents use, task memory of BSTRs; null without memory.
BSTR* MakeNamespaces(const PrinterSnapshot& printer, INT* count) {
    const WCHAR* const namespaces[] = {kSchemaNamespace,  kInstanceNamespace,   kFrameworkNamespace, kKeywordsNamespace,
                                       kPrivateNamespace, printer.ownNamespace, kXpsWriterNamespace};
    const INT all = ARRAYSIZE(namespaces);
    *count = printer.isXpsWriter ? all : all - 1;
    auto* const texts = static_cast<BSTR*>(CoTaskMemAlloc(static_cast<size_t>(*count) * sizeof(BSTR)));
    for (INT i = 0; texts && i < *count; ++i) {
        texts[i] = SysAllocString(namespaces[i]);
        if (!texts[i]) {
            while (i > 0) {
                SysFreeString(texts[--i]);
            }
            CoTaskMemFree(texts);
            return nullptr;
        }
    }
    return texts;
}

// What a conversion works with: one snapshot for all of it, the document that it begins with (null: none), and the
// device mode, prepared from `size` bytes at `input` (null: from none).
struct Conversion {
    Conversion(ConversionMode mode, HANDLE printer, IXMLDOMDocument2* document, PDEVMODEW input = nullptr,
               size_t size = 0)
        : snapshot(LoadPrinterSnapshot(
              printer, mode == ConversionMode::kCapabilities ? SnapshotLabels::kRead : SnapshotLabels::kLeftOut)),
          context(mode) {
        context.Bind(printer, snapshot.Get());
        if (document) {
            context.document.AttachDocument(document);
        }
        working.Bind(printer, snapshot.Get());
        working.Prepare(input, size);
    }

    OwnedSnapshot snapshot;
    ConversionContext context;
    WorkingDevMode working;
};

}  // namespace

IPTProvider::IPTProvider() {
    CountObject();
}

IPTProvider::~IPTProvider() {
    UncountObject();
}

HRESULT STDMETHODCALLTYPE IPTProvider::GetSupportedVersions(HANDLE, INT** versions, INT* count) {
    if (count) {
        *count = 0;
    }
    if (!versions || !count) {
        return E_INVALIDARG;
    }
    *versions = static_cast<INT*>(CoTaskMemAlloc(sizeof(INT)));
    if (!*versions) {
        return E_OUTOFMEMORY;
    }
    **versions = kVersion;
    *count = 1;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE IPTProvider::BindPrinter(HANDLE hPrinter, INT version, SHIMOPTS* options, DWORD* devModeFlags,
                                                   INT* namespaceCount, BSTR** namespaces) {
    const OwnedSnapshot snapshot = LoadPrinterSnapshot(hPrinter, SnapshotLabels::kLeftOut);
    if (namespaceCount) {
        *namespaceCount = 0;
    }
    if (!hPrinter || !options || !devModeFlags || !namespaceCount || !namespaces) {
        return E_INVALIDARG;
    }
    *namespaces = nullptr;
    if (version != kVersion) {
        return E_VERSION_NOT_SUPPORTED;
    }
    INT count = 0;
    BSTR* const made = snapshot ? MakeNamespaces(*snapshot.Get(), &count) : nullptr;
    if (!made) {
        return E_OUTOFMEMORY;
    }
    printer_ = hPrinter;
    *options = SHIMOPTS_NOSNAPSHOT;
    *devModeFlags = kSharedFields;
    *namespaceCount = count;
    *namespaces = made;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE IPTProvider::QueryDeviceNamespace(BSTR* defaultNamespace) {
    if (!defaultNamespace) {
        return E_INVALIDARG;
    }
    *defaultNamespace = SysAllocString(kOemNamespace);
    return *defaultNamespace ? S_OK : E_OUTOFMEMORY;
}

HRESULT STDMETHODCALLTYPE IPTProvider::ConvertPrintTicketToDevMode(IXMLDOMDocument2* ticket, ULONG inputSize,
                                                                   PDEVMODEW inputDevMode, ULONG* outputSize,
                                                                   PDEVMODEW* outputDevMode) {
    if (!ticket || inputSize == 0 || !inputDevMode || !outputSize || !outputDevMode) {
        return E_INVALIDARG;
    }
    *outputSize = 0;
    *outputDevMode = nullptr;
    Conversion conversion(ConversionMode::kTicket, printer_, ticket, inputDevMode, inputSize);
    ReadTicket(conversion.context, conversion.working);

    VelmoraDevMode* const devMode = conversion.working.Detach();
    if (!devMode) {
        return E_OUTOFMEMORY;
    }
    *outputSize = sizeof(*devMode);
    *outputDevMode = &devMode->publicPart;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE IPTProvider::ConvertDevModeToPrintTicket(ULONG inputSize, PDEVMODEW inputDevMode,
                                                                   IXMLDOMDocument2* ticket) {
    if (inputSize == 0 || !inputDevMode || !ticket) {
        return E_INVALIDARG;
    }
    Conversion conversion(ConversionMode::kTicket, printer_, ticket, inputDevMode, inputSize);
    WriteTicket(conversion.context, conversion.working);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE IPTProvider::GetPrintCapabilities(IXMLDOMDocument2* ticket, IXMLDOMDocument2** capabilities) {
    if (!capabilities) {
        return E_INVALIDARG;
    }
    Conversion conversion(ConversionMode::kCapabilities, printer_, nullptr);
    if (ticket) {
        // The capabilities are those under the settings that the ticket selects.
        ConversionContext selection(ConversionMode::kTicket);
        selection.Bind(printer_, conversion.snapshot.Get());
        selection.document.AttachDocument(ticket);
        ReadTicket(selection, conversion.working);
    }
    if (*capabilities) {
        conversion.context.document.AttachDocument(*capabilities);
    }
    BuildPrintCapabilities(conversion.context, conversion.working);
    if (!*capabilities) {
        *capabilities = conversion.context.document.DetachDocument();
    }
    return *capabilities ? S_OK : E_OUTOFMEMORY;
}

HRESULT STDMETHODCALLTYPE IPTProvider::ValidatePrintTicket(IXMLDOMDocument2* ticket) {
    if (!ticket) {
        return E_INVALIDARG;
    }
    Conversion conversion(ConversionMode::kValidation, printer_, ticket);
    ReadTicket(conversion.context, conversion.working);
    WriteTicket(conversion.context, conversion.working);
    return S_PT_NO_CONFLICT;
}

}  // namespace velmora
