#include "driver/settings/ini_keys.h"

#include "driver/base/format.h"
#include "driver/base/text.h"

namespace velmora {
namespace {

constexpr WCHAR kQuote = TEXT('"');

// Reading takes away blanks and some control characters.
bool IsLostAtEnds(WCHAR character) {
    return character <= TEXT(' ');
}

bool NeedsQuotes(const WCHAR* text, size_t length) {
    if (length == 0) {
        return false;
    }
    const WCHAR first = text[0];
    const WCHAR last = text[length - 1];
    const bool isQuoted = length > 1 && first == last && (first == kQuote || first == TEXT('\''));
    return isQuoted || IsLostAtEnds(first) || IsLostAtEnds(last);
}

}  // namespace

void FormListKey(WCHAR (&key)[kListKeyCapacity], const WCHAR* name, unsigned index) {
    FormatWide(key, ARRAYSIZE(key), TEXT("%s%d"), name, index);
}

uint16_t ReadListCount(const WCHAR* section, const WCHAR* key, const WCHAR* iniFile) {
    const auto stored = static_cast<INT>(GetPrivateProfileIntW(section, key, -1, iniFile));
    return stored > 0 ? static_cast<uint16_t>(stored) : uint16_t{0};
}

uint32_t ReadHexKey(const WCHAR* section, const WCHAR* key, uint32_t fallback, const WCHAR* iniFile) {
    WCHAR text[32];
    GetPrivateProfileStringW(section, key, TEXT(""), text, ARRAYSIZE(text), iniFile);
    if (text[0] == 0) {
        return fallback;
    }
    const bool isPrefixed = text[0] == TEXT('0') && (text[1] == TEXT('x') || text[1] == TEXT('X'));
    return ParseNumber(isPrefixed ? text + 2 : text, 16);
}

void WriteNumberKey(const WCHAR* section, const WCHAR* key, uint32_t number, const WCHAR* iniFile) {
    WCHAR text[16];
    FormatWide(text, ARRAYSIZE(text), TEXT("%lu"), number);
    WritePrivateProfileStringW(section, key, text, iniFile);
}

void WriteTextKey(const WCHAR* section, const WCHAR* key, const WCHAR* text, size_t capacity, const WCHAR* iniFile) {
    if (!text) {
        WritePrivateProfileStringW(section, key, nullptr, iniFile);
        return;
    }
    const size_t length = TextLength(text, capacity < MAX_PATH ? capacity : MAX_PATH - 1);
    const bool quotes = NeedsQuotes(text, length);
    WCHAR value[MAX_PATH + 2];
    WCHAR* end = value;
    if (quotes) {
        *end++ = kQuote;
    }
    end += CopyText(end, length + 1, text);
    if (quotes) {
        *end++ = kQuote;
    }
    *end = 0;
    WritePrivateProfileStringW(section, key, value, iniFile);
}

}  // namespace velmora
