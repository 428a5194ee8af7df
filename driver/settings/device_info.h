// The installed options of a printer, kept in its printer data.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/base/heap.h"
#include "driver/devdesc/device_model.h"
#include "driver/entry/printer_access.h"

namespace velmora {

#pragma pack(push, 1)

// Printer-data value "DeviceInfo", binary, 16 bytes.
struct DeviceInfo {
    uint32_t installedOptions;  // option mask; a tray is offered only where its mask shares a bit with it
    uint32_t secondTray;        // second paper tray: 1 installed, 0 not, 0xFFFFFFFF not applicable
    uint32_t optionFlags;       // DeviceInfoOption bits; 0xFFFFFFFF where a duplex unit isn't applicable
    uint32_t memoryKey;         // key into the model's memory table
};

#pragma pack(pop)

static_assert(offsetof(DeviceInfo, installedOptions) == 0);
static_assert(offsetof(DeviceInfo, secondTray) == 4);
static_assert(offsetof(DeviceInfo, optionFlags) == 8);
static_assert(offsetof(DeviceInfo, memoryKey) == 12);
static_assert(sizeof(DeviceInfo) == 16);

// Bit values of DeviceInfo.optionFlags.
enum DeviceInfoOption : uint32_t {
    kDuplexInstalled = 1u << 0,
    kExtraInstalled = 1u << 1,
    kBorderlessInstalled = 1u << 3,
    kStaplerInstalled = 1u << 4,
};

// Whether a printer has a duplex unit. The other options of DeviceInfo.optionFlags say nothing of it: it is the lowest
// bit alone, unless the whole low byte says that the model can't have one.
enum class DuplexUnit : int8_t { kNotApplicable = -1, kNotInstalled = 0, kInstalled = 1 };
constexpr DuplexUnit DuplexUnitOf(const DeviceInfo& info) {
    if ((info.optionFlags & 0xFF) == 0xFF) {
        return DuplexUnit::kNotApplicable;
    }
    return (info.optionFlags & kDuplexInstalled) != 0 ? DuplexUnit::kInstalled : DuplexUnit::kNotInstalled;
}

// The printer-data value that holds the record.
inline constexpr const WCHAR* kDeviceInfoValue = TEXT("DeviceInfo");

// The installed options that a printer begins with: the model's defaults (all 0 where `model` is null) as the driver's
// INI data file overrides them.
DeviceInfo DefaultDeviceInfo(const DriverFiles& files, const DeviceModel* model);
DeviceInfo DefaultDeviceInfo(HANDLE printer, const DeviceModel* model);

// The printer's installed options: the stored record, or the default one.
DeviceInfo ReadDeviceInfo(HANDLE printer, const DriverFiles& files, const DeviceModel* model);
DeviceInfo ReadDeviceInfo(HANDLE printer, const DeviceModel* model);

// The same in a block of its own; empty where there is no memory.
HeapOwner<DeviceInfo> GetDeviceInfo(HANDLE printer, const DeviceModel* model);

// Stores the record. False where the spooler refuses it.
bool SetDeviceInfo(HANDLE printer, const DeviceInfo& info);

// Overrides the record with what the section "DeviceInfo" of an INI file holds.
void ReadDeviceInfoDefaults(const WCHAR* iniFile, DeviceInfo* info);

}  // namespace velmora
