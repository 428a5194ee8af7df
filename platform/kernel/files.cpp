// The content of files, by handles; closing handles.
#include <windows.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <limits>

#include "platform/kernel/drive.h"
#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/open_files.h"

namespace host {
namespace {

// The open file, or null (last error set) where the handle is none, or the wanted right wasn't asked for at its
// opening.
OpenFile* FileFor(HANDLE handle, bool OpenFile::*right) {
    auto* file = FindObject<OpenFile>(handle, Resource::kFile);
    if (file != nullptr && right != nullptr && !(file->*right)) {
        SetLastError(ERROR_ACCESS_DENIED);
        return nullptr;
    }
    return file;
}

// -1 where the host can't tell; the last error is set then.
int64_t SizeOf(const OpenFile& file) {
    struct stat status {};
    if (fstat(file.file, &status) != 0) {
        SetLastError(ErrorFromErrno(errno));
        return -1;
    }
    return status.st_size;
}

// Moves the file's position. ERROR_SUCCESS or why not; then it stays where it was.
DWORD Seek(OpenFile& file, int64_t distance, DWORD method) {
    int64_t from = 0;
    if (method == FILE_CURRENT) {
        from = file.position;
    } else if (method == FILE_END) {
        from = SizeOf(file);
        if (from < 0) {
            return GetLastError();
        }
    } else if (method != FILE_BEGIN) {
        return ERROR_INVALID_PARAMETER;
    }
    int64_t target = 0;
    if (__builtin_add_overflow(from, distance, &target)) {
        return ERROR_INVALID_PARAMETER;
    }
    if (target < 0) {
        return ERROR_NEGATIVE_SEEK;
    }
    file.position = target;
    return ERROR_SUCCESS;
}

}  // namespace
}  // namespace host

using namespace host;

extern "C" {

HANDLE WINAPI CreateFileW(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES, DWORD disposition,
                          DWORD flagsAndAttributes, HANDLE) {
    if (FaultAsked("CreateFileW")) {
        return INVALID_HANDLE_VALUE;
    }
    MachineLock lock;
    const Opening opening = Open(name, access, share, disposition, flagsAndAttributes);
    SetLastError(opening.error);
    return opening.handle;
}

BOOL WINAPI ReadFile(HANDLE handle, LPVOID buffer, DWORD bytes, LPDWORD bytesRead, LPOVERLAPPED overlapped) {
    if (bytesRead != nullptr) {
        *bytesRead = 0;
    }
    if (FaultAsked("ReadFile")) {
        return FALSE;
    }
    MachineLock lock;
    OpenFile* file = FileFor(handle, &OpenFile::canRead);
    if (file == nullptr) {
        return FALSE;
    }
    if (overlapped != nullptr) {
        return Fail(ERROR_NOT_SUPPORTED);
    }
    DWORD taken = 0;
    while (taken < bytes) {
        const ssize_t got = pread(file->file, static_cast<char*>(buffer) + taken, bytes - taken, file->position);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return Fail(ERROR_READ_FAULT);
        }
        if (got == 0) {
            break;  // the end of the file: success with fewer bytes
        }
        taken += static_cast<DWORD>(got);
        file->position += got;
    }
    if (bytesRead != nullptr) {
        *bytesRead = taken;
    }
    return TRUE;
}

BOOL WINAPI WriteFile(HANDLE handle, LPCVOID buffer, DWORD bytes, LPDWORD bytesWritten, LPOVERLAPPED overlapped) {
    if (bytesWritten != nullptr) {
        *bytesWritten = 0;
    }
    if (FaultAsked("WriteFile")) {
        return FALSE;
    }
    MachineLock lock;
    OpenFile* file = FileFor(handle, &OpenFile::canWrite);
    if (file == nullptr) {
        return FALSE;
    }
    if (overlapped != nullptr) {
        return Fail(ERROR_NOT_SUPPORTED);
    }
    DWORD written = 0;
    while (written < bytes) {
        const ssize_t put =
            pwrite(file->file, static_cast<const char*>(buffer) + written, bytes - written, file->position);
        if (put < 0 && errno == EINTR) {
            continue;
        }
        if (put <= 0) {
            return Fail(put == 0 ? ERROR_WRITE_FAULT : ErrorFromErrno(errno));
        }
        written += static_cast<DWORD>(put);
        file->position += put;
    }
    if (bytesWritten != nullptr) {
        *bytesWritten = written;
    }
    return TRUE;
}

DWORD WINAPI SetFilePointer(HANDLE handle, LONG distance, PLONG distanceHigh, DWORD method) {
    if (FaultAsked("SetFilePointer")) {
        return INVALID_SET_FILE_POINTER;
    }
    MachineLock lock;
    OpenFile* file = FileFor(handle, nullptr);
    if (file == nullptr) {
        return INVALID_SET_FILE_POINTER;
    }
    int64_t wide = distance;
    if (distanceHigh != nullptr) {
        wide = static_cast<int64_t>(static_cast<uint64_t>(static_cast<uint32_t>(*distanceHigh)) << 32 |
                                    static_cast<uint32_t>(distance));
    }
    const int64_t before = file->position;
    DWORD error = Seek(*file, wide, method);
    if (error == ERROR_SUCCESS && distanceHigh == nullptr && file->position > std::numeric_limits<DWORD>::max()) {
        file->position = before;
        error = ERROR_INVALID_PARAMETER;
    }
    if (error != ERROR_SUCCESS) {
        SetLastError(error);
        return INVALID_SET_FILE_POINTER;
    }
    if (distanceHigh != nullptr) {
        *distanceHigh = static_cast<LONG>(file->position >> 32);
    }
    const auto low = static_cast<DWORD>(file->position & 0xFFFFFFFF);
    if (low == INVALID_SET_FILE_POINTER) {
        SetLastError(NO_ERROR);  // so that the caller can tell it from a failure
    }
    return low;
}

BOOL WINAPI SetFilePointerEx(HANDLE handle, LARGE_INTEGER distance, PLARGE_INTEGER newPointer, DWORD method) {
    if (FaultAsked("SetFilePointerEx")) {
        return FALSE;
    }
    MachineLock lock;
    OpenFile* file = FileFor(handle, nullptr);
    if (file == nullptr) {
        return FALSE;
    }
    if (const DWORD error = Seek(*file, distance.QuadPart, method); error != ERROR_SUCCESS) {
        return Fail(error);
    }
    if (newPointer != nullptr) {
        newPointer->QuadPart = file->position;
    }
    return TRUE;
}

DWORD WINAPI GetFileSize(HANDLE handle, LPDWORD sizeHigh) {
    if (FaultAsked("GetFileSize")) {
        return INVALID_FILE_SIZE;
    }
    MachineLock lock;
    const OpenFile* file = FileFor(handle, nullptr);
    const int64_t size = file != nullptr ? SizeOf(*file) : -1;
    if (size < 0) {
        return INVALID_FILE_SIZE;
    }
    if (sizeHigh != nullptr) {
        *sizeHigh = static_cast<DWORD>(size >> 32);
    }
    const auto low = static_cast<DWORD>(size & 0xFFFFFFFF);
    if (low == INVALID_FILE_SIZE) {
        SetLastError(NO_ERROR);
    }
    return low;
}

BOOL WINAPI GetFileSizeEx(HANDLE handle, PLARGE_INTEGER size) {
    if (FaultAsked("GetFileSizeEx")) {
        return FALSE;
    }
    MachineLock lock;
    const OpenFile* file = FileFor(handle, nullptr);
    const int64_t found = file != nullptr ? SizeOf(*file) : -1;
    if (found < 0) {
        return FALSE;
    }
    size->QuadPart = found;
    return TRUE;
}

BOOL WINAPI CloseHandle(HANDLE object) {
    MachineLock lock;
    for (const Resource kind : {Resource::kFile, Resource::kEvent, Resource::kSemaphore}) {
        const DWORD before = GetLastError();
        if (RemoveObject(object, kind)) {
            SetLastError(before);
            return TRUE;
        }
    }
    return Fail(ERROR_INVALID_HANDLE);
}

}  // extern "C"
