// The machine's identity, its clock, the user's language.
#include <unistd.h>
#include <windows.h>

#include <algorithm>

#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/settings.h"

namespace host {
namespace {

struct Build {
    DWORD major;
    DWORD minor;
    DWORD build;
};

// Build numbers of the published versions.
constexpr Build kBuilds[] = {
    {4, 0, 1381}, {5, 0, 2195}, {5, 1, 2600}, {5, 2, 3790},   {6, 0, 6002},
    {6, 1, 7601}, {6, 2, 9200}, {6, 3, 9600}, {10, 0, 19045},
};

DWORD BuildOf(DWORD major, DWORD minor) {
    for (const Build& row : kBuilds) {
        if (row.major == major && row.minor == minor) {
            return row.build;
        }
    }
    return 0;
}

// Size of the longer record, OSVERSIONINFOEXW, of which OSVERSIONINFOW is the beginning.
constexpr DWORD kLongVersionSize = 284;

}  // namespace
}  // namespace host

using host::CurrentSettings;
using host::MachineLock;

extern "C" {

BOOL WINAPI GetComputerNameW(LPWSTR buffer, LPDWORD size) {
    if (host::FaultAsked("GetComputerNameW")) {
        return FALSE;
    }
    MachineLock lock;
    const std::u16string& name = CurrentSettings().computerName;
    if (size == nullptr) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    if (buffer == nullptr || *size <= name.size()) {
        *size = static_cast<DWORD>(name.size() + 1);
        SetLastError(ERROR_BUFFER_OVERFLOW);
        return FALSE;
    }
    std::copy(name.begin(), name.end(), buffer);
    buffer[name.size()] = 0;
    *size = static_cast<DWORD>(name.size());
    return TRUE;
}

BOOL WINAPI GetVersionExW(LPOSVERSIONINFOW version) {
    if (host::FaultAsked("GetVersionExW")) {
        return FALSE;
    }
    const DWORD size = version->dwOSVersionInfoSize;
    if (size != sizeof(OSVERSIONINFOW) && size != host::kLongVersionSize) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    MachineLock lock;
    memset(static_cast<void*>(version), 0, size);
    version->dwOSVersionInfoSize = size;
    version->dwMajorVersion = CurrentSettings().majorVersion;
    version->dwMinorVersion = CurrentSettings().minorVersion;
    version->dwBuildNumber = host::BuildOf(version->dwMajorVersion, version->dwMinorVersion);
    version->dwPlatformId = VER_PLATFORM_WIN32_NT;
    return TRUE;
}

DWORD WINAPI GetTickCount() {
    MachineLock lock;
    return CurrentSettings().tickCount;
}

DWORD WINAPI GetCurrentThreadId() {
    thread_local const auto id = static_cast<DWORD>(gettid());  // asked for by each call to a window
    return id;
}

LANGID WINAPI GetUserDefaultLangID() {
    MachineLock lock;
    return CurrentSettings().language;
}

}  // extern "C"
