#include "driver/settings/device_info.h"

#include "driver/settings/ini_keys.h"
#include "driver/settings/settings_folder.h"

namespace velmora {
namespace {

constexpr const WCHAR* kSection = TEXT("DeviceInfo");

}  // namespace

DeviceInfo DefaultDeviceInfo(const DriverFiles& files, const DeviceModel* model) {
    DeviceInfo info = {};
    if (model) {
        info.installedOptions = model->defaultOptionMask;
        info.memoryKey = static_cast<uint32_t>(model->memoryKeyBase + model->memoryKeyStep);
    }
    WCHAR iniFile[MAX_PATH];
    if (FindDriverIniFile(files, iniFile)) {
        ReadDeviceInfoDefaults(iniFile, &info);
    }
    return info;
}

DeviceInfo DefaultDeviceInfo(HANDLE printer, const DeviceModel* model) {
    return DefaultDeviceInfo(DriverFiles(printer), model);
}

DeviceInfo ReadDeviceInfo(HANDLE printer, const DriverFiles& files, const DeviceModel* model) {
    DeviceInfo info = {};
    return ReadPrinterRecord(printer, kDeviceInfoValue, REG_BINARY, &info, sizeof(info))
               ? info
               : DefaultDeviceInfo(files, model);
}

DeviceInfo ReadDeviceInfo(HANDLE printer, const DeviceModel* model) {
    DeviceInfo info = {};
    return ReadPrinterRecord(printer, kDeviceInfoValue, REG_BINARY, &info, sizeof(info))
               ? info
               : DefaultDeviceInfo(printer, model);
}

HeapOwner<DeviceInfo> GetDeviceInfo(HANDLE printer, const DeviceModel* model) {
    auto info = HeapOwner<DeviceInfo>::Allocate();
    if (info) {
        *info = ReadDeviceInfo(printer, model);
    }
    return info;
}

bool SetDeviceInfo(HANDLE printer, const DeviceInfo& info) {
    return WritePrinterValue(printer, kDeviceInfoValue, REG_BINARY, &info, sizeof(info));
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
