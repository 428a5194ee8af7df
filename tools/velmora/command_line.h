// The workbench's command line.
#pragma once

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

namespace velmora {

// Exit codes. Of a command that answers yes or no, 1 is no, and 2 is also that it failed.
enum ExitCode { kDone = 0, kFailed = 1, kNo = 1, kUsage = 2 };

// Runs a command line, without the program's name. `programFolder` is where the program lies in its build folder. A
// machine is opened for the time of the command; there must be none.
int RunCommandLine(const std::vector<std::string>& arguments, const std::filesystem::path& programFolder,
                   std::ostream& output, std::ostream& errors);

}  // namespace velmora
