#include "tests/platform/kernel_fixture.h"

namespace host {
namespace {

class FilesTest : public KernelTest {
  protected:
    FilesTest() {
        Put("t/a.txt", "hello");
        Put("t/locked.txt", "locked");
        Put("t/d/inside.txt", "");
        EXPECT_TRUE(SetFileAttributesW(u"C:\\t\\locked.txt", FILE_ATTRIBUTE_READONLY));
    }
    static HANDLE Open(const char16_t* name, DWORD access = GENERIC_READ, DWORD share = 0,
                       DWORD disposition = OPEN_EXISTING, DWORD flags = FILE_ATTRIBUTE_NORMAL) {
        return CreateFileW(name, access, share, nullptr, disposition, flags, nullptr);
    }
};

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

TEST_F(FilesTest, OpeningSaysWhatIsThere) {
    const struct {
        const char16_t* name;
        DWORD access;
        DWORD disposition;
        DWORD flags;
        DWORD error;
        bool opens;
    } cases[] = {
        {u"C:\\t\\a.txt", GENERIC_READ, OPEN_EXISTING, 0, ERROR_SUCCESS, true},
        {u"C:\\t\\a.txt", GENERIC_READ, CREATE_NEW, 0, ERROR_FILE_EXISTS, false},
        {u"C:\\t\\a.txt", GENERIC_READ, OPEN_ALWAYS, 0, ERROR_ALREADY_EXISTS, true},
        {u"C:\\t\\a.txt", GENERIC_WRITE, CREATE_ALWAYS, 0, ERROR_ALREADY_EXISTS, true},
        {u"C:\\t\\a.txt", GENERIC_READ, TRUNCATE_EXISTING, 0, ERROR_INVALID_PARAMETER, false},
        {u"C:\\t\\a.txt", GENERIC_READ, 0, 0, ERROR_INVALID_PARAMETER, false},
        {u"C:\\t\\a.txt", GENERIC_READ, OPEN_EXISTING, FILE_FLAG_OVERLAPPED, ERROR_NOT_SUPPORTED, false},
        {u"C:\\t\\none.txt", GENERIC_READ, OPEN_EXISTING, 0, ERROR_FILE_NOT_FOUND, false},
        {u"C:\\t\\none.txt", GENERIC_WRITE, TRUNCATE_EXISTING, 0, ERROR_FILE_NOT_FOUND, false},
        {u"C:\\none\\a.txt", GENERIC_WRITE, CREATE_ALWAYS, 0, ERROR_PATH_NOT_FOUND, false},
        {u"C:\\t\\a.txt\\b", GENERIC_READ, OPEN_EXISTING, 0, ERROR_PATH_NOT_FOUND, false},
        {u"C:\\t\\locked.txt", GENERIC_READ, OPEN_EXISTING, 0, ERROR_SUCCESS, true},
        {u"C:\\t\\locked.txt", GENERIC_WRITE, OPEN_EXISTING, 0, ERROR_ACCESS_DENIED, false},
        {u"C:\\t\\locked.txt", GENERIC_READ, CREATE_ALWAYS, 0, ERROR_ACCESS_DENIED, false},
        {u"C:\\t\\d", GENERIC_READ, OPEN_EXISTING, 0, ERROR_ACCESS_DENIED, false},
        {u"C:\\t\\d", 0, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, ERROR_SUCCESS, true},
        {u"C:\\t\\a*.txt", GENERIC_READ, OPEN_EXISTING, 0, ERROR_INVALID_NAME, false},
        {u"D:\\t\\a.txt", GENERIC_READ, OPEN_EXISTING, 0, ERROR_PATH_NOT_FOUND, false},
        {u"\\\\server\\share\\a.txt", GENERIC_READ, OPEN_EXISTING, 0, ERROR_BAD_NETPATH, false},
        {u"C:\\..\\a.txt", GENERIC_READ, OPEN_EXISTING, 0, ERROR_PATH_NOT_FOUND, false},
        {u"", GENERIC_READ, OPEN_EXISTING, 0, ERROR_PATH_NOT_FOUND, false},
        {nullptr, GENERIC_READ, OPEN_EXISTING, 0, ERROR_PATH_NOT_FOUND, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << Shown(c.name != nullptr ? c.name : u"(null)") << " " << c.disposition);
        HANDLE file = nullptr;
        EXPECT_EQ(ErrorOf([&] { file = Open(c.name, c.access, 0, c.disposition, c.flags); }), c.error);
        EXPECT_EQ(file != INVALID_HANDLE_VALUE, c.opens);
        if (c.opens) {
            EXPECT_TRUE(CloseHandle(file));
        }
    }
    EXPECT_EQ(Get("t/a.txt"), "");  // CREATE_ALWAYS emptied it
}

TEST_F(FilesTest, SharingHoldsBetweenHandles) {
    const struct {
        DWORD firstAccess;
        DWORD firstShare;
        DWORD secondAccess;
        DWORD secondShare;
        bool opens;
    } cases[] = {
        {GENERIC_READ, 0, GENERIC_READ, kShareAll, false},
        {GENERIC_READ, FILE_SHARE_READ, GENERIC_READ, FILE_SHARE_READ, true},
        {GENERIC_READ, FILE_SHARE_READ, GENERIC_READ, 0, false},
        {GENERIC_READ, FILE_SHARE_READ, GENERIC_WRITE, kShareAll, false},
        {GENERIC_WRITE, FILE_SHARE_READ, GENERIC_READ, FILE_SHARE_READ, false},
        {GENERIC_WRITE, FILE_SHARE_READ, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, true},
        {GENERIC_READ, FILE_SHARE_READ, DELETE, kShareAll, false},
        {GENERIC_READ, kShareAll, DELETE, kShareAll, true},
        // Attributes can be looked at whatever another handle says.
        {GENERIC_READ | GENERIC_WRITE, 0, FILE_READ_ATTRIBUTES, 0, true},
        {FILE_READ_ATTRIBUTES, 0, GENERIC_READ | GENERIC_WRITE, 0, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << &c - cases);
        const HANDLE first = Open(u"C:\\t\\a.txt", c.firstAccess, c.firstShare);
        ASSERT_NE(first, INVALID_HANDLE_VALUE);
        const HANDLE second = Open(u"c:\\T\\A.TXT", c.secondAccess, c.secondShare);
        EXPECT_EQ(second != INVALID_HANDLE_VALUE, c.opens);
        if (c.opens) {
            CloseHandle(second);
        } else {
            EXPECT_EQ(GetLastError(), DWORD{ERROR_SHARING_VIOLATION});
        }
        CloseHandle(first);
    }
    const HANDLE held = Open(u"C:\\t\\a.txt", GENERIC_READ, FILE_SHARE_READ);
    EXPECT_EQ(FailureOf([] { return DeleteFileW(u"C:\\t\\a.txt"); }), DWORD{ERROR_SHARING_VIOLATION});
    EXPECT_EQ(FailureOf([] { return MoveFileExW(u"C:\\t\\a.txt", u"C:\\t\\b.txt", 0); }),
              DWORD{ERROR_SHARING_VIOLATION});
    EXPECT_EQ(FailureOf([] { return CopyFileW(u"C:\\t\\locked.txt", u"C:\\t\\a.txt", FALSE); }),
              DWORD{ERROR_SHARING_VIOLATION});
    EXPECT_TRUE(CopyFileW(u"C:\\t\\a.txt", u"C:\\t\\b.txt", FALSE));
    CloseHandle(held);
}

TEST_F(FilesTest, ReadsStopAtTheEndAndWritesExtend) {
    const HANDLE file = Open(u"C:\\t\\a.txt", GENERIC_READ | GENERIC_WRITE);
    char buffer[16] = {};
    DWORD count = kNoError;
    EXPECT_TRUE(ReadFile(file, buffer, sizeof(buffer), &count, nullptr));
    EXPECT_EQ(std::string(buffer, count), "hello");
    EXPECT_TRUE(ReadFile(file, buffer, sizeof(buffer), &count, nullptr));
    EXPECT_EQ(count, 0u);
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
    EXPECT_TRUE(SetEndOfFile(file));
    EXPECT_TRUE(FlushFileBuffers(file));
    EXPECT_TRUE(CloseHandle(file));
    EXPECT_EQ(Get("t/a.txt"), std::string("help me\0", 8));
}

TEST_F(FilesTest, PositionsAreChecked) {
    const HANDLE file = Open(u"C:\\t\\a.txt");
    EXPECT_EQ(SetFilePointer(file, 2, nullptr, FILE_BEGIN), 2u);
    LONG high = -1;
    EXPECT_EQ(ErrorOf([&] { EXPECT_EQ(SetFilePointer(file, -3, nullptr, FILE_CURRENT), INVALID_SET_FILE_POINTER); }),
              DWORD{ERROR_NEGATIVE_SEEK});
    EXPECT_EQ(ErrorOf([&] { EXPECT_EQ(SetFilePointer(file, 0, nullptr, 3), INVALID_SET_FILE_POINTER); }),
              DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(SetFilePointer(file, 0, nullptr, FILE_CURRENT), 2u);  // failures don't move it
    high = 1;
    EXPECT_EQ(SetFilePointer(file, 5, &high, FILE_BEGIN), 5u);
    EXPECT_EQ(high, 1);
    EXPECT_EQ(ErrorOf([&] { SetFilePointer(file, 0, nullptr, FILE_CURRENT); }), DWORD{ERROR_INVALID_PARAMETER});
    LARGE_INTEGER target;
    target.QuadPart = 0xFFFFFFFF;
    LARGE_INTEGER now{};
    EXPECT_TRUE(SetFilePointerEx(file, target, &now, FILE_BEGIN));
    EXPECT_EQ(now.QuadPart, 0xFFFFFFFF);
    // The same value as the failure's, told apart by the last error.
    EXPECT_EQ(ErrorOf([&] { EXPECT_EQ(SetFilePointer(file, 0, nullptr, FILE_CURRENT), INVALID_SET_FILE_POINTER); }),
              DWORD{NO_ERROR});
    EXPECT_TRUE(GetFileSizeEx(file, &now));
    EXPECT_EQ(now.QuadPart, 5);
    CloseHandle(file);
}

TEST_F(FilesTest, HandlesGiveOnlyTheRightsThatWereAskedFor) {
    char byte = 0;
    DWORD count = 0;
    const HANDLE reader = Open(u"C:\\t\\a.txt", GENERIC_READ, kShareAll);
    EXPECT_EQ(FailureOf([&] { return WriteFile(reader, "x", 1, &count, nullptr); }), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_EQ(FailureOf([&] { return SetEndOfFile(reader); }), DWORD{ERROR_ACCESS_DENIED});
    const HANDLE writer = Open(u"C:\\t\\a.txt", GENERIC_WRITE, kShareAll);
    EXPECT_EQ(FailureOf([&] { return ReadFile(writer, &byte, 1, &count, nullptr); }), DWORD{ERROR_ACCESS_DENIED});
    const HANDLE viewer = Open(u"C:\\t\\a.txt", FILE_READ_ATTRIBUTES, 0);
    EXPECT_EQ(GetFileSize(viewer, nullptr), 5u);
    EXPECT_EQ(FailureOf([&] { return ReadFile(viewer, &byte, 1, &count, nullptr); }), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_EQ(StillOpen().size(), 3u);
    for (const HANDLE file : {reader, writer, viewer}) {
        EXPECT_TRUE(CloseHandle(file));
    }
    // A handle that is closed is none any more, for every call.
    EXPECT_EQ(FailureOf([&] { return CloseHandle(reader); }), DWORD{ERROR_INVALID_HANDLE});
    EXPECT_EQ(FailureOf([&] { return ReadFile(reader, &byte, 1, &count, nullptr); }), DWORD{ERROR_INVALID_HANDLE});
    EXPECT_EQ(ErrorOf([&] { EXPECT_EQ(GetFileSize(reader, nullptr), INVALID_FILE_SIZE); }),
              DWORD{ERROR_INVALID_HANDLE});
    EXPECT_EQ(FailureOf([] { return CloseHandle(INVALID_HANDLE_VALUE); }), DWORD{ERROR_INVALID_HANDLE});
}

TEST_F(FilesTest, AppendingAndDeletingOnClose) {
    const HANDLE file = Open(u"C:\\t\\a.txt", FILE_APPEND_DATA, 0);
    EXPECT_TRUE(WriteFile(file, "!", 1, nullptr, nullptr));
    CloseHandle(file);
    EXPECT_EQ(Get("t/a.txt"), "hello!");
    const HANDLE passing = Open(u"C:\\t\\tmp", GENERIC_WRITE, 0, CREATE_NEW, FILE_FLAG_DELETE_ON_CLOSE);
    EXPECT_TRUE(Exists("t/tmp"));
    CloseHandle(passing);
    EXPECT_FALSE(Exists("t/tmp"));
}

TEST_F(FilesTest, ReadOnlyFilesStay) {
    EXPECT_EQ(GetFileAttributesW(u"C:\\t\\locked.txt"), DWORD{FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_READONLY});
    EXPECT_EQ(FailureOf([] { return DeleteFileW(u"C:\\t\\locked.txt"); }), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_EQ(FailureOf([] { return MoveFileExW(u"C:\\t\\a.txt", u"C:\\t\\locked.txt", MOVEFILE_REPLACE_EXISTING); }),
              DWORD{ERROR_ACCESS_DENIED});
    EXPECT_EQ(FailureOf([] { return CopyFileW(u"C:\\t\\a.txt", u"C:\\t\\locked.txt", FALSE); }),
              DWORD{ERROR_ACCESS_DENIED});
    EXPECT_TRUE(CopyFileW(u"C:\\t\\locked.txt", u"C:\\t\\copy.txt", FALSE));  // a copy is read-only too
    EXPECT_EQ(GetFileAttributesW(u"C:\\t\\copy.txt") & FILE_ATTRIBUTE_READONLY, DWORD{FILE_ATTRIBUTE_READONLY});
    EXPECT_TRUE(SetFileAttributesW(u"C:\\t\\locked.txt", FILE_ATTRIBUTE_NORMAL));
    EXPECT_TRUE(DeleteFileW(u"C:\\t\\locked.txt"));
    // A file that is made read-only can be written by the handle that made it.
    const HANDLE file = Open(u"C:\\t\\new.txt", GENERIC_WRITE, 0, CREATE_NEW, FILE_ATTRIBUTE_READONLY);
    EXPECT_TRUE(WriteFile(file, "x", 1, nullptr, nullptr));
    CloseHandle(file);
    EXPECT_EQ(GetFileAttributesW(u"C:\\t\\new.txt") & FILE_ATTRIBUTE_READONLY, DWORD{FILE_ATTRIBUTE_READONLY});
    EXPECT_EQ(FailureOf([] { return SetFileAttributesW(u"C:\\t\\a.txt", FILE_ATTRIBUTE_HIDDEN); }),
              DWORD{ERROR_NOT_SUPPORTED});
}

TEST_F(FilesTest, FoldersAndMoves) {
    const struct {
        const char* what;
        BOOL (*call)();
        DWORD error;
    } cases[] = {
        {"folder exists", [] { return CreateDirectoryW(u"C:\\t", nullptr); }, ERROR_ALREADY_EXISTS},
        {"folder at a file", [] { return CreateDirectoryW(u"C:\\t\\a.txt", nullptr); }, ERROR_ALREADY_EXISTS},
        {"parent missing", [] { return CreateDirectoryW(u"C:\\x\\y", nullptr); }, ERROR_PATH_NOT_FOUND},
        {"new folder", [] { return CreateDirectoryW(u"C:\\t\\new", nullptr); }, ERROR_SUCCESS},
        {"not empty", [] { return RemoveDirectoryW(u"C:\\t\\d"); }, ERROR_DIR_NOT_EMPTY},
        {"no folder", [] { return RemoveDirectoryW(u"C:\\t\\a.txt"); }, ERROR_DIRECTORY},
        {"missing folder", [] { return RemoveDirectoryW(u"C:\\t\\x"); }, ERROR_FILE_NOT_FOUND},
        {"empty folder", [] { return RemoveDirectoryW(u"C:\\t\\NEW"); }, ERROR_SUCCESS},
        {"delete a folder", [] { return DeleteFileW(u"C:\\t\\d"); }, ERROR_ACCESS_DENIED},
        {"delete nothing", [] { return DeleteFileW(u"C:\\t\\x"); }, ERROR_FILE_NOT_FOUND},
        {"delete nowhere", [] { return DeleteFileW(u"C:\\x\\x"); }, ERROR_PATH_NOT_FOUND},
        {"move nothing", [] { return MoveFileExW(u"C:\\t\\x", u"C:\\t\\y", 0); }, ERROR_FILE_NOT_FOUND},
        {"move nowhere", [] { return MoveFileExW(u"C:\\t\\a.txt", u"C:\\x\\y", 0); }, ERROR_PATH_NOT_FOUND},
        {"move over", [] { return MoveFileExW(u"C:\\t\\a.txt", u"C:\\t\\d\\inside.txt", 0); }, ERROR_ALREADY_EXISTS},
        {"move over a folder", [] { return MoveFileExW(u"C:\\t\\a.txt", u"C:\\t\\d", MOVEFILE_REPLACE_EXISTING); },
         ERROR_ACCESS_DENIED},
        {"change case", [] { return MoveFileExW(u"C:\\t\\a.txt", u"C:\\t\\A.Txt", 0); }, ERROR_SUCCESS},
        {"replace", [] { return MoveFileExW(u"C:\\t\\a.txt", u"C:\\t\\d\\INSIDE.txt", MOVEFILE_REPLACE_EXISTING); },
         ERROR_SUCCESS},
        {"move a folder", [] { return MoveFileExW(u"C:\\t\\d", u"C:\\t\\e", 0); }, ERROR_SUCCESS},
        {"copy nothing", [] { return CopyFileW(u"C:\\t\\x", u"C:\\t\\y", FALSE); }, ERROR_FILE_NOT_FOUND},
        {"copy a folder", [] { return CopyFileW(u"C:\\t\\e", u"C:\\t\\y", FALSE); }, ERROR_ACCESS_DENIED},
        {"copy", [] { return CopyFileW(u"C:\\t\\E\\inside.TXT", u"C:\\t\\copy", TRUE); }, ERROR_SUCCESS},
        {"copy over", [] { return CopyFileW(u"C:\\t\\copy", u"C:\\t\\e\\inside.txt", TRUE); }, ERROR_FILE_EXISTS},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(FailureOf(c.call), c.error);
    }
    EXPECT_EQ(Get("t/copy"), "hello");
    EXPECT_FALSE(Exists("t/A.Txt"));
    const std::u16string deep = u"C:\\t\\" + std::u16string(245, u'x');
    EXPECT_EQ(FailureOf([&] { return CreateDirectoryW(deep.c_str(), nullptr); }), DWORD{ERROR_FILENAME_EXCED_RANGE});
}

TEST_F(FilesTest, CallsFailAsAsked) {
    FailCall("CreateFileW", ERROR_DISK_FULL, 2);
    const HANDLE file = Open(u"C:\\t\\a.txt");
    EXPECT_NE(file, INVALID_HANDLE_VALUE);
    EXPECT_EQ(ErrorOf([] { EXPECT_EQ(Open(u"C:\\t\\a.txt"), INVALID_HANDLE_VALUE); }), DWORD{ERROR_DISK_FULL});
    FailCall("ReadFile", ERROR_READ_FAULT);
    char byte = 0;
    DWORD count = 7;
    EXPECT_EQ(FailureOf([&] { return ReadFile(file, &byte, 1, &count, nullptr); }), DWORD{ERROR_READ_FAULT});
    EXPECT_EQ(count, 0u);
    EXPECT_TRUE(ReadFile(file, &byte, 1, &count, nullptr));  // once
    EXPECT_EQ(CallsSoFar("ReadFile"), 2u);
    FailCall("ReadFile", ERROR_READ_FAULT);
    ClearFaults();
    EXPECT_TRUE(ReadFile(file, &byte, 1, &count, nullptr));
    CloseHandle(file);
}

}  // namespace
}  // namespace host
