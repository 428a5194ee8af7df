// What a printer's print-ticket provider says of itself and of the lists that its tickets carry.
#include <fstream>

#include "platform/host.h"
#include "tests/workbench/workbench_fixture.h"
#include "tools/velmora/devmode_file.h"
#include "tools/velmora/spooler_client.h"
#include "tools/velmora/ticket_provider.h"

namespace velmora {
namespace {

class TicketTest : public WorkbenchTest {
  protected:
    void Install(const std::string& model) const {
        Succeed({"install", VELMORA_SOURCE_DIR "/models/" + model + ".json", "--name", "Probe 9"});
    }
    // The printer's default device mode in a file, with assignments. What isn't accepted is told, and made all the
    // same.
    std::string MakeDevMode(const std::vector<std::string>& assignments) const {
        std::vector<std::string> arguments = {"devmode", "Probe 9", "-o", (Folder() / "mode.bin").string()};
        for (const std::string& assignment : assignments) {
            arguments.insert(arguments.end(), {"--set", assignment});
        }
        EXPECT_EQ(Run(arguments).exitCode, 0);
        return (Folder() / "mode.bin").string();
    }
};

TEST_F(TicketTest, AProviderIsBoundAndLetGo) {
    Install("velmora-c3200");
    const nlohmann::json binding = Json({"bind", "Probe 9"});
    EXPECT_EQ(binding.at("versions"), nlohmann::json({1}));
    EXPECT_EQ(binding.at("optionsName"), "0x1 SHIMOPTS_NOSNAPSHOT");
    EXPECT_EQ(binding.at("devModeFields"), 0x0380FF1F);
    EXPECT_EQ(binding.at("namespaces").size(), 6u);
    EXPECT_EQ(binding.at("mayUnload"), true);
    EXPECT_EQ(binding.at("leftOpen"), nlohmann::json::array());
    EXPECT_TRUE(Succeed({"bind", "Probe 9"}).ends_with(" " + binding.at("namespaces")[5].get<std::string>() + "\n"));

    const host::Machine machine(MachineFolder());
    {
        const OwnedPrinter printer = OpenNamedPrinter("Probe 9");
        TicketProvider provider(printer.Get(), "Probe 9");
        provider->AddRef();
        EXPECT_FALSE(provider.ReleaseAndAskToUnload()) << "somebody still has the provider";
    }
}

TEST_F(TicketTest, ListsOfAPrinterLanguage) {
    Install("velmora-c3200");
    const nlohmann::json lists = Json({"lists", "Probe 9"});
    EXPECT_EQ(lists.at("devMode"), nlohmann::json::parse(R"({"source": "printer"})"));
    EXPECT_EQ(lists.at("lists").size(), 10u);
    EXPECT_EQ(lists.at("lists").at("DocumentPageColorCorrectionCommands"),
              nlohmann::json({"Gyp2MVMbKmwyNTRX", "GypvNEs=", "Gyp2MFMbKmwyNTJX", "Gyp2MVMbKmwyNTRX", "GypvMEc="}));
    EXPECT_EQ(lists.at("lists").at("DocumentEndPJL"), nlohmann::json({"@PJL EOJ"}));
    EXPECT_EQ(lists.at("lists").at("DocumentStartOCMData"), nlohmann::json::array());
    EXPECT_EQ(lists.at("exceptions"), nlohmann::json::array());
}

TEST_F(TicketTest, ListsOfAnImagePrinterAsTextAndAsARecord) {
    Install("velmora-i700");
    const nlohmann::json texts = Json({"lists", "Probe 9"}).at("lists");
    EXPECT_GT(texts.at("DocumentStartOCMData").size(), 10u);

    Succeed({"remove", "Probe 9"});
    Install("velmora-i520");
    const nlohmann::json record = Json({"lists", "Probe 9"}).at("lists").at("DocumentStartOCMData");
    ASSERT_EQ(record.size(), 1u);
    EXPECT_EQ(record[0].get<std::string>().size(), 1640u);
    const std::string text = Succeed({"lists", "Probe 9"});
    EXPECT_NE(text.find("  1640  " + record[0].get<std::string>().substr(0, 80) + "…\n"), text.npos) << text;
}

TEST_F(TicketTest, ADeviceModeIsTakenOrToldWhyNot) {
    Install("velmora-c3200");
    const std::string file = MakeDevMode({"dmScale=50"});
    const nlohmann::json taken = Json({"lists", "Probe 9", "--devmode", file});
    EXPECT_EQ(taken.at("devMode").at("source"), "given");
    EXPECT_EQ(taken.at("devMode").at("public").at("repaired"), nlohmann::json({"dmScale"}));
    EXPECT_EQ(taken.at("differences").at(0).at("field"), "dmScale");

    MakeDevMode({"dmSize=7"});
    const nlohmann::json rejected = Json({"lists", "Probe 9", "--devmode", file});
    EXPECT_EQ(rejected.at("devMode").at("source"), "printer");
    EXPECT_EQ(rejected.at("devMode").at("public").at("rejectedBy"), "dmSize");
    EXPECT_EQ(Succeed({"lists", "Probe 9", "--devmode", file}).find(file + " isn't taken:\n  public part: rejected by"),
              0u);

    std::ofstream(file) << "short";
    EXPECT_NE(Fail({"lists", "Probe 9", "--devmode", file}).find("has 5 bytes; expected a device mode of 4088,"),
              std::string::npos);
    for (const std::string command : {"bind", "lists"}) {
        EXPECT_NE(Fail({command, "Nope"}).find("there is no printer \"Nope\""), std::string::npos);
    }
}

TEST_F(TicketTest, ExceptionsAreUnpacked) {
    Install("velmora-i700");
    // A blank A4 sheet of the first medium before pages 3 and 515, and the second watermark on even pages.
    const std::string file = MakeDevMode(
        {"exceptionCount=2", "pageListCount=1",
         "exceptionArea=0C00 02 00 0900 0100 0101 0000 2800 06 02 0000 0000 0000 0000 00000000000000000000000000 "
         "00000000000000000000000000 0100 00 02 0300 0302"});
    const nlohmann::json exceptions = Json({"lists", "Probe 9", "--devmode", file}).at("exceptions");
    ASSERT_EQ(exceptions.size(), 2u) << exceptions;
    EXPECT_EQ(exceptions[0].at("kindName"), "blank sheet before");
    EXPECT_EQ(exceptions[0].at("paperName"), "A4");
    EXPECT_EQ(exceptions[0].at("pages"), nlohmann::json({3, 515}));
    EXPECT_EQ(exceptions[0].at("watermark"), nullptr);
    EXPECT_EQ(exceptions[1].at("usageName"), "even pages");
    EXPECT_EQ(exceptions[1].at("watermarkName"), "Draft");
    EXPECT_EQ(exceptions[1].at("paper"), nullptr);
}

}  // namespace
}  // namespace velmora
