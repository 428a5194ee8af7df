// Pictures of bitmap files, turned and scaled by the nearest of their pixels.
#include <algorithm>
#include <cstring>
#include <span>
#include <vector>

#include "driver/settings/watermark_list.h"
#include "tools/wm/drawing.h"

namespace velmora {
namespace {

constexpr LONGLONG kLargestFile = 1 << 28;  // bytes
constexpr WORD kBitmapType = 0x4D42;        // "BM"
constexpr double kScreenResolution = 96;    // dpi, of pictures that say none
constexpr double kMetersPerInch = 0.0254;

// An uncompressed bitmap file of 1, 4, 8, 24 or 32 bits a pixel.
class Bitmap {
  public:
    RenderResult Read(const WCHAR* path) {
        const OwnedFile file(
            CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        LARGE_INTEGER size = {};
        if (!file || !GetFileSizeEx(file.Get(), &size)) {
            return kNoPicture;
        }
        if (size.QuadPart > kLargestFile) {
            return kTooLarge;
        }
        bytes_.resize(static_cast<size_t>(size.QuadPart));
        DWORD count = 0;
        if (!ReadFile(file.Get(), bytes_.data(), static_cast<DWORD>(bytes_.size()), &count, nullptr) ||
            count != bytes_.size()) {
            return kNoPicture;
        }
        return Parse() ? kRendered : kUnknownPicture;
    }

    uint32_t Width() const { return static_cast<uint32_t>(header_.biWidth); }
    uint32_t Height() const { return height_; }
    // Of a direction, by its pixels a metre.
    static double Resolution(LONG pixels) { return pixels > 0 ? pixels * kMetersPerInch : kScreenResolution; }
    double ResolutionX() const { return Resolution(header_.biXPelsPerMeter); }
    double ResolutionY() const { return Resolution(header_.biYPelsPerMeter); }

    COLORREF ColorAt(uint32_t x, uint32_t y) const {
        const uint8_t* const row = rows_.data() + rowBytes_ * (header_.biHeight < 0 ? y : height_ - 1 - y);
        const uint32_t bits = header_.biBitCount;
        const uint8_t* pixel = row + size_t{x} * bits / 8;
        if (bits <= 8) {
            const size_t index = *pixel >> (8 - bits - x * bits % 8) & ((1u << bits) - 1);
            if (index >= colors_.size() / sizeof(RGBQUAD)) {
                return RGB(0, 0, 0);
            }
            pixel = colors_.data() + index * sizeof(RGBQUAD);
        }
        return RGB(pixel[2], pixel[1], pixel[0]);
    }

  private:
    bool Parse() {
        BITMAPFILEHEADER file;
        constexpr size_t kHeaders = sizeof(file) + sizeof(header_);
        if (bytes_.size() < kHeaders) {
            return false;
        }
        memcpy(&file, bytes_.data(), sizeof(file));
        memcpy(&header_, bytes_.data() + sizeof(file), sizeof(header_));
        const WORD bits = header_.biBitCount;
        const bool isKnown = bits == 1 || bits == 4 || bits == 8 || bits == 24 || bits == 32;
        if (file.bfType != kBitmapType || header_.biSize < sizeof(header_) || header_.biPlanes != 1 || !isKnown ||
            header_.biCompression != BI_RGB || header_.biWidth <= 0 || header_.biHeight == 0 ||
            header_.biHeight == INT32_MIN) {
            return false;
        }
        height_ = static_cast<uint32_t>(std::abs(static_cast<int64_t>(header_.biHeight)));
        rowBytes_ = (size_t{Width()} * bits + 31) / 32 * 4;
        const std::span<const uint8_t> all(bytes_);
        if (file.bfOffBits < kHeaders || file.bfOffBits > all.size() ||
            (all.size() - file.bfOffBits) / rowBytes_ < height_) {
            return false;
        }
        rows_ = all.subspan(file.bfOffBits);
        const size_t table = sizeof(file) + std::min<size_t>(header_.biSize, file.bfOffBits - sizeof(file));
        const size_t mostColors = bits <= 8 ? size_t{1} << bits : 0;
        const size_t saidColors = header_.biClrUsed != 0 ? header_.biClrUsed : mostColors;
        colors_ = all.first(file.bfOffBits).subspan(table);
        colors_ = colors_.first(std::min(colors_.size(), std::min(saidColors, mostColors) * sizeof(RGBQUAD)));
        return true;
    }

    std::vector<uint8_t> bytes_;
    BITMAPINFOHEADER header_ = {};
    uint32_t height_ = 0;
    size_t rowBytes_ = 0;
    std::span<const uint8_t> rows_;
    std::span<const uint8_t> colors_;
};

class PictureDrawing final : public Drawing {
  public:
    explicit PictureDrawing(const RenderJob& job) : turn_(job.angle) {}

    RenderResult Prepare(const RenderJob& job) {
        const RenderResult read = bitmap_.Read(job.picture.file);
        if (read != kRendered) {
            return read;
        }
        const auto scaled = [&](uint32_t pixels, uint32_t percent, double resolution) {
            return std::max(1.0, std::round(pixels * (percent / 100.0) * (job.resolution / resolution)));
        };
        width_ = scaled(bitmap_.Width(), job.picture.scaleX, bitmap_.ResolutionX());
        height_ = scaled(bitmap_.Height(), job.picture.scaleY, bitmap_.ResolutionY());
        const double boxWidth = std::round(turn_.BoxWidth(width_, height_));
        const double boxHeight = std::round(turn_.BoxHeight(width_, height_));
        if (!FitsFile(boxWidth, boxHeight)) {
            return kTooLarge;
        }
        SetHeader(static_cast<uint32_t>(boxWidth), static_cast<uint32_t>(boxHeight), job,
                  job.isColor ? kTrueColor : kGray, RGB(0, 0, 0));
        return kRendered;
    }

    bool FillRow(uint32_t y, uint8_t* row) override {
        const double down = y + 0.5 - Header().height / 2.0;
        for (uint32_t x = 0; x < Header().width; ++x) {
            const double right = x + 0.5 - Header().width / 2.0;
            const double u = std::floor((turn_.FromX(right, down) / width_ + 0.5) * bitmap_.Width());
            const double v = std::floor((turn_.FromY(right, down) / height_ + 0.5) * bitmap_.Height());
            const bool isInside = u >= 0 && v >= 0 && u < bitmap_.Width() && v < bitmap_.Height();
            const COLORREF color =
                isInside ? bitmap_.ColorAt(static_cast<uint32_t>(u), static_cast<uint32_t>(v)) : kPaper;
            if (Header().dotBits == kGray) {
                *row++ = GrayOf(color);
            } else {
                *row++ = GetRValue(color);
                *row++ = GetGValue(color);
                *row++ = GetBValue(color);
            }
        }
        return true;
    }

  private:
    Turn turn_;
    Bitmap bitmap_;
    double width_ = 0;  // scaled, before it is turned
    double height_ = 0;
};

}  // namespace

std::unique_ptr<Drawing> MakePictureDrawing(const RenderJob& job, RenderAnswer* answer) {
    auto drawing = std::make_unique<PictureDrawing>(job);
    answer->result = drawing->Prepare(job);
    return answer->result == kRendered ? std::move(drawing) : nullptr;
}

}  // namespace velmora
