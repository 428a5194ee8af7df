// Device modes in files: the bytes as they are, nothing before or behind them.
#pragma once

#include <filesystem>
#include <vector>

#include "driver/devmode/private_devmode.h"

namespace velmora {

// Throws a CommandError for what can't be read and for a file of another size. No byte of it is judged.
VelmoraDevMode ReadDevModeFile(const std::filesystem::path& file);

// As WriteOutputFile.
void WriteDevModeFile(const std::filesystem::path& file, const VelmoraDevMode& devMode,
                      const std::vector<std::filesystem::path>& inputs = {});

}  // namespace velmora
