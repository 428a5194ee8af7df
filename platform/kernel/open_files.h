// Open files, and what they let others do.
#pragma once

#include <windows.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <string>

#include "platform/kernel/objects.h"
#include "platform/kernel/text.h"

namespace host {

// What a handle of CreateFileW stands for. Closed with its handle; deletes the file then where that was asked for.
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

// What came of opening a file.
struct Opening {
    HANDLE handle = INVALID_HANDLE_VALUE;
    DWORD error = ERROR_SUCCESS;  // ERROR_ALREADY_EXISTS on success too: the published way to say so
};

// As CreateFileW, whose parameters these are; the last error isn't set. To be called under the machine's lock.
Opening Open(LPCWSTR name, DWORD access, DWORD share, DWORD disposition, DWORD flags);

// Kinds of access for the sharing rules: FILE_SHARE_READ for reading, FILE_SHARE_WRITE for writing, FILE_SHARE_DELETE
// for deleting or renaming.
//
// ERROR_SHARING_VIOLATION where a handle that is open on the file excludes this access or has an access that `share`
// excludes; ERROR_SUCCESS otherwise.
DWORD SharingError(const struct stat& file, DWORD kinds, DWORD share);

}  // namespace host
