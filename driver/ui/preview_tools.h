// What the watermark's preview is drawn with. A sheet keeps it from one redraw to the next, since every change of the
// page redraws the preview.
#pragma once

#include <windows.h>

#include <cstddef>

#include "driver/base/handles.h"
#include "driver/settings/watermark_list.h"

namespace velmora {

// Made on first use and given back with the sheet. Nothing stays selected into the context between redraws.
struct PreviewTools {
    static constexpr size_t kSlices = 3;

    OwnedDeviceContext memory;
    OwnedBitmap bitmap;  // of the preview's size
    SIZE bitmapSize;     // pixels
    OwnedBrush faceBrush;
    OwnedPen facePen;
    COLORREF faceColor;  // of the two: the user may change the dialogs' colour
    OwnedPen contentPen;
    OwnedPen divisionPen;
    OwnedBrush colorSlices[kSlices];  // of the mark
    OwnedBrush graySlices[kSlices];
    OwnedFont labelFont;
    int labelHeight;  // of `labelFont`, pixels
    OwnedFont watermarkFont;
    WatermarkRecord watermark;  // that `watermarkFont` is for
};

}  // namespace velmora
