#include "tests/contract/wine_picture.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace contract {
namespace {

using namespace std::string_literals;

std::string BigEndian(uint32_t number) {
    return {static_cast<char>(number >> 24), static_cast<char>(number >> 16), static_cast<char>(number >> 8),
            static_cast<char>(number)};
}

uint32_t Crc32(std::string_view bytes) {
    static const auto table = [] {
        std::array<uint32_t, 256> made;
        for (uint32_t i = 0; i < made.size(); ++i) {
            uint32_t value = i;
            for (int bit = 0; bit < 8; ++bit) {
                value = (value & 1) != 0 ? 0xEDB88320u ^ (value >> 1) : value >> 1;
            }
            made[i] = value;
        }
        return made;
    }();
    uint32_t crc = ~0u;
    for (const char byte : bytes) {
        crc = table[(crc ^ static_cast<uint8_t>(byte)) & 0xFF] ^ (crc >> 8);
    }
    return ~crc;
}

std::string Chunk(const std::string& kind, const std::string& content) {
    return BigEndian(static_cast<uint32_t>(content.size())) + kind + content + BigEndian(Crc32(kind + content));
}

// A zlib stream of stored blocks.
std::string Stored(std::string_view bytes) {
    constexpr size_t kLongestBlock = 0xFFFF;
    std::string stream = "\x78\x01";
    uint32_t a = 1;
    uint32_t b = 0;
    for (const char byte : bytes) {
        a = (a + static_cast<uint8_t>(byte)) % 65521;
        b = (b + a) % 65521;
    }
    for (size_t at = 0; at < bytes.size(); at += kLongestBlock) {
        const std::string_view block = bytes.substr(at, kLongestBlock);
        const auto length = static_cast<uint16_t>(block.size());
        stream += at + length == bytes.size() ? '\1' : '\0';
        for (const int part : {length & 0xFF, length >> 8, ~length & 0xFF, (~length >> 8) & 0xFF}) {
            stream += static_cast<char>(part);
        }
        stream += block;
    }
    return stream + BigEndian(b << 16 | a);
}

// The window's pixels as rows of a PNG image: a filter byte of 0, then red, green and blue of each pixel.
std::string Rows(HWND window, int width, int height) {
    RedrawWindow(window, nullptr, nullptr, RDW_ALLCHILDREN | RDW_UPDATENOW);
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;  // the first row is the uppermost
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    const HDC source = GetWindowDC(window);
    const HDC target = CreateCompatibleDC(source);
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(target, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    std::string rows;
    if (bitmap != nullptr) {
        const HGDIOBJ former = SelectObject(target, bitmap);
        if (BitBlt(target, 0, 0, width, height, source, 0, 0, SRCCOPY)) {
            GdiFlush();
            const auto* pixel = static_cast<const RGBQUAD*>(bits);
            for (int y = 0; y < height; ++y) {
                rows += '\0';
                for (int x = 0; x < width; ++x, ++pixel) {
                    rows += static_cast<char>(pixel->rgbRed);
                    rows += static_cast<char>(pixel->rgbGreen);
                    rows += static_cast<char>(pixel->rgbBlue);
                }
            }
        }
        SelectObject(target, former);
        DeleteObject(bitmap);
    }
    DeleteDC(target);
    ReleaseDC(window, source);
    return rows;
}

}  // namespace

void SaveWindowPicture(HWND window, const std::filesystem::path& file) {
    RECT rect = {};
    if (!GetWindowRect(window, &rect) || rect.right <= rect.left || rect.bottom <= rect.top) {
        throw std::runtime_error("no window to take a picture of");
    }
    const std::string rows = Rows(window, rect.right - rect.left, rect.bottom - rect.top);
    if (rows.empty()) {
        throw std::runtime_error("a window's pixels can't be read");
    }
    const std::string header = BigEndian(static_cast<uint32_t>(rect.right - rect.left)) +
                               BigEndian(static_cast<uint32_t>(rect.bottom - rect.top)) +
                               "\x08\x02\0\0\0"s;  // 8 bits a sample, red, green and blue
    std::ofstream stream(file, std::ios::binary);
    stream << "\x89PNG\r\n\x1A\n" << Chunk("IHDR", header) << Chunk("IDAT", Stored(rows)) << Chunk("IEND", {});
    if (!stream.flush()) {
        throw std::runtime_error("can't write " + file.string());
    }
}

}  // namespace contract
