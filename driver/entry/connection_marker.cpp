#include "driver/entry/connection_marker.h"

#include <algorithm>

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

bool IsEmptyOrAbsent(HANDLE printer) {
    DWORD type = REG_NONE;
    DWORD needed = 0;
    const DWORD result = GetPrinterDataW(printer, const_cast<WCHAR*>(kInstalledBy), &type, nullptr, 0, &needed);
    return result == ERROR_FILE_NOT_FOUND || (result == ERROR_SUCCESS && needed == 0);
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
        return IsEmptyOrAbsent(printer) ? NetworkInstall::kNone : NetworkInstall::kUnreadable;
    }
    const auto* text = reinterpret_cast<const WCHAR*>(value.Get());
    if (*text == 0) {
        return NetworkInstall::kNone;
    }
    WCHAR computer[MAX_COMPUTERNAME_LENGTH + 1] = {};
    DWORD length = ARRAYSIZE(computer);
    GetComputerNameW(computer, &length);
    for (; *text != 0; text += TextLength(text) + 1) {
        if (TextsEqual<WCHAR>(text, computer)) {
            return NetworkInstall::kThisComputer;
        }
    }
    return NetworkInstall::kOthers;
}

}  // namespace velmora
