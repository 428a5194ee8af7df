#include <iostream>
#include <memory>

#include "tools/xpic/commands.h"
#include "tools/xpic/compile.h"
#include "tools/xpic/file_content.h"

namespace velmora {
namespace {

int Build(const std::string& source, const std::string& output) {
    const CompileResult result = CompileModel(source);
    std::vector<std::filesystem::path> inputs = result.document.files;
    if (result.model) {
        inputs.insert(inputs.end(), result.model->dataFiles.begin(), result.model->dataFiles.end());
    }
    if (const std::optional<std::string> fault = OutputFault(output, inputs)) {
        std::cerr << "xpic: " << *fault << "\n";
        return kBadCommandLine;
    }
    for (const Diagnostic& diagnostic : result.diagnostics) {
        std::cerr << FormatDiagnostic(diagnostic) << "\n";
    }
    if (!result.Succeeded()) {
        std::cerr << "xpic: " << result.diagnostics.size()
                  << (result.diagnostics.size() == 1 ? " fault, " : " faults, ") << output << " not written\n";
        return kFault;
    }
    WriteFileAtomically(output, result.bytes);
    std::cout << (result.ModelName().empty() ? source : result.ModelName()) << ": " << output << ", "
              << result.bytes.size() << " bytes\n";
    return kDone;
}

}  // namespace

void AddBuildCommand(CLI::App& app, int& exitCode) {
    struct Arguments {
        std::string source;
        std::string output;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* build = app.add_subcommand("build", "Compile a model source to a description file");
    build->add_option("source", arguments->source, "The model source (JSON, see docs/models.md)")->required();
    build->add_option("-o,--output", arguments->output, "The description file to write (.XPI)")->required();
    build->callback([arguments, &exitCode] { exitCode = Build(arguments->source, arguments->output); });
}

}  // namespace velmora
