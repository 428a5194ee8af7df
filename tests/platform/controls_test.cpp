#include "tests/platform/controls_fixture.h"

namespace host {
namespace {

LRESULT Ask(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendMessageW(window, message, wParam, lParam);
}
LPARAM Text(LPCWSTR text) {
    return reinterpret_cast<LPARAM>(text);
}

// --- Buttons ---------------------------------------------------------------------------------------------------------

TEST_F(ControlTest, ButtonsCheckAndTell) {
    static const struct {
        DWORD style;
        LRESULT dialogCode;
        LRESULT afterOne;  // the check after one click and after two
        LRESULT afterTwo;
    } kRows[] = {{BS_PUSHBUTTON, DLGC_BUTTON | DLGC_UNDEFPUSHBUTTON, 0, 0},
                 {BS_DEFPUSHBUTTON, DLGC_BUTTON | DLGC_DEFPUSHBUTTON, 0, 0},
                 {BS_CHECKBOX, DLGC_BUTTON, 0, 0},
                 {BS_AUTOCHECKBOX, DLGC_BUTTON, 1, 0},
                 {BS_RADIOBUTTON, DLGC_BUTTON | DLGC_RADIOBUTTON, 0, 0},
                 {BS_AUTORADIOBUTTON, DLGC_BUTTON | DLGC_RADIOBUTTON, 1, 1},
                 {BS_OWNERDRAW, DLGC_BUTTON, 0, 0}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.style);
        const HWND button = Make(TEXT("Button"), row.style);
        const std::string clicked = std::to_string(GetDlgCtrlID(button)) + " BN_CLICKED";
        EXPECT_EQ(Ask(button, WM_GETDLGCODE), row.dialogCode);
        Click(button, 5, 5);
        EXPECT_EQ(Ask(button, BM_GETCHECK), row.afterOne);
        Ask(button, BM_CLICK);
        EXPECT_EQ(Ask(button, BM_GETCHECK), row.afterTwo);
        Press(VK_SPACE);
        EXPECT_EQ(Told(), (Lines{clicked, clicked, clicked}));

        Ask(button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        EXPECT_EQ(Ask(button, BM_GETSTATE) & BST_PUSHED, BST_PUSHED);
        Ask(button, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(500, 5));
        EXPECT_EQ(Ask(button, BM_GETSTATE) & BST_PUSHED, 0);
        Ask(button, WM_LBUTTONUP, 0, MAKELPARAM(500, 5));
        Ask(button, BM_SETCHECK, BST_CHECKED);
        EXPECT_EQ(Told(), Lines());
    }
}

TEST_F(ControlTest, RadioButtonsAreAloneInTheirGroup) {
    const HWND before = Make(TEXT("Button"), BS_AUTORADIOBUTTON | WS_GROUP);
    const HWND first = Make(TEXT("Button"), BS_AUTORADIOBUTTON | WS_GROUP);
    const HWND check = Make(TEXT("Button"), BS_AUTOCHECKBOX);
    const HWND last = Make(TEXT("Button"), BS_AUTORADIOBUTTON);
    const HWND behind = Make(TEXT("Button"), BS_AUTORADIOBUTTON | WS_GROUP);
    for (const HWND button : {before, first, check, behind}) {
        Ask(button, BM_SETCHECK, BST_CHECKED);
    }
    Ask(last, BM_CLICK);
    EXPECT_EQ(Ask(first, BM_GETCHECK), BST_UNCHECKED);
    EXPECT_EQ(GetWindowLongW(first, GWL_STYLE) & static_cast<LONG>(WS_TABSTOP), 0);
    for (const HWND button : {before, check, last, behind}) {
        EXPECT_EQ(Ask(button, BM_GETCHECK), BST_CHECKED);
    }
    EXPECT_NE(GetWindowLongW(last, GWL_STYLE) & static_cast<LONG>(WS_TABSTOP), 0);
}

TEST_F(ControlTest, FocusIsToldWhereItIsWanted) {
    const HWND quiet = Make(TEXT("Button"), BS_PUSHBUTTON);
    const HWND button = Make(TEXT("Button"), BS_NOTIFY);
    const HWND edit = Make(TEXT("Edit"), 0);
    const HWND list = Make(TEXT("ListBox"), LBS_NOTIFY);
    const HWND combo = Make(TEXT("ComboBox"), CBS_DROPDOWN);
    for (const HWND control : {quiet, button, edit, list, combo, quiet}) {
        SetFocus(control);
    }
    EXPECT_EQ(Told(), (Lines{"2 BN_SETFOCUS", "2 BN_KILLFOCUS", "3 EN_SETFOCUS", "3 EN_KILLFOCUS", "4 LBN_SETFOCUS",
                             "4 LBN_KILLFOCUS", "5 CBN_SETFOCUS", "5 CBN_KILLFOCUS"}));
}

TEST_F(ControlTest, StaticsTellOnlyWhenAsked) {
    const HWND link = Make(TEXT("Static"), SS_NOTIFY, TEXT("link"));
    const HWND plain = Make(TEXT("Static"), SS_LEFT, TEXT("plain"));
    EXPECT_EQ(Ask(link, WM_NCHITTEST, 0, MAKELPARAM(20, 20)), HTCLIENT);
    EXPECT_EQ(Ask(plain, WM_NCHITTEST, 0, MAKELPARAM(20, 20)), HTTRANSPARENT);
    for (const HWND control : {link, plain}) {
        Click(control, 1, 1);
        Ask(control, WM_LBUTTONDBLCLK);
    }
    EXPECT_EQ(Told(), (Lines{"1 STN_CLICKED", "1 STN_DBLCLK"}));
}

TEST_F(ControlTest, StaticsTakeOnTheirPicturesSize) {
    const HBITMAP bitmap = CreateBitmap(24, 7, 1, 32, nullptr);
    for (const DWORD style : {SS_BITMAP, SS_BITMAP | SS_CENTERIMAGE}) {
        const HWND picture = Make(TEXT("Static"), style);
        EXPECT_EQ(Ask(picture, STM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(bitmap)), 0);
        EXPECT_EQ(Ask(picture, STM_SETIMAGE, IMAGE_ICON, 0), 0);
        EXPECT_EQ(reinterpret_cast<HBITMAP>(Ask(picture, STM_GETIMAGE, IMAGE_BITMAP)), bitmap);
        RECT client;
        GetClientRect(picture, &client);
        EXPECT_EQ(client.right, style & SS_CENTERIMAGE ? 100 : 24);
    }
    DeleteObject(bitmap);
}

// --- Edit fields -----------------------------------------------------------------------------------------------------

constexpr WPARAM kCopy = 3, kPaste = 22, kCut = 24, kSelectAll = 1;

TEST_F(ControlTest, KeysEditTheText) {
    struct Step {
        std::u16string typed;
        std::vector<WPARAM> keys;  // after it
        bool shift;
    };
    static const struct {
        std::vector<Step> steps;
        std::u16string text;
        DWORD start, end;
    } kRows[] = {
        {{{u"ab", {}, false}}, u"ab", 2, 2},
        {{{u"ab", {VK_LEFT}, false}, {u"c", {}, false}}, u"acb", 2, 2},
        {{{u"abc", {VK_HOME, VK_DELETE}, false}}, u"bc", 0, 0},
        {{{u"abc", {VK_LEFT, VK_LEFT}, true}}, u"abc", 1, 3},
        {{{u"abc", {VK_HOME}, true}, {u"x", {}, false}}, u"x", 1, 1},
        {{{u"abc", {VK_HOME}, true}, {u"", {VK_RIGHT}, false}}, u"abc", 3, 3},
        {{{u"abc\b", {}, false}}, u"ab", 2, 2},
        {{{u"a\xD83D\xDE00\b", {}, false}}, u"a", 1, 1},
        {{{u"\xD83D\xDE00", {VK_LEFT}, false}}, u"\xD83D\xDE00", 0, 0},
        {{{u"one two", {VK_HOME, VK_END}, false}, {u"\x01", {}, false}}, u"one two", 0, 7},
    };
    const HWND edit = Make(TEXT("Edit"), ES_AUTOHSCROLL);
    SetFocus(edit);
    for (const auto& row : kRows) {
        SetWindowTextW(edit, TEXT(""));
        for (const Step& step : row.steps) {
            Type(step.typed);
            for (const WPARAM key : step.keys) {
                Press(key, step.shift);
            }
        }
        SCOPED_TRACE(testing::PrintToString(row.text));
        DWORD start = 0, end = 0;
        Ask(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
        EXPECT_EQ(TextOf(edit), row.text);
        EXPECT_EQ(start, row.start);
        EXPECT_EQ(end, row.end);
    }
}

TEST_F(ControlTest, EditFieldsTakeWhatTheirStyleAllows) {
    static const struct {
        DWORD style;
        WPARAM limit;
        std::u16string_view typed;
        std::u16string_view text;
        Lines told;
    } kRows[] = {
        {0,
         3,
         u"1234",
         u"123",
         {"EN_UPDATE", "EN_CHANGE", "EN_UPDATE", "EN_CHANGE", "EN_UPDATE", "EN_CHANGE", "EN_MAXTEXT"}},
        {ES_NUMBER, 0, u"a7-", u"7", {"EN_UPDATE", "EN_CHANGE"}},
        {ES_UPPERCASE, 0, u"b", u"B", {"EN_UPDATE", "EN_CHANGE"}},
        {ES_READONLY, 0, u"b\b", u"", {}},
        {0, 0, u"\b", u"", {}},
    };
    for (const auto& row : kRows) {
        const HWND edit = Make(TEXT("Edit"), row.style | ES_AUTOHSCROLL);
        SetFocus(edit);
        Ask(edit, EM_SETLIMITTEXT, row.limit);
        Told();
        Type(row.typed);
        EXPECT_EQ(TextOf(edit), row.text);
        Lines expected;
        for (const std::string& name : row.told) {
            expected.push_back(std::to_string(GetDlgCtrlID(edit)) + " " + name);
        }
        EXPECT_EQ(Told(), expected);
    }
}

TEST_F(ControlTest, EditFieldWithoutScrollingTakesWhatItShows) {
    const HWND edit = Make(TEXT("Edit"), 0, TEXT(""), {0, 0, 40, 20});
    SetFocus(edit);
    Type(u"WWWWWWWWWWWWWWWWWWWW");
    EXPECT_GT(TextOf(edit).size(), 0u);
    EXPECT_LT(TextOf(edit).size(), 10u);
    EXPECT_EQ(Told().back(), "1 EN_MAXTEXT");
}

TEST_F(ControlTest, ProgramsSetTextsBeyondTheLimitAndAreTold) {
    const HWND edit = Make(TEXT("Edit"), ES_AUTOHSCROLL, TEXT("first"));
    Ask(edit, EM_SETLIMITTEXT, 2);
    EXPECT_EQ(Told(), Lines());
    SetWindowTextW(edit, TEXT("second"));
    EXPECT_EQ(TextOf(edit), u"second");
    EXPECT_EQ(Told(), (Lines{"1 EN_UPDATE", "1 EN_CHANGE"}));
    EXPECT_EQ(Ask(edit, EM_GETLIMITTEXT), 2);
    Ask(edit, EM_SETSEL, 0, -1);
    Ask(edit, EM_REPLACESEL, TRUE, Text(TEXT("xyz")));
    EXPECT_EQ(TextOf(edit), u"xy");
    EXPECT_EQ(Told(), (Lines{"1 EN_MAXTEXT", "1 EN_UPDATE", "1 EN_CHANGE"}));
    WCHAR cut[3];
    EXPECT_EQ(Ask(edit, WM_GETTEXT, 2, Text(cut)), 1);
}

TEST_F(ControlTest, TheClipboardGoesBetweenFields) {
    const HWND from = Make(TEXT("Edit"), ES_AUTOHSCROLL, TEXT("ab12"));
    const HWND to = Make(TEXT("Edit"), ES_AUTOHSCROLL | ES_NUMBER);
    SetFocus(from);
    Ask(from, EM_SETSEL, 1, 4);
    Ask(from, WM_CHAR, kCopy);
    EXPECT_EQ(TextOf(from), u"ab12");
    Ask(to, WM_CHAR, kPaste);
    EXPECT_EQ(TextOf(to), u"");  // no number
    Ask(from, EM_SETSEL, 2, 4);
    Ask(from, WM_CHAR, kCut);
    EXPECT_EQ(TextOf(from), u"ab");
    Ask(to, WM_CHAR, kPaste);
    EXPECT_EQ(TextOf(to), u"12");
    EXPECT_EQ(GetClipboardData(CF_UNICODETEXT), nullptr);  // not open
    EXPECT_EQ(GetLastError(), DWORD{ERROR_CLIPBOARD_NOT_OPEN});
    EXPECT_TRUE(OpenClipboard(from));
    EXPECT_FALSE(OpenClipboard(to));
    const HGLOBAL memory = GetClipboardData(CF_UNICODETEXT);
    EXPECT_EQ(GlobalSize(memory), sizeof(u"12"));
    EXPECT_EQ(std::u16string(static_cast<const char16_t*>(GlobalLock(memory))), u"12");
    GlobalUnlock(memory);
    const auto open = host::StillOpen();
    EXPECT_EQ(std::count(open.begin(), open.end(), "clipboard"), 1);
    EXPECT_TRUE(CloseClipboard());
    Ask(from, WM_UNDO);
    EXPECT_EQ(TextOf(from), u"ab12");
    Ask(from, WM_CHAR, kSelectAll);
    Ask(from, WM_CLEAR);
    EXPECT_EQ(TextOf(from), u"");
}

// --- Lists -----------------------------------------------------------------------------------------------------------

TEST_F(ControlTest, ListMessagesAnswerAsPublished) {
    static const struct {
        UINT message;
        WPARAM wParam;
        LPCWSTR text;
        LRESULT result;
        LRESULT selected;  // afterwards
    } kRows[] = {
        {LB_ADDSTRING, 0, TEXT("pear"), 0, -1},
        {LB_ADDSTRING, 0, TEXT("Apple"), 0, -1},
        {LB_ADDSTRING, 0, TEXT("orange"), 1, -1},
        {LB_SETCURSEL, 1, nullptr, 1, 1},
        {LB_INSERTSTRING, 0, TEXT("zero"), 0, 2},
        {LB_INSERTSTRING, 9, TEXT("none"), LB_ERR, 2},
        {LB_FINDSTRING, static_cast<WPARAM>(-1), TEXT("OR"), 2, 2},
        {LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), TEXT("or"), LB_ERR, 2},
        {LB_SELECTSTRING, 2, TEXT("ap"), 1, 1},
        {LB_GETTEXTLEN, 1, nullptr, 5, 1},
        {LB_GETTEXTLEN, 4, nullptr, LB_ERR, 1},
        {LB_SETCURSEL, 4, nullptr, LB_ERR, 1},
        {LB_DELETESTRING, 0, nullptr, 3, 0},
        {LB_DELETESTRING, 0, nullptr, 2, -1},
        {LB_GETITEMDATA, 2, nullptr, LB_ERR, -1},
        {LB_SETCURSEL, 0, nullptr, 0, 0},
        {LB_SETCURSEL, static_cast<WPARAM>(-1), nullptr, LB_ERR, -1},
        {LB_RESETCONTENT, 0, nullptr, 0, -1},
        {LB_GETCOUNT, 0, nullptr, 0, -1},
    };
    const HWND list = Make(TEXT("ListBox"), LBS_NOTIFY | LBS_SORT);
    for (const auto& row : kRows) {
        SCOPED_TRACE(&row - kRows);
        EXPECT_EQ(Ask(list, row.message, row.wParam, Text(row.text)), row.result);
        EXPECT_EQ(Ask(list, LB_GETCURSEL), row.selected);
    }
    EXPECT_EQ(Told(), Lines());
}

TEST_F(ControlTest, UsersSelectInLists) {
    const HWND list = Make(TEXT("ListBox"), LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL, TEXT(""), {0, 0, 100, 80});
    Ask(list, LB_SETITEMHEIGHT, 0, 20);
    for (const LPCWSTR text : {TEXT("a"), TEXT("b1"), TEXT("c"), TEXT("d"), TEXT("b2"), TEXT("e")}) {
        Ask(list, LB_ADDSTRING, 0, Text(text));
    }
    SetFocus(list);
    Told();
    static const struct {
        WPARAM key;  // or a character
        LRESULT selected;
        LRESULT top;
    } kRows[] = {{VK_DOWN, 0, 0}, {VK_UP, 0, 0},    {'b', 1, 0},     {'b', 4, 1},
                 {VK_END, 5, 2},  {VK_PRIOR, 2, 2}, {VK_HOME, 0, 0}, {VK_NEXT, 3, 0}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.key);
        Ask(list, row.key == 'b' ? WM_CHAR : WM_KEYDOWN, row.key);
        EXPECT_EQ(Ask(list, LB_GETCURSEL), row.selected);
        EXPECT_EQ(Ask(list, LB_GETTOPINDEX), row.top);
        EXPECT_EQ(Told(), Lines{"1 LBN_SELCHANGE"});
    }
    Click(list, 5, 25);
    Ask(list, WM_LBUTTONDBLCLK, 0, MAKELPARAM(5, 25));
    EXPECT_EQ(Ask(list, LB_GETCURSEL), 1);
    EXPECT_EQ(Told(), (Lines{"1 LBN_SELCHANGE", "1 LBN_DBLCLK"}));
    Click(list, 95, 70);  // the bar's lower arrow
    EXPECT_EQ(Ask(list, LB_GETTOPINDEX), 1);
    EXPECT_EQ(Told(), Lines());
}

TEST_F(ControlTest, ListsShowWholeItems) {
    for (const DWORD style : {0, LBS_NOINTEGRALHEIGHT}) {
        const HWND list = Make(TEXT("ListBox"), style, TEXT(""), {0, 0, 100, 80});
        Ask(list, LB_SETITEMHEIGHT, 0, 33);
        RECT client;
        GetClientRect(list, &client);
        EXPECT_EQ(client.bottom % 33 == 0, style == 0);
    }
}

TEST_F(ControlTest, ColumnsAreFilledOneAfterTheOther) {
    const HWND list =
        Make(TEXT("ListBox"), LBS_OWNERDRAWFIXED | LBS_MULTICOLUMN | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_HSCROLL,
             TEXT(""), {0, 0, 100, 100});
    Ask(list, LB_SETITEMHEIGHT, 0, 50);
    Ask(list, LB_SETCOLUMNWIDTH, 50);
    for (LPARAM data = 10; data < 14; ++data) {
        Ask(list, LB_ADDSTRING, 0, data);
    }
    RECT rect;
    Ask(list, LB_GETITEMRECT, 3, reinterpret_cast<LPARAM>(&rect));
    const RECT expected = {50, 50, 100, 100};
    EXPECT_TRUE(EqualRect(&rect, &expected));
    EXPECT_EQ(Ask(list, LB_GETITEMDATA, 3), 13);
    SetFocus(list);
    Told();
    Ask(list, LB_SETCURSEL, 1);
    Press(VK_RIGHT);
    EXPECT_EQ(Ask(list, LB_GETCURSEL), 3);
    Click(list, 60, 10);
    EXPECT_EQ(Ask(list, LB_GETCURSEL), 2);
    EXPECT_EQ(Told(), (Lines{"1 LBN_SELCHANGE", "1 LBN_SELCHANGE"}));
}

// --- Combo boxes -----------------------------------------------------------------------------------------------------

class ComboTest : public ControlTest, public testing::WithParamInterface<DWORD> {
  protected:
    ComboTest() {
        combo_ = Make(TEXT("ComboBox"), GetParam() | CBS_AUTOHSCROLL, TEXT(""), {10, 10, 110, 130});
        for (const LPCWSTR text : {TEXT("one"), TEXT("two"), TEXT("three")}) {
            Ask(combo_, CB_SETITEMDATA, static_cast<WPARAM>(Ask(combo_, CB_ADDSTRING, 0, Text(text))), *text);
        }
    }
    bool HasEdit() const { return GetParam() != CBS_DROPDOWNLIST; }
    bool IsSimple() const { return GetParam() == CBS_SIMPLE; }
    HWND combo_ = nullptr;
};

TEST_P(ComboTest, MessagesSelectAndNobodyIsTold) {
    EXPECT_EQ(Ask(combo_, CB_GETCURSEL), CB_ERR);
    EXPECT_EQ(Ask(combo_, CB_SETCURSEL, 1), 1);
    EXPECT_EQ(TextOf(combo_), u"two");
    EXPECT_EQ(Ask(combo_, CB_GETITEMDATA, 1), 't');
    EXPECT_EQ(Ask(combo_, CB_SETCURSEL, 3), CB_ERR);
    EXPECT_EQ(Ask(combo_, CB_SELECTSTRING, static_cast<WPARAM>(-1), Text(TEXT("thr"))), 2);
    EXPECT_EQ(TextOf(combo_), u"three");
    WCHAR text[16];
    EXPECT_EQ(Ask(combo_, CB_GETLBTEXT, 0, Text(text)), 3);
    EXPECT_EQ(std::u16string(text), u"one");
    EXPECT_EQ(SetWindowTextW(combo_, TEXT("own")) && TextOf(combo_) == u"own", HasEdit());
    EXPECT_EQ(Ask(combo_, CB_GETEDITSEL) == CB_ERR, !HasEdit());
    Ask(combo_, CB_SETCURSEL, static_cast<WPARAM>(-1));
    EXPECT_EQ(TextOf(combo_), u"");
    EXPECT_EQ(Ask(combo_, CB_DELETESTRING, 0), 2);
    Ask(combo_, CB_RESETCONTENT);
    EXPECT_EQ(Ask(combo_, CB_GETCOUNT), 0);
    EXPECT_EQ(Told(), Lines());
}

TEST_P(ComboTest, KeysSelect) {
    SetFocus(combo_);
    Told();
    Press(VK_DOWN);
    Press(VK_DOWN);
    Press(VK_UP);
    EXPECT_EQ(Ask(combo_, CB_GETCURSEL), 0);
    EXPECT_EQ(TextOf(combo_), u"one");
    Ask(combo_, WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)));
    EXPECT_EQ(TextOf(combo_), u"two");
    Lines expected;
    for (int i = 0; i < 4; ++i) {
        expected.insert(expected.end(), {"1 CBN_SELENDOK", "1 CBN_SELCHANGE"});
    }
    EXPECT_EQ(Told(), expected);
}

TEST_P(ComboTest, FieldIsTheFirstChild) {
    const HWND child = GetWindow(combo_, GW_CHILD);
    EXPECT_EQ(child != nullptr, HasEdit());
    RECT rect;
    GetWindowRect(combo_, &rect);
    EXPECT_EQ(rect.bottom - rect.top == 120, IsSimple());
    if (!HasEdit()) {
        return;
    }
    SetFocus(combo_);
    EXPECT_EQ(GetFocus(), child);
    Ask(combo_, CB_SETCURSEL, 1);
    Ask(combo_, CB_LIMITTEXT, 4);
    Told();
    Ask(child, EM_SETSEL, 3, 3);
    Type(u"xy");
    EXPECT_EQ(TextOf(combo_), u"twox");
    EXPECT_EQ(Ask(combo_, CB_GETCURSEL), CB_ERR);
    EXPECT_EQ(Told(), (Lines{"1 CBN_EDITUPDATE", "1 CBN_EDITCHANGE"}));
}

TEST_P(ComboTest, DroppedListClosesWithOrWithoutAChoice) {
    SetFocus(combo_);
    Told();
    if (IsSimple()) {
        Ask(combo_, CB_SHOWDROPDOWN, TRUE);
        EXPECT_EQ(Told(), Lines());
        return;
    }
    Click(combo_, 95, 5);
    ASSERT_TRUE(Ask(combo_, CB_GETDROPPEDSTATE));
    MSG key = {};
    key.message = WM_KEYDOWN;
    key.wParam = VK_ESCAPE;
    EXPECT_TRUE(Ask(GetFocus(), WM_GETDLGCODE, VK_ESCAPE, reinterpret_cast<LPARAM>(&key)) & DLGC_WANTMESSAGE);
    Press(VK_ESCAPE);
    EXPECT_FALSE(Ask(combo_, CB_GETDROPPEDSTATE));
    EXPECT_EQ(Told(), (Lines{"1 CBN_DROPDOWN", "1 CBN_SELENDCANCEL", "1 CBN_CLOSEUP"}));

    Press(VK_F4);
    const HWND list = GetCapture();
    const int height = static_cast<int>(Ask(combo_, CB_GETITEMHEIGHT));
    Ask(list, WM_MOUSEMOVE, 0, MAKELPARAM(5, height + 2));
    EXPECT_EQ(Ask(combo_, CB_GETCURSEL), CB_ERR);
    Click(list, 5, height + 2);
    EXPECT_EQ(TextOf(combo_), u"two");
    EXPECT_EQ(Told(), (Lines{"1 CBN_DROPDOWN", "1 CBN_SELENDOK", "1 CBN_CLOSEUP", "1 CBN_SELCHANGE"}));

    Ask(combo_, CB_SHOWDROPDOWN, TRUE);
    Press(VK_DOWN);
    Press(VK_RETURN);
    EXPECT_EQ(TextOf(combo_), u"three");
    EXPECT_EQ(Told(), (Lines{"1 CBN_DROPDOWN", "1 CBN_SELCHANGE", "1 CBN_SELENDOK", "1 CBN_CLOSEUP"}));

    Ask(combo_, CB_SHOWDROPDOWN, TRUE);
    Click(GetCapture(), 5, 500);
    EXPECT_FALSE(Ask(combo_, CB_GETDROPPEDSTATE));
    EXPECT_EQ(TextOf(combo_), u"three");
    EXPECT_EQ(Told(), (Lines{"1 CBN_DROPDOWN", "1 CBN_SELENDCANCEL", "1 CBN_CLOSEUP"}));

    Ask(combo_, CB_SHOWDROPDOWN, TRUE);
    SetFocus(parent_);
    EXPECT_EQ(Told(), (Lines{"1 CBN_DROPDOWN", "1 CBN_SELENDCANCEL", "1 CBN_CLOSEUP", "1 CBN_KILLFOCUS"}));
}

INSTANTIATE_TEST_SUITE_P(Kinds, ComboTest, testing::Values(CBS_SIMPLE, CBS_DROPDOWN, CBS_DROPDOWNLIST));

// --- Bars, sliders, up-downs, tabs -----------------------------------------------------------------------------------

TEST_F(ControlTest, ScrollBarsTellAndSlidersMove) {
    const HWND bar = Make(TEXT("ScrollBar"), SBS_HORZ, TEXT(""), {0, 0, 200, 17});
    SetScrollRange(bar, SB_CTL, -10, 10, FALSE);
    const HWND slider = Make(TRACKBAR_CLASSW, TBS_HORZ, TEXT(""), {0, 20, 200, 50});
    Ask(slider, TBM_SETRANGE, FALSE, MAKELPARAM(-10, 10));
    Ask(slider, TBM_SETPAGESIZE, 0, 4);
    Ask(slider, TBM_SETPOS, TRUE, 0);
    static const struct {
        WPARAM key;
        int code;      // the same for both
        int position;  // of the slider; the bar stays
    } kRows[] = {{VK_RIGHT, SB_LINEDOWN, 1}, {VK_LEFT, SB_LINEUP, 0}, {VK_NEXT, SB_PAGEDOWN, 4},
                 {VK_PRIOR, SB_PAGEUP, 0},   {VK_HOME, SB_TOP, -10},  {VK_END, SB_BOTTOM, 10}};
    for (const auto& row : kRows) {
        const std::string code = std::to_string(row.code);
        SetFocus(bar);
        Press(row.key);
        EXPECT_EQ(GetScrollPos(bar, SB_CTL), 0);
        SetFocus(slider);
        Press(row.key);
        EXPECT_EQ(Ask(slider, TBM_GETPOS), row.position);
        EXPECT_EQ(Told(), (Lines{"1 WM_HSCROLL " + code + " 0", "1 WM_HSCROLL 8 0", "2 WM_HSCROLL " + code + " 0",
                                 "2 WM_HSCROLL 8 0"}));
    }
    // Dragged to either end.
    for (const HWND control : {bar, slider}) {
        SetScrollPos(bar, SB_CTL, 10, TRUE);
        Ask(control, WM_LBUTTONDOWN, MK_LBUTTON, control == bar ? MAKELPARAM(175, 8) : MAKELPARAM(191, 10));
        Told();
        Ask(control, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(-50, 10));
        Ask(control, WM_LBUTTONUP, 0, MAKELPARAM(-50, 10));
        const std::string id = control == bar ? "1" : "2";
        EXPECT_EQ(Told(), (Lines{id + " WM_HSCROLL 5 -10", id + " WM_HSCROLL 4 -10", id + " WM_HSCROLL 8 0"}));
    }
    EXPECT_EQ(Ask(slider, TBM_GETPOS), -10);
}

TEST_F(ControlTest, ScrollInfoIsKeptWithinTheRange) {
    const HWND bar = Make(TEXT("ScrollBar"), SBS_VERT);
    SCROLLINFO info = {sizeof(info), SIF_RANGE | SIF_PAGE | SIF_POS, 0, 99, 10, 95, 0};
    EXPECT_EQ(SetScrollInfo(bar, SB_CTL, &info, TRUE), 90);
    EXPECT_EQ(SetScrollPos(bar, SB_CTL, 20, TRUE), 90);
    info.fMask = SIF_ALL;
    ASSERT_TRUE(GetScrollInfo(bar, SB_CTL, &info));
    EXPECT_EQ(info.nPos, 20);
    EXPECT_EQ(info.nTrackPos, 20);
    EXPECT_EQ(info.nMax, 99);
}

TEST_F(ControlTest, UpDownsStepTheirBuddy) {
    const HWND edit = Make(TEXT("Edit"), ES_AUTOHSCROLL, TEXT(""), {10, 10, 70, 30});
    const HWND spin = Make(UPDOWN_CLASSW, UDS_AUTOBUDDY | UDS_SETBUDDYINT | UDS_ALIGNRIGHT | UDS_ARROWKEYS);
    EXPECT_EQ(reinterpret_cast<HWND>(Ask(spin, UDM_GETBUDDY)), edit);
    RECT rects[2];
    GetWindowRect(edit, &rects[0]);
    GetWindowRect(spin, &rects[1]);
    EXPECT_EQ(rects[0].right, rects[1].left);
    EXPECT_EQ(rects[1].right, 70);

    Ask(spin, UDM_SETRANGE, 0, MAKELPARAM(1200, -5));
    EXPECT_EQ(Told(), Lines());
    EXPECT_EQ(Ask(spin, UDM_SETPOS, 0, MAKELPARAM(1199, 0)), 0);
    EXPECT_EQ(TextOf(edit), u"1,199");
    EXPECT_EQ(Told(), (Lines{"1 EN_UPDATE", "1 EN_CHANGE"}));

    SetFocus(edit);
    Told();
    Press(VK_UP);
    EXPECT_EQ(Told(), (Lines{"2 UDN_DELTAPOS 1199 1", "1 EN_UPDATE", "1 EN_CHANGE", "2 WM_VSCROLL 4 1200"}));
    Press(VK_UP);
    EXPECT_EQ(Told(), (Lines{"2 UDN_DELTAPOS 1200 1", "2 WM_VSCROLL 4 1200"}));
    SetWindowTextW(edit, TEXT("-5"));
    Told();
    Click(spin, 5, 15);
    EXPECT_EQ(Told(), (Lines{"2 UDN_DELTAPOS -5 -1", "2 WM_VSCROLL 4 -5", "2 WM_VSCROLL 8 -5"}));

    SetWindowTextW(edit, TEXT("12x"));
    EXPECT_EQ(Ask(spin, UDM_GETPOS), MAKELRESULT(-5, 1));
    UDACCEL accelerator = {0, 7};
    Ask(spin, UDM_SETACCEL, 1, reinterpret_cast<LPARAM>(&accelerator));
    Ask(edit, WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA));
    EXPECT_EQ(Ask(spin, UDM_GETPOS), MAKELRESULT(2, 0));
    notifyAnswer_ = 1;
    Ask(edit, WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA));
    EXPECT_EQ(Ask(spin, UDM_GETPOS), MAKELRESULT(2, 0));
}

TEST_F(ControlTest, UsersMoveBetweenTabs) {
    const HWND tabs = Make(WC_TABCONTROLW, 0, TEXT(""), {0, 0, 300, 200});
    for (LPCWSTR text : {TEXT("Paper"), TEXT("Color"), TEXT("Watermark")}) {
        TCITEMW item = {};
        item.mask = TCIF_TEXT;
        item.pszText = const_cast<LPWSTR>(text);
        Ask(tabs, TCM_INSERTITEMW, 99, reinterpret_cast<LPARAM>(&item));
    }
    EXPECT_EQ(Ask(tabs, TCM_GETCURSEL), 0);
    EXPECT_EQ(Ask(tabs, TCM_SETCURSEL, 1), 0);
    EXPECT_EQ(Told(), Lines());
    RECT tab;
    Ask(tabs, TCM_GETITEMRECT, 2, reinterpret_cast<LPARAM>(&tab));
    Click(tabs, tab.left + 3, tab.top + 3);
    EXPECT_EQ(Ask(tabs, TCM_GETCURSEL), 2);
    EXPECT_EQ(Told(), (Lines{"1 TCN_SELCHANGING", "1 TCN_SELCHANGE", "1 NM_CLICK"}));
    notifyAnswer_ = TRUE;
    Ask(tabs, WM_KEYDOWN, VK_LEFT);
    EXPECT_EQ(Ask(tabs, TCM_GETCURSEL), 2);
    EXPECT_EQ(Told(), (Lines{"1 TCN_SELCHANGING"}));
    RECT display = {0, 0, 300, 200};
    Ask(tabs, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&display));
    EXPECT_GT(display.top, tab.bottom);
    Ask(tabs, TCM_ADJUSTRECT, TRUE, reinterpret_cast<LPARAM>(&display));
    const RECT whole = {0, 0, 300, 200};
    EXPECT_TRUE(EqualRect(&display, &whole));
}

// --- All of them -----------------------------------------------------------------------------------------------------

TEST_F(ControlTest, AnUnknownMessageOfItsOwnIsReported) {
    const HWND edit = Make(TEXT("Edit"), 0);
    testing::internal::CaptureStderr();
    Ask(edit, 0x00B8);
    Ask(edit, WM_NULL);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "platform: message 0x00B8 to Edit is not supported\n");
}

TEST_F(ControlTest, ANotificationMayDestroyItsControl) {
    static const struct {
        LPCWSTR className;
        DWORD style;
        UINT message;
        WPARAM wParam;
    } kRows[] = {{TEXT("Button"), BS_AUTORADIOBUTTON, BM_CLICK, 0},
                 {TEXT("Edit"), ES_AUTOHSCROLL, WM_CHAR, 'x'},
                 {TEXT("Edit"), ES_AUTOHSCROLL, WM_SETFOCUS, 0},
                 {TEXT("ListBox"), LBS_NOTIFY, WM_KEYDOWN, VK_DOWN},
                 {TEXT("ComboBox"), CBS_DROPDOWN, WM_KEYDOWN, VK_DOWN},
                 {TEXT("ComboBox"), CBS_DROPDOWNLIST, CB_SHOWDROPDOWN, TRUE},
                 {TEXT("ComboBox"), CBS_SIMPLE, WM_SETFOCUS, 0}};
    destroyControlWhenTold_ = true;
    for (const auto& row : kRows) {
        const HWND control = Make(row.className, row.style);
        Ask(control, CB_ADDSTRING, 0, Text(TEXT("a")));
        Ask(control, LB_ADDSTRING, 0, Text(TEXT("a")));
        Ask(control, row.message, row.wParam);
        EXPECT_FALSE(IsWindow(control)) << row.message;
    }
}

}  // namespace
}  // namespace host
