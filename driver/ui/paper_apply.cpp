// What the Paper page's choices make of a device mode.
#include <iterator>

#include "driver/base/text.h"
#include "driver/devdesc/model_tables.h"
#include "driver/ui/nup_border.h"
#include "driver/ui/paper_choices.h"
#include "driver/ui/paper_lists.h"
#include "driver/ui/paper_rules.h"

namespace velmora {
namespace {

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
    StoreAnsiText(own->uiCode, sizeof(own->uiCode), page.code);
}

void ApplyCopies(PaperChoices* page, VelmoraDevMode* devMode) {
    devMode->publicPart.dmCopies = static_cast<short>(ApplyNumber(&page->copies, 1, kMostCopies, 1));
    devMode->publicPart.dmCollate = page->collate.isChecked ? DMCOLLATE_TRUE : DMCOLLATE_FALSE;
    devMode->privatePart.collateCopy = page->collate.isChecked;
}

// A percentage beyond the limits, which Enter can bring here, is limited: no device mode with it is valid.
void ApplyZoom(PaperChoices* page, VelmoraDevMode* devMode) {
    PrivateDevMode& own = devMode->privatePart;
    own.uiZoomOn = page->zoom.isChecked;
    own.uiZoomPercent = static_cast<uint16_t>(ApplyNumber(&page->zoomPercent, kLeastZoom, kMostZoom, kUsualZoom));
    if (page->zoom.isChecked) {
        own.scaleMode = kScaleZoomTopLeft;
        own.scaleValue = static_cast<int16_t>(own.uiZoomPercent);
        return;
    }
    own.scaleMode = kScaleFitTopLeft;
    if (page->fitPaper.selected == kNoFitPaper && own.scaleValue == devMode->publicPart.dmPaperSize) {
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
    StoreAnsiText(own->uiLabel, sizeof(own->uiLabel), label);
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

void ApplyPaperChoices(PaperChoices* choices, const PaperApplication& application, VelmoraDevMode* devMode) {
    PrivateDevMode& own = devMode->privatePart;
    WritePageDetails(*choices, ReadPageDetails(own), &own);
    ApplyPaper(*choices, application, &devMode->publicPart);
    ApplyFitPaper(*choices, devMode);
    ApplySourceAndMedium(*choices, application.model, devMode);
    ApplyCode(*choices, &own);
    ApplyCopies(choices, devMode);
    ApplyZoom(choices, devMode);
    ApplyOrientation(*choices, devMode);
    ApplyDuplex(*choices, devMode);
    ApplyFlags(*choices, application.label, &own);
    ApplyLayout(*choices, &own);
    ApplyBorderRule(&own, application.resolutionIndex);
    choices->details = ReadPageDetails(own);
}

uint16_t NupOrderOf(uint32_t pageOrder) {
    return pageOrder < std::size(kNupOrders) ? kNupOrders[pageOrder] : uint16_t{0};
}

}  // namespace velmora
