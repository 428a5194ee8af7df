// The Watermark page of the document sheet: the watermark of the pages, and the user's list of watermarks.
#pragma once

#include <windows.h>

#include "driver/ui/sheet_context.h"

namespace velmora {

// Controls that other pages look at.
inline constexpr int kWatermarkSwitch = 7003;
inline constexpr int kWatermarkName = 7005;

INT_PTR CALLBACK WatermarkPageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

// Restores the built-in watermarks of the open page and switches the watermark off, as its own button does.
void RestoreBuiltinWatermarks(HWND dialog, SheetContext* context);

}  // namespace velmora
