#include "driver/ptprovider/ticket_conversion.h"

#include "driver/base/text.h"
#include "driver/ptprovider/print_schema.h"

namespace velmora {
namespace {

constexpr UINT kCopiesString = 1753;
constexpr size_t kDisplayNameCapacity = 128;

// The parameters that say how many copies are printed, in the order in which they count.
constexpr const WCHAR* kCopiesParameters[] = {TEXT("JobCopiesAllDocuments"), TEXT("DocumentCopiesAllPages"),
                                              TEXT("PageCopies")};
constexpr const WCHAR* kJobCopies = kCopiesParameters[0];
constexpr const WCHAR* kPageCopies = kCopiesParameters[2];

// A display name of the language module, its mnemonic's mark taken out; empty where there is none.
void LoadDisplayName(const ConversionContext& context, UINT id, WCHAR (&name)[kDisplayNameCapacity]) {
    name[0] = 0;
    if (!context.Strings()) {
        return;
    }
    LoadStringW(context.Strings(), id, name, static_cast<int>(kDisplayNameCapacity));
    WCHAR* mark = FindText(static_cast<WCHAR*>(name), TEXT("&"));
    for (; mark && *mark != 0; ++mark) {
        *mark = mark[1];
    }
}

// What every document declares on its root.
void DeclareDocumentNamespaces(ConversionContext& context) {
    for (const StandardNamespace& standard : kStandardNamespaces) {
        // The model's own namespace takes the place of the driver's for models.
        if (!TextsEqual(standard.uri, kOemNamespace)) {
            context.document.AddNamespaceAttribute(standard.uri, standard.prefix);
        }
    }
    const PrinterSnapshot* const printer = context.printer;
    context.document.AddNamespaceAttribute(printer ? printer->ownNamespace : kOemNamespace,
                                           printer ? printer->ownPrefix : kOemPrefix);
    if (printer && printer->isXpsWriter) {
        context.document.AddNamespaceAttribute(kXpsWriterNamespace, TEXT("ns0000"));
    }
}

void ReadCopies(ConversionContext& context, WorkingDevMode& working) {
    for (const WCHAR* parameter : kCopiesParameters) {
        LONG copies = 0;
        if (context.document.ReadParameterInitInteger(kKeywordsNamespace, parameter, &copies) == S_OK) {
            working.DevMode()->publicPart.dmCopies = static_cast<short>(copies);
            return;
        }
    }
}

bool HasCopies(ConversionContext& context) {
    for (const WCHAR* parameter : kCopiesParameters) {
        if (context.document.FindParameterInit(nullptr, kKeywordsNamespace, parameter, nullptr) == S_OK) {
            return true;
        }
    }
    return false;
}

void WriteCopies(ConversionContext& context, const WorkingDevMode& working) {
    const DEVMODEW& devMode = working.DevMode()->publicPart;
    if (HasCopies(context) || (devMode.dmFields & DM_COPIES) == 0) {
        return;
    }
    const WCHAR* const parameter = context.mode == ConversionMode::kTicket ? kJobCopies : kPageCopies;
    context.document.AppendBanner(parameter);
    context.document.AddParameterInit(nullptr, kKeywordsNamespace, parameter, static_cast<LONG>(devMode.dmCopies));
}

void DefineCopies(ConversionContext& context) {
    if (HasCopies(context)) {
        return;
    }
    WCHAR name[kDisplayNameCapacity];
    LoadDisplayName(context, kCopiesString, name);
    context.document.AppendBanner(kPageCopies);
    context.document.AddIntegerParameterDef(nullptr, kKeywordsNamespace, kPageCopies,
                                            ParameterRange<LONG>{1, 1, 32767, 1},
                                            {name, nullptr, TEXT("copies"), TEXT("Unconditional")});
}

void WritePrintRate(ConversionContext& context) {
    const DeviceModel* const model = context.printer->model.Get();
    if (!model || model->pagesPerMinute == 0) {
        return;
    }
    SchemaDocument& document = context.document;
    document.AppendBanner(TEXT("DevicePrintRate"));
    ElementReference rate;
    if (FAILED(document.AddProperty(kKeywordsNamespace, TEXT("DevicePrintRate"), &rate))) {
        return;
    }
    document.AddValueInteger(rate.Get(), model->pagesPerMinute);
    ElementReference unit;
    if (SUCCEEDED(document.AddProperty(rate.Get(), kKeywordsNamespace, property_name::kUnitType, &unit))) {
        document.AddValueString(unit.Get(), nullptr, TEXT("ppm"));
    }
}

}  // namespace

void ReadTicket(ConversionContext& context, WorkingDevMode& working) {
    if (!context.printer || !working.DevMode() || !context.document.Root()) {
        return;
    }
    ReadCopies(context, working);
}

void WriteTicket(ConversionContext& context, const WorkingDevMode& working) {
    if (!context.printer || !working.DevMode() || !context.document.Root()) {
        return;
    }
    context.document.AppendBanner(TEXT("Kestranix print ticket"));
    DeclareDocumentNamespaces(context);
    WriteCopies(context, working);
}

void BuildPrintCapabilities(ConversionContext& context, const WorkingDevMode& working) {
    SchemaDocument& document = context.document;
    if (!document.Document()) {
        document.CreateDocument();
    }
    if (!document.Root()) {
        ElementReference root;
        document.AppendElement(document.Document(), kFrameworkNamespace, TEXT("PrintCapabilities"), &root);
        document.SetVersionAttribute(root.Get(), 1);
        document.SetRoot(static_cast<ElementReference&&>(root));
    }
    document.AppendBanner(TEXT("Kestranix print capabilities"));
    DeclareDocumentNamespaces(context);
    if (!context.printer || !working.DevMode()) {
        return;
    }
    WritePrintRate(context);
    DefineCopies(context);
}

}  // namespace velmora
