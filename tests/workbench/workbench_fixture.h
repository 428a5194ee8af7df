// A folder of its own for each test, with a model source and a machine that commands make and keep there.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

struct Outcome {
    int exitCode;
    std::string output;
    std::string errors;
};

// The folder of the workbench's program.
std::filesystem::path ProgramFolder();

class WorkbenchTest : public testing::Test {
  protected:
    WorkbenchTest();
    ~WorkbenchTest() override;

    // The test's folder.
    const std::filesystem::path& Folder() const { return folder_; }
    // Where Run's machine is kept.
    std::filesystem::path MachineFolder() const { return folder_ / "machine"; }
    // The driver's files on that machine.
    std::vector<std::string> InstalledFiles() const;

    // A model source in the test's folder: "Probe 9", a monochrome PCL 6 model in English and German, with each `{from,
    // to}` put in place of the text.
    std::string WriteSource(const std::string& fileName = "probe.json",
                            std::initializer_list<std::pair<std::string_view, std::string_view>> changes = {}) const;

    // Runs a command on the test's machine.
    Outcome Run(std::vector<std::string> arguments) const;
    // The same, which must succeed without a word about errors; its output.
    std::string Succeed(std::vector<std::string> arguments) const;
    // With --json.
    nlohmann::json Json(std::vector<std::string> arguments) const;
    // The same, which must fail with exit code 1 and print nothing; its message.
    std::string Fail(std::vector<std::string> arguments) const;

    std::vector<std::string> PrinterNames() const;

  private:
    std::filesystem::path folder_;
};

}  // namespace velmora
