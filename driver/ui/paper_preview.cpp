#include "driver/ui/paper_preview.h"

#include <iterator>

#include "driver/base/format.h"
#include "driver/ui/controls.h"
#include "driver/ui/paper_choices.h"
#include "driver/ui/pictures.h"

namespace velmora {
namespace {

constexpr const WCHAR* kOnePageLetters = TEXT("A");
constexpr const WCHAR* kTwoPageLetters[] = {TEXT("AB"), TEXT("BA"), TEXT("AB"), TEXT("BA")};
constexpr const WCHAR* kFourPageLetters[] = {TEXT("ABCD"), TEXT("ACBD"), TEXT("BADC"), TEXT("CADB")};

// Values of uiPageOrder that begin the orders of a layout; none is a single page.
constexpr uint16_t kFirstOfTwo = 1;
constexpr uint16_t kFirstOfFour = 5;
constexpr uint16_t kLastOfFour = 8;

// An edge by uiBinding. On a sheet that is printed on both sides, its corner is turned up at some of them.
struct Edge {
    const WCHAR* name;
    bool isTurned;
};
constexpr Edge kPortraitEdges[] = {
    {TEXT("LEFT"), false}, {TEXT("RIGHT"), true}, {TEXT("BOTTOM"), true}, {TEXT("TOP"), false}};
constexpr Edge kLandscapeEdges[] = {
    {TEXT("TOP"), false}, {TEXT("BOTTOM"), true}, {TEXT("LEFT"), false}, {TEXT("RIGHT"), true}};

const WCHAR* LettersOf(uint32_t layout, size_t order) {
    switch (layout) {
        case kTwoPages:
            return kTwoPageLetters[order % std::size(kTwoPageLetters)];
        case kFourPages:
            return kFourPageLetters[order % std::size(kFourPageLetters)];
        default:
            return kOnePageLetters;
    }
}

}  // namespace

PreviewSheet PreviewOf(const PaperChoices& choices, size_t order) {
    return {choices.layout.selected,    order, choices.details.uiBinding, choices.isLandscape, choices.duplex.isChecked,
            choices.rotate180.isChecked};
}

PreviewNames NamePreview(const PreviewSheet& sheet) {
    PreviewNames names = {};
    const WCHAR* const orientation = sheet.isLandscape ? TEXT("LAND") : TEXT("PORT");
    if (IsPoster(sheet.layout)) {
        const uint32_t side = PosterSide(sheet.layout);
        FormatWide(names.sheet, std::size(names.sheet), TEXT("IDB_%s_P%dX%d"), orientation, side, side);
        return names;
    }
    FormatWide(names.sheet, std::size(names.sheet), TEXT("IDB_%s%s_%s%s"), orientation,
               sheet.isDuplex ? TEXT("_DUP") : TEXT(""), sheet.isRotated ? TEXT("R") : TEXT(""),
               LettersOf(sheet.layout, sheet.order));
    // Two pages lie on a turned sheet.
    const bool isLandscape = sheet.isLandscape != (sheet.layout == kTwoPages);
    const auto& edges = isLandscape ? kLandscapeEdges : kPortraitEdges;
    const Edge& edge = edges[sheet.binding % std::size(kPortraitEdges)];
    FormatWide(names.edge, std::size(names.edge), TEXT("IDB_%s%s_%s"), isLandscape ? TEXT("LAND") : TEXT("PORT"),
               sheet.isDuplex && edge.isTurned ? TEXT("_DUP") : TEXT(""), edge.name);
    return names;
}

const WCHAR* CollatePicture(bool isCollated) {
    return isCollated ? TEXT("BMP_COLLATED") : TEXT("BMP_UNCOLLATE");
}

size_t TakePreviewOrder(uint32_t layout, uint16_t pageOrder, PreviewOrders* orders) {
    if (pageOrder > kLastOfFour) {
        *orders = {};
    } else if (pageOrder >= kFirstOfFour) {
        orders->ofFour = pageOrder - kFirstOfFour;
    } else if (pageOrder >= kFirstOfTwo) {
        orders->ofTwo = pageOrder - kFirstOfTwo;
    }
    return layout == kTwoPages ? orders->ofTwo : layout == kFourPages ? orders->ofFour : 0;
}

void PaintPaperPreview(HWND dialog, SheetContext* context, HDC target) {
    const PaperChoices& choices = context->paper;
    const size_t order =
        TakePreviewOrder(choices.layout.selected, choices.details.uiPageOrder, &context->previewOrders);
    const PreviewNames names = NamePreview(PreviewOf(choices, order));
    const OwnedModule pictures = LoadImageModule(*context);
    DrawBitmapInControl(dialog, target, pictures.Get(), names.sheet, kPreviewControl, true);
    if (names.edge[0] != 0) {
        DrawBitmapTransparent(dialog, target, pictures.Get(), names.edge, kPreviewControl);
    }
    DrawBitmapInControl(dialog, target, pictures.Get(), CollatePicture(choices.collate.isChecked),
                        kCollatePictureControl, true);
}

}  // namespace velmora
