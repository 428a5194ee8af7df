// The information page of the document sheet: the logo, what the driver is, and all pages' defaults at once.
#pragma once

#include <windows.h>

namespace velmora {

INT_PTR CALLBACK InformationPageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace velmora
