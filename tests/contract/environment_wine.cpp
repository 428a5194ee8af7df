// The machine that Wine gives: one prefix for the whole run, so what a test may leave is cleared for the next.
#include <windows.h>

#include <algorithm>
#include <map>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "driver/entry/driver_interface.h"
#include "tests/contract/environment.h"
#include "tests/contract/wine_picture.h"
#include "tests/contract/wine_stand_ins.h"

namespace contract {
namespace {

// The profiles of the machine's users.
const std::filesystem::path kProfiles = L"C:\\VelmoraUsers";

// The program that runs shows its windows in loops of its own. A timer without a window is seen by each of them, and
// only when there is nothing else to do.
std::function<void()> user;

void CALLBACK OnIdle(HWND, UINT, UINT_PTR, DWORD) {
    if (user) {
        user();
    }
}

class WineEnvironment : public ContractEnvironment {
  public:
    WineEnvironment() {
        ForgetMachine();
        SetProgramStarter([this](const std::string& command) { return StartProgram(command); });
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
        SetUser(nullptr);
        SetProgramStarter(nullptr);
        for (const auto& [root, key] : keys_) {
            RegDeleteTreeW(root, key.c_str());
        }
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

    void SetSystemVersion(DWORD, DWORD) override {}

    void SetLanguage(LANGID language) override {
        constexpr UINT kJapanese = 932;
        SetUserLanguage(language);
        SetUserCodePage(PRIMARYLANGID(language) == LANG_JAPANESE ? kJapanese : CP_ACP);
    }

    void SetRegistryText(HKEY root, const WideText& key, const WideText& text) override {
        keys_.emplace_back(root, key);
        if (RegSetKeyValueW(root, key.c_str(), nullptr, REG_SZ, text.c_str(),
                            static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))) != ERROR_SUCCESS) {
            throw std::runtime_error("a registry value can't be set");
        }
    }

    void AddProgram(const WideText& fileName, Program run) override {
        SetWaitsElapseAtOnce(true);
        programs_[std::string(fileName.begin(), fileName.end())] = {ProgramStart::kPretended, std::move(run)};
    }

    void AddWatermarkProgram() override {
        SetWaitsElapseAtOnce(false);
        programs_["KV62WM.EXE"] = {ProgramStart::kReal, nullptr};
    }

    void SetUser(std::function<void()> newUser) override {
        if (timer_ != 0) {
            KillTimer(nullptr, timer_);
        }
        user = std::move(newUser);
        timer_ = user ? SetTimer(nullptr, 0, USER_TIMER_MINIMUM, OnIdle) : 0;
    }

    void SavePicture(HWND window, const std::filesystem::path& file) override { SaveWindowPicture(window, file); }

    Holdings CountHoldings() const override {
        DWORD handles = 0;
        GetProcessHandleCount(GetCurrentProcess(), &handles);
        Holdings holdings = {handles + GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS) +
                                 GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS),
                             0};
        HANDLE heaps[64];
        const DWORD count = std::min<DWORD>(GetProcessHeaps(ARRAYSIZE(heaps), heaps), ARRAYSIZE(heaps));
        for (DWORD i = 0; i < count; ++i) {
            PROCESS_HEAP_ENTRY entry = {};
            while (HeapWalk(heaps[i], &entry)) {
                holdings.heapBlocks += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0;
            }
        }
        return holdings;
    }

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

  private:
    ProgramStart StartProgram(const std::string& command) {
        for (const auto& [name, program] : programs_) {
            if (command.find(name) != std::string::npos) {
                if (program.second) {
                    program.second(command);
                }
                return program.first;
            }
        }
        return ProgramStart::kNone;
    }

    std::vector<std::pair<HKEY, std::wstring>> keys_;
    std::map<std::string, std::pair<ProgramStart, Program>> programs_;  // by file name
    UINT_PTR timer_ = 0;
};

}  // namespace

std::unique_ptr<ContractEnvironment> MakeEnvironment() {
    return std::make_unique<WineEnvironment>();
}

}  // namespace contract
