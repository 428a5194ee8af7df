#include "tests/platform/kernel_fixture.h"

namespace host {
namespace {

class ModulesTest : public KernelTest {
  protected:
    ModulesTest() {
        Put("t/text.dll", "no module");
        std::filesystem::copy_file(VELMORA_PROBE_MODULE, machine_->Drive() / "t/Probe.dll");
        std::filesystem::copy_file(VELMORA_PROBE_RESOURCES, machine_->Drive() / "t/words.dll");
    }
    static bool WasDetached() { return GetEnvironmentVariableW(u"PROBE_DETACHED", nullptr, 0) != 0; }
};

TEST_F(ModulesTest, LibrariesAreLoadedOnceAndCounted) {
    const HMODULE module = LoadLibraryW(u"C:\\T\\PROBE");  // ".dll" is added
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(LoadLibraryW(u"C:\\t\\probe.dll"), module);
    EXPECT_EQ(GetModuleHandleW(u"probe"), module);
    EXPECT_EQ(GetModuleHandleW(u"c:\\t\\probe.DLL"), module);
    EXPECT_EQ(StillOpen(), Lines{"module C:\\T\\PROBE.dll (2 times)"});
    const auto answer = reinterpret_cast<INT_PTR (*)()>(GetProcAddress(module, "ProbeAnswer"));
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer(), 42);
    for (const char* name : {"Nothing", "GetProcessHeap", "malloc"}) {  // not its own
        EXPECT_EQ(FailureOf([&] { return GetProcAddress(module, name); }), ERROR_PROC_NOT_FOUND) << name;
    }
    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_FALSE(WasDetached());
    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_TRUE(WasDetached());
    EXPECT_FALSE(FreeLibrary(module));
    EXPECT_EQ(GetModuleHandleW(u"probe"), nullptr);
}

TEST_F(ModulesTest, WhatIsNoModuleDoesNotLoad) {
    ExpectErrors({
        {"missing", [] { return LoadLibraryW(u"C:\\t\\none.dll"); }, ERROR_MOD_NOT_FOUND},
        {"in another folder", [] { return LoadLibraryW(u"probe.dll"); }, ERROR_MOD_NOT_FOUND},
        {"a text", [] { return LoadLibraryW(u"C:\\t\\text.dll"); }, ERROR_BAD_EXE_FORMAT},
        {"no name", [] { return LoadLibraryW(u""); }, ERROR_INVALID_PARAMETER},
        {"ask to refuse", [] { return SetEnvironmentVariableW(u"PROBE_REFUSES", u"1"); }},
        {"refused", [] { return LoadLibraryW(u"C:\\t\\probe.dll"); }, ERROR_DLL_INIT_FAILED},
        {"no more", [] { return SetEnvironmentVariableW(u"PROBE_REFUSES", nullptr); }},
    });
    // By name alone from the current folder.
    SetCurrentDirectoryW(u"C:\\t");
    const HMODULE module = LoadLibraryW(u"probe.dll");
    // By the ANSI name, and its exports by number.
    EXPECT_EQ(LoadLibraryA("Probe.dll"), module);
    const auto numbered = reinterpret_cast<INT_PTR (*)()>(GetProcAddress(module, reinterpret_cast<LPCSTR>(15)));
    ASSERT_NE(numbered, nullptr);
    EXPECT_EQ(numbered(), 15);
    EXPECT_EQ(FailureOf([&] { return GetProcAddress(module, reinterpret_cast<LPCSTR>(16)); }), ERROR_PROC_NOT_FOUND);
    EXPECT_TRUE(FreeLibrary(module) && FreeLibrary(module));
}

TEST_F(ModulesTest, TheSystemsModulesHaveThePublishedCalls) {
    const HMODULE spooler = LoadLibraryW(u"WinSpool.drv");
    EXPECT_NE(GetProcAddress(spooler, "DevQueryPrint"), nullptr);
    EXPECT_EQ(GetProcAddress(spooler, "malloc"), nullptr);
    EXPECT_EQ(StillOpen().size(), 1u);
    EXPECT_TRUE(FreeLibrary(spooler));
    const HMODULE kernel = LoadLibraryW(u"C:\\Windows\\system32\\KERNEL32.DLL");
    EXPECT_EQ(reinterpret_cast<void*>(GetProcAddress(kernel, "GetTickCount")), reinterpret_cast<void*>(&GetTickCount));
    EXPECT_TRUE(FreeLibrary(kernel));
    EXPECT_EQ(GetModuleHandleW(u"kernel32"), kernel);
}

TEST_F(ModulesTest, TheMachinesEndUnloads) {
    ASSERT_TRUE(LoadLibraryW(u"C:\\t\\probe.dll") && LoadLibraryW(u"C:\\t\\words.dll"));
    machine_.reset();
    EXPECT_EQ(StillOpen(), Lines());
    machine_.emplace();
    EXPECT_EQ(GetModuleHandleW(u"probe"), nullptr);
}

}  // namespace
}  // namespace host
