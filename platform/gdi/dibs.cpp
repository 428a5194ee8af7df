#include "platform/gdi/dibs.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

#include "platform/gdi/device_contexts.h"
#include "platform/gdi/pixels.h"
#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"

namespace host {
namespace {

constexpr int kLargestBits = 8;  // of pixels that are indices of a colour table

bool IsSide(int length) {
    return length >= 1 && length <= Surface::kLargestSide;
}

uint32_t LoadPixel(const uint8_t* at, int bits) {
    return at[0] | static_cast<uint32_t>(at[1]) << 8 | static_cast<uint32_t>(at[2]) << 16 |
           (bits == 32 ? static_cast<uint32_t>(at[3]) << 24 : 0);
}

void StorePixel(uint8_t* at, int bits, uint32_t pixel) {
    at[0] = static_cast<uint8_t>(pixel);
    at[1] = static_cast<uint8_t>(pixel >> 8);
    at[2] = static_cast<uint8_t>(pixel >> 16);
    if (bits == 32) {
        at[3] = 0;
    }
}

size_t BytesOfPixel(const DibLayout& layout) {
    return static_cast<size_t>(layout.bits) / 8;
}

// Calls back for each row that a scan line of the DIB and the bitmap have in common; returns how many.
template <class Row>
int ForEachLine(const DibLayout& layout, const Surface& surface, UINT start, UINT lines, Row row) {
    int count = 0;
    for (UINT line = 0; line < lines; ++line) {
        const int64_t at = static_cast<int64_t>(start) + line;
        if (at >= surface.height) {
            break;
        }
        row(layout.topDown ? static_cast<int>(at) : surface.height - 1 - static_cast<int>(at), line);
        ++count;
    }
    return count;
}

// The bitmap of GetDIBits and SetDIBits. Null where the call is not to be served.
std::shared_ptr<Bitmap> FindColorBitmap(HBITMAP handle, UINT usage, const char* call) {
    const auto bitmap = FindThing<Bitmap>(handle);
    if (!bitmap) {
        return nullptr;
    }
    if (usage != DIB_RGB_COLORS || bitmap->surface->monochrome) {
        FailUnsupported(call);
        return nullptr;
    }
    return bitmap;
}

void FillHeader(const Surface& surface, BITMAPINFOHEADER* header) {
    const DWORD size = header->biSize;
    *header = {};
    header->biSize = size;
    header->biWidth = surface.width;
    header->biHeight = surface.height;
    header->biPlanes = 1;
    header->biBitCount = surface.monochrome ? 1 : 32;
    header->biCompression = BI_RGB;
}

// Rows of one bit a pixel, each of whole 16-bit words, the first pixel in the highest bit.
void LoadMonochrome(const uint8_t* bits, Surface* surface) {
    const size_t rowBytes = static_cast<size_t>((surface->width + 15) / 16) * 2;
    for (int y = 0; y < surface->height; ++y) {
        for (int x = 0; x < surface->width; ++x) {
            const uint8_t byte = bits[static_cast<size_t>(y) * rowBytes + static_cast<size_t>(x) / 8];
            surface->Row(y)[x] = byte >> (7 - x % 8) & 1 ? kColorBits : 0;
        }
    }
}

bool CheckSides(int width, int height) {
    return (IsSide(width) && IsSide(height)) || Fail(ERROR_INVALID_PARAMETER);
}

HBITMAP AddBitmap(std::shared_ptr<Surface> surface, bool isSection = false) {
    return static_cast<HBITMAP>(AddThing(Bitmap{std::move(surface), isSection}));
}

}  // namespace

size_t DibLayout::RowBytes() const {
    return (static_cast<size_t>(width) * static_cast<size_t>(bits) + 31) / 32 * 4;
}

bool ReadLayout(const BITMAPINFOHEADER* header, const char* call, DibLayout* layout) {
    if (!header || header->biSize < sizeof(BITMAPINFOHEADER) || header->biPlanes != 1 ||
        header->biHeight < -Surface::kLargestSide) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    *layout = {header->biWidth, std::abs(header->biHeight), header->biBitCount, header->biHeight < 0};
    if (!CheckSides(layout->width, layout->height)) {
        return false;
    }
    if ((layout->bits != 24 && layout->bits != 32) || header->biCompression != BI_RGB) {
        return FailUnsupported((std::string(call) + " (of this format)").c_str());
    }
    return true;
}

bool ReadPackedDib(std::span<const uint8_t> bytes, int rows, Picture* picture, size_t* end) {
    BITMAPINFOHEADER header;
    if (bytes.size() < sizeof header) {
        return Fail(ERROR_INVALID_DATA);
    }
    std::memcpy(&header, bytes.data(), sizeof header);
    if (header.biHeight < -Surface::kLargestSide) {
        return Fail(ERROR_INVALID_DATA);
    }
    const DibLayout layout = {header.biWidth, rows != 0 ? rows : std::abs(header.biHeight), header.biBitCount,
                              header.biHeight < 0};
    if (header.biCompression != BI_RGB ||
        (layout.bits != 1 && layout.bits != 4 && layout.bits != 8 && layout.bits != 24 && layout.bits != 32)) {
        return FailUnsupported("a bitmap resource (of this format)");
    }
    const size_t tableColors = layout.bits > kLargestBits ? 0 : size_t{1} << layout.bits;
    const size_t colors = header.biClrUsed != 0 ? header.biClrUsed : tableColors;
    const size_t table = header.biSize;
    if (!IsSide(layout.width) || !IsSide(layout.height) || table < sizeof header || table > bytes.size() ||
        colors > (bytes.size() - table) / sizeof(RGBQUAD) ||
        layout.Bytes() > bytes.size() - table - colors * sizeof(RGBQUAD)) {
        return Fail(ERROR_INVALID_DATA);
    }
    const size_t first = table + colors * sizeof(RGBQUAD);
    picture->width = layout.width;
    picture->height = layout.height;
    picture->pixels.assign(static_cast<size_t>(layout.width) * static_cast<size_t>(layout.height), 0);
    uint32_t* pixel = picture->pixels.data();
    for (int y = 0; y < layout.height; ++y) {
        const int line = layout.topDown ? y : layout.height - 1 - y;
        const uint8_t* const row = bytes.data() + first + static_cast<size_t>(line) * layout.RowBytes();
        for (int x = 0; x < layout.width; ++x) {
            if (layout.bits > kLargestBits) {
                *pixel++ = LoadPixel(row + static_cast<size_t>(x) * BytesOfPixel(layout), layout.bits);
                continue;
            }
            const int bit = x * layout.bits;
            const size_t index = row[bit / 8] >> (8 - layout.bits - bit % 8) & ((1 << layout.bits) - 1);
            *pixel++ = index < colors ? LoadPixel(bytes.data() + table + index * sizeof(RGBQUAD), 24) : 0;
        }
    }
    *end = first + layout.Bytes();
    return true;
}

}  // namespace host

using namespace host;

extern "C" {

HBITMAP WINAPI CreateCompatibleBitmap(HDC context, int width, int height) {
    if (FaultAsked("CreateCompatibleBitmap")) {
        return nullptr;
    }
    const MachineLock lock;
    const DeviceContext* const found = FindContext(context);
    if (!found || !CheckSides(width, height)) {
        return nullptr;
    }
    const auto& selected = found->state.bitmap.thing;
    return AddBitmap(std::make_shared<Surface>(width, height, selected && selected->surface->monochrome));
}

HBITMAP WINAPI CreateBitmap(int width, int height, UINT planes, UINT bitsPerPixel, const VOID* bits) {
    if (FaultAsked("CreateBitmap") || !CheckSides(width, height)) {
        return nullptr;
    }
    if (planes != 1 || (bitsPerPixel != 1 && bitsPerPixel != 32)) {
        FailUnsupported("CreateBitmap (of these planes and bits)");
        return nullptr;
    }
    auto surface = std::make_shared<Surface>(width, height, bitsPerPixel == 1);
    if (bits && bitsPerPixel == 1) {
        LoadMonochrome(static_cast<const uint8_t*>(bits), surface.get());
    } else if (bits) {
        std::memcpy(surface->Pixels(), bits, static_cast<size_t>(width) * static_cast<size_t>(height) * 4);
    }
    return AddBitmap(std::move(surface));
}

HBITMAP WINAPI CreateDIBSection(HDC, const BITMAPINFO* info, UINT usage, VOID** bits, HANDLE section, DWORD) {
    if (bits) {
        *bits = nullptr;
    }
    DibLayout layout;
    if (FaultAsked("CreateDIBSection") || !ReadLayout(info ? &info->bmiHeader : nullptr, "CreateDIBSection", &layout)) {
        return nullptr;
    }
    if (usage != DIB_RGB_COLORS || section || layout.bits != 32) {
        FailUnsupported("CreateDIBSection (of a file, or of other pixels than of 32 bits)");
        return nullptr;
    }
    const auto surface = std::make_shared<Surface>(
        layout.width, layout.height, false, layout.topDown ? Surface::Order::kTopDown : Surface::Order::kBottomUp);
    const HBITMAP bitmap = AddBitmap(surface, true);
    if (bitmap && bits) {
        *bits = surface->Pixels();
    }
    return bitmap;
}

// What was drawn is there already: no call is put off.
BOOL WINAPI GdiFlush() {
    return TRUE;
}

int WINAPI GetDIBits(HDC context, HBITMAP bitmap, UINT start, UINT lines, LPVOID bits, LPBITMAPINFO info, UINT usage) {
    if (FaultAsked("GetDIBits")) {
        return 0;
    }
    const MachineLock lock;
    const auto found = FindContext(context) ? FindColorBitmap(bitmap, usage, "GetDIBits (of this bitmap)") : nullptr;
    if (!found) {
        return 0;
    }
    const Surface& surface = *found->surface;
    if (info && !bits && info->bmiHeader.biBitCount == 0) {
        FillHeader(surface, &info->bmiHeader);
    }
    DibLayout layout;
    if (!ReadLayout(info ? &info->bmiHeader : nullptr, "GetDIBits", &layout)) {
        return 0;
    }
    info->bmiHeader.biSizeImage = static_cast<DWORD>(layout.Bytes());
    if (!bits) {
        return surface.height;
    }
    const int width = std::min(layout.width, surface.width);
    return ForEachLine(layout, surface, start, lines, [&](int y, UINT line) {
        uint8_t* at = static_cast<uint8_t*>(bits) + line * layout.RowBytes();
        for (int x = 0; x < width; ++x, at += BytesOfPixel(layout)) {
            StorePixel(at, layout.bits, surface.Row(y)[x]);
        }
    });
}

int WINAPI SetDIBits(HDC, HBITMAP bitmap, UINT start, UINT lines, const VOID* bits, const BITMAPINFO* info,
                     UINT usage) {
    if (FaultAsked("SetDIBits")) {
        return 0;
    }
    const MachineLock lock;
    const auto found = FindColorBitmap(bitmap, usage, "SetDIBits (of this bitmap)");
    DibLayout layout;
    if (!found || !ReadLayout(info ? &info->bmiHeader : nullptr, "SetDIBits", &layout)) {
        return 0;
    }
    if (!bits) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    Surface& surface = *found->surface;
    const int width = std::min(layout.width, surface.width);
    return ForEachLine(layout, surface, start, lines, [&](int y, UINT line) {
        const uint8_t* at = static_cast<const uint8_t*>(bits) + line * layout.RowBytes();
        for (int x = 0; x < width; ++x, at += BytesOfPixel(layout)) {
            surface.Row(y)[x] = LoadPixel(at, layout.bits) & kColorBits;
        }
    });
}

}  // extern "C"
