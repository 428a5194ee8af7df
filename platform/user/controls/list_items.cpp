#include "platform/user/controls/list_items.h"

#include <algorithm>
#include <utility>

#include "platform/kernel/text.h"

namespace host {

int ListItems::Insert(int index, ListItem item) {
    if (index > Count()) {
        return LB_ERR;
    }
    if (index < 0) {
        index = Count();
    }
    items_.insert(items_.begin() + index, std::move(item));
    return index;
}

int ListItems::InsertSorted(ListItem item) {
    const std::u16string folded = FoldCase(item.text);
    const auto place = std::find_if(items_.begin(), items_.end(),
                                    [&](const ListItem& other) { return FoldCase(other.text) > folded; });
    return Insert(static_cast<int>(place - items_.begin()), std::move(item));
}

void ListItems::Erase(int index) {
    items_.erase(items_.begin() + index);
}

int ListItems::Find(int after, LPCWSTR text, bool whole) const {
    if (!text) {
        return LB_ERR;
    }
    if (!Has(static_cast<WPARAM>(after))) {
        after = -1;
    }
    const std::u16string wanted = FoldCase(text);
    for (int step = 1; step <= Count(); ++step) {
        const int index = (after + step) % Count();
        const std::u16string folded = FoldCase((*this)[index].text);
        if (whole ? folded == wanted : folded.starts_with(wanted)) {
            return index;
        }
    }
    return LB_ERR;
}

}  // namespace host
