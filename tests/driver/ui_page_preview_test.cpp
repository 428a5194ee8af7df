// The watermark's preview, drawn for a dialog of the layer onto a bitmap.
#include <algorithm>

#include "driver/base/text.h"
#include "driver/devmode/default_devmode.h"
#include "driver/settings/custom_sizes.h"
#include "driver/ui/page_geometry.h"
#include "driver/ui/page_preview.h"
#include "driver/ui/paper_choices.h"
#include "tests/driver/built_modules.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

constexpr int kPreview = 7029;
constexpr int kDialogSide = 170;               // pixels
constexpr int kWidth = 138, kHeight = 150;     // of the control
constexpr int kLeft = 7, kTop = 5;             // of the control in its dialog
constexpr COLORREF kInk = RGB(255, 0, 255);    // of the watermark and nothing else
constexpr COLORREF kUntouched = RGB(1, 2, 3);  // around the control
constexpr COLORREF kBlack = RGB(0, 0, 0), kRed = RGB(255, 0, 0);

struct Picture {
    int width, height;
    std::vector<COLORREF> pixels;

    bool operator==(const Picture&) const = default;
    COLORREF At(int x, int y) const { return pixels[static_cast<size_t>(y * width + x)]; }
    int Count(COLORREF color, const RECT& area) const {
        int count = 0;
        for (int y = area.top; y < area.bottom; ++y) {
            for (int x = area.left; x < area.right; ++x) {
                count += At(x, y) == color;
            }
        }
        return count;
    }
    int Count(COLORREF color) const { return Count(color, {0, 0, width, height}); }
    // Where its outline is.
    RECT Sheet() const {
        RECT sheet = {width, height, 0, 0};
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                if (At(x, y) == kBlack) {
                    sheet = {std::min<LONG>(sheet.left, x), std::min<LONG>(sheet.top, y),
                             std::max<LONG>(sheet.right, x + 1), std::max<LONG>(sheet.bottom, y + 1)};
                }
            }
        }
        return sheet;
    }
};

class PagePreviewTest : public MachineTest {
  protected:
    void SetUp() override {
        DescriptionBuilder builder = SmallModel(kPdlPcl6);
        letter_ = builder.AddString("K");
        word_ = builder.AddString("Mono");
        DriverPackage package = PackageOf(builder.Build());
        UseBuiltModules(package);
        Install(package);
        BuildDefaultDevMode(Printer(), kPrinterName, &devMode_);
        context_ = OwnedSheetContext(CreateSheetContext(Printer(), kPrinterName, &devMode_));
        ASSERT_TRUE(context_);
        dialog_ = CreateWindowExW(0, TEXT("Static"), TEXT(""), WS_POPUP, 0, 0, kDialogSide, kDialogSide, nullptr,
                                  nullptr, nullptr, nullptr);
        target_ = OwnedDeviceContext(CreateCompatibleDC(nullptr));
        shown_ = OwnedBitmap(CreateBitmap(kDialogSide, kDialogSide, 1, 32, nullptr));
        SelectObject(target_.Get(), shown_.Get());
        Resize(kWidth, kHeight);
    }
    void TearDown() override {
        DestroyWindow(dialog_);
        context_.Close();
        target_.Close();
        shown_.Close();
        MachineTest::TearDown();
    }
    void Resize(int width, int height) {
        width_ = width;
        height_ = height;
        if (const HWND former = GetDlgItem(dialog_, kPreview)) {
            DestroyWindow(former);
        }
        CreateWindowExW(0, TEXT("Static"), TEXT(""), WS_CHILD, kLeft, kTop, width, height, dialog_,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(kPreview)), nullptr, nullptr);
    }
    SheetContext& Context() { return *context_.Get(); }
    DeviceModel& Model() { return *Context().model.Get(); }

    // A text that is too large for its page.
    PreviewRequest Request(uint32_t pages = 1, bool isLandscape = false) {
        PreviewRequest request = {};
        request.paperWidth = 21000;
        request.paperLength = 29700;
        request.isLandscape = isLandscape;
        request.pagesPerSheet = pages;
        request.posterSide = 1;
        request.isColor = true;
        request.control = kPreview;
        request.watermark.type = kTextWatermark;
        CopyText(request.watermark.text, 64, TEXT("WWWWWWWWWWWW"));
        CopyText(request.watermark.style.face, 32, TEXT("Arial"));
        request.watermark.style.size = 200;
        request.watermark.style.bold = 1;
        request.watermark.style.color = kInk;
        request.watermark.angle = 450;
        return request;
    }
    void Paint(const PreviewRequest& request) { PaintPagePreview(dialog_, context_.Get(), target_.Get(), request); }
    // What the dialog shows of the preview. Nothing around the control is drawn on.
    Picture Draw(const PreviewRequest& request) {
        const RECT all = {0, 0, kDialogSide, kDialogSide};
        const OwnedBrush brush(CreateSolidBrush(kUntouched));
        FillRect(target_.Get(), &all, brush.Get());
        Paint(request);
        Picture picture = {width_, height_, {}};
        int untouched = 0;
        for (int y = 0; y < kDialogSide; ++y) {
            for (int x = 0; x < kDialogSide; ++x) {
                const COLORREF color = GetPixel(target_.Get(), x, y);
                if (x >= kLeft && x < kLeft + width_ && y >= kTop && y < kTop + height_) {
                    picture.pixels.push_back(color);
                } else {
                    untouched += color == kUntouched;
                }
            }
        }
        EXPECT_EQ(untouched, kDialogSide * kDialogSide - width_ * height_);
        return picture;
    }

    uint16_t letter_ = 0;
    uint16_t word_ = 0;
    VelmoraDevMode devMode_;
    OwnedSheetContext context_;
    HWND dialog_ = nullptr;
    int width_ = 0, height_ = 0;  // of the control
    OwnedBitmap shown_;
    OwnedDeviceContext target_;
};

TEST_F(PagePreviewTest, EveryPageHasTheWatermarkAndNothingElseHas) {
    for (const bool isLandscape : {false, true}) {
        for (const uint32_t pages : {1u, 2u, 4u}) {
            SCOPED_TRACE(testing::Message() << pages << (isLandscape ? " across" : " upright"));
            const Picture picture = Draw(Request(pages, isLandscape));
            const RECT sheet = picture.Sheet();
            EXPECT_EQ(sheet.right - sheet.left, isLandscape ? 132 : 93);
            EXPECT_EQ(sheet.bottom - sheet.top, isLandscape ? 93 : 132);
            EXPECT_NEAR(sheet.left + sheet.right, kWidth, 1);
            EXPECT_NEAR(sheet.top + sheet.bottom, kHeight, 1);
            const PageGrid grid = GridOf(pages, isLandscape);
            for (int row = 0; row < grid.rows; ++row) {
                for (int column = 0; column < grid.columns; ++column) {
                    EXPECT_GT(picture.Count(kInk, CellOf(sheet, grid, column, row)), 50);
                }
            }
            EXPECT_EQ(picture.Count(kInk), picture.Count(kInk, sheet));
            EXPECT_EQ(picture.At(1, 1), GetSysColor(COLOR_BTNFACE));
        }
    }
    // A text around the page's upper left corner doesn't reach the page above.
    PreviewRequest request = Request(2);
    request.watermark.placement = 1;
    const Picture corners = Draw(request);
    const RECT sheet = corners.Sheet();
    const int height = (sheet.bottom - sheet.top) / 2;
    for (int y = sheet.top; y < sheet.top + height; ++y) {
        for (int x = sheet.left; x < sheet.right; ++x) {
            ASSERT_EQ(corners.At(x, y) == kInk, corners.At(x, y + height) == kInk) << x << ' ' << y;
        }
    }
    // A picture isn't drawn: what its record holds is no style.
    request.watermark.type = kImageWatermark;
    EXPECT_EQ(Draw(request).Count(kInk), 0);
}

// As large on the sheet as on paper: by the paper's size, and smaller with more pages.
TEST_F(PagePreviewTest, TextIsInThePointsOfThePage) {
    PreviewRequest request = Request();
    CopyText(request.watermark.text, 64, TEXT("I"));
    request.watermark.angle = 0;
    const auto heightOf = [&](const Picture& picture) {
        int rows = 0;
        for (int y = 0; y < picture.height; ++y) {
            rows += picture.Count(kInk, {0, y, picture.width, y + 1}) > 0;
        }
        return rows;
    };
    const int alone = heightOf(Draw(request));
    EXPECT_NEAR(alone, 200.0 * 132 / 842 * 0.62, 3);  // a capital's part of the cell
    request.pagesPerSheet = 4;
    EXPECT_NEAR(heightOf(Draw(request)), alone, 2);  // two rows of pages with half of it
    request.pagesPerSheet = 1;
    request.paperWidth /= 2;
    request.paperLength /= 2;
    EXPECT_NEAR(heightOf(Draw(request)), 2 * alone, 3);
    Resize(kWidth / 2, kHeight / 2);
    EXPECT_NEAR(heightOf(Draw(request)), alone, 4);
}

TEST_F(PagePreviewTest, ShowsLabelMarkAndDivision) {
    PreviewRequest request = Request(2);
    request.watermark.text[0] = 0;
    const auto middleRow = [](const Picture& picture) {
        const RECT sheet = picture.Sheet();
        const LONG middle = (sheet.top + sheet.bottom) / 2;
        return picture.Count(kBlack, {sheet.left + 1, middle, sheet.right - 1, middle + 1});
    };
    const auto labelEdge = [](const Picture& picture) {
        const RECT sheet = picture.Sheet();
        return picture.Count(kBlack, {sheet.left + 3, sheet.top + 3, sheet.left + 26, sheet.top + 4});
    };
    const Picture usual = Draw(request);  // "M"
    EXPECT_EQ(labelEdge(usual), 23);
    EXPECT_NEAR(middleRow(usual), 46, 2);  // dotted
    EXPECT_GT(usual.Count(kRed), 0);
    for (const COLORREF slice : {0xFF0000u, 0x008000u, 0x00FFFFu}) {
        EXPECT_GT(usual.Count(slice), 200) << slice;
    }
    request.isColor = false;
    const Picture gray = Draw(request);
    EXPECT_EQ(gray.Count(kRed), 0);
    for (const COLORREF slice : {0x404040u, 0x808080u, 0xC0C0C0u}) {
        EXPECT_GT(gray.Count(slice), 200) << slice;
    }
    Model().pageLabelRef = letter_;
    const Picture other = Draw(request);
    EXPECT_NE(other, gray);
    EXPECT_EQ(labelEdge(other), 23);
    Model().pageLabelRef = word_;
    const Picture without = Draw(request);
    EXPECT_EQ(labelEdge(without), 0);
    EXPECT_EQ(middleRow(without), 0);
    // A poster is one page, whose sheets are told apart.
    request.pagesPerSheet = 1;
    const Picture whole = Draw(request);
    request.posterSide = 4;
    const Picture poster = Draw(request);
    EXPECT_GT(poster.Count(0x808080), whole.Count(0x808080) + 300);
    EXPECT_LE(poster.Sheet().right, kWidth - 3);
}

TEST_F(PagePreviewTest, DrawsInAnySpace) {
    PreviewRequest request = Request(4, true);
    request.paperWidth = 1;
    request.paperLength = INT32_MAX;
    request.watermark.style.size = UINT16_MAX;
    request.watermark.angle = UINT16_MAX;
    request.watermark.placement = 6;
    std::fill_n(request.watermark.text, 64, u'W');  // no terminator
    for (const int side : {1, 6, 7, 20, 40, 160}) {
        Resize(side, side);
        Draw(request);
    }
    request.control = kPreview + 1;  // there is none
    const Picture picture = Draw(request);
    EXPECT_EQ(picture.Count(kUntouched), picture.width * picture.height);
}

TEST_F(PagePreviewTest, KeepsItsToolsAndGivesThemBack) {
    const Texts before = host::StillOpen();
    const auto fontsMade = [] { return host::CallsSoFar("CreateFontIndirectW"); };
    PreviewRequest request = Request(2);
    Draw(request);
    const size_t open = host::StillOpen().size();
    uint64_t fonts = fontsMade();
    for (int i = 0; i < 100; ++i) {
        Draw(request);
    }
    EXPECT_EQ(host::StillOpen().size(), open);
    EXPECT_EQ(fontsMade(), fonts);
    request.pagesPerSheet = 4;
    Draw(request);
    EXPECT_EQ(fontsMade(), fonts);
    request.watermark.angle = 300;
    const Picture turned = Draw(request);
    EXPECT_EQ(fontsMade(), ++fonts);
    EXPECT_EQ(Draw(request), turned);
    EXPECT_EQ(fontsMade(), fonts);
    Resize(kWidth - 20, kHeight);
    Draw(request);
    request.paperWidth = 10000;
    Draw(request);
    EXPECT_EQ(host::StillOpen().size(), open);
    Context().previewTools = {};
    EXPECT_EQ(host::StillOpen().size(), before.size());
}

// Each call fails once: the next redraw shows everything.
TEST_F(PagePreviewTest, RecoversFromFailures) {
    const PreviewRequest request = Request(2);
    const Picture whole = Draw(request);
    constexpr const char* kCalls[] = {"CreateCompatibleDC",
                                      "CreateCompatibleBitmap",
                                      "CreateSolidBrush",
                                      "CreatePen",
                                      "CreateFontW",
                                      "CreateFontIndirectW",
                                      "SaveDC",
                                      "SelectObject",
                                      "Rectangle",
                                      "FillRect",
                                      "LineTo",
                                      "Pie",
                                      "DrawTextW",
                                      "SetMapMode",
                                      "SetWindowExtEx",
                                      "SetViewportExtEx",
                                      "GetTextExtentPoint32W",
                                      "ExtTextOutW",
                                      "FrameRect",
                                      "BitBlt"};
    for (const char* const call : kCalls) {
        Context().previewTools = {};
        const uint64_t before = host::CallsSoFar(call);
        Paint(request);
        const uint64_t made = host::CallsSoFar(call) - before;
        EXPECT_GT(made, 0u) << call;
        for (uint64_t nth = 1; nth <= made; ++nth) {
            Context().previewTools = {};
            host::FailCall(call, ERROR_NOT_ENOUGH_MEMORY, nth);
            Paint(request);
            host::ClearFaults();
            ASSERT_TRUE(Draw(request) == whole) << call << ' ' << nth;
        }
    }
}

TEST_F(PagePreviewTest, AsksForThePaperAndLayoutInUse) {
    const CustomSizeRecord own = {12345, 23456, 1, {u'O'}};
    SaveCustomSizes(kPrinterName, &own, 1);
    AddForm(u"Form", FORM_USER, 200000, 300000);
    Context().customSizes = LoadCustomSizes(kPrinterName);
    Context().forms = EnumUserForms(Printer());
    constexpr struct {
        int16_t paper;
        bool isMetric;
        int32_t width, length;
    } kPapers[] = {
        {DMPAPER_LETTER, true, 21590, 27940},
        {448, true, 12345, 23456},
        {449, true, 20000, 30000},
        {450, true, 21000, 29700},
        {-1, true, 21000, 29700},
        {DMPAPER_A6, false, 21590, 27940},  // not one of the model's
    };
    WatermarkRecord watermark = {};
    watermark.angle = 123;
    for (const auto& c : kPapers) {
        machine_.SetMetric(c.isMetric);
        devMode_.publicPart.dmPaperSize = c.paper;
        const PreviewRequest request = MakePreviewRequest(Context(), watermark);
        EXPECT_EQ(request.paperWidth, c.width) << c.paper;
        EXPECT_EQ(request.paperLength, c.length) << c.paper;
        EXPECT_EQ(request.control, kPreview);
        EXPECT_EQ(request.watermark.angle, 123);
    }
    constexpr struct {
        uint16_t layout;
        uint32_t pages, posterSide;
        uint16_t colorCapability;
        bool isColor;
    } kLayouts[] = {{kOnePage, 1, 1, kColorNone, false},
                    {kTwoPages, 2, 1, kColor, true},
                    {kFourPages, 4, 1, kColorSecondKind, true},
                    {kPoster2x2, 1, 2, 2, false},
                    {kPoster3x3, 1, 3, kColor, true},
                    {kPoster4x4, 1, 4, kColor, true},
                    {8, 1, 1, kColor, true}};
    for (const auto& c : kLayouts) {
        devMode_.privatePart.uiPageLayout = c.layout;
        Model().colorCapability = c.colorCapability;
        const PreviewRequest request = MakePreviewRequest(Context(), watermark);
        EXPECT_EQ(request.pagesPerSheet, c.pages) << c.layout;
        EXPECT_EQ(request.posterSide, c.posterSide) << c.layout;
        EXPECT_EQ(request.isColor, c.isColor) << c.layout;
    }
    // The open Paper page's choices come first.
    devMode_.publicPart.dmOrientation = DMORIENT_LANDSCAPE;
    devMode_.publicPart.dmPaperSize = DMPAPER_A4;
    EXPECT_TRUE(MakePreviewRequest(Context(), watermark).isLandscape);
    Context().paper.paper.selected = DMPAPER_LETTER;
    Context().paper.layout.selected = kTwoPages;
    Context().dialogs[kPaperSlot] = dialog_;
    const PreviewRequest request = MakePreviewRequest(Context(), watermark);
    EXPECT_FALSE(request.isLandscape);
    EXPECT_EQ(request.paperWidth, 21590);
    EXPECT_EQ(request.pagesPerSheet, 2u);
    Context().dialogs[kPaperSlot] = nullptr;
    Context().model = {};
    EXPECT_FALSE(MakePreviewRequest(Context(), watermark).isColor);
}

}  // namespace
}  // namespace velmora
