// Bounded formatting into wide and 8-bit buffers. The arguments carry their types, so a conversion that doesn't fit its
// argument, or has none, is never more than a wrong text.
//
// A format knows %d, %u, %X (with or without l) for numbers, %s (with or without l) for texts, %c for a character and
// %%, each but the last with an optional zero fill, width and precision: "%08lX", "%.31s", "%3d", "%.3d".
//  - A number under %s is written in decimal, a text under a number conversion as the text, a missing argument as
//  nothing.
//  - A number's precision is its least count of digits, a text's precision its greatest count of characters.
//  - A text of the other width is converted by the ANSI code page; an 8-bit text is never cut within a character.
//  - Numbers are promoted as C does it: those narrower than int become int, and a wider one keeps its width.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace velmora {

class FormatArgument {
  public:
    enum class Kind : uint8_t { kNumber, kWideText, kAnsiText };

    // Any integer. %d reads it as signed, %u and %X as unsigned, each in its promoted width.
    template <class Integer, class = std::enable_if_t<std::is_integral_v<Integer>>>
    FormatArgument(Integer number)  // NOLINT(google-explicit-constructor): arguments are meant to convert
        : kind_(Kind::kNumber),
          bytes_(sizeof(Integer) > sizeof(int) ? sizeof(Integer) : sizeof(int)),
          number_(static_cast<uint64_t>(static_cast<int64_t>(number))) {}
    FormatArgument(const WCHAR* text) : kind_(Kind::kWideText), text_(text) {}  // NOLINT(google-explicit-constructor)
    FormatArgument(const char* text) : kind_(Kind::kAnsiText), text_(text) {}   // NOLINT(google-explicit-constructor)

    Kind GetKind() const { return kind_; }
    // The number in its promoted width.
    int64_t Signed() const;
    uint64_t Unsigned() const;
    // Null texts are read as empty ones.
    const WCHAR* WideText() const;
    const char* AnsiText() const;

  private:
    Kind kind_;
    uint8_t bytes_ = 0;
    uint64_t number_ = 0;
    const void* text_ = nullptr;
};

// Writes at most `capacity` - 1 characters and a terminator (nothing at all where capacity is 0), and returns the
// characters written.
size_t FormatWideArguments(WCHAR* buffer, size_t capacity, const WCHAR* format, const FormatArgument* arguments,
                           size_t count);
size_t FormatAnsiArguments(char* buffer, size_t capacity, const char* format, const FormatArgument* arguments,
                           size_t count);

template <class... Arguments>
size_t FormatWide(WCHAR* buffer, size_t capacity, const WCHAR* format, Arguments... arguments) {
    const FormatArgument list[] = {arguments..., 0};
    return FormatWideArguments(buffer, capacity, format, list, sizeof...(arguments));
}

template <class... Arguments>
size_t FormatAnsi(char* buffer, size_t capacity, const char* format, Arguments... arguments) {
    const FormatArgument list[] = {arguments..., 0};
    return FormatAnsiArguments(buffer, capacity, format, list, sizeof...(arguments));
}

}  // namespace velmora
