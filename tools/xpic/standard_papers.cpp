#include "tools/xpic/standard_papers.h"

namespace velmora {
namespace {

// clang-format off
constexpr StandardPaper kTable[] = {
    {"Letter",            1, 2159, 2794, false, "Letter",               "psk:NorthAmericaLetter",              2, "LETTER"},
    {"LetterSmall",       2, 2159, 2794, false, "Letter Small",         "",                                    0, ""},
    {"Tabloid",           3, 2794, 4318, false, "Tabloid",              "psk:NorthAmericaTabloid",             6, "LEDGER"},
    {"Ledger",            4, 4318, 2794, false, "Ledger",               "",                                    0, ""},
    {"Legal",             5, 2159, 3556, false, "Legal",                "psk:NorthAmericaLegal",               3, "LEGAL"},
    {"Statement",         6, 1397, 2159, false, "Statement",            "psk:NorthAmericaStatement",           5, "STATEMENT"},
    {"Executive",         7, 1841, 2667, false, "Executive",            "psk:NorthAmericaExecutive",           1, "EXEC"},
    {"A3",                8, 2970, 4200, true,  "A3",                   "psk:ISOA3",                          27, "A3"},
    {"A4",                9, 2100, 2970, true,  "A4",                   "psk:ISOA4",                          26, "A4"},
    {"A4Small",          10, 2100, 2970, true,  "A4 Small",             "",                                    0, ""},
    {"A5",               11, 1480, 2100, true,  "A5",                   "psk:ISOA5",                          25, "A5"},
    {"B4JIS",            12, 2570, 3640, true,  "B4 (JIS)",             "psk:JISB4",                          46, "JB4"},
    {"B5JIS",            13, 1820, 2570, true,  "B5 (JIS)",             "psk:JISB5",                          45, "JB5"},
    {"Folio",            14, 2159, 3302, false, "Folio",                "psk:OtherMetricFolio",                0, ""},
    {"Quarto",           15, 2150, 2750, true,  "Quarto",               "psk:NorthAmericaQuarto",              0, ""},
    {"10x14",            16, 2540, 3556, false, "10 x 14 in",           "psk:NorthAmerica10x14",               0, ""},
    {"11x17",            17, 2794, 4318, false, "11 x 17 in",           "psk:NorthAmerica11x17",               6, "LEDGER"},
    {"Note",             18, 2159, 2794, false, "Note",                 "psk:NorthAmericaNote",                0, ""},
    {"Envelope9",        19,  984, 2254, false, "Envelope #9",          "psk:NorthAmericaNumber9Envelope",     0, ""},
    {"Envelope10",       20, 1048, 2413, false, "Envelope #10",         "psk:NorthAmericaNumber10Envelope",   81, "COM10"},
    {"Envelope11",       21, 1143, 2635, false, "Envelope #11",         "psk:NorthAmericaNumber11Envelope",    0, ""},
    {"Envelope12",       22, 1207, 2794, false, "Envelope #12",         "psk:NorthAmericaNumber12Envelope",    0, ""},
    {"Envelope14",       23, 1270, 2921, false, "Envelope #14",         "psk:NorthAmericaNumber14Envelope",    0, ""},
    {"CSheet",           24, 4318, 5588, false, "C Sheet",              "psk:NorthAmericaCSheet",              0, ""},
    {"DSheet",           25, 5588, 8636, false, "D Sheet",              "psk:NorthAmericaDSheet",              0, ""},
    {"ESheet",           26, 8636, 11176, false, "E Sheet",             "psk:NorthAmericaESheet",              0, ""},
    {"EnvelopeDL",       27, 1100, 2200, true,  "Envelope DL",          "psk:ISODLEnvelope",                  90, "DL"},
    {"EnvelopeC5",       28, 1620, 2290, true,  "Envelope C5",          "psk:ISOC5Envelope",                  91, "C5"},
    {"EnvelopeC3",       29, 3240, 4580, true,  "Envelope C3",          "psk:ISOC3Envelope",                   0, ""},
    {"EnvelopeC4",       30, 2290, 3240, true,  "Envelope C4",          "psk:ISOC4Envelope",                   0, ""},
    {"EnvelopeC6",       31, 1140, 1620, true,  "Envelope C6",          "psk:ISOC6Envelope",                   0, ""},
    {"EnvelopeC65",      32, 1140, 2290, true,  "Envelope C6/5",        "psk:ISOC6C5Envelope",                 0, ""},
    {"EnvelopeB4",       33, 2500, 3530, true,  "Envelope B4",          "psk:ISOB4Envelope",                   0, ""},
    {"EnvelopeB5",       34, 1760, 2500, true,  "Envelope B5",          "psk:ISOB5Envelope",                 100, "B5 ENV"},
    {"EnvelopeB6",       35, 1760, 1250, true,  "Envelope B6",          "",                                    0, ""},
    {"EnvelopeItaly",    36, 1100, 2300, true,  "Envelope Italy",       "psk:OtherMetricItalianEnvelope",      0, ""},
    {"EnvelopeMonarch",  37,  984, 1905, false, "Envelope Monarch",     "psk:NorthAmericaMonarchEnvelope",    80, "MONARCH"},
    {"EnvelopePersonal", 38,  921, 1651, false, "Envelope Personal",    "psk:NorthAmericaPersonalEnvelope",    0, ""},
    {"FanfoldUs",        39, 3778, 2794, false, "US Std Fanfold",       "",                                    0, ""},
    {"FanfoldGerman",    40, 2159, 3048, false, "German Std Fanfold",   "psk:NorthAmericaGermanStandardFanfold", 0, ""},
    {"FanfoldGermanLegal", 41, 2159, 3302, false, "German Legal Fanfold", "psk:NorthAmericaGermanLegalFanfold", 0, ""},
    {"B4",               42, 2500, 3530, true,  "B4 (ISO)",             "psk:ISOB4",                           0, ""},
    {"JapanesePostcard", 43, 1000, 1480, true,  "Japanese Postcard",    "psk:JapanHagakiPostcard",            71, "JPOST"},
    {"9x11",             44, 2286, 2794, false, "9 x 11 in",            "psk:NorthAmerica9x11",                0, ""},
    {"10x11",            45, 2540, 2794, false, "10 x 11 in",           "psk:NorthAmerica10x11",               0, ""},
    {"15x11",            46, 3810, 2794, false, "15 x 11 in",           "",                                    0, ""},
    {"EnvelopeInvite",   47, 2200, 2200, true,  "Envelope Invite",      "psk:OtherMetricInviteEnvelope",       0, ""},
    {"LetterExtra",      50, 2356, 3048, false, "Letter Extra",         "psk:NorthAmericaLetterExtra",         0, ""},
    {"LegalExtra",       51, 2356, 3810, false, "Legal Extra",          "psk:NorthAmericaLegalExtra",          0, ""},
    {"TabloidExtra",     52, 2969, 4572, false, "Tabloid Extra",        "psk:NorthAmericaTabloidExtra",        0, ""},
    {"A4Extra",          53, 2355, 3223, false, "A4 Extra",             "psk:ISOA4Extra",                      0, ""},
    {"APlus",            57, 2270, 3560, true,  "Super A",              "psk:NorthAmericaSuperA",              0, ""},
    {"BPlus",            58, 3050, 4870, true,  "Super B",              "psk:NorthAmericaSuperB",              0, ""},
    {"LetterPlus",       59, 2159, 3223, false, "Letter Plus",          "psk:NorthAmericaLetterPlus",          0, ""},
    {"A4Plus",           60, 2100, 3300, true,  "A4 Plus",              "psk:OtherMetricA4Plus",               0, ""},
    {"A3Extra",          63, 3220, 4450, true,  "A3 Extra",             "psk:ISOA3Extra",                      0, ""},
    {"A5Extra",          64, 1740, 2350, true,  "A5 Extra",             "psk:ISOA5Extra",                      0, ""},
    {"B5Extra",          65, 2010, 2760, true,  "B5 (ISO) Extra",       "psk:ISOB5Extra",                      0, ""},
    {"A2",               66, 4200, 5940, true,  "A2",                   "psk:ISOA2",                           0, ""},
    {"JapaneseDoublePostcard", 69, 2000, 1480, true, "Japanese Double Postcard", "psk:JapanDoubleHagakiPostcard",  0, ""},
    {"A6",               70, 1050, 1480, true,  "A6",                   "psk:ISOA6",                          24, "A6"},
    {"EnvelopeKaku2",    71, 2400, 3320, true,  "Japanese Envelope Kaku #2", "psk:JapanKaku2Envelope",         0, ""},
    {"EnvelopeKaku3",    72, 2160, 2770, true,  "Japanese Envelope Kaku #3", "psk:JapanKaku3Envelope",         0, ""},
    {"EnvelopeChou3",    73, 1200, 2350, true,  "Japanese Envelope Chou #3", "psk:JapanChou3Envelope",         0, ""},
    {"EnvelopeChou4",    74,  900, 2050, true,  "Japanese Envelope Chou #4", "psk:JapanChou4Envelope",         0, ""},
    {"LetterRotated",    75, 2794, 2159, false, "Letter Rotated",       "psk:NorthAmericaLetterRotated",       0, ""},
    {"A3Rotated",        76, 4200, 2970, true,  "A3 Rotated",           "psk:ISOA3Rotated",                    0, ""},
    {"A4Rotated",        77, 2970, 2100, true,  "A4 Rotated",           "psk:ISOA4Rotated",                    0, ""},
    {"A5Rotated",        78, 2100, 1480, true,  "A5 Rotated",           "psk:ISOA5Rotated",                    0, ""},
    {"B4JISRotated",     79, 3640, 2570, true,  "B4 (JIS) Rotated",     "psk:JISB4Rotated",                    0, ""},
    {"B5JISRotated",     80, 2570, 1820, true,  "B5 (JIS) Rotated",     "psk:JISB5Rotated",                    0, ""},
    {"A6Rotated",        83, 1480, 1050, true,  "A6 Rotated",           "psk:ISOA6Rotated",                    0, ""},
    {"B6JIS",            88, 1280, 1820, true,  "B6 (JIS)",             "psk:JISB6",                          18, "JB6"},
    {"B6JISRotated",     89, 1820, 1280, true,  "B6 (JIS) Rotated",     "psk:JISB6Rotated",                    0, ""},
    {"12x11",            90, 3048, 2794, false, "12 x 11 in",           "",                                    0, ""},
    {"EnvelopeYou4",     91, 1050, 2350, true,  "Japanese Envelope You #4", "psk:JapanYou4Envelope",           0, ""},
    {"Prc16K",           93, 1460, 2150, true,  "PRC 16K",              "psk:PRC16K",                          0, ""},
    {"Prc32K",           94,  970, 1510, true,  "PRC 32K",              "psk:PRC32K",                          0, ""},
    {"Prc32KBig",        95,  970, 1510, true,  "PRC 32K (Big)",        "psk:PRC32KBig",                       0, ""},
    {"EnvelopePrc1",     96, 1020, 1650, true,  "PRC Envelope #1",      "psk:PRC1Envelope",                    0, ""},
    {"EnvelopePrc2",     97, 1020, 1760, true,  "PRC Envelope #2",      "psk:PRC2Envelope",                    0, ""},
    {"EnvelopePrc3",     98, 1250, 1760, true,  "PRC Envelope #3",      "psk:PRC3Envelope",                    0, ""},
    {"EnvelopePrc4",     99, 1100, 2080, true,  "PRC Envelope #4",      "psk:PRC4Envelope",                    0, ""},
    {"EnvelopePrc5",    100, 1100, 2200, true,  "PRC Envelope #5",      "psk:PRC5Envelope",                    0, ""},
    {"EnvelopePrc6",    101, 1200, 2300, true,  "PRC Envelope #6",      "psk:PRC6Envelope",                    0, ""},
    {"EnvelopePrc7",    102, 1600, 2300, true,  "PRC Envelope #7",      "psk:PRC7Envelope",                    0, ""},
    {"EnvelopePrc8",    103, 1200, 3090, true,  "PRC Envelope #8",      "psk:PRC8Envelope",                    0, ""},
    {"EnvelopePrc9",    104, 2290, 3240, true,  "PRC Envelope #9",      "psk:PRC9Envelope",                    0, ""},
    {"EnvelopePrc10",   105, 3240, 4580, true,  "PRC Envelope #10",     "psk:PRC10Envelope",                   0, ""},
};
// clang-format on

}  // namespace

constinit const std::span<const StandardPaper> kStandardPapers = kTable;

const StandardPaper* FindStandardPaper(std::string_view name) {
    for (const StandardPaper& paper : kStandardPapers) {
        if (paper.name == name) {
            return &paper;
        }
    }
    return nullptr;
}

const StandardPaper* FindStandardPaper(int64_t id) {
    for (const StandardPaper& paper : kStandardPapers) {
        if (paper.id == id) {
            return &paper;
        }
    }
    return nullptr;
}

PaperSource PaperOf(const StandardPaper& standard, uint16_t pdlType) {
    PaperSource paper;
    paper.id = standard.id;
    paper.keyword = standard.keyword;
    paper.width = standard.width;
    paper.length = standard.length;
    paper.isMetric = standard.isMetric;
    paper.pclSizeCode = IsPcl(pdlType) ? standard.pclSizeCode : int16_t{0};
    paper.rendererName = pdlType == kPdlPcl6 ? standard.rendererName : std::string_view();
    return paper;
}

}  // namespace velmora
