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
        {4580, 3240, DMPAPER_PENV_10_ROTATED},
        {0, 0, 0},
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

}  // namespace
}  // namespace velmora
