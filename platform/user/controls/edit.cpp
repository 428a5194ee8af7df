// Edit fields of one line.
#include <windows.h>

#include <algorithm>
#include <string>
#include <utility>

#include "platform/kernel/text.h"
#include "platform/user/controls/clipboard.h"
#include "platform/user/controls/control.h"
#include "platform/user/controls/controls.h"
#include "platform/user/controls/style.h"

namespace host {
namespace {

constexpr size_t kFreshLimit = 30000;         // characters, as published for one line
constexpr size_t kHighestLimit = 0x7FFFFFFE;  // what limit 0 stands for

class Edit : public Control {
  public:
    explicit Edit(HWND window) : Control(window, {EM_GETSEL, 0x00DF}) {}
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    enum class By { kUser, kProgram };

    bool IsReadOnly() const { return (Style() & ES_READONLY) != 0; }
    size_t SelectionStart() const { return std::min(anchor_, caret_); }
    size_t SelectionEnd() const { return std::max(anchor_, caret_); }
    void Select(size_t anchor, size_t caret);
    void MoveTo(size_t caret, bool extend) { Select(extend ? anchor_ : caret, caret); }
    size_t Before(size_t position) const;
    size_t After(size_t position) const;

    void SetText(LPCWSTR text);
    // Puts the text in the selection's place, as much of it as there is room for.
    void Replace(std::u16string_view text);
    void TellChange();
    void Undo();
    bool Allows(char16_t c) const { return !(Style() & ES_NUMBER) || (c >= u'0' && c <= u'9'); }
    void Type(char16_t c);
    bool PressKey(WPARAM key, LPARAM keyData);
    void Copy() const;
    void Paste();

    int Origin(HDC context, const RECT& client) const;
    size_t PositionAt(int x) const;
    void Paint(HDC context, const RECT& client) override;

    std::u16string text_;
    std::u16string undoText_;
    size_t anchor_ = 0;  // the selection's fixed end
    size_t caret_ = 0;
    size_t limit_ = kFreshLimit;
    HWND keyTaker_ = nullptr;
    bool selecting_ = false;  // with the mouse
};

void Edit::Select(size_t anchor, size_t caret) {
    anchor_ = std::min(anchor, text_.size());
    caret_ = std::min(caret, text_.size());
    Redraw();
}

// A pair of surrogates is one step.
size_t Edit::Before(size_t position) const {
    if (position == 0) {
        return 0;
    }
    const bool pair = position > 1 && (text_[position - 1] & 0xFC00) == 0xDC00;
    return position - (pair ? 2 : 1);
}

size_t Edit::After(size_t position) const {
    if (position >= text_.size()) {
        return text_.size();
    }
    const bool pair = position + 1 < text_.size() && (text_[position] & 0xFC00) == 0xD800;
    return position + (pair ? 2 : 1);
}

void Edit::SetText(LPCWSTR text) {
    text_ = text ? text : u"";
    undoText_ = text_;
    Select(0, 0);
    TellChange();
}

void Edit::Replace(std::u16string_view text) {
    const size_t left = text_.size() - (SelectionEnd() - SelectionStart());
    size_t room = limit_ > left ? limit_ - left : 0;
    std::u16string changed = text_;
    const auto put = [&] {
        changed = text_;
        changed.replace(SelectionStart(), SelectionEnd() - SelectionStart(), text.substr(0, room));
    };
    put();
    // Without scrolling there is room for what the field shows.
    if (!(Style() & ES_AUTOHSCROLL)) {
        const int width = Width(Client()) - 2 * kFieldMargin;
        while (!text.empty() && room > 0 && TextWidth(changed) > width) {
            room = std::min(room, text.size()) - 1;
            put();
        }
    }
    if (text.size() > room) {
        SendCommand(EN_MAXTEXT);
        if (room == 0 || !IsWindow(window_)) {
            return;
        }
    }
    if (Style() & ES_UPPERCASE) {
        std::transform(changed.begin(), changed.end(), changed.begin(), UpperCase);
    }
    if (changed == text_ && text.empty()) {
        return;
    }
    const size_t end = SelectionStart() + std::min(text.size(), room);
    undoText_ = std::exchange(text_, std::move(changed));
    Select(end, end);
    TellChange();
}

void Edit::TellChange() {
    SendCommand(EN_UPDATE);
    if (IsWindow(window_)) {
        Redraw();
        SendCommand(EN_CHANGE);
    }
}

void Edit::Undo() {
    std::swap(text_, undoText_);
    Select(0, text_.size());
    TellChange();
}

void Edit::Type(char16_t c) {
    constexpr char16_t kSelectAll = 1, kCopy = 3, kBackspace = 8, kPaste = 22, kCut = 24, kUndo = 26;
    switch (c) {
        case kSelectAll:
            Select(0, text_.size());
            return;
        case kCopy:
            SendMessageW(window_, WM_COPY, 0, 0);
            return;
        case kPaste:
            SendMessageW(window_, WM_PASTE, 0, 0);
            return;
        case kCut:
            SendMessageW(window_, WM_CUT, 0, 0);
            return;
        case kUndo:
            SendMessageW(window_, WM_UNDO, 0, 0);
            return;
        default:
            break;
    }
    if (IsReadOnly() || (c < u' ' && c != kBackspace)) {
        MessageBeep(0);
    } else if (c == kBackspace) {
        if (anchor_ == caret_) {
            anchor_ = Before(caret_);
        }
        Replace({});
    } else if (Allows(c)) {
        Replace({&c, 1});
    } else {
        MessageBeep(0);
    }
}

bool Edit::PressKey(WPARAM key, LPARAM keyData) {
    if (keyTaker_ && SendMessageW(keyTaker_, kOfferKey, key, keyData)) {
        return true;
    }
    const bool extend = IsKeyDown(VK_SHIFT);
    const bool word = IsKeyDown(VK_CONTROL);
    switch (key) {
        case VK_LEFT:
        case VK_UP:
            if (word) {
                const size_t blank = caret_ > 1 ? text_.rfind(u' ', caret_ - 2) : std::u16string::npos;
                MoveTo(blank == std::u16string::npos ? 0 : blank + 1, extend);
            } else {
                MoveTo(anchor_ != caret_ && !extend ? SelectionStart() : Before(caret_), extend);
            }
            return true;
        case VK_RIGHT:
        case VK_DOWN:
            if (word) {
                const size_t blank = text_.find(u' ', caret_);
                MoveTo(blank == std::u16string::npos ? text_.size() : blank + 1, extend);
            } else {
                MoveTo(anchor_ != caret_ && !extend ? SelectionEnd() : After(caret_), extend);
            }
            return true;
        case VK_HOME:
            MoveTo(0, extend);
            return true;
        case VK_END:
            MoveTo(text_.size(), extend);
            return true;
        case VK_DELETE:
            if (!IsReadOnly()) {
                if (anchor_ == caret_) {
                    anchor_ = After(caret_);
                }
                Replace({});
            }
            return true;
        default:
            return false;
    }
}

void Edit::Copy() const {
    if (anchor_ != caret_) {
        SetClipboardText(text_.substr(SelectionStart(), SelectionEnd() - SelectionStart()));
    }
}

void Edit::Paste() {
    std::u16string text = ClipboardText();
    text.resize(std::min(text.find_first_of(u"\r\n"), text.size()));
    if (IsReadOnly() || text.empty()) {
        return;
    }
    if (!std::all_of(text.begin(), text.end(), [this](char16_t c) { return Allows(c); })) {
        MessageBeep(0);
        return;
    }
    Replace(text);
}

LRESULT Edit::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE: {
            const auto& creation = *reinterpret_cast<const CREATESTRUCTW*>(lParam);
            text_ = creation.lpszName ? creation.lpszName : u"";
            undoText_ = text_;
            return 0;
        }
        case WM_NCPAINT:
            return 0;  // the frame is drawn with the client area, as both change with the focus
        case WM_GETDLGCODE:
            return DLGC_WANTARROWS | DLGC_WANTCHARS | DLGC_HASSETSEL |
                   (keyTaker_ ? SendMessageW(keyTaker_, WM_GETDLGCODE, wParam, lParam) & DLGC_WANTMESSAGE : 0);
        case WM_SETTEXT:
            SetText(reinterpret_cast<LPCWSTR>(lParam));
            return TRUE;
        case WM_GETTEXTLENGTH:
            return static_cast<LRESULT>(text_.size());
        case WM_GETTEXT: {
            if (wParam == 0) {
                return 0;
            }
            const size_t length = text_.copy(reinterpret_cast<LPWSTR>(lParam), wParam - 1);
            reinterpret_cast<LPWSTR>(lParam)[length] = u'\0';
            return static_cast<LRESULT>(length);
        }
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            Redraw();
            SendCommand(message == WM_SETFOCUS ? EN_SETFOCUS : EN_KILLFOCUS);
            return 0;
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN:
            return PressKey(wParam, lParam) ? 0 : HandleCommon(message, wParam, lParam);
        case WM_CHAR:
            Type(static_cast<char16_t>(wParam));
            return 0;
        case WM_MOUSEWHEEL:
            return keyTaker_ ? SendMessageW(keyTaker_, message, wParam, lParam) : HandleCommon(message, wParam, lParam);
        case WM_LBUTTONDOWN: {
            selecting_ = true;
            SetCapture(window_);
            SetFocus(window_);
            MoveTo(PositionAt(PointOf(lParam).x), IsKeyDown(VK_SHIFT));
            return 0;
        }
        case WM_LBUTTONDBLCLK: {
            const size_t blank = caret_ > 0 ? text_.rfind(u' ', caret_ - 1) : std::u16string::npos;
            Select(blank == std::u16string::npos ? 0 : blank + 1, text_.find(u' ', caret_));
            return 0;
        }
        case WM_MOUSEMOVE:
            if (selecting_) {
                MoveTo(PositionAt(PointOf(lParam).x), true);
            }
            return 0;
        case WM_LBUTTONUP:
            selecting_ = false;
            ReleaseCapture();
            return 0;
        case WM_CAPTURECHANGED:
            selecting_ = false;
            return 0;
        case WM_CONTEXTMENU:
            return 0;  // an edit field's own menu, which isn't shown; the parent hears nothing of it

        case WM_COPY:
            Copy();
            return 1;
        case WM_CUT:
            Copy();
            if (!IsReadOnly() && anchor_ != caret_) {
                Replace({});
            }
            return 0;
        case WM_PASTE:
            Paste();
            return 0;
        case WM_CLEAR:
            if (!IsReadOnly() && anchor_ != caret_) {
                Replace({});
            }
            return 0;
        case WM_UNDO:
            Undo();
            return TRUE;

        case EM_GETSEL:
            if (wParam) {
                *reinterpret_cast<DWORD*>(wParam) = static_cast<DWORD>(SelectionStart());
            }
            if (lParam) {
                *reinterpret_cast<DWORD*>(lParam) = static_cast<DWORD>(SelectionEnd());
            }
            return MAKELRESULT(std::min<size_t>(SelectionStart(), 0xFFFF), std::min<size_t>(SelectionEnd(), 0xFFFF));
        case EM_SETSEL:
            if (static_cast<int>(wParam) == -1) {
                Select(caret_, caret_);
            } else {
                const int end = static_cast<int>(lParam);
                Select(wParam, end < 0 ? text_.size() : static_cast<size_t>(end));
            }
            return 1;
        case EM_REPLACESEL:
            Replace(lParam ? reinterpret_cast<LPCWSTR>(lParam) : u"");
            return 1;
        case EM_SETLIMITTEXT:
            limit_ = wParam == 0 ? kHighestLimit : wParam;
            return 0;
        case EM_GETLIMITTEXT:
            return static_cast<LRESULT>(limit_);
        case EM_SETREADONLY: {
            const DWORD style = Style();
            SetWindowLongW(window_, GWL_STYLE, static_cast<LONG>(wParam ? style | ES_READONLY : style & ~ES_READONLY));
            Redraw();
            return 1;
        }
        case kSetKeyTaker:
            keyTaker_ = reinterpret_cast<HWND>(wParam);
            return 0;
        default:
            return HandleCommon(message, wParam, lParam);
    }
}

// Where the text begins: moved to the left so far that the caret is seen.
int Edit::Origin(HDC context, const RECT& client) const {
    SIZE whole = {};
    SIZE toCaret = {};
    GetTextExtentPoint32W(context, text_.data(), static_cast<int>(text_.size()), &whole);
    GetTextExtentPoint32W(context, text_.data(), static_cast<int>(caret_), &toCaret);
    const int room = Width(client) - 2 * kFieldMargin;
    if (whole.cx > room) {
        return kFieldMargin - std::max(toCaret.cx - room + 1, 0);
    }
    const DWORD style = Style();
    return kFieldMargin + (style & ES_CENTER ? (room - whole.cx) / 2 : style & ES_RIGHT ? room - whole.cx : 0);
}

size_t Edit::PositionAt(int x) const {
    const HDC context = GetDC(window_);
    const HGDIOBJ previous = font_ ? SelectObject(context, font_) : nullptr;
    const int origin = Origin(context, Client());
    size_t position = 0;
    int left = origin;
    while (position < text_.size()) {
        const size_t next = After(position);
        SIZE size = {};
        GetTextExtentPoint32W(context, text_.data(), static_cast<int>(next), &size);
        const int right = origin + size.cx;
        if (x < (left + right) / 2) {
            break;
        }
        left = right;
        position = next;
    }
    if (previous) {
        SelectObject(context, previous);
    }
    ReleaseDC(window_, context);
    return position;
}

void Edit::Paint(HDC context, const RECT& client) {
    const bool live = IsEnabled() && !IsReadOnly();
    const HBRUSH brush = AskColors(context, live ? WM_CTLCOLOREDIT : WM_CTLCOLORSTATIC);
    const COLORREF color = IsEnabled() ? GetTextColor(context) : GetSysColor(COLOR_GRAYTEXT);
    FillRect(context, &client, brush);
    const bool focused = HasFocus();
    PaintFieldFrame(GetBkColor(context), focused);

    TEXTMETRICW metrics = {};
    GetTextMetricsW(context, &metrics);
    const int top = std::max((Height(client) - metrics.tmHeight) / 2, 0);
    const int origin = Origin(context, client);
    const auto xOf = [&](size_t position) {
        SIZE size = {};
        GetTextExtentPoint32W(context, text_.data(), static_cast<int>(position), &size);
        return origin + size.cx;
    };
    const RECT field = Inset(client, 1, 0);
    const int length = static_cast<int>(text_.size());
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, color);
    ExtTextOutW(context, origin, top, ETO_CLIPPED, &field, text_.data(), static_cast<UINT>(length), nullptr);
    if (!focused) {
        return;
    }
    if (anchor_ != caret_) {
        const RECT marked = {std::max<LONG>(xOf(SelectionStart()), field.left), top,
                             std::min<LONG>(xOf(SelectionEnd()), field.right), top + metrics.tmHeight};
        FillColor(context, marked, GetSysColor(COLOR_HIGHLIGHT));
        SetTextColor(context, GetSysColor(COLOR_HIGHLIGHTTEXT));
        ExtTextOutW(context, origin, top, ETO_CLIPPED, &marked, text_.data(), static_cast<UINT>(length), nullptr);
    } else {
        const int caret = xOf(caret_);
        FillColor(context, {caret, top, caret + 1, top + metrics.tmHeight}, color);
    }
}

}  // namespace

LRESULT CALLBACK EditProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return ControlProc<Edit>(window, message, wParam, lParam);
}

}  // namespace host
