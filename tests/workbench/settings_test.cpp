// The settings file that a user has for a printer.
#include <windows.h>
#include <winspool.h>

#include <fstream>

#include "platform/host.h"
#include "platform/kernel/text.h"
#include "tests/workbench/workbench_fixture.h"
#include "tools/velmora/settings_report.h"
#include "tools/velmora/spooler_client.h"

namespace velmora {
namespace {

class SettingsTest : public WorkbenchTest {
  protected:
    // A printer whose driver brings this INI data file.
    std::string Install(const std::string& printer, const std::string& ini) const {
        std::ofstream(Folder() / "driver.ini") << ini;
        return Succeed({"install", WriteSource(), "--name", printer, "--ini", (Folder() / "driver.ini").string()});
    }
    // Changes the printer's settings file behind the driver's back; no value removes the key.
    void Set(const std::string& printer, const std::u16string& section, const std::u16string& key,
             const char16_t* value) const {
        const host::Machine machine(MachineFolder());
        const std::u16string path = host::ToWide(FindSettingsFile(printer).path);
        ASSERT_TRUE(WritePrivateProfileStringW(section.c_str(), key.c_str(), value, path.c_str()));
    }
};

constexpr const char* kSlip =
    "[CustomSizes]\r\nNumCustomSizes=1\r\nCustomName0=Slip\r\nCustomWidth0=10000\r\nCustomLength0=15050\r\n"
    "CustomMetric0=1\r\n";

TEST_F(SettingsTest, CustomSizesWatermarksAndPresets) {
    EXPECT_NE(Install("Probe", kSlip).find("2 forms made: Card, Slip\n  settings stored\n"), std::string::npos);
    Set("Probe", u"UserEnt1", u"UserEntName", u"Warm");
    Set("Probe", u"UserEnt1", u"Brightness", u"5");
    Set("Probe", u"UserEnt2", u"UserEntName", u"");
    Set("Probe", u"Velmora", u"Profile", u"a b");
    const nlohmann::json settings = Json({"settings", "Probe"});
    EXPECT_EQ(settings.at("isWritten"), true);
    EXPECT_EQ(settings.at("customSizes"),
              nlohmann::json::parse(R"([{"index": 0, "name": "Slip", "width": 10000, "length": 15050,
                                         "system": "metric", "widthMm": 100.0, "lengthMm": 150.5}])"));
    EXPECT_EQ(settings.at("watermarks").size(), 8u);
    EXPECT_EQ(settings.at("watermarks")[1].at("text"), "Draft");
    EXPECT_EQ(settings.at("watermarks")[1].at("angleDegrees"), 45.0);
    EXPECT_EQ(settings.at("colorPresets"),
              nlohmann::json::parse(R"([{"slot": 1, "name": "Warm", "adjustments": {"Brightness": "5"}}])"));
    EXPECT_EQ(settings.at("values")[0].at("value"), "a b");
    EXPECT_NE(Succeed({"settings", "Probe", "--raw"}).find("CustomName0=Slip\n"), std::string::npos);
}

TEST_F(SettingsTest, AListThatTheDriverRejectsIsShownByItsKeys) {
    Install("Probe", kSlip);
    Set("Probe", u"CustomSizes", u"CustomMetric0", nullptr);
    const nlohmann::json settings = Json({"settings", "Probe"});
    EXPECT_TRUE(settings.at("customSizes").empty());
    EXPECT_EQ(settings.at("values")[0].at("note"), "none: an entry is incomplete");
    EXPECT_EQ(settings.at("values")[1].at("key"), "CustomName0");
}

TEST_F(SettingsTest, PrintersOfADriverHaveTheirOwn) {
    Succeed({"install", WriteSource(), "--name", "Fresh"});
    EXPECT_NE(Succeed({"settings", "Fresh"}).find("not written yet"), std::string::npos);
    Install("Probe", kSlip);
    EXPECT_NE(Json({"settings", "Fresh"}).at("path"), Json({"settings", "Probe"}).at("path"));
    Install("Other", kSlip);
    EXPECT_EQ(Succeed({"remove", "Probe"}), "removed printer \"Probe\" with its settings; its driver stays\n");
    EXPECT_EQ(Json({"settings", "Other"}).at("isWritten"), true);
    {
        const host::Machine machine(MachineFolder());
        std::u16string value = u"Settings";
        ASSERT_EQ(DeletePrinterDataW(OpenNamedPrinter("Fresh").Get(), value.data()), DWORD{ERROR_SUCCESS});
    }
    EXPECT_EQ(Succeed({"settings", "Fresh"}),
              "\"Fresh\" has no settings file: its data names none (the value \"Settings\")\n");
    EXPECT_EQ(Json({"settings", "Fresh"}).at("path"), nullptr);
}

}  // namespace
}  // namespace velmora
