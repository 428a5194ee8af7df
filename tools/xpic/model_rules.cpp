// Which papers a rule holds for: margins, and the combinations that a printer can't print.
#include <algorithm>

#include "tools/xpic/model_reader.h"

namespace velmora {
namespace {

constexpr int kPaperSetSize = 256;

struct SizeLimits {
    Range width;  // 0.1 mm
    Range length;
};

// The papers of a rule. Papers with ids beyond a set are found by their size among the custom ones, one record each.
struct PaperChoice {
    PaperSet set{};
    bool custom = false;
    std::vector<const PaperSource*> bySize;
};

void AddToSet(PaperSet& set, int id) {
    set.bytes[id / 8] |= static_cast<uint8_t>(0x80 >> (id % 8));
}

void AddPaper(PaperChoice& choice, const PaperSource& paper) {
    if (paper.id < kPaperSetSize) {
        AddToSet(choice.set, paper.id);
    } else {
        choice.bySize.push_back(&paper);
    }
}

PaperChoice AllPapers(const ModelSource& model) {
    PaperChoice choice;
    for (const PaperSource& paper : model.papers) {
        AddPaper(choice, paper);
    }
    choice.custom = model.device.customMaxWidth != 0 && model.device.customMaxLength != 0;
    return choice;
}

PaperChoice ReadPaperChoice(ModelReader& reader, const SourceValue& value) {
    if (value.json->is_string() && *value.json == "all") {
        return AllPapers(reader.model);
    }
    PaperChoice choice;
    if (!value.json->is_array()) {
        reader.context.Report(value.path, Describe(*value.json), "\"all\" or an array of papers");
        return choice;
    }
    for (const SourceValue& element : ReadElements(reader.context, value)) {
        if (element.json->is_string() && *element.json == "custom") {
            choice.custom = true;
        } else if (element.json->is_number()) {
            AddToSet(choice.set,
                     static_cast<int>(ReadInteger(reader.context, element, {1, kPaperSetSize - 1}).value_or(0)));
        } else if (const auto position = reader.names.papers.Resolve(reader.context, element)) {
            AddPaper(choice, reader.model.papers[*position]);
        }
    }
    return choice;
}

// [smallest, largest] in millimetres.
Range ReadSizeRange(ModelReader& reader, ObjectReader& object, std::string_view key, Range fallback, int64_t largest) {
    const std::optional<SourceValue> value = object.Find(key);
    if (!value) {
        return {std::min(fallback.min, largest), std::min(fallback.max, largest)};
    }
    const std::vector<SourceValue> ends = ReadElements(reader.context, *value);
    if (ends.size() != 2) {
        if (value->json->is_array()) {
            reader.context.Report(value->path, "an array of " + std::to_string(ends.size()),
                                  "the smallest and the largest size");
        }
        return fallback;
    }
    const Range range = {ReadMillimetres(reader.context, ends[0], {0, largest}).value_or(0),
                         ReadMillimetres(reader.context, ends[1], {0, largest}).value_or(largest)};
    if (range.min > range.max) {
        reader.context.Report(value->path, "a smallest size above the largest", "the smallest and the largest size");
    }
    return range;
}

// The sizes of the custom papers of a rule, by default those that the model allows.
SizeLimits ReadSizeLimits(ModelReader& reader, ObjectReader& object, bool custom, int64_t largest) {
    const DeviceModel& device = reader.model.device;
    const auto allowed = [&](int64_t min, int64_t max) { return Range{min, max != 0 ? max : largest}; };
    for (std::string_view key : {"widthMm", "lengthMm"}) {
        if (const std::optional<SourceValue> value = object.Find(key); value && !custom) {
            reader.context.Report(value->path, "sizes without \"custom\" among the papers",
                                  "sizes only for custom papers");
        }
    }
    return {
        ReadSizeRange(reader, object, "widthMm", allowed(device.customMinWidth, device.customMaxWidth), largest),
        ReadSizeRange(reader, object, "lengthMm", allowed(device.customMinLength, device.customMaxLength), largest)};
}

template <class Record>
void SetLimits(Record& record, const SizeLimits& limits) {
    record.minWidth = static_cast<decltype(record.minWidth)>(limits.width.min);
    record.maxWidth = static_cast<decltype(record.maxWidth)>(limits.width.max);
    record.minLength = static_cast<decltype(record.minLength)>(limits.length.min);
    record.maxLength = static_cast<decltype(record.maxLength)>(limits.length.max);
}

bool Contains(const SizeLimits& limits, const PaperSource& paper) {
    return paper.width >= limits.width.min && paper.width <= limits.width.max && paper.length >= limits.length.min &&
           paper.length <= limits.length.max;
}

// How a table is searched for a paper that a set can't hold.
enum class SizeMatch {
    kWithinLimits,  // any record for custom sizes whose limits contain the paper's size
    kExact,         // only one whose limits are the paper's size
};

// One record for the papers of the set and the custom ones (unless there are none), then one for each paper that is
// found by its size.
template <class Record, class Add>
void AddRecords(const PaperChoice& choice, const SizeLimits& limits, SizeMatch match, const Record& pattern, Add add) {
    Record record = pattern;
    record.papers = choice.set;
    if (choice.custom) {
        AddToSet(record.papers, 0);
        SetLimits(record, limits);
    }
    const bool none = std::all_of(std::begin(record.papers.bytes), std::end(record.papers.bytes),
                                  [](uint8_t byte) { return byte == 0; });
    if (!none) {
        add(record);
    }
    for (const PaperSource* paper : choice.bySize) {
        if (match == SizeMatch::kWithinLimits && choice.custom && Contains(limits, *paper)) {
            continue;
        }
        record = pattern;
        AddToSet(record.papers, 0);
        SetLimits(record, {{paper->width, paper->width}, {paper->length, paper->length}});
        add(record);
    }
}

// Margins in millimetres, or in units of the source's own.
void ReadMarginSizes(ObjectReader& object, MarginRecord& record) {
    constexpr int16_t kTenthsPerInch = 254;
    constexpr Range kAnyI16 = {INT16_MIN, INT16_MAX};
    constexpr std::string_view kSides[][2] = {
        {"leftMm", "left"}, {"topMm", "top"}, {"rightMm", "right"}, {"bottomMm", "bottom"}};
    int16_t sides[4] = {};
    const bool ownUnit = object.Has("unitsPerInch");
    const bool allSides = !ownUnit && object.Has("allMm");
    record.unit =
        ownUnit ? static_cast<int16_t>(object.Integer("unitsPerInch", {1, INT16_MAX}, std::nullopt)) : kTenthsPerInch;
    const std::optional<int64_t> fallback =
        allSides ? std::optional(object.Millimetres("allMm", kAnyI16, std::nullopt)) : std::nullopt;
    for (size_t i = 0; i < std::size(kSides); ++i) {
        sides[i] = static_cast<int16_t>(ownUnit ? object.Integer(kSides[i][1], kAnyI16, std::nullopt)
                                                : object.Millimetres(kSides[i][0], kAnyI16, fallback));
    }
    record.leftMargin = sides[0];
    record.topMargin = sides[1];
    record.rightMargin = sides[2];
    record.bottomMargin = sides[3];
}

// The records of one table that a rule names.
struct NamedRecords {
    std::string path;
    std::vector<size_t> positions;
    std::optional<uint32_t> mask;  // given in place of names
};

NamedRecords ReadNamedRecords(ModelReader& reader, ObjectReader& object, std::string_view key, std::string_view maskKey,
                              const NameIndex& names) {
    NamedRecords records = {object.PathOf(key), object.References(key, names), {}};
    if (const std::optional<SourceValue> mask = object.Find(maskKey)) {
        if (object.Has(key)) {
            reader.context.Report(mask->path, "a mask beside " + Quote(key), "one of the two");
        }
        records.mask = static_cast<uint32_t>(ReadInteger(reader.context, *mask, {0, UINT32_MAX}).value_or(0));
    }
    return records;
}

// The masks by which each rule finds its records and no others, one a rule (0 for a rule without names). Where the
// records' masks don't tell, records get bits of their own, from bit 31 down, past the used ones.
std::vector<uint32_t> TellApart(ModelReader& reader, const std::vector<NamedRecords>& rules,
                                const std::vector<uint32_t*>& masks, uint32_t usedBits) {
    std::vector<uint32_t> plain;
    for (const uint32_t* mask : masks) {
        plain.push_back(*mask);
    }
    std::vector<uint32_t> own(masks.size());
    std::vector<uint32_t> result;
    for (const NamedRecords& rule : rules) {
        if (rule.mask) {
            result.push_back(*rule.mask);
            continue;
        }
        uint32_t wanted = 0;
        for (size_t position : rule.positions) {
            wanted |= plain[position];
        }
        bool shared = false;
        for (size_t i = 0; i < plain.size(); ++i) {
            const bool named = std::find(rule.positions.begin(), rule.positions.end(), i) != rule.positions.end();
            shared |= !named && (plain[i] & wanted) != 0;
        }
        if (shared) {
            wanted = 0;
            for (size_t position : rule.positions) {
                for (int bit = 31; own[position] == 0 && bit >= 0; --bit) {
                    own[position] = (usedBits >> bit & 1) == 0 ? uint32_t{1} << bit : 0;
                }
                if (own[position] == 0) {
                    reader.context.Report(rule.path, "more records to tell apart than a mask has free bits",
                                          "constraints that name fewer different ones");
                }
                usedBits |= own[position];
                *masks[position] |= own[position];
                wanted |= own[position];
            }
        }
        result.push_back(wanted);
    }
    return result;
}

template <class Source>
std::vector<uint32_t*> MasksOf(std::vector<Source>& records, uint32_t Source::*mask) {
    std::vector<uint32_t*> masks;
    for (Source& record : records) {
        masks.push_back(&(record.*mask));
    }
    return masks;
}

uint32_t BitsOf(const std::vector<uint32_t*>& masks) {
    uint32_t bits = 0;
    for (const uint32_t* mask : masks) {
        bits |= *mask;
    }
    return bits;
}

uint32_t BitsOf(const std::vector<Word>& words) {
    uint32_t bits = 0;
    for (const Word& word : words) {
        bits |= static_cast<uint32_t>(word.value);
    }
    return bits;
}

}  // namespace

void ReadMargins(ModelReader& reader) {
    constexpr uint32_t kBothOrientations = 3;
    ModelSource& model = reader.model;
    size_t count = 0;
    for (const SourceValue& element : reader.root.Elements("margins")) {
        const size_t number = count++;
        ObjectReader object(reader.context, element);
        MarginRecord record{};
        record.mark = 1;
        const std::optional<SourceValue> papers = object.Find("papers");
        const PaperChoice choice = papers ? ReadPaperChoice(reader, *papers) : AllPapers(model);
        const SizeLimits limits = ReadSizeLimits(reader, object, choice.custom, INT16_MAX);
        record.orientationMask =
            static_cast<uint16_t>(object.WordBits("orientations", kOrientationWords, kBothOrientations));
        ReadMarginSizes(object, record);
        AddRecords(choice, limits, SizeMatch::kWithinLimits, record, [&](const MarginRecord& margin) {
            model.margins.push_back(margin);
            model.marginElements.push_back(number);
        });
    }
}

void ReadConstraints(ModelReader& reader) {
    constexpr uint32_t kOnlyOnBothSides = 1;
    constexpr uint32_t kAlwaysInstalled = 3;
    ModelSource& model = reader.model;
    ModelNames& names = reader.names;
    std::vector<Word> options;
    for (const Word& word : names.deviceOptions) {
        if (word.value != kOnlyOnBothSides) {  // bit 0 is the duplex unit's there and "duplex" here
            options.push_back(word);
        }
    }
    std::vector<NamedRecords> trays;
    std::vector<NamedRecords> media;
    std::vector<NamedRecords> extraKeywords;
    for (const SourceValue& element : reader.root.Elements("constraints")) {
        ObjectReader object(reader.context, element);
        ConstraintSource constraint;
        constraint.record.mark = 1;
        const std::optional<SourceValue> papers = object.Find("papers");
        const PaperChoice choice = papers ? ReadPaperChoice(reader, *papers) : PaperChoice{};
        const SizeLimits limits = ReadSizeLimits(reader, object, choice.custom, UINT16_MAX);
        constraint.record.flags =
            (object.Flag("duplex", false) ? kOnlyOnBothSides : 0) | object.WordBits("options", options, 0);
        trays.push_back(ReadNamedRecords(reader, object, "trays", "trayMask", names.trays));
        media.push_back(ReadNamedRecords(reader, object, "media", "mediaMask", names.media));
        extraKeywords.push_back(
            ReadNamedRecords(reader, object, "extraKeywords", "extraKeywordMask", names.extraKeywords));
        constraint.message = object.Localized("message", TextLimit::kPaperLabel);
        const auto add = [&](const ConstraintRecord& record) {
            model.constraints.push_back({record, constraint.message});
            model.constraintElements.push_back(trays.size() - 1);
        };
        if (papers) {
            AddRecords(choice, limits, SizeMatch::kExact, constraint.record, add);
        } else {
            add(constraint.record);
        }
    }
    const std::vector<uint32_t> trayMasks =
        TellApart(reader, trays, MasksOf(model.trays, &TraySource::mask), BitsOf(names.trayOptions) | kAlwaysInstalled);
    const std::vector<uint32_t*> marks = MasksOf(model.media, &MediumSource::mark);
    const std::vector<uint32_t> mediaMasks = TellApart(reader, media, marks, BitsOf(marks));
    const std::vector<uint32_t*> keywordMasks = MasksOf(model.extraKeywords, &ExtraKeywordSource::mask);
    const std::vector<uint32_t> extraMasks = TellApart(reader, extraKeywords, keywordMasks, BitsOf(keywordMasks));
    for (size_t i = 0; i < model.constraints.size(); ++i) {
        const size_t rule = model.constraintElements[i];
        model.constraints[i].record.binMask = trayMasks[rule];
        model.constraints[i].record.mediaMask = mediaMasks[rule];
        model.constraints[i].record.extraKeywordMask = extraMasks[rule];
    }
}

}  // namespace velmora
