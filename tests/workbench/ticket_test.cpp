// What a printer's print-ticket provider says of itself, of the lists that its tickets carry, and its conversions.
#include <fstream>
#include <iterator>

#include "platform/host.h"
#include "platform/xml/xml_files.h"
#include "tests/workbench/workbench_fixture.h"
#include "tools/velmora/devmode_file.h"
#include "tools/velmora/spooler_client.h"
#include "tools/velmora/ticket_document.h"
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
    std::string WriteFile(const std::string& name, const std::string& content) const {
        std::ofstream(Folder() / name, std::ios::binary) << content;
        return (Folder() / name).string();
    }
    static std::string ReadFile(const std::string& file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    // The document of a file, written anew.
    std::string Reread(const std::string& file) const {
        const host::Machine machine(MachineFolder());
        const ComThread com;
        const XmlDocument document = NewTicket();
        EXPECT_EQ(host::LoadXmlFile(file, document.Get()), "");
        return host::SaveXml(document.Get(), false);
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

constexpr const char* kEmptyTicket =
    R"(<PrintTicket xmlns="http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework" version="1"/>)";

TEST_F(TicketTest, ATicketCarriesADeviceMode) {
    Install("velmora-i700");
    const std::string ticket = (Folder() / "ticket.xml").string();
    const std::string input = MakeDevMode({"dmCopies=7"});
    Succeed({"ticket", "Probe 9", "--devmode", input, "-o", ticket});
    {
        const host::Machine machine(MachineFolder());
        const OwnedPrinter printer = OpenNamedPrinter("Probe 9");
        TicketProvider provider(printer.Get(), "Probe 9");
        BindProvider(provider, printer.Get(), "Probe 9");
        const XmlDocument document = NewTicket();
        VelmoraDevMode devMode = ReadDevModeFile(input);
        provider->ConvertDevModeToPrintTicket(sizeof(devMode), &devMode.publicPart, document.Get());
        EXPECT_EQ(ReadFile(ticket), host::SaveXml(document.Get(), false));
    }

    const std::string unchanged = MakeDevMode({});
    const std::string output = (Folder() / "output.bin").string();
    const nlohmann::json converted = Json({"devmode", "Probe 9", "--ticket", ticket, "-o", output});
    EXPECT_EQ(converted.at("file"), output);
    EXPECT_EQ(ReadDevModeFile(output).publicPart.dmCopies, 7);
    const Outcome diff = Run({"diff", unchanged, output, "--printer", "Probe 9", "--json"});
    EXPECT_EQ(nlohmann::json::parse(diff.output).at("differences"), converted.at("differences"));

    // What the ticket says counts before what was set; what doesn't hold is told.
    const Outcome repaired = Run({"devmode", "Probe 9", "--devmode", output, "--set", "dmCopies=3", "--set",
                                  "dmScale=50", "--ticket", ticket, "-o", (Folder() / "repaired.bin").string()});
    EXPECT_NE(repaired.errors.find(output + " is repaired first:\n  public part: accepted after 1 repair: dmScale"),
              std::string::npos)
        << repaired.errors;
    EXPECT_EQ(ReadDevModeFile(Folder() / "repaired.bin").publicPart.dmCopies, 7);
    MakeDevMode({"dmSize=7"});
    EXPECT_EQ(Run({"ticket", "Probe 9", "--devmode", input}).errors.find("velmora: note: " + input + " isn't taken:\n"),
              0u);
}

TEST_F(TicketTest, DocumentsArePrintedInLinesAndWrittenAsTheyAre) {
    Install("velmora-c3200");
    const std::string ticket = WriteFile("ticket.xml", kEmptyTicket);
    const std::string output = (Folder() / "output.xml").string();
    const struct {
        std::vector<std::string> arguments;
        const char* part;
    } cases[] = {
        {{"ticket", "Probe 9"}, "\n  <psf:ParameterInit name=\"psk:JobCopiesAllDocuments\">\n    <psf:Value "},
        {{"validate", "Probe 9", ticket}, "ParameterInit name=\"psk:PageCopies\">\n"},
        {{"printcaps", "Probe 9"}, "\n  <psf:ParameterDef name=\"psk:PageCopies\">\n"},
        {{"printcaps", "Probe 9", "--ticket", ticket}, "\n  <!--  "},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.arguments.front());
        const std::string lines = Succeed(row.arguments);
        EXPECT_NE(lines.find(row.part), lines.npos) << lines;
        std::vector<std::string> written = row.arguments;
        written.insert(written.end(), {"-o", output});
        Succeed(written);
        EXPECT_EQ(ReadFile(output).find("\n  <"), std::string::npos);
        EXPECT_EQ(Reread(WriteFile("lines.xml", lines)), Reread(output));
    }
}

TEST_F(TicketTest, WhatIsNoTicketChangesNothing) {
    Install("velmora-c3200");
    const struct {
        std::string file;
        const char* fault;
    } cases[] = {
        {WriteFile("cut.xml", "<a>\n<b></a>"), "cut.xml:2:8: "},
        {WriteFile("other.xml", "<PrintTicket/>"), "other.xml: the root is PrintTicket of no namespace; "},
        {WriteFile("caps.xml", R"(<p:PrintCapabilities xmlns:p="urn:x"/>)"),
         "caps.xml: the root is PrintCapabilities of \"urn:x\"; "},
        {(Folder() / "none.xml").string(), "none.xml: No such file or directory; "},
    };
    const std::string output = WriteFile("output", "before");
    for (const auto& row : cases) {
        for (const std::vector<std::string>& arguments :
             {std::vector<std::string>{"devmode", "Probe 9", "--ticket", row.file, "-o", output},
              {"validate", "Probe 9", row.file, "-o", output},
              {"printcaps", "Probe 9", "--ticket", row.file, "-o", output}}) {
            const Outcome outcome = Run(arguments);
            EXPECT_EQ(outcome.exitCode, 2);
            EXPECT_EQ(outcome.output, "");
            EXPECT_NE(outcome.errors.find(row.fault), std::string::npos) << outcome.errors;
            EXPECT_NE(outcome.errors.find("; expected a print ticket: an XML document whose root is PrintTicket of "),
                      std::string::npos);
        }
    }
    EXPECT_EQ(ReadFile(output), "before");

    const std::string ticket = WriteFile("ticket.xml", kEmptyTicket);
    EXPECT_NE(Fail({"validate", "Probe 9", ticket, "-o", ticket}).find("name another file"), std::string::npos);
    EXPECT_EQ(ReadFile(ticket), kEmptyTicket);
}

}  // namespace
}  // namespace velmora
