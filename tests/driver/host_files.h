// What the hosts that tests run on, the platform layer and Wine, do each in its own way.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "tests/driver/wide_text.h"

namespace driver_test {

// Where a file of the machine, such as C:\x\y.txt, lies for the C++ library. Throws std::runtime_error for a path that
// isn't on the machine's drive.
std::filesystem::path DrivePath(const WideText& path);

// A library that the host loads, of compiled resources (.res).
std::string ModuleOf(const std::string& resources);

// The library's own place in a driver package: what the spooler of the host is content with.
std::string ConfigurationFile();

// Lets the driver's calls that the host lacks lead to stand-ins, before the first of them; `printer` is open for
// administering.
void MendCalls(HANDLE printer);

// What is open on the machine, as host::StillOpen tells it; null where the host can't tell.
std::optional<std::vector<std::string>> WhatIsOpen();

}  // namespace driver_test
