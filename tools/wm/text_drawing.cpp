// Texts, drawn by the system black on white in bands and taken as ink or paper dot by dot: what comes out has no
// in-between shades, which a printer would have to imitate at the letters' edges.
#include <algorithm>
#include <vector>

#include "driver/base/text.h"
#include "tools/wm/drawing.h"

namespace velmora {
namespace {

constexpr LONG kLargestEm = 4096;  // dots
constexpr LONG kPointsPerInch = 72;
constexpr LONG kBandDots = 1 << 22;     // drawn at once, 4 bytes each
constexpr LONG kEmPerOutline = 40;      // an outline's width is a part of the font's size
constexpr int kOutlineDirections = 16;  // in which letters are widened for it
constexpr LONG kEmPerMargin = 4;        // for what letters have beyond their cell

LONG Rounded(double number) {
    return static_cast<LONG>(std::lround(number));
}

int CALLBACK NoteFont(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM isThere) {
    *reinterpret_cast<bool*>(isThere) = true;
    return 0;
}

bool HasFont(HDC context, const WCHAR* face) {
    bool isThere = false;
    if (face[0] != 0) {
        EnumFontFamiliesW(context, face, NoteFont, reinterpret_cast<LPARAM>(&isThere));
    }
    return isThere;
}

LOGFONTW DescribeFont(const RenderJob& job, LONG em, LONG angle) {
    LOGFONTW font = {};
    font.lfHeight = -em;
    font.lfEscapement = angle;
    font.lfOrientation = angle;
    font.lfWeight = job.text.isBold ? FW_BOLD : FW_NORMAL;
    font.lfItalic = job.text.isItalic;
    font.lfCharSet = job.text.charSet;
    CopyText<WCHAR>(font.lfFaceName, ARRAYSIZE(font.lfFaceName), job.text.face);
    return font;
}

class TextDrawing final : public Drawing {
  public:
    explicit TextDrawing(const RenderJob& job) : job_(job) {}
    ~TextDrawing() override {
        // What is selected can't be deleted.
        if (replacedBitmap_) {
            SelectObject(context_.Get(), replacedBitmap_);
        }
        if (replacedFont_) {
            SelectObject(context_.Get(), replacedFont_);
        }
    }

    RenderResult Prepare(bool* isOtherFont);
    bool FillRow(uint32_t y, uint8_t* row) override;

  private:
    bool Measure(LONG em, SIZE* text, TEXTMETRICW* metrics) const;
    bool MakeBand();
    bool DrawBand(LONG top);
    bool ShowText(LONG x, LONG y) const;
    bool NeedRow(LONG y);
    bool FindInk(RECT* ink);

    bool IsInk(LONG x, LONG y) const {
        constexpr uint32_t kHalf = 0x80;
        const uint32_t pixel =
            band_[static_cast<size_t>(y - bandTop_) * static_cast<size_t>(width_) + static_cast<size_t>(x)];
        return (pixel >> 8 & 0xFF) < kHalf;
    }

    const RenderJob& job_;
    OwnedDeviceContext context_ = OwnedDeviceContext(CreateCompatibleDC(nullptr));
    OwnedFont font_;
    OwnedBitmap bitmap_;
    HGDIOBJ replacedFont_ = nullptr;
    HGDIOBJ replacedBitmap_ = nullptr;
    const uint32_t* band_ = nullptr;  // the bitmap's pixels, from the top
    LONG width_ = 0;                  // of the box around all
    LONG height_ = 0;
    POINT base_ = {};  // where the text's baseline begins in the box
    LONG outline_ = 0;
    LONG bandRows_ = 0;
    LONG bandTop_ = -1;  // none drawn
    POINT inkAt_ = {};   // where in the box the file begins
};

bool TextDrawing::Measure(LONG em, SIZE* text, TEXTMETRICW* metrics) const {
    const LOGFONTW description = DescribeFont(job_, em, 0);
    const OwnedFont font(CreateFontIndirectW(&description));
    if (!font) {
        return false;
    }
    const HGDIOBJ replaced = SelectObject(context_.Get(), font.Get());
    const auto length = static_cast<int>(TextLength(job_.text.string));
    const bool isMeasured = GetTextExtentPoint32W(context_.Get(), job_.text.string, length, text) &&
                            GetTextMetricsW(context_.Get(), metrics);
    SelectObject(context_.Get(), replaced);
    return isMeasured;
}

bool TextDrawing::MakeBand() {
    bandRows_ = std::clamp(kBandDots / width_, LONG{1}, height_);
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width_;
    info.bmiHeader.biHeight = -bandRows_;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* pixels = nullptr;
    bitmap_ = OwnedBitmap(CreateDIBSection(context_.Get(), &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
    band_ = static_cast<const uint32_t*>(pixels);
    replacedBitmap_ = bitmap_ ? SelectObject(context_.Get(), bitmap_.Get()) : nullptr;
    return replacedBitmap_ != nullptr;
}

bool TextDrawing::ShowText(LONG x, LONG y) const {
    const UINT options = job_.text.isRightToLeft ? ETO_RTLREADING : 0;
    return ExtTextOutW(context_.Get(), base_.x + x, base_.y - bandTop_ + y, options, nullptr, job_.text.string,
                       static_cast<UINT>(TextLength(job_.text.string)), nullptr) != FALSE;
}

bool TextDrawing::DrawBand(LONG top) {
    bandTop_ = top;
    bool isDrawn = PatBlt(context_.Get(), 0, 0, width_, bandRows_, WHITENESS) != FALSE;
    SetTextColor(context_.Get(), RGB(0, 0, 0));
    if (outline_ > 0) {
        for (uint32_t i = 0; i < kOutlineDirections; ++i) {
            const Turn turn(3600 / kOutlineDirections * i);
            isDrawn = isDrawn && ShowText(Rounded(turn.X(outline_, 0)), Rounded(turn.Y(outline_, 0)));
        }
        SetTextColor(context_.Get(), kPaper);
    }
    isDrawn = isDrawn && ShowText(0, 0);
    GdiFlush();
    return isDrawn;
}

bool TextDrawing::NeedRow(LONG y) {
    const bool isThere = bandTop_ >= 0 && y >= bandTop_ && y < bandTop_ + bandRows_;
    return isThere || DrawBand(y / bandRows_ * bandRows_);
}

bool TextDrawing::FindInk(RECT* ink) {
    *ink = {width_, height_, 0, 0};
    for (LONG y = 0; y < height_; ++y) {
        if (!NeedRow(y)) {
            return false;
        }
        LONG first = 0;
        while (first < width_ && !IsInk(first, y)) {
            ++first;
        }
        if (first == width_) {
            continue;
        }
        LONG end = width_;
        while (!IsInk(end - 1, y)) {
            --end;
        }
        *ink = {std::min(ink->left, first), std::min(ink->top, y), std::max(ink->right, end), y + 1};
    }
    return true;
}

RenderResult TextDrawing::Prepare(bool* isOtherFont) {
    const uint64_t em = (uint64_t{job_.text.size} * job_.resolution + kPointsPerInch / 2) / kPointsPerInch;
    if (em > kLargestEm) {
        return kTooLarge;
    }
    const LONG size = std::max(LONG{1}, static_cast<LONG>(em));
    SIZE text = {};
    TEXTMETRICW metrics = {};
    if (!context_ || !Measure(size, &text, &metrics)) {
        return kDrawingFailed;
    }
    *isOtherFont = !HasFont(context_.Get(), job_.text.face);
    outline_ = job_.text.isOutline ? std::max(LONG{1}, size / kEmPerOutline) : 0;

    const LONG margin = 2 * (size / kEmPerMargin + outline_ + 1);  // of both sides
    const Turn turn(job_.angle);
    const double width = turn.BoxWidth(text.cx + margin, metrics.tmHeight + margin);
    const double height = turn.BoxHeight(text.cx + margin, metrics.tmHeight + margin);
    if (!FitsFile(width, height)) {
        return kTooLarge;
    }
    width_ = static_cast<LONG>(width);
    height_ = static_cast<LONG>(height);
    // The text's middle lies in the box's.
    const double left = -text.cx / 2.0;
    const double down = metrics.tmAscent - metrics.tmHeight / 2.0;
    base_ = {Rounded(width / 2 + turn.X(left, down)), Rounded(height / 2 + turn.Y(left, down))};

    const LOGFONTW description = DescribeFont(job_, size, static_cast<LONG>(job_.angle));
    font_ = OwnedFont(CreateFontIndirectW(&description));
    if (!font_ || !MakeBand()) {
        return kDrawingFailed;
    }
    replacedFont_ = SelectObject(context_.Get(), font_.Get());
    SetBkMode(context_.Get(), TRANSPARENT);
    SetTextAlign(context_.Get(), TA_LEFT | TA_BASELINE);
    RECT ink = {};
    if (!FindInk(&ink)) {
        return kDrawingFailed;
    }
    if (ink.left >= ink.right) {
        return kNothingToDraw;
    }
    inkAt_ = {ink.left, ink.top};
    SetHeader(static_cast<uint32_t>(ink.right - ink.left), static_cast<uint32_t>(ink.bottom - ink.top), job_,
              kInkOrPaper, job_.text.color);
    return kRendered;
}

bool TextDrawing::FillRow(uint32_t y, uint8_t* row) {
    const LONG boxY = inkAt_.y + static_cast<LONG>(y);
    if (!NeedRow(boxY)) {
        return false;
    }
    std::fill_n(row, RowBytes(Header()), uint8_t{0});
    for (uint32_t x = 0; x < Header().width; ++x) {
        if (IsInk(inkAt_.x + static_cast<LONG>(x), boxY)) {
            row[x / 8] = static_cast<uint8_t>(row[x / 8] | 0x80 >> x % 8);
        }
    }
    return true;
}

}  // namespace

std::unique_ptr<Drawing> MakeTextDrawing(const RenderJob& job, RenderAnswer* answer) {
    auto drawing = std::make_unique<TextDrawing>(job);
    answer->result = drawing->Prepare(&answer->isOtherFont);
    return answer->result == kRendered ? std::move(drawing) : nullptr;
}

}  // namespace velmora
