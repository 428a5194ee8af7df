#include "platform/user/controls/list_layout.h"

#include <algorithm>

#include "platform/user/controls/style.h"

namespace host {

int ListLayout::Rows() const {
    return std::max(Height(client) / itemHeight, 1);
}

int ListLayout::VisibleCount() const {
    return isMultiColumn ? Rows() * std::max(static_cast<int>(Width(client)) / columnWidth, 1) : Rows();
}

RECT ListLayout::ItemArea() const {
    RECT area = client;
    if (HasBar()) {
        (isMultiColumn ? area.bottom : area.right) -= kScrollWidth;
    }
    return area;
}

RECT ListLayout::BarArea() const {
    RECT area = client;
    (isMultiColumn ? area.top : area.left) = (isMultiColumn ? area.bottom : area.right) - kScrollWidth;
    return area;
}

RECT ListLayout::ItemRect(int index) const {
    if (!isMultiColumn) {
        return {0, (index - top) * itemHeight, Width(ItemArea()), (index - top + 1) * itemHeight};
    }
    const int rows = Rows();
    const int left = (index / rows - top / rows) * columnWidth;
    return {left, index % rows * itemHeight, left + columnWidth, (index % rows + 1) * itemHeight};
}

int ListLayout::ItemAt(POINT point) const {
    const RECT area = ItemArea();
    if (!PtInRect(&area, point)) {
        return -1;
    }
    for (int index = top; index < count; ++index) {
        const RECT rect = ItemRect(index);
        if (PtInRect(&rect, point)) {
            return index;
        }
    }
    return -1;
}

ScrollState ListLayout::Scrolling() const {
    const int unit = Unit();
    return {0, (count + unit - 1) / unit - 1, top / unit, VisibleCount() / unit};
}

int ListLayout::NearestTop(int wanted) const {
    const int unit = Unit();
    return std::clamp(wanted / unit * unit, 0, std::max(Scrolling().LastPosition() * unit, 0));
}

int ListLayout::TopToShow(int index) const {
    const int visible = VisibleCount();
    if (index < top) {
        return index;
    }
    return index < top + visible ? top : index - visible + Unit();
}

}  // namespace host
