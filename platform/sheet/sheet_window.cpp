#include "platform/sheet/sheet_window.h"

#include <commctrl.h>

#include <algorithm>
#include <vector>

#include "platform/sheet/sheet_texts.h"
#include "platform/user/dialogs.h"

namespace host {
namespace {

// Dialog units.
constexpr RECT kMargins = {7, 7, 7, 7};
constexpr RECT kButton = {0, 0, 50, 14};
constexpr RECT kGap = {0, 0, 4, 7};  // between buttons, and between the tabs and the buttons

constexpr DWORD kSheetStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_3DLOOK | DS_SHELLFONT;
constexpr DWORD kSheetExStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;

void AddControl(DialogTemplate* sheet, const char16_t* className, int id, const char16_t* text, DWORD style) {
    DialogItem item;
    item.className = className;
    item.text = text;
    item.id = static_cast<DWORD>(id);
    item.style = style | WS_CHILD | WS_VISIBLE | WS_TABSTOP;
    sheet->items.push_back(item);
}

// Dialog units, horizontal in x members and vertical in y members, to pixels.
RECT ToPixels(HWND sheet, RECT units) {
    MapDialogRect(sheet, &units);
    return units;
}

void Place(HWND sheet, int id, int x, int y, int width, int height) {
    SetWindowPos(GetDlgItem(sheet, id), nullptr, x, y, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

// In the middle of the owner or the screen, and on the screen.
POINT FindPlace(HWND owner, SIZE size) {
    const int screenWidth = GetSystemMetrics(SM_CXSCREEN);
    const int screenHeight = GetSystemMetrics(SM_CYSCREEN);
    RECT around = {0, 0, screenWidth, screenHeight};
    if (owner) {
        GetWindowRect(owner, &around);
    }
    const auto middle = [](LONG low, LONG high, LONG length, LONG end) {
        return std::max(0, std::min((low + high - length) / 2, end - length));
    };
    return {middle(around.left, around.right, size.cx, screenWidth),
            middle(around.top, around.bottom, size.cy, screenHeight)};
}

}  // namespace

HWND CreateSheetWindow(const SheetLook& look, HWND owner, DLGPROC proc, LPARAM parameter) {
    const SheetTexts& texts = TextsOfUser();
    DialogTemplate sheet;  // places and sizes come later
    sheet.style = kSheetStyle;
    sheet.exStyle = kSheetExStyle;
    sheet.title = look.caption;
    sheet.font = look.font;
    AddControl(&sheet, u"Button", IDOK, texts.ok, WS_GROUP | BS_DEFPUSHBUTTON);
    AddControl(&sheet, u"Button", IDCANCEL, texts.cancel, BS_PUSHBUTTON);
    if (look.hasApply) {
        AddControl(&sheet, u"Button", kSheetApply, texts.apply, WS_DISABLED | BS_PUSHBUTTON);
    }
    if (look.hasHelp) {
        AddControl(&sheet, u"Button", kSheetHelp, texts.help, WS_DISABLED | BS_PUSHBUTTON);
    }
    // Pages lie over it.
    AddControl(&sheet, WC_TABCONTROLW, kSheetTabs, u"", WS_GROUP | WS_CLIPSIBLINGS);
    return MakeModelessDialog(nullptr, sheet, owner, proc, parameter);
}

RECT LayOutSheet(HWND sheet, const SheetLook& look) {
    const RECT margins = ToPixels(sheet, kMargins);
    const RECT button = ToPixels(sheet, kButton);
    const RECT gap = ToPixels(sheet, kGap);
    std::vector<int> buttons = {IDOK, IDCANCEL};
    if (look.hasApply) {
        buttons.push_back(kSheetApply);
    }
    if (look.hasHelp) {
        buttons.push_back(kSheetHelp);
    }
    const int rowWidth = static_cast<int>(buttons.size()) * (button.right + gap.right) - gap.right;

    const RECT page = ToPixels(sheet, {0, 0, look.pageUnits.cx, look.pageUnits.cy});
    RECT tabs = page;
    SendDlgItemMessageW(sheet, kSheetTabs, TCM_ADJUSTRECT, TRUE, reinterpret_cast<LPARAM>(&tabs));
    tabs.right = std::max<LONG>(tabs.right, tabs.left + rowWidth);
    const int width = tabs.right - tabs.left;
    const int height = tabs.bottom - tabs.top;
    Place(sheet, kSheetTabs, margins.left, margins.top, width, height);
    const int rowTop = margins.top + height + gap.bottom;
    int x = margins.left + width - rowWidth;
    for (const int id : buttons) {
        Place(sheet, id, x, rowTop, button.right, button.bottom);
        x += button.right + gap.right;
    }

    RECT whole = {0, 0, margins.left + width + margins.right, rowTop + button.bottom + margins.bottom};
    AdjustWindowRectEx(&whole, static_cast<DWORD>(GetWindowLongW(sheet, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongW(sheet, GWL_EXSTYLE)));
    const SIZE size = {whole.right - whole.left, whole.bottom - whole.top};
    const POINT place = FindPlace(GetWindow(sheet, GW_OWNER), size);
    SetWindowPos(sheet, nullptr, place.x, place.y, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);

    const int left = margins.left - tabs.left;
    const int top = margins.top - tabs.top;
    return {left, top, left + page.right, top + page.bottom};
}

}  // namespace host
