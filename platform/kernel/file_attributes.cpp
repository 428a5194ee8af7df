#include "platform/kernel/file_attributes.h"

#include <cerrno>

#include "platform/kernel/drive.h"
#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"

namespace host {
namespace {

// A folder's mode bit that stands for its read-only attribute. (That attribute keeps a folder from being removed, not
// from being written to, so the write bits can't stand for it.)
constexpr mode_t kReadOnlyFolder = S_ISVTX;

}  // namespace

bool IsReadOnly(const struct stat& status) {
    return S_ISDIR(status.st_mode) ? (status.st_mode & kReadOnlyFolder) != 0 : (status.st_mode & S_IWUSR) == 0;
}

bool SetReadOnly(const std::string& file, const struct stat& status, bool readOnly) {
    mode_t mode = status.st_mode & 07777;
    if (S_ISDIR(status.st_mode)) {
        mode = readOnly ? mode | kReadOnlyFolder : mode & ~kReadOnlyFolder;
    } else {
        mode = readOnly ? mode & ~(S_IWUSR | S_IWGRP | S_IWOTH) : mode | S_IWUSR;
    }
    return chmod(file.c_str(), mode) == 0;
}

DWORD AttributesOf(const struct stat& status) {
    return (S_ISDIR(status.st_mode) ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_ARCHIVE) |
           (IsReadOnly(status) ? FILE_ATTRIBUTE_READONLY : 0);
}

}  // namespace host

using namespace host;

extern "C" {

DWORD WINAPI GetFileAttributesW(LPCWSTR name) {
    if (FaultAsked("GetFileAttributesW")) {
        return INVALID_FILE_ATTRIBUTES;
    }
    const Place place = FindPlace(name);
    if (place.error != ERROR_SUCCESS) {
        SetLastError(place.error);
        return INVALID_FILE_ATTRIBUTES;
    }
    return AttributesOf(place.status);
}

BOOL WINAPI SetFileAttributesW(LPCWSTR name, DWORD attributes) {
    if (FaultAsked("SetFileAttributesW")) {
        return FALSE;
    }
    MachineLock lock;
    const Place place = FindPlace(name);
    if (place.error != ERROR_SUCCESS) {
        return Fail(place.error);
    }
    // Only the read-only attribute is kept; an archive attribute is always there.
    if ((attributes &
         ~(FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_NORMAL | FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_DIRECTORY)) != 0) {
        return Fail(ERROR_NOT_SUPPORTED);
    }
    return SetReadOnly(place.file, place.status, (attributes & FILE_ATTRIBUTE_READONLY) != 0) ||
           Fail(ErrorFromErrno(errno));
}

}  // extern "C"
