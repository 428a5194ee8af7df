#include "tools/velmora/sheet_controls.h"

#include <commctrl.h>

#include <charconv>
#include <optional>
#include <vector>

#include "platform/kernel/text.h"
#include "tools/velmora/command_error.h"

namespace velmora {
namespace {

constexpr const char* kSlider = "msctls_trackbar32";

std::string ClassOf(HWND window) {
    WCHAR name[64] = {};
    GetClassNameW(window, name, 64);
    return host::ToUtf8(name);
}

DWORD StyleOf(HWND window) {
    return static_cast<DWORD>(GetWindowLongW(window, GWL_STYLE));
}

std::string NameOf(HWND control) {
    return "control " + std::to_string(GetDlgCtrlID(control));
}

std::vector<HWND> ControlsOf(HWND dialog) {
    std::vector<HWND> controls;
    for (HWND control = GetWindow(dialog, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
        controls.push_back(control);
    }
    return controls;
}

std::optional<LONG_PTR> ParseNumber(const std::string& text) {
    LONG_PTR number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

void TellParent(HWND control, int notification) {
    SendMessageW(GetParent(control), WM_COMMAND,
                 MAKEWPARAM(static_cast<WORD>(GetDlgCtrlID(control)), static_cast<WORD>(notification)),
                 reinterpret_cast<LPARAM>(control));
}

// A list box and the list of a combo box understand the same messages by different numbers.
struct ListMessages {
    UINT getCount, getText, getTextLength, getData, getSelection, setSelection;
    int selectionChanged;
    DWORD ownerDrawn, hasStrings;
};
constexpr ListMessages kListBox = {LB_GETCOUNT,  LB_GETTEXT,    LB_GETTEXTLEN,      LB_GETITEMDATA, LB_GETCURSEL,
                                   LB_SETCURSEL, LBN_SELCHANGE, LBS_OWNERDRAWFIXED, LBS_HASSTRINGS};
constexpr ListMessages kComboBox = {CB_GETCOUNT,  CB_GETLBTEXT,  CB_GETLBTEXTLEN,    CB_GETITEMDATA, CB_GETCURSEL,
                                    CB_SETCURSEL, CBN_SELCHANGE, CBS_OWNERDRAWFIXED, CBS_HASSTRINGS};

class ItemList {
  public:
    ItemList(HWND control, const ListMessages& messages)
        : control_(control),
          messages_(messages),
          hasTexts_((StyleOf(control) & messages.ownerDrawn) == 0 || (StyleOf(control) & messages.hasStrings) != 0) {}

    int Count() const { return static_cast<int>(Send(messages_.getCount)); }
    int Selected() const { return static_cast<int>(Send(messages_.getSelection)); }
    std::string Text(int item) const {
        if (!hasTexts_) {
            return std::to_string(Data(item));
        }
        std::u16string text(static_cast<size_t>(Send(messages_.getTextLength, item)) + 1, u'\0');
        text.resize(static_cast<size_t>(Send(messages_.getText, item, reinterpret_cast<LPARAM>(text.data()))));
        return host::ToUtf8(text);
    }
    LONG_PTR Data(int item) const { return Send(messages_.getData, item); }

    // -1: none has it.
    int Find(const std::string& value) const {
        const std::optional<LONG_PTR> number = ParseNumber(value);
        for (int item = 0; number && item < Count(); ++item) {
            if (Data(item) == *number) {
                return item;
            }
        }
        for (int item = 0; item < Count(); ++item) {
            if (Text(item) == value) {
                return item;
            }
        }
        return -1;
    }
    void Select(int item) const {
        Send(messages_.setSelection, item);
        TellParent(control_, messages_.selectionChanged);
    }
    // "Plain (1)": the data in parentheses where it tells more.
    std::vector<std::string> Items() const {
        std::vector<std::string> items;
        for (int item = 0; item < Count(); ++item) {
            const std::string data = hasTexts_ && Data(item) != 0 ? " (" + std::to_string(Data(item)) + ")" : "";
            items.push_back(Text(item) + data);
        }
        return items;
    }

  private:
    LRESULT Send(UINT message, int item = 0, LPARAM parameter = 0) const {
        return SendMessageW(control_, message, static_cast<WPARAM>(item), parameter);
    }

    HWND control_;
    const ListMessages& messages_;
    bool hasTexts_;
};

[[noreturn]] void ThrowNoItem(HWND control, const std::string& value, const ItemList& list) {
    std::string items;
    for (const std::string& item : list.Items()) {
        items += (items.empty() ? "" : ", ") + item;
    }
    throw CommandError(NameOf(control) + " has no item \"" + value + "\"; " +
                       (items.empty() ? "it is empty" : "it has " + items));
}

void SetText(HWND edit, const std::string& value) {
    SetFocus(edit);
    SetWindowTextW(edit, host::ToWide(value).c_str());
}

void SetListBox(HWND control, const std::string& value) {
    const ItemList list(control, kListBox);
    const int item = list.Find(value);
    if (item < 0) {
        ThrowNoItem(control, value, list);
    }
    list.Select(item);
}

void SetComboBox(HWND control, const std::string& value) {
    const ItemList list(control, kComboBox);
    const int item = list.Find(value);
    const HWND edit = GetWindow(control, GW_CHILD);
    if (item >= 0) {
        list.Select(item);
    } else if ((StyleOf(control) & CBS_DROPDOWNLIST) != CBS_DROPDOWNLIST && edit) {
        SetText(edit, value);
    } else {
        ThrowNoItem(control, value, list);
    }
}

bool IsPushButton(HWND button) {
    const DWORD type = StyleOf(button) & BS_TYPEMASK;
    return type == BS_PUSHBUTTON || type == BS_DEFPUSHBUTTON || type == BS_OWNERDRAW;
}

void SetButton(HWND button, const std::string& value) {
    const DWORD type = StyleOf(button) & BS_TYPEMASK;
    const std::string name = NameOf(button);
    if (IsPushButton(button) || type == BS_GROUPBOX) {
        throw CommandError(name + " isn't set but pressed: press=" + std::to_string(GetDlgCtrlID(button)));
    }
    const bool isRadio = type == BS_RADIOBUTTON || type == BS_AUTORADIOBUTTON;
    if (value != "1" && (isRadio || value != "0")) {
        throw CommandError(name + " can be set to " + (isRadio ? "1" : "0 or 1") + ", not to \"" + value + "\"");
    }
    const bool isChecked = SendMessageW(button, BM_GETCHECK, 0, 0) == BST_CHECKED;
    if (isChecked != (value == "1")) {
        PressButton(button);
    }
}

void SetSlider(HWND slider, const std::string& value) {
    const std::optional<LONG_PTR> position = ParseNumber(value);
    const LRESULT lowest = SendMessageW(slider, TBM_GETRANGEMIN, 0, 0);
    const LRESULT highest = SendMessageW(slider, TBM_GETRANGEMAX, 0, 0);
    if (!position || *position < lowest || *position > highest) {
        throw CommandError(NameOf(slider) + " can be set to " + std::to_string(lowest) + " to " +
                           std::to_string(highest) + ", not to \"" + value + "\"");
    }
    SendMessageW(slider, TBM_SETPOS, TRUE, *position);
    const UINT message = (StyleOf(slider) & TBS_VERT) != 0 ? WM_VSCROLL : WM_HSCROLL;
    for (const WPARAM code : {MAKEWPARAM(TB_THUMBPOSITION, *position), MAKEWPARAM(TB_ENDTRACK, 0)}) {
        SendMessageW(GetParent(slider), message, code, reinterpret_cast<LPARAM>(slider));
    }
}

std::vector<std::string> ListItems(HWND control, const std::string& className) {
    return className == "ListBox"    ? ItemList(control, kListBox).Items()
           : className == "ComboBox" ? ItemList(control, kComboBox).Items()
                                     : std::vector<std::string>();
}

// What a control is set to, as SetControl takes it; the text of others.
// A check box or radio button.
bool IsBox(HWND control, const std::string& className) {
    return className == "Button" && !IsPushButton(control) && (StyleOf(control) & BS_TYPEMASK) != BS_GROUPBOX;
}

std::string ValueOf(HWND control, const std::string& className) {
    if (className == "ListBox" || className == "ComboBox") {
        const ItemList list(control, className == "ListBox" ? kListBox : kComboBox);
        const int selected = list.Selected();
        return selected >= 0 ? list.Text(selected) : className == "ListBox" ? "" : WindowText(control);
    }
    if (IsBox(control, className)) {
        return SendMessageW(control, BM_GETCHECK, 0, 0) == BST_CHECKED ? "1" : "0";
    }
    return className == kSlider ? std::to_string(SendMessageW(control, TBM_GETPOS, 0, 0)) : WindowText(control);
}

}  // namespace

std::string WindowText(HWND window) {
    std::u16string text(static_cast<size_t>(GetWindowTextLengthW(window)) + 1, u'\0');
    text.resize(static_cast<size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return host::ToUtf8(text);
}

HWND FindControl(HWND dialog, int id) {
    const HWND control = GetDlgItem(dialog, id);
    if (!control) {
        std::string known;
        for (const HWND other : ControlsOf(dialog)) {
            const int otherId = GetDlgCtrlID(other);
            if (otherId > 0 && otherId < 0xFFFF) {
                known += (known.empty() ? "" : ", ") + std::to_string(otherId) + " (" + ClassOf(other) + ")";
            }
        }
        throw CommandError("there is no control " + std::to_string(id) + "; there are " + known);
    }
    if (!IsWindowVisible(control)) {
        throw CommandError(NameOf(control) + " isn't shown");
    }
    if (!IsWindowEnabled(control)) {
        throw CommandError(NameOf(control) + " is disabled");
    }
    return control;
}

void SetControl(HWND control, const std::string& value) {
    constexpr struct {
        const char* className;
        void (*set)(HWND control, const std::string& value);
    } kClasses[] = {{"Button", SetButton},
                    {"Edit", SetText},
                    {"ListBox", SetListBox},
                    {"ComboBox", SetComboBox},
                    {kSlider, SetSlider}};
    const std::string className = ClassOf(control);
    for (const auto& known : kClasses) {
        if (className == known.className) {
            known.set(control, value);
            return;
        }
    }
    throw CommandError(NameOf(control) + " is a " + className + ", which can't be set");
}

void PressButton(HWND button) {
    if (ClassOf(button) != "Button") {
        throw CommandError(NameOf(button) + " is a " + ClassOf(button) + ", which can't be pressed");
    }
    SetFocus(button);
    SendMessageW(button, BM_CLICK, 0, 0);
}

Table ReportControls(HWND dialog, const std::string& title) {
    Table table = {title,
                   "controls",
                   {{"Control", "control"},
                    {"Class", "class"},
                    {"State", "state"},
                    {"Value", "value"},
                    {"Label", "label"},
                    {"Items", "items"}}};
    for (const HWND control : ControlsOf(dialog)) {
        const int id = GetDlgCtrlID(control);
        const std::string className = ClassOf(control);
        const char* const state = !IsWindowVisible(control) ? "hidden" : !IsWindowEnabled(control) ? "disabled" : "";
        table.rows.push_back({id > 0 && id < 0xFFFF ? NumberCell(id) : EmptyCell(), TextCell(className),
                              *state ? TextCell(state) : EmptyCell(), TextCell(ValueOf(control, className)),
                              IsBox(control, className) ? TextCell(WindowText(control)) : EmptyCell(),
                              ListCell(ListItems(control, className))});
    }
    return table;
}

}  // namespace velmora
