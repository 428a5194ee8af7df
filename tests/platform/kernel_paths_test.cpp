#include "platform/kernel/drive.h"
#include "platform/kernel/text.h"
#include "tests/platform/kernel_fixture.h"

namespace host {
namespace {

class PathsTest : public KernelTest {
  protected:
    // Names that the pattern gives, in order, with a blank between; the error where there is none.
    static std::string Find(const char16_t* pattern) {
        WIN32_FIND_DATAW data;
        const HANDLE search = FindFirstFileW(pattern, &data);
        if (search == INVALID_HANDLE_VALUE) {
            return "error " + std::to_string(GetLastError());
        }
        std::string names = Shown(data.cFileName);
        while (FindNextFileW(search, &data)) {
            names += " " + Shown(data.cFileName);
        }
        EXPECT_EQ(GetLastError(), DWORD{ERROR_NO_MORE_FILES});
        EXPECT_TRUE(FindClose(search));
        return names;
    }
    static WIN32_FIND_DATAW Entry(const std::u16string& path) {
        WIN32_FIND_DATAW data = {};
        const HANDLE search = FindFirstFileW(path.c_str(), &data);
        EXPECT_EQ(StillOpen(), Lines{"file search " + ToUtf8(path)});
        EXPECT_TRUE(FindClose(search));
        EXPECT_FALSE(FindClose(search));
        return data;
    }
};

TEST_F(PathsTest, HostPathFindsWhatIsThereWhateverItsCase) {
    Put("Program Files/Some Maker/Tool.exe", "");
    const struct {
        const char16_t* path;
        const char* file;  // below the drive; null: not on it
    } cases[] = {
        {u"c:/PROGRAM FILES\\\\some maker/.\\x\\..\\TOOL.EXE", "/Program Files/Some Maker/Tool.exe"},
        {u"\\program files", "/Program Files"},
        {u"C:\\Program Files. .", "/Program Files"},
        {u"C:\\program files\\New\\Deep.txt", "/Program Files/New/Deep.txt"},
        {u"windows", "/Windows"},
        {u"D:\\x", nullptr},
        {u"\\\\server\\share", nullptr},
        {u"C:\\x\\..\\..\\y", nullptr},
        {u"C:\\a|b", nullptr},
    };
    for (const auto& c : cases) {
        const auto expected = c.file ? std::optional(machine_->Drive().string() + c.file) : std::nullopt;
        EXPECT_EQ(HostPath(c.path), expected) << Shown(c.path);
    }
}

// What is known of a folder must never outlive a change, however quickly it follows.
TEST_F(PathsTest, LookUpsFollowChangesAtOnce) {
    Put("f/Name.txt", "1");
    for (int round = 0; round < 200; ++round) {
        ASSERT_NE(GetFileAttributesW(u"C:\\F\\NAME.TXT"), INVALID_FILE_ATTRIBUTES);
        ASSERT_TRUE(MoveFileExW(u"C:\\f\\name.txt", u"C:\\f\\Other.txt", 0));
        ASSERT_EQ(GetFileAttributesW(u"C:\\F\\NAME.TXT"), INVALID_FILE_ATTRIBUTES);
        ASSERT_TRUE(MoveFileExW(u"C:\\f\\OTHER.txt", round % 2 == 0 ? u"C:\\f\\nAmE.txt" : u"C:\\f\\Name.txt", 0));
    }
    std::filesystem::rename(machine_->Drive() / "f", machine_->Drive() / "g");
    EXPECT_EQ(GetFileAttributesW(u"C:\\F\\NAME.TXT"), INVALID_FILE_ATTRIBUTES);
}

TEST_F(PathsTest, Wildcards) {
    for (const char* name : {"Beta.txt", "a.txt", "a1.txt", "c", "d.x.txt", "E.TX"}) {
        Put(std::filesystem::path("s") / name, "");
    }
    const std::pair<const char16_t*, const char*> cases[] = {
        {u"C:\\s\\*", ". .. a.txt a1.txt Beta.txt c d.x.txt E.TX"},
        {u"C:\\s\\*.*", ". .. a.txt a1.txt Beta.txt c d.x.txt E.TX"},
        {u"C:\\s\\*.tx?", "a.txt a1.txt Beta.txt d.x.txt E.TX"},
        {u"C:\\s\\?.txt", "a.txt"},
        {u"C:\\s\\*.", ". .. c"},
        {u"C:\\s\\b*a*", "Beta.txt"},
        {u"C:\\s\\..", "error 2"},  // the root has no entry
        {u"C:\\s\\z*", "error 2"},
        {u"C:\\z\\*", "error 3"},
        {u"C:\\s\\c\\*", "error 267"},
        {u"C:\\*", "s Users Windows"},
        {u"", "error 3"},
    };
    for (const auto& [pattern, names] : cases) {
        EXPECT_EQ(Find(pattern), names) << Shown(pattern);
    }
}

TEST_F(PathsTest, EntriesTellSizeKindAndAttributes) {
    Put("s/file.bin", std::string(70000, 'x'));
    SetFileAttributesW(u"C:\\s\\file.bin", FILE_ATTRIBUTE_READONLY);
    const WIN32_FIND_DATAW file = Entry(u"C:\\s\\file.bin");
    EXPECT_EQ(file.dwFileAttributes, DWORD{FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_READONLY});
    EXPECT_EQ(file.nFileSizeLow, 70000u);
    EXPECT_EQ(file.nFileSizeHigh, 0u);
    // Made after 2020 and before 2100, in 100 ns since 1601.
    EXPECT_GT(file.ftLastWriteTime.dwHighDateTime, 30800000u);
    EXPECT_LT(file.ftLastWriteTime.dwHighDateTime, 36800000u);
    EXPECT_EQ(Entry(u"C:\\s").dwFileAttributes, DWORD{FILE_ATTRIBUTE_DIRECTORY});
}

TEST_F(PathsTest, ShortNamesLeadToTheirFiles) {
    const struct {
        const char* name;
        const char16_t* beginning;  // of the short name; empty: none is needed
        const char16_t* extension;
    } cases[] = {
        {"ABCDEFGH.IJK", u"", u""}, {"a long name.text", u"AL", u".TEX"}, {"a+b.c,d", u"A_", u".C_D"},
        {".profile", u"PR", u""},   {"\xC3\xA4.txt", u"_", u".TXT"},
    };
    const auto shortName = [](const char* name) -> std::u16string {
        return Entry(u"C:\\s\\" + std::filesystem::path(name).u16string()).cAlternateFileName;
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Put(std::filesystem::path("s") / c.name, "");
        const std::u16string found = shortName(c.name);
        EXPECT_EQ(found.empty(), *c.beginning == 0);
        if (!found.empty()) {
            EXPECT_LE(found.size(), 12u);
            EXPECT_TRUE(found.starts_with(c.beginning) && found.ends_with(u"~1" + std::u16string(c.extension)));
            EXPECT_EQ(HostPath(u"C:\\S\\" + found)->filename().string(), c.name);
        }
    }
    // The name stays whatever comes beside it.
    const std::u16string before = shortName("a long name.text");
    Put("s/a long game.text", "");
    EXPECT_EQ(shortName("a long name.text"), before);
    EXPECT_NE(shortName("a long game.text"), before);
}

TEST_F(PathsTest, TheCurrentDirectory) {
    Put("t/a.txt", "");
    ExpectErrors({
        {"no folder", [] { return SetCurrentDirectoryW(u"C:\\x"); }, ERROR_FILE_NOT_FOUND},
        {"no folder to it", [] { return SetCurrentDirectoryW(u"C:\\x\\y"); }, ERROR_PATH_NOT_FOUND},
        {"a file", [] { return SetCurrentDirectoryW(u"C:\\t\\a.txt"); }, ERROR_DIRECTORY},
        {"set", [] { return SetCurrentDirectoryW(u"C:\\T\\"); }},
        {"below it", [] { return GetFileAttributesW(u"A.TXT") != INVALID_FILE_ATTRIBUTES; }},
        {"beside it", [] { return GetFileAttributesW(u"..\\windows") != INVALID_FILE_ATTRIBUTES; }},
    });
}

}  // namespace
}  // namespace host
