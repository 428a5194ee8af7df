#include "driver/ui/paper_rules.h"

#include <algorithm>
#include <iterator>

#include "driver/base/text.h"
#include "driver/devdesc/model_tables.h"
#include "driver/ui/nup_border.h"
#include "driver/ui/paper_choices.h"

namespace velmora {
namespace {

constexpr int kMostCopies = 999;
constexpr int kLeastZoom = 25;
constexpr int kMostZoom = 400;
constexpr int kMostZoomOfLong = 300;
constexpr int kUsualZoom = 100;

// Lengths of custom sizes (0.01 mm) that are zoomed as the long papers are: when the page opens, and afterwards.
constexpr int32_t kLongAtOpening = 29700;
constexpr int32_t kLong = 29710;
constexpr int32_t kLongest = 35560;

// Custom sizes up to these (0.01 mm) are too small for a duplex unit.
constexpr int32_t kSimplexWidth[] = {10000, 17590};
constexpr int32_t kSimplexLength[] = {21000, 24993};

// In a device mode.
constexpr uint16_t kStoredNoFitPaper = 65535;
constexpr int16_t kNoScaleValue = -1;
constexpr uint16_t kNoScaling = 0;
constexpr short kNoDuplex = 0;

// dmDuplex by uiBinding.
constexpr short kDuplexes[] = {DMDUP_VERTICAL, DMDUP_VERTICAL, DMDUP_HORIZONTAL, DMDUP_HORIZONTAL};

// nupOrder by uiPageOrder: 1 to 4 are orders of two pages on a sheet (the last two of landscape pages), 5 to 8 of four.
constexpr uint16_t kNupOrders[] = {0, 0, 1, 0, 1, 0, 16, 2, 18};

// What a layout makes of a device mode.
struct LayoutFields {
    uint32_t layout;
    uint16_t pagesPerSheet;
    uint16_t posterMode;
    uint16_t firstOrder;  // of uiPageOrder
    uint16_t lastOrder;
};
constexpr LayoutFields kLayoutFields[] = {
    {kOnePage, 1, 0, 1, 1},   {kTwoPages, 2, 0, 1, 4},  {kFourPages, 4, 0, 5, 8},
    {kPoster2x2, 1, 2, 1, 1}, {kPoster3x3, 1, 3, 1, 1}, {kPoster4x4, 1, 4, 1, 1},
};

constexpr PaperCommand kCommands[] = {
    {kPaperControl, CBN_SELCHANGE, kPaperChanged, 0},
    {kFitPaperControl, CBN_SELCHANGE, kFitPaperChanged, 0},
    {kSourceControl, CBN_SELCHANGE, kSourceChanged, 0},
    {kMediumControl, CBN_SELCHANGE, kMediumChanged, 0},
    {kFlagAControl, BN_CLICKED, kFlagAChanged, 0},
    {kCodeControl, EN_CHANGE, 0, 0},
    {kCopiesControl, EN_CHANGE, 0, 0},
    {kCollateControl, BN_CLICKED, 0, kRedrawCollate},
    {kZoomControl, BN_CLICKED, kZoomChanged, 0},
    {kZoomPercentControl, EN_CHANGE, 0, 0},
    {kPortraitControl, BN_CLICKED, 0, kRedrawPreview},
    {kLandscapeControl, BN_CLICKED, 0, kRedrawPreview},
    {kRotate180Control, BN_CLICKED, 0, kRedrawPreview},
    {kDuplexControl, BN_CLICKED, kDuplexChanged, kRedrawPreview},
    {kFlagBControl, BN_CLICKED, kFlagBChanged, kRedrawPreview | kRedrawFlagC},
    {kFlagCControl, BN_CLICKED, 0, 0},
    {kLayoutControl, CBN_SELCHANGE, kLayoutChanged, kRedrawPreview},
    {kPaperDefaultsControl, BN_CLICKED, kEveryChange, kRedrawPreview | kRedrawCollate},
};

template <size_t N>
bool IsAnyOf(uint32_t value, const uint32_t (&group)[N]) {
    return std::find(group, group + N, value) != group + N;
}

bool IsWithin(int32_t value, const int32_t (&limits)[2]) {
    return value >= limits[0] && value <= limits[1];
}

// A value that has no class, which a list of the page can't bring up, is treated as `otherwise` is.
template <size_t N>
size_t ClassOf(uint32_t value, const uint32_t (&classes)[N], size_t otherwise) {
    const auto index = static_cast<size_t>(std::find(classes, classes + N, value) - classes);
    return index < N ? index : otherwise;
}

// A paper without a class (a user's form) is treated as A4, which every printer takes from everywhere.
size_t PaperClassOf(const PaperChoices& page) {
    return ClassOf(page.paper.selected, kPaperClasses, kA4Class);
}

size_t FitClassOf(const PaperChoices& page) {
    return ClassOf(page.fitPaper.selected, kFitClasses, 0);
}

const ChoiceEntry* PapersOf(const PaperChoices& page) {
    return page.isJapanese ? kJapanesePapers : kPapers;
}

const ChoiceEntry* FitPapersOf(const PaperChoices& page) {
    return page.isJapanese ? kJapaneseFitPapers : kFitPapers;
}

const ChoiceEntry* BothSidesMediaOf(const PaperChoices& page) {
    return page.isJapanese ? kJapaneseBothSidesMedia : kBothSidesMedia;
}

void OfferPapers(PaperChoices* page, uint32_t filter, bool hasCustomSize) {
    page->paper.lastChoice = hasCustomSize ? &kCustomSizeChoice : nullptr;
    RefillChoices(&page->paper, {PapersOf(*page), filter});
}

// As RefillChoices, with a value instead of the first one for a selection that isn't offered any more.
void RefillChoicesOr(ChoiceList* list, const ChoiceSource& source, uint32_t otherwise) {
    list->source = source;
    SelectChoice(list, FindChoice(*list, list->selected) ? list->selected : otherwise);
}

bool UsesSecondTray(const PaperChoices& page) {
    return page.hasSecondTray && page.source.selected == kSecondTray;
}

int MostZoomOf(const PaperChoices& page, int32_t longFrom) {
    const bool isLong =
        IsAnyOf(page.paper.selected, kLongPapers) ||
        (page.paper.selected == kCustomSizePaper && IsWithin(page.details.customLength, {longFrom, kLongest}));
    return isLong ? kMostZoomOfLong : kMostZoom;
}

void ShowZoom(PaperChoices* page, bool isShown) {
    page->zoom.isShown = isShown;
    page->zoom.isEnabled = isShown;
    page->isZoomPercentEnabled = isShown;
}

// A unit that the model can't have has no control that could be enabled.
void EnableDuplex(PaperChoices* page, bool isEnabled) {
    page->duplex.isEnabled = isEnabled && page->duplexUnit != DuplexUnit::kNotApplicable;
}

void ClearDuplex(PaperChoices* page) {
    page->duplex.isChecked = false;
    EnableDuplex(page, false);
}

void ClearBox(CheckBox* box) {
    box->isChecked = false;
    box->isEnabled = false;
}

// The filter of the layouts where a sheet may have more than one page.
uint32_t LayoutFilterOf(const PaperChoices& page, bool isOnBothSides) {
    if (isOnBothSides) {
        return kNoPosters;
    }
    const uint32_t fit = page.fitPaper.selected;
    const bool isLegal = fit == DMPAPER_LEGAL || (fit == kNoFitPaper && page.paper.selected == DMPAPER_LEGAL);
    return isLegal ? kNoLargestPoster : kEveryChoice;
}

// The dependencies of one change. Each step relies on what those before it have chosen.
struct Update {
    PaperChoices& page;
    uint32_t changes;
    size_t paperClass;
    size_t fitClass;

    bool Has(uint32_t any) const { return (changes & any) != 0; }
    uint32_t Paper() const { return page.paper.selected; }
    uint32_t Fit() const { return page.fitPaper.selected; }
    uint32_t Medium() const { return page.medium.selected; }
};

// Selects another paper than the user did, and goes on as with A4.
void ForcePaper(Update& update, uint32_t paper) {
    if (update.Paper() != paper) {
        SelectChoice(&update.page.paper, paper);
        update.paperClass = kA4Class;
    }
}

void FitPaperToMedium(Update& update) {
    if (!update.Has(kFitPaperChanged | kMediumChanged)) {
        return;
    }
    const int8_t demand = kPaperDemands[update.fitClass].For(update.Medium());
    const bool isPostcardOrCustom = update.Paper() == DMPAPER_JAPANESE_POSTCARD || update.Paper() == kCustomSizePaper;
    const bool hasCustomSize = demand != kNoCustomSize && demand != kNoPostcardNoCustomSize;
    if (demand == kNoPostcardNoCustomSize && isPostcardOrCustom) {
        SelectChoice(&update.page.paper, DMPAPER_A4);
    }
    OfferPapers(&update.page, kEveryChoice, hasCustomSize);
    if (!hasCustomSize) {
        update.paperClass = kA4Class;
    } else if (demand == kPostcardOrCustomSize && !isPostcardOrCustom) {
        ForcePaper(update, DMPAPER_A4);
    } else if (demand == kEnvelope10) {
        ForcePaper(update, DMPAPER_ENV_10);
    } else if (demand == kEnvelopeDL) {
        ForcePaper(update, DMPAPER_ENV_DL);
    }
}

// Fit-to papers by the tray, for papers of no special kind.
ChoiceSource FitPapersBySource(const Update& update) {
    const PaperChoices& page = update.page;
    if (!UsesSecondTray(page)) {
        const bool hasPostcard = page.isJapanese && update.Paper() == DMPAPER_A4;
        return {FitPapersOf(page), hasPostcard ? kEveryChoice : 1};
    }
    const bool isCassettePaper = IsAnyOf(update.Paper(), kCassettePapers);
    const bool isCassetteFit = IsAnyOf(update.Fit(), kCassetteFitPapers);
    const bool isFromCassette =
        update.Has(kPaperChanged) ? isCassettePaper : isCassetteFit || (isCassettePaper && update.Fit() == kNoFitPaper);
    return isFromCassette ? ChoiceSource{FitPapersOf(page), 1} : ChoiceSource{kSecondTrayFitPapers, kEveryChoice};
}

// Fit-to papers of A4.
ChoiceSource FitPapersByLayout(const Update& update) {
    const PaperChoices& page = update.page;
    if (UsesSecondTray(page)) {
        return {kSecondTrayFitPapers, kEveryChoice};
    }
    const bool isOnBothSides = page.duplexUnit == DuplexUnit::kInstalled && page.duplex.isChecked;
    const bool hasPostcard = page.isJapanese && page.layout.selected == kOnePage && !isOnBothSides;
    return {FitPapersOf(page), hasPostcard ? 3u : 1u};
}

ChoiceSource OfferedFitPapers(const Update& update) {
    switch (kFitOffers[update.paperClass].For(update.Medium())) {
        case kFitByLayout:
            return FitPapersByLayout(update);
        case kFitPostcard:
            return {FitPapersOf(update.page), 2};
        case kFitNothing:
            return {kFewFitPapers, 0};
        case kFitOffice:
            return {kFewFitPapers, 1};
        case kFitEnvelope10:
            return {kFewFitPapers, 2};
        case kFitEnvelopeDL:
            return {kFewFitPapers, 4};
        default:
            return FitPapersBySource(update);
    }
}

// "None" is the first entry of every list, so that is what a fit-to paper becomes which isn't offered any more.
void RefillFitPapers(Update& update) {
    const uint32_t causes = kPaperChanged | kMediumChanged | kSourceChanged |
                            (update.page.isJapanese ? kLayoutChanged | kDuplexChanged : 0u);
    if (!update.Has(causes)) {
        return;
    }
    const ChoiceSource offered = OfferedFitPapers(update);
    if (update.Has(kPaperChanged)) {
        update.page.fitPaper.selected = kNoFitPaper;
    }
    RefillChoices(&update.page.fitPaper, offered);
    update.fitClass = FitClassOf(update.page);
}

void RefillSourcesForPaper(Update& update) {
    if (!update.Has(kPaperChanged)) {
        return;
    }
    ChoiceList& sources = update.page.source;
    if (IsAnyOf(kPaperClasses[update.paperClass], kCassettePapers)) {
        RefillChoicesOr(&sources, {kSources, kSourcesWithoutTray}, kCassette);
    } else {
        RefillChoices(&sources, {kSources, update.page.hasSecondTray ? kEveryChoice : kSourcesWithoutTray});
    }
}

void RefillSourcesForMedium(Update& update) {
    if (!update.Has(kFitPaperChanged | kMediumChanged) || !update.page.hasSecondTray) {
        return;
    }
    const bool isCassettePaper = IsAnyOf(update.Paper(), kCassettePapers);
    const ChoiceList trayFits = {{kSecondTrayFitPapers, kEveryChoice}, nullptr, 0};
    const bool fitsTray =
        update.Fit() == kNoFitPaper ? !isCassettePaper : FindChoice(trayFits, update.Fit()) != nullptr;
    const ChoiceList trayMedia = {{kBothSidesMedia, 0}, nullptr, 0};
    const bool hasTray = fitsTray && FindChoice(trayMedia, update.Medium());
    RefillChoicesOr(&update.page.source, {kSources, hasTray ? kEveryChoice : kSourcesWithoutTray},
                    isCassettePaper ? kCassette : kUsualSource);
}

// Media of papers that can be printed on both sides.
ChoiceSource MediaBySides(const PaperChoices& page, const ChoiceSource& onOneSide) {
    if (page.duplex.isChecked) {
        return {BothSidesMediaOf(page), 0};
    }
    return page.flagB.isChecked ? ChoiceSource{BothSidesMediaOf(page), 1} : onOneSide;
}

ChoiceSource PostcardMedia(const PaperChoices& page) {
    return page.flagB.isChecked ? ChoiceSource{BothSidesMediaOf(page), kEveryChoice} : ChoiceSource{kMedia, 2};
}

bool IsOfficeFit(uint32_t fit) {
    return fit == DMPAPER_LETTER || fit == DMPAPER_A4;
}

ChoiceSource OfferedMedia(const Update& update) {
    const PaperChoices& page = update.page;
    switch (update.Paper()) {
        case DMPAPER_A4:
            if (page.isJapanese && update.Fit() == DMPAPER_JAPANESE_POSTCARD) {
                return {kMedia, 2};
            }
            [[fallthrough]];
        case DMPAPER_LETTER:
        case DMPAPER_A3:
            return MediaBySides(page, {kMedia, 1});
        case DMPAPER_ENV_10:
        case DMPAPER_ENV_DL:
            return {kEnvelopeMedia, kEveryChoice};
        case DMPAPER_JAPANESE_POSTCARD:
            return PostcardMedia(page);
        default:
            return {kMedia, IsOfficeFit(update.Fit()) ? 1u : 0u};
    }
}

ChoiceSource OfferedMediaAfterFlagB(const Update& update) {
    const PaperChoices& page = update.page;
    const bool isPostcardFit = update.Fit() == DMPAPER_JAPANESE_POSTCARD;
    if (kTakesEnvelopeMedia[update.paperClass][update.fitClass]) {
        return {kEnvelopeMedia, kEveryChoice};
    }
    switch (update.Paper()) {
        case DMPAPER_A4:
            return MediaBySides(page, {kMedia, isPostcardFit ? kEveryChoice : 1});
        case DMPAPER_LETTER:
        case DMPAPER_A3:
            return MediaBySides(page, {kMedia, 1});
        case DMPAPER_JAPANESE_POSTCARD:
            return PostcardMedia(page);
        default:
            return {kMedia, IsOfficeFit(update.Fit()) ? 1u : isPostcardFit ? 2u : 0u};
    }
}

// The usual medium is the first entry of every list but the envelopes', so that is what a medium becomes which isn't
// offered any more.
void RefillMedia(Update& update) {
    PaperChoices& page = update.page;
    constexpr uint32_t kCauses = kPaperChanged | kFitPaperChanged | kMediumChanged | kDuplexChanged | kSourceChanged;
    if (update.Has(kCauses | kFlagBChanged) && page.source.selected == kSecondTray) {
        RefillChoices(&page.medium, {BothSidesMediaOf(page), 0});
    } else if (update.Has(kCauses)) {
        RefillChoices(&page.medium, OfferedMedia(update));
    } else if (update.Has(kFlagBChanged)) {
        constexpr uint32_t kOfficePapers[] = {DMPAPER_A3, DMPAPER_A4, DMPAPER_LETTER};
        if (page.medium.selected == kOfficeMedium && !IsAnyOf(update.Paper(), kOfficePapers)) {
            page.medium.selected = kUsualMedium;
        }
        RefillChoices(&page.medium, OfferedMediaAfterFlagB(update));
    }
}

void EnableCode(Update& update) {
    if (update.Has(kFlagAChanged)) {
        update.page.isCodeEnabled = update.page.isFlagA;
    }
}

void RefillLayouts(Update& update) {
    if (!update.Has(kPaperChanged | kFitPaperChanged | kZoomChanged | kFlagBChanged | kDuplexChanged)) {
        return;
    }
    PaperChoices& page = update.page;
    const bool isOnePage = page.zoom.isChecked || IsAnyOf(update.Paper(), kOnePagePapers) ||
                           (update.Paper() == DMPAPER_A4 && update.Fit() == DMPAPER_JAPANESE_POSTCARD);
    const bool isOnBothSides = page.duplex.isChecked || page.flagB.isChecked;
    RefillChoices(&page.layout, {kPageLayouts, isOnePage ? kOnePageOnly : LayoutFilterOf(page, isOnBothSides)});
    page.redraws |= kRedrawPreview;
}

void ShowAndProposeZoom(Update& update) {
    PaperChoices& page = update.page;
    const bool isUnzoomed = IsAnyOf(update.Paper(), kUnzoomedPapers);
    page.zoom.isChecked = page.zoom.isChecked && !isUnzoomed;
    ShowZoom(&page, page.layout.selected == kOnePage && !isUnzoomed);
    page.isZoomPercentEnabled = page.zoom.isShown && page.zoom.isChecked;
    if (!update.Has(kPaperChanged | kFitPaperChanged | kZoomChanged)) {
        return;
    }
    page.zoomPercent.highest = MostZoomOf(page, kLong);
    const bool isStored = update.changes == kOpening && page.zoom.isChecked;
    const int proposal = kZoomProposals[update.paperClass][update.fitClass];
    if (!isStored && proposal != 0) {
        SetNumber(&page.zoomPercent, proposal);
    }
}

void LimitPosters(Update& update) {
    for (CheckBox* const box : {&update.page.collate, &update.page.rotate180}) {
        box->isEnabled = !IsPoster(update.page.layout.selected);
        box->isChecked = box->isChecked && box->isEnabled;
    }
}

void TurnOffBothSides(PaperChoices* page) {
    ClearDuplex(page);
    ClearBox(&page->flagB);
    ClearBox(&page->flagC);
}

// Whether the sheet can't be printed on both sides at all.
bool IsOneSided(const Update& update) {
    const PaperChoices& page = update.page;
    const bool isOneSidedPaper = IsAnyOf(update.Paper(), kOneSidedPapers);
    return IsAnyOf(update.Medium(), kOneSidedMedia) || IsAnyOf(update.Fit(), kOneSidedPapers) ||
           (isOneSidedPaper && update.Fit() == kNoFitPaper) ||
           (update.Paper() == kCustomSizePaper &&
            (IsWithin(page.details.customWidth, kSimplexWidth) || IsWithin(page.details.customLength, kSimplexLength)));
}

void DecideBothSides(Update& update) {
    PaperChoices& page = update.page;
    const bool isPoster = IsPoster(page.layout.selected);
    if (IsOneSided(update)) {
        TurnOffBothSides(&page);
    } else if (IsAnyOf(update.Paper(), kOneSidedPapers)) {
        EnableDuplex(&page, page.duplexUnit == DuplexUnit::kInstalled);
        page.flagB.isEnabled = true;
    } else if (IsAnyOf(update.Medium(), kNoDuplexMedia)) {
        ClearDuplex(&page);
        if (!page.flagB.isChecked) {
            page.flagB.isEnabled = !isPoster;
            page.flagC.isEnabled = false;
        }
    } else if (isPoster) {
        EnableDuplex(&page, false);
        page.flagB.isEnabled = false;
        page.flagC.isEnabled = false;
    } else {
        if (page.duplexUnit == DuplexUnit::kNotInstalled || page.flagB.isChecked ||
            update.Paper() == DMPAPER_JAPANESE_POSTCARD) {
            ClearDuplex(&page);
        } else {
            EnableDuplex(&page, true);
        }
        page.flagB.isEnabled = true;
    }
}

void LimitBothSides(Update& update) {
    if (update.Has(kPaperChanged | kFitPaperChanged | kMediumChanged)) {
        DecideBothSides(update);
    }
    if (update.Has(kLayoutChanged)) {
        if (IsPoster(update.page.layout.selected)) {
            TurnOffBothSides(&update.page);
        } else {
            DecideBothSides(update);
        }
    }
}

void FollowDuplex(Update& update) {
    if (update.Has(kDuplexChanged)) {
        update.page.flagB.isEnabled = !update.page.duplex.isChecked;
        update.page.flagC.isEnabled = false;
    }
}

void FollowFlagB(Update& update) {
    if (!update.Has(kFlagBChanged)) {
        return;
    }
    PaperChoices& page = update.page;
    if (page.flagB.isChecked) {
        ClearDuplex(&page);
        page.flagC.isEnabled = true;
        OfferPapers(&page, page.isJapanese ? kEveryChoice : 1, true);
    } else {
        EnableDuplex(&page, page.duplexUnit == DuplexUnit::kInstalled);
        ClearBox(&page.flagC);
        RefillPapers(&page);
    }
}

void LimitLayoutDetails(Update& update) {
    PaperChoices& page = update.page;
    page.isDetailsEnabled = !IsPoster(page.layout.selected);
    if (!page.isDetailsEnabled) {
        ResetLayoutDetails(&page.details);
    } else if (page.layout.selected == kOnePage) {
        page.details.uiFlagE = 0;
    }
}

using Step = void (*)(Update&);
constexpr Step kSteps[] = {
    FitPaperToMedium, RefillFitPapers, RefillSourcesForPaper, RefillSourcesForMedium, RefillMedia,
    EnableCode,       RefillLayouts,   ShowAndProposeZoom,    LimitPosters,           LimitBothSides,
    FollowDuplex,     FollowFlagB,     LimitLayoutDetails,
};

// The choices of a device mode, list by list.

ChoiceSource InitialFitPapers(const PaperChoices& page, const VelmoraDevMode& devMode) {
    if (devMode.privatePart.uiMediaValue == kOfficeMedium) {
        return {kFewFitPapers, 1};
    }
    if (page.hasSecondTray && devMode.publicPart.dmDefaultSource == static_cast<short>(kSecondTray)) {
        return {kSecondTrayFitPapers, kEveryChoice};
    }
    const ChoiceEntry* const papers = FitPapersOf(page);
    switch (page.paper.selected) {
        case DMPAPER_A4:
            return {papers, page.isJapanese ? kEveryChoice : 1};
        case DMPAPER_ENV_10:
            return {papers, 4};
        case DMPAPER_ENV_DL:
            return {papers, 8};
        case DMPAPER_JAPANESE_POSTCARD:
            return {papers, 2};
        case kCustomSizePaper:
            return {papers, 0};
        default:
            return {papers, 1};
    }
}

void InitLists(PaperChoices* page, const VelmoraDevMode& devMode) {
    const PrivateDevMode& own = devMode.privatePart;
    page->paper.selected = static_cast<uint32_t>(devMode.publicPart.dmPaperSize);
    RefillPapers(page);

    page->fitPaper.selected = own.uiFitToPaper == kStoredNoFitPaper ? kNoFitPaper : own.uiFitToPaper;
    RefillChoices(&page->fitPaper, InitialFitPapers(*page, devMode));

    const bool isTrayOffered = page->hasSecondTray && (page->paper.selected == kCustomSizePaper ||
                                                       !IsAnyOf(page->paper.selected, kCassettePapers));
    page->source.selected = static_cast<uint32_t>(devMode.publicPart.dmDefaultSource);
    if (!isTrayOffered && page->source.selected == kSecondTray) {
        page->source.selected = kCassette;
    }
    RefillChoices(&page->source, {kSources, isTrayOffered ? kEveryChoice : kSourcesWithoutTray});

    page->medium.selected = own.uiMediaValue;
    if (page->source.selected == kSecondTray) {
        RefillChoices(&page->medium, {BothSidesMediaOf(*page), kEveryChoice});
    } else {
        RefillChoices(&page->medium, {kMedia, page->isJapanese ? kEveryChoice : 1});
    }
}

void InitLayouts(PaperChoices* page, uint32_t layout) {
    const bool isOnePage = page->zoom.isChecked || (page->paper.selected != DMPAPER_JAPANESE_POSTCARD &&
                                                    IsAnyOf(page->paper.selected, kOnePagePapers));
    page->layout.selected = layout;
    RefillChoices(&page->layout,
                  {kPageLayouts, isOnePage ? kOnePageOnly : LayoutFilterOf(*page, page->flagB.isChecked)});
}

CheckBox EnabledBox(bool isChecked) {
    return {isChecked, true, true};
}

// The number that an edit holds, within limits; `otherwise` where it holds none.
int NumberOf(const NumberField& field, int lowest, int highest, int otherwise) {
    int number = 0;
    return ReadNumber(field.text, &number) ? std::clamp(number, lowest, highest) : otherwise;
}

// The dmMediaType of a medium. The usual medium, and one that the model doesn't have, is the model's default one, as in
// a new device mode.
uint32_t MediaTypeOf(const DeviceModel* model, uint32_t medium) {
    if (!model) {
        return DMMEDIA_STANDARD;
    }
    for (const uint32_t index : {medium, uint32_t{model->defaultMedia}}) {
        if (index != 0) {
            if (const MediaRecord* const record = RecordAt(model->mediaTable, index - 1)) {
                return record->mediaId;
            }
        }
    }
    return DMMEDIA_STANDARD;
}

// Copies a text into a field of five bytes, the last 0 and those after the text too.
void StoreCode(const char* text, char (&field)[5]) {
    std::fill(std::begin(field), std::end(field), '\0');
    CopyText(field, sizeof(field), text);
}

// The steps of applying.

void ApplyPaper(const PaperChoices& page, const PaperApplication& application, DEVMODEW* open) {
    open->dmPaperSize = static_cast<short>(page.paper.selected);
    // The size that was entered is in the record also where the dialog for it was cancelled.
    const PaperSize size = page.paper.selected == kCustomSizePaper
                               ? PaperSize{page.details.customWidth / 10, page.details.customLength / 10, 1}
                               : application.lookUpSize(application.context, open->dmPaperSize);
    open->dmPaperWidth = static_cast<short>(size.width);
    open->dmPaperLength = static_cast<short>(size.length);
}

void ApplyFitPaper(const PaperChoices& page, VelmoraDevMode* devMode) {
    PrivateDevMode& own = devMode->privatePart;
    const uint32_t fit = page.fitPaper.selected;
    const bool isCustom = fit == kNoFitPaper && page.paper.selected == kCustomSizePaper;
    own.uiFitToPaper = fit == kNoFitPaper ? kStoredNoFitPaper : static_cast<uint16_t>(fit);
    own.scaleValue = static_cast<int16_t>(fit == kNoFitPaper ? kFitTargets[PaperClassOf(page)] : fit);
    own.scaleWidth = isCustom ? devMode->publicPart.dmPaperWidth : int16_t{0};
    own.scaleLength = isCustom ? devMode->publicPart.dmPaperLength : int16_t{0};
}

void ApplySourceAndMedium(const PaperChoices& page, const DeviceModel* model, VelmoraDevMode* devMode) {
    devMode->publicPart.dmDefaultSource = static_cast<short>(page.source.selected);
    devMode->privatePart.uiMediaValue = static_cast<uint16_t>(page.medium.selected);
    devMode->publicPart.dmMediaType = MediaTypeOf(model, page.medium.selected);
}

void ApplyCode(const PaperChoices& page, PrivateDevMode* own) {
    own->uiFlagA = page.isFlagA;
    StoreCode(page.code, own->uiCode);
}

void ApplyCopies(PaperChoices* page, VelmoraDevMode* devMode) {
    const int copies = NumberOf(page->copies, 1, kMostCopies, 1);
    SetNumber(&page->copies, copies);
    devMode->publicPart.dmCopies = static_cast<short>(copies);
    devMode->publicPart.dmCollate = page->collate.isChecked ? DMCOLLATE_TRUE : DMCOLLATE_FALSE;
    devMode->privatePart.collateCopy = page->collate.isChecked;
}

// A percentage beyond the limits, which Enter can bring here, is limited: no device mode with it is valid.
void ApplyZoom(const PaperChoices& page, VelmoraDevMode* devMode) {
    PrivateDevMode& own = devMode->privatePart;
    own.uiZoomOn = page.zoom.isChecked;
    own.uiZoomPercent = static_cast<uint16_t>(NumberOf(page.zoomPercent, kLeastZoom, kMostZoom, kUsualZoom));
    if (page.zoom.isChecked) {
        own.scaleMode = kScaleZoomTopLeft;
        own.scaleValue = static_cast<int16_t>(own.uiZoomPercent);
        return;
    }
    own.scaleMode = kScaleFitTopLeft;
    if (page.fitPaper.selected == kNoFitPaper && own.scaleValue == devMode->publicPart.dmPaperSize) {
        own.scaleMode = kNoScaling;
        own.scaleValue = kNoScaleValue;
        own.scaleWidth = 0;
        own.scaleLength = 0;
    }
}

void ApplyOrientation(const PaperChoices& page, VelmoraDevMode* devMode) {
    devMode->publicPart.dmOrientation = page.isLandscape ? DMORIENT_LANDSCAPE : DMORIENT_PORTRAIT;
    devMode->privatePart.uiRotate180 = page.rotate180.isChecked;
    devMode->privatePart.rotate180 = page.rotate180.isChecked;
}

void ApplyDuplex(const PaperChoices& page, VelmoraDevMode* devMode) {
    devMode->privatePart.uiDuplex = page.duplex.isChecked;
    if (!page.duplex.isChecked) {
        devMode->publicPart.dmDuplex = kNoDuplex;
    } else if (page.details.uiBinding < std::size(kDuplexes)) {
        devMode->publicPart.dmDuplex = kDuplexes[page.details.uiBinding];
    }
}

void ApplyFlags(const PaperChoices& page, const char* label, PrivateDevMode* own) {
    own->uiFlagB = page.flagB.isChecked;
    own->uiFlagC = page.flagC.isChecked;
    StoreCode(label, own->uiLabel);
}

void ApplyLayout(const PaperChoices& page, PrivateDevMode* own) {
    own->uiPageLayout = page.layout.selected;
    own->posterMode = 0;
    for (const LayoutFields& fields : kLayoutFields) {
        if (fields.layout == page.layout.selected) {
            own->pagesPerSheet = fields.pagesPerSheet;
            own->posterMode = fields.posterMode;
            if (own->uiPageOrder < fields.firstOrder || own->uiPageOrder > fields.lastOrder) {
                own->uiPageOrder = fields.firstOrder;
            }
            own->nupOrder = NupOrderOf(own->uiPageOrder);
        }
    }
}

}  // namespace

const PaperCommand* FindPaperCommand(int control, int notification) {
    const auto* const found = std::find_if(std::begin(kCommands), std::end(kCommands), [&](const PaperCommand& row) {
        return row.control == control && row.notification == notification;
    });
    return found != std::end(kCommands) ? found : nullptr;
}

void InitPaperChoices(PaperChoices* choices, const VelmoraDevMode& devMode, const DeviceInfo& installed,
                      bool isJapanese) {
    const DEVMODEW& open = devMode.publicPart;
    const PrivateDevMode& own = devMode.privatePart;
    *choices = {};
    choices->isJapanese = isJapanese;
    choices->hasSecondTray = installed.secondTray == 1;
    choices->duplexUnit = DuplexUnitOf(installed);
    choices->details = ReadPageDetails(own);
    InitLists(choices, devMode);
    choices->isFlagA = own.uiFlagA != 0;
    choices->isCodeEnabled = choices->isFlagA;
    std::copy_n(own.uiCode, sizeof(choices->code) - 1, choices->code);
    choices->copies.lowest = 1;
    choices->copies.highest = kMostCopies;
    SetNumber(&choices->copies, open.dmCopies);
    choices->collate = EnabledBox(open.dmCollate != DMCOLLATE_FALSE);
    choices->zoom.isChecked = own.uiZoomOn != 0;
    ShowZoom(choices, !IsAnyOf(choices->paper.selected, kUnzoomedPapers) && own.uiPageLayout == kOnePage);
    choices->zoomPercent.lowest = kLeastZoom;
    choices->zoomPercent.highest = MostZoomOf(*choices, kLongAtOpening);
    SetNumber(&choices->zoomPercent, own.uiZoomPercent);
    choices->isLandscape = open.dmOrientation != DMORIENT_PORTRAIT;
    choices->rotate180 = EnabledBox(own.uiRotate180 != 0);
    choices->duplex = {own.uiDuplex != 0, choices->duplexUnit == DuplexUnit::kInstalled,
                       choices->duplexUnit != DuplexUnit::kNotApplicable};
    choices->flagB = EnabledBox(own.uiFlagB != 0);
    const bool isFlagCUsable = choices->flagB.isChecked;
    choices->flagC = {isFlagCUsable && own.uiFlagC != 0, isFlagCUsable, true};
    choices->isDetailsEnabled = true;
    InitLayouts(choices, own.uiPageLayout);
}

void UpdatePaperDependencies(PaperChoices* choices, uint32_t changes) {
    if (changes == 0) {
        return;
    }
    Update update = {*choices, changes, PaperClassOf(*choices), FitClassOf(*choices)};
    for (const Step step : kSteps) {
        step(update);
    }
}

void RefillPapers(PaperChoices* choices) {
    OfferPapers(choices, kEveryChoice, true);
}

void TakePaperCommand(PaperChoices* choices, const PaperCommand& command) {
    if (command.control == kPaperDefaultsControl) {
        RestorePaperDefaults(choices);
    }
    choices->redraws |= command.redraws;
    UpdatePaperDependencies(choices, command.changes);
}

void RestorePaperDefaults(PaperChoices* choices) {
    RefillPapers(choices);
    choices->paper.selected = DMPAPER_A4;
    choices->details.customUnit = kMillimetres;
    choices->details.customWidth = kUsualCustomWidth;
    choices->details.customLength = kUsualCustomLength;
    choices->fitPaper = {{FitPapersOf(*choices), kEveryChoice}, nullptr, kNoFitPaper};
    choices->source = {
        {kSources, choices->hasSecondTray ? kSourcesWithTray : kSourcesWithoutTray}, nullptr, kUsualSource};
    choices->medium = {{kMedia, 1}, nullptr, kUsualMedium};
    choices->isFlagA = false;
    choices->isCodeEnabled = false;
    StoreCode("", choices->code);
    SetNumber(&choices->copies, 1);
    choices->collate.isChecked = false;
    choices->zoom.isChecked = false;
    SetNumber(&choices->zoomPercent, kUsualZoom);
    choices->isZoomPercentEnabled = false;
    choices->isLandscape = false;
    choices->rotate180.isChecked = false;
    choices->duplex.isChecked = false;
    choices->flagB.isChecked = false;
    choices->flagB.isEnabled = true;
    ClearBox(&choices->flagC);
    choices->layout = {{kPageLayouts, kEveryChoice}, nullptr, kOnePage};
}

void ResetLayoutDetails(PageDetails* details) {
    details->uiBinding = 0;
    details->uiShiftX = 0;
    details->uiShiftY = 0;
    details->uiPageOrder = 0;
    details->uiFlagE = 0;
    details->uiChoice = kPlainBorder;
    details->nupOrder = 0;
    details->layoutMode = 0;
}

uint32_t TakeStaleMark(PrivateDevMode* devMode) {
    const bool isStale = devMode->uiStale == 1;
    if (isStale) {
        devMode->uiStale = 0;
    }
    return isStale ? uint32_t{kEveryChange} : 0;
}

PageDetails ReadPageDetails(const PrivateDevMode& devMode) {
    return {devMode.customWidth, devMode.customLength, devMode.customUnit,  devMode.uiBinding,
            devMode.uiShiftX,    devMode.uiShiftY,     devMode.uiPageOrder, devMode.uiFlagE,
            devMode.uiChoice,    devMode.nupOrder,     devMode.layoutMode};
}

void WritePageDetails(const PageDetails& details, PrivateDevMode* devMode) {
    devMode->customWidth = details.customWidth;
    devMode->customLength = details.customLength;
    devMode->customUnit = details.customUnit;
    devMode->uiBinding = details.uiBinding;
    devMode->uiShiftX = details.uiShiftX;
    devMode->uiShiftY = details.uiShiftY;
    devMode->uiPageOrder = details.uiPageOrder;
    devMode->uiFlagE = details.uiFlagE;
    devMode->uiChoice = details.uiChoice;
    devMode->nupOrder = details.nupOrder;
    devMode->layoutMode = details.layoutMode;
}

void ApplyPaperChoices(PaperChoices* choices, const PaperApplication& application, VelmoraDevMode* devMode) {
    PrivateDevMode& own = devMode->privatePart;
    WritePageDetails(choices->details, &own);
    ApplyPaper(*choices, application, &devMode->publicPart);
    ApplyFitPaper(*choices, devMode);
    ApplySourceAndMedium(*choices, application.model, devMode);
    ApplyCode(*choices, &own);
    ApplyCopies(choices, devMode);
    ApplyZoom(*choices, devMode);
    ApplyOrientation(*choices, devMode);
    ApplyDuplex(*choices, devMode);
    ApplyFlags(*choices, application.label, &own);
    ApplyLayout(*choices, &own);
    ApplyBorderRule(&own, application.resolutionIndex);
    choices->details = ReadPageDetails(own);
}

void SettleCopies(PaperChoices* choices) {
    SettleNumber(&choices->copies, 1, kMostCopies);
}

void SettleZoomPercent(PaperChoices* choices) {
    SettleNumber(&choices->zoomPercent, kLeastZoom, kMostZoom);
}

uint16_t NupOrderOf(uint32_t pageOrder) {
    return pageOrder < std::size(kNupOrders) ? kNupOrders[pageOrder] : uint16_t{0};
}

bool IsTypeable(const WCHAR* allowed, WCHAR character) {
    constexpr WCHAR kFirstPrintable = TEXT(' ');
    if (character < kFirstPrintable) {
        return true;
    }
    while (*allowed != 0 && *allowed != character) {
        ++allowed;
    }
    return *allowed != 0;
}

}  // namespace velmora
