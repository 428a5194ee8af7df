// Rectangles of whole pixels: the right and bottom edges are outside.
#include <windows.h>

#include <algorithm>

extern "C" {

BOOL WINAPI SetRect(LPRECT rect, int left, int top, int right, int bottom) {
    if (!rect) {
        return FALSE;
    }
    *rect = {left, top, right, bottom};
    return TRUE;
}

BOOL WINAPI OffsetRect(LPRECT rect, int dx, int dy) {
    return rect && SetRect(rect, rect->left + dx, rect->top + dy, rect->right + dx, rect->bottom + dy);
}

BOOL WINAPI IsRectEmpty(const RECT* rect) {
    return !rect || rect->left >= rect->right || rect->top >= rect->bottom;
}

BOOL WINAPI IntersectRect(LPRECT destination, const RECT* a, const RECT* b) {
    if (!destination || !a || !b) {
        return FALSE;
    }
    const RECT common = {std::max(a->left, b->left), std::max(a->top, b->top), std::min(a->right, b->right),
                         std::min(a->bottom, b->bottom)};
    const bool empty = IsRectEmpty(a) || IsRectEmpty(b) || IsRectEmpty(&common);
    *destination = empty ? RECT{} : common;
    return !empty;
}

BOOL WINAPI EqualRect(const RECT* a, const RECT* b) {
    return a && b && a->left == b->left && a->top == b->top && a->right == b->right && a->bottom == b->bottom;
}

BOOL WINAPI PtInRect(const RECT* rect, POINT point) {
    return rect && point.x >= rect->left && point.x < rect->right && point.y >= rect->top && point.y < rect->bottom;
}

}  // extern "C"
