#include "platform/kernel/drive.h"
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

    static std::u16string ShortNameOf(const char16_t* path) {
        WIN32_FIND_DATAW data;
        const HANDLE search = FindFirstFileW(path, &data);
        EXPECT_NE(search, INVALID_HANDLE_VALUE);
        FindClose(search);
        return data.cAlternateFileName;
    }
};

TEST_F(PathsTest, HostPathFindsWhatIsThereWhateverItsCase) {
    Put("Program Files/Some Maker/Tool.exe", "");
    const std::string drive = TheMachine().Drive().string();
    const struct {
        const char16_t* path;
        const char* file;  // below the drive; null: not on it
    } cases[] = {
        {u"C:\\Program Files\\Some Maker\\Tool.exe", "/Program Files/Some Maker/Tool.exe"},
        {u"c:/PROGRAM FILES\\\\some maker/.\\x\\..\\TOOL.EXE", "/Program Files/Some Maker/Tool.exe"},
        {u"\\program files", "/Program Files"},
        {u"C:\\Program Files. .", "/Program Files"},
        {u"C:\\program files\\New\\Deep.txt", "/Program Files/New/Deep.txt"},
        {u"C:\\", ""},
        {u"C:", ""},
        {u"windows", "/Windows"},
        {u"D:\\x", nullptr},
        {u"\\\\server\\share", nullptr},
        {u"C:\\x\\..\\..\\y", nullptr},
        {u"C:\\a|b", nullptr},
        {u"", nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(Shown(c.path));
        const auto found = HostPath(c.path);
        ASSERT_EQ(found.has_value(), c.file != nullptr);
        if (found) {
            EXPECT_EQ(found->string(), drive + c.file);
        }
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
    std::filesystem::rename(TheMachine().Drive() / "f", TheMachine().Drive() / "g");
    EXPECT_EQ(GetFileAttributesW(u"C:\\F\\NAME.TXT"), INVALID_FILE_ATTRIBUTES);
    Put("F/name.TXT", "new");
    WCHAR text[8] = {};
    const HANDLE file = CreateFileW(u"C:\\f\\name.txt", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(GetFileSize(file, nullptr), 3u);
    CloseHandle(file);
    EXPECT_EQ(GetCurrentDirectoryW(8, text), 3u);
}

TEST_F(PathsTest, Wildcards) {
    for (const char* name : {"Beta.txt", "a.txt", "a1.txt", "c", "d.x.txt", "E.TX"}) {
        Put(std::filesystem::path("s") / name, "");
    }
    const struct {
        const char16_t* pattern;
        const char* names;
    } cases[] = {
        {u"C:\\s\\*", ". .. a.txt a1.txt Beta.txt c d.x.txt E.TX"},
        {u"C:\\s\\*.*", ". .. a.txt a1.txt Beta.txt c d.x.txt E.TX"},
        {u"C:\\s\\*.TXT", "a.txt a1.txt Beta.txt d.x.txt"},
        {u"C:\\s\\*.tx?", "a.txt a1.txt Beta.txt d.x.txt E.TX"},
        {u"C:\\s\\?.txt", "a.txt"},
        {u"C:\\s\\a?.txt", "a.txt a1.txt"},
        {u"C:\\s\\*.", ". .. c"},
        {u"C:\\s\\b*a*", "Beta.txt"},
        {u"C:\\s\\BETA.txt", "Beta.txt"},
        {u"C:\\s", "s"},
        {u"C:\\s\\.", "s"},
        {u"C:\\s\\..", "error 2"},  // the root has no entry
        {u"C:\\s\\", "error 2"},
        {u"C:\\s\\z*", "error 2"},
        {u"C:\\z\\*", "error 3"},
        {u"C:\\s\\c\\*", "error 267"},
        {u"C:\\*", "s Users Windows"},
        {u"", "error 3"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Find(c.pattern), c.names) << Shown(c.pattern);
    }
    ASSERT_TRUE(SetCurrentDirectoryW(u"C:\\S"));
    EXPECT_EQ(Find(u"e*"), "E.TX");
    EXPECT_EQ(Find(u"*.zzz"), "error 2");
}

TEST_F(PathsTest, EntriesTellSizeKindAndAttributes) {
    Put("s/file.bin", std::string(70000, 'x'));
    SetFileAttributesW(u"C:\\s\\file.bin", FILE_ATTRIBUTE_READONLY);
    WIN32_FIND_DATAW data;
    HANDLE search = FindFirstFileW(u"C:\\s\\file.bin", &data);
    ASSERT_NE(search, INVALID_HANDLE_VALUE);
    EXPECT_EQ(data.dwFileAttributes, DWORD{FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_READONLY});
    EXPECT_EQ(data.nFileSizeLow, 70000u);
    EXPECT_EQ(data.nFileSizeHigh, 0u);
    // Made after 2020 and before 2100, in 100 ns since 1601.
    EXPECT_GT(data.ftLastWriteTime.dwHighDateTime, 30800000u);
    EXPECT_LT(data.ftLastWriteTime.dwHighDateTime, 36800000u);
    FindClose(search);
    search = FindFirstFileW(u"C:\\s", &data);
    EXPECT_EQ(data.dwFileAttributes, DWORD{FILE_ATTRIBUTE_DIRECTORY});
    EXPECT_EQ(data.nFileSizeLow, 0u);
    EXPECT_EQ(StillOpen(), std::vector<std::string>{"file search C:\\s"});
    EXPECT_TRUE(FindClose(search));
    EXPECT_FALSE(FindClose(search));
}

TEST_F(PathsTest, ShortNamesLeadToTheirFiles) {
    const struct {
        const char* name;
        const char16_t* beginning;  // of the short name; empty: none is needed
        const char16_t* extension;
    } cases[] = {
        {"short.txt", u"", u""},
        {"ABCDEFGH.IJK", u"", u""},
        {"noext", u"", u""},
        {"a long name.text", u"AL", u".TEX"},
        {"nine chars", u"NI", u""},
        {"two.dots.txt", u"TW", u".TXT"},
        {"a+b.c,d", u"A_", u".C_D"},
        {".profile", u"PR", u""},
        {"\xC3\xA4.txt", u"_", u".TXT"},
    };
    for (const auto& c : cases) {
        Put(std::filesystem::path("s") / c.name, c.name);
    }
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::u16string path = u"C:\\s\\" + std::filesystem::path(c.name).u16string();
        const std::u16string shortName = ShortNameOf(path.c_str());
        EXPECT_TRUE(shortName.starts_with(c.beginning));
        EXPECT_EQ(shortName.empty(), *c.beginning == 0);
        if (!shortName.empty()) {
            EXPECT_LE(shortName.size(), 12u);
            EXPECT_TRUE(shortName.ends_with(u"~1" + std::u16string(c.extension)));
            const auto found = HostPath(u"C:\\S\\" + shortName);
            ASSERT_TRUE(found);
            EXPECT_EQ(found->filename().string(), c.name);
        }
    }
    // The name stays whatever comes beside it.
    const std::u16string before = ShortNameOf(u"C:\\s\\a long name.text");
    Put("s/a long game.text", "");
    Put("s/A long aaaa.text", "");
    EXPECT_EQ(ShortNameOf(u"C:\\s\\a long name.text"), before);
    EXPECT_NE(ShortNameOf(u"C:\\s\\a long game.text"), before);
}

TEST_F(PathsTest, CurrentDirectory) {
    Put("t/a.txt", "");
    EXPECT_EQ(FailureOf([] { return SetCurrentDirectoryW(u"C:\\x"); }), DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(FailureOf([] { return SetCurrentDirectoryW(u"C:\\x\\y"); }), DWORD{ERROR_PATH_NOT_FOUND});
    EXPECT_EQ(FailureOf([] { return SetCurrentDirectoryW(u"C:\\t\\a.txt"); }), DWORD{ERROR_DIRECTORY});
    EXPECT_TRUE(SetCurrentDirectoryW(u"C:\\T\\"));
    EXPECT_NE(GetFileAttributesW(u"A.TXT"), INVALID_FILE_ATTRIBUTES);
    EXPECT_NE(GetFileAttributesW(u"..\\windows"), INVALID_FILE_ATTRIBUTES);
    EXPECT_NE(GetFileAttributesW(u"\\t"), INVALID_FILE_ATTRIBUTES);
}

// Length without the NUL where it fits, the size with it where it doesn't.
TEST_F(PathsTest, FolderNamesFollowTheSizeProtocol) {
    const struct {
        DWORD (*call)(LPWSTR buffer, DWORD size);
        std::u16string text;
    } cases[] = {
        {[](LPWSTR buffer, DWORD size) { return GetCurrentDirectoryW(size, buffer); }, u"C:\\"},
        {[](LPWSTR buffer, DWORD size) { return GetTempPathW(size, buffer); },
         u"C:\\Users\\User\\AppData\\Local\\Temp\\"},
        {[](LPWSTR buffer, DWORD size) { return GetSystemDirectoryW(buffer, size); }, u"C:\\Windows\\System32"},
        {[](LPWSTR buffer, DWORD size) { return GetWindowsDirectoryW(buffer, size); }, u"C:\\Windows"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(Shown(c.text));
        const auto length = static_cast<DWORD>(c.text.size());
        WCHAR buffer[MAX_PATH] = {u'#'};
        EXPECT_EQ(c.call(nullptr, 0), length + 1);
        EXPECT_EQ(c.call(buffer, length), length + 1);
        EXPECT_EQ(buffer[0], u'#');
        EXPECT_EQ(c.call(buffer, length + 1), length);
        EXPECT_EQ(std::u16string(buffer), c.text);
        EXPECT_NE(GetFileAttributesW(buffer), INVALID_FILE_ATTRIBUTES);
    }
    TheMachine().SetVariable(u"TMP", u"");
    TheMachine().SetVariable(u"TEMP", u"");
    WCHAR buffer[MAX_PATH];
    GetTempPathW(MAX_PATH, buffer);
    EXPECT_EQ(std::u16string(buffer), u"C:\\Users\\User\\");
}

}  // namespace
}  // namespace host
