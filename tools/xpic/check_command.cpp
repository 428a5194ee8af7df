#include <array>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "tools/xpic/check_file.h"
#include "tools/xpic/commands.h"

namespace velmora {
namespace {

constexpr Severity kLevels[] = {Severity::kError, Severity::kWarning, Severity::kNote};

struct CheckArguments {
    std::vector<std::string> files;
    std::string lowest = "note";  // the name of a level
    bool json = false;
};

std::string Count(size_t count, std::string_view noun) {
    return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

nlohmann::ordered_json ToJson(const Finding& finding, const std::string& file) {
    nlohmann::ordered_json object;
    object["checked"] = file;
    object["file"] = finding.file.empty() ? file : finding.file;
    if (finding.position.line != 0) {
        object["line"] = finding.position.line;
        object["column"] = finding.position.column;
    }
    object["level"] = NameOf(finding.severity);
    object["code"] = finding.code;
    object["path"] = finding.path;
    object["what"] = finding.what;
    object["why"] = finding.why;
    return object;
}

int Check(const CheckArguments& arguments) {
    Severity lowest = Severity::kNote;
    for (Severity severity : kLevels) {
        lowest = NameOf(severity) == arguments.lowest ? severity : lowest;
    }
    std::array<size_t, std::size(kLevels)> counts{};  // by severity
    nlohmann::ordered_json shown = nlohmann::ordered_json::array();
    for (const std::string& file : arguments.files) {
        for (const Finding& finding : CheckFile(file)) {
            ++counts[static_cast<size_t>(finding.severity)];
            if (finding.severity < lowest) {
                continue;
            }
            if (arguments.json) {
                shown.push_back(ToJson(finding, file));
            } else {
                std::cout << FormatFinding(finding, file) << "\n";
            }
        }
    }
    if (arguments.json) {
        std::cout << shown.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << "\n";
    }
    std::cerr << Count(arguments.files.size(), "file") << ":";
    for (Severity severity : kLevels) {
        std::cerr << (severity == kLevels[0] ? " " : ", ")
                  << Count(counts[static_cast<size_t>(severity)], NameOf(severity));
    }
    std::cerr << "\n";
    return counts[static_cast<size_t>(Severity::kError)] != 0     ? kFault
           : counts[static_cast<size_t>(Severity::kWarning)] != 0 ? kWarned
                                                                  : kDone;
}

}  // namespace

void AddCheckCommand(CLI::App& app, int& exitCode) {
    const auto arguments = std::make_shared<CheckArguments>();
    CLI::App* check = app.add_subcommand("check", "Tell what is wrong with models and what will hurt");
    check->add_option("files", arguments->files, "Model sources (.json) and description files (.XPI)")->required();
    std::vector<std::string> levels;
    for (Severity severity : kLevels) {
        levels.emplace_back(NameOf(severity));
    }
    check->add_option("--level", arguments->lowest, "The lowest level shown (default: note)")
        ->check(CLI::IsMember(levels));
    check->add_flag("--json", arguments->json, "Print an array of objects");
    check->callback([arguments, &exitCode] { exitCode = Check(*arguments); });
}

}  // namespace velmora
