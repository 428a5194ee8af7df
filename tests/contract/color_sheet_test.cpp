// The Color page of the document sheet, its adjustment sheet and its dialogs, as an application shows them.
#include <string>
#include <vector>

#include "tests/contract/sheet_test.h"
#include "tests/contract/transcript.h"

namespace contract {
namespace {

// Controls of the page.
constexpr int kAutomatic = 6004, kVivid = 6006, kPhoto = 6008, kMonochrome = 6010, kManual = 6012, kPresets = 6013,
              kManagePresets = 6014, kMatched = 6016, kSetIntent = 6017, kNone = 6019, kTextTreatment = 6021,
              kImageTreatment = 6025, kAdjust = 6026, kResolution = 6028, kRendering = 6030, kChoiceA = 6032,
              kResolutionFlag = 6033, kAdvanced = 6034, kDefaults = 6035;

// Controls of the adjustment sheet.
constexpr int kSample = 6104, kBaseColor = 6106, kBrightnessBar = 6112, kBrightness = 6113, kSaturation = 6119,
              kContrast = 6125, kCyanRed = 6135, kMagentaGreen = 6140, kYellowBlue = 6145, kResetAdjustment = 6148,
              kGamma = 6204, kBlack = 6211, kCyan = 6215, kMagenta = 6219, kYellow = 6223, kResetToners = 6226;

// Controls of the preset manager and of the intent dialog.
constexpr int kNames = 6303, kName = 6306, kSave = 6307, kOverwrite = 6308, kDelete = 6309;
constexpr int kIntents[] = {6402, 6403, 6404};
constexpr int kDefaultIntent = 6405;

constexpr int kMessageText = 0xFFFF;

const Step kTurnToColor = TurnTo(1);

// Closes the message in front.
void CloseMessage() {
    SendMessageW(FrontDialog(), WM_COMMAND, IDOK, 0);
}

using ColorSheet = DocumentSheetTest;

TEST_F(ColorSheet, WritesModesAndQuality) {
    Check("monochrome", "colorChoiceA=3",
          {kTurnToColor, SeeOffered(kChoiceA, "2 1 3"), See(kChoiceA, "on 3"), Press(kMonochrome),
           SeeOffered(kChoiceA, "2 1"), See(kChoiceA, "on 1")},
          "dmColor=1 colorPreset=4 colorAuto=0 colorChoiceA=1");
    Check("opened in monochrome", "colorPreset=4 colorChoiceA=3 colorAuto=0 dmColor=1",
          {kTurnToColor, SeeOffered(kChoiceA, "2 1"), See(kChoiceA, "on 1"), Press(kVivid),
           SeeOffered(kChoiceA, "2 1 3")},
          "dmColor=2 colorPreset=2 colorAuto=1 colorChoiceA=1");
    Check("manual", "",
          {kTurnToColor, See(kPresets, "off 0"), See(kManagePresets, "off"), Press(kManual), See(kPresets, "on 0"),
           See(kManagePresets, "on"), See(kSetIntent, "off")},
          "colorPreset=5 colorPresetName=\"Custom\"");
    Check("matched", "", {kTurnToColor, Press(kMatched), See(kSetIntent, "on"), See(kPresets, "off 0")},
          "dmICMMethod=2 colorPreset=6");
    Check("no longer matched", "colorPreset=6 dmICMMethod=2", {kTurnToColor, Press(kPhoto)},
          "dmICMMethod=1 colorPreset=3");
    Check("no matching", "", {kTurnToColor, Press(kNone)}, "colorPreset=7");
    Check("quality", "uiPageLayout=2 pagesPerSheet=2 uiFlagE=1 uiChoice=3",
          {kTurnToColor, SeeOffered(kResolution, "0 1 2"), Choose(kResolution, 0), SeeOffered(kRendering, "1 2 3 4"),
           Choose(kRendering, 3), Choose(kChoiceA, 2), Press(kResolutionFlag)},
          "dmPrintQuality=300 dmYResolution=300 resolutionId=300 layoutMode=3 nupBorderWidth=3 marginValue=59 "
          "colorRendering=3 colorChoiceA=2 resolutionIndex=0 resolutionFlag=1");
    Check("a treatment for each kind of objects", "",
          {kTurnToColor, See(kTextTreatment, "hidden 1"), Press(kAdvanced), See(kManual, "hidden unchecked"),
           SeeOffered(kTextTreatment, "1 2 3"), See(kTextTreatment, "on 1"), Choose(kTextTreatment, 3),
           Choose(kImageTreatment, 1)},
          "colorFlagB=1 objectColor.mode=3 objectColor.mode[2]=1 objectPresetNames=\"Vivid\" "
          "objectPresetNames[2]=\"Deep\"");
    Check("a treatment of a panel that isn't shown", "", {kTurnToColor, Choose(kTextTreatment, 3)}, "");
    Check("objects in colour of a monochrome job", "", {kTurnToColor, Press(kMonochrome), Press(kAdvanced)},
          "colorPreset=4 colorAuto=0 colorFlagB=1");
    Check("defaults", "colorPreset=6 dmICMMethod=2 colorChoiceA=2 colorRendering=4 resolutionFlag=1 resolutionIndex=2",
          {kTurnToColor, Press(kAdvanced), Press(kDefaults), See(kAutomatic, "on checked"), See(kResolution, "on 1"),
           See(kRendering, "on 1"), See(kChoiceA, "on 1"), See(kSetIntent, "off")},
          "dmICMMethod=1 colorPreset=1 colorRendering=1 colorChoiceA=1 resolutionIndex=1 resolutionFlag=0");
}

TEST_F(ColorSheet, AdjustsByItsSheet) {
    Check("both pages", "",
          {kTurnToColor,
           Press(kManual),
           Press(kAdjust),
           Choose(kSample, 2),
           Choose(kBaseColor, 4),
           Type(kBrightness, TEXT("-9")),
           See(kBrightnessBar, "on at -9"),
           Type(kSaturation, TEXT("2")),
           Type(kContrast, TEXT("44")),
           Leave(),
           See(kContrast, "on 10"),
           Type(kCyanRed, TEXT("4")),
           Type(kMagentaGreen, TEXT("-5")),
           Type(kYellowBlue, TEXT("6")),
           TurnTo(1),
           Press(kGamma),
           Type(kBlack, TEXT("1")),
           Type(kCyan, TEXT("-2")),
           Type(kMagenta, TEXT("3")),
           Type(kYellow, TEXT("-4")),
           InSheet(PSBTN_OK)},
          "colorPreset=5 colorAdjust=-9 colorAdjust[1]=10 colorAdjust[2]=2 colorChoiceB=4 colorBalance=4 "
          "colorBalance[1]=-5 colorBalance[2]=6 colorFlagA=0 colorLevels=1 colorLevels[1]=-2 colorLevels[2]=3 "
          "colorLevels[3]=-4 colorPresetName=\"Custom\" outputSetting=2");
    Check("the toners alone", "", {kTurnToColor, Press(kAdjust), Type(kYellow, TEXT("7")), InSheet(PSBTN_OK)},
          "colorLevels[3]=7");
    Check("the toners alone while objects have treatments", "colorPreset=5",
          {kTurnToColor, Press(kAdvanced), Press(kAdjust), Type(kCyan, TEXT("7")), InSheet(PSBTN_OK)},
          "colorLevels[1]=7 colorFlagB=1 colorPresetName=\"Custom\"");
    Check("reset", "colorPreset=5 colorAdjust=5 colorChoiceB=1",
          {kTurnToColor, Press(kAdjust), See(kBrightness, "on 5"), Press(kResetAdjustment), See(kBrightness, "on 0"),
           See(kBaseColor, "on 3"), InSheet(PSBTN_OK)},
          "colorAdjust=0 colorChoiceB=3 colorPresetName=\"Custom\"");
    Check("the toners' reset", "colorLevels=5 colorFlagA=0",
          {kTurnToColor, Press(kAdjust), See(kBlack, "on 5"), Press(kResetToners), See(kBlack, "on 0"),
           InSheet(PSBTN_OK)},
          "colorFlagA=1 colorLevels=0");
    Check("cancelled", "colorPreset=5",
          {kTurnToColor, Press(kAdjust), Type(kBrightness, TEXT("5")), InSheet(PSBTN_CANCEL)}, "");
}

TEST_F(ColorSheet, KeepsPresets) {
    std::vector<Step> save = {kTurnToColor, Press(kManual), Press(kAdjust), Type(kBrightness, TEXT("5")),
                              InSheet(PSBTN_OK)};
    for (WCHAR digit = '0'; digit <= '9'; ++digit) {
        save.insert(save.end(), {Press(kManagePresets), See(kSave, digit == '0' ? "off" : "on"),
                                 Type(kName, WideText(TEXT("Preset ")) + digit), See(kSave, "on"), Press(kSave)});
    }
    save.insert(save.end(),
                {See(kPresets, "on 0"), SeeOffered(kPresets, "0 5 5 5 5 5 5 5 5 5 5"), Press(kManagePresets),
                 See(kNames, "on item 0 of 10"), Type(kName, TEXT("Another")), See(kSave, "off"), Press(IDCANCEL)});

    Check("ten are saved", "", save, "colorPreset=5 colorAdjust=5 colorPresetName=\"Custom\"");
    Check("one is chosen", "", {kTurnToColor, Press(kManual), ChooseItem(kPresets, 3), See(kManagePresets, "off")},
          "colorPreset=5 colorAdjust=5 colorPresetName=\"Preset 2\"");
    Check("its values are adjusted", "",
          {kTurnToColor, Press(kManual), ChooseItem(kPresets, 3), Press(kAdjust), See(kBrightness, "on 5"),
           InSheet(PSBTN_OK), See(kPresets, "on 0")},
          "colorPreset=5 colorAdjust=5 colorPresetName=\"Custom\"");
    Check("one treats images", "",
          {kTurnToColor, Press(kAdvanced), SeeOffered(kImageTreatment, "1 2 3 5 5 5 5 5 5 5 5 5 5"),
           ChooseItem(kImageTreatment, 4)},
          "colorFlagB=1 objectColor.mode[2]=5 objectColor[2].values=5 objectColor[2].values[3]=3 "
          "objectPresetNames[2]=\"Preset 1\"");
    Check("a name that there is, and one that is too long", "colorPreset=5",
          {kTurnToColor, Press(kManagePresets), Press(kDelete), See(kNames, "on item 0 of 9"),
           Type(kName, TEXT("Preset 9")), Press(kSave),
           See(kMessageText, "on There already is a preset with this name. Enter another name."), CloseMessage,
           See(kName, "on Preset 9"), Type(kName, TEXT("abcdefghijk")), See(kName, "on abcdefghij"), Press(kSave)},
          "colorPresetName=\"Custom\"");
    Check("overwritten", "colorPreset=5 colorAdjust=7",
          {kTurnToColor, Press(kManagePresets), [] { SelectInList(kNames, 0); }, Press(kOverwrite),
           ChooseItem(kPresets, 1)},
          "colorPresetName=\"abcdefghij\"");
    Check("the values that were put over it", "", {kTurnToColor, Press(kManual), ChooseItem(kPresets, 1)},
          "colorPreset=5 colorAdjust=7 colorPresetName=\"abcdefghij\"");
}

TEST_F(ColorSheet, StoresTheIntent) {
    Check("chosen", "dmICMIntent=3",
          {kTurnToColor, Press(kMatched), Press(kSetIntent), See(kIntents[2], "on checked"), Press(kIntents[0]),
           Press(IDOK)},
          "dmICMMethod=2 dmICMIntent=1 colorPreset=6");
    Check("the default, at once", "colorPreset=6 dmICMIntent=1",
          {kTurnToColor, Press(kSetIntent), See(kIntents[0], "on checked"), Press(kDefaultIntent),
           See(kIntents[1], "on checked"), Press(IDCANCEL)},
          "dmICMMethod=2 dmICMIntent=2");
    Check("cancelled", "colorPreset=6 dmICMIntent=1",
          {kTurnToColor, Press(kSetIntent), Press(kIntents[2]), Press(IDCANCEL)}, "");
}

TEST_F(ColorSheet, InEveryLanguage) {
    const auto manage = [](const WideText& longName, const char* seen) {
        return std::vector<Step>{Press(kManagePresets),     Type(kName, longName), See(kName, seen),
                                 Type(kName, TEXT("Warm")), Press(kSave),          Press(kManagePresets)};
    };
    // Names of ten bytes in the language's code page.
    const std::vector<Step> latin = manage(TEXT("Warm colours"), "on Warm colou");
    const std::vector<Step> japanese =
        manage(TEXT("\u3042\u3044\u3046\u3048\u304A\u304B"), "on \\u3042\\u3044\\u3046\\u3048\\u304A");
    InEachLanguage([&] {
        const bool isJapanese = language_.id == 0x0411;
        const std::vector<Step> steps =
            std::vector<Step>{kTurnToColor} + Look("color") + std::vector<Step>{Press(kManual), Press(kAdjust)} +
            Look("adjustment") + std::vector<Step>{TurnTo(1)} + Look("toners") + std::vector<Step>{InSheet(PSBTN_OK)} +
            (isJapanese ? japanese : latin) + Look("presets") +
            std::vector<Step>{Press(kSave),    Picture("presets-message"),
                              CloseMessage,    Press(kDelete),
                              Press(IDCANCEL), Press(kAdvanced)} +
            Look("color-advanced") + std::vector<Step>{Press(kAdvanced), Press(kMatched), Press(kSetIntent)} +
            Look("intent") + std::vector<Step>{Press(IDOK), InSheet(PSBTN_OK)};
        EXPECT_EQ(ShowDocumentSheet(printer_, steps), IDOK);
    });
}

}  // namespace
}  // namespace contract
