// Print tickets of any shape: the four conversions on a printer of each of the project's models. What a ticket becomes
// is a device mode that the validations accept or repair, never one that they reject for what it is; what a ticket has
// stays in it, and nothing is written twice; documents grow by no more than the model has; nothing is left open.
//
// An input is a header and steps, each of which adds to the ticket by the object model or changes the device mode that
// goes in. Any bytes are an input.
#include <objbase.h>
#include <oleauto.h>
#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "driver/base/com.h"
#include "driver/ptprovider/dom_classes.h"
#include "driver/ptprovider/print_schema.h"
#include "driver/ptprovider/printer_snapshot.h"
#include "driver/ptprovider/provider.h"
#include "driver/ptprovider/ticket_conversion.h"
#include "driver/settings/settings_folder.h"
#include "driver/settings/watermark_list.h"
#include "fuzz/model_printers.h"
#include "fuzz/stop.h"
#include "platform/host.h"
#include "platform/kernel/text.h"
#include "tests/driver/resource_file.h"

namespace {

using namespace fuzz;     // NOLINT(google-build-using-namespace): the targets' kit
using namespace velmora;  // NOLINT(google-build-using-namespace): the operations under test
using Text = std::u16string;
using Texts = std::vector<Text>;
using Node = ComReference<IXMLDOMNode>;

// --- Inputs

#pragma pack(push, 1)
struct Header {
    uint8_t printer;
    uint8_t flags;
};
struct Step {
    uint8_t kind;
    uint8_t feature;  // of kFeatures
    uint8_t word;     // of the feature's options or properties
    uint8_t space;    // from kAnySpace on: another namespace than the word's own
    uint8_t value;    // ValueKind; from kPrivateProperty on: a property is the driver's own
    int32_t number;
};
#pragma pack(pop)

constexpr uint8_t kCallsProvider = 0x0F;  // flags up to this: the provider is called too, which takes most of the time
constexpr uint8_t kExchangedPrefixes = 0x20;  // a bit: the usual prefixes stand for other namespaces
constexpr uint8_t kAnySpace = 0xC0;
constexpr uint8_t kPrivateProperty = 0x80;

enum StepKind : uint8_t {
    kFeature,        // with an option, on the root, or in the feature before where it is a part
    kWholeFeature,   // with an option that has every property that the feature's options may have
    kBareFeature,    // without the option
    kScoredValue,    // of the option before; the property is one of the feature's, as in the next
    kScoredRef,      // the same by a parameter on the root
    kParameter,      // on the root
    kProperty,       // with a value, on the root
    kOptionName,     // the property that names the option before
    kNested,         // elements in the one before
    kValue,          // in the element before
    kText,           // the same
    kCopy,           // of the feature before, with all that is in it
    kDeclaration,    // of a prefix, at the element before
    kDevModeEdit,    // an edit of the device mode
    kDevModeNumber,  // the same, near the fields' limits
    kStepKinds       // their count
};

enum ValueKind : uint8_t {
    kNumberValue,
    kSmallValue,
    kExtremeValue,
    kPaperWidth,  // micrometres, as the next
    kPaperLength,
    kWordValue,
    kNameValue,
    kListValue,
    kPaddedValue,
    kHugeValue,
    kLongValue,
    kEmptyValue,
    kNoValue,
    kValueKinds
};

constexpr int32_t kExtremes[] = {0,      1,      -1,       50,        51,        -50,      100,    256,
                                 6000,   3600,   32767,    32768,     65535,     65536,    -32768, 148000,
                                 210000, 297000, 215900,   279400,    25400,     100000,   150000, 500000,
                                 359,    360,    16777215, -16777216, INT32_MAX, INT32_MIN};

// --- The words of tickets

// The printer's lists that name options besides the words.
enum OptionList : uint8_t { kNoList, kPapers, kMedia, kTrays, kResolutions, kColors, kIntents, kSignatures };

// '#' in a word stands for the step's number.
struct FeatureWords {
    const WCHAR* space;
    bool isPart;  // of another feature
    const char* name;
    OptionList list;
    const char* options;
    const char* properties;
};

constexpr FeatureWords kFeatures[] = {
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

constexpr const char kParameterWords[] =
    "JobCopiesAllDocuments DocumentCopiesAllPages PageCopies DocumentPSContrast DocumentPSBrightness PageScalingScale "
    "DocumentExceptionPages# PageMediaSizeMediaSizeWidth PageMediaSizeMediaSizeHeight DocumentOverlayName Unknown";
constexpr const char kPropertyWords[] =
    "DocumentStartOCMData DocumentSheetOCMData DocumentStartColorCorrectionCommands DocumentStartPJL DocumentEndPJL "
    "PageImageableSize Unknown";
constexpr const char kElementWords[] =
    "Feature Option ScoredProperty Property Value ParameterRef ParameterInit ParameterDef Unknown";

constexpr const WCHAR* kSpaces[] = {kKeywordsNamespace, kPrivateNamespace,   kOemNamespace,
                                    kSchemaNamespace,   kFrameworkNamespace, kXpsWriterNamespace,
                                    kInstanceNamespace, u"urn:unknown",      u""};

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

// --- The printers

// A name in a namespace.
using Name = std::pair<Text, Text>;

struct TicketPrinter : ModelPrinter {
    std::map<OptionList, std::vector<Name>> options;
    std::vector<std::pair<Name, std::vector<Name>>> features;  // the model's own with their options
    std::vector<std::pair<int32_t, int32_t>> paperSizes;
    Texts overlays;      // their paths
    size_t entries = 0;  // of all lists
    OwnedSnapshot snapshot;

    TicketPrinter(const std::filesystem::path& source, bool isXpsWriter);

  private:
    void StoreUsersThings();
    template <class Entry>
    std::vector<Name> NamesOf(const EntryList<Entry>& list) {
        std::vector<Name> names;
        for (const Entry& entry : list) {
            names.emplace_back(entry.name.namespaceUri ? entry.name.namespaceUri : u"", entry.name.keyword);
        }
        entries += list.count;
        return names;
    }
};

driver_test::DriverPackage PackageOf(bool isXpsWriter) {
    driver_test::DriverPackage package =
        driver_test::PackageOf("", std::string(isXpsWriter ? "[PrinterDriver]\r\nMXDWConfig=1\r\n" : "") +
                                       "[CustomSizes]\r\nNumCustomSizes=1\r\nCustomName0=Mine\r\nCustomWidth0=12340\r\n"
                                       "CustomLength0=23450\r\nCustomMetric0=1\r\n");
    package.dependent[0].bytes =
        driver_test::StringModule({{2117, u"Custom size"}, {2420, u"ini"}, {2654, u"ovl"}, {1753, u"&Copies"}});
    return package;
}

// Watermarks and overlays.
void TicketPrinter::StoreUsersThings() {
    PrepareSettingsFile(name.c_str());
    WatermarkRecord watermarks[2];
    for (WatermarkRecord& watermark : watermarks) {
        MakeBlankWatermark(&watermark);
        watermark.type = &watermark == watermarks ? kTextWatermark : kImageWatermark;
        CopyText(watermark.text, ARRAYSIZE(watermark.text), u"Draft");
    }
    CopyText(watermarks[1].imageName, ARRAYSIZE(watermarks[1].imageName), u"C:\\logo.bmp");
    SaveWatermarkList(name.c_str(), watermarks, ARRAYSIZE(watermarks));
    WCHAR folder[MAX_PATH];
    GetSettingsFolder(name.c_str(), folder, ARRAYSIZE(folder));
    for (const char16_t* file : {u"01000000.ovl", u"02000000.ovl"}) {
        overlays.push_back(Text(folder) + u"\\" + file);
        driver_test::WriteDriveFile(overlays.back(), "");
    }
    overlays.emplace_back(u"\\");
    overlays.emplace_back(u"C:\\a name that is longer than a device mode has room for.ovl");
}

TicketPrinter::TicketPrinter(const std::filesystem::path& source, bool isXpsWriter)
    : ModelPrinter(source, PackageOf(isXpsWriter)) {
    StoreUsersThings();
    snapshot = LoadPrinterSnapshot(printer.Get());
    const PrinterSnapshot& lists = *snapshot.Get();
    options = {{kPapers, NamesOf(lists.papers)},
               {kMedia, NamesOf(lists.media)},
               {kTrays, NamesOf(lists.trays)},
               {kResolutions, NamesOf(lists.resolutions)},
               {kColors, NamesOf(lists.mediaColors)},
               {kIntents, NamesOf(lists.photoIntents)},
               {kSignatures, NamesOf(lists.signatureOptions)}};
    const std::vector<Name> featureNames = NamesOf(lists.features);
    const std::vector<Name> optionNames = NamesOf(lists.options);
    for (size_t i = 0; i < featureNames.size(); ++i) {
        const auto first = optionNames.begin() + static_cast<ptrdiff_t>(lists.features[i].options.first);
        features.emplace_back(featureNames[i],
                              std::vector(first, first + static_cast<ptrdiff_t>(lists.features[i].options.count)));
    }
    for (const PaperEntry& paper : lists.papers) {
        paperSizes.emplace_back(paper.width, paper.length);
    }
    entries += lists.colorModes.count + lists.colorValues.count + lists.overlays.count;
    for (const auto& group : lists.colorFeatures) {
        entries += group.count;
    }
}

struct Printers {
    host::Machine machine;
    std::vector<TicketPrinter> models;

    Printers() {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        for (const std::filesystem::path& source : ModelSources()) {
            models.emplace_back(source, models.size() % 2 == 1);
        }
    }
};

// --- Building tickets

ComReference<IXMLDOMDocument2> NewDocument() {
    void* made = nullptr;
    CoCreateInstance(kDomDocument60, nullptr, CLSCTX_INPROC_SERVER, kIidDomDocument2, &made);
    return ComReference<IXMLDOMDocument2>(static_cast<IXMLDOMDocument2*>(made));
}

class TicketBuilder {
  public:
    TicketBuilder(const TicketPrinter& printer, bool areExchanged) : printer_(printer), document_(NewDocument()) {
        const Text prefixes[] = {u"psk", u"kxp", u"oem", u"xsd", u"psf", u"ns0000", u"xsi", u"un"};
        const size_t count = std::size(prefixes);
        for (size_t i = 0; i < count; ++i) {
            prefixes_[kSpaces[i]] = prefixes[areExchanged ? (i + 1) % count : i];
        }
        root_ = Add(nullptr, u"PrintTicket");
        for (const auto& [uri, prefix] : prefixes_) {
            SetAttribute(root_, u"xmlns:" + prefix, uri);
        }
        SetAttribute(root_, u"version", u"1");
        for (Node* const place : {&feature_, &option_, &last_}) {
            *place = Node::Share(root_.Get());
        }
    }

    void Take(const Step& step);
    IXMLDOMDocument2* Document() const { return document_.Get(); }

  private:
    static void SetAttribute(const Node& element, const Text& name, const Text& value) {
        VARIANT variant;
        VariantInit(&variant);
        const OwnedBstr text(value.c_str());
        variant.vt = VT_BSTR;
        variant.bstrVal = text.Get();
        static_cast<IXMLDOMElement*>(element.Get())->setAttribute(OwnedBstr(name.c_str()).Get(), variant);
    }

    // An element of the framework; null where its name is none.
    Node Add(IXMLDOMNode* parent, const Text& name) {
        VARIANT type;
        VariantInit(&type);
        type.vt = VT_I4;
        type.lVal = NODE_ELEMENT;
        Node made;
        document_->createNode(type, OwnedBstr((prefixes_[kFrameworkNamespace] + u":" + name).c_str()).Get(),
                              OwnedBstr(kFrameworkNamespace).Get(), made.Receive());
        (parent ? parent : document_.Get())->appendChild(made.Get(), nullptr);
        return made;
    }

    // As written in the ticket: names of other namespaces have a prefix that stands for none.
    Text Written(const Name& name) const {
        const auto found = prefixes_.find(name.first);
        return name.first.empty() ? name.second
                                  : (found == prefixes_.end() ? u"none" : found->second) + u":" + name.second;
    }
    Node AddNamed(const Node& parent, const Text& kind, const Name& name) {
        Node made = Add(parent.Get(), kind);
        SetAttribute(made, u"name", Written(name));
        return made;
    }
    Name WithSpace(const Step& step, const WCHAR* uri, const Text& word) const {
        return {step.space < kAnySpace ? uri : kSpaces[step.space % std::size(kSpaces)], word};
    }

    std::vector<Name> OptionsOf(const Step& step, const FeatureWords& feature) const;
    void AddFeature(const Step& step);
    Text ValueOf(const Step& step) const;
    void AddValue(const Node& parent, const Step& step);
    void AddScored(const Name& property, const Step& step, bool isByParameter);
    void AddProperties(const Step& step);
    void AddNested(const Step& step);

    const TicketPrinter& printer_;
    ComReference<IXMLDOMDocument2> document_;
    std::map<Text, Text> prefixes_;          // by their namespaces
    const FeatureWords* words_ = kFeatures;  // of the feature that was added last
    // Those that were added last; the root before.
    Node root_;
    Node feature_;
    Node option_;
    Node last_;
};

std::vector<Name> TicketBuilder::OptionsOf(const Step& step, const FeatureWords& feature) const {
    const auto listed = printer_.options.find(feature.list);
    std::vector<Name> names = listed == printer_.options.end() ? std::vector<Name>() : listed->second;
    for (size_t i = 0; i <= 8; ++i) {
        const Text word = WordOf(feature.options, i, step.number);
        names.push_back(WithSpace(step, feature.space, word));
        names.push_back(WithSpace(step, kPrivateNamespace, word));
    }
    return names;
}

void TicketBuilder::AddFeature(const Step& step) {
    const size_t index = step.feature % (std::size(kFeatures) + printer_.features.size());
    Name name;
    std::vector<Name> options;
    bool isPart = false;
    if (index < std::size(kFeatures)) {
        const FeatureWords& words = kFeatures[index];
        words_ = &words;
        name = {words.space, WordOf(words.name, 0, step.number)};
        options = OptionsOf(step, words);
        isPart = words.isPart;
    } else {
        std::tie(name, options) = printer_.features[index - std::size(kFeatures)];
    }
    // Parts of groups lie in groups, which have no options.
    const bool isInPart = isPart && step.value % 2 != 0;
    const Node& parent = isInPart ? last_ : isPart ? feature_ : root_;
    Node made = AddNamed(parent, u"Feature", name);
    if (!isPart) {
        feature_ = Node::Share(made.Get());
    }
    last_ = Node::Share(made.Get());
    if (step.kind % kStepKinds != kBareFeature) {
        const Name option = options.empty() ? Name() : options[step.word % options.size()];
        option_ = option.second.empty() ? Add(made.Get(), u"Option") : AddNamed(made, u"Option", option);
        last_ = Node::Share((isPart ? made : option_).Get());
    }
}

Text TicketBuilder::ValueOf(const Step& step) const {
    const auto number = static_cast<uint32_t>(step.number);
    const Text digits = host::ToWide(std::to_string(step.number));
    const auto& sizes = printer_.paperSizes;
    switch (step.value % kValueKinds) {
        case kSmallValue:
            return host::ToWide(std::to_string(number % 64));
        case kExtremeValue:
            return host::ToWide(std::to_string(kExtremes[number % std::size(kExtremes)]));
        case kPaperWidth:
            return host::ToWide(std::to_string(sizes.empty() ? 0 : sizes[number % sizes.size()].first));
        case kPaperLength:
            return host::ToWide(std::to_string(sizes.empty() ? 0 : sizes[number % sizes.size()].second));
        case kWordValue:
            return printer_.overlays[number % printer_.overlays.size()];
        case kNameValue:
            return Written({kKeywordsNamespace,
                            WordOf(kFeatures[step.feature % std::size(kFeatures)].options, number, step.number)});
        case kListValue:
            return digits + u",3," + digits + u",,5;6 7,0,8,9,10,11,12,13";
        case kPaddedValue:
            return u" \t+" + digits + u" x";
        case kHugeValue:
            return digits + Text(number % 64, u'9');
        case kLongValue:
            return Text(number % 600,
                        static_cast<char16_t>(number >> 16) > u' ' ? static_cast<char16_t>(number >> 16) : u'x');
        case kEmptyValue:
            return {};
        default:
            return digits;
    }
}

void TicketBuilder::AddValue(const Node& parent, const Step& step) {
    if (step.value % kValueKinds == kNoValue) {
        return;
    }
    const Node value = Add(parent.Get(), u"Value");
    const Text type = step.value % kValueKinds < kWordValue ? u"integer" : u"string";
    SetAttribute(value, prefixes_[kInstanceNamespace] + u":type", Written({kSchemaNamespace, type}));
    value->put_text(OwnedBstr(ValueOf(step).c_str()).Get());
}

// With its value, or by a parameter on the root that has it.
void TicketBuilder::AddScored(const Name& property, const Step& step, bool isByParameter) {
    last_ = AddNamed(option_, u"ScoredProperty", property);
    if (!isByParameter) {
        AddValue(last_, step);
        return;
    }
    const Name parameter = {property.first, WordOf(words_->name, 0, step.number) + property.second};
    AddNamed(last_, u"ParameterRef", parameter);
    AddValue(AddNamed(root_, u"ParameterInit", parameter), step);
}

void TicketBuilder::AddProperties(const Step& step) {
    const Node feature = Node::Share(last_.Get());
    const auto count = std::count(words_->properties, words_->properties + strlen(words_->properties), ' ') + 1;
    for (size_t i = 0; i < static_cast<size_t>(count); ++i) {
        for (const WCHAR* const uri : {words_->space, kPrivateNamespace}) {
            AddScored({uri, WordOf(words_->properties, i, 0)}, step, step.value < kPrivateProperty);
        }
    }
    last_ = Node::Share(feature.Get());
}

void TicketBuilder::AddNested(const Step& step) {
    constexpr uint32_t kMostDepth = 300;
    const Text element = WordOf(kElementWords, step.word, 0);
    for (uint32_t depth = 0; depth <= static_cast<uint32_t>(step.number) % kMostDepth; ++depth) {
        const FeatureWords& words = kFeatures[(step.feature + depth) % std::size(kFeatures)];
        last_ = AddNamed(last_, element, WithSpace(step, words.space, WordOf(words.name, 0, step.number)));
    }
}

void TicketBuilder::Take(const Step& step) {
    const FeatureWords& words = *words_;
    const Name property = WithSpace(step, step.value < kPrivateProperty ? words.space : kPrivateNamespace,
                                    WordOf(words.properties, step.word, 0));
    switch (step.kind % kStepKinds) {
        case kFeature:
        case kBareFeature:
            AddFeature(step);
            break;
        case kWholeFeature:
            AddFeature(step);
            AddProperties(step);
            break;
        case kScoredValue:
            AddScored(property, step, false);
            break;
        case kScoredRef:
            AddScored(property, step, true);
            break;
        case kParameter: {
            const WCHAR* const uri = step.word % 2 == 0 ? kKeywordsNamespace : kPrivateNamespace;
            last_ = AddNamed(root_, u"ParameterInit",
                             WithSpace(step, uri, WordOf(kParameterWords, step.feature, step.number)));
            AddValue(last_, step);
            break;
        }
        case kProperty:
            last_ = AddNamed(root_, u"Property",
                             WithSpace(step, kPrivateNamespace, WordOf(kPropertyWords, step.feature, 0)));
            AddValue(last_, step);
            break;
        case kOptionName: {
            const std::vector<Name> options = OptionsOf(step, words);
            const Node value = Add(AddNamed(option_, u"Property", {kKeywordsNamespace, u"OptionName"}).Get(), u"Value");
            value->put_text(OwnedBstr(Written(options[step.word % options.size()]).c_str()).Get());
            break;
        }
        case kNested:
            AddNested(step);
            break;
        case kValue:
            AddValue(last_, step);
            break;
        case kText: {
            ComReference<IXMLDOMText> text;
            document_->createTextNode(OwnedBstr(ValueOf(step).c_str()).Get(), text.Receive());
            last_->appendChild(text.Get(), nullptr);
            break;
        }
        case kCopy: {
            Node copy;
            feature_->cloneNode(VARIANT_TRUE, copy.Receive());
            (step.word % 2 == 0 ? root_ : last_)->appendChild(copy.Get(), nullptr);
            break;
        }
        case kDeclaration:
            if (last_.Get() != root_.Get()) {
                SetAttribute(last_, u"xmlns:" + std::next(prefixes_.begin(), step.word % prefixes_.size())->second,
                             kSpaces[step.feature % (std::size(kSpaces) - 1)]);
            }
            break;
        default:
            break;
    }
}

// --- What is asserted

size_t CountNodes(IXMLDOMNode* parent) {
    size_t count = 1;
    Node child;
    parent->get_firstChild(child.Receive());
    while (child) {
        count += CountNodes(child.Get());
        Node next;
        child->get_nextSibling(next.Receive());
        child = std::move(next);
    }
    return count;
}

Text AttributeOf(IXMLDOMNode* element, const Text& name) {
    OwnedVariant value;
    static_cast<IXMLDOMElement*>(element)->getAttribute(OwnedBstr(name.c_str()).Get(), value.Receive());
    return value.Text() ? value.Text() : u"";
}

// How often each name is one of a feature on the root.
std::map<Name, int> CountFeatures(IXMLDOMDocument2* document) {
    std::map<Name, int> counts;
    ComReference<IXMLDOMElement> root;
    document->get_documentElement(root.Receive());
    Node child;
    root->get_firstChild(child.Receive());
    while (child) {
        OwnedBstr kind;
        child->get_baseName(kind.Receive());
        if (kind.Is(u"Feature")) {
            const Text written = AttributeOf(child.Get(), u"name");
            const size_t colon = std::min(written.find(u':'), written.size());
            const Text declaration = u"xmlns:" + written.substr(0, colon);
            const Text own = AttributeOf(child.Get(), declaration);
            const Text uri = own.empty() ? AttributeOf(root.Get(), declaration) : own;
            if (!uri.empty()) {
                ++counts[{uri, written.substr(colon + 1)}];
            }
        }
        Node next;
        child->get_nextSibling(next.Receive());
        child = std::move(next);
    }
    return counts;
}

// A document holds no more than it did and what the model has.
void CheckSize(IXMLDOMDocument2* document, size_t before, const TicketPrinter& printer) {
    constexpr size_t kMostNodes = 16384;
    constexpr size_t kMostNodesPerEntry = 128;
    if (CountNodes(document) > before + kMostNodes + printer.entries * kMostNodesPerEntry) {
        Stop("a document grows beyond what the model has");
    }
}

// What a ticket had before something was written into it.
class TicketBefore {
  public:
    explicit TicketBefore(IXMLDOMDocument2* ticket)
        : ticket_(ticket), nodes_(CountNodes(ticket)), features_(CountFeatures(ticket)) {}

    void CheckWritten(const TicketPrinter& printer) const {
        CheckSize(ticket_, nodes_, printer);
        for (const auto& [name, count] : CountFeatures(ticket_)) {
            const auto before = features_.find(name);
            const bool isWrittenAlways = name == Name(kKeywordsNamespace, u"JobDeviceLanguage");
            if (!isWrittenAlways && count != (before == features_.end() ? 1 : before->second)) {
                Stop(("a feature is written that there was: " + host::ToUtf8(name.second)).c_str());
            }
        }
    }

  private:
    IXMLDOMDocument2* ticket_;
    size_t nodes_;
    std::map<Name, int> features_;
};

// One validation at a time until nothing is left to repair, which takes at least three repairs each.
void CheckRepairable(const TicketPrinter& printer, VelmoraDevMode devMode) {
    constexpr size_t kMostRounds = sizeof(devMode) / ValidationReport::kRepairLimit;
    for (size_t round = 0; round < kMostRounds; ++round) {
        ValidationReport report;
        CheckPublicDevMode(printer.printer.Get(), *printer.model, &devMode.publicPart, &report);
        if (report.IsAccepted()) {
            report = {};
            CheckPrivateDevMode(printer.facts, *printer.model, &devMode.privatePart, &report);
        }
        if (report.rejectedBy) {
            Stop("a ticket's device mode isn't the driver's", report);
        }
        if (report.IsAccepted()) {
            return;
        }
    }
    Stop("a ticket's device mode can't be repaired");
}

// The conversions with the snapshot in hand, as the provider runs them.
struct Conversion {
    Conversion(ConversionMode mode, const TicketPrinter& printer, IXMLDOMDocument2* document,
               const VelmoraDevMode* input)
        : context(mode) {
        context.Bind(printer.printer.Get(), printer.snapshot.Get());
        if (document) {
            context.document.AttachDocument(document);
        }
        working.Bind(printer.printer.Get(), printer.snapshot.Get());
        const auto given = input ? std::make_unique<VelmoraDevMode>(*input) : nullptr;
        working.Prepare(given ? &given->publicPart : nullptr, given ? sizeof(*given) : 0);
    }

    ConversionContext context;
    WorkingDevMode working;
};

VelmoraDevMode Read(const TicketPrinter& printer, IXMLDOMDocument2* ticket, const VelmoraDevMode& input) {
    Conversion conversion(ConversionMode::kTicket, printer, ticket, &input);
    ReadTicket(conversion.context, conversion.working);
    const VelmoraDevMode output = *conversion.working.DevMode();
    CheckRepairable(printer, output);
    return output;
}

void Write(const TicketPrinter& printer, IXMLDOMDocument2* ticket, const VelmoraDevMode& input) {
    const TicketBefore before(ticket);
    Conversion conversion(ConversionMode::kTicket, printer, ticket, &input);
    WriteTicket(conversion.context, conversion.working);
    before.CheckWritten(printer);
}

void Validate(const TicketPrinter& printer, IXMLDOMDocument2* ticket) {
    const TicketBefore before(ticket);
    Conversion conversion(ConversionMode::kValidation, printer, ticket, nullptr);
    ReadTicket(conversion.context, conversion.working);
    WriteTicket(conversion.context, conversion.working);
    before.CheckWritten(printer);
}

// `output`: what the ticket becomes of the input.
void CallProvider(const TicketPrinter& printer, IXMLDOMDocument2* ticket, const VelmoraDevMode& input,
                  const VelmoraDevMode& output) {
    const ComReference<IPTProvider> provider(new IPTProvider);
    SHIMOPTS options = {};
    DWORD fields = 0;
    INT count = 0;
    BSTR* namespaces = nullptr;
    if (provider->BindPrinter(printer.printer.Get(), 1, &options, &fields, &count, &namespaces) != S_OK) {
        Stop("the provider isn't bound");
    }
    while (count > 0) {
        SysFreeString(namespaces[--count]);
    }
    CoTaskMemFree(namespaces);

    const auto given = std::make_unique<VelmoraDevMode>(input);
    ULONG size = 0;
    PDEVMODEW made = nullptr;
    if (provider->ConvertPrintTicketToDevMode(ticket, sizeof(*given), &given->publicPart, &size, &made) != S_OK ||
        size != sizeof(output) || memcmp(made, &output, sizeof(output)) != 0) {
        Stop("the provider gives another device mode");
    }
    CoTaskMemFree(made);

    ComReference<IXMLDOMDocument2> capabilities;
    if (provider->GetPrintCapabilities(ticket, capabilities.Receive()) != S_OK) {
        Stop("there are no capabilities");
    }
    CheckSize(capabilities.Get(), 0, printer);
    for (const auto& [name, times] : CountFeatures(capabilities.Get())) {
        if (times != 1) {
            Stop(("a feature stands twice in the capabilities: " + host::ToUtf8(name.second)).c_str());
        }
    }
    const TicketBefore before(ticket);
    if (provider->ConvertDevModeToPrintTicket(sizeof(*given), &given->publicPart, ticket) != S_OK ||
        provider->ValidatePrintTicket(ticket) != S_PT_NO_CONFLICT) {
        Stop("the provider refuses a ticket");
    }
    before.CheckWritten(printer);
}

void Run(const TicketPrinter& printer, const Header& header, std::span<const Step> steps) {
    TicketBuilder ticket(printer, (header.flags & kExchangedPrefixes) != 0);
    VelmoraDevMode input = printer.valid;
    for (const Step& step : steps) {
        if (step.kind % kStepKinds == kDevModeEdit || step.kind % kStepKinds == kDevModeNumber) {
            const auto kind = step.kind % kStepKinds == kDevModeEdit ? kByte : kLimit;
            Apply({kind, static_cast<uint16_t>(step.feature << 8 | step.word), step.space, step.number}, &input);
        } else {
            ticket.Take(step);
        }
    }
    const VelmoraDevMode output = Read(printer, ticket.Document(), input);
    const TicketBuilder made(printer, false);
    Write(printer, made.Document(), output);
    Read(printer, made.Document(), output);
    if (header.flags <= kCallsProvider) {
        CallProvider(printer, ticket.Document(), input, output);
    }
    Validate(printer, ticket.Document());
}

}  // namespace

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t most);

// Mostly changes whole steps: one is put in, taken out, put in another's place, or changed in its bytes.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t most, unsigned seed) {
    std::minstd_rand random(seed);
    const auto below = [&](size_t end) { return std::uniform_int_distribution<size_t>(0, end - 1)(random); };
    const size_t count = size < sizeof(Header) ? 0 : (size - sizeof(Header)) / sizeof(Step);
    const auto kind = below(8);
    if (kind == 0 || size < sizeof(Header)) {
        return LLVMFuzzerMutate(data, size, most);
    }
    // Else most inputs that are kept would be of those that call the provider, which reach the most.
    data[offsetof(Header, flags)] = static_cast<uint8_t>(below(256));
    const size_t end = sizeof(Header) + count * sizeof(Step);
    uint8_t* const place = data + sizeof(Header) + below(count + 1) * sizeof(Step);
    const auto rest = static_cast<size_t>(data + end - place);
    if (kind == 1 && rest > 0) {
        memmove(place, place + sizeof(Step), rest - sizeof(Step));
        return end - sizeof(Step);
    }
    if (kind <= 4 && end + sizeof(Step) <= most) {
        memmove(place + sizeof(Step), place, rest);
        for (size_t i = 0; i < sizeof(Step); ++i) {
            place[i] = static_cast<uint8_t>(below(256));
        }
        if (kind == 2) {
            *place = static_cast<uint8_t>(below(kScoredRef + 1));
        }
        return end + sizeof(Step);
    }
    if (rest > 0) {
        if (kind == 5) {
            memcpy(place, data + sizeof(Header) + below(count) * sizeof(Step), sizeof(Step));
        } else {
            LLVMFuzzerMutate(place, sizeof(Step), sizeof(Step));
        }
    }
    return end;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Printers printers;
    Header header;
    if (size < sizeof(header)) {
        return 0;
    }
    memcpy(&header, data, sizeof(header));
    std::vector<Step> steps((size - sizeof(header)) / sizeof(Step));
    for (size_t i = 0; i < steps.size(); ++i) {
        memcpy(&steps[i], data + sizeof(header) + i * sizeof(Step), sizeof(Step));
    }
    const OpenCheck open;
    Run(printers.models[header.printer % printers.models.size()], header, steps);
    return 0;
}
