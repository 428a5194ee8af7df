// The pictures that drawing ends on: what the windows of a screen show, and bitmaps.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

namespace host {

// Pixels are 0x00RRGGBB; what a program or Cairo leaves in the high byte means nothing.
class Surface {
  public:
    // How the rows lie in memory. Row(0) is the top one in any case.
    enum class Order { kTopDown, kBottomUp };

    // Black. Width and height are from 1 to kLargestSide. The pixels of a monochrome surface are black or white.
    Surface(int width, int height, bool monochrome = false, Order order = Order::kTopDown)
        : width(width),
          height(height),
          monochrome(monochrome),
          order_(order),
          pixels_(static_cast<size_t>(width) * static_cast<size_t>(height)) {}

    static constexpr int kLargestSide = 32767;

    uint32_t* Row(int y) { return pixels_.data() + RowOffset(y); }
    const uint32_t* Row(int y) const { return pixels_.data() + RowOffset(y); }

    // From a row to the one below it, in bytes.
    int Stride() const { return (order_ == Order::kTopDown ? width : -width) * static_cast<int>(sizeof(uint32_t)); }
    // The first in memory.
    uint32_t* Pixels() { return pixels_.data(); }

    const int width;
    const int height;
    const bool monochrome;

  private:
    size_t RowOffset(int y) const {
        return static_cast<size_t>(order_ == Order::kTopDown ? y : height - 1 - y) * static_cast<size_t>(width);
    }

    const Order order_;
    std::vector<uint32_t> pixels_;
};

// A device context that draws on a part of the surface, which it keeps alive: `origin` is where logical (0, 0) lies,
// `clip` what is drawn on at all; both in the surface's pixels. It is one of the program's GDI objects until DeleteDC.
HDC MakeSurfaceContext(const std::shared_ptr<Surface>& surface, POINT origin, const RECT& clip);

// False where the file can't be written.
bool WritePng(const Surface& surface, const std::filesystem::path& file);

}  // namespace host
