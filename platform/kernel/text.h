// Text of the layer's own code: UTF-16 as the published calls have it, UTF-8 as the host has it.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace host {

std::u16string ToWide(std::string_view utf8);
// Unpaired surrogates become U+FFFD.
std::string ToUtf8(std::u16string_view wide);
// The same, saying whether every character was a valid one.
std::u16string ToWide(std::string_view utf8, bool* clean);
std::string ToUtf8(std::u16string_view wide, bool* clean);

// Comparison and folding by simple case mapping, independent of the process's locale, as the published calls do for
// names of files, printers, forms, values and keys.
char16_t UpperCaseByTable(char16_t c);
inline char16_t UpperCase(char16_t c) {
    if (c < 0x80) {
        return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 0x20) : c;
    }
    return UpperCaseByTable(c);
}
bool EqualsIgnoringCase(std::u16string_view a, std::u16string_view b);
std::u16string FoldCase(std::u16string_view text);

}  // namespace host
