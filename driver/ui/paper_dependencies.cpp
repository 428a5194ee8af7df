// How the Paper page's choices limit each other.
#include <algorithm>
#include <iterator>

#include "driver/ui/paper_choices.h"
#include "driver/ui/paper_lists.h"
#include "driver/ui/paper_rules.h"

namespace velmora {
namespace {

// Custom sizes up to these (0.01 mm) are too small for a duplex unit.
constexpr int32_t kSimplexWidth[] = {10000, 17590};
constexpr int32_t kSimplexLength[] = {21000, 24993};

// As RefillChoices, with a value instead of the first one for a selection that isn't offered any more.
void RefillChoicesOr(ChoiceList* list, const ChoiceSource& source, uint32_t otherwise) {
    list->source = source;
    SelectChoice(list, FindChoice(*list, list->selected) ? list->selected : otherwise);
}

bool UsesSecondTray(const PaperChoices& page) {
    return page.hasSecondTray && page.source.selected == kSecondTray;
}

// A unit that the model can't have has no control that could be enabled.
void EnableDuplex(PaperChoices* page, bool isEnabled) {
    page->duplex.isEnabled = isEnabled && page->duplexUnit != DuplexUnit::kNotApplicable;
}

void ClearDuplex(PaperChoices* page) {
    page->duplex.isChecked = false;
    EnableDuplex(page, false);
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

// Media of papers that can be printed on both sides, whatever they are fitted to.
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
            return MediaBySides(page, {kMedia, update.Fit() == DMPAPER_JAPANESE_POSTCARD ? 2u : 1u});
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
        if (!page.isJapanese) {
            OfferPapers(&page, 1, true);
        }
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

}  // namespace

void UpdatePaperDependencies(PaperChoices* choices, uint32_t changes) {
    if (changes == 0) {
        return;
    }
    Update update = {*choices, changes, PaperClassOf(*choices), FitClassOf(*choices)};
    for (const Step step : kSteps) {
        step(update);
    }
}

}  // namespace velmora
