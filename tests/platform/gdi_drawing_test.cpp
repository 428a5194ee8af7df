#include "platform/gdi/surfaces.h"
#include "tests/platform/gdi_fixture.h"

namespace host {
namespace {

class GdiDrawingTest : public GdiTest {};

// On 8 x 5 pixels, with a blue brush and a thin pen in black.
TEST_F(GdiDrawingTest, Shapes) {
    const RECT rect = {1, 1, 6, 4};
    const struct {
        const char* what;
        std::function<void(HDC)> draw;
        Lines rows;
    } cases[] = {
        {"lines leave out their last point",
         [](HDC dc) {
             MoveToEx(dc, 1, 1, nullptr);
             LineTo(dc, 5, 1);
             LineTo(dc, 5, 4);
         },
         {"........", ".#####..", ".....#..", ".....#..", "........"}},
        {"lines up and to the left",
         [](HDC dc) {
             MoveToEx(dc, 6, 3, nullptr);
             LineTo(dc, 0, 0);
         },
         {"........", ".##.....", "...##...", ".....##.", "........"}},
        {"dots over a background",
         [&](HDC dc) {
             SelectPen(dc, PS_DOT, 1, kRed);
             SetBkColor(dc, kGreen);
             MoveToEx(dc, 0, 1, nullptr);
             LineTo(dc, 8, 1);
         },
         {"........", "rrrgggrr", "........", "........", "........"}},
        {"dots alone",
         [&](HDC dc) {
             SelectPen(dc, PS_DOT, 1, kRed);
             SetBkMode(dc, TRANSPARENT);
             MoveToEx(dc, 0, 1, nullptr);
             LineTo(dc, 8, 1);
         },
         {"........", "rrr...rr", "........", "........", "........"}},
        {"a wide line",
         [&](HDC dc) {
             SelectPen(dc, PS_DASH, 3, kRed);
             MoveToEx(dc, -9, 2, nullptr);
             LineTo(dc, 20, 2);
         },
         {"........", "rrrrrrrr", "rrrrrrrr", "rrrrrrrr", "........"}},
        {"a rectangle",
         [](HDC dc) { Rectangle(dc, 1, 1, 6, 4); },
         {"........", ".#####..", ".#bbb#..", ".#####..", "........"}},
        {"a rectangle without a pen",
         [](HDC dc) {
             SelectObject(dc, GetStockObject(NULL_PEN));
             Rectangle(dc, 1, 1, 6, 4);
         },
         {"........", ".bbbb...", ".bbbb...", "........", "........"}},
        {"a rectangle without a brush",
         [](HDC dc) {
             SelectObject(dc, GetStockObject(HOLLOW_BRUSH));
             Rectangle(dc, 1, 1, 6, 4);
         },
         {"........", ".#####..", ".#...#..", ".#####..", "........"}},
        {"a filled and a framed rectangle",
         [&](HDC dc) {
             FillRect(dc, &rect, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
             FrameRect(dc, &rect, reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1));
         },
         {"........", "........", "..###...", "........", "........"}},
        {"a focus rectangle",
         [&](HDC dc) { DrawFocusRect(dc, &rect); },
         {"........", ".#.#.#..", "........", ".#.#.#..", "........"}},
        {"a focus rectangle that is taken away",
         [&](HDC dc) {
             DrawFocusRect(dc, &rect);
             DrawFocusRect(dc, &rect);
         },
         {"........", "........", "........", "........", "........"}},
        {"an origin and a clip region",
         [&](HDC dc) {
             const HRGN region = Keep(CreateRectRgn(0, 0, 4, 5));
             EXPECT_EQ(SelectClipRgn(dc, region), SIMPLEREGION);
             SetViewportOrgEx(dc, 1, 1, nullptr);
             EXPECT_EQ(IntersectClipRect(dc, 0, 0, 9, 2), SIMPLEREGION);
             Rectangle(dc, -1, -1, 8, 8);
         },
         {"........", ".bbb....", ".bbb....", "........", "........"}},
    };
    for (const auto& c : cases) {
        const HDC canvas = MakeCanvas(8, 5);
        SelectBrush(canvas, kBlue);
        c.draw(canvas);
        SelectClipRgn(canvas, nullptr);
        SetViewportOrgEx(canvas, 0, 0, nullptr);
        EXPECT_EQ(Rows(canvas, 8, 5), c.rows) << c.what;
    }
}

// The quarter of a pie runs against the clock, and round shapes stay within their rectangles.
TEST_F(GdiDrawingTest, RoundShapes) {
    const HDC canvas = MakeCanvas(40, 40);
    SelectBrush(canvas, kBlue);
    EXPECT_TRUE(Pie(canvas, 4, 4, 36, 36, 40, 20, 20, 0));
    const RECT quarter = Ink(canvas, 40, 40);
    EXPECT_TRUE(quarter.left >= 18 && quarter.top == 4 && quarter.right == 36 && quarter.bottom <= 22);
    EXPECT_EQ(GetPixel(canvas, 25, 15), kBlue);
    PatBlt(canvas, 0, 0, 40, 40, WHITENESS);
    EXPECT_TRUE(Pie(canvas, 4, 6, 34, 38, 40, 22, 40, 22));  // equal radials: the whole ellipse
    const RECT ink = Ink(canvas, 40, 40);
    const RECT expected = {4, 6, 34, 38};
    EXPECT_TRUE(EqualRect(&ink, &expected));
    EXPECT_EQ(GetPixel(canvas, 20, 20), kBlue);
}

TEST_F(GdiDrawingTest, RasterOperations) {
    constexpr COLORREF kTo = RGB(0x0F, 0x33, 0x55);
    constexpr COLORREF kFrom = RGB(0xF0, 0x3C, 0x5A);
    const HDC source = MakeCanvas(1, 1);
    const HDC canvas = MakeCanvas(1, 1);
    SelectBrush(canvas, kGreen);
    SetPixel(source, 0, 0, kFrom);
    const std::pair<DWORD, COLORREF> cases[] = {
        {SRCCOPY, kFrom},    {SRCPAINT, RGB(0xFF, 0x3F, 0x5F)},
        {PATCOPY, kGreen},   {SRCAND, RGB(0x00, 0x30, 0x50)},
        {WHITENESS, kWhite}, {SRCINVERT, RGB(0xFF, 0x0F, 0x0F)},
        {BLACKNESS, kBlack}, {NOTSRCCOPY, RGB(0x0F, 0xC3, 0xA5)},
    };
    for (const auto& [operation, result] : cases) {
        SetPixel(canvas, 0, 0, kTo);
        EXPECT_TRUE(BitBlt(canvas, 0, 0, 1, 1, source, 0, 0, operation));
        EXPECT_EQ(GetPixel(canvas, 0, 0), result) << std::hex << operation;
    }
    EXPECT_EQ(FailureOf([&] { return BitBlt(canvas, 0, 0, 1, 1, source, 0, 0, 0x00990066); }), ERROR_NOT_SUPPORTED);
    EXPECT_EQ(FailureOf([&] { return PatBlt(canvas, 0, 0, 1, 1, SRCCOPY); }), ERROR_INVALID_PARAMETER);
}

// What lies outside of the source leaves the destination as it is, and a surface may be copied onto itself.
TEST_F(GdiDrawingTest, CopiesParts) {
    const HDC canvas = MakeCanvas(4, 2);
    SetPixel(canvas, 0, 0, kRed);
    SetPixel(canvas, 1, 0, kGreen);
    EXPECT_TRUE(BitBlt(canvas, 1, 0, 3, 1, canvas, 0, 0, SRCCOPY));
    EXPECT_EQ(Rows(canvas, 4, 2), (Lines{"rrg.", "...."}));
    EXPECT_TRUE(BitBlt(canvas, 0, 1, 4, 1, canvas, -1, 0, SRCCOPY));
    EXPECT_EQ(Rows(canvas, 4, 2), (Lines{"rrg.", ".rrg"}));
}

TEST_F(GdiDrawingTest, Stretches) {
    const HDC source = MakeCanvas(4, 1);
    const std::pair<int, COLORREF> pixels[] = {{0, kRed}, {1, kBlue}, {2, kGreen}};
    for (const auto& [x, color] : pixels) {
        SetPixel(source, x, 0, color);
    }
    const struct {
        int mode;  // 0: a fresh context's
        int width;
        std::vector<COLORREF> row;
    } cases[] = {
        {COLORONCOLOR, 8, {kRed, kRed, kBlue, kBlue, kGreen, kGreen, kWhite, kWhite}},
        {COLORONCOLOR, 2, {kBlue, kWhite}},
        {HALFTONE, 2, {RGB(128, 0, 128), RGB(128, 255, 128)}},
        {0, 2, {kBlack, kGreen}},
    };
    for (const auto& c : cases) {
        const HDC canvas = MakeCanvas(8, 1);
        if (c.mode != 0) {
            SetStretchBltMode(canvas, c.mode);
        }
        EXPECT_TRUE(StretchBlt(canvas, 0, 0, c.width, 1, source, 0, 0, 4, 1, SRCCOPY));
        for (size_t x = 0; x < c.row.size(); ++x) {
            EXPECT_EQ(GetPixel(canvas, static_cast<int>(x), 0), c.row[x]) << c.mode << " at " << x;
        }
    }
}

// A mask is white where the picture has the background's colour; with it the picture is drawn transparently.
TEST_F(GdiDrawingTest, MonochromeMasks) {
    const HDC picture = MakeCanvas(3, 1);
    SetPixel(picture, 1, 0, kBlue);
    const HDC mask = MakeCanvas(3, 1, 1);
    EXPECT_EQ(GetDeviceCaps(mask, BITSPIXEL), 1);
    SetBkColor(picture, kWhite);
    EXPECT_TRUE(BitBlt(mask, 0, 0, 3, 1, picture, 0, 0, SRCCOPY));
    EXPECT_EQ(Rows(mask, 3, 1), Lines{".#."});

    const HDC colors = MakeCanvas(3, 1);
    SetTextColor(colors, kRed);
    SetBkColor(colors, kGreen);
    EXPECT_TRUE(BitBlt(colors, 0, 0, 3, 1, mask, 0, 0, SRCCOPY));
    EXPECT_EQ(Rows(colors, 3, 1), Lines{"grg"});

    const HDC canvas = MakeCanvas(6, 2);
    const RECT all = {0, 0, 6, 2};
    FillRect(canvas, &all, Keep(CreateSolidBrush(kRed)));
    SetTextColor(canvas, kBlack);
    SetBkColor(canvas, kWhite);
    for (const auto& [from, operation] : {std::pair(picture, SRCINVERT), {mask, SRCAND}, {picture, SRCINVERT}}) {
        EXPECT_TRUE(StretchBlt(canvas, 0, 0, 6, 2, from, 0, 0, 3, 1, operation));
    }
    EXPECT_EQ(Rows(canvas, 6, 2), (Lines{"rrbbrr", "rrbbrr"}));
}

TEST_F(GdiDrawingTest, DeviceIndependentBits) {
    const BYTE words[] = {0x40, 0, 0x80, 0};
    const HBITMAP dots = Keep(CreateBitmap(2, 2, 1, 1, words));
    const HDC context = CreateCompatibleDC(nullptr);
    SelectObject(context, dots);
    EXPECT_EQ(Rows(context, 2, 2), (Lines{"#.", ".#"}));

    const HBITMAP bitmap = Keep(CreateBitmap(2, 2, 1, 32, nullptr));
    const HBITMAP copy = Keep(CreateBitmap(2, 2, 1, 32, nullptr));
    SelectObject(context, bitmap);
    const COLORREF pixels[2][2] = {{RGB(1, 2, 3), RGB(4, 5, 6)}, {RGB(7, 8, 9), RGB(10, 11, 12)}};
    for (int i = 0; i < 4; ++i) {
        SetPixel(context, i % 2, i / 2, pixels[i / 2][i % 2]);
    }
    const struct {
        WORD bits;
        LONG height;
        std::vector<BYTE> bytes;
    } cases[] = {
        {24, 2, {9, 8, 7, 12, 11, 10, 0xEE, 0xEE, 3, 2, 1, 6, 5, 4, 0xEE, 0xEE}},
        {24, -2, {3, 2, 1, 6, 5, 4, 0xEE, 0xEE, 9, 8, 7, 12, 11, 10, 0xEE, 0xEE}},
        {32, 2, {9, 8, 7, 0, 12, 11, 10, 0, 3, 2, 1, 0, 6, 5, 4, 0}},
        {32, -2, {3, 2, 1, 0, 6, 5, 4, 0, 9, 8, 7, 0, 12, 11, 10, 0}},
    };
    for (const auto& c : cases) {
        BITMAPINFO info = {{sizeof(BITMAPINFOHEADER), 2, c.height, 1, c.bits, BI_RGB, 0, 0, 0, 0, 0}, {}};
        std::vector<BYTE> bytes(16, 0xEE);
        EXPECT_EQ(GetDIBits(context, bitmap, 0, 2, bytes.data(), &info, DIB_RGB_COLORS), 2);
        EXPECT_EQ(bytes, c.bytes) << c.bits << " " << c.height;
        EXPECT_EQ(info.bmiHeader.biSizeImage, 16u);
        // Line by line, the second one first.
        EXPECT_EQ(SetDIBits(context, copy, 1, 5, bytes.data() + 8, &info, DIB_RGB_COLORS), 1);
        EXPECT_EQ(SetDIBits(context, copy, 0, 1, bytes.data(), &info, DIB_RGB_COLORS), 1);
        SelectObject(context, copy);
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(GetPixel(context, i % 2, i / 2), pixels[i / 2][i % 2]) << c.bits << " " << c.height;
            SetPixel(context, i % 2, i / 2, kRed);
        }
    }
    BITMAPINFO asked = {};
    asked.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    EXPECT_NE(GetDIBits(context, bitmap, 0, 0, nullptr, &asked, DIB_RGB_COLORS), 0);
    EXPECT_EQ(asked.bmiHeader.biWidth, 2);
    EXPECT_EQ(asked.bmiHeader.biBitCount, 32);

    for (const LONG height : {2, -2}) {
        const BITMAPINFO info = {{sizeof(BITMAPINFOHEADER), 2, height, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
        void* bits = nullptr;
        const HBITMAP section = Keep(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
        SelectObject(context, section);
        static_cast<DWORD*>(bits)[0] = 0x00FF0000;
        EXPECT_EQ(GetPixel(context, 0, height > 0 ? 1 : 0), kRed);
        SetPixel(context, 1, height > 0 ? 0 : 1, kBlue);
        EXPECT_EQ(static_cast<DWORD*>(bits)[3], 0x000000FFu);
    }
    DeleteDC(context);
}

TEST_F(GdiDrawingTest, ObjectsAreDeletedWhenNothingHasThem) {
    const HDC context = CreateCompatibleDC(nullptr);
    const HDC other = CreateCompatibleDC(nullptr);
    const HDC display = CreateDCW(u"DISPLAY", nullptr, nullptr, nullptr);
    const HBITMAP bitmap = CreateCompatibleBitmap(display, 4, 4);
    const HPEN pen = CreatePen(PS_SOLID, 1, kRed);
    const HGDIOBJ before = SelectObject(context, bitmap);
    const HGDIOBJ oldPen = SelectObject(context, pen);
    EXPECT_EQ(oldPen, GetStockObject(BLACK_PEN));
    EXPECT_EQ(SaveDC(context), 1);
    SetTextColor(context, kBlue);
    SelectObject(context, oldPen);
    ExpectErrors({
        {"in another context", [&] { return SelectObject(other, bitmap) != nullptr; }, ERROR_INVALID_HANDLE},
        {"selected", [&] { return DeleteObject(bitmap); }, ERROR_INVALID_HANDLE},
        {"saved", [&] { return DeleteObject(pen); }, ERROR_INVALID_HANDLE},
        {"a context", [&] { return DeleteObject(context); }, ERROR_INVALID_HANDLE},
        {"no context", [&] { return DeleteDC(reinterpret_cast<HDC>(pen)); }, ERROR_INVALID_HANDLE},
        {"no such state", [&] { return RestoreDC(context, 2); }, ERROR_INVALID_PARAMETER},
        {"again", [&] { return SelectObject(context, bitmap) != nullptr; }},
        {"a stock object", [&] { return DeleteObject(GetStockObject(WHITE_BRUSH)); }},
        {"a system colour's", [&] { return DeleteObject(GetSysColorBrush(COLOR_BTNFACE)); }},
        {"restored", [&] { return RestoreDC(context, -1); }},
    });
    EXPECT_EQ(GetTextColor(context), kBlack);
    EXPECT_EQ(SelectObject(context, oldPen), pen);
    EXPECT_EQ(SelectObject(context, before), bitmap);
    EXPECT_NE(SelectObject(other, bitmap), nullptr);
    BITMAP told = {};
    EXPECT_EQ(GetObjectW(bitmap, sizeof told, &told), static_cast<int>(sizeof told));
    EXPECT_TRUE(told.bmWidth == 4 && told.bmHeight == 4 && told.bmBitsPixel == 32);
    EXPECT_EQ(StillOpen(), (Lines{"GDI object memory context", "GDI object memory context",
                                  "GDI object display context", "GDI object bitmap of 4 x 4", "GDI object pen"}));
    EXPECT_EQ(FailureOf([&] { return SetPixel(display, 0, 0, kRed) != CLR_INVALID; }), ERROR_NOT_SUPPORTED);
    EXPECT_EQ(GetDeviceCaps(display, LOGPIXELSY), 96);
    for (const HDC dc : {context, other, display}) {
        EXPECT_TRUE(DeleteDC(dc));
    }
    EXPECT_TRUE(DeleteObject(bitmap));
    EXPECT_TRUE(DeleteObject(pen));
}

TEST_F(GdiDrawingTest, MemoryRunsOut) {
    const HDC context = MakeCanvas(1, 1);
    const LOGFONTW font = {};
    const BITMAPINFO info = {{sizeof(BITMAPINFOHEADER), 2, 2, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
    const std::pair<const char*, std::function<HANDLE()>> calls[] = {
        {"CreatePen", [] { return CreatePen(PS_SOLID, 1, 0); }},
        {"CreateSolidBrush", [] { return CreateSolidBrush(0); }},
        {"CreateFontIndirectW", [&] { return CreateFontIndirectW(&font); }},
        {"CreateBitmap", [] { return CreateBitmap(1, 1, 1, 1, nullptr); }},
        {"CreateCompatibleBitmap", [&] { return CreateCompatibleBitmap(context, 1, 1); }},
        {"CreateDIBSection", [&] { return CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, nullptr, nullptr, 0); }},
        {"CreateCompatibleDC", [&] { return CreateCompatibleDC(context); }},
        {"CreateRectRgn", [] { return CreateRectRgn(0, 0, 1, 1); }},
    };
    for (const auto& [name, call] : calls) {
        FailAllocation(1);
        EXPECT_EQ(FailureOf([&] { return call() != nullptr; }), ERROR_NOT_ENOUGH_MEMORY) << name;
        FailCall(name, ERROR_GEN_FAILURE);
        EXPECT_EQ(FailureOf([&] { return call() != nullptr; }), ERROR_GEN_FAILURE) << name;
    }
    FailCall("Rectangle", ERROR_GEN_FAILURE);
    EXPECT_EQ(FailureOf([&] { return Rectangle(context, 0, 0, 1, 1); }), ERROR_GEN_FAILURE);
    EXPECT_EQ(GetPixel(context, 0, 0), kWhite);
}

TEST_F(GdiDrawingTest, DrawsOnPartsOfSurfaces) {
    const auto surface = std::make_shared<Surface>(4, 3);
    const HDC context = MakeSurfaceContext(surface, {1, 1}, {1, 1, 3, 3});
    EXPECT_TRUE(PatBlt(context, -1, -1, 9, 2, WHITENESS));
    EXPECT_EQ(SelectObject(context, Keep(CreateBitmap(1, 1, 1, 32, nullptr))), nullptr);
    EXPECT_EQ(SetPixel(context, 2, 0, kRed), CLR_INVALID);
    EXPECT_TRUE(DeleteDC(context));
    const std::vector<uint32_t> expected = {0, 0, 0, 0, 0, 0xFFFFFF, 0xFFFFFF, 0, 0, 0, 0, 0};
    EXPECT_EQ(std::vector<uint32_t>(surface->Pixels(), surface->Pixels() + 12), expected);
    EXPECT_TRUE(WritePng(*surface, machine_->Drive() / "screen.png"));
    EXPECT_EQ(Get("screen.png").substr(1, 3), "PNG");
    EXPECT_FALSE(WritePng(*surface, machine_->Drive() / "none" / "screen.png"));
}

TEST(GdiRectanglesTest, Sets) {
    const RECT a = {0, 0, 10, 10};
    const RECT b = {5, -5, 15, 5};
    const RECT beside = {10, 0, 20, 10};
    const RECT empty = {3, 3, 3, 9};
    const struct {
        const RECT& other;
        RECT result;
    } cases[] = {{b, {5, 0, 10, 5}}, {beside, {0, 0, 0, 0}}, {empty, {0, 0, 0, 0}}};
    for (const auto& c : cases) {
        RECT result = {1, 2, 3, 4};
        EXPECT_EQ(IntersectRect(&result, &a, &c.other), !IsRectEmpty(&c.result));
        EXPECT_TRUE(EqualRect(&result, &c.result)) << result.left << " " << result.top;
    }
    EXPECT_TRUE(PtInRect(&a, {0, 9}));
    EXPECT_FALSE(PtInRect(&a, {10, 9}));
    EXPECT_FALSE(PtInRect(&a, {9, 10}));
}

}  // namespace
}  // namespace host
