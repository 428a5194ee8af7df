// The Watermark page's preview: a sheet with its pages and the watermark on each of them.
#pragma once

#include <windows.h>

#include <cstdint>

#include "driver/settings/watermark_list.h"
#include "driver/ui/sheet_context.h"

namespace velmora {

struct PreviewRequest {
    int32_t paperWidth;   // 0.01 mm, upright
    int32_t paperLength;  // 0.01 mm
    bool isLandscape;
    uint32_t pagesPerSheet;  // 1, 2 or 4
    uint32_t posterSide;     // sheets along a side of a poster; 1: no poster
    bool isColor;
    int control;                // to draw in
    WatermarkRecord watermark;  // nothing is drawn of one that is no text
};

// The preview of a watermark on the paper and in the layout that the sheet's Paper page shows while it is open, and on
// those of the device mode otherwise.
PreviewRequest MakePreviewRequest(const SheetContext& context, const WatermarkRecord& watermark);

// Draws the preview at the control's place in its dialog. Draws nothing where the dialog has no such control, and less
// where the system has no room for what it takes.
void PaintPagePreview(HWND dialog, SheetContext* context, HDC target, const PreviewRequest& request);

}  // namespace velmora
