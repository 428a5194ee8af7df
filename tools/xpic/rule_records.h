// The records that rules become, margins and constraints: which papers a record holds for, and the masks by which it
// finds trays, media and extra keywords.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <vector>

#include "tools/xpic/model_source.h"
#include "tools/xpic/source_reader.h"

namespace velmora {

// Paper ids that a set can hold: those below.
inline constexpr int kPaperSetSize = 256;

struct SizeLimits {
    Range width;  // 0.1 mm
    Range length;
};

// The papers of a rule. Papers with ids beyond a set are found by their size among the custom ones, one record each.
struct PaperChoice {
    PaperSet set{};
    bool custom = false;
    bool any = false;  // whatever the paper: an empty set, whose size limits count for papers beyond a set all the same
    std::vector<const PaperSource*> bySize;
};

void AddToSet(PaperSet& set, int id);
bool IsInSet(const PaperSet& set, int id);
bool IsEmptySet(const PaperSet& set);

void AddPaper(PaperChoice& choice, const PaperSource& paper);
PaperChoice AllPapers(const ModelSource& model);
// The papers of a constraint that names none.
PaperChoice AnyPaper(const ModelSource& model);
inline constexpr SizeLimits kAnySize = {{0, UINT16_MAX}, {0, UINT16_MAX}};

// The sizes that the model allows users to define, no limit of them beyond `largest`.
SizeLimits AllowedSizes(const DeviceModel& device, int64_t largest);
bool Contains(const SizeLimits& limits, const PaperSource& paper);

template <class Record>
void SetLimits(Record& record, const SizeLimits& limits) {
    record.minWidth = static_cast<decltype(record.minWidth)>(limits.width.min);
    record.maxWidth = static_cast<decltype(record.maxWidth)>(limits.width.max);
    record.minLength = static_cast<decltype(record.minLength)>(limits.length.min);
    record.maxLength = static_cast<decltype(record.maxLength)>(limits.length.max);
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
    }
    if (choice.custom || choice.any) {
        SetLimits(record, limits);
    }
    if (choice.any || !IsEmptySet(record.papers)) {
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

// The records of one table that a rule is about: positions, or a mask given in place of them.
struct RuleRecords {
    std::vector<size_t> positions;
    std::optional<uint32_t> mask;
};

struct RuleMasks {
    std::vector<uint32_t> ofRules;    // one a rule, 0 for a rule without records
    std::vector<uint32_t> ofRecords;  // the records' own with the bits added that tell them apart
    std::vector<size_t> withoutBits;  // rules for which no bits were left
};

// The masks by which each rule finds its records and no others. Where the records' masks don't tell, records get bits
// of their own, from bit 31 down, past the used ones.
RuleMasks TellApart(const std::vector<RuleRecords>& rules, const std::vector<uint32_t>& records, uint32_t usedBits);

uint32_t BitsOf(const std::vector<uint32_t>& masks);

}  // namespace velmora
