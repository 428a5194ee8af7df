#include <thread>

#include "platform/kernel/objects.h"
#include "platform/kernel/store.h"
#include "tests/platform/kernel_fixture.h"

namespace host {
namespace {

// A folder for kept machines, gone with the test.
class KeptMachineTest : public testing::Test {
  protected:
    KeptMachineTest() {
        std::string name = (std::filesystem::temp_directory_path() / "velmora-kept-XXXXXX").string();
        folder_ = mkdtemp(name.data());
    }
    ~KeptMachineTest() override { std::filesystem::remove_all(folder_); }

    std::filesystem::path folder_;
};

TEST_F(KeptMachineTest, KeepsSettingsRegistryAndFiles) {
    {
        Machine machine(folder_ / "deep/machine");
        machine.SetLanguage(0x0411);
        machine.SetMetric(false);
        machine.SetDecimalSeparator(u",");
        machine.SetAnsiCodePage(932);
        machine.SetComputerName(u"\u00C4-PC");
        machine.SetSystemVersion(4, 0);
        machine.SetTickCount(5);
        machine.SetVariable(u"VARIABLE", u"value");
        SetEnvironmentVariableW(u"PASSING", u"value");
        HKEY key = nullptr;
        ASSERT_EQ(
            RegCreateKeyExW(HKEY_LOCAL_MACHINE, u"Software\\K", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
            ERROR_SUCCESS);
        const BYTE data[] = {0, 1, 0xFF};
        EXPECT_EQ(RegSetValueExW(key, u"Value", 0, REG_BINARY, data, sizeof(data)), ERROR_SUCCESS);
        RegCloseKey(key);
        EXPECT_TRUE(WritePrivateProfileStringW(u"s", u"k", u"v", u"C:\\kept.ini"));
        // The key stays open: what was stored doesn't wait for anything to be closed.
        ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, u"Software\\K", 0, KEY_ALL_ACCESS, &key), ERROR_SUCCESS);
    }
    EXPECT_EQ(StillOpen(), std::vector<std::string>());
    Machine machine(folder_ / "deep/machine");
    EXPECT_EQ(machine.Language(), 0x0411);
    EXPECT_FALSE(machine.IsMetric());
    EXPECT_EQ(GetACP(), 932u);
    EXPECT_EQ(GetTickCount(), 5u);
    EXPECT_EQ(GetVersion() & 0xFFFF, 4u);
    WCHAR text[32];
    DWORD size = 32;
    EXPECT_TRUE(GetComputerNameW(text, &size));
    EXPECT_EQ(std::u16string(text), u"\u00C4-PC");
    GetProfileStringW(u"intl", u"sDecimal", u"", text, 32);
    EXPECT_EQ(std::u16string(text), u",");
    EXPECT_EQ(GetEnvironmentVariableW(u"VARIABLE", text, 32), 5u);
    EXPECT_EQ(GetEnvironmentVariableW(u"PASSING", text, 32), 0u);
    EXPECT_EQ(GetPrivateProfileStringW(u"s", u"k", u"", text, 32, u"C:\\KEPT.ini"), 1u);
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, u"software\\k", 0, KEY_READ, &key), ERROR_SUCCESS);
    BYTE data[3];
    size = sizeof(data);
    EXPECT_EQ(RegQueryValueExW(key, u"value", nullptr, nullptr, data, &size), ERROR_SUCCESS);
    EXPECT_EQ(data[2], 0xFF);
    RegCloseKey(key);
}

TEST_F(KeptMachineTest, BrokenStoreIsNamedAndLeftAlone) {
    { Machine machine(folder_); }
    const std::filesystem::path store = folder_ / "machine.json";
    ASSERT_TRUE(std::filesystem::exists(store));
    for (const char* text : {"{", "{\"settings\": {\"language\": \"x\"}}", "{\"registry\": 5}", ""}) {
        std::ofstream(store) << text;
        try {
            Machine machine(folder_);
            ADD_FAILURE() << text;
        } catch (const std::runtime_error& error) {
            EXPECT_NE(std::string(error.what()).find(store.string()), std::string::npos);
        }
        std::ifstream in(store);
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), text);
    }
    std::filesystem::remove(store);
    Machine machine(folder_);
    EXPECT_EQ(GetACP(), 1252u);
}

TEST_F(KeptMachineTest, StoreThatCannotBeWrittenFailsTheCall) {
    Machine machine(folder_);
    std::filesystem::create_directory(folder_ / "machine.json.new");  // in the way of the new store
    HKEY key = nullptr;
    EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, u"Software\\K", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
              ERROR_WRITE_FAULT);
    EXPECT_EQ(key, nullptr);
    EXPECT_THROW(machine.SetMetric(false), std::runtime_error);
}

TEST(MachineTest, OneAtATimeAndNothingStays) {
    std::filesystem::path drive;
    {
        Machine machine;
        drive = machine.Drive();
        EXPECT_TRUE(std::filesystem::is_directory(drive / "Windows/System32"));
        EXPECT_THROW(Machine(), std::logic_error);
        machine.SetLanguage(0x0407);
        machine.SetWaitsElapseAtOnce(true);
        machine.SetProgram(u"x.exe", [](const std::string&) {});
        FailCall("ReadFile", 1);
        FailAllocation(1);
        EXPECT_NE(CreateFileW(u"C:\\f", GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr), INVALID_HANDLE_VALUE);
        EXPECT_NE(CreateSemaphoreW(nullptr, 1, 1, u"s"), nullptr);
        NoteOpened(Resource::kComReference, &drive, 0);
        NoteOpened(Resource::kBstr, &machine, 10);
        EXPECT_EQ(StillOpen(),
                  (std::vector<std::string>{"COM reference", "BSTR of 10 bytes", "file C:\\f", "semaphore s"}));
        EXPECT_TRUE(NoteClosed(Resource::kBstr, &machine));
        EXPECT_FALSE(NoteClosed(Resource::kBstr, &machine));
    }
    EXPECT_FALSE(std::filesystem::exists(drive));
    EXPECT_EQ(StillOpen(), std::vector<std::string>());
    EXPECT_EQ(CreateFileW(u"C:\\f", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr), INVALID_HANDLE_VALUE);
    Machine machine;
    EXPECT_EQ(GetUserDefaultLangID(), 0x0409);
    EXPECT_EQ(WinExec("x.exe", 0), UINT{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(CallsSoFar("ReadFile"), 0u);
    EXPECT_EQ(OpenSemaphoreW(SYNCHRONIZE, FALSE, u"s"), nullptr);
    void* block = HeapAlloc(GetProcessHeap(), 0, 1);
    EXPECT_NE(block, nullptr);
    HeapFree(GetProcessHeap(), 0, block);
}

// All calls may come from several threads.
TEST_F(KernelTest, ThreadsWorkSideBySide) {
    Put("t/shared.txt", std::string(1000, 'x'));
    std::vector<std::thread> threads;
    for (char16_t t = u'a'; t < u'e'; ++t) {
        threads.emplace_back([t] {
            const std::u16string own = std::u16string(u"C:\\T\\") + t + u".ini";
            for (int round = 0; round < 50; ++round) {
                const HANDLE file = CreateFileW(u"C:\\T\\SHARED.TXT", GENERIC_READ, FILE_SHARE_READ, nullptr,
                                                OPEN_EXISTING, 0, nullptr);
                char buffer[1000];
                DWORD count = 0;
                ASSERT_TRUE(ReadFile(file, buffer, sizeof(buffer), &count, nullptr));
                ASSERT_EQ(count, 1000u);
                ASSERT_TRUE(CloseHandle(file));
                ASSERT_TRUE(WritePrivateProfileStringW(u"s", u"k", round % 2 == 0 ? u"1" : u"2", own.c_str()));
                ASSERT_EQ(GetPrivateProfileIntW(u"s", u"k", 0, own.c_str()), round % 2 == 0 ? 1u : 2u);
                HKEY key = nullptr;
                ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, own.c_str() + 3, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                          &key, nullptr),
                          ERROR_SUCCESS);
                ASSERT_EQ(RegCloseKey(key), ERROR_SUCCESS);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

}  // namespace
}  // namespace host
