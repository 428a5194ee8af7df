// The machine that Wine gives: one prefix for the whole run, so what a test may leave is cleared for the next.
#include <windows.h>

#include <stdexcept>
#include <system_error>

#include "driver/entry/driver_interface.h"
#include "tests/contract/environment.h"
#include "tests/contract/wine_stand_ins.h"

namespace contract {
namespace {

// The profiles of the machine's users.
const std::filesystem::path kProfiles = L"C:\\VelmoraUsers";

class WineEnvironment : public ContractEnvironment {
  public:
    WineEnvironment() {
        ForgetMachine();
        SetMetric(true);
        std::error_code ignored;
        std::filesystem::remove_all(kProfiles, ignored);
        const std::filesystem::path user = kProfiles / L"User";
        const std::filesystem::path settings = user / L"AppData";
        std::filesystem::create_directories(settings);
        SetEnvironmentVariableW(L"USERPROFILE", user.c_str());
        SetEnvironmentVariableW(L"APPDATA", settings.c_str());
        ProbeCalls(nullptr);
        PutStandIns(GetModuleHandleW(nullptr));
    }

    ~WineEnvironment() override {
        std::error_code ignored;
        std::filesystem::remove_all(kProfiles, ignored);
    }

    std::filesystem::path HostPath(const WideText& path) const override { return path; }

    void SetMetric(bool metric) override {
        if (!WriteProfileStringW(L"intl", L"iMeasure", metric ? L"0" : L"1") ||
            GetProfileIntW(L"intl", L"iMeasure", 2) != (metric ? 0u : 1u)) {
            throw std::runtime_error("the measurement system can't be set");
        }
    }

    bool SetSystemVersion(DWORD, DWORD) override { return false; }

    void PrepareDriver(HMODULE driver, HANDLE printer) override {
        ProbeCalls(printer);
        ForgetPrinter(printer);
        PutStandIns(driver);
        PutStandIns(GetModuleHandleW(nullptr));
        SendMissingEvent(driver, printer, PRINTER_EVENT_INITIALIZE);
    }

    void LeaveDriver(HMODULE driver, HANDLE printer) override {
        // The driver may leave the process in another folder; the spooler's would be its own.
        const std::filesystem::path folder = std::filesystem::current_path();
        SendMissingEvent(driver, printer, PRINTER_EVENT_DELETE);
        std::filesystem::current_path(folder);
    }
};

}  // namespace

std::unique_ptr<ContractEnvironment> MakeEnvironment() {
    return std::make_unique<WineEnvironment>();
}

}  // namespace contract
