// Pictures of the pages, from the module with the driver's pictures. Painters load the module for one paint.
#pragma once

#include <windows.h>

#include "driver/base/handles.h"
#include "driver/ui/sheet_context.h"

namespace velmora {

// The module with the pictures, beside the printer's rendering library; empty where there is none.
OwnedModule LoadImageModule(const SheetContext& context);

// Draws a bitmap of the module at a control's place in its dialog: stretched to the control or in its own size. Draws
// nothing where there is no such bitmap.
void DrawBitmapInControl(HWND dialog, HDC target, HMODULE module, const WCHAR* name, int control, bool isStretched);

// Draws a bitmap stretched to a place of the target; nothing for a null bitmap.
void StretchBitmap(HDC target, HBITMAP bitmap, const RECT& place);

// Draws a bitmap of the module stretched to a control's place, but for its white pixels. Nothing where there is none.
void DrawBitmapTransparent(HWND dialog, HDC target, HMODULE module, const WCHAR* name, int control);

// Draws an icon of the module at the upper left of a control's place, in its own size. Nothing where there is none.
void DrawIconInControl(HWND dialog, HDC target, HMODULE module, const WCHAR* name, int control);

}  // namespace velmora
