// Printer data: named and typed values of a printer. The calls return an error code.
#include <windows.h>
#include <winspool.h>

#include <algorithm>
#include <cstring>

#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/settings.h"
#include "platform/kernel/text.h"
#include "platform/spooler/printer_handle.h"
#include "platform/spooler/state.h"

namespace host {
namespace {

auto FindValue(std::vector<DataValue>& data, std::u16string_view name) {
    return std::ranges::find_if(data, [&](const DataValue& value) { return EqualsIgnoringCase(value.name, name); });
}

// Tells the value's type and size, and copies it where the buffer holds it.
DWORD CopyValue(const DataValue& value, LPDWORD type, LPBYTE buffer, DWORD size, DWORD* needed) {
    if (type) {
        *type = value.type;
    }
    *needed = static_cast<DWORD>(value.bytes.size());
    if (size < *needed) {
        return ERROR_MORE_DATA;
    }
    if (!value.bytes.empty()) {
        memcpy(buffer, value.bytes.data(), value.bytes.size());
    }
    return ERROR_SUCCESS;
}

DWORD NameSize(const DataValue& value) {
    return static_cast<DWORD>((value.name.size() + 1) * sizeof(WCHAR));
}

// The printer behind a handle whose data is to be changed; null with the last error set.
std::shared_ptr<Printer> PrinterForWriting(HANDLE handle) {
    std::shared_ptr<Printer> printer = OpenedPrinter(handle, PRINTER_ACCESS_ADMINISTER);
    if (printer && !CurrentSettings().mayWritePrinterData) {
        SetLastError(ERROR_ACCESS_DENIED);
        printer = nullptr;
    }
    return printer;
}

}  // namespace
}  // namespace host

using namespace host;

extern "C" {

DWORD WINAPI GetPrinterDataW(HANDLE hPrinter, LPWSTR pValueName, LPDWORD pType, LPBYTE pData, DWORD nSize,
                             LPDWORD pcbNeeded) {
    if (FaultAsked("GetPrinterDataW")) {
        return GetLastError();
    }
    if (!pcbNeeded || !pValueName) {
        return RPC_X_NULL_REF_POINTER;
    }
    if (!pData && nSize != 0) {
        return ERROR_INVALID_USER_BUFFER;
    }
    const MachineLock lock;
    const std::shared_ptr<Printer> printer = OpenedPrinter(hPrinter);
    if (!printer) {
        return GetLastError();
    }
    const auto value = FindValue(printer->data, pValueName);
    if (value == printer->data.end()) {
        *pcbNeeded = 0;
        return ERROR_FILE_NOT_FOUND;
    }
    return CopyValue(*value, pType, pData, nSize, pcbNeeded);
}

DWORD WINAPI SetPrinterDataW(HANDLE hPrinter, LPWSTR pValueName, DWORD Type, LPBYTE pData, DWORD cbData) {
    if (FaultAsked("SetPrinterDataW")) {
        return GetLastError();
    }
    if (!pValueName) {
        return RPC_X_NULL_REF_POINTER;
    }
    if (!pData && cbData != 0) {
        return ERROR_INVALID_USER_BUFFER;
    }
    const MachineLock lock;
    const std::shared_ptr<Printer> printer = PrinterForWriting(hPrinter);
    if (!printer) {
        return GetLastError();
    }
    std::vector<BYTE> bytes;
    if (cbData != 0) {
        bytes.assign(pData, pData + cbData);
    }
    std::vector<DataValue> changed = printer->data;
    const auto value = FindValue(changed, pValueName);
    if (value == changed.end()) {
        changed.push_back({pValueName, Type, std::move(bytes)});
    } else {
        value->type = Type;
        value->bytes = std::move(bytes);
    }
    return Replace(printer->data, std::move(changed)) ? ERROR_SUCCESS : GetLastError();
}

DWORD WINAPI DeletePrinterDataW(HANDLE hPrinter, LPWSTR pValueName) {
    if (FaultAsked("DeletePrinterDataW")) {
        return GetLastError();
    }
    if (!pValueName) {
        return RPC_X_NULL_REF_POINTER;
    }
    const MachineLock lock;
    const std::shared_ptr<Printer> printer = PrinterForWriting(hPrinter);
    if (!printer) {
        return GetLastError();
    }
    std::vector<DataValue> changed = printer->data;
    const auto value = FindValue(changed, pValueName);
    if (value == changed.end()) {
        return ERROR_FILE_NOT_FOUND;
    }
    changed.erase(value);
    return Replace(printer->data, std::move(changed)) ? ERROR_SUCCESS : GetLastError();
}

DWORD WINAPI EnumPrinterDataW(HANDLE hPrinter, DWORD dwIndex, LPWSTR pValueName, DWORD cbValueName,
                              LPDWORD pcbValueName, LPDWORD pType, LPBYTE pData, DWORD cbData, LPDWORD pcbData) {
    if (FaultAsked("EnumPrinterDataW")) {
        return GetLastError();
    }
    if (!pcbValueName || (cbData != 0 && !pcbData)) {
        return RPC_X_NULL_REF_POINTER;
    }
    if ((!pValueName && cbValueName != 0) || (!pData && cbData != 0)) {
        return ERROR_INVALID_USER_BUFFER;
    }
    const MachineLock lock;
    const std::shared_ptr<Printer> printer = OpenedPrinter(hPrinter);
    if (!printer) {
        return GetLastError();
    }
    DWORD ignored = 0;
    DWORD* const dataSize = pcbData ? pcbData : &ignored;
    if (cbValueName == 0 && cbData == 0) {
        *pcbValueName = 0;
        *dataSize = 0;
        for (const DataValue& value : printer->data) {
            *pcbValueName = std::max(*pcbValueName, NameSize(value));
            *dataSize = std::max(*dataSize, static_cast<DWORD>(value.bytes.size()));
        }
        return ERROR_SUCCESS;
    }
    if (dwIndex >= printer->data.size()) {
        return ERROR_NO_MORE_ITEMS;
    }
    const DataValue& value = printer->data[dwIndex];
    *pcbValueName = NameSize(value);
    if (cbValueName < *pcbValueName) {
        return ERROR_MORE_DATA;
    }
    memcpy(pValueName, value.name.c_str(), *pcbValueName);
    if (!pData) {
        // The name alone was asked for.
        if (pType) {
            *pType = value.type;
        }
        *dataSize = static_cast<DWORD>(value.bytes.size());
        return ERROR_SUCCESS;
    }
    return CopyValue(value, pType, pData, cbData, dataSize);
}

}  // extern "C"
