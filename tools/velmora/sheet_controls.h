// Controls of dialogs as a user sees and sets them, by the published messages and notifications.
#pragma once

#include <windows.h>

#include <string>

#include "tools/velmora/table.h"

namespace velmora {

// UTF-8.
std::string WindowText(HWND window);

// The control of a dialog, shown and enabled. Throws a CommandError where there is none, naming those there are.
HWND FindControl(HWND dialog, int id);

// Check boxes and radio buttons: "0" or "1". Combo and list boxes: an item's data or its text. Edit fields, also those
// of combo boxes: the text. Sliders: the position. Throws a CommandError for what the control can't be set to, naming
// what it can.
void SetControl(HWND control, const std::string& value);

// Presses a button as a click does. Returns when what it does is done: a dialog that it opens runs meanwhile.
void PressButton(HWND button);

// Id, class, state, value, label (of boxes) and items of each control of a dialog.
Table ReportControls(HWND dialog, const std::string& title);

}  // namespace velmora
