// The Paper page of the document sheet as an application shows it.
#include <string>
#include <vector>

#include "tests/contract/sheet_test.h"
#include "tests/contract/transcript.h"

namespace contract {
namespace {

// Controls of the page.
constexpr int kPaper = 5006, kFitPaper = 5008, kSource = 5010, kMedium = 5012, kCodeBox = 5013, kCode = 5014,
              kCopies = 5017, kCopiesSpin = 5018, kCollate = 5019, kZoom = 5021, kPercent = 5022, kPercentSpin = 5023,
              kLandscape = 5027, kRotated = 5028, kDuplex = 5029, kManualDuplex = 5030, kBackSides = 5031,
              kLayout = 5033, kDetails = 5034, kDefaults = 5035, kSummaryPaper = 5038, kSummaryFit = 5041,
              kSummaryColor = 5044, kSummaryResolution = 5047, kSummaryLayout = 5053, kSummaryWatermark = 5059;

// Controls of the custom size's dialog.
constexpr int kWidth = 5302, kWidthRange = 5305, kLength = 5307, kLengthRange = 5310, kInches = 5313, kFeedText = 5316,
              kSizeOk = 5317, kSizeCancel = 5318;

// Controls of the layout's details.
constexpr int kRightEdge = 5214, kShiftX = 5224, kShiftY = 5228, kOrders = 5232, kBorder = 5234, kBorderStyle = 5236,
              kDetailsDefaults = 5237;

constexpr int kCustomSize = 258;  // value of the list of papers

using DocumentSheet = DocumentSheetTest;

TEST_F(DocumentSheet, PapersDecideWhatElseThereIs) {
    InstallDevice(kWithDuplex);
    Check("a DL envelope", "",
          {Choose(kPaper, 27), SeeOffered(kFitPaper, "-1 27"), SeeOffered(kMedium, "8 9"), See(kMedium, "on 8"),
           SeeOffered(kLayout, "1"), Choose(kFitPaper, 27), See(kPaper, "on 27"), See(kDuplex, "off unchecked")},
          "dmPaperSize=27 dmPaperLength=2200 dmPaperWidth=1100 scaleMode=33 scaleValue=27 uiFitToPaper=27 "
          "uiMediaValue=8");
    Check("an envelope #10", "", {Choose(kPaper, 20), SeeOffered(kFitPaper, "-1 20"), Choose(kFitPaper, 20)},
          "dmPaperSize=20 dmPaperLength=2413 dmPaperWidth=1048 scaleMode=33 scaleValue=20 uiFitToPaper=20 "
          "uiMediaValue=8");
    Check("an envelope's medium on another paper", "dmPaperSize=27 uiFitToPaper=27 uiMediaValue=8",
          {Choose(kPaper, 9), See(kFitPaper, "on -1"), See(kMedium, "on 8")}, "dmPaperSize=9 uiFitToPaper=65535");
    Check("no duplex on Statement", "",
          {Press(kDuplex), See(kDuplex, "on checked"), Choose(kPaper, 6), See(kDuplex, "off unchecked"),
           See(kManualDuplex, "off unchecked"), See(kBackSides, "off unchecked"), Choose(kFitPaper, 9),
           See(kDuplex, "on unchecked")},
          "dmPaperSize=6 dmPaperLength=2159 dmPaperWidth=1397 scaleMode=33 scaleValue=9 uiFitToPaper=9 "
          "uiZoomPercent=139");
    Check("A3", "", {Choose(kPaper, 8), See(kZoom, "hidden unchecked"), See(kPercentSpin, "hidden 25..300 at 70")},
          "dmPaperSize=8 dmPaperLength=4200 dmPaperWidth=2970 scaleMode=33 scaleValue=9 uiZoomPercent=70");
    Check("A4", "dmPaperSize=8 scaleMode=33 scaleValue=9", {Choose(kPaper, 9), See(kZoom, "on unchecked")},
          "dmPaperSize=9 scaleMode=0 scaleValue=-1");
    Check("B5 fit to Letter", "", {Choose(kPaper, 13), Choose(kFitPaper, 1)},
          "dmPaperSize=13 dmPaperLength=2570 dmPaperWidth=1820 scaleMode=33 scaleValue=1 uiFitToPaper=1 "
          "uiZoomPercent=109");
    Check("office paper", "uiFitToPaper=13",
          {Choose(kMedium, 1), SeeOffered(kFitPaper, "-1 9 1"), See(kFitPaper, "on -1"),
           SeeOffered(kPaper, "8 9 11 70 12 13 88 1 6 7 34 20 27")},
          "uiFitToPaper=65535 uiMediaValue=1 uiZoomPercent=86");
    Check(
        "manual duplex", "",
        {Press(kManualDuplex), See(kDuplex, "off unchecked"), See(kBackSides, "on unchecked"),
         SeeOffered(kPaper, "8 9 11 70 12 13 88 1 6 7 34 258"), SeeOffered(kMedium, "0 3 4 5 6 7"), Press(kBackSides)},
        "uiFlagB=1 uiFlagC=1");
    InstallDevice(kWhole);
    Check("the second tray", "",
          {SeeOffered(kSource, "263 257 258"), Choose(kSource, 258), SeeOffered(kMedium, "0 3 4 5"),
           SeeOffered(kFitPaper, "-1 9 13 1 7 34"), Choose(kFitPaper, 13), See(kPaper, "on 9")},
          "dmDefaultSource=258 scaleMode=33 scaleValue=13 uiFitToPaper=13 uiZoomPercent=86");
    Check("A5 isn't in the second tray", "dmDefaultSource=258",
          {Choose(kPaper, 11), SeeOffered(kSource, "263 257"), See(kSource, "on 257")},
          "dmPaperSize=11 dmPaperLength=2100 dmPaperWidth=1480 dmDefaultSource=257");
    InstallDevice(kBare);
    Check("without a duplex unit", "uiBinding=2", {See(kDuplex, "off unchecked"), Press(kRotated)},
          "rotate180=1 uiRotate180=1");
}

TEST_F(DocumentSheet, TakesCustomSizes) {
    InstallDevice(kWithDuplex);
    const auto enter = [](const WCHAR* width, const WCHAR* length) {
        return std::vector<Step>{Choose(kPaper, kCustomSize), Type(kWidth, width), Type(kLength, length),
                                 Press(kSizeOk)};
    };
    Check("too narrow for duplex", "",
          enter(TEXT("150.0"), TEXT("297.0")) +
              std::vector<Step>{See(kDuplex, "off unchecked"), See(kManualDuplex, "off unchecked"),
                                SeeOffered(kFitPaper, "-1"), See(kPercentSpin, "off 25..400 at 100")},
          "dmPaperSize=258 dmPaperWidth=1500 customWidth=15000");
    Check("wide enough", "", enter(TEXT("180.0"), TEXT("297.0")) + std::vector<Step>{See(kDuplex, "on unchecked")},
          "dmPaperSize=258 dmPaperWidth=1800 customWidth=18000");
    Check("limited", "uiDuplex=1 dmDuplex=2",
          enter(TEXT("150.0"), TEXT("999.9")) + std::vector<Step>{See(kDuplex, "on checked")},
          "dmPaperSize=258 dmPaperWidth=1760 customWidth=17600");
    Check("not a number", "", enter(TEXT("x"), TEXT("")),
          "dmPaperSize=258 dmPaperLength=2100 dmPaperWidth=1000 customWidth=10000 customLength=21000");
    Check("in inches", "customUnit=0",
          {Choose(kPaper, kCustomSize), See(kWidth, "on 8.27"), Type(kWidth, TEXT("7.5")), Press(kSizeOk)},
          "dmPaperSize=258 dmPaperLength=2969 dmPaperWidth=1905 customWidth=19050 customLength=29692");
    Check("in inches, for both sides", "uiDuplex=1 dmDuplex=2",
          {Choose(kPaper, kCustomSize), See(kWidthRange, "on (176.0 - 215.9 mm)"), Press(kInches),
           See(kWidth, "on 8.27"), See(kLengthRange, "on (9.85 - 11.69 in)"), Type(kLength, TEXT("7.87")),
           See(kFeedText, "on Long edge first"), Press(kSizeCancel)},
          "dmPaperSize=258");
    Check("as it was stored", "dmPaperSize=258 uiZoomOn=1",
          {See(kPaper, "on 258"), See(kPercentSpin, "on 25..400 at 100")}, "");
    Check("cancelled", "",
          {Choose(kPaper, kCustomSize), Type(kWidth, TEXT("150.0")), Press(kSizeCancel), See(kPaper, "on 258")},
          "dmPaperSize=258");
}

TEST_F(DocumentSheet, TakesNumbersAndTexts) {
    InstallDevice(kWithDuplex);
    Check("no copies", "", {Type(kCopies, TEXT("0")), Leave(), See(kCopies, "on 1")}, "");
    Check("more than three digits", "", {Type(kCopies, TEXT("1500")), See(kCopies, "on 150")}, "dmCopies=150");
    Check("not a number", "dmCopies=7", {Type(kCopies, TEXT("x")), See(kCopies, "on"), Leave(), See(kCopies, "on 7")},
          "");
    Check("copies in an edit that isn't left", "dmCopies=7", {Type(kCopies, TEXT("0"))}, "dmCopies=1");
    Check("zoom", "",
          {Press(kZoom), SeeOffered(kLayout, "1"), Type(kPercent, TEXT("999")), Leave(), See(kPercent, "on 400"),
           See(kPercentSpin, "on 25..400 at 400")},
          "scaleMode=2 scaleValue=400 uiZoomOn=1 uiZoomPercent=400");
    Check("little zoom", "uiZoomOn=1 uiZoomPercent=50", {Type(kPercent, TEXT("7")), Leave()},
          "scaleMode=2 scaleValue=25 uiZoomPercent=25");
    Check("no zoom", "uiZoomOn=1 uiZoomPercent=50", {Type(kPercent, TEXT(""))},
          "scaleMode=2 scaleValue=100 uiZoomPercent=100");
    Check("zoom off", "uiZoomOn=1 uiZoomPercent=50 scaleMode=2 scaleValue=50", {Press(kZoom)},
          "scaleMode=0 scaleValue=-1 uiZoomOn=0 uiZoomPercent=100");
    Check("a small fit-to paper's zoom", "", {Choose(kFitPaper, 11), See(kPercent, "off 69")},
          "scaleMode=33 scaleValue=11 uiFitToPaper=11 uiZoomPercent=69");
    Check("a code", "", {See(kCode, "off"), Press(kCodeBox), Type(kCode, TEXT("x\u20AC9+1")), See(kCode, "on x91")},
          "uiFlagA=1 uiCode=\"x91\"");
}

TEST_F(DocumentSheet, LaysPagesOut) {
    InstallDevice(kWithDuplex);
    Check("four pages", "uiPageOrder=7", {Choose(kLayout, 4), See(kZoom, "hidden unchecked"), See(kDetails, "on")},
          "pagesPerSheet=4 nupOrder=2 uiPageLayout=4");
    Check("two pages", "uiPageOrder=2", {Choose(kLayout, 2), Press(kLandscape)},
          "dmOrientation=2 pagesPerSheet=2 nupOrder=1 uiPageLayout=2");
    Check("a poster", "dmCollate=1 collateCopy=1 uiRotate180=1 uiShiftX=5 uiFlagE=1",
          {Press(kDuplex), SeeOffered(kLayout, "1 2 4"), Press(kDuplex), Choose(kLayout, 7),
           See(kCollate, "off unchecked"), See(kRotated, "off unchecked"), See(kDuplex, "off unchecked"),
           See(kManualDuplex, "off unchecked"), See(kDetails, "off"), See(kSummaryLayout, "on Poster 4x4")},
          "dmCollate=0 collateCopy=0 posterMode=4 uiRotate180=0 uiPageLayout=7 uiShiftX=0 uiFlagE=0");
    Check("details of four pages", "uiPageLayout=4 uiPageOrder=6 uiDuplex=1 resolutionIndex=0",
          {Press(kDetails), See(kOrders, "on item 1 of 4"), See(kBorderStyle, "off 1"), See(kShiftY, "on 0"),
           [] { SelectInList(kOrders, 3); }, Press(kRightEdge), Type(kShiftX, TEXT("-99")), Type(kShiftY, TEXT("12")),
           See(kShiftX, "on -60"), Press(kBorder), Press(IDOK)},
          "dmDuplex=3 layoutMode=1 pagesPerSheet=4 nupOrder=18 nupBorderWidth=3 uiBinding=2 uiShiftX=-60 "
          "uiShiftY=12 uiPageOrder=8 uiFlagE=1");
    Check("details that are cancelled", "uiPageLayout=2 uiPageOrder=2",
          {Press(kDetails), See(kOrders, "on item 1 of 2"), Press(kBorder), Press(IDCANCEL), Press(kRotated)},
          "rotate180=1 pagesPerSheet=2 nupOrder=1 uiRotate180=1");
    Check("details' defaults", "uiPageLayout=2 uiPageOrder=2 uiShiftX=5",
          {Press(kDetails), Press(kDetailsDefaults), See(kShiftX, "on 0"), See(kOrders, "on item 0 of 2"), Press(IDOK)},
          "pagesPerSheet=2 uiShiftX=0 uiPageOrder=1");
    Check("defaults", "dmPaperSize=258 customWidth=15000 uiPageLayout=1 dmCopies=3 uiZoomOn=1 dmOrientation=2",
          {Press(kDefaults), See(kPaper, "on 9"), See(kZoom, "on unchecked"), See(kDuplex, "on unchecked"),
           See(kCopiesSpin, "on 1..999 at 1")},
          "dmOrientation=1 dmPaperSize=9 dmCopies=1 uiZoomOn=0 customWidth=21000");
}

TEST_F(DocumentSheet, ShowsWhatIsStored) {
    InstallDevice(kWithDuplex);
    const std::vector<Step> summary = {See(kSummaryPaper, "on Custom"),     See(kSummaryFit, "on Same size"),
                                       See(kSummaryColor, "on Monochrome"), See(kSummaryResolution, "on Fine"),
                                       See(kSummaryLayout, "on 1 page"),    See(kSummaryWatermark, "on Off")};
    std::vector<Step> steps = {See(kPaper, "on 258"),         See(kCopies, "on 12"),
                               See(kCollate, "on checked"),   See(kCodeBox, "on checked"),
                               See(kRotated, "on checked"),   See(kLandscape, "on checked"),
                               See(kDuplex, "off unchecked"), See(kBackSides, "off unchecked")};
    // From the device mode at first, then from the other pages.
    steps = steps + summary + std::vector<Step>{TurnTo(kColorTab), TurnTo(kWatermarkTab), TurnTo(kPaperTab)} + summary;
    Check("stored",
          "dmPaperSize=258 customWidth=15000 dmCopies=12 dmCollate=1 uiFlagA=1 uiRotate180=1 "
          "dmOrientation=2 colorPreset=4 resolutionIndex=2",
          steps, "");
}

TEST_F(DocumentSheet, InJapaneseHasPostcards) {
    environment_->SetLanguage(0x0411);
    InstallDevice(kWithDuplex);
    Check("a postcard", "",
          {Choose(kPaper, 43), SeeOffered(kFitPaper, "-1 43"), SeeOffered(kMedium, "0 2 3 4 5 6 10 7 8 9"),
           Choose(kMedium, 10), SeeOffered(kPaper, "8 9 11 70 12 13 88 1 6 7 34 43 258"), See(kPaper, "on 43"),
           Press(kManualDuplex), SeeOffered(kMedium, "0 3 4 5 6 10 7")},
          "dmPaperSize=43 uiMediaValue=10 uiFlagB=1");
}

TEST_F(DocumentSheet, CancelledKeepsWhatWasApplied) {
    const velmora::VelmoraDevMode input = AppliedDevMode(printer_);
    const Step cancel = InSheet(PSBTN_CANCEL);
    DevModeBuffer output;
    ShowDocumentSheet(printer_, {Press(kCollate), cancel}, input, &output);
    // Hosts may hand back the device mode that they were given.
    EXPECT_TRUE(output.Untouched() || Changes(input, *output.content).empty());

    ShowDocumentSheet(printer_, {Press(kCollate), InSheet(PSBTN_APPLYNOW), Choose(kPaper, 8), cancel}, input, &output);
    EXPECT_EQ(Changes(input, *output.content), "dmCollate=1 collateCopy=1");
}

TEST_F(DocumentSheet, PaperInEveryLanguage) {
    InEachLanguage([this] {
        const std::vector<Step> steps = {Describe("page"),
                                         Picture("paper"),
                                         Choose(kLayout, 2),
                                         Press(kDetails),
                                         Picture("layout-2"),
                                         Press(IDOK),
                                         Choose(kLayout, 4),
                                         Press(kDetails),
                                         Describe("details"),
                                         Picture("layout-4"),
                                         Press(IDOK),
                                         Choose(kPaper, kCustomSize),
                                         Describe("custom size"),
                                         Picture("custom-size"),
                                         Press(kInches),
                                         Describe("custom size"),
                                         Picture("custom-size-inches"),
                                         Press(kSizeOk),
                                         Describe("page"),
                                         Picture("paper-custom"),
                                         InSheet(PSBTN_OK)};
        EXPECT_EQ(ShowDocumentSheet(printer_, steps), IDOK);
    });
}

}  // namespace
}  // namespace contract
