#include "driver/ptprovider/layout_features.h"

#include <algorithm>
#include <cstdlib>

#include "driver/base/format.h"
#include "driver/ptprovider/sheet_choices.h"
#include "driver/ptprovider/ticket_units.h"

namespace velmora {
namespace {

// --- Several pages on a sheet

constexpr UINT kPagesPerSheetString = 3308;
constexpr Keyword kPagesPerSheet = PublicKeyword(TEXT("PagesPerSheet"));

struct PageCount {
    uint32_t pages;
    bool isOnlyForRasterAndXps;
};
constexpr PageCount kPageCounts[] = {{1, false}, {2, false}, {4, false},  {6, false}, {8, false},
                                     {9, false}, {12, true}, {16, false}, {25, true}};

constexpr Keyword kPresentationDirection = PublicKeyword(TEXT("PresentationDirection"));
constexpr UINT kPresentationDirectionString = 3309;
constexpr uint32_t kLeftTop = 3;
constexpr PlainOption kDirections[] = {
    {TEXT("RightBottom"), 0},  {TEXT("RightTop"), 1},  {TEXT("LeftBottom"), 2},  {TEXT("LeftTop"), kLeftTop},
    {TEXT("BottomRight"), 16}, {TEXT("TopRight"), 17}, {TEXT("BottomLeft"), 18}, {TEXT("TopLeft"), 19},
};

constexpr Keyword kBorders = PrivateKeyword(TEXT("NUpBorders"));
constexpr UINT kBordersString = 3310;
constexpr uint32_t kBordersOn = 1;
constexpr PlainOption kBorderOptions[] = {{TEXT("Off"), 0}, {TEXT("On"), kBordersOn}};
constexpr Keyword kBorderWidthProperty = PrivateKeyword(TEXT("BorderWidth"));
constexpr IntegerParameter kBorderWidth = {
    PrivateKeyword(TEXT("DocumentNUpPageBorderWidth")), {0, 0, 25000, 1}, unit_name::kMicrons, 3090};

bool OffersPageCount(const DeviceModel& model, const PageCount& count) {
    return !count.isOnlyForRasterAndXps || model.pdlType == kPdlImage || model.pdlType == kPdlXps;
}

// An option whose only property is a count, which labels it, too.
void AddCountOption(FeatureWriter& writer, const ElementReference& feature, const Keyword& property, uint32_t count) {
    constexpr size_t kLabelCapacity = 16;
    WCHAR label[kLabelCapacity];
    FormatWide(label, kLabelCapacity, TEXT("%u"), count);
    writer.AddScoredInteger(writer.AddUnnamedOption(feature, label), property, static_cast<LONG>(count));
}

void WriteBorders(FeatureWriter& writer, const ElementReference& feature, const PrivateDevMode* devMode) {
    const ElementReference borders = writer.BeginSubFeature(feature, kBorders, kBordersString);
    for (const PlainOption& option : kBorderOptions) {
        if (writer.Writes(devMode && devMode->layoutMode == option.value)) {
            const ElementReference written = writer.AddOption(borders, {kBorders.uri, option.name}, option.displayName);
            if (option.value == kBordersOn) {
                writer.AddScoredParameter(written, kBorderWidthProperty, kBorderWidth.name);
            }
        }
    }
}

void ReadBorders(FeatureReader& reader, const ElementReference& feature, PrivateDevMode* devMode) {
    FoundOption found;
    if (!reader.FindOption(feature.Get(), kBorders, &found)) {
        return;
    }
    const PlainOption* const option = MatchOption(found.name, kBorders.uri, kBorderOptions);
    if (!option) {
        return;
    }
    devMode->layoutMode = static_cast<uint16_t>(option->value);
    LONG width = 0;
    if (option->value == kBordersOn && reader.ReadParameter(found.option, kBorderWidthProperty, &width)) {
        devMode->nupBorderWidth =
            width < 1 ? int16_t{0} : static_cast<int16_t>(MicronsToDots(width, devMode->resolutionId));
    }
}

// --- A page on several sheets

constexpr UINT kPosterString = 3311;
constexpr Keyword kSheetsPerPage = PublicKeyword(TEXT("SheetsPerPage"));

struct PosterSize {
    LONG sheets;
    uint16_t posterMode;
};
constexpr PosterSize kPosterSizes[] = {{1, 0}, {4, 2}, {9, 3}, {16, 4}, {25, 5}};

// --- Scaling

constexpr uint32_t kNoScaling = 0;
constexpr uint32_t kScalingByPercent = 1;
constexpr uint32_t kScalingToPaper = 2;
constexpr PlainOption kScalingOptions[] = {
    {TEXT("None"), kNoScaling},
    {TEXT("CustomSquare"), kScalingByPercent, 3313},
    {TEXT("FitApplicationMediaSizeToPageMediaSize"), kScalingToPaper, 3314},
};
constexpr Keyword kScaleProperty = PublicKeyword(TEXT("Scale"));
constexpr LONG kWholeSize = 100;
constexpr IntegerParameter kScale = {
    PublicKeyword(TEXT("PageScalingScale")), {kWholeSize, 25, 400, 1}, unit_name::kPercent, 3313};

constexpr Keyword kAlignment = PublicKeyword(TEXT("ScaleOffsetAlignment"));
constexpr uint32_t kCentred = 0;
constexpr uint32_t kTopLeft = 1;
constexpr PlainOption kAlignments[] = {{TEXT("Center"), kCentred}, {TEXT("TopLeft"), kTopLeft}};

// The two modes of each kind of scaling, and the option that stands for it.
struct ScalingKind {
    uint16_t centred;
    uint16_t topLeft;
    uint32_t option;
};
constexpr ScalingKind kScalingKinds[] = {
    {kScaleFitCentred, kScaleFitTopLeft, kScalingToPaper},
    {kScaleZoomCentred, kScaleZoomTopLeft, kScalingByPercent},
    {kScaleCustomCentred, kScaleCustomTopLeft, kScalingByPercent},
};
constexpr const ScalingKind& kFit = kScalingKinds[0];
constexpr const ScalingKind& kZoom = kScalingKinds[1];
constexpr const ScalingKind& kCustomFit = kScalingKinds[2];

// Null for a mode that no option stands for.
const ScalingKind* KindOf(uint16_t scaleMode) {
    const auto* const kind = std::ranges::find_if(kScalingKinds, [&](const ScalingKind& candidate) {
        return scaleMode == candidate.centred || scaleMode == candidate.topLeft;
    });
    return kind != std::end(kScalingKinds) ? kind : nullptr;
}

// The paper that the ticket says becomes the target, and the document's paper is again the one before.
void FitToTicketPaper(WorkingDevMode& working, const ScalingKind& kind) {
    DEVMODEW& common = working.DevMode()->publicPart;
    PrivateDevMode& own = working.DevMode()->privatePart;
    if (own.scaleMode != kind.topLeft) {
        own.scaleMode = kind.centred;
    }
    own.scaleValue = common.dmPaperSize;
    own.scaleLength = common.dmPaperLength;
    own.scaleWidth = common.dmPaperWidth;
    common.dmPaperSize = working.preparedPaper.size;
    common.dmPaperWidth = working.preparedPaper.width;
    common.dmPaperLength = working.preparedPaper.length;
}

// --- Binding

constexpr uint32_t kNoBinding = 0;
constexpr uint32_t kBooklet = 1;
constexpr uint32_t kJapaneseBooklet = 2;
constexpr uint32_t kBindLeft = 3;
constexpr uint32_t kBindTop = 4;
constexpr uint32_t kBindRight = 5;
constexpr uint32_t kBindBottom = 6;

struct BindingOption {
    Keyword name;
    uint32_t value;
};
constexpr BindingOption kBindingOptions[] = {
    {PublicKeyword(TEXT("None")), kNoBinding},
    {PublicKeyword(TEXT("Booklet")), kBooklet},
    {PrivateKeyword(TEXT("JapaneseBooklet")), kJapaneseBooklet},
    {PublicKeyword(TEXT("BindLeft")), kBindLeft},
    {PublicKeyword(TEXT("BindTop")), kBindTop},
    {PublicKeyword(TEXT("BindRight")), kBindRight},
    {PublicKeyword(TEXT("BindBottom")), kBindBottom},
};
constexpr Keyword kGutterProperty = PublicKeyword(TEXT("BindingGutter"));
constexpr Keyword kSignatureProperty = PrivateKeyword(TEXT("SignaturePages"));
constexpr IntegerParameter kGutter = {
    PublicKeyword(TEXT("DocumentBindingGutter")), {0, 0, 250000, 1}, unit_name::kMicrons, 3348};
constexpr IntegerParameter kSignaturePages = {
    PrivateKeyword(TEXT("DocumentBookletSignaturePages")), {0, 0, 250000, 4}, TEXT("pages"), 3349};

// Values of finishingOption: sheets are bound at the edge that the gutter's shift makes room at, or at the other.
constexpr uint16_t kBoundAtShift = 0;
constexpr uint16_t kBoundOpposite = 6;

constexpr bool IsBooklet(uint32_t binding) {
    return binding == kBooklet || binding == kJapaneseBooklet;
}

struct Binding {
    uint32_t option;
    LONG gutter;  // micrometres
};

// Shifts along the page's own edges, whichever way it lies.
struct EdgeShifts {
    int32_t left;
    int32_t top;
};

EdgeShifts ShiftsOf(const VelmoraDevMode& devMode) {
    const PrivateDevMode& own = devMode.privatePart;
    if (devMode.publicPart.dmOrientation == DMORIENT_LANDSCAPE) {
        return {own.gutterShiftY, own.gutterShiftX};
    }
    return {own.gutterShiftX, own.gutterShiftY};
}

// How long a shift is, whichever way it goes.
int32_t Size(int32_t dots) {
    return static_cast<int32_t>(std::min<int64_t>(std::abs(int64_t{dots}), INT32_MAX));
}

Binding BindingOf(const VelmoraDevMode& devMode) {
    const PrivateDevMode& own = devMode.privatePart;
    if (own.booklet > 0) {
        return {own.nupOrder == 0 ? kBooklet : kJapaneseBooklet, DotsToMicrons(own.bookletGutter, own.resolutionId)};
    }
    const EdgeShifts shifts = ShiftsOf(devMode);
    const auto bind = [&](uint32_t option, int32_t dots) {
        return Binding{option, DotsToMicrons(Size(dots), own.resolutionId)};
    };
    if (shifts.left > 0) {
        return bind(kBindLeft, shifts.left);
    }
    if (shifts.top > 0) {
        return bind(kBindTop, shifts.top);
    }
    if (shifts.left < 0) {
        return bind(kBindRight, shifts.left);
    }
    if (shifts.top < 0) {
        return bind(kBindBottom, shifts.top);
    }
    return {kNoBinding, 0};
}

// Where the gutter goes that a ticket says.
void StoreGutter(VelmoraDevMode* devMode, uint32_t binding, LONG microns) {
    PrivateDevMode& own = devMode->privatePart;
    const int32_t dots = Size(MicronsToDots(microns, own.resolutionId));
    if (own.booklet != 0) {
        own.bookletGutter = static_cast<uint16_t>(dots);
        own.gutterShiftX = 0;
        own.gutterShiftY = 0;
        return;
    }
    if (binding < kBindLeft) {
        return;
    }
    const bool isAcross = binding == kBindLeft || binding == kBindRight;
    const bool isLandscape = devMode->publicPart.dmOrientation == DMORIENT_LANDSCAPE;
    own.bookletGutter = 0;
    own.gutterShiftX = isAcross != isLandscape ? dots : 0;
    own.gutterShiftY = isAcross != isLandscape ? 0 : dots;
    own.finishingOption = binding == kBindRight || binding == kBindBottom ? kBoundOpposite : kBoundAtShift;
}

}  // namespace

void WritePagesPerSheet(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    const PrivateDevMode* const devMode = working ? &working->DevMode()->privatePart : nullptr;
    const Keyword& name = row.NameFor(writer);
    const ElementReference feature = writer.BeginFeature(name, kPagesPerSheetString);
    for (const PageCount& count : kPageCounts) {
        if (OffersPageCount(writer.Model(), count) && writer.Writes(devMode && devMode->pagesPerSheet == count.pages)) {
            AddCountOption(writer, feature, kPagesPerSheet, count.pages);
        }
    }
    if (!writer.Writes(devMode && devMode->booklet == 0 && devMode->pagesPerSheet > 1)) {
        return;
    }
    uint32_t order = devMode ? devMode->nupOrder : 0;
    if (devMode && devMode->pagesPerSheet == 2 && order != 0) {
        order = kLeftTop;
    }
    writer.AddOptions(writer.BeginSubFeature(feature, kPresentationDirection, kPresentationDirectionString),
                      kPresentationDirection.uri, kDirections, order);
    WriteBorders(writer, feature, devMode);
    if (writer.Writes(devMode && devMode->layoutMode == kBordersOn)) {
        writer.BeginParameters(name);
        writer.WriteParameter(kBorderWidth,
                              devMode ? DotsToMicrons(devMode->nupBorderWidth, devMode->resolutionId) : 0);
    }
}

void ReadPagesPerSheet(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    FoundOption found;
    if (!reader.FindUnnamedOption(row.names, &found)) {
        return;
    }
    PrivateDevMode& devMode = working.DevMode()->privatePart;
    LONG pages = 0;
    if (reader.ReadScored(found.option, kPagesPerSheet, &pages)) {
        for (const PageCount& count : kPageCounts) {
            if (pages == static_cast<LONG>(count.pages) && OffersPageCount(reader.Model(), count)) {
                devMode.pagesPerSheet = count.pages;
            }
        }
    }
    if (const PlainOption* const direction =
            reader.FindPlainOption(found.feature.Get(), kPresentationDirection, kDirections)) {
        const bool isOnlyTurned = devMode.pagesPerSheet == 2 && direction->value != 0;
        devMode.nupOrder = isOnlyTurned ? uint16_t{1} : static_cast<uint16_t>(direction->value);
    }
    ReadBorders(reader, found.feature, &devMode);
}

void WritePoster(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    const ElementReference feature = writer.BeginFeature(row.NameFor(writer), kPosterString);
    for (const PosterSize& size : kPosterSizes) {
        if (writer.Writes(working && working->DevMode()->privatePart.posterMode == size.posterMode)) {
            AddCountOption(writer, feature, kSheetsPerPage, static_cast<uint32_t>(size.sheets));
        }
    }
}

void ReadPoster(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    FoundOption found;
    LONG sheets = 0;
    if (!reader.FindUnnamedOption(row.names, &found) || !reader.ReadScored(found.option, kSheetsPerPage, &sheets)) {
        return;
    }
    for (const PosterSize& size : kPosterSizes) {
        if (sheets == size.sheets || (sheets == 0 && size.posterMode == 0)) {
            working.DevMode()->privatePart.posterMode = size.posterMode;
        }
    }
}

void WriteScaling(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    const PrivateDevMode* const devMode = working ? &working->DevMode()->privatePart : nullptr;
    const ScalingKind* const kind = devMode ? KindOf(devMode->scaleMode) : nullptr;
    const bool isScaled = devMode && devMode->scaleMode != 0;
    const Keyword& name = row.NameFor(writer);
    const ElementReference feature = writer.BeginFeature(name, kNoDisplayName);
    for (const PlainOption& option : kScalingOptions) {
        if (writer.Writes(isScaled ? kind && kind->option == option.value : option.value == kNoScaling)) {
            const ElementReference written = writer.AddOption(feature, {name.uri, option.name}, option.displayName);
            if (option.value == kScalingByPercent) {
                writer.AddScoredParameter(written, kScaleProperty, kScale.name);
            }
        }
    }
    if (writer.Writes(isScaled)) {
        const ElementReference alignment = writer.BeginSubFeature(feature, kAlignment, kNoDisplayName);
        if (writer.ListsAll() || kind) {
            writer.AddOptions(alignment, kAlignment.uri, kAlignments,
                              kind && devMode->scaleMode == kind->topLeft ? kTopLeft : kCentred);
        }
    }
    if (writer.Writes(kind && kind->option == kScalingByPercent)) {
        writer.BeginParameters(name);
        writer.WriteParameter(kScale, kind == &kZoom ? devMode->scaleValue : kWholeSize);
    }
}

void ReadScaling(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    FoundOption found;
    if (!reader.FindOption(row.names, &found)) {
        return;
    }
    const PlainOption* const option = MatchOption(found.name, kKeywordsNamespace, kScalingOptions);
    if (!option) {
        return;
    }
    PrivateDevMode& devMode = working.DevMode()->privatePart;
    LONG scale = 0;
    if (option->value == kNoScaling) {
        devMode.scaleMode = 0;
    } else if (option->value == kScalingToPaper) {
        FitToTicketPaper(working, kFit);
    } else if (reader.ReadParameter(found.option, kScaleProperty, &scale)) {
        if (scale == kWholeSize) {
            FitToTicketPaper(working, kCustomFit);
        } else if (scale > 0) {
            if (devMode.scaleMode != kZoom.topLeft) {
                devMode.scaleMode = kZoom.centred;
            }
            devMode.scaleValue = static_cast<int16_t>(scale);
        }
    }
    const PlainOption* const alignment = reader.FindPlainOption(found.feature.Get(), kAlignment, kAlignments);
    const ScalingKind* const kind = KindOf(devMode.scaleMode);
    if (alignment && kind) {
        devMode.scaleMode = alignment->value == kTopLeft ? kind->topLeft : kind->centred;
    }
}

void WriteBinding(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    const Binding binding = working ? BindingOf(*working->DevMode()) : Binding{};
    const Keyword& name = row.NameFor(writer);
    const ElementReference feature = writer.BeginFeature(name, kNoDisplayName);
    for (const BindingOption& option : kBindingOptions) {
        if (!writer.Writes(option.value == binding.option)) {
            continue;
        }
        const ElementReference written = writer.AddOption(feature, option.name, kNoDisplayName);
        if (option.value != kNoBinding) {
            writer.AddScoredParameter(written, kGutterProperty, kGutter.name);
        }
        if (IsBooklet(option.value)) {
            writer.AddScoredParameter(written, kSignatureProperty, kSignaturePages.name);
        }
    }
    if (!writer.Writes(binding.option != kNoBinding)) {
        return;
    }
    writer.BeginParameters(name);
    writer.WriteParameter(kGutter, binding.gutter);
    if (writer.Writes(IsBooklet(binding.option))) {
        writer.WriteParameter(kSignaturePages, working ? working->DevMode()->privatePart.booklet : 0);
    }
}

void ReadBinding(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    FoundOption found;
    if (!reader.FindOption(row.names, &found)) {
        return;
    }
    const auto* const option = std::ranges::find_if(kBindingOptions, [&](const BindingOption& candidate) {
        return found.name.Is(candidate.name.uri, candidate.name.name);
    });
    if (option == std::end(kBindingOptions)) {
        return;
    }
    PrivateDevMode& devMode = working.DevMode()->privatePart;
    if (option->value == kNoBinding) {
        devMode.booklet = 0;
        devMode.nupOrder = 0;
    } else if (IsBooklet(option->value)) {
        devMode.booklet = 1;
        devMode.nupOrder = option->value == kJapaneseBooklet ? 1 : 0;
    }
    LONG value = 0;
    if (reader.ReadParameter(found.option, kGutterProperty, &value)) {
        StoreGutter(working.DevMode(), option->value, value);
    }
    if (devMode.booklet > 0 && reader.ReadParameter(found.option, kSignatureProperty, &value)) {
        devMode.booklet = static_cast<int16_t>(value);
    }
}

}  // namespace velmora
