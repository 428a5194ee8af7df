// What the Paper page decides, apart from its windows.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <string>
#include <unordered_set>
#include <vector>

#include "driver/ui/custom_size.h"
#include "driver/ui/layout_details.h"
#include "driver/ui/paper_choices.h"
#include "driver/ui/paper_rules.h"
#include "driver/ui/paper_summary.h"
#include "tests/driver/changed_devmode.h"
#include "tests/driver/wide_text.h"

namespace velmora {
namespace {

using driver_test::WideText;
using driver_test::With;

constexpr uint32_t kNoUnit = 0xFFFFFFFF;  // DeviceInfo.optionFlags
constexpr uint16_t kNoFit = 65535;        // uiFitToPaper

// A new device mode, of what the page reads.
VelmoraDevMode NewDevMode() {
    return With({},
                "dmPaperSize=9 dmDefaultSource=263 dmOrientation=1 dmCopies=1 uiFitToPaper=65535 uiZoomPercent=100 "
                "uiPageLayout=1 uiChoice=1 customUnit=1 customWidth=21000 customLength=29700");
}

struct Setting {
    bool isJapanese = false;
    uint32_t secondTray = 0;
    uint32_t optionFlags = 1;
};

PaperChoices Open(VelmoraDevMode devMode, const Setting& setting = {}) {
    DeviceInfo installed = {};
    installed.secondTray = setting.secondTray;
    installed.optionFlags = setting.optionFlags;
    PaperChoices page;
    InitPaperChoices(&page, &devMode, installed, setting.isJapanese);
    UpdatePaperDependencies(&page, kOpening);
    return page;
}

void Do(PaperChoices* page, int control, int notification) {
    const PaperCommand* const command = FindPaperCommand(control, notification);
    ASSERT_NE(command, nullptr) << control;
    TakePaperCommand(page, *command);
}

constexpr struct {
    ChoiceList PaperChoices::*list;
    int control;
} kLists[] = {{&PaperChoices::paper, kPaperControl},
              {&PaperChoices::fitPaper, kFitPaperControl},
              {&PaperChoices::source, kSourceControl},
              {&PaperChoices::medium, kMediumControl},
              {&PaperChoices::layout, kLayoutControl}};
constexpr struct {
    CheckBox PaperChoices::*box;
    int control;
} kBoxes[] = {{&PaperChoices::zoom, kZoomControl},
              {&PaperChoices::duplex, kDuplexControl},
              {&PaperChoices::flagB, kFlagBControl},
              {&PaperChoices::flagC, kFlagCControl}};

// The user's choice of a value, which the list must have.
void Choose(PaperChoices* page, int control, uint32_t value) {
    const auto* const row = std::ranges::find_if(kLists, [=](const auto& each) { return each.control == control; });
    ASSERT_NE(FindChoice(page->*row->list, value), nullptr) << control << " has no " << value;
    SelectChoice(&(page->*row->list), value);
    Do(page, control, CBN_SELCHANGE);
}

std::vector<uint32_t> ValuesOf(const ChoiceList& list) {
    std::vector<uint32_t> values;
    FindEntry(list, [&](const ChoiceEntry& entry) {
        values.push_back(entry.value);
        return false;
    });
    return values;
}

using Values = std::vector<uint32_t>;

// A size that tells which paper was asked for.
PaperSize SizeById(const void*, int paperId) {
    return {paperId * 10, paperId * 20, 1};
}

PaperApplication Application() {
    return {SizeById, nullptr, nullptr, 1, "ABCD"};
}

// The device mode after applying.
VelmoraDevMode Applied(PaperChoices* page, VelmoraDevMode devMode = NewDevMode()) {
    ApplyPaperChoices(page, Application(), &devMode);
    return devMode;
}

// What is offered as the page opens.
TEST(PaperPage, OffersWhatThePrinterAndTheLanguageHave) {
    const PaperChoices japanese = Open(NewDevMode(), {true, 1, 1});
    EXPECT_EQ(ValuesOf(japanese.paper), (Values{8, 9, 11, 70, 12, 13, 88, 1, 6, 7, 34, 43, 258}));
    EXPECT_EQ(ValuesOf(japanese.source), (Values{263, 257, 258}));

    const Values japaneseFits = {kNoFitPaper, 9, 11, 13, 1, 6, 7, 34, 43};
    const Values usualFits = {kNoFitPaper, 9, 11, 13, 1, 6, 7, 34};
    const struct {
        const char* settings;
        bool isJapanese;
        Values fits, media, layouts;
    } cases[] = {
        {"dmPaperSize=258", false, {kNoFitPaper}, {0, 2, 3, 4, 5, 6, 7, 8, 9}, {1}},
        {"dmPaperSize=13", false, usualFits, {0, 2, 3, 4, 5, 6, 7, 8, 9}, {1, 2, 4, 5, 6, 7}},
        {"dmPaperSize=13 uiFitToPaper=9", false, usualFits, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}, {1, 2, 4, 5, 6, 7}},
        {"uiFitToPaper=43 uiMediaValue=3", true, japaneseFits, {0, 2, 3, 4, 5, 6, 10, 7, 8, 9}, {1}},
        {"uiFitToPaper=43 uiFlagB=1", true, japaneseFits, {0, 3, 4, 5, 6, 7}, {1}},
    };
    for (const auto& c : cases) {
        const PaperChoices opened = Open(With(NewDevMode(), c.settings), {c.isJapanese, 0, 1});
        EXPECT_EQ(ValuesOf(opened.fitPaper), c.fits) << c.settings;
        EXPECT_EQ(ValuesOf(opened.medium), c.media) << c.settings;
        EXPECT_EQ(ValuesOf(opened.layout), c.layouts) << c.settings;
    }
}

// Stored choices that the page doesn't offer go from the device mode as it opens.
TEST(PaperPage, CorrectsTheDeviceModeAsItOpens) {
    constexpr const char* kStored = "uiFitToPaper=43 dmDefaultSource=258 uiFlagC=1";
    const struct {
        const char* settings;
        Setting setting;
        uint32_t selectedFit;
        const char* corrected;
    } cases[] = {
        {"", {false, 0, 1}, kNoFitPaper, "uiFitToPaper=65535 dmDefaultSource=257 uiFlagC=0"},
        {"uiFlagB=1", {true, 0, 1}, 43, "dmDefaultSource=257"},
        {"dmDefaultSource=257", {true, 1, 1}, kNoFitPaper, "uiFlagC=0"},
        {"dmPaperSize=13", {false, 1, 1}, kNoFitPaper, "uiFlagC=0"},
        {"dmPaperSize=11", {false, 1, 1}, kNoFitPaper, "dmDefaultSource=257 uiFlagC=0"},
    };
    for (const auto& c : cases) {
        const VelmoraDevMode stored = With(With(NewDevMode(), kStored), c.settings);
        VelmoraDevMode devMode = stored;
        DeviceInfo installed = {};
        installed.secondTray = c.setting.secondTray;
        PaperChoices page;
        InitPaperChoices(&page, &devMode, installed, c.setting.isJapanese);
        EXPECT_EQ(page.fitPaper.selected, c.selectedFit) << c.settings;
        const VelmoraDevMode expected = With(stored, c.corrected);
        EXPECT_EQ(std::memcmp(&devMode, &expected, sizeof(expected)), 0) << c.corrected;
    }
}

TEST(PaperPage, ForcesThePaperThatAFitPaperAndAMediumNeed) {
    const struct {
        uint32_t paper, fit, medium;
        uint32_t forced;
    } cases[] = {
        {DMPAPER_A4, DMPAPER_ENV_DL, 10, DMPAPER_ENV_DL}, {DMPAPER_A4, DMPAPER_ENV_10, 10, DMPAPER_ENV_10},
        {DMPAPER_A4, DMPAPER_ENV_DL, 0, DMPAPER_ENV_DL},  {DMPAPER_B5, DMPAPER_ENV_DL, 1, DMPAPER_B5},
        {DMPAPER_B5, kNoFitPaper, 10, DMPAPER_A4},        {kCustomSizePaper, kNoFitPaper, 10, kCustomSizePaper},
        {kCustomSizePaper, kNoFitPaper, 1, DMPAPER_A4},   {kCustomSizePaper, DMPAPER_A4, 10, DMPAPER_A3},
        {DMPAPER_B5, kNoFitPaper, 5, DMPAPER_B5},
    };
    for (const auto& c : cases) {
        PaperChoices page = Open(NewDevMode());
        page.paper.selected = c.paper;
        page.fitPaper = {{kFitPapers, kEveryChoice}, nullptr, c.fit};
        page.medium = {{kMedia, kEveryChoice}, nullptr, c.medium};
        UpdatePaperDependencies(&page, kFitPaperChanged);
        EXPECT_EQ(page.paper.selected, c.forced) << c.paper << ' ' << c.fit << ' ' << c.medium;
    }
}

TEST(PaperPage, PrintsOnBothSidesWhereThePaperTakesIt) {
    const struct {
        const char* settings;
        uint32_t optionFlags;
        bool duplex, flagB;  // enabled
    } cases[] = {
        {"uiDuplex=1", 1, true, true},
        {"uiDuplex=1", 0, false, true},
        {"", kNoUnit, false, true},
        {"uiMediaValue=2", 1, false, false},
        {"uiMediaValue=6", 1, false, true},
        {"dmPaperSize=6 uiDuplex=1 uiFlagB=1 uiFlagC=1", 1, false, false},
        {"dmPaperSize=11 uiFitToPaper=9 uiDuplex=1", 1, true, true},
        {"dmPaperSize=11 uiFitToPaper=9 uiPageLayout=5", 1, false, false},
        {"uiPageLayout=5", 1, false, false},
        {"dmPaperSize=258 customWidth=15000 uiDuplex=1", 1, false, false},
        {"dmPaperSize=258 customWidth=18000 uiDuplex=1", 1, true, true},
        {"dmPaperSize=258 customLength=24993 uiDuplex=1", 1, false, false},
    };
    for (const auto& c : cases) {
        const VelmoraDevMode devMode = With(NewDevMode(), c.settings);
        const PaperChoices page = Open(devMode, {false, 0, c.optionFlags});
        EXPECT_EQ(page.duplex.isEnabled, c.duplex) << c.settings;
        EXPECT_EQ(page.duplex.isChecked, c.duplex && devMode.privatePart.uiDuplex != 0) << c.settings;
        EXPECT_EQ(page.duplex.isShown, c.optionFlags != kNoUnit);
        EXPECT_EQ(page.flagB.isEnabled, c.flagB) << c.settings;
        EXPECT_FALSE(page.flagB.isChecked || page.flagC.isChecked) << c.settings;
    }
}

TEST(PaperPage, KeepsTheJapaneseListAsItIsMade) {
    // By a medium and a fit-to paper.
    PaperChoices japanese = Open(With(NewDevMode(), "uiFitToPaper=43 uiMediaValue=10"), {true, 0, 1});
    Choose(&japanese, kFitPaperControl, DMPAPER_A4);
    japanese.flagB.isChecked = true;
    Do(&japanese, kFlagBControl, BN_CLICKED);
    EXPECT_EQ(ValuesOf(japanese.paper), (Values{8, 9, 11, 70, 12, 13, 88, 1, 6, 7, 34, 43}));
}

TEST(PaperPage, ProposesZoom) {
    const struct {
        uint32_t paper;
        int highest;
        int proposed;
        bool isShown;
    } cases[] = {
        {DMPAPER_A3, 300, 70, false},      {DMPAPER_B4, 300, 70, false}, {DMPAPER_A6, 400, 145, false},
        {DMPAPER_B6_JIS, 400, 144, false}, {DMPAPER_A4, 400, 100, true}, {DMPAPER_LETTER, 400, 100, true},
    };
    for (const auto& c : cases) {
        PaperChoices page = Open(NewDevMode());
        Choose(&page, kFitPaperControl, DMPAPER_A5);
        EXPECT_EQ(page.zoomPercent.position, 69);
        Choose(&page, kPaperControl, c.paper);
        EXPECT_EQ(page.zoomPercent.highest, c.highest) << c.paper;
        EXPECT_EQ(page.zoomPercent.position, c.proposed) << c.paper;
        EXPECT_EQ(page.zoom.isShown, c.isShown) << c.paper;
    }
    PaperChoices page = Open(With(NewDevMode(), "uiZoomOn=1 uiZoomPercent=123"));
    EXPECT_EQ(page.zoomPercent.position, 123) << "a stored percentage stays";
}

TEST(PaperPage, AppliesWhatIsChosen) {
    const struct {
        const char* chosen;
        const char* applied;
    } cases[] = {
        {"scaleMode=2 dmMediaType=9 posterMode=4",
         "dmPaperWidth=90 dmPaperLength=180 uiFitToPaper=65535 scaleMode=0 scaleValue=-1 scaleWidth=0 scaleLength=0 "
         "dmDuplex=0 dmMediaType=1 uiPageOrder=1 pagesPerSheet=1 posterMode=0 dmCollate=0"},
        {"dmPaperSize=258 customWidth=18000 customLength=25000 customUnit=0",
         "dmPaperSize=258 dmPaperWidth=1800 dmPaperLength=2500 customUnit=0 scaleMode=0"},
        {"uiDuplex=1 uiBinding=9 dmDuplex=77", "uiDuplex=1 dmDuplex=77"},
        {"uiFlagC=1", "uiFlagC=0"},
        {"uiPageLayout=2 uiPageOrder=7 uiFlagE=1",
         "pagesPerSheet=2 uiPageOrder=1 nupOrder=0 layoutMode=1 nupBorderWidth=6"},
        {"uiPageLayout=6 uiBinding=3 uiFlagE=1 dmCollate=1",
         "uiPageLayout=6 pagesPerSheet=1 posterMode=3 uiBinding=0 uiFlagE=0 layoutMode=0 uiPageOrder=1 dmCollate=0"},
    };
    for (const auto& c : cases) {
        const VelmoraDevMode before = With(NewDevMode(), c.chosen);
        PaperChoices page = Open(before);
        const VelmoraDevMode devMode = Applied(&page, before);
        const VelmoraDevMode same = With(devMode, c.applied);
        EXPECT_EQ(std::memcmp(&devMode, &same, sizeof(same)), 0) << c.chosen;
        EXPECT_STREQ(devMode.privatePart.uiLabel, "ABCD");
    }
    // More than the spin control's range has.
    PaperChoices page = Open(With(NewDevMode(), "dmPaperSize=8"));
    TypeNumber(&page.zoomPercent, TEXT("350"));
    EXPECT_EQ(int{Applied(&page).privatePart.uiZoomPercent}, 350);
    EXPECT_EQ(WideText(page.zoomPercent.text), TEXT("350"));
    EXPECT_EQ(page.zoomPercent.position, 70);
}

// The device mode is also the other pages' while this one is open.
TEST(PaperPage, WritesNoDetailsButItsOwnChanges) {
    PrivateDevMode own = With(NewDevMode(), "uiBinding=2 uiFlagE=1 layoutMode=1 uiShiftX=5").privatePart;
    PaperChoices page = Open(NewDevMode());
    page.details = ReadPageDetails(own);
    const PageDetails before = page.details;
    own.uiBinding = 3;
    page.details.uiFlagE = 0;
    WritePageDetails(page, before, &own);
    EXPECT_EQ(own.uiBinding, 3);
    EXPECT_EQ(own.uiFlagE, 0);
    EXPECT_EQ(own.uiShiftX, 5);
    EXPECT_EQ(own.layoutMode, 1);
}

TEST(PaperPage, TakesTheMediaTypeFromTheModel) {
    MediaRecord media[4] = {};
    for (uint32_t i = 0; i < 3; ++i) {
        media[i].mark = 1;
        media[i].mediaId = 1000 + i;
    }
    DeviceModel model = {};
    model.mediaTable = media;
    model.defaultMedia = 3;
    const auto typeOf = [&](uint32_t medium) {
        PaperChoices page = Open(NewDevMode());
        page.medium = {{kMedia, kEveryChoice}, nullptr, medium};
        VelmoraDevMode devMode = NewDevMode();
        PaperApplication application = Application();
        application.model = &model;
        ApplyPaperChoices(&page, application, &devMode);
        return devMode.publicPart.dmMediaType;
    };
    EXPECT_EQ(typeOf(1), 1000u);
    EXPECT_EQ(typeOf(2), 1001u);
    EXPECT_EQ(typeOf(0), 1002u) << "the model's default";
    EXPECT_EQ(typeOf(9), 1002u);
    model.defaultMedia = 0;
    EXPECT_EQ(typeOf(0), static_cast<DWORD>(DMMEDIA_STANDARD));
}

TEST(NumberField, SettlesWhatIsTyped) {
    const struct {
        const WCHAR* typed;
        const WCHAR* settled;  // 5 is the spin control's position before
        int position;
    } cases[] = {
        {TEXT("1"), TEXT("1"), 1},      {TEXT("999"), TEXT("999"), 999},  {TEXT("0"), TEXT("1"), 1},
        {TEXT("-4"), TEXT("1"), 1},     {TEXT("1500"), TEXT("150"), 150}, {TEXT(""), TEXT("5"), 5},
        {TEXT("x"), TEXT("5"), 5},      {TEXT("1x"), TEXT("5"), 5},       {TEXT(" 7"), TEXT(" 7"), 7},
        {TEXT("+"), TEXT("5"), 5},      {TEXT("007"), TEXT("007"), 7},    {TEXT("- 1"), TEXT("5"), 5},
        {TEXT("\u0663"), TEXT("5"), 5},
    };
    for (const auto& c : cases) {
        PaperChoices page = Open(NewDevMode());
        SetNumber(&page.copies, 5);
        TypeNumber(&page.copies, c.typed);
        SettleCopies(&page);
        EXPECT_EQ(WideText(page.copies.text), c.settled);
        EXPECT_EQ(page.copies.position, c.position);
    }
    PaperChoices page = Open(NewDevMode());
    TypeNumber(&page.zoomPercent, TEXT("24"));
    SettleZoomPercent(&page);
    EXPECT_EQ(WideText(page.zoomPercent.text), TEXT("25"));
    int number = 0;
    EXPECT_TRUE(ReadNumber(WideText(1000, TEXT('9')).c_str(), &number));
}

WideText Formatted(int32_t length, uint16_t unit, LengthRounding rounding = LengthRounding::kNearest,
                   const WCHAR* separator = TEXT(".")) {
    WCHAR text[32];
    FormatLength(length, unit, separator, rounding, text, std::size(text));
    return text;
}

TEST(CustomSize, WritesLengths) {
    const struct {
        int32_t length;
        uint16_t unit;
        LengthRounding rounding;
        const WCHAR* separator;
        const WCHAR* text;
    } cases[] = {
        {21590, kMillimetres, LengthRounding::kNearest, TEXT(","), TEXT("215,9")},
        {21599, kMillimetres, LengthRounding::kUp, TEXT("."), TEXT("215.9")},
        {21590, kInches, LengthRounding::kNearest, TEXT("."), TEXT("8.50")},
        {10000, kInches, LengthRounding::kDown, TEXT("."), TEXT("3.93")},
        {10000, kInches, LengthRounding::kUp, TEXT("::"), TEXT("3::94")},
        {2539, kInches, LengthRounding::kNearest, TEXT("."), TEXT("1.00")},
        {2539, kInches, LengthRounding::kDown, TEXT("."), TEXT("0.99")},
        {-50, kMillimetres, LengthRounding::kNearest, TEXT("."), TEXT("-0.5")},
        {-254, kInches, LengthRounding::kNearest, TEXT("."), TEXT("-0.10")},
        {INT32_MIN, kMillimetres, LengthRounding::kUp, TEXT("."), TEXT("-21474836.4")},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Formatted(c.length, c.unit, c.rounding, c.separator), c.text) << c.length;
    }
    WCHAR narrow[4];
    FormatLength(21590, kMillimetres, TEXT("."), LengthRounding::kNearest, narrow, std::size(narrow));
    EXPECT_EQ(WideText(narrow), TEXT("215"));

    PageDetails details = Open(NewDevMode()).details;
    WCHAR entry[64];
    FormatCustomSizeEntry(details, TEXT("Custom"), TEXT("mm"), TEXT(","), entry, std::size(entry));
    EXPECT_EQ(WideText(entry), TEXT("Custom (210,0 x 297,0 mm)"));
    details.customUnit = kInches;
    FormatCustomSizeEntry(details, TEXT("Custom"), TEXT("in"), TEXT("."), entry, std::size(entry));
    EXPECT_EQ(WideText(entry), TEXT("Custom (8.27 x 11.69 in)"));
}

TEST(CustomSize, ReadsLengths) {
    const struct {
        const WCHAR* text;
        int32_t inMillimetres;
        int32_t inInches;
        const WCHAR* separator = TEXT(".");
    } cases[] = {
        {TEXT("215.9"), 21590, 548386},
        {TEXT(" \t8.5 \r\n"), 850, 21590},
        {TEXT("8.50999"), 850, 21590},
        {TEXT("8."), 800, 20320},
        {TEXT(".5"), 50, 1270},
        {TEXT("-1.5"), -150, -3810},
        {TEXT("+1.5"), 150, 3810},
        {TEXT("1,5"), 0, 0},
        {TEXT("1,5"), 150, 3810, TEXT(",")},
        {TEXT("1::5"), 150, 3810, TEXT("::")},
        {TEXT("1:5"), 0, 0, TEXT("::")},
        {TEXT("1.5"), 0, 0, TEXT("")},
        {TEXT(""), 0, 0},
        {TEXT("1.5mm"), 0, 0},
        {TEXT("--1"), 0, 0},
        {TEXT("1 2"), 100, 2540},
        {TEXT("99999999999999999999"), 10000000, 254000000},
    };
    for (const auto& c : cases) {
        const WideText wide = c.text;
        const std::string text(wide.begin(), wide.end());
        EXPECT_EQ(ReadLength(c.text, kMillimetres, c.separator), c.inMillimetres) << text;
        EXPECT_EQ(ReadLength(c.text, kInches, c.separator), c.inInches) << text;
    }
}

// What is shown of a length reads as what is shown, and as the length but for what isn't shown of it.
TEST(CustomSize, ReadsWhatItWrites) {
    for (const uint16_t unit : {kMillimetres, kInches}) {
        for (int32_t length = kCustomSizeLimits.minWidth; length <= kCustomSizeLimits.maxLength; ++length) {
            const WideText shown = Formatted(length, unit);
            const int32_t read = ReadLength(shown.c_str(), unit, TEXT("."));
            ASSERT_LE(std::abs(read - length), unit == kInches ? 13 : 9) << length;
            ASSERT_EQ(Formatted(read, unit), shown);
        }
    }
}

TEST(CustomSize, StaysWithinItsLimits) {
    PaperChoices page = Open(NewDevMode());
    page.flagB.isChecked = true;
    EXPECT_EQ(StartCustomSize(page).width, 21000);
    EXPECT_EQ(CustomSizeTextsOf(page, kMillimetres).length.beforeFirst, 5351);
    StoreCustomSize(&page, {15000, 99999, kMillimetres});
    EXPECT_EQ(page.details.customWidth, 17600);
    EXPECT_EQ(page.details.customLength, 29700);
    // From limit to limit in steps that show, and no further.
    for (const uint16_t unit : {kMillimetres, kInches}) {
        SteppedLength at = {kCustomSizeLimits.minWidth, LengthRounding::kUp};
        for (int steps = 0; at.length < kCustomSizeLimits.maxWidth; ++steps) {
            ASSERT_LT(steps, 1200);
            const WideText shown = Formatted(at.length, unit, at.rounding);
            const int32_t read = ReadLength(shown.c_str(), unit, TEXT("."));
            at = StepLength(read, unit, true, kCustomSizeLimits.minWidth, kCustomSizeLimits.maxWidth);
            ASSERT_TRUE(at.rounding == LengthRounding::kDown || Formatted(at.length, unit, at.rounding) != shown);
        }
        EXPECT_EQ(at.rounding, LengthRounding::kDown);
        at = StepLength(kCustomSizeLimits.minWidth + 5, unit, false, kCustomSizeLimits.minWidth, 20000);
        EXPECT_EQ(at.length, kCustomSizeLimits.minWidth);
        EXPECT_EQ(at.rounding, LengthRounding::kUp);
    }
    EXPECT_EQ(FeedDirectionOf(21000, 21000).text, 5337);
    EXPECT_EQ(FeedDirectionOf(21590, 21000).text, 5338);
}

TEST(LayoutDetails, StoresTheOrderOfTheLayout) {
    const struct {
        uint32_t layout;
        bool isLandscape;
        uint16_t before;
        int shown, chosen;
        uint16_t after, nupOrder;
        const WCHAR* icon;  // selected, of the one that was chosen; null for none
    } cases[] = {
        {kOnePage, false, 7, 0, 0, 0, 0, nullptr},
        {kTwoPages, false, 4, 1, 1, 2, 1, TEXT("ICO_SEL_PORT_BA")},
        {kTwoPages, true, 1, 0, 1, 4, 1, TEXT("ICO_SEL_LAND_BA")},
        {kTwoPages, true, 2, 1, 0, 3, 0, TEXT("ICO_SEL_LAND_AB")},
        {kTwoPages, false, 8, 0, -1, 1, 0, nullptr},
        {kFourPages, false, 2, 0, 1, 6, 16, TEXT("ICO_SEL_PORT_ACBD")},
        {kFourPages, true, 8, 3, 2, 7, 2, TEXT("ICO_SEL_LAND_BADC")},
        {kFourPages, false, 99, 0, 3, 8, 18, TEXT("ICO_SEL_PORT_BDAC")},
        {kFourPages, false, 5, 0, 4, 5, 0, nullptr},
    };
    for (const auto& c : cases) {
        PaperChoices page = Open(NewDevMode());
        page.layout.selected = c.layout;
        page.isLandscape = c.isLandscape;
        page.details.uiPageOrder = c.before;
        page.details.uiFlagE = 1;
        LayoutDetails details = StartLayoutDetails(page);
        EXPECT_EQ(details.order, c.shown) << c.after;
        EXPECT_EQ(details.isBorder, c.layout != kOnePage);
        details.order = c.chosen;
        StoreLayoutDetails(details, &page);
        EXPECT_EQ(page.details.uiPageOrder, c.after);
        EXPECT_EQ(page.details.nupOrder, c.nupOrder) << c.after;
        const PageOrders orders = PageOrdersOf(c.layout, c.isLandscape);
        EXPECT_EQ(orders.count, c.layout == kOnePage ? 0u : c.layout);
        if (c.icon) {
            EXPECT_EQ(WideText(orders.icons[c.chosen].selected), c.icon);
        }
    }
}

TEST(LayoutDetails, SettlesShifts) {
    const struct {
        const WCHAR* typed;
        const WCHAR* settled;
        int16_t stored;
    } cases[] = {
        {TEXT("+5"), TEXT("5"), 5},   {TEXT(" 7"), TEXT("7"), 7},      {TEXT("+ 9"), TEXT("9"), 9},
        {TEXT("61"), TEXT("60"), 60}, {TEXT("-99"), TEXT("-60"), -60}, {TEXT(""), TEXT("3"), 0},
        {TEXT("-"), TEXT("3"), 0},    {TEXT("-60"), TEXT("-60"), -60},
    };
    for (const auto& c : cases) {
        PaperChoices page = Open(NewDevMode());
        page.details.uiShiftX = 3;
        page.details.uiBinding = 9;
        LayoutDetails details = StartLayoutDetails(page);
        EXPECT_EQ(details.binding, 0);
        TypeNumber(&details.shiftX, c.typed);
        StoreLayoutDetails(details, &page);
        EXPECT_EQ(page.details.uiShiftX, c.stored) << c.stored;
        SettleShift(&details.shiftX);
        EXPECT_EQ(WideText(details.shiftX.text), c.settled);
    }
    // Without a duplex unit the shift of back sides stays.
    PaperChoices page = Open(NewDevMode(), {false, 0, kNoUnit});
    page.details.uiShiftX = page.details.uiShiftY = 9;
    LayoutDetails details = StartLayoutDetails(page);
    RestoreLayoutDetails(&details);
    StoreLayoutDetails(details, &page);
    EXPECT_EQ(page.details.uiShiftX, 0);
    EXPECT_EQ(page.details.uiShiftY, 9);
}

TEST(PaperSummary, HasTheSettingsInTheirOrder) {
    const struct {
        OtherSettings other;
        const char* rows;  // label=string or "text"
    } cases[] = {
        {{1, false, TEXT(""), 1, 0, 1, 1, nullptr},
         "5073=2014 5074=5105 5075=5086 5080=5094 5081=5097 5082=3056 5083=5101 5084=5093 "},
        {{5, false, TEXT("mine"), 4, 2, 4, 3, TEXT("draft")},
         "5073=2014 5074=5105 5075=\"mine\" 5076=6157 5080=5096 5081=5100 5082=3056 5083=5103 5084=\"draft\" "},
        {{5, false, TEXT(""), 3, 1, 2, 2, nullptr},
         "5073=2014 5074=5105 5075=3160 5076=6154 5080=5095 5081=5098 5082=3056 5083=5102 5084=5093 "},
        {{7, true, TEXT("mine"), 1, 9, 9, 9, nullptr},
         "5073=2014 5074=5105 5075=5091 5080=\"\" 5081=\"\" 5082=3056 5083=\"\" 5084=5093 "},
    };
    const PaperChoices page = Open(NewDevMode());
    for (const auto& c : cases) {
        SummaryRow rows[kMostSummaryRows];
        const size_t count = MakeSummary(page, c.other, rows);
        std::string text;
        for (size_t i = 0; i < count; ++i) {
            const WideText value = rows[i].text;
            text +=
                std::to_string(rows[i].label) + '=' +
                (rows[i].value ? std::to_string(rows[i].value) : '"' + std::string(value.begin(), value.end()) + '"') +
                ' ';
        }
        EXPECT_EQ(text, c.rows);
    }
    static_assert(kFirstSummaryControl + 3 * kMostSummaryRows - 1 <= kLastSummaryControl);
}

// Every state of the page that events lead to from many device modes.
class PaperWalk : public testing::TestWithParam<std::tuple<bool, uint32_t, uint32_t>> {
  protected:
    // Visited states are compared by this: all but numbers and texts, which limit nothing.
    static uint64_t KeyOf(const PaperChoices& page) {
        uint64_t key = 14695981039346656037u;
        const auto add = [&](uint64_t value) { key = (key ^ value) * 1099511628211u; };
        for (const auto& row : kLists) {
            const ChoiceList& list = page.*row.list;
            add(reinterpret_cast<uintptr_t>(list.source.choices));
            add(list.source.filter);
            add(list.selected);
            add(list.lastChoice != nullptr);
        }
        for (const auto& row : kBoxes) {
            const CheckBox& box = page.*row.box;
            add(static_cast<uint64_t>(box.isChecked * 4 + box.isEnabled * 2 + box.isShown));
        }
        add(page.collate.isEnabled);
        add(static_cast<uint64_t>(page.details.customWidth));
        return key;
    }

    static Values ChosenIn(const PaperChoices& page) {
        Values chosen = {page.collate.isChecked};
        for (const auto& row : kLists) {
            chosen.push_back((page.*row.list).selected);
        }
        for (const auto& row : kBoxes) {
            chosen.push_back((page.*row.box).isChecked);
        }
        return chosen;
    }

    static void Check(const PaperChoices& page) {
        for (const auto& row : kLists) {
            ASSERT_NE(FindChoice(page.*row.list, (page.*row.list).selected), nullptr) << row.control;
        }
        const bool isPoster = IsPoster(page.layout.selected);
        for (const CheckBox* const box : {&page.collate, &page.rotate180}) {
            ASSERT_EQ(box->isEnabled, !isPoster);
            ASSERT_FALSE(isPoster && box->isChecked);
        }
        ASSERT_EQ(page.isDetailsEnabled, !isPoster);
        ASSERT_EQ(page.zoom.isShown, page.zoom.isEnabled);
        ASSERT_FALSE(page.zoom.isShown && page.layout.selected != kOnePage);
        ASSERT_FALSE(page.zoom.isChecked && !page.zoom.isShown);
        ASSERT_EQ(page.isZoomPercentEnabled, page.zoom.isChecked);
        ASSERT_TRUE(page.zoomPercent.position >= 25 && page.zoomPercent.position <= page.zoomPercent.highest);
        ASSERT_FALSE(page.flagC.isEnabled && !page.flagB.isChecked);
        ASSERT_FALSE(page.duplex.isEnabled && page.duplexUnit != DuplexUnit::kInstalled);
        ASSERT_FALSE(page.source.selected == kSecondTray && !page.hasSecondTray);
        const bool isOnBothSides = page.duplex.isChecked || page.flagB.isChecked;
        ASSERT_FALSE(isOnBothSides && isPoster);
        const uint32_t medium = page.medium.selected;
        ASSERT_FALSE(isOnBothSides && (medium == 1 || medium == 2 || medium == 8 || medium == 9)) << medium;
    }

    void Visit(const PaperChoices& page) {
        if (seen_.insert(KeyOf(page)).second) {
            Check(page);
            queue_.push_back(page);
        }
    }

    // The states that one event makes of a state.
    void Follow(const PaperChoices& page) {
        const auto after = [this, &page](PaperChoices next, int control, int notification) {
            Do(&next, control, notification);
            Visit(next);
            if (control == kDuplexControl && page.medium.selected == kPostcardMedium) {
                return;  // duplex takes the medium away after the fit-to papers have followed that
            }
            const Values chosen = ChosenIn(next);
            UpdatePaperDependencies(&next, FindPaperCommand(control, notification)->changes);
            ASSERT_EQ(ChosenIn(next), chosen) << "the same once more changes nothing: " << control;
        };
        for (const auto& list : kLists) {
            FindEntry(page.*list.list, [&](const ChoiceEntry& entry) {
                if (entry.value != (page.*list.list).selected) {
                    PaperChoices next = page;
                    (next.*list.list).selected = entry.value;
                    after(next, list.control, CBN_SELCHANGE);
                }
                return false;
            });
        }
        for (const auto& box : kBoxes) {
            if ((page.*box.box).isEnabled) {
                PaperChoices next = page;
                (next.*box.box).isChecked = !(page.*box.box).isChecked;
                after(next, box.control, BN_CLICKED);
            }
        }
        if (page.paper.selected == kCustomSizePaper) {
            PaperChoices next = page;
            StoreCustomSize(&next, {page.details.customWidth == 15000 ? 18000 : 15000, 29700, kMillimetres});
            after(next, kPaperControl, CBN_SELCHANGE);
        }
        after(page, kPaperDefaultsControl, BN_CLICKED);
    }

    std::unordered_set<uint64_t> seen_;
    std::deque<PaperChoices> queue_;
};

TEST_P(PaperWalk, KeepsTheChoicesConsistent) {
    const auto [isJapanese, secondTray, optionFlags] = GetParam();
    const VelmoraDevMode newDevMode = NewDevMode();
    for (const uint32_t paper : {8u, 9u, 11u, 13u, 20u, 43u, 258u, 5u, 448u}) {
        for (const uint16_t medium : {0, 1, 6, 10, 99}) {
            for (const uint16_t fit : {int{kNoFit}, DMPAPER_A4, DMPAPER_JAPANESE_POSTCARD}) {
                for (int flags = 0; flags < 16; ++flags) {
                    VelmoraDevMode devMode = newDevMode;
                    devMode.publicPart.dmPaperSize = static_cast<short>(paper);
                    devMode.publicPart.dmDefaultSource = static_cast<short>(flags & 8 ? kSecondTray : kUsualSource);
                    devMode.privatePart.uiMediaValue = medium;
                    devMode.privatePart.uiFitToPaper = fit;
                    devMode.privatePart.uiDuplex = (flags & 1) != 0;
                    devMode.privatePart.uiFlagB = (flags & 2) != 0;
                    devMode.privatePart.uiZoomOn = (flags & 4) != 0;
                    devMode.privatePart.uiPageLayout = (flags & 4) != 0 ? kOnePage : kPoster2x2;
                    Visit(Open(devMode, {isJapanese, secondTray, optionFlags}));
                    if (HasFatalFailure()) {
                        return;
                    }
                }
            }
        }
    }
    // Too many to go on from all of them each time: there are two million.
    constexpr size_t kStride = 7;
    constexpr size_t kMostSteps = 300;
    for (size_t i = 0; !queue_.empty() && i < kStride * kMostSteps; ++i) {
        PaperChoices page = queue_.front();
        queue_.pop_front();
        if (i % kStride != 0) {
            continue;
        }
        Follow(page);
        const VelmoraDevMode once = Applied(&page, newDevMode);
        PaperChoices applied = page;
        const VelmoraDevMode twice = Applied(&applied, once);
        ASSERT_TRUE(applied == page);
        ASSERT_EQ(std::memcmp(&once, &twice, sizeof(once)), 0);
        if (HasFatalFailure()) {
            return;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Printers, PaperWalk,
                         testing::Combine(testing::Bool(), testing::Values(0u, 1u), testing::Values(0u, 1u, kNoUnit)));

}  // namespace
}  // namespace velmora
