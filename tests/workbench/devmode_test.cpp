// Device modes made, compared, converted and checked by commands.
#include <cstring>
#include <fstream>

#include "driver/devmode/devmode_fields.h"
#include "tests/workbench/workbench_fixture.h"
#include "tools/velmora/command_line.h"
#include "tools/velmora/devmode_differences.h"
#include "tools/velmora/devmode_file.h"

namespace velmora {
namespace {

using Arguments = std::vector<std::string>;

class DevModeTest : public WorkbenchTest {
  protected:
    void SetUp() override { Succeed({"install", WriteSource()}); }

    std::string File(const std::string& name) const { return (Folder() / name).string(); }

    // Writes a device mode to a file of the test's folder, with assignments.
    Outcome Make(const std::string& name, const Arguments& assignments) const {
        Arguments arguments = {"devmode", "Probe 9", "-o", File(name)};
        for (const std::string& assignment : assignments) {
            arguments.insert(arguments.end(), {"--set", assignment});
        }
        return Run(arguments);
    }

    nlohmann::json RunJson(Arguments arguments, int exitCode) const {
        arguments.emplace_back("--json");
        const Outcome outcome = Run(std::move(arguments));
        EXPECT_EQ(outcome.exitCode, exitCode) << outcome.errors;
        return nlohmann::json::parse(outcome.output);
    }

    // "FIELD: BEFORE -> AFTER" of what a command tells to differ.
    static Arguments Lines(const nlohmann::json& differences) {
        Arguments lines;
        for (const nlohmann::json& difference : differences) {
            const nlohmann::json& field = difference.at("field");
            const nlohmann::json& element = difference.at("element");
            lines.push_back((field.is_null() ? difference.at("part").get<std::string>() : field.get<std::string>()) +
                            (element.is_null() ? "" : "[" + element.dump() + "]") + ": " +
                            difference.at("before").dump() + " -> " + difference.at("after").dump());
        }
        return lines;
    }
};

TEST_F(DevModeTest, WhatIsSetIsWhatDiffers) {
    const struct {
        const char* assignment;
        Arguments differences;
        const char* note;
    } cases[] = {
        {"dmCopies=3", {"dmCopies: 1 -> 3"}, ""},
        {"dmOrientation=landscape", {"dmOrientation: 1 -> 2"}, ""},
        {"dmOrientation=portrait", {}, ""},
        {"dmScale=-0x10", {"dmScale: 100 -> -16"}, "dmScale: the driver doesn't accept -16, only 100"},
        {"dmFields=0xFFFFFFFF", {"dmFields: 59151 -> 4294967295"}, ""},
        {"colorAdjust[2]=5", {"colorAdjust[2]: 0 -> 5"}, ""},
        {"blobRefs.second[5]=-1", {"blobRefs.second[5]: 0 -> -1"}, ""},
        {"objectColor[1].values[6]=65535", {"objectColor[1].values[6]: 0 -> 65535"}, ""},
        {"primaryFont=ゴシック", {"primaryFont: \"Courier\" -> \"ゴシック\""}, ""},
        {"pjlJobEnd=", {"pjlJobEnd: \"@PJL SET GUIENDJOB=1\\r\\n\" -> \"\""}, ""},
        {"extraText=äöü=45678901", {"extraText: \"\" -> \"äöü=45678901\""}, "extraText: the text fills the field"},
        {"exceptionArea=0x01 0002", {"exceptionArea: \"00\" -> \"01\"", "exceptionArea: \"00\" -> \"02\""}, ""},
        {"private[1750]=0x41", {"private: \"00\" -> \"41\""}, ""},
        {"private[1750]=41 4243", {"private: \"00 00 00\" -> \"41 42 43\""}, ""},
        {"public[86]=0500", {"dmCopies: 1 -> 5"}, ""},
        {"private[3867]=FF", {"private: \"00\" -> \"FF\""}, ""},
    };
    ASSERT_EQ(Make("plain", {}).exitCode, kDone);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.assignment);
        const Outcome made = Make("made", {c.assignment});
        ASSERT_EQ(made.exitCode, kDone) << made.errors;
        EXPECT_EQ(made.errors.empty(), *c.note == 0) << made.errors;
        EXPECT_NE(made.errors.find(c.note), std::string::npos) << made.errors;
        const nlohmann::json diff = RunJson({"diff", File("plain"), File("made")}, c.differences.empty() ? kDone : kNo);
        EXPECT_EQ(Lines(diff.at("differences")), c.differences);
    }
}

TEST_F(DevModeTest, WhatCantBeSetIsRefusedAndNothingIsWritten) {
    const struct {
        const char* assignment;
        const char* message;
    } cases[] = {
        {"dmScale", "\"dmScale\": expected FIELD=VALUE"},
        {"dmSkale=5", "the device mode has no field \"dmSkale\"; nearest \"dmScale\""},
        {"colorAdust[1]=5", "nearest \"colorAdjust\""},
        {"=5", "the device mode has no field \"\""},
        {"dmScale=32768", "dmScale: found \"32768\", expected a number from -32768 to 32767\n"},
        {"acceptMark=-1", "expected a number from 0 to 255"},
        {"dmFields=0x100000000", "expected a number from 0 to 4294967295"},
        {"dmDuplex=long", "or one of \"not set\", \"one side\", \"long edge\", \"short edge\""},
        {"dmDuplex=", "dmDuplex: found \"\""},
        {"colorAdjust=1", "expected one of colorAdjust[0] to colorAdjust[2]"},
        {"colorAdjust[3]=1", "colorAdjust has elements 0 to 2"},
        {"dmScale[1]=1", "dmScale is a single value"},
        {"private[3868]=00", "the private part has bytes 0 to 3867"},
        {"public[219]=0000", "expected 1 byte in hexadecimal"},
        {"public[0]=5", "expected 1 to 220 bytes in hexadecimal"},
        {"exceptionArea=XY", "expected 1 to 734 bytes in hexadecimal"},
        {"extraText=1234567890123", "found a text of 13 bytes in the machine's code page, at most 12 fit"},
        {"overlayName=12345678901234", "found a text of 14 UTF-16 characters, at most 13 fit"},
        {"extraText=日", "code page 1252, which has no \"日\""},
        {"extraText=\xFF", "expected a text in UTF-8"},
    };
    std::ofstream(File("kept")) << "kept";
    for (const auto& wrong : cases) {
        const Outcome outcome = Make("kept", {"dmCopies=2", wrong.assignment});
        EXPECT_EQ(outcome.exitCode, kUsage) << wrong.assignment;
        EXPECT_EQ(outcome.output, "");
        EXPECT_NE(outcome.errors.find(wrong.message), std::string::npos) << outcome.errors;
    }
    EXPECT_EQ(std::filesystem::file_size(File("kept")), 4u);
}

TEST_F(DevModeTest, AnsiTextsAreOfTheMachinesCodePage) {
    Succeed({"printers", "--language", "JAPA"});
    Make("made", {"extraText=日本"});
    const VelmoraDevMode devMode = ReadDevModeFile(File("made"));
    EXPECT_EQ(std::string(devMode.privatePart.extraText), "\x93\xFA\x96\x7B");
}

TEST_F(DevModeTest, FilesThatAreNoDeviceModes) {
    Make("plain", {});
    std::ofstream(File("short")) << std::string(220, 'x');
    const struct {
        Arguments arguments;
        int exitCode;
        std::string message;
    } cases[] = {
        {{"diff", File("plain"), File("short")}, 2, File("short") + " has 220 bytes; expected a device mode of 4088"},
        {{"diff", File("none"), File("plain")}, 2, File("none") + " can't be read"},
        {{"diff", File("plain"), File("plain"), "--printer", "Nobody"}, 2, "there is no printer \"Nobody\""},
        {{"check", "Probe 9", File("short")}, 2, "has 220 bytes"},
        {{"convert", "Probe 9", Folder().string()}, 1, "can't be read"},
        {{"convert", "Probe 9", File("plain"), "-o", File("plain")}, 1, "name another file"},
        {{"devmode", "Probe 9", "-o", File("none/x")}, 1, "there is no folder"},
    };
    for (const auto& wrong : cases) {
        const Outcome outcome = Run(wrong.arguments);
        EXPECT_EQ(outcome.exitCode, wrong.exitCode) << wrong.message;
        EXPECT_EQ(outcome.output, "");
        EXPECT_NE(outcome.errors.find(wrong.message), std::string::npos) << outcome.errors;
    }
}

TEST_F(DevModeTest, DiffAsTextWithAndWithoutAModel) {
    Make("plain", {});
    Make("made", {"dmPaperSize=600", "dmFields=0x3"});
    EXPECT_EQ(Succeed({"diff", File("plain"), File("plain")}), "the device modes are the same\n");
    const Arguments diff = {"diff", File("plain"), File("made")};
    const std::string text = Run(diff).output;
    EXPECT_NE(text.find("3 (0x3 DM_ORIENTATION"), text.npos) << text;
    EXPECT_EQ(text.find("(Card)"), text.npos);
    const nlohmann::json differences =
        RunJson({"diff", File("plain"), File("made"), "--printer", "Probe 9"}, kNo).at("differences");
    EXPECT_EQ(differences[1].at("beforeName"), "A4");
    EXPECT_EQ(differences[1].at("afterName"), "Card");
}

TEST_F(DevModeTest, Conversion) {
    Make("plain", {});
    const nlohmann::json plain = RunJson({"convert", "Probe 9", "-o", File("converted")}, kDone);
    EXPECT_EQ(plain, nlohmann::json::parse(R"({"result": true, "lastError": 0, "neededBytes": 4088,
                                               "differences": []})"));
    EXPECT_EQ(DifferenceLines(ReadDevModeFile(File("plain")), ReadDevModeFile(File("converted"))), Arguments());

    // What is accepted is kept, with its repairs.
    Make("damaged", {"dmCopies=0", "dmDuplex=long edge"});
    const nlohmann::json repaired = RunJson({"convert", "Probe 9", File("damaged")}, kDone);
    EXPECT_EQ(Lines(repaired.at("differences")), (Arguments{"dmCopies: 0 -> 1", "featureSelection[1]: -1 -> 0"}));

    // A device mode that isn't this driver's gives the printer's default.
    Make("foreign", {"dmSpecVersion=0x400", "dmCopies=9"});
    const nlohmann::json foreign = RunJson({"convert", "Probe 9", File("foreign"), "-o", File("converted")}, kDone);
    EXPECT_EQ(Lines(foreign.at("differences")), (Arguments{"dmSpecVersion: 1024 -> 1025", "dmCopies: 9 -> 1"}));
    EXPECT_EQ(DifferenceLines(ReadDevModeFile(File("plain")), ReadDevModeFile(File("converted"))), Arguments());
}

TEST_F(DevModeTest, Checks) {
    const struct {
        Arguments assignments;
        int exitCode;
        const char* publicPart;
        const char* privatePart;
        Arguments differences;
    } cases[] = {
        {{"featureSelection[1]=0"}, kDone, "accepted", "accepted", {}},
        {{"featureSelection[1]=0", "dmScale=50", "dmCopies=0"},
         kDone,
         "accepted after 2 repairs: dmScale, dmCopies",
         "accepted",
         {"dmScale: 50 -> 100", "dmCopies: 0 -> 1"}},
        {{"dmScale=50", "dmCopies=0", "dmOrientation=3"},
         kNo,
         "rejected after 3 repairs: dmOrientation, dmScale, dmCopies",
         "accepted after 1 repair: featureSelection",
         {"dmOrientation: 3 -> 1", "dmScale: 50 -> 100", "dmCopies: 0 -> 1", "featureSelection[1]: -1 -> 0"}},
        {{"pagesPerSheet=3", "descriptionPath=C:\\OTHER.XPI"},
         kNo,
         "accepted",
         "rejected by descriptionPath (valid: NUL-terminated; the file name must be that of the printer's "
         "description file)",
         {}},
        {{"featureSelection[1]=0", "pagesPerSheet=3", "private[2668]=01"},
         kNo,
         "accepted",
         "rejected by uiCode (valid: last byte 0) after 1 repair: pagesPerSheet",
         {"pagesPerSheet: 3 -> 1"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.publicPart + std::string("; ") + c.privatePart);
        ASSERT_EQ(Make("made", c.assignments).exitCode, kDone);
        const std::string text = Run({"check", "Probe 9", File("made")}).output;
        const std::string outcome =
            std::string("public part: ") + c.publicPart + "\nprivate part: " + c.privatePart + "\n";
        EXPECT_TRUE(text.starts_with(outcome)) << text;
        const nlohmann::json check = RunJson({"check", "Probe 9", File("made")}, c.exitCode);
        EXPECT_EQ(check.at("accepted"), c.exitCode == kDone);
        EXPECT_EQ(Lines(check.at("differences")), c.differences);
    }
    Make("made", {"privateSignature=0", "dmScale=50"});
    const nlohmann::json check = RunJson({"check", "Probe 9", File("made")}, kNo);
    EXPECT_EQ(check.at("public"), nlohmann::json::parse(R"({"accepted": true, "repairs": 1, "repaired": ["dmScale"],
                                                            "rejectedBy": null})"));
    EXPECT_EQ(check.at("private"), nlohmann::json::parse(R"({"accepted": false, "repairs": 0, "repaired": [],
                                                             "rejectedBy": "privateSignature"})"));
}

TEST(DevModeDifferences, AreToldByFieldElementAndByte) {
    VelmoraDevMode before;
    WriteDevModeTemplate(&before);
    const struct {
        const char* what;
        void (*change)(VelmoraDevMode& devMode);
        Arguments lines;
    } cases[] = {
        {"the same", [](VelmoraDevMode&) {}, {}},
        {"both parts",
         [](VelmoraDevMode& devMode) {
             devMode.publicPart.dmPanningHeight = 1;
             devMode.privatePart.privateVersion = 2;
         },
         {"dmPanningHeight: 0 -> 1", "privateVersion: 1 -> 2"}},
        {"names of values",
         [](VelmoraDevMode& devMode) { devMode.publicPart.dmDuplex = 3; },
         {"dmDuplex: 0 (not set) -> 3 (short edge)"}},
        {"bytes of no field, in rows of their own",
         [](VelmoraDevMode& devMode) {
             uint8_t* const bytes = devMode.privatePart.reserved1750;
             bytes[0] = bytes[2] = bytes[3] = 0xAB;
         },
         {"private[1750]: 00 -> AB", "private[1752..1753]: 00 00 -> AB AB"}},
        {"a text, whatever is behind its NUL",
         [](VelmoraDevMode& devMode) { memcpy(devMode.privatePart.outputText, "a\0b", 3); },
         {"outputText: \"\" -> \"a\""}},
        {"only what is behind a NUL",
         [](VelmoraDevMode& devMode) { devMode.privatePart.primaryFont[31] = 0x4142; },
         {"private[74..75]: 00 00 -> 42 41"}},
        {"an area",
         [](VelmoraDevMode& devMode) { devMode.privatePart.exceptionArea[1] = 7; },
         {"private[3078]: 00 -> 07"}},
        {"a place of two fields",
         [](VelmoraDevMode& devMode) { devMode.privatePart.watermarkText[0] = 'x'; },
         {"watermarkText: \"\" -> \"x\"", "watermarkFile: \"\" -> \"x\""}},
    };
    for (const auto& c : cases) {
        VelmoraDevMode after = before;
        c.change(after);
        EXPECT_EQ(DifferenceLines(before, after), c.lines) << c.what;
    }
}

}  // namespace
}  // namespace velmora
