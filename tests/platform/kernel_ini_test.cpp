#include "tests/platform/kernel_fixture.h"

namespace host {
namespace {

constexpr char16_t kFile[] = u"C:\\t\\i.ini";

class IniTest : public KernelTest {
  protected:
    void PutIni(std::string_view bytes) { Put("t/i.ini", bytes); }
    std::string Ini() { return Get("t/i.ini"); }

    // The text that a call gives in a buffer of this size, with NULs as "|"; beyond it nothing is written.
    template <class Call>
    static std::string Given(Call call, DWORD size = 200) {
        std::u16string buffer(300, u'#');
        const DWORD length = call(buffer.data(), size);
        std::string shown;
        for (const char16_t c : buffer.substr(0, size)) {
            shown += c == 0 ? '|' : static_cast<char>(c);
        }
        EXPECT_EQ(buffer.substr(size), std::u16string(300 - size, u'#'));
        return std::to_string(length) + ":" + shown.substr(0, length + 2);
    }
    static std::string Value(const char16_t* section, const char16_t* key, const char16_t* fallback = u"none",
                             const char16_t* file = kFile) {
        WCHAR buffer[200];
        GetPrivateProfileStringW(section, key, fallback, buffer, 200, file);
        return Shown(buffer);
    }
};

TEST_F(IniTest, ValuesAsTheFileHasThem) {
    PutIni(
        "lost = 1\r\n"
        "; [One]\r\n"
        "[One]\r\n"
        " A = 1 2 \r\n"
        "a=second\r\n"
        "quoted=\"q x\"\n"
        "single='s'\r\n"
        "half=\"h\r\n"
        "blanks=  \"  in \"  \r\n"
        "empty=\r\n"
        "alone\r\n"
        ";off=1\r\n"
        "with = a=b;c\r\n"
        "[ two ] rest\r\n"
        "A=2\r\n"
        "[one]\r\n"
        "late=1\r\n"
        "[last]\r\n"
        "k=v");
    const struct {
        const char16_t* section;
        const char16_t* key;
        const char* value;
    } cases[] = {
        {u"One", u"A", "1 2"},      {u"oNE", u"a", "1 2"},     {u" One ", u" A ", "1 2"},    {u"One", u"quoted", "q x"},
        {u"One", u"single", "s"},   {u"One", u"half", "\"h"},  {u"One", u"blanks", "  in "}, {u"One", u"empty", ""},
        {u"One", u"alone", "none"}, {u"One", u"off", "none"},  {u"One", u";off", "none"},    {u"One", u"with", "a=b;c"},
        {u"two", u"A", "2"},        {u"One", u"late", "none"}, {u"last", u"k", "v"},         {u"none", u"A", "none"},
        {u"", u"lost", "none"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Value(c.section, c.key), c.value) << Shown(c.section) << " " << Shown(c.key);
    }
    EXPECT_EQ(Value(u"One", u"none", u"  default  "), "  default");
    EXPECT_EQ(Value(u"One", u"none", nullptr), "");
}

TEST_F(IniTest, SizesAndEnumerations) {
    PutIni("[one]\r\nb=\"q x\"\r\nalone\r\n; c\r\n[two]\r\n A = 2\r\n[one]\r\n");
    const auto value = [](LPWSTR buffer, DWORD size) {
        return GetPrivateProfileStringW(u"one", u"b", u"", buffer, size, kFile);
    };
    const auto fallback = [](LPWSTR buffer, DWORD size) {
        return GetPrivateProfileStringW(u"one", u"x", u"abc", buffer, size, kFile);
    };
    const auto sections = [](LPWSTR buffer, DWORD size) {
        return GetPrivateProfileStringW(nullptr, nullptr, u"", buffer, size, kFile);
    };
    const auto keys = [](LPWSTR buffer, DWORD size) {
        return GetPrivateProfileStringW(u"one", nullptr, u"", buffer, size, kFile);
    };
    const auto noKeys = [](LPWSTR buffer, DWORD size) {
        return GetPrivateProfileStringW(u"nope", nullptr, u"dd", buffer, size, kFile);
    };
    const auto lines = [](LPWSTR buffer, DWORD size) { return GetPrivateProfileSectionW(u"one", buffer, size, kFile); };
    const auto noLines = [](LPWSTR buffer, DWORD size) {
        return GetPrivateProfileSectionW(u"nope", buffer, size, kFile);
    };
    EXPECT_EQ(Given(value), "3:q x|#");
    EXPECT_EQ(Given(value, 4), "3:q x|");
    EXPECT_EQ(Given(value, 3), "2:q |");
    EXPECT_EQ(Given(value, 1), "0:|");
    EXPECT_EQ(Given(value, 0), "0:");
    EXPECT_EQ(Given(fallback, 3), "2:ab|");
    EXPECT_EQ(Given(sections), "12:one|two|one||#");
    EXPECT_EQ(Given(sections, 13), "12:one|two|one||");
    EXPECT_EQ(Given(sections, 12), "10:one|two|on||");
    EXPECT_EQ(Given(sections, 2), "0:||");
    EXPECT_EQ(Given(keys), "2:b||#");
    EXPECT_EQ(Given(noKeys), "2:dd|#");
    EXPECT_EQ(Given(lines), "14:b=\"q x\"|alone||#");
    EXPECT_EQ(Given(lines, 8), "6:b=\"q x||");
    EXPECT_EQ(Given(noLines), "0:||");
}

TEST_F(IniTest, Numbers) {
    const struct {
        const char* text;
        UINT value;
    } cases[] = {
        {"12", 12},   {" 12abc", 12}, {"-1", 0xFFFFFFFF},          {"+7", 7}, {"0x1F", 31},
        {"0b101", 5}, {"010", 10},    {"99999999999", 1215752191}, {"x", 0},  {"\"5\"", 5},
        {"", 42},     {"-", 0},       {"4294967295", 0xFFFFFFFF},
    };
    for (const auto& c : cases) {
        PutIni(std::string("[s]\r\nn=") + c.text + "\r\n");
        EXPECT_EQ(GetPrivateProfileIntW(u"s", u"n", 42, kFile), c.value) << c.text;
    }
    EXPECT_EQ(GetPrivateProfileIntW(u"s", u"none", -1, kFile), 0xFFFFFFFFu);
}

TEST_F(IniTest, MissingFilesGiveTheFallback) {
    EXPECT_EQ(ErrorOf([] { EXPECT_EQ(Value(u"s", u"k", u"d", u"C:\\none.ini"), "d"); }), DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(ErrorOf([] { EXPECT_EQ(Value(u"s", u"k", u"d", u"C:\\x\\none.ini"), "d"); }),
              DWORD{ERROR_PATH_NOT_FOUND});
    EXPECT_EQ(Value(u"s", u"k", u"d", u"C:\\Windows"), "d");
    PutIni("[s]\r\nk=v\r\n");
    EXPECT_EQ(ErrorOf([] { EXPECT_EQ(Value(u"s", u"k"), "v"); }), DWORD{ERROR_SUCCESS});
    FailCall("GetPrivateProfileStringW", ERROR_READ_FAULT);
    EXPECT_EQ(ErrorOf([] { EXPECT_EQ(Value(u"s", u"k", u"d"), "d"); }), DWORD{ERROR_READ_FAULT});
    // An open handle that shares nothing keeps the file from being read and written.
    const HANDLE held = CreateFileW(kFile, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(Value(u"s", u"k", u"d"), "d");
    EXPECT_EQ(FailureOf([] { return WritePrivateProfileStringW(u"s", u"k", u"w", kFile); }),
              DWORD{ERROR_SHARING_VIOLATION});
    CloseHandle(held);
}

TEST_F(IniTest, WritingChangesOnlyWhatItIsAbout) {
    const struct {
        const char* what;
        const char* before;
        const char16_t* section;
        const char16_t* key;
        const char16_t* value;
        const char* after;
    } cases[] = {
        {"new section", "; c\r\n[a]\r\nx = 1 \r\n", u"b", u"k", u"v", "; c\r\n[a]\r\nx = 1 \r\n[b]\r\nk=v\r\n"},
        {"no end of line", "[a]\r\nx=1", u"b", u"k", u"v", "[a]\r\nx=1\r\n[b]\r\nk=v\r\n"},
        {"new key before the blank lines", "[a]\r\nx=1\r\n\r\n; end\r\n\r\n\r\n[b]\r\n", u"A", u"y", u"2",
         "[a]\r\nx=1\r\n\r\n; end\r\ny=2\r\n\r\n\r\n[b]\r\n"},
        {"new key in an empty section", "[a]\r\n\r\n[b]\r\n", u"a", u"y", u"2", "[a]\r\ny=2\r\n\r\n[b]\r\n"},
        {"value in place", "[a]\nX = 1\ny=2\n", u"a", u"x", u"new", "[a]\nx=new\r\ny=2\n"},
        {"empty value", "[a]\r\nx=1\r\n", u"a", u"x", u"", "[a]\r\nx=\r\n"},
        {"key without value gets one", "[a]\r\nx\r\n", u"a", u"x", u"1", "[a]\r\nx=1\r\n"},
        {"first of two", "[a]\r\nx=1\r\nx=2\r\n[a]\r\nx=3\r\n", u"a", u"x", u"9",
         "[a]\r\nx=9\r\nx=2\r\n[a]\r\nx=3\r\n"},
        {"delete a key", "[a]\r\nx=1\r\ny=2\r\n", u"a", u"x", nullptr, "[a]\r\ny=2\r\n"},
        {"delete no key", "[a]\r\nx=1\r\n", u"a", u"z", nullptr, "[a]\r\nx=1\r\n"},
        {"delete a section", "top\r\n[a]\r\nx=1\r\n; c\r\n[b]\r\ny=1\r\n", u"A", nullptr, nullptr,
         "top\r\n[b]\r\ny=1\r\n"},
        {"delete no section", "[a]\r\nx=1\r\n", u"b", nullptr, u"ignored", "[a]\r\nx=1\r\n"},
        {"bytes of another code page stay", "[a]\r\n\x81\x8D=1\r\n", u"a", u"y", u"\u20AC\u3042",
         "[a]\r\n\x81\x8D=1\r\ny=\x80?\r\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        PutIni(c.before);
        EXPECT_TRUE(WritePrivateProfileStringW(c.section, c.key, c.value, kFile));
        EXPECT_EQ(Ini(), c.after);
    }
}

TEST_F(IniTest, WritingMakesTheFileButNoFolder) {
    EXPECT_TRUE(WritePrivateProfileStringW(u"s", u"k", u"v", u"C:\\new.ini"));
    EXPECT_EQ(Get("new.ini"), "[s]\r\nk=v\r\n");
    EXPECT_TRUE(WritePrivateProfileStringW(u"s", nullptr, nullptr, u"C:\\none.ini"));
    EXPECT_FALSE(Exists("none.ini"));
    EXPECT_EQ(FailureOf([] { return WritePrivateProfileStringW(u"s", u"k", u"v", u"C:\\x\\new.ini"); }),
              DWORD{ERROR_PATH_NOT_FOUND});
    EXPECT_EQ(FailureOf([] { return WritePrivateProfileStringW(nullptr, u"k", u"v", kFile); }),
              DWORD{ERROR_FILE_NOT_FOUND});
    // A name without a folder means the Windows folder.
    EXPECT_TRUE(WritePrivateProfileStringW(u"s", u"k", u"v", u"some.ini"));
    EXPECT_EQ(Get("Windows/some.ini"), "[s]\r\nk=v\r\n");
    EXPECT_EQ(Value(u"s", u"k", u"d", u"SOME.INI"), "v");
    PutIni("[s]\r\nk=v\r\n");
    SetFileAttributesW(kFile, FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(FailureOf([] { return WritePrivateProfileStringW(u"s", u"k", u"w", kFile); }),
              DWORD{ERROR_ACCESS_DENIED});
    EXPECT_EQ(Value(u"s", u"k"), "v");
}

TEST_F(IniTest, FilesInUtf16AndInTheMachinesCodePage) {
    const auto wide = [](std::u16string_view text) {
        return std::string(reinterpret_cast<const char*>(text.data()), text.size() * 2);
    };
    PutIni(wide(u"\uFEFF[\u3042]\r\nk=\u0A0D\u3044\r\n"));
    WCHAR buffer[20];
    EXPECT_EQ(GetPrivateProfileStringW(u"\u3042", u"K", u"", buffer, 20, kFile), 2u);
    EXPECT_EQ(std::u16string(buffer), u"\u0A0D\u3044");
    EXPECT_TRUE(WritePrivateProfileStringW(u"s", u"k", u"\u20AC", kFile));
    EXPECT_EQ(Ini(), wide(u"\uFEFF[\u3042]\r\nk=\u0A0D\u3044\r\n[s]\r\nk=\u20AC\r\n"));

    TheMachine().SetAnsiCodePage(932);
    PutIni("[s]\r\nk=\x83\x5C\x82\xA0\r\n");  // a trail byte that is a backslash by itself
    EXPECT_EQ(GetPrivateProfileStringW(u"s", u"k", u"", buffer, 20, kFile), 2u);
    EXPECT_EQ(std::u16string(buffer), u"\u30BD\u3042");
    EXPECT_TRUE(WritePrivateProfileStringW(u"s", u"j", u"\u3044", kFile));
    EXPECT_EQ(Ini(), "[s]\r\nk=\x83\x5C\x82\xA0\r\nj=\x82\xA2\r\n");
}

TEST_F(IniTest, UserProfile) {
    WCHAR buffer[20];
    EXPECT_EQ(GetProfileIntW(u"intl", u"iMeasure", 7), 0u);
    TheMachine().SetMetric(false);
    EXPECT_EQ(GetProfileIntW(u"INTL", u"IMEASURE", 7), 1u);
    EXPECT_EQ(GetProfileStringW(u"intl", u"sDecimal", u"?", buffer, 20), 1u);
    EXPECT_EQ(std::u16string(buffer), u".");
    TheMachine().SetDecimalSeparator(u",,");
    EXPECT_EQ(GetProfileStringW(u"intl", u"sDecimal", u"?", buffer, 2), 1u);
    EXPECT_EQ(std::u16string(buffer), u",");
    Put("Windows/win.ini", "[intl]\r\nsCountry=X\r\n[w]\r\nn=3\r\n");
    EXPECT_EQ(GetProfileStringW(u"intl", u"sCountry", u"?", buffer, 20), 1u);
    EXPECT_EQ(GetProfileIntW(u"w", u"n", 7), 3u);
    EXPECT_EQ(GetProfileIntW(u"w", u"m", 7), 7u);
    FailCall("GetProfileIntW", ERROR_GEN_FAILURE);
    EXPECT_EQ(GetProfileIntW(u"intl", u"iMeasure", 7), 7u);
}

}  // namespace
}  // namespace host
