// The panel (platform/host.h) over Wine's machine: what Wine can be set to. Whoever calls the rest isn't linked.
#include <windows.h>
#include <winspool.h>

#include <filesystem>
#include <stdexcept>
#include <vector>

#include "platform/host.h"
#include "tests/contract/environment.h"
#include "tests/contract/wine_stand_ins.h"
#include "tests/driver/package.h"

namespace host {
namespace {

const std::filesystem::path kProfile = L"C:\\Users\\User";

void SetInternational(const WCHAR* key, const WCHAR* text) {
    if (!WriteProfileStringW(L"intl", key, text)) {
        throw std::runtime_error("an international setting can't be written");
    }
}

// Takes away the printers of the tests' drivers, the drivers and their files.
void RemovePrinters() {
    DWORD needed = 0;
    DWORD count = 0;
    EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, nullptr, 0, &needed, &count);
    std::vector<BYTE> block(needed);
    if (!EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, block.data(), needed, &needed, &count)) {
        throw std::runtime_error("printers can't be listed");
    }
    constexpr driver_test::WideView kMaker = TEXT("Velmora ");
    bool isInstalled = false;
    const auto* printers = reinterpret_cast<const PRINTER_INFO_2W*>(block.data());
    for (DWORD i = 0; i < count; ++i) {
        HANDLE printer = nullptr;
        PRINTER_DEFAULTSW access = {nullptr, nullptr, PRINTER_ALL_ACCESS};
        if (driver_test::WideView(printers[i].pDriverName).starts_with(kMaker) &&
            OpenPrinterW(printers[i].pPrinterName, &printer, &access)) {
            DeletePrinter(printer);
            ClosePrinter(printer);
            DeletePrinterDriverExW(nullptr, nullptr, printers[i].pDriverName, 0, 0);
            isInstalled = true;
        }
    }
    if (isInstalled) {
        std::error_code ignored;
        std::filesystem::remove_all(driver_test::InstalledPath(L""), ignored);
    }
}

// What the panel sets besides is done by functions that take the place of the program's imports, for its life.
bool mayWritePrinterData;
DWORD tickCount;
uint64_t allocations;
uint64_t failedAllocation;

// The import itself leads to the stand-in.
template <class Function>
Function* Genuine(const WCHAR* library, const char* name) {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(library), name)));
}

LPVOID WINAPI StandInHeapAlloc(HANDLE heap, DWORD flags, SIZE_T size) {
    static const auto genuine = Genuine<decltype(HeapAlloc)>(L"kernel32.dll", "HeapAlloc");
    return ++allocations == failedAllocation ? nullptr : genuine(heap, flags, size);
}

DWORD WINAPI StandInGetTickCount() {
    return tickCount;
}

DWORD WINAPI StandInSetPrinterData(HANDLE printer, LPWSTR name, DWORD type, LPBYTE data, DWORD size) {
    static const auto genuine = Genuine<decltype(SetPrinterDataW)>(L"winspool.drv", "SetPrinterDataW");
    return mayWritePrinterData ? genuine(printer, name, type, data, size) : ERROR_ACCESS_DENIED;
}

void PutPanelStandIns() {
    const HMODULE program = GetModuleHandleW(nullptr);
    contract::ReplaceImport(program, "HeapAlloc", reinterpret_cast<void*>(&StandInHeapAlloc));
    contract::ReplaceImport(program, "GetTickCount", reinterpret_cast<void*>(&StandInGetTickCount));
    contract::ReplaceImport(program, "SetPrinterDataW", reinterpret_cast<void*>(&StandInSetPrinterData));
}

}  // namespace

struct Machine::Parts {
    std::unique_ptr<contract::ContractEnvironment> environment = contract::MakeEnvironment();
};

Machine::Machine() : parts_(std::make_unique<Parts>()) {
    SetDecimalSeparator(L".");
    // Where a fresh machine has them.
    std::filesystem::remove_all(kProfile);
    std::filesystem::create_directories(kProfile / L"AppData" / L"Roaming");
    SetVariable(L"USERPROFILE", kProfile.c_str());
    SetVariable(L"APPDATA", (kProfile / L"AppData" / L"Roaming").c_str());
    SetMayWritePrinterData(true);
    SetTickCount(0x01000000);
    ClearFaults();
    PutPanelStandIns();
}

Machine::~Machine() {
    RemovePrinters();
}

void Machine::SetLanguage(LANGID language) {
    contract::SetUserLanguage(language);
}

void Machine::SetMetric(bool metric) {
    parts_->environment->SetMetric(metric);
}

void Machine::SetDecimalSeparator(std::basic_string_view<WCHAR> text) {
    SetInternational(L"sDecimal", driver_test::WideText(text).c_str());
}

void Machine::SetAnsiCodePage(UINT codePage) {
    contract::SetUserCodePage(codePage);
}

void Machine::SetVariable(std::basic_string_view<WCHAR> name, std::basic_string_view<WCHAR> value) {
    SetEnvironmentVariableW(driver_test::WideText(name).c_str(),
                            value.empty() ? nullptr : driver_test::WideText(value).c_str());
}

void Machine::SetTickCount(DWORD milliseconds) {
    tickCount = milliseconds;
}

void Machine::SetMayWritePrinterData(bool may) {
    mayWritePrinterData = may;
}

void FailAllocation(uint64_t nth) {
    allocations = 0;
    failedAllocation = nth;
}

uint64_t AllocationsSoFar() {
    return allocations;
}

void ClearFaults() {
    FailAllocation(0);
}

}  // namespace host
