// The About page: what a sheet shows that has no other page, with a link to the model's web page.
#pragma once

#include <windows.h>

namespace velmora {

INT_PTR CALLBACK AboutPageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace velmora
