// What is drawn into a watermark's file, row by row.
#pragma once

#include <windows.h>

#include <cmath>
#include <cstdint>
#include <memory>

#include "tools/wm/render_job.h"
#include "tools/wm/watermark_file.h"

namespace velmora {

class Drawing {
  public:
    Drawing() = default;
    virtual ~Drawing() = default;
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;

    const WatermarkHeader& Header() const { return header_; }

    // Fills the row (RowBytes(Header())); they are asked for from the top. False where it can't be drawn.
    virtual bool FillRow(uint32_t y, uint8_t* row) = 0;

  protected:
    void SetHeader(uint32_t width, uint32_t height, const RenderJob& job, DotBits dotBits, COLORREF inkColor) {
        header_ = {kWatermarkMagic, sizeof(header_), kPackBits, width, height, job.resolution, dotBits, 0, inkColor};
    }

  private:
    WatermarkHeader header_ = {};
};

// The drawing of a job's text or picture. None where there can't be one, and why in `answer->result`; of a text
// `answer->isOtherFont` is set.
std::unique_ptr<Drawing> MakeTextDrawing(const RenderJob& job, RenderAnswer* answer);
std::unique_ptr<Drawing> MakePictureDrawing(const RenderJob& job, RenderAnswer* answer);

// A turn counter-clockwise, in coordinates whose y grows downwards.
struct Turn {
    double cosine;
    double sine;

    // `angle` in 0.1 degree.
    explicit Turn(uint32_t angle) {
        constexpr double kRadians = 3.14159265358979323846 / 1800;
        cosine = std::cos(angle * kRadians);
        sine = std::sin(angle * kRadians);
        if (angle % 900 == 0) {  // exactly
            cosine = std::round(cosine);
            sine = std::round(sine);
        }
    }

    // Where a point goes.
    double X(double x, double y) const { return x * cosine + y * sine; }
    double Y(double x, double y) const { return y * cosine - x * sine; }
    // Where it comes from.
    double FromX(double x, double y) const { return x * cosine - y * sine; }
    double FromY(double x, double y) const { return y * cosine + x * sine; }
    // The sides of the box around a rectangle.
    double BoxWidth(double width, double height) const { return std::abs(width * cosine) + std::abs(height * sine); }
    double BoxHeight(double width, double height) const { return std::abs(width * sine) + std::abs(height * cosine); }
};

// Whether a box may become a file.
inline bool FitsFile(double width, double height) {
    return width <= kLongestSide && height <= kLongestSide && width * height <= static_cast<double>(kMostDots);
}

}  // namespace velmora
