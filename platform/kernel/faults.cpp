#include "platform/kernel/faults.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/host.h"

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
    uint64_t calls = 0;
    std::vector<PlannedFault> faults;
};

struct NameHash {
    using is_transparent = void;
    size_t operator()(std::string_view name) const { return std::hash<std::string_view>()(name); }
};

struct Faults {
    std::mutex mutex;
    std::unordered_map<std::string, CallRecord, NameHash, std::equal_to<>> calls;
};

Faults& TheFaults() {
    static Faults& faults = *new Faults;
    return faults;
}

std::atomic<uint64_t> allocations = 0;
std::atomic<uint64_t> failingAllocation = 0;  // 0: none

}  // namespace

bool FaultAsked(const char* call) {
    Faults& faults = TheFaults();
    std::lock_guard lock(faults.mutex);
    const auto found = faults.calls.find(std::string_view(call));
    CallRecord& record = found != faults.calls.end() ? found->second : faults.calls[call];
    ++record.calls;
    for (auto fault = record.faults.begin(); fault != record.faults.end(); ++fault) {
        if (fault->atCall == record.calls) {
            SetLastError(fault->error);
            record.faults.erase(fault);
            return true;
        }
    }
    return false;
}

bool AllocationFails() {
    return allocations.fetch_add(1) + 1 == failingAllocation.load();
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
}

uint64_t CallsSoFar(std::string_view publishedName) {
    Faults& faults = TheFaults();
    std::lock_guard lock(faults.mutex);
    const auto found = faults.calls.find(publishedName);
    return found == faults.calls.end() ? 0 : found->second.calls;
}

std::vector<std::string> CallsMade() {
    Faults& faults = TheFaults();
    std::lock_guard lock(faults.mutex);
    std::vector<std::string> names;
    for (const auto& [name, record] : faults.calls) {
        names.push_back(name);
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
    }
}

void ForgetCalls() {
    ClearFaults();
    Faults& faults = TheFaults();
    std::lock_guard lock(faults.mutex);
    faults.calls.clear();
}

}  // namespace host
