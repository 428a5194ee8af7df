#include "platform/kernel/text.h"

#include <locale.h>
#include <wctype.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <type_traits>

namespace host {
namespace {

// Upper-case forms of the 16-bit characters. A mapping counts only where the lower-case mapping leads back: so the
// published calls have it (no change of dotless i, final sigma, micro sign or title-case digraphs).
const std::array<char16_t, 65536>& UpperTable() {
    static const std::array<char16_t, 65536>& table = *[] {
        // A locale object of its own: the process's locale has no say.
        const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        if (locale == nullptr) {
            throw std::runtime_error("the C library has no C.UTF-8 locale");
        }
        auto* made = new std::array<char16_t, 65536>;
        for (wint_t c = 0; c < 65536; ++c) {
            const wint_t upper = towupper_l(c, locale);
            (*made)[c] = static_cast<char16_t>(upper < 65536 && towlower_l(upper, locale) == c ? upper : c);
        }
        freelocale(locale);
        return made;
    }();
    return table;
}

void AppendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | c >> 6);
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | c >> 12);
        out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | c >> 18);
        out += static_cast<char>(0x80 | (c >> 12 & 0x3F));
        out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// How many of the characters at the beginning are ASCII, by eights.
template <class Character>
size_t AsciiLength(const Character* text, size_t length) {
    constexpr size_t kStep = 8;
    size_t ascii = 0;
    while (length - ascii >= kStep) {
        unsigned all = 0;
        for (size_t i = 0; i < kStep; ++i) {
            all |= static_cast<std::make_unsigned_t<Character>>(text[ascii + i]);
        }
        if (all >= 0x80) {
            break;
        }
        ascii += kStep;
    }
    return ascii;
}

// Bytes of the sequence that `lead` begins, and the range of its second byte (which excludes overlong forms, surrogates
// and what lies beyond U+10FFFF). Length 0: no lead byte.
struct Utf8Lead {
    size_t length;
    uint8_t secondMin;
    uint8_t secondMax;
};

Utf8Lead LeadOf(uint8_t lead) {
    if (lead < 0x80) {
        return {1, 0, 0};
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return {0, 0, 0};
    }
    if (lead < 0xE0) {
        return {2, 0x80, 0xBF};
    }
    if (lead < 0xF0) {
        return {3, static_cast<uint8_t>(lead == 0xE0 ? 0xA0 : 0x80), static_cast<uint8_t>(lead == 0xED ? 0x9F : 0xBF)};
    }
    return {4, static_cast<uint8_t>(lead == 0xF0 ? 0x90 : 0x80), static_cast<uint8_t>(lead == 0xF4 ? 0x8F : 0xBF)};
}

}  // namespace

std::u16string ToWide(std::string_view utf8) {
    bool clean = true;
    return ToWide(utf8, &clean);
}

std::u16string ToWide(std::string_view utf8, bool* clean) {
    *clean = true;
    const size_t ascii = AsciiLength(utf8.data(), utf8.size());
    std::u16string wide;
    wide.reserve(utf8.size());
    wide.resize(ascii);
    std::copy_n(utf8.begin(), ascii, wide.begin());
    for (size_t i = ascii; i < utf8.size();) {
        const auto first = static_cast<uint8_t>(utf8[i]);
        const Utf8Lead lead = LeadOf(first);
        // The longest beginning of a valid sequence becomes one replacement.
        size_t taken = 1;
        char32_t c = lead.length < 2 ? first : first & (0x7Fu >> lead.length);
        while (taken < lead.length && i + taken < utf8.size()) {
            const auto next = static_cast<uint8_t>(utf8[i + taken]);
            const bool fits = taken == 1 ? next >= lead.secondMin && next <= lead.secondMax : (next & 0xC0) == 0x80;
            if (!fits) {
                break;
            }
            c = c << 6 | (next & 0x3F);
            ++taken;
        }
        if (lead.length == 0 || taken < lead.length) {
            *clean = false;
            c = 0xFFFD;
        }
        if (c >= 0x10000) {
            wide += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            wide += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else {
            wide += static_cast<char16_t>(c);
        }
        i += taken;
    }
    return wide;
}

std::string ToUtf8(std::u16string_view wide) {
    bool clean = true;
    return ToUtf8(wide, &clean);
}

std::string ToUtf8(std::u16string_view wide, bool* clean) {
    *clean = true;
    const size_t ascii = AsciiLength(wide.data(), wide.size());
    std::string utf8;
    utf8.reserve(wide.size());
    utf8.resize(ascii);
    std::transform(wide.begin(), wide.begin() + static_cast<ptrdiff_t>(ascii), utf8.begin(),
                   [](char16_t c) { return static_cast<char>(c); });
    for (size_t i = ascii; i < wide.size(); ++i) {
        char32_t c = wide[i];
        if (c >= 0xD800 && c < 0xE000) {
            if (c < 0xDC00 && i + 1 < wide.size() && wide[i + 1] >= 0xDC00 && wide[i + 1] < 0xE000) {
                c = 0x10000 + ((c - 0xD800) << 10) + (wide[i + 1] - 0xDC00u);
                ++i;
            } else {
                *clean = false;
                c = 0xFFFD;
            }
        }
        AppendUtf8(utf8, c);
    }
    return utf8;
}

char16_t UpperCaseByTable(char16_t c) {
    return UpperTable()[c];
}

bool EqualsIgnoringCase(std::u16string_view a, std::u16string_view b) {
    if (a.size() != b.size()) {
        return false;
    }
    for (size_t i = 0; i < a.size(); ++i) {
        if (a[i] != b[i] && UpperCase(a[i]) != UpperCase(b[i])) {
            return false;
        }
    }
    return true;
}

std::u16string FoldCase(std::u16string_view text) {
    std::u16string folded(text);
    for (char16_t& c : folded) {
        c = UpperCase(c);
    }
    return folded;
}

}  // namespace host
