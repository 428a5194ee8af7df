#include "platform/kernel/code_pages.h"

#include <iconv.h>

#include <array>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/settings.h"
#include "platform/kernel/text.h"

namespace host {
namespace {

// Stands in tables for a byte or character that has no counterpart.
constexpr char16_t kNone = 0xFFFF;

// A code page of one- and two-byte characters, with the tables that iconv's conversions of all characters give.
struct CodePage {
    std::array<char16_t, 256> single;  // kNone for lead bytes and bytes without meaning
    std::array<bool, 256> isLead;
    std::vector<char16_t> pairs;           // by lead << 8 | trail; empty: no two-byte characters
    std::array<uint16_t, 65536> fromWide;  // one byte below 0x100, two bytes above; kNone: none
    char16_t unknownPair = u'?';           // for a two-byte character without meaning
};

class Converter {
  public:
    Converter(const char* to, const char* from) : converter_(iconv_open(to, from)) {
        if (converter_ == reinterpret_cast<iconv_t>(-1)) {
            throw std::runtime_error(std::string("the C library has no converter from ") + from + " to " + to);
        }
    }
    ~Converter() { iconv_close(converter_); }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    // The whole input as one character. The number of bytes written; 0: none.
    size_t Convert(const char* in, size_t inBytes, char* out, size_t outBytes) const {
        char* next = const_cast<char*>(in);
        const size_t room = outBytes;
        iconv(converter_, nullptr, nullptr, nullptr, nullptr);
        const size_t result = iconv(converter_, &next, &inBytes, &out, &outBytes);
        return result == static_cast<size_t>(-1) || inBytes != 0 ? 0 : room - outBytes;
    }

  private:
    iconv_t converter_;
};

char16_t Decode(const Converter& converter, const char* in, size_t inBytes) {
    char16_t wide[4];
    return converter.Convert(in, inBytes, reinterpret_cast<char*>(wide), sizeof(wide)) == 2 ? wide[0] : kNone;
}

CodePage* MakePage(const char* name, bool hasPairs) {
    auto* page = new CodePage;
    const Converter toWide("UTF-16LE", name);
    const Converter fromWide(name, "UTF-16LE");
    page->isLead = {};
    for (unsigned byte = 0; byte < 256; ++byte) {
        const char in = static_cast<char>(byte);
        page->single[byte] = Decode(toWide, &in, 1);
        page->isLead[byte] = hasPairs && ((byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC));
    }
    if (hasPairs) {
        page->pairs.assign(65536, kNone);
        for (unsigned pair = 0x8100; pair < 0x10000; ++pair) {
            const char in[2] = {static_cast<char>(pair >> 8), static_cast<char>(pair & 0xFF)};
            if (page->isLead[pair >> 8]) {
                page->pairs[pair] = Decode(toWide, in, 2);
            }
        }
    }
    page->fromWide.fill(kNone);
    for (unsigned c = 0; c < 0xFFFF; ++c) {
        const auto wide = static_cast<char16_t>(c);
        unsigned char out[4];
        const size_t bytes = fromWide.Convert(reinterpret_cast<const char*>(&wide), sizeof(wide),
                                              reinterpret_cast<char*>(out), sizeof(out));
        if (bytes == 1) {
            page->fromWide[c] = out[0];
        } else if (bytes == 2) {
            page->fromWide[c] = static_cast<uint16_t>(out[0] << 8 | out[1]);
        }
    }
    return page;
}

// Pairs a byte without meaning for iconv with the character that the published table gives it.
void PairByte(CodePage& page, unsigned byte, char16_t wide) {
    if (page.single[byte] == kNone && !page.isLead[byte]) {
        page.single[byte] = wide;
        if (page.fromWide[wide] == kNone) {
            page.fromWide[wide] = static_cast<uint16_t>(byte);
        }
    }
}

const CodePage& Page1252() {
    static const CodePage& page = *[] {
        CodePage* made = MakePage("CP1252", false);
        for (unsigned byte = 0x80; byte < 0xA0; ++byte) {
            PairByte(*made, byte, static_cast<char16_t>(byte));  // 81, 8D, 8F, 90, 9D: control characters
        }
        return made;
    }();
    return page;
}

const CodePage& Page932() {
    static const CodePage& page = *[] {
        CodePage* made = MakePage("CP932", true);
        PairByte(*made, 0x80, 0x0080);
        PairByte(*made, 0xA0, 0xF8F0);
        PairByte(*made, 0xFD, 0xF8F1);
        PairByte(*made, 0xFE, 0xF8F2);
        PairByte(*made, 0xFF, 0xF8F3);
        made->unknownPair = 0x30FB;  // katakana middle dot, the page's default character
        return made;
    }();
    return page;
}

// Null: not one of this layer's.
const CodePage* FindPage(UINT codePage) {
    if (codePage == CP_ACP) {
        MachineLock lock;
        codePage = CurrentSettings().ansiCodePage;
    }
    return codePage == 1252 ? &Page1252() : codePage == 932 ? &Page932() : nullptr;
}

std::u16string DecodeText(const CodePage& page, std::string_view text, bool* clean) {
    *clean = true;
    std::u16string wide;
    wide.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<uint8_t>(text[i]);
        char16_t c = page.single[byte];
        if (page.isLead[byte]) {
            // A lead byte at the end or before a NUL stands alone and means nothing.
            const bool whole = i + 1 < text.size() && text[i + 1] != 0;
            c = whole ? page.pairs[static_cast<size_t>(byte) << 8 | static_cast<uint8_t>(text[i + 1])] : kNone;
            i += whole ? 1 : 0;
        }
        if (c == kNone) {
            *clean = false;
            c = page.unknownPair;
        }
        wide += c;
    }
    return wide;
}

std::string EncodeText(const CodePage& page, std::u16string_view text, std::string_view fallback, bool* usedFallback) {
    *usedFallback = false;
    std::string bytes;
    bytes.reserve(text.size() * 2);
    for (const char16_t c : text) {
        const uint16_t code = page.fromWide[c];
        if (code == kNone) {
            *usedFallback = true;
            bytes += fallback;
            continue;
        }
        if (code >= 0x100) {
            bytes += static_cast<char>(code >> 8);
        }
        bytes += static_cast<char>(code & 0xFF);
    }
    return bytes;
}

// Gives `made` by the published size protocol. The number of units, or 0 with the last error set.
template <class Text, class Unit>
int Give(const Text& made, Unit* buffer, int size) {
    if (size == 0) {
        return static_cast<int>(made.size());
    }
    const size_t length = made.size() < static_cast<size_t>(size) ? made.size() : static_cast<size_t>(size);
    memcpy(buffer, made.data(), length * sizeof(Unit));
    if (length < made.size()) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    return static_cast<int>(length);
}

int Fail(DWORD error) {
    SetLastError(error);
    return 0;
}

}  // namespace

std::u16string FromAnsi(std::string_view text) {
    bool clean = true;
    return DecodeText(*FindPage(CP_ACP), text, &clean);
}

std::string ToAnsi(std::u16string_view text) {
    bool usedFallback = false;
    return EncodeText(*FindPage(CP_ACP), text, "?", &usedFallback);
}

}  // namespace host

extern "C" {

int WINAPI MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int length, LPWSTR buffer, int size) {
    if (host::FaultAsked("MultiByteToWideChar")) {
        return 0;
    }
    if (text == nullptr || length == 0 || size < 0 || (size != 0 && buffer == nullptr) ||
        (size != 0 && static_cast<const void*>(text) == buffer)) {
        return host::Fail(ERROR_INVALID_PARAMETER);
    }
    const std::string_view whole(text, length < 0 ? strlen(text) + 1 : static_cast<size_t>(length));
    const host::CodePage* page = codePage == CP_UTF8 ? nullptr : host::FindPage(codePage);
    if (page == nullptr && codePage != CP_UTF8) {
        return host::Fail(ERROR_INVALID_PARAMETER);
    }
    const DWORD known = MB_ERR_INVALID_CHARS | (page != nullptr ? MB_PRECOMPOSED : 0);
    if ((flags & ~known) != 0) {
        return host::Fail(ERROR_INVALID_FLAGS);
    }
    bool clean = true;
    const std::u16string wide = page != nullptr ? host::DecodeText(*page, whole, &clean) : host::ToWide(whole, &clean);
    if (!clean && (flags & MB_ERR_INVALID_CHARS) != 0) {
        return host::Fail(ERROR_NO_UNICODE_TRANSLATION);
    }
    return host::Give(wide, buffer, size);
}

int WINAPI WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int length, LPSTR buffer, int size,
                               LPCSTR defaultChar, LPBOOL usedDefaultChar) {
    if (host::FaultAsked("WideCharToMultiByte")) {
        return 0;
    }
    if (text == nullptr || length == 0 || size < 0 || (size != 0 && buffer == nullptr) ||
        (size != 0 && static_cast<const void*>(text) == buffer)) {
        return host::Fail(ERROR_INVALID_PARAMETER);
    }
    const size_t units = length < 0 ? std::char_traits<char16_t>::length(text) + 1 : static_cast<size_t>(length);
    const std::u16string_view whole(text, units);
    if (codePage == CP_UTF8) {
        if (defaultChar != nullptr || usedDefaultChar != nullptr) {
            return host::Fail(ERROR_INVALID_PARAMETER);
        }
        if ((flags & ~static_cast<DWORD>(WC_ERR_INVALID_CHARS)) != 0) {
            return host::Fail(ERROR_INVALID_FLAGS);
        }
        bool clean = true;
        const std::string bytes = host::ToUtf8(whole, &clean);
        if (!clean && flags != 0) {
            return host::Fail(ERROR_NO_UNICODE_TRANSLATION);
        }
        return host::Give(bytes, buffer, size);
    }
    const host::CodePage* page = host::FindPage(codePage);
    if (page == nullptr) {
        return host::Fail(ERROR_INVALID_PARAMETER);
    }
    if ((flags & ~static_cast<DWORD>(WC_NO_BEST_FIT_CHARS)) != 0) {
        return host::Fail(ERROR_INVALID_FLAGS);
    }
    std::string_view fallback = "?";
    if (defaultChar != nullptr) {
        fallback = std::string_view(defaultChar, page->isLead[static_cast<uint8_t>(*defaultChar)] ? 2 : 1);
    }
    bool usedFallback = false;
    const std::string bytes = host::EncodeText(*page, whole, fallback, &usedFallback);
    if (usedDefaultChar != nullptr) {
        *usedDefaultChar = usedFallback ? TRUE : FALSE;
    }
    return host::Give(bytes, buffer, size);
}

UINT WINAPI GetACP() {
    host::MachineLock lock;
    return host::CurrentSettings().ansiCodePage;
}

BOOL WINAPI IsDBCSLeadByteEx(UINT codePage, BYTE byte) {
    const host::CodePage* page = host::FindPage(codePage);
    if (page == nullptr) {
        return host::Fail(ERROR_INVALID_PARAMETER);
    }
    return page->isLead[byte];
}

LPWSTR WINAPI CharUpperW(LPWSTR text) {
    if (IS_INTRESOURCE(text)) {
        const auto c = static_cast<WCHAR>(reinterpret_cast<ULONG_PTR>(text));
        return reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(host::UpperCase(c)));
    }
    for (WCHAR* c = text; *c != 0; ++c) {
        *c = host::UpperCase(*c);
    }
    return text;
}

}  // extern "C"
