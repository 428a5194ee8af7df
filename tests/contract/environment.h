// A machine with a spooler for one test, as the host offers it: the platform layer's own on Linux, that of Wine on
// Windows. Tests reach it by the published calls; what those don't cover is here.
#pragma once

#include <windows.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace contract {

using WideText = std::basic_string<WCHAR>;

class ContractEnvironment {
  public:
    virtual ~ContractEnvironment() = default;

    // Where a file of the machine, such as C:\x\y.txt, lies for the C++ library.
    virtual std::filesystem::path HostPath(const WideText& path) const = 0;

    // Section "intl", key "iMeasure" of the user's settings.
    virtual void SetMetric(bool metric) = 0;

    // What GetVersionExW tells, where the host's version isn't what it is.
    virtual void SetSystemVersion(DWORD major, DWORD minor) = 0;

    // What GetUserDefaultLangID tells the driver, and the ANSI code page of that language. A fresh machine is English
    // (0x0409).
    virtual void SetLanguage(LANGID language) = 0;

    // Makes a text the default value (REG_SZ) of a registry key, which is made where it isn't there.
    virtual void SetRegistryText(HKEY root, const WideText& key, const WideText& text) = 0;

    // A program that the driver can start by WinExec, by its file name (no folder). Nothing really runs: `run` (null:
    // nothing) is called with the command line in its place, before WinExec returns. Nothing else is done by then, so
    // waits of the driver that would run out do so at once.
    using Program = std::function<void(const std::string& commandLine)>;
    virtual void AddProgram(const WideText& fileName, Program run = nullptr) = 0;
    // The driver package's program for watermarks, KV62WM.EXE: the driver can start it from now on, and it really runs.
    virtual void AddWatermarkProgram() = 0;

    // `user` is called each time that this thread waits for input in a message loop, also in one that `user` itself has
    // run. It may send messages and input. Null: nobody is there.
    virtual void SetUser(std::function<void()> user) = 0;

    // Writes a window as it looks, with all that is in it, as a PNG file. Throws std::runtime_error where that fails.
    virtual void SavePicture(HWND window, const std::filesystem::path& file) = 0;

    // What this process has from the machine: handles and other objects, and blocks of its heaps, which may have some
    // more or less each time that they are counted.
    struct Holdings {
        size_t objects;
        size_t heapBlocks;
    };
    virtual Holdings CountHoldings() const = 0;

    // Called once a printer's driver is loaded and before a test calls it; where the host's published calls fall short,
    // this mends them for the driver and for the test program, and tells the driver of its new printer where the
    // spooler didn't. `printer` is that printer, open for administering.
    virtual void PrepareDriver(HMODULE driver, HANDLE printer) = 0;

    // Called before a printer that was prepared is deleted: tells the driver where the spooler won't.
    virtual void LeaveDriver(HMODULE driver, HANDLE printer) = 0;
};

// The host's machine, fresh: no printer of another test, metric, and empty APPDATA and USERPROFILE folders. At most one
// at a time.
std::unique_ptr<ContractEnvironment> MakeEnvironment();

}  // namespace contract
