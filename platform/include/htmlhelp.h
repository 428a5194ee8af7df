// The HTML Help interface (htmlhelp.h). Its engine is a module of its own, found by the registry; its entry point,
// ordinal 15, is called with a window, a file ("help.chm::/topic.htm"), a command and the command's data.
#pragma once

#include <windows.h>

#define HH_DISPLAY_TOPIC 0x0000        // data: none
#define HH_DISPLAY_TEXT_POPUP 0x000E   // data: HH_POPUP
#define HH_TP_HELP_CONTEXTMENU 0x0010  // data: pairs of DWORDs (control id, topic), ending with a pair of zeros
#define HH_INITIALIZE 0x001C           // data: address of a DWORD that receives a cookie
#define HH_UNINITIALIZE 0x001D         // data: the cookie

// A text shown in a small window. A colour or a margin of -1 is the engine's own.
typedef struct tagHH_POPUP {
    int cbStruct;
    HINSTANCE hinst;  // null: idString is a topic of the file
    UINT idString;
    LPCWSTR pszText;
    POINT pt;  // screen
    COLORREF clrForeground;
    COLORREF clrBackground;
    RECT rcMargins;
    LPCWSTR pszFont;  // null: the engine's own
} HH_POPUP;
static_assert(sizeof(HH_POPUP) == 72);
