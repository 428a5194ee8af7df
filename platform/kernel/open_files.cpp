#include "platform/kernel/open_files.h"

#include <fcntl.h>

#include <cerrno>
#include <memory>
#include <utility>
#include <vector>

#include "platform/kernel/drive.h"
#include "platform/kernel/file_attributes.h"

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

// The open files, without the table's look-up by handle.
std::vector<const OpenFile*> OpenFiles() {
    std::vector<const OpenFile*> files;
    for (const HANDLE handle : ObjectsOfKind(Resource::kFile)) {
        files.push_back(FindObject<OpenFile>(handle, Resource::kFile));
    }
    return files;
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

}  // namespace

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

}  // namespace host
