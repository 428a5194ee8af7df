// xpic, the model compiler's command.
#include <iostream>

#include "tools/xpic/commands.h"

int main(int argc, char** argv) {
    CLI::App app("Compiles and checks printer models.", "xpic");
    app.require_subcommand(1);
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
