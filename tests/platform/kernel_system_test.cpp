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
    EXPECT_EQ(GetEnvironmentVariableW(u"e", buffer, 3), 4u);
    EXPECT_EQ(buffer[0], u'#');
    EXPECT_EQ(GetEnvironmentVariableW(u"e", buffer, 4), 3u);
    const auto get = [&buffer] { EXPECT_EQ(GetEnvironmentVariableW(u"E", buffer, 64), 0u); };
    EXPECT_TRUE(SetEnvironmentVariableW(u"E", u""));
    EXPECT_EQ(ErrorOf(get), kNoError);
    EXPECT_EQ(buffer[0], 0);
    EXPECT_TRUE(SetEnvironmentVariableW(u"E", nullptr));
    EXPECT_EQ(ErrorOf(get), ERROR_ENVVAR_NOT_FOUND);
    for (const char16_t* name : {u"", u"a=b", static_cast<const char16_t*>(nullptr)}) {
        EXPECT_EQ(FailureOf([&] { return SetEnvironmentVariableW(name, u"v"); }), ERROR_INVALID_PARAMETER);
    }
}

TEST_F(SystemTest, Identity) {
    WCHAR buffer[32] = {u'#'};
    DWORD size = 10;
    EXPECT_EQ(FailureOf([&] { return GetComputerNameW(buffer, &size); }), ERROR_BUFFER_OVERFLOW);
    EXPECT_EQ(size, 11u);
    EXPECT_EQ(buffer[0], u'#');
    EXPECT_TRUE(GetComputerNameW(buffer, &size));
    EXPECT_EQ(size, 10u);
    EXPECT_EQ(std::u16string(buffer), u"VELMORA-PC");

    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof(version);
    for (const DWORD major : {10u, 5u}) {
        machine_->SetSystemVersion(major, major / 5);
        EXPECT_TRUE(GetVersionExW(&version));
        EXPECT_EQ(version.dwMajorVersion, major);
        EXPECT_EQ(version.dwMinorVersion, major / 5);
        EXPECT_EQ(version.dwPlatformId, DWORD{VER_PLATFORM_WIN32_NT});
    }
    version.dwOSVersionInfoSize = 4;
    EXPECT_EQ(FailureOf([&] { return GetVersionExW(&version); }), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(GetTickCount(), 0x01000000u);
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
    constexpr char16_t kName[] = u"//pc/printer";
    HANDLE first = nullptr;
    HANDLE second = nullptr;
    EXPECT_EQ(ErrorOf([&] { first = CreateSemaphoreW(nullptr, 1, 1, kName); }), ERROR_SUCCESS);
    EXPECT_EQ(ErrorOf([&] { second = CreateSemaphoreW(nullptr, 0, 5, kName); }), ERROR_ALREADY_EXISTS);
    EXPECT_EQ(StillOpen(), (Lines{"semaphore //pc/printer", "semaphore //pc/printer"}));
    ExpectErrors({
        {"count over the most", [] { return CreateSemaphoreW(nullptr, 2, 1, nullptr); }, ERROR_INVALID_PARAMETER},
        {"nothing at most", [] { return CreateSemaphoreW(nullptr, 0, 0, nullptr); }, ERROR_INVALID_PARAMETER},
        {"a path", [] { return CreateSemaphoreW(nullptr, 1, 1, u"a\\b"); }, ERROR_PATH_NOT_FOUND},
        {"case counts", [] { return OpenSemaphoreW(SYNCHRONIZE, FALSE, u"//PC/printer"); }, ERROR_FILE_NOT_FOUND},
        {"new event", [&] { return CreateEventW(nullptr, FALSE, FALSE, kName); }, ERROR_INVALID_HANDLE},
        {"event", [&] { return OpenEventW(EVENT_ALL_ACCESS, FALSE, kName); }, ERROR_INVALID_HANDLE},
    });
    EXPECT_EQ(WaitForSingleObject(second, 0), DWORD{WAIT_OBJECT_0});
    EXPECT_EQ(WaitForSingleObject(first, 0), DWORD{WAIT_TIMEOUT});
    CloseHandle(first);
    const HANDLE waiter = OpenSemaphoreW(SYNCHRONIZE, FALSE, kName);
    EXPECT_TRUE(CloseHandle(waiter) && CloseHandle(second));
    EXPECT_EQ(FailureOf([&] { return OpenSemaphoreW(SYNCHRONIZE, FALSE, kName); }), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(ErrorOf([&] { EXPECT_EQ(WaitForSingleObject(first, 0), WAIT_FAILED); }), ERROR_INVALID_HANDLE);
}

TEST_F(SystemTest, EventsResetByThemselvesOrByHand) {
    const HANDLE manual = CreateEventW(nullptr, TRUE, TRUE, nullptr);
    const HANDLE automatic = CreateEventW(nullptr, FALSE, FALSE, nullptr);  // no name: an event of its own
    EXPECT_EQ(WaitForSingleObject(manual, 0), DWORD{WAIT_OBJECT_0});
    EXPECT_EQ(WaitForSingleObject(manual, 0), DWORD{WAIT_OBJECT_0});
    EXPECT_TRUE(SetEvent(automatic) && SetEvent(automatic));
    EXPECT_EQ(WaitForSingleObject(automatic, 0), DWORD{WAIT_OBJECT_0});
    EXPECT_EQ(WaitForSingleObject(automatic, 0), DWORD{WAIT_TIMEOUT});
    // Another thread ends a wait.
    std::thread other([&] { SetEvent(automatic); });
    EXPECT_EQ(WaitForSingleObject(automatic, INFINITE), DWORD{WAIT_OBJECT_0});
    other.join();
    // A wait that can only run out takes the machine's time, not the test's.
    machine_->SetWaitsElapseAtOnce(true);
    const DWORD before = GetTickCount();
    EXPECT_EQ(WaitForSingleObject(automatic, 10000), DWORD{WAIT_TIMEOUT});
    EXPECT_EQ(GetTickCount(), before + 10000);
    EXPECT_TRUE(CloseHandle(manual) && CloseHandle(automatic));
}

TEST_F(SystemTest, ProgramsAreStartedByTheirFileName) {
    std::string started;
    machine_->SetProgram(u"Tool.EXE", [&](const std::string& commandLine) {
        started = commandLine;
        // A program makes calls of its own, and signals whoever waits for it.
        const HANDLE event = OpenEventW(EVENT_MODIFY_STATE, FALSE, u"done");
        EXPECT_TRUE(SetEvent(event) && CloseHandle(event));
    });
    const HANDLE done = CreateEventW(nullptr, FALSE, FALSE, u"done");
    Put("t/text.exe", "no program");
    const std::pair<const char*, UINT> cases[] = {
        {"TOOL a b", ERROR_SUCCESS},
        {"\"C:\\Some Folder\\tool.exe\" \"x y\"", ERROR_SUCCESS},
        {"C:\\Some Folder\\tool.exe x", ERROR_SUCCESS},
        {"other.exe", ERROR_FILE_NOT_FOUND},
        {"C:\\none\\other.exe", ERROR_PATH_NOT_FOUND},
        {"C:\\t\\text.exe", ERROR_BAD_FORMAT},
        {"", ERROR_FILE_NOT_FOUND},
    };
    for (const auto& [commandLine, error] : cases) {
        SCOPED_TRACE(commandLine);
        started.clear();
        const UINT result = WinExec(commandLine, SW_HIDE);
        EXPECT_EQ(result > 31 ? ERROR_SUCCESS : result, error);
        EXPECT_EQ(started, error == ERROR_SUCCESS ? commandLine : "");
        EXPECT_EQ(WaitForSingleObject(done, 0), error == ERROR_SUCCESS ? DWORD{WAIT_OBJECT_0} : DWORD{WAIT_TIMEOUT});
    }
    CloseHandle(done);
}

}  // namespace
}  // namespace host
