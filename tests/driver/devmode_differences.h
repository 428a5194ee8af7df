// Comparing device modes so that a difference is told by field.
#pragma once

#include <string>
#include <vector>

#include "driver/devmode/private_devmode.h"

namespace driver_test {

// One line for each field whose bytes differ, and one for each differing byte that belongs to no field.
std::vector<std::string> Differences(const velmora::VelmoraDevMode& expected, const velmora::VelmoraDevMode& actual);

}  // namespace driver_test
