// xpic, the model compiler's command. Exit codes: 0 done, 1 the source or a file is at fault, 2 the command line is.
#include <CLI/CLI.hpp>
#include <iostream>

#include "tools/xpic/compile.h"

namespace {

int Build(const std::string& source, const std::string& output) {
    const velmora::CompileResult result = velmora::CompileModel(source);
    for (const velmora::Diagnostic& diagnostic : result.diagnostics) {
        std::cerr << velmora::FormatDiagnostic(diagnostic) << "\n";
    }
    if (!result.Succeeded()) {
        std::cerr << "xpic: " << result.diagnostics.size()
                  << (result.diagnostics.size() == 1 ? " fault, " : " faults, ") << output << " not written\n";
        return 1;
    }
    velmora::WriteFileAtomically(output, result.bytes);
    std::cout << (result.modelName.empty() ? source : result.modelName) << ": " << output << ", " << result.bytes.size()
              << " bytes\n";
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("Compiles printer model sources to description files.", "xpic");
    app.require_subcommand(1);
    std::string source;
    std::string output;
    CLI::App* build = app.add_subcommand("build", "Compile a model source to a description file");
    build->add_option("source", source, "The model source (JSON, see docs/models.md)")->required();
    build->add_option("-o,--output", output, "The description file to write (.XPI)")->required();
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    try {
        return Build(source, output);
    } catch (const std::exception& error) {
        std::cerr << "xpic: " << error.what() << "\n";
        return 1;
    }
}
