// What the pages of the sheets have in common: how messages reach a page, how it is opened, marked as changed,
// committed and closed.
#pragma once

#include <windows.h>

#include <prsht.h>

#include "driver/ui/sheet_context.h"

namespace velmora {

// A page: its slot and what it does. Functions that a page has no use for are null. Pages of a sheet that one of these
// pages opens have kNoSlot: their apply, which they must have, is called whether or not they are changed, and commits
// nothing.
struct PageFunctions {
    int slot;
    // Fills the opened page. Returns what WM_INITDIALOG does: TRUE lets the first control have the focus.
    BOOL (*initialize)(HWND dialog, SheetContext* context);
    void (*command)(HWND dialog, SheetContext* context, int id, int code);
    // Writes the controls into the device mode or the printer's data and ends with CommitPage. Called only while the
    // page is marked as changed; whether it still is afterwards is told to the sheet.
    void (*apply)(HWND dialog, SheetContext* context);
    // The page comes to the front.
    void (*activate)(HWND dialog, SheetContext* context);
    // Paints what the controls don't: between BeginPaint and EndPaint.
    void (*paint)(HWND dialog, SheetContext* context, HDC paint);
    // WM_HSCROLL and WM_VSCROLL of a slider or spin. The position is that of SB_THUMBPOSITION and SB_THUMBTRACK.
    void (*scroll)(HWND dialog, SheetContext* context, UINT message, int code, int position, HWND control);
    // WM_MOUSEMOVE, WM_LBUTTONDOWN and WM_LBUTTONUP on the page itself, in its coordinates.
    void (*mouse)(HWND dialog, SheetContext* context, UINT message, POINT point);
};

// The dialog procedure of every page, for the page's own to call.
INT_PTR RoutePageMessage(const PageFunctions& page, HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

// Marks a page as changed: its settings wait for the sheet's Apply.
void MarkPageChanged(HWND dialog, SheetContext* context, int slot);

// The same for the Color page and what its dialogs change; nothing while the page isn't open.
void MarkColorPageChanged(SheetContext* context);

// Ends a page's apply. The last changed page to be applied commits them all: it is checked whether the device can print
// what is asked, the host is told, and the snapshots follow. A conflict keeps the page changed and the sheet open.
void CommitPage(SheetContext* context, int slot);

}  // namespace velmora
