#include "tests/workbench/workbench_fixture.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "tools/velmora/command_line.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kSource = R"({
  "modelName": "Probe 9",
  "languages": ["en", "de"],
  "pdl": "pcl6",
  "modelCode": 909,
  "pagesPerMinute": 21,
  "customSizes": {"minWidthMm": 90, "maxWidthMm": 297, "minLengthMm": 140, "maxLengthMm": 400},
  "papers": ["A4", "Letter", {"name": "Card", "id": 600, "label": {"en": "Card", "de": "Karte"}, "widthMm": 100,
             "lengthMm": 150, "keyword": "pr:Card"}],
  "trays": [
    {"name": "Upper", "label": {"en": "Upper tray", "de": "Oberes Fach"}, "bin": 257, "keyword": "pr:Upper"},
    {"name": "Lower", "label": {"en": "Lower tray", "de": "Unteres Fach"}, "bin": 258, "needs": ["secondTray"],
     "keyword": "pr:Lower"}
  ],
  "defaultTray": "Upper",
  "media": [
    {"name": "Plain", "label": {"en": "Plain paper", "de": "Normalpapier"}, "mediaId": "standard",
     "keyword": "psk:Plain", "jobText": "@PJL SET MEDIATYPE=PLAIN\r\n"}
  ],
  "defaultMedium": "Plain",
  "resolutions": [
    {"name": "Draft", "label": {"en": "Draft", "de": "Entwurf"}, "dpi": 300, "keyword": "pr:Draft"},
    {"name": "Fine", "label": {"en": "Fine", "de": "Fein"}, "dpi": 600, "keyword": "pr:Fine"}
  ],
  "margins": [{"papers": "all", "allMm": 4.2}],
  "features": [
    {"name": "Economy", "label": {"en": "Economy", "de": "Sparen"}, "jobKey": "ECONO", "keyword": "pr:Economy",
     "options": [{"name": "Off", "label": {"en": "Off", "de": "Aus"}, "jobValue": "OFF", "keyword": "pr:Off"},
                 {"name": "On", "label": {"en": "On", "de": "Ein"}, "jobValue": "ON", "keyword": "pr:On"}]},
    {"name": "Account", "label": {"en": "Account", "de": "Konto"}, "jobKey": "USER", "keyword": "pr:Account"}
  ],
  "constraints": [
    {"papers": ["Card"], "trays": ["Lower"], "duplex": true,
     "message": {"en": "Cards come from the upper tray.", "de": "Karten kommen aus dem oberen Fach."}}
  ]
}
)";

}  // namespace

fs::path ProgramFolder() {
    return fs::path(VELMORA_PROGRAM).parent_path();
}

WorkbenchTest::WorkbenchTest() {
    std::string pattern = (fs::temp_directory_path() / "velmora-workbench-XXXXXX").string();
    if (!mkdtemp(pattern.data())) {
        throw std::runtime_error("no temporary folder");
    }
    folder_ = pattern;
}

WorkbenchTest::~WorkbenchTest() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
}

std::vector<std::string> WorkbenchTest::InstalledFiles() const {
    std::vector<std::string> names;
    if (fs::exists(MachineFolder())) {
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(MachineFolder())) {
            const std::string extension = entry.path().extension().string();
            if (extension == ".DLL" || extension == ".dll" || extension == ".XPI") {
                names.push_back(entry.path().filename().string());
            }
        }
    }
    std::ranges::sort(names);
    return names;
}

std::string WorkbenchTest::WriteSource(
    const std::string& fileName, std::initializer_list<std::pair<std::string_view, std::string_view>> changes) const {
    std::string source(kSource);
    for (const auto& [from, to] : changes) {
        const size_t place = source.find(from);
        if (place == source.npos) {
            throw std::runtime_error("the source has no " + std::string(from));
        }
        source.replace(place, from.size(), to);
    }
    const fs::path file = folder_ / fileName;
    std::ofstream(file, std::ios::binary) << source;
    return file.string();
}

Outcome WorkbenchTest::Run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--machine", MachineFolder().string()});
    std::ostringstream output;
    std::ostringstream errors;
    const int exitCode = RunCommandLine(arguments, ProgramFolder(), output, errors);
    return {exitCode, output.str(), errors.str()};
}

std::string WorkbenchTest::Succeed(std::vector<std::string> arguments) const {
    const Outcome outcome = Run(std::move(arguments));
    EXPECT_EQ(outcome.exitCode, kDone);
    EXPECT_EQ(outcome.errors, "");
    return outcome.output;
}

nlohmann::json WorkbenchTest::Json(std::vector<std::string> arguments) const {
    arguments.emplace_back("--json");
    return nlohmann::json::parse(Succeed(std::move(arguments)));
}

std::string WorkbenchTest::Fail(std::vector<std::string> arguments) const {
    const Outcome outcome = Run(std::move(arguments));
    EXPECT_EQ(outcome.exitCode, kFailed);
    EXPECT_EQ(outcome.output, "");
    return outcome.errors;
}

std::vector<std::string> WorkbenchTest::PrinterNames() const {
    std::vector<std::string> names;
    for (const nlohmann::json& printer : Json({"printers"})) {
        names.push_back(printer.at("printer"));
    }
    return names;
}

}  // namespace velmora
