// The Output page of the document sheet as an application shows it.
#include <string>
#include <vector>

#include "tests/contract/sheet_test.h"
#include "tests/contract/transcript.h"

namespace contract {
namespace {

// Controls of the page.
constexpr int kDividers = 9003, kBefore = 9004, kAfter = 9005, kAround = 9006, kSourceLabel = 9007, kSource = 9008,
              kLabel = 9009, kText = 9010;
constexpr int kBoxes[] = {9012, 9013, 9014};
constexpr int kBinary = 9015, kDefaults = 9017;

// Of the Paper page.
constexpr int kPaper = 5006, kSizeOk = 5317, kCustomSize = 258, kA4 = 9;

constexpr int kNoticeOk = 1604;

constexpr Device kNeverTwoTrays = {7, 0xFFFFFFFF, 0, 5};

const Step kTurn = TurnTo(kOutputTab);

using OutputSheet = DocumentSheetTest;

TEST_F(OutputSheet, WritesWhatIsChosen) {
    InstallDevice(kBare);
    Check("looked at", "", {kTurn}, "");
    Check("dividers", "",
          {kTurn, See(kBefore, "off checked"), See(kSourceLabel, "off &Paper source:"), See(kSource, "off 1"),
           Press(kDividers), See(kBefore, "on checked"), See(kSourceLabel, "on &Paper source:"),
           SeeOffered(kSource, "1"), Press(kAround), See(kBefore, "on unchecked")},
          "finishFlagA=1 finishChoice=2");
    Check("dividers after the document", "",
          {kTurn, Press(kDividers), Press(kAfter), See(kBefore, "on unchecked"), See(kAfter, "on checked")},
          "finishFlagA=1 finishChoice=1");
    Check("no dividers", "finishFlagA=1 finishChoice=1",
          {kTurn, See(kAfter, "on checked"), Press(kDividers), See(kAfter, "off checked")}, "finishFlagA=0");
    Check("from a tray that isn't there", "finishSide=2", {kTurn, See(kSource, "off 1")}, "finishSide=1");
    Check("a label", "",
          {kTurn, See(kText, "off"), Press(kLabel), Type(kText, TEXT("Job \u20AC9+1-a_b.c")),
           See(kText, "on Job 91-a_b.c")},
          "finishFlagB=1 outputText=\"Job 91-a_b.c\"");
    Check("a long label, not printed", "finishFlagB=1",
          {kTurn, Type(kText, TEXT("ABCDEFGHIJKLMNOPQ")), Press(kLabel), See(kText, "off ABCDEFGHIJKLMNOP")},
          "finishFlagB=0 outputText=\"ABCDEFGHIJKLMNOP\"");
    Check("switches", "",
          {kTurn, Press(kBoxes[0]), Press(kBoxes[1]), Press(kBoxes[2]), See(kBinary, "on checked"), Press(kBinary)},
          "optionFlags=524304 finishFlags=1 finishFlags[1]=1 finishFlags[2]=1 finishFlagC=0");
    Check(
        "defaults", "finishFlagA=1 finishChoice=2 finishFlagB=1 finishFlags=1 finishFlagC=0 optionFlags=524304",
        {kTurn, See(kBinary, "on unchecked"), Type(kText, TEXT("x")), Press(kDefaults), See(kDividers, "on unchecked"),
         See(kBefore, "off checked"), See(kText, "off"), See(kLabel, "on unchecked"), See(kBinary, "on checked")},
        "optionFlags=524816 finishFlagA=0 finishChoice=0 finishFlagB=0 finishFlags=0 finishFlagC=1");
    InstallDevice(kNeverTwoTrays);
    Check("from a tray that can't be", "finishFlagA=1 finishSide=2",
          {kTurn, SeeOffered(kSource, "1"), See(kSource, "on 1")}, "finishSide=1");
    InstallDevice(kWhole);
    Check("from the second tray", "", {kTurn, SeeOffered(kSource, "1 2"), Press(kDividers), Choose(kSource, 2)},
          "finishFlagA=1 finishSide=2");
    Check("all that there is", "finishFlagA=1 finishChoice=1 finishSide=2 finishFlagB=1 finishFlags=1 finishFlagC=0",
          {kTurn, See(kDividers, "on checked"), See(kBefore, "on unchecked"), See(kAfter, "on checked"),
           See(kAround, "on unchecked"), See(kSource, "on 2"), See(kLabel, "on checked"), See(kText, "on"),
           See(kBoxes[0], "on checked"), See(kBoxes[1], "on unchecked"), See(kBinary, "on unchecked")},
          "");
    Check("the defaults' tray", "finishSide=2", {kTurn, See(kSource, "off 2"), Press(kDefaults)}, "finishSide=1");
}

TEST_F(OutputSheet, DividesNoCustomSizes) {
    std::vector<Step> steps = {Choose(kPaper, kCustomSize), Press(kSizeOk), kTurn, See(kDividers, "off unchecked"),
                               See(kBefore, "off checked")};
    Check("there", "finishFlagA=1", steps, "dmPaperSize=258");
    steps = steps + std::vector<Step>{TurnTo(kPaperTab), Choose(kPaper, kA4), kTurn, See(kDividers, "on unchecked"),
                                      Press(kBoxes[0])};
    Check("there and back", "finishFlagA=1", steps, "finishFlagA=0 finishFlags=1");
}

TEST_F(OutputSheet, StaysWhereSettingsConflict) {
    InstallDevice(kWhole);
    Check("a banner on both sides", "dmPaperSize=600 dmDuplex=2",
          {kTurn, Press(kBoxes[0]), InSheet(PSBTN_OK), Describe("conflict"), Press(kNoticeOk),
           See(kBoxes[0], "on checked"), TurnTo(kPaperTab), Choose(kPaper, kA4)},
          "dmPaperSize=9 dmDuplex=0 finishFlags=1");
}

TEST_F(OutputSheet, InEveryLanguage) {
    InEachLanguage([this] {
        const std::vector<Step> steps =
            std::vector<Step>{kTurn} + Look("output") +
            std::vector<Step>{Press(kDividers), Press(kLabel), Type(kText, TEXT("Invoices 2-4"))} +
            Look("output-chosen") + std::vector<Step>{InSheet(PSBTN_OK)};
        EXPECT_EQ(ShowDocumentSheet(printer_, steps), IDOK);
    });
}

}  // namespace
}  // namespace contract
