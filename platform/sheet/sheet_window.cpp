#include "platform/sheet/sheet_window.h"

#include <commctrl.h>

#include <algorithm>
#include <vector>

#include "platform/sheet/sheet_texts.h"

namespace host {
namespace {

// Dialog units.
constexpr RECT kMargins = {7, 7, 7, 7};
constexpr RECT kButton = {0, 0, 50, 14};
constexpr RECT kGap = {0, 0, 4, 7};  // between buttons, and between the tabs and the buttons

constexpr DWORD kSheetStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_3DLOOK | DS_SHELLFONT;
constexpr DWORD kSheetExStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;

// Writes a template in the form that its extended version has.
class TemplateWriter {
  public:
    void Word(size_t word) { words_.push_back(static_cast<WORD>(word)); }
    void Long(DWORD number) {
        Word(LOWORD(number));
        Word(HIWORD(number));
    }
    void Text(std::u16string_view text) {
        words_.insert(words_.end(), text.begin(), text.end());
        Word(0);
    }
    void Align() {
        if (words_.size() % 2 != 0) {
            Word(0);
        }
    }
    LPCDLGTEMPLATEW Get() const { return reinterpret_cast<LPCDLGTEMPLATEW>(words_.data()); }

  private:
    std::vector<WORD> words_;
};

void AddControl(TemplateWriter& writer, std::u16string_view className, int id, std::u16string_view text, DWORD style) {
    writer.Align();
    writer.Long(0);  // help id
    writer.Long(0);  // extended style
    writer.Long(style | WS_CHILD | WS_TABSTOP);
    writer.Long(0);  // place and size come later
    writer.Long(0);
    writer.Long(static_cast<DWORD>(id));
    writer.Text(className);
    writer.Text(text);
    writer.Word(0);  // no data
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
    TemplateWriter writer;
    writer.Word(1);
    writer.Word(0xFFFF);
    writer.Long(0);  // help id
    writer.Long(kSheetExStyle);
    writer.Long(kSheetStyle);
    writer.Word(3u + look.hasApply + look.hasHelp);
    writer.Long(0);  // place and size come later
    writer.Long(0);
    writer.Word(0);  // no menu
    writer.Word(0);  // the class of dialogs
    writer.Text(look.caption);
    writer.Word(look.font.points);
    writer.Word(look.font.weight);
    writer.Word(look.font.isItalic | look.font.charSet << 8);
    writer.Text(look.font.face);
    AddControl(writer, u"Button", IDOK, texts.ok, WS_VISIBLE | WS_GROUP | BS_DEFPUSHBUTTON);
    AddControl(writer, u"Button", IDCANCEL, texts.cancel, WS_VISIBLE | BS_PUSHBUTTON);
    if (look.hasApply) {
        AddControl(writer, u"Button", kSheetApply, texts.apply, WS_VISIBLE | WS_DISABLED | BS_PUSHBUTTON);
    }
    if (look.hasHelp) {
        AddControl(writer, u"Button", kSheetHelp, texts.help, WS_VISIBLE | WS_DISABLED | BS_PUSHBUTTON);
    }
    // Pages lie over it.
    AddControl(writer, WC_TABCONTROLW, kSheetTabs, u"", WS_VISIBLE | WS_GROUP | WS_CLIPSIBLINGS);
    return CreateDialogIndirectParamW(nullptr, writer.Get(), owner, proc, parameter);
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
