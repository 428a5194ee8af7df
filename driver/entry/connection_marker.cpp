#include "driver/entry/connection_marker.h"

#include <algorithm>
#include <cstring>

#include "driver/base/text.h"
#include "driver/entry/printer_access.h"

namespace velmora {
namespace {

constexpr const WCHAR* kInstalledBy = TEXT("VMNetworkInstall");  // multi-string
constexpr DWORD kMarkingSystem = 4;

// A semaphore's name can't hold backslashes.
struct MarkerName {
    WCHAR text[MAX_PATH];

    explicit MarkerName(const WCHAR* printerName) {
        const size_t length = CopyText(text, ARRAYSIZE(text), printerName);
        std::replace(text, text + length, TEXT('\\'), TEXT('/'));
    }
};

struct ComputerName {
    WCHAR text[MAX_COMPUTERNAME_LENGTH + 1] = {};

    ComputerName() {
        DWORD length = ARRAYSIZE(text);
        GetComputerNameW(text, &length);
    }
};

// The installed computers as a multi-string that has room for one more, and its length without the last terminator.
// Empty where the value can't be read or there is no memory.
HeapOwner<WCHAR> ReadComputers(HANDLE printer, size_t* length) {
    DWORD size = 0;
    const HeapOwner<BYTE> value = ReadPrinterValue(printer, kInstalledBy, REG_MULTI_SZ, &size);
    if (!value && !IsPrinterValueEmpty(printer, kInstalledBy)) {
        return {};
    }
    auto computers = HeapOwner<WCHAR>::Allocate(size / sizeof(WCHAR) + MAX_COMPUTERNAME_LENGTH + size_t{4});
    *length = 0;
    if (computers && value) {
        const auto* text = reinterpret_cast<const WCHAR*>(value.Get());
        while (text[*length] != 0) {
            *length += TextLength(text + *length) + 1;
        }
        memcpy(computers.Get(), text, *length * sizeof(WCHAR));
    }
    return computers;
}

void WriteComputers(HANDLE printer, const WCHAR* computers, size_t length) {
    WritePrinterValue(printer, kInstalledBy, REG_MULTI_SZ, computers, (length + 1) * sizeof(WCHAR));
}

}  // namespace

bool SystemMarksConnections() {
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof(version);
    return GetVersionExW(&version) && version.dwMajorVersion == kMarkingSystem;
}

bool IsConnectionName(const WCHAR* printerName) {
    return NamesServer(printerName) && OwnServerLength(printerName) == 0;
}

bool HasConnectionMarker(const WCHAR* printerName) {
    const HANDLE marker = OpenSemaphoreW(SEMAPHORE_ALL_ACCESS, FALSE, MarkerName(printerName).text);
    if (marker) {
        CloseHandle(marker);
    }
    return marker != nullptr;
}

void CreateConnectionMarker(const WCHAR* printerName) {
    CreateSemaphoreW(nullptr, 1, 1, MarkerName(printerName).text);
}

NetworkInstall ReadNetworkInstall(HANDLE printer) {
    DWORD size = 0;
    const HeapOwner<BYTE> value = ReadPrinterValue(printer, kInstalledBy, REG_MULTI_SZ, &size);
    if (!value) {
        return IsPrinterValueEmpty(printer, kInstalledBy) ? NetworkInstall::kNone : NetworkInstall::kUnreadable;
    }
    const auto* text = reinterpret_cast<const WCHAR*>(value.Get());
    if (*text == 0) {
        return NetworkInstall::kNone;
    }
    const ComputerName computer;
    for (; *text != 0; text += TextLength(text) + 1) {
        if (TextsEqual<WCHAR>(text, computer.text)) {
            return NetworkInstall::kThisComputer;
        }
    }
    return NetworkInstall::kOthers;
}

void AddNetworkInstall(HANDLE printer) {
    size_t length = 0;
    const HeapOwner<WCHAR> computers = ReadComputers(printer, &length);
    const ComputerName computer;
    if (!computers || computer.text[0] == 0) {
        return;
    }
    length += CopyText<WCHAR>(computers.Get() + length, ARRAYSIZE(computer.text), computer.text) + 1;
    WriteComputers(printer, computers.Get(), length);
}

void RemoveNetworkInstall(HANDLE printer) {
    size_t length = 0;
    const HeapOwner<WCHAR> computers = ReadComputers(printer, &length);
    if (!computers || length == 0) {
        return;
    }
    const ComputerName computer;
    size_t kept = 0;
    for (size_t place = 0; place < length;) {
        const size_t next = place + TextLength(computers.Get() + place) + 1;
        if (!TextsEqual<WCHAR>(computers.Get() + place, computer.text)) {
            memmove(computers.Get() + kept, computers.Get() + place, (next - place) * sizeof(WCHAR));
            kept += next - place;
        }
        place = next;
    }
    if (kept == 0) {
        DeletePrinterDataW(printer, const_cast<WCHAR*>(kInstalledBy));
        return;
    }
    computers.Get()[kept] = 0;
    WriteComputers(printer, computers.Get(), kept);
}

}  // namespace velmora
