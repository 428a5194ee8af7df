#include "tools/wm/watermark_file.h"

#include <algorithm>
#include <cstring>

#include "driver/base/text.h"

namespace velmora {
namespace {

constexpr size_t kLongestRun = 128;  // bytes that one count stands for
constexpr size_t kShortestRun = 3;   // shorter ones are no shorter packed
constexpr size_t kFlushedBytes = 1 << 16;
constexpr WCHAR kUnfinishedEnding[] = TEXT("~");

// How many bytes in front are the same.
size_t RunLength(std::span<const uint8_t> bytes) {
    size_t length = 1;
    while (length < bytes.size() && length < kLongestRun && bytes[length] == bytes[0]) {
        ++length;
    }
    return length;
}

bool IsKnownDot(uint16_t bits) {
    return bits == kInkOrPaper || bits == kGray || bits == kTrueColor;
}

const char* HeaderFault(const WatermarkHeader& header, size_t fileSize) {
    if (header.magic != kWatermarkMagic) {
        return "it isn't a rendered watermark";
    }
    if (header.headerSize < sizeof(header) || header.headerSize > fileSize || header.compression != kPackBits ||
        !IsKnownDot(header.dotBits)) {
        return "its header says what this program doesn't know";
    }
    if (header.width == 0 || header.width > kLongestSide || header.height == 0 || header.height > kLongestSide ||
        uint64_t{header.width} * header.height > kMostDots) {
        return "its size is no watermark's";
    }
    return nullptr;
}

}  // namespace

size_t RowBytes(const WatermarkHeader& header) {
    return (size_t{header.width} * header.dotBits + 7) / 8;
}

void PackRow(std::span<const uint8_t> row, std::vector<uint8_t>* packed) {
    while (!row.empty()) {
        const size_t run = RunLength(row);
        if (run >= kShortestRun) {
            packed->push_back(static_cast<uint8_t>(257 - run));
            packed->push_back(row[0]);
            row = row.subspan(run);
            continue;
        }
        size_t length = run;
        while (length < row.size() && length < kLongestRun && RunLength(row.subspan(length)) < kShortestRun) {
            ++length;
        }
        packed->push_back(static_cast<uint8_t>(length - 1));
        packed->insert(packed->end(), row.begin(), row.begin() + static_cast<ptrdiff_t>(length));
        row = row.subspan(length);
    }
}

bool UnpackRow(std::span<const uint8_t>* packed, std::span<uint8_t> row) {
    while (!row.empty()) {
        if (packed->empty()) {
            return false;
        }
        const uint8_t count = packed->front();
        const bool isRun = count > 128;
        const size_t length = isRun ? 257 - count : size_t{count} + 1;
        const size_t taken = isRun ? 1 : length;
        if (count == 128 || length > row.size() || packed->size() - 1 < taken) {
            return false;
        }
        const std::span<const uint8_t> bytes = packed->subspan(1, taken);
        if (isRun) {
            std::fill_n(row.begin(), length, bytes[0]);
        } else {
            std::copy(bytes.begin(), bytes.end(), row.begin());
        }
        row = row.subspan(length);
        *packed = packed->subspan(1 + taken);
    }
    return true;
}

WatermarkFileWriter::WatermarkFileWriter(const WCHAR* path) : path_(path) {
    CopyText<WCHAR>(unfinished_, ARRAYSIZE(unfinished_), path);
    AppendText<WCHAR>(unfinished_, ARRAYSIZE(unfinished_), kUnfinishedEnding);
}

WatermarkFileWriter::~WatermarkFileWriter() {
    if (file_) {
        file_.Close();
        DeleteFileW(unfinished_);
    }
}

bool WatermarkFileWriter::Begin(const WatermarkHeader& header) {
    file_ =
        OwnedFile(CreateFileW(unfinished_, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    const auto* const bytes = reinterpret_cast<const uint8_t*>(&header);
    packed_.assign(bytes, bytes + sizeof(header));
    return static_cast<bool>(file_);
}

bool WatermarkFileWriter::Add(std::span<const uint8_t> row) {
    PackRow(row, &packed_);
    return packed_.size() < kFlushedBytes || Flush();
}

bool WatermarkFileWriter::Flush() {
    DWORD written = 0;
    const auto size = static_cast<DWORD>(packed_.size());
    const bool isWritten = WriteFile(file_.Get(), packed_.data(), size, &written, nullptr) && written == size;
    packed_.clear();
    return isWritten;
}

bool WatermarkFileWriter::Finish() {
    if (!Flush()) {
        return false;
    }
    file_.Close();
    if (!MoveFileExW(unfinished_, path_, MOVEFILE_REPLACE_EXISTING)) {
        DeleteFileW(unfinished_);
        return false;
    }
    return true;
}

COLORREF WatermarkPicture::ColorAt(uint32_t x, uint32_t y) const {
    const uint8_t* const row = rows.data() + RowBytes(header) * y;
    switch (header.dotBits) {
        case kInkOrPaper:
            return row[x / 8] >> (7 - x % 8) & 1 ? header.inkColor : kPaper;
        case kGray:
            return RGB(row[x], row[x], row[x]);
        default:
            return RGB(row[x * 3], row[x * 3 + 1], row[x * 3 + 2]);
    }
}

std::optional<WatermarkPicture> ReadWatermarkFile(std::span<const uint8_t> bytes, const char** fault) {
    WatermarkPicture picture = {};
    if (bytes.size() >= sizeof(picture.header)) {
        memcpy(&picture.header, bytes.data(), sizeof(picture.header));
    }
    *fault = HeaderFault(picture.header, bytes.size());
    if (*fault) {
        return std::nullopt;
    }
    bytes = bytes.subspan(picture.header.headerSize);
    const size_t rowBytes = RowBytes(picture.header);
    for (uint32_t y = 0; y < picture.header.height; ++y) {
        // Grows with what is there, whatever size the header says.
        picture.rows.resize(picture.rows.size() + rowBytes);
        if (!UnpackRow(&bytes, std::span(picture.rows).last(rowBytes))) {
            *fault = "it is damaged or cut";
            return std::nullopt;
        }
    }
    if (!bytes.empty()) {
        *fault = "there is more behind its last row";
        return std::nullopt;
    }
    return picture;
}

}  // namespace velmora
