#include "driver/settings/device_info.h"

#include "driver/entry/printer_access.h"
#include "driver/settings/ini_keys.h"
#include "driver/settings/settings_folder.h"

namespace velmora {
namespace {

constexpr const WCHAR* kValueName = TEXT("DeviceInfo");
constexpr const WCHAR* kSection = TEXT("DeviceInfo");

}  // namespace

HeapOwner<DeviceInfo> GetDeviceInfo(HANDLE printer, const DeviceModel* model) {
    auto info = HeapOwner<DeviceInfo>::Allocate();
    if (!info) {
        return info;
    }
    DWORD type = REG_NONE;
    DWORD size = 0;
    if (GetPrinterDataW(printer, const_cast<WCHAR*>(kValueName), &type, reinterpret_cast<BYTE*>(info.Get()),
                        sizeof(DeviceInfo), &size) == ERROR_SUCCESS &&
        type == REG_BINARY && size == sizeof(DeviceInfo)) {
        return info;
    }
    *info = {};
    if (model) {
        info->installedOptions = model->defaultOptionMask;
        info->memoryKey = static_cast<uint32_t>(model->memoryKeyBase + model->memoryKeyStep);
    }
    WCHAR iniFile[MAX_PATH];
    if (FindDriverIniFile(printer, iniFile)) {
        ReadDeviceInfoDefaults(iniFile, info.Get());
    }
    return info;
}

bool SetDeviceInfo(HANDLE printer, const DeviceInfo& info) {
    return WritePrinterValue(printer, kValueName, REG_BINARY, &info, sizeof(info));
}

void ReadDeviceInfoDefaults(const WCHAR* iniFile, DeviceInfo* info) {
    struct Key {
        const WCHAR* name;
        uint32_t* value;
        bool isHex;
    };
    const Key keys[] = {
        {TEXT("Sources"), &info->installedOptions, true},
        {TEXT("Destinations"), &info->secondTray, true},
        {TEXT("Options"), &info->optionFlags, true},
        {TEXT("TotalMemory"), &info->memoryKey, false},
    };
    for (const Key& key : keys) {
        *key.value = key.isHex ? ReadHexKey(kSection, key.name, *key.value, iniFile)
                               : GetPrivateProfileIntW(kSection, key.name, static_cast<INT>(*key.value), iniFile);
    }
}

}  // namespace velmora
