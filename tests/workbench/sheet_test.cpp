// Property sheets, used as options and scripts say.
#include <fstream>

#include "tests/workbench/workbench_fixture.h"
#include "tools/velmora/command_line.h"

namespace velmora {
namespace {

class SheetTest : public WorkbenchTest {
  protected:
    void SetUp() override { Succeed({"install", WriteSource()}); }

    std::string WriteScript(const std::string& text) const {
        const std::filesystem::path file = Folder() / "steps.txt";
        std::ofstream(file, std::ios::binary) << text;
        return file.string();
    }
    static nlohmann::json ItemsOf(const nlohmann::json& session, size_t dialog, int control) {
        for (const nlohmann::json& row : session.at("dialogs").at(dialog).at("controls")) {
            if (row.at("control") == control) {
                return row.at("items");
            }
        }
        return nullptr;
    }
};

TEST_F(SheetTest, StepsAreDoneInOrder) {
    const std::string picture = (Folder() / "page.png").string();
    const std::string script = WriteScript(
        "# Both options, then without one again.\r\n"
        "page device\n"
        "set 11004 \"Duplex unit\"  # by its text\n"
        "press 11005\n"
        "set 11004 \"Second paper tray\"\n"
        "press 11005\n"
        "controls\n"
        "apply\n\n"
        "set 11007 \"Duplex unit\"\n"
        "press 11008\n"
        "controls\n");
    const nlohmann::json session = Json({"sheet", "Probe 9", "--script", script, "-o", picture});
    EXPECT_EQ(session.at("sheet"), "device");
    EXPECT_EQ(session.at("end"), "apply");
    EXPECT_EQ(ItemsOf(session, 0, 11007), (nlohmann::json{"Second paper tray", "Duplex unit"}));
    EXPECT_EQ(ItemsOf(session, 1, 11007), nlohmann::json{"Second paper tray"});
    const nlohmann::json expected = nlohmann::json::parse(R"([
        {"name": "DeviceInfo.installedOptions", "before": 3, "after": 7},
        {"name": "DeviceInfo.secondTray", "before": 0, "after": 1},
        {"name": "DeviceInfo.optionFlags", "before": 0, "after": 1}])");
    EXPECT_EQ(session.at("printerData"), expected) << "as it was applied, not as it was cancelled";
    EXPECT_EQ(session.at("differences"), nlohmann::json::array());
    std::ifstream stream(picture, std::ios::binary);
    char signature[4] = {};
    stream.read(signature, 4);
    EXPECT_EQ(std::string(signature, 4), "\x89PNG");
}

TEST_F(SheetTest, OptionsStandForSteps) {
    const std::vector<std::string> add = {"sheet", "Probe 9",           "--page", "device",
                                          "--set", "11004=Duplex unit", "--set",  "press=11005"};
    const auto with = [&](const char* option) {
        std::vector<std::string> arguments = add;
        arguments.emplace_back(option);
        return arguments;
    };
    EXPECT_EQ(Succeed(add), "the device sheet of \"Probe 9\" was cancelled\n");
    EXPECT_EQ(Succeed(with("--ok")),
              "the device sheet of \"Probe 9\" was closed by OK\n\n"
              "Printer data\n\n"
              "Value                   Before  After\n"
              "DeviceInfo.optionFlags     0x0    0x1\n");
    EXPECT_EQ(Json({"sheet", "Probe 9", "--page", "device", "--language", "de"}).at("dialogs").at(0).at("title"),
              "Ger\u00E4teeinstellungen");
}

TEST_F(SheetTest, WhatCannotBeDoneIsTold) {
    const struct {
        const char* script;
        int exitCode;
        const char* message;
    } cases[] = {
        {"page device\nset 11004 Nothing\n", kFailed,
         ":2: control 11004 has no item \"Nothing\"; it has Second paper tray, Duplex unit\n"},
        {"page device\npress 11004\n", kFailed, ":2: control 11004 is a ListBox, which can't be pressed\n"},
        {"page device\nset 77 1\n", kFailed, ":2: there is no control 77; there are 11002 (Static)"},
        {"page device\napply\n", kFailed, ":2: there is nothing to apply\n"},
        {"page device\nok\ncontrols\n", kFailed, ":3: the sheet was closed before this step\n"},
        {"page device\npage about\n", kFailed, ":2: the sheet has no page \"about\"; it has device\n"},
        {"page device\npicture /no/such/folder.png\n", kFailed,
         ":2: the picture /no/such/folder.png can't be written\n"},
        {"\npage front\n", kUsage, ":2: there is no page \"front\"; expected one of paper, color,"},
        {"press ok\n", kUsage, ":1: \"ok\" is no control's id"},
        {"set 5\n", kUsage, ":1: expected set CONTROL VALUE\n"},
        {"set 5 \"a b\n", kUsage, ":1: a quotation mark isn't closed\n"},
        {"wait\n", kUsage, ":1: there is no step \"wait\"; expected one of page, set,"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.script);
        const std::string script = WriteScript(row.script);
        const Outcome outcome = Run({"sheet", "Probe 9", "--script", script});
        EXPECT_EQ(outcome.exitCode, row.exitCode);
        EXPECT_EQ(outcome.output, "");
        EXPECT_NE(outcome.errors.find(script + row.message), std::string::npos) << outcome.errors;
    }
    EXPECT_EQ(Run({"sheet", "Probe 9", "--set", "x"}).exitCode, kUsage);
}

}  // namespace
}  // namespace velmora
