#include "tools/xpic/rule_records.h"

namespace velmora {

void AddToSet(PaperSet& set, int id) {
    set.bytes[id / 8] |= static_cast<uint8_t>(0x80 >> (id % 8));
}

bool IsInSet(const PaperSet& set, int id) {
    return (set.bytes[id / 8] & 0x80 >> (id % 8)) != 0;
}

bool IsEmptySet(const PaperSet& set) {
    return std::all_of(std::begin(set.bytes), std::end(set.bytes), [](uint8_t byte) { return byte == 0; });
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

PaperChoice AnyPaper(const ModelSource& model) {
    PaperChoice choice;
    choice.any = true;
    for (const PaperSource& paper : model.papers) {
        if (paper.id >= kPaperSetSize) {
            choice.bySize.push_back(&paper);
        }
    }
    return choice;
}

SizeLimits AllowedSizes(const DeviceModel& device, int64_t largest) {
    const auto allowed = [&](int64_t min, int64_t max) {
        return Range{std::min(min, largest), std::min(max != 0 ? max : largest, largest)};
    };
    return {allowed(device.customMinWidth, device.customMaxWidth),
            allowed(device.customMinLength, device.customMaxLength)};
}

bool Contains(const SizeLimits& limits, const PaperSource& paper) {
    return paper.width >= limits.width.min && paper.width <= limits.width.max && paper.length >= limits.length.min &&
           paper.length <= limits.length.max;
}

RuleMasks TellApart(const std::vector<RuleRecords>& rules, const std::vector<uint32_t>& records, uint32_t usedBits) {
    RuleMasks masks{{}, records, {}};
    std::vector<uint32_t> own(records.size());
    for (size_t rule = 0; rule < rules.size(); ++rule) {
        if (rules[rule].mask) {
            masks.ofRules.push_back(*rules[rule].mask);
            continue;
        }
        const std::vector<size_t>& positions = rules[rule].positions;
        uint32_t wanted = 0;
        std::vector<bool> named(records.size());
        for (size_t position : positions) {
            wanted |= records[position];
            named[position] = true;
        }
        bool shared = false;
        for (size_t i = 0; i < records.size(); ++i) {
            shared |= !named[i] && (records[i] & wanted) != 0;
        }
        if (shared) {
            wanted = 0;
            bool enough = true;
            for (size_t position : positions) {
                for (int bit = 31; own[position] == 0 && bit >= 0; --bit) {
                    own[position] = (usedBits >> bit & 1) == 0 ? uint32_t{1} << bit : 0;
                }
                enough &= own[position] != 0;
                usedBits |= own[position];
                masks.ofRecords[position] |= own[position];
                wanted |= own[position];
            }
            if (!enough) {
                masks.withoutBits.push_back(rule);
            }
        }
        masks.ofRules.push_back(wanted);
    }
    return masks;
}

uint32_t BitsOf(const std::vector<uint32_t>& masks) {
    uint32_t bits = 0;
    for (uint32_t mask : masks) {
        bits |= mask;
    }
    return bits;
}

}  // namespace velmora
