#include "tests/contract/user.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <utility>

#include "tests/contract/transcript.h"

namespace contract {
namespace {

// How often a program may wait for input after the last step: first it is let alone, then asked to close its windows,
// then made to.
constexpr int kPatience = 5;
constexpr int kAsking = 20;
constexpr int kForcing = 40;

// Buttons of property sheets by their published ids.
constexpr std::pair<int, const char*> kSheetButtons[] = {
    {IDOK, "OK"}, {IDCANCEL, "Cancel"}, {0x3021, "Apply"}, {9, "Help"}};

constexpr WCHAR kDialogClass[] = TEXT("#32770");

HWND PageOf(HWND dialog) {
    return reinterpret_cast<HWND>(SendMessageW(dialog, PSM_GETCURRENTPAGEHWND, 0, 0));
}

std::string ItemsOf(HWND listBox) {
    std::string items;
    const LRESULT count = SendMessageW(listBox, LB_GETCOUNT, 0, 0);
    for (WPARAM i = 0; i < static_cast<WPARAM>(count); ++i) {
        WideText item(static_cast<size_t>(SendMessageW(listBox, LB_GETTEXTLEN, i, 0)) + 1, 0);
        SendMessageW(listBox, LB_GETTEXT, i, reinterpret_cast<LPARAM>(item.data()));
        items += " [" + Printable(item.c_str()) + ']';
    }
    return items;
}

std::string DescribeControl(HWND window) {
    const WideText windowClass = ClassOf(window);
    std::string line = std::to_string(GetDlgCtrlID(window)) + ' ' + Printable(windowClass);
    const LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE);
    line += (style & WS_VISIBLE) == 0 ? " hidden" : "";
    line += (style & WS_DISABLED) != 0 ? " disabled" : "";
    line += GetFocus() == window ? " focus" : "";
    return line;
}

std::string DescribeContent(HWND window) {
    if (ClassOf(window) == TEXT("ListBox")) {
        return ItemsOf(window) + " selected " + std::to_string(SendMessageW(window, LB_GETCURSEL, 0, 0));
    }
    return " \"" + Printable(TextOf(window)) + '"';
}

// One run of a program with its user.
class Script {
  public:
    explicit Script(std::vector<Step> steps) : steps_(std::move(steps)) {}

    void OnWait() {
        // A dialog is shown when there is nothing else to do, which may be after the first wait.
        if (FrontDialog() == nullptr && waits_ < kPatience) {
            ++waits_;
            return;
        }
        if (next_ == steps_.size()) {
            if (++waits_ > kPatience) {
                Close();
            }
            return;
        }
        waits_ = 0;
        const Step& step = steps_[next_++];
        try {
            step();
        } catch (const std::exception& error) {
            // It must not pass through the program's loop.
            ADD_FAILURE() << "step " << next_ << ": " << error.what();
            next_ = steps_.size();
        }
    }

    void CheckDone() const { EXPECT_EQ(next_, steps_.size()) << "the program ended before the last step"; }

  private:
    void Close() {
        const HWND dialog = FrontDialog();
        if (waits_ == kPatience + 1) {
            ADD_FAILURE() << "the program still waits for input, in \"" << Printable(TextOf(dialog)) << '"';
        }
        if (waits_ > kForcing) {
            std::cerr << "a window can't be closed" << std::endl;
            std::abort();
        }
        if (dialog == nullptr) {
            PostQuitMessage(1);
        } else if (PageOf(dialog) != nullptr) {
            PostMessageW(dialog, PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
        } else if (waits_ < kAsking) {
            PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
        } else {
            EndDialog(dialog, -1);
        }
    }

    const std::vector<Step> steps_;
    size_t next_ = 0;
    int waits_ = 0;  // since the last step that was taken
};

INPUT KeyInput(WORD key, bool up) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
    return input;
}

}  // namespace

void RunWithUser(ContractEnvironment& environment, std::vector<Step> steps, const std::function<void()>& program) {
    Script script(std::move(steps));
    environment.SetUser([&script] { script.OnWait(); });
    program();
    environment.SetUser(nullptr);
    script.CheckDone();
}

HWND FrontDialog() {
    HWND front = nullptr;
    const auto visit = [](HWND window, LPARAM found) -> BOOL {
        if (!IsWindowVisible(window) || !IsWindowEnabled(window) || ClassOf(window) != kDialogClass) {
            return TRUE;
        }
        *reinterpret_cast<HWND*>(found) = window;
        return FALSE;
    };
    EnumThreadWindows(GetCurrentThreadId(), visit, reinterpret_cast<LPARAM>(&front));
    return front;
}

HWND FrontPage() {
    const HWND dialog = FrontDialog();
    const HWND page = dialog != nullptr ? PageOf(dialog) : nullptr;
    return page != nullptr ? page : dialog;
}

HWND Control(int id) {
    const HWND page = FrontPage();
    const HWND control = page != nullptr ? GetDlgItem(page, id) : nullptr;
    EXPECT_TRUE(control != nullptr) << "no control " << id;
    return control;
}

WideText ClassOf(HWND window) {
    WCHAR name[64] = {};
    GetClassNameW(window, name, static_cast<int>(std::size(name)));
    return name;
}

WORD AccessKeyOf(const WideText& text) {
    const size_t mark = text.find('&');
    if (mark == WideText::npos || mark + 1 == text.size()) {
        return 0;
    }
    const WCHAR key = text[mark + 1];
    return static_cast<WORD>(key >= 'a' && key <= 'z' ? key - ('a' - 'A') : key);
}

WideText TextOf(HWND window) {
    WideText text(512, 0);
    text.resize(static_cast<size_t>(
        window != nullptr ? GetWindowTextW(window, text.data(), static_cast<int>(text.size())) : 0));
    return text;
}

int FocusedControl() {
    const HWND focus = GetFocus();
    return focus != nullptr ? GetDlgCtrlID(focus) : 0;
}

void PressButton(int button) {
    if (const HWND control = Control(button)) {
        SendMessageW(control, BM_CLICK, 0, 0);
    }
}

void SelectInList(int listBox, int item) {
    if (const HWND control = Control(listBox)) {
        EXPECT_EQ(SendMessageW(control, LB_SETCURSEL, static_cast<WPARAM>(item), 0), item);
        SendMessageW(FrontPage(), WM_COMMAND, (WPARAM{LBN_SELCHANGE} << 16) | static_cast<WPARAM>(listBox),
                     reinterpret_cast<LPARAM>(control));
    }
}

void PressInSheet(int button) {
    if (const HWND dialog = FrontDialog()) {
        SendMessageW(dialog, PSM_PRESSBUTTON, static_cast<WPARAM>(button), 0);
    }
}

void PressKey(WORD key, std::initializer_list<WORD> modifiers) {
    std::vector<INPUT> inputs;
    for (const WORD modifier : modifiers) {
        inputs.push_back(KeyInput(modifier, false));
    }
    inputs.push_back(KeyInput(key, false));
    inputs.push_back(KeyInput(key, true));
    for (const WORD modifier : modifiers) {
        inputs.push_back(KeyInput(modifier, true));
    }
    EXPECT_EQ(SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT)), inputs.size());
}

void Click(POINT screen, bool right) {
    const DWORD down = right ? MOUSEEVENTF_RIGHTDOWN : MOUSEEVENTF_LEFTDOWN;
    const DWORD up = right ? MOUSEEVENTF_RIGHTUP : MOUSEEVENTF_LEFTUP;
    const DWORD flags[] = {MOUSEEVENTF_MOVE, down, up};
    constexpr LONG kWholeScreen = 65536;
    INPUT inputs[std::size(flags)] = {};
    for (size_t i = 0; i < std::size(flags); ++i) {
        inputs[i].type = INPUT_MOUSE;
        inputs[i].mi.dwFlags = flags[i] | MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_MOVE;
        // The middle of the pixel, so that rounding keeps it.
        inputs[i].mi.dx = (screen.x * kWholeScreen + kWholeScreen / 2) / GetSystemMetrics(SM_CXSCREEN);
        inputs[i].mi.dy = (screen.y * kWholeScreen + kWholeScreen / 2) / GetSystemMetrics(SM_CYSCREEN);
    }
    EXPECT_EQ(SendInput(static_cast<UINT>(std::size(inputs)), inputs, sizeof(INPUT)), std::size(inputs));
}

POINT MiddleOf(HWND window) {
    RECT rect = {};
    EXPECT_TRUE(GetWindowRect(window, &rect));
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

Step Describe(const std::string& title, const std::vector<int>& hostsOwn) {
    return [title, hostsOwn] {
        const HWND dialog = FrontDialog();
        const HWND page = FrontPage();
        // What a sheet is called is its host's.
        Record(title + (page == dialog ? ": \"" + Printable(TextOf(dialog)) + '"' : ":"));
        for (HWND child = page != nullptr ? GetWindow(page, GW_CHILD) : nullptr; child != nullptr;
             child = GetWindow(child, GW_HWNDNEXT)) {
            const bool isHostsOwn = std::ranges::find(hostsOwn, GetDlgCtrlID(child)) != hostsOwn.end();
            Record("  " + DescribeControl(child) + (isHostsOwn ? "" : DescribeContent(child)));
        }
        if (page == dialog) {
            return;
        }
        std::string buttons = "  sheet:";
        for (const auto& [id, name] : kSheetButtons) {
            const HWND button = GetDlgItem(dialog, id);
            buttons += button != nullptr && IsWindowEnabled(button) ? std::string(" ") + name : "";
        }
        Record(buttons);
    };
}

Step TakePicture(ContractEnvironment& environment, const std::string& name) {
    return [&environment, name] {
        const std::filesystem::path folder = "pictures";
        std::filesystem::create_directories(folder);
        environment.SavePicture(FrontDialog(), folder / (name + ".png"));
    };
}

}  // namespace contract
