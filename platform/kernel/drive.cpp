#include "platform/kernel/drive.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <unordered_map>

#include "platform/kernel/objects.h"
#include "platform/kernel/text.h"

namespace host {
namespace {

constexpr size_t kKnownPlacesLimit = 1024;
constexpr size_t kKnownFoldersLimit = 64;

bool IsBefore(const timespec& a, const timespec& b) {
    return a.tv_sec != b.tv_sec ? a.tv_sec < b.tv_sec : a.tv_nsec < b.tv_nsec;
}

// What was in a folder when it was read.
struct Listing {
    dev_t device = 0;
    ino_t file = 0;
    timespec changed = {};  // when the folder was changed last
    std::vector<FolderName> names;

    // Whether that is there still: every change sets the time anew.
    bool Holds(const struct stat& status) const {
        return device == status.st_dev && file == status.st_ino && !IsBefore(changed, status.st_mtim) &&
               !IsBefore(status.st_mtim, changed);
    }
};

struct DriveState {
    std::string folder;
    std::u16string currentDirectory = u"C:\\";
    // Host's paths of full paths that were found by a walk. An entry is used only while its file exists: then it is
    // the only one of that name, as the layer makes no two names that differ in case only.
    std::unordered_map<std::u16string, std::string> known;
    std::unordered_map<std::string, Listing> listings;  // by the folders' paths on the host
};

DriveState& Drive() {
    static DriveState& drive = *new DriveState;
    return drive;
}

bool IsSeparator(char16_t c) {
    return c == u'\\' || c == u'/';
}

bool IsLetter(char16_t c) {
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

bool IsAllowedInName(char16_t c) {
    return c >= 0x20 && c != u'<' && c != u'>' && c != u'"' && c != u'|' && c != u'?' && c != u'*' && c != u':';
}

// The full path of `path`, or an error.
DWORD MakeFull(std::u16string_view path, std::u16string& full) {
    if (path.empty()) {
        return ERROR_PATH_NOT_FOUND;
    }
    if (path.size() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1])) {
        return ERROR_BAD_NETPATH;
    }
    std::u16string_view rest = path;
    full = u"C:";
    bool fromCurrent = true;
    if (rest.size() >= 2 && rest[1] == u':' && IsLetter(rest[0])) {
        if (rest[0] != u'C' && rest[0] != u'c') {
            return ERROR_PATH_NOT_FOUND;
        }
        rest.remove_prefix(2);
    }
    if (!rest.empty() && IsSeparator(rest[0])) {
        fromCurrent = false;
    }
    if (fromCurrent && Drive().currentDirectory.size() > 3) {
        full = Drive().currentDirectory;
    }
    while (!rest.empty()) {
        size_t length = 0;
        while (length < rest.size() && !IsSeparator(rest[length])) {
            ++length;
        }
        std::u16string_view name = rest.substr(0, length);
        rest.remove_prefix(std::min(rest.size(), length + 1));
        if (name.empty() || name == u".") {
            continue;
        }
        if (name == u"..") {
            if (full.size() <= 2) {
                return ERROR_PATH_NOT_FOUND;
            }
            full.resize(full.rfind(u'\\'));
            continue;
        }
        // As the published calls have it, a name doesn't end in dots or blanks.
        while (!name.empty() && (name.back() == u'.' || name.back() == u' ')) {
            name.remove_suffix(1);
        }
        if (name.empty() || !std::all_of(name.begin(), name.end(), IsAllowedInName)) {
            return ERROR_INVALID_NAME;
        }
        full += u'\\';
        full += name;
    }
    if (full.size() == 2) {
        full += u'\\';
    }
    return full.size() >= MAX_PATH ? ERROR_PATH_NOT_FOUND : ERROR_SUCCESS;
}

std::string HostForm(const std::u16string& full) {
    std::string file = ToUtf8(std::u16string_view(full).substr(full.size() > 3 ? 2 : 3));
    std::replace(file.begin(), file.end(), '\\', '/');
    return Drive().folder + file;
}

// Walks the components of a path of which something isn't there as it is written: the last one alone where the folder
// is there.
void Walk(Place& place) {
    struct stat status {};
    const size_t last = place.full.rfind(u'\\') + 1;
    std::string file = HostForm(place.full.substr(0, std::max<size_t>(last - 1, 3)));
    std::u16string_view rest(place.full);
    if (last > 3 && stat(file.c_str(), &status) == 0) {
        place.error = ERROR_SUCCESS;
        rest.remove_prefix(last);
    } else {
        file = Drive().folder;
        place.error = stat(file.c_str(), &status) == 0 ? ERROR_SUCCESS : ERROR_PATH_NOT_FOUND;
        rest.remove_prefix(3);
    }
    place.parentExists = place.error == ERROR_SUCCESS;
    while (!rest.empty()) {
        const size_t length = std::min(rest.find(u'\\'), rest.size());
        const std::u16string_view name = rest.substr(0, length);
        rest.remove_prefix(std::min(rest.size(), length + 1));
        std::string next = file + "/" + ToUtf8(name);
        if (place.error == ERROR_SUCCESS) {
            if (!S_ISDIR(status.st_mode)) {
                place.error = ERROR_PATH_NOT_FOUND;
            } else if (stat(next.c_str(), &status) != 0) {
                const std::vector<FolderName>& names = ListFolder(file, status);
                const auto found = std::find_if(names.begin(), names.end(), [name](const FolderName& entry) {
                    return EqualsIgnoringCase(entry.name, name) || EqualsIgnoringCase(entry.shortName, name);
                });
                if (found != names.end()) {
                    next = file + "/" + found->hostName;
                }
                if (found == names.end() || stat(next.c_str(), &status) != 0) {
                    place.error = rest.empty() ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
                }
            }
            // True still where only the last component is missing.
            place.parentExists = place.error != ERROR_PATH_NOT_FOUND;
        }
        file = std::move(next);
    }
    place.file = std::move(file);
    place.status = status;
}

bool IsShortNameCharacter(char16_t c) {
    return c > 0x20 && c < 0x7F && IsAllowedInName(c) &&
           std::u16string_view(u"+,;=[].\\/").find(c) == std::u16string_view::npos;
}

bool IsShortName(std::u16string_view name) {
    const size_t dot = name.find(u'.');
    const std::u16string_view base = name.substr(0, dot);
    const std::u16string_view extension = dot == name.npos ? std::u16string_view() : name.substr(dot + 1);
    return !base.empty() && base.size() <= 8 && extension.size() <= 3 && (dot == name.npos || !extension.empty()) &&
           std::all_of(base.begin(), base.end(), IsShortNameCharacter) &&
           std::all_of(extension.begin(), extension.end(), IsShortNameCharacter);
}

std::u16string ShortNamePart(std::u16string_view part, size_t limit) {
    std::u16string cleaned;
    for (const char16_t c : part) {
        if (c != u' ' && c != u'.' && cleaned.size() < limit) {
            cleaned += IsShortNameCharacter(c) ? UpperCase(c) : u'_';
        }
    }
    return cleaned;
}

// Two characters of the name, four digits from all of it, "~" and a number: so a name keeps its short form whatever
// else comes into the folder, but for the rare two names whose digits agree.
std::u16string MakeShortName(std::u16string_view name, unsigned number) {
    uint32_t hash = 2166136261u;
    for (const char16_t c : name) {
        hash = (hash ^ UpperCase(c)) * 16777619u;
    }
    hash = (hash >> 16) ^ (hash & 0xFFFF);
    while (!name.empty() && name.front() == u'.') {
        name.remove_prefix(1);
    }
    const size_t dot = name.rfind(u'.');
    std::u16string made = ShortNamePart(name.substr(0, dot), 2);
    for (int shift = 12; shift >= 0; shift -= 4) {
        made += u"0123456789ABCDEF"[hash >> shift & 0xF];
    }
    made += u'~';
    made += static_cast<char16_t>(u'0' + number);
    if (dot != name.npos) {
        if (const std::u16string extension = ShortNamePart(name.substr(dot + 1), 3); !extension.empty()) {
            made += u'.' + extension;
        }
    }
    return made;
}

std::vector<FolderName> ReadFolder(const std::string& folder) {
    std::map<std::u16string, FolderName> byFoldedName;
    if (DIR* directory = opendir(folder.c_str())) {
        while (const dirent* entry = readdir(directory)) {
            const std::string hostName = entry->d_name;
            if (hostName != "." && hostName != "..") {
                std::u16string name = ToWide(hostName);
                std::u16string folded = FoldCase(name);
                byFoldedName.try_emplace(std::move(folded), FolderName{std::move(name), {}, hostName});
            }
        }
        closedir(directory);
    }
    std::map<std::u16string, bool> taken;
    for (auto& [folded, entry] : byFoldedName) {
        if (!IsShortName(entry.name)) {
            for (unsigned number = 1; number <= 9; ++number) {
                std::u16string made = MakeShortName(entry.name, number);
                if (!byFoldedName.contains(made) && taken.try_emplace(made, true).second) {
                    entry.shortName = std::move(made);
                    break;
                }
            }
        }
    }
    std::vector<FolderName> names;
    names.reserve(byFoldedName.size());
    for (auto& [folded, entry] : byFoldedName) {
        names.push_back(std::move(entry));
    }
    return names;
}

}  // namespace

const std::vector<FolderName>& ListFolder(const std::string& folder, const struct stat& status) {
    auto& listings = Drive().listings;
    const auto known = listings.find(folder);
    if (known != listings.end() && known->second.Holds(status)) {
        return known->second.names;
    }
    if (listings.size() >= kKnownFoldersLimit) {
        listings.clear();
    }
    // The file system has this clock, which stands still for milliseconds: a change at the time of the last one would
    // not be seen.
    timespec now;
    clock_gettime(CLOCK_REALTIME_COARSE, &now);
    Listing& listing = listings[folder];
    listing = {status.st_dev, status.st_ino, {}, ReadFolder(folder)};
    if (IsBefore(status.st_mtim, now)) {
        listing.changed = status.st_mtim;
    }
    return listing.names;
}

Place FindPlace(const char16_t* path) {
    MachineLock lock;
    Place place;
    if (path == nullptr || Drive().folder.empty()) {
        place.error = ERROR_PATH_NOT_FOUND;
        return place;
    }
    place.error = MakeFull(path, place.full);
    if (place.error != ERROR_SUCCESS) {
        place.full.clear();
        return place;
    }
    place.onDrive = true;
    auto& known = Drive().known;
    const auto found = known.find(place.full);
    place.file = found != known.end() ? found->second : HostForm(place.full);
    if (stat(place.file.c_str(), &place.status) == 0) {
        place.parentExists = true;
        return place;
    }
    Walk(place);
    if (place.error == ERROR_SUCCESS) {
        if (known.size() >= kKnownPlacesLimit) {
            known.clear();
        }
        known[place.full] = place.file;
    }
    return place;
}

std::optional<std::filesystem::path> HostPath(std::u16string_view path) {
    const Place place = FindPlace(std::u16string(path).c_str());
    if (!place.onDrive) {
        return std::nullopt;
    }
    return place.file;
}

const std::string& DriveFolder() {
    return Drive().folder;
}

void SetDriveFolder(const std::filesystem::path& folder) {
    Drive().folder = folder.string();
    Drive().currentDirectory = u"C:\\";
    Drive().known.clear();
    Drive().listings.clear();
}

const std::u16string& CurrentDirectory() {
    return Drive().currentDirectory;
}

void SetCurrentDirectory(std::u16string full) {
    Drive().currentDirectory = std::move(full);
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

DWORD ErrorFromErrno(int error) {
    switch (error) {
        case ENOENT:
            return ERROR_FILE_NOT_FOUND;
        case ENOTDIR:
            return ERROR_PATH_NOT_FOUND;
        case EEXIST:
            return ERROR_FILE_EXISTS;
        case EACCES:
        case EPERM:
        case EROFS:
        case EISDIR:
        case ETXTBSY:
            return ERROR_ACCESS_DENIED;
        case EMFILE:
        case ENFILE:
            return ERROR_TOO_MANY_OPEN_FILES;
        case ENOMEM:
            return ERROR_NOT_ENOUGH_MEMORY;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return ERROR_DISK_FULL;
        case ENOTEMPTY:
            return ERROR_DIR_NOT_EMPTY;
        case ENAMETOOLONG:
            return ERROR_FILENAME_EXCED_RANGE;
        default:
            return ERROR_GEN_FAILURE;
    }
}

}  // namespace host
