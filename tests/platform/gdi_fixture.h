// A bitmap to draw on, read back as rows of letters.
#pragma once

#include <map>
#include <sstream>
#include <utility>

#include "tests/platform/kernel_fixture.h"

namespace host {

inline constexpr COLORREF kBlack = RGB(0, 0, 0);
inline constexpr COLORREF kWhite = RGB(255, 255, 255);
inline constexpr COLORREF kRed = RGB(255, 0, 0);
inline constexpr COLORREF kGreen = RGB(0, 255, 0);
inline constexpr COLORREF kBlue = RGB(0, 0, 255);

class GdiTest : public KernelTest {
  protected:
    void TearDown() override {
        for (const HDC context : contexts_) {
            EXPECT_TRUE(DeleteDC(context));
        }
        for (const HGDIOBJ object : objects_) {
            EXPECT_TRUE(DeleteObject(object));
        }
        KernelTest::TearDown();
    }

    // Deleted at the test's end.
    template <class Handle>
    Handle Keep(Handle object) {
        EXPECT_NE(object, nullptr);
        objects_.push_back(object);
        return object;
    }
    // A memory context on a white bitmap.
    HDC MakeCanvas(int width, int height, UINT bitsPerPixel = 32) {
        const HDC context = CreateCompatibleDC(nullptr);
        contexts_.push_back(context);
        EXPECT_NE(SelectObject(context, Keep(CreateBitmap(width, height, 1, bitsPerPixel, nullptr))), nullptr);
        EXPECT_TRUE(PatBlt(context, 0, 0, width, height, WHITENESS));
        return context;
    }
    void SelectPen(HDC context, int style, int width, COLORREF color) {
        SelectObject(context, Keep(CreatePen(style, width, color)));
    }
    void SelectBrush(HDC context, COLORREF color) { SelectObject(context, Keep(CreateSolidBrush(color))); }

    // "." white, "#" black, "r", "g", "b", "?" anything else; rows from the top.
    static Lines Rows(HDC context, int width, int height) {
        static const std::map<COLORREF, char> letters = {
            {kWhite, '.'}, {kBlack, '#'}, {kRed, 'r'}, {kGreen, 'g'}, {kBlue, 'b'}};
        Lines rows(static_cast<size_t>(height));
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const auto letter = letters.find(GetPixel(context, x, y));
                rows[static_cast<size_t>(y)] += letter == letters.end() ? '?' : letter->second;
            }
        }
        return rows;
    }
    // Where the canvas isn't white.
    static RECT Ink(HDC context, int width, int height) {
        RECT ink = {width, height, 0, 0};
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                if (GetPixel(context, x, y) != kWhite) {
                    ink = {std::min<LONG>(ink.left, x), std::min<LONG>(ink.top, y), std::max<LONG>(ink.right, x + 1),
                           std::max<LONG>(ink.bottom, y + 1)};
                }
            }
        }
        return ink;
    }

  private:
    std::vector<HDC> contexts_;
    std::vector<HGDIOBJ> objects_;
};

}  // namespace host
