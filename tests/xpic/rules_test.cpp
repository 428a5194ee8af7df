// Margins and constraints: which papers, sizes and records a rule's record holds for.
#include <gtest/gtest.h>

#include "tests/xpic/description.h"

namespace velmora {
namespace {

bool Contains(const PaperSet& set, int id) {
    return (set.bytes[id / 8] & 0x80 >> (id % 8)) != 0;
}

std::vector<int> IdsOf(const PaperSet& set) {
    std::vector<int> ids;
    for (int id = 0; id < 256; ++id) {
        if (Contains(set, id)) {
            ids.push_back(id);
        }
    }
    return ids;
}

constexpr std::string_view kPapers = R"({
    "pdl": "pcl5",
    "customSizes": {"minWidthMm": 90, "maxWidthMm": 4000, "minLengthMm": 140, "maxLengthMm": 1200},
    "papers": ["A4", "Letter", "B6JIS",
               {"name": "Card", "pclSizeCode": -1, "widthMm": 76.2, "lengthMm": 127},
               {"name": "Long", "id": 600, "widthMm": 210, "lengthMm": 900}],)";

TEST(Margins, PaperSetsBitByBit) {
    const Description file(std::string(kPapers) + R"("margins": [
        {"papers": ["A4", "B6JIS"], "orientations": ["landscape"], "leftMm": 4.2, "topMm": -0.5, "rightMm": 0, "bottomMm": 1},
        {"papers": ["Letter"], "unitsPerInch": 1200, "left": 200, "top": -1, "right": 32767, "bottom": -32768},
        {"papers": ["custom"], "widthMm": [100, 200.5], "allMm": 5, "bottomMm": 6}]})");
    const auto margins = file.Table(offsetof(DeviceModel, marginTable), &MarginRecord::mark);
    ASSERT_EQ(margins.size(), 3u);
    EXPECT_EQ(IdsOf(margins[0].papers), (std::vector<int>{9, 88}));
    EXPECT_EQ(+margins[0].papers.bytes[1], 0x40);
    EXPECT_EQ(+margins[0].papers.bytes[11], 0x80);
    EXPECT_EQ(+margins[0].orientationMask, 2);
    EXPECT_EQ(+margins[0].unit, 254) << "0.1 mm";
    EXPECT_EQ(+margins[0].leftMargin, 42);
    EXPECT_EQ(+margins[0].topMargin, -5);
    EXPECT_EQ(+margins[0].rightMargin, 0);
    EXPECT_EQ(+margins[0].bottomMargin, 10);
    EXPECT_EQ(+margins[0].maxWidth, 0) << "no sizes without custom papers";
    EXPECT_EQ(+margins[1].orientationMask, 3);
    EXPECT_EQ(+margins[1].unit, 1200);
    EXPECT_EQ(+margins[1].topMargin, -1);
    EXPECT_EQ(+margins[1].bottomMargin, -32768);
    EXPECT_EQ(IdsOf(margins[2].papers), (std::vector<int>{0}));
    EXPECT_EQ(+margins[2].papers.bytes[0], 0x80);
    EXPECT_EQ(+margins[2].minWidth, 1000);
    EXPECT_EQ(+margins[2].maxWidth, 2005);
    EXPECT_EQ(+margins[2].minLength, 1400) << "the model's own limits";
    EXPECT_EQ(+margins[2].maxLength, 12000);
    EXPECT_EQ(+margins[2].leftMargin, 50);
    EXPECT_EQ(+margins[2].bottomMargin, 60);
}

TEST(Margins, PapersBeyondTheSetAreFoundByTheirSize) {
    const Description file(
        std::string(kPapers) +
        R"("margins": [{"papers": ["Card"], "allMm": 3}, {"allMm": 5}, {"papers": ["Long"], "allMm": 9}]})");
    const auto margins = file.Table(offsetof(DeviceModel, marginTable), &MarginRecord::mark);
    ASSERT_EQ(margins.size(), 4u) << "Long is among the custom sizes of all papers, Card is smaller";
    EXPECT_EQ(IdsOf(margins[0].papers), (std::vector<int>{0}));
    EXPECT_EQ(+margins[0].minWidth, 762);
    EXPECT_EQ(+margins[0].maxWidth, 762);
    EXPECT_EQ(+margins[0].minLength, 1270);
    EXPECT_EQ(+margins[0].maxLength, 1270);
    EXPECT_EQ(IdsOf(margins[1].papers), (std::vector<int>{0, 1, 9, 88})) << "all papers, custom ones with them";
    EXPECT_EQ(+margins[1].minWidth, 900);
    EXPECT_EQ(+margins[1].maxWidth, 32767) << "a margin record can't say 4000 mm";
    EXPECT_EQ(+margins[2].maxWidth, 762);
    EXPECT_EQ(+margins[2].maxLength, 1270);
    EXPECT_EQ(+margins[3].minLength, 9000);
    EXPECT_EQ(+margins[3].leftMargin, 90);

    const Description noCustom(R"({"pdl": "xps", "papers": ["A4"], "margins": [{"papers": "all", "allMm": 5}]})");
    EXPECT_EQ(IdsOf(noCustom.Table(offsetof(DeviceModel, marginTable), &MarginRecord::mark).at(0).papers),
              (std::vector<int>{9}));
}

constexpr std::string_view kRecords = R"({
    "pdl": "pcl6", "papers": ["A4", {"name": "Long", "id": 600, "widthMm": 210, "lengthMm": 3000}],
    "trayOptions": {"third": 31},
    "trays": [{"name": "Auto", "bin": 263}, {"name": "1", "bin": 257}, {"name": "2", "bin": 258, "needs": ["secondTray"]},
              {"name": "3", "bin": 259, "needs": ["third"]}],
    "media": [{"name": "Plain"}, {"name": "Thick"}, {"name": "Film"}],
    "extraKeywords": [{"name": "Std"}, {"name": "Up", "jobValue": "UP"}],
    "deviceOptions": {"punch": 5},)";

TEST(Constraints, MasksFindTheNamedRecordsAndNoOthers) {
    // With "A4" each constraint is one record.
    const Description file(std::string(kRecords) + R"("constraints": [
        {"papers": ["A4"], "trays": ["2", "3"], "message": "by what they need"},
        {"papers": ["A4"], "trays": ["1"], "media": ["Film"]},
        {"papers": ["A4"], "trays": ["1", "2"], "media": ["Plain", "Thick", "Film"], "extraKeywords": ["Up"]},
        {"papers": ["A4"], "duplex": true, "options": ["stapler", "punch"]}]})");
    const auto constraints = file.Table(offsetof(DeviceModel, constraintTable), &ConstraintRecord::mark);
    const auto trays = file.Table(offsetof(DeviceModel, binTable), &BinRecord::optionMask);
    const auto media = file.Table(offsetof(DeviceModel, mediaTable), &MediaRecord::mark);
    const auto extra = file.Table(offsetof(DeviceModel, extraKeywordTable), &ExtraKeywordRecord::optionMask);
    ASSERT_EQ(constraints.size(), 4u);
    ASSERT_EQ(trays.size(), 4u);
    const auto hits = [](const auto& records, auto mark, uint32_t mask) {
        std::string hit;
        for (const auto& record : records) {
            hit += (FieldOf(record, mark) & mask) != 0 ? 'x' : '-';
        }
        return hit;
    };
    EXPECT_EQ(hits(trays, &BinRecord::optionMask, constraints[0].binMask), "--xx");
    EXPECT_EQ(hits(trays, &BinRecord::optionMask, constraints[1].binMask), "-x--");
    EXPECT_EQ(hits(trays, &BinRecord::optionMask, constraints[2].binMask), "-xx-");
    EXPECT_EQ(+constraints[3].binMask, 0u);
    EXPECT_EQ(+constraints[0].binMask, 0x80000004u) << "what the trays need tells them apart already";
    EXPECT_EQ(hits(media, &MediaRecord::mark, constraints[1].mediaMask), "--x");
    EXPECT_EQ(hits(media, &MediaRecord::mark, constraints[2].mediaMask), "xxx");
    EXPECT_EQ(hits(extra, &ExtraKeywordRecord::optionMask, constraints[2].extraKeywordMask), "-x");
    EXPECT_EQ(+constraints[3].flags, 1u | 0x10u | 0x20u);
    EXPECT_EQ(+constraints[0].flags, 0u);
    EXPECT_EQ(file.LocalizedString(kEnglish, constraints[0].messageRef), "by what they need");
    EXPECT_EQ(+constraints[1].messageRef, 0);
    // Bits that tell trays apart must not make one available.
    EXPECT_EQ(hits(trays, &BinRecord::optionMask, file.Device().defaultOptionMask), "xx--");
}

TEST(Constraints, PapersAndSizes) {
    const Description file(std::string(kRecords) + R"("constraints": [
        {"duplex": true},
        {"papers": ["A4", "custom", "Long"], "widthMm": [0, 6553.5], "lengthMm": [500, 500]},
        {"papers": ["custom"]},
        {"lengthMm": [500, 600]}]})");
    const struct {
        std::vector<int> papers;
        int maxWidth, minLength, maxLength;
        const char* why;
    } kExpected[] = {
        {{}, 65535, 0, 65535, "any paper, custom ones of any size"},
        {{0}, 2100, 30000, 30000, "and Long, which is found by its size only"},
        {{0, 9}, 65535, 5000, 5000, "the named ones"},
        {{0}, 2100, 30000, 30000, "Long, by its size"},
        {{0}, 65535, 0, 65535, "any size, as the model has no limits"},
        {{}, 65535, 5000, 6000, "any paper, where it is found by its size of these sizes"},
    };
    const auto constraints = file.Table(offsetof(DeviceModel, constraintTable), &ConstraintRecord::mark);
    ASSERT_EQ(constraints.size(), std::size(kExpected));
    for (size_t i = 0; i < constraints.size(); ++i) {
        SCOPED_TRACE(kExpected[i].why);
        EXPECT_EQ(IdsOf(constraints[i].papers), kExpected[i].papers);
        EXPECT_EQ(+constraints[i].maxWidth, kExpected[i].maxWidth);
        EXPECT_EQ(+constraints[i].minLength, kExpected[i].minLength);
        EXPECT_EQ(+constraints[i].maxLength, kExpected[i].maxLength);
    }
}

}  // namespace
}  // namespace velmora
