#include "tests/platform/kernel_fixture.h"

namespace host {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr char16_t kA[] = u"C:\\t\\a.txt";
constexpr char16_t kLocked[] = u"C:\\t\\locked.txt";
constexpr char16_t kInside[] = u"C:\\t\\d\\inside.txt";

class FilesTest : public KernelTest {
  protected:
    FilesTest() {
        Put("t/a.txt", "hello");
        Put("t/locked.txt", "locked");
        Put("t/d/inside.txt", "");
        EXPECT_TRUE(SetFileAttributesW(kLocked, FILE_ATTRIBUTE_READONLY));
    }
    static HANDLE Open(const char16_t* name, DWORD access, DWORD share = 0, DWORD disposition = OPEN_EXISTING,
                       DWORD flags = FILE_ATTRIBUTE_NORMAL) {
        return CreateFileW(name, access, share, nullptr, disposition, flags, nullptr);
    }
};

TEST_F(FilesTest, OpeningSaysWhatIsThere) {
    const struct {
        const char16_t* name;
        DWORD access, disposition, flags;
        LONG error;
    } cases[] = {
        {kA, GENERIC_READ, OPEN_EXISTING, 0, ERROR_SUCCESS},
        {kA, GENERIC_READ, CREATE_NEW, 0, ERROR_FILE_EXISTS},
        {kA, GENERIC_READ, OPEN_ALWAYS, 0, ERROR_ALREADY_EXISTS},
        {kA, GENERIC_WRITE, CREATE_ALWAYS, 0, ERROR_ALREADY_EXISTS},
        {kA, GENERIC_READ, OPEN_EXISTING, FILE_FLAG_OVERLAPPED, ERROR_NOT_SUPPORTED},
        {u"C:\\t\\none.txt", GENERIC_READ, OPEN_EXISTING, 0, ERROR_FILE_NOT_FOUND},
        {u"C:\\none\\a.txt", GENERIC_WRITE, CREATE_ALWAYS, 0, ERROR_PATH_NOT_FOUND},
        {kLocked, GENERIC_WRITE, OPEN_EXISTING, 0, ERROR_ACCESS_DENIED},
        {kLocked, GENERIC_READ, CREATE_ALWAYS, 0, ERROR_ACCESS_DENIED},
        {u"C:\\t\\d", GENERIC_READ, OPEN_EXISTING, 0, ERROR_ACCESS_DENIED},
        {u"C:\\t\\a*.txt", GENERIC_READ, OPEN_EXISTING, 0, ERROR_INVALID_NAME},
        {u"\\\\server\\share\\a.txt", GENERIC_READ, OPEN_EXISTING, 0, ERROR_BAD_NETPATH},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << Shown(c.name ? c.name : u"(null)") << " " << c.disposition);
        HANDLE file = nullptr;
        EXPECT_EQ(ErrorOf([&] { file = Open(c.name, c.access, 0, c.disposition, c.flags); }), c.error);
        EXPECT_EQ(file != INVALID_HANDLE_VALUE && CloseHandle(file),
                  c.error == ERROR_SUCCESS || c.error == ERROR_ALREADY_EXISTS);
    }
    EXPECT_EQ(Get("t/a.txt"), "");  // CREATE_ALWAYS emptied it
}

TEST_F(FilesTest, SharingHoldsBetweenHandles) {
    const struct {
        DWORD firstAccess, firstShare, secondAccess, secondShare;
        bool opens;
    } cases[] = {
        {GENERIC_READ, 0, GENERIC_READ, kShareAll, false},
        {GENERIC_READ, FILE_SHARE_READ, GENERIC_READ, FILE_SHARE_READ, true},
        {GENERIC_READ, FILE_SHARE_READ, GENERIC_WRITE, kShareAll, false},
        {GENERIC_WRITE, FILE_SHARE_READ, GENERIC_READ, FILE_SHARE_READ, false},
        {GENERIC_READ, FILE_SHARE_READ, DELETE, kShareAll, false},
        {GENERIC_READ | GENERIC_WRITE, 0, FILE_READ_ATTRIBUTES, 0, true},  // can be looked at in any case
    };
    for (const auto& c : cases) {
        const HANDLE first = Open(kA, c.firstAccess, c.firstShare);
        const HANDLE second = Open(u"c:\\T\\A.TXT", c.secondAccess, c.secondShare);
        EXPECT_EQ(second != INVALID_HANDLE_VALUE && CloseHandle(second), c.opens) << "row " << &c - cases;
        CloseHandle(first);
    }
    const HANDLE held = Open(kA, GENERIC_READ, FILE_SHARE_READ);
    ExpectErrors({
        {"open to write", [] { return Open(kA, GENERIC_WRITE) != INVALID_HANDLE_VALUE; }, ERROR_SHARING_VIOLATION},
        {"delete", [] { return DeleteFileW(kA); }, ERROR_SHARING_VIOLATION},
        {"copy over", [] { return CopyFileW(kLocked, kA, FALSE); }, ERROR_SHARING_VIOLATION},
    });
    CloseHandle(held);
}

TEST_F(FilesTest, ReadsStopAtTheEndAndWritesExtend) {
    const HANDLE file = Open(kA, GENERIC_READ | GENERIC_WRITE);
    char buffer[16] = {};
    DWORD count = 99;
    EXPECT_TRUE(ReadFile(file, buffer, sizeof(buffer), &count, nullptr));
    EXPECT_EQ(std::string(buffer, count), "hello");
    EXPECT_EQ(SetFilePointer(file, -2, nullptr, FILE_END), 3u);
    EXPECT_TRUE(WriteFile(file, "p me", 4, &count, nullptr));
    EXPECT_EQ(count, 4u);
    EXPECT_EQ(GetFileSize(file, nullptr), 7u);
    // A position beyond the end is allowed; a write there fills the gap with zeros.
    EXPECT_EQ(SetFilePointer(file, 9, nullptr, FILE_BEGIN), 9u);
    EXPECT_TRUE(ReadFile(file, buffer, 1, &count, nullptr));
    EXPECT_EQ(count, 0u);
    EXPECT_TRUE(WriteFile(file, "x", 1, nullptr, nullptr));
    EXPECT_EQ(SetFilePointer(file, 8, nullptr, FILE_BEGIN), 8u);
    EXPECT_EQ(ErrorOf([&] { SetFilePointer(file, -9, nullptr, FILE_CURRENT); }), ERROR_NEGATIVE_SEEK);
    EXPECT_TRUE(CloseHandle(file));
    const HANDLE appending = Open(kA, FILE_APPEND_DATA);
    EXPECT_TRUE(WriteFile(appending, "!", 1, nullptr, nullptr) && CloseHandle(appending));
    EXPECT_EQ(Get("t/a.txt"), std::string("help me\0\0x!", 11));
    const HANDLE passing = Open(u"C:\\t\\tmp", GENERIC_WRITE, 0, CREATE_NEW, FILE_FLAG_DELETE_ON_CLOSE);
    EXPECT_TRUE(Exists("t/tmp") && CloseHandle(passing));
    EXPECT_FALSE(Exists("t/tmp"));
}

TEST_F(FilesTest, HandlesGiveOnlyTheRightsThatWereAskedFor) {
    char byte = 0;
    DWORD count = 0;
    const HANDLE reader = Open(kA, GENERIC_READ, kShareAll);
    const HANDLE writer = Open(kA, GENERIC_WRITE, kShareAll);
    ExpectErrors({
        {"write", [&] { return WriteFile(reader, "x", 1, &count, nullptr); }, ERROR_ACCESS_DENIED},
        {"read", [&] { return ReadFile(writer, &byte, 1, &count, nullptr); }, ERROR_ACCESS_DENIED},
        {"close", [&] { return CloseHandle(reader) && CloseHandle(writer); }},
        {"read closed", [&] { return ReadFile(reader, &byte, 1, &count, nullptr); }, ERROR_INVALID_HANDLE},
    });
}

TEST_F(FilesTest, ReadOnlyFilesStay) {
    ExpectErrors({
        {"delete", [] { return DeleteFileW(kLocked); }, ERROR_ACCESS_DENIED},
        {"move over", [] { return MoveFileExW(kA, kLocked, MOVEFILE_REPLACE_EXISTING); }, ERROR_ACCESS_DENIED},
        {"copy over", [] { return CopyFileW(kA, kLocked, FALSE); }, ERROR_ACCESS_DENIED},
        {"copy", [] { return CopyFileW(kLocked, u"C:\\t\\copy.txt", FALSE); }},
        {"set normal", [] { return SetFileAttributesW(kLocked, FILE_ATTRIBUTE_NORMAL) && DeleteFileW(kLocked); }},
        {"set hidden", [] { return SetFileAttributesW(kA, FILE_ATTRIBUTE_HIDDEN); }, ERROR_NOT_SUPPORTED},
    });
    EXPECT_EQ(GetFileAttributesW(u"C:\\t\\copy.txt"), DWORD{FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_READONLY});
    // A file that is made read-only can be written by the handle that made it.
    const HANDLE file = Open(u"C:\\t\\new.txt", GENERIC_WRITE, 0, CREATE_NEW, FILE_ATTRIBUTE_READONLY);
    EXPECT_TRUE(WriteFile(file, "x", 1, nullptr, nullptr) && CloseHandle(file) && !DeleteFileW(u"C:\\t\\new.txt"));
}

TEST_F(FilesTest, FoldersAndMoves) {
    const std::u16string deep = u"C:\\t\\" + std::u16string(245, u'x');
    ExpectErrors({
        {"parent missing", [] { return CreateDirectoryW(u"C:\\x\\y", nullptr); }, ERROR_PATH_NOT_FOUND},
        {"too deep", [&] { return CreateDirectoryW(deep.c_str(), nullptr); }, ERROR_FILENAME_EXCED_RANGE},
        {"new folder", [] { return CreateDirectoryW(u"C:\\t\\new", nullptr); }},
        {"delete a folder", [] { return DeleteFileW(u"C:\\t\\d"); }, ERROR_ACCESS_DENIED},
        {"move nowhere", [] { return MoveFileExW(kA, u"C:\\x\\y", 0); }, ERROR_PATH_NOT_FOUND},
        {"move over", [] { return MoveFileExW(kA, kInside, 0); }, ERROR_ALREADY_EXISTS},
        {"change case", [] { return MoveFileExW(kA, u"C:\\t\\A.Txt", 0); }},
        {"replace", [] { return MoveFileExW(kA, kInside, MOVEFILE_REPLACE_EXISTING); }},
        {"move a folder", [] { return MoveFileExW(u"C:\\t\\d", u"C:\\t\\e", 0); }},
        {"copy", [] { return CopyFileW(u"C:\\t\\E\\inside.TXT", u"C:\\t\\copy", TRUE); }},
        {"copy over", [] { return CopyFileW(u"C:\\t\\copy", u"C:\\t\\e\\inside.txt", TRUE); }, ERROR_FILE_EXISTS},
    });
    EXPECT_EQ(Get("t/copy"), "hello");
    EXPECT_FALSE(Exists("t/A.Txt"));
}

}  // namespace
}  // namespace host
