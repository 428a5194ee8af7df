// Device modes that differ from another in some fields, by the names of their fields.
#pragma once

#include <string>

#include "driver/devmode/private_devmode.h"

namespace driver_test {

// A copy of the device mode with other numbers in some fields, the first element of each: "dmCopies=3 psContrast=-9".
// Throws std::invalid_argument where there is no such field or a setting can't be read.
velmora::VelmoraDevMode With(const velmora::VelmoraDevMode& devMode, const std::string& settings);

}  // namespace driver_test
