#include "tools/velmora/spooler_client.h"

#include <functional>
#include <span>

#include "platform/kernel/text.h"
#include "tools/velmora/command_error.h"

namespace velmora {
namespace {

struct ErrorText {
    DWORD error;
    const char* text;
};

constexpr ErrorText kErrorTexts[] = {
    {ERROR_FILE_NOT_FOUND, "no such file"},
    {ERROR_PATH_NOT_FOUND, "no such folder"},
    {ERROR_ACCESS_DENIED, "access denied"},
    {ERROR_NOT_ENOUGH_MEMORY, "no memory"},
    {ERROR_WRITE_FAULT, "the machine's folder can't be written"},
    {ERROR_INVALID_PARAMETER, "invalid parameter"},
    {ERROR_DISK_FULL, "the disk is full"},
    {ERROR_MOD_NOT_FOUND, "a library is missing"},
    {ERROR_PROC_NOT_FOUND, "the library has no such entry point"},
    {ERROR_BAD_EXE_FORMAT, "no library of this host"},
    {ERROR_CAN_NOT_COMPLETE, "the driver refused it"},
    {ERROR_UNKNOWN_PRINTER_DRIVER, "no such driver"},
    {ERROR_INVALID_PRINTER_NAME, "no such printer, or no printer name"},
    {ERROR_PRINTER_ALREADY_EXISTS, "there is a printer of this name"},
    {ERROR_PRINTER_DRIVER_IN_USE, "the driver is in use"},
};

using SizedCall = std::function<BOOL(LPBYTE buffer, DWORD size, LPDWORD needed)>;

// What a call fills in that is asked for the size first.
std::vector<BYTE> ReadSized(std::string_view name, const SizedCall& call) {
    DWORD needed = 0;
    if (!call(nullptr, 0, &needed) && GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
        ThrowRefused(name);
    }
    std::vector<BYTE> buffer(needed);
    if (needed != 0 && !call(buffer.data(), needed, &needed)) {
        ThrowRefused(name);
    }
    return buffer;
}

// Null is the empty text.
std::u16string WideText(LPCWSTR text) {
    return text ? std::u16string(text) : std::u16string();
}

DriverEntry EntryOf(const DRIVER_INFO_3W& info) {
    DriverEntry entry = {
        host::ToUtf8(WideText(info.pName)), WideText(info.pConfigFile), host::ToUtf8(WideText(info.pDataFile)), {}};
    entry.modelFile = entry.dataFile;
    for (LPCWSTR file = info.pDependentFiles; file && *file; file += std::u16string_view(file).size() + 1) {
        const std::string name = host::ToUtf8(file);
        if (name.ends_with(".XPI")) {
            entry.modelFile = name;
        }
    }
    return entry;
}

std::string KnownPrinters() {
    std::string names;
    for (const PrinterEntry& printer : ListPrinters()) {
        names += (names.empty() ? "\"" : ", \"") + printer.name + "\"";
    }
    return names;
}

}  // namespace

std::string DescribeError(DWORD error) {
    std::string message = "error " + std::to_string(error);
    for (const ErrorText& known : kErrorTexts) {
        if (known.error == error) {
            message += std::string(", ") + known.text;
        }
    }
    return message;
}

void ThrowRefused(std::string_view call, DWORD error) {
    throw CommandError(std::string(call) + " failed: " + DescribeError(error));
}

std::vector<PrinterEntry> ListPrinters() {
    DWORD count = 0;
    const std::vector<BYTE> buffer = ReadSized("EnumPrintersW", [&](LPBYTE bytes, DWORD size, LPDWORD needed) {
        return EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, bytes, size, needed, &count);
    });
    std::vector<PrinterEntry> printers;
    for (const PRINTER_INFO_2W& info : std::span(reinterpret_cast<const PRINTER_INFO_2W*>(buffer.data()), count)) {
        printers.push_back({host::ToUtf8(WideText(info.pPrinterName)), host::ToUtf8(WideText(info.pDriverName)),
                            host::ToUtf8(WideText(info.pPortName))});
    }
    return printers;
}

std::vector<DriverEntry> ListDrivers() {
    DWORD count = 0;
    const std::vector<BYTE> buffer = ReadSized("EnumPrinterDriversW", [&](LPBYTE bytes, DWORD size, LPDWORD needed) {
        return EnumPrinterDriversW(nullptr, nullptr, 3, bytes, size, needed, &count);
    });
    std::vector<DriverEntry> drivers;
    for (const DRIVER_INFO_3W& info : std::span(reinterpret_cast<const DRIVER_INFO_3W*>(buffer.data()), count)) {
        drivers.push_back(EntryOf(info));
    }
    return drivers;
}

DriverEntry DriverOf(HANDLE printer) {
    const std::vector<BYTE> buffer = ReadSized("GetPrinterDriverW", [&](LPBYTE bytes, DWORD size, LPDWORD needed) {
        return GetPrinterDriverW(printer, nullptr, 3, bytes, size, needed);
    });
    return EntryOf(*reinterpret_cast<const DRIVER_INFO_3W*>(buffer.data()));
}

std::vector<std::string> ListPrinterForms(HANDLE printer) {
    DWORD count = 0;
    const std::vector<BYTE> buffer = ReadSized("EnumFormsW", [&](LPBYTE bytes, DWORD size, LPDWORD needed) {
        return EnumFormsW(printer, 1, bytes, size, needed, &count);
    });
    std::vector<std::string> names;
    for (const FORM_INFO_1W& form : std::span(reinterpret_cast<const FORM_INFO_1W*>(buffer.data()), count)) {
        if (form.Flags == FORM_PRINTER) {
            names.push_back(host::ToUtf8(WideText(form.pName)));
        }
    }
    return names;
}

std::string PrintProcessorOf(HANDLE printer) {
    const std::vector<BYTE> buffer = ReadSized("GetPrinterW", [&](LPBYTE bytes, DWORD size, LPDWORD needed) {
        return GetPrinterW(printer, 2, bytes, size, needed);
    });
    return host::ToUtf8(WideText(reinterpret_cast<const PRINTER_INFO_2W*>(buffer.data())->pPrintProcessor));
}

OwnedPrinter OpenNamedPrinter(const std::string& name) {
    std::u16string wide = host::ToWide(name);
    PRINTER_DEFAULTSW defaults = {nullptr, nullptr, PRINTER_ALL_ACCESS};
    HANDLE printer = nullptr;
    if (OpenPrinterW(wide.data(), &printer, &defaults)) {
        return OwnedPrinter(printer);
    }
    if (GetLastError() != ERROR_INVALID_PRINTER_NAME) {
        ThrowRefused("OpenPrinterW of \"" + name + "\"");
    }
    const std::string known = KnownPrinters();
    throw CommandError("there is no printer \"" + name + "\" on this machine; " +
                       (known.empty() ? "it has none yet: velmora install MODEL.json" : "its printers: " + known));
}

std::vector<PrinterValue> ListPrinterData(HANDLE printer) {
    DWORD mostName = 0;
    DWORD mostData = 0;
    DWORD error = EnumPrinterDataW(printer, 0, nullptr, 0, &mostName, nullptr, nullptr, 0, &mostData);
    if (error != ERROR_SUCCESS) {
        ThrowRefused("EnumPrinterDataW", error);
    }
    // Sizes of 0 would ask for the sizes again.
    std::u16string name(mostName / sizeof(WCHAR) + 1, 0);
    std::vector<BYTE> data(mostData + 1);
    std::vector<PrinterValue> values;
    for (DWORD index = 0;; ++index) {
        PrinterValue value = {};
        DWORD nameSize = 0;
        DWORD dataSize = 0;
        error = EnumPrinterDataW(printer, index, name.data(), static_cast<DWORD>(name.size() * sizeof(WCHAR)),
                                 &nameSize, &value.type, data.data(), static_cast<DWORD>(data.size()), &dataSize);
        if (error == ERROR_NO_MORE_ITEMS) {
            return values;
        }
        if (error != ERROR_SUCCESS) {
            ThrowRefused("EnumPrinterDataW", error);
        }
        value.name = host::ToUtf8(name.c_str());
        value.bytes.assign(data.begin(), data.begin() + dataSize);
        values.push_back(std::move(value));
    }
}

bool SameName(const std::string& a, const std::string& b) {
    return host::EqualsIgnoringCase(host::ToWide(a), host::ToWide(b));
}

}  // namespace velmora
