// A machine with a spooler for one test, as the host offers it: the platform layer's own on Linux, that of Wine on
// Windows. Tests reach it by the published calls; what those don't cover is here.
#pragma once

#include <windows.h>

#include <filesystem>
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

    // What GetVersionExW tells. False where the host's version is what it is.
    virtual bool SetSystemVersion(DWORD major, DWORD minor) = 0;

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
