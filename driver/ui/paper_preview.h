// The Paper page's pictures: the sheet with its pages, the edge that it is bound at, and the order of copies.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/ui/paper_rules.h"
#include "driver/ui/sheet_context.h"

namespace velmora {

// Controls of the page in whose place the pictures are.
inline constexpr int kPreviewControl = 5002;
inline constexpr int kCollatePictureControl = 5020;

// The sheet as the preview shows it.
struct PreviewSheet {
    uint32_t layout;  // a PageLayout
    size_t order;     // of the layout's pages, from 0
    size_t binding;   // uiBinding
    bool isLandscape;
    bool isDuplex;
    bool isRotated;

    bool operator==(const PreviewSheet&) const = default;
};

PreviewSheet PreviewOf(const PaperChoices& choices, size_t order);

// Bitmaps of the module with the pictures.
struct PreviewNames {
    WCHAR sheet[32];
    WCHAR edge[32];  // drawn over the sheet, white is transparent; empty for none
};

PreviewNames NamePreview(const PreviewSheet& sheet);

// The bitmap of how copies are sorted.
const WCHAR* CollatePicture(bool isCollated);

// The order to show of a layout's pages. `orders` remembers the last one of each layout, since `pageOrder` (a
// uiPageOrder) is of another layout after the layout was changed.
size_t TakePreviewOrder(uint32_t layout, uint16_t pageOrder, PreviewOrders* orders);

void PaintPaperPreview(HWND dialog, SheetContext* context, HDC target);

}  // namespace velmora
