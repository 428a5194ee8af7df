// Texts of the machine as the workbench shows them: UTF-8, quoted and with escapes where that tells more.
#pragma once

#include <windows.h>

#include <span>
#include <string>
#include <string_view>

namespace velmora {

// In double quotes: backslash, quote and control characters escaped (\\ \" \r \n \t \u001B), and lone surrogates.
// Everything else is UTF-8.
std::string Quoted(std::u16string_view text);

// The same without quotes, around it or escaped.
std::string Escaped(std::u16string_view text);

// From the machine's ANSI code page, up to the first NUL.
std::u16string FromAnsi(std::string_view text);

// Up to the first NUL.
std::u16string_view UntilNul(std::u16string_view text);

// Two digits a byte, separated by spaces.
std::string HexBytes(std::span<const BYTE> bytes);

// "0x" and at least `digits` digits.
std::string HexNumber(uint64_t number, int digits = 1);

}  // namespace velmora
