// Tabs: one line of them, with texts.
#include <commctrl.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/user/controls/control.h"
#include "platform/user/controls/controls.h"
#include "platform/user/controls/style.h"

namespace host {
namespace {

constexpr int kTabPadding = 9;   // left and right of a tab's text
constexpr int kTabLeading = 10;  // a tab's height beyond its font's
constexpr int kFrame = 4;        // between the control's edge and what the tabs show

class TabControl : public Control {
  public:
    explicit TabControl(HWND window) : Control(window, {TCM_FIRST, TCM_FIRST + 0x7F}) {}
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    struct Tab {
        std::u16string text;
        LPARAM data = 0;
    };

    LRESULT Insert(int index, const TCITEMW& item);
    bool Delete(size_t index);
    bool Get(size_t index, TCITEMW* item) const;
    int TabHeight() const { return FontHeight() + kTabLeading; }
    RECT TabRect(size_t index) const;
    int TabAt(POINT point) const;
    void SelectByUser(int index);
    bool PressKey(WPARAM key);
    void Adjust(bool fromDisplay, RECT* rect) const;
    void Paint(HDC context, const RECT& client) override;

    std::vector<Tab> tabs_;
    int selected_ = -1;
};

LRESULT TabControl::Insert(int index, const TCITEMW& item) {
    index = std::clamp(index, 0, static_cast<int>(tabs_.size()));
    Tab tab;
    if (item.mask & TCIF_TEXT && item.pszText) {
        tab.text = item.pszText;
    }
    if (item.mask & TCIF_PARAM) {
        tab.data = item.lParam;
    }
    tabs_.insert(tabs_.begin() + index, std::move(tab));
    if (selected_ < 0) {
        selected_ = 0;
    } else if (index <= selected_) {
        ++selected_;
    }
    Redraw();
    return index;
}

// Without a notification: the program knows.
bool TabControl::Delete(size_t index) {
    if (index >= tabs_.size()) {
        return false;
    }
    tabs_.erase(tabs_.begin() + static_cast<ptrdiff_t>(index));
    if (selected_ == static_cast<int>(index)) {
        selected_ = -1;
    } else if (selected_ > static_cast<int>(index)) {
        --selected_;
    }
    Redraw();
    return true;
}

bool TabControl::Get(size_t index, TCITEMW* item) const {
    if (index >= tabs_.size()) {
        return false;
    }
    const Tab& tab = tabs_[index];
    if (item->mask & TCIF_TEXT && item->pszText && item->cchTextMax > 0) {
        const size_t length = tab.text.copy(item->pszText, static_cast<size_t>(item->cchTextMax) - 1);
        item->pszText[length] = u'\0';
    }
    if (item->mask & TCIF_PARAM) {
        item->lParam = tab.data;
    }
    return true;
}

RECT TabControl::TabRect(size_t index) const {
    int left = 2;
    for (size_t i = 0; i < index; ++i) {
        left += TextWidth(tabs_[i].text) + 2 * kTabPadding;
    }
    return {left, 2, left + TextWidth(tabs_[index].text) + 2 * kTabPadding, 2 + TabHeight()};
}

int TabControl::TabAt(POINT point) const {
    for (size_t i = 0; i < tabs_.size(); ++i) {
        const RECT rect = TabRect(i);
        if (PtInRect(&rect, point)) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

void TabControl::SelectByUser(int index) {
    if (index < 0 || index >= static_cast<int>(tabs_.size()) || index == selected_) {
        return;
    }
    NMHDR header = {};
    if (SendNotify(&header, TCN_SELCHANGING) != 0 || !IsWindow(window_)) {
        return;
    }
    selected_ = index;
    Redraw();
    SendNotify(&header, TCN_SELCHANGE);
}

bool TabControl::PressKey(WPARAM key) {
    const int last = static_cast<int>(tabs_.size()) - 1;
    switch (key) {
        case VK_LEFT:
            SelectByUser(selected_ - 1);
            return true;
        case VK_RIGHT:
            SelectByUser(selected_ + 1);
            return true;
        case VK_HOME:
            SelectByUser(0);
            return true;
        case VK_END:
            SelectByUser(last);
            return true;
        default:
            return false;
    }
}

// Between the control's rectangle and the one that is left for what the tabs show.
void TabControl::Adjust(bool fromDisplay, RECT* rect) const {
    const int sign = fromDisplay ? -1 : 1;
    rect->left += sign * kFrame;
    rect->top += sign * (2 + TabHeight() + kFrame);
    rect->right -= sign * kFrame;
    rect->bottom -= sign * kFrame;
}

LRESULT TabControl::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    const int index = static_cast<int>(wParam);
    switch (message) {
        case WM_GETDLGCODE:
            return DLGC_WANTARROWS | DLGC_WANTCHARS;
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            Redraw();
            return 0;
        case WM_KEYDOWN:
            return PressKey(wParam) ? 0 : HandleCommon(message, wParam, lParam);
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK: {
            const int tab = TabAt(PointOf(lParam));
            if (tab >= 0 && tab == selected_) {
                SetFocus(window_);
            }
            SelectByUser(tab);
            return 0;
        }
        case WM_LBUTTONUP: {
            NMHDR header = {};
            SendNotify(&header, NM_CLICK);
            return 0;
        }

        case TCM_GETITEMCOUNT:
            return static_cast<LRESULT>(tabs_.size());
        case TCM_GETITEMRECT:
            if (wParam >= tabs_.size()) {
                return FALSE;
            }
            *reinterpret_cast<RECT*>(lParam) = TabRect(wParam);
            return TRUE;
        case TCM_GETCURSEL:
            return selected_;
        case TCM_SETCURSEL: {
            const int previous = selected_;
            if (index >= static_cast<int>(tabs_.size())) {
                return -1;
            }
            selected_ = std::max(index, -1);
            Redraw();
            return previous;
        }
        case TCM_ADJUSTRECT:
            Adjust(wParam != 0, reinterpret_cast<RECT*>(lParam));
            return 0;
        case TCM_GETITEMW:
            return Get(wParam, reinterpret_cast<TCITEMW*>(lParam));
        case TCM_INSERTITEMW:
            return Insert(index, *reinterpret_cast<const TCITEMW*>(lParam));
        case TCM_DELETEITEM:
            return Delete(wParam);
        default:
            return HandleCommon(message, wParam, lParam);
    }
}

void TabControl::Paint(HDC context, const RECT& client) {
    PaintParentBackground(context);
    RECT body = client;
    body.top += 1 + TabHeight();
    FillColor(context, body, kField);
    FrameColor(context, body, kGroupLine);
    for (size_t i = 0; i < tabs_.size(); ++i) {
        RECT tab = TabRect(i);
        const bool selected = static_cast<int>(i) == selected_;
        if (selected) {
            // Open at its lower edge, towards what it shows.
            tab = {tab.left - 2, tab.top - 2, tab.right + 2, tab.bottom};
            FillFramedRound(context, {tab.left, tab.top, tab.right, tab.bottom + 3}, 1, kField, kGroupLine);
            FillColor(context, {tab.left + 1, tab.bottom - 1, tab.right - 1, tab.bottom + 3}, kField);
            FillRound(context, {tab.left + 10, tab.bottom - 3, tab.right - 10, tab.bottom}, 1.5, kAccent);
        }
        DrawLabel(context, tabs_[i].text, tab, DT_SINGLELINE | DT_CENTER | DT_VCENTER, GetSysColor(COLOR_BTNTEXT));
        if (selected && HasFocus()) {
            const RECT focus = Inset(tab, 4, 3);
            DrawFocusRect(context, &focus);
        }
    }
}

}  // namespace

LRESULT CALLBACK TabControlProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return ControlProc<TabControl>(window, message, wParam, lParam);
}

}  // namespace host
