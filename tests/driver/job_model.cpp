#include "tests/driver/job_model.h"

#include <cstring>
#include <string>
#include <vector>

namespace driver_test {

using namespace velmora;  // NOLINT(google-build-using-namespace): the records of the format

namespace {

void AddFeatures(DescriptionBuilder* builder, uint16_t pdlType) {
    constexpr uint32_t kMasks[] = {0, 1u << 4, 8, 0};
    constexpr int16_t kRecordsPerRun = 4;  // three options and the run's end
    std::vector<FeatureRecord> features;
    std::string options;
    for (int16_t i = 0; i < 4; ++i) {
        const char letter = static_cast<char>('A' + i);
        features.push_back(
            {1, builder->AddText(std::string("F") + letter), kMasks[i], static_cast<int16_t>(i * kRecordsPerRun), 0});
        for (int value = 0; value < kRecordsPerRun; ++value) {
            OptionRecord option = {};
            option.nameRef = value < 3 ? 1 : 0;
            option.jobValueRef = value < 2 ? builder->AddText(letter + std::to_string(value)) : uint16_t{0};
            options.append(reinterpret_cast<const char*>(&option), sizeof(option));
            options.resize(options.size() + OptionStride(pdlType) - sizeof(option));
        }
    }
    builder->Bytes(offsetof(DeviceModel, optionTable), options);
    builder->Table(offsetof(DeviceModel, featureTable), features);
}

void AddColorFeatures(DescriptionBuilder* builder) {
    struct Group {
        size_t slot;
        char letter;
        int features;
    };
    constexpr Group kGroups[] = {{offsetof(DeviceModel, textColorFeatures), 't', 3},
                                 {offsetof(DeviceModel, imageColorFeatures), 'i', 4},
                                 {offsetof(DeviceModel, graphicsColorFeatures), 'g', 1},
                                 {offsetof(DeviceModel, generalColorFeatures), 'a', 2}};
    std::vector<ColorValueRecord> values;
    for (const Group& group : kGroups) {
        std::vector<ColorFeatureRecord> features;
        for (int i = 0; i < group.features; ++i) {
            features.push_back({1, static_cast<int16_t>(values.size())});
            for (const char value : {'0', '1'}) {
                values.push_back({1, builder->AddText(group.letter + std::to_string(i) + value), 0, 0, 0});
            }
            values.push_back({});
        }
        builder->Table(group.slot, features);
    }
    builder->Table(offsetof(DeviceModel, colorOptionValues), values);
}

}  // namespace

DescriptionBuilder JobModel(uint16_t pdlType, uint16_t colorCapability) {
    DescriptionBuilder builder = SmallModel(pdlType, colorCapability);
    builder.AddText("E1");
    builder.AddText("E2");
    builder.fields.jobTextRef = builder.AddText("EXTRA");
    builder.Table(offsetof(DeviceModel, extraKeywordTable), std::vector<ExtraKeywordRecord>{{1, kExtraValue, 1, 0}});
    builder.Table(offsetof(DeviceModel, mediaTable),
                  std::vector<MediaRecord>{{1, 0, builder.AddText("M0\r\n"), 0, 0, 257, {}},
                                           {2, 0, builder.AddText("M1\r\n"), 0, 0, 258, {}}});
    builder.Table(offsetof(DeviceModel, resolutionTable),
                  std::vector<ResolutionRecord>{{1, 600, builder.AddText("R0\r\n"), 1, 600, 600, 0, 0, 0, {}},
                                                {1, 1200, builder.AddText("R1\r\n"), 1, 1200, 600, 0, 0, 0, {}},
                                                {1, 300, 0, 1, 300, 300, 0, 0, 0, {}}});
    AddFeatures(&builder, pdlType);
    AddColorFeatures(&builder);
    return builder;
}

}  // namespace driver_test
