// The window of a property sheet: a dialog with tabs and a row of buttons, as large as its largest page needs.
#pragma once

#include <windows.h>

#include <string>

#include "platform/user/dialog_template.h"

namespace host {

// Controls, by their published ids; OK and Cancel are IDOK and IDCANCEL.
inline constexpr int kSheetHelp = 9;
inline constexpr int kSheetTabs = 0x3020;
inline constexpr int kSheetApply = 0x3021;

struct SheetLook {
    std::u16string caption;
    DialogFont font;
    SIZE pageUnits;  // of the largest page, in dialog units of the font
    bool hasApply;
    bool hasHelp;
};

// The window, hidden, and with the tabs' control empty. Null where it can't be made.
HWND CreateSheetWindow(const SheetLook& look, HWND owner, DLGPROC proc, LPARAM parameter);

// Gives the window and its controls their sizes and places, over its owner or in the middle of the screen. Returns
// where its pages lie in its client area.
RECT LayOutSheet(HWND sheet, const SheetLook& look);

}  // namespace host
