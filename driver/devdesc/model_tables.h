// Walking and indexing the tables of a device model. A description file is not trusted: every list ends inside the
// model's allocation, and an index that leads outside gives null.
#pragma once

#include <cstddef>
#include <cstdint>

#include "driver/devdesc/device_model.h"

namespace velmora {

// True for the record behind the last one of a list.
constexpr bool EndsList(const PaperRecord& record) {
    return record.nameRef == 0;
}
constexpr bool EndsList(const BinRecord& record) {
    return record.optionMask == 0;
}
constexpr bool EndsList(const ExtraKeywordRecord& record) {
    return record.optionMask == 0;
}
constexpr bool EndsList(const MediaRecord& record) {
    return record.mark == 0;
}
constexpr bool EndsList(const ResolutionRecord& record) {
    return record.mark == 0;
}
constexpr bool EndsList(const MarginRecord& record) {
    return record.mark == 0;
}
constexpr bool EndsList(const ConstraintRecord& record) {
    return record.mark == 0;
}
constexpr bool EndsList(const FeatureRecord& record) {
    return record.nameRef == 0;
}
constexpr bool EndsList(const OptionRecord& record) {
    return record.nameRef == 0;
}
constexpr bool EndsList(const ColorModeRecord& record) {
    return record.kind == 0;
}
constexpr bool EndsList(const ColorFeatureRecord& record) {
    return record.nameRef == 0;
}
constexpr bool EndsList(const ColorValueRecord& record) {
    return record.nameRef == 0;
}
constexpr bool EndsList(const PresetSettingRecord& record) {
    return record.group == 0;
}
constexpr bool EndsList(const KeywordRecord& record) {
    return record.mark == 0;
}
constexpr bool EndsList(const MemoryRecord& record) {
    return record.key == 0;
}

// The records of a list, for a range-based for. A null table has none.
template <class Record>
class RecordList {
  public:
    struct Sentinel {};
    class Iterator {
      public:
        explicit Iterator(const Record* record) : record_(record) {}
        const Record& operator*() const { return *record_; }
        Iterator& operator++() {
            ++record_;
            return *this;
        }
        bool operator!=(Sentinel) const { return record_ && !EndsList(*record_); }

      private:
        const Record* record_;
    };

    explicit RecordList(const Record* table) : table_(table) {}
    Iterator begin() const { return Iterator(table_); }
    Sentinel end() const { return {}; }

  private:
    const Record* table_;
};

// Records of a list; 0 for a null table.
template <class Record>
size_t CountRecords(const Record* table) {
    size_t count = 0;
    while (table && !EndsList(table[count])) {
        ++count;
    }
    return count;
}

// The record at `index` of a list, or null where the list ends before it.
template <class Record>
const Record* RecordAt(const Record* table, size_t index) {
    for (size_t i = 0; table && !EndsList(table[i]); ++i) {
        if (i == index) {
            return &table[i];
        }
    }
    return nullptr;
}

// The option record at `index` of the model's optionTable, or null where it doesn't lie in the model. The record may be
// one that ends a feature's run. `model` comes from LoadDeviceModel.
const OptionRecord* OptionAt(const DeviceModel& model, int32_t index);

// Options of a feature: from its first one to the end of the run.
size_t CountOptions(const DeviceModel& model, const FeatureRecord& feature);

// The value record at `index` of colorOptionValues and the selection at `index` of presetSettings, as OptionAt.
const ColorValueRecord* ColorValueAt(const DeviceModel& model, int32_t index);
const PresetSettingRecord* PresetSettingAt(const DeviceModel& model, int32_t index);

// Values of a colour feature, likewise.
size_t CountColorValues(const DeviceModel& model, const ColorFeatureRecord& feature);

// True for the resolution with these numbers of dots per inch, as a device mode holds them.
constexpr bool IsResolution(const ResolutionRecord& resolution, int16_t xDpi, int16_t yDpi) {
    return static_cast<int16_t>(resolution.xDpi) == xDpi && static_cast<int16_t>(resolution.yDpi) == yDpi;
}

// The model's first one with them; null where it has none.
const ResolutionRecord* FindResolution(const DeviceModel& model, int16_t xDpi, int16_t yDpi);

// The model's default resolution, or its first where that index leads nowhere; null where it has no resolutions.
const ResolutionRecord* DefaultResolution(const DeviceModel& model);

// Within what custom sizes, and the dimensions of a device mode, have to be; 0.1 mm.
struct CustomLimits {
    int minWidth;
    int maxWidth;  // 32767 where the model sets none
    int minLength;
    int maxLength;
};
CustomLimits GetCustomLimits(const DeviceModel& model);

// Papers that sets can name are those below kPaperSetIds; kCustomInSet stands for all others.
inline constexpr int kPaperSetIds = 256;
inline constexpr int kCustomInSet = 0;

// True where `paperId`, 0 to 255, is in the set.
constexpr bool ContainsPaper(const PaperSet& papers, int paperId) {
    return (papers.bytes[paperId / 8] & (0x80 >> (paperId % 8))) != 0;
}

// Megabytes of the first pair with this key, else those of the first pair; 0 without a memory table.
uint16_t LookupMemorySize(const DeviceModel& model, int32_t key);

// Bytes of a resolution's pattern block, and of those of all resolutions.
constexpr size_t PatternBlockSize(const ResolutionRecord& resolution) {
    const auto side =
        static_cast<size_t>(resolution.patternSize < 0 ? -resolution.patternSize : resolution.patternSize);
    return 32 * side * side;
}
uint32_t GetPatternDataSize(const DeviceModel& model);

}  // namespace velmora
