// The two validations of a device mode that comes from outside. Both repair small damage in place and reject at the
// third repair; what they repaired until then stays written. The public part is checked first, the private part only
// where the public part was accepted.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <span>

#include "driver/devdesc/device_model.h"
#include "driver/devmode/color_groups.h"
#include "driver/devmode/private_devmode.h"
#include "driver/entry/printer_access.h"

namespace velmora {

// What a validation did. Names are those of fields, or of an area such as "exceptionArea"; they are never freed.
struct ValidationReport {
    static constexpr size_t kRepairLimit = 3;  // the repair that rejects

    size_t repairs = 0;                       // may pass the limit where one check makes several
    const char* repaired[kRepairLimit] = {};  // see RepairedNames
    const char* rejectedBy = nullptr;         // what rejects whatever was repaired; null for nothing

    // Counts a repair that is made. False once the validation is over.
    bool CountRepair(const char* name) {
        if (repairs < kRepairLimit) {
            repaired[repairs] = name;
        }
        return ++repairs < kRepairLimit;
    }
    // False, as the validation is over.
    bool Reject(const char* name) {
        rejectedBy = name;
        return false;
    }
    // Of what was repaired, in order.
    std::span<const char* const> RepairedNames() const {
        return std::span(repaired).first(repairs < kRepairLimit ? repairs : kRepairLimit);
    }
    bool IsAccepted() const { return !rejectedBy && repairs < kRepairLimit; }
};

// Checks and repairs the public part. `model` may be null: the printer's own is then loaded; without one the device
// mode is rejected. Returns 1 where it is accepted, else 0. `report` may be null. Only the header up to dmFields is
// read of a device mode whose sizes aren't this driver's.
int ValidatePublicDevMode(HANDLE printer, DEVMODEW* devMode, const DeviceModel* model,
                          ValidationReport* report = nullptr);

// Checks and repairs the private part, 3868 bytes. `file` is the printer's description file, or the invalid handle: it
// is then opened; `model` as above. Returns 1 where it is accepted, else 0. `report` may be null.
int ValidatePrivateDevMode(HANDLE printer, PrivateDevMode* devMode, HANDLE file, const DeviceModel* model,
                           ValidationReport* report = nullptr);

// Checks a group's selections of colour-correction features, and sets those to 0 that the model's features don't have.
// Returns the number of repairs; stops at the third.
int ValidateColorOptions(const DeviceModel& model, const ColorGroup& group, PrivateDevMode* devMode);

// The validation of the public part with the model in hand. Asks the printer, and allocates, only where the driver
// version or the paper's size has to be repaired.
void CheckPublicDevMode(HANDLE printer, const DeviceModel& model, DEVMODEW* devMode, ValidationReport* report);

// What the private part is checked against besides the model.
struct PrivateFacts {
    WCHAR descriptionPath[MAX_PATH];  // of the printer's description file; empty where it has none
    bool hasPipelineConfig;
    DWORD dataFileSize;  // bytes of the printer data file, kNoPrinterDataFile where there is none
    uint16_t blobSize;   // bytes of the model's command blob
};
PrivateFacts ReadPrivateFacts(HANDLE printer, const DriverFiles& files, HANDLE file);
PrivateFacts ReadPrivateFacts(HANDLE printer, HANDLE file);

// The validation of the private part with all of that in hand. Asks nobody and allocates nothing.
void CheckPrivateDevMode(const PrivateFacts& facts, const DeviceModel& model, PrivateDevMode* devMode,
                         ValidationReport* report);

}  // namespace velmora
