// Where the items of a list lie, in pixels of its client area.
#pragma once

#include <windows.h>

#include "platform/user/controls/scroll_parts.h"

namespace host {

// Rows are the lines of one column; a plain list has one column.
struct ListLayout {
    RECT client;
    bool isMultiColumn;
    int itemHeight;
    int columnWidth;  // of several columns
    bool mayHaveBar;  // where not all items are seen
    int count;        // of items
    int top;          // the first item that is seen

    int Rows() const;
    // The items by which the list scrolls: one, or those of a column.
    int Unit() const { return isMultiColumn ? Rows() : 1; }
    int VisibleCount() const;  // items that are seen whole
    bool HasBar() const { return mayHaveBar && count > VisibleCount(); }
    RECT ItemArea() const;
    RECT BarArea() const;
    RECT ItemRect(int index) const;
    int ItemAt(POINT point) const;  // -1: none
    ScrollState Scrolling() const;  // in units
    int NearestTop(int wanted) const;
    int TopToShow(int index) const;  // the top as it is where the item is seen
};

}  // namespace host
