#include "driver/base/format.h"

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
    EXPECT_EQ(length, WideText(buffer).size());
    return ToText(buffer);
}

// The conversion decides about the sign, the argument about the width.
TEST(Format, Numbers) {
    EXPECT_EQ(Ansi("%d %d", 0, -5), "0 -5");
    EXPECT_EQ(Ansi("%d", std::numeric_limits<int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(Ansi("%u", std::numeric_limits<uint64_t>::max()), "18446744073709551615");
    EXPECT_EQ(Ansi("%u %lu", int16_t{-1}, -1), "4294967295 4294967295");
    EXPECT_EQ(Ansi("%d %ld", uint16_t{40000}, int16_t{-5}), "40000 -5");
    EXPECT_EQ(Ansi("%d", uint32_t{0x80000000}), "-2147483648");
    EXPECT_EQ(Ansi("%X %08lX %X", 0xBEEFu, 0x1234ABCDu, int8_t{-1}), "BEEF 1234ABCD FFFFFFFF");
}

TEST(Format, WidthFillAndPrecision) {
    EXPECT_EQ(Ansi("%08lX %04X", 0x1234u, 0x12345), "00001234 12345");
    EXPECT_EQ(Ansi("%03d[%5d][%5d]", -5, 42, -42), "-05[   42][  -42]");
    EXPECT_EQ(Ansi("%.4X[%8.3d]", 0xAB, -7), "00AB[    -007]");
    EXPECT_EQ(Ansi("[%08.3d]", 7), "[     007]");  // a precision turns the zero fill off
    EXPECT_EQ(Ansi("[%6s][%2s]", "abc", "abc"), "[   abc][abc]");
    EXPECT_EQ(Ansi("[%.2s][%6.2s][%.9s]", "abc", "abc", "abc"), "[ab][    ab][abc]");
    EXPECT_EQ(Ansi("%70s", "x"), std::string(69, ' ') + "x");
    EXPECT_EQ(Wide(TEXT("custom_%d.%03dx%d.%03din"), 8, 5, 11, 0), "custom_8.005x11.000in");
}

// Whatever a format asks of an argument, the result is a bounded text.
TEST(Format, TextsAndMismatches) {
    EXPECT_EQ(Ansi("100%% %c%c%s", 'o', 'k', "!"), "100% ok!");
    EXPECT_EQ(Wide(TEXT("%s|%ls|%c"), TEXT("a"), TEXT("b"), TEXT('c')), "a|b|c");
    EXPECT_EQ(Ansi("%d %X", "text", "more"), "text more");
    EXPECT_EQ(Ansi("%s %.2s", 12, -345), "12 -345");
    EXPECT_EQ(Ansi("[%s][%d]", "only"), "[only][]");
    EXPECT_EQ(Ansi("%s", "used", "surplus"), "used");
    EXPECT_EQ(Ansi("[%s]", static_cast<const char*>(nullptr)), "[]");
    EXPECT_EQ(Wide(TEXT("[%s]"), static_cast<const WCHAR*>(nullptr)), "[]");
    EXPECT_EQ(Ansi("%") + Ansi("%08"), "");
    EXPECT_EQ(Ansi("%q", 5), "5");
}

TEST(Format, NothingIsWrittenBeyondTheCapacity) {
    for (size_t capacity = 1; capacity < 9; ++capacity) {
        const std::string expected = std::string("abc42!").substr(0, capacity - 1);
        // Heap blocks, so that the address sanitizer sees the ends.
        std::vector<char> ansi(capacity, '#');
        EXPECT_EQ(FormatAnsi(ansi.data(), capacity, "%s%d!", "abc", 42), expected.size());
        EXPECT_EQ(ansi.data(), expected);
        std::vector<WCHAR> wide(capacity, TEXT('#'));
        EXPECT_EQ(FormatWide(wide.data(), capacity, TEXT("%s%d!"), TEXT("abc"), 42), expected.size());
        EXPECT_EQ(ToText(wide.data()), expected);
    }
    char small[4] = "#";
    EXPECT_EQ(FormatAnsi(small, 0, "%d", 1), 0u);
    EXPECT_STREQ(small, "#");
    // Absurd widths are cut, not obeyed for minutes.
    EXPECT_EQ(FormatAnsi(small, sizeof(small), "%99999999999999999999d", 1), 3u);
    EXPECT_STREQ(small, "   ");
    EXPECT_EQ(FormatAnsi(small, sizeof(small), "%.99999999999999999999d", 1), 3u);
    EXPECT_STREQ(small, "000");
}

class FormatConversion : public driver_test::MachineTest {};

TEST_F(FormatConversion, TextsOfTheOtherWidthGoThroughTheCodePage) {
    EXPECT_EQ(Ansi("<%s>", TEXT("Gr\u00FC\u00DFe")),
              "<Gr\xFC\xDF"
              "e>");
    EXPECT_EQ(Wide(TEXT("<%s>"),
                   "Gr\xFC\xDF"
                   "e"),
              "<Grüße>");
    EXPECT_EQ(Ansi("%ls", TEXT("wide")), "wide");
    EXPECT_EQ(Ansi("[%6s][%.2s]", TEXT("abc"), TEXT("abc")), "[   abc][ab]");
    EXPECT_EQ(Wide(TEXT("[%6s][%.2s]"), "abc", "abc"), "[   abc][ab]");
    machine_.SetAnsiCodePage(932);
    EXPECT_EQ(Ansi("<%s>", TEXT("\u30A2x")), "<\x83\x41x>");
    EXPECT_EQ(Wide(TEXT("<%s>"), "\x83\x41x"), "<\xE3\x82\xA2x>");
    // A character of two bytes is read and written whole or not at all.
    EXPECT_EQ(Wide(TEXT("<%s>"), "x\x83"), "<x>");
    char buffer[4];
    EXPECT_EQ(FormatAnsi(buffer, sizeof(buffer), "%s", TEXT("\u30A2\u30A2")), 2u);
    EXPECT_STREQ(buffer, "\x83\x41");
}

}  // namespace
}  // namespace velmora
