// The model's web page: its link on a page, and the browser that shows it.
#pragma once

#include <windows.h>

#include "driver/ui/sheet_context.h"

namespace velmora {

// Shows the hand over a link of the dialog, and what was there before it elsewhere. `point` in the dialog's
// coordinates.
void UpdateLinkCursor(HWND dialog, SheetContext* context, POINT point);

// A mouse button on the link: the hand stays while it is pressed, and the page opens when it is let go.
void OnLinkButton(HWND dialog, SheetContext* context, UINT message, POINT point);

// Opens the model's web page in the user's browser; nothing where the model names none or there is no browser.
void OpenModelLink(const SheetContext& context);

// The command line that opens `link` with a browser's open command, in `line` (`capacity` bytes). False where it
// doesn't fit, or the link would not stay one argument of the command: links are texts of model files, not commands.
bool BuildBrowserCommand(const WCHAR* openCommand, const WCHAR* link, char* line, size_t capacity);

}  // namespace velmora
