#include "tools/xpic/block_builder.h"

#include <algorithm>
#include <cstring>

#include "driver/devdesc/description_format.h"

namespace velmora {
namespace {

constexpr size_t kLargestBlock = UINT16_MAX;
constexpr size_t kAlignment = 4;

void Align(Bytes& bytes) {
    bytes.resize((bytes.size() + kAlignment - 1) / kAlignment * kAlignment);
}

class BlockBuilder {
  public:
    BlockBuilder(const ModelSource& model, TextPools& pools, LimitFaults& faults)
        : model_(model), pools_(pools), faults_(faults), device_(model.device), block_(sizeof(DeviceModel)) {}

    Bytes Build() {
        device_.pageLabelRef = String(model_.pageLabel);
        device_.linkRef = String(model_.link);
        device_.jobTextRef = pools_.texts.Add(model_.extraKeywordJobKey);
        device_.extraTextRef = pools_.texts.Add(model_.extraText);
        device_.oemNamespaceRef = pools_.names.Add(model_.namespaceUri);
        device_.oemPrefixRef = pools_.names.Add(model_.namespacePrefix);
        AddPapers();
        AddTrays();
        AddExtraKeywords();
        AddMedia();
        AddResolutions();
        AddTable(offsetof(DeviceModel, memoryTable), "memory", model_.memory);
        AddFonts();
        AddRules();
        AddFeatures();
        AddColorFeatures();
        AddColorModes();
        AddKeywordLists();
        Align(block_);
        if (block_.size() > kLargestBlock) {
            const auto largest = std::max_element(tables_.begin(), tables_.end(),
                                                  [](const auto& a, const auto& b) { return a.bytes < b.bytes; });
            faults_.push_back({"a device block of " + std::to_string(block_.size()) + " bytes, " +
                                   std::to_string(largest->bytes) + " of them here",
                               "at most " + std::to_string(kLargestBlock) + " bytes of records and lists",
                               MemberPath(std::string(kRootPath), largest->key)});
        }
        // The slots were filled in the block's own copy.
        DeviceModel slots;
        std::memcpy(&slots, block_.data(), sizeof slots);
        std::memcpy(block_.data(), &device_, sizeof device_);
        for (size_t slot : kPointerSlots) {
            std::memcpy(block_.data() + slot, reinterpret_cast<const std::byte*>(&slots) + slot, sizeof(uint64_t));
        }
        return std::move(block_);
    }

  private:
    // Localised references are signed in some records and not in others; the bits are the same.
    uint16_t String(const LocalizedText& text) { return static_cast<uint16_t>(pools_.strings.Add(text)); }

    // A table's member of the source, and the bytes that it takes.
    struct TableSize {
        std::string_view key;
        size_t bytes;
    };

    // Lets the slot lead to what is appended next.
    void Begin(size_t slot, std::string_view key) {
        Align(block_);
        tables_.push_back({key, 0});
        const uint64_t offset = block_.size();
        std::memcpy(block_.data() + slot, &offset, sizeof offset);
    }

    void Append(const void* data, size_t size) {
        const auto* first = static_cast<const std::byte*>(data);
        block_.insert(block_.end(), first, first + size);
        tables_.back().bytes += size;
    }

    // The records and the zeros that end them; an empty table stays absent.
    template <class Record>
    void AddTable(size_t slot, std::string_view key, const std::vector<Record>& records) {
        if (records.empty()) {
            return;
        }
        Begin(slot, key);
        Append(records.data(), records.size() * sizeof(Record));
        block_.resize(block_.size() + sizeof(Record));
    }

    // Positions of records in tables are i16.
    int16_t Position(size_t position, const char* records, std::string_view key) {
        if (position > INT16_MAX) {
            faults_.push_back({std::to_string(position) + " " + records, "at most " + std::to_string(INT16_MAX),
                               MemberPath(std::string(kRootPath), key)});
        }
        return static_cast<int16_t>(position);
    }

    template <class Record>
    static void SetTicketValues(Record& record, const TicketValues& values) {
        std::memcpy(record.ticketValues, values.data(), sizeof record.ticketValues);
    }

    void AddPapers() {
        std::vector<PaperRecord> records;
        for (const PaperSource& paper : model_.papers) {
            PaperRecord record{};
            record.nameRef = String(paper.label);
            record.paperId = paper.id;
            record.keywordRef = pools_.names.Add(paper.keyword);
            record.width = paper.width;
            record.length = paper.length;
            record.isMetric = paper.isMetric ? 1 : 0;
            record.pclSizeCode = paper.pclSizeCode;
            record.fitPaperId = paper.fitPaperId;
            record.rendererNameRef = pools_.names.Add(paper.rendererName);
            SetTicketValues(record, paper.ticketValues);
            records.push_back(record);
        }
        AddTable(offsetof(DeviceModel, paperTable), "papers", records);
    }

    void AddTrays() {
        std::vector<BinRecord> records;
        for (const TraySource& tray : model_.trays) {
            records.push_back({tray.mask, tray.binId, pools_.strings.Add(tray.label), pools_.names.Add(tray.keyword)});
        }
        AddTable(offsetof(DeviceModel, binTable), "trays", records);
    }

    void AddExtraKeywords() {
        std::vector<ExtraKeywordRecord> records;
        for (const ExtraKeywordSource& keyword : model_.extraKeywords) {
            records.push_back({keyword.mask, pools_.texts.Add(keyword.jobValue), String(keyword.label),
                               pools_.names.Add(keyword.keyword)});
        }
        AddTable(offsetof(DeviceModel, extraKeywordTable), "extraKeywords", records);
    }

    void AddMedia() {
        std::vector<MediaRecord> records;
        for (const MediumSource& medium : model_.media) {
            MediaRecord record{};
            record.mark = medium.mark;
            record.nameRef = pools_.strings.Add(medium.label);
            record.jobTextRef = pools_.texts.Add(medium.jobText);
            record.rendererNameRef = static_cast<int16_t>(pools_.names.Add(medium.rendererName));
            record.keywordRef = pools_.names.Add(medium.keyword);
            record.mediaId = medium.mediaId;
            SetTicketValues(record, medium.ticketValues);
            records.push_back(record);
        }
        AddTable(offsetof(DeviceModel, mediaTable), "media", records);
    }

    void AddResolutions() {
        std::vector<ResolutionRecord> records;
        for (const ResolutionSource& resolution : model_.resolutions) {
            ResolutionRecord record{};
            record.mark = 1;
            record.resolutionId = resolution.resolutionId;
            record.jobTextRef = pools_.texts.Add(resolution.jobText);
            record.nameRef = String(resolution.label);
            record.xDpi = resolution.xDpi;
            record.yDpi = resolution.yDpi;
            if (resolution.pattern) {
                record.patternSize = model_.patterns[*resolution.pattern].size;
                record.patternIndex = Position(*resolution.pattern, "patterns", "patterns");
            }
            record.keywordRef = pools_.names.Add(resolution.keyword);
            SetTicketValues(record, resolution.ticketValues);
            records.push_back(record);
        }
        AddTable(offsetof(DeviceModel, resolutionTable), "resolutions", records);
    }

    void AddFontName(size_t slot, std::string_view key, const std::string& name) {
        if (!name.empty()) {
            Begin(slot, key);
            Append(name.c_str(), name.size() + 1);
        }
    }

    void AddFonts() {
        AddFontName(offsetof(DeviceModel, defaultFontA), "primaryFont", model_.primaryFont);
        AddFontName(offsetof(DeviceModel, defaultFontB), "secondaryFont", model_.secondaryFont);
        if (const size_t groups = FontGroups(model_.fonts).size(); groups != 0) {
            Begin(offsetof(DeviceModel, fontGroups), "fonts");
            block_.resize(block_.size() + groups * sizeof(PackedU16));
        }
        if (!model_.fontSubstitutions.empty()) {
            Begin(offsetof(DeviceModel, defaultFontSubs), "fontSubstitutions");
            for (const FontSubstitution& pair : model_.fontSubstitutions) {
                Append(pair.face.c_str(), pair.face.size() + 1);
                Append(pair.printerFont.c_str(), pair.printerFont.size() + 1);
            }
            block_.push_back(std::byte{0});
        }
    }

    void AddRules() {
        std::vector<ConstraintRecord> constraints;
        for (const ConstraintSource& constraint : model_.constraints) {
            constraints.push_back(constraint.record);
            constraints.back().messageRef = String(constraint.message);
        }
        AddTable(offsetof(DeviceModel, constraintTable), "constraints", constraints);
        AddTable(offsetof(DeviceModel, marginTable), "margins", model_.margins);
    }

    void AddFeatures() {
        const size_t stride = OptionStride(device_.pdlType);
        std::vector<FeatureRecord> features;
        Bytes options;
        for (const FeatureSource& feature : model_.features) {
            features.push_back({String(feature.label), pools_.texts.Add(feature.jobKey), feature.mask,
                                Position(options.size() / stride, "options", "features"),
                                pools_.names.Add(feature.keyword)});
            for (const OptionSource& option : feature.options) {
                const OptionRecord record = {String(option.label), pools_.texts.Add(option.jobValue),
                                             pools_.names.Add(option.keyword)};
                options.resize(options.size() + stride);
                std::memcpy(options.data() + options.size() - stride, &record, sizeof record);
            }
            options.resize(options.size() + stride);
        }
        AddTable(offsetof(DeviceModel, featureTable), "features", features);
        if (!options.empty()) {
            Begin(offsetof(DeviceModel, optionTable), "features");
            Append(options.data(), options.size());
        }
    }

    void AddColorFeatures() {
        constexpr size_t kGroupSlots[kColorGroupCount] = {
            offsetof(DeviceModel, textColorFeatures), offsetof(DeviceModel, imageColorFeatures),
            offsetof(DeviceModel, graphicsColorFeatures), offsetof(DeviceModel, generalColorFeatures)};
        std::vector<ColorValueRecord> values;
        for (size_t group = 0; group < kColorGroupCount; ++group) {
            std::vector<ColorFeatureRecord> features;
            for (const ColorFeatureSource& feature : model_.colorFeatures[group]) {
                features.push_back({String(feature.label), Position(values.size(), "color values", "colorFeatures")});
                for (const ColorValueSource& value : feature.values) {
                    ColorValueRecord record = {String(value.label), value.first.start, value.first.length,
                                               value.second.start, value.second.length};
                    if (!value.jobValue.empty()) {
                        record.firstStart = pools_.texts.Add(value.jobValue);
                    }
                    values.push_back(record);
                }
                values.push_back({});
            }
            AddTable(kGroupSlots[group], "colorFeatures", features);
        }
        AddTable(offsetof(DeviceModel, colorOptionValues), "colorFeatures", values);
    }

    void AddColorModes() {
        std::vector<ColorModeRecord> modes;
        std::vector<PresetSettingRecord> settings;
        for (const ColorModeSource& mode : model_.colorModes) {
            const int16_t first =
                mode.settings.empty() ? int16_t{-1} : Position(settings.size(), "preset settings", "colorModes");
            modes.push_back({mode.kind, String(mode.label), first});
            if (!mode.settings.empty()) {
                settings.insert(settings.end(), mode.settings.begin(), mode.settings.end());
                settings.push_back({});
            }
        }
        AddTable(offsetof(DeviceModel, colorModeTable), "colorModes", modes);
        AddTable(offsetof(DeviceModel, presetSettings), "colorModes", settings);
    }

    void AddKeywordLists() {
        constexpr size_t kListSlots[kKeywordLists] = {
            offsetof(DeviceModel, photoIntentList), offsetof(DeviceModel, signatureOptionList),
            offsetof(DeviceModel, extraListA),      offsetof(DeviceModel, extraListB),
            offsetof(DeviceModel, mediaColorList),  offsetof(DeviceModel, extraListC)};
        for (size_t list = 0; list < kKeywordLists; ++list) {
            std::vector<KeywordRecord> records;
            for (const KeywordSource& entry : model_.keywordLists[list]) {
                KeywordRecord record{};
                record.mark = 1;
                record.nameRef = String(entry.label);
                record.keywordRef = pools_.names.Add(entry.keyword);
                SetTicketValues(record, entry.ticketValues);
                records.push_back(record);
            }
            AddTable(kListSlots[list], kKeywordListKeys[list], records);
        }
    }

    const ModelSource& model_;
    TextPools& pools_;
    LimitFaults& faults_;
    DeviceModel device_;
    Bytes block_;  // begins with the record; until Build ends, only its slots are filled
    std::vector<TableSize> tables_;
};

}  // namespace

Bytes BuildDeviceBlock(const ModelSource& model, TextPools& pools, LimitFaults& faults) {
    Bytes block = BlockBuilder(model, pools, faults).Build();
    pools.strings.Check(faults);
    pools.names.Check(faults);
    pools.texts.Check(faults);
    return block;
}

std::vector<uint16_t> FontGroups(const std::vector<Bytes>& fonts) {
    constexpr size_t kLargestGroup = 32767;
    std::vector<uint16_t> groups;
    size_t sum = 0;
    for (size_t i = 0; i < fonts.size(); ++i) {
        if (groups.empty() || sum + fonts[i].size() > kLargestGroup) {
            groups.push_back(static_cast<uint16_t>(i + 1));
            sum = 0;
        }
        sum += fonts[i].size();
    }
    return groups;
}

}  // namespace velmora
