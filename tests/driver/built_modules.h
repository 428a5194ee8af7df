// The resource modules as the build makes them.
#pragma once

#include <vector>

#include "tests/driver/package.h"

namespace driver_test {

// The language modules under their names, KV62ENUS.DLL first.
std::vector<PackageFile> BuiltLanguageModules();

// Puts them into a package in place of its own, with the image module and the render library beside which the driver
// looks for it.
void UseBuiltModules(DriverPackage& package);

}  // namespace driver_test
