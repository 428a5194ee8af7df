#include <chrono>
#include <thread>

#include "tests/platform/kernel_fixture.h"

namespace host {
namespace {

using SystemTest = KernelTest;

TEST_F(SystemTest, Environment) {
    WCHAR buffer[64] = {u'#'};
    EXPECT_EQ(GetEnvironmentVariableW(u"appdata", buffer, 64), 29u);
    EXPECT_EQ(std::u16string(buffer), u"C:\\Users\\User\\AppData\\Roaming");
    EXPECT_NE(GetFileAttributesW(buffer), INVALID_FILE_ATTRIBUTES);
    EXPECT_TRUE(SetEnvironmentVariableW(u"E", u"abc"));
    buffer[0] = u'#';
    EXPECT_EQ(GetEnvironmentVariableW(u"e", nullptr, 0), 4u);
    EXPECT_EQ(GetEnvironmentVariableW(u"e", buffer, 3), 4u);
    EXPECT_EQ(buffer[0], u'#');
    EXPECT_EQ(GetEnvironmentVariableW(u"e", buffer, 4), 3u);
    EXPECT_TRUE(SetEnvironmentVariableW(u"E", u""));
    EXPECT_EQ(ErrorOf([&] { EXPECT_EQ(GetEnvironmentVariableW(u"E", buffer, 64), 0u); }), kNoError);
    EXPECT_EQ(buffer[0], 0);
    EXPECT_TRUE(SetEnvironmentVariableW(u"E", nullptr));
    EXPECT_TRUE(SetEnvironmentVariableW(u"E", nullptr));
    EXPECT_EQ(ErrorOf([&] { EXPECT_EQ(GetEnvironmentVariableW(u"E", buffer, 64), 0u); }),
              DWORD{ERROR_ENVVAR_NOT_FOUND});
    for (const char16_t* name : {u"", u"a=b", static_cast<const char16_t*>(nullptr)}) {
        EXPECT_EQ(FailureOf([&] { return SetEnvironmentVariableW(name, u"v"); }), DWORD{ERROR_INVALID_PARAMETER});
    }
    TheMachine().SetVariable(u"APPDATA", u"");
    EXPECT_EQ(GetEnvironmentVariableW(u"APPDATA", buffer, 64), 0u);
}

TEST_F(SystemTest, Identity) {
    WCHAR buffer[32] = {u'#'};
    DWORD size = 10;
    EXPECT_EQ(FailureOf([&] { return GetComputerNameW(buffer, &size); }), DWORD{ERROR_BUFFER_OVERFLOW});
    EXPECT_EQ(size, 11u);
    EXPECT_EQ(buffer[0], u'#');
    EXPECT_TRUE(GetComputerNameW(buffer, &size));
    EXPECT_EQ(size, 10u);
    EXPECT_EQ(std::u16string(buffer), u"VELMORA-PC");
    TheMachine().SetComputerName(u"X");
    EXPECT_TRUE(GetComputerNameW(buffer, &size));
    EXPECT_EQ(size, 1u);

    OSVERSIONINFOW version;
    version.dwOSVersionInfoSize = sizeof(version);
    EXPECT_TRUE(GetVersionExW(&version));
    EXPECT_EQ(version.dwMajorVersion, 10u);
    EXPECT_EQ(version.dwMinorVersion, 0u);
    EXPECT_EQ(version.dwPlatformId, DWORD{VER_PLATFORM_WIN32_NT});
    TheMachine().SetSystemVersion(5, 1);
    EXPECT_TRUE(GetVersionExW(&version));
    EXPECT_EQ(version.dwMinorVersion, 1u);
    EXPECT_EQ(GetVersion(), 0x0A280105u);
    version.dwOSVersionInfoSize = 4;
    EXPECT_EQ(FailureOf([&] { return GetVersionExW(&version); }), DWORD{ERROR_INSUFFICIENT_BUFFER});

    EXPECT_EQ(GetTickCount(), 0x01000000u);
    TheMachine().SetTickCount(0xFFFFFFFF);
    EXPECT_EQ(GetTickCount(), 0xFFFFFFFFu);
    EXPECT_EQ(GetUserDefaultLangID(), 0x0409);
    TheMachine().SetLanguage(0x0411);
    EXPECT_EQ(GetUserDefaultLangID(), 0x0411);
    EXPECT_EQ(GetUserDefaultLCID(), 0x0411u);
}

TEST_F(SystemTest, LastErrorBelongsToTheThread) {
    SetLastError(5);
    std::thread([] {
        EXPECT_EQ(GetLastError(), 0u);
        SetLastError(6);
    }).join();
    EXPECT_EQ(GetLastError(), 5u);
}

TEST_F(SystemTest, SemaphoresAreFoundByNameWhileAHandleIsOpen) {
    EXPECT_EQ(FailureOf([] { return CreateSemaphoreW(nullptr, 2, 1, nullptr); }), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(FailureOf([] { return CreateSemaphoreW(nullptr, 0, 0, nullptr); }), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(FailureOf([] { return CreateSemaphoreW(nullptr, 1, 1, u"a\\b"); }), DWORD{ERROR_PATH_NOT_FOUND});
    HANDLE first = nullptr;
    EXPECT_EQ(ErrorOf([&] { first = CreateSemaphoreW(nullptr, 1, 1, u"//pc/printer"); }), DWORD{ERROR_SUCCESS});
    HANDLE second = nullptr;
    EXPECT_EQ(ErrorOf([&] { second = CreateSemaphoreW(nullptr, 0, 5, u"//pc/printer"); }), DWORD{ERROR_ALREADY_EXISTS});
    EXPECT_EQ(FailureOf([] { return OpenSemaphoreW(SEMAPHORE_ALL_ACCESS, FALSE, u"//PC/printer"); }),
              DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(FailureOf([] { return CreateEventW(nullptr, FALSE, FALSE, u"//pc/printer"); }),
              DWORD{ERROR_INVALID_HANDLE});
    EXPECT_EQ(FailureOf([] { return OpenEventW(EVENT_ALL_ACCESS, FALSE, u"//pc/printer"); }),
              DWORD{ERROR_INVALID_HANDLE});
    EXPECT_EQ(StillOpen(), (std::vector<std::string>{"semaphore //pc/printer", "semaphore //pc/printer"}));

    LONG previous = 9;
    EXPECT_EQ(FailureOf([&] { return ReleaseSemaphore(first, 1, &previous); }), DWORD{ERROR_TOO_MANY_POSTS});
    EXPECT_EQ(FailureOf([&] { return ReleaseSemaphore(first, 0, &previous); }), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(previous, 9);
    EXPECT_EQ(WaitForSingleObject(second, 0), DWORD{WAIT_OBJECT_0});
    EXPECT_EQ(ErrorOf([&] { EXPECT_EQ(WaitForSingleObject(first, 0), DWORD{WAIT_TIMEOUT}); }), kNoError);
    EXPECT_TRUE(ReleaseSemaphore(second, 1, &previous));
    EXPECT_EQ(previous, 0);
    EXPECT_TRUE(CloseHandle(first));
    const HANDLE waiter = OpenSemaphoreW(SYNCHRONIZE, FALSE, u"//pc/printer");
    EXPECT_NE(waiter, nullptr);
    EXPECT_EQ(FailureOf([&] { return ReleaseSemaphore(waiter, 1, nullptr); }), DWORD{ERROR_ACCESS_DENIED});
    CloseHandle(waiter);
    CloseHandle(second);
    EXPECT_EQ(FailureOf([] { return OpenSemaphoreW(SYNCHRONIZE, FALSE, u"//pc/printer"); }),
              DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(ErrorOf([&] { EXPECT_EQ(WaitForSingleObject(first, 0), WAIT_FAILED); }), DWORD{ERROR_INVALID_HANDLE});
}

TEST_F(SystemTest, EventsResetByThemselvesOrByHand) {
    const HANDLE manual = CreateEventW(nullptr, TRUE, TRUE, nullptr);
    const HANDLE automatic = CreateEventW(nullptr, FALSE, FALSE, nullptr);  // no name: an event of its own
    EXPECT_EQ(WaitForSingleObject(manual, 0), DWORD{WAIT_OBJECT_0});
    EXPECT_EQ(WaitForSingleObject(manual, 0), DWORD{WAIT_OBJECT_0});
    EXPECT_TRUE(ResetEvent(manual));
    EXPECT_EQ(WaitForSingleObject(manual, 0), DWORD{WAIT_TIMEOUT});
    EXPECT_TRUE(SetEvent(automatic));
    EXPECT_TRUE(SetEvent(automatic));
    EXPECT_EQ(WaitForSingleObject(automatic, 0), DWORD{WAIT_OBJECT_0});
    EXPECT_EQ(WaitForSingleObject(automatic, 0), DWORD{WAIT_TIMEOUT});
    EXPECT_EQ(FailureOf([&] { return ReleaseSemaphore(manual, 1, nullptr); }), DWORD{ERROR_INVALID_HANDLE});
    // Another thread ends a wait.
    std::thread other([&] { SetEvent(automatic); });
    EXPECT_EQ(WaitForSingleObject(automatic, INFINITE), DWORD{WAIT_OBJECT_0});
    other.join();
    // A wait that can only run out takes the machine's time, not the test's.
    TheMachine().SetWaitsElapseAtOnce(true);
    const DWORD before = GetTickCount();
    EXPECT_EQ(WaitForSingleObject(automatic, 10000), DWORD{WAIT_TIMEOUT});
    EXPECT_EQ(GetTickCount(), before + 10000);
    CloseHandle(manual);
    CloseHandle(automatic);
}

TEST_F(SystemTest, ProgramsAreStartedByTheirFileName) {
    std::vector<std::string> started;
    TheMachine().SetProgram(u"Tool.EXE", [&](const std::string& commandLine) {
        started.push_back(commandLine);
        // A program makes calls of its own, and signals whoever waits for it.
        const HANDLE event = OpenEventW(EVENT_MODIFY_STATE, FALSE, u"done");
        EXPECT_TRUE(SetEvent(event));
        CloseHandle(event);
    });
    const HANDLE done = CreateEventW(nullptr, FALSE, FALSE, u"done");
    Put("t/text.exe", "no program");
    const struct {
        const char* commandLine;
        bool starts;
        UINT error;
    } cases[] = {
        {"tool", true, 0},
        {"TOOL.exe a b", true, 0},
        {"\"C:\\Some Folder\\tool.exe\" \"x y\"", true, 0},
        {"C:\\Some Folder\\tool.exe x", true, 0},
        {"other.exe", false, ERROR_FILE_NOT_FOUND},
        {"C:\\none\\other.exe", false, ERROR_PATH_NOT_FOUND},
        {"C:\\t\\text.exe", false, ERROR_BAD_FORMAT},
        {"", false, ERROR_FILE_NOT_FOUND},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.commandLine);
        started.clear();
        const UINT result = WinExec(c.commandLine, SW_HIDE);
        EXPECT_EQ(result > 31, c.starts);
        if (c.starts) {
            EXPECT_EQ(started, std::vector<std::string>{c.commandLine});
            EXPECT_EQ(WaitForSingleObject(done, 0), DWORD{WAIT_OBJECT_0});
        } else {
            EXPECT_EQ(result, c.error);
        }
    }
    CloseHandle(done);
}

}  // namespace
}  // namespace host
