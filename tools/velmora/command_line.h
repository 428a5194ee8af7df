// The workbench's command line.
#pragma once

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "tools/velmora/command_error.h"

namespace velmora {

// Runs a command line, without the program's name, and gives its ExitCode. `programFolder` is where the program lies in
// its build folder. A machine is opened for the time of the command; there must be none.
int RunCommandLine(const std::vector<std::string>& arguments, const std::filesystem::path& programFolder,
                   std::ostream& output, std::ostream& errors);

}  // namespace velmora
