#include "tests/print_schema/print_schema_tables.h"

#include <algorithm>
#include <iterator>

#include "driver/ptprovider/print_schema.h"

namespace print_schema {
namespace {

using velmora::kFrameworkNamespace;
using velmora::kKeywordsNamespace;
using velmora::kOemNamespace;
using velmora::kPrivateNamespace;
using velmora::kSchemaNamespace;

constexpr ValueTypeName kValueTypeNames[] = {
    {ValueType::kString, TEXT("string")}, {ValueType::kInteger, TEXT("integer")}, {ValueType::kQName, TEXT("QName")}};

constexpr ElementRow kElementRows[] = {
    {TEXT("PrintTicket"), TEXT("Feature Property ParameterInit"), TEXT("version"), false},
    {TEXT("PrintCapabilities"), TEXT("Feature Property ParameterDef"), TEXT("version"), false},
    {TEXT("Feature"), TEXT("Property Option Feature"), TEXT("name"), true},
    {TEXT("Option"), TEXT("Property ScoredProperty"), TEXT("name constrained"), false},
    {TEXT("Property"), TEXT("Property Value"), TEXT("name"), true},
    {TEXT("ScoredProperty"), TEXT("Property ScoredProperty Value ParameterRef"), TEXT("name"), true},
    {TEXT("ParameterDef"), TEXT("Property"), TEXT("name"), true},
    {TEXT("ParameterInit"), TEXT("Value"), TEXT("name"), true},
    {TEXT("ParameterRef"), TEXT(""), TEXT("name"), true},
    {TEXT("Value"), TEXT(""), TEXT(""), false},
};

constexpr const WCHAR* kDefinition = TEXT("ParameterDef");
constexpr const WCHAR* kImageable = TEXT("PageImageableSize");
constexpr const WCHAR* kArea = TEXT("ImageableArea");

constexpr PropertyRow kPropertyRows[] = {
    {kFrameworkNamespace, TEXT("SelectionType"), TEXT("Feature"), true, ValueType::kQName, kNoLeast, ValueType::kNone,
     kKeywordsNamespace, TEXT("PickOne")},
    {kKeywordsNamespace, TEXT("DisplayName"), TEXT("Feature Option ParameterDef"), false, ValueType::kString},

    {kFrameworkNamespace, TEXT("DataType"), kDefinition, true, ValueType::kQName, kNoLeast, ValueType::kNone,
     kSchemaNamespace, TEXT("string integer")},
    {kFrameworkNamespace, TEXT("DefaultValue"), kDefinition, true, ValueType::kNone},
    {kFrameworkNamespace, TEXT("MinValue"), kDefinition, true, ValueType::kInteger, kNoLeast, ValueType::kInteger},
    {kFrameworkNamespace, TEXT("MaxValue"), kDefinition, true, ValueType::kInteger, kNoLeast, ValueType::kInteger},
    {kFrameworkNamespace, TEXT("Multiple"), kDefinition, true, ValueType::kInteger, 1, ValueType::kInteger},
    {kFrameworkNamespace, TEXT("MinLength"), kDefinition, false, ValueType::kInteger, 0, ValueType::kString},
    {kFrameworkNamespace, TEXT("MaxLength"), kDefinition, false, ValueType::kInteger, 1, ValueType::kString},
    {kFrameworkNamespace, TEXT("UnitType"), kDefinition, true, ValueType::kString},
    {kFrameworkNamespace, TEXT("Mandatory"), kDefinition, true, ValueType::kQName, kNoLeast, ValueType::kNone,
     kKeywordsNamespace, TEXT("Conditional Unconditional")},

    {kKeywordsNamespace, TEXT("DevicePrintRate"), TEXT("PrintCapabilities"), false, ValueType::kInteger, 1},
    {kKeywordsNamespace, TEXT("UnitType"), TEXT("DevicePrintRate"), true, ValueType::kString},
    {kKeywordsNamespace, kImageable, TEXT("PrintCapabilities"), false, ValueType::kNone},
    {kKeywordsNamespace, TEXT("ImageableSizeWidth"), kImageable, true, ValueType::kInteger, 1},
    {kKeywordsNamespace, TEXT("ImageableSizeHeight"), kImageable, true, ValueType::kInteger, 1},
    {kKeywordsNamespace, kArea, kImageable, true, ValueType::kNone},
    {kKeywordsNamespace, TEXT("OriginWidth"), kArea, true, ValueType::kInteger, 0},
    {kKeywordsNamespace, TEXT("OriginHeight"), kArea, true, ValueType::kInteger, 0},
    {kKeywordsNamespace, TEXT("ExtentWidth"), kArea, true, ValueType::kInteger, 1},
    {kKeywordsNamespace, TEXT("ExtentHeight"), kArea, true, ValueType::kInteger, 1},
};

constexpr const WCHAR* kInputBins = TEXT("AutoSelect AutoSheetFeeder Cassette Manual Tractor");
constexpr const WCHAR* kDuplexOptions = TEXT("OneSided TwoSidedLongEdge TwoSidedShortEdge");
constexpr const WCHAR* kTwoSided = TEXT("TwoSidedLongEdge TwoSidedShortEdge");
constexpr const WCHAR* kBindings = TEXT("None Booklet BindLeft BindTop BindRight BindBottom");
constexpr const WCHAR* kBound = TEXT("Booklet BindLeft BindTop BindRight BindBottom");

constexpr FeatureRow kFeatureRows[] = {
    {TEXT("JobDeviceLanguage"), nullptr, TEXT("PCL-XL PCL5c PCL5e PostScript XPS")},
    {TEXT("PageMediaSize"), nullptr,
     TEXT(
         "CustomMediaSize "
         "ISOA0 ISOA1 ISOA2 ISOA3 ISOA3Extra ISOA3Rotated ISOA4 ISOA4Extra ISOA4Rotated ISOA5 ISOA5Extra "
         "ISOA5Rotated ISOA6 ISOA6Rotated ISOA7 ISOA8 ISOA9 ISOA10 ISOB0 ISOB1 ISOB2 ISOB3 ISOB4 ISOB4Envelope "
         "ISOB5Envelope ISOB5Extra ISOB7 ISOB8 ISOB9 ISOB10 ISOC0 ISOC1 ISOC2 ISOC3 ISOC3Envelope ISOC4 "
         "ISOC4Envelope ISOC5 ISOC5Envelope ISOC6 ISOC6C5Envelope ISOC6Envelope ISOC7 ISOC8 ISOC9 ISOC10 ISODLEnvelope "
         "ISODLEnvelopeRotated ISOSRA3 "
         "JISB0 JISB1 JISB2 JISB3 JISB4 JISB4Rotated JISB5 JISB5Rotated JISB6 JISB6Rotated JISB7 JISB8 JISB9 JISB10 "
         "Japan2LPhoto JapanChou3Envelope JapanChou3EnvelopeRotated JapanChou4Envelope JapanChou4EnvelopeRotated "
         "JapanDoubleHagakiPostcard JapanDoubleHagakiPostcardRotated JapanHagakiPostcard JapanHagakiPostcardRotated "
         "JapanKaku2Envelope JapanKaku2EnvelopeRotated JapanKaku3Envelope JapanKaku3EnvelopeRotated JapanLPhoto "
         "JapanQuadrupleHagakiPostcard JapanYou1Envelope JapanYou2Envelope JapanYou3Envelope JapanYou4Envelope "
         "JapanYou4EnvelopeRotated JapanYou6Envelope JapanYou6EnvelopeRotated "
         "NorthAmerica4x6 NorthAmerica4x8 NorthAmerica5x7 NorthAmerica8x10 NorthAmerica9x11 NorthAmerica10x11 "
         "NorthAmerica10x12 NorthAmerica10x14 NorthAmerica11x17 NorthAmerica14x17 "
         "NorthAmericaArchitectureASheet NorthAmericaArchitectureBSheet NorthAmericaArchitectureCSheet "
         "NorthAmericaArchitectureDSheet NorthAmericaArchitectureESheet NorthAmericaCSheet NorthAmericaDSheet "
         "NorthAmericaESheet NorthAmericaExecutive NorthAmericaGermanLegalFanfold NorthAmericaGermanStandardFanfold "
         "NorthAmericaLegal NorthAmericaLegalExtra NorthAmericaLetter NorthAmericaLetterExtra "
         "NorthAmericaLetterPlus NorthAmericaLetterRotated NorthAmericaMonarchEnvelope NorthAmericaNote "
         "NorthAmericaNumber9Envelope NorthAmericaNumber10Envelope NorthAmericaNumber10EnvelopeRotated "
         "NorthAmericaNumber11Envelope NorthAmericaNumber12Envelope NorthAmericaNumber14Envelope "
         "NorthAmericaPersonalEnvelope NorthAmericaQuarto NorthAmericaStatement NorthAmericaSuperA "
         "NorthAmericaSuperB NorthAmericaTabloid NorthAmericaTabloidExtra "
         "OtherMetricA3Plus OtherMetricA4Plus OtherMetricFolio OtherMetricInviteEnvelope OtherMetricItalianEnvelope "
         "PRC1Envelope PRC1EnvelopeRotated PRC2Envelope PRC2EnvelopeRotated PRC3Envelope PRC3EnvelopeRotated "
         "PRC4Envelope PRC4EnvelopeRotated PRC5Envelope PRC5EnvelopeRotated PRC6Envelope PRC6EnvelopeRotated "
         "PRC7Envelope PRC7EnvelopeRotated PRC8Envelope PRC8EnvelopeRotated PRC9Envelope PRC9EnvelopeRotated "
         "PRC10Envelope PRC10EnvelopeRotated PRC16K PRC16KRotated PRC32K PRC32KBig PRC32KRotated "
         "Roll04Inch Roll06Inch Roll08Inch Roll12Inch Roll15Inch Roll18Inch Roll22Inch Roll24Inch Roll30Inch "
         "Roll36Inch Roll54Inch")},
    {TEXT("PageMediaType"), nullptr,
     TEXT("Archival AutoSelect BackPrintFilm Bond CardStock Continuous EnvelopePlain EnvelopeWindow Fabric "
          "HighResolution Label MultiLayerForm MultiPartForm None Photographic PhotographicFilm PhotographicGlossy "
          "PhotographicHighGloss PhotographicMatte PhotographicSatin PhotographicSemiGloss Plain Screen ScreenPaged "
          "Stationery TShirtTransfer TabStockFull TabStockPreCut Transparency Unknown")},
    {TEXT("PageMediaColor"), nullptr,
     TEXT("Black Blue Brown Buff Custom Gold Goldenrod Gray Green Ivory NoColor Orange Pink Red Silver Turquoise "
          "Violet White Yellow")},
    {TEXT("PageInputBin"), nullptr, kInputBins},
    {TEXT("DocumentInputBin"), nullptr, kInputBins},
    {TEXT("JobInputBin"), nullptr, kInputBins},
    {TEXT("PageResolution"), nullptr, TEXT("")},
    {TEXT("DocumentDuplex"), nullptr, kDuplexOptions},
    {TEXT("JobDuplexAllDocumentsContiguously"), nullptr, kDuplexOptions},
    {TEXT("PageOutputColor"), nullptr, TEXT("Color Grayscale Monochrome")},
    {TEXT("JobPageOrder"), nullptr, TEXT("Standard Reverse")},
    {TEXT("PageOrientation"), nullptr, TEXT("Portrait Landscape ReversePortrait ReverseLandscape")},
    {TEXT("DocumentCollate"), nullptr, TEXT("Collated Uncollated")},
    {TEXT("JobCollateAllDocuments"), nullptr, TEXT("Collated Uncollated")},
    {TEXT("DocumentNUp"), nullptr, TEXT("")},
    {TEXT("JobNUpDocumentsContiguously"), nullptr, TEXT("")},
    {TEXT("PresentationDirection"), TEXT("DocumentNUp"),
     TEXT("RightBottom BottomRight LeftBottom BottomLeft RightTop TopRight LeftTop TopLeft")},
    {TEXT("PresentationDirection"), TEXT("JobNUpDocumentsContiguously"),
     TEXT("RightBottom BottomRight LeftBottom BottomLeft RightTop TopRight LeftTop TopLeft")},
    {TEXT("PagePoster"), nullptr, TEXT("")},
    {TEXT("PageWatermark"), nullptr, TEXT("Text")},
    {TEXT("Layering"), TEXT("PageWatermark"), TEXT("Overlay Underlay")},
    {TEXT("PageDeviceFontSubstitution"), nullptr, TEXT("On Off")},
    {TEXT("PageScaling"), nullptr, TEXT("None CustomSquare FitApplicationMediaSizeToPageMediaSize")},
    {TEXT("ScaleOffsetAlignment"), TEXT("PageScaling"), TEXT("Center TopLeft")},
    {TEXT("DocumentBinding"), nullptr, kBindings},
    {TEXT("JobBindAllDocuments"), nullptr, kBindings},
    {TEXT("PageICMRenderingIntent"), nullptr, TEXT("AbsoluteColorimetric BusinessGraphics Photo RelativeColorimetric")},
    {TEXT("PageTrueTypeFontMode"), nullptr, TEXT("Automatic DownloadAsOutlineFont DownloadAsRasterFont")},
    {TEXT("PageBorderless"), nullptr, TEXT("None Borderless")},
    {TEXT("PageMirrorImage"), nullptr, TEXT("None MirrorImageHeight MirrorImageWidth")},
    {TEXT("PageNegativeImage"), nullptr, TEXT("None Negative")},
    {TEXT("DocumentSeparatorSheet"), nullptr, TEXT("None StartSheet BothSheets EndSheet")},
    {TEXT("PagePhotoPrintingIntent"), nullptr, TEXT("None PhotoBest PhotoDraft PhotoStandard")},
    {TEXT("JobDigitalSignatureProcessing"), nullptr,
     TEXT("PrintInvalidSignatures PrintInvalidSignaturesWithErrorReport PrintOnlyValidSignatures")},
    // Which models may have among the features of their own.
    {TEXT("JobStapleAllDocuments"), nullptr,
     TEXT("None SaddleStitch StapleBottomLeft StapleBottomRight StapleDualBottom StapleDualLeft StapleDualRight "
          "StapleDualTop StapleTopLeft StapleTopRight")},
};

constexpr ScoredPropertyRow kScoredPropertyRows[] = {
    {nullptr, nullptr, TEXT("OptionName"), false, ValueType::kQName},
    {TEXT("JobDeviceLanguage"), nullptr, TEXT("LanguageLevel"), false, ValueType::kString},
    {TEXT("PageMediaSize"), nullptr, TEXT("MediaSizeWidth"), true, ValueType::kInteger, 1},
    {TEXT("PageMediaSize"), nullptr, TEXT("MediaSizeHeight"), true, ValueType::kInteger, 1},
    {TEXT("PageResolution"), nullptr, TEXT("ResolutionX"), true, ValueType::kInteger, 1},
    {TEXT("PageResolution"), nullptr, TEXT("ResolutionY"), true, ValueType::kInteger, 1},
    {TEXT("DocumentDuplex"), kTwoSided, TEXT("DuplexMode"), true, ValueType::kQName, kNoLeast,
     TEXT("Automatic Manual")},
    {TEXT("JobDuplexAllDocumentsContiguously"), kTwoSided, TEXT("DuplexMode"), true, ValueType::kQName, kNoLeast,
     TEXT("Automatic Manual")},
    {TEXT("DocumentNUp"), nullptr, TEXT("PagesPerSheet"), true, ValueType::kInteger, 1},
    {TEXT("JobNUpDocumentsContiguously"), nullptr, TEXT("PagesPerSheet"), true, ValueType::kInteger, 1},
    {TEXT("PagePoster"), nullptr, TEXT("SheetsPerPage"), true, ValueType::kInteger, 1},
    {TEXT("PageWatermark"), TEXT("Text"), TEXT("Text"), true, ValueType::kString},
    {TEXT("PageWatermark"), TEXT("Text"), TEXT("FontSize"), true, ValueType::kInteger, 1},
    {TEXT("PageWatermark"), TEXT("Text"), TEXT("Angle"), true, ValueType::kInteger, 0},
    {TEXT("PageWatermark"), TEXT("Text"), TEXT("FontColor"), true, ValueType::kInteger, 0},
    {TEXT("PageWatermark"), TEXT("Text"), TEXT("Transparency"), true, ValueType::kInteger, 0},
    {TEXT("PageScaling"), TEXT("CustomSquare"), TEXT("Scale"), true, ValueType::kInteger, 1},
    {TEXT("DocumentBinding"), kBound, TEXT("BindingGutter"), true, ValueType::kInteger, 0},
    {TEXT("JobBindAllDocuments"), kBound, TEXT("BindingGutter"), true, ValueType::kInteger, 0},
};

constexpr ParameterRow kParameterRows[] = {
    {TEXT("JobCopiesAllDocuments"), ValueType::kInteger, 1},
    {TEXT("DocumentCopiesAllPages"), ValueType::kInteger, 1},
    {TEXT("PageCopies"), ValueType::kInteger, 1},
    {TEXT("PageMediaSizeMediaSizeWidth"), ValueType::kInteger, 1},
    {TEXT("PageMediaSizeMediaSizeHeight"), ValueType::kInteger, 1},
    {TEXT("DocumentNUpPageBorderWidth"), ValueType::kInteger, 0},
    {TEXT("PageWatermarkTextText"), ValueType::kString},
    {TEXT("PageWatermarkTextFontSize"), ValueType::kInteger, 1},
    {TEXT("PageWatermarkTextAngle"), ValueType::kInteger, 0},
    {TEXT("PageWatermarkTextColor"), ValueType::kInteger, 0},
    {TEXT("PageWatermarkTransparency"), ValueType::kInteger, 0},
    {TEXT("PageScalingScale"), ValueType::kInteger, 1},
    {TEXT("DocumentBindingGutter"), ValueType::kInteger, 0},
};

// What the driver's documents have that a rule forbids.
struct Exception {
    Rule rule;
    int documents;
    const WCHAR* uri;
    const WCHAR* names;
    const WCHAR* property = nullptr;  // for kRequiredProperty
};

constexpr Exception kExceptions[] = {
    // A ticket's feature stays empty where the settings select none of the model's.
    {Rule::kSomeOption, kTickets, kKeywordsNamespace,
     TEXT("PageMediaSize PageInputBin JobInputBin PageMediaColor PageResolution PagePhotoPrintingIntent "
          "JobDigitalSignatureProcessing")},
    {Rule::kSomeOption, kTickets, kPrivateNamespace, TEXT("MediaSize MediaType InputBin")},
    // Models without grey shades have no option for it.
    {Rule::kSomeOption, kTickets, kKeywordsNamespace, TEXT("PageOutputColor")},
    // Models may have rendering intents without letting users choose one.
    {Rule::kSomeOption, kBoth, kKeywordsNamespace, TEXT("PageICMRenderingIntent")},
    // Exceptions say how to select in the features that they hold.
    {Rule::kRequiredProperty, kCapabilities, kPrivateNamespace,
     TEXT("DocumentMediaException* DocumentBlankSheetException* DocumentWatermarkException* "
          "DocumentOverlayException*"),
     TEXT("SelectionType")},
    // They only hold features.
    {Rule::kRequiredProperty, kCapabilities, kOemNamespace,
     TEXT("ManualSettings TextColorCorrection ImageColorCorrection GraphicsColorCorrection GeneralColorCorrection"),
     TEXT("SelectionType")},
    // Users type a text, there is nothing to select.
    {Rule::kRequiredProperty, kCapabilities, kOemNamespace, TEXT("UserInput"), TEXT("SelectionType")},
    // Steps of the printer's own, without unit.
    {Rule::kRequiredProperty, kCapabilities, kPrivateNamespace, TEXT("DocumentPSContrast DocumentPSBrightness"),
     TEXT("UnitType")},
    // They are lists.
    {Rule::kOneValue, kTickets, kPrivateNamespace,
     TEXT("DocumentStartOCMData DocumentSheetOCMData DocumentEndOCMData DocumentStartColorCorrectionCommands "
          "DocumentPageColorCorrectionCommands DocumentTextColorCorrectionCommands "
          "DocumentImageColorCorrectionCommands DocumentGraphicsColorCorrectionCommands DocumentStartPJL "
          "DocumentEndPJL")},
    // A paper that the model doesn't list is called custom, and its size is told for user-defined ones only.
    {Rule::kKnownParameter, kTickets, kKeywordsNamespace,
     TEXT("PageMediaSizeMediaSizeWidth PageMediaSizeMediaSizeHeight")},
    // Device modes don't hold typed texts.
    {Rule::kKnownParameter, kTickets, kOemNamespace, TEXT("*UserInput")},
    // No pages are the default, and they can't be set.
    {Rule::kDefaultWithinRange, kCapabilities, kPrivateNamespace, TEXT("DocumentExceptionPages*")},
};

// `pattern` with one * at most.
bool Matches(WideView pattern, WideView name) {
    const size_t star = pattern.find(TEXT('*'));
    if (star == WideView::npos) {
        return pattern == name;
    }
    const WideView end = pattern.substr(star + 1);
    return name.size() >= star + end.size() && name.starts_with(pattern.substr(0, star)) && name.ends_with(end);
}

}  // namespace

const std::span<const ValueTypeName> kValueTypes = kValueTypeNames;
const std::span<const ElementRow> kElements = kElementRows;
const std::span<const PropertyRow> kProperties = kPropertyRows;
const std::span<const FeatureRow> kFeatures = kFeatureRows;
const std::span<const ScoredPropertyRow> kScoredProperties = kScoredPropertyRows;
const std::span<const ParameterRow> kParameters = kParameterRows;

bool Lists(WideView list, WideView name) {
    while (!list.empty()) {
        const size_t blank = std::min(list.find(TEXT(' ')), list.size());
        if (Matches(list.substr(0, blank), name)) {
            return true;
        }
        list.remove_prefix(std::min(blank + 1, list.size()));
    }
    return false;
}

const ElementRow* FindElement(WideView name) {
    const auto found =
        std::find_if(kElements.begin(), kElements.end(), [name](const ElementRow& row) { return name == row.name; });
    return found == kElements.end() ? nullptr : &*found;
}

bool IsExcepted(Rule rule, int kind, WideView uri, WideView name, WideView property) {
    return std::any_of(std::begin(kExceptions), std::end(kExceptions), [&](const Exception& exception) {
        return exception.rule == rule && (exception.documents & kind) != 0 && uri == exception.uri &&
               Lists(exception.names, name) && (exception.property == nullptr || property == exception.property);
    });
}

}  // namespace print_schema
