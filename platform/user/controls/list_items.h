// The items of a list, in their order.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace host {

struct ListItem {
    std::u16string text;  // empty in lists without strings
    ULONG_PTR data = 0;
};

class ListItems {
  public:
    int Count() const { return static_cast<int>(items_.size()); }
    bool Has(WPARAM index) const { return index < items_.size(); }
    const ListItem& operator[](int index) const { return items_[static_cast<size_t>(index)]; }
    ListItem& operator[](int index) { return items_[static_cast<size_t>(index)]; }

    // At that place, or at the end where it is negative. The item's place; LB_ERR for one beyond the end.
    int Insert(int index, ListItem item);
    // In the order of the texts without regard to case, behind its equals. The item's place.
    int InsertSorted(ListItem item);
    void Erase(int index);
    void Clear() { items_.clear(); }

    // The next item behind `after`, round about, that begins with the text or is the text, whatever its case. LB_ERR
    // where none does, and for null.
    int Find(int after, LPCWSTR text, bool whole) const;

  private:
    std::vector<ListItem> items_;
};

}  // namespace host
