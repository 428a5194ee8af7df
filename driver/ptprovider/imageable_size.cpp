#include "driver/ptprovider/imageable_size.h"

#include <algorithm>
#include <cstdint>

#include "driver/devdesc/paper_lookup.h"
#include "driver/ptprovider/sheet_choices.h"
#include "driver/ptprovider/ticket_units.h"

namespace velmora {
namespace {

constexpr Keyword kName = PublicKeyword(TEXT("PageImageableSize"));

// A value of marginMode: the device mode has margins of its own.
constexpr uint16_t kCustomMargins = 2;

// Margins as the paper lies in the printer, in micrometres.
struct Margins {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};

Margins MarginsOf(const WorkingDevMode& working, const PrinterSnapshot& printer, int16_t paperId) {
    const VelmoraDevMode& devMode = *working.DevMode();
    const PrivateDevMode& own = devMode.privatePart;
    if (own.marginMode == kCustomMargins) {
        const auto microns = [&](size_t side) { return DotsToMicrons(own.customMargins[side], own.resolutionId); };
        return {microns(0), microns(1), microns(2), microns(3)};
    }
    const WORD orientation =
        devMode.publicPart.dmOrientation == DMORIENT_LANDSCAPE ? kLandscapeMargins : kPortraitMargins;
    const DeviceModel* const model = printer.model.Get();
    const MarginPair first = GetPrintableMargins(working.hPrinter, model, paperId, orientation, kMicronsPerInch);
    const MarginPair second = GetPrintableMargins(working.hPrinter, model, -paperId, orientation, kMicronsPerInch);
    return {first.horizontal, first.vertical, second.horizontal, second.vertical};
}

// The printable part of a page as it is read.
struct ImageableSize {
    LONG width;
    LONG length;
    LONG originWidth;
    LONG originHeight;
    LONG extentWidth;
    LONG extentHeight;
};

ImageableSize SizeOf(const PaperEntry& paper, const Margins& margins, const VelmoraDevMode& devMode) {
    const bool isTurned = devMode.privatePart.rotate180 != 0;
    // A custom size may be any number.
    const auto across = static_cast<LONG>(int64_t{paper.width} - margins.left - margins.right);
    const auto along = static_cast<LONG>(int64_t{paper.length} - margins.bottom - margins.top);
    if (devMode.publicPart.dmOrientation == DMORIENT_PORTRAIT) {
        return {
            paper.width, paper.length, isTurned ? margins.right : margins.left, isTurned ? margins.bottom : margins.top,
            across,      along};
    }
    return {paper.length, paper.width, isTurned ? margins.top : margins.bottom, isTurned ? margins.right : margins.left,
            along,        across};
}

}  // namespace

void WriteImageableSize(FeatureWriter& writer, const WorkingDevMode& working) {
    const EntryList<PaperEntry>& papers = writer.printer.papers;
    if (!writer.ListsAll() || papers.count == 0) {
        return;
    }
    writer.document.AppendBanner(kName.name);
    const VelmoraDevMode& devMode = *working.DevMode();
    const int16_t selected = PrintedPaper(devMode);
    const PaperEntry* const paper =
        std::find_if(papers.begin(), papers.end(), [&](const PaperEntry& entry) { return entry.paperId == selected; });
    if (paper == papers.end()) {
        return;
    }
    const ImageableSize size = SizeOf(*paper, MarginsOf(working, writer.printer, selected), devMode);
    ElementReference property;
    ElementReference area;
    if (FAILED(writer.document.AddProperty(kName.uri, kName.name, &property))) {
        return;
    }
    writer.AddIntegerProperty(property, PublicKeyword(TEXT("ImageableSizeWidth")), size.width);
    writer.AddIntegerProperty(property, PublicKeyword(TEXT("ImageableSizeHeight")), size.length);
    if (FAILED(writer.document.AddProperty(property.Get(), kKeywordsNamespace, TEXT("ImageableArea"), &area))) {
        return;
    }
    writer.AddIntegerProperty(area, PublicKeyword(TEXT("OriginWidth")), size.originWidth);
    writer.AddIntegerProperty(area, PublicKeyword(TEXT("OriginHeight")), size.originHeight);
    writer.AddIntegerProperty(area, PublicKeyword(TEXT("ExtentWidth")), size.extentWidth);
    writer.AddIntegerProperty(area, PublicKeyword(TEXT("ExtentHeight")), size.extentHeight);
}

}  // namespace velmora
