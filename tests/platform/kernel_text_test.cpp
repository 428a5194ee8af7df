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
        LONG strict;  // the error of a conversion that takes no byte without meaning
    } cases[] = {
        {1252, "a\x80\xE9\xFF\x81", u"a\u20AC\u00E9\u00FF\u0081", ERROR_SUCCESS},
        {932, "\x82\xA0\x5C\x7E\xB1", u"\u3042\\~\uFF71", ERROR_SUCCESS},
        {932, "\x81\x5F\xFC\x4B\xF0\x40", u"\uFF3C\u9ED1\uE000", ERROR_SUCCESS},
        {932, "\xA0\x80\xFD", u"\uF8F0\u0080\uF8F1", ERROR_SUCCESS},
        {932, "\x85\x40za\x81", u"\u30FBza\u30FB", ERROR_NO_UNICODE_TRANSLATION},
        {932, std::string("\x81\0z", 3), std::u16string(u"\u30FB\0z", 3), ERROR_NO_UNICODE_TRANSLATION},
        {CP_UTF8, "a\xC3\xA9\xE3\x81\x82\xF0\x9F\x98\x80", u"a\u00E9\u3042\U0001F600", ERROR_SUCCESS},
        {CP_UTF8, "\xE3\x81z\xC0\x80", u"\uFFFDz\uFFFD\uFFFD", ERROR_NO_UNICODE_TRANSLATION},
        {CP_UTF8, "\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD", ERROR_NO_UNICODE_TRANSLATION},
        {CP_UTF8, "\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD", ERROR_NO_UNICODE_TRANSLATION},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "row " << &c - cases);
        WCHAR buffer[32];
        const auto convert = [&](DWORD flags, LPWSTR wide, int size) {
            return MultiByteToWideChar(c.codePage, flags, c.bytes.data(), static_cast<int>(c.bytes.size()), wide, size);
        };
        const int made = convert(0, buffer, 32);
        EXPECT_EQ(std::u16string(buffer, static_cast<size_t>(made)), c.wide);
        EXPECT_EQ(convert(0, nullptr, 0), made);
        EXPECT_EQ(FailureOf([&] { return convert(MB_ERR_INVALID_CHARS, buffer, 32); }), c.strict);
    }
}

TEST_F(TextTest, EncodingByCodePage) {
    const struct {
        UINT codePage;
        std::u16string wide;
        const char* fallback;
        std::string bytes;
        BOOL usesFallback;
    } cases[] = {
        {1252, u"a\u20AC\u0081", nullptr, "a\x80\x81", FALSE},
        {1252, u"\u3042b", "_", "_b", TRUE},
        {1252, u"\U0001F600", nullptr, "??", TRUE},
        {932, u"\u3042\uFF3C\\~\uFF71\uE000", nullptr, "\x82\xA0\x81\x5F\\~\xB1\xF0\x40", FALSE},
        {932, u"\u0E01", "\x81\x45", "\x81\x45", TRUE},
        {CP_UTF8, u"\xD800z", nullptr, "\xEF\xBF\xBDz", FALSE},
    };
    char buffer[32];
    for (const auto& c : cases) {
        BOOL used = FALSE;
        const int made = WideCharToMultiByte(c.codePage, 0, c.wide.data(), static_cast<int>(c.wide.size()), buffer, 32,
                                             c.fallback, c.codePage == CP_UTF8 ? nullptr : &used);
        EXPECT_EQ(std::string(buffer, static_cast<size_t>(made)), c.bytes) << "row " << &c - cases;
        EXPECT_EQ(used, c.usesFallback) << "row " << &c - cases;
    }
}

// Every character comes back from its own bytes, but for the doubles that 932 has: those from one of them.
TEST_F(TextTest, CodePagesGoRound) {
    int whole = 0;
    for (unsigned code = 0; code <= 0xFCFC; ++code) {
        const bool isPair = code > 0xFF;
        const UINT codePage = isPair ? 932 : 1252;
        const char in[2] = {static_cast<char>(isPair ? code >> 8 : code), static_cast<char>(code)};
        WCHAR wide = 0;
        WCHAR again = 0;
        char out[2];
        if ((!isPair || IsDBCSLeadByteEx(932, static_cast<BYTE>(code >> 8))) &&
            MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, in, 1 + isPair, &wide, 1) == 1) {
            ASSERT_EQ(WideCharToMultiByte(codePage, 0, &wide, 1, out, 2, nullptr, nullptr), 1 + isPair) << code;
            ASSERT_EQ(MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, out, 1 + isPair, &again, 1), 1) << code;
            ASSERT_EQ(wide, again) << code;
            ++whole;
        }
    }
    EXPECT_GT(whole, 256 + 9000);
}

TEST_F(TextTest, ConversionArgumentsAreChecked) {
    WCHAR wide[8];
    char bytes[8];
    BOOL used = FALSE;
    const auto widen = [&](const char* text, int length, LPWSTR buffer, int size, UINT codePage = 1252,
                           DWORD flags = 0) {
        return MultiByteToWideChar(codePage, flags, text, length, buffer, size);
    };
    EXPECT_EQ(widen("abc", -1, nullptr, 0), 4);
    EXPECT_EQ(widen("abc", -5, wide, 4), 4);  // any negative length
    EXPECT_EQ(WideCharToMultiByte(932, 0, u"\u3042", -1, nullptr, 0, nullptr, nullptr), 3);
    const auto narrow = [&](UINT codePage, DWORD flags, const char16_t* text, int size, BOOL* isUsed) {
        return WideCharToMultiByte(codePage, flags, text, -1, bytes, size, nullptr, isUsed);
    };
    ExpectErrors({
        {"one short", [&] { return widen("abc", -1, wide, 3); }, ERROR_INSUFFICIENT_BUFFER},
        {"no text", [&] { return widen(nullptr, 1, wide, 8); }, ERROR_INVALID_PARAMETER},
        {"length 0", [&] { return widen("a", 0, wide, 8); }, ERROR_INVALID_PARAMETER},
        {"no buffer", [&] { return widen("a", 1, nullptr, 8); }, ERROR_INVALID_PARAMETER},
        {"size -1", [&] { return widen("a", 1, wide, -1); }, ERROR_INVALID_PARAMETER},
        {"code page", [&] { return widen("a", 1, wide, 8, 1251); }, ERROR_INVALID_PARAMETER},
        {"flags", [&] { return widen("a", 1, wide, 8, CP_UTF8, 1); }, ERROR_INVALID_FLAGS},
        {"half a character", [&] { return narrow(932, 0, u"\u3042\u3042", 3, nullptr); }, ERROR_INSUFFICIENT_BUFFER},
        {"default in UTF-8", [&] { return narrow(CP_UTF8, 0, u"a", 8, &used); }, ERROR_INVALID_PARAMETER},
        {"flags back", [&] { return narrow(1252, 0x80000, u"a", 8, nullptr); }, ERROR_INVALID_FLAGS},
        {"lone surrogate", [&] { return narrow(CP_UTF8, WC_ERR_INVALID_CHARS, u"\xD800z", 8, nullptr); },
         ERROR_NO_UNICODE_TRANSLATION},
        {"lead byte of none", [] { return IsDBCSLeadByteEx(1251, 0x82); }, ERROR_INVALID_PARAMETER},
    });
}

TEST_F(TextTest, TheMachinesCodePage) {
    EXPECT_EQ(FromAnsi("\x80"), u"\u20AC");
    machine_->SetAnsiCodePage(932);
    EXPECT_EQ(FromAnsi("\x82\xA0"), u"\u3042");
    EXPECT_EQ(ToAnsi(u"\u3042\u0E01"), "\x82\xA0?");
    EXPECT_TRUE(IsDBCSLeadByteEx(CP_ACP, 0x82));
    EXPECT_FALSE(IsDBCSLeadByteEx(CP_ACP, 0xA1));
    EXPECT_FALSE(IsDBCSLeadByteEx(1252, 0x82));
    EXPECT_THROW(machine_->SetAnsiCodePage(1251), std::invalid_argument);
}

// Mappings that wouldn't lead back aren't made.
TEST_F(TextTest, UpperCase) {
    std::u16string text = u"aZ[\u00E4\u00FF\u03C3\u0436\uFF41\u0131\u00B5\u03C2\u00DF";
    const std::u16string expected = u"AZ[\u00C4\u0178\u03A3\u0416\uFF21\u0131\u00B5\u03C2\u00DF";
    EXPECT_EQ(FoldCase(text), expected);
    EXPECT_TRUE(EqualsIgnoringCase(text, expected));
    EXPECT_FALSE(EqualsIgnoringCase(text, expected + u"x"));
    EXPECT_EQ(reinterpret_cast<ULONG_PTR>(CharUpperW(reinterpret_cast<LPWSTR>(ULONG_PTR{u'a'}))), ULONG_PTR{u'A'});
    EXPECT_EQ(CharUpperW(text.data()), text.data());
    EXPECT_EQ(text, expected);
}

}  // namespace
}  // namespace host
