#include "driver/ui/color_sample.h"

#include "driver/base/heap.h"
#include "driver/ui/controls.h"
#include "driver/ui/pictures.h"

namespace velmora {
namespace {

// False where the pixels can't be had.
bool AdjustBitmap(HDC target, HBITMAP bitmap, const AdjustmentTable& table) {
    BITMAP size;
    if (!bitmap || GetObjectW(bitmap, sizeof(size), &size) == 0 || size.bmWidth <= 0 || size.bmHeight <= 0) {
        return false;
    }
    const auto lines = static_cast<UINT>(size.bmHeight);
    const size_t count = static_cast<size_t>(size.bmWidth) * lines;
    const auto pixels = HeapOwner<uint32_t>::Allocate(count);
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = size.bmWidth;
    info.bmiHeader.biHeight = size.bmHeight;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    if (!pixels || GetDIBits(target, bitmap, 0, lines, pixels.Get(), &info, DIB_RGB_COLORS) == 0) {
        return false;
    }
    MapPixels(table, pixels.Get(), count);
    return SetDIBits(target, bitmap, 0, lines, pixels.Get(), &info, DIB_RGB_COLORS) != 0;
}

}  // namespace

void DrawAdjustedSample(HWND dialog, HDC target, HMODULE module, const WCHAR* name, int control,
                        const AdjustmentTable& table) {
    const OwnedBitmap bitmap(LoadBitmapW(module, name));
    if (AdjustBitmap(target, bitmap.Get(), table)) {
        StretchBitmap(target, bitmap.Get(), ControlRect(dialog, control));
    }
}

}  // namespace velmora
