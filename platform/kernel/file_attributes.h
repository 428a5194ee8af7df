// Attributes of files and folders. Only the read-only attribute can be set; it is what the host's owner may do.
#pragma once

#include <windows.h>

#include <sys/stat.h>

#include <string>

namespace host {

bool IsReadOnly(const struct stat& status);

// False where the host refuses; the error is in errno.
bool SetReadOnly(const std::string& file, const struct stat& status, bool readOnly);

// FILE_ATTRIBUTE_… bits of a file or folder.
DWORD AttributesOf(const struct stat& status);

}  // namespace host
