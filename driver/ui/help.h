// Help: the topic of the sheets, and a popup for each control, shown by the system's HTML Help engine. The engine is
// looked for once in the life of the process; without one nothing is shown. User-interface thread only.
#pragma once

#include <windows.h>

#include "driver/ui/sheet_context.h"

namespace velmora {

// The engine's answer to a command (HH_, htmlhelp.h), 0 where there is no engine. All requests go through here.
HWND CallHtmlHelp(HWND window, const WCHAR* file, UINT command, DWORD_PTR data);

// The help file's topic of the sheets.
void ShowPageHelp(HWND dialog, const SheetContext& context);

// The popup of the control that has the focus or was pointed at; nothing where there is no text for it.
void ShowControlHelp(const SheetContext& context, const HELPINFO& info);

// The popup of a control by a click for a context menu: on the control's window or, where that is disabled, on the
// dialog at `point` (screen).
void ShowContextHelp(HWND dialog, const SheetContext& context, HWND window, POINT point);

// Ends the use of the engine, when it was begun.
void EndHelp();

}  // namespace velmora
