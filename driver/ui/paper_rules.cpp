#include "driver/ui/paper_rules.h"

#include <algorithm>
#include <iterator>

#include "driver/ui/nup_border.h"
#include "driver/ui/paper_choices.h"
#include "driver/ui/paper_lists.h"

namespace velmora {
namespace {

constexpr PaperCommand kCommands[] = {
    {kPaperControl, CBN_SELCHANGE, kPaperChanged},
    {kFitPaperControl, CBN_SELCHANGE, kFitPaperChanged},
    {kSourceControl, CBN_SELCHANGE, kSourceChanged},
    {kMediumControl, CBN_SELCHANGE, kMediumChanged},
    {kFlagAControl, BN_CLICKED, kFlagAChanged},
    {kCodeControl, EN_CHANGE, 0},
    {kCopiesControl, EN_CHANGE, 0},
    {kCollateControl, BN_CLICKED, 0},
    {kZoomControl, BN_CLICKED, kZoomChanged},
    {kZoomPercentControl, EN_CHANGE, 0},
    {kPortraitControl, BN_CLICKED, 0},
    {kLandscapeControl, BN_CLICKED, 0},
    {kRotate180Control, BN_CLICKED, 0},
    {kDuplexControl, BN_CLICKED, kDuplexChanged},
    {kFlagBControl, BN_CLICKED, kFlagBChanged},
    {kFlagCControl, BN_CLICKED, 0},
    {kLayoutControl, CBN_SELCHANGE, kLayoutChanged},
    {kPaperDefaultsControl, BN_CLICKED, kEveryChange},
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
            return {papers, page.isJapanese && !page.hasSecondTray ? kEveryChoice : 1};
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

void InitLists(PaperChoices* page, VelmoraDevMode* devMode) {
    PrivateDevMode& own = devMode->privatePart;
    page->paper.selected = static_cast<uint32_t>(devMode->publicPart.dmPaperSize);
    RefillPapers(page);

    if (own.uiFitToPaper == DMPAPER_JAPANESE_POSTCARD && page->paper.selected == DMPAPER_A4 && !page->isJapanese &&
        !page->hasSecondTray && own.uiMediaValue != kOfficeMedium) {
        own.uiFitToPaper = kStoredNoFitPaper;
    }
    page->fitPaper.selected = own.uiFitToPaper == kStoredNoFitPaper ? kNoFitPaper : own.uiFitToPaper;
    RefillChoices(&page->fitPaper, InitialFitPapers(*page, *devMode));

    const bool isTrayOffered = page->hasSecondTray && (page->paper.selected == kCustomSizePaper ||
                                                       !IsAnyOf(page->paper.selected, kCassettePapers));
    short& source = devMode->publicPart.dmDefaultSource;
    if (!isTrayOffered && source == static_cast<short>(kSecondTray)) {
        source = static_cast<short>(kCassette);
    }
    page->source.selected = static_cast<uint32_t>(source);
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

}  // namespace

const PaperCommand* FindPaperCommand(int control, int notification) {
    const auto* const found = std::find_if(std::begin(kCommands), std::end(kCommands), [&](const PaperCommand& row) {
        return row.control == control && row.notification == notification;
    });
    return found != std::end(kCommands) ? found : nullptr;
}

void InitPaperChoices(PaperChoices* choices, VelmoraDevMode* devMode, const DeviceInfo& installed, bool isJapanese) {
    const DEVMODEW& open = devMode->publicPart;
    PrivateDevMode& own = devMode->privatePart;
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
    if (own.uiFlagB == 0) {
        own.uiFlagC = 0;
    }
    choices->flagC = {own.uiFlagC != 0, choices->flagB.isChecked, true};
    choices->isDetailsEnabled = true;
    InitLayouts(choices, own.uiPageLayout);
}

void RefillPapers(PaperChoices* choices) {
    OfferPapers(choices, kEveryChoice, true);
}

void TakePaperCommand(PaperChoices* choices, const PaperCommand& command) {
    if (command.control == kPaperDefaultsControl) {
        RestorePaperDefaults(choices);
    }
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
    std::fill(std::begin(choices->code), std::end(choices->code), '\0');
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
}

uint32_t TakeStaleMark(PrivateDevMode* devMode) {
    const bool isStale = devMode->uiStale == 1;
    if (isStale) {
        devMode->uiStale = 0;
    }
    return isStale ? uint32_t{kEveryChange} : 0;
}

PageDetails ReadPageDetails(const PrivateDevMode& devMode) {
    return {devMode.customWidth, devMode.customLength, devMode.customUnit, devMode.uiBinding, devMode.uiShiftX,
            devMode.uiShiftY,    devMode.uiPageOrder,  devMode.uiFlagE,    devMode.uiChoice,  devMode.nupOrder};
}

void WritePageDetails(const PaperChoices& choices, const PageDetails& before, PrivateDevMode* devMode) {
    const PageDetails& now = choices.details;
    const auto changed = [&](auto PageDetails::*detail, auto stored) {
        return now.*detail != before.*detail ? now.*detail : stored;
    };
    devMode->customWidth = changed(&PageDetails::customWidth, devMode->customWidth);
    devMode->customLength = changed(&PageDetails::customLength, devMode->customLength);
    devMode->customUnit = changed(&PageDetails::customUnit, devMode->customUnit);
    devMode->uiBinding = changed(&PageDetails::uiBinding, devMode->uiBinding);
    devMode->uiShiftX = changed(&PageDetails::uiShiftX, devMode->uiShiftX);
    devMode->uiShiftY = changed(&PageDetails::uiShiftY, devMode->uiShiftY);
    devMode->uiPageOrder = changed(&PageDetails::uiPageOrder, devMode->uiPageOrder);
    devMode->uiFlagE = changed(&PageDetails::uiFlagE, devMode->uiFlagE);
    devMode->uiChoice = changed(&PageDetails::uiChoice, devMode->uiChoice);
    devMode->nupOrder = changed(&PageDetails::nupOrder, devMode->nupOrder);
    if (IsPoster(choices.layout.selected)) {
        devMode->layoutMode = kNoBorder;
    }
}

void SettleCopies(PaperChoices* choices) {
    SettleNumber(&choices->copies, 1, kMostCopies);
}

void SettleZoomPercent(PaperChoices* choices) {
    SettleNumber(&choices->zoomPercent, kLeastZoom, kMostZoom);
}

}  // namespace velmora
