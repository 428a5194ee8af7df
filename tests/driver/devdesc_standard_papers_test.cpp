#include "driver/devdesc/standard_papers.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <set>
#include <string>

#include "driver/devdesc/offered_papers.h"

namespace velmora {
namespace {

static_assert(std::size(kStandardPaperSizes) == DMPAPER_LAST + 2);

TEST(StandardPapers, AreFoundBySize) {
    constexpr struct {
        int32_t width;
        int32_t length;
        int16_t id;
    } kCases[] = {
        {2100, 2970, DMPAPER_A4},
        {2105, 2965, DMPAPER_A4},
        {2095, 2975, DMPAPER_A4},
        {2106, 2970, 0},
        {2100, 2964, 0},
        {2970, 2100, DMPAPER_A4_ROTATED},
        {2159, 2794, DMPAPER_LETTER},  // small, note and transverse, too
        {2794, 4318, DMPAPER_TABLOID},
        {2500, 3530, DMPAPER_ENV_B4},
        {1103, 2197, DMPAPER_ENV_DL},
        {4580, 3240, DMPAPER_PENV_10_ROTATED},
        {0, 0, 0},
        {-5, 5, 0},
        {INT32_MAX, INT32_MIN, 0},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(FindStandardPaper(c.width, c.length), c.id) << c.width << " x " << c.length;
    }
}

TEST(StandardPapers, HaveASizeAndAKeywordOfTheirOwn) {
    std::set<std::string> keywords;
    for (int id = 0; id < static_cast<int>(std::size(kStandardPaperSizes)); ++id) {
        SCOPED_TRACE(id);
        const StandardPaperSize& paper = kStandardPaperSizes[id];
        const bool isPaper = id != 0 && id != 48 && id != 49 && id <= DMPAPER_LAST;
        EXPECT_EQ(paper.width > 0, isPaper);
        EXPECT_EQ(paper.length > 0, isPaper);
        EXPECT_TRUE(*paper.keyword == '\0' || keywords.insert(paper.keyword).second) << paper.keyword;
    }
    for (const OfferedPaper& offered : kOfferedPapers) {
        EXPECT_EQ(offered.width, kStandardPaperSizes[offered.paperId].width) << offered.paperId;
        EXPECT_EQ(offered.length, kStandardPaperSizes[offered.paperId].length) << offered.paperId;
    }
}

TEST(StandardPapers, TransverseAndRotatedOnesAreLikeTheirPaper) {
    constexpr struct {
        int id;
        int paper;
    } kTransverse[] = {{54, 1}, {55, 9}, {56, 50}, {61, 11}, {62, 13}, {67, 8}, {68, 63}};
    for (const auto& [id, paper] : kTransverse) {
        EXPECT_EQ(kStandardPaperSizes[id].width, kStandardPaperSizes[paper].width) << id;
        EXPECT_EQ(kStandardPaperSizes[id].length, kStandardPaperSizes[paper].length) << id;
    }
    constexpr struct {
        int first;
        int firstPaper;
        int count;
    } kRotated[] = {{75, 1, 1},  {76, 8, 2},  {78, 11, 3}, {81, 43, 1},  {82, 69, 2},
                    {84, 71, 4}, {89, 88, 1}, {92, 91, 1}, {106, 93, 13}};
    for (const auto& run : kRotated) {
        for (int i = 0; i < run.count; ++i) {
            const StandardPaperSize& rotated = kStandardPaperSizes[run.first + i];
            const StandardPaperSize& paper = kStandardPaperSizes[run.firstPaper + i];
            SCOPED_TRACE(run.first + i);
            EXPECT_EQ(rotated.width, paper.length);
            EXPECT_EQ(rotated.length, paper.width);
            if (*rotated.keyword != '\0') {
                EXPECT_EQ(rotated.keyword, std::string(paper.keyword) + "Rotated");
            }
        }
    }
}

}  // namespace
}  // namespace velmora
