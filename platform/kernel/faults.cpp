#include "platform/kernel/faults.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/host.h"
#include "platform/kernel/counting.h"

namespace {

thread_local DWORD lastError = ERROR_SUCCESS;

}  // namespace

extern "C" {

DWORD WINAPI GetLastError() {
    return lastError;
}

void WINAPI SetLastError(DWORD error) {
    lastError = error;
}

}  // extern "C"

namespace host {
namespace {

struct PlannedFault {
    uint64_t atCall;  // value of the call's counter at which it fails
    DWORD error;
};

struct CallRecord {
    std::atomic<uint64_t> calls = 0;
    std::atomic<bool> hasFaults = false;
    std::vector<PlannedFault> faults;  // under the mutex
};

struct NameHash {
    using is_transparent = void;
    size_t operator()(std::string_view name) const { return std::hash<std::string_view>()(name); }
};

struct Faults {
    std::mutex mutex;
    std::unordered_map<std::string, CallRecord, NameHash, std::equal_to<>> calls;  // none is ever removed
};

Faults& TheFaults() {
    static Faults& faults = *new Faults;
    return faults;
}

// Records of the last calls of the thread, by the addresses of their names.
struct KnownCall {
    const char* name;
    CallRecord* record;
};
thread_local KnownCall knownCalls[64];

CallRecord& RecordOf(const char* call) {
    KnownCall& known = knownCalls[reinterpret_cast<uintptr_t>(call) / 4 % std::size(knownCalls)];
    if (known.name != call) {
        Faults& faults = TheFaults();
        std::lock_guard lock(faults.mutex);
        const auto found = faults.calls.find(std::string_view(call));
        known = {call, found != faults.calls.end() ? &found->second : &faults.calls[call]};
    }
    return *known.record;
}

std::atomic<uint64_t> allocations = 0;
std::atomic<uint64_t> failingAllocation = 0;  // 0: none

}  // namespace

bool FaultAsked(const char* call) {
    CallRecord& record = RecordOf(call);
    const uint64_t number = CountUp(record.calls);
    if (!record.hasFaults) {
        return false;
    }
    std::lock_guard lock(TheFaults().mutex);
    for (auto fault = record.faults.begin(); fault != record.faults.end(); ++fault) {
        if (fault->atCall == number) {
            SetLastError(fault->error);
            record.faults.erase(fault);
            return true;
        }
    }
    return false;
}

bool AllocationFails() {
    return CountUp(allocations) == failingAllocation;
}

void FailAllocation(uint64_t nth) {
    allocations = 0;
    failingAllocation = nth;
}

uint64_t AllocationsSoFar() {
    return allocations;
}

void FailCall(std::string_view publishedName, DWORD error, uint64_t nth) {
    Faults& faults = TheFaults();
    std::lock_guard lock(faults.mutex);
    CallRecord& record = faults.calls[std::string(publishedName)];
    record.faults.push_back({record.calls + nth, error});
    record.hasFaults = true;
}

uint64_t CallsSoFar(std::string_view publishedName) {
    Faults& faults = TheFaults();
    std::lock_guard lock(faults.mutex);
    const auto found = faults.calls.find(publishedName);
    return found == faults.calls.end() ? 0 : found->second.calls.load();
}

std::vector<std::string> CallsMade() {
    Faults& faults = TheFaults();
    std::lock_guard lock(faults.mutex);
    std::vector<std::string> names;
    for (const auto& [name, record] : faults.calls) {
        if (record.calls != 0) {
            names.push_back(name);
        }
    }
    std::ranges::sort(names);
    return names;
}

void ClearFaults() {
    FailAllocation(0);
    Faults& faults = TheFaults();
    std::lock_guard lock(faults.mutex);
    for (auto& [name, record] : faults.calls) {
        record.faults.clear();
        record.hasFaults = false;
    }
}

void ForgetCalls() {
    ClearFaults();
    Faults& faults = TheFaults();
    std::lock_guard lock(faults.mutex);
    for (auto& [name, record] : faults.calls) {
        record.calls = 0;
    }
}

}  // namespace host
