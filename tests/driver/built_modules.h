// The resource modules as the build makes them.
#pragma once

#include <vector>

#include "tests/driver/package.h"

namespace driver_test {

// The language modules under their names, KV62ENUS.DLL first.
std::vector<PackageFile> BuiltLanguageModules();

// Puts them into a package in place of its own, with the image module, the render library beside which the driver looks
// for it, and the program for watermarks, which runs where the machine is given a function for it.
void UseBuiltModules(DriverPackage& package);

}  // namespace driver_test
