// What a device can't print: the constraint records of its model against the settings of a job.
#pragma once

#include <windows.h>

#include <cstddef>

#include "driver/devdesc/device_model.h"
#include "driver/devmode/private_devmode.h"
#include "driver/settings/device_info.h"

namespace velmora {

// What constraints are checked against.
struct PrintableSettings {
    HANDLE printer;  // for the sizes of the user's own papers
    const DeviceModel& model;
    const DeviceInfo& installed;
    const VelmoraDevMode& devMode;
    size_t userPapers;  // custom sizes and forms, whose ids begin with kFirstCustomPaper
};

// The first record that holds for the job's own sheets or, if none does, for its front cover, back cover, interleaved
// sheets or separators; null where the device can print everything.
const ConstraintRecord* FindConflict(const PrintableSettings& settings);

}  // namespace velmora
