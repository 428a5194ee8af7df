// The device block's tables: what a printer has and what it can't do.
#include <set>

#include "tools/xpic/description_reader.h"
#include "tools/xpic/rule_records.h"
#include "tools/xpic/source_document.h"

namespace velmora {
namespace {

template <class Record>
TicketValues TicketOf(const Record& record) {
    TicketValues values;
    std::memcpy(values.data(), record.ticketValues, sizeof record.ticketValues);
    return values;
}

}  // namespace

void DescriptionReader::ReadPapers() {
    const auto records = RecordsOf<PaperRecord>(offsetof(DeviceModel, paperTable), "$.papers");
    for (size_t i = 0; i < records.size(); ++i) {
        const PaperRecord& record = records[i];
        const std::string path = ElementPath("$.papers", i);
        PaperSource paper;
        paper.label = Label(record.nameRef, path, TextLimit::kPaperLabel);
        paper.id = record.paperId;
        if (record.paperId < 1 || (record.paperId > kLastStandardPaperId && record.paperId < kFirstOwnPaperId)) {
            Report("number-out-of-range", path + ".id",
                   std::to_string(record.paperId) + " is no paper id, 1 to " + std::to_string(kLastStandardPaperId) +
                       " or from " + std::to_string(kFirstOwnPaperId));
        }
        paper.keyword = Keyword(record.keywordRef, path);
        paper.width = record.width;
        paper.length = record.length;
        CheckRange(path + ".widthMm", record.width, 1, INT16_MAX);
        CheckRange(path + ".lengthMm", record.length, 1, INT16_MAX);
        paper.isMetric = record.isMetric != 0;
        CheckRange(path + ".metric", record.isMetric, 0, 1);
        paper.pclSizeCode = record.pclSizeCode;
        paper.fitPaperId = record.fitPaperId;
        CheckRange(path + ".fit", record.fitPaperId, 0, INT16_MAX);
        paper.rendererName = Name(record.rendererNameRef, path + ".rendererName", TextLimit::kRendererPaper);
        paper.ticketValues = TicketOf(record);
        model_.papers.push_back(std::move(paper));
    }
}

void DescriptionReader::ReadTrays() {
    const auto records = RecordsOf<BinRecord>(offsetof(DeviceModel, binTable), "$.trays");
    for (size_t i = 0; i < records.size(); ++i) {
        const BinRecord& record = records[i];
        const std::string path = ElementPath("$.trays", i);
        TraySource tray;
        tray.mask = record.optionMask;
        tray.binId = record.binId;
        if (record.binId < 1 || (record.binId > kLastStandardBin && record.binId < kFirstOwnBin)) {
            Report("number-out-of-range", path + ".bin",
                   std::to_string(record.binId) + " is no bin, 1 to " + std::to_string(kLastStandardBin) + " or from " +
                       std::to_string(kFirstOwnBin));
        }
        tray.label = Localized(static_cast<uint16_t>(record.nameRef), path + ".label", TextLimit::kTrayLabel);
        tray.keyword = Keyword(record.keywordRef, path);
        model_.trays.push_back(std::move(tray));
    }
}

void DescriptionReader::ReadExtraKeywords() {
    const auto records = RecordsOf<ExtraKeywordRecord>(offsetof(DeviceModel, extraKeywordTable), "$.extraKeywords");
    std::set<std::string> jobValues;
    for (size_t i = 0; i < records.size(); ++i) {
        const ExtraKeywordRecord& record = records[i];
        const std::string path = ElementPath("$.extraKeywords", i);
        const std::string valuePath = path + ".jobValue";
        ExtraKeywordSource keyword;
        keyword.mask = record.optionMask;
        keyword.label = Localized(record.nameRef, path + ".label", TextLimit::kLabel);
        keyword.keyword = Keyword(record.keywordRef, path);
        const size_t before = findings_.size();
        keyword.jobValue = JobTextOrNone(record.id, valuePath, TextLimit::kJobWord);
        if (findings_.size() == before && !jobValues.insert(keyword.jobValue).second) {
            Report("job-value-twice", valuePath,
                   keyword.jobValue.empty() ? "a second extra keyword without a job value"
                                            : "an earlier extra keyword has this job value");
        }
        model_.extraKeywords.push_back(std::move(keyword));
    }
}

void DescriptionReader::ReadMedia() {
    const auto records = RecordsOf<MediaRecord>(offsetof(DeviceModel, mediaTable), "$.media");
    for (size_t i = 0; i < records.size(); ++i) {
        const MediaRecord& record = records[i];
        const std::string path = ElementPath("$.media", i);
        MediumSource medium;
        medium.mark = record.mark;
        medium.label = Localized(static_cast<uint16_t>(record.nameRef), path + ".label", TextLimit::kPaperLabel);
        medium.jobText = JobText(record.jobTextRef, path + ".jobText", TextLimit::kJobText);
        medium.rendererName =
            Name(static_cast<uint16_t>(record.rendererNameRef), path + ".rendererName", TextLimit::kRendererMedium);
        medium.keyword = Keyword(record.keywordRef, path);
        medium.mediaId = record.mediaId;
        medium.ticketValues = TicketOf(record);
        model_.media.push_back(std::move(medium));
    }
}

void DescriptionReader::ReadMemory() {
    model_.memory = RecordsOf<MemoryRecord>(offsetof(DeviceModel, memoryTable), "$.memory.sizes");
}

void DescriptionReader::ReadFeatures() {
    const auto records = RecordsOf<FeatureRecord>(offsetof(DeviceModel, featureTable), "$.features");
    const std::optional<size_t> options = Table(offsetof(DeviceModel, optionTable), "$.features");
    if (records.size() > kMostFeatures) {
        Report("too-many-records", "$.features",
               std::to_string(records.size()) + " features, at most " + std::to_string(kMostFeatures));
    }
    for (size_t i = 0; i < std::min(records.size(), kMostFeatures); ++i) {
        const FeatureRecord& record = records[i];
        const std::string path = ElementPath("$.features", i);
        FeatureSource feature;
        feature.label = Label(record.nameRef, path, TextLimit::kLabel);
        feature.jobKey = JobText(record.jobKeyRef, path + ".jobKey", TextLimit::kJobWord);
        feature.mask = record.featureMask;
        feature.keyword = Keyword(record.keywordRef, path);
        const std::string list = path + ".options";
        for (const OptionRecord& optionRecord :
             Run<OptionRecord>(options, record.firstOption, list, OptionStride(record_.pdlType))) {
            const std::string optionPath = ElementPath(list, feature.options.size());
            const std::string valuePath = optionPath + ".jobValue";
            OptionSource option;
            option.label = Label(optionRecord.nameRef, optionPath, TextLimit::kLabel);
            option.jobValue = JobTextOrNone(optionRecord.jobValueRef, valuePath, TextLimit::kJobWord);
            option.keyword = Keyword(optionRecord.keywordRef, optionPath);
            feature.options.push_back(std::move(option));
        }
        model_.features.push_back(std::move(feature));
    }
}

void DescriptionReader::ReadKeywordLists() {
    constexpr size_t kSlots[kKeywordLists] = {
        offsetof(DeviceModel, photoIntentList), offsetof(DeviceModel, signatureOptionList),
        offsetof(DeviceModel, extraListA),      offsetof(DeviceModel, extraListB),
        offsetof(DeviceModel, mediaColorList),  offsetof(DeviceModel, extraListC)};
    for (size_t list = 0; list < kKeywordLists; ++list) {
        const std::string listPath = MemberPath(std::string(kRootPath), kKeywordListKeys[list]);
        for (const KeywordRecord& record : RecordsOf<KeywordRecord>(kSlots[list], listPath)) {
            const std::string path = ElementPath(listPath, model_.keywordLists[list].size());
            KeywordSource entry;
            entry.label = Localized(record.nameRef, path + ".label", TextLimit::kLabel);
            entry.keyword = Keyword(record.keywordRef, path);
            entry.ticketValues = TicketOf(record);
            model_.keywordLists[list].push_back(std::move(entry));
        }
    }
}

void DescriptionReader::CheckSlice(const CommandSlice& slice, const std::string& path) {
    if (slice.length > kLongestCommand) {
        Report("number-out-of-range", path,
               "a length of " + std::to_string(slice.length) + ", of which the bits above " +
                   std::to_string(kLongestCommand) + " are flags of the device mode");
    } else if (size_t{slice.start} + slice.length > model_.blob.size()) {
        Report("command-outside", path,
               std::to_string(slice.length) + " bytes at " + std::to_string(slice.start) + " of a command blob of " +
                   std::to_string(model_.blob.size()));
    }
}

void DescriptionReader::ReadColorFeatures() {
    constexpr size_t kSlots[kColorGroupCount] = {
        offsetof(DeviceModel, textColorFeatures), offsetof(DeviceModel, imageColorFeatures),
        offsetof(DeviceModel, graphicsColorFeatures), offsetof(DeviceModel, generalColorFeatures)};
    const std::optional<size_t> values = Table(offsetof(DeviceModel, colorOptionValues), "$.colorFeatures");
    for (const Word& word : kColorGroupWords) {
        const auto group = static_cast<size_t>(word.value - 1);
        const std::string groupPath = MemberPath("$.colorFeatures", word.name);
        const auto records = RecordsOf<ColorFeatureRecord>(kSlots[group], groupPath);
        if (records.size() > kMostColorFeatures) {
            Report("too-many-records", groupPath,
                   std::to_string(records.size()) + " colour features, at most " + std::to_string(kMostColorFeatures));
        }
        for (size_t i = 0; i < std::min(records.size(), kMostColorFeatures); ++i) {
            const std::string path = ElementPath(groupPath, i);
            ColorFeatureSource feature;
            feature.label = Label(records[i].nameRef, path, TextLimit::kLabel);
            const std::string list = path + ".values";
            for (const ColorValueRecord& record : Run<ColorValueRecord>(values, records[i].firstValue, list)) {
                const std::string valuePath = ElementPath(list, feature.values.size());
                ColorValueSource value;
                value.label = Label(record.nameRef, valuePath, TextLimit::kLabel);
                if (record_.pdlType == kPdlImage) {
                    const std::string wordPath = valuePath + ".jobValue";
                    value.jobValue = JobTextOrNone(record.firstStart, wordPath, TextLimit::kJobWord);
                } else {
                    value.first = {record.firstStart, record.firstLength};
                    CheckSlice(value.first, valuePath + ".command");
                    // Nobody reads the second pair without a length, or among the general features.
                    if (record.secondLength != 0 && group != kGeneralGroup) {
                        value.second = {record.secondStart, record.secondLength};
                        CheckSlice(value.second, valuePath + ".objectCommand");
                    }
                }
                feature.values.push_back(std::move(value));
            }
            model_.colorFeatures[group].push_back(std::move(feature));
        }
    }
}

void DescriptionReader::ReadColorModes() {
    const auto records = RecordsOf<ColorModeRecord>(offsetof(DeviceModel, colorModeTable), "$.colorModes");
    const std::optional<size_t> settings = Table(offsetof(DeviceModel, presetSettings), "$.colorModes");
    for (size_t i = 0; i < records.size(); ++i) {
        const ColorModeRecord& record = records[i];
        const std::string path = ElementPath("$.colorModes", i);
        ColorModeSource mode;
        mode.kind = record.kind;
        // Without one, the mode is named by its kind.
        mode.label = record.nameRef != 0 ? Label(record.nameRef, path, TextLimit::kLabel) : LocalizedText{};
        if (record.firstSetting >= 0) {
            mode.settings = Run<PresetSettingRecord>(settings, record.firstSetting, path + ".selects");
        }
        model_.colorModes.push_back(std::move(mode));
    }
}

template <class Record>
void DescriptionReader::CheckSizes(const Record& record, const std::string& path) {
    const auto check = [&](int64_t min, int64_t max, std::string_view key) {
        if (min > max) {
            Report("size-range", MemberPath(path, key),
                   "from " + std::to_string(min) + " to " + std::to_string(max) + " tenths of a millimetre");
        }
        CheckRange(MemberPath(path, key), min, 0, UINT16_MAX);
    };
    check(record.minWidth, record.maxWidth, "widthMm");
    check(record.minLength, record.maxLength, "lengthMm");
}

void DescriptionReader::ReadConstraints() {
    for (const ConstraintRecord& record :
         RecordsOf<ConstraintRecord>(offsetof(DeviceModel, constraintTable), "$.constraints")) {
        const std::string path = ElementPath("$.constraints", model_.constraints.size());
        ConstraintSource constraint;
        constraint.record.mark = 1;
        constraint.record.papers = record.papers;
        // An empty set stands for any paper, of the sizes where a paper has to be found by its size.
        if (ContainsPaper(record.papers, 0) || IsEmptySet(record.papers)) {
            constraint.record.minWidth = record.minWidth;
            constraint.record.maxWidth = record.maxWidth;
            constraint.record.minLength = record.minLength;
            constraint.record.maxLength = record.maxLength;
        }
        if (IsEmptySet(record.papers) && (record.minWidth > record.maxWidth || record.minLength > record.maxLength)) {
            SetLimits(constraint.record, {{0, 0}, {0, 0}});  // no size either, as a source can say it
        }
        constraint.record.binMask = record.binMask;
        constraint.record.extraKeywordMask = record.extraKeywordMask;
        constraint.record.mediaMask = record.mediaMask;
        constraint.record.flags = record.flags;
        if (ContainsPaper(record.papers, 0)) {
            CheckSizes(record, path);
        }
        constraint.message = Localized(record.messageRef, path + ".message", TextLimit::kPaperLabel);
        model_.constraints.push_back(std::move(constraint));
    }
}

void DescriptionReader::ReadMargins() {
    for (MarginRecord record : RecordsOf<MarginRecord>(offsetof(DeviceModel, marginTable), "$.margins")) {
        const std::string path = ElementPath("$.margins", model_.margins.size());
        record.mark = 1;
        record.orientationMask &= kBothOrientations;
        if (!ContainsPaper(record.papers, 0)) {
            record.minWidth = record.maxWidth = record.minLength = record.maxLength = 0;
        } else {
            CheckSizes(record, path);
        }
        CheckRange(path + ".unitsPerInch", record.unit, 1, INT16_MAX);
        if (IsEmptySet(record.papers)) {
            Report("margins-without-papers", path + ".papers", "its set of papers is empty");
        }
        model_.margins.push_back(record);
    }
}

}  // namespace velmora
