// Messages on their way: sent, posted, dispatched.
#include <windows.h>

#include "platform/host.h"
#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/user/windows.h"

namespace host {
namespace {

struct Noted {
    uint64_t machine = 0;
    std::vector<Broadcast> broadcasts;
};

Noted& TheNoted() {
    static Noted& noted = *new Noted;
    if (noted.machine != ThisThread().machine) {
        noted = {ThisThread().machine, {}};
    }
    return noted;
}

void NoteBroadcast(UINT message, WPARAM wParam, LPARAM lParam) {
    const MachineLock lock;
    const auto* const text = message == WM_DEVMODECHANGE ? reinterpret_cast<LPCWSTR>(lParam) : nullptr;
    TheNoted().broadcasts.push_back({message, wParam, text != nullptr ? text : u""});
}

// To every top-level window of the thread.
void SendToAll(UINT message, WPARAM wParam, LPARAM lParam) {
    NoteBroadcast(message, wParam, lParam);
    for (const HWND window : std::vector<HWND>(ThisThread().topLevels)) {
        if (IsWindow(window)) {
            Send(window, message, wParam, lParam);
        }
    }
}

}  // namespace

LRESULT Send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const Window* const found = FindWindowObject(window);
    if (found == nullptr || found->proc == nullptr) {
        return 0;
    }
    return found->proc(window, message, wParam, lParam);
}

std::vector<Broadcast> Broadcasts() {
    const MachineLock lock;
    return TheNoted().broadcasts;
}

}  // namespace host

using namespace host;

extern "C" {

LRESULT WINAPI SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (window == HWND_BROADCAST) {
        SendToAll(message, wParam, lParam);
        return TRUE;
    }
    return Send(window, message, wParam, lParam);
}

LRESULT WINAPI SendMessageTimeoutW(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT, UINT,
                                   DWORD_PTR* result) {
    if (FaultAsked("SendMessageTimeoutW") || (window != HWND_BROADCAST && FindWindowObject(window) == nullptr)) {
        return FALSE;
    }
    const LRESULT answer = SendMessageW(window, message, wParam, lParam);
    if (result != nullptr) {
        *result = static_cast<DWORD_PTR>(answer);
    }
    return TRUE;
}

BOOL WINAPI PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (FaultAsked("PostMessageW")) {
        return FALSE;
    }
    if (window == HWND_BROADCAST) {
        return FailUnsupported("PostMessageW to HWND_BROADCAST");
    }
    if (window != nullptr && FindWindowObject(window) == nullptr) {
        return FALSE;
    }
    ThreadWindows& thread = ThisThread();
    thread.posted.push_back({window, message, wParam, lParam, GetTickCount(), thread.cursor});
    ++thread.changes;
    return TRUE;
}

VOID WINAPI PostQuitMessage(int exitCode) {
    ThisThread().isQuitting = true;
    ThisThread().exitCode = exitCode;
}

LRESULT WINAPI DispatchMessageW(const MSG* message) {
    if (message->message == WM_TIMER && message->lParam != 0) {
        const auto proc = reinterpret_cast<TIMERPROC>(message->lParam);
        proc(message->hwnd, WM_TIMER, message->wParam, GetTickCount());
        return 0;
    }
    return message->hwnd != nullptr ? Send(message->hwnd, message->message, message->wParam, message->lParam) : 0;
}

LRESULT WINAPI CallWindowProcW(WNDPROC proc, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return proc != nullptr ? proc(window, message, wParam, lParam) : 0;
}

}  // extern "C"
