// FindFirstFileW and its fellows.
#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/kernel/drive.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/file_attributes.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/text.h"

namespace host {
namespace {

class Search final : public Object {
  public:
    Search() : Object(Resource::kSearch) {}
    std::string Describe() const override { return ToUtf8(pattern); }

    std::u16string pattern;
    std::string folder;
    std::vector<FolderName> left;  // what is still to be given, last first
};

// Whether a folded name fits a folded pattern of "*" (any text) and "?" (one character, or nothing at the name's end
// and before a dot).
bool Matches(std::u16string_view name, std::u16string_view pattern) {
    if (pattern.empty()) {
        return name.empty();
    }
    if (pattern.front() == u'*') {
        for (size_t skipped = 0; skipped <= name.size(); ++skipped) {
            if (Matches(name.substr(skipped), pattern.substr(1))) {
                return true;
            }
        }
        return false;
    }
    if (pattern.front() == u'?') {
        const bool takesNothing = name.empty() || name.front() == u'.';
        return Matches(takesNothing ? name : name.substr(1), pattern.substr(1));
    }
    return !name.empty() && name.front() == pattern.front() && Matches(name.substr(1), pattern.substr(1));
}

bool NameFits(std::u16string_view name, std::u16string_view pattern) {
    const std::u16string folded = FoldCase(name);
    if (pattern == u"*.*") {
        return true;
    }
    // A dot at the pattern's end: only names without an extension.
    if (pattern.size() > 1 && pattern.back() == u'.' && pattern.find_first_of(u"*?") != pattern.npos) {
        pattern.remove_suffix(1);
        return folded.find_first_not_of(u'.') == folded.npos ||
               (folded.find(u'.') == folded.npos && Matches(folded, pattern));
    }
    return Matches(folded, pattern);
}

FILETIME ToFileTime(const struct timespec& time) {
    constexpr int64_t kSecondsTo1970 = 11644473600;  // from 1601
    const auto ticks =
        static_cast<uint64_t>((static_cast<int64_t>(time.tv_sec) + kSecondsTo1970) * 10000000 + time.tv_nsec / 100);
    return {static_cast<DWORD>(ticks & 0xFFFFFFFF), static_cast<DWORD>(ticks >> 32)};
}

void CopyName(std::u16string_view name, WCHAR* buffer, size_t size) {
    const size_t length = std::min(name.size(), size - 1);
    std::copy_n(name.begin(), length, buffer);
    buffer[length] = 0;
}

// Gives the next entry that is still there. False: no more.
bool GiveNext(Search& search, WIN32_FIND_DATAW& data) {
    while (!search.left.empty()) {
        const FolderName entry = std::move(search.left.back());
        search.left.pop_back();
        struct stat status {};
        if (stat((search.folder + "/" + entry.hostName).c_str(), &status) != 0) {
            continue;
        }
        data = {};
        data.dwFileAttributes = AttributesOf(status);
        data.ftLastWriteTime = ToFileTime(status.st_mtim);
        data.ftLastAccessTime = ToFileTime(status.st_atim);
        data.ftCreationTime = data.ftLastWriteTime;
        if (!S_ISDIR(status.st_mode)) {
            data.nFileSizeHigh = static_cast<DWORD>(static_cast<uint64_t>(status.st_size) >> 32);
            data.nFileSizeLow = static_cast<DWORD>(status.st_size & 0xFFFFFFFF);
        }
        CopyName(entry.name, data.cFileName, std::size(data.cFileName));
        CopyName(entry.shortName, data.cAlternateFileName, std::size(data.cAlternateFileName));
        return true;
    }
    return false;
}

}  // namespace
}  // namespace host

using host::FaultAsked;
using host::MachineLock;
using host::Resource;

extern "C" {

HANDLE WINAPI FindFirstFileW(LPCWSTR pattern, LPWIN32_FIND_DATAW found) {
    if (FaultAsked("FindFirstFileW")) {
        return INVALID_HANDLE_VALUE;
    }
    MachineLock lock;
    std::u16string whole = pattern != nullptr ? pattern : u"";
    size_t nameAt = whole.find_last_of(u"\\/:") + 1;  // 0 where there is none
    if (const std::u16string_view last = std::u16string_view(whole).substr(nameAt); last == u"." || last == u"..") {
        // The folder itself is looked for, by its own name.
        whole = host::FindPlace(whole.c_str()).full;
        nameAt = whole.find_last_of(u'\\') + 1;
    }
    const std::u16string folder = nameAt == 0 ? std::u16string(1, u'.') : whole.substr(0, nameAt);
    const std::u16string name = host::FoldCase(whole.substr(nameAt));
    const host::Place place = whole.empty() ? host::FindPlace(nullptr) : host::FindPlace(folder.c_str());
    if (place.error != ERROR_SUCCESS || !S_ISDIR(place.status.st_mode)) {
        SetLastError(place.error == ERROR_SUCCESS          ? ERROR_DIRECTORY
                     : place.error == ERROR_FILE_NOT_FOUND ? ERROR_PATH_NOT_FOUND
                                                           : place.error);
        return INVALID_HANDLE_VALUE;
    }
    std::vector<host::FolderName> names = host::ListFolder(place.file, place.status);
    if (place.full.size() > 3) {
        names.insert(names.begin(), {{u".", u"", "."}, {u"..", u"", ".."}});
    }
    auto search = std::make_unique<host::Search>();
    search->pattern = whole;
    search->folder = place.file;
    for (auto entry = names.rbegin(); entry != names.rend(); ++entry) {
        if (host::NameFits(entry->name, name) ||
            (!entry->shortName.empty() && host::NameFits(entry->shortName, name))) {
            search->left.push_back(std::move(*entry));
        }
    }
    if (!host::GiveNext(*search, *found)) {
        SetLastError(ERROR_FILE_NOT_FOUND);
        return INVALID_HANDLE_VALUE;
    }
    return host::AddObject(std::move(search));
}

BOOL WINAPI FindNextFileW(HANDLE handle, LPWIN32_FIND_DATAW found) {
    if (FaultAsked("FindNextFileW")) {
        return FALSE;
    }
    MachineLock lock;
    auto* search = host::FindObject<host::Search>(handle, Resource::kSearch);
    if (search == nullptr) {
        return FALSE;
    }
    if (!host::GiveNext(*search, *found)) {
        SetLastError(ERROR_NO_MORE_FILES);
        return FALSE;
    }
    return TRUE;
}

BOOL WINAPI FindClose(HANDLE search) {
    return host::RemoveObject(search, Resource::kSearch);
}

}  // extern "C"
