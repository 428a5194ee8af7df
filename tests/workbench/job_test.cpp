// What a printer's driver adds to a job.
#include "tests/workbench/workbench_fixture.h"

namespace velmora {
namespace {

TEST_F(WorkbenchTest, AJobOfAPrinterLanguage) {
    Succeed({"install", WriteSource("probe.json", {{"PLAIN\\r\\n", "PLAIN\\u001BE"}})});
    EXPECT_EQ(Succeed({"job", "Probe 9", "--sheets", "2"}),
              "GuiStartJob: 47 bytes\n\n"
              "  @PJL SET MEDIATYPE=PLAIN\\u001BE@PJL SET ECONO=OFF\n\n"
              "GuiStartSheet, sheets 1 to 2: no block\n\n"
              "GuiEndJob: 11 bytes\n\n"
              "  @PJL EOJ\n");
    const nlohmann::json blocks = Json({"job", "Probe 9", "--sheets", "0"}).at("blocks");
    ASSERT_EQ(blocks.size(), 2u);
    EXPECT_EQ(blocks[1], nlohmann::json::parse(R"({"hook": "GuiEndJob", "sheet": null, "toldBytes": 11, "bytes": 11,
                                                   "text": "@PJL EOJ\r\n"})"));
}

TEST_F(WorkbenchTest, AJobDescribedByText) {
    Succeed({"install", WriteSource("probe.json", {{"\"pcl6\"", R"("image", "jobDescription": "text")"}})});
    const auto valueOf = [](const nlohmann::json& block, const char* key) {
        for (const nlohmann::json& entry : block.at("entries")) {
            if (entry.at("key") == key) {
                return entry.at("value");
            }
        }
        return nlohmann::json();
    };
    const nlohmann::json blocks = Json({"job", "Probe 9", "--name", "M\u00E4rz \"a=b\"\n"}).at("blocks");
    ASSERT_EQ(blocks.size(), 3u);
    EXPECT_EQ(valueOf(blocks[0], "jobName"), "M\u00E4rz \"a=b\"\n");
    EXPECT_EQ(valueOf(blocks[0], "dpi.x"), "600");
    EXPECT_EQ(valueOf(blocks[1], "modelName"), "PROBE");
    EXPECT_EQ(valueOf(blocks[1], "jobName"), nullptr);
    EXPECT_NE(Succeed({"job", "Probe 9"})
                  .find("GuiEndJob: " + blocks[2].at("bytes").dump() + " bytes (asked for " +
                        blocks[2].at("toldBytes").dump() + "), the same block as GuiStartSheet"),
              std::string::npos);
}

TEST_F(WorkbenchTest, AJobDescribedByARecord) {
    Succeed({"install", WriteSource("probe.json", {{"\"pcl6\"", "\"image\""}})});
    const std::string file = (Folder() / "mode.bin").string();
    Run({"devmode", "Probe 9", "--set", "dmScale=50", "--set", "dmOrientation=landscape", "--set", "uiShiftX=-7", "-o",
         file});
    const nlohmann::json job = Json({"job", "Probe 9", "--devmode", file});
    const nlohmann::json& record = job.at("blocks")[0].at("record");
    const struct {
        const char* field;
        int offset;
        nlohmann::json value;
        nlohmann::json name;
    } cases[] = {
        {"driverName", 0, "PROBE", nullptr},       {"paper", 934, 9, "A4"},
        {"orientation", 967, 2, "landscape"},      {"uiShiftX", 988, -7, nullptr},
        {"colorAdjust", 1010, {0, 0, 0}, nullptr}, {"objectColor[2].mode", 1162, 2, nullptr},
        {"resolutionIndex", 1186, 1, "Fine"},      {"finishFlagC", 1227, 1, "on"},
    };
    for (const auto& expected : cases) {
        EXPECT_EQ(record.at(expected.field).at("offset"), expected.offset);
        EXPECT_EQ(record.at(expected.field).at("value"), expected.value) << expected.field;
        EXPECT_EQ(record.at(expected.field).at("valueName"), expected.name) << expected.field;
    }
    EXPECT_FALSE(record.contains("reserved236")) << "nothing stands there";
    ASSERT_FALSE(job.at("differences").empty()) << "what the hooks repaired is told";
    EXPECT_EQ(job.at("differences")[0].at("field"), "dmScale");
}

}  // namespace
}  // namespace velmora
