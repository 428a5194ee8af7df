// What the modal dialogs of the sheets have in common, among it what pages have too: help, and slots.
#pragma once

#include <windows.h>

#include "driver/ui/sheet_context.h"

namespace velmora {

// A modal dialog: its slot (kNoSlot: none) and what it does.
struct DialogFunctions {
    int slot;
    // Fills the opened dialog. Returns what WM_INITDIALOG does: TRUE lets the first control have the focus.
    BOOL (*initialize)(HWND dialog, SheetContext* context);
    // What the dialog procedure returns for messages that aren't answered alike everywhere.
    INT_PTR (*answer)(HWND dialog, SheetContext* context, UINT message, WPARAM wParam, LPARAM lParam);
};

// Runs a dialog of the language module until it ends. Returns its result, -1 where it can't be shown. `owner` may be
// null.
INT_PTR RunDialog(SheetContext* context, UINT dialogTemplate, HWND owner, DLGPROC proc);

// The dialog procedure of every modal dialog, for the dialog's own to call.
INT_PTR RouteDialogMessage(const DialogFunctions& functions, HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

// The messages that pages and dialogs answer alike: WM_HELP and WM_CONTEXTMENU. False for others.
bool RouteHelpMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

// Gives the slot of a page or dialog back; nothing for kNoSlot.
void ReleaseSlot(HWND dialog, int slot);

}  // namespace velmora
