#include "driver/devdesc/model_tables.h"

#include "driver/devdesc/description_format.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

using ModelTables = MachineTest;

TEST_F(ModelTables, RecordsAreCountedAndFound) {
    model_ = Load(SmallModel(kPdlPcl6).Build());
    EXPECT_EQ(CountRecords(model_->mediaTable), 2u);
    EXPECT_EQ(CountRecords(model_->colorModeTable), 0u);
    EXPECT_EQ(RecordAt(model_->mediaTable, 1), model_->mediaTable + 1);
    EXPECT_EQ(RecordAt(model_->mediaTable, 2), nullptr);
    EXPECT_EQ(RecordAt(model_->mediaTable, SIZE_MAX), nullptr);
    EXPECT_EQ(RecordAt(model_->colorModeTable, 0), nullptr);
}

// Options of image models are 8 bytes apart, those of all others 6.
TEST_F(ModelTables, OptionsOfAFeature) {
    for (const uint16_t pdlType : {kPdlPcl6, kPdlPostScript, kPdlImage, kPdlXps, kPdlOwn}) {
        SCOPED_TRACE(pdlType);
        model_ = Load(SmallModel(pdlType).Build());
        EXPECT_EQ(CountOptions(*model_, model_->featureTable[0]), 2u);
        EXPECT_EQ(CountOptions(*model_, model_->featureTable[1]), 0u);
        EXPECT_TRUE(EndsList(*OptionAt(*model_, 2)));
        for (const int32_t none : {-1, 32767, INT32_MAX}) {
            EXPECT_EQ(OptionAt(*model_, none), nullptr) << none;
        }
    }
    model_ = Load(DescriptionBuilder().Build());
    EXPECT_EQ(OptionAt(*model_, 0), nullptr);
    EXPECT_EQ(ColorValueAt(*model_, 0), nullptr);
    EXPECT_EQ(PresetSettingAt(*model_, 0), nullptr);
    // Options that run out of the block.
    DescriptionBuilder builder;
    builder.Bytes(offsetof(DeviceModel, optionTable), std::string(30, '\xFF'));
    model_ = Load(builder.Build());
    FeatureRecord feature = {};
    for (const auto& [first, count] : {std::pair(0, 5u), {4, 1u}, {32767, 0u}, {-2, 0u}}) {
        feature.firstOption = static_cast<int16_t>(first);
        EXPECT_EQ(CountOptions(*model_, feature), count) << first;
    }
}

TEST(PaperSets, BitsCountFromTheLeft) {
    PaperSet set = {};
    set.bytes[0] = 0x80;
    set.bytes[1] = 0x40;
    set.bytes[31] = 0x01;
    for (int id = 0; id < 256; ++id) {
        EXPECT_EQ(ContainsPaper(set, id), id == 0 || id == 9 || id == 255) << id;
    }
}

TEST_F(ModelTables, MemoryAndPatterns) {
    model_ = Load(SmallModel(kPdlPcl5).Build());
    for (const auto& [key, size] : {std::pair(4, 128), {5, 256}, {6, 64}, {-65532, 64}}) {  // or the first pair's
        EXPECT_EQ(LookupMemorySize(*model_, key), size) << key;
    }
    EXPECT_EQ(GetPatternDataSize(*model_), 32u * 8 * 8 + 32u * 16 * 16);
    model_ = Load(DescriptionBuilder().Build());
    EXPECT_EQ(LookupMemorySize(*model_, 4), 0);
    EXPECT_EQ(GetPatternDataSize(*model_), 0u);
}

// Records and tables of nothing but one byte, without an end: every list still ends.
TEST_F(ModelTables, HostileBlocksEnd) {
    for (const int fill : {0xFF, 0x01, 0x08}) {
        DescriptionBuilder builder;
        memset(static_cast<void*>(&builder.fields), fill, sizeof(builder.fields));
        builder.fields.fontCount = 0;
        const uint32_t tables = builder.Bytes(kPointerSlots[0], std::string(400, static_cast<char>(fill)));
        for (const size_t slot : kPointerSlots) {
            builder.SetSlot(slot, tables + static_cast<uint32_t>(slot));
        }
        model_ = Load(builder.Build());
        ASSERT_TRUE(model_);
        EXPECT_LT(CountRecords(model_->paperTable), 32u);
        EXPECT_LT(CountRecords(model_->binTable), 64u);
        EXPECT_LT(CountRecords(model_->constraintTable), 16u);
        EXPECT_LT(CountRecords(model_->extraListC), 32u);
        for (const FeatureRecord& feature : RecordList(model_->featureTable)) {
            EXPECT_LT(CountOptions(*model_, feature), 128u);
        }
    }
}

}  // namespace
}  // namespace velmora
