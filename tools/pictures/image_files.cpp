#include "tools/pictures/image_files.h"

#include <cstddef>
#include <map>

namespace velmora {
namespace {

constexpr size_t kFileHeader = 14;  // BITMAPFILEHEADER (wingdi.h)
constexpr size_t kInfoHeader = 40;  // BITMAPINFOHEADER
constexpr size_t kIconHeader = 6;   // of an icon file, and of each of its images
constexpr size_t kIconEntry = 16;
constexpr size_t kRowAlignment = 4;
constexpr size_t kPixelsPerMetre = 3780;  // 96 to the inch
constexpr size_t kPaletteColors = 256;

void PutNumber(std::string& bytes, size_t value, int count) {
    for (int i = 0; i < count; ++i) {
        bytes += static_cast<char>(value >> 8 * i & 255);
    }
}

// `height` counts the rows of an icon's mask too.
std::string InfoHeader(int width, int height, int bits, size_t colors) {
    std::string bytes;
    PutNumber(bytes, kInfoHeader, 4);
    PutNumber(bytes, static_cast<size_t>(width), 4);
    PutNumber(bytes, static_cast<size_t>(height), 4);
    PutNumber(bytes, 1, 2);  // planes
    PutNumber(bytes, static_cast<size_t>(bits), 2);
    PutNumber(bytes, 0, 4);  // BI_RGB
    PutNumber(bytes, 0, 4);  // size of the pixels, not needed
    PutNumber(bytes, kPixelsPerMetre, 4);
    PutNumber(bytes, kPixelsPerMetre, 4);
    PutNumber(bytes, colors, 4);
    PutNumber(bytes, 0, 4);  // colours that matter: all
    return bytes;
}

// The rows of what `put` appends for a pixel, from the bottom up.
template <class Put>
std::string Rows(const Canvas& canvas, Put put) {
    std::string rows;
    for (int y = canvas.Height() - 1; y >= 0; --y) {
        for (int x = 0; x < canvas.Width(); ++x) {
            put(rows, x, y);
        }
        rows.append((kRowAlignment - rows.size() % kRowAlignment) % kRowAlignment, '\0');
    }
    return rows;
}

// Each colour and its place in a palette.
std::map<unsigned, size_t> ColorsOf(const Canvas& canvas) {
    std::map<unsigned, size_t> colors;
    for (int y = 0; y < canvas.Height(); ++y) {
        for (int x = 0; x < canvas.Width(); ++x) {
            colors.emplace(canvas.Pixel(x, y), colors.size());
        }
    }
    return colors;
}

}  // namespace

std::string EncodeBitmap(const Canvas& canvas) {
    const std::map<unsigned, size_t> colors = ColorsOf(canvas);
    const bool hasPalette = colors.size() <= kPaletteColors;
    std::string palette(hasPalette ? colors.size() * 4 : 0, '\0');
    if (hasPalette) {
        for (const auto& [color, place] : colors) {
            std::string entry;
            PutNumber(entry, color, 4);
            palette.replace(place * 4, 4, entry);
        }
    }
    const std::string rows = Rows(canvas, [&](std::string& bytes, int x, int y) {
        const unsigned color = canvas.Pixel(x, y);
        PutNumber(bytes, hasPalette ? colors.at(color) : color, hasPalette ? 1 : 3);
    });
    const size_t first = kFileHeader + kInfoHeader + palette.size();
    std::string bytes = "BM";
    PutNumber(bytes, first + rows.size(), 4);
    PutNumber(bytes, 0, 4);
    PutNumber(bytes, first, 4);  // where the pixels begin
    bytes += InfoHeader(canvas.Width(), canvas.Height(), hasPalette ? 8 : 24, hasPalette ? colors.size() : 0);
    return bytes + palette + rows;
}

std::string EncodeIcon(const Canvas& canvas) {
    const std::string colors = Rows(canvas, [&](std::string& bytes, int x, int y) {
        PutNumber(bytes, canvas.Pixel(x, y) | static_cast<size_t>(canvas.Alpha(x, y)) << 24, 4);
    });
    unsigned group = 0;  // of eight pixels, the leftmost in the highest bit
    const std::string mask = Rows(canvas, [&](std::string& bytes, int x, int y) {
        group |= (canvas.Alpha(x, y) == 0 ? 0x80U : 0U) >> x % 8;
        if (x % 8 == 7 || x == canvas.Width() - 1) {
            PutNumber(bytes, group, 1);
            group = 0;
        }
    });
    std::string bytes;
    PutNumber(bytes, 0, 2);
    PutNumber(bytes, 1, 2);  // icons, not cursors
    PutNumber(bytes, 1, 2);  // images
    PutNumber(bytes, static_cast<size_t>(canvas.Width()), 1);
    PutNumber(bytes, static_cast<size_t>(canvas.Height()), 1);
    PutNumber(bytes, 0, 2);  // colours of a palette; reserved
    PutNumber(bytes, 1, 2);  // planes
    PutNumber(bytes, 32, 2);
    PutNumber(bytes, kInfoHeader + colors.size() + mask.size(), 4);
    PutNumber(bytes, kIconHeader + kIconEntry, 4);
    return bytes + InfoHeader(canvas.Width(), canvas.Height() * 2, 32, 0) + colors + mask;
}

}  // namespace velmora
