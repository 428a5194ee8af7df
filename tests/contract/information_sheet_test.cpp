// The Information page of the document sheet as an application shows it, and the defaults that it restores.
#include <string>
#include <vector>

#include "tests/contract/sheet_test.h"
#include "tests/contract/transcript.h"

namespace contract {
namespace {

constexpr int kRestoreAll = 10009, kQuestion = 0xFFFF;

// Of the other pages.
constexpr int kCopies = 5017, kMonochrome = 6010, kWatermark = 7003, kDividers = 9003;

const Step kTurn = TurnTo(kInformationTab);

// Presses a button of the message in front.
Step Answer(int button) {
    return [button] { SendMessageW(FrontDialog(), WM_COMMAND, static_cast<WPARAM>(button), 0); };
}

std::vector<Step> RestoreAll() {
    return {kTurn, Press(kRestoreAll), Answer(IDOK)};
}

using InformationSheet = DocumentSheetTest;

TEST_F(InformationSheet, RestoresTheDefaultsOfAllPages) {
    // Some of each page.
    constexpr char kSettings[] =
        "dmCopies=5 dmOrientation=2 uiPageLayout=4 uiPageOrder=6 uiBinding=2 uiShiftX=-9 uiShiftY=8 customUnit=0 "
        "customWidth=15000 customLength=25000 colorPreset=4 colorFlagB=1 dmColor=1 colorAuto=0 "
        "colorAdjust=7 resolutionIndex=2 dmPrintQuality=1200 dmYResolution=1200 resolutionId=1200 outputFlag=1 "
        "outputLevel=3 finishFlagA=1 finishChoice=2 finishFlagB=1 finishFlags=1 finishFlagC=0 optionFlags=524304";
    // What pages write that show their defaults, and what is written for pages that weren't open.
    const std::string shown =
        "dmOrientation=1 dmCopies=1 dmPrintQuality=600 dmColor=2 dmYResolution=600 resolutionId=600 optionFlags=524816 "
        "uiPageLayout=1 uiBinding=0 uiShiftX=0 uiShiftY=0 uiPageOrder=1 customWidth=21000 customLength=29700 "
        "customUnit=1 colorPreset=1 colorAuto=1 colorAdjust=0 colorChoiceB=0 colorFlagB=0 resolutionIndex=1 "
        "outputFlag=0 outputLevel=0 finishFlagA=0 finishChoice=0 finishFlagB=0 finishFlags=0 finishFlagC=1";
    const std::string unopened =
        "dmOrientation=1 dmCopies=1 dmPrintQuality=600 dmColor=2 dmYResolution=600 resolutionId=600 optionFlags=524816 "
        "uiPageLayout=1 uiBinding=0 uiShiftX=0 uiShiftY=0 uiPageOrder=1 customWidth=21000 customLength=29700 "
        "customUnit=1 colorPreset=1 colorAuto=1 colorAdjust=0 colorChoiceB=0 colorFlagB=0 colorPresetName=\"Custom\" "
        "resolutionIndex=1 objectColor.flag=0 objectColor.flag[1]=0 objectColor.flag[2]=0 outputFlag=0 outputLevel=0 "
        "finishFlagA=0 finishChoice=0 finishSide=0 finishFlagB=0 finishFlags=0 finishFlagC=1";
    const std::vector<Step> open = {TurnTo(kColorTab), TurnTo(kWatermarkTab), TurnTo(kOutputTab)};
    const std::vector<Step> seen = {TurnTo(kPaperTab),     See(kCopies, "on 1"),
                                    TurnTo(kColorTab),     See(kMonochrome, "on unchecked"),
                                    TurnTo(kWatermarkTab), See(kWatermark, "on unchecked"),
                                    TurnTo(kOutputTab),    See(kDividers, "on unchecked")};
    Check("cancelled", kSettings,
          {kTurn, Press(kRestoreAll), See(kQuestion, "on Restore the defaults of all pages?"), Answer(IDCANCEL)}, "");
    Check("no other page was open", kSettings, RestoreAll(), unopened + " uiStale=1");
    Check("all pages were open", kSettings, open + RestoreAll(), shown + " uiStale=1");
    Check("all pages are opened then", kSettings, RestoreAll() + seen, unopened);
    Check("twice", kSettings, open + RestoreAll() + RestoreAll(), shown + " uiStale=1");
    Check("changed after that", "", open + RestoreAll() + std::vector<Step>{TurnTo(kOutputTab), Press(kDividers)},
          "colorChoiceB=0 finishFlagA=1 uiStale=1");
}

TEST_F(InformationSheet, InEveryLanguage) {
    InEachLanguage([this] {
        const std::vector<Step> steps =
            std::vector<Step>{kTurn} + Look("information") +
            std::vector<Step>{Press(kRestoreAll), Picture("information-question"), Answer(IDOK), InSheet(PSBTN_OK)};
        EXPECT_EQ(ShowDocumentSheet(printer_, steps), IDOK);
    });
}

}  // namespace
}  // namespace contract
