// Files and folders by their names: made, deleted, moved, copied; the current directory.
#include <windows.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <utility>

#include "platform/kernel/drive.h"
#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/file_attributes.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/open_files.h"
#include "platform/kernel/text.h"

namespace host {
namespace {

constexpr DWORD kMaximumFolderPath = 248;  // MAX_PATH less room for an 8.3 name

// Whether the place can be deleted or renamed now. Sets the last error where not.
bool MayRemove(const Place& place) {
    if (place.error != ERROR_SUCCESS) {
        return Fail(place.error);
    }
    const DWORD error =
        SharingError(place.status, FILE_SHARE_DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    return error == ERROR_SUCCESS || Fail(error);
}

}  // namespace
}  // namespace host

using namespace host;

extern "C" {

BOOL WINAPI CreateDirectoryW(LPCWSTR name, LPSECURITY_ATTRIBUTES) {
    if (FaultAsked("CreateDirectoryW")) {
        return FALSE;
    }
    MachineLock lock;
    const Place place = FindPlace(name);
    if (place.error == ERROR_SUCCESS) {
        return Fail(ERROR_ALREADY_EXISTS);
    }
    if (!place.onDrive || place.error == ERROR_PATH_NOT_FOUND) {
        return Fail(place.error);
    }
    if (place.full.size() >= kMaximumFolderPath) {
        return Fail(ERROR_FILENAME_EXCED_RANGE);
    }
    return mkdir(place.file.c_str(), 0777) == 0 || Fail(ErrorFromErrno(errno));
}

BOOL WINAPI DeleteFileW(LPCWSTR name) {
    if (FaultAsked("DeleteFileW")) {
        return FALSE;
    }
    MachineLock lock;
    const Place place = FindPlace(name);
    if (place.error == ERROR_SUCCESS && (S_ISDIR(place.status.st_mode) || IsReadOnly(place.status))) {
        return Fail(ERROR_ACCESS_DENIED);
    }
    if (!MayRemove(place)) {
        return FALSE;
    }
    return unlink(place.file.c_str()) == 0 || Fail(ErrorFromErrno(errno));
}

BOOL WINAPI MoveFileExW(LPCWSTR from, LPCWSTR to, DWORD flags) {
    if (FaultAsked("MoveFileExW")) {
        return FALSE;
    }
    MachineLock lock;
    if ((flags & ~(MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED | MOVEFILE_WRITE_THROUGH)) != 0) {
        return Fail(ERROR_NOT_SUPPORTED);
    }
    const Place source = FindPlace(from);
    if (!MayRemove(source)) {
        return FALSE;
    }
    const Place target = FindPlace(to);
    if (!target.onDrive || target.error == ERROR_PATH_NOT_FOUND) {
        return Fail(target.error);
    }
    std::string targetFile = target.file;
    const bool same = target.error == ERROR_SUCCESS && target.status.st_ino == source.status.st_ino &&
                      target.status.st_dev == source.status.st_dev;
    if (same) {
        // A change of case: the name is what the caller writes, in the folder where the file is.
        targetFile = target.file.substr(0, target.file.rfind('/') + 1) +
                     ToUtf8(target.full.substr(target.full.rfind(u'\\') + 1));
    } else if (target.error == ERROR_SUCCESS) {
        if ((flags & MOVEFILE_REPLACE_EXISTING) == 0) {
            return Fail(ERROR_ALREADY_EXISTS);
        }
        if (S_ISDIR(target.status.st_mode) || S_ISDIR(source.status.st_mode) || IsReadOnly(target.status) ||
            SharingError(target.status, FILE_SHARE_DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE) !=
                ERROR_SUCCESS) {
            return Fail(ERROR_ACCESS_DENIED);
        }
    }
    return rename(source.file.c_str(), targetFile.c_str()) == 0 || Fail(ErrorFromErrno(errno));
}

BOOL WINAPI CopyFileW(LPCWSTR from, LPCWSTR to, BOOL failIfExists) {
    if (FaultAsked("CopyFileW")) {
        return FALSE;
    }
    MachineLock lock;
    const Opening source =
        Open(from, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
    if (source.handle == INVALID_HANDLE_VALUE) {
        return Fail(source.error);
    }
    const Opening target = Open(to, GENERIC_WRITE, 0, failIfExists ? CREATE_NEW : CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL);
    if (target.handle == INVALID_HANDLE_VALUE) {
        CloseHandle(source.handle);
        return Fail(target.error);
    }
    const int in = FindObject<OpenFile>(source.handle, Resource::kFile)->file;
    const OpenFile* copy = FindObject<OpenFile>(target.handle, Resource::kFile);
    DWORD error = ERROR_SUCCESS;
    char buffer[65536];
    ssize_t taken = 0;
    while (error == ERROR_SUCCESS && (taken = read(in, buffer, sizeof(buffer))) != 0) {
        if (taken < 0) {
            error = ERROR_READ_FAULT;
        }
        for (ssize_t put = 0; put < taken && error == ERROR_SUCCESS;) {
            const ssize_t written = write(copy->file, buffer + put, static_cast<size_t>(taken - put));
            if (written <= 0) {
                error = ErrorFromErrno(errno);
            }
            put += written;
        }
    }
    // The copy has its original's read-only attribute.
    struct stat original {};
    struct stat made {};
    if (error == ERROR_SUCCESS && (fstat(in, &original) != 0 || fstat(copy->file, &made) != 0 ||
                                   !SetReadOnly(copy->hostName, made, IsReadOnly(original)))) {
        error = ErrorFromErrno(errno);
    }
    if (error != ERROR_SUCCESS) {
        unlink(copy->hostName.c_str());
    }
    CloseHandle(source.handle);
    CloseHandle(target.handle);
    return error == ERROR_SUCCESS || Fail(error);
}

BOOL WINAPI SetCurrentDirectoryW(LPCWSTR name) {
    if (FaultAsked("SetCurrentDirectoryW")) {
        return FALSE;
    }
    MachineLock lock;
    Place place = FindPlace(name);
    if (place.error != ERROR_SUCCESS) {
        return Fail(place.error);
    }
    if (!S_ISDIR(place.status.st_mode)) {
        return Fail(ERROR_DIRECTORY);
    }
    SetCurrentDirectory(std::move(place.full));
    return TRUE;
}

}  // extern "C"
