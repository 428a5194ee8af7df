// The Color page of the document sheet: how colours are printed, and the resolution.
#pragma once

#include <windows.h>

namespace velmora {

INT_PTR CALLBACK ColorPageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace velmora
