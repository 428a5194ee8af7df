#include <iostream>
#include <memory>

#include "tools/xpic/byte_text.h"
#include "tools/xpic/commands.h"
#include "tools/xpic/compile.h"
#include "tools/xpic/dump_description.h"
#include "tools/xpic/file_content.h"

namespace velmora {
namespace {

// A folder that a source and its files are written to before they are put in place.
class StagingFolder {
  public:
    explicit StagingFolder(std::filesystem::path folder) : folder_(std::move(folder)) {
        if (!std::filesystem::create_directory(folder_)) {
            throw std::filesystem::filesystem_error("can't write into a folder that is already there", folder_,
                                                    std::make_error_code(std::errc::file_exists));
        }
    }
    ~StagingFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    StagingFolder(const StagingFolder&) = delete;
    StagingFolder& operator=(const StagingFolder&) = delete;

    const std::filesystem::path& Path() const { return folder_; }

  private:
    std::filesystem::path folder_;
};

// The faults of a dump's own source; none when it gives the bytes of the file.
int TellInternalFault(const CompileResult& result, const std::string& input) {
    for (const Diagnostic& diagnostic : result.diagnostics) {
        std::cerr << FormatDiagnostic(diagnostic) << "\n";
    }
    std::cerr << "xpic: internal fault: the source made of " << input
              << (result.Succeeded() ? " gives another file" : " doesn't compile") << ", nothing written\n";
    return kFault;
}

int DumpToFile(const Dump& dump, const Bytes& file, const std::string& input, const std::filesystem::path& output) {
    const StagingFolder staging(output.string() + ".new");
    const std::filesystem::path staged = staging.Path() / output.filename();
    for (const DataFile& data : dump.source.files) {
        WriteFileAtomically(staging.Path() / data.name, data.bytes);
    }
    WriteFileAtomically(staged, BytesOf(dump.source.text));
    const CompileResult result = CompileModel(staged);
    if (result.bytes != file) {
        return TellInternalFault(result, input);
    }
    for (const DataFile& data : dump.source.files) {
        std::filesystem::rename(staging.Path() / data.name, output.parent_path() / data.name);
    }
    std::filesystem::rename(staged, output);
    std::cout << input << ": " << output.string();
    if (const size_t count = dump.source.files.size(); count != 0) {
        std::cout << " and " << count << (count == 1 ? " file" : " files") << " beside it";
    }
    std::cout << "\n";
    return kDone;
}

int DumpFile(const std::string& input, const std::string& output) {
    const std::optional<std::string> content = ReadFileContent(input);
    if (!content) {
        std::cerr << "xpic: " << input << ": found no file that can be read, expected a description file\n";
        return kFault;
    }
    if (LooksLikeSource(*content)) {
        std::cerr << "xpic: " << input
                  << ": found a model source, expected a description file (.XPI); \"xpic build\" makes one of it\n";
        return kFault;
    }
    if (!output.empty()) {
        if (const std::optional<std::string> fault = OutputFault(output, {input})) {
            std::cerr << "xpic: " << *fault << "\n";
            return kBadCommandLine;
        }
    }
    const Bytes file = BytesOf(*content);
    const std::filesystem::path outputFile = output;
    const std::string comment = "Made of " + std::filesystem::path(input).filename().string() + " by xpic dump.";
    const Dump dump = DumpDescription(file, comment, outputFile.stem().string());
    for (const Finding& finding : dump.findings) {
        if (finding.severity != Severity::kNote) {
            std::cerr << FormatFinding(finding, input) << "\n";
        }
    }
    if (HasErrors(dump.findings)) {
        std::cerr << "xpic: no well-formed description file, nothing written\n";
        return kFault;
    }
    if (!output.empty()) {
        return DumpToFile(dump, file, input, outputFile);
    }
    const CompileResult result = CompileModelText(dump.source.text, "source");
    if (result.bytes != file) {
        return TellInternalFault(result, input);
    }
    std::cout << dump.source.text;
    return kDone;
}

}  // namespace

void AddDumpCommand(CLI::App& app, int& exitCode) {
    struct Arguments {
        std::string input;
        std::string output;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* dump = app.add_subcommand("dump", "Write the model source that a description file was made of");
    dump->add_option("description", arguments->input, "The description file (.XPI)")->required();
    dump->add_option(
        "-o,--output", arguments->output,
        "The model source to write (JSON); large data goes into files beside it. Default: standard output");
    dump->callback([arguments, &exitCode] { exitCode = DumpFile(arguments->input, arguments->output); });
}

}  // namespace velmora
