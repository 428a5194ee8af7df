// Copying pixels between contexts by raster operations.
#include <windows.h>

#include <algorithm>
#include <optional>
#include <vector>

#include "platform/gdi/pixels.h"
#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"

namespace host {
namespace {

// Of the pixels of destination, source and brush. Only the colour bits of the result count.
struct RasterOperation {
    DWORD code;
    bool usesSource;
    uint32_t (*combine)(uint32_t destination, uint32_t source, uint32_t brush);
};

constexpr RasterOperation kOperations[] = {
    {SRCCOPY, true, [](uint32_t, uint32_t s, uint32_t) { return s; }},
    {SRCPAINT, true, [](uint32_t d, uint32_t s, uint32_t) { return d | s; }},
    {SRCAND, true, [](uint32_t d, uint32_t s, uint32_t) { return d & s; }},
    {SRCINVERT, true, [](uint32_t d, uint32_t s, uint32_t) { return d ^ s; }},
    {NOTSRCCOPY, true, [](uint32_t, uint32_t s, uint32_t) { return ~s; }},
    {PATCOPY, false, [](uint32_t, uint32_t, uint32_t p) { return p; }},
    {BLACKNESS, false, [](uint32_t, uint32_t, uint32_t) { return uint32_t{0}; }},
    {WHITENESS, false, [](uint32_t, uint32_t, uint32_t) { return kColorBits; }},
};

const RasterOperation* FindOperation(DWORD code, const char* call) {
    for (const RasterOperation& operation : kOperations) {
        if (operation.code == code) {
            return &operation;
        }
    }
    FailUnsupported(call);
    return nullptr;
}

void Combine(const RasterOperation& operation, uint32_t* destination, uint32_t source, uint32_t brush) {
    *destination = operation.combine(*destination, source, brush) & kColorBits;
}

bool Paint(const Canvas& canvas, const RECT& rect, const RasterOperation& operation) {
    const Brush& brush = *canvas.context->state.brush.thing;
    if (operation.code == PATCOPY && brush.hollow) {
        return true;
    }
    RECT visible;
    IntersectRect(&visible, &rect, &canvas.clip);
    const uint32_t pattern = PixelOf(*canvas.surface, brush.color);
    for (LONG y = visible.top; y < visible.bottom; ++y) {
        uint32_t* const row = canvas.surface->Row(y);
        for (LONG x = visible.left; x < visible.right; ++x) {
            Combine(operation, &row[x], 0, pattern);
        }
    }
    return true;
}

// The pixels of a rectangle of a surface. Copied, as source and destination may be the same surface.
struct Block {
    int width;
    int height;
    std::vector<uint32_t> pixels;

    uint32_t At(int x, int y) const {
        return pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
    }
};

Block ReadBlock(const Surface& surface, const RECT& rect) {
    Block block = {rect.right - rect.left, rect.bottom - rect.top, {}};
    block.pixels.reserve(static_cast<size_t>(block.width) * static_cast<size_t>(block.height));
    for (LONG y = rect.top; y < rect.bottom; ++y) {
        const uint32_t* const row = surface.Row(y);
        block.pixels.insert(block.pixels.end(), row + rect.left, row + rect.right);
    }
    for (uint32_t& pixel : block.pixels) {
        pixel &= kColorBits;
    }
    return block;
}

// Source pixels from `begin` up to `end` along one axis, and how much of the first and the last counts.
struct Cell {
    int begin;
    int end;
    double first;
    double last;

    double Weight(int i) const { return i == begin ? first : i == end - 1 ? last : 1; }
};

// The source pixels under destination pixel `i`, where `from` pixels become `to`.
Cell CellAt(int i, int from, int to, int mode) {
    const int64_t begin = static_cast<int64_t>(i) * from;
    if (mode == COLORONCOLOR) {
        const int middle = static_cast<int>((2 * begin + from) / (2 * static_cast<int64_t>(to)));
        return {middle, middle + 1, 1, 1};
    }
    const int64_t end = begin + from;
    const int first = static_cast<int>(begin / to);
    if (mode == HALFTONE) {
        const int last = static_cast<int>((end + to - 1) / to);
        const double share = 1.0 / to;
        const double firstWeight =
            static_cast<double>(std::min<int64_t>(end, (first + 1) * int64_t{to}) - begin) * share;
        const double lastWeight = static_cast<double>(end - std::max<int64_t>(begin, (last - 1) * int64_t{to})) * share;
        return {first, last, firstWeight, lastWeight};
    }
    return {first, std::max(first + 1, static_cast<int>(end / to)), 1, 1};
}

uint32_t Average(const Block& block, const Cell& columns, const Cell& rows) {
    double sums[3] = {0.5, 0.5, 0.5};  // rounds
    double whole = 0;
    for (int y = rows.begin; y < rows.end; ++y) {
        for (int x = columns.begin; x < columns.end; ++x) {
            whole += rows.Weight(y) * columns.Weight(x);
        }
    }
    for (int y = rows.begin; y < rows.end; ++y) {
        for (int x = columns.begin; x < columns.end; ++x) {
            const double weight = rows.Weight(y) * columns.Weight(x) / whole;
            const uint32_t pixel = block.At(x, y);
            for (int channel = 0; channel < 3; ++channel) {
                sums[channel] += weight * ((pixel >> (8 * channel)) & 0xFF);
            }
        }
    }
    return static_cast<uint32_t>(sums[0]) | static_cast<uint32_t>(sums[1]) << 8 | static_cast<uint32_t>(sums[2]) << 16;
}

// What black on white leaves of the pixels: the bits that all of them have.
uint32_t CommonBits(const Block& block, const Cell& columns, const Cell& rows) {
    uint32_t common = kColorBits;
    for (int y = rows.begin; y < rows.end; ++y) {
        for (int x = columns.begin; x < columns.end; ++x) {
            common &= block.At(x, y);
        }
    }
    return common;
}

class Stretch {
  public:
    // Takes `block` to the rectangle's size.
    Stretch(const Block& block, const RECT& rect, int mode) : block_(block), rect_(rect), mode_(mode) {
        for (int x = 0; x < rect.right - rect.left; ++x) {
            columns_.push_back(CellAt(x, block.width, rect.right - rect.left, mode));
        }
    }

    uint32_t At(int x, int y) const {
        const Cell row = CellAt(y - rect_.top, block_.height, rect_.bottom - rect_.top, mode_);
        const Cell& column = columns_[static_cast<size_t>(x - rect_.left)];
        return mode_ == HALFTONE ? Average(block_, column, row) : CommonBits(block_, column, row);
    }

  private:
    const Block& block_;
    const RECT rect_;
    const int mode_;
    std::vector<Cell> columns_;
};

// Black and white become the destination's text and background colours.
void Color(const Canvas& destination, Block* block) {
    const ContextState& state = destination.context->state;
    for (uint32_t& pixel : block->pixels) {
        pixel = SwapRedAndBlue(pixel != 0 ? state.backColor : state.textColor);
    }
}

// A source rectangle's part that its surface doesn't have is left out, with what it would have covered.
void CutToSurface(const Surface& surface, RECT* source, RECT* rect) {
    const RECT whole = {0, 0, surface.width, surface.height};
    RECT cut;
    IntersectRect(&cut, source, &whole);
    const auto scale = [](LONG offset, LONG from, LONG to) {
        return static_cast<LONG>(static_cast<int64_t>(offset) * to / from);
    };
    const LONG width = source->right - source->left;
    const LONG height = source->bottom - source->top;
    const RECT old = *rect;
    rect->left = old.left + scale(cut.left - source->left, width, old.right - old.left);
    rect->right = old.left + scale(cut.right - source->left, width, old.right - old.left);
    rect->top = old.top + scale(cut.top - source->top, height, old.bottom - old.top);
    rect->bottom = old.top + scale(cut.bottom - source->top, height, old.bottom - old.top);
    *source = cut;
}

void Transfer(const Canvas& canvas, RECT rect, const Canvas& from, RECT source, const RasterOperation& operation) {
    if (IsRectEmpty(&source)) {
        return;
    }
    CutToSurface(*from.surface, &source, &rect);
    if (IsRectEmpty(&source) || IsRectEmpty(&rect)) {
        return;
    }
    Block block = ReadBlock(*from.surface, source);
    if (from.surface->monochrome && !canvas.surface->monochrome) {
        Color(canvas, &block);
    }
    const bool toMonochrome = canvas.surface->monochrome && !from.surface->monochrome;
    const uint32_t white = SwapRedAndBlue(from.context->state.backColor);
    const uint32_t pattern = PixelOf(*canvas.surface, canvas.context->state.brush.thing->color);
    const bool sameSize = block.width == rect.right - rect.left && block.height == rect.bottom - rect.top;
    const Stretch stretch(block, rect, sameSize ? COLORONCOLOR : canvas.context->state.stretchMode);
    RECT visible;
    IntersectRect(&visible, &rect, &canvas.clip);
    for (LONG y = visible.top; y < visible.bottom; ++y) {
        uint32_t* const row = canvas.surface->Row(y);
        for (LONG x = visible.left; x < visible.right; ++x) {
            uint32_t pixel = sameSize ? block.At(x - rect.left, y - rect.top) : stretch.At(x, y);
            if (toMonochrome) {
                pixel = pixel == white ? kColorBits : 0;
            } else if (canvas.surface->monochrome) {
                pixel = PixelOf(*canvas.surface, pixel);  // an average of black and white
            }
            Combine(operation, &row[x], pixel, pattern);
        }
    }
}

}  // namespace
}  // namespace host

using namespace host;

extern "C" {

BOOL WINAPI PatBlt(HDC context, int x, int y, int width, int height, DWORD operation) {
    if (FaultAsked("PatBlt")) {
        return FALSE;
    }
    const MachineLock lock;
    const auto canvas = FindCanvas(context);
    const RasterOperation* const found = FindOperation(operation, "PatBlt (by this operation)");
    if (!canvas || !found) {
        return FALSE;
    }
    if (found->usesSource) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    return Paint(*canvas, ToSurface(*canvas, {x, y, x + width, y + height}), *found);
}

BOOL WINAPI BitBlt(HDC context, int x, int y, int width, int height, HDC source, int sourceX, int sourceY,
                   DWORD operation) {
    return !FaultAsked("BitBlt") &&
           StretchBlt(context, x, y, width, height, source, sourceX, sourceY, width, height, operation);
}

BOOL WINAPI StretchBlt(HDC context, int x, int y, int width, int height, HDC source, int sourceX, int sourceY,
                       int sourceWidth, int sourceHeight, DWORD operation) {
    if (FaultAsked("StretchBlt")) {
        return FALSE;
    }
    const MachineLock lock;
    const auto canvas = FindCanvas(context);
    const RasterOperation* const found = FindOperation(operation, "StretchBlt (by this operation)");
    if (!canvas || !found) {
        return FALSE;
    }
    const RECT rect = ToSurface(*canvas, {x, y, x + width, y + height});
    if (!found->usesSource) {
        return Paint(*canvas, rect, *found);
    }
    const auto from = FindCanvas(source);
    if (!from) {
        return FALSE;
    }
    if (width < 0 || height < 0 || sourceWidth < 0 || sourceHeight < 0) {
        return FailUnsupported("StretchBlt (to a mirror image)");
    }
    const RECT area = ToSurface(*from, {sourceX, sourceY, sourceX + sourceWidth, sourceY + sourceHeight});
    Transfer(*canvas, rect, *from, area, *found);
    return TRUE;
}

}  // extern "C"
