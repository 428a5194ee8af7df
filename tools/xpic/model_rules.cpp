// Which papers a rule holds for: margins, and the combinations that a printer can't print.
#include <algorithm>

#include "tools/xpic/model_reader.h"
#include "tools/xpic/rule_records.h"

namespace velmora {
namespace {

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
        return fallback;
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

// The sizes of the custom papers of a rule, by default those that the model allows, or any where the rule names none.
SizeLimits ReadSizeLimits(ModelReader& reader, ObjectReader& object, const PaperChoice& choice, int64_t largest) {
    const SizeLimits allowed = choice.any ? kAnySize : AllowedSizes(reader.model.device, largest);
    for (std::string_view key : {"widthMm", "lengthMm"}) {
        if (const std::optional<SourceValue> value = object.Find(key); value && !choice.custom && !choice.any) {
            reader.context.Report(value->path, "sizes without \"custom\" among the papers",
                                  "sizes only for custom papers");
        }
    }
    return {ReadSizeRange(reader, object, "widthMm", allowed.width, largest),
            ReadSizeRange(reader, object, "lengthMm", allowed.length, largest)};
}

// Margins in millimetres, or in units of the source's own.
void ReadMarginSizes(ObjectReader& object, MarginRecord& record) {
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

// Which records of one table each rule names, and where it does.
struct NamedRecords {
    std::vector<RuleRecords> rules;
    std::vector<std::string> paths;

    void Read(ModelReader& reader, ObjectReader& object, std::string_view key, std::string_view maskKey,
              const NameIndex& names) {
        paths.push_back(object.PathOf(key));
        rules.push_back({object.References(key, names), {}});
        if (const std::optional<SourceValue> mask = object.Find(maskKey)) {
            if (object.Has(key)) {
                reader.context.Report(mask->path, "a mask beside " + Quote(key), "one of the two");
            }
            rules.back().mask = static_cast<uint32_t>(ReadInteger(reader.context, *mask, {0, UINT32_MAX}).value_or(0));
        }
    }
};

// Gives the records the bits that tell them apart, beside those of `usedBits` and their own, and returns the masks of
// the rules.
template <class Source>
std::vector<uint32_t> SetMasks(ModelReader& reader, const NamedRecords& named, std::vector<Source>& records,
                               uint32_t Source::*mask, uint32_t usedBits) {
    std::vector<uint32_t> plain;
    for (const Source& record : records) {
        plain.push_back(record.*mask);
    }
    RuleMasks masks = TellApart(named.rules, plain, usedBits | BitsOf(plain));
    for (size_t i = 0; i < records.size(); ++i) {
        records[i].*mask = masks.ofRecords[i];
    }
    for (size_t rule : masks.withoutBits) {
        reader.context.Report(named.paths[rule], "more records to tell apart than a mask has free bits",
                              "constraints that name fewer different ones");
    }
    return std::move(masks.ofRules);
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
    ModelSource& model = reader.model;
    size_t count = 0;
    for (const SourceValue& element : reader.root.Elements("margins")) {
        const size_t number = count++;
        ObjectReader object(reader.context, element);
        MarginRecord record{};
        record.mark = 1;
        const std::optional<SourceValue> papers = object.Find("papers");
        const PaperChoice choice = papers ? ReadPaperChoice(reader, *papers) : AllPapers(model);
        const SizeLimits limits = ReadSizeLimits(reader, object, choice, INT16_MAX);
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
    ModelSource& model = reader.model;
    ModelNames& names = reader.names;
    std::vector<Word> options;
    for (const Word& word : names.deviceOptions) {
        if (word.value != kOnlyOnBothSides) {  // bit 0 is the duplex unit's there and "duplex" here
            options.push_back(word);
        }
    }
    NamedRecords trays;
    NamedRecords media;
    NamedRecords extraKeywords;
    for (const SourceValue& element : reader.root.Elements("constraints")) {
        ObjectReader object(reader.context, element);
        ConstraintSource constraint;
        constraint.record.mark = 1;
        const std::optional<SourceValue> papers = object.Find("papers");
        PaperChoice choice = papers ? ReadPaperChoice(reader, *papers) : AnyPaper(model);
        if (choice.any && (object.Has("widthMm") || object.Has("lengthMm"))) {
            choice.bySize.clear();  // whose sizes are within the limits or aren't
        }
        const SizeLimits limits = ReadSizeLimits(reader, object, choice, UINT16_MAX);
        constraint.record.flags =
            (object.Flag("duplex", false) ? kOnlyOnBothSides : 0) | object.WordBits("options", options, 0);
        trays.Read(reader, object, "trays", "trayMask", names.trays);
        media.Read(reader, object, "media", "mediaMask", names.media);
        extraKeywords.Read(reader, object, "extraKeywords", "extraKeywordMask", names.extraKeywords);
        constraint.message = object.Localized("message", TextLimit::kPaperLabel);
        const auto add = [&](const ConstraintRecord& record) {
            model.constraints.push_back({record, constraint.message});
            model.constraintElements.push_back(trays.rules.size() - 1);
        };
        AddRecords(choice, limits, SizeMatch::kExact, constraint.record, add);
    }
    const std::vector<uint32_t> trayMasks =
        SetMasks(reader, trays, model.trays, &TraySource::mask, BitsOf(names.trayOptions) | kAlwaysInstalled);
    const std::vector<uint32_t> mediaMasks = SetMasks(reader, media, model.media, &MediumSource::mark, 0);
    const std::vector<uint32_t> extraMasks =
        SetMasks(reader, extraKeywords, model.extraKeywords, &ExtraKeywordSource::mask, 0);
    for (size_t i = 0; i < model.constraints.size(); ++i) {
        const size_t rule = model.constraintElements[i];
        model.constraints[i].record.binMask = trayMasks[rule];
        model.constraints[i].record.mediaMask = mediaMasks[rule];
        model.constraints[i].record.extraKeywordMask = extraMasks[rule];
    }
}

}  // namespace velmora
