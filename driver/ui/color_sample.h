// Sample pictures as a colour adjustment makes them.
#pragma once

#include <windows.h>

#include "driver/ui/color_adjustment.h"

namespace velmora {

// Draws a bitmap of the module, mapped by the table, stretched to a control's place in its dialog. Draws nothing where
// there is no such bitmap, or no memory for its pixels.
void DrawAdjustedSample(HWND dialog, HDC target, HMODULE module, const WCHAR* name, int control,
                        const AdjustmentTable& table);

}  // namespace velmora
