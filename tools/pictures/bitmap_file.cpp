#include "tools/pictures/bitmap_file.h"

#include <cstddef>

namespace velmora {
namespace {

constexpr size_t kHeaderBytes = 14 + 40;  // BITMAPFILEHEADER and BITMAPINFOHEADER (wingdi.h)
constexpr size_t kRowAlignment = 4;
constexpr size_t kPixelsPerMetre = 3780;  // 96 to the inch

void PutNumber(std::string& bytes, size_t value, int count) {
    for (int i = 0; i < count; ++i) {
        bytes += static_cast<char>(value >> 8 * i & 255);
    }
}

}  // namespace

std::string EncodeBitmap(const Canvas& canvas) {
    const auto width = static_cast<size_t>(canvas.Width());
    const auto height = static_cast<size_t>(canvas.Height());
    const size_t rowBytes = (width * 3 + kRowAlignment - 1) / kRowAlignment * kRowAlignment;
    std::string bytes = "BM";
    PutNumber(bytes, kHeaderBytes + rowBytes * height, 4);
    PutNumber(bytes, 0, 4);
    PutNumber(bytes, kHeaderBytes, 4);  // where the pixels begin
    PutNumber(bytes, 40, 4);
    PutNumber(bytes, width, 4);
    PutNumber(bytes, height, 4);
    PutNumber(bytes, 1, 2);   // planes
    PutNumber(bytes, 24, 2);  // bits a pixel
    PutNumber(bytes, 0, 4);   // BI_RGB
    PutNumber(bytes, rowBytes * height, 4);
    PutNumber(bytes, kPixelsPerMetre, 4);
    PutNumber(bytes, kPixelsPerMetre, 4);
    PutNumber(bytes, 0, 4);  // colours of a palette
    PutNumber(bytes, 0, 4);
    for (int y = canvas.Height() - 1; y >= 0; --y) {
        for (int x = 0; x < canvas.Width(); ++x) {
            PutNumber(bytes, canvas.Pixel(x, y), 3);
        }
        bytes.append(rowBytes - width * 3, '\0');
    }
    return bytes;
}

}  // namespace velmora
