#include "driver/ui/layout_details.h"

#include <algorithm>
#include <iterator>

#include "driver/base/text.h"
#include "driver/ui/paper_choices.h"

namespace velmora {
namespace {

constexpr int kMostShift = 60;
constexpr uint16_t kBindings = 4;

constexpr PageOrderIcons kTwoPortrait[] = {
    {TEXT("ICO_PORT_AB"), TEXT("ICO_SEL_PORT_AB")},
    {TEXT("ICO_PORT_BA"), TEXT("ICO_SEL_PORT_BA")},
};
constexpr PageOrderIcons kTwoLandscape[] = {
    {TEXT("ICO_LAND_AB"), TEXT("ICO_SEL_LAND_AB")},
    {TEXT("ICO_LAND_BA"), TEXT("ICO_SEL_LAND_BA")},
};
constexpr PageOrderIcons kFourPortrait[] = {
    {TEXT("ICO_PORT_ABCD"), TEXT("ICO_SEL_PORT_ABCD")},
    {TEXT("ICO_PORT_ACBD"), TEXT("ICO_SEL_PORT_ACBD")},
    {TEXT("ICO_PORT_BADC"), TEXT("ICO_SEL_PORT_BADC")},
    {TEXT("ICO_PORT_BDAC"), TEXT("ICO_SEL_PORT_BDAC")},
};
constexpr PageOrderIcons kFourLandscape[] = {
    {TEXT("ICO_LAND_ABCD"), TEXT("ICO_SEL_LAND_ABCD")},
    {TEXT("ICO_LAND_ACBD"), TEXT("ICO_SEL_LAND_ACBD")},
    {TEXT("ICO_LAND_BADC"), TEXT("ICO_SEL_LAND_BADC")},
    {TEXT("ICO_LAND_BDAC"), TEXT("ICO_SEL_LAND_BDAC")},
};

// A layout's orders are numbered in uiPageOrder from `firstOrder` on.
struct OrderList {
    uint32_t layout;
    bool isLandscape;
    uint16_t firstOrder;
    PageOrders orders;
};
constexpr OrderList kOrderLists[] = {
    {kTwoPages, false, 1, {kTwoPortrait, std::size(kTwoPortrait)}},
    {kTwoPages, true, 3, {kTwoLandscape, std::size(kTwoLandscape)}},
    {kFourPages, false, 5, {kFourPortrait, std::size(kFourPortrait)}},
    {kFourPages, true, 5, {kFourLandscape, std::size(kFourLandscape)}},
};

const OrderList* FindOrderList(uint32_t layout, bool isLandscape) {
    for (const OrderList& list : kOrderLists) {
        if (list.layout == layout && list.isLandscape == isLandscape) {
            return &list;
        }
    }
    return nullptr;
}

// The place of the order that a device mode has. Two portrait and two landscape pages have the same places.
int PlaceOf(uint32_t layout, uint16_t pageOrder) {
    if (layout == kTwoPages) {
        return pageOrder == 2 || pageOrder == 4 ? 1 : 0;
    }
    const bool isOfFour = layout == kFourPages && pageOrder >= 5 && pageOrder < 5 + std::size(kFourPortrait);
    return isOfFour ? pageOrder - 5 : 0;
}

NumberField ShiftField(int shift) {
    NumberField field = {};
    field.lowest = -kMostShift;
    field.highest = kMostShift;
    SetNumber(&field, shift);
    return field;
}

const WCHAR* SkipPlusSigns(const WCHAR* text) {
    while (*text == TEXT('+') || *text == TEXT(' ')) {
        ++text;
    }
    return text;
}

int16_t ShiftOf(const NumberField& field) {
    int shift = 0;
    return static_cast<int16_t>(
        ReadNumber(SkipPlusSigns(field.text), &shift) ? std::clamp(shift, -kMostShift, kMostShift) : 0);
}

}  // namespace

PageOrders PageOrdersOf(uint32_t layout, bool isLandscape) {
    const OrderList* const list = FindOrderList(layout, isLandscape);
    return list ? list->orders : PageOrders{};
}

LayoutDetails StartLayoutDetails(const PaperChoices& choices) {
    const PageDetails& page = choices.details;
    LayoutDetails details = {};
    details.order = PlaceOf(choices.layout.selected, page.uiPageOrder);
    details.binding = page.uiBinding < kBindings ? page.uiBinding : uint16_t{0};
    details.shiftX = ShiftField(page.uiShiftX);
    details.shiftY = ShiftField(page.uiShiftY);
    details.isShiftYShown = choices.duplexUnit != DuplexUnit::kNotApplicable;
    details.isShiftYEnabled = details.isShiftYShown && choices.duplex.isChecked;
    details.isBorderEnabled = choices.layout.selected != kOnePage;
    details.isBorder = details.isBorderEnabled && page.uiFlagE != 0;
    details.borderStyle.selected = page.uiChoice;
    RefillChoices(&details.borderStyle, {kBorderStyles, kEveryChoice});
    return details;
}

void RestoreLayoutDetails(LayoutDetails* details) {
    details->order = 0;
    details->binding = 0;
    SetNumber(&details->shiftX, 0);
    if (details->isShiftYShown) {
        SetNumber(&details->shiftY, 0);
    }
    details->isBorder = false;
    SelectChoice(&details->borderStyle, kPlainBorder);
}

void SettleShift(NumberField* shift) {
    const NumberField typed = *shift;
    CopyText(shift->text, NumberField::kCapacity, SkipPlusSigns(typed.text));
    SettleNumber(shift, -kMostShift, kMostShift);
}

void StoreLayoutDetails(const LayoutDetails& details, PaperChoices* choices) {
    PageDetails& page = choices->details;
    page.uiBinding = details.binding;
    page.uiShiftX = ShiftOf(details.shiftX);
    if (details.isShiftYShown) {
        page.uiShiftY = ShiftOf(details.shiftY);
    }
    page.uiFlagE = details.isBorder;
    page.uiChoice = static_cast<uint16_t>(details.borderStyle.selected);
    page.uiPageOrder = 0;
    if (const OrderList* const list = FindOrderList(choices->layout.selected, choices->isLandscape)) {
        const auto order = static_cast<size_t>(details.order);
        page.uiPageOrder = static_cast<uint16_t>(list->firstOrder + (order < list->orders.count ? details.order : 0));
    }
    page.nupOrder = NupOrderOf(page.uiPageOrder);
}

}  // namespace velmora
