#include "driver/base/text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "tests/driver/machine.h"

namespace velmora {
namespace {

using driver_test::ToText;

TEST(Text, CopyingIsCutAndTerminated) {
    constexpr struct {
        size_t capacity;
        const char* expected;
    } kCases[] = {{1, ""}, {3, "ab"}, {4, "abc"}, {9, "abc"}};
    for (const auto& c : kCases) {
        std::vector<char> text(c.capacity, '#');
        EXPECT_EQ(CopyText(text.data(), c.capacity, "abc"), strlen(c.expected));
        EXPECT_STREQ(text.data(), c.expected);
    }
    char text[] = "##";
    EXPECT_EQ(CopyText(text, 0, "abc"), 0u);
    EXPECT_STREQ(text, "##");
    EXPECT_EQ(CopyText(text, sizeof(text), static_cast<const char*>(nullptr)), 0u);
    EXPECT_STREQ(text, "");
}

TEST(Text, AppendingStopsAtTheCapacity) {
    char text[6] = "ab";
    AppendText(text, sizeof(text), "cdefgh");
    EXPECT_STREQ(text, "abcde");
    AppendText(text, sizeof(text), "x");
    EXPECT_STREQ(text, "abcde");
    // A text without terminator within the capacity has no end to append to.
    char full[3] = {'a', 'b', 'c'};
    AppendText(full, sizeof(full), "x");
    EXPECT_EQ(std::string(full, sizeof(full)), "abc");
}

TEST(Text, SearchAndComparison) {
    const WCHAR* const text = TEXT("printer,Local,DrvConvert");
    EXPECT_EQ(FindText(text, TEXT(",Local")), text + 7);
    EXPECT_EQ(FindText(text, TEXT("")), text);
    EXPECT_EQ(FindText(text, TEXT("DrvConvert!")), nullptr);
    EXPECT_EQ(FindText(TEXT(""), TEXT("a")), nullptr);
    EXPECT_TRUE(TextsEqual(TEXT("a"), TEXT("a")));
    EXPECT_FALSE(TextsEqual(TEXT("a"), TEXT("ab")));
    EXPECT_FALSE(TextBeginsWith(TEXT("a"), TEXT("ab")));
    EXPECT_EQ(ToText(FileNamePart(TEXT("C:\\folder\\name.ext"))), "name.ext");
    EXPECT_EQ(ToText(FileNamePart(TEXT("name"))), "name");
    EXPECT_EQ(ToText(FileNamePart(TEXT("folder\\"))), "");
    EXPECT_EQ(TextLength("abc", 2), 2u);
    EXPECT_EQ(TextLength("a\0c", 3), 1u);
}

TEST(Text, NumbersInFrontOfATextAreRead) {
    EXPECT_EQ(ParseNumber(TEXT("10.0"), 10), 10u);
    EXPECT_EQ(ParseNumber(TEXT("x"), 10), 0u);
    EXPECT_EQ(ParseNumber(TEXT(""), 10), 0u);
    EXPECT_EQ(ParseNumber(TEXT("19A"), 10), 19u);
    EXPECT_EQ(ParseNumber(TEXT("fFg"), 16), 255u);
    EXPECT_EQ(ParseNumber(TEXT("4294967297"), 10), 1u);
}

class WidenedText : public driver_test::MachineTest {
  protected:
    std::string Widen(const std::string& bytes, size_t capacity) {
        // Exact blocks, so that the address sanitizer sees a byte read or written too far.
        const std::vector<char> source(bytes.begin(), bytes.end());
        std::vector<WCHAR> destination(capacity, TEXT('#'));
        const size_t written = WidenText(destination.data(), capacity, source.data(), source.size());
        EXPECT_LT(written, capacity);
        EXPECT_EQ(destination[written], 0);
        return ToText(destination.data());
    }
};

TEST_F(WidenedText, EndsAtTheNulOrTheLength) {
    EXPECT_EQ(Widen(std::string("ab\0cd", 5), 16), "ab");
    EXPECT_EQ(Widen("abcd", 16), "abcd");
    EXPECT_EQ(Widen("", 16), "");
    EXPECT_EQ(Widen("abcd", 5), "abcd");
    EXPECT_EQ(Widen("abcd", 4), "abc");
    EXPECT_EQ(Widen("abcd", 1), "");
    WCHAR untouched = TEXT('#');
    EXPECT_EQ(WidenText(&untouched, 0, "abcd", 4), 0u);
    EXPECT_EQ(untouched, TEXT('#'));
}

TEST_F(WidenedText, UsesTheAnsiCodePage) {
    EXPECT_EQ(Widen("\x80uro", 16), "\xE2\x82\xACuro");
    machine_.SetAnsiCodePage(932);
    EXPECT_EQ(Widen("\x83\x41\x83\x43", 16), "\xE3\x82\xA2\xE3\x82\xA4");
}

// The destination takes as many characters as it has room for, whatever their bytes.
TEST_F(WidenedText, LongTextsAreCutToTheCapacityInCharacters) {
    machine_.SetAnsiCodePage(932);
    const std::string katakana = "\x83\x41";
    const std::string wide = "\xE3\x82\xA2";
    std::string bytes = "MS";
    std::string expected = "MS";
    for (int i = 0; i < 40; ++i) {
        bytes += katakana;
    }
    for (int i = 0; i < 29; ++i) {
        expected += wide;
    }
    EXPECT_EQ(Widen(bytes, 32), expected);
    EXPECT_EQ(Widen(katakana + katakana, 2), wide);
}

}  // namespace
}  // namespace velmora
