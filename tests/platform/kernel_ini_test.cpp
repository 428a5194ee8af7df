#include "tests/platform/kernel_fixture.h"

namespace host {
namespace {

constexpr char16_t kFile[] = u"C:\\t\\i.ini";

class IniTest : public KernelTest {
  protected:
    void PutIni(std::string_view bytes) { Put("t/i.ini", bytes); }
    std::string Ini() { return Get("t/i.ini"); }

    static std::u16string Wide(const char16_t* section, const char16_t* key, const char16_t* fallback = u"none",
                               const char16_t* file = kFile) {
        WCHAR buffer[200];
        GetPrivateProfileStringW(section, key, fallback, buffer, 200, file);
        return buffer;
    }
    static std::string Value(const char16_t* section, const char16_t* key, const char16_t* fallback = u"none",
                             const char16_t* file = kFile) {
        return Shown(Wide(section, key, fallback, file));
    }
};

// What a call gives in a buffer of this size, with NULs as "|"; beyond the size nothing is written.
TEST_F(IniTest, SizesAndEnumerations) {
    PutIni("[one]\r\nb=\"q x\"\r\nalone\r\n; c\r\n[two]\r\n A = 2\r\n[one]\r\n");
    const struct {
        const char16_t* section;
        const char16_t* key;
        DWORD size;
        std::string given;
    } cases[] = {
        {u"one", u"b", 4, "3:q x|"},
        {nullptr, nullptr, 200, "12:one|two|one||#"},
        {nullptr, nullptr, 13, "12:one|two|one||"},
        {nullptr, nullptr, 12, "10:one|two|on||"},
        {nullptr, nullptr, 2, "0:||"},
    };
    std::u16string buffer(300, u'#');
    const auto given = [&buffer](DWORD length, DWORD size) {
        std::string shown = std::to_string(length) + ":";
        for (const char16_t c : buffer.substr(0, std::min(size, length + 2))) {
            shown += c == 0 ? '|' : static_cast<char>(c);
        }
        EXPECT_EQ(buffer.find_first_not_of(u'#', size), buffer.npos);
        buffer.assign(300, u'#');
        return shown;
    };
    for (const auto& c : cases) {
        const DWORD length = GetPrivateProfileStringW(c.section, c.key, u"abc", buffer.data(), c.size, kFile);
        EXPECT_EQ(given(length, c.size), c.given);
    }
    EXPECT_EQ(given(GetPrivateProfileSectionW(u"one", buffer.data(), 200, kFile), 200), "14:b=\"q x\"|alone||#");
    EXPECT_EQ(given(GetPrivateProfileSectionW(u"one", buffer.data(), 8, kFile), 8), "6:b=\"q x||");
}

// Writes to section "A".
TEST_F(IniTest, WritingChangesOnlyWhatItIsAbout) {
    const struct {
        const char* what;
        const char* before;
        const char16_t* key;
        const char16_t* value;
        const char* after;
    } cases[] = {
        {"new section", "; c\r\n[b]\r\nx = 1 \r\n", u"k", u"v", "; c\r\n[b]\r\nx = 1 \r\n[A]\r\nk=v\r\n"},
        {"no end of line", "[b]\r\nx=1", u"k", u"v", "[b]\r\nx=1\r\n[A]\r\nk=v\r\n"},
        {"before blank lines", "[a]\r\n\r\n;\r\n\r\n[b]\r\n", u"y", u"2", "[a]\r\n\r\n;\r\ny=2\r\n\r\n[b]\r\n"},
        {"in an empty section", "[a]\r\n\r\n[b]\r\n", u"y", u"2", "[a]\r\ny=2\r\n\r\n[b]\r\n"},
        {"value in place", "[a]\nX = 1\ny=2\n", u"x", u"new", "[a]\nX=new\r\ny=2\n"},
        {"behind a return", "[a]\rx=1\r", u"y", u"2", "[a]\rx=1\ry=2\r\n"},
    };
    for (const auto& c : cases) {
        PutIni(c.before);
        EXPECT_TRUE(WritePrivateProfileStringW(u"A", c.key, c.value, kFile)) << c.what;
        EXPECT_EQ(Ini(), c.after) << c.what;
    }
}

TEST_F(IniTest, FilesThatCannotBeReadOrWritten) {
    const auto write = [](const char16_t* file) { return WritePrivateProfileStringW(u"s", u"k", u"v", file); };
    PutIni("[s]\r\nk=w\r\n");
    // An open handle that shares nothing keeps the file from being read and written.
    const HANDLE held = CreateFileW(kFile, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(Value(u"s", u"k", u"d"), "d");
    ExpectErrors({
        {"held", [&] { return write(kFile); }, ERROR_SHARING_VIOLATION},
        {"let go", [&] { return CloseHandle(held) && SetFileAttributesW(kFile, FILE_ATTRIBUTE_READONLY); }},
        {"read-only", [&] { return write(kFile); }, ERROR_ACCESS_DENIED},
    });
    EXPECT_EQ(Value(u"s", u"k"), "w");
}

// Names compare without regard to case as those of files do.
TEST_F(IniTest, FilesInUtf16AndInTheMachinesCodePage) {
    const auto wide = [](std::u16string_view text) {
        return std::string(reinterpret_cast<const char*>(text.data()), text.size() * 2);
    };
    PutIni(wide(u"\uFEFF[\u00C9]\r\n\u00F6=v\r\n"));
    EXPECT_EQ(Wide(u"\u00E9", u"\u00D6"), u"v");
    // A character of which there is half.
    PutIni(wide(u"\uFEFFx") + "y");
    EXPECT_TRUE(WritePrivateProfileStringW(u"s", u"k", u"v", kFile));
    EXPECT_EQ(Ini(), wide(u"\uFEFFxy\r\n[s]\r\nk=v\r\n"));

    machine_->SetAnsiCodePage(932);
    PutIni("[s]\r\nk=\x83\x5C\x82\xA0\r\n");  // a trail byte that is a backslash by itself
    EXPECT_EQ(Wide(u"s", u"k"), u"\u30BD\u3042");
    EXPECT_TRUE(WritePrivateProfileStringW(u"s", u"j", u"\u3044", kFile));
    EXPECT_EQ(Ini(), "[s]\r\nk=\x83\x5C\x82\xA0\r\nj=\x82\xA2\r\n");
}

TEST_F(IniTest, UserProfile) {
    const auto text = [](const char16_t* section, const char16_t* key) {
        WCHAR buffer[20];
        EXPECT_LT(GetProfileStringW(section, key, u"?", buffer, 20), 20u);
        return Shown(buffer);
    };
    EXPECT_EQ(GetProfileIntW(u"intl", u"iMeasure", 7), 0u);
    EXPECT_EQ(text(u"intl", u"sDecimal"), ".");
    machine_->SetMetric(false);
    machine_->SetDecimalSeparator(u",,");
    Put("Windows/win.ini", "[intl]\r\nsCountry=X\r\n[w]\r\nn=3\r\n");
    EXPECT_EQ(GetProfileIntW(u"INTL", u"IMEASURE", 7), 1u);
    EXPECT_EQ(text(u"intl", u"sDecimal"), ",,");
    EXPECT_EQ(text(u"intl", u"sCountry"), "X");
    EXPECT_EQ(GetProfileIntW(u"w", u"n", 7), 3u);
    EXPECT_EQ(GetProfileIntW(u"w", u"m", 7), 7u);
    FailCall("GetProfileIntW", ERROR_GEN_FAILURE);
    EXPECT_EQ(GetProfileIntW(u"intl", u"iMeasure", 7), 7u);
}

}  // namespace
}  // namespace host
