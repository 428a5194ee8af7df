// What the Paper page offers, and the tables by which its choices depend on each other. Data alone; paper_rules.cpp
// walks it.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/ui/choice_list.h"

namespace velmora {

// Papers are DMPAPER_ values (wingdi.h) and this one, the size that the user enters for the job.
inline constexpr uint32_t kCustomSizePaper = 258;

// Fit-to papers are papers and this one; a device mode has 65535 for it.
inline constexpr uint32_t kNoFitPaper = 0xFFFFFFFF;

// Sources (dmDefaultSource).
inline constexpr uint32_t kCassette = 257;
inline constexpr uint32_t kSecondTray = 258;
inline constexpr uint32_t kUsualSource = 263;

// Media (uiMediaValue) that have rules of their own. The others are 2 to 9.
inline constexpr uint32_t kUsualMedium = 0;
inline constexpr uint32_t kOfficeMedium = 1;     // of A3, A4 and Letter, and of pages that are fitted to A4 or Letter
inline constexpr uint32_t kPostcardMedium = 10;  // offered with postcards

// Page layouts: 1, 2 and 4 pages on a sheet, or a page on 2 x 2, 3 x 3 and 4 x 4 sheets.
enum PageLayout : uint32_t {
    kOnePage = 1,
    kTwoPages = 2,
    kFourPages = 4,
    kPoster2x2 = 5,
    kPoster3x3 = 6,
    kPoster4x4 = 7,
};

constexpr bool IsPoster(uint32_t layout) {
    return layout >= kPoster2x2 && layout <= kPoster4x4;
}

// Sheets along each side of a poster.
constexpr uint32_t PosterSide(uint32_t poster) {
    return poster - kPoster2x2 + 2;
}

// Lists of choices.

inline constexpr ChoiceEntry kEndOfChoices = {0, 0, 0};

inline constexpr ChoiceEntry kPapers[] = {
    {1, 2013, DMPAPER_A3},        {kAlwaysOffered, 2014, DMPAPER_A4},
    {1, 2016, DMPAPER_A5},        {1, 2017, DMPAPER_A6},
    {1, 2018, DMPAPER_B4},        {1, 2020, DMPAPER_B5},
    {1, 2021, DMPAPER_B6_JIS},    {1, 2000, DMPAPER_LETTER},
    {1, 2003, DMPAPER_STATEMENT}, {1, 2004, DMPAPER_EXECUTIVE},
    {1, 2038, DMPAPER_ENV_B5},    {2, 2024, DMPAPER_ENV_10},
    {4, 2030, DMPAPER_ENV_DL},    kEndOfChoices,
};
inline constexpr ChoiceEntry kJapanesePapers[] = {
    {1, 2013, DMPAPER_A3},
    {kAlwaysOffered, 2014, DMPAPER_A4},
    {1, 2016, DMPAPER_A5},
    {1, 2017, DMPAPER_A6},
    {1, 2018, DMPAPER_B4},
    {1, 2020, DMPAPER_B5},
    {1, 2021, DMPAPER_B6_JIS},
    {1, 2000, DMPAPER_LETTER},
    {1, 2003, DMPAPER_STATEMENT},
    {1, 2004, DMPAPER_EXECUTIVE},
    {1, 2038, DMPAPER_ENV_B5},
    {2, 2052, DMPAPER_JAPANESE_POSTCARD},
    kEndOfChoices,
};
// Follows the papers where it is offered. Its text is the string's and the size.
inline constexpr ChoiceEntry kCustomSizeChoice = {kAlwaysOffered, 5104, kCustomSizePaper};

// All fit-to papers.
inline constexpr ChoiceEntry kFitPapers[] = {
    {kAlwaysOffered, 5105, kNoFitPaper},
    {1, 5107, DMPAPER_A4},
    {1, 5108, DMPAPER_A5},
    {1, 5111, DMPAPER_B5},
    {1, 5113, DMPAPER_LETTER},
    {1, 5114, DMPAPER_STATEMENT},
    {1, 5115, DMPAPER_EXECUTIVE},
    {1, 5117, DMPAPER_ENV_B5},
    {4, 5119, DMPAPER_ENV_10},
    {8, 5120, DMPAPER_ENV_DL},
    kEndOfChoices,
};
inline constexpr ChoiceEntry kJapaneseFitPapers[] = {
    {kAlwaysOffered, 5105, kNoFitPaper},
    {1, 5107, DMPAPER_A4},
    {1, 5108, DMPAPER_A5},
    {1, 5111, DMPAPER_B5},
    {1, 5113, DMPAPER_LETTER},
    {1, 5114, DMPAPER_STATEMENT},
    {1, 5115, DMPAPER_EXECUTIVE},
    {1, 5117, DMPAPER_ENV_B5},
    {2, 5118, DMPAPER_JAPANESE_POSTCARD},
    kEndOfChoices,
};
// Those of papers and media that fit few.
inline constexpr ChoiceEntry kFewFitPapers[] = {
    {kAlwaysOffered, 5105, kNoFitPaper}, {1, 5107, DMPAPER_A4},     {1, 5113, DMPAPER_LETTER},
    {2, 5119, DMPAPER_ENV_10},           {4, 5120, DMPAPER_ENV_DL}, kEndOfChoices,
};
// Those that the second tray takes.
inline constexpr ChoiceEntry kSecondTrayFitPapers[] = {
    {kAlwaysOffered, 5105, kNoFitPaper},
    {kAlwaysOffered, 5107, DMPAPER_A4},
    {kAlwaysOffered, 5111, DMPAPER_B5},
    {kAlwaysOffered, 5113, DMPAPER_LETTER},
    {kAlwaysOffered, 5115, DMPAPER_EXECUTIVE},
    {kAlwaysOffered, 5117, DMPAPER_ENV_B5},
    kEndOfChoices,
};

inline constexpr ChoiceEntry kSources[] = {
    {2, 2855, kUsualSource},
    {kAlwaysOffered, 2856, kCassette},
    {1, 2857, kSecondTray},
    kEndOfChoices,
};
inline constexpr uint32_t kSourcesWithoutTray = 2;  // filters of the list
inline constexpr uint32_t kSourcesWithTray = 3;

inline constexpr ChoiceEntry kMedia[] = {
    {kAlwaysOffered, 11, kUsualMedium}, {1, 12, kOfficeMedium},   {kAlwaysOffered, 16, 2},  {kAlwaysOffered, 242, 3},
    {kAlwaysOffered, 243, 4},           {kAlwaysOffered, 244, 5}, {kAlwaysOffered, 245, 6}, {2, 249, kPostcardMedium},
    {kAlwaysOffered, 246, 7},           {kAlwaysOffered, 247, 8}, {kAlwaysOffered, 248, 9}, kEndOfChoices,
};
// Those that can be printed on both sides, or lie in the second tray.
inline constexpr ChoiceEntry kBothSidesMedia[] = {
    {kAlwaysOffered, 11, kUsualMedium},
    {kAlwaysOffered, 242, 3},
    {kAlwaysOffered, 243, 4},
    {kAlwaysOffered, 244, 5},
    {1, 245, 6},
    {1, 246, 7},
    kEndOfChoices,
};
inline constexpr ChoiceEntry kJapaneseBothSidesMedia[] = {
    {kAlwaysOffered, 11, kUsualMedium},
    {kAlwaysOffered, 242, 3},
    {kAlwaysOffered, 243, 4},
    {kAlwaysOffered, 244, 5},
    {1, 245, 6},
    {2, 249, kPostcardMedium},
    {1, 246, 7},
    kEndOfChoices,
};
inline constexpr ChoiceEntry kEnvelopeMedia[] = {
    {kAlwaysOffered, 247, 8},
    {kAlwaysOffered, 248, 9},
    kEndOfChoices,
};

inline constexpr ChoiceEntry kPageLayouts[] = {
    {kAlwaysOffered, 3056, kOnePage},
    {1, 3057, kTwoPages},
    {1, 3059, kFourPages},
    {2, 2371, kPoster2x2},
    {2, 2372, kPoster3x3},
    {4, 2373, kPoster4x4},
    kEndOfChoices,
};
inline constexpr uint32_t kOnePageOnly = 0;  // filters of the list
inline constexpr uint32_t kNoPosters = 1;
inline constexpr uint32_t kNoLargestPoster = 3;

// Classes: a value's class is its place here, and the row or column of the tables below.

inline constexpr uint32_t kPaperClasses[] = {
    DMPAPER_A3,
    DMPAPER_A4,
    DMPAPER_A5,
    DMPAPER_A6,
    DMPAPER_B4,
    DMPAPER_B5,
    DMPAPER_B6_JIS,
    DMPAPER_LETTER,
    DMPAPER_STATEMENT,
    DMPAPER_EXECUTIVE,
    DMPAPER_LEGAL,
    DMPAPER_ENV_B5,
    DMPAPER_JAPANESE_POSTCARD,
    DMPAPER_ENV_10,
    DMPAPER_ENV_DL,
    kCustomSizePaper,
};
inline constexpr size_t kPaperClassCount = 16;
inline constexpr size_t kA4Class = 1;
static_assert(kPaperClasses[kA4Class] == DMPAPER_A4);

inline constexpr uint32_t kFitClasses[] = {
    kNoFitPaper,       DMPAPER_A4,        DMPAPER_A5,    DMPAPER_B5,     DMPAPER_LETTER,
    DMPAPER_STATEMENT, DMPAPER_EXECUTIVE, DMPAPER_LEGAL, DMPAPER_ENV_B5, DMPAPER_JAPANESE_POSTCARD,
    DMPAPER_ENV_10,    DMPAPER_ENV_DL,
};
inline constexpr size_t kFitClassCount = 12;

// What a table says of a row for the two media with rules of their own and for all others.
struct MediumColumns {
    int8_t office;
    int8_t postcard;
    int8_t others;

    constexpr int8_t For(uint32_t medium) const {
        return medium == kOfficeMedium ? office : medium == kPostcardMedium ? postcard : others;
    }
};

// What a fit-to paper and a medium demand of the paper.
enum PaperDemand : int8_t {
    kAnyPaper = -1,
    kNoCustomSize = 0,
    kNoPostcardNoCustomSize = 1,
    kPostcardOrCustomSize = 2,
    kEnvelope10 = 4,
    kEnvelopeDL = 5,
};
// By the fit-to paper's class.
inline constexpr MediumColumns kPaperDemands[kFitClassCount] = {
    {kNoPostcardNoCustomSize, kPostcardOrCustomSize, kAnyPaper},  // none
    {kNoPostcardNoCustomSize, kNoCustomSize, kAnyPaper},          // A4
    {kNoCustomSize, kNoCustomSize, kAnyPaper},                    // A5
    {kNoCustomSize, kNoCustomSize, kAnyPaper},                    // B5
    {kNoPostcardNoCustomSize, kNoCustomSize, kAnyPaper},          // Letter
    {kNoCustomSize, kNoCustomSize, kAnyPaper},                    // Statement
    {kNoCustomSize, kNoCustomSize, kAnyPaper},                    // Executive
    {kNoCustomSize, kNoCustomSize, kAnyPaper},                    // Legal
    {kNoCustomSize, kNoCustomSize, kAnyPaper},                    // B5 envelope
    {kNoCustomSize, kPostcardOrCustomSize, kAnyPaper},            // Japanese postcard
    {kNoCustomSize, kEnvelope10, kEnvelope10},                    // Envelope #10
    {kNoCustomSize, kEnvelopeDL, kEnvelopeDL},                    // DL envelope
};

// Which fit-to papers a paper and a medium have.
enum FitOffer : int8_t {
    kFitByLayout = -1,
    kFitWithOddMedium = 0,  // as kFitBySource
    kFitBySource = 1,
    kFitPostcard = 2,
    kFitNothing = 3,
    kFitOffice = 4,
    kFitEnvelope10 = 5,
    kFitEnvelopeDL = 6,
};
// By the paper's class.
inline constexpr MediumColumns kFitOffers[kPaperClassCount] = {
    {kFitOffice, kFitWithOddMedium, kFitBySource},         // A3
    {kFitOffice, kFitWithOddMedium, kFitByLayout},         // A4
    {kFitWithOddMedium, kFitWithOddMedium, kFitBySource},  // A5
    {kFitWithOddMedium, kFitWithOddMedium, kFitBySource},  // A6
    {kFitWithOddMedium, kFitWithOddMedium, kFitBySource},  // B4
    {kFitWithOddMedium, kFitWithOddMedium, kFitBySource},  // B5
    {kFitWithOddMedium, kFitWithOddMedium, kFitBySource},  // B6
    {kFitOffice, kFitWithOddMedium, kFitBySource},         // Letter
    {kFitWithOddMedium, kFitWithOddMedium, kFitBySource},  // Statement
    {kFitWithOddMedium, kFitWithOddMedium, kFitBySource},  // Executive
    {kFitWithOddMedium, kFitWithOddMedium, kFitBySource},  // Legal
    {kFitWithOddMedium, kFitWithOddMedium, kFitBySource},  // B5 envelope
    {kFitWithOddMedium, kFitPostcard, kFitPostcard},       // Japanese postcard
    {kFitEnvelope10, kFitEnvelope10, kFitEnvelope10},      // Envelope #10
    {kFitEnvelopeDL, kFitEnvelopeDL, kFitEnvelopeDL},      // DL envelope
    {kFitNothing, kFitNothing, kFitNothing},               // custom size
};

// What zoom is proposed for a paper (row) on a fit-to paper (column), percent; 0: none is.
inline constexpr uint16_t kZoomProposals[kPaperClassCount][kFitClassCount] = {
    {70, 70, 48, 60, 66, 45, 61, 72, 58, 0, 0, 0},           // A3
    {100, 100, 69, 86, 94, 65, 87, 103, 83, 45, 0, 0},       // A4
    {100, 144, 100, 124, 135, 94, 126, 149, 120, 0, 0, 0},   // A5
    {145, 208, 145, 179, 195, 137, 183, 217, 174, 0, 0, 0},  // A6
    {70, 81, 56, 70, 76, 53, 71, 83, 67, 0, 0, 0},           // B4
    {100, 116, 80, 100, 109, 75, 101, 120, 97, 0, 0, 0},     // B5
    {144, 167, 116, 144, 157, 110, 148, 175, 140, 0, 0, 0},  // B6
    {100, 97, 67, 84, 100, 63, 85, 100, 81, 0, 0, 0},        // Letter
    {100, 139, 97, 120, 131, 100, 125, 159, 117, 0, 0, 0},   // Statement
    {100, 112, 78, 96, 105, 74, 100, 118, 93, 0, 0, 0},      // Executive
    {100, 83, 58, 71, 78, 60, 74, 100, 69, 0, 0, 0},         // Legal
    {100, 120, 83, 103, 112, 78, 105, 124, 100, 0, 0, 0},    // B5 envelope
    {100, 0, 0, 0, 0, 0, 0, 0, 0, 100, 0, 0},                // Japanese postcard
    {100, 0, 0, 0, 0, 0, 0, 0, 0, 0, 100, 0},                // Envelope #10
    {100, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 100},                // DL envelope
    {100, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},                  // custom size
};

// Whether a paper (row) on a fit-to paper (column) takes the media of envelopes alone.
inline constexpr bool kTakesEnvelopeMedia[kPaperClassCount][kFitClassCount] = {
    {},                                                                                 // A3
    {},                                                                                 // A4
    {},                                                                                 // A5
    {},                                                                                 // A6
    {},                                                                                 // B4
    {},                                                                                 // B5
    {},                                                                                 // B6
    {},                                                                                 // Letter
    {},                                                                                 // Statement
    {},                                                                                 // Executive
    {},                                                                                 // Legal
    {},                                                                                 // B5 envelope
    {},                                                                                 // Japanese postcard
    {true, false, false, false, false, false, false, false, false, false, true, true},  // Envelope #10
    {true, false, false, false, false, false, false, false, false, false, true, true},  // DL envelope
    {},                                                                                 // custom size
};

// The paper onto which a document is scaled where no fit-to paper is chosen, by the document's paper's class.
inline constexpr uint16_t kFitTargets[kPaperClassCount] = {
    DMPAPER_A4,
    DMPAPER_A4,
    DMPAPER_A5,
    DMPAPER_A5,
    DMPAPER_B5,
    DMPAPER_B5,
    DMPAPER_B5,
    DMPAPER_LETTER,
    DMPAPER_STATEMENT,
    DMPAPER_EXECUTIVE,
    DMPAPER_LEGAL,
    DMPAPER_ENV_B5,
    DMPAPER_JAPANESE_POSTCARD,
    DMPAPER_ENV_10,
    DMPAPER_ENV_DL,
    kCustomSizePaper,
};

// Groups of papers, fit-to papers and media that rules name.

inline constexpr uint32_t kCassettePapers[] = {
    // don't lie in the second tray
    DMPAPER_LEGAL,  DMPAPER_STATEMENT,         DMPAPER_A5, DMPAPER_ENV_10,
    DMPAPER_ENV_DL, DMPAPER_JAPANESE_POSTCARD, DMPAPER_A6, kCustomSizePaper,
};
inline constexpr uint32_t kCassetteFitPapers[] = {
    DMPAPER_LEGAL, DMPAPER_STATEMENT, DMPAPER_A5, DMPAPER_ENV_10, DMPAPER_ENV_DL, DMPAPER_JAPANESE_POSTCARD,
};
inline constexpr uint32_t kOneSidedPapers[] = {
    // also as fit-to papers
    DMPAPER_STATEMENT, DMPAPER_A5, DMPAPER_ENV_10, DMPAPER_ENV_DL, DMPAPER_A6,
};
inline constexpr uint32_t kUnzoomedPapers[] = {DMPAPER_A3, DMPAPER_A6, DMPAPER_B4, DMPAPER_B6_JIS};
inline constexpr uint32_t kLongPapers[] = {DMPAPER_A3, DMPAPER_B4, DMPAPER_LEGAL};
inline constexpr uint32_t kOnePagePapers[] = {
    // are printed with one page on a sheet alone
    DMPAPER_ENV_10,
    DMPAPER_ENV_DL,
    DMPAPER_JAPANESE_POSTCARD,
    kCustomSizePaper,
};
inline constexpr uint32_t kOneSidedMedia[] = {1, 2, 8, 9};
inline constexpr uint32_t kNoDuplexMedia[] = {6, 7};

// Within what a custom size is; 0.01 mm.
struct CustomSizeLimits {
    int32_t minWidth;
    int32_t maxWidth;
    int32_t minLength;
    int32_t maxLength;
};
inline constexpr CustomSizeLimits kCustomSizeLimits = {10000, 21590, 21000, 29700};
inline constexpr CustomSizeLimits kDuplexSizeLimits = {17600, 21590, 25000, 29700};
inline constexpr CustomSizeLimits kFlagBSizeLimits = {17600, 21590, 25000, 29700};

inline constexpr int32_t kUsualCustomWidth = 21000;
inline constexpr int32_t kUsualCustomLength = 29700;
inline constexpr uint16_t kMillimetres = 1;  // values of customUnit
inline constexpr uint16_t kInches = 0;

}  // namespace velmora
