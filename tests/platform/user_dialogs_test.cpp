// Dialogs: templates, the keyboard, results, and a user who may be missing.
#include "platform/user/dialog_template.h"
#include "tests/platform/user_fixture.h"

namespace host {
namespace {

// What the dialog's procedure answers, and what it was told.
struct Script {
    std::function<INT_PTR(HWND, UINT, WPARAM, LPARAM)> act;
    std::vector<int> commands;  // ids of buttons that were pressed
};
Script* script = nullptr;

INT_PTR CALLBACK ScriptProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (script == nullptr) {
        return FALSE;
    }
    if (message == WM_COMMAND && HIWORD(wParam) == BN_CLICKED) {
        script->commands.push_back(LOWORD(wParam));
    }
    return script->act ? script->act(dialog, message, wParam, lParam) : message == WM_INITDIALOG;
}

class DialogsTest : public UserTest {
  protected:
    DialogsTest() { script = &script_; }
    ~DialogsTest() override { script = nullptr; }

    HWND Create(int id, HWND parent = nullptr) {
        return CreateDialogParamW(Dialogs(), MAKEINTRESOURCEW(id), parent, ScriptProc, 0);
    }
    INT_PTR Run(int id, HWND owner = nullptr) {
        return DialogBoxParamW(Dialogs(), MAKEINTRESOURCEW(id), owner, ScriptProc, 5);
    }
    int FocusId() { return GetDlgCtrlID(GetFocus()); }

    Script script_;
};

TEST_F(DialogsTest, Templates) {
    const HMODULE module = Dialogs();
    const auto parse = [&](int id, size_t shorter = 0) {
        const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(id), RT_DIALOG);
        return ParseDialogTemplate(static_cast<const BYTE*>(LockResource(LoadResource(module, resource))),
                                   SizeofResource(module, resource) - shorter);
    };
    const auto extended = parse(20);
    ASSERT_TRUE(extended && extended->font);
    EXPECT_EQ(extended->title, u"Probe");
    EXPECT_EQ(extended->font->points, 8);
    EXPECT_EQ(extended->font->weight, FW_BOLD);
    EXPECT_TRUE(extended->font->italic);
    EXPECT_EQ(extended->font->charSet, SHIFTJIS_CHARSET);
    EXPECT_EQ(extended->font->face, u"MS Shell Dlg");
    ASSERT_EQ(extended->items.size(), 9u);
    EXPECT_EQ(extended->items[1].className, u"Edit");
    EXPECT_EQ(extended->items[1].width, 80);
    EXPECT_EQ(extended->items[8].text, u"A&pply && go");
    const auto plain = parse(21);
    ASSERT_TRUE(plain && plain->font && plain->items.size() == 2);
    EXPECT_EQ(plain->exStyle, 0x100u);
    EXPECT_EQ(plain->font->face, u"Tahoma");
    EXPECT_EQ(plain->items[0].text, (std::u16string{0xFFFF, 7}));
    EXPECT_EQ(plain->items[1].className, u"COMBOBOX");
    EXPECT_EQ(plain->items[1].x, -3);
    EXPECT_EQ(plain->items[1].id, 201u);
    EXPECT_FALSE(parse(20, 4));
}

TEST_F(DialogsTest, PlacesAndFont) {
    const HWND owner = Make(u"owner", WS_POPUP | WS_VISIBLE, {100, 100, 400, 400});
    const HWND dialog = Create(20, owner);
    RECT unit = {4, 8, 400, 800};
    MapDialogRect(dialog, &unit);
    EXPECT_EQ(unit.right, unit.left * 100);
    EXPECT_EQ(unit.bottom, unit.top * 100);
    RECT control;
    GetWindowRect(GetDlgItem(dialog, 105), &control);
    RECT expected = {60, 24, 100, 38};
    MapDialogRect(dialog, &expected);
    MapWindowPoints(dialog, nullptr, reinterpret_cast<POINT*>(&expected), 2);
    EXPECT_TRUE(EqualRect(&control, &expected));
    RECT whole;
    GetWindowRect(dialog, &whole);
    RECT place = {10, 20, 0, 0};
    MapDialogRect(dialog, &place);
    EXPECT_EQ(whole.left, 100 + place.left);
    EXPECT_EQ(whole.top, 100 + place.top);
    const LRESULT font = SendMessageW(dialog, WM_GETFONT, 0, 0);
    EXPECT_NE(font, 0);
    EXPECT_EQ(SendDlgItemMessageW(dialog, 101, WM_GETFONT, 0, 0), font);
    DestroyWindow(dialog);
    EXPECT_EQ(Create(23), nullptr);  // a control that can't be made
    DestroyWindow(owner);
}

TEST_F(DialogsTest, KeyboardMovesTheFocus) {
    const HWND dialog = Create(20);
    ShowWindow(dialog, SW_SHOW);
    EXPECT_EQ(FocusId(), 101);
    CheckRadioButton(dialog, 102, 104, 102);
    const struct {
        WORD key;
        WORD modifier;
        int focus;
        int pressed = 0;
        int defaultButton = 1;
    } strokes[] = {
        {VK_TAB, 0, 102},
        {VK_DOWN, 0, 103, 103},
        {VK_UP, 0, 102, 102},
        {VK_UP, 0, 104, 104},
        {VK_RETURN, 0, 104, 1},
        {VK_TAB, 0, 1},
        {VK_TAB, 0, 2, 0, 2},
        {VK_RETURN, 0, 2, 2, 2},
        {VK_RIGHT, 0, 106, 0, 106},
        {VK_TAB, 0, 101},
        {VK_TAB, VK_SHIFT, 106, 0, 106},
        {'N', VK_MENU, 101},
        {'H', VK_MENU, 104, 104},
        {'P', 0, 106, 106, 106},
        {'O', 0, 102, 102},
        {VK_ESCAPE, 0, 102, 2},
        {'F', 0, 102},  // a disabled button's
    };
    int at = 0;
    for (const auto& stroke : strokes) {
        script_.commands.clear();
        Stroke(stroke.key, stroke.modifier);
        Drain(dialog);
        EXPECT_EQ(FocusId(), stroke.focus) << at;
        EXPECT_EQ(script_.commands, stroke.pressed != 0 ? std::vector<int>{stroke.pressed} : std::vector<int>()) << at;
        for (const int id : {1, 2, 106}) {
            const bool isDefault = (SendDlgItemMessageW(dialog, id, WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON) != 0;
            EXPECT_EQ(isDefault, id == stroke.defaultButton) << at << " " << id;
        }
        ++at;
    }
    DestroyWindow(dialog);
}

TEST_F(DialogsTest, InnerDialogsTakePart) {
    const HWND dialog = Create(20);
    const HWND inner = Create(22, dialog);
    EXPECT_EQ(GetNextDlgTabItem(dialog, GetDlgItem(dialog, 106), FALSE), GetDlgItem(inner, 300));
    EXPECT_EQ(GetNextDlgTabItem(dialog, GetDlgItem(inner, 300), FALSE), GetDlgItem(dialog, 101));
    ShowWindow(inner, SW_HIDE);
    EXPECT_EQ(GetNextDlgTabItem(dialog, GetDlgItem(dialog, 106), FALSE), GetDlgItem(dialog, 101));
    DestroyWindow(dialog);
}

TEST_F(DialogsTest, AnswersOfProcedures) {
    const HWND dialog = Create(20);
    script_.act = [](HWND own, UINT message, WPARAM, LPARAM) -> INT_PTR {
        SetWindowLongPtrW(own, DWLP_MSGRESULT, 11);
        return message == WM_NOTIFY || message == WM_CTLCOLORSTATIC ? 22 : 0;
    };
    EXPECT_EQ(SendMessageW(dialog, WM_NOTIFY, 0, 0), 11);
    EXPECT_EQ(SendMessageW(dialog, WM_CTLCOLORSTATIC, 0, 0), 22);
    EXPECT_EQ(SendMessageW(dialog, WM_USER + 50, 0, 0), 0);
    EXPECT_EQ(SendMessageW(dialog, DM_GETDEFID, 0, 0), MAKELRESULT(1, DC_HASDEFID));
    DestroyWindow(dialog);
}

TEST_F(DialogsTest, ModalDialogs) {
    const HWND owner = Make(u"owner", WS_POPUP | WS_VISIBLE, {0, 0, 300, 300});
    int idle = 0;
    SetAnswer(WM_ENTERIDLE, [&](HWND, WPARAM, LPARAM) { return ++idle, LRESULT{0}; });
    script_.act = [&](HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) -> INT_PTR {
        if (message == WM_INITDIALOG) {
            EXPECT_EQ(lParam, 5);
            EXPECT_EQ(GetDlgCtrlID(reinterpret_cast<HWND>(wParam)), 101);
            return TRUE;
        }
        return message == WM_COMMAND && LOWORD(wParam) == IDCANCEL && EndDialog(dialog, 42);
    };
    machine_->SetUser([&] {
        EXPECT_FALSE(IsWindowEnabled(owner));
        EXPECT_TRUE(IsWindowVisible(GetActiveWindow()));
        SendDlgItemMessageW(GetActiveWindow(), IDCANCEL, BM_CLICK, 0, 0);
    });
    EXPECT_EQ(Run(20, owner), 42);
    EXPECT_TRUE(IsWindowEnabled(owner));
    EXPECT_EQ(GetActiveWindow(), owner);
    EXPECT_GE(idle, 1);
    EXPECT_EQ(UnansweredWaits(), 0u);

    script_.act = [](HWND dialog, UINT message, WPARAM, LPARAM) -> INT_PTR {
        return message == WM_INITDIALOG && EndDialog(dialog, 8);
    };
    EXPECT_EQ(Run(20, owner), 8);
    script_.act = [](HWND dialog, UINT message, WPARAM, LPARAM) -> INT_PTR {
        return message == WM_INITDIALOG && DestroyWindow(dialog);
    };
    EXPECT_EQ(Run(20, owner), -1);
    EXPECT_EQ(Run(99, owner), -1);
    EXPECT_TRUE(IsWindowEnabled(owner));
    DestroyWindow(owner);
}

TEST_F(DialogsTest, NobodyIsThere) {
    EXPECT_EQ(Run(20), -1);
    EXPECT_EQ(UnansweredWaits(), 1u);
    int turns = 0;
    machine_->SetUser([&] { ++turns; });
    EXPECT_EQ(Run(20), -1);
    EXPECT_EQ(UnansweredWaits(), 2u);
    EXPECT_GT(turns, 1);
    machine_->SetUser([] { PostQuitMessage(1), PostMessageW(nullptr, WM_NULL, 0, 0); });
    EXPECT_EQ(Run(20), -1);
    MSG message;
    EXPECT_FALSE(GetMessageW(&message, nullptr, 0, 0));  // the quitting goes on to the loop outside
    EXPECT_EQ(UnansweredWaits(), 2u);
}

TEST_F(DialogsTest, HelpGoesUp) {
    int asked = 0;
    script_.act = [&](HWND, UINT message, WPARAM, LPARAM lParam) -> INT_PTR {
        if (message == WM_HELP) {
            asked = reinterpret_cast<HELPINFO*>(lParam)->iCtrlId;
        }
        return message == WM_HELP || message == WM_INITDIALOG;
    };
    const HWND dialog = Create(20);
    Stroke(VK_F1);
    Drain(dialog);
    EXPECT_EQ(asked, 101);
    DestroyWindow(dialog);
}

TEST_F(DialogsTest, MessageBoxes) {
    const struct {
        UINT type;
        WORD key;
        int result;
    } cases[] = {{MB_OK | MB_ICONERROR, VK_ESCAPE, IDOK},
                 {MB_OKCANCEL | MB_ICONQUESTION, VK_RETURN, IDOK},
                 {MB_OKCANCEL, VK_ESCAPE, IDCANCEL},
                 {MB_YESNO | MB_ICONWARNING, 'N', IDNO}};
    for (const auto& c : cases) {
        machine_->SetUser([&] {
            EXPECT_NE(FindWindowW(u"#32770", u"Title"), nullptr);
            Stroke(c.key);
        });
        EXPECT_EQ(MessageBoxW(nullptr, u"Text", u"Title", c.type), c.result);
    }
}

// Whatever there is no memory for, what was made goes again and the program goes on.
TEST_F(DialogsTest, EveryAllocationFails) {
    Dialogs();
    const Lines before = StillOpen();
    machine_->SetUser([] {
        const HWND dialog = GetActiveWindow();
        SavePicture(dialog, "/dev/null");
        Stroke(VK_ESCAPE);
    });
    script_.act = [](HWND dialog, UINT message, WPARAM wParam, LPARAM) -> INT_PTR {
        return message == WM_INITDIALOG ||
               (message == WM_COMMAND && LOWORD(wParam) == IDCANCEL && EndDialog(dialog, IDCANCEL));
    };
    const std::function<INT_PTR()> runs[] = {
        [&] { return Run(20); }, [] { return MessageBoxW(nullptr, u"Text", u"Title", MB_OKCANCEL | MB_ICONERROR); }};
    for (const auto& run : runs) {
        int failed = 0;
        for (uint64_t n = 1;; ++n) {
            FailAllocation(n);
            const INT_PTR result = run();
            failed += result != IDCANCEL;
            EXPECT_EQ(StillOpen(), before) << n;
            if (AllocationsSoFar() < n) {
                EXPECT_EQ(result, IDCANCEL);
                break;
            }
        }
        EXPECT_GE(failed, 4);
    }
    ClearFaults();
}

}  // namespace
}  // namespace host
