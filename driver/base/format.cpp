#include "driver/base/format.h"

#include "driver/base/text.h"

namespace velmora {
namespace {

// Widths and precisions above this are cut to it; no buffer of the driver is as long.
constexpr unsigned kMostFill = 4096;

struct Conversion {
    char letter = 0;
    bool zeroFill = false;
    bool hasPrecision = false;
    unsigned width = 0;
    unsigned precision = 0;
};

// The destination: counts what it takes and never writes beyond its capacity.
template <class Character>
class Output {
  public:
    Output(Character* buffer, size_t capacity) : buffer_(buffer), capacity_(capacity) {}

    void Put(Character character) {
        if (capacity_ > 0 && length_ < capacity_ - 1) {
            buffer_[length_++] = character;
        } else {
            isCut_ = true;
        }
    }

    void Fill(char character, size_t count) {
        for (size_t i = 0; i < count; ++i) {
            Put(static_cast<Character>(character));
        }
    }

    // Terminates the text, without half a character at its end, and returns its length.
    size_t End() {
        if constexpr (std::is_same_v<Character, char>) {
            length_ = isCut_ ? WholeCharacters(buffer_, length_) : length_;
        }
        if (capacity_ > 0) {
            buffer_[length_] = 0;
        }
        return length_;
    }

  private:
    Character* buffer_;
    size_t capacity_;
    size_t length_ = 0;
    bool isCut_ = false;
};

template <class Character>
unsigned ReadCount(const Character*& place) {
    unsigned count = 0;
    for (; *place >= '0' && *place <= '9'; ++place) {
        count = count * 10 + static_cast<unsigned>(*place - '0');
        count = count < kMostFill ? count : kMostFill;
    }
    return count;
}

// Reads what follows a percent sign; leaves `place` at the character after the conversion's letter, or at the
// terminator.
template <class Character>
Conversion ReadConversion(const Character*& place) {
    Conversion conversion;
    for (; *place == '0'; ++place) {
        conversion.zeroFill = true;
    }
    conversion.width = ReadCount(place);
    if (*place == '.') {
        ++place;
        conversion.hasPrecision = true;
        conversion.precision = ReadCount(place);
    }
    while (*place == 'l') {
        ++place;
    }
    if (*place != 0) {
        conversion.letter = *place < 128 ? static_cast<char>(*place) : '?';
        ++place;
    }
    return conversion;
}

template <class Character>
void WriteNumber(Output<Character>& output, const Conversion& conversion, const FormatArgument& argument) {
    const bool isHex = conversion.letter == 'X';
    const bool isSigned = conversion.letter == 'd' || conversion.letter == 's';
    const bool isNegative = isSigned && argument.Signed() < 0;
    uint64_t value = isSigned ? static_cast<uint64_t>(argument.Signed()) : argument.Unsigned();
    value = isNegative ? 0 - value : value;

    char digits[24];
    size_t count = 0;
    const unsigned base = isHex ? 16 : 10;
    for (; value != 0 || count == 0; value /= base) {
        digits[count++] = "0123456789ABCDEF"[value % base];
    }
    size_t leading = conversion.hasPrecision && conversion.precision > count ? conversion.precision - count : 0;
    const size_t taken = count + leading + (isNegative ? 1 : 0);
    const size_t fill = conversion.width > taken ? conversion.width - taken : 0;
    if (conversion.zeroFill && !conversion.hasPrecision) {
        leading += fill;
    } else {
        output.Fill(' ', fill);
    }
    output.Fill('-', isNegative ? 1 : 0);
    output.Fill('0', leading);
    while (count > 0) {
        output.Put(static_cast<Character>(digits[--count]));
    }
}

// A text of the output's own width.
template <class Character>
void WriteText(Output<Character>& output, const Conversion& conversion, const Character* text) {
    size_t length = TextLength(text, conversion.hasPrecision ? conversion.precision : SIZE_MAX);
    if constexpr (std::is_same_v<Character, char>) {
        length = conversion.hasPrecision ? WholeCharacters(text, length) : length;
    }
    output.Fill(conversion.zeroFill ? '0' : ' ', conversion.width > length ? conversion.width - length : 0);
    for (size_t i = 0; i < length; ++i) {
        output.Put(text[i]);
    }
}

void WriteTextArgument(Output<WCHAR>& output, const Conversion& conversion, const FormatArgument& argument) {
    if (argument.GetKind() == FormatArgument::Kind::kWideText) {
        WriteText(output, conversion, argument.WideText());
    } else if (const HeapOwner<WCHAR> wide = Widen(argument.AnsiText(), SIZE_MAX)) {
        WriteText<WCHAR>(output, conversion, wide.Get());
    }
}

void WriteTextArgument(Output<char>& output, const Conversion& conversion, const FormatArgument& argument) {
    if (argument.GetKind() == FormatArgument::Kind::kAnsiText) {
        WriteText(output, conversion, argument.AnsiText());
    } else if (const HeapOwner<char> narrow = Narrow(argument.WideText())) {
        WriteText<char>(output, conversion, narrow.Get());
    }
}

template <class Character>
size_t FormatInto(Character* buffer, size_t capacity, const Character* format, const FormatArgument* arguments,
                  size_t count) {
    Output<Character> output(buffer, capacity);
    size_t next = 0;
    for (const Character* place = format; *place != 0;) {
        if (*place != '%') {
            output.Put(*place++);
            continue;
        }
        ++place;
        const Conversion conversion = ReadConversion(place);
        if (conversion.letter == '%') {
            output.Put(static_cast<Character>('%'));
            continue;
        }
        if (next >= count) {
            continue;
        }
        const FormatArgument& argument = arguments[next++];
        if (argument.GetKind() != FormatArgument::Kind::kNumber) {
            WriteTextArgument(output, conversion, argument);
        } else if (conversion.letter == 'c') {
            output.Put(static_cast<Character>(argument.Unsigned()));
        } else {
            WriteNumber(output, conversion, argument);
        }
    }
    return output.End();
}

}  // namespace

int64_t FormatArgument::Signed() const {
    const unsigned unused = 64 - 8u * bytes_;
    return static_cast<int64_t>(number_ << unused) >> unused;
}

uint64_t FormatArgument::Unsigned() const {
    const unsigned unused = 64 - 8u * bytes_;
    return number_ << unused >> unused;
}

const WCHAR* FormatArgument::WideText() const {
    return text_ ? static_cast<const WCHAR*>(text_) : TEXT("");
}

const char* FormatArgument::AnsiText() const {
    return text_ ? static_cast<const char*>(text_) : "";
}

size_t FormatWideArguments(WCHAR* buffer, size_t capacity, const WCHAR* format, const FormatArgument* arguments,
                           size_t count) {
    return FormatInto(buffer, capacity, format, arguments, count);
}

size_t FormatAnsiArguments(char* buffer, size_t capacity, const char* format, const FormatArgument* arguments,
                           size_t count) {
    return FormatInto(buffer, capacity, format, arguments, count);
}

}  // namespace velmora
