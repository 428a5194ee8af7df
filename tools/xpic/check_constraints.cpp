// Constraints that forbid nothing, or too much.
#include <algorithm>

#include "driver/devdesc/model_tables.h"
#include "driver/devdesc/offered_papers.h"
#include "tools/xpic/model_checker.h"
#include "tools/xpic/model_fields.h"
#include "tools/xpic/model_limits.h"
#include "tools/xpic/rule_records.h"
#include "tools/xpic/source_document.h"
#include "tools/xpic/standard_papers.h"

namespace velmora {
namespace {

bool IsWithin(const ConstraintRecord& record, int width, int length) {
    return width >= record.minWidth && width <= record.maxWidth && length >= record.minLength &&
           length <= record.maxLength;
}

bool IsWithin(const ConstraintRecord& record, std::string_view standardPaper) {
    const StandardPaper* paper = FindStandardPaper(standardPaper);
    return IsWithin(record, paper->width, paper->length);
}

// True where the mask is 0 or one of the first `searched` records shares a bit with it.
template <class Record>
bool HasRecordOf(uint32_t mask, const std::vector<Record>& records, uint32_t Record::*own, size_t searched = SIZE_MAX) {
    const auto end = records.begin() + static_cast<ptrdiff_t>(std::min(searched, records.size()));
    return mask == 0 ||
           std::any_of(records.begin(), end, [&](const Record& record) { return (record.*own & mask) != 0; });
}

}  // namespace

bool ModelChecker::HasPaperOf(const ConstraintRecord& record) const {
    if (IsEmptySet(record.papers)) {
        return true;
    }
    const bool holdsForCustom = ContainsPaper(record.papers, 0);
    for (const OfferedPaper& paper : kOfferedPapers) {
        if (ContainsPaper(record.papers, paper.paperId)) {
            return true;
        }
    }
    for (const PaperSource& paper : model_.papers) {
        // Ids 256 to 447 stand for the locale's default paper, those from 448 are found by exactly their size.
        const bool isExact = record.minWidth == record.maxWidth && record.minLength == record.maxLength;
        const bool holds = paper.id < kFirstOwnPaperId ? ContainsPaper(record.papers, paper.id)
                           : paper.id < kFirstCustomId
                               ? holdsForCustom && (IsWithin(record, "A4") || IsWithin(record, "Letter"))
                               : holdsForCustom && isExact && IsWithin(record, paper.width, paper.length);
        if (holds) {
            return true;
        }
    }
    const DeviceModel& device = model_.device;
    return holdsForCustom && HasCustomSizes() && record.minWidth <= device.customMaxWidth &&
           record.maxWidth >= device.customMinWidth && record.minLength <= device.customMaxLength &&
           record.maxLength >= device.customMinLength;
}

bool ModelChecker::CanUseOptions(uint32_t flags) const {
    const auto canSend = [](const FeatureSource& feature) {
        return std::any_of(feature.options.begin(), feature.options.end(),
                           [](const OptionSource& option) { return !option.jobValue.empty(); });
    };
    for (uint32_t bit = 2; bit != 0; bit <<= 1) {
        // With this option installed alone, all the features that depend on it must have a job value selected.
        if ((flags & bit) != 0 &&
            std::all_of(model_.features.begin(), model_.features.end(),
                        [&](const FeatureSource& feature) { return (feature.mask & bit) == 0 || canSend(feature); })) {
            return true;
        }
    }
    return false;
}

std::string ModelChecker::WhyNeverMatches(const ConstraintRecord& record) const {
    if (!HasPaperOf(record)) {
        return "it holds for no paper of the model";
    }
    if (!HasRecordOf(record.binMask, model_.trays, &TraySource::mask)) {
        return "it holds for no tray of the model";
    }
    if (!HasRecordOf(record.extraKeywordMask, model_.extraKeywords, &ExtraKeywordSource::mask,
                     kSearchedExtraKeywords)) {
        return "it holds for no extra keyword of the model";
    }
    if (!HasRecordOf(record.mediaMask, model_.media, &MediumSource::mark)) {
        return "it holds for no medium of the model";
    }
    if ((record.flags & kOnlyOnBothSides) != 0 && !HasDuplexUnit(model_.device)) {
        return "it holds for printing on both sides, and the model has no duplex unit";
    }
    if ((record.flags & ~kOnlyOnBothSides) != 0 && !CanUseOptions(record.flags)) {
        return "its options belong to features without job values";
    }
    return {};
}

bool ModelChecker::HoldsForDefaults(const ConstraintRecord& record) const {
    const DeviceModel& device = model_.device;
    const auto tray = std::find_if(model_.trays.begin(), model_.trays.end(),
                                   [&](const TraySource& candidate) { return candidate.binId == device.defaultBin; });
    const uint32_t trayMask = tray != model_.trays.end() ? tray->mask : 0;
    const uint32_t mediaMask = device.defaultMedia >= 1 && device.defaultMedia <= model_.media.size()
                                   ? model_.media[device.defaultMedia - size_t{1}].mark
                                   : 0;
    const auto searched = model_.extraKeywords.begin() +
                          static_cast<ptrdiff_t>(std::min(kSearchedExtraKeywords, model_.extraKeywords.size()));
    const auto keyword = std::find_if(model_.extraKeywords.begin(), searched,
                                      [](const ExtraKeywordSource& candidate) { return candidate.jobValue.empty(); });
    const uint32_t keywordMask = keyword != searched ? keyword->mask : 0;
    const auto agrees = [](uint32_t wanted, uint32_t mask) { return wanted == 0 || (wanted & mask) != 0; };
    return record.flags == 0 && (IsEmptySet(record.papers) || ContainsPaper(record.papers, kA4)) &&
           agrees(record.binMask, trayMask) && agrees(record.mediaMask, mediaMask) &&
           agrees(record.extraKeywordMask, keywordMask);
}

void ModelChecker::CheckConstraints() {
    size_t next = 0;
    for (size_t i = 0; i < model_.constraints.size(); i = next) {
        // The records that one element of the source made.
        const std::vector<size_t>& elements = model_.constraintElements;
        next = i + 1;
        while (!elements.empty() && next < elements.size() && elements[next] == elements[i]) {
            ++next;
        }
        const std::string path = ElementPath("$.constraints", elements.empty() ? i : elements[i]);
        const LocalizedText& message = model_.constraints[i].message;
        CheckText(message, path + ".message");
        if (message.Absent()) {
            Report("constraint-without-message", path, "there is no message");
        }
        std::string why;
        bool canMatch = false;
        bool holdsForDefaults = false;
        for (size_t record = i; record < next; ++record) {
            why = WhyNeverMatches(model_.constraints[record].record);
            canMatch |= why.empty();
            holdsForDefaults |= HoldsForDefaults(model_.constraints[record].record);
        }
        if (!canMatch) {
            Report("constraint-never-matches", path, why);
        } else if (holdsForDefaults) {
            Report("constraint-on-defaults", path, "it forbids what new device modes begin with");
        }
    }
}

}  // namespace velmora
