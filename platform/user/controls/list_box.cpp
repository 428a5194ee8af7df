// List boxes of one selection, and the lists of combo boxes.
#include <windows.h>

#include <algorithm>
#include <utility>

#include "platform/kernel/failures.h"
#include "platform/user/controls/control.h"
#include "platform/user/controls/controls.h"
#include "platform/user/controls/list_items.h"
#include "platform/user/controls/list_layout.h"
#include "platform/user/controls/scroll_parts.h"
#include "platform/user/controls/style.h"

namespace host {
namespace {

class ListBox : public Control {
  public:
    explicit ListBox(HWND window) : Control(window, {LB_ADDSTRING, 0x01BF}) {}
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    bool IsOwnerDrawn() const { return (Style() & LBS_OWNERDRAWFIXED) != 0; }
    bool HasStrings() const { return !IsOwnerDrawn() || (Style() & LBS_HASSTRINGS) != 0; }
    bool IsMultiColumn() const { return (Style() & LBS_MULTICOLUMN) != 0; }
    int Count() const { return items_.Count(); }
    ListLayout Layout() const;
    // The window that owner-drawn items and notifications are those of.
    HWND Face() const { return combo_ ? combo_ : window_; }
    void Notify(UINT code) const;

    void Create(const CREATESTRUCTW& creation);
    int Insert(int index, LPARAM stringOrData, bool sorted);
    LRESULT Delete(WPARAM index);
    LRESULT GetItemText(WPARAM index, LPWSTR buffer) const;
    LRESULT SetSelection(int index);
    void SelectByUser(int index);
    bool PressKey(WPARAM key);
    bool TypeCharacter(char16_t c);
    void FitHeight();

    void ScrollTo(int top);
    void Reveal(int index);

    bool PressBar(POINT point);
    void Press(POINT point);
    void Move(POINT point);
    void Release(POINT point);

    void Paint(HDC context, const RECT& client) override;
    void PaintItem(HDC context, int index, const RECT& rect) const;
    void DrawByOwner(HDC context, int index, const RECT& rect, bool selected) const;

    ListItems items_;
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
    ListItem item;
    if (HasStrings()) {
        item.text = stringOrData ? reinterpret_cast<LPCWSTR>(stringOrData) : u"";
    } else {
        item.data = static_cast<ULONG_PTR>(stringOrData);
    }
    if (sorted && !HasStrings()) {
        FailUnsupported("sorting a list without strings");
        return LB_ERR;
    }
    index = sorted ? items_.InsertSorted(std::move(item)) : items_.Insert(index, std::move(item));
    if (index < 0) {
        return LB_ERR;
    }
    if (selected_ >= index) {
        ++selected_;
    }
    Redraw();
    return index;
}

LRESULT ListBox::Delete(WPARAM wParam) {
    if (!items_.Has(wParam)) {
        return LB_ERR;
    }
    const int index = static_cast<int>(wParam);
    items_.Erase(index);
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
    if (!items_.Has(index)) {
        return LB_ERR;
    }
    const ListItem& item = items_[static_cast<int>(index)];
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
    const int page = std::max(Layout().VisibleCount() - 1, 1);
    const int column = IsMultiColumn() ? Layout().Rows() : 1;
    switch (key) {
        case VK_UP:
            SelectByUser(selected_ - 1);
            return true;
        case VK_DOWN:
            SelectByUser(selected_ + 1);
            return true;
        case VK_LEFT:
            SelectByUser(selected_ - column);
            return true;
        case VK_RIGHT:
            SelectByUser(selected_ + column);
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
    const int index = c >= u' ' && HasStrings() ? items_.Find(selected_, text, false) : LB_ERR;
    if (index == LB_ERR) {
        return false;
    }
    SelectByUser(index);
    return true;
}

ListLayout ListBox::Layout() const {
    return {Client(),
            IsMultiColumn(),
            itemHeight_,
            columnWidth_,
            (Style() & (IsMultiColumn() ? WS_HSCROLL : WS_VSCROLL)) != 0,
            Count(),
            top_};
}

void ListBox::ScrollTo(int top) {
    top_ = Layout().NearestTop(top);
    Redraw();
}

void ListBox::Reveal(int index) {
    if (const int top = Layout().TopToShow(index); top != top_) {
        ScrollTo(top);
    }
}

bool ListBox::PressBar(POINT point) {
    const ListLayout layout = Layout();
    if (!layout.HasBar()) {
        return false;
    }
    const RECT bar = layout.BarArea();
    if (!PtInRect(&bar, point)) {
        return false;
    }
    scrollingAtPress_ = layout.Scrolling();
    layoutAtPress_ = LayOutScrollBar(bar, !IsMultiColumn(), scrollingAtPress_);
    heldPart_ = ScrollPartAt(layoutAtPress_, point);
    grip_ = point;
    const int unit = layout.Unit();
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
    const int index = Layout().ItemAt(point);
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
        ScrollTo(DraggedPosition(layoutAtPress_, scrollingAtPress_, grip_, point) * Layout().Unit());
        return;
    }
    const int index = heldPart_ == ScrollPart::kNone ? Layout().ItemAt(point) : -1;
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
    const int index = onItems ? Layout().ItemAt(point) : -1;
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
            ScrollTo(top_ - 3 * WheelNotches(wParam) * Layout().Unit());
            return 0;
        case WM_LBUTTONDOWN:
            Press(PointOf(lParam));
            return 0;
        case WM_LBUTTONDBLCLK:
            // The second click on an item; on the bar it is one like the first.
            if (!trackMouse_ && Layout().ItemAt(PointOf(lParam)) >= 0) {
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
            items_.Clear();
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
            const int found = items_.Find(index, reinterpret_cast<LPCWSTR>(lParam), false);
            return found == LB_ERR ? LB_ERR : SetSelection(found);
        }
        case LB_FINDSTRING:
            return items_.Find(index, reinterpret_cast<LPCWSTR>(lParam), false);
        case LB_FINDSTRINGEXACT:
            return items_.Find(index, reinterpret_cast<LPCWSTR>(lParam), true);
        case LB_GETTOPINDEX:
            return top_;
        case LB_SETTOPINDEX:
            if (!items_.Has(wParam)) {
                return LB_ERR;
            }
            ScrollTo(index);
            return 0;
        case LB_GETITEMRECT:
            if (!items_.Has(wParam)) {
                return LB_ERR;
            }
            *reinterpret_cast<RECT*>(lParam) = Layout().ItemRect(index);
            return 1;
        case LB_GETITEMDATA:
            return items_.Has(wParam) ? static_cast<LRESULT>(items_[index].data) : LB_ERR;
        case LB_SETITEMDATA:
            if (!items_.Has(wParam)) {
                return LB_ERR;
            }
            items_[index].data = static_cast<ULONG_PTR>(lParam);
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
    const ListLayout layout = Layout();
    const RECT area = layout.ItemArea();
    const int saved = SaveDC(context);
    IntersectClipRect(context, area.left, area.top, area.right, area.bottom);
    for (int index = top_; index < Count(); ++index) {
        const RECT rect = layout.ItemRect(index);
        if (rect.top >= area.bottom || rect.left >= area.right) {
            break;
        }
        PaintItem(context, index, rect);
    }
    RestoreDC(context, saved);
    if (layout.HasBar()) {
        PaintScrollBar(context, layout.BarArea(), !IsMultiColumn(), layout.Scrolling(), heldPart_, IsEnabled());
    }
}

void ListBox::PaintItem(HDC context, int index, const RECT& rect) const {
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
    DrawLabel(context, items_[index].text, label, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX, color);
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
    item.itemData = items_[index].data;
    host::DrawByOwner(Face(), item);
    RestoreDC(context, saved);
}

}  // namespace

LRESULT CALLBACK ListBoxProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return ControlProc<ListBox>(window, message, wParam, lParam);
}

}  // namespace host
