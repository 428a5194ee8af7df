// The machine that Wine gives: one prefix for the whole run, so what a test may leave is cleared for the next.
#include <windows.h>

#include <stdexcept>
#include <system_error>

#include "tests/contract/environment.h"
#include "tests/contract/wine_stand_ins.h"

namespace contract {
namespace {

constexpr wchar_t kUserFolder[] = L"C:\\VelmoraUser";

class WineEnvironment : public ContractEnvironment {
  public:
    WineEnvironment() {
        ForgetMachine();
        SetMetric(true);
        std::error_code ignored;
        std::filesystem::remove_all(kUserFolder, ignored);
        std::filesystem::create_directories(kUserFolder);
        SetEnvironmentVariableW(L"APPDATA", kUserFolder);
    }

    ~WineEnvironment() override {
        std::error_code ignored;
        std::filesystem::remove_all(kUserFolder, ignored);
    }

    std::filesystem::path HostPath(const WideText& path) const override { return path; }

    void SetMetric(bool metric) override {
        if (!WriteProfileStringW(L"intl", L"iMeasure", metric ? L"0" : L"1") ||
            GetProfileIntW(L"intl", L"iMeasure", 2) != (metric ? 0u : 1u)) {
            throw std::runtime_error("the measurement system can't be set");
        }
    }

    void PrepareDriver(HMODULE driver, HANDLE printer) override {
        ProbeCalls(printer);
        ForgetPrinter(printer);
        PutStandIns(driver);
        PutStandIns(GetModuleHandleW(nullptr));
    }
};

}  // namespace

std::unique_ptr<ContractEnvironment> MakeEnvironment() {
    return std::make_unique<WineEnvironment>();
}

}  // namespace contract
