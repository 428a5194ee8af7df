// Rendered watermarks in files (.WM, .CWM): a header, then the rows from the top, each packed by itself as PackBits has
// it. Paper isn't printed. docs/watermarks.md describes the format.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "driver/base/handles.h"

namespace velmora {

inline constexpr uint32_t kLongestSide = 32767;           // dots
inline constexpr uint64_t kMostDots = uint64_t{1} << 28;  // of a whole watermark
inline constexpr uint32_t kWatermarkMagic = 0x314D574B;   // "KWM1"
inline constexpr uint16_t kPackBits = 1;                  // WatermarkHeader::compression
inline constexpr COLORREF kPaper = RGB(0xFF, 0xFF, 0xFF);

// What a dot of a row is.
enum DotBits : uint16_t {
    kInkOrPaper = 1,  // set: ink of the header's colour; the first dot of a byte is its highest bit
    kGray = 8,        // 0 black to 255 paper
    kTrueColor = 24,  // red, green, blue; all 255 is paper
};

#pragma pack(push, 1)
struct WatermarkHeader {
    uint32_t magic;
    uint16_t headerSize;   // bytes
    uint16_t compression;  // of the rows
    uint32_t width;        // dots, 1 to kLongestSide, as the next
    uint32_t height;
    uint32_t resolution;  // dpi
    uint16_t dotBits;     // a DotBits
    uint16_t reserved;
    uint32_t inkColor;  // 0x00BBGGRR; of kInkOrPaper
};
#pragma pack(pop)
static_assert(sizeof(WatermarkHeader) == 28);

// Bytes of a row that isn't packed.
size_t RowBytes(const WatermarkHeader& header);

// Appends the packed row.
void PackRow(std::span<const uint8_t> row, std::vector<uint8_t>* packed);

// Fills the row from the beginning of `packed` and takes that away from it; false where it isn't whole.
bool UnpackRow(std::span<const uint8_t>* packed, std::span<uint8_t> row);

// Writes a file beside its place and puts it there once it is whole: there is never a half-written one.
class WatermarkFileWriter {
  public:
    explicit WatermarkFileWriter(const WCHAR* path);
    ~WatermarkFileWriter();
    WatermarkFileWriter(const WatermarkFileWriter&) = delete;
    WatermarkFileWriter& operator=(const WatermarkFileWriter&) = delete;

    // Each false where the file can't be written; then, and without Finish, no file is left.
    bool Begin(const WatermarkHeader& header);
    bool Add(std::span<const uint8_t> row);
    bool Finish();

  private:
    bool Flush();

    const WCHAR* path_;
    WCHAR unfinished_[MAX_PATH];
    OwnedFile file_;
    std::vector<uint8_t> packed_;
};

struct WatermarkPicture {
    WatermarkHeader header;
    std::vector<uint8_t> rows;  // unpacked, RowBytes each

    COLORREF ColorAt(uint32_t x, uint32_t y) const;
};

// A whole file's picture; none, and why in `*fault`, where the bytes aren't one.
std::optional<WatermarkPicture> ReadWatermarkFile(std::span<const uint8_t> bytes, const char** fault);

}  // namespace velmora
