#include <thread>

#include "platform/kernel/objects.h"
#include "tests/platform/kernel_fixture.h"

namespace host {
namespace {

using KeptMachineTest = KeptTest;

HKEY CreateKey(HKEY root, const char16_t* path) {
    HKEY key = nullptr;
    RegCreateKeyExW(root, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
    return key;
}

TEST_F(KeptMachineTest, KeepsSettingsRegistryAndFiles) {
    machine_->SetLanguage(0x0411);
    machine_->SetMetric(false);
    machine_->SetDecimalSeparator(u",");
    machine_->SetAnsiCodePage(932);
    machine_->SetComputerName(u"\u00C4-PC");
    machine_->SetSystemVersion(4, 0);
    machine_->SetTickCount(5);
    machine_->SetVariable(u"VARIABLE", u"value");
    SetEnvironmentVariableW(u"PASSING", u"value");
    const BYTE data[] = {0, 1, 0xFF};
    // The key stays open: what was stored doesn't wait for anything to be closed.
    const HKEY stored = CreateKey(HKEY_LOCAL_MACHINE, u"Software\\K");
    EXPECT_EQ(RegSetValueExW(stored, u"Value", 0, REG_BINARY, data, sizeof(data)), ERROR_SUCCESS);
    EXPECT_TRUE(WritePrivateProfileStringW(u"s", u"k", u"v", u"C:\\kept.ini"));

    Start();
    EXPECT_EQ(machine_->Language(), 0x0411);
    EXPECT_FALSE(machine_->IsMetric());
    EXPECT_EQ(GetACP(), 932u);
    EXPECT_EQ(GetTickCount(), 5u);
    OSVERSIONINFOW version = {sizeof(version), 0, 0, 0, 0, {}};
    EXPECT_TRUE(GetVersionExW(&version));
    EXPECT_EQ(version.dwMajorVersion, 4u);
    WCHAR text[32];
    DWORD size = 32;
    EXPECT_TRUE(GetComputerNameW(text, &size));
    EXPECT_EQ(std::u16string(text), u"\u00C4-PC");
    GetProfileStringW(u"intl", u"sDecimal", u"", text, 32);
    EXPECT_EQ(std::u16string(text), u",");
    EXPECT_EQ(GetEnvironmentVariableW(u"VARIABLE", text, 32), 5u);
    EXPECT_EQ(GetEnvironmentVariableW(u"PASSING", text, 32), 0u);
    EXPECT_EQ(GetPrivateProfileStringW(u"s", u"k", u"", text, 32, u"C:\\KEPT.ini"), 1u);
    const HKEY key = CreateKey(HKEY_LOCAL_MACHINE, u"software\\k");
    BYTE read[3] = {};
    size = sizeof(read);
    EXPECT_EQ(RegQueryValueExW(key, u"value", nullptr, nullptr, read, &size), ERROR_SUCCESS);
    EXPECT_EQ(read[2], 0xFF);
    RegCloseKey(key);
}

TEST_F(KeptMachineTest, BrokenStoreIsNamedAndLeftAlone) {
    const std::filesystem::path store = folder_ / "machine.json";
    ASSERT_TRUE(std::filesystem::exists(store));
    for (const char* text : {"{", "{\"settings\": {\"language\": \"x\"}}", "{\"registry\": 5}", ""}) {
        ExpectRefused(store, text);
    }
}

TEST_F(KeptMachineTest, StoreThatCannotBeWrittenFailsTheCall) {
    std::filesystem::create_directory(folder_ / "machine.json.new");  // in the way of the new store
    EXPECT_EQ(CreateKey(HKEY_CURRENT_USER, u"Software\\K"), nullptr);
    EXPECT_THROW(machine_->SetMetric(false), std::runtime_error);
}

TEST(MachineTest, OneAtATimeAndNothingStays) {
    std::filesystem::path drive;
    {
        Machine machine;
        drive = machine.Drive();
        EXPECT_THROW(Machine(), std::logic_error);
        machine.SetLanguage(0x0407);
        machine.SetProgram(u"x.exe", [](const std::string&) {});
        FailCall("ReadFile", 1);
        FailAllocation(1);
        EXPECT_NE(CreateFileW(u"C:\\f", GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr), INVALID_HANDLE_VALUE);
        EXPECT_NE(CreateSemaphoreW(nullptr, 1, 1, u"s"), nullptr);
        NoteOpened(Resource::kComReference, &drive, 0);
        NoteOpened(Resource::kBstr, &machine, 10);
        EXPECT_EQ(StillOpen(), (Lines{"COM reference", "BSTR of 10 bytes", "file C:\\f", "semaphore s"}));
        EXPECT_TRUE(NoteClosed(Resource::kBstr, &machine));
        EXPECT_FALSE(NoteClosed(Resource::kBstr, &machine));
    }
    EXPECT_FALSE(std::filesystem::exists(drive));
    EXPECT_EQ(StillOpen(), Lines());
    Machine machine;
    EXPECT_EQ(GetUserDefaultLangID(), 0x0409);
    EXPECT_EQ(WinExec("x.exe", 0), UINT{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(CallsSoFar("ReadFile"), 0u);
    EXPECT_EQ(OpenSemaphoreW(SYNCHRONIZE, FALSE, u"s"), nullptr);
    EXPECT_TRUE(HeapFree(GetProcessHeap(), 0, HeapAlloc(GetProcessHeap(), 0, 1)));
}

// A fault asked for by a call's name happens once, at the call that was counted to.
TEST_F(KernelTest, CallsFailAsAsked) {
    const auto call = [] { return SetFileAttributesW(u"C:\\Windows", FILE_ATTRIBUTE_NORMAL); };
    FailCall("SetFileAttributesW", ERROR_DISK_FULL, 2);
    ExpectErrors({{"first", call}, {"second", call, ERROR_DISK_FULL}, {"third", call}});
    EXPECT_EQ(CallsSoFar("SetFileAttributesW"), 3u);
    FailCall("SetFileAttributesW", ERROR_DISK_FULL);
    ClearFaults();
    EXPECT_EQ(FailureOf(call), ERROR_SUCCESS);
}

// All calls may come from several threads.
TEST_F(KernelTest, ThreadsWorkSideBySide) {
    Put("t/shared.txt", std::string(1000, 'x'));
    std::vector<std::thread> threads;
    for (char16_t t = u'a'; t < u'e'; ++t) {
        threads.emplace_back([t] {
            const std::u16string own = std::u16string(u"C:\\T\\") + t + u".ini";
            for (UINT round = 0; round < 50; ++round) {
                const HANDLE file = CreateFileW(u"C:\\T\\SHARED.TXT", GENERIC_READ, FILE_SHARE_READ, nullptr,
                                                OPEN_EXISTING, 0, nullptr);
                void* const buffer = HeapAlloc(GetProcessHeap(), 0, 1000);
                DWORD count = 0;
                ASSERT_TRUE(ReadFile(file, buffer, 1000, &count, nullptr) && CloseHandle(file));
                ASSERT_TRUE(HeapFree(GetProcessHeap(), 0, buffer));
                ASSERT_EQ(count, 1000u);
                ASSERT_TRUE(WritePrivateProfileStringW(u"s", u"k", round % 2 == 0 ? u"0" : u"1", own.c_str()));
                ASSERT_EQ(GetPrivateProfileIntW(u"s", u"k", 7, own.c_str()), round % 2);
                ASSERT_EQ(RegCloseKey(CreateKey(HKEY_CURRENT_USER, own.c_str() + 3)), ERROR_SUCCESS);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

}  // namespace
}  // namespace host
