#include "driver/devdesc/model_tables.h"

#include <windows.h>

namespace velmora {
namespace {

// The record at `index` of a table whose records are `stride` bytes apart, or null where it doesn't lie whole in the
// model's block, whose bounds the process heap knows.
template <class Record>
const Record* RecordInBlock(const DeviceModel& model, const Record* table, int32_t index, size_t stride) {
    if (!table || index < 0) {
        return nullptr;
    }
    const auto* block = reinterpret_cast<const char*>(&model);
    const size_t size = HeapSize(GetProcessHeap(), 0, block);
    const size_t offset =
        static_cast<size_t>(reinterpret_cast<const char*>(table) - block) + static_cast<size_t>(index) * stride;
    if (size == static_cast<size_t>(-1) || offset > size || size - offset < sizeof(Record)) {
        return nullptr;
    }
    return reinterpret_cast<const Record*>(block + offset);
}

// Records from `first`, which may be null, to the one that ends the run. A run that begins in the block ends in it:
// what is allocated behind the file's bytes is 0.
template <class Record>
size_t RunLength(const Record* first, size_t stride) {
    const auto* place = reinterpret_cast<const char*>(first);
    size_t count = 0;
    for (; place && !EndsList(*reinterpret_cast<const Record*>(place)); place += stride) {
        ++count;
    }
    return count;
}

}  // namespace

const OptionRecord* OptionAt(const DeviceModel& model, int32_t index) {
    return RecordInBlock(model, model.optionTable, index, OptionStride(model.pdlType));
}

size_t CountOptions(const DeviceModel& model, const FeatureRecord& feature) {
    return RunLength(OptionAt(model, feature.firstOption), OptionStride(model.pdlType));
}

const ColorValueRecord* ColorValueAt(const DeviceModel& model, int32_t index) {
    return RecordInBlock(model, model.colorOptionValues, index, sizeof(ColorValueRecord));
}

size_t CountColorValues(const DeviceModel& model, const ColorFeatureRecord& feature) {
    return RunLength(ColorValueAt(model, feature.firstValue), sizeof(ColorValueRecord));
}

const PresetSettingRecord* PresetSettingAt(const DeviceModel& model, int32_t index) {
    return RecordInBlock(model, model.presetSettings, index, sizeof(PresetSettingRecord));
}

const ResolutionRecord* FindResolution(const DeviceModel& model, int16_t xDpi, int16_t yDpi) {
    for (const ResolutionRecord& resolution : RecordList(model.resolutionTable)) {
        if (IsResolution(resolution, xDpi, yDpi)) {
            return &resolution;
        }
    }
    return nullptr;
}

const ResolutionRecord* DefaultResolution(const DeviceModel& model) {
    const ResolutionRecord* named = model.defaultResolution >= 0
                                        ? RecordAt(model.resolutionTable, static_cast<size_t>(model.defaultResolution))
                                        : nullptr;
    return named ? named : RecordAt(model.resolutionTable, 0);
}

CustomLimits GetCustomLimits(const DeviceModel& model) {
    constexpr int kUnlimited = 32767;
    const auto most = [](uint16_t limit) { return limit != 0 ? int{limit} : kUnlimited; };
    return {model.customMinWidth, most(model.customMaxWidth), model.customMinLength, most(model.customMaxLength)};
}

uint16_t LookupMemorySize(const DeviceModel& model, int32_t key) {
    for (const MemoryRecord& record : RecordList(model.memoryTable)) {
        if (record.key == key) {
            return record.megabytes;
        }
    }
    const MemoryRecord* first = RecordAt(model.memoryTable, 0);
    return first ? first->megabytes : uint16_t{0};
}

uint32_t GetPatternDataSize(const DeviceModel& model) {
    uint32_t total = 0;
    for (const ResolutionRecord& record : RecordList(model.resolutionTable)) {
        total += static_cast<uint32_t>(PatternBlockSize(record));
    }
    return total;
}

}  // namespace velmora
