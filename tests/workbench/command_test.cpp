// The command line: usage, help, the machine and its settings.
#include <windows.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>

#include "platform/host.h"
#include "tests/workbench/workbench_fixture.h"
#include "tools/velmora/command_error.h"
#include "tools/velmora/command_line.h"
#include "tools/velmora/machine_settings.h"

namespace velmora {
namespace {

TEST_F(WorkbenchTest, WrongCommandLinesExitWithTwo) {
    const struct {
        std::vector<std::string> arguments;
        const char* message;
    } cases[] = {
        {{}, "A command is required"},
        {{"devmod"}, "there is no command \"devmod\", nearest \"devmode\""},
        {{"--bla"}, "--bla"},
        {{"install"}, "MODEL is required"},
        {{"devmode"}, "PRINTER is required"},
        {{"printers", "one"}, "one"},
        {{"ticket", "Probe 9", "--json"}, "--json: the answer is an XML document"},
        {{"validate", "Probe 9"}, "FILE is required"},
        {{"printers", "--language", "XX"}, "\"XX\" is not a language"},
        {{"--measurement", "Metric", "printers"}, "\"Metric\" is not metric or us"},
        {{"printers", "--system-version", "10.x"}, "\"10.x\" is not a version"},
        {{"printers", "--computer-name", "a b"}, "\"a b\" is not a computer name"},
    };
    for (const auto& wrong : cases) {
        const Outcome outcome = Run(wrong.arguments);
        EXPECT_EQ(outcome.exitCode, kUsage) << wrong.message;
        EXPECT_EQ(outcome.output, "");
        EXPECT_TRUE(outcome.errors.starts_with("velmora: ") && outcome.errors.find(wrong.message) != std::string::npos)
            << outcome.errors;
    }
    EXPECT_FALSE(std::filesystem::exists(MachineFolder()));
}

TEST_F(WorkbenchTest, EveryHelpHasAnExample) {
    for (const std::string command :
         {"", "install", "printers", "remove", "devmode", "diff", "convert", "check", "model", "data", "settings",
          "job", "bind", "lists", "ticket", "validate", "printcaps", "fields"}) {
        std::vector<std::string> arguments = {"--help"};
        if (!command.empty()) {
            arguments.insert(arguments.begin(), command);
        }
        EXPECT_NE(Succeed(arguments).find("Example: velmora " + command), std::string::npos) << command;
    }
}

TEST_F(WorkbenchTest, AMachineThatCantBeUsedIsNamed) {
    std::ofstream(MachineFolder()) << "a file";
    std::string message = Fail({"printers"});
    EXPECT_NE(message.find("velmora: the machine in " + MachineFolder().string() + " can't be used: "), message.npos)
        << message;

    std::filesystem::remove(MachineFolder());
    Succeed({"printers", "--measurement", "us"});
    std::filesystem::path store;
    for (const auto& entry : std::filesystem::directory_iterator(MachineFolder())) {
        if (entry.path().extension() == ".json") {
            store = entry.path();
        }
    }
    std::ofstream(store) << "{";
    message = Fail({"printers"});
    EXPECT_NE(message.find(store.string()), message.npos) << message;
}

TEST_F(WorkbenchTest, SettingsAreKeptWithTheMachine) {
    Succeed({"printers", "--language", "JAPA", "--measurement", "us", "--computer-name", "BENCH-1", "--system-version",
             "6.1"});
    Succeed({"printers"});
    const host::Machine machine(MachineFolder());
    EXPECT_EQ(machine.Language(), 0x0411);
    EXPECT_FALSE(machine.IsMetric());
    EXPECT_EQ(GetUserDefaultLangID(), 0x0411);
    EXPECT_EQ(GetACP(), 932u) << "Japanese texts need their code page";
    WCHAR name[16];
    DWORD size = 16;
    ASSERT_TRUE(GetComputerNameW(name, &size));
    EXPECT_EQ(std::u16string(name), u"BENCH-1");
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof(version);
    ASSERT_TRUE(GetVersionExW(&version));
    EXPECT_EQ(version.dwMajorVersion, 6u);
    EXPECT_EQ(version.dwMinorVersion, 1u);
}

TEST(MachineSettings, Languages) {
    const std::pair<const char*, std::optional<LANGID>> cases[] = {
        {"ENUS", 0x0409},        {"germ", 0x0407},      {"GSWI", 0x0807},
        {"JAPA", 0x0411},        {"0x0407", 0x0407},    {"0XC07", 0x0C07},
        {"", std::nullopt},      {"0x", std::nullopt},  {"0x10000", std::nullopt},
        {"0x12 ", std::nullopt}, {"ENU", std::nullopt}, {"de", 0x0407},
        {"ja", 0x0411},          {"xx", std::nullopt},
    };
    for (const auto& [text, language] : cases) {
        EXPECT_EQ(ParseLanguage(text), language) << text;
    }
}

TEST(MachineSettings, Versions) {
    ASSERT_TRUE(ParseVersion("10"));
    EXPECT_EQ(ParseVersion("10")->minor, 0u);
    EXPECT_EQ(ParseVersion("5.1")->major, 5u);
    for (const char* text : {"", ".", "10.", ".1", "10.0.1", "-1.0", "ten"}) {
        EXPECT_FALSE(ParseVersion(text)) << text;
    }
}

TEST(MachineSettings, DefaultFolderIsBelowTheUsersData) {
    const char* const kVariables[] = {"XDG_DATA_HOME", "HOME"};
    std::map<std::string, std::optional<std::string>> before;
    for (const char* name : kVariables) {
        const char* const value = getenv(name);
        before[name] = value ? std::optional<std::string>(value) : std::nullopt;
    }
    setenv("XDG_DATA_HOME", "/data", 1);
    EXPECT_EQ(DefaultMachineFolder(), "/data/velmora/machine");
    setenv("XDG_DATA_HOME", "relative", 1);
    setenv("HOME", "/home/someone", 1);
    EXPECT_EQ(DefaultMachineFolder(), "/home/someone/.local/share/velmora/machine");
    unsetenv("XDG_DATA_HOME");
    unsetenv("HOME");
    EXPECT_THROW(DefaultMachineFolder(), CommandError);
    for (const auto& [name, value] : before) {
        value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
    }
}

}  // namespace
}  // namespace velmora
