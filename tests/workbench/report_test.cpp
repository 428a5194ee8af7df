// What the commands print of a printer: the values that matter, in JSON and in text.
#include <windows.h>
#include <winspool.h>

#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

#include "driver/devmode/devmode_fields.h"
#include "platform/host.h"
#include "tests/workbench/workbench_fixture.h"
#include "tools/velmora/capability_report.h"
#include "tools/velmora/devmode_names.h"
#include "tools/velmora/devmode_report.h"
#include "tools/velmora/driver_library.h"
#include "tools/velmora/feature_report.h"
#include "tools/velmora/field_report.h"
#include "tools/velmora/model_report.h"
#include "tools/velmora/printer_report.h"
#include "tools/velmora/spooler_client.h"
#include "tools/velmora/text_list_report.h"

namespace velmora {
namespace {

using Names = std::vector<std::string>;

// The lines of a text with runs of spaces as one.
Names Lines(const std::string& text) {
    Names lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        std::istringstream words(line);
        std::string joined;
        for (std::string word; words >> word;) {
            joined += (joined.empty() ? "" : " ") + word;
        }
        lines.push_back(joined);
    }
    return lines;
}

bool HasLine(const std::string& text, const std::string& line) {
    const Names lines = Lines(text);
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

class ReportTest : public WorkbenchTest {
  protected:
    void SetUp() override { Succeed({"install", WriteSource()}); }
};

TEST_F(ReportTest, DevModeNamesValuesByTheFieldTableAndTheModel) {
    const nlohmann::json devMode = Json({"devmode", "Probe 9"});
    const struct {
        const char* part;
        const char* field;
        nlohmann::json value;
        nlohmann::json name;
    } cases[] = {
        {"public", "dmDeviceName", "Probe 9", nullptr},
        {"public", "dmDriverVersion", 0x100, "1.0"},
        {"public", "dmSize", 220, nullptr},
        {"public", "dmOrientation", 1, "portrait"},
        {"public", "dmPaperSize", 9, "A4"},
        {"public", "dmPaperLength", 2970, nullptr},
        {"public", "dmDefaultSource", 257, "Upper tray"},
        {"public", "dmColor", 0, "not set"},
        {"private", "privateSignature", 0xCACA, "0xCACA"},
        {"private", "resolutionIndex", 1, "Fine"},
        {"private", "resolutionId", 600, nullptr},
        {"private", "mediaIndex", 1, "Plain paper"},
        {"private", "interleaveBin", 257, "Upper tray"},
        {"private", "frontCoverBin", 261, nullptr},
        {"private", "frontCoverPaper", -1, "as the document"},
        {"private", "uiFitToPaper", 65535, nullptr},
        {"private", "modelCode", 909, nullptr},
        {"private", "pjlJobStart", "@PJL JOB NAME=\"!JOBNAME\"\r\n@PJL SET GUISTARTJOB=1\r\n", nullptr},
        {"private", "descriptionPath", "C:\\WINDOWS\\SYSTEM32\\SPOOL\\DRIVERS\\X64\\3\\PROBE.XPI", nullptr},
        {"private", "exceptionArea", "", nullptr},
        {"private", "objectColor.mode", {1, 3, 2}, nullptr},
        {"private", "objectPresetNames", {"", "", ""}, nullptr},
    };
    for (const auto& expected : cases) {
        const nlohmann::json& field = devMode.at(expected.part).at(expected.field);
        EXPECT_EQ(field.at("value"), expected.value) << expected.field;
        EXPECT_EQ(field.at("valueName"), expected.name) << expected.field;
    }
    const nlohmann::json& features = devMode.at("private").at("featureSelection");
    EXPECT_EQ(features.at("value").size(), 32u);
    EXPECT_EQ(features.at("value")[1], -1);
    EXPECT_EQ(features.at("valueName")[0], "Economy: Off");
    EXPECT_EQ(features.at("valueName")[1], "Account: no option");
    EXPECT_EQ(features.at("valueName")[2], nullptr);
    EXPECT_EQ(devMode.at("public").size(), PublicFields().size());
    EXPECT_EQ(devMode.at("private").size(), PrivateFields().size());
}

TEST_F(ReportTest, DevModeAsText) {
    const std::string text = Succeed({"devmode", "Probe 9"});
    for (const char* line : {
             "Public part, 220 bytes",
             "dmPaperSize 9 (A4) paper: DMPAPER_ id, driver-defined id,",
             "dmFormName \"\" never used",
             "Private part, 3868 bytes",
             "pjlJobStart \"@PJL JOB NAME=\\\"!JOBNAME\\\"\\r\\n@PJL PJL lines sent at the start of a job",
             "SET GUISTARTJOB=1\\r\\n\"",
             "exceptionArea 734 bytes, all 0 exception records, then page lists",
             "objectColor.mode 1, 3, 2 treatment of an object kind's colours",
             "colorAdjust 0 (3 times) brightness, contrast, saturation",
         }) {
        EXPECT_TRUE(HasLine(text, line)) << line << "\n" << text;
    }
}

TEST_F(ReportTest, LanguageIsTheUsersAndIsKept) {
    EXPECT_EQ(Json({"--language", "GERM", "devmode", "Probe 9"}).at("public").at("dmDefaultSource").at("valueName"),
              "Oberes Fach");
    EXPECT_EQ(Json({"devmode", "Probe 9"}).at("private").at("resolutionIndex").at("valueName"), "Fein");
    EXPECT_EQ(Json({"devmode", "Probe 9", "--language", "0x0809"}).at("private").at("resolutionIndex").at("valueName"),
              "Fine");
}

TEST_F(ReportTest, Capabilities) {
    const nlohmann::json report = Json({"--measurement", "metric", "capabilities", "Probe 9"});
    const nlohmann::json& capabilities = report.at("capabilities");
    const struct {
        const char* capability;
        nlohmann::json answer;
        nlohmann::json name;
        nlohmann::json entries;
    } cases[] = {
        {"DC_DRIVER", 0x100, "1.0", nullptr},      {"DC_MAXEXTENT", 2970 | 4000 << 16, "297.0 x 400.0 mm", nullptr},
        {"DC_BINS", 2, nullptr, {257, 2000}},      {"DC_ENUMRESOLUTIONS", 2, nullptr, {{300, 300}, {600, 600}}},
        {"DC_PERSONALITY", 1, nullptr, {"PCL6"}},  {"DC_COLORDEVICE", 0, "no", nullptr},
        {"DC_PRINTRATEPPM", 21, nullptr, nullptr}, {"DC_MODEL", 0, nullptr, nullptr},
    };
    for (const auto& expected : cases) {
        const nlohmann::json& answer = capabilities.at(expected.capability);
        EXPECT_EQ(answer.at("answer"), expected.answer) << expected.capability;
        EXPECT_EQ(answer.at("answerName"), expected.name) << expected.capability;
        EXPECT_EQ(answer.at("entries"), expected.entries) << expected.capability;
    }
    EXPECT_EQ(capabilities.size(), 35u);
    EXPECT_EQ(report.at("papers").back(),
              nlohmann::json::parse(R"({"paperId": 256, "name": "Custom size", "widthMm": 210.0, "lengthMm": 297.0})"));
    EXPECT_EQ(report.at("sources")[0], nlohmann::json::parse(R"({"source": 257, "name": " Upper tray"})"));
    EXPECT_EQ(Json({"--measurement", "us", "capabilities", "Probe 9"}).at("papers").back().at("widthMm"), 215.9);

    const std::string text = Succeed({"capabilities", "Probe 9"});
    for (const char* line : {"DC_FIELDS 59151 (0xE70F DM_ORIENTATION dmFields of the driver's device modes",
                             "DC_NUP 7: 1, 2, 4, 6, 8, 9, 16 pages on a sheet's side", "9 A4 210.0 x 297.0"}) {
        EXPECT_TRUE(HasLine(text, line)) << line << "\n" << text;
    }
}

TEST_F(ReportTest, ModelTables) {
    const nlohmann::json model = Json({"model", "Probe 9"});
    EXPECT_EQ(model.at("values").at("pdlType").at("valueName"), "pcl6");
    EXPECT_EQ(model.at("values").at("defaultBin").at("valueName"), "Upper tray");
    EXPECT_EQ(model.at("values").at("customMaxWidth").at("value"), 2970);
    EXPECT_EQ(model.at("papers").size(), 3u);
    EXPECT_EQ(model.at("papers")[2].at("name"), "Card");
    EXPECT_EQ(model.at("papers")[2].at("widthMm"), 100.0);
    EXPECT_EQ(model.at("papers")[2].at("keyword"), "pr:Card");
    EXPECT_EQ(model.at("trays")[0].at("isOffered"), true);
    EXPECT_EQ(model.at("trays")[1].at("isOffered"), false) << "the second tray isn't installed";
    EXPECT_EQ(model.at("media")[0].at("jobText"), "\"@PJL SET MEDIATYPE=PLAIN\\r\\n\"");
    EXPECT_EQ(model.at("resolutions")[1].at("xDpi"), 600);
    EXPECT_EQ(model.at("margins")[0].at("leftMm"), 4.2);
    EXPECT_EQ(model.at("features")[1].at("optionCount"), 0);
    EXPECT_EQ(model.at("featureOptions").size(), 2u);
    EXPECT_EQ(model.at("featureOptions")[1].at("jobValue"), "\"ON\"");
    EXPECT_EQ(model.at("constraints")[0].at("trays"), nlohmann::json({"Lower tray"}));
    EXPECT_EQ(model.at("constraints")[0].at("papers"), nlohmann::json({"Card", "custom sizes"})) << "found by its size";
    EXPECT_EQ(model.at("constraints")[0].at("onlyBothSides"), true);
    EXPECT_EQ(model.at("constraints")[0].at("message"), "Cards come from the upper tray.");
    EXPECT_EQ(model.at("colorModes"), nlohmann::json::array());

    const std::string text = Succeed({"model", "Probe 9"});
    EXPECT_TRUE(HasLine(text, "257 Upper tray 0x1 yes pr:Upper")) << text;
    EXPECT_EQ(text.find("Colour modes"), text.npos) << "empty tables are left out";
}

TEST_F(WorkbenchTest, WhatTheDescriptionFileHolds) {
    Succeed({"install", WriteSource("probe.json", {{"\"pagesPerMinute\": 21,", R"("pagesPerMinute": 21,
        "languages": ["en", "de", "ja"],
        "patterns": {"fine": {"shape": "clustered", "size": 8}, "spare": {"shape": "dispersed", "size": 8}},
        "fonts": ["12345678", {"base64": ")" + std::string(43692, 'A') + R"("}, "1234"],
        "images": [{"hex": "424D3E000000000000003E000000280000000C000000FEFFFFFF0100080000000000000000000000000000000000000000000000000000000000FFFFFF00"}],
        "commands": {"a": "12345"},
        "memory": {"keyBase": 7, "sizes": [{"key": 1, "megabytes": 8}, {"key": 2, "megabytes": 16}]},
        "colorFeatures": {"image": [{"name": "Tone", "values": [{"name": "Soft", "command": "a"}]}]},)"},
                                                   {"\"languages\": [\"en\", \"de\"],", ""},
                                                   {"\"dpi\": 600,", "\"dpi\": 600, \"pattern\": \"fine\","},
                                                   {"\"jobKey\": \"USER\",",
                                                    "\"jobKey\": \"USER\", \"needs\": [\"stapler\"],"}})});
    const nlohmann::json model = Json({"model", "Probe 9"});
    const struct {
        const char* table;
        const char* rows;
    } cases[] = {
        {"patterns", R"([{"index": 0, "position": 0, "size": 8, "bytes": 2048, "resolutions": ["Fine"]},
                         {"index": 1, "position": 2048, "size": null, "bytes": null, "resolutions": []}])"},
        {"fonts", R"([{"number": 1, "position": 0, "bytes": 8, "group": 1},
                      {"number": 2, "position": 8, "bytes": 32769, "group": 2},
                      {"number": 3, "position": 32777, "bytes": 4, "group": 3}])"},
        {"images", R"([{"index": 0, "bytes": 62, "width": 12, "height": -2, "bitsPerPixel": 8}])"},
        {"languages", R"([{"base": 0, "languages": [], "servesOthers": true},
                          {"base": 15, "languages": ["de"], "servesOthers": false},
                          {"base": 30, "languages": ["ja"], "servesOthers": false}])"},
        {"memory",
         R"([{"key": 1, "megabytes": 8, "isDefault": true}, {"key": 2, "megabytes": 16, "isDefault": false}])"},
        {"colorFeatures", R"([{"group": "image", "index": 0, "name": "Tone", "valueCount": 1}])"},
    };
    for (const auto& expected : cases) {
        EXPECT_EQ(model.at(expected.table), nlohmann::json::parse(expected.rows)) << expected.table;
    }
    const nlohmann::json& sections = model.at("sections");
    EXPECT_EQ(sections.front(), nlohmann::json::parse(R"({"section": "device block", "position": 72, "bytes": )" +
                                                      std::to_string(int{sections[1].at("position")} - 72) + "}"));
    EXPECT_EQ(sections.back().at("section"), "command blob");
    EXPECT_EQ(sections.back().at("bytes"), 5);
    EXPECT_EQ(model.at("trays")[1].at("needs")[0], "secondTray");
    const std::string text = Succeed({"model", "Probe 9"});
    EXPECT_TRUE(HasLine(text, "1 Account stapler 0 \"USER\" pr:Account")) << text;
}

TEST_F(ReportTest, PrinterData) {
    const nlohmann::json installed = Json({"data", "Probe 9"});
    const struct {
        const char* table;
        const char* row;
    } rows[] = {
        {"deviceInfo", R"({"field": "installedOptions", "value": 3, "valueName": null,
                           "meaning": "tray options installed; a tray is offered where its mask shares a bit"})"},
        {"margins", R"({"papers": ["A4", "Letter", "Card", "custom sizes"], "widthsMm": [90.0, 297.0],
                        "lengthsMm": [140.0, 400.0], "orientations": "portrait, landscape", "leftMm": 4.2,
                        "topMm": 4.2, "rightMm": 4.2, "bottomMm": 4.2, "unitsPerInch": 254})"},
        {"paperSizes", R"({"paperId": 600, "paper": "Card", "widthMm": 100.0, "lengthMm": 150.0})"},
        {"standardPapers", R"({"paperId": 9, "paper": "A4", "pclSizeCode": 26})"},
        {"paperNames", R"({"paperId": 9, "paper": "A4", "rendererName": "\"A4\""})"},
        {"mediaTypes", R"({"number": 1, "medium": "Plain paper", "rendererName": "\"\""})"},
    };
    for (const auto& expected : rows) {
        EXPECT_EQ(installed.at(expected.table)[0], nlohmann::json::parse(expected.row)) << expected.table;
    }
    {
        const host::Machine machine(MachineFolder());
        const OwnedPrinter printer = OpenNamedPrinter("Probe 9");
        const auto set = [&](std::u16string name, DWORD type, std::u16string text) {
            EXPECT_EQ(SetPrinterDataW(printer.Get(), name.data(), type, reinterpret_cast<BYTE*>(text.data()),
                                      static_cast<DWORD>(text.size() * sizeof(WCHAR))),
                      static_cast<DWORD>(ERROR_SUCCESS));
        };
        set(u"Settings", REG_SZ, std::u16string(u"a\\b\"\n\0", 6));
        set(u"Memory", REG_DWORD, std::u16string(u"\x0100\x0000", 2));
        set(u"FontSubs", REG_MULTI_SZ, std::u16string(u"Arial\0Helv\0\0", 12));
        set(u"DeviceInfo", REG_BINARY, u"\x0201\x0A00");
        set(u"Empty", REG_BINARY, u"");
        set(u"Odd", 77, u"\x0001");
    }
    const std::string text = Succeed({"data", "Probe 9"});
    for (const char* line :
         {"Settings string 12 \"a\\\\b\\\"\\n\"", "Memory dword 4 256 (0x100)", "FontSubs multi-string 24 1 row, below",
          "Arial Helv", "DeviceInfo binary 4 01 02 00 0A", "Empty binary 0", "Odd type 77 2 01 00"}) {
        EXPECT_TRUE(HasLine(text, line)) << line << "\n" << text;
    }
    const nlohmann::json data = Json({"data", "Probe 9"});
    std::map<std::string, nlohmann::json> values;
    for (const nlohmann::json& value : data.at("values")) {
        values[value.at("name")] = value.at("value");
    }
    EXPECT_EQ(values["Settings"], "a\\b\"\n");
    EXPECT_EQ(values["Memory"], 256);
    EXPECT_EQ(values["FontSubs"], nlohmann::json({"Arial", "Helv"}));
    EXPECT_FALSE(data.contains("deviceInfo")) << "a record of another size isn't decoded";
}

TEST_F(ReportTest, UnknownPrintersAndUnreadableModels) {
    for (const char* command : {"devmode", "capabilities", "model", "data", "settings", "job", "remove"}) {
        EXPECT_EQ(Fail({command, "Nope"}),
                  "velmora: there is no printer \"Nope\" on this machine; its printers: \"Probe 9\"\n");
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(MachineFolder())) {
        if (entry.path().extension() == ".XPI") {
            std::ofstream(entry.path(), std::ios::trunc) << "short";
        }
    }
    EXPECT_NE(Fail({"devmode", "Probe 9"}).find("install the model again"), std::string::npos);
    Succeed({"remove", "Probe 9"});
    EXPECT_EQ(Fail({"devmode", "Nope"}),
              "velmora: there is no printer \"Nope\" on this machine; it has none yet: velmora install MODEL.json\n");
    EXPECT_EQ(Succeed({"printers"}), "this machine has no printers; install one: velmora install MODEL.json\n");
}

// Every model of the project, by every report that a model goes through.
TEST_F(WorkbenchTest, ProjectModelsInAHundredColumns) {
    size_t models = 0;
    for (const auto& entry : std::filesystem::directory_iterator(VELMORA_SOURCE_DIR "/models")) {
        if (entry.path().extension() != ".json" || entry.path().filename().string().ends_with("schema.json")) {
            continue;
        }
        ++models;
        const std::string printer = "Printer " + std::to_string(models);
        Succeed({"install", entry.path().string(), "--name", printer});
        for (const std::string command : {"devmode", "capabilities", "model", "data", "job", "bind", "lists"}) {
            std::istringstream text(Succeed({command, printer}));
            for (std::string line; std::getline(text, line);) {
                const auto characters =
                    std::count_if(line.begin(), line.end(), [](char byte) { return (byte & 0xC0) != 0x80; });
                EXPECT_LE(characters, 100) << line;
            }
            if (models == 1) {
                EXPECT_FALSE(Json({command, printer}).empty());
            }
        }
    }
    EXPECT_GE(models, 3u);
}

TEST_F(WorkbenchTest, ReportsLeaveNothingOpen) {
    // The machine is the test's own here, so that it can be asked.
    Succeed({"install", WriteSource()});
    const host::Machine machine(MachineFolder());
    {
        const PrinterModel model("Probe 9");
        ReportDevMode(DefaultByDriver(model.Printer(), "Probe 9"), NamesOfNumbers(&model));
        ReportTextLists(model, std::nullopt);
    }
    ReportCapabilities("Probe 9");
    ReportModel("Probe 9");
    ReportPrinterData("Probe 9");
    ReportPrinters();
    EXPECT_EQ(host::StillOpen(), Names());
}

TEST(Docs, GeneratedPagesAreCurrent) {
    const std::pair<const char*, std::string> pages[] = {{"device-mode.md", MakeFieldPage()},
                                                         {"tickets.md", MakeFeaturePage()}};
    for (const auto& [name, made] : pages) {
        std::ifstream stream(VELMORA_SOURCE_DIR "/docs/" + std::string(name), std::ios::binary);
        const std::string page(std::istreambuf_iterator<char>(stream), {});
        EXPECT_EQ(page, made) << "./dev docs writes " << name << " anew";
    }
}

TEST_F(WorkbenchTest, FieldsNeedNoMachine) {
    const nlohmann::json fields = Json({"fields"});
    const auto angle = std::ranges::find_if(
        fields.at("private"), [](const nlohmann::json& field) { return field.at("field") == "watermarkAngle"; });
    ASSERT_NE(angle, fields.at("private").end());
    EXPECT_EQ(fields.at("public").size(), PublicFields().size());
    EXPECT_EQ(fields.at("private").size(), PrivateFields().size());
    EXPECT_EQ(*angle, nlohmann::json::parse(R"({"offset": 404, "field": "watermarkAngle", "type": "i32",
        "meaning": "tenths of a degree; height of a rendered file", "default": "0",
        "valid": "below 3600 for text, 1 and above for a rendered file"})"));
    EXPECT_EQ(Succeed({"fields", "--markdown"}), MakeFieldPage());
    EXPECT_FALSE(std::filesystem::exists(MachineFolder()));
}

}  // namespace
}  // namespace velmora
