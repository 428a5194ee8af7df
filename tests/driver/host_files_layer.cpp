// The platform layer: it loads compiled resources as they are, and no driver.
#include <stdexcept>

#include "platform/host.h"
#include "platform/kernel/drive.h"
#include "tests/driver/host_files.h"

namespace driver_test {

std::filesystem::path DrivePath(const WideText& path) {
    const auto hostPath = host::HostPath(path);
    if (!hostPath) {
        throw std::runtime_error("no path of the drive");
    }
    return *hostPath;
}

std::string ModuleOf(const std::string& resources) {
    return resources;
}

std::string ConfigurationFile() {
    return "no library";
}

void MendCalls(HANDLE) {}

std::optional<std::vector<std::string>> WhatIsOpen() {
    return host::StillOpen();
}

}  // namespace driver_test
