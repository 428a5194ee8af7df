#include "driver/base/format.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

#include "tests/driver/machine.h"

namespace velmora {
namespace {

using driver_test::ToText;

template <class... Arguments>
std::string Ansi(const char* format, Arguments... arguments) {
    char buffer[256];
    const size_t length = FormatAnsi(buffer, sizeof(buffer), format, arguments...);
    EXPECT_EQ(length, strlen(buffer)) << format;
    return buffer;
}

template <class... Arguments>
std::string Wide(const WCHAR* format, Arguments... arguments) {
    WCHAR buffer[256];
    const size_t length = FormatWide(buffer, ARRAYSIZE(buffer), format, arguments...);
    EXPECT_EQ(length, std::u16string(buffer).size());
    return ToText(buffer);
}

TEST(Format, Numbers) {
    EXPECT_EQ(Ansi("%d %d", 0, -5), "0 -5");
    EXPECT_EQ(Ansi("%ld", std::numeric_limits<int32_t>::min()), "-2147483648");
    EXPECT_EQ(Ansi("%d", std::numeric_limits<int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(Ansi("%lu", std::numeric_limits<uint32_t>::max()), "4294967295");
    EXPECT_EQ(Ansi("%u", std::numeric_limits<uint64_t>::max()), "18446744073709551615");
    EXPECT_EQ(Ansi("%X %lX", 0xBEEFu, 0x1234ABCDu), "BEEF 1234ABCD");
}

// The conversion decides about the sign, the argument about the width.
TEST(Format, NumbersArePromotedAsCDoesIt) {
    EXPECT_EQ(Ansi("%u", int16_t{-1}), "4294967295");
    EXPECT_EQ(Ansi("%u", -1), "4294967295");
    EXPECT_EQ(Ansi("%d", uint16_t{40000}), "40000");
    EXPECT_EQ(Ansi("%d", int16_t{-5}), "-5");
    EXPECT_EQ(Ansi("%d", uint32_t{0x80000000}), "-2147483648");
    EXPECT_EQ(Ansi("%08lX", int32_t{-1}), "FFFFFFFF");
    EXPECT_EQ(Ansi("%X", int8_t{-1}), "FFFFFFFF");
}

TEST(Format, WidthFillAndPrecision) {
    EXPECT_EQ(Ansi("%08lX", 0x1234u), "00001234");
    EXPECT_EQ(Ansi("%04X%04X", uint16_t{0x409}, uint16_t{1252}), "040904E4");
    EXPECT_EQ(Ansi("%04X", 0x12345), "12345");
    EXPECT_EQ(Ansi("%02d:%02d", 7, 45), "07:45");
    EXPECT_EQ(Ansi("%03d", -5), "-05");
    EXPECT_EQ(Ansi("[%5d][%5d]", 42, -42), "[   42][  -42]");
    EXPECT_EQ(Ansi("%.4X", 0xAB), "00AB");
    EXPECT_EQ(Ansi("[%8.3d]", -7), "[    -007]");
    EXPECT_EQ(Ansi("[%08.3d]", 7), "[     007]");  // a precision turns the zero fill off
    EXPECT_EQ(Ansi("[%6s][%2s]", "abc", "abc"), "[   abc][abc]");
    EXPECT_EQ(Ansi("[%.2s][%6.2s][%.9s]", "abc", "abc", "abc"), "[ab][    ab][abc]");
    EXPECT_EQ(Ansi("%70s", "x"), std::string(69, ' ') + "x");
    EXPECT_EQ(Wide(TEXT("custom_%d.%03dx%d.%03din"), 8, 5, 11, 0), "custom_8.005x11.000in");
}

TEST(Format, TextsAndCharacters) {
    EXPECT_EQ(Ansi("%s%d", "CustomName", 3u), "CustomName3");
    EXPECT_EQ(Ansi("100%% %c%c", 'o', 'k'), "100% ok");
    EXPECT_EQ(Wide(TEXT("%s|%ls|%c"), TEXT("a"), TEXT("b"), TEXT('c')), "a|b|c");
    EXPECT_EQ(Wide(TEXT("%s\\%08lX.%s"), TEXT("C:\\f"), DWORD{0x1000000}, TEXT("ini")), "C:\\f\\01000000.ini");
}

// Whatever a format asks of an argument, the result is a bounded text.
TEST(Format, MismatchesAreTextsToo) {
    EXPECT_EQ(Ansi("%d %X", "text", "more"), "text more");
    EXPECT_EQ(Ansi("%s %.2s", 12, -345), "12 -345");
    EXPECT_EQ(Ansi("[%s][%d]", "only"), "[only][]");
    EXPECT_EQ(Ansi("%s", "used", "surplus"), "used");
    EXPECT_EQ(Ansi("[%s]", static_cast<const char*>(nullptr)), "[]");
    EXPECT_EQ(Wide(TEXT("[%s]"), static_cast<const WCHAR*>(nullptr)), "[]");
    EXPECT_EQ(Ansi("%"), "");
    EXPECT_EQ(Ansi("%08"), "");
    EXPECT_EQ(Ansi("%q", 5), "5");
    EXPECT_EQ(Ansi("no argument"), "no argument");
}

TEST(Format, NothingIsWrittenBeyondTheCapacity) {
    constexpr struct {
        size_t capacity;
        const char* expected;
    } kCases[] = {{1, ""}, {2, "a"}, {6, "abc42"}, {7, "abc42!"}, {8, "abc42!"}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.capacity);
        // Heap blocks, so that the address sanitizer sees the ends.
        std::vector<char> ansi(c.capacity, '#');
        EXPECT_EQ(FormatAnsi(ansi.data(), c.capacity, "%s%d!", "abc", 42), strlen(c.expected));
        EXPECT_STREQ(ansi.data(), c.expected);
        std::vector<WCHAR> wide(c.capacity, TEXT('#'));
        EXPECT_EQ(FormatWide(wide.data(), c.capacity, TEXT("%s%d!"), TEXT("abc"), 42), strlen(c.expected));
        EXPECT_EQ(ToText(wide.data()), c.expected);
    }
    char untouched = '#';
    EXPECT_EQ(FormatAnsi(&untouched, 0, "%d", 1), 0u);
    EXPECT_EQ(untouched, '#');
    // Absurd widths are cut, not obeyed for minutes.
    char small[4];
    EXPECT_EQ(FormatAnsi(small, sizeof(small), "%99999999999999999999d", 1), 3u);
    EXPECT_STREQ(small, "   ");
    EXPECT_EQ(FormatAnsi(small, sizeof(small), "%.99999999999999999999d", 1), 3u);
    EXPECT_STREQ(small, "000");
}

class FormatConversion : public driver_test::MachineTest {};

TEST_F(FormatConversion, TextsOfTheOtherWidthGoThroughTheCodePage) {
    EXPECT_EQ(Ansi("%s", TEXT("Gr\u00FC\u00DFe")),
              "Gr\xFC\xDF"
              "e");
    EXPECT_EQ(Wide(TEXT("%s"),
                   "Gr\xFC\xDF"
                   "e"),
              "Gr\xC3\xBC\xC3\x9F"
              "e");
    EXPECT_EQ(Ansi("%ls", TEXT("wide")), "wide");
    machine_.SetAnsiCodePage(932);
    EXPECT_EQ(Ansi("<%s>", TEXT("\u30A2x")), "<\x83\x41x>");
    EXPECT_EQ(Wide(TEXT("<%s>"), "\x83\x41x"), "<\xE3\x82\xA2x>");
    // A lead byte that has nothing behind it ends the text.
    EXPECT_EQ(Wide(TEXT("<%s>"), "x\x83").substr(0, 2), "<x");
}

TEST_F(FormatConversion, WidthAndPrecisionHoldForConvertedTextsToo) {
    EXPECT_EQ(Ansi("[%6s][%.2s]", TEXT("abc"), TEXT("abc")), "[   abc][ab]");
    EXPECT_EQ(Wide(TEXT("[%6s][%.2s]"), "abc", "abc"), "[   abc][ab]");
}

// A character of two bytes is written whole or not at all.
TEST_F(FormatConversion, NoHalfCharacters) {
    machine_.SetAnsiCodePage(932);
    char buffer[4];
    EXPECT_EQ(FormatAnsi(buffer, sizeof(buffer), "%s", TEXT("\u30A2\u30A2")), 2u);
    EXPECT_STREQ(buffer, "\x83\x41");
}

}  // namespace
}  // namespace velmora
