// Windows whose messages are written down, and a user's hands.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/platform/kernel_fixture.h"

namespace host {

class UserTest : public KernelTest {
  protected:
    UserTest() {
        test_ = this;
        WNDCLASSW windowClass = {};
        windowClass.style = CS_DBLCLKS;
        windowClass.lpfnWndProc = Proc;
        windowClass.cbWndExtra = 8;
        windowClass.lpszClassName = kClass;
        RegisterClassW(&windowClass);
    }
    ~UserTest() override { test_ = nullptr; }

    void TearDown() override {
        LoadDialogs(false);
        KernelTest::TearDown();
    }

    static constexpr const char16_t* kClass = u"Recorder";
    using Answer = std::function<LRESULT(HWND, WPARAM, LPARAM)>;

    HWND Make(const char16_t* name, DWORD style, RECT place, HWND parent = nullptr, DWORD exStyle = 0) {
        return CreateWindowExW(exStyle, kClass, name, style, place.left, place.top, place.right - place.left,
                               place.bottom - place.top, parent, nullptr, nullptr, nullptr);
    }

    // "name:message" of the messages that are watched, since it was last asked.
    Lines Taken() {
        Lines taken;
        taken.swap(log_);
        return taken;
    }
    void Watch(std::map<UINT, const char*> names) { watched_ = std::move(names); }
    // Instead of DefWindowProcW.
    void SetAnswer(UINT message, Answer answer) { answers_[message] = std::move(answer); }

    static void Press(WORD key, DWORD flags = 0) {
        INPUT input = {};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = key;
        input.ki.dwFlags = flags;
        SendInput(1, &input, sizeof input);
    }
    // With the modifier held, where there is one.
    static void Stroke(WORD key, WORD modifier = 0) {
        if (modifier != 0) {
            Press(modifier);
        }
        Press(key);
        Press(key, KEYEVENTF_KEYUP);
        if (modifier != 0) {
            Press(modifier, KEYEVENTF_KEYUP);
        }
    }
    static void Mouse(POINT at, DWORD flags, int wheel = 0) {
        INPUT input = {};
        input.type = INPUT_MOUSE;
        input.mi.dwFlags = flags | MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
        input.mi.dx = (at.x * 65536 + 65535) / GetSystemMetrics(SM_CXSCREEN);
        input.mi.dy = (at.y * 65536 + 65535) / GetSystemMetrics(SM_CYSCREEN);
        input.mi.mouseData = static_cast<DWORD>(wheel);
        SendInput(1, &input, sizeof input);
    }
    // Whatever waits is dispatched; nothing is waited for.
    static void Drain(HWND dialog = nullptr) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (dialog == nullptr || !IsDialogMessageW(dialog, &message)) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
        }
    }

    // The module with the dialogs 20 to 23.
    HMODULE Dialogs() {
        LoadDialogs(true);
        return dialogs_;
    }

  private:
    void LoadDialogs(bool wanted) {
        if (wanted && dialogs_ == nullptr) {
            std::filesystem::copy_file(VELMORA_PROBE_DIALOGS, machine_->Drive() / "dialogs.dll");
            dialogs_ = LoadLibraryW(u"C:\\dialogs.dll");
        } else if (!wanted && dialogs_ != nullptr) {
            FreeLibrary(dialogs_);
            dialogs_ = nullptr;
        }
    }

    static LRESULT CALLBACK Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (test_ == nullptr) {
            return DefWindowProcW(window, message, wParam, lParam);
        }
        const auto name = test_->watched_.find(message);
        if (name != test_->watched_.end()) {
            WCHAR text[32] = {};
            if (message == WM_NCCREATE) {
                std::u16string_view(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpszName).copy(text, 31);
            } else {
                DefWindowProcW(window, WM_GETTEXT, 32, reinterpret_cast<LPARAM>(text));
            }
            test_->log_.push_back(Shown(text) + ":" + name->second);
        }
        const auto answer = test_->answers_.find(message);
        return answer != test_->answers_.end() ? answer->second(window, wParam, lParam)
                                               : DefWindowProcW(window, message, wParam, lParam);
    }

    static inline UserTest* test_ = nullptr;
    Lines log_;
    std::map<UINT, const char*> watched_;
    std::map<UINT, Answer> answers_;
    HMODULE dialogs_ = nullptr;
};

}  // namespace host
