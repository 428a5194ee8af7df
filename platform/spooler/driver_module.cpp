#include "platform/spooler/driver_module.h"

#include <winsplp.h>
#include <winspool.h>

#include <cstring>
#include <string>
#include <vector>

#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"
#include "platform/sheet/driver_sheets.h"
#include "platform/sheet/sheet_texts.h"
#include "platform/spooler/failures.h"
#include "platform/spooler/printer_handle.h"

namespace host {
namespace {

// Records of the published driver interface (winddiui.h) that the spooler hands to a driver.
struct DocumentPropertyHeader {
    WORD cbSize;
    WORD reserved;
    HANDLE hPrinter;
    LPWSTR pszPrinterName;
    PDEVMODEW pdmIn;
    PDEVMODEW pdmOut;
    DWORD cbOut;  // bytes of *pdmOut
    DWORD fMode;  // DM_ bits
};
static_assert(sizeof(DocumentPropertyHeader) == 48 && offsetof(DocumentPropertyHeader, cbOut) == 40);

struct DevicePropertyHeader {
    WORD cbSize;
    WORD flags;  // kMayNotChange or 0
    HANDLE hPrinter;
    LPWSTR pszPrinterName;
};
static_assert(sizeof(DevicePropertyHeader) == 24);

constexpr WORD kMayNotChange = 1;  // DPS_NOPERMISSION

struct DevQueryPrintInfo {
    WORD cbSize;
    WORD level;
    HANDLE hPrinter;
    PDEVMODEW pDevMode;
    LPWSTR pszErrorStr;
    DWORD cchErrorStr;
    DWORD cchNeeded;
};
static_assert(sizeof(DevQueryPrintInfo) == 40);

using PrinterEventEntry = BOOL(WINAPI*)(LPWSTR, INT, DWORD, LPARAM);
using PropertySheetsEntry = LONG(WINAPI*)(PPROPSHEETUI_INFO, LPARAM);
using DeviceCapabilitiesEntry = DWORD(WINAPI*)(HANDLE, LPWSTR, WORD, PVOID, PDEVMODEW);
using DevQueryPrintExEntry = BOOL(WINAPI*)(DevQueryPrintInfo*);

// A loaded library and one entry point of it.
template <class Entry>
class DriverEntry {
  public:
    // Null entry, and the last error set, where the library can't be loaded or lacks the entry point.
    DriverEntry(const std::u16string& file, const char* name)
        : module_(LoadLibraryW(file.c_str())),
          entry_(module_ ? reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(module_, name))) : nullptr) {}
    ~DriverEntry() {
        if (module_) {
            const DWORD error = GetLastError();
            FreeLibrary(module_);
            SetLastError(error);
        }
    }
    DriverEntry(const DriverEntry&) = delete;
    DriverEntry& operator=(const DriverEntry&) = delete;

    bool IsLoaded() const { return module_ != nullptr; }
    Entry Get() const { return entry_; }
    explicit operator bool() const { return entry_ != nullptr; }
    template <class... Arguments>
    auto operator()(Arguments... arguments) const {
        return entry_(arguments...);
    }

  private:
    const HMODULE module_;
    const Entry entry_;
};

// The configuration file of the driver behind a printer handle; empty, and the last error set, where the handle is
// none.
std::u16string ConfigFileBehind(HANDLE printer) {
    const MachineLock lock;
    const std::shared_ptr<Printer> opened = OpenedPrinter(printer);
    if (!opened) {
        return {};
    }
    std::u16string file = ConfigFileOf(*opened);
    if (file.empty()) {
        SetLastError(ERROR_UNKNOWN_PRINTER_DRIVER);
    }
    return file;
}

// The name of an open printer.
std::u16string NameBehind(HANDLE printer) {
    const MachineLock lock;
    const std::shared_ptr<Printer> opened = OpenedPrinter(printer);
    return opened ? opened->name : std::u16string();
}

bool MayChange(HANDLE printer) {
    const MachineLock lock;
    return OpenedPrinter(printer, PRINTER_ACCESS_ADMINISTER) != nullptr;
}

// The driver edits a device mode of the host's; the caller's is written where it asks for it and something was
// accepted, with what was accepted last.
LONG ShowDocumentSheets(PropertySheetsEntry entry, HWND owner, HANDLE printer, LPWSTR name, PDEVMODEW output,
                        PDEVMODEW input, DWORD size, DWORD mode) {
    std::vector<BYTE> edited(size);
    std::vector<BYTE> accepted;
    DocumentPropertyHeader header = {
        sizeof(header), 0, printer, name, input, reinterpret_cast<PDEVMODEW>(edited.data()), size, mode};
    const DriverSheets sheets = {entry, reinterpret_cast<LPARAM>(&header),
                                 Caption(TextsOfUser().printingPreferences, NameBehind(printer)), owner,
                                 [&] { accepted = edited; }};
    const LONG result = RunDriverSheets(sheets);
    if (result == CPSUI_OK && (mode & DM_OUT_BUFFER) != 0) {
        memcpy(output, accepted.data(), size);
    }
    return result < 0 ? -1 : result == CPSUI_OK ? IDOK : IDCANCEL;
}

}  // namespace

std::u16string ConfigFileOf(const Printer& printer) {
    const Driver* const driver = FindDriver(printer.driverName);
    return driver ? driver->configFile : std::u16string();
}

bool SendPrinterEvent(const std::u16string& configFile, const std::u16string& printerName, INT event) {
    const DriverEntry<PrinterEventEntry> drvPrinterEvent(configFile, "DrvPrinterEvent");
    if (!drvPrinterEvent) {
        // A file that isn't a library has no entry points; one that is must load.
        return drvPrinterEvent.IsLoaded() || GetLastError() == ERROR_BAD_EXE_FORMAT;
    }
    std::u16string name = printerName;
    SetLastError(ERROR_SUCCESS);
    if (drvPrinterEvent(name.data(), event, static_cast<DWORD>(PRINTER_EVENT_FLAG_NO_UI), LPARAM{0})) {
        return true;
    }
    // A driver need not say why.
    return GetLastError() != ERROR_SUCCESS ? false : Fail(ERROR_CAN_NOT_COMPLETE);
}

}  // namespace host

using namespace host;

extern "C" {

LONG WINAPI DocumentPropertiesW(HWND owner, HANDLE hPrinter, LPWSTR pDeviceName, PDEVMODEW pDevModeOutput,
                                PDEVMODEW pDevModeInput, DWORD fMode) {
    if (FaultAsked("DocumentPropertiesW")) {
        return -1;
    }
    const std::u16string file = ConfigFileBehind(hPrinter);
    if (file.empty()) {
        return -1;
    }
    const DriverEntry<PropertySheetsEntry> drvDocumentPropertySheets(file, "DrvDocumentPropertySheets");
    if (!drvDocumentPropertySheets) {
        return -1;
    }
    const auto call = [&](PDEVMODEW in, PDEVMODEW out, DWORD outSize, DWORD mode) {
        DocumentPropertyHeader header = {sizeof(header), 0, hPrinter, pDeviceName, in, out, outSize, mode};
        return drvDocumentPropertySheets(PPROPSHEETUI_INFO{}, reinterpret_cast<LPARAM>(&header));
    };
    const LONG size = call(nullptr, nullptr, 0, 0);
    if (size <= 0 || fMode == 0 || !pDevModeOutput) {
        return size;
    }
    // The caller's buffer is as large as this call told it.
    if ((fMode & DM_PROMPT) == 0) {
        return call(pDevModeInput, pDevModeOutput, static_cast<DWORD>(size), fMode);
    }
    return ShowDocumentSheets(drvDocumentPropertySheets.Get(), owner, hPrinter, pDeviceName, pDevModeOutput,
                              (fMode & DM_IN_BUFFER) != 0 ? pDevModeInput : nullptr, static_cast<DWORD>(size), fMode);
}

int WINAPI DeviceCapabilitiesW(LPCWSTR pDevice, LPCWSTR, WORD fwCapability, LPWSTR pOutput, const DEVMODEW* pDevMode) {
    if (FaultAsked("DeviceCapabilitiesW")) {
        return -1;
    }
    if (!pDevice) {
        SetLastError(ERROR_INVALID_PRINTER_NAME);
        return -1;
    }
    HANDLE printer = nullptr;
    {
        const MachineLock lock;
        printer = OpenPrinterByName(pDevice, PRINTER_ACCESS_USE);
    }
    if (!printer) {
        return -1;
    }
    int answer = -1;
    const std::u16string file = ConfigFileBehind(printer);
    if (!file.empty()) {
        const DriverEntry<DeviceCapabilitiesEntry> drvDeviceCapabilities(file, "DrvDeviceCapabilities");
        if (drvDeviceCapabilities) {
            std::u16string name = pDevice;
            answer = static_cast<int>(drvDeviceCapabilities(
                printer, name.data(), fwCapability, static_cast<PVOID>(pOutput), const_cast<PDEVMODEW>(pDevMode)));
        }
    }
    const MachineLock lock;
    RemoveObject(printer, Resource::kPrinter);
    return answer;
}

BOOL WINAPI DevQueryPrint(HANDLE hPrinter, LPDEVMODEW pDevMode, DWORD* pResID) {
    if (FaultAsked("DevQueryPrint")) {
        return FALSE;
    }
    if (!pResID) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    *pResID = 0;
    const std::u16string file = ConfigFileBehind(hPrinter);
    if (file.empty()) {
        return FALSE;
    }
    const DriverEntry<DevQueryPrintExEntry> devQueryPrintEx(file, "DevQueryPrintEx");
    if (!devQueryPrintEx) {
        return FALSE;
    }
    DevQueryPrintInfo info = {sizeof(info), 1, hPrinter, pDevMode, nullptr, 0, 0};
    return devQueryPrintEx(&info);
}

BOOL WINAPI PrinterProperties(HWND owner, HANDLE hPrinter) {
    if (FaultAsked("PrinterProperties")) {
        return FALSE;
    }
    const std::u16string file = ConfigFileBehind(hPrinter);
    if (file.empty()) {
        return FALSE;
    }
    const DriverEntry<PropertySheetsEntry> drvDevicePropertySheets(file, "DrvDevicePropertySheets");
    if (!drvDevicePropertySheets) {
        return FALSE;
    }
    std::u16string name = NameBehind(hPrinter);
    const WORD flags = MayChange(hPrinter) ? 0 : kMayNotChange;
    DevicePropertyHeader header = {sizeof(header), flags, hPrinter, name.data()};
    const DriverSheets sheets = {drvDevicePropertySheets.Get(), reinterpret_cast<LPARAM>(&header),
                                 Caption(TextsOfUser().properties, name), owner, [] {}};
    return RunDriverSheets(sheets) >= 0;
}

}  // extern "C"
