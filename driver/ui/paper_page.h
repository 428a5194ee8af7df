// The Paper page of the document sheet: paper, scaling, source, medium, copies, orientation, both sides, page layout.
#pragma once

#include <windows.h>

namespace velmora {

INT_PTR CALLBACK PaperPageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace velmora
