// What every context has selected at first.
#pragma once

#include <windows.h>

namespace host {

// Null where the layer doesn't have the stock object.
HGDIOBJ StockObject(int index);

// One black pixel, in every memory context until another bitmap is selected.
HBITMAP DefaultBitmap();

}  // namespace host
