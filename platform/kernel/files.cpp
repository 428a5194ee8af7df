#include "platform/kernel/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <memory>
#include <vector>

#include "platform/kernel/drive.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/settings.h"
#include "platform/kernel/text.h"

namespace host {
namespace {

constexpr DWORD kReadRights = GENERIC_READ | GENERIC_ALL | FILE_READ_DATA;
constexpr DWORD kExecuteRights = GENERIC_EXECUTE | FILE_EXECUTE;  // share as reading does
constexpr DWORD kWriteRights = GENERIC_WRITE | GENERIC_ALL | FILE_WRITE_DATA | FILE_APPEND_DATA;
constexpr DWORD kOverwriteRights = GENERIC_WRITE | GENERIC_ALL | FILE_WRITE_DATA;
constexpr DWORD kDeleteRights = DELETE | GENERIC_ALL;

// Attributes and flags that CreateFileW takes. Hints of how a file will be used change nothing here; hidden and system
// files, overlapped and unbuffered access aren't offered.
constexpr DWORD kTakenFlags = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_NORMAL |
                              FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_WRITE_THROUGH | FILE_FLAG_RANDOM_ACCESS |
                              FILE_FLAG_SEQUENTIAL_SCAN | FILE_FLAG_DELETE_ON_CLOSE | FILE_FLAG_BACKUP_SEMANTICS;

// A folder's mode bit that stands for its read-only attribute. (That attribute keeps a folder from being removed, not
// from being written to, so the write bits can't stand for it.)
constexpr mode_t kReadOnlyFolder = S_ISVTX;

class OpenFile final : public Object {
  public:
    OpenFile() : Object(Resource::kFile) {}
    ~OpenFile() override {
        if (file >= 0) {
            close(file);
        }
        if (deleteOnClose) {
            unlink(hostName.c_str());
        }
    }
    std::string Describe() const override { return ToUtf8(full); }

    std::u16string full;
    std::string hostName;
    int file = -1;
    dev_t device = 0;
    ino_t number = 0;
    bool canRead = false;
    bool canWrite = false;
    DWORD kinds = 0;  // for the sharing rules
    DWORD share = 0;
    bool deleteOnClose = false;
    int64_t position = 0;
};

// The open files, without the table's look-up by handle.
std::vector<const OpenFile*> OpenFiles() {
    std::vector<const OpenFile*> files;
    for (const HANDLE handle : ObjectsOfKind(Resource::kFile)) {
        files.push_back(FindObject<OpenFile>(handle, Resource::kFile));
    }
    return files;
}

BOOL Fail(DWORD error) {
    SetLastError(error);
    return FALSE;
}

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

// Opens the host's file of an OpenFile whose rights are set. ERROR_SUCCESS or why not.
DWORD OpenHostFile(OpenFile& opened, const Place& place, bool make, bool truncate, DWORD access) {
    int flags = O_CLOEXEC;
    if (opened.canWrite) {
        flags |= opened.canRead ? O_RDWR : O_WRONLY;
        if ((access & kOverwriteRights) == 0) {
            flags |= O_APPEND;
        }
    } else {
        // A handle for attributes only needs no right to read.
        flags |= opened.canRead || make || truncate ? O_RDONLY : O_PATH;
    }
    flags |= make ? O_CREAT | O_EXCL : 0;
    opened.file = open(place.file.c_str(), flags, 0666);
    if (opened.file < 0) {
        return ErrorFromErrno(errno);
    }
    if (truncate && (opened.canWrite ? ftruncate(opened.file, 0) : ::truncate(place.file.c_str(), 0)) != 0) {
        return ErrorFromErrno(errno);
    }
    struct stat status {};
    if (fstat(opened.file, &status) != 0) {
        return ErrorFromErrno(errno);
    }
    opened.device = status.st_dev;
    opened.number = status.st_ino;
    return ERROR_SUCCESS;
}

struct Opening {
    HANDLE handle = INVALID_HANDLE_VALUE;
    DWORD error = ERROR_SUCCESS;  // ERROR_ALREADY_EXISTS on success too: the published way to say so
};

Opening Open(LPCWSTR name, DWORD access, DWORD share, DWORD disposition, DWORD flags) {
    Opening result;
    const auto fail = [&result](DWORD error) {
        result.error = error;
        return result;
    };
    if (disposition < CREATE_NEW || disposition > TRUNCATE_EXISTING ||
        (disposition == TRUNCATE_EXISTING && (access & (GENERIC_WRITE | GENERIC_ALL)) == 0)) {
        return fail(ERROR_INVALID_PARAMETER);
    }
    if ((flags & ~kTakenFlags) != 0) {
        return fail(ERROR_NOT_SUPPORTED);
    }
    if ((flags & FILE_FLAG_DELETE_ON_CLOSE) != 0) {
        access |= DELETE;
    }
    const Place place = FindPlace(name);
    if (!place.onDrive) {
        return fail(place.error);
    }
    const bool exists = place.error == ERROR_SUCCESS;
    if (!exists &&
        (place.error == ERROR_PATH_NOT_FOUND || disposition == OPEN_EXISTING || disposition == TRUNCATE_EXISTING)) {
        return fail(place.error);
    }
    if (exists && disposition == CREATE_NEW) {
        return fail(ERROR_FILE_EXISTS);
    }
    auto opened = std::make_unique<OpenFile>();
    opened->canRead = (access & kReadRights) != 0;
    opened->canWrite = (access & kWriteRights) != 0;
    opened->kinds = ((access & (kReadRights | kExecuteRights)) != 0 ? FILE_SHARE_READ : 0) |
                    (opened->canWrite ? FILE_SHARE_WRITE : 0) | ((access & kDeleteRights) != 0 ? FILE_SHARE_DELETE : 0);
    opened->share = share;
    opened->full = place.full;
    opened->hostName = place.file;
    const bool truncate = exists && (disposition == CREATE_ALWAYS || disposition == TRUNCATE_EXISTING);
    if (exists) {
        if (S_ISDIR(place.status.st_mode)) {
            if ((flags & FILE_FLAG_BACKUP_SEMANTICS) == 0 || truncate) {
                return fail(ERROR_ACCESS_DENIED);
            }
            opened->canRead = opened->canWrite = false;  // a folder has no content to read
        } else if (IsReadOnly(place.status) && (opened->canWrite || truncate)) {
            return fail(ERROR_ACCESS_DENIED);
        }
        // Truncating writes, whatever was asked for.
        const DWORD kinds = opened->kinds | (truncate ? FILE_SHARE_WRITE : 0);
        if (const DWORD error = SharingError(place.status, kinds, share); error != ERROR_SUCCESS) {
            return fail(error);
        }
    }
    if (const DWORD error = OpenHostFile(*opened, place, !exists, truncate, access); error != ERROR_SUCCESS) {
        return fail(error);
    }
    if ((flags & FILE_ATTRIBUTE_READONLY) != 0 && (!exists || disposition == CREATE_ALWAYS)) {
        struct stat status {};
        if (fstat(opened->file, &status) != 0 || !SetReadOnly(place.file, status, true)) {
            return fail(ErrorFromErrno(errno));
        }
    }
    opened->deleteOnClose = (flags & FILE_FLAG_DELETE_ON_CLOSE) != 0;
    result.handle = AddObject(std::move(opened));
    if (exists && (disposition == CREATE_ALWAYS || disposition == OPEN_ALWAYS)) {
        result.error = ERROR_ALREADY_EXISTS;
    }
    return result;
}

// Whether the place can be deleted or renamed now. Sets the last error where not.
bool MayRemove(const Place& place) {
    if (place.error != ERROR_SUCCESS) {
        return Fail(place.error) != FALSE;
    }
    const DWORD error =
        SharingError(place.status, FILE_SHARE_DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    return error == ERROR_SUCCESS || Fail(error) != FALSE;
}

constexpr DWORD kMaximumFolderPath = 248;  // MAX_PATH less room for an 8.3 name

}  // namespace

DWORD SharingError(const struct stat& file, DWORD kinds, DWORD share) {
    if (kinds == 0) {
        return ERROR_SUCCESS;
    }
    for (const OpenFile* open : OpenFiles()) {
        if (open->device == file.st_dev && open->number == file.st_ino && open->kinds != 0 &&
            ((kinds & ~open->share) != 0 || (open->kinds & ~share) != 0)) {
            return ERROR_SHARING_VIOLATION;
        }
    }
    return ERROR_SUCCESS;
}

DWORD AttributesOf(const struct stat& status) {
    return (S_ISDIR(status.st_mode) ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_ARCHIVE) |
           (IsReadOnly(status) ? FILE_ATTRIBUTE_READONLY : 0);
}

bool ReadWhole(const std::string& file, std::string& bytes) {
    const int opened = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (opened < 0) {
        return false;
    }
    bytes.clear();
    char buffer[65536];
    ssize_t taken = 0;
    while ((taken = read(opened, buffer, sizeof(buffer))) != 0) {
        if (taken > 0) {
            bytes.append(buffer, static_cast<size_t>(taken));
        } else if (errno != EINTR) {
            const int error = errno;
            close(opened);
            errno = error;
            return false;
        }
    }
    close(opened);
    return true;
}

}  // namespace host

using host::FaultAsked;
using host::MachineLock;
using host::Place;
using host::Resource;

namespace {

// The open file, or null (last error set) where the handle is none, or the wanted right wasn't asked for at its
// opening.
host::OpenFile* FileFor(HANDLE handle, bool host::OpenFile::*right) {
    auto* file = host::FindObject<host::OpenFile>(handle, Resource::kFile);
    if (file != nullptr && right != nullptr && !(file->*right)) {
        SetLastError(ERROR_ACCESS_DENIED);
        return nullptr;
    }
    return file;
}

// -1 where the host can't tell; the last error is set then.
int64_t SizeOf(const host::OpenFile& file) {
    struct stat status {};
    if (fstat(file.file, &status) != 0) {
        SetLastError(host::ErrorFromErrno(errno));
        return -1;
    }
    return status.st_size;
}

// Moves the file's position. ERROR_SUCCESS or why not; then it stays where it was.
DWORD Seek(host::OpenFile& file, int64_t distance, DWORD method) {
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

BOOL Fail(DWORD error) {
    SetLastError(error);
    return FALSE;
}

}  // namespace

extern "C" {

HANDLE WINAPI CreateFileW(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES, DWORD disposition,
                          DWORD flagsAndAttributes, HANDLE) {
    if (FaultAsked("CreateFileW")) {
        return INVALID_HANDLE_VALUE;
    }
    MachineLock lock;
    const host::Opening opening = host::Open(name, access, share, disposition, flagsAndAttributes);
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
    host::OpenFile* file = FileFor(handle, &host::OpenFile::canRead);
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
    host::OpenFile* file = FileFor(handle, &host::OpenFile::canWrite);
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
            return Fail(put == 0 ? ERROR_WRITE_FAULT : host::ErrorFromErrno(errno));
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
    host::OpenFile* file = FileFor(handle, nullptr);
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
    host::OpenFile* file = FileFor(handle, nullptr);
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
    const host::OpenFile* file = FileFor(handle, nullptr);
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
    const host::OpenFile* file = FileFor(handle, nullptr);
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
        if (host::RemoveObject(object, kind)) {
            SetLastError(before);
            return TRUE;
        }
    }
    return Fail(ERROR_INVALID_HANDLE);
}

DWORD WINAPI GetFileAttributesW(LPCWSTR name) {
    if (FaultAsked("GetFileAttributesW")) {
        return INVALID_FILE_ATTRIBUTES;
    }
    const Place place = host::FindPlace(name);
    if (place.error != ERROR_SUCCESS) {
        SetLastError(place.error);
        return INVALID_FILE_ATTRIBUTES;
    }
    return host::AttributesOf(place.status);
}

BOOL WINAPI SetFileAttributesW(LPCWSTR name, DWORD attributes) {
    if (FaultAsked("SetFileAttributesW")) {
        return FALSE;
    }
    MachineLock lock;
    const Place place = host::FindPlace(name);
    if (place.error != ERROR_SUCCESS) {
        return Fail(place.error);
    }
    // Only the read-only attribute is kept; an archive attribute is always there.
    if ((attributes &
         ~(FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_NORMAL | FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_DIRECTORY)) != 0) {
        return Fail(ERROR_NOT_SUPPORTED);
    }
    return host::SetReadOnly(place.file, place.status, (attributes & FILE_ATTRIBUTE_READONLY) != 0) ||
           Fail(host::ErrorFromErrno(errno));
}

BOOL WINAPI CreateDirectoryW(LPCWSTR name, LPSECURITY_ATTRIBUTES) {
    if (FaultAsked("CreateDirectoryW")) {
        return FALSE;
    }
    MachineLock lock;
    const Place place = host::FindPlace(name);
    if (place.error == ERROR_SUCCESS) {
        return Fail(ERROR_ALREADY_EXISTS);
    }
    if (!place.onDrive || place.error == ERROR_PATH_NOT_FOUND) {
        return Fail(place.error);
    }
    if (place.full.size() >= host::kMaximumFolderPath) {
        return Fail(ERROR_FILENAME_EXCED_RANGE);
    }
    return mkdir(place.file.c_str(), 0777) == 0 || Fail(host::ErrorFromErrno(errno));
}

BOOL WINAPI DeleteFileW(LPCWSTR name) {
    if (FaultAsked("DeleteFileW")) {
        return FALSE;
    }
    MachineLock lock;
    const Place place = host::FindPlace(name);
    if (place.error == ERROR_SUCCESS && (S_ISDIR(place.status.st_mode) || host::IsReadOnly(place.status))) {
        return Fail(ERROR_ACCESS_DENIED);
    }
    if (!host::MayRemove(place)) {
        return FALSE;
    }
    return unlink(place.file.c_str()) == 0 || Fail(host::ErrorFromErrno(errno));
}

BOOL WINAPI MoveFileExW(LPCWSTR from, LPCWSTR to, DWORD flags) {
    if (FaultAsked("MoveFileExW")) {
        return FALSE;
    }
    MachineLock lock;
    if ((flags & ~(MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED | MOVEFILE_WRITE_THROUGH)) != 0) {
        return Fail(ERROR_NOT_SUPPORTED);
    }
    const Place source = host::FindPlace(from);
    if (!host::MayRemove(source)) {
        return FALSE;
    }
    const Place target = host::FindPlace(to);
    if (!target.onDrive || target.error == ERROR_PATH_NOT_FOUND) {
        return Fail(target.error);
    }
    std::string targetFile = target.file;
    const bool same = target.error == ERROR_SUCCESS && target.status.st_ino == source.status.st_ino &&
                      target.status.st_dev == source.status.st_dev;
    if (same) {
        // A change of case: the name is what the caller writes, in the folder where the file is.
        targetFile = target.file.substr(0, target.file.rfind('/') + 1) +
                     host::ToUtf8(target.full.substr(target.full.rfind(u'\\') + 1));
    } else if (target.error == ERROR_SUCCESS) {
        if ((flags & MOVEFILE_REPLACE_EXISTING) == 0) {
            return Fail(ERROR_ALREADY_EXISTS);
        }
        if (S_ISDIR(target.status.st_mode) || S_ISDIR(source.status.st_mode) || host::IsReadOnly(target.status) ||
            host::SharingError(target.status, FILE_SHARE_DELETE,
                               FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE) != ERROR_SUCCESS) {
            return Fail(ERROR_ACCESS_DENIED);
        }
    }
    return rename(source.file.c_str(), targetFile.c_str()) == 0 || Fail(host::ErrorFromErrno(errno));
}

BOOL WINAPI CopyFileW(LPCWSTR from, LPCWSTR to, BOOL failIfExists) {
    if (FaultAsked("CopyFileW")) {
        return FALSE;
    }
    MachineLock lock;
    const host::Opening source =
        host::Open(from, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
    if (source.handle == INVALID_HANDLE_VALUE) {
        return Fail(source.error);
    }
    const host::Opening target =
        host::Open(to, GENERIC_WRITE, 0, failIfExists ? CREATE_NEW : CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL);
    if (target.handle == INVALID_HANDLE_VALUE) {
        CloseHandle(source.handle);
        return Fail(target.error);
    }
    const int in = FileFor(source.handle, nullptr)->file;
    const host::OpenFile* copy = FileFor(target.handle, nullptr);
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
                error = host::ErrorFromErrno(errno);
            }
            put += written;
        }
    }
    // The copy has its original's read-only attribute.
    struct stat original {};
    struct stat made {};
    if (error == ERROR_SUCCESS && (fstat(in, &original) != 0 || fstat(copy->file, &made) != 0 ||
                                   !host::SetReadOnly(copy->hostName, made, host::IsReadOnly(original)))) {
        error = host::ErrorFromErrno(errno);
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
    Place place = host::FindPlace(name);
    if (place.error != ERROR_SUCCESS) {
        return Fail(place.error);
    }
    if (!S_ISDIR(place.status.st_mode)) {
        return Fail(ERROR_DIRECTORY);
    }
    host::SetCurrentDirectory(std::move(place.full));
    return TRUE;
}

}  // extern "C"
