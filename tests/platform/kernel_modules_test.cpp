#include "tests/platform/kernel_fixture.h"

namespace host {
namespace {

class ModulesTest : public KernelTest {
  protected:
    ModulesTest() {
        std::filesystem::create_directories(TheMachine().Drive() / "t");
        std::filesystem::copy_file(VELMORA_PROBE_MODULE, TheMachine().Drive() / "t/Probe.dll");
        std::filesystem::copy_file(VELMORA_PROBE_RESOURCES, TheMachine().Drive() / "t/words.dll");
        Put("t/text.dll", "no module");
    }
    static bool WasDetached() { return GetEnvironmentVariableW(u"PROBE_DETACHED", nullptr, 0) != 0; }
};

TEST_F(ModulesTest, LibrariesAreLoadedOnceAndCounted) {
    const HMODULE module = LoadLibraryW(u"C:\\T\\PROBE");  // ".dll" is added
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(LoadLibraryW(u"C:\\t\\probe.dll"), module);
    EXPECT_EQ(GetModuleHandleW(u"probe"), module);
    EXPECT_EQ(GetModuleHandleW(u"c:\\t\\probe.DLL"), module);
    EXPECT_EQ(StillOpen(), std::vector<std::string>{"module C:\\T\\PROBE.dll (2 times)"});
    const auto answer = reinterpret_cast<INT_PTR (*)()>(GetProcAddress(module, "ProbeAnswer"));
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer(), 42);
    for (const char* name : {"Nothing", "GetProcessHeap", "malloc", "_init"}) {  // not its own
        EXPECT_EQ(FailureOf([&] { return GetProcAddress(module, name) != nullptr; }), DWORD{ERROR_PROC_NOT_FOUND});
    }
    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_FALSE(WasDetached());
    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_TRUE(WasDetached());
    EXPECT_FALSE(FreeLibrary(module));
    EXPECT_EQ(GetModuleHandleW(u"probe"), nullptr);
}

TEST_F(ModulesTest, WhatIsNoModuleDoesNotLoad) {
    const struct {
        const char16_t* name;
        DWORD error;
    } cases[] = {
        {u"C:\\t\\none.dll", ERROR_MOD_NOT_FOUND}, {u"C:\\x\\probe.dll", ERROR_MOD_NOT_FOUND},
        {u"probe.dll", ERROR_MOD_NOT_FOUND},       {u"C:\\t\\text.dll", ERROR_BAD_EXE_FORMAT},
        {u"C:\\t", ERROR_MOD_NOT_FOUND},           {u"", ERROR_INVALID_PARAMETER},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(FailureOf([&] { return LoadLibraryW(c.name); }), c.error) << Shown(c.name);
    }
    SetEnvironmentVariableW(u"PROBE_REFUSES", u"1");
    EXPECT_EQ(FailureOf([] { return LoadLibraryW(u"C:\\t\\probe.dll"); }), DWORD{ERROR_DLL_INIT_FAILED});
    // By name alone from the current folder.
    SetEnvironmentVariableW(u"PROBE_REFUSES", nullptr);
    SetCurrentDirectoryW(u"C:\\t");
    const HMODULE module = LoadLibraryW(u"probe.dll");
    WCHAR buffer[20];
    EXPECT_EQ(GetModuleFileNameW(module, buffer, 20), 14u);
    EXPECT_EQ(std::u16string(buffer), u"C:\\t\\probe.dll");
    EXPECT_EQ(ErrorOf([&] { EXPECT_EQ(GetModuleFileNameW(module, buffer, 5), 5u); }), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(std::u16string(buffer), u"C:\\t");
    // As data it isn't run.
    const HMODULE data = LoadLibraryExW(u"probe.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE);
    EXPECT_NE(data, module);
    EXPECT_EQ(GetProcAddress(data, "ProbeAnswer"), nullptr);
    FreeLibrary(data);
    FreeLibrary(module);
}

TEST_F(ModulesTest, TheSystemsModulesHaveThePublishedCalls) {
    const HMODULE spooler = LoadLibraryW(u"WinSpool.drv");
    ASSERT_NE(spooler, nullptr);
    EXPECT_NE(GetProcAddress(spooler, "DevQueryPrint"), nullptr);
    EXPECT_EQ(GetProcAddress(spooler, "malloc"), nullptr);
    EXPECT_EQ(StillOpen().size(), 1u);
    EXPECT_TRUE(FreeLibrary(spooler));
    const HMODULE kernel = GetModuleHandleW(u"kernel32");
    ASSERT_NE(kernel, nullptr);
    EXPECT_EQ(reinterpret_cast<void*>(GetProcAddress(kernel, "GetTickCount")), reinterpret_cast<void*>(&GetTickCount));
    EXPECT_EQ(LoadLibraryW(u"C:\\Windows\\system32\\KERNEL32.DLL"), kernel);
    EXPECT_TRUE(FreeLibrary(kernel));
    EXPECT_EQ(GetModuleHandleW(u"kernel32"), kernel);
}

TEST_F(ModulesTest, TheMachinesEndUnloads) {
    ASSERT_NE(LoadLibraryW(u"C:\\t\\probe.dll"), nullptr);
    ASSERT_NE(LoadLibraryW(u"C:\\t\\words.dll"), nullptr);
    machine_.reset();
    EXPECT_EQ(StillOpen(), std::vector<std::string>());
    machine_.emplace();
    EXPECT_EQ(GetModuleHandleW(u"probe"), nullptr);
}

}  // namespace
}  // namespace host
