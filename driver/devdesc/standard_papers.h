// The papers that Windows has ids for: their published sizes and Print Schema keywords.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

namespace velmora {

struct StandardPaperSize {
    const char* keyword;  // of PageMediaSize in the Print Schema, without prefix; empty where none is published
    int16_t width;        // 0.1 mm; 0 where the id names no paper
    int16_t length;       // 0.1 mm; 0 where the id names no paper
};

// By DMPAPER_ value (wingdi.h), from 0. Transverse papers are fed another way and have the size of the paper that they
// are named after, rotated ones have that size turned.
inline constexpr StandardPaperSize kStandardPaperSizes[] = {
    {"", 0, 0},                                         // 0: no paper
    {"NorthAmericaLetter", 2159, 2794},                 // 1: Letter
    {"", 2159, 2794},                                   // 2: Letter Small
    {"NorthAmericaTabloid", 2794, 4318},                // 3: Tabloid
    {"", 4318, 2794},                                   // 4: Ledger
    {"NorthAmericaLegal", 2159, 3556},                  // 5: Legal
    {"NorthAmericaStatement", 1397, 2159},              // 6: Statement
    {"NorthAmericaExecutive", 1841, 2667},              // 7: Executive
    {"ISOA3", 2970, 4200},                              // 8: A3
    {"ISOA4", 2100, 2970},                              // 9: A4
    {"", 2100, 2970},                                   // 10: A4 Small
    {"ISOA5", 1480, 2100},                              // 11: A5
    {"JISB4", 2570, 3640},                              // 12: B4 (JIS)
    {"JISB5", 1820, 2570},                              // 13: B5 (JIS)
    {"OtherMetricFolio", 2159, 3302},                   // 14: Folio
    {"NorthAmericaQuarto", 2150, 2750},                 // 15: Quarto
    {"NorthAmerica10x14", 2540, 3556},                  // 16: 10 x 14 in
    {"NorthAmerica11x17", 2794, 4318},                  // 17: 11 x 17 in
    {"NorthAmericaNote", 2159, 2794},                   // 18: Note
    {"NorthAmericaNumber9Envelope", 984, 2254},         // 19: Envelope #9
    {"NorthAmericaNumber10Envelope", 1048, 2413},       // 20: Envelope #10
    {"NorthAmericaNumber11Envelope", 1143, 2635},       // 21: Envelope #11
    {"NorthAmericaNumber12Envelope", 1207, 2794},       // 22: Envelope #12
    {"NorthAmericaNumber14Envelope", 1270, 2921},       // 23: Envelope #14
    {"NorthAmericaCSheet", 4318, 5588},                 // 24: C Sheet
    {"NorthAmericaDSheet", 5588, 8636},                 // 25: D Sheet
    {"NorthAmericaESheet", 8636, 11176},                // 26: E Sheet
    {"ISODLEnvelope", 1100, 2200},                      // 27: Envelope DL
    {"ISOC5Envelope", 1620, 2290},                      // 28: Envelope C5
    {"ISOC3Envelope", 3240, 4580},                      // 29: Envelope C3
    {"ISOC4Envelope", 2290, 3240},                      // 30: Envelope C4
    {"ISOC6Envelope", 1140, 1620},                      // 31: Envelope C6
    {"ISOC6C5Envelope", 1140, 2290},                    // 32: Envelope C6/5
    {"ISOB4Envelope", 2500, 3530},                      // 33: Envelope B4
    {"ISOB5Envelope", 1760, 2500},                      // 34: Envelope B5
    {"", 1760, 1250},                                   // 35: Envelope B6
    {"OtherMetricItalianEnvelope", 1100, 2300},         // 36: Envelope Italy
    {"NorthAmericaMonarchEnvelope", 984, 1905},         // 37: Envelope Monarch
    {"NorthAmericaPersonalEnvelope", 921, 1651},        // 38: Envelope Personal
    {"", 3778, 2794},                                   // 39: US Std Fanfold
    {"NorthAmericaGermanStandardFanfold", 2159, 3048},  // 40: German Std Fanfold
    {"NorthAmericaGermanLegalFanfold", 2159, 3302},     // 41: German Legal Fanfold
    {"ISOB4", 2500, 3530},                              // 42: B4 (ISO)
    {"JapanHagakiPostcard", 1000, 1480},                // 43: Japanese Postcard
    {"NorthAmerica9x11", 2286, 2794},                   // 44: 9 x 11 in
    {"NorthAmerica10x11", 2540, 2794},                  // 45: 10 x 11 in
    {"", 3810, 2794},                                   // 46: 15 x 11 in
    {"OtherMetricInviteEnvelope", 2200, 2200},          // 47: Envelope Invite
    {"", 0, 0},                                         // 48: no paper
    {"", 0, 0},                                         // 49: no paper
    {"NorthAmericaLetterExtra", 2413, 3048},            // 50: Letter Extra
    {"NorthAmericaLegalExtra", 2413, 3810},             // 51: Legal Extra
    {"NorthAmericaTabloidExtra", 2969, 4572},           // 52: Tabloid Extra
    {"ISOA4Extra", 2355, 3223},                         // 53: A4 Extra
    {"", 2159, 2794},                                   // 54: Letter Transverse
    {"", 2100, 2970},                                   // 55: A4 Transverse
    {"", 2413, 3048},                                   // 56: Letter Extra Transverse
    {"NorthAmericaSuperA", 2270, 3560},                 // 57: Super A
    {"NorthAmericaSuperB", 3050, 4870},                 // 58: Super B
    {"NorthAmericaLetterPlus", 2159, 3223},             // 59: Letter Plus
    {"OtherMetricA4Plus", 2100, 3300},                  // 60: A4 Plus
    {"", 1480, 2100},                                   // 61: A5 Transverse
    {"", 1820, 2570},                                   // 62: B5 (JIS) Transverse
    {"ISOA3Extra", 3220, 4450},                         // 63: A3 Extra
    {"ISOA5Extra", 1740, 2350},                         // 64: A5 Extra
    {"ISOB5Extra", 2010, 2760},                         // 65: B5 (ISO) Extra
    {"ISOA2", 4200, 5940},                              // 66: A2
    {"", 2970, 4200},                                   // 67: A3 Transverse
    {"", 3220, 4450},                                   // 68: A3 Extra Transverse
    {"JapanDoubleHagakiPostcard", 2000, 1480},          // 69: Japanese Double Postcard
    {"ISOA6", 1050, 1480},                              // 70: A6
    {"JapanKaku2Envelope", 2400, 3320},                 // 71: Japanese Envelope Kaku #2
    {"JapanKaku3Envelope", 2160, 2770},                 // 72: Japanese Envelope Kaku #3
    {"JapanChou3Envelope", 1200, 2350},                 // 73: Japanese Envelope Chou #3
    {"JapanChou4Envelope", 900, 2050},                  // 74: Japanese Envelope Chou #4
    {"NorthAmericaLetterRotated", 2794, 2159},          // 75: Letter Rotated
    {"ISOA3Rotated", 4200, 2970},                       // 76: A3 Rotated
    {"ISOA4Rotated", 2970, 2100},                       // 77: A4 Rotated
    {"ISOA5Rotated", 2100, 1480},                       // 78: A5 Rotated
    {"JISB4Rotated", 3640, 2570},                       // 79: B4 (JIS) Rotated
    {"JISB5Rotated", 2570, 1820},                       // 80: B5 (JIS) Rotated
    {"JapanHagakiPostcardRotated", 1480, 1000},         // 81: Japanese Postcard Rotated
    {"JapanDoubleHagakiPostcardRotated", 1480, 2000},   // 82: Japanese Double Postcard Rotated
    {"ISOA6Rotated", 1480, 1050},                       // 83: A6 Rotated
    {"JapanKaku2EnvelopeRotated", 3320, 2400},          // 84: Japanese Envelope Kaku #2 Rotated
    {"JapanKaku3EnvelopeRotated", 2770, 2160},          // 85: Japanese Envelope Kaku #3 Rotated
    {"JapanChou3EnvelopeRotated", 2350, 1200},          // 86: Japanese Envelope Chou #3 Rotated
    {"JapanChou4EnvelopeRotated", 2050, 900},           // 87: Japanese Envelope Chou #4 Rotated
    {"JISB6", 1280, 1820},                              // 88: B6 (JIS)
    {"JISB6Rotated", 1820, 1280},                       // 89: B6 (JIS) Rotated
    {"", 3048, 2794},                                   // 90: 12 x 11 in
    {"JapanYou4Envelope", 1050, 2350},                  // 91: Japanese Envelope You #4
    {"JapanYou4EnvelopeRotated", 2350, 1050},           // 92: Japanese Envelope You #4 Rotated
    {"PRC16K", 1460, 2150},                             // 93: PRC 16K
    {"PRC32K", 970, 1510},                              // 94: PRC 32K
    {"PRC32KBig", 970, 1510},                           // 95: PRC 32K (Big)
    {"PRC1Envelope", 1020, 1650},                       // 96: PRC Envelope #1
    {"PRC2Envelope", 1020, 1760},                       // 97: PRC Envelope #2
    {"PRC3Envelope", 1250, 1760},                       // 98: PRC Envelope #3
    {"PRC4Envelope", 1100, 2080},                       // 99: PRC Envelope #4
    {"PRC5Envelope", 1100, 2200},                       // 100: PRC Envelope #5
    {"PRC6Envelope", 1200, 2300},                       // 101: PRC Envelope #6
    {"PRC7Envelope", 1600, 2300},                       // 102: PRC Envelope #7
    {"PRC8Envelope", 1200, 3090},                       // 103: PRC Envelope #8
    {"PRC9Envelope", 2290, 3240},                       // 104: PRC Envelope #9
    {"PRC10Envelope", 3240, 4580},                      // 105: PRC Envelope #10
    {"PRC16KRotated", 2150, 1460},                      // 106: PRC 16K Rotated
    {"PRC32KRotated", 1510, 970},                       // 107: PRC 32K Rotated
    {"", 1510, 970},                                    // 108: PRC 32K (Big) Rotated
    {"PRC1EnvelopeRotated", 1650, 1020},                // 109: PRC Envelope #1 Rotated
    {"PRC2EnvelopeRotated", 1760, 1020},                // 110: PRC Envelope #2 Rotated
    {"PRC3EnvelopeRotated", 1760, 1250},                // 111: PRC Envelope #3 Rotated
    {"PRC4EnvelopeRotated", 2080, 1100},                // 112: PRC Envelope #4 Rotated
    {"PRC5EnvelopeRotated", 2200, 1100},                // 113: PRC Envelope #5 Rotated
    {"PRC6EnvelopeRotated", 2300, 1200},                // 114: PRC Envelope #6 Rotated
    {"PRC7EnvelopeRotated", 2300, 1600},                // 115: PRC Envelope #7 Rotated
    {"PRC8EnvelopeRotated", 3090, 1200},                // 116: PRC Envelope #8 Rotated
    {"PRC9EnvelopeRotated", 3240, 2290},                // 117: PRC Envelope #9 Rotated
    {"PRC10EnvelopeRotated", 4580, 3240},               // 118: PRC Envelope #10 Rotated
    {"", 0, 0},                                         // 119: no paper
};

// The id of the first paper whose width and length, given in 0.1 mm, both differ by at most 5 (0.5 mm); 0 for none.
constexpr int16_t FindStandardPaper(int32_t width, int32_t length) {
    constexpr int64_t kTolerance = 5;
    const auto isNear = [](int64_t wanted, int64_t published) {
        return published != 0 && wanted - kTolerance <= published && published <= wanted + kTolerance;
    };
    for (size_t id = 0; id < std::size(kStandardPaperSizes); ++id) {
        if (isNear(width, kStandardPaperSizes[id].width) && isNear(length, kStandardPaperSizes[id].length)) {
            return static_cast<int16_t>(id);
        }
    }
    return 0;
}

}  // namespace velmora
