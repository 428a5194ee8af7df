#include "platform/kernel/code_pages.h"
#include "platform/kernel/text.h"
#include "tests/platform/kernel_fixture.h"

namespace host {
namespace {

using TextTest = KernelTest;

TEST_F(TextTest, DecodingByCodePage) {
    const struct {
        UINT codePage;
        std::string bytes;
        std::u16string wide;
        bool isClean;  // no byte without meaning
    } cases[] = {
        {1252, "a\x80\xE9\xFF", u"a\u20AC\u00E9\u00FF", true},
        {1252, "\x81\x8D\x90", u"\u0081\u008D\u0090", true},
        {932, "\x82\xA0\x5C\x7E\xB1", u"\u3042\\~\uFF71", true},
        {932, "\x81\x5F\xFC\x4B\xF0\x40", u"\uFF3C\u9ED1\uE000", true},
        {932, "\xA0\x80\xFD", u"\uF8F0\u0080\uF8F1", true},
        {932, "\x85\x40z", u"\u30FBz", false},
        {932, "a\x81", u"a\u30FB", false},
        {932, std::string("\x81\0z", 3), std::u16string(u"\u30FB\0z", 3), false},
        {CP_UTF8, "a\xC3\xA9\xE3\x81\x82\xF0\x9F\x98\x80", u"a\u00E9\u3042\U0001F600", true},
        {CP_UTF8, "\xE3\x81z", u"\uFFFDz", false},
        {CP_UTF8, "\xC0\x80", u"\uFFFD\uFFFD", false},
        {CP_UTF8, "\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD", false},
        {CP_UTF8, "\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        WCHAR buffer[32];
        const int length = static_cast<int>(c.bytes.size());
        const int made = MultiByteToWideChar(c.codePage, 0, c.bytes.data(), length, buffer, 32);
        EXPECT_EQ(std::u16string(buffer, static_cast<size_t>(made)), c.wide);
        EXPECT_EQ(MultiByteToWideChar(c.codePage, 0, c.bytes.data(), length, nullptr, 0), made);
        const DWORD strict = FailureOf(
            [&] { return MultiByteToWideChar(c.codePage, MB_ERR_INVALID_CHARS, c.bytes.data(), length, buffer, 32); });
        EXPECT_EQ(strict, c.isClean ? DWORD{ERROR_SUCCESS} : DWORD{ERROR_NO_UNICODE_TRANSLATION});
    }
}

TEST_F(TextTest, EncodingByCodePage) {
    const struct {
        UINT codePage;
        std::u16string wide;
        const char* fallback;
        std::string bytes;
        bool usesFallback;
    } cases[] = {
        {1252, u"a\u20AC\u0081", nullptr, "a\x80\x81", false},
        {1252, u"\u3042b", nullptr, "?b", true},
        {1252, u"\u3042b", "_", "_b", true},
        {1252, u"\U0001F600", nullptr, "??", true},
        {932, u"\u3042\uFF3C\\~\uFF71\uE000", nullptr, "\x82\xA0\x81\x5F\\~\xB1\xF0\x40", false},
        {932, u"\u0E01", "\x81\x45", "\x81\x45", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        char buffer[32];
        BOOL used = 7;
        const int length = static_cast<int>(c.wide.size());
        const int made = WideCharToMultiByte(c.codePage, 0, c.wide.data(), length, buffer, 32, c.fallback, &used);
        EXPECT_EQ(std::string(buffer, static_cast<size_t>(made)), c.bytes);
        EXPECT_EQ(used, c.usesFallback);
    }
    char buffer[8];
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, u"\xD800z", 2, buffer, 8, nullptr, nullptr), 4);
    EXPECT_EQ(std::string(buffer, 4), "\xEF\xBF\xBDz");
    EXPECT_EQ(FailureOf([&] {
                  return WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, u"\xD800z", 2, buffer, 8, nullptr, nullptr);
              }),
              DWORD{ERROR_NO_UNICODE_TRANSLATION});
}

// Every character of both pages comes back from its own bytes, but for the doubles that 932 has.
TEST_F(TextTest, CodePagesGoRound) {
    for (unsigned byte = 0; byte < 256; ++byte) {
        const char in = static_cast<char>(byte);
        WCHAR wide = 0;
        char out = 0;
        ASSERT_EQ(MultiByteToWideChar(1252, MB_ERR_INVALID_CHARS, &in, 1, &wide, 1), 1);
        ASSERT_EQ(WideCharToMultiByte(1252, 0, &wide, 1, &out, 1, nullptr, nullptr), 1);
        EXPECT_EQ(in, out) << byte;
    }
    int whole = 0;
    for (unsigned pair = 0x8140; pair <= 0xFCFC; ++pair) {
        const char in[2] = {static_cast<char>(pair >> 8), static_cast<char>(pair & 0xFF)};
        WCHAR wide = 0;
        WCHAR again = 0;
        char out[2];
        if (IsDBCSLeadByteEx(932, static_cast<BYTE>(pair >> 8)) &&
            MultiByteToWideChar(932, MB_ERR_INVALID_CHARS, in, 2, &wide, 1) == 1) {
            ASSERT_EQ(WideCharToMultiByte(932, 0, &wide, 1, out, 2, nullptr, nullptr), 2) << pair;
            ASSERT_EQ(MultiByteToWideChar(932, MB_ERR_INVALID_CHARS, out, 2, &again, 1), 1);
            ASSERT_EQ(wide, again) << pair;
            ++whole;
        }
    }
    EXPECT_GT(whole, 9000);
}

TEST_F(TextTest, ConversionArgumentsAreChecked) {
    WCHAR wide[8];
    char bytes[8];
    BOOL used = FALSE;
    const struct {
        const char* what;
        std::function<int()> call;
        int result;
        DWORD error;
    } cases[] = {
        {"size", [&] { return MultiByteToWideChar(1252, 0, "abc", -1, nullptr, 0); }, 4, kNoError},
        {"any negative length", [&] { return MultiByteToWideChar(1252, 0, "abc", -5, nullptr, 0); }, 4, kNoError},
        {"fits", [&] { return MultiByteToWideChar(1252, 0, "abc", -1, wide, 4); }, 4, kNoError},
        {"one short", [&] { return MultiByteToWideChar(1252, 0, "abc", -1, wide, 3); }, 0, ERROR_INSUFFICIENT_BUFFER},
        {"no text", [&] { return MultiByteToWideChar(1252, 0, nullptr, 1, wide, 8); }, 0, ERROR_INVALID_PARAMETER},
        {"length 0", [&] { return MultiByteToWideChar(1252, 0, "a", 0, wide, 8); }, 0, ERROR_INVALID_PARAMETER},
        {"no buffer", [&] { return MultiByteToWideChar(1252, 0, "a", 1, nullptr, 8); }, 0, ERROR_INVALID_PARAMETER},
        {"size -1", [&] { return MultiByteToWideChar(1252, 0, "a", 1, wide, -1); }, 0, ERROR_INVALID_PARAMETER},
        {"code page", [&] { return MultiByteToWideChar(1251, 0, "a", 1, wide, 8); }, 0, ERROR_INVALID_PARAMETER},
        {"flags", [&] { return MultiByteToWideChar(CP_UTF8, 1, "a", 1, wide, 8); }, 0, ERROR_INVALID_FLAGS},
        {"size back", [&] { return WideCharToMultiByte(932, 0, u"\u3042", -1, nullptr, 0, nullptr, nullptr); }, 3,
         kNoError},
        {"half a character",
         [&] { return WideCharToMultiByte(932, 0, u"\u3042\u3042", 2, bytes, 3, nullptr, nullptr); }, 0,
         ERROR_INSUFFICIENT_BUFFER},
        {"default in UTF-8", [&] { return WideCharToMultiByte(CP_UTF8, 0, u"a", 1, bytes, 8, nullptr, &used); }, 0,
         ERROR_INVALID_PARAMETER},
        {"flags back", [&] { return WideCharToMultiByte(1252, 0x80000, u"a", 1, bytes, 8, nullptr, nullptr); }, 0,
         ERROR_INVALID_FLAGS},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        int result = -1;
        EXPECT_EQ(ErrorOf([&] { result = c.call(); }), c.error);
        EXPECT_EQ(result, c.result);
    }
}

TEST_F(TextTest, TheMachinesCodePage) {
    EXPECT_EQ(GetACP(), 1252u);
    EXPECT_EQ(FromAnsi("\x80"), u"\u20AC");
    TheMachine().SetAnsiCodePage(932);
    EXPECT_EQ(GetACP(), 932u);
    EXPECT_EQ(FromAnsi("\x82\xA0"), u"\u3042");
    EXPECT_EQ(ToAnsi(u"\u3042\u0E01"), "\x82\xA0?");
    EXPECT_TRUE(IsDBCSLeadByteEx(CP_ACP, 0x82));
    EXPECT_FALSE(IsDBCSLeadByteEx(CP_ACP, 0xA1));
    EXPECT_FALSE(IsDBCSLeadByteEx(1252, 0x82));
    EXPECT_EQ(FailureOf([] { return IsDBCSLeadByteEx(1251, 0x82); }), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_THROW(TheMachine().SetAnsiCodePage(1251), std::invalid_argument);
}

TEST_F(TextTest, UpperCase) {
    const struct {
        char16_t from;
        char16_t to;
    } cases[] = {
        {u'a', u'A'},
        {u'Z', u'Z'},
        {u'[', u'['},
        {u'\u00E4', u'\u00C4'},
        {u'\u00FF', u'\u0178'},
        {u'\u03C3', u'\u03A3'},
        {u'\u0436', u'\u0416'},
        {u'\uFF41', u'\uFF21'},
        // Mappings that wouldn't lead back aren't made.
        {u'\u0131', u'\u0131'},
        {u'\u00B5', u'\u00B5'},
        {u'\u03C2', u'\u03C2'},
        {u'\u00DF', u'\u00DF'},
    };
    std::u16string text;
    std::u16string expected;
    for (const auto& c : cases) {
        text += c.from;
        expected += c.to;
        const auto character = static_cast<ULONG_PTR>(c.from);
        EXPECT_EQ(reinterpret_cast<ULONG_PTR>(CharUpperW(reinterpret_cast<LPWSTR>(character))), ULONG_PTR{c.to});
    }
    EXPECT_EQ(FoldCase(text), expected);
    EXPECT_TRUE(EqualsIgnoringCase(text, expected));
    EXPECT_FALSE(EqualsIgnoringCase(text, expected + u"x"));
    std::u16string upper = text;
    EXPECT_EQ(CharUpperW(upper.data()), upper.data());
    EXPECT_EQ(upper, expected);
    EXPECT_EQ(CharUpperBuffW(text.data(), 1), 1u);
    EXPECT_EQ(text.substr(0, 4), u"AZ[\u00E4");
}

}  // namespace
}  // namespace host
