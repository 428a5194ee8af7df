// INI files: lines of text in sections. A file is read whole for a call, and a change is written whole, with every line
// that the change doesn't concern as it was, byte for byte.
#include <windows.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/kernel/code_pages.h"
#include "platform/kernel/drive.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/file_attributes.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/open_files.h"
#include "platform/kernel/settings.h"
#include "platform/kernel/store.h"
#include "platform/kernel/text.h"

namespace host {
namespace {

enum class Encoding { kAnsi, kUtf8, kUtf16, kUtf16Reversed };

// What a file begins with; one without a mark is in the ANSI code page.
constexpr std::pair<Encoding, std::string_view> kMarks[] = {
    {Encoding::kUtf8, "\xEF\xBB\xBF"}, {Encoding::kUtf16, "\xFF\xFE"}, {Encoding::kUtf16Reversed, "\xFE\xFF"}};

// The end-of-file character of old editors is a blank.
bool IsBlank(char16_t c) {
    return c == u' ' || (c >= u'\t' && c <= u'\r') || c == 0x1A;
}

std::u16string_view TrimFront(std::u16string_view text) {
    while (!text.empty() && IsBlank(text.front())) {
        text.remove_prefix(1);
    }
    return text;
}

std::u16string_view Trim(std::u16string_view text) {
    text = TrimFront(text);
    while (!text.empty() && IsBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

// A name or value of a file, without blanks around it. It ends at a NUL, as the calls' own texts do.
std::u16string_view TrimPart(std::u16string_view text) {
    text = Trim(text);
    return text.substr(0, text.find(u'\0'));
}

struct Line {
    // A comment is an entry whose key begins with ";", which lists leave out.
    enum class Kind { kOther, kSection, kEntry, kComment };

    std::string bytes;  // as in the file, with the line's end
    Kind kind = Kind::kOther;
    std::u16string name;                  // of the section, or the key
    std::optional<std::u16string> value;  // none: the entry has no "="
};

// Indices of a section's lines, the one with its name apart. The lines before the first named section are a section
// without a name.
struct SectionLines {
    bool exists;
    size_t begin;  // with the name
    size_t first;  // behind the name
    size_t end;
};

class IniFile {
  public:
    // ERROR_SUCCESS or why the file can't be read; it is empty then.
    DWORD Read(const Place& place) {
        if (place.error != ERROR_SUCCESS) {
            return place.error;
        }
        if (S_ISDIR(place.status.st_mode)) {
            return ERROR_ACCESS_DENIED;
        }
        if (const DWORD error = SharingError(place.status, FILE_SHARE_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
            error != ERROR_SUCCESS) {
            return error;
        }
        std::string bytes;
        if (!ReadWhole(place.file, bytes)) {
            return ErrorFromErrno(errno);
        }
        Split(bytes);
        return ERROR_SUCCESS;
    }

    // ERROR_SUCCESS or why the file can't be written; it is as it was then.
    DWORD Write(const Place& place) const {
        std::string bytes(mark_);
        for (const Line& line : lines_) {
            bytes += line.bytes;
        }
        return ReplaceFile(place.file, bytes) ? ERROR_SUCCESS : ErrorFromErrno(errno);
    }

    std::vector<std::u16string> SectionNames() const {
        std::vector<std::u16string> names;
        for (const Line& line : lines_) {
            if (line.kind == Line::Kind::kSection && !line.name.empty()) {
                names.push_back(line.name);
            }
        }
        return names;
    }

    // The entries of the first section of that name.
    std::vector<const Line*> Entries(std::u16string_view section) const {
        const SectionLines lines = FindSection(section);
        std::vector<const Line*> entries;
        for (size_t i = lines.first; i < lines.end; ++i) {
            if (lines_[i].kind == Line::Kind::kEntry) {
                entries.push_back(&lines_[i]);
            }
        }
        return entries;
    }

    const std::u16string* Value(std::u16string_view section, std::u16string_view key) const {
        const SectionLines lines = FindSection(section);
        const size_t entry = FindEntry(lines, key);
        return entry < lines.end && lines_[entry].value ? &*lines_[entry].value : nullptr;
    }

    // Each says whether anything changed.
    bool DeleteSection(std::u16string_view section) {
        const SectionLines lines = FindSection(section);
        lines_.erase(lines_.begin() + static_cast<ptrdiff_t>(lines.begin),
                     lines_.begin() + static_cast<ptrdiff_t>(lines.end));
        return lines.begin != lines.end;
    }

    bool DeleteEntry(std::u16string_view section, std::u16string_view key) {
        const SectionLines lines = FindSection(section);
        const size_t entry = FindEntry(lines, key);
        if (entry == lines.end) {
            return false;
        }
        lines_.erase(lines_.begin() + static_cast<ptrdiff_t>(entry));
        return true;
    }

    // A key that is there keeps its spelling.
    bool SetValue(std::u16string_view section, std::u16string_view key, std::u16string_view value) {
        value = TrimFront(value);
        SectionLines lines = FindSection(section);
        if (!lines.exists) {
            Insert(lines_.size(), u"[" + std::u16string(Trim(section)) + u"]");
            lines = {true, lines_.size() - 1, lines_.size(), lines_.size()};
        }
        const size_t entry = FindEntry(lines, key);
        if (entry < lines.end) {
            Line& line = lines_[entry];
            if (line.value == value) {
                return false;
            }
            line = MakeLine(Encode(line.name + u"=" + std::u16string(value) + u"\r\n"));
            return true;
        }
        // Behind the section's last line that isn't blank.
        size_t at = lines.end;
        while (at > lines.first && Trim(Decode(lines_[at - 1].bytes)).empty()) {
            --at;
        }
        Insert(at, std::u16string(Trim(key)) + u"=" + std::u16string(value));
        return true;
    }

  private:
    bool IsWide() const { return encoding_ == Encoding::kUtf16 || encoding_ == Encoding::kUtf16Reversed; }

    // The character of a wide file or the byte of another one at `place`; 0 behind the end.
    char16_t UnitAt(std::string_view bytes, size_t place) const {
        const auto byte = [&bytes](size_t at) { return at < bytes.size() ? static_cast<uint8_t>(bytes[at]) : 0; };
        switch (encoding_) {
            case Encoding::kUtf16:
                return static_cast<char16_t>(byte(place) | byte(place + 1) << 8);
            case Encoding::kUtf16Reversed:
                return static_cast<char16_t>(byte(place) << 8 | byte(place + 1));
            default:
                return static_cast<char16_t>(byte(place));
        }
    }

    // Lines end with "\r\n", "\n" or "\r". A half character at the end of a wide file is taken with a 0 behind it.
    void Split(std::string_view bytes) {
        for (const auto& [encoding, mark] : kMarks) {
            if (bytes.starts_with(mark)) {
                encoding_ = encoding;
                mark_ = mark;
            }
        }
        bytes.remove_prefix(mark_.size());
        const size_t unit = IsWide() ? 2 : 1;
        while (!bytes.empty()) {
            size_t length = 0;
            bool ends = false;
            while (length < bytes.size() && !ends) {
                const char16_t c = UnitAt(bytes, length);
                length = std::min(bytes.size(), length + unit);
                ends = c == u'\n' || (c == u'\r' && UnitAt(bytes, length) != u'\n');
            }
            std::string line(bytes.substr(0, length));
            line.resize((length + unit - 1) / unit * unit);
            lines_.push_back(MakeLine(std::move(line)));
            bytes.remove_prefix(length);
        }
    }

    Line MakeLine(std::string bytes) const {
        Line line;
        line.bytes = std::move(bytes);
        const std::u16string decoded = Decode(line.bytes);
        const std::u16string_view text = Trim(decoded);
        if (text.empty()) {
            return line;
        }
        if (text.front() == u'[') {
            if (const size_t end = text.rfind(u']'); end != text.npos) {
                line.kind = Line::Kind::kSection;
                line.name = TrimPart(text.substr(1, end - 1));
                return line;
            }
        }
        line.kind = text.front() == u';' ? Line::Kind::kComment : Line::Kind::kEntry;
        const size_t equals = text.find(u'=');
        line.name = TrimPart(text.substr(0, equals));
        if (equals != text.npos) {
            line.value = TrimPart(text.substr(equals + 1));
        }
        return line;
    }

    std::u16string Decode(std::string_view bytes) const {
        if (!IsWide()) {
            return encoding_ == Encoding::kUtf8 ? ToWide(bytes) : FromAnsi(bytes);
        }
        std::u16string text;
        for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
            text += UnitAt(bytes, i);
        }
        return text;
    }

    std::string Encode(std::u16string_view text) const {
        if (!IsWide()) {
            return encoding_ == Encoding::kUtf8 ? ToUtf8(text) : ToAnsi(text);
        }
        std::string bytes;
        for (const char16_t c : text) {
            const char halves[] = {static_cast<char>(c & 0xFF), static_cast<char>(c >> 8)};
            const bool reversed = encoding_ == Encoding::kUtf16Reversed;
            bytes += {halves[reversed ? 1 : 0], halves[reversed ? 0 : 1]};
        }
        return bytes;
    }

    void Insert(size_t at, const std::u16string& text) {
        // The line before may be the file's last, without an end.
        if (at > 0) {
            const std::u16string before = Decode(lines_[at - 1].bytes);
            if (before.empty() || (before.back() != u'\n' && before.back() != u'\r')) {
                lines_[at - 1].bytes += Encode(u"\r\n");
            }
        }
        lines_.insert(lines_.begin() + static_cast<ptrdiff_t>(at), MakeLine(Encode(text + u"\r\n")));
    }

    // The first section of that name; at the end of the file where there is none.
    SectionLines FindSection(std::u16string_view section) const {
        section = Trim(section);
        size_t begin = 0;
        size_t first = 0;
        if (!section.empty()) {
            while (begin < lines_.size() &&
                   !(lines_[begin].kind == Line::Kind::kSection && EqualsIgnoringCase(lines_[begin].name, section))) {
                ++begin;
            }
            first = std::min(lines_.size(), begin + 1);
        }
        size_t end = first;
        while (end < lines_.size() && lines_[end].kind != Line::Kind::kSection) {
            ++end;
        }
        return {section.empty() || begin < lines_.size(), begin, first, end};
    }

    // The end of the section's lines where it has no such entry.
    size_t FindEntry(const SectionLines& lines, std::u16string_view key) const {
        key = Trim(key);
        size_t entry = lines.first;
        while (entry < lines.end &&
               !((lines_[entry].kind == Line::Kind::kEntry || lines_[entry].kind == Line::Kind::kComment) &&
                 EqualsIgnoringCase(lines_[entry].name, key))) {
            ++entry;
        }
        return entry;
    }

    std::vector<Line> lines_;
    Encoding encoding_ = Encoding::kAnsi;
    std::string_view mark_;
};

// ERROR_SUCCESS or why a file can't be written or made at that place.
DWORD WritingError(const Place& place) {
    if (place.error == ERROR_FILE_NOT_FOUND) {
        return ERROR_SUCCESS;  // it will be made
    }
    if (place.error != ERROR_SUCCESS) {
        return place.error;
    }
    if ((AttributesOf(place.status) & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0) {
        return ERROR_ACCESS_DENIED;
    }
    return SharingError(place.status, FILE_SHARE_READ | FILE_SHARE_WRITE, FILE_SHARE_READ);
}

constexpr char16_t kUserProfile[] = u"C:\\Windows\\win.ini";

// A name without a folder is looked for in the Windows folder; null is the user's profile.
Place PlaceOf(LPCWSTR file) {
    if (file == nullptr) {
        return FindPlace(kUserProfile);
    }
    if (std::u16string_view(file).find_first_of(u"\\/:") == std::u16string_view::npos) {
        return FindPlace((std::u16string(kWindowsFolder) + u"\\" + file).c_str());
    }
    return FindPlace(file);
}

// The value without one pair of quotation marks or apostrophes around it.
std::u16string_view WithoutQuotes(std::u16string_view value) {
    if (value.size() > 1 && (value.front() == u'"' || value.front() == u'\'') && value.back() == value.front()) {
        return value.substr(1, value.size() - 2);
    }
    return value;
}

// Copies as much as there is room for, with a NUL. Returns the characters before it.
DWORD GiveText(std::u16string_view text, LPWSTR buffer, DWORD size) {
    if (buffer == nullptr || size == 0) {
        return 0;
    }
    const size_t length = std::min<size_t>(text.size(), size - 1);
    std::copy_n(text.begin(), length, buffer);
    buffer[length] = 0;
    return static_cast<DWORD>(length);
}

// Copies the texts one after the other, each with its NUL, and one more NUL behind the last. Returns the characters
// before that; where they don't fit, size - 2 with two NULs at the end.
DWORD GiveList(const std::vector<std::u16string>& texts, LPWSTR buffer, DWORD size) {
    std::u16string list;
    for (const std::u16string& text : texts) {
        list += text;
        list += u'\0';
    }
    if (buffer == nullptr || size == 0) {
        return 0;
    }
    if (list.size() < size) {
        std::copy(list.begin(), list.end(), buffer);
        buffer[list.size()] = 0;
        if (list.empty() && size > 1) {
            buffer[1] = 0;
        }
        return static_cast<DWORD>(list.size());
    }
    const size_t length = size > 2 ? size - 2 : 0;
    std::copy_n(list.begin(), length, buffer);
    std::fill(buffer + length, buffer + size, u'\0');
    return static_cast<DWORD>(length);
}

std::vector<std::u16string> EntryNames(const std::vector<const Line*>& entries) {
    std::vector<std::u16string> names;
    for (const Line* entry : entries) {
        if (entry->value) {
            names.push_back(entry->name);
        }
    }
    return names;
}

// A number as the published calls read it: blanks, a sign, digits (hexadecimal, octal or binary behind "0x", "0o" or
// "0b"), up to anything else.
UINT ParseNumber(std::u16string_view text) {
    text = Trim(text);
    const bool negative = !text.empty() && text.front() == u'-';
    if (negative || (!text.empty() && text.front() == u'+')) {
        text.remove_prefix(1);
    }
    UINT base = 10;
    if (text.size() > 2 && text[0] == u'0') {
        base = text[1] == u'x' ? 16 : text[1] == u'o' ? 8 : text[1] == u'b' ? 2 : 10;
        text.remove_prefix(base == 10 ? 0 : 2);
    }
    UINT number = 0;
    for (const char16_t c : text) {
        UINT digit = base;
        if (c >= u'0' && c <= u'9') {
            digit = c - u'0';
        } else if (UpperCase(c) >= u'A' && UpperCase(c) <= u'F') {
            digit = UpperCase(c) - u'A' + 10u;
        }
        if (digit >= base) {
            break;
        }
        number = number * base + digit;
    }
    return negative ? 0u - number : number;
}

// The user's international settings stand for section "intl" of the user's profile. Null: no such key.
std::optional<std::u16string> InternationalSetting(std::u16string_view key) {
    const Settings& settings = CurrentSettings();
    if (EqualsIgnoringCase(key, u"iMeasure")) {
        return settings.metric ? u"0" : u"1";
    }
    if (EqualsIgnoringCase(key, u"sDecimal")) {
        return settings.decimalSeparator;
    }
    return std::nullopt;
}

DWORD GetString(LPCWSTR section, LPCWSTR key, LPCWSTR fallback, LPWSTR buffer, DWORD size, const IniFile& file) {
    if (section == nullptr) {
        return GiveList(file.SectionNames(), buffer, size);
    }
    if (key == nullptr) {
        if (const auto names = EntryNames(file.Entries(section)); !names.empty()) {
            return GiveList(names, buffer, size);
        }
    } else if (const std::u16string* value = file.Value(section, key)) {
        return GiveText(WithoutQuotes(*value), buffer, size);
    }
    std::u16string_view text = fallback != nullptr ? fallback : u"";
    while (!text.empty() && text.back() == u' ') {
        text.remove_suffix(1);
    }
    return GiveText(text, buffer, size);
}

// As GetProfileStringW. `fails`: the profile can't be read.
DWORD GetUserString(LPCWSTR section, LPCWSTR key, LPCWSTR fallback, LPWSTR buffer, DWORD size, bool fails) {
    IniFile file;
    if (!fails) {
        if (section != nullptr && key != nullptr && EqualsIgnoringCase(section, u"intl")) {
            if (const std::optional<std::u16string> value = InternationalSetting(key)) {
                return GiveText(*value, buffer, size);
            }
        }
        SetLastError(file.Read(FindPlace(kUserProfile)));
    }
    return GetString(section, key, fallback, buffer, size, file);
}

}  // namespace
}  // namespace host

using host::FaultAsked;
using host::IniFile;
using host::MachineLock;
using host::Place;

extern "C" {

DWORD WINAPI GetPrivateProfileStringW(LPCWSTR section, LPCWSTR key, LPCWSTR fallback, LPWSTR buffer, DWORD size,
                                      LPCWSTR file) {
    // A failure of this call is a file that can't be read: the fallback is given.
    const bool fails = FaultAsked("GetPrivateProfileStringW");
    MachineLock lock;
    IniFile ini;
    if (!fails) {
        SetLastError(ini.Read(host::PlaceOf(file)));
    }
    return host::GetString(section, key, fallback, buffer, size, ini);
}

UINT WINAPI GetPrivateProfileIntW(LPCWSTR section, LPCWSTR key, INT fallback, LPCWSTR file) {
    const bool fails = FaultAsked("GetPrivateProfileIntW");
    MachineLock lock;
    IniFile ini;
    if (!fails) {
        SetLastError(ini.Read(host::PlaceOf(file)));
    }
    const std::u16string* value = section != nullptr && key != nullptr ? ini.Value(section, key) : nullptr;
    const std::u16string_view text = value != nullptr ? host::WithoutQuotes(*value) : u"";
    return text.empty() ? static_cast<UINT>(fallback) : host::ParseNumber(text);
}

DWORD WINAPI GetPrivateProfileSectionW(LPCWSTR section, LPWSTR buffer, DWORD size, LPCWSTR file) {
    const bool fails = FaultAsked("GetPrivateProfileSectionW");
    MachineLock lock;
    IniFile ini;
    if (!fails) {
        SetLastError(ini.Read(host::PlaceOf(file)));
    }
    std::vector<std::u16string> lines;
    if (section != nullptr) {
        for (const host::Line* entry : ini.Entries(section)) {
            lines.push_back(entry->value ? entry->name + u"=" + *entry->value : entry->name);
        }
    }
    return host::GiveList(lines, buffer, size);
}

BOOL WINAPI WritePrivateProfileStringW(LPCWSTR section, LPCWSTR key, LPCWSTR value, LPCWSTR file) {
    if (FaultAsked("WritePrivateProfileStringW")) {
        return FALSE;
    }
    if (section == nullptr) {
        SetLastError(ERROR_FILE_NOT_FOUND);
        return FALSE;
    }
    MachineLock lock;
    const Place place = host::PlaceOf(file);
    IniFile ini;
    DWORD error = host::WritingError(place);
    if (error == ERROR_SUCCESS && place.error == ERROR_SUCCESS) {
        error = ini.Read(place);
    }
    if (error == ERROR_SUCCESS) {
        const bool changed = key == nullptr     ? ini.DeleteSection(section)
                             : value == nullptr ? ini.DeleteEntry(section, key)
                                                : ini.SetValue(section, key, value);
        if (changed) {
            error = ini.Write(place);
        }
    }
    if (error != ERROR_SUCCESS) {
        SetLastError(error);
        return FALSE;
    }
    return TRUE;
}

DWORD WINAPI GetProfileStringW(LPCWSTR section, LPCWSTR key, LPCWSTR fallback, LPWSTR buffer, DWORD size) {
    const bool fails = FaultAsked("GetProfileStringW");
    MachineLock lock;
    return host::GetUserString(section, key, fallback, buffer, size, fails);
}

UINT WINAPI GetProfileIntW(LPCWSTR section, LPCWSTR key, INT fallback) {
    const bool fails = FaultAsked("GetProfileIntW");
    MachineLock lock;
    WCHAR text[64];
    const bool found =
        section != nullptr && key != nullptr &&
        host::GetUserString(section, key, nullptr, text, static_cast<DWORD>(std::size(text)), fails) != 0;
    return found ? host::ParseNumber(text) : static_cast<UINT>(fallback);
}

}  // extern "C"
