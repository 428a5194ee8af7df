#include "driver/entry/spool_directory.h"

#include "driver/base/format.h"
#include "driver/base/text.h"
#include "driver/devdesc/description_file.h"
#include "driver/entry/printer_access.h"

namespace velmora {
namespace {

bool SystemKeepsSpoolDirectories() {
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof(version);
    return GetVersionExW(&version) &&
           (version.dwMajorVersion > 5 || (version.dwMajorVersion == 5 && version.dwMinorVersion != 0));
}

bool IsImagePrinter(HANDLE printer) {
    const OwnedFile file = OpenDescriptionFile(printer);
    const HeapOwner<DeviceModel> model = LoadDeviceModel(file.Get());
    return model && model->pdlType == kPdlImage;
}

}  // namespace

void RegisterSpoolDirectory(HANDLE printer, const WCHAR* printerName) {
    WCHAR directory[MAX_PATH];
    if (!SystemKeepsSpoolDirectories() || !IsImagePrinter(printer) ||
        !ReadPrinterString(printer, TEXT("DefaultSpoolDirectory"), directory, ARRAYSIZE(directory))) {
        return;
    }
    WCHAR deviceName[MAX_PATH];
    WCHAR keyName[2 * MAX_PATH];
    DeviceNameFromPrinterName(deviceName, printerName, ARRAYSIZE(deviceName));
    FormatWide(keyName, ARRAYSIZE(keyName), TEXT("SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\%s"),
               deviceName);
    HKEY opened = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, keyName, 0, KEY_SET_VALUE, &opened) != ERROR_SUCCESS) {
        return;
    }
    const OwnedRegistryKey key(opened);
    RegSetValueExW(key.Get(), TEXT("SpoolDirectory"), 0, REG_SZ, reinterpret_cast<const BYTE*>(directory),
                   static_cast<DWORD>((TextLength(directory) + 1) * sizeof(WCHAR)));
}

}  // namespace velmora
