// List boxes of one selection, and the lists of combo boxes.
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/kernel/failures.h"
#include "platform/kernel/text.h"
#include "platform/user/controls/control.h"
#include "platform/user/controls/controls.h"
#include "platform/user/controls/scroll_parts.h"
#include "platform/user/controls/style.h"

namespace host {
namespace {

class ListBox : public Control {
  public:
    explicit ListBox(HWND window) : Control(window, {LB_ADDSTRING, 0x01BF}) {}
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    struct Item {
        std::u16string text;
        ULONG_PTR data = 0;
    };

    bool IsOwnerDrawn() const { return (Style() & LBS_OWNERDRAWFIXED) != 0; }
    bool HasStrings() const { return !IsOwnerDrawn() || (Style() & LBS_HASSTRINGS) != 0; }
    bool IsMultiColumn() const { return (Style() & LBS_MULTICOLUMN) != 0; }
    int Count() const { return static_cast<int>(items_.size()); }
    bool IsItem(WPARAM index) const { return index < items_.size(); }
    // The window that owner-drawn items and notifications are those of.
    HWND Face() const { return combo_ ? combo_ : window_; }
    void Notify(UINT code) const;

    void Create(const CREATESTRUCTW& creation);
    int Insert(int index, LPARAM stringOrData, bool sorted);
    LRESULT Delete(WPARAM index);
    LRESULT GetItemText(WPARAM index, LPWSTR buffer) const;
    int Find(int after, LPCWSTR text, bool whole) const;
    LRESULT SetSelection(int index);
    void SelectByUser(int index);
    bool PressKey(WPARAM key);
    bool TypeCharacter(char16_t c);
    void FitHeight();

    // Rows are the lines of one column; a plain list has one column.
    int Rows() const { return std::max(Height(Client()) / itemHeight_, 1); }
    int ColumnWidth() const { return IsMultiColumn() ? columnWidth_ : Width(ItemArea()); }
    int VisibleCount() const;
    bool HasBar() const;
    RECT ItemArea() const;
    RECT BarArea() const;
    RECT ItemRect(int index) const;
    int ItemAt(POINT point) const;
    ScrollState Scrolling() const;
    void ScrollTo(int top);
    void Reveal(int index);

    bool PressBar(POINT point);
    void Press(POINT point);
    void Move(POINT point);
    void Release(POINT point);

    void Paint(HDC context, const RECT& client) override;
    void PaintItem(HDC context, int index) const;
    void DrawByOwner(HDC context, int index, const RECT& rect, bool selected) const;

    std::vector<Item> items_;
    int selected_ = -1;
    int tracked_ = -1;  // the item of a dropped list that the mouse is over, shown as selected; -1: none was yet
    int top_ = 0;       // the first item that is seen
    int itemHeight_ = 16;
    int columnWidth_ = 100;
    bool ownHeight_ = false;  // the height was set, so that a font doesn't change it
    HWND combo_ = nullptr;
    bool trackMouse_ = false;
    bool held_ = false;
    ScrollPart heldPart_ = ScrollPart::kNone;
    ScrollLayout layoutAtPress_ = {};
    ScrollState scrollingAtPress_ = {};
    POINT grip_ = {};
};

void ListBox::Notify(UINT code) const {
    if (combo_) {
        SendMessageW(combo_, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(window_), code), reinterpret_cast<LPARAM>(window_));
    } else if (Style() & LBS_NOTIFY) {
        SendCommand(code);
    }
}

void ListBox::Create(const CREATESTRUCTW& creation) {
    combo_ = static_cast<HWND>(creation.lpCreateParams);
    itemHeight_ = FontHeight();
    if (IsOwnerDrawn()) {
        MEASUREITEMSTRUCT item = {};
        item.CtlType = combo_ ? ODT_COMBOBOX : ODT_LISTBOX;
        item.CtlID = static_cast<UINT>(GetDlgCtrlID(Face()));
        item.itemHeight = static_cast<UINT>(itemHeight_);
        SendMessageW(GetParent(Face()), WM_MEASUREITEM, item.CtlID, reinterpret_cast<LPARAM>(&item));
        itemHeight_ = std::max(static_cast<int>(item.itemHeight), 1);
        ownHeight_ = true;
    }
    FitHeight();
}

// Unless its style says otherwise, a list shows whole items only.
void ListBox::FitHeight() {
    const int rest = Height(Client()) % itemHeight_;
    if (Style() & LBS_NOINTEGRALHEIGHT || rest == 0 || Height(Client()) < itemHeight_) {
        return;
    }
    RECT rect;
    GetWindowRect(window_, &rect);
    SetWindowPos(window_, nullptr, 0, 0, Width(rect), Height(rect) - rest, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

int ListBox::Insert(int index, LPARAM stringOrData, bool sorted) {
    Item item;
    if (HasStrings()) {
        item.text = stringOrData ? reinterpret_cast<LPCWSTR>(stringOrData) : u"";
    } else {
        item.data = static_cast<ULONG_PTR>(stringOrData);
    }
    if (index > Count()) {
        return LB_ERR;
    }
    if (index < 0) {
        index = Count();
    }
    if (sorted) {
        if (!HasStrings()) {
            FailUnsupported("sorting a list without strings");
            return LB_ERR;
        }
        const std::u16string folded = FoldCase(item.text);
        const auto place = std::find_if(items_.begin(), items_.end(),
                                        [&](const Item& other) { return FoldCase(other.text) > folded; });
        index = static_cast<int>(place - items_.begin());
    }
    items_.insert(items_.begin() + index, std::move(item));
    if (selected_ >= index) {
        ++selected_;
    }
    Redraw();
    return index;
}

LRESULT ListBox::Delete(WPARAM wParam) {
    if (!IsItem(wParam)) {
        return LB_ERR;
    }
    const int index = static_cast<int>(wParam);
    items_.erase(items_.begin() + index);
    if (selected_ == index) {
        selected_ = -1;
    } else if (selected_ > index) {
        --selected_;
    }
    ScrollTo(top_);
    Redraw();
    return Count();
}

// A list without strings gives the item's data.
LRESULT ListBox::GetItemText(WPARAM index, LPWSTR buffer) const {
    if (!IsItem(index)) {
        return LB_ERR;
    }
    const Item& item = items_[index];
    if (!HasStrings()) {
        if (buffer) {
            memcpy(buffer, &item.data, sizeof(item.data));
        }
        return sizeof(item.data);
    }
    if (buffer) {
        memcpy(buffer, item.text.c_str(), (item.text.size() + 1) * sizeof(WCHAR));
    }
    return static_cast<LRESULT>(item.text.size());
}

// The next item behind `after`, round about, that begins with the text or is the text.
int ListBox::Find(int after, LPCWSTR text, bool whole) const {
    if (!text) {
        return LB_ERR;
    }
    if (!IsItem(static_cast<WPARAM>(after))) {
        after = -1;
    }
    const std::u16string wanted = FoldCase(text);
    for (int step = 1; step <= Count(); ++step) {
        const int index = (after + step) % Count();
        const std::u16string folded = FoldCase(items_[static_cast<size_t>(index)].text);
        if (whole ? folded == wanted : folded.starts_with(wanted)) {
            return index;
        }
    }
    return LB_ERR;
}

LRESULT ListBox::SetSelection(int index) {
    if (index >= Count()) {
        return LB_ERR;
    }
    selected_ = std::max(index, -1);
    tracked_ = -1;
    if (selected_ >= 0) {
        Reveal(selected_);
    }
    Redraw();
    return selected_ < 0 ? LB_ERR : selected_;
}

// Told also where it is the item that was selected before.
void ListBox::SelectByUser(int index) {
    if (Count() > 0) {
        SetSelection(std::clamp(index, 0, Count() - 1));
        Notify(LBN_SELCHANGE);
    }
}

bool ListBox::PressKey(WPARAM key) {
    const int page = std::max(VisibleCount() - 1, 1);
    switch (key) {
        case VK_UP:
            SelectByUser(selected_ - 1);
            return true;
        case VK_DOWN:
            SelectByUser(selected_ + 1);
            return true;
        case VK_LEFT:
            SelectByUser(selected_ - (IsMultiColumn() ? Rows() : 1));
            return true;
        case VK_RIGHT:
            SelectByUser(selected_ + (IsMultiColumn() ? Rows() : 1));
            return true;
        case VK_PRIOR:
            SelectByUser(selected_ - page);
            return true;
        case VK_NEXT:
            SelectByUser(selected_ + page);
            return true;
        case VK_HOME:
            SelectByUser(0);
            return true;
        case VK_END:
            SelectByUser(Count() - 1);
            return true;
        default:
            return false;
    }
}

bool ListBox::TypeCharacter(char16_t c) {
    const WCHAR text[] = {c, u'\0'};
    const int index = c >= u' ' && HasStrings() ? Find(selected_, text, false) : LB_ERR;
    if (index == LB_ERR) {
        return false;
    }
    SelectByUser(index);
    return true;
}

// How many items are seen whole.
int ListBox::VisibleCount() const {
    return IsMultiColumn() ? Rows() * std::max(static_cast<int>(Width(Client())) / columnWidth_, 1) : Rows();
}

bool ListBox::HasBar() const {
    return Style() & (IsMultiColumn() ? WS_HSCROLL : WS_VSCROLL) && Count() > VisibleCount();
}

RECT ListBox::ItemArea() const {
    RECT area = Client();
    if (HasBar()) {
        (IsMultiColumn() ? area.bottom : area.right) -= kScrollWidth;
    }
    return area;
}

RECT ListBox::BarArea() const {
    RECT area = Client();
    (IsMultiColumn() ? area.top : area.left) = (IsMultiColumn() ? area.bottom : area.right) - kScrollWidth;
    return area;
}

RECT ListBox::ItemRect(int index) const {
    const int width = ColumnWidth();
    if (!IsMultiColumn()) {
        return {0, (index - top_) * itemHeight_, width, (index - top_ + 1) * itemHeight_};
    }
    const int rows = Rows();
    const int left = (index / rows - top_ / rows) * width;
    return {left, index % rows * itemHeight_, left + width, (index % rows + 1) * itemHeight_};
}

int ListBox::ItemAt(POINT point) const {
    const RECT area = ItemArea();
    if (!PtInRect(&area, point)) {
        return -1;
    }
    for (int index = top_; index < Count(); ++index) {
        const RECT rect = ItemRect(index);
        if (PtInRect(&rect, point)) {
            return index;
        }
    }
    return -1;
}

// In items, or in columns.
ScrollState ListBox::Scrolling() const {
    const int unit = IsMultiColumn() ? Rows() : 1;
    return {0, (Count() + unit - 1) / unit - 1, top_ / unit, VisibleCount() / unit};
}

void ListBox::ScrollTo(int top) {
    const int unit = IsMultiColumn() ? Rows() : 1;
    const int last = Scrolling().LastPosition() * unit;
    top_ = std::clamp(top / unit * unit, 0, std::max(last, 0));
    Redraw();
}

void ListBox::Reveal(int index) {
    const int visible = VisibleCount();
    if (index < top_) {
        ScrollTo(index);
    } else if (index >= top_ + visible) {
        ScrollTo(IsMultiColumn() ? index - visible + Rows() : index - visible + 1);
    }
}

bool ListBox::PressBar(POINT point) {
    if (!HasBar()) {
        return false;
    }
    const RECT bar = BarArea();
    if (!PtInRect(&bar, point)) {
        return false;
    }
    scrollingAtPress_ = Scrolling();
    layoutAtPress_ = LayOutScrollBar(bar, !IsMultiColumn(), scrollingAtPress_);
    heldPart_ = ScrollPartAt(layoutAtPress_, point);
    grip_ = point;
    const int unit = IsMultiColumn() ? Rows() : 1;
    const int page = scrollingAtPress_.page * unit;
    switch (heldPart_) {
        case ScrollPart::kLineBack:
            ScrollTo(top_ - unit);
            break;
        case ScrollPart::kLineOn:
            ScrollTo(top_ + unit);
            break;
        case ScrollPart::kPageBack:
            ScrollTo(top_ - page);
            break;
        case ScrollPart::kPageOn:
            ScrollTo(top_ + page);
            break;
        default:
            break;
    }
    return true;
}

void ListBox::Press(POINT point) {
    const RECT client = Client();
    if (combo_ && !PtInRect(&client, point)) {
        SendMessageW(combo_, kListDone, 0, 0);
        return;
    }
    if (!combo_) {
        SetFocus(window_);
        SetCapture(window_);
    }
    held_ = true;
    if (PressBar(point)) {
        return;
    }
    const int index = ItemAt(point);
    if (index < 0) {
        return;
    }
    if (trackMouse_) {
        tracked_ = index;
        Redraw();
    } else {
        SelectByUser(index);
    }
}

void ListBox::Move(POINT point) {
    if (heldPart_ == ScrollPart::kThumb) {
        const int unit = IsMultiColumn() ? Rows() : 1;
        ScrollTo(DraggedPosition(layoutAtPress_, scrollingAtPress_, grip_, point) * unit);
        return;
    }
    const int index = heldPart_ == ScrollPart::kNone ? ItemAt(point) : -1;
    if (index < 0) {
        return;
    }
    if (trackMouse_) {
        if (index != tracked_) {
            tracked_ = index;
            Redraw();
        }
    } else if (held_ && index != selected_) {
        SelectByUser(index);
    }
}

void ListBox::Release(POINT point) {
    const bool onItems = heldPart_ == ScrollPart::kNone;
    held_ = false;
    heldPart_ = ScrollPart::kNone;
    if (!combo_) {
        ReleaseCapture();
        return;
    }
    const int index = onItems ? ItemAt(point) : -1;
    if (trackMouse_ && index >= 0) {
        SetSelection(index);
        SendMessageW(combo_, kListDone, 1, 0);
    }
    Redraw();
}

LRESULT ListBox::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    const int index = static_cast<int>(wParam);
    switch (message) {
        case WM_CREATE:
            Create(*reinterpret_cast<const CREATESTRUCTW*>(lParam));
            return 0;
        case WM_SETFONT:
            HandleCommon(message, wParam, lParam);
            if (!ownHeight_) {
                itemHeight_ = FontHeight();
                FitHeight();
            }
            return 0;
        case WM_SIZE:
            FitHeight();
            Redraw();
            return 0;
        case WM_NCPAINT:
            return 0;  // the frame is drawn with the client area, as both change with the focus
        case WM_GETDLGCODE:
            return DLGC_WANTARROWS | DLGC_WANTCHARS;
        case WM_MOUSEACTIVATE:
            return combo_ ? MA_NOACTIVATE : HandleCommon(message, wParam, lParam);
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            Redraw();
            Notify(message == WM_SETFOCUS ? LBN_SETFOCUS : LBN_KILLFOCUS);
            return 0;
        case WM_KEYDOWN:
            return PressKey(wParam) ? 0 : HandleCommon(message, wParam, lParam);
        case WM_CHAR:
            TypeCharacter(static_cast<char16_t>(wParam));
            return 0;
        case WM_MOUSEWHEEL:
            ScrollTo(top_ - 3 * WheelNotches(wParam) * (IsMultiColumn() ? Rows() : 1));
            return 0;
        case WM_LBUTTONDOWN:
            Press(PointOf(lParam));
            return 0;
        case WM_LBUTTONDBLCLK:
            // The second click on an item; on the bar it is one like the first.
            if (!trackMouse_ && ItemAt(PointOf(lParam)) >= 0) {
                Notify(LBN_DBLCLK);
            } else {
                Press(PointOf(lParam));
            }
            return 0;
        case WM_MOUSEMOVE:
            Move(PointOf(lParam));
            return 0;
        case WM_LBUTTONUP:
            Release(PointOf(lParam));
            return 0;
        case WM_CAPTURECHANGED:
            held_ = false;
            heldPart_ = ScrollPart::kNone;
            return 0;
        case kTrackMouse:
            trackMouse_ = wParam != 0;
            tracked_ = -1;
            return 0;

        case LB_ADDSTRING:
            return Insert(-1, lParam, (Style() & LBS_SORT) != 0);
        case LB_INSERTSTRING:
            return Insert(index, lParam, false);
        case LB_DELETESTRING:
            return Delete(wParam);
        case LB_RESETCONTENT:
            items_.clear();
            selected_ = -1;
            tracked_ = -1;
            top_ = 0;
            Redraw();
            return 0;
        case LB_SETCURSEL:
            return SetSelection(index);
        case LB_GETCURSEL:
            return selected_;
        case LB_GETTEXT:
            return GetItemText(wParam, reinterpret_cast<LPWSTR>(lParam));
        case LB_GETTEXTLEN:
            return GetItemText(wParam, nullptr);
        case LB_GETCOUNT:
            return Count();
        case LB_SELECTSTRING: {
            const int found = Find(index, reinterpret_cast<LPCWSTR>(lParam), false);
            return found == LB_ERR ? LB_ERR : SetSelection(found);
        }
        case LB_FINDSTRING:
            return Find(index, reinterpret_cast<LPCWSTR>(lParam), false);
        case LB_FINDSTRINGEXACT:
            return Find(index, reinterpret_cast<LPCWSTR>(lParam), true);
        case LB_GETTOPINDEX:
            return top_;
        case LB_SETTOPINDEX:
            if (!IsItem(wParam)) {
                return LB_ERR;
            }
            ScrollTo(index);
            return 0;
        case LB_GETITEMRECT:
            if (!IsItem(wParam)) {
                return LB_ERR;
            }
            *reinterpret_cast<RECT*>(lParam) = ItemRect(index);
            return 1;
        case LB_GETITEMDATA:
            return IsItem(wParam) ? static_cast<LRESULT>(items_[wParam].data) : LB_ERR;
        case LB_SETITEMDATA:
            if (!IsItem(wParam)) {
                return LB_ERR;
            }
            items_[wParam].data = static_cast<ULONG_PTR>(lParam);
            return 0;
        case LB_SETITEMHEIGHT:
            if (LOWORD(lParam) == 0) {
                return LB_ERR;
            }
            itemHeight_ = LOWORD(lParam);
            ownHeight_ = true;
            FitHeight();
            Redraw();
            return 0;
        case LB_GETITEMHEIGHT:
            return itemHeight_;
        case LB_SETCOLUMNWIDTH:
            columnWidth_ = std::max(index, 1);
            Redraw();
            return 0;
        default:
            return HandleCommon(message, wParam, lParam);
    }
}

void ListBox::Paint(HDC context, const RECT& client) {
    FillRect(context, &client, AskColors(context, WM_CTLCOLORLISTBOX));
    PaintFieldFrame(GetBkColor(context), HasFocus());
    const RECT area = ItemArea();
    const int saved = SaveDC(context);
    IntersectClipRect(context, area.left, area.top, area.right, area.bottom);
    for (int index = top_; index < Count(); ++index) {
        const RECT rect = ItemRect(index);
        if (rect.top >= area.bottom || rect.left >= area.right) {
            break;
        }
        PaintItem(context, index);
    }
    RestoreDC(context, saved);
    if (HasBar()) {
        PaintScrollBar(context, BarArea(), !IsMultiColumn(), Scrolling(), heldPart_, IsEnabled());
    }
}

void ListBox::PaintItem(HDC context, int index) const {
    const RECT rect = ItemRect(index);
    const bool selected = index == (tracked_ >= 0 ? tracked_ : selected_);
    if (IsOwnerDrawn()) {
        DrawByOwner(context, index, rect, selected);
        return;
    }
    COLORREF color = IsEnabled() ? GetTextColor(context) : GetSysColor(COLOR_GRAYTEXT);
    if (selected && IsEnabled()) {
        FillColor(context, rect, GetSysColor(COLOR_HIGHLIGHT));
        color = GetSysColor(COLOR_HIGHLIGHTTEXT);
    }
    RECT label = rect;
    label.left += kFieldMargin;
    DrawLabel(context, items_[static_cast<size_t>(index)].text, label, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX, color);
    if (selected && HasFocus()) {
        DrawFocusRect(context, &rect);
    }
}

void ListBox::DrawByOwner(HDC context, int index, const RECT& rect, bool selected) const {
    const int saved = SaveDC(context);
    if (selected) {
        SetBkColor(context, GetSysColor(COLOR_HIGHLIGHT));
        SetTextColor(context, GetSysColor(COLOR_HIGHLIGHTTEXT));
    }
    DRAWITEMSTRUCT item = {};
    item.CtlType = combo_ ? ODT_COMBOBOX : ODT_LISTBOX;
    item.itemID = static_cast<UINT>(index);
    item.itemAction = ODA_DRAWENTIRE;
    item.itemState = (selected ? ODS_SELECTED : 0u) | (selected && HasFocus() ? ODS_FOCUS : 0u);
    item.hDC = context;
    item.rcItem = rect;
    item.itemData = items_[static_cast<size_t>(index)].data;
    host::DrawByOwner(Face(), item);
    RestoreDC(context, saved);
}

}  // namespace

LRESULT CALLBACK ListBoxProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return ControlProc<ListBox>(window, message, wParam, lParam);
}

}  // namespace host
