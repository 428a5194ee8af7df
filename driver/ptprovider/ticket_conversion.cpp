#include "driver/ptprovider/ticket_conversion.h"

#include "driver/base/format.h"
#include "driver/base/text.h"
#include "driver/ptprovider/feature_reader.h"
#include "driver/ptprovider/feature_table.h"
#include "driver/ptprovider/feature_writer.h"
#include "driver/ptprovider/imageable_size.h"
#include "driver/ptprovider/page_exceptions.h"
#include "driver/ptprovider/postscript_features.h"
#include "driver/ptprovider/print_schema.h"
#include "driver/ptprovider/private_extensions.h"

namespace velmora {
namespace {

// The parameters that say how many copies are printed, in the order in which they count.
constexpr const WCHAR* kCopiesParameters[] = {TEXT("JobCopiesAllDocuments"), TEXT("DocumentCopiesAllPages"),
                                              TEXT("PageCopies")};
constexpr const WCHAR* kJobCopies = kCopiesParameters[0];
constexpr const WCHAR* kPageCopies = kCopiesParameters[2];
constexpr IntegerParameter kCopies = {
    PublicKeyword(kPageCopies), {1, 1, 32767, 1}, TEXT("copies"), 1753, keyword_name::kUnconditional};

// What every document declares on its root; names are written by it from then on.
void DeclareDocumentNamespaces(ConversionContext& context) {
    for (const StandardNamespace& standard : kStandardNamespaces) {
        // The model's own namespace takes the place of the driver's for models.
        if (!TextsEqual(standard.uri, kOemNamespace)) {
            context.document.DeclareOnRoot(standard.uri, standard.prefix);
        }
    }
    const PrinterSnapshot* const printer = context.printer;
    context.document.DeclareOnRoot(printer ? printer->ownNamespace : kOemNamespace,
                                   printer ? printer->ownPrefix : kOemPrefix);
    if (printer && printer->isXpsWriter) {
        context.document.DeclareOnRoot(kXpsWriterNamespace, kXpsWriterPrefix);
    }
    if (printer && !TextsEqual<WCHAR>(printer->ownNamespace, kOemNamespace)) {
        // Some features have names in it whatever the model's own namespace is.
        context.document.DeclareOnRoot(kOemNamespace, kOemPrefix);
    }
    context.document.WriteNamesAsAtRoot();
}

// Whether there is anything to convert.
bool IsReady(const ConversionContext& context, const WorkingDevMode& working) {
    return context.printer && working.DevMode() && context.document.Root();
}

void ReadCopies(FeatureReader& reader, WorkingDevMode& working) {
    for (const WCHAR* parameter : kCopiesParameters) {
        LONG copies = 0;
        if (reader.document.ReadParameterInitInteger(kKeywordsNamespace, parameter, &copies) == S_OK) {
            working.DevMode()->publicPart.dmCopies = static_cast<short>(copies);
            return;
        }
    }
}

bool HasCopies(SchemaDocument& document) {
    for (const WCHAR* parameter : kCopiesParameters) {
        if (document.FindParameterInit(nullptr, kKeywordsNamespace, parameter, nullptr) == S_OK) {
            return true;
        }
    }
    return false;
}

// `working` is null where copies are defined.
void WriteCopies(FeatureWriter& writer, const WorkingDevMode* working) {
    const DEVMODEW* const devMode = working ? &working->DevMode()->publicPart : nullptr;
    if (HasCopies(writer.document) || (devMode && (devMode->dmFields & DM_COPIES) == 0)) {
        return;
    }
    IntegerParameter parameter = kCopies;
    parameter.name.name = writer.MakesTicket() ? kJobCopies : kPageCopies;
    writer.document.AppendBanner(parameter.name.name);
    writer.WriteParameter(parameter, devMode ? devMode->dmCopies : 0);
}

// The language that jobs are written in, which nobody chooses.
void WriteDeviceLanguage(FeatureWriter& writer) {
    constexpr Keyword kName = PublicKeyword(TEXT("JobDeviceLanguage"));
    constexpr Keyword kLanguages[] = {PublicKeyword(TEXT("PCL-XL")), PublicKeyword(TEXT("PCL5e")),
                                      PublicKeyword(TEXT("PostScript")), PrivateKeyword(TEXT("image"))};
    constexpr Keyword kColorPcl5 = PublicKeyword(TEXT("PCL5c"));
    constexpr Keyword kOther = PublicKeyword(TEXT("XPS"));
    if (writer.document.FindFeature(nullptr, kName.uri, kName.name, nullptr) == S_OK) {
        return;
    }
    const DeviceModel& model = writer.Model();
    Keyword language = model.pdlType < ARRAYSIZE(kLanguages) ? kLanguages[model.pdlType] : kOther;
    if (model.pdlType == kPdlPcl5 && !IsMonochrome(model.colorCapability)) {
        language = kColorPcl5;
    }
    const ElementReference feature = writer.BeginFeature(kName, kNoDisplayName);
    const ElementReference option = writer.AddOption(feature, language, kNoDisplayName);
    if (model.modelCode > 0) {
        WCHAR level[16];
        FormatWide(level, ARRAYSIZE(level), TEXT("%d"), model.modelCode);
        writer.AddScoredText(option, PublicKeyword(TEXT("LanguageLevel")), level);
    }
}

void WritePrintRate(FeatureWriter& writer) {
    constexpr Keyword kName = PublicKeyword(TEXT("DevicePrintRate"));
    const DeviceModel& model = writer.Model();
    if (model.pagesPerMinute == 0) {
        return;
    }
    writer.document.AppendBanner(kName.name);
    ElementReference rate;
    if (FAILED(writer.document.AddProperty(kName.uri, kName.name, &rate))) {
        return;
    }
    writer.document.AddValueInteger(rate.Get(), model.pagesPerMinute);
    writer.AddTextProperty(rate, PublicKeyword(property_name::kUnitType), TEXT("ppm"));
}

}  // namespace

void ReadTicket(ConversionContext& context, WorkingDevMode& working) {
    if (!IsReady(context, working)) {
        return;
    }
    FeatureReader reader(context);
    if (!reader.HasModel()) {
        ReadCopies(reader, working);
        return;
    }
    ReadFeatures(reader, working);
    ReadPageExceptions(reader, working);
    ReadCopies(reader, working);
    ReadContrastAndBrightness(reader, working);
    ReadDeviceFeatures(reader, working);
}

void WriteTicket(ConversionContext& context, const WorkingDevMode& working) {
    if (!context.document.Root()) {
        return;
    }
    context.document.AppendBanner(TEXT("Kestranix print ticket"));
    DeclareDocumentNamespaces(context);
    if (!IsReady(context, working)) {
        return;
    }
    FeatureWriter writer(context);
    if (!writer.HasModel()) {
        WriteCopies(writer, &working);
        return;
    }
    WriteDeviceLanguage(writer);
    WriteFeatures(writer, working);
    WritePageExceptions(writer, working);
    WriteCopies(writer, &working);
    WriteDeviceFeatures(writer, &working);
    WritePrivateDataLists(writer, working);
    WriteContrastAndBrightness(writer, &working);
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
    if (!IsReady(context, working)) {
        return;
    }
    FeatureWriter writer(context);
    if (!writer.HasModel()) {
        WriteCopies(writer, nullptr);
        return;
    }
    WritePrintRate(writer);
    WriteDeviceLanguage(writer);
    ListFeatures(writer);
    ListPageExceptions(writer);
    WriteImageableSize(writer, working);
    WriteCopies(writer, nullptr);
    WriteDeviceFeatures(writer, nullptr);
    WriteContrastAndBrightness(writer, nullptr);
}

}  // namespace velmora
