#include "platform/spooler/directories.h"

#include <cstring>
#include <filesystem>
#include <system_error>

#include "platform/kernel/drive.h"
#include "platform/spooler/failures.h"

namespace host {
namespace {

constexpr std::u16string_view kSpoolFolder = u"C:\\Windows\\System32\\spool";

}  // namespace

std::u16string DriverDirectory() {
    return std::u16string(kSpoolFolder) + u"\\drivers\\x64";
}

std::u16string InstalledDriverPath(std::u16string_view fileName) {
    return DriverDirectory() + u"\\3\\" + std::u16string(fileName);
}

std::u16string PrintProcessorDirectory() {
    return std::u16string(kSpoolFolder) + u"\\prtprocs\\x64";
}

bool CopyDirectory(const std::u16string& directory, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed) {
    if (level != 1) {
        return Fail(ERROR_INVALID_LEVEL);
    }
    if (!needed) {
        return Fail(RPC_X_NULL_REF_POINTER);
    }
    if (!buffer && size != 0) {
        return Fail(ERROR_INVALID_USER_BUFFER);
    }
    *needed = static_cast<DWORD>((directory.size() + 1) * sizeof(WCHAR));
    if (size < *needed) {
        return Fail(ERROR_INSUFFICIENT_BUFFER);
    }
    if (const auto path = HostPath(directory)) {
        std::error_code error;
        std::filesystem::create_directories(*path, error);
        if (error) {
            return Fail(ERROR_ACCESS_DENIED);
        }
    }
    memcpy(buffer, directory.c_str(), *needed);
    return true;
}

}  // namespace host
