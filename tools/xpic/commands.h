// The subcommands of xpic.
#pragma once

#include <CLI/CLI.hpp>

namespace velmora {

// What xpic ends with. A command line that can't be understood is told by the command line's own reader.
enum ExitCode : int {
    kDone = 0,
    kFault = 1,  // the source or a file is at fault
    kBadCommandLine = 2,
    kWarned = 3,  // the worst that the checker found is a warning
};

// Each adds its subcommand, which sets the code when it was run.
void AddBuildCommand(CLI::App& app, int& exitCode);
void AddCheckCommand(CLI::App& app, int& exitCode);
void AddDumpCommand(CLI::App& app, int& exitCode);

}  // namespace velmora
