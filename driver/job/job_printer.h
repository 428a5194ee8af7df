// What the blocks of a job are made for: an opened printer with its model, and what is installed on it.
#pragma once

#include <windows.h>

#include "driver/devdesc/device_model.h"
#include "driver/devmode/private_devmode.h"
#include "driver/settings/device_info.h"

namespace velmora {

struct JobPrinter {
    HANDLE printer;
    const WCHAR* name;       // as the caller knows it
    HANDLE descriptionFile;  // the printer's, open for reading
    const DeviceModel& model;
};

// A feature's job line: the texts of its key and of the selected option's value. Reads of the file, 127 bytes each.
struct FeatureLine {
    uint16_t keyRef;
    uint16_t valueRef;  // 0: the feature has no line
};

// The line of feature `index` of the model's table by its entry of featureSelection. No line where the printer lacks
// what the feature needs, where the selection names no option, and for features that a device mode has no entry for.
FeatureLine SelectedFeatureLine(const DeviceModel& model, const FeatureRecord& feature, size_t index,
                                const DeviceInfo& installed, const PrivateDevMode& devMode);

// The line of a feature's option at `option`, whatever is selected. No line where it has none.
FeatureLine LineOfOption(const DeviceModel& model, const FeatureRecord& feature, int option);

}  // namespace velmora
