// What the Paper page decides, apart from its windows.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <string>
#include <unordered_set>
#include <vector>

#include "driver/ui/custom_size.h"
#include "driver/ui/layout_details.h"
#include "driver/ui/nup_border.h"
#include "driver/ui/paper_choices.h"
#include "driver/ui/paper_rules.h"
#include "driver/ui/paper_summary.h"

namespace velmora {
namespace {

constexpr uint32_t kNoUnit = 0xFFFFFFFF;  // DeviceInfo.optionFlags
constexpr uint16_t kNoFit = 65535;        // uiFitToPaper

// A new device mode's page, with the paper and media of each test.
VelmoraDevMode NewDevMode() {
    VelmoraDevMode devMode = {};
    devMode.publicPart.dmPaperSize = DMPAPER_A4;
    devMode.publicPart.dmDefaultSource = kUsualSource;
    devMode.publicPart.dmOrientation = DMORIENT_PORTRAIT;
    devMode.publicPart.dmCopies = 1;
    PrivateDevMode& own = devMode.privatePart;
    own.uiFitToPaper = kNoFit;
    own.uiZoomPercent = 100;
    own.uiPageLayout = kOnePage;
    own.uiChoice = kPlainBorder;
    own.customUnit = kMillimetres;
    own.customWidth = 21000;
    own.customLength = 29700;
    return devMode;
}

struct Setting {
    bool isJapanese = false;
    uint32_t secondTray = 0;
    uint32_t optionFlags = 1;
};

PaperChoices Open(const VelmoraDevMode& devMode, const Setting& setting = {}) {
    DeviceInfo installed = {};
    installed.secondTray = setting.secondTray;
    installed.optionFlags = setting.optionFlags;
    PaperChoices page;
    InitPaperChoices(&page, devMode, installed, setting.isJapanese);
    UpdatePaperDependencies(&page, kOpening);
    return page;
}

void Do(PaperChoices* page, int control, int notification) {
    const PaperCommand* const command = FindPaperCommand(control, notification);
    ASSERT_NE(command, nullptr) << control;
    TakePaperCommand(page, *command);
}

// The user's choice of a value, which the list must have.
void Choose(PaperChoices* page, int control, uint32_t value) {
    ChoiceList* const list = control == kPaperControl      ? &page->paper
                             : control == kFitPaperControl ? &page->fitPaper
                             : control == kSourceControl   ? &page->source
                             : control == kMediumControl   ? &page->medium
                                                           : &page->layout;
    ASSERT_NE(FindChoice(*list, value), nullptr) << control << " has no " << value;
    SelectChoice(list, value);
    Do(page, control, CBN_SELCHANGE);
}

// The user's click on a box, which must be enabled.
void Click(PaperChoices* page, int control) {
    CheckBox* const box = control == kZoomControl     ? &page->zoom
                          : control == kDuplexControl ? &page->duplex
                          : control == kFlagBControl  ? &page->flagB
                          : control == kFlagCControl  ? &page->flagC
                                                      : &page->collate;
    ASSERT_TRUE(box->isEnabled) << control;
    box->isChecked = !box->isChecked;
    Do(page, control, BN_CLICKED);
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

// Tables, typed once more as they read row by row.

TEST(PaperTables, HoldWhatTheirRowsSay) {
    const uint32_t papers[] = {8, 9, 11, 70, 12, 13, 88, 1, 6, 7, 5, 34, 43, 20, 27, 258};
    const uint32_t fits[] = {0xFFFFFFFF, 9, 11, 13, 1, 6, 7, 5, 34, 43, 20, 27};
    const uint32_t targets[] = {9, 9, 11, 11, 13, 13, 13, 1, 6, 7, 5, 34, 43, 20, 27, 258};
    EXPECT_TRUE(std::equal(std::begin(papers), std::end(papers), std::begin(kPaperClasses), std::end(kPaperClasses)));
    EXPECT_TRUE(std::equal(std::begin(fits), std::end(fits), std::begin(kFitClasses), std::end(kFitClasses)));
    EXPECT_TRUE(std::equal(std::begin(targets), std::end(targets), std::begin(kFitTargets), std::end(kFitTargets)));

    // Media 0 to 10 of a table's row; the columns in brackets are those of the media 1 and 10.
    const auto row = [](const MediumColumns& columns) {
        std::string text;
        for (uint32_t medium = 0; medium <= 10; ++medium) {
            text += (medium == 0 ? "" : " ") + std::to_string(columns.For(medium));
        }
        return text;
    };
    const char* const demands[] = {
        "-1 1 -1 -1 -1 -1 -1 -1 -1 -1 2", "-1 1 -1 -1 -1 -1 -1 -1 -1 -1 0", "-1 0 -1 -1 -1 -1 -1 -1 -1 -1 0",
        "-1 0 -1 -1 -1 -1 -1 -1 -1 -1 0", "-1 1 -1 -1 -1 -1 -1 -1 -1 -1 0", "-1 0 -1 -1 -1 -1 -1 -1 -1 -1 0",
        "-1 0 -1 -1 -1 -1 -1 -1 -1 -1 0", "-1 0 -1 -1 -1 -1 -1 -1 -1 -1 0", "-1 0 -1 -1 -1 -1 -1 -1 -1 -1 0",
        "-1 0 -1 -1 -1 -1 -1 -1 -1 -1 2", "4 0 4 4 4 4 4 4 4 4 4",          "5 0 5 5 5 5 5 5 5 5 5",
    };
    for (size_t fit = 0; fit < std::size(demands); ++fit) {
        EXPECT_EQ(row(kPaperDemands[fit]), demands[fit]) << fit;
    }
    const std::string usual = "1 0 1 1 1 1 1 1 1 1 0";
    const std::string office = "1 4 1 1 1 1 1 1 1 1 0";
    const std::string offers[] = {
        office,
        "-1 4 -1 -1 -1 -1 -1 -1 -1 -1 0",
        usual,
        usual,
        usual,
        usual,
        usual,
        office,
        usual,
        usual,
        usual,
        usual,
        "2 0 2 2 2 2 2 2 2 2 2",
        "5 5 5 5 5 5 5 5 5 5 5",
        "6 6 6 6 6 6 6 6 6 6 6",
        "3 3 3 3 3 3 3 3 3 3 3",
    };
    for (size_t paper = 0; paper < std::size(offers); ++paper) {
        EXPECT_EQ(row(kFitOffers[paper]), offers[paper]) << paper;
        for (size_t fit = 0; fit < std::size(fits); ++fit) {
            const bool isEnvelope = (papers[paper] == 20 || papers[paper] == 27) && (fit == 0 || fit >= 10);
            EXPECT_EQ(kTakesEnvelopeMedia[paper][fit], isEnvelope) << paper << ' ' << fit;
        }
    }
    // Column by column.
    const std::vector<std::vector<int>> zoom = {
        {70, 100, 100, 145, 70, 100, 144, 100, 100, 100, 100, 100, 100, 100, 100, 100},
        {70, 100, 144, 208, 81, 116, 167, 97, 139, 112, 83, 120, 0, 0, 0, 0},
        {48, 69, 100, 145, 56, 80, 116, 67, 97, 78, 58, 83, 0, 0, 0, 0},
        {60, 86, 124, 179, 70, 100, 144, 84, 120, 96, 71, 103, 0, 0, 0, 0},
        {66, 94, 135, 195, 76, 109, 157, 100, 131, 105, 78, 112, 0, 0, 0, 0},
        {45, 65, 94, 137, 53, 75, 110, 63, 100, 74, 60, 78, 0, 0, 0, 0},
        {61, 87, 126, 183, 71, 101, 148, 85, 125, 100, 74, 105, 0, 0, 0, 0},
        {72, 103, 149, 217, 83, 120, 175, 100, 159, 118, 100, 124, 0, 0, 0, 0},
        {58, 83, 120, 174, 67, 97, 140, 81, 117, 93, 69, 100, 0, 0, 0, 0},
        {0, 45, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 100, 0, 0, 0},
        {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 100, 0, 0},
        {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 100, 0},
    };
    for (size_t fit = 0; fit < zoom.size(); ++fit) {
        for (size_t paper = 0; paper < zoom[fit].size(); ++paper) {
            EXPECT_EQ(kZoomProposals[paper][fit], zoom[fit][paper]) << paper << ' ' << fit;
        }
    }
}

// What is offered as the page opens.
TEST(PaperPage, OffersWhatThePrinterAndTheLanguageHave) {
    const PaperChoices page = Open(NewDevMode());
    EXPECT_EQ(ValuesOf(page.paper), (Values{8, 9, 11, 70, 12, 13, 88, 1, 6, 7, 34, 20, 27, 258}));
    EXPECT_EQ(ValuesOf(page.fitPaper), (Values{kNoFitPaper, 9, 11, 13, 1, 6, 7, 34}));
    EXPECT_EQ(ValuesOf(page.source), (Values{263, 257}));
    EXPECT_EQ(ValuesOf(page.medium), (Values{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
    EXPECT_EQ(ValuesOf(page.layout), (Values{1, 2, 4, 5, 6, 7}));

    const PaperChoices japanese = Open(NewDevMode(), {true, 1, 1});
    EXPECT_EQ(ValuesOf(japanese.paper), (Values{8, 9, 11, 70, 12, 13, 88, 1, 6, 7, 34, 43, 258}));
    EXPECT_EQ(ValuesOf(japanese.fitPaper), (Values{kNoFitPaper, 9, 11, 13, 1, 6, 7, 34, 43}));
    EXPECT_EQ(ValuesOf(japanese.source), (Values{263, 257, 258}));

    const struct {
        short paper;
        Values fits;
        Values media;
        Values layouts;
    } cases[] = {
        {DMPAPER_ENV_10, {kNoFitPaper, 20}, {8, 9}, {1}},
        {DMPAPER_ENV_DL, {kNoFitPaper, 27}, {8, 9}, {1}},
        {static_cast<short>(kCustomSizePaper), {kNoFitPaper}, {0, 2, 3, 4, 5, 6, 7, 8, 9}, {1}},
        {DMPAPER_B5, {kNoFitPaper, 9, 11, 13, 1, 6, 7, 34}, {0, 2, 3, 4, 5, 6, 7, 8, 9}, {1, 2, 4, 5, 6, 7}},
    };
    for (const auto& c : cases) {
        VelmoraDevMode devMode = NewDevMode();
        devMode.publicPart.dmPaperSize = c.paper;
        const PaperChoices opened = Open(devMode);
        EXPECT_EQ(ValuesOf(opened.fitPaper), c.fits) << c.paper;
        EXPECT_EQ(ValuesOf(opened.medium), c.media) << c.paper;
        EXPECT_EQ(ValuesOf(opened.layout), c.layouts) << c.paper;
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

TEST(PaperPage, FollowsTheSecondTray) {
    PaperChoices page = Open(NewDevMode(), {false, 1, 1});
    Choose(&page, kSourceControl, kSecondTray);
    EXPECT_EQ(ValuesOf(page.fitPaper), (Values{kNoFitPaper, 9, 13, 1, 7, 34}));
    EXPECT_EQ(ValuesOf(page.medium), (Values{0, 3, 4, 5}));
    Choose(&page, kMediumControl, 4);
    Choose(&page, kPaperControl, DMPAPER_B5);
    EXPECT_EQ(page.source.selected, kSecondTray);
    EXPECT_EQ(page.medium.selected, 4u);
    Choose(&page, kPaperControl, DMPAPER_STATEMENT);
    EXPECT_EQ(page.source.selected, kCassette);
    EXPECT_EQ(ValuesOf(page.source), (Values{263, 257}));

    Choose(&page, kPaperControl, DMPAPER_A4);
    Choose(&page, kSourceControl, kSecondTray);
    Choose(&page, kFitPaperControl, DMPAPER_B5);
    EXPECT_EQ(page.source.selected, kSecondTray);
    Choose(&page, kSourceControl, kUsualSource);
    Choose(&page, kFitPaperControl, DMPAPER_A5);
    EXPECT_EQ(ValuesOf(page.source), (Values{263, 257}));
}

TEST(PaperPage, PrintsOnBothSidesWhereThePaperTakesIt) {
    const struct {
        short paper;
        uint16_t medium;
        int32_t width, length;
        uint32_t optionFlags;
        bool duplex, flagB;  // enabled
    } cases[] = {
        {DMPAPER_A4, 0, 21000, 29700, 1, true, true},
        {DMPAPER_A4, 0, 21000, 29700, 0, false, true},
        {DMPAPER_A4, 0, 21000, 29700, kNoUnit, false, true},
        {DMPAPER_A4, 2, 21000, 29700, 1, false, false},
        {DMPAPER_A4, 6, 21000, 29700, 1, false, true},
        {DMPAPER_STATEMENT, 0, 21000, 29700, 1, false, false},
        {258, 0, 15000, 29700, 1, false, false},
        {258, 0, 18000, 29700, 1, true, true},
        {258, 0, 18000, 24993, 1, false, false},
        {258, 0, 17600, 25000, 1, true, true},
    };
    for (const auto& c : cases) {
        VelmoraDevMode devMode = NewDevMode();
        devMode.publicPart.dmPaperSize = c.paper;
        devMode.privatePart.uiMediaValue = c.medium;
        devMode.privatePart.customWidth = c.width;
        devMode.privatePart.customLength = c.length;
        devMode.privatePart.uiDuplex = 1;
        const PaperChoices page = Open(devMode, {false, 0, c.optionFlags});
        EXPECT_EQ(page.duplex.isEnabled, c.duplex) << c.paper << ' ' << c.medium << ' ' << c.width;
        EXPECT_EQ(page.flagB.isEnabled, c.flagB) << c.paper << ' ' << c.medium << ' ' << c.width;
        EXPECT_EQ(page.duplex.isShown, c.optionFlags != kNoUnit);
        if (c.optionFlags != kNoUnit) {
            EXPECT_EQ(page.duplex.isChecked, c.duplex) << c.paper << ' ' << c.medium << ' ' << c.width;
        }
    }
}

TEST(PaperPage, HasOneWayOfPrintingOnBothSidesAtATime) {
    PaperChoices page = Open(NewDevMode());
    Click(&page, kDuplexControl);
    EXPECT_FALSE(page.flagB.isEnabled);
    EXPECT_EQ(ValuesOf(page.medium), (Values{0, 3, 4, 5}));
    EXPECT_EQ(ValuesOf(page.layout), (Values{1, 2, 4}));
    Click(&page, kDuplexControl);
    Click(&page, kFlagBControl);
    EXPECT_FALSE(page.duplex.isEnabled);
    EXPECT_TRUE(page.flagC.isEnabled);
    EXPECT_EQ(ValuesOf(page.medium), (Values{0, 3, 4, 5, 6, 7}));
    EXPECT_EQ(ValuesOf(page.paper), (Values{8, 9, 11, 70, 12, 13, 88, 1, 6, 7, 34, 258}));
    Click(&page, kFlagCControl);
    Click(&page, kFlagBControl);
    EXPECT_TRUE(page.duplex.isEnabled);
    EXPECT_FALSE(page.flagC.isEnabled || page.flagC.isChecked);
    EXPECT_EQ(ValuesOf(page.paper).size(), 14u);
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
    VelmoraDevMode devMode = NewDevMode();
    devMode.privatePart.uiZoomOn = 1;
    devMode.privatePart.uiZoomPercent = 123;
    PaperChoices page = Open(devMode);
    EXPECT_EQ(page.zoomPercent.position, 123) << "a stored percentage stays";
    EXPECT_TRUE(page.isZoomPercentEnabled);
    EXPECT_EQ(ValuesOf(page.layout), Values{1});
    Click(&page, kZoomControl);
    EXPECT_EQ(page.zoomPercent.position, 100);
    EXPECT_FALSE(page.isZoomPercentEnabled);
}

TEST(PaperPage, AppliesWhatIsChosen) {
    const struct {
        const char* name;
        void (*choose)(PaperChoices*);
        void (*expect)(const DEVMODEW&, const PrivateDevMode&);
    } cases[] = {
        {"nothing", [](PaperChoices*) {},
         [](const DEVMODEW& open, const PrivateDevMode& own) {
             EXPECT_EQ(open.dmPaperWidth, 90);
             EXPECT_EQ(open.dmPaperLength, 180);
             EXPECT_EQ(own.uiFitToPaper, kNoFit);
             EXPECT_EQ(own.scaleMode, 0);
             EXPECT_EQ(own.scaleValue, -1);
             EXPECT_EQ(open.dmDuplex, 0);
             EXPECT_EQ(open.dmMediaType, static_cast<DWORD>(DMMEDIA_STANDARD));
             EXPECT_EQ(own.uiPageOrder, 1);
             EXPECT_EQ(own.pagesPerSheet, 1u);
             EXPECT_STREQ(own.uiLabel, "ABCD");
         }},
        {"a paper that is scaled", [](PaperChoices* page) { Choose(page, kPaperControl, DMPAPER_A3); },
         [](const DEVMODEW& open, const PrivateDevMode& own) {
             EXPECT_EQ(open.dmPaperSize, DMPAPER_A3);
             EXPECT_EQ(own.scaleMode, 33);
             EXPECT_EQ(own.scaleValue, DMPAPER_A4);
         }},
        {"a fit-to paper", [](PaperChoices* page) { Choose(page, kFitPaperControl, DMPAPER_A4); },
         [](const DEVMODEW&, const PrivateDevMode& own) {
             EXPECT_EQ(own.uiFitToPaper, DMPAPER_A4);
             EXPECT_EQ(own.scaleMode, 33);
             EXPECT_EQ(own.scaleValue, DMPAPER_A4);
         }},
        {"a custom size",
         [](PaperChoices* page) {
             Choose(page, kPaperControl, kCustomSizePaper);
             StoreCustomSize(page, {18000, 25000, kInches});
         },
         [](const DEVMODEW& open, const PrivateDevMode& own) {
             EXPECT_EQ(open.dmPaperSize, 258);
             EXPECT_EQ(open.dmPaperWidth, 1800);
             EXPECT_EQ(open.dmPaperLength, 2500);
             EXPECT_EQ(own.customUnit, kInches);
             EXPECT_EQ(own.scaleMode, 0);
         }},
        {"zoom of a custom size",
         [](PaperChoices* page) {
             Choose(page, kPaperControl, kCustomSizePaper);
             Click(page, kZoomControl);
             TypeNumber(&page->zoomPercent, TEXT("200"));
         },
         [](const DEVMODEW&, const PrivateDevMode& own) {
             EXPECT_EQ(own.uiZoomOn, 1);
             EXPECT_EQ(own.scaleMode, 2);
             EXPECT_EQ(own.scaleValue, 200);
             EXPECT_EQ(own.uiZoomPercent, 200);
             EXPECT_EQ(own.scaleWidth, 2100);
             EXPECT_EQ(own.scaleLength, 2970);
         }},
        {"numbers that are none or too great",
         [](PaperChoices* page) {
             TypeNumber(&page->zoomPercent, TEXT("x"));
             TypeNumber(&page->copies, TEXT("-"));
         },
         [](const DEVMODEW& open, const PrivateDevMode& own) {
             EXPECT_EQ(own.uiZoomPercent, 100);
             EXPECT_EQ(open.dmCopies, 1);
         }},
        {"copies",
         [](PaperChoices* page) {
             TypeNumber(&page->copies, TEXT("1500"));
             Click(page, kCollateControl);
         },
         [](const DEVMODEW& open, const PrivateDevMode& own) {
             EXPECT_EQ(open.dmCopies, 150);
             EXPECT_EQ(open.dmCollate, DMCOLLATE_TRUE);
             EXPECT_EQ(own.collateCopy, 1);
         }},
        {"duplex, bound at the short edge",
         [](PaperChoices* page) {
             Click(page, kDuplexControl);
             page->details.uiBinding = 2;
         },
         [](const DEVMODEW& open, const PrivateDevMode& own) {
             EXPECT_EQ(own.uiDuplex, 1);
             EXPECT_EQ(open.dmDuplex, DMDUP_HORIZONTAL);
         }},
        {"duplex of an unknown binding",
         [](PaperChoices* page) {
             Click(page, kDuplexControl);
             page->details.uiBinding = 9;
         },
         [](const DEVMODEW& open, const PrivateDevMode&) { EXPECT_EQ(open.dmDuplex, 77); }},
        {"four pages",
         [](PaperChoices* page) {
             page->details.uiPageOrder = 7;
             Choose(page, kLayoutControl, kFourPages);
         },
         [](const DEVMODEW&, const PrivateDevMode& own) {
             EXPECT_EQ(own.pagesPerSheet, 4u);
             EXPECT_EQ(own.nupOrder, 2);
         }},
        {"two pages in an order of four",
         [](PaperChoices* page) {
             page->details.uiPageOrder = 7;
             Choose(page, kLayoutControl, kTwoPages);
         },
         [](const DEVMODEW&, const PrivateDevMode& own) {
             EXPECT_EQ(own.pagesPerSheet, 2u);
             EXPECT_EQ(own.uiPageOrder, 1);
             EXPECT_EQ(own.nupOrder, 0);
         }},
        {"a poster",
         [](PaperChoices* page) {
             Click(page, kCollateControl);
             page->details.uiBinding = 3;
             page->details.uiFlagE = 1;
             Choose(page, kLayoutControl, kPoster3x3);
             EXPECT_FALSE(page->isDetailsEnabled || page->collate.isEnabled || page->rotate180.isEnabled);
         },
         [](const DEVMODEW& open, const PrivateDevMode& own) {
             EXPECT_EQ(own.pagesPerSheet, 1u);
             EXPECT_EQ(own.posterMode, 3);
             EXPECT_EQ(own.uiBinding, 0);
             EXPECT_EQ(own.layoutMode, 0);
             EXPECT_EQ(open.dmCollate, DMCOLLATE_FALSE);
         }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        PaperChoices page = Open(NewDevMode());
        c.choose(&page);
        VelmoraDevMode before = NewDevMode();
        before.publicPart.dmDuplex = 77;
        const VelmoraDevMode devMode = Applied(&page, before);
        c.expect(devMode.publicPart, devMode.privatePart);
    }
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

TEST(PaperPage, RestoresItsDefaults) {
    for (const bool isJapanese : {false, true}) {
        const Setting setting = {isJapanese, 1, 1};
        PaperChoices page = Open(NewDevMode(), setting);
        const PaperChoices fresh = page;
        Choose(&page, kPaperControl, kCustomSizePaper);
        StoreCustomSize(&page, {17600, 25000, kInches});
        Click(&page, kZoomControl);
        Click(&page, kCollateControl);
        page.isFlagA = true;
        page.isLandscape = true;
        std::strcpy(page.code, "12");
        TypeNumber(&page.copies, TEXT("7"));
        Do(&page, kPaperDefaultsControl, BN_CLICKED);
        EXPECT_EQ(page.redraws & kRedrawCollate, kRedrawCollate);
        page.redraws = fresh.redraws;
        EXPECT_TRUE(page == fresh) << isJapanese;
    }
    PrivateDevMode own = {};
    own.uiStale = 1;
    EXPECT_EQ(TakeStaleMark(&own), static_cast<uint32_t>(kEveryChange));
    EXPECT_EQ(TakeStaleMark(&own), 0u);
}

TEST(BorderRule, DependsOnStyleAndResolution) {
    const struct {
        uint16_t flagE, choice;
        int resolution;
        uint16_t layoutMode;
        int16_t marginValue, width;
    } cases[] = {
        {1, 3, 0, 3, 59, 3}, {1, 3, 1, 3, 118, 6}, {1, 1, 0, 1, 7, 3}, {1, 1, 2, 1, 7, 6}, {0, 3, 1, 0, 7, 7},
    };
    for (const auto& c : cases) {
        PrivateDevMode own = {};
        own.marginValue = own.nupBorderWidth = 7;
        own.uiFlagE = c.flagE;
        own.uiChoice = c.choice;
        ApplyBorderRule(&own, c.resolution);
        EXPECT_EQ(own.layoutMode, c.layoutMode);
        EXPECT_EQ(own.marginValue, c.marginValue);
        EXPECT_EQ(own.nupBorderWidth, c.width);
    }
}

// Every state of the page that events lead to from many device modes.
class PaperWalk : public testing::TestWithParam<std::tuple<bool, uint32_t, uint32_t>> {
  protected:
    // Visited states are compared by this: all but numbers and texts, which limit nothing, and what is to be painted.
    static uint64_t KeyOf(const PaperChoices& page) {
        uint64_t key = 14695981039346656037u;
        const auto add = [&](uint64_t value) { key = (key ^ value) * 1099511628211u; };
        for (const ChoiceList* const list : {&page.paper, &page.fitPaper, &page.source, &page.medium, &page.layout}) {
            add(reinterpret_cast<uintptr_t>(list->source.choices));
            add(list->source.filter);
            add(list->selected);
            add(list->lastChoice != nullptr);
        }
        for (const CheckBox* const box : {&page.collate, &page.zoom, &page.duplex, &page.flagB, &page.flagC}) {
            add(static_cast<uint64_t>(box->isChecked * 4 + box->isEnabled * 2 + box->isShown));
        }
        add(static_cast<uint64_t>(page.details.customWidth));
        return key;
    }

    static void Check(const PaperChoices& page) {
        for (const ChoiceList* const list : {&page.paper, &page.fitPaper, &page.source, &page.medium, &page.layout}) {
            ASSERT_NE(FindChoice(*list, list->selected), nullptr) << list->selected;
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
        const auto after = [this](PaperChoices next, int control, int notification) {
            next.redraws = 0;
            Do(&next, control, notification);
            Visit(next);
        };
        const struct {
            ChoiceList PaperChoices::*list;
            int control;
        } lists[] = {
            {&PaperChoices::paper, kPaperControl},   {&PaperChoices::fitPaper, kFitPaperControl},
            {&PaperChoices::source, kSourceControl}, {&PaperChoices::medium, kMediumControl},
            {&PaperChoices::layout, kLayoutControl},
        };
        for (const auto& list : lists) {
            FindEntry(page.*list.list, [&](const ChoiceEntry& entry) {
                if (entry.value != (page.*list.list).selected) {
                    PaperChoices next = page;
                    (next.*list.list).selected = entry.value;
                    after(next, list.control, CBN_SELCHANGE);
                }
                return false;
            });
        }
        const struct {
            CheckBox PaperChoices::*box;
            int control;
        } boxes[] = {
            {&PaperChoices::zoom, kZoomControl},
            {&PaperChoices::duplex, kDuplexControl},
            {&PaperChoices::flagB, kFlagBControl},
            {&PaperChoices::flagC, kFlagCControl},
        };
        for (const auto& box : boxes) {
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
    for (const uint32_t paper : {8u, 9u, 11u, 13u, 20u, 43u, 258u, 5u, 448u}) {
        for (const uint16_t medium : {0, 1, 6, 10, 99}) {
            for (const uint16_t fit : {int{kNoFit}, DMPAPER_A4, DMPAPER_JAPANESE_POSTCARD}) {
                for (int flags = 0; flags < 16; ++flags) {
                    VelmoraDevMode devMode = NewDevMode();
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
    size_t steps = 0;
    while (!queue_.empty() && steps < 3000000) {
        const PaperChoices page = queue_.front();
        queue_.pop_front();
        Follow(page);
        ++steps;
        if (HasFatalFailure()) {
            return;
        }
    }
    printf("%zu states\n", seen_.size());
}

INSTANTIATE_TEST_SUITE_P(Printers, PaperWalk,
                         testing::Combine(testing::Bool(), testing::Values(0u, 1u), testing::Values(0u, 1u, kNoUnit)));

}  // namespace
}  // namespace velmora
