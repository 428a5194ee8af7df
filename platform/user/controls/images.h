// Pictures that controls show.
#pragma once

#include <windows.h>

namespace host {

// Null handle: none. The control's owner keeps what a message gave; what a control loaded by itself it frees.
struct Image {
    UINT type = IMAGE_BITMAP;  // IMAGE_BITMAP or IMAGE_ICON
    HANDLE handle = nullptr;
};

SIZE SizeOf(const Image& image);
void DrawImageAt(HDC context, int x, int y, const Image& image);
void DrawImageCentered(HDC context, const RECT& rect, const Image& image);

}  // namespace host
