// Texts of the machine as the workbench shows them: UTF-8, quoted and with escapes where that tells more.
#pragma once

#include <windows.h>

#include <span>
#include <string>
#include <string_view>

namespace velmora {

// In double quotes: backslash, quote and control characters escaped (\\ \" \r \n \t \u001B), and lone surrogates.
// Everything else is UTF-8.
std::string Quoted(std::basic_string_view<WCHAR> text);

// The same without quotes, around it or escaped.
std::string Escaped(std::basic_string_view<WCHAR> text);

// Lone surrogates become U+FFFD.
std::string ToUtf8(std::basic_string_view<WCHAR> text);

// From the machine's ANSI code page, up to the first NUL.
std::basic_string<WCHAR> FromAnsi(std::string_view text);

// Up to the first NUL.
std::basic_string_view<WCHAR> UntilNul(std::basic_string_view<WCHAR> text);

// Two digits a byte, separated by spaces.
std::string HexBytes(std::span<const BYTE> bytes);

// "0x" and at least `digits` digits.
std::string HexNumber(uint64_t number, int digits = 1);

}  // namespace velmora
