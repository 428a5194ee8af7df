// The program as scripts call it: exit codes, JSON, and what stands in the folder afterwards.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "tools/xpic/file_content.h"

namespace velmora {
namespace {

class Command : public ::testing::Test {
  protected:
    Command() {
        std::string name = (std::filesystem::temp_directory_path() / "xpic-XXXXXX").string();
        folder_ = mkdtemp(name.data());
        Put("good.json", R"({"pdl": "xps", "pagesPerMinute": 1, "papers": ["A4"]})");
        Put("noted.json",
            R"({"pdl": "xps", "papers": ["A4"], "margins": [{"allMm": 4}], "trays": [{"name": "T", "bin": 1}],
                              "resolutions": [{"name": "1", "dpi": 300}, {"name": "2", "dpi": 600}]})");
        Put("broken.json", R"({"pdl": "xsp"})");
        std::filesystem::create_directory(folder_ / "folder");
    }
    ~Command() override { std::filesystem::remove_all(folder_); }

    void Put(const std::string& file, std::string_view text) const { std::ofstream(folder_ / file) << text; }

    // The program's exit code; `output` receives all that it prints.
    int Run(const std::string& arguments, std::string* output) const {
        const std::string line = "cd " + folder_.string() + " && " VELMORA_XPIC " " + arguments + " 2>&1";
        FILE* const stream = popen(line.c_str(), "r");
        std::array<char, 4096> part;
        output->clear();
        for (size_t size; (size = fread(part.data(), 1, part.size(), stream)) != 0;) {
            output->append(part.data(), size);
        }
        const int status = pclose(stream);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::filesystem::path folder_;
};

TEST_F(Command, ExitCodesTellScripts) {
    const std::string source = *ReadFileContent(folder_ / "good.json");
    const struct {
        const char* arguments;
        int code;
        const char* says;
    } kCalls[] = {
        {"build good.json -o good.XPI", 0, "good.XPI"},
        {"build broken.json -o broken.XPI", 1,
         "broken.json:1:2: $.pdl: found \"xsp\", expected a word, nearest \"xps\""},
        {"build nowhere.json -o x.XPI", 1, "no file that can be read"},
        {"build good.json -o good.json", 2, "good.json would be written over good.json"},
        {"build good.json -o folder", 2, "names a folder"},
        {"build good.json -o nowhere/x.XPI", 2, "there is no folder nowhere"},
        {"build good.XPI -o x.XPI", 1, "\"xpic dump\" makes one of a description file"},
        {"build good.json", 2, "--output is required"},
        {"check noted.json", 0, "1 file: 0 errors, 0 warnings"},
        {"check noted.json --level warning", 0, ""},
        {"check good.json", 3, "warning: $.trays: there are no trays"},
        {"check good.XPI", 3, "good.XPI: warning: $.trays"},
        {"check broken.json noted.json", 1, "2 files: 1 error"},
        {"check nowhere.json", 1, "unreadable"},
        {"check --level loud good.json", 2, "loud"},
        {"dump good.json", 1, "found a model source"},
        {"dump good.XPI -o good.XPI", 2, "would be written over"},
        {"dump good.XPI -o dumped.json", 0, "dumped.json"},
        {"build dumped.json -o dumped.XPI", 0, "dumped.XPI"},
        {"guess", 2, ""},
    };
    std::string output;
    for (const auto& call : kCalls) {
        EXPECT_EQ(Run(call.arguments, &output), call.code) << call.arguments << "\n" << output;
        EXPECT_NE(output.find(call.says), std::string::npos) << call.arguments << "\n" << output;
    }
    EXPECT_EQ(ReadFileContent(folder_ / "good.json"), source);
    EXPECT_EQ(ReadFileContent(folder_ / "dumped.XPI"), ReadFileContent(folder_ / "good.XPI"));
    EXPECT_FALSE(std::filesystem::exists(folder_ / "broken.XPI"));
}

TEST_F(Command, FindingsAsJson) {
    std::string output;
    EXPECT_EQ(Run("check --json --level warning good.json", &output), 3);
    // The summary stands behind it, for people.
    const nlohmann::json findings = nlohmann::json::parse(output.substr(0, output.rfind(']') + 1));
    ASSERT_FALSE(findings.empty());
    for (const nlohmann::json& finding : findings) {
        EXPECT_EQ(finding.at("level"), "warning");
        EXPECT_EQ(finding.at("file"), "good.json");
        EXPECT_EQ(finding.at("line"), 1);
        for (const char* text : {"code", "path", "what", "why"}) {
            EXPECT_FALSE(finding.at(text).get<std::string>().empty()) << text;
        }
    }
}

}  // namespace
}  // namespace velmora
