// xpic, the model compiler's command.
#include <iostream>

#include "tools/xpic/commands.h"

int main(int argc, char** argv) {
    CLI::App app("Compiles and checks printer models.", "xpic");
    app.require_subcommand(1);
    app.footer(
        "Example: xpic build models/velmora-c3200.json -o VELMORA-C3200.XPI\n"
        "Exit codes: 0 done, 1 a source or a file is at fault, 2 the command line is, 3 the worst that check found is "
        "a "
        "warning");
    int exitCode = velmora::kDone;
    velmora::AddBuildCommand(app, exitCode);
    velmora::AddCheckCommand(app, exitCode);
    velmora::AddDumpCommand(app, exitCode);
    try {
        app.parse(argc, argv);
        return exitCode;
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? velmora::kDone : velmora::kBadCommandLine;
    } catch (const std::exception& error) {
        std::cerr << "xpic: " << error.what() << "\n";
        return velmora::kFault;
    }
}
