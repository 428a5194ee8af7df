#include "driver/base/text.h"

#include <algorithm>
#include <climits>

namespace velmora {
namespace {

// The value of a digit, or 255.
unsigned DigitValue(WCHAR character) {
    if (character >= TEXT('0') && character <= TEXT('9')) {
        return character - TEXT('0');
    }
    if (character >= TEXT('a') && character <= TEXT('f')) {
        return character - TEXT('a') + 10u;
    }
    if (character >= TEXT('A') && character <= TEXT('F')) {
        return character - TEXT('A') + 10u;
    }
    return 255;
}

// A number with its sign. Its size ends beyond 32 bits.
struct SignedNumber {
    bool isNegative;
    uint64_t size;
};

SignedNumber ParseDecimal(const WCHAR* text) {
    while (*text == TEXT(' ') || (*text >= TEXT('\t') && *text <= TEXT('\r'))) {
        ++text;
    }
    SignedNumber number = {*text == TEXT('-'), 0};
    if (*text == TEXT('-') || *text == TEXT('+')) {
        ++text;
    }
    constexpr uint64_t kBeyond = uint64_t{UINT32_MAX} + 1;
    for (; DigitValue(*text) < 10; ++text) {
        number.size = std::min(number.size * 10 + DigitValue(*text), kBeyond);
    }
    return number;
}

// Letters of scripts that are written from right to left, as Unicode groups them: Hebrew, Arabic, Syriac, Thaana, N'Ko
// and those behind them, and the presentation forms of the first two.
constexpr struct {
    WCHAR first;
    WCHAR last;
} kRightToLeftLetters[] = {{0x05BE, 0x05F4}, {0x0608, 0x060D}, {0x061B, 0x064A}, {0x066D, 0x06D5}, {0x06E5, 0x06E6},
                           {0x06EE, 0x06EF}, {0x06FA, 0x08FF}, {0xFB1D, 0xFDFF}, {0xFE70, 0xFEFC}};

// Letters of the scripts that computers knew first, and everything behind them but punctuation and symbols.
bool IsLeftToRightLetter(WCHAR character) {
    const bool isLatin =
        (character >= TEXT('A') && character <= TEXT('Z')) || (character >= TEXT('a') && character <= TEXT('z'));
    return isLatin || (character >= 0x00C0 && (character < 0x2000 || character > 0x2BFF) &&
                       (character < 0x3000 || character > 0x3004) && character < 0xFFE0);
}

}  // namespace

bool ReadsRightToLeft(const WCHAR* text) {
    for (; *text != 0; ++text) {
        for (const auto& letters : kRightToLeftLetters) {
            if (*text >= letters.first && *text <= letters.last) {
                return true;
            }
        }
        if (IsLeftToRightLetter(*text)) {
            return false;
        }
    }
    return false;
}

int32_t ParseInteger(const WCHAR* text) {
    const SignedNumber number = ParseDecimal(text);
    const auto size = static_cast<int64_t>(number.size);
    return static_cast<int32_t>(std::clamp<int64_t>(number.isNegative ? -size : size, INT32_MIN, INT32_MAX));
}

uint32_t ParseUnsigned(const WCHAR* text) {
    const SignedNumber number = ParseDecimal(text);
    if (number.size > UINT32_MAX) {
        return UINT32_MAX;
    }
    const auto size = static_cast<uint32_t>(number.size);
    return number.isNegative ? 0u - size : size;
}

uint32_t ParseNumber(const WCHAR* text, unsigned base) {
    while (*text == TEXT(' ')) {
        ++text;
    }
    uint32_t number = 0;
    for (; DigitValue(*text) < base; ++text) {
        number = number * base + DigitValue(*text);
    }
    return number;
}

HeapOwner<WCHAR> Widen(const char* text, size_t length) {
    const size_t bytes = WholeCharacters(text, TextLength(text, length));
    const int count =
        bytes > 0 && bytes <= INT_MAX ? MultiByteToWideChar(CP_ACP, 0, text, static_cast<int>(bytes), nullptr, 0) : 0;
    auto wide = HeapOwner<WCHAR>::Allocate(static_cast<size_t>(count) + 1);
    if (wide && count > 0) {
        MultiByteToWideChar(CP_ACP, 0, text, static_cast<int>(bytes), wide.Get(), count);
    }
    return wide;
}

HeapOwner<char> Narrow(const WCHAR* text) {
    const size_t length = TextLength(text);
    const int count = length > 0 && length <= INT_MAX / 4
                          ? WideCharToMultiByte(CP_ACP, 0, text, static_cast<int>(length), nullptr, 0, nullptr, nullptr)
                          : 0;
    auto narrow = HeapOwner<char>::Allocate(static_cast<size_t>(count) + 1);
    if (narrow && count > 0) {
        WideCharToMultiByte(CP_ACP, 0, text, static_cast<int>(length), narrow.Get(), count, nullptr, nullptr);
    }
    return narrow;
}

size_t WidenText(WCHAR* destination, size_t capacity, const char* text, size_t length) {
    // Most texts are ASCII, which is the same in every ANSI code page.
    constexpr unsigned char kBeyondAscii = 0x80;
    size_t ascii = 0;
    while (ascii < length && text[ascii] != 0 && static_cast<unsigned char>(text[ascii]) < kBeyondAscii) {
        ++ascii;
    }
    if (capacity > 0 && (ascii == length || text[ascii] == 0)) {
        ascii = std::min(ascii, capacity - 1);
        std::copy_n(text, ascii, destination);
        destination[ascii] = 0;
        return ascii;
    }
    const HeapOwner<WCHAR> wide = Widen(text, length);
    return CopyText<WCHAR>(destination, capacity, wide.Get());
}

size_t WholeCharacters(const char* text, size_t length) {
    size_t whole = 0;
    while (whole < length) {
        const size_t bytes = IsDBCSLeadByteEx(CP_ACP, static_cast<BYTE>(text[whole])) ? 2 : 1;
        if (bytes > length - whole) {
            break;
        }
        whole += bytes;
    }
    return whole;
}

void StoreAnsiText(char* field, size_t size, const char* text) {
    const size_t length = WholeCharacters(text, std::min(TextLength(text), size - 1));
    std::fill(std::copy_n(text, length, field), field + size, '\0');
}

}  // namespace velmora
