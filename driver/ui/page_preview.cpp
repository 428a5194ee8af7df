#include "driver/ui/page_preview.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <limits>

#include "driver/base/text.h"
#include "driver/devdesc/description_file.h"
#include "driver/devdesc/paper_lookup.h"
#include "driver/devdesc/standard_papers.h"
#include "driver/entry/printer_access.h"
#include "driver/ui/controls.h"
#include "driver/ui/page_geometry.h"
#include "driver/ui/paper_choices.h"

namespace velmora {
namespace {

constexpr int kPreviewControl = 7029;
constexpr size_t kLabelCapacity = 256;
constexpr LONG kMargin = 3;  // pixels around the drawing area

constexpr COLORREF kLabelColor = RGB(255, 0, 0);
constexpr COLORREF kContentColor = RGB(128, 128, 128);
constexpr COLORREF kColorSlices[] = {RGB(0, 0, 255), RGB(0, 128, 0), RGB(255, 255, 0)};
constexpr COLORREF kGraySlices[] = {RGB(64, 64, 64), RGB(128, 128, 128), RGB(192, 192, 192)};
static_assert(std::size(kColorSlices) == PreviewTools::kSlices && std::size(kGraySlices) == PreviewTools::kSlices);

// --- The request -----------------------------------------------------------------------------------------------------

// The user's own size at `index` of the custom sizes and the forms behind them; null where there are not as many.
const CustomSizeRecord* FindOwnSize(const SheetContext& context, size_t index) {
    for (const CustomSizeList* const list : {&context.customSizes, &context.forms}) {
        if (index < list->count) {
            return list->records.Get() + index;
        }
        index -= list->count;
    }
    return nullptr;
}

// U.S. records count in 1/25.4 of the metric unit.
int32_t ToHundredths(uint32_t length, uint32_t isMetric) {
    const uint64_t hundredths = isMetric != 0 ? length : uint64_t{length} * 10 / 254;
    return static_cast<int32_t>(std::min<uint64_t>(hundredths, std::numeric_limits<int32_t>::max()));
}

// In 0.01 mm.
SIZE SizeOfPaper(const SheetContext& context, int paperId) {
    constexpr int kHundredths = 10;
    if (const PaperRecord* const paper = FindPaperRecord(context.model.Get(), paperId)) {
        return {paper->width * kHundredths, paper->length * kHundredths};
    }
    if (paperId >= kFirstCustomPaper) {
        if (const auto* const own = FindOwnSize(context, static_cast<size_t>(paperId - kFirstCustomPaper))) {
            return {ToHundredths(own->width, own->metric), ToHundredths(own->length, own->metric)};
        }
    }
    const StandardPaperSize& usual = kStandardPaperSizes[DefaultPaperForLocale()];
    return {usual.width * kHundredths, usual.length * kHundredths};
}

// --- The tools -------------------------------------------------------------------------------------------------------

void MakeSlices(const COLORREF (&colors)[PreviewTools::kSlices], OwnedBrush (&slices)[PreviewTools::kSlices]) {
    for (size_t i = 0; i < PreviewTools::kSlices; ++i) {
        if (!slices[i]) {
            slices[i] = OwnedBrush(CreateSolidBrush(colors[i]));
        }
    }
}

void MakeFace(PreviewTools* tools) {
    const COLORREF color = GetSysColor(COLOR_BTNFACE);
    if (!tools->faceBrush || !tools->facePen || tools->faceColor != color) {
        tools->faceBrush = OwnedBrush(CreateSolidBrush(color));
        tools->facePen = OwnedPen(CreatePen(PS_SOLID, 1, color));
        tools->faceColor = color;
    }
}

void MakePen(int style, COLORREF color, OwnedPen* pen) {
    if (!*pen) {
        *pen = OwnedPen(CreatePen(style, 1, color));
    }
}

void MakeLabelFont(int height, PreviewTools* tools) {
    if (!tools->labelFont || tools->labelHeight != height) {
        tools->labelFont =
            OwnedFont(CreateFontW(height, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                  CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, TEXT("MS Shell Dlg")));
        tools->labelHeight = height;
    }
}

void MakeWatermarkFont(const WatermarkRecord& watermark, PreviewTools* tools) {
    if (watermark.type != kTextWatermark) {
        return;
    }
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): a difference that isn't seen makes the font once more
    if (tools->watermarkFont && std::memcmp(&tools->watermark, &watermark, sizeof(watermark)) == 0) {
        return;
    }
    LOGFONTW font = {};
    font.lfHeight = watermark.style.size;
    font.lfEscapement = watermark.angle;
    font.lfOrientation = watermark.angle;
    font.lfWeight = watermark.style.bold ? FW_BOLD : FW_NORMAL;
    font.lfItalic = watermark.style.italic ? TRUE : FALSE;
    font.lfCharSet = watermark.style.charSet;
    CopyText(font.lfFaceName, ARRAYSIZE(font.lfFaceName), watermark.style.face);
    tools->watermarkFont = OwnedFont(CreateFontIndirectW(&font));
    tools->watermark = watermark;
}

// False where there is nothing to draw on.
bool MakeCanvas(HDC target, SIZE size, PreviewTools* tools) {
    if (!tools->memory) {
        tools->memory = OwnedDeviceContext(CreateCompatibleDC(target));
    }
    if (!tools->bitmap || tools->bitmapSize.cx != size.cx || tools->bitmapSize.cy != size.cy) {
        tools->bitmap = OwnedBitmap(CreateCompatibleBitmap(target, size.cx, size.cy));
        tools->bitmapSize = size;
    }
    return tools->memory && tools->bitmap;
}

// --- The drawing -----------------------------------------------------------------------------------------------------

// What the steps of the drawing share.
struct Preview {
    HDC canvas;
    const PreviewTools& tools;
    const PreviewRequest& request;
    const WCHAR* label;
    SIZE paper;   // limited, upright
    SIZE turned;  // as the sheet lies
    RECT sheet;
    PageGrid grid;

    bool HasLabelBox() const { return label[0] != 0 && label[1] == 0; }
    bool HasOnePage() const { return grid.columns * grid.rows == 1; }
};

void ReadLabel(const SheetContext& context, WCHAR (&label)[kLabelCapacity]) {
    label[0] = 0;
    if (context.model && context.model->pageLabelRef != 0) {
        ReadLocalizedString(context.descriptionFile.Get(), context.locale.language, context.resources.Get(),
                            static_cast<int16_t>(context.model->pageLabelRef), label, kLabelCapacity);
    }
    if (label[0] == 0) {
        CopyText(label, kLabelCapacity, TEXT("M"));
    }
}

void DrawSegment(HDC canvas, LONG x1, LONG y1, LONG x2, LONG y2) {
    MoveToEx(canvas, x1, y1, nullptr);
    LineTo(canvas, x2, y2);
}

void FillFace(const Preview& preview, SIZE size) {
    SelectObject(preview.canvas, preview.tools.facePen.Get());
    SelectObject(preview.canvas, preview.tools.faceBrush.Get());
    Rectangle(preview.canvas, 0, 0, size.cx, size.cy);
}

void DrawSheet(const Preview& preview) {
    const RECT& sheet = preview.sheet;
    FillRect(preview.canvas, &sheet, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    SelectObject(preview.canvas, GetStockObject(BLACK_PEN));
    SelectObject(preview.canvas, GetStockObject(HOLLOW_BRUSH));
    Rectangle(preview.canvas, sheet.left, sheet.top, sheet.right, sheet.bottom);
}

// Lines between the cells of a grid.
void DrawDivision(const Preview& preview, const PageGrid& grid, HPEN pen) {
    const RECT& sheet = preview.sheet;
    SelectObject(preview.canvas, pen);
    for (int column = 1; column < grid.columns; ++column) {
        const LONG x = CellOf(sheet, grid, column, 0).left;
        DrawSegment(preview.canvas, x, sheet.top + 1, x, sheet.bottom - 1);
    }
    for (int row = 1; row < grid.rows; ++row) {
        const LONG y = CellOf(sheet, grid, 0, row).top;
        DrawSegment(preview.canvas, sheet.left + 1, y, sheet.right - 1, y);
    }
}

// What is printed on the page: an address beside the label, and a text.
void DrawContent(const Preview& preview, const RECT& label) {
    constexpr LONG kAddressLines = 3;
    constexpr LONG kTextLines = 4;
    const RECT& sheet = preview.sheet;
    const LONG width = sheet.right - sheet.left;
    const LONG left = sheet.left + width / 8;
    SelectObject(preview.canvas, preview.tools.contentPen.Get());
    for (LONG line = 1; line <= kAddressLines; ++line) {
        const LONG y = label.top + (label.bottom - label.top) * line / (kAddressLines + 1);
        DrawSegment(preview.canvas, label.right + kMargin, y, label.right + kMargin + width / 4, y);
    }
    for (LONG line = 0; line < kTextLines; ++line) {
        const LONG y = (sheet.top + sheet.bottom) / 2 + (sheet.bottom - sheet.top) * line / 20;
        DrawSegment(preview.canvas, left, y, left + width * 3 / 4, y);
    }
}

void DrawLabel(const Preview& preview, RECT box) {
    SelectObject(preview.canvas, GetStockObject(BLACK_PEN));
    SelectObject(preview.canvas, GetStockObject(WHITE_BRUSH));
    Rectangle(preview.canvas, box.left, box.top, box.right, box.bottom);
    if (preview.tools.labelFont) {
        SelectObject(preview.canvas, preview.tools.labelFont.Get());
        SetTextColor(preview.canvas, preview.request.isColor ? kLabelColor : RGB(0, 0, 0));
        DrawTextW(preview.canvas, preview.label, 1, &box, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    }
}

void DrawMark(const Preview& preview, const RECT& box) {
    constexpr int32_t kFirstEdge = 900;  // 0.1 degree
    constexpr int32_t kSliceAngle = 1200;
    constexpr POINT kRadius = {10000, 0};
    const POINT middle = {(box.left + box.right) / 2, (box.top + box.bottom) / 2};
    const auto& slices = preview.request.isColor ? preview.tools.colorSlices : preview.tools.graySlices;
    SelectObject(preview.canvas, GetStockObject(NULL_PEN));
    for (int32_t i = 0; i < static_cast<int32_t>(PreviewTools::kSlices); ++i) {
        // Slices go against the clock.
        const POINT from = RotatePoint(kRadius, -(kFirstEdge + kSliceAngle * i));
        const POINT to = RotatePoint(kRadius, -(kFirstEdge + kSliceAngle * (i + 1)));
        if (slices[i]) {
            SelectObject(preview.canvas, slices[i].Get());
            Pie(preview.canvas, box.left, box.top, box.right, box.bottom, middle.x + from.x, middle.y + from.y,
                middle.x + to.x, middle.y + to.y);
        }
    }
}

// The font's height is the watermark's size in points. So the page is drawn in its own points, and the same font is as
// large on every paper and in every layout as it will be printed.
void DrawWatermark(const Preview& preview, const RECT& cell) {
    const HDC canvas = preview.canvas;
    const WatermarkRecord& watermark = preview.request.watermark;
    const PageScale scale = ScaleOf(preview.turned, preview.grid, cell);
    const int saved = SaveDC(canvas);
    if (saved == 0) {
        return;
    }
    SetMapMode(canvas, MM_ANISOTROPIC);
    SetWindowExtEx(canvas, scale.points, scale.points, nullptr);
    SetViewportExtEx(canvas, scale.pixels, scale.pixels, nullptr);
    SetViewportOrgEx(canvas, cell.left, cell.top, nullptr);
    const RECT page = PageIn(cell, scale);
    const auto length = static_cast<int>(TextLength(watermark.text, ARRAYSIZE(watermark.text)));
    SIZE extent;
    if (GetTextExtentPoint32W(canvas, watermark.text, length, &extent)) {
        const POINT offset = RotatePoint({0, extent.cy / 4}, watermark.angle);
        const POINT at = PlaceText(watermark.placement, page, extent, offset);
        ExtTextOutW(canvas, at.x, at.y, ETO_CLIPPED, &page, watermark.text, static_cast<UINT>(length), nullptr);
    }
    RestoreDC(canvas, saved);
}

void DrawWatermarks(const Preview& preview) {
    const WatermarkRecord& watermark = preview.request.watermark;
    if (watermark.type != kTextWatermark || !preview.tools.watermarkFont) {
        return;
    }
    SelectObject(preview.canvas, preview.tools.watermarkFont.Get());
    SetTextColor(preview.canvas, watermark.style.color);
    SetTextAlign(preview.canvas, TA_CENTER | TA_BASELINE | (watermark.style.rightToLeft ? TA_RTLREADING : 0u));
    for (int row = 0; row < preview.grid.rows; ++row) {
        for (int column = 0; column < preview.grid.columns; ++column) {
            DrawWatermark(preview, CellOf(preview.sheet, preview.grid, column, row));
        }
    }
}

void DrawPreview(const Preview& preview, SIZE size) {
    FillFace(preview, size);
    DrawSheet(preview);
    // Labels and marks don't shrink with the sheet.
    IntersectClipRect(preview.canvas, preview.sheet.left, preview.sheet.top, preview.sheet.right, preview.sheet.bottom);
    SetBkMode(preview.canvas, TRANSPARENT);
    const int posterSide = static_cast<int>(preview.request.posterSide);
    const RECT label = preview.HasLabelBox() ? LabelBox(preview.sheet, preview.paper) : RECT{};
    if (posterSide > 1) {
        DrawDivision(preview, {posterSide, posterSide}, preview.tools.contentPen.Get());
    } else if (preview.HasLabelBox() && preview.HasOnePage()) {
        DrawContent(preview, label);
    } else if (preview.HasLabelBox()) {
        DrawDivision(preview, preview.grid, preview.tools.divisionPen.Get());
    }
    if (preview.HasLabelBox()) {
        DrawLabel(preview, label);
    }
    DrawMark(preview, MarkBox(preview.sheet, preview.paper, label));
    DrawWatermarks(preview);
    SelectClipRgn(preview.canvas, nullptr);
    const RECT frame = {0, 0, size.cx, size.cy};
    FrameRect(preview.canvas, &frame, static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH)));
}

}  // namespace

PreviewRequest MakePreviewRequest(const SheetContext& context, const WatermarkRecord& watermark) {
    const DEVMODEW& document = context.devMode->publicPart;
    int paperId = document.dmPaperSize;
    uint32_t layout = context.devMode->privatePart.uiPageLayout;
    bool isLandscape = document.dmOrientation == DMORIENT_LANDSCAPE;
    if (context.dialogs[kPaperSlot]) {
        paperId = static_cast<int>(context.paper.paper.selected);
        layout = context.paper.layout.selected;
        isLandscape = context.paper.isLandscape;
    }
    const SIZE paper = SizeOfPaper(context, paperId);
    PreviewRequest request = {};
    request.paperWidth = paper.cx;
    request.paperLength = paper.cy;
    request.isLandscape = isLandscape;
    request.pagesPerSheet = layout == kTwoPages || layout == kFourPages ? layout : 1;
    request.posterSide = IsPoster(layout) ? PosterSide(layout) : 1;
    request.isColor = context.model && !IsMonochrome(context.model->colorCapability);
    request.control = kPreviewControl;
    request.watermark = watermark;
    return request;
}

void PaintPagePreview(HWND dialog, SheetContext* context, HDC target, const PreviewRequest& request) {
    const RECT place = ControlRect(dialog, request.control);
    const SIZE size = {place.right - place.left, place.bottom - place.top};
    PreviewTools& tools = context->previewTools;
    if (size.cx <= 2 * kMargin || size.cy <= 2 * kMargin || !MakeCanvas(target, size, &tools)) {
        return;
    }
    const SIZE paper = LimitPaper({request.paperWidth, request.paperLength});
    const SIZE turned = request.isLandscape ? SIZE{paper.cy, paper.cx} : paper;
    const RECT area = {kMargin, kMargin, size.cx - kMargin, size.cy - kMargin};
    const RECT sheet = FitInto(turned, SquareIn(area));
    WCHAR label[kLabelCapacity];
    ReadLabel(*context, label);
    MakeFace(&tools);
    MakePen(PS_SOLID, kContentColor, &tools.contentPen);
    MakePen(PS_DOT, RGB(0, 0, 0), &tools.divisionPen);
    MakeSlices(kColorSlices, tools.colorSlices);
    MakeSlices(kGraySlices, tools.graySlices);
    const RECT labelBox = LabelBox(sheet, paper);
    MakeLabelFont(labelBox.bottom - labelBox.top, &tools);
    MakeWatermarkFont(request.watermark, &tools);

    const HDC canvas = tools.memory.Get();
    const int saved = SaveDC(canvas);
    if (saved == 0) {
        return;
    }
    if (SelectObject(canvas, tools.bitmap.Get())) {
        DrawPreview(
            {canvas, tools, request, label, paper, turned, sheet, GridOf(request.pagesPerSheet, request.isLandscape)},
            size);
        BitBlt(target, place.left, place.top, size.cx, size.cy, canvas, 0, 0, SRCCOPY);
    }
    RestoreDC(canvas, saved);
}

}  // namespace velmora
