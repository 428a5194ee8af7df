// Open files, and what they let others do.
#pragma once

#include <windows.h>

#include <sys/stat.h>

#include <string>
#include <string_view>

namespace host {

// Kinds of access for the sharing rules: FILE_SHARE_READ for reading, FILE_SHARE_WRITE for writing, FILE_SHARE_DELETE
// for deleting or renaming.
//
// ERROR_SHARING_VIOLATION where a handle that is open on the file excludes this access or has an access that `share`
// excludes; ERROR_SUCCESS otherwise.
DWORD SharingError(const struct stat& file, DWORD kinds, DWORD share);

// FILE_ATTRIBUTE_… bits of a file or folder.
DWORD AttributesOf(const struct stat& status);

// The whole content of a file of the host. False where it can't be read; the error is in errno.
bool ReadWhole(const std::string& file, std::string& bytes);

}  // namespace host
