#include "driver/devdesc/model_tables.h"

#include <cstring>

#include "driver/devdesc/description_file.h"
#include "driver/devdesc/description_format.h"
#include "tests/driver/description_builder.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

class ModelTables : public MachineTest {
  protected:
    static HeapOwner<DeviceModel> Load(const DescriptionBuilder& builder) {
        WriteDriveFile(u"C:\\test.xpi", builder.Build());
        const OwnedFile file(CreateFileW(TEXT("C:\\test.xpi"), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                         FILE_ATTRIBUTE_NORMAL, nullptr));
        return LoadDeviceModel(file.Get());
    }
};

TEST_F(ModelTables, RecordsAreCountedAndFound) {
    const HeapOwner<DeviceModel> model = Load(SmallModel(kPdlPcl6));
    EXPECT_EQ(CountRecords(model->mediaTable), 2u);
    EXPECT_EQ(CountRecords(model->colorModeTable), 0u);
    EXPECT_EQ(RecordAt(model->mediaTable, 1), model->mediaTable + 1);
    EXPECT_EQ(RecordAt(model->mediaTable, 2), nullptr);
    EXPECT_EQ(RecordAt(model->mediaTable, SIZE_MAX), nullptr);
    EXPECT_EQ(RecordAt(model->colorModeTable, 0), nullptr);
}

// Options of image models are 8 bytes apart, those of all others 6.
TEST_F(ModelTables, OptionsOfAFeature) {
    for (const uint16_t pdlType : {kPdlPcl6, kPdlPostScript, kPdlImage, kPdlXps, kPdlOwn}) {
        SCOPED_TRACE(pdlType);
        const HeapOwner<DeviceModel> model = Load(SmallModel(pdlType));
        EXPECT_EQ(CountOptions(*model, model->featureTable[0]), 2u);
        EXPECT_EQ(CountOptions(*model, model->featureTable[1]), 0u);
        EXPECT_TRUE(EndsList(*OptionAt(*model, 2)));
        EXPECT_EQ(OptionAt(*model, -1), nullptr);
        EXPECT_EQ(OptionAt(*model, 32767), nullptr);
        EXPECT_EQ(OptionAt(*model, INT32_MAX), nullptr);
    }
    const HeapOwner<DeviceModel> empty = Load(DescriptionBuilder());
    EXPECT_EQ(OptionAt(*empty, 0), nullptr);
    EXPECT_EQ(ColorValueAt(*empty, 0), nullptr);
    EXPECT_EQ(PresetSettingAt(*empty, 0), nullptr);
}

TEST_F(ModelTables, OptionsThatRunOutOfTheBlock) {
    DescriptionBuilder builder;
    builder.Bytes(offsetof(DeviceModel, optionTable), std::string(30, '\xFF'));
    const HeapOwner<DeviceModel> model = Load(builder);
    FeatureRecord feature = {};
    EXPECT_EQ(CountOptions(*model, feature), 5u);
    feature.firstOption = 4;
    EXPECT_EQ(CountOptions(*model, feature), 1u);
    feature.firstOption = 32767;
    EXPECT_EQ(CountOptions(*model, feature), 0u);
    feature.firstOption = -2;
    EXPECT_EQ(CountOptions(*model, feature), 0u);
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

TEST_F(ModelTables, MemoryByKey) {
    const HeapOwner<DeviceModel> model = Load(SmallModel(kPdlPcl6));
    EXPECT_EQ(LookupMemorySize(*model, 4), 128);
    EXPECT_EQ(LookupMemorySize(*model, 5), 256);
    EXPECT_EQ(LookupMemorySize(*model, 6), 64);  // the first pair's
    EXPECT_EQ(LookupMemorySize(*model, 0), 64);
    EXPECT_EQ(LookupMemorySize(*model, -65532), 64);
    EXPECT_EQ(LookupMemorySize(*Load(DescriptionBuilder()), 4), 0);
}

TEST_F(ModelTables, PatternBytes) {
    EXPECT_EQ(GetPatternDataSize(*Load(SmallModel(kPdlPcl5))), 32u * 8 * 8 + 32u * 16 * 16);
    EXPECT_EQ(GetPatternDataSize(*Load(DescriptionBuilder())), 0u);
}

// A block of nothing but ones, or of nothing but small offsets: every list still ends.
TEST_F(ModelTables, HostileBlocksEnd) {
    for (const int fill : {0xFF, 0x01, 0x08}) {
        DescriptionBuilder builder;
        memset(static_cast<void*>(&builder.fields), fill, sizeof(builder.fields));
        builder.fields.fontCount = 0;
        for (const size_t slot : kPointerSlots) {
            builder.SetSlot(slot, static_cast<uint32_t>(slot + static_cast<size_t>(fill) % 7));
        }
        const HeapOwner<DeviceModel> model = Load(builder);
        ASSERT_TRUE(model);
        size_t records = 0;
        for (const PaperRecord& record : RecordList(model->paperTable)) {
            records += 1 + static_cast<size_t>(record.paperId & 0);
        }
        EXPECT_LT(records, 32u);
        EXPECT_LT(CountRecords(model->binTable), 64u);
        EXPECT_LT(CountRecords(model->marginTable), 16u);
        EXPECT_LT(CountRecords(model->constraintTable), 16u);
        EXPECT_LT(CountRecords(model->extraListC), 32u);
        for (const FeatureRecord& feature : RecordList(model->featureTable)) {
            EXPECT_LT(CountOptions(*model, feature), 128u);
        }
    }
}

}  // namespace
}  // namespace velmora
