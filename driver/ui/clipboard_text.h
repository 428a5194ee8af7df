// The text that the user has copied.
#pragma once

#include <windows.h>

#include <cstddef>

namespace velmora {

// Reads the clipboard's text for a window, cut to `capacity` - 1 characters and terminated. False, and an empty text,
// where there is none or another program has the clipboard.
bool ReadClipboardText(HWND window, WCHAR* text, size_t capacity);

}  // namespace velmora
