// Combo boxes. The items are those of a list box of the combo box's own: a child below the field in simple ones, a
// popup window in the others.
#include <windows.h>

#include <algorithm>
#include <string>

#include "platform/user/controls/control.h"
#include "platform/user/controls/controls.h"
#include "platform/user/controls/style.h"

namespace host {
namespace {

constexpr int kListId = 1000;
constexpr int kEditId = 1001;
constexpr WPARAM kField = static_cast<WPARAM>(-1);  // in item heights: the field
constexpr int kFieldFrame = 3;                      // above and below the field's item

class ComboBox : public Control {
  public:
    explicit ComboBox(HWND window) : Control(window, {CB_GETEDITSEL, 0x016F}) {}
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    UINT Kind() const { return Style() & CBS_DROPDOWNLIST; }
    bool IsSimple() const { return Kind() == CBS_SIMPLE; }
    bool IsOwnerDrawn() const { return (Style() & CBS_OWNERDRAWFIXED) != 0; }
    bool HasFocusInside() const;
    LRESULT ToList(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return SendMessageW(list_, message, wParam, lParam);
    }

    bool Create(const CREATESTRUCTW& creation);
    void SetFieldHeight(int height);
    void Arrange();
    RECT FieldRect() const;
    std::u16string SelectedText() const;
    // Puts the selected item's text, or none, into the edit field. Nobody is told.
    void ShowSelection();
    void SetEditText(LPCWSTR text);
    void SelectItemLikeEdit();

    void Drop();
    void Close(bool accept);
    LRESULT OnListCommand(UINT code);
    LRESULT OnEditCommand(UINT code);
    LRESULT OnListDone(bool chosen);
    bool PressKey(WPARAM key, bool alt);
    LRESULT DialogCode(const MSG* message) const;
    LRESULT HandleItems(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT HandleText(UINT message, WPARAM wParam, LPARAM lParam);

    void Paint(HDC context, const RECT& client) override;
    void DrawFieldByOwner(HDC context, const RECT& rect) const;

    HWND edit_ = nullptr;  // null in drop-down lists
    HWND list_ = nullptr;
    int fieldHeight_ = 0;
    int listHeight_ = 0;  // that the dropped list may have
    bool dropped_ = false;
    bool settingEdit_ = false;
};

bool ComboBox::HasFocusInside() const {
    const HWND focus = GetFocus();
    return focus && (focus == window_ || focus == edit_);
}

bool ComboBox::Create(const CREATESTRUCTW& creation) {
    const DWORD style = Style();
    if (Kind() != CBS_DROPDOWNLIST) {
        const DWORD editStyle =
            WS_CHILD | WS_VISIBLE | (style & WS_DISABLED) | (style & CBS_AUTOHSCROLL ? ES_AUTOHSCROLL : 0u);
        edit_ = CreateWindowExW(0, TEXT("Edit"), creation.lpszName, editStyle, 0, 0, 0, 0, window_,
                                reinterpret_cast<HMENU>(static_cast<INT_PTR>(kEditId)), creation.hInstance, nullptr);
        if (!edit_) {
            return false;
        }
        SendMessageW(edit_, kSetKeyTaker, reinterpret_cast<WPARAM>(window_), 0);
    }
    const DWORD listStyle = WS_BORDER | LBS_NOTIFY | (style & WS_VSCROLL) | (style & CBS_SORT ? LBS_SORT : 0u) |
                            (style & CBS_OWNERDRAWFIXED ? LBS_OWNERDRAWFIXED : 0u) |
                            (style & CBS_HASSTRINGS ? LBS_HASSTRINGS : 0u) |
                            (!IsSimple() || style & CBS_NOINTEGRALHEIGHT ? LBS_NOINTEGRALHEIGHT : 0u) |
                            (IsSimple() ? WS_CHILD | WS_VISIBLE | (style & WS_DISABLED) : WS_POPUP);
    list_ = CreateWindowExW(IsSimple() ? 0 : WS_EX_TOPMOST, kComboListClass, nullptr, listStyle, 0, 0, 0, 0, window_,
                            IsSimple() ? reinterpret_cast<HMENU>(static_cast<INT_PTR>(kListId)) : nullptr,
                            creation.hInstance, window_);
    if (!list_) {
        return false;
    }
    listHeight_ = creation.cy;
    SetFieldHeight(FontHeight() + kFieldPadding);
    return true;
}

void ComboBox::SetFieldHeight(int height) {
    fieldHeight_ = height;
    Arrange();
}

// A combo box is as high as its field: what it is given beyond that is its dropped list's. A simple one keeps it.
void ComboBox::Arrange() {
    const RECT client = Client();
    if (!IsSimple() && Height(client) != fieldHeight_) {
        if (Height(client) > fieldHeight_) {
            listHeight_ = Height(client) - fieldHeight_;
        }
        SetWindowPos(window_, nullptr, 0, 0, Width(client), fieldHeight_, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    if (edit_) {
        const RECT field = FieldRect();
        MoveWindow(edit_, field.left, field.top, Width(field), Height(field), TRUE);
    }
    if (IsSimple() && list_) {
        MoveWindow(list_, 0, fieldHeight_, Width(client), std::max(Height(client) - fieldHeight_, 0), TRUE);
    }
    Redraw();
}

// Where the edit field or the selected item lies.
RECT ComboBox::FieldRect() const {
    const RECT client = Client();
    return {2, 2, client.right - (IsSimple() ? 2 : kDropWidth), fieldHeight_ - 2};
}

std::u16string ComboBox::SelectedText() const {
    const LRESULT index = ToList(LB_GETCURSEL);
    const LRESULT length = ToList(LB_GETTEXTLEN, static_cast<WPARAM>(index));
    if (index < 0 || length < 0 || (IsOwnerDrawn() && !(Style() & CBS_HASSTRINGS))) {
        return {};
    }
    std::u16string text(static_cast<size_t>(length) + 1, u'\0');
    ToList(LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
    text.pop_back();
    return text;
}

void ComboBox::SetEditText(LPCWSTR text) {
    settingEdit_ = true;
    SetWindowTextW(edit_, text);
    settingEdit_ = false;
}

void ComboBox::ShowSelection() {
    if (edit_) {
        SetEditText(SelectedText().c_str());
        if (HasFocusInside()) {
            SendMessageW(edit_, EM_SETSEL, 0, -1);
        }
    }
    Redraw();
}

void ComboBox::SelectItemLikeEdit() {
    if (!edit_) {
        return;
    }
    std::u16string text(static_cast<size_t>(GetWindowTextLengthW(edit_)) + 1, u'\0');
    GetWindowTextW(edit_, text.data(), static_cast<int>(text.size()));
    if (text.size() > 1 && text.substr(0, text.size() - 1) != SelectedText()) {
        ToList(LB_SETCURSEL, static_cast<WPARAM>(ToList(LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                                        reinterpret_cast<LPARAM>(text.c_str()))));
    }
}

void ComboBox::Drop() {
    if (IsSimple() || dropped_) {
        return;
    }
    SendCommand(CBN_DROPDOWN);
    if (!IsWindow(window_)) {
        return;
    }
    SelectItemLikeEdit();
    RECT place;
    GetWindowRect(window_, &place);
    const int itemHeight = static_cast<int>(ToList(LB_GETITEMHEIGHT));
    const int count = std::max(static_cast<int>(ToList(LB_GETCOUNT)), 1);
    const int rows = std::clamp((listHeight_ - 2) / itemHeight, 1, count);
    const int height = rows * itemHeight + 2;
    const bool below = place.bottom + height <= GetSystemMetrics(SM_CYSCREEN) || place.top < height;
    dropped_ = true;
    ToList(kTrackMouse, TRUE);
    SetWindowPos(list_, HWND_TOPMOST, place.left, below ? place.bottom : place.top - height, Width(place), height,
                 SWP_NOACTIVATE | SWP_SHOWWINDOW);
    ToList(LB_SETTOPINDEX, 0);
    ToList(LB_SETCURSEL, static_cast<WPARAM>(ToList(LB_GETCURSEL)));  // so that it is seen
    SetCapture(list_);
    Redraw();
}

void ComboBox::Close(bool accept) {
    if (!dropped_) {
        return;
    }
    dropped_ = false;
    SendCommand(accept ? CBN_SELENDOK : CBN_SELENDCANCEL);
    if (!IsWindow(window_)) {
        return;
    }
    ToList(kTrackMouse, FALSE);
    if (GetCapture() == list_) {
        ReleaseCapture();
    }
    ShowWindow(list_, SW_HIDE);
    Redraw();
    SendCommand(CBN_CLOSEUP);
}

LRESULT ComboBox::OnListCommand(UINT code) {
    switch (code) {
        case LBN_SELCHANGE:
            if (!dropped_) {
                SendCommand(CBN_SELENDOK);
            }
            SendCommand(CBN_SELCHANGE);
            if (IsWindow(window_)) {
                ShowSelection();
            }
            return 0;
        case LBN_DBLCLK:
            if (IsSimple()) {
                SendCommand(CBN_DBLCLK);
            }
            return 0;
        default:
            return 0;
    }
}

// The mouse chose an item of the dropped list: it is told also where it is the one that was selected before.
LRESULT ComboBox::OnListDone(bool chosen) {
    Close(chosen);
    if (chosen && IsWindow(window_)) {
        SendCommand(CBN_SELCHANGE);
        if (IsWindow(window_)) {
            ShowSelection();
        }
    }
    return 0;
}

LRESULT ComboBox::OnEditCommand(UINT code) {
    switch (code) {
        case EN_SETFOCUS:
            Redraw();
            SendCommand(CBN_SETFOCUS);
            break;
        case EN_KILLFOCUS:
            Close(false);
            Redraw();
            SendCommand(CBN_KILLFOCUS);
            break;
        case EN_UPDATE:
            if (!settingEdit_) {
                SendCommand(CBN_EDITUPDATE);
            }
            break;
        case EN_CHANGE:
            if (!settingEdit_) {
                ToList(LB_SETCURSEL, static_cast<WPARAM>(-1));  // typed text is no item's
                SendCommand(CBN_EDITCHANGE);
            }
            break;
        default:
            break;
    }
    return 0;
}

bool ComboBox::PressKey(WPARAM key, bool alt) {
    const bool toggles = (key == VK_F4 && !alt) || (alt && (key == VK_UP || key == VK_DOWN));
    if (toggles && !IsSimple()) {
        if (dropped_) {
            Close(true);
        } else {
            Drop();
        }
        return true;
    }
    switch (key) {
        case VK_RETURN:
        case VK_ESCAPE: {
            const bool wasDropped = dropped_;
            Close(key == VK_RETURN);
            return wasDropped;
        }
        case VK_LEFT:
        case VK_RIGHT:
        case VK_HOME:
        case VK_END:
            if (edit_) {
                return false;
            }
            break;
        case VK_UP:
        case VK_DOWN:
        case VK_PRIOR:
        case VK_NEXT:
            break;
        default:
            return false;
    }
    ToList(WM_KEYDOWN, key);
    return true;
}

LRESULT ComboBox::DialogCode(const MSG* message) const {
    const bool closes = dropped_ && message && message->message == WM_KEYDOWN &&
                        (message->wParam == VK_RETURN || message->wParam == VK_ESCAPE);
    return DLGC_WANTARROWS | DLGC_WANTCHARS | (closes ? DLGC_WANTMESSAGE : 0);
}

// Messages of the items, which the list answers.
LRESULT ComboBox::HandleItems(UINT message, WPARAM wParam, LPARAM lParam) {
    static constexpr struct {
        UINT combo;
        UINT list;
        bool changesSelection;
    } kRows[] = {
        {CB_ADDSTRING, LB_ADDSTRING, false},       {CB_INSERTSTRING, LB_INSERTSTRING, false},
        {CB_DELETESTRING, LB_DELETESTRING, false}, {CB_RESETCONTENT, LB_RESETCONTENT, true},
        {CB_GETCOUNT, LB_GETCOUNT, false},         {CB_GETCURSEL, LB_GETCURSEL, false},
        {CB_SETCURSEL, LB_SETCURSEL, true},        {CB_SELECTSTRING, LB_SELECTSTRING, true},
        {CB_FINDSTRING, LB_FINDSTRING, false},     {CB_FINDSTRINGEXACT, LB_FINDSTRINGEXACT, false},
        {CB_GETLBTEXT, LB_GETTEXT, false},         {CB_GETLBTEXTLEN, LB_GETTEXTLEN, false},
        {CB_GETITEMDATA, LB_GETITEMDATA, false},   {CB_SETITEMDATA, LB_SETITEMDATA, false},
    };
    for (const auto& row : kRows) {
        if (row.combo == message) {
            const LRESULT result = ToList(row.list, wParam, lParam);
            const bool failed = result == LB_ERR && static_cast<int>(wParam) != -1;
            if (row.changesSelection && !failed) {
                ShowSelection();
            }
            if (message == CB_DELETESTRING) {
                Redraw();
            }
            return result;
        }
    }
    return HandleCommon(message, wParam, lParam);
}

// Messages of the text, which the edit field answers where there is one.
LRESULT ComboBox::HandleText(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SETTEXT:
            if (!edit_) {
                return CB_ERR;
            }
            SetEditText(reinterpret_cast<LPCWSTR>(lParam));
            return TRUE;
        case WM_GETTEXTLENGTH:
            return edit_ ? SendMessageW(edit_, message, 0, 0) : static_cast<LRESULT>(SelectedText().size());
        case WM_GETTEXT: {
            if (edit_) {
                return SendMessageW(edit_, message, wParam, lParam);
            }
            if (wParam == 0) {
                return 0;
            }
            const size_t length = SelectedText().copy(reinterpret_cast<LPWSTR>(lParam), wParam - 1);
            reinterpret_cast<LPWSTR>(lParam)[length] = u'\0';
            return static_cast<LRESULT>(length);
        }
        case CB_LIMITTEXT:
            if (edit_) {
                SendMessageW(edit_, EM_SETLIMITTEXT, wParam, 0);
            }
            return TRUE;
        case CB_GETEDITSEL:
            return edit_ ? SendMessageW(edit_, EM_GETSEL, wParam, lParam) : CB_ERR;
        default:  // CB_SETEDITSEL
            return edit_ ? SendMessageW(edit_, EM_SETSEL, static_cast<WPARAM>(static_cast<SHORT>(LOWORD(lParam))),
                                        static_cast<SHORT>(HIWORD(lParam)))
                         : CB_ERR;
    }
}

LRESULT ComboBox::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE:
            return Create(*reinterpret_cast<const CREATESTRUCTW*>(lParam)) ? 0 : -1;
        case WM_DESTROY:
            if (list_ && !IsSimple()) {
                DestroyWindow(list_);
            }
            return 0;
        case WM_SIZE:
            if (fieldHeight_ > 0) {
                Arrange();
            }
            return 0;
        case WM_SETFONT:
            HandleCommon(message, wParam, lParam);
            ToList(message, wParam, lParam);
            if (edit_) {
                SendMessageW(edit_, message, wParam, lParam);
            }
            SetFieldHeight(FontHeight() + kFieldPadding);
            return 0;
        case WM_ENABLE:
            for (const HWND part : {edit_, IsSimple() ? list_ : nullptr}) {
                if (part) {
                    EnableWindow(part, wParam != 0);
                }
            }
            Redraw();
            return 0;
        case WM_GETDLGCODE:
            return DialogCode(reinterpret_cast<const MSG*>(lParam));
        case WM_SETFOCUS:
            if (edit_) {
                SetFocus(edit_);
                SendMessageW(edit_, EM_SETSEL, 0, -1);
            } else {
                Redraw();
                SendCommand(CBN_SETFOCUS);
            }
            return 0;
        case WM_KILLFOCUS:
            if (!edit_) {
                Close(false);
                Redraw();
                SendCommand(CBN_KILLFOCUS);
            }
            return 0;
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN:
            return PressKey(wParam, message == WM_SYSKEYDOWN) ? 0 : HandleCommon(message, wParam, lParam);
        case kOfferKey:
            return PressKey(wParam, IsKeyDown(VK_MENU));
        case WM_CHAR:
            return ToList(message, wParam, lParam);
        case WM_MOUSEWHEEL:
            if (dropped_) {
                return ToList(message, wParam, lParam);
            }
            for (int notches = WheelNotches(wParam); notches != 0; notches += notches < 0 ? 1 : -1) {
                ToList(WM_KEYDOWN, notches > 0 ? VK_UP : VK_DOWN);
            }
            return 0;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            SetFocus(edit_ ? edit_ : window_);
            if (dropped_) {
                Close(false);
            } else {
                Drop();
            }
            return 0;
        case WM_COMMAND:
            if (reinterpret_cast<HWND>(lParam) == list_) {
                return OnListCommand(HIWORD(wParam));
            }
            return OnEditCommand(HIWORD(wParam));
        case kListDone:
            return OnListDone(wParam != 0);
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORLISTBOX:
        case WM_CTLCOLORSTATIC:
            return SendMessageW(GetParent(window_), message, wParam, lParam);

        case WM_SETTEXT:
        case WM_GETTEXT:
        case WM_GETTEXTLENGTH:
        case CB_LIMITTEXT:
        case CB_GETEDITSEL:
        case CB_SETEDITSEL:
            return HandleText(message, wParam, lParam);
        case CB_SHOWDROPDOWN:
            if (wParam) {
                Drop();
            } else {
                Close(false);
            }
            return TRUE;
        case CB_GETDROPPEDSTATE:
            return dropped_;
        case CB_SETITEMHEIGHT:
            if (wParam == kField) {
                SetFieldHeight(static_cast<int>(lParam) + 2 * kFieldFrame);
                return 0;
            }
            return ToList(LB_SETITEMHEIGHT, wParam, lParam);
        case CB_GETITEMHEIGHT:
            return wParam == kField ? fieldHeight_ - 2 * kFieldFrame : ToList(LB_GETITEMHEIGHT, wParam, lParam);
        default:
            return HandleItems(message, wParam, lParam);
    }
}

void ComboBox::Paint(HDC context, const RECT& client) {
    PaintParentBackground(context);
    const bool enabled = IsEnabled();
    const bool focused = HasFocusInside();
    AskColors(context, !enabled ? WM_CTLCOLORSTATIC : edit_ ? WM_CTLCOLOREDIT : WM_CTLCOLORLISTBOX);
    const COLORREF color = enabled ? GetTextColor(context) : GetSysColor(COLOR_GRAYTEXT);
    RECT field = client;
    field.bottom = std::min<LONG>(field.bottom, fieldHeight_);
    FillFramedRound(context, field, 1, GetBkColor(context),
                    !enabled              ? kFieldLineDisabled
                    : focused || dropped_ ? kAccent
                                          : kFieldLine);
    if (!IsSimple()) {
        const RECT arrow = {field.right - kDropWidth, field.top, field.right - 1, field.bottom};
        DrawArrow(context, arrow, Direction::kDown, 3.5, enabled ? kMark : kMarkDisabled);
    }
    if (edit_) {
        return;
    }
    const RECT item = FieldRect();
    if (IsOwnerDrawn()) {
        DrawFieldByOwner(context, item);
        return;
    }
    RECT label = item;
    label.left += kFieldMargin;
    DrawLabel(context, SelectedText(), label, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX, color);
    if (focused && !dropped_) {
        const RECT focus = Inset(item, 1, 1);
        DrawFocusRect(context, &focus);
    }
}

void ComboBox::DrawFieldByOwner(HDC context, const RECT& rect) const {
    const LRESULT index = ToList(LB_GETCURSEL);
    if (index < 0) {
        return;
    }
    DRAWITEMSTRUCT item = {};
    item.CtlType = ODT_COMBOBOX;
    item.itemID = static_cast<UINT>(index);
    item.itemAction = ODA_DRAWENTIRE;
    item.itemState = ODS_COMBOBOXEDIT | (HasFocus() ? ODS_FOCUS : 0u);
    item.hDC = context;
    item.rcItem = rect;
    item.itemData = static_cast<ULONG_PTR>(ToList(LB_GETITEMDATA, static_cast<WPARAM>(index)));
    DrawByOwner(window_, item);
}

}  // namespace

LRESULT CALLBACK ComboBoxProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return ControlProc<ComboBox>(window, message, wParam, lParam);
}

}  // namespace host
