#include "driver/ptprovider/watermark_feature.h"

#include <cstring>

#include "driver/base/text.h"
#include "driver/ptprovider/ticket_units.h"

namespace velmora {
namespace {

constexpr const WCHAR* kDefaultFont = TEXT("Arial");

constexpr Keyword kText = PublicKeyword(TEXT("Text"));
constexpr UINT kTextString = 3131;
constexpr Keyword kImage = PrivateKeyword(TEXT("Image"));
constexpr UINT kImageString = 3132;

// --- Parameters. Points of the device mode stand as they are where the unit says micrometres.

constexpr TextParameter kTextText = {PublicKeyword(TEXT("PageWatermarkTextText")), TEXT("Confidential"), 1845};
constexpr TextParameter kTextFont = {PrivateKeyword(TEXT("PageWatermarkTextFont")), kDefaultFont, 1770};
constexpr IntegerParameter kTextOutline = {
    PrivateKeyword(TEXT("PageWatermarkTextOutline")), {0, 0, 1, 1}, unit_name::kBoolean, 3117};
constexpr IntegerParameter kTextBold = {
    PrivateKeyword(TEXT("PageWatermarkTextBold")), {0, 0, 1, 1}, unit_name::kBoolean, 3134};
constexpr IntegerParameter kTextItalic = {
    PrivateKeyword(TEXT("PageWatermarkTextItalic")), {0, 0, 1, 1}, unit_name::kBoolean, 3135};
constexpr IntegerParameter kTextRightToLeft = {
    PrivateKeyword(TEXT("PageWatermarkTextRightToLeft")), {0, 0, 1, 1}, unit_name::kBoolean};
constexpr IntegerParameter kTextFontSize = {
    PublicKeyword(TEXT("PageWatermarkTextFontSize")), {25400, 1500, 500000, 100}, unit_name::kMicrons, 1794};
constexpr IntegerParameter kTextAngle = {
    PublicKeyword(TEXT("PageWatermarkTextAngle")), {45, 0, 359, 1}, unit_name::kDegrees, 1795};
constexpr Keyword kTextColor = PublicKeyword(TEXT("PageWatermarkTextColor"));
constexpr UINT kTextColorString = 3116;
constexpr TextParameter kImageFile = {PrivateKeyword(TEXT("PageWatermarkImageFile")), TEXT("Image Filename"), 1778};
// The device mode has no scale of a picture and no transparency: pictures are as large as they are, and opaque.
constexpr LONG kWholeScale = 100;
constexpr LONG kOpaque = 0;
constexpr IntegerParameter kImageScaleWidth = {
    PrivateKeyword(TEXT("PageWatermarkImageScaleWidth")), {kWholeScale, 1, 10000, 1}, unit_name::kPercent};
constexpr IntegerParameter kImageScaleHeight = {
    PrivateKeyword(TEXT("PageWatermarkImageScaleHeight")), {kWholeScale, 1, 10000, 1}, unit_name::kPercent};
constexpr IntegerParameter kTransparency = {
    PublicKeyword(TEXT("PageWatermarkTransparency")), {kOpaque, 0, 100, 1}, unit_name::kPercent, 3347};
constexpr IntegerParameter kOffsetWidth = {
    PrivateKeyword(TEXT("PageWatermarkPlacementOffsetWidth")), {0, 0, 1000000, 1}, unit_name::kMicrons, 1984};
constexpr IntegerParameter kOffsetHeight = {
    PrivateKeyword(TEXT("PageWatermarkPlacementOffsetHeight")), {0, 0, 1000000, 1}, unit_name::kMicrons, 1986};

// --- What the options say, in its order

struct ScoredParameter {
    Keyword property;
    Keyword parameter;
};
constexpr Keyword kTextProperty = PublicKeyword(TEXT("Text"));
constexpr Keyword kFontProperty = PrivateKeyword(TEXT("Font"));
constexpr Keyword kOutlineProperty = PrivateKeyword(TEXT("Outline"));
constexpr Keyword kBoldProperty = PrivateKeyword(TEXT("Bold"));
constexpr Keyword kItalicProperty = PrivateKeyword(TEXT("Italic"));
constexpr Keyword kFontSizeProperty = PublicKeyword(TEXT("FontSize"));
constexpr Keyword kAngleProperty = PublicKeyword(TEXT("Angle"));
constexpr Keyword kFontColorProperty = PublicKeyword(TEXT("FontColor"));
constexpr ScoredParameter kTextProperties[] = {
    {kTextProperty, kTextText.name},
    {kFontProperty, kTextFont.name},
    {kOutlineProperty, kTextOutline.name},
    {kBoldProperty, kTextBold.name},
    {kItalicProperty, kTextItalic.name},
    {kFontSizeProperty, kTextFontSize.name},
    {kAngleProperty, kTextAngle.name},
    {kFontColorProperty, kTextColor},
    {PublicKeyword(TEXT("Transparency")), kTransparency.name},
    {PrivateKeyword(TEXT("RightToLeft")), kTextRightToLeft.name},
};
constexpr ScoredParameter kImageProperties[] = {
    {PrivateKeyword(TEXT("File")), kImageFile.name},
    {PrivateKeyword(TEXT("ScaleWidth")), kImageScaleWidth.name},
    {PrivateKeyword(TEXT("ScaleHeight")), kImageScaleHeight.name},
    {PrivateKeyword(TEXT("Transparency")), kTransparency.name},
};
constexpr Keyword kOffsetWidthProperty = PrivateKeyword(TEXT("OffsetWidth"));
constexpr Keyword kOffsetHeightProperty = PrivateKeyword(TEXT("OffsetHeight"));
constexpr ScoredParameter kOffsetProperties[] = {
    {kOffsetWidthProperty, kOffsetWidth.name},
    {kOffsetHeightProperty, kOffsetHeight.name},
};

// --- Sub-features

constexpr Keyword kPlacement = PrivateKeyword(TEXT("Placement"));
constexpr UINT kPlacementString = 1983;
constexpr PlainOption kPlacements[] = {
    {TEXT("Center"), 0}, {TEXT("Tiled"), 1},   {TEXT("Top"), 2},      {TEXT("Right"), 3},      {TEXT("Bottom"), 4},
    {TEXT("Left"), 5},   {TEXT("TopLeft"), 6}, {TEXT("TopRight"), 7}, {TEXT("BottomLeft"), 8}, {TEXT("BottomRight"), 9},
};
constexpr Keyword kLayering = PublicKeyword(TEXT("Layering"));
constexpr Keyword kUsage = PrivateKeyword(TEXT("Usage"));
constexpr UINT kUsageString = 3124;
constexpr uint32_t kAllPages = 0;
constexpr uint32_t kFirstPageOnly = 1;
constexpr uint32_t kAllExceptFirstPage = 2;
constexpr PlainOption kUsages[] = {{TEXT("AllPages"), kAllPages},
                                   {TEXT("FirstPageOnly"), kFirstPageOnly},
                                   {TEXT("AllExceptFirstPage"), kAllExceptFirstPage}};

constexpr LONG kWholeTurn = 360;
constexpr int32_t kAngleForNegative = 45;
constexpr int32_t kSizeForNone = 72;

void AddParameters(FeatureWriter& writer, const ElementReference& option, std::span<const ScoredParameter> scored) {
    for (const ScoredParameter& row : scored) {
        writer.AddScoredParameter(option, row.property, row.parameter);
    }
}

void WriteParameters(FeatureWriter& writer, const Keyword& feature, const PrivateDevMode* devMode) {
    constexpr PrivateDevMode kNone = {};
    const PrivateDevMode& own = devMode ? *devMode : kNone;
    const auto color = static_cast<LONG>(DefaultWatermarkColor(writer.Model()));
    writer.BeginParameters(feature);
    if (writer.Writes((own.watermarkFlags & kWatermarkIsText) != 0)) {
        // Nothing that lies in the device mode is trusted to end.
        WCHAR text[ARRAYSIZE(own.watermarkText) + 1] = {};
        WCHAR font[ARRAYSIZE(own.watermarkFont) + 1] = {};
        memcpy(text, own.watermarkText, sizeof(own.watermarkText));
        memcpy(font, own.watermarkFont, sizeof(own.watermarkFont));
        writer.WriteParameter(kTextText, text);
        writer.WriteParameter(kTextFont, font);
        writer.WriteParameter(kTextOutline, (own.watermarkFlags & kWatermarkIsOutline) != 0 ? 1 : 0);
        writer.WriteParameter(kTextBold, own.watermarkBold != 0 ? 1 : 0);
        writer.WriteParameter(kTextItalic, own.watermarkItalic != 0 ? 1 : 0);
        writer.WriteParameter(kTextRightToLeft, ReadsRightToLeft(text) ? 1 : 0);
        writer.WriteParameter(kTextFontSize, own.watermarkFontSize);
        writer.WriteParameter(kTextAngle, own.watermarkAngle / kTenthsPerDegree);
        writer.WriteParameter(
            IntegerParameter{kTextColor, {color, 0, 0xFFFFFF, 1}, unit_name::kColor, kTextColorString},
            static_cast<LONG>(SwapRedAndBlue(own.watermarkColor)));
    }
    if (writer.Writes((own.watermarkFlags & kWatermarkIsImage) != 0)) {
        writer.WriteParameter(kImageFile, TEXT(""));
        writer.WriteParameter(kImageScaleWidth, kWholeScale);
        writer.WriteParameter(kImageScaleHeight, kWholeScale);
    }
    writer.WriteParameter(kTransparency, kOpaque);
    writer.WriteParameter(kOffsetWidth, DotsToMicrons(own.watermarkOffsetX, own.resolutionId));
    writer.WriteParameter(kOffsetHeight, DotsToMicrons(own.watermarkOffsetY, own.resolutionId));
}

// --- Reading: each of these is false where what it reads isn't there

bool ReadText(FeatureReader& reader, const ElementReference& option, PrivateDevMode* devMode) {
    OwnedBstr text;
    if (!reader.ReadParameter(option, kTextProperty, &text)) {
        return false;
    }
    CopyText<WCHAR>(devMode->watermarkText, ARRAYSIZE(devMode->watermarkText), text.Text());
    return true;
}

bool ReadFont(FeatureReader& reader, const ElementReference& option, PrivateDevMode* devMode) {
    OwnedBstr font;
    if (!reader.ReadParameter(option, kFontProperty, &font)) {
        return false;
    }
    const bool isFont = font.Length() > 0 && font.Length() < ARRAYSIZE(devMode->watermarkFont);
    CopyText<WCHAR>(devMode->watermarkFont, ARRAYSIZE(devMode->watermarkFont), isFont ? font.Text() : kDefaultFont);
    return true;
}

// The numbers that a text says of itself, in the order in which they are read, and where they go.
struct NumberReading {
    Keyword property;
    void (*store)(PrivateDevMode* devMode, LONG value);
};
constexpr NumberReading kNumberReadings[] = {
    {kFontSizeProperty,
     [](PrivateDevMode* devMode, LONG size) { devMode->watermarkFontSize = size < 1 ? kSizeForNone : size; }},
    {kAngleProperty,
     [](PrivateDevMode* devMode, LONG angle) {
         devMode->watermarkAngle = angle < 0 ? kAngleForNegative : angle % kWholeTurn * kTenthsPerDegree;
     }},
    {kOutlineProperty,
     [](PrivateDevMode* devMode, LONG outline) {
         devMode->watermarkFlags |= outline != 0 ? uint32_t{kWatermarkIsOutline} : 0;
     }},
    {kBoldProperty, [](PrivateDevMode* devMode, LONG bold) { devMode->watermarkBold = bold != 0 ? 1 : 0; }},
    {kItalicProperty, [](PrivateDevMode* devMode, LONG italic) { devMode->watermarkItalic = italic != 0 ? 1 : 0; }},
};

bool ReadNumbers(FeatureReader& reader, const ElementReference& option, PrivateDevMode* devMode) {
    for (const NumberReading& row : kNumberReadings) {
        LONG value = 0;
        if (!reader.ReadParameter(option, row.property, &value)) {
            return false;
        }
        row.store(devMode, value);
    }
    return true;
}

bool ReadColor(FeatureReader& reader, const ElementReference& option, PrivateDevMode* devMode) {
    // Colours may come with an opaque alpha before them, of either sign.
    ULONG color = 0;
    if (!reader.ReadParameter(option, kFontColorProperty, &color)) {
        return false;
    }
    devMode->watermarkColor = SwapRedAndBlue(color);
    return true;
}

bool ReadPlacement(FeatureReader& reader, const ElementReference& feature, PrivateDevMode* devMode) {
    FoundOption found;
    const PlainOption* const placement = reader.FindOption(feature.Get(), kPlacement, &found)
                                             ? MatchOption(found.name, kPlacement.uri, kPlacements)
                                             : nullptr;
    if (!placement) {
        return false;
    }
    devMode->watermarkPosition = placement->value;
    LONG offset = 0;
    if (!reader.ReadParameter(found.option, kOffsetWidthProperty, &offset)) {
        return false;
    }
    devMode->watermarkOffsetX = MicronsToDots(offset, devMode->resolutionId);
    if (!reader.ReadParameter(found.option, kOffsetHeightProperty, &offset)) {
        return false;
    }
    devMode->watermarkOffsetY = MicronsToDots(offset, devMode->resolutionId);
    return true;
}

}  // namespace

uint32_t DefaultWatermarkColor(const DeviceModel& model) {
    constexpr uint32_t kRed = 0xFF7070;
    constexpr uint32_t kLightGray = 0xC0C0C0;
    return model.colorCapability == kColor ? kRed : kLightGray;
}

void WriteWatermark(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    const PrivateDevMode* const devMode = working ? &working->DevMode()->privatePart : nullptr;
    const uint32_t flags = devMode ? devMode->watermarkFlags : 0;
    if (!writer.Writes((flags & (kWatermarkIsText | kWatermarkIsImage)) != 0)) {
        return;
    }
    const Keyword& name = row.NameFor(writer);
    const ElementReference feature = writer.BeginFeature(name, kNoDisplayName);
    if (writer.Writes((flags & kWatermarkIsText) != 0)) {
        AddParameters(writer, writer.AddOption(feature, kText, kTextString), kTextProperties);
    }
    if (writer.Writes((flags & kWatermarkIsImage) != 0)) {
        AddParameters(writer, writer.AddOption(feature, kImage, kImageString), kImageProperties);
    }
    const ElementReference placement = writer.BeginSubFeature(feature, kPlacement, kPlacementString);
    for (const PlainOption& option : kPlacements) {
        if (writer.Writes(devMode && devMode->watermarkPosition == option.value)) {
            AddParameters(writer, writer.AddOption(placement, {kPlacement.uri, option.name}, option.displayName),
                          kOffsetProperties);
        }
    }
    writer.AddOptions(writer.BeginSubFeature(feature, kLayering, kNoDisplayName), kLayering.uri, kLayers,
                      (flags & kWatermarkUnderPage) != 0 ? kUnderPage : kOverPage);
    writer.AddOptions(writer.BeginSubFeature(feature, kUsage, kUsageString), kUsage.uri, kUsages,
                      devMode && devMode->watermarkPages != 0 ? kFirstPageOnly : kAllPages);
    WriteParameters(writer, name, devMode);
}

void ReadWatermark(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    FoundOption found;
    if (!reader.FindOption(row.names, &found) || !found.name.Is(kText.uri, kText.name)) {
        return;
    }
    PrivateDevMode* const devMode = &working.DevMode()->privatePart;
    devMode->watermarkFlags = kWatermarkIsText;
    if (!ReadText(reader, found.option, devMode) || !ReadFont(reader, found.option, devMode) ||
        !ReadNumbers(reader, found.option, devMode) || !ReadColor(reader, found.option, devMode) ||
        !ReadPlacement(reader, found.feature, devMode)) {
        return;
    }
    const PlainOption* const layer = reader.FindPlainOption(found.feature.Get(), kLayering, kLayers);
    if (!layer) {
        return;
    }
    if (layer->value == kUnderPage) {
        devMode->watermarkFlags |= kWatermarkUnderPage;
    }
    if (const PlainOption* const usage = reader.FindPlainOption(found.feature.Get(), kUsage, kUsages)) {
        devMode->watermarkPages = usage->value == kFirstPageOnly ? 1 : 0;
    }
}

}  // namespace velmora
