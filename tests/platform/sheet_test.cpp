// Property sheets: what pages are told, what they and the user can ask of the sheet.
#include <commctrl.h>
#include <prsht.h>

#include <deque>
#include <map>

#include "tests/platform/kernel_fixture.h"

namespace host {
namespace {

constexpr int kApply = 0x3021;
constexpr int kHelp = 9;
constexpr int kEdit = 1001;
constexpr int kCheck = 1002;

class SheetTest;

// What a page answers to a notification, and what it then does.
struct PageScript {
    std::string name;
    std::map<UINT, LRESULT> answers = {};
    HWND window = nullptr;
};

class SheetTest : public KernelTest {
  protected:
    void SetUp() override {
        test_ = this;
        std::filesystem::copy_file(VELMORA_PROBE_PAGES, machine_->Drive() / "pages.dll");
        module_ = LoadLibraryW(u"C:\\pages.dll");
        ASSERT_NE(module_, nullptr);
        machine_->SetUser([this] {
            if (!steps_.empty()) {
                const auto step = steps_.front();
                steps_.pop_front();
                step();
            }
        });
    }
    void TearDown() override {
        EXPECT_TRUE(steps_.empty()) << steps_.size() << " steps left";
        EXPECT_TRUE(FreeLibrary(module_));
        KernelTest::TearDown();
    }

    HPROPSHEETPAGE MakePage(PageScript* script, int dialog, DWORD flags = PSP_DEFAULT, DWORD size = 96,
                            LPCWSTR title = nullptr) {
        PROPSHEETPAGEW page = {};
        page.dwSize = size;
        page.dwFlags = flags;
        page.hInstance = module_;
        page.pszTemplate = MAKEINTRESOURCEW(dialog);
        page.pszTitle = title;
        page.pfnDlgProc = PageProc;
        page.lParam = reinterpret_cast<LPARAM>(script);
        return CreatePropertySheetPageW(&page);
    }

    INT_PTR Show(std::vector<HPROPSHEETPAGE> pages, DWORD flags = PSH_DEFAULT, UINT start = 0, HWND owner = nullptr) {
        PROPSHEETHEADERW header = {};
        header.dwSize = sizeof(header);
        header.dwFlags = flags;
        header.hwndParent = owner;
        header.pszCaption = u"Probe";
        header.nPages = static_cast<UINT>(pages.size());
        header.nStartPage = start;
        header.phpage = pages.data();
        return PropertySheetW(&header);
    }

    void Then(std::function<void()> step) { steps_.push_back(std::move(step)); }
    void ThenPress(WPARAM button) {
        Then([this, button] { SendMessageW(Sheet(), PSM_PRESSBUTTON, button, 0); });
    }
    void ThenStroke(WORD key, WORD modifier = 0) {
        Then([key, modifier] {
            for (const auto& [pressed, flags] :
                 {std::pair<WORD, DWORD>{modifier, 0}, {key, 0}, {key, KEYEVENTF_KEYUP}, {modifier, KEYEVENTF_KEYUP}}) {
                INPUT input = {};
                input.type = INPUT_KEYBOARD;
                input.ki.wVk = pressed;
                input.ki.dwFlags = flags;
                if (pressed != 0) {
                    SendInput(1, &input, sizeof(input));
                }
            }
        });
    }

    HWND Sheet() const { return GetActiveWindow(); }
    HWND Control(int id) const { return GetDlgItem(Sheet(), id); }
    Lines Taken() { return std::exchange(log_, {}); }

    static INT_PTR CALLBACK PageProc(HWND page, UINT message, WPARAM, LPARAM lParam) {
        if (message == WM_INITDIALOG) {
            auto* const script = reinterpret_cast<PageScript*>(reinterpret_cast<LPPROPSHEETPAGEW>(lParam)->lParam);
            SetWindowLongPtrW(page, DWLP_USER, reinterpret_cast<LONG_PTR>(script));
            script->window = page;
            test_->log_.push_back(script->name + ":made");
            return FALSE;
        }
        auto* const script = reinterpret_cast<PageScript*>(GetWindowLongPtrW(page, DWLP_USER));
        if (message == WM_DESTROY) {
            test_->log_.push_back(script->name + ":gone");
        }
        if (message != WM_NOTIFY) {
            return FALSE;
        }
        const auto& notification = *reinterpret_cast<const PSHNOTIFY*>(lParam);
        static const std::map<UINT, const char*> kNames = {{PSN_SETACTIVE, "active"},  {PSN_KILLACTIVE, "leave"},
                                                           {PSN_APPLY, "apply"},       {PSN_RESET, "reset"},
                                                           {PSN_QUERYCANCEL, "query"}, {PSN_HELP, "help"}};
        const auto name = kNames.find(notification.hdr.code);
        if (name == kNames.end()) {
            return FALSE;
        }
        test_->log_.push_back(script->name + ":" + name->second + (notification.lParam ? "+" : ""));
        const auto answer = script->answers.find(notification.hdr.code);
        SetWindowLongPtrW(page, DWLP_MSGRESULT, answer != script->answers.end() ? answer->second : 0);
        return TRUE;
    }

    static inline SheetTest* test_ = nullptr;
    HMODULE module_ = nullptr;
    Lines log_;
    std::deque<std::function<void()>> steps_;
};

TEST_F(SheetTest, PagesAreToldWhatHappensInOrder) {
    PageScript a{"a"};
    PageScript b{"b"};
    PageScript c{"c"};
    const auto pages = [&] { return std::vector{MakePage(&a, 100), MakePage(&b, 101), MakePage(&c, 101)}; };
    const auto select = [this](WPARAM index) { Then([=, this] { SendMessageW(Sheet(), PSM_SETCURSEL, index, 0); }); };
    const Lines opened = {"a:made", "a:active"};
    const struct {
        const char* what;
        std::function<void()> steps;
        INT_PTR result;
        Lines told;  // behind what they are told at opening
    } cases[] = {
        {"ok", [&] { ThenPress(PSBTN_OK); }, 1, {"a:leave", "a:apply+", "a:gone"}},
        {"cancel", [&] { ThenPress(PSBTN_CANCEL); }, 0, {"a:query", "a:reset", "a:gone"}},
        {"close",
         [&] { Then([this] { SendMessageW(Sheet(), WM_CLOSE, 0, 0); }); },
         0,
         {"a:query", "a:reset+", "a:gone"}},
        {"another page is made when it is wanted",
         [&] { select(1), ThenPress(PSBTN_OK); },
         1,
         {"a:leave", "b:made", "b:active", "b:leave", "a:apply+", "b:apply+", "a:gone", "b:gone"}},
        {"apply and go on",
         [&] { ThenPress(PSBTN_APPLYNOW), ThenPress(PSBTN_CANCEL); },
         0,
         {"a:leave", "a:apply", "a:active", "a:query", "a:reset", "a:gone"}},
        {"keyboard",
         [&] { ThenStroke(VK_TAB, VK_CONTROL), ThenStroke(VK_PRIOR, VK_CONTROL), ThenStroke(VK_RETURN); },
         1,
         {"a:leave", "b:made", "b:active", "b:leave", "a:active", "a:leave", "a:apply+", "b:apply+", "a:gone",
          "b:gone"}},
        {"escape", [&] { ThenStroke(VK_ESCAPE); }, 0, {"a:query", "a:reset", "a:gone"}},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        row.steps();
        EXPECT_EQ(Show(pages()), row.result);
        Lines told = Taken();
        std::sort(told.end() -
                      static_cast<ptrdiff_t>(std::count_if(
                          told.begin(), told.end(), [](const std::string& line) { return line.ends_with(":gone"); })),
                  told.end());
        Lines expected = opened;
        expected.insert(expected.end(), row.told.begin(), row.told.end());
        EXPECT_EQ(told, expected);
    }
}

TEST_F(SheetTest, PagesHaveASay) {
    PageScript a{"a"};
    PageScript b{"b"};
    // `script` answers so while `press` is pressed; then the sheet is cancelled.
    const struct {
        const char* what;
        PageScript* script;
        UINT code;
        LRESULT answer;
        WPARAM press;  // 0: the second page is selected
        HWND* shown;   // afterwards
        bool isOpen;
    } cases[] = {
        {"doesn't leave", &a, PSN_KILLACTIVE, TRUE, 0, &a.window, true},
        {"doesn't leave for OK", &a, PSN_KILLACTIVE, TRUE, PSBTN_OK, &a.window, true},
        {"asks for the next", &b, PSN_SETACTIVE, -1, 0, &a.window, true},
        {"refuses OK", &a, PSN_APPLY, PSNRET_INVALID_NOCHANGEPAGE, PSBTN_OK, &b.window, true},
        {"refuses OK and comes to the front", &a, PSN_APPLY, PSNRET_INVALID, PSBTN_OK, &a.window, true},
        {"stays open", &b, PSN_QUERYCANCEL, TRUE, PSBTN_CANCEL, &b.window, true},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        const bool startsBehind = row.shown == &b.window || row.code == PSN_APPLY;
        Then([&, startsBehind] {
            if (startsBehind && row.press != 0) {
                SendMessageW(Sheet(), PSM_SETCURSEL, 1, 0);
            }
            row.script->answers[row.code] = row.answer;
            if (row.press != 0) {
                SendMessageW(Sheet(), PSM_PRESSBUTTON, row.press, 0);
            } else {
                SendMessageW(Sheet(), PSM_SETCURSEL, 1, 0);
            }
            row.script->answers.clear();
        });
        Then([&] {
            const HWND shown = reinterpret_cast<HWND>(SendMessageW(Sheet(), PSM_GETCURRENTPAGEHWND, 0, 0));
            EXPECT_EQ(shown, *row.shown);
            EXPECT_TRUE(IsWindowVisible(a.window) != IsWindowVisible(b.window) || !IsWindow(b.window));
            EXPECT_TRUE(IsWindowVisible(shown));
            SendMessageW(Sheet(), PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
        });
        EXPECT_EQ(Show({MakePage(&a, 100), MakePage(&b, 101)}), 0);
        b.window = nullptr;
    }
}

TEST_F(SheetTest, ButtonsFollowThePages) {
    PageScript a{"a"};
    PageScript b{"b"};
    const auto mark = [this](UINT message, const PageScript& page) {
        SendMessageW(Sheet(), message, reinterpret_cast<WPARAM>(page.window), 0);
        return IsWindowEnabled(Control(kApply));
    };
    Then([&] {
        EXPECT_EQ(GetFocus(), GetDlgItem(a.window, kEdit));
        EXPECT_FALSE(IsWindowEnabled(Control(kApply)));
        EXPECT_TRUE(IsWindowEnabled(Control(kHelp)));
        SendMessageW(Control(kHelp), BM_CLICK, 0, 0);
        SendMessageW(Sheet(), PSM_SETCURSEL, 1, 0);
        EXPECT_FALSE(IsWindowEnabled(Control(kHelp)));  // the page has none
        EXPECT_TRUE(mark(PSM_CHANGED, a));
        EXPECT_TRUE(mark(PSM_CHANGED, b));
        EXPECT_TRUE(mark(PSM_UNCHANGED, a));
        EXPECT_FALSE(mark(PSM_UNCHANGED, b));
        EXPECT_TRUE(mark(PSM_CHANGED, a));
        SendMessageW(Control(kApply), BM_CLICK, 0, 0);
        EXPECT_FALSE(IsWindowEnabled(Control(kApply)));
        SendMessageW(Sheet(), PSM_SETCURSEL, 0, 0);
    });
    ThenStroke('C', VK_MENU);  // of the page
    Then([&] { EXPECT_EQ(IsDlgButtonChecked(a.window, kCheck), UINT{BST_CHECKED}); });
    ThenPress(PSBTN_OK);
    EXPECT_EQ(Show({MakePage(&a, 100, PSP_HASHELP), MakePage(&b, 101)}), 1);
    EXPECT_EQ(std::count(log_.begin(), log_.end(), "a:help"), 1);
}

TEST_F(SheetTest, TitlesAndSizes) {
    PageScript a{"a"};
    const HWND owner = CreateWindowExW(0, u"Static", u"Owner", WS_POPUP | WS_VISIBLE, 300, 200, 900, 700, nullptr,
                                       nullptr, nullptr, nullptr);
    Then([&] {
        WCHAR text[40];
        GetWindowTextW(Sheet(), text, 40);
        EXPECT_EQ(std::u16string(text), u"Probe Properties");
        const HWND tabs = reinterpret_cast<HWND>(SendMessageW(Sheet(), PSM_GETTABCONTROL, 0, 0));
        const char16_t* titles[] = {u"First page", u"Titled", u"Given"};
        for (WPARAM i = 0; i < std::size(titles); ++i) {
            TCITEMW item = {};
            item.mask = TCIF_TEXT;
            item.pszText = text;
            item.cchTextMax = 40;
            EXPECT_TRUE(SendMessageW(tabs, TCM_GETITEMW, i, reinterpret_cast<LPARAM>(&item)));
            EXPECT_EQ(std::u16string(text), titles[i]);
        }
        // As large as the largest page, inside the tabs, which are inside the sheet.
        RECT page, frame, whole, units = {0, 0, 252, 120};
        MapDialogRect(Sheet(), &units);
        GetWindowRect(a.window, &page);
        GetWindowRect(tabs, &frame);
        GetWindowRect(Sheet(), &whole);
        EXPECT_EQ(page.right - page.left, units.right);
        EXPECT_EQ(page.bottom - page.top, units.bottom);
        RECT both;
        IntersectRect(&both, &page, &frame);
        EXPECT_TRUE(EqualRect(&both, &page));
        IntersectRect(&both, &frame, &whole);
        EXPECT_TRUE(EqualRect(&both, &frame));
        EXPECT_EQ(Control(kApply), nullptr);
        EXPECT_FALSE(IsWindowEnabled(owner));
        SendMessageW(Sheet(), PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
    });
    std::u16string title = u"Given";
    const HPROPSHEETPAGE titled = MakePage(&a, 101, PSP_USETITLE, PROPSHEETPAGEW_V1_SIZE, title.data());
    title = u"Other";  // the page has its own copy
    EXPECT_EQ(Show({MakePage(&a, 100), MakePage(&a, 101, PSP_USETITLE, 88, MAKEINTRESOURCEW(7)), titled},
                   PSH_PROPTITLE | PSH_NOAPPLYNOW, 0, owner),
              0);
    EXPECT_TRUE(IsWindowEnabled(owner));
    DestroyWindow(owner);
}

TEST_F(SheetTest, WhatCannotBeShownIsLeftOut) {
    PageScript a{"a"};
    EXPECT_EQ(Show({}), -1);
    EXPECT_EQ(Show({MakePage(&a, 99)}), -1);  // no such dialog
    EXPECT_EQ(Show({nullptr, reinterpret_cast<HPROPSHEETPAGE>(4)}), -1);
    ThenPress(PSBTN_OK);
    EXPECT_EQ(Show({MakePage(&a, 99), MakePage(&a, 101)}, PSH_DEFAULT, 7), 1);
    // A page whose window can't be made loses its tab.
    Then([&] {
        FailCall("CreateWindowExW", ERROR_OUTOFMEMORY);
        EXPECT_TRUE(SendMessageW(Sheet(), PSM_SETCURSEL, 0, 0));
        EXPECT_EQ(SendMessageW(Control(0x3020), TCM_GETITEMCOUNT, 0, 0), 1);
        SendMessageW(Sheet(), PSM_PRESSBUTTON, PSBTN_OK, 0);
    });
    EXPECT_EQ(Show({MakePage(&a, 100), MakePage(&a, 101)}, PSH_DEFAULT, 1), 1);
    FailCall("PropertySheetW", ERROR_OUTOFMEMORY);
    const HPROPSHEETPAGE kept = MakePage(&a, 100);
    EXPECT_EQ(Show({kept}), -1);
    EXPECT_EQ(StillOpen().back(), "property page without a title");
    EXPECT_TRUE(DestroyPropertySheetPage(kept));
    EXPECT_FALSE(DestroyPropertySheetPage(kept));
    EXPECT_EQ(MakePage(&a, 100, PSP_DEFAULT, 80), nullptr);
    FailAllocation(1);
    EXPECT_EQ(FailureOf([&] { return MakePage(&a, 100); }), ERROR_OUTOFMEMORY);
}

TEST_F(SheetTest, UnsupportedRequestsFailLoudly) {
    PageScript a{"a"};
    const CallRow cases[] = {
        {"a property page with flags", [&] { return MakePage(&a, 100, PSP_USECALLBACK); }},
        {"PropertySheetW with flags", [&] { return Show({}, PSH_MODELESS) >= 0; }},
    };
    for (const CallRow& row : cases) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(FailureOf(row.call), ERROR_NOT_SUPPORTED) << row.what;
        EXPECT_NE(testing::internal::GetCapturedStderr().find(row.what), std::string::npos) << row.what;
    }
    Then([this] {
        constexpr UINT kAddPage = WM_USER + 103;
        testing::internal::CaptureStderr();
        SendMessageW(Sheet(), kAddPage, 0, 0);
        EXPECT_NE(testing::internal::GetCapturedStderr().find("WM_USER + 103"), std::string::npos);
        SendMessageW(Sheet(), PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
    });
    EXPECT_EQ(Show({MakePage(&a, 100)}), 0);
}

TEST_F(SheetTest, ASheetThatNobodyUsesEnds) {
    PageScript a{"a"};
    machine_->SetUser(nullptr);
    testing::internal::CaptureStderr();
    EXPECT_EQ(Show({MakePage(&a, 100)}), -1);
    EXPECT_FALSE(testing::internal::GetCapturedStderr().empty());
    // Nor one whose window somebody destroys.
    machine_->SetUser([this] { DestroyWindow(Sheet()); });
    EXPECT_EQ(Show({MakePage(&a, 100)}), -1);
}

}  // namespace
}  // namespace host
