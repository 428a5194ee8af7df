// The rules of the dialog for the details of the Paper page's layout, apart from its window.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/ui/choice_list.h"
#include "driver/ui/number_field.h"
#include "driver/ui/nup_border.h"
#include "driver/ui/paper_rules.h"

namespace velmora {

// Pictures of an order of pages, icons of the module with the pictures.
struct PageOrderIcons {
    const WCHAR* plain;
    const WCHAR* selected;
};

struct PageOrders {
    const PageOrderIcons* icons;  // by their place in the list
    size_t count;                 // 0 where a sheet has one page
};

// The orders in which a layout's pages can lie.
PageOrders PageOrdersOf(uint32_t layout, bool isLandscape);

inline constexpr ChoiceEntry kBorderStyles[] = {
    {kAlwaysOffered, 5240, kPlainBorder},
    {kAlwaysOffered, 5241, kBorderWithMargin},
    {0, 0, 0},
};

// What the dialog shows.
struct LayoutDetails {
    int order;         // place in the list of orders
    uint16_t binding;  // 0 to 3, which of the buttons for the edge is checked
    NumberField shiftX;
    NumberField shiftY;
    bool isShiftYShown;
    bool isShiftYEnabled;
    bool isBorderEnabled;
    bool isBorder;
    ChoiceList borderStyle;  // it and its label are enabled while isBorder is set
};

LayoutDetails StartLayoutDetails(const PaperChoices& choices);

// The dialog's defaults; they mark the Paper page as changed.
void RestoreLayoutDetails(LayoutDetails* details);

// What a shift's edit holds is settled as the user leaves it: blanks and plus signs in front go, and the number is
// limited to the spin control's range.
void SettleShift(NumberField* shift);

// The dialog's end, which marks the Paper page as changed. `details.order` may be -1 for no selection.
void StoreLayoutDetails(const LayoutDetails& details, PaperChoices* choices);

}  // namespace velmora
