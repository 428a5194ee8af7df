// The program itself: what one process stores the next one finds, and several at once don't harm the machine.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "tests/workbench/workbench_fixture.h"

namespace velmora {
namespace {

class ProcessTest : public WorkbenchTest {
  protected:
    // Starts the program on the test's machine; its output goes to a file of the test's folder.
    pid_t Start(std::vector<std::string> arguments, const std::string& outputFile) {
        arguments.insert(arguments.begin(), {VELMORA_PROGRAM, "--machine", MachineFolder().string()});
        std::vector<char*> argv;
        for (std::string& argument : arguments) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        const std::string output = (Folder() / outputFile).string();
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        pid_t process = -1;
        const int error = posix_spawn(&process, VELMORA_PROGRAM, &actions, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        EXPECT_EQ(error, 0);
        return process;
    }

    static int Wait(pid_t process) {
        int status = -1;
        EXPECT_EQ(waitpid(process, &status, 0), process);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::string Output(const std::string& outputFile) const {
        std::ifstream stream(Folder() / outputFile, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
};

TEST_F(ProcessTest, AMachineOutlivesItsProcess) {
    ASSERT_EQ(Wait(Start({"install", WriteSource()}, "install")), 0);
    EXPECT_TRUE(Output("install").starts_with("installed printer \"Probe 9\", driver PROBE\n"));
    ASSERT_EQ(Wait(Start({"devmode", "Probe 9", "--json"}, "devmode")), 0);
    const nlohmann::json devMode = nlohmann::json::parse(Output("devmode"));
    EXPECT_EQ(devMode.at("private").at("modelCode").at("value"), 909);
    EXPECT_EQ(Wait(Start({"remove", "Nope"}, "remove")), 1);
    EXPECT_EQ(Wait(Start({"remove"}, "remove")), 2);
    EXPECT_EQ(PrinterNames(), std::vector<std::string>{"Probe 9"});
}

TEST_F(ProcessTest, SeveralAtOnceDontHarmTheMachine) {
    const std::string source = WriteSource();
    std::vector<std::string> names;
    std::vector<pid_t> processes;
    for (int i = 0; i < 6; ++i) {
        names.push_back("Printer " + std::to_string(i));
        processes.push_back(Start({"install", source, "--name", names.back()}, names.back()));
        processes.push_back(Start({"printers", "--json"}, "list"));
    }
    for (const pid_t process : processes) {
        EXPECT_EQ(Wait(process), 0);
    }
    std::vector<std::string> installed = PrinterNames();
    std::ranges::sort(installed);
    EXPECT_EQ(installed, names);
    EXPECT_EQ(Json({"devmode", "Printer 3"}).at("private").at("modelCode").at("value"), 909);
}

}  // namespace
}  // namespace velmora
