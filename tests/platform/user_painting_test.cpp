// What is painted, in which order, and what of it is seen.
#include "tests/platform/user_fixture.h"

namespace host {
namespace {

constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);

void Fill(HDC context, COLORREF color) {
    const RECT all = {-1000, -1000, 1000, 1000};
    const HBRUSH brush = CreateSolidBrush(color);
    FillRect(context, &all, brush);
    DeleteObject(brush);
}

class PaintingTest : public UserTest {
  protected:
    // Windows fill themselves: those named "red" red, others blue.
    PaintingTest() {
        SetAnswer(WM_PAINT, [this](HWND window, WPARAM, LPARAM) {
            PAINTSTRUCT paint;
            Fill(BeginPaint(window, &paint), IsRed(window) ? kRed : kBlue);
            updates_.push_back(paint.rcPaint);
            EndPaint(window, &paint);
            return LRESULT{0};
        });
    }
    static bool IsRed(HWND window) {
        WCHAR name[8];
        GetWindowTextW(window, name, 8);
        return std::u16string_view(name) == u"red";
    }
    static COLORREF PixelAt(HWND window, int x, int y) {
        const HDC context = GetDC(window);
        const COLORREF color = GetPixel(context, x, y);
        ReleaseDC(window, context);
        return color;
    }

    std::vector<RECT> updates_;
};

TEST_F(PaintingTest, OrderAndUpdateRectangle) {
    Watch({{WM_NCPAINT, "frame"}, {WM_ERASEBKGND, "erase"}, {WM_PAINT, "paint"}});
    const HWND top = Make(u"top", WS_POPUP | WS_VISIBLE, {0, 0, 100, 100});
    const HWND child = Make(u"child", WS_CHILD | WS_VISIBLE, {10, 10, 30, 30}, top);
    Make(u"hidden", WS_CHILD, {40, 40, 60, 60}, top);
    Drain();
    const Lines all = {"top:paint", "top:frame", "top:erase", "child:paint", "child:frame", "child:erase"};
    EXPECT_EQ(Taken(), all);
    updates_.clear();
    RECT part = {5, 5, 15, 20};
    InvalidateRect(child, &part, FALSE);
    Drain();
    EXPECT_EQ(Taken(), Lines{"child:paint"});
    // Without WS_CLIPCHILDREN a window's painting takes its children with it.
    part = {15, 15, 20, 20};
    InvalidateRect(top, &part, FALSE);
    UpdateWindow(top);
    EXPECT_EQ(Taken(), (Lines{"top:paint", "child:paint", "child:frame"}));
    ASSERT_EQ(updates_.size(), 3u);
    EXPECT_EQ(updates_[0].bottom, 20);
    EXPECT_EQ(updates_[2].left, 5);
    EXPECT_EQ(updates_[2].bottom, 10);
    // Two parts are one rectangle: what lies between them is painted too.
    for (const RECT corner : {RECT{2, 2, 8, 8}, RECT{32, 32, 38, 38}}) {
        InvalidateRect(top, &corner, FALSE);
    }
    UpdateWindow(top);
    EXPECT_EQ(Taken(), (Lines{"top:paint", "child:paint", "child:frame"}));
    SendMessageW(top, WM_SETREDRAW, FALSE, 0);
    InvalidateRect(top, nullptr, TRUE);
    EXPECT_EQ(Taken(), Lines());
    DestroyWindow(top);
}

TEST_F(PaintingTest, WhatIsSeen) {
    for (const DWORD clipping : {DWORD{0}, DWORD{WS_CLIPCHILDREN}}) {
        const HWND top = Make(u"top", WS_POPUP | WS_VISIBLE | clipping, {50, 50, 150, 150});
        const HWND child = Make(u"red", WS_CHILD | WS_VISIBLE, {80, 80, 120, 120}, top);
        const HWND inner = Make(u"blue", WS_CHILD | WS_VISIBLE, {10, 10, 90, 90}, child);
        Drain();
        EXPECT_EQ(PixelAt(top, 79, 85), kBlue);
        EXPECT_EQ(PixelAt(top, 85, 85), kRed);
        EXPECT_EQ(PixelAt(top, 95, 95), kBlue);
        EXPECT_EQ(PixelAt(inner, 5, 5), kBlue);
        EXPECT_EQ(PixelAt(inner, 15, 15), CLR_INVALID);  // outside of the outermost window
        const HDC context = GetDC(top);
        Fill(context, kBlue);
        ReleaseDC(top, context);
        EXPECT_EQ(PixelAt(top, 85, 85), clipping != 0 ? kRed : kBlue);
        ShowWindow(child, SW_HIDE);
        Drain();
        EXPECT_EQ(PixelAt(top, 85, 85), kBlue);
        DestroyWindow(top);
    }
}

TEST_F(PaintingTest, Pictures) {
    const HWND top = Make(u"top", WS_POPUP | WS_VISIBLE, {50, 50, 90, 90});
    const HWND child = Make(u"red", WS_CHILD | WS_VISIBLE, {10, 10, 30, 20}, top);
    const HWND popup = Make(u"popup", WS_POPUP | WS_VISIBLE, {60, 60, 70, 70}, top);
    const auto file = machine_->Drive() / "picture.png";
    EXPECT_TRUE(SavePicture(child, file));
    const std::string png = Get("picture.png");
    ASSERT_GT(png.size(), 24u);
    EXPECT_EQ(png.substr(16, 8), std::string("\0\0\0\x14\0\0\0\x0A", 8));  // width, height
    DestroyWindow(popup);
    EXPECT_TRUE(SavePicture(child, file));
    EXPECT_NE(Get("picture.png"), png);  // the popup was in it
    EXPECT_FALSE(SavePicture(child, machine_->Drive() / "no/picture.png"));
    ShowWindow(top, SW_HIDE);
    EXPECT_FALSE(SavePicture(child, file));
    DestroyWindow(top);
}

// A procedure that never validates doesn't keep the program busy.
TEST_F(PaintingTest, UnansweredPainting) {
    int asked = 0;
    SetAnswer(WM_PAINT, [&](HWND, WPARAM, LPARAM) { return ++asked, LRESULT{0}; });
    const HWND top = Make(u"top", WS_POPUP | WS_VISIBLE, {0, 0, 10, 10});
    Drain();
    EXPECT_GT(asked, 1);
    DestroyWindow(top);
}

}  // namespace
}  // namespace host
