#include "tools/xpic/model_fields.h"

#include "driver/devdesc/device_model.h"

namespace velmora {
namespace {

#define DEVICE_FIELD(member) offsetof(DeviceModel, member), sizeof(DeviceModel::member)

constexpr Range kAnyU16 = {0, UINT16_MAX};
constexpr Range kAnyU32 = {0, UINT32_MAX};
constexpr Range kCountI16 = {0, INT16_MAX};
constexpr Range kAnyI16 = {INT16_MIN, INT16_MAX};
constexpr Range kOwnPdls = {kPdlOwn + 1, UINT16_MAX};
constexpr Range kDataModeBit = {kJobSetsDataMode, kJobSetsDataMode};

const ScalarField kModelTable[] = {
    {"pdl", ScalarKind::kWord, DEVICE_FIELD(pdlType), kOwnPdls, {}, kPdlWords},
    {"modelCode", ScalarKind::kInteger, DEVICE_FIELD(modelCode), kAnyU16, 0, {}},
    {"color", ScalarKind::kWord, DEVICE_FIELD(colorCapability), kAnyU16, kColorNone, kColorWords},
    {"pagesPerMinute", ScalarKind::kInteger, DEVICE_FIELD(pagesPerMinute), kCountI16, 0, {}},
    {"defaultFontSize", ScalarKind::kInteger, DEVICE_FIELD(defaultFontSize), kCountI16, 10, {}},
    {"imageMode", ScalarKind::kWord, DEVICE_FIELD(imageModeDefault), kAnyU32, 0, kImageModeWords},
    {"defaultIcmIntent", ScalarKind::kWord, DEVICE_FIELD(defaultIcmIntent), kAnyU32, 0, kIcmIntentWords},
    {"icmIntents", ScalarKind::kWord, DEVICE_FIELD(icmIntentFlags), kAnyU16, 0, kIcmOfferWords},
    {"jobName", ScalarKind::kWord, DEVICE_FIELD(jobNameFlags), {}, 0, kJobNameWords},
    {"jobSetsDataMode", ScalarKind::kFlag, DEVICE_FIELD(descriptionFlags), kDataModeBit, 0, {}},
    {"jobDescription", ScalarKind::kWord, DEVICE_FIELD(descriptionFlags), {}, 0, kDescriptionWords},
};

const ScalarField kCustomSizeTable[] = {
    {"minWidthMm", ScalarKind::kMillimetres, DEVICE_FIELD(customMinWidth), kCountI16, {}, {}},
    {"maxWidthMm", ScalarKind::kMillimetres, DEVICE_FIELD(customMaxWidth), kAnyU16, {}, {}},
    {"minLengthMm", ScalarKind::kMillimetres, DEVICE_FIELD(customMinLength), kCountI16, {}, {}},
    {"maxLengthMm", ScalarKind::kMillimetres, DEVICE_FIELD(customMaxLength), kAnyU16, {}, {}},
};

const ScalarField kExtraOptionTable[] = {
    {"memoryMb", ScalarKind::kInteger, DEVICE_FIELD(extraMemory), kCountI16, 0, {}},
};

const ScalarField kMemoryTable[] = {
    {"keyBase", ScalarKind::kInteger, DEVICE_FIELD(memoryKeyBase), kAnyI16, 0, {}},
    {"keyStep", ScalarKind::kInteger, DEVICE_FIELD(memoryKeyStep), kAnyI16, 0, {}},
};

#undef DEVICE_FIELD

constexpr uint8_t kHasDuplexUnit = 1;

// The bits of its bytes that a field fills.
uint64_t BitsOf(const ScalarField& field) {
    if (field.kind == ScalarKind::kFlag) {
        return static_cast<uint64_t>(field.range->max);
    }
    if (field.range) {
        return ~uint64_t{0};
    }
    uint64_t bits = 0;
    for (const Word& word : field.words) {
        bits |= static_cast<uint64_t>(word.value);
    }
    return bits;
}

}  // namespace

const std::span<const ScalarField> kModelFields = kModelTable;
const std::span<const ScalarField> kCustomSizeFields = kCustomSizeTable;
const std::span<const ScalarField> kExtraOptionFields = kExtraOptionTable;
const std::span<const ScalarField> kMemoryFields = kMemoryTable;

void AddScalar(DeviceModel& device, const ScalarField& field, int64_t value) {
    auto* bytes = reinterpret_cast<unsigned char*>(&device) + field.offset;
    for (size_t i = 0; i < field.width; ++i) {
        bytes[i] |= static_cast<unsigned char>(value >> (8 * i));
    }
}

int64_t ScalarOf(const DeviceModel& device, const ScalarField& field) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(&device) + field.offset;
    uint64_t value = 0;
    for (size_t i = 0; i < field.width; ++i) {
        value |= uint64_t{bytes[i]} << (8 * i);
    }
    const bool isSigned = field.range && field.range->min < 0;
    const uint64_t sign = uint64_t{1} << (8 * field.width - 1);
    if (isSigned && (value & sign) != 0) {
        value -= sign * 2;
    }
    return static_cast<int64_t>(value & BitsOf(field));
}

void SetDuplexUnit(DeviceModel& device) {
    device.jobNameFlags |= kHasDuplexUnit;
    device.duplexFlagsA |= kHasDuplexUnit;
    device.duplexFlagsB |= kHasDuplexUnit;
}

bool HasDuplexUnit(const DeviceModel& device) {
    return (device.jobNameFlags & kHasDuplexUnit) != 0;
}

void SetDefaults(ModelSource& model) {
    constexpr uint16_t kAutomaticBin = 7;  // DMBIN_AUTO (wingdi.h)
    DeviceModel& device = model.device;
    device.defaultBin = model.trays.empty() ? kAutomaticBin : model.trays.front().binId;
    device.defaultMedia = model.media.empty() ? 0 : 1;
    device.defaultResolution = model.resolutions.size() > 1 ? 1 : 0;
    device.defaultColorMode = 0;
}

}  // namespace velmora
