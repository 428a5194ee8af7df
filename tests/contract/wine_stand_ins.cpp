#include "tests/contract/wine_stand_ins.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "driver/devmode/private_devmode.h"
#include "driver/entry/driver_interface.h"
#include "driver/ptprovider/dom_classes.h"
#include "tests/contract/dom_document.h"
#include "tests/contract/sheet_host.h"
#include "tests/contract/wine_namespace_manager.h"

namespace contract {
namespace {

// Null where the module hasn't the export.
template <class Function>
Function ExportOf(HMODULE module, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

// The test program's own imports are replaced too, so what a stand-in builds on is asked of the library itself.
template <class Function>
Function Genuine(const char* name, const wchar_t* library = L"winspool.drv") {
    return ExportOf<Function>(GetModuleHandleW(library), name);
}
#define GENUINE(call) Genuine<decltype(&(call))>(#call)
#define GENUINE_OF(call, library) Genuine<decltype(&(call))>(#call, library)

// PRINTER_INFO_2W of the printer as Wine has it; empty on failure, with the last error set.
std::vector<BYTE> GenuinePrinterInfo(HANDLE printer) {
    const auto getPrinter = GENUINE(GetPrinterW);
    DWORD needed = 0;
    getPrinter(printer, 2, nullptr, 0, &needed);
    std::vector<BYTE> block(needed);
    if (needed == 0 || !getPrinter(printer, 2, block.data(), needed, &needed)) {
        return {};
    }
    return block;
}

std::wstring PrinterName(HANDLE printer) {
    const std::vector<BYTE> block = GenuinePrinterInfo(printer);
    return block.empty() ? std::wstring() : reinterpret_cast<const PRINTER_INFO_2W*>(block.data())->pPrinterName;
}

// What Wine raises where a function is exported but not written (winternl.h there).
constexpr DWORD kUnwrittenFunction = 0x80000100;

DWORD probeThread = 0;

LONG CALLBACK EndProbeThread(EXCEPTION_POINTERS* exception) {
    if (exception->ExceptionRecord->ExceptionCode == kUnwrittenFunction && GetCurrentThreadId() == probeThread) {
        ExitThread(1);
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

// Whether `use(function)` comes back: a function that isn't written would end the process, so it is called on a thread
// that ends in its place. False for null.
template <class Function, class Use>
bool CallReturns(Function function, [[maybe_unused]] Use use) {
    if (function == nullptr) {
        return false;
    }
    const auto body = [](void* parameter) -> DWORD { return Use()(*static_cast<Function*>(parameter)), 0; };
    void* const handler = AddVectoredExceptionHandler(1, EndProbeThread);
    const HANDLE thread = CreateThread(nullptr, 0, body, &function, CREATE_SUSPENDED, &probeThread);
    DWORD result = 1;
    if (thread != nullptr) {
        ResumeThread(thread);
        WaitForSingleObject(thread, INFINITE);
        GetExitCodeThread(thread, &result);
        CloseHandle(thread);
    }
    RemoveVectoredExceptionHandler(handler);
    return result == 0;
}

// --- Printer data: DeletePrinterDataW, EnumPrinterDataW

bool DeletesPrinterData(HANDLE) {
    return CallReturns(GENUINE(DeletePrinterDataW), [](auto call) {
        wchar_t name[] = L"Velmora probe";
        call(nullptr, name);
    });
}

// Printer data lies in the registry, as it does on Windows. A printer's key, to be closed; null, with the error in
// `*error`, where it can't be opened.
HKEY OpenPrinterData(HANDLE printer, REGSAM access, DWORD* error) {
    const std::wstring name = PrinterName(printer);
    const std::wstring path = L"System\\CurrentControlSet\\Control\\Print\\Printers\\" + name + L"\\PrinterDriverData";
    HKEY key = nullptr;
    *error = name.empty() ? ERROR_INVALID_HANDLE
                          : static_cast<DWORD>(RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, access, &key));
    return *error == ERROR_SUCCESS ? key : nullptr;
}

DWORD WINAPI StandInDeletePrinterData(HANDLE printer, LPWSTR valueName) {
    DWORD error = ERROR_SUCCESS;
    const HKEY key = OpenPrinterData(printer, KEY_SET_VALUE, &error);
    if (key != nullptr) {
        error = static_cast<DWORD>(RegDeleteValueW(key, valueName));
        RegCloseKey(key);
    }
    return error;
}

bool EnumeratesPrinterData(HANDLE printer) {
    wchar_t name[] = L"Velmora probe";
    DWORD number = 1;
    SetPrinterDataW(printer, name, REG_DWORD, reinterpret_cast<BYTE*>(&number), sizeof(number));
    DWORD nameSize = 0;
    DWORD size = 0;
    const DWORD error = GENUINE(EnumPrinterDataW)(printer, 0, nullptr, 0, &nameSize, nullptr, nullptr, 0, &size);
    StandInDeletePrinterData(printer, name);
    return error == ERROR_SUCCESS && nameSize >= sizeof(name);
}

DWORD WINAPI StandInEnumPrinterData(HANDLE printer, DWORD index, LPWSTR name, DWORD nameSize, LPDWORD neededName,
                                    LPDWORD type, LPBYTE data, DWORD size, LPDWORD needed) {
    DWORD error = ERROR_SUCCESS;
    const HKEY key = OpenPrinterData(printer, KEY_READ, &error);
    if (key == nullptr) {
        return error;
    }
    if (nameSize == 0 && size == 0) {
        DWORD longestName = 0;
        error = static_cast<DWORD>(RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                                    &longestName, needed, nullptr, nullptr));
        *neededName = (longestName + 1) * sizeof(wchar_t);
    } else {
        DWORD length = nameSize / sizeof(wchar_t);
        *needed = size;
        error = static_cast<DWORD>(RegEnumValueW(key, index, name, &length, nullptr, type, data, needed));
        *neededName = (length + 1) * sizeof(wchar_t);
    }
    RegCloseKey(key);
    return error;
}

// --- Forms: AddFormW, EnumFormsW, DeleteFormW

struct KeptForm {
    std::wstring name;
    FORM_INFO_1W info;  // pName isn't used
};

std::vector<KeptForm> keptForms;

std::vector<KeptForm>::iterator FindForm(const wchar_t* name) {
    return std::find_if(keptForms.begin(), keptForms.end(),
                        [name](const KeptForm& form) { return lstrcmpiW(form.name.c_str(), name) == 0; });
}

// FORM_INFO_1W records of the forms as Wine has them, `*count` of them; false on failure.
bool GenuineForms(HANDLE printer, std::vector<BYTE>* block, DWORD* count) {
    const auto enumForms = GENUINE(EnumFormsW);
    DWORD needed = 0;
    if (enumForms(printer, 1, nullptr, 0, &needed, count)) {
        block->clear();
        return true;
    }
    if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
        return false;
    }
    block->resize(needed);
    return enumForms(printer, 1, block->data(), needed, &needed, count) != FALSE;
}

bool HasForm(HANDLE printer, const wchar_t* name) {
    std::vector<BYTE> block;
    DWORD count = 0;
    if (!GenuineForms(printer, &block, &count)) {
        return false;
    }
    const auto* forms = reinterpret_cast<const FORM_INFO_1W*>(block.data());
    return std::any_of(forms, forms + count,
                       [name](const FORM_INFO_1W& form) { return lstrcmpiW(form.pName, name) == 0; });
}

bool KeepsForms(HANDLE printer) {
    wchar_t name[] = L"Velmora probe";
    FORM_INFO_1W form = {FORM_USER, name, {100000, 100000}, {0, 0, 100000, 100000}};
    GENUINE(AddFormW)(printer, 1, reinterpret_cast<BYTE*>(&form));
    const bool kept = HasForm(printer, name);
    GENUINE(DeleteFormW)(printer, name);
    return kept;
}

BOOL WINAPI StandInAddForm(HANDLE printer, DWORD level, LPBYTE form) {
    std::vector<BYTE> block;
    DWORD count = 0;
    if (level != 1) {
        SetLastError(ERROR_INVALID_LEVEL);
        return FALSE;
    }
    if (!GenuineForms(printer, &block, &count)) {
        return FALSE;
    }
    const auto* info = reinterpret_cast<const FORM_INFO_1W*>(form);
    if (info == nullptr || info->pName == nullptr || *info->pName == 0) {
        SetLastError(info == nullptr ? ERROR_INVALID_PARAMETER : ERROR_INVALID_FORM_NAME);
        return FALSE;
    }
    const RECTL& area = info->ImageableArea;
    if (info->Size.cx <= 0 || info->Size.cy <= 0 || area.left < 0 || area.top < 0 || area.left >= area.right ||
        area.top >= area.bottom || area.right > info->Size.cx || area.bottom > info->Size.cy) {
        SetLastError(ERROR_INVALID_FORM_SIZE);
        return FALSE;
    }
    if (FindForm(info->pName) != keptForms.end() || HasForm(printer, info->pName)) {
        SetLastError(ERROR_FILE_EXISTS);
        return FALSE;
    }
    keptForms.push_back({info->pName, *info});
    return TRUE;
}

BOOL WINAPI StandInDeleteForm(HANDLE printer, LPWSTR name) {
    std::vector<BYTE> block;
    DWORD count = 0;
    if (!GenuineForms(printer, &block, &count)) {
        return FALSE;
    }
    const auto form = name == nullptr ? keptForms.end() : FindForm(name);
    if (form == keptForms.end()) {
        SetLastError(ERROR_INVALID_FORM_NAME);
        return FALSE;
    }
    keptForms.erase(form);
    return TRUE;
}

BOOL WINAPI StandInEnumForms(HANDLE printer, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD returned) {
    std::vector<BYTE> block;
    DWORD count = 0;
    if (level != 1) {
        return GENUINE(EnumFormsW)(printer, level, buffer, size, needed, returned);
    }
    if (!GenuineForms(printer, &block, &count)) {
        return FALSE;
    }
    std::vector<KeptForm> forms;
    const auto* genuine = reinterpret_cast<const FORM_INFO_1W*>(block.data());
    for (DWORD i = 0; i < count; ++i) {
        forms.push_back({genuine[i].pName, genuine[i]});
    }
    forms.insert(forms.end(), keptForms.begin(), keptForms.end());

    size_t total = forms.size() * sizeof(FORM_INFO_1W);
    for (const KeptForm& form : forms) {
        total += (form.name.size() + 1) * sizeof(wchar_t);
    }
    if (needed == nullptr || returned == nullptr) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    *needed = static_cast<DWORD>(total);
    *returned = 0;
    if (size < total || buffer == nullptr) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    auto* record = reinterpret_cast<FORM_INFO_1W*>(buffer);
    auto* text = reinterpret_cast<wchar_t*>(record + forms.size());
    for (const KeptForm& form : forms) {
        *record = form.info;
        record->pName = text;
        memcpy(text, form.name.c_str(), (form.name.size() + 1) * sizeof(wchar_t));
        text += form.name.size() + 1;
        ++record;
    }
    *returned = static_cast<DWORD>(forms.size());
    return TRUE;
}

// --- The printer's device mode: GetPrinterW, SetPrinterW

std::map<std::wstring, std::vector<BYTE>> keptDevModes;  // by printer

std::vector<BYTE> DevModeBytes(const DEVMODEW* devMode) {
    const auto* bytes = reinterpret_cast<const BYTE*>(devMode);
    return std::vector<BYTE>(bytes, bytes + devMode->dmSize + devMode->dmDriverExtra);
}

bool KeepsDevModes(HANDLE printer) {
    std::vector<BYTE> before = GenuinePrinterInfo(printer);
    if (before.empty()) {
        throw std::runtime_error("GetPrinterW fails");
    }
    auto* info = reinterpret_cast<PRINTER_INFO_2W*>(before.data());
    DEVMODEW* const former = info->pDevMode;
    DEVMODEW probe = {};
    probe.dmSize = sizeof(probe);
    for (DWORD i = 1; i < CCHDEVICENAME; ++i) {
        probe.dmDeviceName[i] = static_cast<wchar_t>(i * 257);
    }
    const auto setPrinter = GENUINE(SetPrinterW);
    info->pDevMode = &probe;
    info->pSecurityDescriptor = nullptr;
    bool kept = setPrinter(printer, 2, before.data(), 0) != FALSE;
    std::vector<BYTE> after = GenuinePrinterInfo(printer);
    const DEVMODEW* stored = after.empty() ? nullptr : reinterpret_cast<PRINTER_INFO_2W*>(after.data())->pDevMode;
    kept = kept && stored != nullptr && memcmp(stored, &probe, sizeof(probe)) == 0;
    info->pDevMode = former;
    setPrinter(printer, 2, before.data(), 0);
    return kept;
}

BOOL WINAPI StandInSetPrinter(HANDLE printer, DWORD level, LPBYTE data, DWORD command) {
    if (!GENUINE(SetPrinterW)(printer, level, data, command)) {
        return FALSE;
    }
    if (level == 2 && data != nullptr) {
        const DEVMODEW* devMode = reinterpret_cast<const PRINTER_INFO_2W*>(data)->pDevMode;
        if (devMode != nullptr) {
            keptDevModes[PrinterName(printer)] = DevModeBytes(devMode);
        }
    }
    return TRUE;
}

void ClearBehindText(wchar_t* text, size_t capacity) {
    const size_t length = static_cast<size_t>(std::find(text, text + capacity, L'\0') - text);
    std::fill(text + length, text + capacity, L'\0');
}

BOOL WINAPI StandInGetPrinter(HANDLE printer, DWORD level, LPBYTE data, DWORD size, LPDWORD needed) {
    if (!GENUINE(GetPrinterW)(printer, level, data, size, needed)) {
        return FALSE;
    }
    if (level != 2) {
        return TRUE;
    }
    auto* info = reinterpret_cast<PRINTER_INFO_2W*>(data);
    DEVMODEW* devMode = info->pDevMode;
    if (devMode == nullptr) {
        return TRUE;
    }
    const auto kept = keptDevModes.find(info->pPrinterName);
    if (kept != keptDevModes.end() && kept->second.size() == DevModeBytes(devMode).size()) {
        memcpy(devMode, kept->second.data(), kept->second.size());
    } else {
        ClearBehindText(devMode->dmDeviceName, CCHDEVICENAME);
        ClearBehindText(devMode->dmFormName, CCHFORMNAME);
    }
    return TRUE;
}

// The printer's driver, loaded for as long as this lives; none, with the last error set, where it can't be loaded.
class LoadedDriver {
  public:
    explicit LoadedDriver(HANDLE printer) {
        const auto getDriver = GENUINE(GetPrinterDriverW);
        DWORD needed = 0;
        getDriver(printer, nullptr, 3, nullptr, 0, &needed);
        std::vector<BYTE> block(needed);
        if (needed != 0 && getDriver(printer, nullptr, 3, block.data(), needed, &needed)) {
            module_ = LoadLibraryW(reinterpret_cast<const DRIVER_INFO_3W*>(block.data())->pConfigFile);
        }
    }
    ~LoadedDriver() {
        if (module_ != nullptr) {
            FreeLibrary(module_);
        }
    }
    LoadedDriver(const LoadedDriver&) = delete;
    LoadedDriver& operator=(const LoadedDriver&) = delete;

    // Null where the driver has no such export, or there is none.
    template <class Function>
    Function Export(const char* name) const {
        return module_ != nullptr ? ExportOf<Function>(module_, name) : nullptr;
    }

  private:
    HMODULE module_ = nullptr;
};
#define DRIVER_EXPORT(driver, call) (driver).Export<decltype(&::call)>(#call)

// --- Document settings: DocumentPropertiesW

bool WritesDocumentProperties(HANDLE printer) {
    std::vector<BYTE> output(velmora::kDevModeSize);
    std::wstring name = PrinterName(printer);
    auto* devMode = reinterpret_cast<DEVMODEW*>(output.data());
    GENUINE(DocumentPropertiesW)(nullptr, printer, name.data(), devMode, nullptr, DM_OUT_BUFFER);
    return devMode->dmSize != 0;
}

// The caller's buffer is as large as the driver told it. Sheets are shown as Wine shows them.
LONG WINAPI StandInDocumentProperties(HWND owner, HANDLE printer, LPWSTR printerName, PDEVMODEW output, PDEVMODEW input,
                                      DWORD mode) {
    if ((mode & DM_PROMPT) != 0) {
        return GENUINE(DocumentPropertiesW)(owner, printer, printerName, output, input, mode);
    }
    const LoadedDriver driver(printer);
    const auto ask = DRIVER_EXPORT(driver, DrvDocumentPropertySheets);
    if (ask == nullptr) {
        return -1;
    }
    DOCUMENTPROPERTYHEADER header = {sizeof(header), 0, printer, printerName, nullptr, nullptr, 0, 0};
    const LONG result = ask(nullptr, reinterpret_cast<LPARAM>(&header));
    if (result <= 0 || mode == 0 || output == nullptr) {
        return result;
    }
    header.pdmIn = input;
    header.pdmOut = output;
    header.cbOut = static_cast<DWORD>(result);
    header.fMode = mode;
    return ask(nullptr, reinterpret_cast<LPARAM>(&header));
}

// --- Printer settings: PrinterProperties

// A call without a printer shows nothing.
bool ShowsPrinterProperties(HANDLE) {
    SetLastError(ERROR_SUCCESS);
    return CallReturns(GENUINE(PrinterProperties), [](auto call) { call(nullptr, nullptr); }) &&
           GENUINE(PrinterProperties)(nullptr, nullptr) == FALSE && GetLastError() == ERROR_INVALID_HANDLE;
}

// Whether the printer's settings were shown.
BOOL WINAPI StandInPrinterProperties(HWND owner, HANDLE printer) {
    const LoadedDriver driver(printer);
    const auto show = DRIVER_EXPORT(driver, DrvDevicePropertySheets);
    std::wstring name = PrinterName(printer);
    DEVICEPROPERTYHEADER header = {sizeof(header), 0, printer, name.data()};
    return show != nullptr && SheetHost(show, &header, owner).Run() >= 0 ? TRUE : FALSE;
}

// --- Jobs: DevQueryPrint

bool QueriesPrint(HANDLE) {
    return CallReturns(GENUINE(DevQueryPrint), [](auto call) {
        DWORD reason = 0;
        call(nullptr, nullptr, &reason);
    });
}

// The published DEVQUERYPRINT_INFO, which the cross compiler's headers lack.
struct QueryPrintInfo {
    WORD cbSize;
    WORD Level;
    HANDLE hPrinter;
    DEVMODEW* pDevMode;
    LPWSTR pszErrorStr;
    DWORD cchErrorStr;
    DWORD cchNeeded;
};

// Asks the driver's DevQueryPrintEx, as the spooler does.
BOOL WINAPI StandInDevQueryPrint(HANDLE printer, LPDEVMODEW devMode, DWORD* reason) {
    const LoadedDriver driver(printer);
    const auto ask = DRIVER_EXPORT(driver, DevQueryPrintEx);
    wchar_t text[256] = L"";
    QueryPrintInfo info = {sizeof(info), 1, printer, devMode, text, ARRAYSIZE(text), 0};
    const BOOL allowed = ask != nullptr && ask(reinterpret_cast<PDEVQUERYPRINT_INFO>(&info));
    if (allowed) {
        *reason = 0;
    }
    return allowed;
}

// --- Capabilities: DeviceCapabilitiesW

// Whether what the driver says of its printer comes back: that it is asked isn't enough, as it knows little where it is
// given no handle of the printer.
bool GivesCapabilities(HANDLE printer) {
    std::wstring name = PrinterName(printer);
    const LoadedDriver driver(printer);
    const auto ask = DRIVER_EXPORT(driver, DrvDeviceCapabilities);
    if (ask == nullptr) {
        throw std::runtime_error("the driver can't be asked for its capabilities");
    }
    const auto genuine = GENUINE(DeviceCapabilitiesW);
    const WORD indices[] = {DC_PAPERS, DC_MAXEXTENT, DC_BINS, DC_DRIVER, DC_ENUMRESOLUTIONS};
    return std::all_of(std::begin(indices), std::end(indices), [&](WORD index) {
        return genuine(name.c_str(), nullptr, index, nullptr, nullptr) ==
               static_cast<int>(ask(printer, name.data(), index, nullptr, nullptr));
    });
}

int WINAPI StandInDeviceCapabilities(LPCWSTR device, LPCWSTR, WORD capability, LPWSTR output, const DEVMODEW* devMode) {
    if (device == nullptr) {
        SetLastError(ERROR_INVALID_PRINTER_NAME);
        return -1;
    }
    std::wstring name = device;
    HANDLE printer = nullptr;
    if (!OpenPrinterW(name.data(), &printer, nullptr)) {
        return -1;
    }
    int answer = -1;
    const LoadedDriver driver(printer);
    if (const auto ask = DRIVER_EXPORT(driver, DrvDeviceCapabilities)) {
        answer = static_cast<int>(ask(printer, name.data(), capability, output, const_cast<DEVMODEW*>(devMode)));
    }
    ClosePrinter(printer);
    return answer;
}

// --- Namespaces of XML documents: CoCreateInstance of MXNamespaceManager60

// Asked once, before the program's own import leads to the stand-in.
bool PushesNodeContexts(HANDLE) {
    const ComOnThread com;
    const auto document = NewDocument();
    const auto element = NewNode(document.Get(), NODE_ELEMENT, L"probe", L"");
    return NewNamespaceManager()->pushNodeContext(element.Get(), VARIANT_TRUE) == S_OK;
}

HRESULT WINAPI StandInCreateInstance(REFCLSID classId, LPUNKNOWN outer, DWORD context, REFIID interfaceId,
                                     LPVOID* object) {
    if (classId != velmora::kMxNamespaceManager60 || outer != nullptr || (context & CLSCTX_INPROC_SERVER) == 0) {
        return GENUINE_OF(CoCreateInstance, L"ole32.dll")(classId, outer, context, interfaceId, object);
    }
    const ComReference<IMXNamespaceManager> manager(MakeNamespaceManager());
    return manager->QueryInterface(interfaceId, object);
}

// --- The user: GetUserDefaultLangID and the ANSI code page; WinExec and waits for what it started

constexpr LANGID kEnglish = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
LANGID userLanguage = kEnglish;
UINT userCodePage = CP_ACP;
std::function<ProgramStart(const std::string&)> programStarter;

bool Never(HANDLE) {
    return false;
}

// Drivers that ask for the ANSI code page get the user's.
UINT CodePage(UINT asked) {
    return asked == CP_ACP ? userCodePage : asked;
}

int WINAPI StandInMultiByteToWideChar(UINT codePage, DWORD flags, LPCCH text, int bytes, LPWSTR wide, int capacity) {
    return GENUINE_OF(MultiByteToWideChar, L"kernel32.dll")(CodePage(codePage), flags, text, bytes, wide, capacity);
}

int WINAPI StandInWideCharToMultiByte(UINT codePage, DWORD flags, LPCWCH wide, int length, LPSTR text, int capacity,
                                      LPCCH defaultCharacter, LPBOOL usedDefault) {
    return GENUINE_OF(WideCharToMultiByte, L"kernel32.dll")(CodePage(codePage), flags, wide, length, text, capacity,
                                                            defaultCharacter, usedDefault);
}

BOOL WINAPI StandInIsDBCSLeadByteEx(UINT codePage, BYTE byte) {
    return GENUINE_OF(IsDBCSLeadByteEx, L"kernel32.dll")(CodePage(codePage), byte);
}

LANGID WINAPI StandInGetUserDefaultLangID() {
    return userLanguage;
}

// Numbers above 31 are success.
UINT WINAPI StandInWinExec(LPCSTR command, UINT show) {
    constexpr UINT kStarted = 33;
    switch (programStarter ? programStarter(command) : ProgramStart::kNone) {
        case ProgramStart::kReal:
            return GENUINE_OF(WinExec, L"kernel32.dll")(command, show);
        case ProgramStart::kPretended:
            return kStarted;
        default:
            return ERROR_FILE_NOT_FOUND;
    }
}

bool waitsElapseAtOnce = false;

DWORD WINAPI StandInWaitForSingleObject(HANDLE object, DWORD milliseconds) {
    const bool runsOut = milliseconds != INFINITE;
    return GENUINE_OF(WaitForSingleObject, L"kernel32.dll")(object, waitsElapseAtOnce && runsOut ? 0 : milliseconds);
}

// --- Which are used, and where

struct StandIn {
    const char* call;
    const char* why;
    bool (*works)(HANDLE printer);
    void* function;
    bool needsPrinter;  // to be probed
    bool probed;
    bool used;
};

template <class Function>
StandIn MakeStandIn(const char* call, const char* why, bool (*works)(HANDLE), Function function,
                    bool needsPrinter = true) {
    return {call, why, works, reinterpret_cast<void*>(function), needsPrinter, false, false};
}
#define STAND_IN(call, why, works, function) MakeStandIn<decltype(&(call))>(#call, why, works, function)

#define STAND_IN_ALWAYS(call, why, function) MakeStandIn<decltype(&(call))>(#call, why, Never, function, false)

constexpr char kNotWritten[] = "not there, a call ends the process";
constexpr char kNoPrinter[] = "the driver is asked without its printer";
constexpr char kNoData[] = "no value is told";
constexpr char kNoForms[] = "no form is kept";
constexpr char kTextOnly[] = "of a device mode's names only the text is kept";
constexpr char kNotSettable[] = "the user's language can't be set for one process";
constexpr char kNoOutputSize[] = "the driver isn't told how large the output is, and so writes nothing";

std::vector<StandIn> standIns = {
    STAND_IN(DeletePrinterDataW, kNotWritten, DeletesPrinterData, StandInDeletePrinterData),
    STAND_IN(EnumPrinterDataW, kNoData, EnumeratesPrinterData, StandInEnumPrinterData),
    STAND_IN(DevQueryPrint, kNotWritten, QueriesPrint, StandInDevQueryPrint),
    STAND_IN(DeviceCapabilitiesW, kNoPrinter, GivesCapabilities, StandInDeviceCapabilities),
    STAND_IN(DocumentPropertiesW, kNoOutputSize, WritesDocumentProperties, StandInDocumentProperties),
    STAND_IN(PrinterProperties, "nothing is shown", ShowsPrinterProperties, StandInPrinterProperties),
    STAND_IN(AddFormW, kNoForms, KeepsForms, StandInAddForm),
    STAND_IN(EnumFormsW, kNoForms, KeepsForms, StandInEnumForms),
    STAND_IN(DeleteFormW, kNoForms, KeepsForms, StandInDeleteForm),
    STAND_IN(GetPrinterW, kTextOnly, KeepsDevModes, StandInGetPrinter),
    STAND_IN(SetPrinterW, kTextOnly, KeepsDevModes, StandInSetPrinter),
    MakeStandIn<decltype(&CoCreateInstance)>("CoCreateInstance", "MXNamespaceManager60 doesn't push contexts of nodes",
                                             PushesNodeContexts, StandInCreateInstance, false),
    STAND_IN_ALWAYS(GetUserDefaultLangID, kNotSettable, StandInGetUserDefaultLangID),
    STAND_IN_ALWAYS(MultiByteToWideChar, kNotSettable, StandInMultiByteToWideChar),
    STAND_IN_ALWAYS(WideCharToMultiByte, kNotSettable, StandInWideCharToMultiByte),
    STAND_IN_ALWAYS(IsDBCSLeadByteEx, kNotSettable, StandInIsDBCSLeadByteEx),
    STAND_IN_ALWAYS(WinExec, "programs run where a test says so", StandInWinExec),
    STAND_IN_ALWAYS(WaitForSingleObject, "nothing is to be waited for that didn't run", StandInWaitForSingleObject),
};

// Whether the driver was told of its new printer when it was added: it gives every printer a settings file's name.
bool SendsEvents(HANDLE printer) {
    wchar_t name[] = L"Settings";
    DWORD needed = 0;
    return GetPrinterDataW(printer, name, nullptr, nullptr, 0, &needed) == ERROR_MORE_DATA;
}

bool sendsEvents = false;

template <class T>
T* At(HMODULE module, DWORD relativeAddress) {
    return reinterpret_cast<T*>(reinterpret_cast<BYTE*>(module) + relativeAddress);
}

// For modules that ask for a call by name instead of importing it.
FARPROC WINAPI FindWithStandIns(HMODULE module, LPCSTR name) {
    // Where the high word is 0, the "name" is an ordinal.
    if (module == GetModuleHandleW(L"winspool.drv") && reinterpret_cast<ULONG_PTR>(name) > 0xFFFF) {
        for (const StandIn& standIn : standIns) {
            if (standIn.used && strcmp(standIn.call, name) == 0) {
                return reinterpret_cast<FARPROC>(standIn.function);
            }
        }
    }
    return GetProcAddress(module, name);
}

}  // namespace

void ProbeCalls(HANDLE printer) {
    if (printer != nullptr) {
        static const bool asked = [printer] {
            sendsEvents = SendsEvents(printer);
            if (!sendsEvents) {
                std::cout << "stand-in: DrvPrinterEvent is called for AddPrinterW and DeletePrinter (the driver isn't "
                             "told)"
                          << std::endl;
            }
            return true;
        }();
        static_cast<void>(asked);
    }
    std::map<bool (*)(HANDLE), bool> results;
    for (StandIn& standIn : standIns) {
        if (standIn.probed || standIn.needsPrinter != (printer != nullptr)) {
            continue;
        }
        if (!results.contains(standIn.works)) {
            results[standIn.works] = standIn.works(printer);
        }
        standIn.probed = true;
        standIn.used = !results[standIn.works];
        if (standIn.used) {
            std::cout << "stand-in: " << standIn.call << " (" << standIn.why << ")" << std::endl;
        }
    }
}

void PutStandIns(HMODULE module) {
    for (const StandIn& standIn : standIns) {
        if (standIn.used) {
            ReplaceImport(module, standIn.call, standIn.function);
        }
    }
    // The test program's own must stay: the stand-ins call it.
    if (module != GetModuleHandleW(nullptr)) {
        ReplaceImport(module, "GetProcAddress", reinterpret_cast<void*>(&FindWithStandIns));
    }
}

void ReplaceImport(HMODULE module, const char* name, void* function) {
    const auto* dosHeader = At<IMAGE_DOS_HEADER>(module, 0);
    const auto* headers = At<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(dosHeader->e_lfanew));
    const IMAGE_DATA_DIRECTORY& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (directory.Size == 0) {
        return;
    }
    for (auto* import = At<IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress); import->Name != 0; ++import) {
        const auto* lookup = At<IMAGE_THUNK_DATA>(module, import->OriginalFirstThunk);
        auto* address = At<IMAGE_THUNK_DATA>(module, import->FirstThunk);
        for (; lookup->u1.AddressOfData != 0; ++lookup, ++address) {
            if (IMAGE_SNAP_BY_ORDINAL(lookup->u1.Ordinal)) {
                continue;
            }
            const auto* imported = At<IMAGE_IMPORT_BY_NAME>(module, static_cast<DWORD>(lookup->u1.AddressOfData));
            if (strcmp(reinterpret_cast<const char*>(imported->Name), name) != 0) {
                continue;
            }
            DWORD protection = 0;
            if (!VirtualProtect(address, sizeof(*address), PAGE_READWRITE, &protection)) {
                throw std::runtime_error("an import table can't be written");
            }
            address->u1.Function = reinterpret_cast<ULONGLONG>(function);
            VirtualProtect(address, sizeof(*address), protection, &protection);
        }
    }
}

void SendMissingEvent(HMODULE driver, HANDLE printer, int event) {
    if (sendsEvents) {
        return;
    }
    const auto tell = ExportOf<decltype(&::DrvPrinterEvent)>(driver, "DrvPrinterEvent");
    std::wstring name = PrinterName(printer);
    if (tell != nullptr && !tell(name.data(), event, PRINTER_EVENT_FLAG_NO_UI, 0) &&
        event == PRINTER_EVENT_INITIALIZE) {
        throw std::runtime_error("the driver can't initialise its printer");
    }
}

void ForgetPrinter(HANDLE printer) {
    keptDevModes.erase(PrinterName(printer));
}

void SetUserLanguage(LANGID language) {
    userLanguage = language;
}

void SetUserCodePage(UINT codePage) {
    userCodePage = codePage;
}

void SetProgramStarter(std::function<ProgramStart(const std::string& command)> starter) {
    programStarter = std::move(starter);
}

void SetWaitsElapseAtOnce(bool atOnce) {
    waitsElapseAtOnce = atOnce;
}

void ForgetMachine() {
    userLanguage = kEnglish;
    userCodePage = CP_ACP;
    waitsElapseAtOnce = false;
    keptDevModes.clear();
    keptForms.clear();
}

}  // namespace contract
