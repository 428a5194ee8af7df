// Printers: opening, reading, changing, adding, deleting, listing.
#include <windows.h>
#include <winspool.h>

#include <algorithm>

#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/registry.h"
#include "platform/kernel/settings.h"
#include "platform/kernel/text.h"
#include "platform/spooler/driver_module.h"
#include "platform/spooler/failures.h"
#include "platform/spooler/info_buffer.h"
#include "platform/spooler/printer_handle.h"
#include "platform/spooler/state.h"

namespace host {
namespace {

class OpenPrinterObject : public Object {
  public:
    OpenPrinterObject(std::shared_ptr<Printer> printer, ACCESS_MASK access)
        : Object(Resource::kPrinter), printer(std::move(printer)), access(access) {}

    std::string Describe() const override { return ToUtf8(printer->name); }

    const std::shared_ptr<Printer> printer;
    const ACCESS_MASK access;
};

constexpr DWORD kDefaultPriority = 1;
constexpr size_t kMostPrinterName = 220;

constexpr std::u16string_view kPorts[] = {u"LPT1:", u"LPT2:", u"LPT3:", u"COM1:",       u"COM2:",   u"COM3:",
                                          u"COM4:", u"FILE:", u"NUL:",  u"PORTPROMPT:", u"XPSPort:"};

bool IsPrinterName(std::u16string_view name) {
    return !name.empty() && name.size() <= kMostPrinterName && name.find_first_of(u"\\,!") == name.npos;
}

bool IsPort(std::u16string_view name) {
    return std::ranges::any_of(kPorts, [&](std::u16string_view port) { return EqualsIgnoringCase(port, name); });
}

// A null text is empty.
std::u16string TextOf(LPCWSTR text) {
    return text ? std::u16string(text) : std::u16string();
}

// Takes what a PRINTER_INFO_2 says into the printer; its device mode only where there is one, its security descriptor
// not at all. False with the last error set where it says something impossible.
bool TakeInfo(Printer& printer, const PRINTER_INFO_2W& info) {
    for (const auto& field : kPrinterTexts) {
        printer.*field.text = TextOf(info.*field.published);
    }
    for (const auto& field : kPrinterNumbers) {
        printer.*field.number = info.*field.published;
    }
    printer.name = TextOf(info.pPrinterName ? LocalPrinterName(info.pPrinterName) : nullptr);
    printer.attributes |= PRINTER_ATTRIBUTE_LOCAL;
    if (printer.priority == 0) {
        printer.priority = kDefaultPriority;
    }
    if (printer.defaultPriority == 0) {
        printer.defaultPriority = kDefaultPriority;
    }
    if (printer.datatype.empty()) {
        printer.datatype = u"RAW";
    }
    if (!IsPrinterName(printer.name)) {
        return Fail(ERROR_INVALID_PRINTER_NAME);
    }
    const Driver* const driver = FindDriver(printer.driverName);
    if (!driver) {
        return Fail(ERROR_UNKNOWN_PRINTER_DRIVER);
    }
    if (!IsPort(printer.portName)) {
        return Fail(ERROR_UNKNOWN_PORT);
    }
    const PrintProcessor* const processor = FindPrintProcessor(printer.printProcessor);
    if (!processor) {
        return Fail(ERROR_UNKNOWN_PRINTPROCESSOR);
    }
    printer.driverName = driver->name;
    printer.printProcessor = processor->name;
    if (info.pDevMode) {
        if (info.pDevMode->dmSize < kLeastDeviceModeSize) {
            return Fail(ERROR_INVALID_PARAMETER);
        }
        const BYTE* const bytes = reinterpret_cast<const BYTE*>(info.pDevMode);
        printer.deviceMode.assign(bytes, bytes + info.pDevMode->dmSize + info.pDevMode->dmDriverExtra);
    }
    return true;
}

void AddInfo2(InfoBuffer<PRINTER_INFO_2W>& buffer, const Printer& printer) {
    PRINTER_INFO_2W& info = buffer.Add();
    for (const auto& field : kPrinterNumbers) {
        info.*field.published = printer.*field.number;
    }
    buffer.DeviceMode(&PRINTER_INFO_2W::pDevMode, printer.deviceMode);
    for (const auto& field : kPrinterTexts) {
        buffer.Text(field.published, printer.*field.text);
    }
}

// The key in which the spooler's machine-wide settings of the printer lie, below HKEY_LOCAL_MACHINE.
std::u16string RegistryKeyOf(const Printer& printer) {
    return u"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\" + printer.name;
}

// Takes the printer out of the list; handles that lead to it from now on say that it is deleted. False with the last
// error set where the store could not be written.
bool RemovePrinter(const std::shared_ptr<Printer>& printer) {
    auto left = Spooler().printers;
    std::erase(left, printer);
    RemoveMachineKey(RegistryKeyOf(*printer));
    if (!Replace(Spooler().printers, std::move(left))) {
        MakeMachineKey(RegistryKeyOf(*printer));
        return false;
    }
    printer->isDeleted = true;
    return true;
}

}  // namespace

HANDLE OpenPrinterHandle(std::shared_ptr<Printer> printer, ACCESS_MASK access) {
    return AddObject(std::make_unique<OpenPrinterObject>(std::move(printer), access));
}

HANDLE OpenPrinterByName(LPCWSTR name, ACCESS_MASK access) {
    std::shared_ptr<Printer> printer = FindPrinter(LocalPrinterName(name));
    if (!printer) {
        SetLastError(ERROR_INVALID_PRINTER_NAME);
        return nullptr;
    }
    if (access == 0) {
        access = PRINTER_ACCESS_USE;
    }
    if ((access & ~CurrentSettings().grantedPrinterAccess) != 0) {
        SetLastError(ERROR_ACCESS_DENIED);
        return nullptr;
    }
    return OpenPrinterHandle(std::move(printer), access);
}

std::shared_ptr<Printer> OpenedPrinter(HANDLE handle, ACCESS_MASK neededAccess) {
    const auto* const object = FindObject<OpenPrinterObject>(handle, Resource::kPrinter);
    if (!object) {
        return nullptr;
    }
    if (object->printer->isDeleted) {
        SetLastError(ERROR_PRINTER_DELETED);
        return nullptr;
    }
    if ((neededAccess & ~object->access) != 0) {
        SetLastError(ERROR_ACCESS_DENIED);
        return nullptr;
    }
    return object->printer;
}

}  // namespace host

using namespace host;

extern "C" {

BOOL WINAPI OpenPrinterW(LPWSTR pPrinterName, LPHANDLE phPrinter, LPPRINTER_DEFAULTSW pDefault) {
    if (FaultAsked("OpenPrinterW")) {
        return FALSE;
    }
    if (!phPrinter) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    *phPrinter = nullptr;
    if (!pPrinterName) {
        return FailUnsupported("OpenPrinterW of the print server (no printer name)");
    }
    const MachineLock lock;
    *phPrinter = OpenPrinterByName(pPrinterName, pDefault ? pDefault->DesiredAccess : 0);
    return *phPrinter != nullptr;
}

BOOL WINAPI ClosePrinter(HANDLE hPrinter) {
    if (FaultAsked("ClosePrinter")) {
        return FALSE;
    }
    const MachineLock lock;
    return RemoveObject(hPrinter, Resource::kPrinter);
}

BOOL WINAPI GetPrinterW(HANDLE hPrinter, DWORD Level, LPBYTE pPrinter, DWORD cbBuf, LPDWORD pcbNeeded) {
    if (FaultAsked("GetPrinterW")) {
        return FALSE;
    }
    const MachineLock lock;
    const std::shared_ptr<Printer> printer = OpenedPrinter(hPrinter);
    if (!printer || !IsSupportedLevel("GetPrinterW", Level, 2, 9)) {
        return FALSE;
    }
    InfoBuffer<PRINTER_INFO_2W> buffer;
    AddInfo2(buffer, *printer);
    return buffer.CopyTo(pPrinter, cbBuf, pcbNeeded, nullptr, false);
}

BOOL WINAPI SetPrinterW(HANDLE hPrinter, DWORD Level, LPBYTE pPrinter, DWORD Command) {
    if (FaultAsked("SetPrinterW")) {
        return FALSE;
    }
    const MachineLock lock;
    const std::shared_ptr<Printer> printer = OpenedPrinter(hPrinter, PRINTER_ACCESS_ADMINISTER);
    if (!printer || !IsSupportedLevel("SetPrinterW", Level, 2, 9)) {
        return FALSE;
    }
    if (!pPrinter) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    if (Command != 0) {
        return Fail(ERROR_INVALID_PRINTER_COMMAND);
    }
    Printer changed = *printer;
    if (!TakeInfo(changed, *reinterpret_cast<const PRINTER_INFO_2W*>(pPrinter))) {
        return FALSE;
    }
    const std::shared_ptr<Printer> namesake = FindPrinter(changed.name);
    if (namesake && namesake != printer) {
        return Fail(ERROR_PRINTER_ALREADY_EXISTS);
    }
    return Replace(*printer, std::move(changed));
}

BOOL WINAPI EnumPrintersW(DWORD Flags, LPWSTR Name, DWORD Level, LPBYTE pPrinterEnum, DWORD cbBuf, LPDWORD pcbNeeded,
                          LPDWORD pcReturned) {
    if (FaultAsked("EnumPrintersW")) {
        return FALSE;
    }
    if (!IsSupportedLevel("EnumPrintersW", Level, 2, 5) || !IsThisMachine(Name)) {
        return FALSE;
    }
    if ((Flags & ~static_cast<DWORD>(PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS)) != 0) {
        return FailUnsupported("EnumPrintersW with flags beyond PRINTER_ENUM_LOCAL and PRINTER_ENUM_CONNECTIONS");
    }
    const MachineLock lock;
    InfoBuffer<PRINTER_INFO_2W> buffer;
    if ((Flags & PRINTER_ENUM_LOCAL) != 0) {
        for (const auto& printer : Spooler().printers) {
            AddInfo2(buffer, *printer);
        }
    }
    return buffer.CopyTo(pPrinterEnum, cbBuf, pcbNeeded, pcReturned, true);
}

HANDLE WINAPI AddPrinterW(LPWSTR pName, DWORD Level, LPBYTE pPrinter) {
    if (FaultAsked("AddPrinterW") || !IsThisMachine(pName) || !IsSupportedLevel("AddPrinterW", Level, 2, 2)) {
        return nullptr;
    }
    if (!pPrinter) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    const auto printer = std::make_shared<Printer>();
    std::u16string configFile;
    {
        const MachineLock lock;
        if (!TakeInfo(*printer, *reinterpret_cast<const PRINTER_INFO_2W*>(pPrinter))) {
            return nullptr;
        }
        if (FindPrinter(printer->name)) {
            SetLastError(ERROR_PRINTER_ALREADY_EXISTS);
            return nullptr;
        }
        auto more = Spooler().printers;
        more.push_back(printer);
        MakeMachineKey(RegistryKeyOf(*printer));
        if (!Replace(Spooler().printers, std::move(more))) {
            RemoveMachineKey(RegistryKeyOf(*printer));
            return nullptr;
        }
        configFile = ConfigFileOf(*printer);
    }
    // Not under the lock: the driver may call back from another thread.
    if (!SendPrinterEvent(configFile, printer->name, PRINTER_EVENT_INITIALIZE)) {
        const DWORD error = GetLastError();
        const MachineLock lock;
        RemovePrinter(printer);
        SetLastError(error);
        return nullptr;
    }
    const MachineLock lock;
    return OpenPrinterHandle(printer, PRINTER_ALL_ACCESS);
}

BOOL WINAPI DeletePrinter(HANDLE hPrinter) {
    if (FaultAsked("DeletePrinter")) {
        return FALSE;
    }
    std::shared_ptr<Printer> printer;
    std::u16string configFile;
    std::u16string name;
    {
        const MachineLock lock;
        printer = OpenedPrinter(hPrinter, PRINTER_ACCESS_ADMINISTER);
        if (!printer) {
            return FALSE;
        }
        name = printer->name;
        configFile = ConfigFileOf(*printer);
    }
    // The driver's answer doesn't keep the printer alive.
    SendPrinterEvent(configFile, name, PRINTER_EVENT_DELETE);
    const MachineLock lock;
    return RemovePrinter(printer);
}

}  // extern "C"
