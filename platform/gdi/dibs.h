// Device-independent bitmaps: rows of 24- and 32-bit pixels in a program's memory, and the packed ones of resources.
#pragma once

#include <windows.h>

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "platform/gdi/surfaces.h"

namespace host {

// How the pixels of a header lie in memory. Rows are multiples of 4 bytes.
struct DibLayout {
    int width;
    int height;  // rows, whatever their order
    int bits;    // of a pixel
    bool topDown;

    size_t RowBytes() const;
    size_t Bytes() const { return RowBytes() * static_cast<size_t>(height); }
};

// False where the header isn't one, or (loudly) where its format isn't supported; `call` is the published call's name.
bool ReadLayout(const BITMAPINFOHEADER* header, const char* call, DibLayout* layout);

// Pixels 0xAARRGGBB from the top; alpha is 0 where there is none.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<uint32_t> pixels;
};

// A bitmap resource: header, colour table, rows; of 1, 4, 8, 24 or 32 bits a pixel. `rows`: how many it has where the
// header counts others too (an icon's mask), 0: the header's. `end`: where the rows end. False where the bytes don't
// hold it, or (loudly) where its format isn't supported.
bool ReadPackedDib(std::span<const uint8_t> bytes, int rows, Picture* picture, size_t* end);

}  // namespace host
