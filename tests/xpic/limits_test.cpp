// What the format can just hold compiles; one more is told with the number that was exceeded.
#include <gtest/gtest.h>

#include <functional>

#include "tests/xpic/description.h"
#include "tests/xpic/schema_faults.h"

namespace velmora {
namespace {

std::string Repeat(size_t count, const std::function<std::string(size_t)>& element) {
    std::string list;
    for (size_t i = 0; i < count; ++i) {
        list += (i == 0 ? "" : ",") + element(i);
    }
    return list;
}

std::string Model(const std::string& members) {
    return R"({"pdl": "pcl6", )" + members + "}";
}

std::string MemoryOf(size_t sizes) {
    return Model("\"memory\": {\"sizes\": [" +
                 Repeat(sizes, [](size_t) { return std::string(R"({"key": 1, "megabytes": 2})"); }) + "]}");
}

TEST(Limits, DeviceBlock) {
    // 372 bytes of record, then 4 a pair and 4 for the end.
    constexpr size_t kMost = (65532 - 372) / 4 - 1;
    EXPECT_EQ(Description(MemoryOf(kMost)).BlockSize(), 65532u);
    EXPECT_EQ(
        FaultsOf(MemoryOf(kMost + 1)),
        "model.json:1:17: $.memory: found a device block of 65536 bytes, 65160 of them here, expected at most 65535 "
        "bytes of records and lists\n");
}

TEST(Limits, DisplayTextsAreFoundByU16Offsets) {
    const auto trays = [](size_t count, std::string_view languages) {
        return Model("\"languages\": [" + std::string(languages) + "], \"trays\": [" +
                     Repeat(count,
                            [](size_t i) {
                                std::string name = std::to_string(i);
                                name.insert(0, 43 - name.size(), '-');
                                return "{\"name\": \"" + name + "\", \"bin\": 257}";
                            }) +
                     "]");
    };
    // One byte for the empty text, then 44 a text: text 1489 begins at 65517, text 1490 would at 65561.
    const Description full(trays(1490, "\"en\""));
    EXPECT_EQ(full.LocalizedString(kEnglish, 1490), std::string(39, '-') + "1489");
    EXPECT_EQ(
        FaultsOf(trays(1491, "\"en\"")),
        "model.json:1:1: $: found 65561 bytes of display texts before the last of them, expected at most 65535\n");
    EXPECT_EQ(Description(trays(1490, "\"en\", \"de\", \"fr\"")).LocalizedString(kFrench, 1490),
              std::string(39, '-') + "1489")
        << "the same text in several languages lies in the file once";
}

TEST(Limits, CommandsAndFeatures) {
    const auto commands = [](size_t size, size_t count) {
        return Model(
            "\"commands\": {" +
            Repeat(count,
                   [size](size_t i) { return "\"" + std::to_string(i) + "\": \"" + std::string(size, 'x') + "\""; }) +
            "}");
    };
    EXPECT_EQ(Description(commands(8191, 9)).Header().blobSize, 9u * 8191);
    EXPECT_EQ(FaultsOf(commands(8192, 1)),
              "model.json:1:30: $.commands.0: found a command of 8192 bytes, expected at most 8191 bytes\n");
    EXPECT_NE(FaultsOf(commands(8191, 10)).find("found 73719 bytes of commands before it, expected at most 65535"),
              std::string::npos);
    const auto features = [](size_t count) {
        return Model("\"features\": [" +
                     Repeat(count, [](size_t i) { return "{\"name\": \"" + std::to_string(i) + "\"}"; }) + "]");
    };
    EXPECT_EQ(FaultsOf(features(32)), "");
    EXPECT_EQ(FaultsOf(features(33)), "model.json:1:17: $.features: found 33 features, expected at most 32\n");
    EXPECT_EQ(SchemaFaultsOfTexts("model.schema.json", {features(32), features(33)}),
              (PlacesByFile{{"1", {"$.features"}}}));
}

TEST(Limits, ConstraintsTellAsManyRecordsApartAsAMaskHasBits) {
    const auto media = [](size_t count) {
        const auto name = [](size_t i) { return "\"" + std::to_string(i) + "\""; };
        return Model("\"media\": [" + Repeat(count, [&](size_t i) { return "{\"name\": " + name(i) + "}"; }) +
                     "], \"constraints\": [" +
                     Repeat(count, [&](size_t i) { return "{\"media\": [" + name(i) + "]}"; }) + "]");
    };
    EXPECT_EQ(FaultsOf(media(31)), "");
    const std::string faults = FaultsOf(media(32));
    EXPECT_NE(faults.find("$.constraints[31].media: found more records to tell apart than a mask has free bits"),
              std::string::npos)
        << faults;
    // Media that no constraint names don't need bits.
    const std::string many =
        Model("\"media\": [" + Repeat(200, [](size_t i) { return "{\"name\": \"" + std::to_string(i) + "\"}"; }) +
              "], \"constraints\": [{\"media\": [\"7\"]}]");
    const Description file(many);
    const auto records = file.Table(offsetof(DeviceModel, mediaTable), &MediaRecord::mark);
    ASSERT_EQ(records.size(), 200u);
    EXPECT_EQ(+records[7].mark, 0x80000001u);
    EXPECT_EQ(+records[8].mark, 1u);
}

}  // namespace
}  // namespace velmora
