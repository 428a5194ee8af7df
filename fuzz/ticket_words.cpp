#include "fuzz/ticket_words.h"

#include "driver/ptprovider/print_schema.h"
#include "platform/kernel/text.h"

namespace fuzz {
namespace {

using namespace velmora;  // NOLINT(google-build-using-namespace): the names of the Print Schema

constexpr FeatureWords kFeatureWords[] = {
    {kKeywordsNamespace, false, "PageMediaSize", kPapers, "CustomMediaSize", "MediaSizeWidth MediaSizeHeight"},
    {kKeywordsNamespace, false, "PageMediaType", kMedia, "", ""},
    {kKeywordsNamespace, false, "PageMediaColor", kColors, "", ""},
    {kKeywordsNamespace, false, "PageInputBin", kTrays, "", ""},
    {kKeywordsNamespace, false, "DocumentInputBin", kTrays, "", ""},
    {kKeywordsNamespace, false, "JobInputBin", kTrays, "", ""},
    {kKeywordsNamespace, false, "PageResolution", kResolutions, "", "ResolutionX ResolutionY"},
    {kKeywordsNamespace, false, "DocumentDuplex", kNoList, "OneSided TwoSidedLongEdge TwoSidedShortEdge", "DuplexMode"},
    {kKeywordsNamespace, false, "JobDuplexAllDocumentsContiguously", kNoList,
     "OneSided TwoSidedLongEdge TwoSidedShortEdge", "DuplexMode"},
    {kKeywordsNamespace, false, "PageOutputColor", kNoList, "Color Grayscale Monochrome", ""},
    {kKeywordsNamespace, false, "JobPageOrder", kNoList, "Standard Reverse", ""},
    {kKeywordsNamespace, false, "PageOrientation", kNoList, "Portrait Landscape ReversePortrait ReverseLandscape", ""},
    {kKeywordsNamespace, false, "DocumentCollate", kNoList, "Collated Uncollated", ""},
    {kKeywordsNamespace, false, "JobCollateAllDocuments", kNoList, "Collated Uncollated", ""},
    {kKeywordsNamespace, false, "DocumentNUp", kNoList, "", "PagesPerSheet"},
    {kKeywordsNamespace, false, "JobNUpDocumentsContiguously", kNoList, "", "PagesPerSheet"},
    {kKeywordsNamespace, true, "PresentationDirection", kNoList,
     "RightBottom RightTop LeftBottom LeftTop BottomRight TopRight BottomLeft TopLeft", ""},
    {kPrivateNamespace, true, "NUpBorders", kNoList, "Off On", "BorderWidth"},
    {kKeywordsNamespace, false, "PagePoster", kNoList, "", "SheetsPerPage"},
    {kKeywordsNamespace, false, "PageWatermark", kNoList, "Text Image",
     "Text FontSize Angle FontColor Transparency Font Outline Bold Italic RightToLeft File ScaleWidth ScaleHeight"},
    {kPrivateNamespace, true, "Placement", kNoList,
     "Center Tiled Top Right Bottom Left TopLeft TopRight BottomLeft BottomRight", "OffsetWidth OffsetHeight"},
    {kKeywordsNamespace, true, "Layering", kNoList, "Overlay Underlay", ""},
    {kPrivateNamespace, true, "Layering", kNoList, "Overlay Underlay", ""},
    {kPrivateNamespace, true, "Usage", kNoList, "AllPages FirstPageOnly AllExceptFirstPage", ""},
    {kKeywordsNamespace, false, "PageDeviceFontSubstitution", kNoList, "On Off", ""},
    {kKeywordsNamespace, false, "PageScaling", kNoList, "None CustomSquare FitApplicationMediaSizeToPageMediaSize",
     "Scale"},
    {kKeywordsNamespace, true, "ScaleOffsetAlignment", kNoList, "Center TopLeft", ""},
    {kPrivateNamespace, false, "DocumentCoverFront", kNoList, "NoCover BlankCover PrintFront PrintBoth PrintBack", ""},
    {kPrivateNamespace, false, "DocumentCoverBack", kNoList, "NoCover BlankCover PrintFront PrintBoth PrintBack", ""},
    {kPrivateNamespace, false, "DocumentInterleaves", kNoList, "NoInterleaves BlankInterleaves DuplicateInterleaves",
     ""},
    {kPrivateNamespace, true, "MediaSize", kPapers, "UsePageMediaSize CustomMediaSize",
     "MediaSizeWidth MediaSizeHeight"},
    {kPrivateNamespace, true, "MediaType", kMedia, "", ""},
    {kPrivateNamespace, true, "InputBin", kTrays, "", ""},
    {kKeywordsNamespace, false, "DocumentBinding", kNoList,
     "None Booklet BindLeft BindTop BindRight BindBottom JapaneseBooklet", "BindingGutter SignaturePages"},
    {kKeywordsNamespace, false, "JobBindAllDocuments", kNoList,
     "None Booklet BindLeft BindTop BindRight BindBottom JapaneseBooklet", "BindingGutter SignaturePages"},
    {kKeywordsNamespace, false, "PageICMRenderingIntent", kNoList,
     "BusinessGraphics Photo RelativeColorimetric AbsoluteColorimetric", ""},
    {kKeywordsNamespace, false, "PageTrueTypeFontMode", kNoList, "DownloadAsOutlineFont DownloadAsRasterFont Automatic",
     ""},
    {kKeywordsNamespace, false, "PageBorderless", kNoList, "None Borderless", ""},
    {kKeywordsNamespace, false, "PageMirrorImage", kNoList, "None MirrorImageHeight MirrorImageWidth", ""},
    {kKeywordsNamespace, false, "PageNegativeImage", kNoList, "None Negative", ""},
    {kPrivateNamespace, false, "PageBlackText", kNoList, "None BlackText", ""},
    {kPrivateNamespace, false, "DocumentOverlay", kNoList, "None Create Include IncludeOddEven",
     "Name Directory FileExtension"},
    {kPrivateNamespace, true, "Overlay", kNoList, "", "File"},
    {kPrivateNamespace, true, "Overlay2", kNoList, "", "File"},
    {kKeywordsNamespace, false, "DocumentSeparatorSheet", kNoList, "None StartSheet BothSheets EndSheet", ""},
    {kKeywordsNamespace, false, "PagePhotoPrintingIntent", kIntents, "None", ""},
    {kKeywordsNamespace, false, "JobDigitalSignatureProcessing", kSignatures, "PrintInvalidSignaturesWithErrorReport",
     ""},
    {kOemNamespace, false, "DocumentPSFormat", kNoList,
     "Normal EncapsulatedPostScript DocumentStructuringConventions TaggedBinaryControlProtocol", ""},
    {kOemNamespace, false, "DocumentPSControlD", kNoList, "None Before After BeforeAndAfter", ""},
    {kOemNamespace, false, "DocumentPSErrorPage", kNoList, "None PrintErrorPage", ""},
    {kOemNamespace, false, "DocumentPSImageCompression", kNoList, "None CompressImages", ""},
    {kOemNamespace, false, "DocumentPSHalftone", kNoList, "Printer User", "HalftoneFrequency HalftoneAngle"},
    {kOemNamespace, false, "DocumentColorCorrection", kNoList, "ColorCorrectionPreset_#", ""},
    {kOemNamespace, true, "ManualSettings", kNoList, "", ""},
    {kOemNamespace, true, "TextColorCorrection", kNoList, "", ""},
    {kOemNamespace, true, "TextColorCorrectionFeature_#", kNoList, "TextColorCorrectionOption_#", ""},
    {kOemNamespace, true, "ImageColorCorrection", kNoList, "", ""},
    {kOemNamespace, true, "ImageColorCorrectionFeature_#", kNoList, "ImageColorCorrectionOption_#", ""},
    {kOemNamespace, true, "GraphicsColorCorrection", kNoList, "", ""},
    {kOemNamespace, true, "GraphicsColorCorrectionFeature_#", kNoList, "GraphicsColorCorrectionOption_#", ""},
    {kOemNamespace, true, "GeneralColorCorrection", kNoList, "", ""},
    {kOemNamespace, true, "GeneralColorCorrectionFeature_#", kNoList, "GeneralColorCorrectionOption_#", ""},
    {kXpsWriterNamespace, false, "JobInterleaving", kNoList, "ON OFF", ""},
    {kXpsWriterNamespace, false, "JobImageType", kNoList, "JPEGHigh JPEGMed JPEGLow PNG", ""},
    {kKeywordsNamespace, false, "JobDeviceLanguage", kNoList, "PCL-XL PostScript XPS", "LanguageLevel"},
    {kPrivateNamespace, false, "DocumentMediaException#", kNoList, "", ""},
    {kPrivateNamespace, false, "DocumentBlankSheetException#", kNoList, "BeforeExceptionPages AfterExceptionPages", ""},
    {kPrivateNamespace, false, "DocumentWatermarkException#", kNoList, "Text Image",
     "Text Font FontSize Angle FontColor Bold Italic Outline RightToLeft File ScaleWidth ScaleHeight Transparency"},
    {kPrivateNamespace, false, "DocumentOverlayException#", kNoList, "", ""},
    {kPrivateNamespace, true, "ExceptionUsage", kNoList, "SpecifiedPages NotSpecifiedPages OddPages EvenPages",
     "Pages"},
};

constexpr const WCHAR* kNamespaces[] = {kKeywordsNamespace, kPrivateNamespace,   kOemNamespace,
                                        kSchemaNamespace,   kFrameworkNamespace, kXpsWriterNamespace,
                                        kInstanceNamespace, u"urn:unknown",      u""};

}  // namespace

const std::span<const FeatureWords> kFeatures = kFeatureWords;
const std::span<const WCHAR* const> kSpaces = kNamespaces;

const char kParameterWords[] =
    "JobCopiesAllDocuments DocumentCopiesAllPages PageCopies DocumentPSContrast DocumentPSBrightness PageScalingScale "
    "DocumentExceptionPages# PageMediaSizeMediaSizeWidth PageMediaSizeMediaSizeHeight DocumentOverlayName Unknown";
const char kPropertyWords[] =
    "DocumentStartOCMData DocumentSheetOCMData DocumentStartColorCorrectionCommands DocumentStartPJL DocumentEndPJL "
    "PageImageableSize Unknown";
const char kElementWords[] =
    "Feature Option ScoredProperty Property Value ParameterRef ParameterInit ParameterDef Unknown";

Text WordOf(const char* words, size_t number, int32_t digits) {
    Texts list(1);
    for (; *words != 0; ++words) {
        if (*words == ' ') {
            list.emplace_back();
        } else if (*words == '#') {
            list.back() += host::ToWide(std::to_string(static_cast<uint32_t>(digits) % 5));
        } else {
            list.back().push_back(static_cast<char16_t>(*words));
        }
    }
    return list[number % list.size()];
}

}  // namespace fuzz
