// What a thread waits for: posted messages, input, painting, timers, and the machine's user.
#include <windows.h>

#include <algorithm>
#include <cstdio>

#include "platform/host.h"
#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/settings.h"
#include "platform/user/windows.h"

namespace host {
namespace {

// After so many turns of the user in which nothing came of it, nothing will.
constexpr int kIdleTurns = 1000;
// A window that stays invalid through so many WM_PAINTs never calls BeginPaint.
constexpr int kPaintsUnanswered = 100;

struct User {
    uint64_t machine = 0;
    std::function<void()> act;
    uint64_t unanswered = 0;
};

User& TheUser() {
    static User& user = *new User;
    if (user.machine != ThisThread().machine) {
        user = {ThisThread().machine, nullptr, 0};
    }
    return user;
}

struct Filter {
    HWND window = nullptr;  // with what is in it; null: all
    UINT first = 0;
    UINT last = 0;  // both 0: all

    bool Passes(const MSG& message) const {
        return (window == nullptr || IsInside(message.hwnd, window)) &&
               ((first == 0 && last == 0) || (message.message >= first && message.message <= last));
    }
};

DWORD& TickCount() {
    return CurrentSettings().tickCount;
}

MSG MakeMessage(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return {window, message, wParam, lParam, GetTickCount(), ThisThread().cursor};
}

bool TakePosted(const Filter& filter, bool remove, MSG* message) {
    std::deque<MSG>& posted = ThisThread().posted;
    const auto found =
        std::find_if(posted.begin(), posted.end(), [&](const MSG& waiting) { return filter.Passes(waiting); });
    if (found == posted.end()) {
        return false;
    }
    *message = *found;
    if (remove) {
        posted.erase(found);
    }
    return true;
}

bool TakePaint(const Filter& filter, MSG* message) {
    const HWND window = FindInvalidWindow();
    if (window == nullptr) {
        return false;
    }
    *message = MakeMessage(window, WM_PAINT);
    if (!filter.Passes(*message)) {
        return false;
    }
    Window* const found = FindWindowObject(window);
    if (++found->paintsUnanswered > kPaintsUnanswered) {
        fprintf(stderr, "platform: a %s answers WM_PAINT without painting\n", found->Describe().c_str());
        ValidateRect(window, nullptr);
    }
    return true;
}

bool IsDue(const Timer& timer, DWORD now) {
    return static_cast<LONG>(now - timer.due) >= 0;
}

bool TakeTimer(const Filter& filter, bool remove, MSG* message) {
    const MachineLock lock;
    const DWORD now = TickCount();
    for (Timer& timer : ThisThread().timers) {
        *message = MakeMessage(timer.window, WM_TIMER, timer.id, reinterpret_cast<LPARAM>(timer.proc));
        if (IsDue(timer, now) && filter.Passes(*message)) {
            if (remove) {
                timer.due = now + timer.period;
            }
            return true;
        }
    }
    return false;
}

// Lets time go by until the next timer is due. False where there is none.
bool ElapseToTimer() {
    const MachineLock lock;
    const std::vector<Timer>& timers = ThisThread().timers;
    const DWORD now = TickCount();
    const auto next = std::min_element(timers.begin(), timers.end(), [now](const Timer& a, const Timer& b) {
        return static_cast<LONG>(a.due - now) < static_cast<LONG>(b.due - now);
    });
    if (next == timers.end()) {
        return false;
    }
    if (!IsDue(*next, now)) {
        TickCount() = next->due;
    }
    return true;
}

// What waits already, in the published order.
bool TakeReady(const Filter& filter, bool remove, MSG* message) {
    ThreadWindows& thread = ThisThread();
    if (TakePosted(filter, remove, message)) {
        return true;
    }
    // Input becomes messages in its order, so what the filter holds back waits among the posted ones.
    while (TakeInput(message)) {
        if (!filter.Passes(*message) || !remove) {
            thread.posted.push_back(*message);
            if (!filter.Passes(*message)) {
                continue;
            }
        }
        return true;
    }
    if (thread.isQuitting) {
        *message = MakeMessage(nullptr, WM_QUIT, static_cast<WPARAM>(thread.exitCode));
        thread.isQuitting = !remove;
        return true;
    }
    return TakePaint(filter, message) || TakeTimer(filter, remove, message);
}

void SayNobodyAnswers(bool isThere) {
    const HWND window = ThisThread().active;
    const Window* const found = window != nullptr ? FindWindowObject(window) : nullptr;
    fprintf(stderr, "platform: a program waits for input%s%s, and %s\n", found != nullptr ? " to " : "",
            found != nullptr ? found->Describe().c_str() : "",
            isThere ? "the machine's user does nothing any more" : "the machine has no user");
    const MachineLock lock;
    ++TheUser().unanswered;
}

Wait WaitFor(const Filter& filter, MSG* message, const std::function<void()>& idle) {
    ThreadWindows& thread = ThisThread();
    for (bool wasIdle = false;;) {
        if (TakeReady(filter, true, message)) {
            return message->message == WM_QUIT ? Wait::kQuit : Wait::kMessage;
        }
        if (idle && !wasIdle) {
            wasIdle = true;
            idle();
            continue;
        }
        const std::function<void()> act = TheUser().act;
        const uint64_t before = thread.changes;
        if (act) {
            act();
        }
        if (thread.changes != before) {
            thread.idleTurns = 0;
            // What the user changed may be what the loop is there for, such as its dialog.
            if (thread.posted.empty()) {
                thread.posted.push_back(MakeMessage(nullptr, WM_NULL));
            }
            continue;
        }
        if (++thread.idleTurns > kIdleTurns || (!ElapseToTimer() && !act)) {
            thread.idleTurns = 0;
            SayNobodyAnswers(act != nullptr);
            return Wait::kNobody;
        }
    }
}

}  // namespace

void SetInputUser(std::function<void()> user) {
    const MachineLock lock;
    TheUser().act = std::move(user);
}

uint64_t UnansweredWaits() {
    const MachineLock lock;
    return TheUser().unanswered;
}

Wait WaitForMessage(MSG* message, const std::function<void()>& idle) {
    return WaitFor({}, message, idle);
}

void ForgetInQueue(HWND window) {
    ThreadWindows& thread = ThisThread();
    std::erase_if(thread.posted, [window](const MSG& message) { return message.hwnd == window; });
    std::erase_if(thread.timers, [window](const Timer& timer) { return timer.window == window; });
}

}  // namespace host

using namespace host;

extern "C" {

BOOL WINAPI GetMessageW(LPMSG message, HWND window, UINT first, UINT last) {
    if (window != nullptr && FindWindowObject(window) == nullptr) {
        return -1;
    }
    switch (WaitFor({window, first, last}, message, nullptr)) {
        case Wait::kMessage:
            return TRUE;
        case Wait::kQuit:
            return FALSE;
        case Wait::kNobody:
            *message = MakeMessage(nullptr, WM_QUIT);
            return FALSE;
    }
    return FALSE;
}

BOOL WINAPI PeekMessageW(LPMSG message, HWND window, UINT first, UINT last, UINT remove) {
    if (window != nullptr && FindWindowObject(window) == nullptr) {
        return FALSE;
    }
    return TakeReady({window, first, last}, (remove & PM_REMOVE) != 0, message);
}

UINT_PTR WINAPI SetTimer(HWND window, UINT_PTR id, UINT milliseconds, TIMERPROC proc) {
    if (FaultAsked("SetTimer") || (window != nullptr && FindWindowObject(window) == nullptr)) {
        return 0;
    }
    ThreadWindows& thread = ThisThread();
    constexpr UINT kShortest = 10;  // USER_TIMER_MINIMUM
    const UINT period = std::max(milliseconds, kShortest);
    const DWORD due = GetTickCount() + period;
    for (Timer& timer : thread.timers) {
        if (timer.window == window && timer.id == id) {
            timer = {window, id, period, due, proc};
            return id != 0 ? id : 1;
        }
    }
    if (window == nullptr) {
        id = thread.nextTimerId++;
    }
    thread.timers.push_back({window, id, period, due, proc});
    return id != 0 ? id : 1;
}

BOOL WINAPI KillTimer(HWND window, UINT_PTR id) {
    return std::erase_if(ThisThread().timers,
                         [&](const Timer& timer) { return timer.window == window && timer.id == id; }) != 0;
}

}  // extern "C"
