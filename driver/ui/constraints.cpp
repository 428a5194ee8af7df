#include "driver/ui/constraints.h"

#include "driver/devdesc/model_tables.h"
#include "driver/devdesc/paper_lookup.h"

namespace velmora {
namespace {

// Paper fields that mean the job's own.
constexpr int16_t kJobPaper = -1;

constexpr size_t kSearchedKeywords = 32;
constexpr uint32_t kBothSidesOnly = 1u << 0;  // of ConstraintRecord.flags; the other bits are installable options

// Values of separatorMode with which separators are printed on both sides where the job is.
constexpr uint16_t kSeparatorBothSidesA = 3;
constexpr uint16_t kSeparatorBothSidesB = 5;

// One use of paper in a job.
struct PaperUse {
    int paper;
    uint16_t bin;
    int16_t medium;  // from 1 on
    int16_t duplex;  // DMDUP_ (wingdi.h)
};

// The use as constraint records see it.
struct UseFacts {
    int paper;
    PaperSize size;  // of papers that sets can't name
    uint32_t binMask;
    uint32_t keywordMask;
    uint32_t mediaMask;
    bool isBothSides;
};

bool IsBothSides(int16_t duplex) {
    return duplex == DMDUP_VERTICAL || duplex == DMDUP_HORIZONTAL;
}

uint32_t BinMask(const DeviceModel& model, uint16_t bin) {
    if (bin < kFirstMediumSource) {
        for (const BinRecord& record : RecordList(model.binTable)) {
            if (record.binId == bin) {
                return record.optionMask;
            }
        }
    }
    return 0;
}

uint32_t KeywordMask(const DeviceModel& model, int16_t id) {
    size_t searched = 0;
    for (const ExtraKeywordRecord& record : RecordList(model.extraKeywordTable)) {
        if (searched++ == kSearchedKeywords) {
            break;
        }
        if (static_cast<int16_t>(record.id) == id) {
            return record.optionMask;
        }
    }
    return 0;
}

uint32_t MediaMask(const DeviceModel& model, int16_t medium) {
    const MediaRecord* const record =
        medium > 0 ? RecordAt(model.mediaTable, static_cast<size_t>(medium) - 1) : nullptr;
    return record ? record->mark : 0;
}

UseFacts FactsOf(const PrintableSettings& settings, const PaperUse& use) {
    const PrivateDevMode& own = settings.devMode.privatePart;
    UseFacts facts = {};
    facts.paper = IsFitToPaper(own.scaleMode) ? own.scaleValue
                  : use.paper == kJobPaper    ? settings.devMode.publicPart.dmPaperSize
                                              : use.paper;
    if (facts.paper >= kPaperSetIds) {
        facts.size = LookupPaperSize(settings.printer, &settings.model, facts.paper);
    }
    facts.binMask = BinMask(settings.model, use.bin);
    facts.keywordMask = KeywordMask(settings.model, own.extraKeywordIndex);
    facts.mediaMask = MediaMask(settings.model, use.medium);
    facts.isBothSides = IsBothSides(use.duplex);
    return facts;
}

bool IsAnyPaper(const PaperSet& papers) {
    for (const uint8_t byte : papers.bytes) {
        if (byte != 0) {
            return false;
        }
    }
    return true;
}

// Sizes of the user's own papers lie within a record's bounds; those of the model's are both of its bounds.
bool HoldsForSize(const ConstraintRecord& record, const UseFacts& use, size_t userPapers) {
    if (use.paper < kFirstCustomPaper + static_cast<int>(userPapers)) {
        return use.size.width >= record.minWidth && use.size.width <= record.maxWidth &&
               use.size.length >= record.minLength && use.size.length <= record.maxLength;
    }
    return use.size.width == record.minWidth && use.size.width == record.maxWidth &&
           use.size.length == record.minLength && use.size.length == record.maxLength;
}

bool HoldsForPaper(const ConstraintRecord& record, const UseFacts& use, size_t userPapers) {
    const bool isCustom = use.paper >= kPaperSetIds;
    if (!IsAnyPaper(record.papers) &&
        (use.paper < 0 || !ContainsPaper(record.papers, isCustom ? kCustomInSet : use.paper))) {
        return false;
    }
    return !isCustom || HoldsForSize(record, use, userPapers);
}

bool SharesBit(uint32_t recordMask, uint32_t useMask) {
    return recordMask == 0 || (recordMask & useMask) != 0;
}

// Whether each feature that the record's options are about is set to an option that the device is told of.
bool AreFeaturesSelected(const PrintableSettings& settings, uint32_t flags) {
    size_t index = 0;
    for (const FeatureRecord& feature : RecordList(settings.model.featureTable)) {
        const size_t selection = index++;
        if ((feature.featureMask & flags) == 0 || (feature.featureMask & settings.installed.optionFlags) == 0) {
            continue;
        }
        const int16_t(&selections)[32] = settings.devMode.privatePart.featureSelection;
        const OptionRecord* const option = selection < ARRAYSIZE(selections)
                                               ? OptionAt(settings.model, feature.firstOption + selections[selection])
                                               : nullptr;
        if (!option || option->jobValueRef == 0) {
            return false;
        }
    }
    return true;
}

bool HoldsForOptions(const ConstraintRecord& record, const PrintableSettings& settings, bool isBothSides) {
    const uint32_t installed = settings.installed.optionFlags;
    if ((record.flags & kBothSidesOnly) != 0 && ((installed & kDuplexInstalled) == 0 || !isBothSides)) {
        return false;
    }
    const uint32_t options = record.flags & ~kBothSidesOnly;
    return options == 0 || ((options & installed) != 0 && AreFeaturesSelected(settings, record.flags));
}

const ConstraintRecord* FindConflictOf(const PrintableSettings& settings, const PaperUse& use) {
    const UseFacts facts = FactsOf(settings, use);
    for (const ConstraintRecord& record : RecordList(settings.model.constraintTable)) {
        if (HoldsForPaper(record, facts, settings.userPapers) && SharesBit(record.binMask, facts.binMask) &&
            SharesBit(record.extraKeywordMask, facts.keywordMask) && SharesBit(record.mediaMask, facts.mediaMask) &&
            HoldsForOptions(record, settings, facts.isBothSides)) {
            return &record;
        }
    }
    return nullptr;
}

}  // namespace

const ConstraintRecord* FindConflict(const PrintableSettings& settings) {
    const DEVMODEW& job = settings.devMode.publicPart;
    const PrivateDevMode& own = settings.devMode.privatePart;
    const auto duplexIf = [&](bool isBothSides) { return isBothSides ? job.dmDuplex : SHORT{DMDUP_SIMPLEX}; };
    const bool separatorBothSides =
        (own.separatorMode == kSeparatorBothSidesA || own.separatorMode == kSeparatorBothSidesB) &&
        IsBothSides(job.dmDuplex);
    const struct {
        bool isUsed;
        PaperUse use;
    } uses[] = {
        {true, {job.dmPaperSize, static_cast<uint16_t>(job.dmDefaultSource), own.mediaIndex, job.dmDuplex}},
        {own.frontCoverMode != 0,
         {own.frontCoverPaper, own.frontCoverBin, own.frontCoverMedia, duplexIf(own.frontCoverBothSides != 0)}},
        {own.backCoverMode != 0,
         {own.backCoverPaper, own.backCoverBin, own.backCoverMedia, duplexIf(own.backCoverBothSides != 0)}},
        {own.interleaveMode != 0, {own.interleavePaper, own.interleaveBin, own.interleaveMedia, job.dmDuplex}},
        {own.separatorMode != 0,
         {own.separatorPaper, own.separatorBin, own.separatorMedia, duplexIf(separatorBothSides)}},
    };
    for (const auto& [isUsed, use] : uses) {
        const ConstraintRecord* const conflict = isUsed ? FindConflictOf(settings, use) : nullptr;
        if (conflict) {
            return conflict;
        }
    }
    return nullptr;
}

}  // namespace velmora
