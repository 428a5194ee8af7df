// The environment of the process.
#include <windows.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/settings.h"

extern "C" {

DWORD WINAPI GetEnvironmentVariableW(LPCWSTR name, LPWSTR buffer, DWORD size) {
    if (host::FaultAsked("GetEnvironmentVariableW")) {
        return 0;
    }
    host::MachineLock lock;
    const auto& environment = host::ProcessEnvironment();
    const auto found = name != nullptr ? environment.find(name) : environment.end();
    if (found == environment.end()) {
        SetLastError(ERROR_ENVVAR_NOT_FOUND);
        return 0;
    }
    const std::u16string& value = found->second;
    if (buffer == nullptr || size <= value.size()) {
        return static_cast<DWORD>(value.size() + 1);
    }
    std::copy(value.begin(), value.end(), buffer);
    buffer[value.size()] = 0;
    return static_cast<DWORD>(value.size());
}

BOOL WINAPI SetEnvironmentVariableW(LPCWSTR name, LPCWSTR value) {
    if (host::FaultAsked("SetEnvironmentVariableW")) {
        return FALSE;
    }
    const std::u16string_view text = name != nullptr ? name : u"";
    if (text.empty() || text.find(u'=', 1) != text.npos) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    host::MachineLock lock;
    if (value == nullptr) {
        host::ProcessEnvironment().erase(std::u16string(text));
    } else {
        host::ProcessEnvironment()[std::u16string(text)] = value;
    }
    return TRUE;
}

}  // extern "C"
