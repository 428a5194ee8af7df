// Windows from making to destroying, their order, places and input.
#include <thread>

#include "tests/platform/user_fixture.h"

namespace host {
namespace {

constexpr DWORD kPlain = WS_POPUP | WS_VISIBLE;
constexpr DWORD kChild = WS_CHILD | WS_VISIBLE;

class WindowsTest : public UserTest {};

TEST_F(WindowsTest, MessagesOfAWindowsLife) {
    Watch({{WM_NCCREATE, "nccreate"},
           {WM_CREATE, "create"},
           {WM_SIZE, "size"},
           {WM_SHOWWINDOW, "show"},
           {WM_SETFOCUS, "focus"},
           {WM_KILLFOCUS, "unfocus"},
           {WM_ACTIVATE, "activate"},
           {WM_PARENTNOTIFY, "notify"},
           {WM_DESTROY, "destroy"},
           {WM_NCDESTROY, "ncdestroy"}});
    const HWND top = Make(u"top", kPlain, {10, 10, 110, 60});
    EXPECT_EQ(Taken(), (Lines{"top:nccreate", "top:create", "top:size", "top:show", "top:activate", "top:focus"}));
    const HWND child = Make(u"child", kChild, {5, 5, 25, 15}, top);
    EXPECT_EQ(Taken(), (Lines{"child:nccreate", "child:create", "child:size", "top:notify", "child:show"}));
    SetFocus(child);
    const HWND owned = Make(u"owned", kPlain, {20, 20, 40, 40}, top);
    EXPECT_EQ(GetWindow(owned, GW_OWNER), top);
    EXPECT_EQ(GetFocus(), owned);
    Taken();
    DestroyWindow(top);
    EXPECT_EQ(Taken(), (Lines{"top:show", "owned:show", "owned:activate", "owned:unfocus", "owned:destroy",
                              "owned:ncdestroy", "top:destroy", "child:destroy", "child:ncdestroy", "top:ncdestroy"}));
    EXPECT_EQ(GetFocus(), nullptr);
    EXPECT_FALSE(IsWindow(owned));
}

// Wherever a window goes in its own messages, the call that sent them notices.
TEST_F(WindowsTest, WindowsThatGoWhileTheyAreAsked) {
    const struct {
        UINT message;
        std::function<void(HWND)> act;
    } cases[] = {
        {WM_CREATE, [](HWND) {}},
        {WM_SIZE, [](HWND window) { MoveWindow(window, 0, 0, 70, 70, TRUE); }},
        {WM_SHOWWINDOW, [](HWND window) { ShowWindow(window, SW_SHOW); }},
        {WM_ACTIVATE, [](HWND window) { SetFocus(window); }},
        {WM_SETFOCUS, [](HWND window) { SetFocus(window); }},
        {WM_ENABLE, [](HWND window) { EnableWindow(window, FALSE); }},
        {WM_ERASEBKGND, [](HWND window) { ShowWindow(window, SW_SHOWNA), UpdateWindow(window); }},
        {WM_NCPAINT, [](HWND window) { ShowWindow(window, SW_SHOWNA), UpdateWindow(window); }},
        {WM_DESTROY, [](HWND window) { DestroyWindow(window); }},
        {WM_NCHITTEST,
         [](HWND window) {
             ShowWindow(window, SW_SHOWNA), WindowFromPoint({15, 15});
         }},
    };
    for (const auto& c : cases) {
        HWND window = nullptr;
        const bool atOnce = c.message == WM_CREATE;
        if (!atOnce) {
            window = Make(u"goes", WS_POPUP | WS_CAPTION, {10, 10, 60, 60});
        }
        bool reached = false;
        SetAnswer(c.message, [&](HWND own, WPARAM, LPARAM) {
            reached = true;
            DestroyWindow(own);
            return LRESULT{0};
        });
        if (atOnce) {
            window = Make(u"goes", WS_POPUP, {10, 10, 60, 60});
            EXPECT_EQ(window, nullptr);
        }
        c.act(window);
        EXPECT_TRUE(reached) << c.message;
        EXPECT_FALSE(IsWindow(window)) << c.message;
        SetAnswer(c.message, [](HWND own, WPARAM, LPARAM) { return static_cast<LRESULT>(IsWindow(own) ? 0 : -1); });
    }
}

TEST_F(WindowsTest, FailuresAndFaults) {
    const HWND window = Make(u"a", WS_POPUP, {0, 0, 10, 10});
    const auto make = [&](const char16_t* name, DWORD style, HWND parent) {
        return CreateWindowExW(0, name, u"", style, 0, 0, 1, 1, parent, nullptr, nullptr, nullptr) != nullptr;
    };
    ExpectErrors({
        {"no class", [&] { return make(u"Nothing", WS_POPUP, nullptr); }, ERROR_CANNOT_FIND_WND_CLASS},
        {"no parent", [&] { return make(kClass, WS_CHILD, nullptr); }, ERROR_TLW_WITH_WSCHILD},
        {"class in use", [&] { return UnregisterClassW(kClass, nullptr) != 0; }, ERROR_CLASS_HAS_WINDOWS},
        {"index", [&] { return SetWindowLongPtrW(window, 1, 0) != 0; }, ERROR_INVALID_INDEX},
        {"stale", [&] { return IsWindow(reinterpret_cast<HWND>(4)) != 0; }, ERROR_INVALID_WINDOW_HANDLE},
    });
    FailAllocation(1);
    EXPECT_FALSE(make(kClass, WS_POPUP, nullptr));
    FailCall("CreateWindowExW", ERROR_ACCESS_DENIED);
    EXPECT_FALSE(make(kClass, WS_POPUP, nullptr));
    BOOL destroyed = TRUE;
    std::thread([&] { destroyed = DestroyWindow(window); }).join();
    EXPECT_FALSE(destroyed);
    EXPECT_EQ(StillOpen(), Lines{"window Recorder \"a\""});
    DestroyWindow(window);
    EXPECT_TRUE(UnregisterClassW(kClass, nullptr));
}

TEST_F(WindowsTest, ProceduresAreReplaced) {
    const HWND window = Make(u"a", WS_POPUP, {0, 0, 10, 10});
    static WNDPROC before = nullptr;
    before = reinterpret_cast<WNDPROC>(SetWindowLongPtrW(
        window, GWLP_WNDPROC,
        reinterpret_cast<LONG_PTR>(+[](HWND own, UINT message, WPARAM wParam, LPARAM lParam) -> LRESULT {
            return message == WM_USER ? 7 : CallWindowProcW(before, own, message, wParam, lParam);
        })));
    EXPECT_EQ(SendMessageW(window, WM_USER, 0, 0), 7);
    EXPECT_EQ(GetWindowTextLengthW(window), 1);
    DestroyWindow(window);
}

TEST_F(WindowsTest, OrderAndPlaces) {
    const HWND top = Make(u"top", WS_POPUP | WS_CAPTION | WS_VISIBLE, {100, 100, 300, 300});
    const HWND low = Make(u"low", kChild, {0, 0, 100, 100}, top, WS_EX_CLIENTEDGE);
    const HWND high = Make(u"high", kChild, {50, 50, 150, 150}, top);
    EXPECT_EQ(GetWindow(top, GW_CHILD), low);
    SetWindowPos(high, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    EXPECT_EQ(GetWindow(top, GW_CHILD), high);
    EXPECT_EQ(GetWindow(high, GW_HWNDNEXT), low);
    RECT client;
    GetClientRect(low, &client);
    EXPECT_EQ(client.right, 96);
    RECT whole = {0, 0, 198, 168};
    AdjustWindowRectEx(&whole, WS_POPUP | WS_CAPTION, FALSE, 0);
    EXPECT_EQ(whole.right - whole.left, 200);
    EXPECT_EQ(whole.bottom - whole.top, 200);
    POINT corner = {0, 0};
    ClientToScreen(high, &corner);
    EXPECT_EQ(corner.x, 151);
    EXPECT_EQ(corner.y, 181);
    const POINT both = {160, 190};
    EXPECT_EQ(WindowFromPoint(both), high);
    EnableWindow(high, FALSE);
    EXPECT_EQ(WindowFromPoint(both), low);
    SetAnswer(WM_NCHITTEST, [&](HWND window, WPARAM wParam, LPARAM lParam) {
        return window == low ? LRESULT{HTTRANSPARENT} : DefWindowProcW(window, WM_NCHITTEST, wParam, lParam);
    });
    EXPECT_EQ(WindowFromPoint(both), top);
    DestroyWindow(top);
}

TEST_F(WindowsTest, KeysBecomeMessages) {
    const HWND top = Make(u"top", kPlain, {0, 0, 100, 100});
    const struct {
        WORD key;
        WORD modifier;
        UINT message;
        WPARAM character;
    } cases[] = {{'A', 0, WM_CHAR, 'a'},        {'A', VK_SHIFT, WM_CHAR, 'A'},  {'1', VK_SHIFT, WM_CHAR, '!'},
                 {'C', VK_CONTROL, WM_CHAR, 3}, {VK_RETURN, 0, WM_CHAR, 13},    {0x65, 0, WM_CHAR, '5'},
                 {0xBC, 0, WM_CHAR, ','},       {'N', VK_MENU, WM_SYSCHAR, 'n'}};
    for (const auto& c : cases) {
        std::vector<WPARAM> got;
        SetAnswer(WM_CHAR, [&](HWND, WPARAM character, LPARAM) { return got.push_back(character), LRESULT{0}; });
        std::vector<WPARAM> gotSystem;
        SetAnswer(WM_SYSCHAR,
                  [&](HWND, WPARAM character, LPARAM) { return gotSystem.push_back(character), LRESULT{0}; });
        Stroke(c.key, c.modifier);
        Drain();
        EXPECT_EQ(c.message == WM_CHAR ? got : gotSystem, std::vector<WPARAM>{c.character}) << c.key;
    }
    std::u16string typed;
    SetAnswer(WM_CHAR, [&](HWND, WPARAM character, LPARAM) {
        typed += static_cast<char16_t>(character);
        return LRESULT{0};
    });
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wScan = u'\u65E5';
    input.ki.dwFlags = KEYEVENTF_UNICODE;
    SendInput(1, &input, sizeof input);
    Drain();
    EXPECT_EQ(typed, u"\u65E5");
    Press(VK_SHIFT);
    EXPECT_GE(GetKeyState(VK_SHIFT), 0);  // not before the message is taken
    Drain();
    EXPECT_LT(GetKeyState(VK_SHIFT), 0);
    Press(VK_SHIFT, KEYEVENTF_KEYUP);
    Drain();
    DestroyWindow(top);
}

TEST_F(WindowsTest, TheMouseFindsItsWindow) {
    const HWND top = Make(u"top", kPlain, {0, 0, 200, 200});
    const HWND child = Make(u"child", kChild, {10, 10, 50, 50}, top);
    const HWND other = Make(u"other", kPlain, {300, 0, 400, 100});
    Watch({{WM_LBUTTONDOWN, "down"},
           {WM_LBUTTONDBLCLK, "double"},
           {WM_LBUTTONUP, "up"},
           {WM_SETCURSOR, "cursor"},
           {WM_MOUSEWHEEL, "wheel"},
           {WM_CONTEXTMENU, "menu"},
           {WM_CLOSE, "close"}});
    const auto taken = [&] {
        Drain();
        Lines lines = Taken();
        std::erase_if(lines, [](const std::string& line) { return line.ends_with(":cursor"); });
        return lines;
    };
    const POINT inChild = {20, 20};
    Mouse(inChild, MOUSEEVENTF_LEFTDOWN | MOUSEEVENTF_LEFTUP);
    Mouse(inChild, MOUSEEVENTF_LEFTDOWN | MOUSEEVENTF_LEFTUP);
    Mouse(inChild, MOUSEEVENTF_LEFTDOWN | MOUSEEVENTF_LEFTUP);
    EXPECT_EQ(taken(), (Lines{"child:down", "child:up", "child:double", "child:up", "child:down", "child:up"}));
    EXPECT_EQ(GetActiveWindow(), top);
    Mouse({21, 20}, 0);
    Drain();
    EXPECT_EQ(Taken(), (Lines{"child:cursor", "top:cursor"}));
    Mouse(inChild, MOUSEEVENTF_RIGHTDOWN | MOUSEEVENTF_RIGHTUP);
    Mouse(inChild, MOUSEEVENTF_WHEEL, -WHEEL_DELTA);
    EXPECT_EQ(taken(), (Lines{"child:menu", "top:menu", "child:wheel", "top:wheel"}));
    SetCapture(child);
    Mouse({350, 50}, MOUSEEVENTF_LEFTUP);
    EXPECT_EQ(taken(), Lines{"child:up"});
    ReleaseCapture();
    EnableWindow(child, FALSE);
    EnableWindow(other, FALSE);
    Mouse(inChild, MOUSEEVENTF_LEFTDOWN);
    Mouse({350, 50}, MOUSEEVENTF_LEFTDOWN);
    EXPECT_EQ(taken(), Lines{"top:down"});
    SetWindowLongW(top, GWL_STYLE, static_cast<LONG>(kPlain | WS_CAPTION | WS_SYSMENU));
    SetWindowPos(top, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_FRAMECHANGED);
    Mouse({190, 10}, MOUSEEVENTF_LEFTDOWN | MOUSEEVENTF_LEFTUP);
    EXPECT_EQ(taken(), Lines{"top:close"});
    EXPECT_FALSE(IsWindow(top));
    DestroyWindow(other);
}

TEST_F(WindowsTest, QueueOrderAndTimers) {
    const HWND top = Make(u"top", kPlain, {0, 0, 100, 100});
    SetTimer(top, 1, 200, nullptr);
    SetTimer(top, 2, 100, nullptr);
    PostQuitMessage(3);
    Press('A');
    PostMessageW(top, WM_USER, 0, 0);
    std::vector<UINT> order;
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0)) {
        order.push_back(message.message);
    }
    EXPECT_EQ(message.wParam, 3u);
    EXPECT_EQ(order, (std::vector<UINT>{WM_USER, WM_KEYDOWN}));
    const DWORD start = GetTickCount();
    for (const WPARAM id : {2, 1, 2}) {
        do {
            GetMessageW(&message, nullptr, 0, 0);
            DispatchMessageW(&message);
        } while (message.message == WM_PAINT);
        EXPECT_EQ(message.message, static_cast<UINT>(WM_TIMER));
        EXPECT_EQ(message.wParam, id);
    }
    EXPECT_EQ(GetTickCount() - start, 200u);
    DestroyWindow(top);
    EXPECT_EQ(UnansweredWaits(), 0u);
    EXPECT_FALSE(GetMessageW(&message, nullptr, 0, 0));
    EXPECT_EQ(UnansweredWaits(), 1u);
}

TEST_F(WindowsTest, Broadcasts) {
    SendMessageTimeoutW(HWND_BROADCAST, WM_DEVMODECHANGE, 0, reinterpret_cast<LPARAM>(u"Printer"), SMTO_ABORTIFHUNG,
                        1000, nullptr);
    const std::vector<Broadcast> sent = Broadcasts();
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].message, static_cast<UINT>(WM_DEVMODECHANGE));
    EXPECT_EQ(sent[0].text, u"Printer");
}

}  // namespace
}  // namespace host
