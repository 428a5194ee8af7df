// Installing and removing printers.
#include <windows.h>

#include <algorithm>
#include <fstream>
#include <memory>

#include "platform/host.h"
#include "tests/workbench/workbench_fixture.h"
#include "tools/velmora/command_error.h"
#include "tools/velmora/driver_package.h"
#include "tools/velmora/spooler_client.h"
#include "tools/xpic/compile.h"

namespace velmora {
namespace {

using Names = std::vector<std::string>;

const Names kPackage = {"KV62E.DLL", "KV62ENUS.DLL", "KV62GERM.DLL", "KV62JAPA.DLL", "KV62R.DLL",
                        "KV62U.DLL", "KV62im.dll",   "KVIME.DLL",    "PROBE.XPI"};

TEST_F(WorkbenchTest, InstallsFromASource) {
    EXPECT_EQ(Succeed({"install", WriteSource()}),
              "installed printer \"Probe 9\", driver PROBE\n"
              "the driver was told of it:\n"
              "  7 values of printer data written\n"
              "  1 form made: Card\n");
    EXPECT_EQ(Json({"printers"}), nlohmann::json::parse(R"([{"printer": "Probe 9", "driver": "PROBE", "port": "FILE:",
                "modelFile": "C:\\Windows\\System32\\spool\\drivers\\x64\\3\\PROBE.XPI"}])"));
    EXPECT_EQ(InstalledFiles(), kPackage) << "and nothing of the staged package is left";
}

TEST_F(WorkbenchTest, InstallsFromADescriptionFile) {
    const std::filesystem::path description = Folder() / "probe.xpi";
    WriteFileAtomically(description, CompileModel(WriteSource()).bytes);
    const nlohmann::json done = Json({"install", description.string()});
    EXPECT_EQ(done.at("printer"), "PROBE") << "a description doesn't hold the model's name";
    EXPECT_EQ(done.at("renewedDriver"), false);
    EXPECT_EQ(Json({"model", "PROBE"}).at("values").at("modelCode").at("value"), 909);
}

TEST_F(WorkbenchTest, FileNamesBecomeDriverNamesWithoutDots) {
    // An installed "a.ini.XPI" would be taken for the driver's INI file.
    EXPECT_EQ(Json({"install", WriteSource("a.ini.json")}).at("driver"), "A-INI");
    EXPECT_EQ(Json({"devmode", "Probe 9"}).at("private").at("modelCode").at("value"), 909);
}

TEST_F(WorkbenchTest, ADriverOfAnotherBuildIsTold) {
    Succeed({"install", WriteSource()});
    Succeed({"devmode", "Probe 9"});
    {
        const host::Machine machine(MachineFolder());
        const OwnedPrinter printer = OpenNamedPrinter("Probe 9");
        const OwnedFile driver(CreateFileW(DriverOf(printer.Get()).configFile.c_str(), GENERIC_WRITE, 0, nullptr,
                                           OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        ASSERT_TRUE(SetFilePointerEx(driver.Get(), {}, nullptr, FILE_END));
        DWORD written = 0;
        ASSERT_TRUE(WriteFile(driver.Get(), "", 1, &written, nullptr));
    }
    for (const char* command : {"devmode", "convert", "capabilities"}) {
        const Outcome outcome = Run({command, "Probe 9"});
        EXPECT_EQ(outcome.exitCode, 0) << command;
        EXPECT_EQ(outcome.errors,
                  "velmora: note: the driver of \"Probe 9\" is of another build; remove the printer and install its "
                  "model again to have this one\n");
    }
}

TEST_F(WorkbenchTest, ABrokenSourceLeavesNothingBehind) {
    const std::string source = WriteSource("probe.json", {{"\"pcl6\"", "\"pcl7\""}, {"909", "70000"}});
    const std::string message = Fail({"install", source});
    EXPECT_NE(message.find(source + ":4:3: $.pdl: found \"pcl7\""), message.npos) << message;
    EXPECT_NE(message.find("$.modelCode"), message.npos) << message;
    EXPECT_NE(message.find("velmora: " + source + " has 2 faults; nothing was installed\n"), message.npos) << message;
    EXPECT_FALSE(std::filesystem::exists(MachineFolder()));
}

TEST_F(WorkbenchTest, RefusedModelsAndNames) {
    std::ofstream(Folder() / "text.XPI") << "no model";
    std::ofstream(Folder() / "model.txt") << "no model";
    std::filesystem::create_directory(Folder() / "folder.XPI");
    const std::string source = WriteSource();
    const std::string longName = WriteSource(std::string(65, 'x') + ".json");
    const std::string path = Folder().string();
    const struct {
        std::vector<std::string> arguments;
        std::string message;
    } cases[] = {
        {{"install", path + "/text.XPI"}, "text.XPI: the driver can't read a model"},
        {{"install", path + "/model.txt"}, "a model is a source (.json) or a compiled description (.XPI)"},
        {{"install", path + "/folder.XPI"}, "folder.XPI can't be read"},
        {{"install", path + "/missing.XPI"}, "missing.XPI can't be read"},
        {{"install", path + "/missing.json"}, "missing.json has 1 fault"},
        {{"install", longName}, "has more than 64 characters"},
        {{"install", source, "--ini", path + "/missing.ini"}, "--ini: " + path + "/missing.ini isn't a file"},
        {{"install", source, "--data-file", path}, "--data-file: " + path + " isn't a file"},
        {{"install", source, "--name", ""}, "can't be a printer's name"},
        {{"install", source, "--name", "a,b"}, "can't be a printer's name"},
        {{"install", source, "--name", std::string(128, 'n')}, "can't be a printer's name"},
    };
    for (const auto& refused : cases) {
        const std::string message = Fail(refused.arguments);
        EXPECT_TRUE(message.find("velmora: ") != message.npos && message.find(refused.message) != message.npos)
            << message;
    }
    EXPECT_EQ(PrinterNames(), Names());
    EXPECT_EQ(InstalledFiles(), Names());
}

TEST_F(WorkbenchTest, PrintersOfAModelShareItsDriver) {
    Succeed({"install", WriteSource()});
    const std::string message = Fail({"install", WriteSource(), "--name", "probe 9"});
    EXPECT_NE(message.find("there is a printer \"Probe 9\" already"), message.npos) << message;

    const std::string changed = WriteSource("probe.json", {{"\"pagesPerMinute\": 21", "\"pagesPerMinute\": 44"}});
    const nlohmann::json done = Json({"install", changed, "--name", "Another"});
    EXPECT_EQ(done.at("renewedDriver"), true);
    EXPECT_EQ(done.at("otherPrinters"), nlohmann::json({"Probe 9"}));
    EXPECT_EQ(Json({"model", "Probe 9"}).at("values").at("pagesPerMinute").at("value"), 44);

    EXPECT_EQ(Succeed({"remove", "Probe 9"}), "removed printer \"Probe 9\"; its driver stays\n");
    EXPECT_EQ(PrinterNames(), Names{"Another"});
    EXPECT_EQ(InstalledFiles(), kPackage);
    EXPECT_EQ(Succeed({"remove", "another"}), "removed printer \"another\" and its driver\n");
    EXPECT_EQ(PrinterNames(), Names());
    EXPECT_EQ(InstalledFiles(), Names());
}

TEST_F(WorkbenchTest, ImageModelsBringAPrintProcessor) {
    const std::string source = WriteSource("probe.json", {{"\"pcl6\"", "\"image\""}});
    for (const char* printer : {"One", "Two"}) {
        EXPECT_EQ(Json({"install", source, "--name", printer}).at("printProcessor"), "KV62PPR");
    }
    const Names files = InstalledFiles();
    EXPECT_EQ(std::ranges::count(files, "KV62PPR.DLL"), 2) << "the driver's and the print processors' one";
}

TEST_F(WorkbenchTest, PatternsAreAppendedToASeparateDataFile) {
    std::ofstream(Folder() / "base.bin") << "base";
    const nlohmann::json done = Json(
        {"install",
         WriteSource("probe.json", {{"\"modelCode\": 909,",
                                     R"("modelCode": 909, "patterns": {"fine": {"shape": "clustered", "size": 8}},)"},
                                    {"\"dpi\": 600,", "\"dpi\": 600, \"pattern\": \"fine\","}}),
         "--data-file", (Folder() / "base.bin").string()});
    EXPECT_EQ(done.at("appendedBytes"), 2048);
    const nlohmann::json values = Json({"data", "Probe 9"}).at("values");
    EXPECT_EQ(values[0].at("value"), "PROBE.DAT");
    EXPECT_EQ(values[1].at("value"), 4);
    EXPECT_TRUE(std::string(Json({"printers"})[0].at("modelFile")).ends_with("PROBE.XPI"));
}

TEST_F(WorkbenchTest, ARefusedCallLeavesNothingBehind) {
    const BuiltFiles files = FindBuiltFiles(ProgramFolder());
    const PackagedModel model = ReadModel(WriteSource());
    for (const char* call :
         {"EnumPrintersW", "EnumPrinterDriversW", "CreateFileW", "AddPrinterDriverExW", "AddPrinterW"}) {
        const host::Machine machine;
        host::FailCall(call, ERROR_ACCESS_DENIED);
        try {
            InstallPrinter(machine, files, model, "Probe");
            ADD_FAILURE() << call;
        } catch (const CommandError& error) {
            EXPECT_NE(std::string(error.what()), "") << call;
        }
        EXPECT_TRUE(ListPrinters().empty()) << call;
        EXPECT_TRUE(ListDrivers().empty()) << call;
        EXPECT_FALSE(std::filesystem::exists(machine.Drive() / "Velmora package")) << call;
        EXPECT_EQ(host::StillOpen(), Names()) << call;

        const Installation done = InstallPrinter(machine, files, model, "Probe");
        EXPECT_FALSE(done.renewedDriver) << call;
        EXPECT_TRUE(RemovePrinter("Probe").driver) << call;
        EXPECT_EQ(host::StillOpen(), Names()) << call;
    }
}

TEST_F(WorkbenchTest, RefusalsNameTheCallAndItsError) {
    const host::Machine machine;
    host::FailCall("AddPrinterW", ERROR_ACCESS_DENIED);
    try {
        InstallPrinter(machine, FindBuiltFiles(ProgramFolder()), ReadModel(WriteSource()), "Probe");
        ADD_FAILURE();
    } catch (const CommandError& error) {
        EXPECT_STREQ(error.what(), "AddPrinterW of \"Probe\" failed: error 5, access denied");
    }
}

TEST(BuiltFiles, AreLookedForFromTheProgramsFolder) {
    EXPECT_THROW(FindBuiltFiles("/"), CommandError);
    const BuiltFiles files = FindBuiltFiles(ProgramFolder());
    std::vector<std::filesystem::path> all = files.languageModules;
    all.insert(all.end(), {files.renderingCore, files.configurationFile, files.printProcessor, files.imageModule});
    for (const auto& file : all) {
        EXPECT_GT(std::filesystem::file_size(file), 0u) << file;
    }
}

}  // namespace
}  // namespace velmora
