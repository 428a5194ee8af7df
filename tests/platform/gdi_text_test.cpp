#include "platform/gdi/text_order.h"
#include "tests/platform/gdi_fixture.h"

namespace host {
namespace {

constexpr int kWidth = 120;
constexpr int kHeight = 90;

class GdiTextTest : public GdiTest {
  protected:
    GdiTextTest() : canvas_(MakeCanvas(kWidth, kHeight)) { SetBkMode(canvas_, TRANSPARENT); }

    void SelectFont(int height, int escapement = 0, int weight = FW_NORMAL, LPCWSTR face = u"Arial") {
        SelectObject(canvas_, Keep(CreateFontW(height, 0, escapement, escapement, weight, 0, 0, 0, DEFAULT_CHARSET, 0,
                                               0, 0, 0, face)));
    }
    SIZE ExtentOf(std::u16string_view text) {
        SIZE size = {-1, -1};
        EXPECT_TRUE(GetTextExtentPoint32W(canvas_, text.data(), static_cast<int>(text.size()), &size));
        return size;
    }
    // Draws on white by `draw`; where the ink is.
    template <class Draw>
    RECT InkOf(Draw draw) {
        PatBlt(canvas_, 0, 0, kWidth, kHeight, WHITENESS);
        draw();
        return Ink(canvas_, kWidth, kHeight);
    }
    RECT InkOfText(int x, int y, std::u16string_view text) {
        return InkOf([&] {
            EXPECT_TRUE(ExtTextOutW(canvas_, x, y, 0, nullptr, text.data(), static_cast<UINT>(text.size()), nullptr));
        });
    }
    Lines Picture() { return Rows(canvas_, kWidth, kHeight); }

    HDC canvas_;
};

// The em of a negative height, the cell of a positive one; the default for 0.
TEST_F(GdiTextTest, HeightsAndExtents) {
    TEXTMETRICW metrics;
    for (const int height : {-20, 20, 0}) {
        SelectFont(height);
        EXPECT_TRUE(GetTextMetricsW(canvas_, &metrics));
        EXPECT_EQ(metrics.tmAscent + metrics.tmDescent, metrics.tmHeight);
        EXPECT_EQ(height < 0 ? metrics.tmHeight - metrics.tmInternalLeading : metrics.tmHeight,
                  height == 0 ? 16 : std::abs(height));
        const SIZE one = ExtentOf(u"m");
        EXPECT_EQ(one.cy, metrics.tmHeight);
        EXPECT_GT(one.cx, metrics.tmAveCharWidth);
        EXPECT_EQ(ExtentOf(u"mimi").cx, 2 * ExtentOf(u"mi").cx);
        EXPECT_EQ(ExtentOf(u"").cx, 0);
    }
    SelectFont(-20, 0, FW_BOLD);
    const LONG bold = ExtentOf(u"Watermark").cx;
    SelectFont(-20);
    EXPECT_GT(bold, ExtentOf(u"Watermark").cx);
    for (const LPCWSTR face : {u"MS Shell Dlg", u"MS UI Gothic", u"Tahoma", u"No Such Face", u""}) {
        SelectFont(-20, 0, FW_BOLD, face);
        EXPECT_GT(ExtentOf(u"Watermark").cx, 60) << Shown(face);
    }
}

TEST_F(GdiTextTest, Aligns) {
    SelectFont(-24);
    TEXTMETRICW metrics;
    GetTextMetricsW(canvas_, &metrics);
    const LONG width = ExtentOf(u"HH").cx;
    const RECT plain = InkOfText(60, 50, u"HH");
    EXPECT_TRUE(plain.left >= 60 && plain.right <= 60 + width && plain.bottom == 50 + metrics.tmAscent);
    const struct {
        UINT align;
        LONG dx, dy;  // how the text moves
    } cases[] = {
        {TA_CENTER, -width / 2, 0},          {TA_RIGHT, -width, 0},
        {TA_BASELINE, 0, -metrics.tmAscent}, {TA_CENTER | TA_BASELINE | TA_RTLREADING, -width / 2, -metrics.tmAscent},
        {TA_BOTTOM, 0, -metrics.tmHeight},
    };
    for (const auto& c : cases) {
        SetTextAlign(canvas_, c.align);
        const RECT ink = InkOfText(60, 50, u"HH");
        EXPECT_EQ(ink.left - plain.left, c.dx) << c.align;
        EXPECT_EQ(ink.bottom - plain.bottom, c.dy) << c.align;
        EXPECT_EQ(ink.right - plain.right, c.dx) << c.align;
    }
    EXPECT_EQ(ErrorOf([&] { SetTextAlign(canvas_, 1); }), ERROR_NOT_SUPPORTED);
}

// Tenths of a degree against the clock; the extent isn't turned.
TEST_F(GdiTextTest, Turns) {
    SelectFont(-24);
    const SIZE extent = ExtentOf(u"HHH");
    SetTextAlign(canvas_, TA_CENTER | TA_BASELINE);
    const RECT plain = InkOfText(60, 45, u"HHH");
    SelectFont(-24, 900);
    EXPECT_EQ(ExtentOf(u"HHH").cx, extent.cx);
    const RECT up = InkOfText(60, 45, u"HHH");
    EXPECT_NEAR(up.bottom - up.top, plain.right - plain.left, 2);
    EXPECT_NEAR(up.right, 60, 1);
    EXPECT_NEAR(60 - up.left, 45 - plain.top, 2);
    SelectFont(-24, 1800);
    EXPECT_NEAR(InkOfText(60, 45, u"HHH").top, 45, 1);
    SetTextAlign(canvas_, TA_LEFT | TA_BASELINE);
    SelectFont(-24, 300);
    const RECT slanted = InkOfText(20, 80, u"HHH");
    EXPECT_TRUE(slanted.top < 45 && slanted.right > 60 && slanted.bottom <= 81);
}

// A mapping makes text as much smaller or larger as all else that is told in logical units.
TEST_F(GdiTextTest, Scales) {
    SelectFont(24);
    const RECT plain = InkOfText(60, 30, u"HHH");
    SelectFont(96);
    SetTextAlign(canvas_, TA_LEFT | TA_TOP);
    const int saved = SaveDC(canvas_);
    EXPECT_EQ(SetMapMode(canvas_, MM_ANISOTROPIC), MM_TEXT);
    EXPECT_TRUE(SetWindowExtEx(canvas_, 400, 400, nullptr));
    SIZE window = {};
    EXPECT_TRUE(SetWindowExtEx(canvas_, 4, 4, &window));
    EXPECT_EQ(window.cx, 400);
    const SIZE extent = ExtentOf(u"HHH");
    EXPECT_EQ(extent.cy, 96);
    EXPECT_EQ(ErrorOf([&] { SetPixel(canvas_, 0, 0, kRed); }), ERROR_NOT_SUPPORTED);
    EXPECT_EQ(ErrorOf([&] { SetViewportExtEx(canvas_, 100, 50, nullptr); }), ERROR_NOT_SUPPORTED);
    EXPECT_EQ(ErrorOf([&] { SetMapMode(canvas_, 2); }), ERROR_NOT_SUPPORTED);
    const auto inkOf = [&](const RECT& area, UINT align) {
        RestoreDC(canvas_, saved);
        PatBlt(canvas_, 0, 0, kWidth, kHeight, WHITENESS);
        SaveDC(canvas_);
        SetMapMode(canvas_, MM_ANISOTROPIC);
        SetWindowExtEx(canvas_, 4, 4, nullptr);
        SetViewportExtEx(canvas_, 1, 1, nullptr);
        SetViewportOrgEx(canvas_, 60, 0, nullptr);
        SetTextAlign(canvas_, align);
        EXPECT_TRUE(ExtTextOutW(canvas_, 0, 120, ETO_CLIPPED, &area, u"HHH", 3, nullptr));
        SetMapMode(canvas_, MM_TEXT);
        SetViewportOrgEx(canvas_, 0, 0, nullptr);
        return Ink(canvas_, kWidth, kHeight);
    };
    const RECT everywhere = {-1000, 0, 1000, 1000};
    const RECT scaled = inkOf(everywhere, TA_LEFT);
    EXPECT_TRUE(EqualRect(&scaled, &plain));
    const RECT middle = inkOf(everywhere, TA_CENTER);
    EXPECT_NEAR(plain.left - middle.left, extent.cx / 8, 1);
    const RECT cut = inkOf({-1000, 0, 40, 1000}, TA_LEFT);
    EXPECT_EQ(cut.left, plain.left);
    EXPECT_EQ(cut.right, 70);
    // Without a mapping the extents mean nothing.
    EXPECT_TRUE(SetWindowExtEx(canvas_, 9, 9, nullptr));
    EXPECT_EQ(ExtentOf(u"HHH").cy, 96);
}

TEST_F(GdiTextTest, BackgroundAndClipping) {
    SelectFont(-20);
    const RECT area = {10, 10, 40, 20};
    SetBkColor(canvas_, kGreen);
    const auto draw = [&](UINT options) {
        return InkOf([&] { ExtTextOutW(canvas_, 12, 5, options, &area, u"HHHHHHHHHH", 10, nullptr); });
    };
    RECT ink = draw(ETO_OPAQUE | ETO_CLIPPED);
    EXPECT_TRUE(EqualRect(&ink, &area));
    EXPECT_EQ(GetPixel(canvas_, 10, 19), kGreen);
    ink = draw(ETO_CLIPPED);
    EXPECT_TRUE(ink.left >= 12 && ink.top == 10 && ink.bottom == 20 && ink.right <= 40);
    SetBkMode(canvas_, OPAQUE);
    const SIZE extent = ExtentOf(u"HH");
    ink = InkOfText(30, 30, u"HH");
    const RECT cell = {30, 30, 30 + extent.cx, 30 + extent.cy};
    EXPECT_TRUE(EqualRect(&ink, &cell));

    // Advances of the caller's: the second letter lies where it says.
    SetBkMode(canvas_, TRANSPARENT);
    const LONG narrow = InkOfText(10, 10, u"II").right;
    const INT advances[] = {40, 40};
    ink = InkOf([&] { ExtTextOutW(canvas_, 10, 10, 0, nullptr, u"II", 2, advances); });
    EXPECT_EQ(ink.right - narrow, 40 - ExtentOf(u"I").cx);
    ExpectErrors({
        {"no rectangle", [&] { return ExtTextOutW(canvas_, 0, 0, ETO_OPAQUE, nullptr, u"", 0, nullptr); },
         ERROR_INVALID_PARAMETER},
        {"no text", [&] { return ExtTextOutW(canvas_, 0, 0, 0, nullptr, nullptr, 1, nullptr); },
         ERROR_INVALID_PARAMETER},
        {"glyphs", [&] { return ExtTextOutW(canvas_, 0, 0, 0x10, nullptr, u"x", 1, nullptr); }, ERROR_NOT_SUPPORTED},
        {"wide letters", [] { return CreateFontW(9, 9, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, u"") != nullptr; },
         ERROR_NOT_SUPPORTED},
    });
}

// A character that the face lacks comes from another font, not as the face's box.
TEST_F(GdiTextTest, CharactersThatTheFaceLacks) {
    SelectFont(-24);
    InkOfText(10, 10, u"\uE123");
    const Lines box = Picture();
    for (const std::u16string_view text : {u"\u65E5", u"\u3042"}) {
        const RECT ink = InkOfText(10, 10, text);
        EXPECT_FALSE(IsRectEmpty(&ink));
        EXPECT_NE(Picture(), box);
        EXPECT_EQ(ExtentOf(text).cx, 24);
    }
    EXPECT_EQ(ExtentOf(u"\u200F\r\n").cx, 0);
}

TEST_F(GdiTextTest, DrawsPrefixes) {
    SelectFont(-16);
    RECT rect = {0, 0, kWidth, kHeight};
    const auto picture = [&](LPCWSTR text, UINT format) {
        InkOf([&] { DrawTextW(canvas_, text, -1, &rect, DT_SINGLELINE | format); });
        return Picture();
    };
    const Lines plain = picture(u"Abc & d", DT_NOPREFIX);
    EXPECT_EQ(picture(u"A&bc && d", DT_HIDEPREFIX), plain);
    Lines underlined = picture(u"A&bc && d", 0);
    TEXTMETRICW metrics;
    GetTextMetricsW(canvas_, &metrics);
    const auto row = static_cast<size_t>(metrics.tmAscent + 1);
    const std::string expected = std::string(static_cast<size_t>(ExtentOf(u"A").cx), '.') +
                                 std::string(static_cast<size_t>(ExtentOf(u"b").cx), '#');
    EXPECT_EQ(underlined[row].substr(0, expected.size()), expected);
    underlined[row] = plain[row];
    EXPECT_EQ(underlined, plain);
}

TEST_F(GdiTextTest, BreaksAndPlacesLines) {
    SelectFont(-16);
    const LONG height = ExtentOf(u"x").cy;
    const struct {
        std::u16string text;
        std::u16string_view room;  // the rectangle is as wide as this text
        UINT format;
        LONG lines;
        std::u16string_view widest;
    } cases[] = {
        {u"one two three", u"one two", DT_WORDBREAK, 2, u"one two"},
        {u"one two three", u"one two", DT_WORDBREAK | DT_SINGLELINE, 1, u"one two three"},
        {u"one two three", u"on", DT_WORDBREAK, 3, u"three"},
        {u"one\r\ntwo\nfour\r", u"on", 0, 3, u"four"},
        {u"a\n\nb", u"a", DT_WORDBREAK, 3, u"b"},
        {u"\u3042\u3044\u3046\u3002", u"\u3042\u3044", DT_WORDBREAK, 2, u"\u3042\u3044"},
        {u"\u3042\u3044\u3046\u3002", u"\u3042\u3044\u3046", DT_WORDBREAK, 2, u"\u3042\u3044"},
        {u"", u"a", DT_WORDBREAK, 0, u""},
        {u"one two three", u"one ...", DT_END_ELLIPSIS | DT_SINGLELINE, 1, u"one ..."},
        {u"one two", u"one two", DT_END_ELLIPSIS | DT_SINGLELINE, 1, u"one two"},
    };
    for (const auto& c : cases) {
        RECT rect = {3, 4, 3 + ExtentOf(c.room).cx, 5};
        EXPECT_EQ(DrawTextW(canvas_, c.text.c_str(), -1, &rect, c.format | DT_CALCRECT | DT_NOPREFIX), c.lines * height)
            << Shown(c.text);
        const RECT expected = {3, 4, 3 + ExtentOf(c.widest).cx, 4 + static_cast<LONG>(c.lines) * height};
        EXPECT_TRUE(EqualRect(&rect, &expected)) << Shown(c.text) << " " << rect.right - rect.left;
    }

    RECT rect = {10, 10, 110, 80};
    const auto draw = [&](UINT format) { return InkOf([&] { DrawTextW(canvas_, u"HH", 2, &rect, format); }); };
    const RECT plain = draw(DT_SINGLELINE);
    const struct {
        UINT format;
        LONG dx, dy;
    } places[] = {
        {DT_RIGHT, 100 - ExtentOf(u"HH").cx, 0},
        {DT_CENTER | DT_SINGLELINE | DT_VCENTER, (100 - ExtentOf(u"HH").cx) / 2, (70 - height) / 2},
        {DT_BOTTOM | DT_SINGLELINE, 0, 70 - height},
        {DT_BOTTOM, 0, 0},
    };
    for (const auto& c : places) {
        const RECT ink = draw(c.format);
        EXPECT_EQ(ink.left - plain.left, c.dx) << c.format;
        EXPECT_EQ(ink.top - plain.top, c.dy) << c.format;
    }
    EXPECT_EQ(DrawTextW(canvas_, u"HH", 2, &rect, DT_BOTTOM | DT_SINGLELINE), 70);
    rect.bottom = 15;
    EXPECT_LE(draw(0).bottom, 15);
    EXPECT_GT(draw(DT_NOCLIP).bottom, 15);
    EXPECT_EQ(FailureOf([&] { return DrawTextW(canvas_, u"x", 1, &rect, 0x40); }), ERROR_NOT_SUPPORTED);
}

// The letters a, b, g are Hebrew here.
TEST_F(GdiTextTest, RightToLeft) {
    const auto order = [](std::u16string text, bool rightToLeft) {
        const std::u16string_view latin = u"abg";
        const std::u16string_view hebrew = u"\u05D0\u05D1\u05D2";
        for (char16_t& c : text) {
            c = latin.find(c) != std::u16string_view::npos ? hebrew[latin.find(c)] : c;
        }
        std::string shown;
        for (const OrderedCharacter& c : VisualOrder(text, rightToLeft)) {
            const size_t at = hebrew.find(static_cast<char16_t>(c.character));
            shown += static_cast<char>(at != std::u16string_view::npos ? latin[at] : c.character);
        }
        return shown;
    };
    const struct {
        const char16_t* text;
        const char* leftToRight;
        const char* rightToLeft;
    } cases[] = {
        {u"XYZ", "XYZ", "XYZ"},
        {u"abg", "gba", "gba"},
        {u"X abg Y", "X gba Y", "Y gba X"},
        {u"ab 12 g", "g 12 ba", "g 12 ba"},
        {u"XY!", "XY!", "!XY"},
        {u"a(b)", "b)a)", "(b)a"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(order(c.text, false), c.leftToRight);
        EXPECT_EQ(order(c.text, true), c.rightToLeft);
    }
}

}  // namespace
}  // namespace host
