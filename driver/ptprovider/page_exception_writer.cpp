#include <algorithm>
#include <cstring>
#include <iterator>

#include "driver/base/format.h"
#include "driver/ptprovider/numbered_name.h"
#include "driver/ptprovider/overlay_features.h"
#include "driver/ptprovider/page_exception_parts.h"
#include "driver/ptprovider/page_exceptions.h"
#include "driver/ptprovider/sheet_choices.h"
#include "driver/ptprovider/ticket_units.h"
#include "driver/ptprovider/watermark_feature.h"

namespace velmora {
namespace {

constexpr const WCHAR* kParametersPrefix = TEXT("DocumentExceptionParameters");
constexpr UINT kMediaExceptionString = 2731;
constexpr UINT kOverlayExceptionString = 3354;
constexpr UINT kSheetPaperString = 3099;
constexpr UINT kSheetMediaString = 3101;
constexpr UINT kSheetBinString = 3100;

// Null for no exception, and for a code that is none.
const WCHAR* NameOfKind(uint8_t kind) {
    if (kind == kBlankSheetAfter) {
        return kBlankSheetPrefix;
    }
    const auto* const row = std::ranges::find_if(kKindNames, [&](const KindName& name) { return name.kind == kind; });
    return row != std::end(kKindNames) ? row->prefix : nullptr;
}

// Up to five digits a page and what separates them.
constexpr size_t kPageListCapacity = kExceptionPages * 6 + 1;

// Codes that are no usage stand for pages that are listed.
uint8_t UsageOf(const ExceptionRecord& exception) {
    return exception.usage <= kNotSpecifiedPages ? exception.usage : uint8_t{kSpecifiedPages};
}

// --- Where watermarks and overlays lie

constexpr Keyword kPlacement = PrivateKeyword(TEXT("Placement"));
constexpr UINT kPlacementString = 1983;
constexpr uint32_t kCentre = 0;
constexpr PlainOption kPlacements[] = {
    {TEXT("Center"), kCentre, 2517}, {TEXT("Tiled"), 1, 2517},      {TEXT("Top"), 2, 2518},
    {TEXT("TopRight"), 7, 2523},     {TEXT("Right"), 3, 2519},      {TEXT("BottomRight"), 9, 2525},
    {TEXT("Bottom"), 4, 2520},       {TEXT("BottomLeft"), 8, 2524}, {TEXT("Left"), 5, 2521},
    {TEXT("TopLeft"), 6, 2522},
};

// --- Parameters of watermarks

constexpr Keyword kText = PrivateKeyword(TEXT("Text"));
constexpr UINT kTextString = 3131;
constexpr Keyword kImage = PrivateKeyword(TEXT("Image"));
constexpr UINT kImageString = 3132;

// The rows of kParameters.
enum WatermarkParameter : uint8_t {
    kPages,
    kTextText,
    kTextFont,
    kTextFontSize,
    kTextAngle,
    kTextColor,
    kTextOutline,
    kTextBold,
    kTextItalic,
    kTextRightToLeft,
    kImageFile,
    kImageScaleWidth,
    kImageScaleHeight,
    kTransparency,
    kOffsetWidth,
    kOffsetHeight,
};

// Colours have an opaque alpha before them and are written as signed numbers.
constexpr uint32_t kOpaqueAlpha = 0xFF000000;
constexpr LONG LeastColor() {
    return static_cast<LONG>(kOpaqueAlpha);
}

// A parameter of an exception: a text where `text` isn't null.
struct ParameterRow {
    const WCHAR* prefix;  // of its name
    UINT displayName;
    const WCHAR* text;  // the default
    ParameterRange<LONG> range;
    const WCHAR* unit;
};
// Stored watermarks say no transparency: 0, opaque. The colour's default is the model's.
constexpr ParameterRow kParameters[] = {
    {kPagesPrefix, 3098, TEXT(""), {}, nullptr},
    {TEXT("DocumentWatermarkExceptionTextText"), 1845, TEXT("Confidential"), {}, nullptr},
    {TEXT("DocumentWatermarkExceptionTextFont"), 1770, TEXT("Arial"), {}, nullptr},
    {TEXT("DocumentWatermarkExceptionTextFontSize"), 1794, nullptr, {25400, 1500, 500000, 100}, unit_name::kMicrons},
    {TEXT("DocumentWatermarkExceptionTextAngle"), 1795, nullptr, {45, 0, 359, 1}, unit_name::kDegrees},
    {TEXT("DocumentWatermarkExceptionTextColor"), 3116, nullptr, {-1, LeastColor(), -1, 1}, unit_name::kColor},
    {TEXT("DocumentWatermarkExceptionTextOutline"), 3117, nullptr, {0, 0, 1, 1}, unit_name::kBoolean},
    {TEXT("DocumentWatermarkExceptionTextBold"), 3134, nullptr, {0, 0, 1, 1}, unit_name::kBoolean},
    {TEXT("DocumentWatermarkExceptionTextItalic"), 3135, nullptr, {0, 0, 1, 1}, unit_name::kBoolean},
    {TEXT("DocumentWatermarkExceptionTextRightToLeft"), kNoDisplayName, nullptr, {0, 0, 1, 1}, unit_name::kBoolean},
    {TEXT("DocumentWatermarkExceptionImageFile"), 1778, TEXT("Image Filename"), {}, nullptr},
    {TEXT("DocumentWatermarkExceptionImageScaleWidth"),
     kNoDisplayName,
     nullptr,
     {100, 1, 10000, 1},
     unit_name::kPercent},
    {TEXT("DocumentWatermarkExceptionImageScaleHeight"),
     kNoDisplayName,
     nullptr,
     {100, 1, 10000, 1},
     unit_name::kPercent},
    {TEXT("DocumentWatermarkExceptionTransparency"), kNoDisplayName, nullptr, {0, 0, 100, 1}, unit_name::kPercent},
    {TEXT("DocumentWatermarkExceptionPlacementOffsetWidth"), 1984, nullptr, {0, 0, 1000000, 1}, unit_name::kMicrons},
    {TEXT("DocumentWatermarkExceptionPlacementOffsetHeight"), 1986, nullptr, {0, 0, 1000000, 1}, unit_name::kMicrons},
};

// What an option says, by the parameters that hold it.
struct ScoredParameter {
    const WCHAR* property;
    WatermarkParameter parameter;
};
constexpr ScoredParameter kTextProperties[] = {
    {TEXT("Text"), kTextText},
    {TEXT("Font"), kTextFont},
    {TEXT("FontSize"), kTextFontSize},
    {TEXT("Angle"), kTextAngle},
    {TEXT("FontColor"), kTextColor},
    {TEXT("Bold"), kTextBold},
    {TEXT("Italic"), kTextItalic},
    {TEXT("Outline"), kTextOutline},
    {TEXT("RightToLeft"), kTextRightToLeft},
    {TEXT("Transparency"), kTransparency},
};
constexpr ScoredParameter kImageProperties[] = {
    {TEXT("File"), kImageFile},
    {TEXT("ScaleWidth"), kImageScaleWidth},
    {TEXT("ScaleHeight"), kImageScaleHeight},
    {TEXT("Transparency"), kTransparency},
};
constexpr ScoredParameter kOffsetProperties[] = {
    {TEXT("OffsetWidth"), kOffsetWidth},
    {TEXT("OffsetHeight"), kOffsetHeight},
};

constexpr int64_t kPositionUnits = 100;

// Writes one exception, or what one can be where there is none to write. The kinds' features differ in their middle
// parts only, each of which is a function of this.
class ExceptionWriter {
  public:
    // `exception`, `pages` null: everything is listed. `watermark`: the one that the exception names, or null.
    ExceptionWriter(FeatureWriter& writer, size_t number, const ExceptionRecord* exception,
                    const ExceptionPageList* pages, const WatermarkRecord* watermark)
        : writer_(writer), number_(number), exception_(exception), pages_(pages), watermark_(watermark) {}

    void WriteMedia() {
        const ElementReference feature = Begin(kMediaPrefix, kMediaExceptionString);
        WriteMediaAndBin(feature);
        WriteUsage(feature);
    }

    void WriteBlankSheet() {
        const ElementReference feature = Begin(kBlankSheetPrefix, kNoDisplayName);
        writer_.AddOptions(feature, kPrivateNamespace, kBlankSheets, exception_ ? exception_->kind : 0);
        const SheetChoice choice = Choice();
        if (writer_.printer.papers.count > 0) {
            WritePaperOptions(writer_, writer_.BeginSubFeature(feature, kSheetPaper, kSheetPaperString),
                              SheetKind::kOther, Selected(choice));
        }
        WriteMediaAndBin(feature);
        WriteUsage(feature);
    }

    void WriteWatermark() {
        const ElementReference feature = Begin(kWatermarkPrefix, kNoDisplayName);
        const bool isImage = watermark_ && watermark_->type == kImageWatermark;
        if (writer_.Writes(!isImage)) {
            AddParameters(writer_.AddOption(feature, kText, kTextString), kTextProperties);
        }
        if (writer_.Writes(isImage)) {
            AddParameters(writer_.AddOption(feature, kImage, kImageString), kImageProperties);
        }
        const ElementReference placement = writer_.BeginSubFeature(feature, kPlacement, kPlacementString);
        for (const PlainOption& option : kPlacements) {
            if (writer_.Writes(option.value == Placement())) {
                AddParameters(writer_.AddOption(placement, {kPlacement.uri, option.name}, option.displayName),
                              kOffsetProperties);
            }
        }
        WriteLayering(feature, kLayers);
        WriteUsage(feature);
    }

    void WriteOverlay() {
        const ElementReference feature = Begin(kOverlayPrefix, kOverlayExceptionString);
        if (exception_) {
            WCHAR file[ARRAYSIZE(exception_->overlayName) + 1] = {};
            memcpy(file, exception_->overlayName, sizeof(exception_->overlayName));
            const ElementReference overlay = writer_.BeginSubFeature(feature, kOverlayFile, kNoDisplayName);
            writer_.AddScoredText(writer_.AddUnnamedOption(overlay, TEXT("")), kFileProperty, file);
        } else if (writer_.printer.overlays.count > 0) {
            WriteOverlayFileOptions(writer_, writer_.BeginSubFeature(feature, kOverlayFile, kNoDisplayName), nullptr);
        }
        WriteLayering(feature, kOverlayLayers);
        WriteUsage(feature);
    }

    // The parameters that the features of the number refer to.
    void WriteParameters() {
        writer_.document.AppendBanner(NumberedName(kParametersPrefix, number_).text);
        if (writer_.Writes(exception_ && HasPageList(UsageOf(*exception_)))) {
            WCHAR list[kPageListCapacity] = {};
            if (pages_) {
                FormatPages(*pages_, list);
            }
            WriteText(kPages, list);
        }
        if (writer_.ListsAll()) {
            DefineWatermark();
        } else if (watermark_) {
            WriteWatermarkValues();
        }
    }

  private:
    SheetChoice Choice() const { return exception_ ? ChoiceOf(*exception_) : SheetChoice{}; }
    const SheetChoice* Selected(const SheetChoice& choice) const { return exception_ ? &choice : nullptr; }

    // Under its banner, without selection type: what is chosen of an exception are its parts.
    ElementReference Begin(const WCHAR* prefix, UINT displayName) {
        const NumberedName name(prefix, number_);
        writer_.document.AppendBanner(name.text);
        return writer_.BeginGroup({}, PrivateKeyword(name.text), displayName);
    }

    void WriteMediaAndBin(const ElementReference& feature) {
        const SheetChoice choice = Choice();
        if (writer_.printer.media.count > 0) {
            WriteMediaTypeOptions(writer_, writer_.BeginSubFeature(feature, kSheetMedia, kSheetMediaString),
                                  Selected(choice));
        }
        if (writer_.printer.trays.count > 0) {
            WriteInputBinOptions(writer_, writer_.BeginSubFeature(feature, kSheetBin, kSheetBinString),
                                 Selected(choice));
        }
    }

    void AddParameters(const ElementReference& option, std::span<const ScoredParameter> properties) {
        for (const ScoredParameter& row : properties) {
            writer_.AddScoredParameter(option, PrivateKeyword(row.property),
                                       PrivateKeyword(NumberedName(kParameters[row.parameter].prefix, number_).text));
        }
    }

    // Of the watermark; a place that is none of them is the centre.
    uint32_t Placement() const {
        const uint32_t place = watermark_ ? watermark_->placement : kCentre;
        const bool isKnown =
            std::ranges::any_of(kPlacements, [&](const PlainOption& option) { return option.value == place; });
        return isKnown ? place : kCentre;
    }

    void WriteLayering(const ElementReference& feature, std::span<const PlainOption> layers) {
        writer_.AddOptions(writer_.BeginSubFeature(feature, kOverlayLayering, kNoDisplayName), kOverlayLayering.uri,
                           layers, exception_ && exception_->underlay != 0 ? kUnderPage : kOverPage);
    }

    void WriteUsage(const ElementReference& feature) {
        const ElementReference usage = writer_.BeginSubFeature(feature, kExceptionUsage, kExceptionUsageString);
        for (const PlainOption& option : kExceptionUsages) {
            if (writer_.Writes(exception_ && option.value == UsageOf(*exception_))) {
                const ElementReference written =
                    writer_.AddOption(usage, {kExceptionUsage.uri, option.name}, option.displayName);
                if (HasPageList(option.value)) {
                    writer_.AddScoredParameter(written, kPagesProperty,
                                               PrivateKeyword(NumberedName(kPagesPrefix, number_).text));
                }
            }
        }
    }

    static void FormatPages(const ExceptionPageList& pages, WCHAR (&list)[kPageListCapacity]) {
        size_t length = 0;
        for (size_t i = 0; i < std::min<size_t>(pages.count, kExceptionPages); ++i) {
            length += FormatWide(list + length, kPageListCapacity - length, i == 0 ? TEXT("%d") : TEXT(",%d"),
                                 pages.pages[i]);
        }
    }

    void WriteText(WatermarkParameter parameter, const WCHAR* value) {
        const ParameterRow& row = kParameters[parameter];
        const NumberedName name(row.prefix, number_);
        writer_.WriteParameter(TextParameter{PrivateKeyword(name.text), row.text, row.displayName}, value);
    }

    void WriteInteger(WatermarkParameter parameter, LONG value) {
        const ParameterRow& row = kParameters[parameter];
        const NumberedName name(row.prefix, number_);
        ParameterRange<LONG> range = row.range;
        if (parameter == kTextColor) {
            range.defaultValue = OpaqueColor(DefaultWatermarkColor(writer_.Model()));
        }
        writer_.WriteParameter(IntegerParameter{PrivateKeyword(name.text), range, row.unit, row.displayName}, value);
    }

    static LONG OpaqueColor(uint32_t color) { return static_cast<LONG>(color | kOpaqueAlpha); }

    void DefineWatermark() {
        for (size_t i = kTextText; i < std::size(kParameters); ++i) {
            const auto parameter = static_cast<WatermarkParameter>(i);
            if (kParameters[i].text) {
                WriteText(parameter, nullptr);
            } else {
                WriteInteger(parameter, 0);
            }
        }
    }

    void WriteWatermarkValues() {
        const WatermarkRecord& record = *watermark_;
        if (record.type == kImageWatermark) {
            WriteText(kImageFile, record.imageName);
            WriteInteger(kImageScaleWidth, static_cast<LONG>(record.scaleX));
            WriteInteger(kImageScaleHeight, static_cast<LONG>(record.scaleY));
        } else {
            WriteText(kTextText, record.text);
            WriteText(kTextFont, record.style.face);
            WriteInteger(kTextOutline, static_cast<LONG>(record.style.outline));
            WriteInteger(kTextBold, static_cast<LONG>(record.style.bold));
            WriteInteger(kTextItalic, static_cast<LONG>(record.style.italic));
            WriteInteger(kTextFontSize, record.style.size);
            WriteInteger(kTextAngle, record.angle / kTenthsPerDegree);
            WriteInteger(kTextColor, OpaqueColor(SwapRedAndBlue(record.style.color)));
            WriteInteger(kTextRightToLeft, static_cast<LONG>(record.style.rightToLeft));
        }
        WriteInteger(kTransparency, kParameters[kTransparency].range.defaultValue);
        WriteInteger(kOffsetWidth, static_cast<LONG>(record.positionX * kPositionUnits));
        WriteInteger(kOffsetHeight, static_cast<LONG>(record.positionY * kPositionUnits));
    }

    FeatureWriter& writer_;
    const size_t number_;
    const ExceptionRecord* const exception_;
    const ExceptionPageList* const pages_;
    const WatermarkRecord* const watermark_;
};

}  // namespace

void WritePageExceptions(FeatureWriter& writer, const WorkingDevMode& working) {
    StoredWatermarks watermarks(working.hPrinter);
    for (size_t i = 0; i < kExceptionSlots; ++i) {
        const ExceptionRecord& exception = working.exceptions[i];
        const size_t number = i + 1;
        const WCHAR* const prefix = NameOfKind(exception.kind);
        const WatermarkRecord* const watermark = watermarks.Find(exception);
        if (!prefix || (exception.kind == kWatermarkException && !watermark) ||
            writer.document.FindFeature(nullptr, kPrivateNamespace, NumberedName(prefix, number).text, nullptr) ==
                S_OK) {
            continue;
        }
        ExceptionWriter written(writer, number, &exception, &working.exceptionPages[i], watermark);
        switch (exception.kind) {
            case kMediaException:
                written.WriteMedia();
                break;
            case kOverlayException:
                written.WriteOverlay();
                break;
            case kWatermarkException:
                written.WriteWatermark();
                break;
            default:
                written.WriteBlankSheet();
                break;
        }
        written.WriteParameters();
    }
}

void ListPageExceptions(FeatureWriter& writer) {
    for (size_t i = 0; i < kExceptionSlots; ++i) {
        ExceptionWriter listed(writer, i + 1, nullptr, nullptr, nullptr);
        listed.WriteMedia();
        listed.WriteBlankSheet();
        listed.WriteWatermark();
        listed.WriteOverlay();
        listed.WriteParameters();
    }
}

}  // namespace velmora
