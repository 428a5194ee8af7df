#include "driver/base/text.h"

#include <string>
#include <vector>

#include "tests/driver/machine.h"

namespace velmora {
namespace {

using driver_test::ToText;

TEST(Text, CopyingIsCutAndTerminated) {
    for (const size_t capacity : {1u, 3u, 4u, 9u}) {
        std::vector<char> text(capacity, '#');
        const std::string expected = std::string("abc").substr(0, capacity - 1);
        EXPECT_EQ(CopyText(text.data(), capacity, "abc"), expected.size());
        EXPECT_EQ(text.data(), expected);
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
    // A text without terminator within the capacity has no end to append to.
    char full[3] = {'a', 'b', 'c'};
    AppendText(full, sizeof(full), "x");
    EXPECT_EQ(std::string(full, sizeof(full)), "abc");
}

TEST(Text, SearchComparisonAndNumbers) {
    const WCHAR* const text = TEXT("printer,Local,DrvConvert");
    EXPECT_EQ(FindText(text, TEXT(",Local")), text + 7);
    EXPECT_EQ(FindText(text, TEXT("")), text);
    EXPECT_EQ(FindText(text, TEXT("DrvConvert!")), nullptr);
    EXPECT_TRUE(TextsEqual(TEXT("a"), TEXT("a")));
    EXPECT_FALSE(TextsEqual(TEXT("a"), TEXT("ab")));
    EXPECT_FALSE(TextBeginsWith(TEXT("a"), TEXT("ab")));
    EXPECT_EQ(ToText(FileNamePart(TEXT("C:\\folder\\name.ext"))), "name.ext");
    EXPECT_EQ(ToText(FileNamePart(TEXT("name"))), "name");
    EXPECT_EQ(TextLength("abc", 2), 2u);
    EXPECT_EQ(TextLength("a\0c", 3), 1u);
    EXPECT_EQ(ParseNumber(TEXT("x"), 10), 0u);
    EXPECT_EQ(ParseNumber(TEXT("19A"), 10), 19u);
    EXPECT_EQ(ParseNumber(TEXT("fFg"), 16), 255u);
    EXPECT_EQ(ParseNumber(TEXT("4294967297"), 10), 1u);
}

class WidenedText : public driver_test::MachineTest {};

// The destination takes as many characters as it has room for, whatever their bytes.
TEST_F(WidenedText, EndsAtTheNulTheLengthOrTheCapacity) {
    const std::string katakana = "\x83\x41\x83\x43";
    const struct {
        UINT codePage;
        std::string bytes;
        size_t capacity;
        std::string text;
    } cases[] = {
        {1252, std::string("ab\0cd", 5), 16, "ab"},
        {1252, "", 16, ""},
        {1252, "abcd", 5, "abcd"},
        {1252, "abcd", 4, "abc"},
        {1252, "abcd", 1, ""},
        {1252, "\x80uro", 16, "\xE2\x82\xACuro"},
        {932, katakana, 16, "\xE3\x82\xA2\xE3\x82\xA4"},
        {932, "M" + katakana + katakana, 4, "M\xE3\x82\xA2\xE3\x82\xA4"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "row " << &c - cases);
        machine_.SetAnsiCodePage(c.codePage);
        // Exact blocks, so that the address sanitizer sees a byte read or written too far.
        const std::vector<char> source(c.bytes.begin(), c.bytes.end());
        std::vector<WCHAR> destination(c.capacity, TEXT('#'));
        const size_t written = WidenText(destination.data(), c.capacity, source.data(), source.size());
        ASSERT_LT(written, c.capacity);
        EXPECT_EQ(destination[written], 0);
        EXPECT_EQ(ToText(destination.data()), c.text);
    }
    WCHAR untouched = TEXT('#');
    EXPECT_EQ(WidenText(&untouched, 0, "abcd", 4), 0u);
    EXPECT_EQ(untouched, TEXT('#'));
}

}  // namespace
}  // namespace velmora
