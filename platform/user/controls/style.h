// How controls look: colours, measures in pixels at 96 dots an inch, and the shapes that several of them are drawn of.
// Nothing here makes a GDI object, so that drawing can't fail and counts for nothing in a program's ledger.
#pragma once

#include <windows.h>

#include <span>
#include <string_view>

namespace host {

inline constexpr COLORREF kAccent = RGB(0x00, 0x67, 0xC0);
inline constexpr COLORREF kAccentPressed = RGB(0x00, 0x4E, 0x93);
inline constexpr COLORREF kOnAccent = RGB(0xFF, 0xFF, 0xFF);
inline constexpr COLORREF kField = RGB(0xFF, 0xFF, 0xFF);
inline constexpr COLORREF kFieldDisabled = RGB(0xF4, 0xF4, 0xF4);
inline constexpr COLORREF kFieldLine = RGB(0x8C, 0x8C, 0x8C);
inline constexpr COLORREF kFieldLineDisabled = RGB(0xCC, 0xCC, 0xCC);
inline constexpr COLORREF kButton = RGB(0xFD, 0xFD, 0xFD);
inline constexpr COLORREF kButtonPressed = RGB(0xE6, 0xE6, 0xE6);
inline constexpr COLORREF kButtonLine = RGB(0xBC, 0xBC, 0xBC);
inline constexpr COLORREF kGroupLine = RGB(0xD4, 0xD4, 0xD4);
inline constexpr COLORREF kMark = RGB(0x50, 0x50, 0x50);
inline constexpr COLORREF kMarkDisabled = RGB(0xB4, 0xB4, 0xB4);
inline constexpr COLORREF kTrack = RGB(0xE9, 0xE9, 0xE9);
inline constexpr COLORREF kThumb = RGB(0xC1, 0xC1, 0xC1);
inline constexpr COLORREF kThumbPressed = RGB(0x90, 0x90, 0x90);

inline constexpr int kCornerRadius = 3;
inline constexpr int kCheckSize = 13;    // box of a check or radio button
inline constexpr int kCheckGap = 5;      // between the box and its text
inline constexpr int kFieldMargin = 3;   // left and right of a field's text
inline constexpr int kDropWidth = 18;    // part of a combo box that holds the arrow
inline constexpr int kFieldPadding = 8;  // a combo box's height beyond its font's
inline constexpr int kScrollWidth = 17;

struct PointF {
    double x;
    double y;
};

void FillColor(HDC context, const RECT& rect, COLORREF color);
void FrameColor(HDC context, const RECT& rect, COLORREF color);  // one pixel wide, inside the rectangle
// The same with corners that blend into a dialog's face.
void FrameField(HDC context, const RECT& rect, COLORREF color);

// Corners of `radius`, antialiased.
void FillRound(HDC context, const RECT& rect, double radius, COLORREF color);
// A round rectangle of kCornerRadius with a line of `thickness` pixels inside its edge.
void FillFramedRound(HDC context, const RECT& rect, int thickness, COLORREF fill, COLORREF line);
void FillDisc(HDC context, PointF center, double radius, COLORREF color);
// A line of `width` pixels through the points, with round ends.
void StrokeLines(HDC context, std::span<const PointF> points, double width, COLORREF color);

// The tick of a check box that fills `box`.
void DrawTick(HDC context, const RECT& box, COLORREF color);

enum class Direction { kUp, kDown, kLeft, kRight };
// An arrow in the middle of `box`, `size` pixels from its tip to each end along either axis.
void DrawArrow(HDC context, const RECT& box, Direction direction, double size, COLORREF color);

// DrawTextW in a colour, on what is there.
void DrawLabel(HDC context, std::u16string_view text, RECT rect, UINT format, COLORREF color);
// The rectangle that DrawTextW would need; its corner is at (0, 0), `width` bounds it where the format breaks words.
SIZE MeasureLabel(HDC context, std::u16string_view text, int width, UINT format);

int Width(const RECT& rect);
int Height(const RECT& rect);
RECT Inset(const RECT& rect, int dx, int dy);

}  // namespace host
