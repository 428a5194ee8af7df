#include "tools/xpic/standard_papers.h"

#include <array>

#include "driver/devdesc/standard_papers.h"

namespace velmora {
namespace {

// What sources and printers know of a paper beyond its size.
struct NamedPaper {
    std::string_view name;
    int16_t id;
    bool isMetric;
    std::string_view label;
    int16_t pclSizeCode;
    std::string_view rendererName;
};

// clang-format off
constexpr NamedPaper kNamedPapers[] = {
    {"Letter",                   1, false, "Letter",                             2, "LETTER"},
    {"LetterSmall",              2, false, "Letter Small",                       0, ""},
    {"Tabloid",                  3, false, "Tabloid",                            6, "LEDGER"},
    {"Ledger",                   4, false, "Ledger",                             0, ""},
    {"Legal",                    5, false, "Legal",                              3, "LEGAL"},
    {"Statement",                6, false, "Statement",                          5, "STATEMENT"},
    {"Executive",                7, false, "Executive",                          1, "EXEC"},
    {"A3",                       8, true,  "A3",                                27, "A3"},
    {"A4",                       9, true,  "A4",                                26, "A4"},
    {"A4Small",                 10, true,  "A4 Small",                           0, ""},
    {"A5",                      11, true,  "A5",                                25, "A5"},
    {"B4JIS",                   12, true,  "B4 (JIS)",                          46, "JB4"},
    {"B5JIS",                   13, true,  "B5 (JIS)",                          45, "JB5"},
    {"Folio",                   14, false, "Folio",                              0, ""},
    {"Quarto",                  15, true,  "Quarto",                             0, ""},
    {"10x14",                   16, false, "10 x 14 in",                         0, ""},
    {"11x17",                   17, false, "11 x 17 in",                         6, "LEDGER"},
    {"Note",                    18, false, "Note",                               0, ""},
    {"Envelope9",               19, false, "Envelope #9",                        0, ""},
    {"Envelope10",              20, false, "Envelope #10",                      81, "COM10"},
    {"Envelope11",              21, false, "Envelope #11",                       0, ""},
    {"Envelope12",              22, false, "Envelope #12",                       0, ""},
    {"Envelope14",              23, false, "Envelope #14",                       0, ""},
    {"CSheet",                  24, false, "C Sheet",                            0, ""},
    {"DSheet",                  25, false, "D Sheet",                            0, ""},
    {"ESheet",                  26, false, "E Sheet",                            0, ""},
    {"EnvelopeDL",              27, true,  "Envelope DL",                       90, "DL"},
    {"EnvelopeC5",              28, true,  "Envelope C5",                       91, "C5"},
    {"EnvelopeC3",              29, true,  "Envelope C3",                        0, ""},
    {"EnvelopeC4",              30, true,  "Envelope C4",                        0, ""},
    {"EnvelopeC6",              31, true,  "Envelope C6",                        0, ""},
    {"EnvelopeC65",             32, true,  "Envelope C6/5",                      0, ""},
    {"EnvelopeB4",              33, true,  "Envelope B4",                        0, ""},
    {"EnvelopeB5",              34, true,  "Envelope B5",                      100, "B5 ENV"},
    {"EnvelopeB6",              35, true,  "Envelope B6",                        0, ""},
    {"EnvelopeItaly",           36, true,  "Envelope Italy",                     0, ""},
    {"EnvelopeMonarch",         37, false, "Envelope Monarch",                  80, "MONARCH"},
    {"EnvelopePersonal",        38, false, "Envelope Personal",                  0, ""},
    {"FanfoldUs",               39, false, "US Std Fanfold",                     0, ""},
    {"FanfoldGerman",           40, false, "German Std Fanfold",                 0, ""},
    {"FanfoldGermanLegal",      41, false, "German Legal Fanfold",               0, ""},
    {"B4",                      42, true,  "B4 (ISO)",                           0, ""},
    {"JapanesePostcard",        43, true,  "Japanese Postcard",                 71, "JPOST"},
    {"9x11",                    44, false, "9 x 11 in",                          0, ""},
    {"10x11",                   45, false, "10 x 11 in",                         0, ""},
    {"15x11",                   46, false, "15 x 11 in",                         0, ""},
    {"EnvelopeInvite",          47, true,  "Envelope Invite",                    0, ""},
    {"LetterExtra",             50, false, "Letter Extra",                       0, ""},
    {"LegalExtra",              51, false, "Legal Extra",                        0, ""},
    {"TabloidExtra",            52, false, "Tabloid Extra",                      0, ""},
    {"A4Extra",                 53, false, "A4 Extra",                           0, ""},
    {"APlus",                   57, true,  "Super A",                            0, ""},
    {"BPlus",                   58, true,  "Super B",                            0, ""},
    {"LetterPlus",              59, false, "Letter Plus",                        0, ""},
    {"A4Plus",                  60, true,  "A4 Plus",                            0, ""},
    {"A3Extra",                 63, true,  "A3 Extra",                           0, ""},
    {"A5Extra",                 64, true,  "A5 Extra",                           0, ""},
    {"B5Extra",                 65, true,  "B5 (ISO) Extra",                     0, ""},
    {"A2",                      66, true,  "A2",                                 0, ""},
    {"JapaneseDoublePostcard",  69, true,  "Japanese Double Postcard",           0, ""},
    {"A6",                      70, true,  "A6",                                24, "A6"},
    {"EnvelopeKaku2",           71, true,  "Japanese Envelope Kaku #2",          0, ""},
    {"EnvelopeKaku3",           72, true,  "Japanese Envelope Kaku #3",          0, ""},
    {"EnvelopeChou3",           73, true,  "Japanese Envelope Chou #3",          0, ""},
    {"EnvelopeChou4",           74, true,  "Japanese Envelope Chou #4",          0, ""},
    {"LetterRotated",           75, false, "Letter Rotated",                     0, ""},
    {"A3Rotated",               76, true,  "A3 Rotated",                         0, ""},
    {"A4Rotated",               77, true,  "A4 Rotated",                         0, ""},
    {"A5Rotated",               78, true,  "A5 Rotated",                         0, ""},
    {"B4JISRotated",            79, true,  "B4 (JIS) Rotated",                   0, ""},
    {"B5JISRotated",            80, true,  "B5 (JIS) Rotated",                   0, ""},
    {"A6Rotated",               83, true,  "A6 Rotated",                         0, ""},
    {"B6JIS",                   88, true,  "B6 (JIS)",                          18, "JB6"},
    {"B6JISRotated",            89, true,  "B6 (JIS) Rotated",                   0, ""},
    {"12x11",                   90, false, "12 x 11 in",                         0, ""},
    {"EnvelopeYou4",            91, true,  "Japanese Envelope You #4",           0, ""},
    {"Prc16K",                  93, true,  "PRC 16K",                            0, ""},
    {"Prc32K",                  94, true,  "PRC 32K",                            0, ""},
    {"Prc32KBig",               95, true,  "PRC 32K (Big)",                      0, ""},
    {"EnvelopePrc1",            96, true,  "PRC Envelope #1",                    0, ""},
    {"EnvelopePrc2",            97, true,  "PRC Envelope #2",                    0, ""},
    {"EnvelopePrc3",            98, true,  "PRC Envelope #3",                    0, ""},
    {"EnvelopePrc4",            99, true,  "PRC Envelope #4",                    0, ""},
    {"EnvelopePrc5",           100, true,  "PRC Envelope #5",                    0, ""},
    {"EnvelopePrc6",           101, true,  "PRC Envelope #6",                    0, ""},
    {"EnvelopePrc7",           102, true,  "PRC Envelope #7",                    0, ""},
    {"EnvelopePrc8",           103, true,  "PRC Envelope #8",                    0, ""},
    {"EnvelopePrc9",           104, true,  "PRC Envelope #9",                    0, ""},
    {"EnvelopePrc10",          105, true,  "PRC Envelope #10",                   0, ""},
};
// clang-format on

constexpr auto kTable = [] {
    std::array<StandardPaper, std::size(kNamedPapers)> papers = {};
    for (size_t i = 0; i < papers.size(); ++i) {
        const NamedPaper& named = kNamedPapers[i];
        const StandardPaperSize& size = kStandardPaperSizes[named.id];
        papers[i] = {named.name,  named.id,     size.width,        size.length,       named.isMetric,
                     named.label, size.keyword, named.pclSizeCode, named.rendererName};
    }
    return papers;
}();

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
    if (!standard.keyword.empty()) {
        paper.keyword = "psk:" + std::string(standard.keyword);
    }
    paper.width = standard.width;
    paper.length = standard.length;
    paper.isMetric = standard.isMetric;
    paper.pclSizeCode = IsPcl(pdlType) ? standard.pclSizeCode : int16_t{0};
    paper.rendererName = pdlType == kPdlPcl6 ? standard.rendererName : std::string_view();
    return paper;
}

}  // namespace velmora
