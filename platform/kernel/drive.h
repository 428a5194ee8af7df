// Drive C: of the machine: a folder of the host, looked up without regard to case.
#pragma once

#include <windows.h>

#include <sys/stat.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

// The host's path for a full path such as "C:\Windows\x.ini" (or one relative to the current directory). Components
// that exist are found whatever their case, and by their short names; the rest is taken as written. Null where the path
// doesn't lie on the drive (another letter, a share, a path that leaves the drive by "..").
std::optional<std::filesystem::path> HostPath(std::u16string_view path);

// What a path leads to.
struct Place {
    DWORD error = ERROR_SUCCESS;  // why there is nothing: ERROR_SUCCESS where there is something
    bool onDrive = false;         // false: the path is none of the drive's; `full` and `file` are empty
    bool parentExists = false;    // the folder that has it, or would have it
    std::u16string full;          // "C:\…", separators single, without "." and ".." and a separator at the end
    std::string file;             // the host's path
    struct stat status {};        // valid where error is ERROR_SUCCESS
};

// Null and the empty path are none of the drive's (ERROR_PATH_NOT_FOUND).
Place FindPlace(const char16_t* path);

// The host's folder that is the drive; empty: no machine.
const std::string& DriveFolder();
// Also makes the current directory C:\.
void SetDriveFolder(const std::filesystem::path& folder);

// "C:\", or "C:\…" without a separator at the end.
const std::u16string& CurrentDirectory();
void SetCurrentDirectory(std::u16string full);

// Names in a folder with their 8.3 names (empty where the name is one itself), in the order of the folded names.
struct FolderName {
    std::u16string name;
    std::u16string shortName;
    std::string hostName;
};
// `status` is the folder's, got under the machine's lock, which is held as long as the list is used.
const std::vector<FolderName>& ListFolder(const std::string& folder, const struct stat& status);

// The whole content of a file of the host. False where it can't be read; the error is in errno.
bool ReadWhole(const std::string& file, std::string& bytes);

// An error number for a failed call of the host.
DWORD ErrorFromErrno(int error);

}  // namespace host
