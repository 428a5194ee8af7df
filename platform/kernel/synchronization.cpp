// Events and semaphores, with and without a name.
#include "platform/kernel/synchronization.h"

#include <windows.h>

#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/settings.h"
#include "platform/kernel/text.h"

namespace host {
namespace {

// What may be waited for. Lives as long as a handle leads to it; a named one can be opened that long.
struct Waitable {
    Resource kind = Resource::kEvent;
    std::u16string name;
    LONG count = 0;  // a semaphore's count; an event's state, 0 or 1
    LONG maximum = 1;
    bool staysSignalled = false;  // a manual-reset event
};

struct Names {
    std::map<std::u16string, std::weak_ptr<Waitable>> byName;
    std::condition_variable_any changed;
    bool waitsElapseAtOnce = false;
};

Names& TheNames() {
    static Names& names = *new Names;
    return names;
}

class WaitHandle final : public Object {
  public:
    WaitHandle(std::shared_ptr<Waitable> target, DWORD access)
        : Object(target->kind), target(std::move(target)), access(access) {}
    ~WaitHandle() override {
        auto& names = TheNames().byName;
        if (target.use_count() == 1) {
            names.erase(target->name);
        }
    }
    std::string Describe() const override { return target->name.empty() ? "without a name" : ToUtf8(target->name); }

    const std::shared_ptr<Waitable> target;
    const DWORD access;
};

// Names of either kind share one space, with parts for the session and the machine that mean the same here.
DWORD CheckName(std::u16string_view name) {
    for (const std::u16string_view part : {u"Global\\", u"Local\\"}) {
        if (name.substr(0, part.size()) == part) {
            name.remove_prefix(part.size());
            break;
        }
    }
    if (name.size() >= MAX_PATH) {
        return ERROR_FILENAME_EXCED_RANGE;
    }
    return name.find(u'\\') == name.npos ? ERROR_SUCCESS : ERROR_PATH_NOT_FOUND;
}

std::shared_ptr<Waitable> FindByName(const std::u16string& name) {
    const auto found = TheNames().byName.find(name);
    return found != TheNames().byName.end() ? found->second.lock() : nullptr;
}

HANDLE Fail(DWORD error) {
    SetLastError(error);
    return nullptr;
}

HANDLE Create(Waitable fresh, LPCWSTR name) {
    MachineLock lock;
    fresh.name = name != nullptr ? name : u"";
    if (const DWORD error = CheckName(fresh.name); error != ERROR_SUCCESS) {
        return Fail(error);
    }
    if (!fresh.name.empty()) {
        if (std::shared_ptr<Waitable> existing = FindByName(fresh.name)) {
            if (existing->kind != fresh.kind) {
                return Fail(ERROR_INVALID_HANDLE);
            }
            SetLastError(ERROR_ALREADY_EXISTS);
            return AddObject(std::make_unique<WaitHandle>(std::move(existing), EVENT_ALL_ACCESS));
        }
    }
    auto made = std::make_shared<Waitable>(std::move(fresh));
    if (!made->name.empty()) {
        TheNames().byName[made->name] = made;
    }
    SetLastError(ERROR_SUCCESS);
    return AddObject(std::make_unique<WaitHandle>(std::move(made), EVENT_ALL_ACCESS));
}

HANDLE OpenNamed(Resource kind, DWORD access, LPCWSTR name) {
    MachineLock lock;
    if (name == nullptr) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    if (const DWORD error = CheckName(name); error != ERROR_SUCCESS) {
        return Fail(error);
    }
    std::shared_ptr<Waitable> existing = FindByName(name);
    if (existing == nullptr) {
        return Fail(ERROR_FILE_NOT_FOUND);
    }
    if (existing->kind != kind) {
        return Fail(ERROR_INVALID_HANDLE);
    }
    if ((access & (GENERIC_ALL | MAXIMUM_ALLOWED)) != 0) {
        access |= EVENT_ALL_ACCESS;
    }
    return AddObject(std::make_unique<WaitHandle>(std::move(existing), access));
}

// The object that a handle may change. Null with the last error set where it is none.
Waitable* FindToChange(HANDLE handle, Resource kind) {
    const auto* found = FindObject<WaitHandle>(handle, kind);
    if (found == nullptr) {
        return nullptr;
    }
    if ((found->access & EVENT_MODIFY_STATE) == 0) {
        SetLastError(ERROR_ACCESS_DENIED);
        return nullptr;
    }
    return found->target.get();
}

static_assert(EVENT_MODIFY_STATE == SEMAPHORE_MODIFY_STATE && EVENT_ALL_ACCESS == SEMAPHORE_ALL_ACCESS);

bool TakeSignal(Waitable& target) {
    if (target.count == 0) {
        return false;
    }
    if (!target.staysSignalled) {
        --target.count;
    }
    return true;
}

}  // namespace

void SetWaitsElapse(bool atOnce) {
    MachineLock lock;
    TheNames().waitsElapseAtOnce = atOnce;
}

}  // namespace host

using host::FaultAsked;
using host::MachineLock;
using host::Resource;
using host::Waitable;

extern "C" {

HANDLE WINAPI CreateSemaphoreW(LPSECURITY_ATTRIBUTES, LONG initialCount, LONG maximumCount, LPCWSTR name) {
    if (FaultAsked("CreateSemaphoreW")) {
        return nullptr;
    }
    if (maximumCount <= 0 || initialCount < 0 || initialCount > maximumCount) {
        return host::Fail(ERROR_INVALID_PARAMETER);
    }
    return host::Create({Resource::kSemaphore, {}, initialCount, maximumCount, false}, name);
}

HANDLE WINAPI OpenSemaphoreW(DWORD access, BOOL, LPCWSTR name) {
    return FaultAsked("OpenSemaphoreW") ? nullptr : host::OpenNamed(Resource::kSemaphore, access, name);
}

HANDLE WINAPI CreateEventW(LPSECURITY_ATTRIBUTES, BOOL manualReset, BOOL initialState, LPCWSTR name) {
    if (FaultAsked("CreateEventW")) {
        return nullptr;
    }
    return host::Create({Resource::kEvent, {}, initialState != FALSE ? 1 : 0, 1, manualReset != FALSE}, name);
}

HANDLE WINAPI OpenEventW(DWORD access, BOOL, LPCWSTR name) {
    return FaultAsked("OpenEventW") ? nullptr : host::OpenNamed(Resource::kEvent, access, name);
}

BOOL WINAPI SetEvent(HANDLE event) {
    if (FaultAsked("SetEvent")) {
        return FALSE;
    }
    MachineLock lock;
    Waitable* target = host::FindToChange(event, Resource::kEvent);
    if (target == nullptr) {
        return FALSE;
    }
    target->count = 1;
    host::TheNames().changed.notify_all();
    return TRUE;
}

DWORD WINAPI WaitForSingleObject(HANDLE object, DWORD milliseconds) {
    if (FaultAsked("WaitForSingleObject")) {
        return WAIT_FAILED;
    }
    std::unique_lock lock(host::MachineMutex());
    const DWORD before = GetLastError();
    const auto* handle = host::FindObject<host::WaitHandle>(object, Resource::kEvent);
    if (handle == nullptr) {
        SetLastError(before);
        handle = host::FindObject<host::WaitHandle>(object, Resource::kSemaphore);
    }
    if (handle == nullptr) {
        return WAIT_FAILED;
    }
    if ((handle->access & SYNCHRONIZE) == 0) {
        SetLastError(ERROR_ACCESS_DENIED);
        return WAIT_FAILED;
    }
    // Held on its own: another thread may close the handle meanwhile.
    const std::shared_ptr<Waitable> target = handle->target;
    const auto signalled = [&target] { return host::TakeSignal(*target); };
    if (signalled()) {
        return WAIT_OBJECT_0;
    }
    host::Names& names = host::TheNames();
    if (milliseconds == INFINITE) {
        names.changed.wait(lock, signalled);
        return WAIT_OBJECT_0;
    }
    if (names.waitsElapseAtOnce) {
        host::CurrentSettings().tickCount += milliseconds;
        return WAIT_TIMEOUT;
    }
    return names.changed.wait_for(lock, std::chrono::milliseconds(milliseconds), signalled) ? WAIT_OBJECT_0
                                                                                            : WAIT_TIMEOUT;
}

}  // extern "C"
