// The machine that a command works on, and what its command line sets on it.
#pragma once

#include <windows.h>

#include <filesystem>
#include <optional>
#include <string>

#include "platform/host.h"

namespace velmora {

// What isn't given stays as the machine has it.
struct MachineSettings {
    std::optional<LANGID> language;
    std::optional<bool> isMetric;
    struct Version {
        DWORD major;
        DWORD minor;
    };
    std::optional<Version> systemVersion;
    std::optional<std::string> computerName;
};

void Apply(const MachineSettings& settings, host::Machine& machine);

// Empty where the text is none.
std::optional<LANGID> ParseLanguage(const std::string& text);                   // "de", "GERM" or "0x0407"
std::optional<bool> ParseMeasurement(const std::string& text);                  // "metric" (true) or "us"
std::optional<MachineSettings::Version> ParseVersion(const std::string& text);  // "10.0"
std::optional<std::string> ParseComputerName(const std::string& text);          // 1 to 15 characters

// Below the user's data folder. Throws a CommandError where the environment names none.
std::filesystem::path DefaultMachineFolder();

}  // namespace velmora
