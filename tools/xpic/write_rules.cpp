// Which papers a rule holds for, and which trays, media and extra keywords: from records and masks back to names.
#include <algorithm>
#include <cstring>

#include "tools/xpic/model_limits.h"
#include "tools/xpic/source_writer.h"

namespace velmora {
namespace {

constexpr int kMaskBits = 32;

// Bits that only one record has beside others and that rules look for: as the loader hands them out.
uint32_t OwnBits(const std::vector<uint32_t>& masks, const std::vector<uint32_t>& ruleMasks) {
    uint32_t own = 0;
    for (int i = 0; i < kMaskBits; ++i) {
        const uint32_t bit = uint32_t{1} << i;
        const auto has = [&](uint32_t mask) { return (mask & bit) != 0; };
        if ((BitsOf(ruleMasks) & bit) != 0 && std::count_if(masks.begin(), masks.end(), has) == 1) {
            own |= *std::find_if(masks.begin(), masks.end(), has) != bit ? bit : 0;
        }
    }
    return own;
}

// The records that a rule's mask finds. Those with the highest bits of their own come first: in that order they were
// handed out.
std::vector<size_t> FoundBy(uint32_t ruleMask, const std::vector<uint32_t>& masks, uint32_t ownBits) {
    std::vector<size_t> positions;
    for (size_t i = 0; i < masks.size(); ++i) {
        if ((masks[i] & ruleMask) != 0) {
            positions.push_back(i);
        }
    }
    std::stable_sort(positions.begin(), positions.end(),
                     [&](size_t a, size_t b) { return (masks[a] & ownBits) > (masks[b] & ownBits); });
    return positions;
}

// `usedBits` are the bits beside the records' own that the loader doesn't hand out. `isNamed` says whether a source
// gives a record's mask without a number.
template <class IsNamed>
WrittenMasks ChooseMasks(const std::vector<uint32_t>& masks, const std::vector<uint32_t>& ruleMasks, uint32_t usedBits,
                         IsNamed isNamed) {
    const uint32_t ownBits = OwnBits(masks, ruleMasks);
    WrittenMasks told;
    for (uint32_t mask : masks) {
        told.records.push_back((mask & ~ownBits) != 0 ? mask & ~ownBits : mask);
    }
    for (uint32_t ruleMask : ruleMasks) {
        told.rules.push_back({FoundBy(ruleMask, masks, ownBits), {}});
    }
    const RuleMasks loaded = TellApart(told.rules, told.records, usedBits | BitsOf(told.records));
    if (loaded.ofRecords == masks && loaded.ofRules == ruleMasks &&
        std::all_of(told.records.begin(), told.records.end(), isNamed)) {
        return told;
    }
    // The masks as they are. A rule names the records whose masks make up its own.
    WrittenMasks given{masks, {}};
    for (uint32_t ruleMask : ruleMasks) {
        RuleRecords rule{FoundBy(ruleMask, masks, 0), {}};
        uint32_t sum = 0;
        for (size_t position : rule.positions) {
            sum |= masks[position];
        }
        if (sum != ruleMask) {
            rule = {{}, ruleMask};
        }
        given.rules.push_back(std::move(rule));
    }
    return given;
}

template <class Source>
std::vector<uint32_t> MasksOf(const std::vector<Source>& records, uint32_t Source::*mask) {
    std::vector<uint32_t> masks;
    for (const Source& record : records) {
        masks.push_back(record.*mask);
    }
    return masks;
}

std::vector<uint32_t> RuleMasksOf(const ModelSource& model, uint32_t ConstraintRecord::*mask) {
    std::vector<uint32_t> masks;
    for (const ConstraintSource& constraint : model.constraints) {
        uint32_t value;
        std::memcpy(&value, &(constraint.record.*mask), sizeof value);
        masks.push_back(value);
    }
    return masks;
}

WrittenMasks ChoosePlainMasks(const std::vector<uint32_t>& masks, const std::vector<uint32_t>& ruleMasks) {
    return ChooseMasks(masks, ruleMasks, 0, [](uint32_t mask) { return mask == kPlainMask; });
}

// A rule's papers as a source gives them, and the number of records that the loader makes of them.
struct WrittenPapers {
    size_t records = 1;
    Json members = Json::object();  // "papers", "widthMm", "lengthMm"
};

SizeLimits LimitsOf(const auto& record) {
    return {{record.minWidth, record.maxWidth}, {record.minLength, record.maxLength}};
}

// Turns the papers of one table's records into what a source says.
template <class Record>
class PaperWriter {
  public:
    // Keeps a reference to the model. `largest` is the largest limit that a record holds.
    PaperWriter(const ModelSource& model, SizeMatch match, int64_t largest, std::vector<Record> records)
        : model_(model),
          match_(match),
          allowed_(AllowedSizes(model.device, largest)),
          all_(AllPapers(model)),
          records_(std::move(records)) {}

    // The papers of the rule whose first record it is. `end` is behind the last record that may belong to the rule.
    WrittenPapers Write(size_t first, size_t end) const {
        const Record& record = records_[first];
        if (IsEmptySet(record.papers)) {
            return WriteAny(first, end);
        }
        const bool custom = IsInSet(record.papers, 0);
        if (const size_t made = CountMade(all_, custom ? LimitsOf(record) : allowed_, first, end); made != 0) {
            WrittenPapers papers{made, {{"papers", "all"}}};
            AddLimits(papers.members, all_.custom, LimitsOf(record));
            return papers;
        }
        PaperChoice choice;
        const PaperSource* sized = custom ? FindBySize(record) : nullptr;
        if (sized != nullptr && OnlyCustom(record)) {
            choice.bySize.push_back(sized);
        } else {
            choice.set = record.papers;
            choice.set.bytes[0] &= static_cast<uint8_t>(~kCustomBit);
            choice.custom = custom;
        }
        // Records for single sizes that follow may belong to the same rule.
        size_t made = CountMade(choice, LimitsOf(record), first, end);
        for (size_t next = first + made; made != 0 && next < end; ++next) {
            const PaperSource* more = OnlyCustom(records_[next]) ? FindBySize(records_[next]) : nullptr;
            if (more == nullptr) {
                break;
            }
            choice.bySize.push_back(more);
            const size_t count = CountMade(choice, LimitsOf(record), first, end);
            if (count != next - first + 1) {
                choice.bySize.pop_back();
                break;
            }
            made = count;
        }
        WrittenPapers papers{std::max<size_t>(made, 1), {{"papers", NamesOf(choice)}}};
        AddLimits(papers.members, choice.custom, LimitsOf(record));
        return papers;
    }

  private:
    static constexpr uint8_t kCustomBit = 0x80;  // of the first byte of a set

    // A rule for any paper: with nothing said, or with the sizes for which it holds.
    WrittenPapers WriteAny(size_t first, size_t end) const {
        if (const size_t made = CountMade(AnyPaper(model_), kAnySize, first, end); made != 0) {
            return {made, Json::object()};
        }
        const SizeLimits limits = LimitsOf(records_[first]);
        return {1,
                {{"widthMm", {InMillimetres(limits.width.min), InMillimetres(limits.width.max)}},
                 {"lengthMm", {InMillimetres(limits.length.min), InMillimetres(limits.length.max)}}}};
    }

    static bool OnlyCustom(const Record& record) {
        PaperSet custom{};
        AddToSet(custom, 0);
        return std::memcmp(&record.papers, &custom, sizeof custom) == 0;
    }

    // The paper that a set can't hold and whose size a record for a single size has.
    const PaperSource* FindBySize(const Record& record) const {
        const SizeLimits limits = LimitsOf(record);
        const auto paper = std::find_if(all_.bySize.begin(), all_.bySize.end(), [&](const PaperSource* candidate) {
            return candidate->width == limits.width.min && candidate->width == limits.width.max &&
                   candidate->length == limits.length.min && candidate->length == limits.length.max;
        });
        return paper != all_.bySize.end() ? *paper : nullptr;
    }

    // How many records the loader makes of the choice, if they are the ones that begin at `first`; else 0.
    size_t CountMade(const PaperChoice& choice, const SizeLimits& limits, size_t first, size_t end) const {
        Record pattern = records_[first];
        pattern.papers = {};
        SetLimits(pattern, {{0, 0}, {0, 0}});
        size_t made = 0;
        bool same = true;
        AddRecords(choice, limits, match_, pattern, [&](const Record& record) {
            same = same && first + made < end && std::memcmp(&record, &records_[first + made], sizeof record) == 0;
            ++made;
        });
        return same ? made : 0;
    }

    void AddLimits(Json& members, bool custom, const SizeLimits& limits) const {
        const auto add = [&](const char* key, Range given, Range unsaid) {
            if (custom && (given.min != unsaid.min || given.max != unsaid.max)) {
                members[key] = {InMillimetres(given.min), InMillimetres(given.max)};
            }
        };
        add("widthMm", limits.width, allowed_.width);
        add("lengthMm", limits.length, allowed_.length);
    }

    Json NamesOf(const PaperChoice& choice) const {
        Json names = Json::array();
        PaperSet left = choice.set;
        for (const PaperSource& paper : model_.papers) {
            if (paper.id < kPaperSetSize && IsInSet(left, paper.id)) {
                names.push_back(paper.name);
                left.bytes[paper.id / 8] &= static_cast<uint8_t>(~(0x80 >> (paper.id % 8)));
            }
        }
        for (int id = 1; id < kPaperSetSize; ++id) {
            if (IsInSet(left, id)) {
                names.push_back(id);
            }
        }
        for (const PaperSource* paper : choice.bySize) {
            names.push_back(paper->name);
        }
        if (choice.custom) {
            names.push_back("custom");
        }
        return names;
    }

    const ModelSource& model_;
    SizeMatch match_;
    SizeLimits allowed_;
    PaperChoice all_;
    std::vector<Record> records_;
};

void WriteMarginSizes(Json& element, const MarginRecord& record) {
    struct Side {
        const char* key;
        const char* keyInMillimetres;
        int16_t size;
    };
    const Side sides[] = {{"left", "leftMm", record.leftMargin},
                          {"top", "topMm", record.topMargin},
                          {"right", "rightMm", record.rightMargin},
                          {"bottom", "bottomMm", record.bottomMargin}};
    const bool inMillimetres = record.unit == kTenthsPerInch;
    if (!inMillimetres) {
        element["unitsPerInch"] = int16_t{record.unit};
    }
    const bool all = inMillimetres && std::all_of(std::begin(sides), std::end(sides),
                                                  [&](const Side& side) { return side.size == sides[0].size; });
    if (all) {
        element["allMm"] = InMillimetres(sides[0].size);
        return;
    }
    for (const Side& side : sides) {
        element[inMillimetres ? side.keyInMillimetres : side.key] =
            inMillimetres ? InMillimetres(side.size) : Json(side.size);
    }
}

// The records of one table that a rule is about.
template <class Record>
void WriteRuleRecords(Json& element, const char* key, const char* maskKey, const RuleRecords& rule,
                      const std::vector<Record>& records) {
    if (rule.mask) {
        element[maskKey] = *rule.mask;
    }
    for (size_t position : rule.positions) {
        element[key].push_back(records[position].name);
    }
}

}  // namespace

WrittenMasks ChooseTrayMasks(const ModelSource& model) {
    uint32_t options = kAlwaysInstalled | (IsInstalledNamed(model) ? model.device.defaultOptionMask : 0);
    for (const Word& word : kTrayOptionWords) {
        options |= uint32_t{1} << word.value;
    }
    return ChooseMasks(MasksOf(model.trays, &TraySource::mask), RuleMasksOf(model, &ConstraintRecord::binMask), options,
                       IsTrayMaskNamed);
}

WrittenMasks ChooseMediaMasks(const ModelSource& model) {
    return ChoosePlainMasks(MasksOf(model.media, &MediumSource::mark),
                            RuleMasksOf(model, &ConstraintRecord::mediaMask));
}

WrittenMasks ChooseExtraKeywordMasks(const ModelSource& model) {
    return ChoosePlainMasks(MasksOf(model.extraKeywords, &ExtraKeywordSource::mask),
                            RuleMasksOf(model, &ConstraintRecord::extraKeywordMask));
}

void WriteMargins(SourceWriter& writer) {
    const std::vector<MarginRecord>& margins = writer.model.margins;
    const PaperWriter<MarginRecord> papers(writer.model, SizeMatch::kWithinLimits, INT16_MAX, margins);
    for (size_t i = 0; i < margins.size();) {
        WrittenPapers written = papers.Write(i, margins.size());
        Json element = std::move(written.members);
        if (element["papers"] == "all") {
            element.erase("papers");
        }
        if (margins[i].orientationMask != kBothOrientations) {
            element["orientations"] = Json::array();
            for (const Word& word : kOrientationWords) {
                if ((margins[i].orientationMask & word.value) != 0) {
                    element["orientations"].push_back(word.name);
                }
            }
        }
        WriteMarginSizes(element, margins[i]);
        writer.root["margins"].push_back(std::move(element));
        i += written.records;
    }
}

void WriteConstraints(SourceWriter& writer) {
    const ModelSource& model = writer.model;
    std::vector<ConstraintRecord> records;
    for (const ConstraintSource& constraint : model.constraints) {
        records.push_back(constraint.record);
    }
    const PaperWriter<ConstraintRecord> papers(model, SizeMatch::kExact, UINT16_MAX, records);
    for (size_t i = 0; i < records.size();) {
        const ConstraintSource& constraint = model.constraints[i];
        size_t end = i + 1;
        while (end < records.size() && model.constraints[end].message == constraint.message) {
            ++end;
        }
        WrittenPapers written = papers.Write(i, end);
        Json element = std::move(written.members);
        WriteRuleRecords(element, "trays", "trayMask", writer.trays.rules[i], model.trays);
        WriteRuleRecords(element, "media", "mediaMask", writer.media.rules[i], model.media);
        WriteRuleRecords(element, "extraKeywords", "extraKeywordMask", writer.extraKeywords.rules[i],
                         model.extraKeywords);
        if ((records[i].flags & kOnlyOnBothSides) != 0) {
            element["duplex"] = true;
        }
        if (const uint32_t options = records[i].flags & ~kOnlyOnBothSides; options != 0) {
            element["options"] = writer.deviceOptions.Of(options);
        }
        if (!constraint.message.Absent()) {
            element["message"] = writer.texts.Localized(constraint.message);
        }
        writer.root["constraints"].push_back(std::move(element));
        i += written.records;
    }
}

}  // namespace velmora
