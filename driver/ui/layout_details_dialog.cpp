#include "driver/ui/layout_details_dialog.h"

#include <commctrl.h>

#include <cstddef>
#include <iterator>

#include "driver/ui/controls.h"
#include "driver/ui/layout_details.h"
#include "driver/ui/modal_dialog.h"
#include "driver/ui/number_control.h"
#include "driver/ui/page.h"
#include "driver/ui/pictures.h"

namespace velmora {
namespace {

constexpr UINT kTemplate = 5200;  // its title is the string of the same number

// Controls. Labels and buttons have the text of the string of their own number.
constexpr int kBindings[] = {5204, 5209, 5214, 5219};  // by uiBinding
constexpr NumberControl kShiftX = {5224, 5225};
constexpr NumberControl kShiftY = {5228, 5229};
constexpr int kShiftYControls[] = {5227, kShiftY.edit, kShiftY.spin, 5230};
constexpr int kOrders = 5232;
constexpr int kBorder = 5234;
constexpr int kBorderStyleLabel = 5235;
constexpr int kBorderStyle = 5236;
constexpr int kDefaults = 5237;
constexpr int kTexts[] = {5202,     5204, 5209, 5214, 5219, 5223, 5226, 5227, 5230, 5231, kBorder, kBorderStyleLabel,
                          kDefaults};
constexpr UINT kOkText = 5238;
constexpr UINT kCancelText = 5239;

constexpr INT_PTR kCancelled = 0;
constexpr INT_PTR kChosen = 1;

// Items of the list of orders, in pixels.
constexpr int kItemSide = 50;
constexpr int kIconLeft = 9;
constexpr int kIconTop = (kItemSide - 32) / 2;

void ShowDetails(HWND dialog, const LayoutDetails& details) {
    SendDlgItemMessageW(dialog, kOrders, LB_SETCURSEL, static_cast<WPARAM>(details.order), 0);
    for (size_t i = 0; i < std::size(kBindings); ++i) {
        CheckControl(dialog, kBindings[i], i == details.binding);
    }
    ShowNumber(dialog, kShiftX, details.shiftX);
    ShowNumber(dialog, kShiftY, details.shiftY);
    CheckControl(dialog, kBorder, details.isBorder);
    EnableControl(dialog, kBorder, details.isBorderEnabled);
    EnableControl(dialog, kBorderStyleLabel, details.isBorder);
    EnableControl(dialog, kBorderStyle, details.isBorder);
    SelectComboByData(dialog, kBorderStyle, details.borderStyle.selected);
}

// What the controls show.
LayoutDetails ReadDetails(HWND dialog, const SheetContext& context) {
    LayoutDetails details = StartLayoutDetails(context.paper);
    details.order = static_cast<int>(SendDlgItemMessageW(dialog, kOrders, LB_GETCURSEL, 0, 0));
    for (size_t i = 0; i < std::size(kBindings); ++i) {
        if (IsChecked(dialog, kBindings[i])) {
            details.binding = static_cast<uint16_t>(i);
        }
    }
    TakeNumber(dialog, kShiftX, &details.shiftX);
    TakeNumber(dialog, kShiftY, &details.shiftY);
    details.isBorder = IsChecked(dialog, kBorder);
    SelectChoice(&details.borderStyle, GetComboData(dialog, kBorderStyle));
    return details;
}

void InitLayoutDetailsDialog(HWND dialog, const SheetContext& context) {
    SetDialogTitle(dialog, kTemplate);
    SetOwnTexts(dialog, kTexts);
    SetControlText(dialog, IDOK, kOkText);
    SetControlText(dialog, IDCANCEL, kCancelText);
    const LayoutDetails details = StartLayoutDetails(context.paper);
    SendDlgItemMessageW(dialog, kOrders, LB_SETCOLUMNWIDTH, kItemSide, 0);
    const PageOrders orders = PageOrdersOf(context.paper.layout.selected, context.paper.isLandscape);
    for (size_t i = 0; i < orders.count; ++i) {
        SendDlgItemMessageW(dialog, kOrders, LB_ADDSTRING, 0, static_cast<LPARAM>(i));
    }
    FillChoiceCombo(dialog, kBorderStyle, details.borderStyle.source.choices, details.borderStyle.source.filter);
    InitNumber(dialog, kShiftX, details.shiftX);
    InitNumber(dialog, kShiftY, details.shiftY);
    for (const int control : kShiftYControls) {
        ShowControl(dialog, control, details.isShiftYShown);
        EnableControl(dialog, control, details.isShiftYEnabled);
    }
    ShowDetails(dialog, details);
}

void DrawOrder(const SheetContext& context, const DRAWITEMSTRUCT& item) {
    const PageOrders orders = PageOrdersOf(context.paper.layout.selected, context.paper.isLandscape);
    if (item.itemID >= orders.count) {
        return;
    }
    const bool isSelected = (item.itemState & ODS_SELECTED) != 0;
    const HBRUSH background =
        isSelected ? GetSysColorBrush(COLOR_HIGHLIGHT) : static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    FillRect(item.hDC, &item.rcItem, background);
    const PageOrderIcons& icons = orders.icons[item.itemID];
    const OwnedModule pictures = LoadImageModule(context);
    if (const HICON icon = pictures ? LoadIconW(pictures.Get(), isSelected ? icons.selected : icons.plain) : nullptr) {
        DrawIcon(item.hDC, item.rcItem.left + kIconLeft, item.rcItem.top + kIconTop, icon);
    }
}

void OnLayoutDetailsCommand(HWND dialog, SheetContext* context, int id, int code) {
    LayoutDetails details = ReadDetails(dialog, *context);
    switch (id) {
        case kBorder:
            break;
        case kShiftX.edit:
        case kShiftY.edit:
            if (code != EN_KILLFOCUS) {
                return;
            }
            SettleShift(id == kShiftX.edit ? &details.shiftX : &details.shiftY);
            break;
        case kDefaults:
            RestoreLayoutDetails(&details);
            MarkPageChanged(context->dialogs[kPaperSlot], context, kPaperSlot);
            break;
        case IDOK:
            StoreLayoutDetails(details, &context->paper);
            MarkPageChanged(context->dialogs[kPaperSlot], context, kPaperSlot);
            EndDialog(dialog, kChosen);
            return;
        case IDCANCEL:
            EndDialog(dialog, kCancelled);
            return;
        default:
            return;
    }
    ShowDetails(dialog, details);
}

INT_PTR AnswerLayoutDetails(HWND dialog, SheetContext* context, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            OnLayoutDetailsCommand(dialog, context, LOWORD(wParam), HIWORD(wParam));
            return TRUE;
        case WM_DRAWITEM:
            DrawOrder(*context, *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
            return TRUE;
        default:
            return FALSE;
    }
}

BOOL Open(HWND dialog, SheetContext* context) {
    InitLayoutDetailsDialog(dialog, *context);
    return TRUE;
}

constexpr DialogFunctions kDialog = {kNoSlot, Open, AnswerLayoutDetails};

INT_PTR CALLBACK LayoutDetailsProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_MEASUREITEM) {  // comes before WM_INITDIALOG
        reinterpret_cast<MEASUREITEMSTRUCT*>(lParam)->itemHeight = kItemSide;
        return TRUE;
    }
    return RouteDialogMessage(kDialog, dialog, message, wParam, lParam);
}

}  // namespace

bool RunLayoutDetailsDialog(HWND page, SheetContext* context) {
    return RunDialog(context, kTemplate, page, LayoutDetailsProc) == kChosen;
}

}  // namespace velmora
