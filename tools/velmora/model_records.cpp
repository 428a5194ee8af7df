#include "tools/velmora/model_records.h"

#include <utility>

#include "driver/devdesc/model_tables.h"
#include "tools/velmora/escapes.h"
#include "tools/velmora/model_cells.h"
#include "tools/xpic/model_limits.h"
#include "tools/xpic/vocabulary.h"

namespace velmora {
namespace {

constexpr double kMillimetresPerInch = 25.4;

// In JSON only: what the names in another column were found by.
Cell HiddenMaskCell(uint32_t mask) {
    return {"", mask};
}

Cell OptionalNumberCell(int64_t number) {
    return number == 0 ? Cell{"", 0} : NumberCell(number);
}

// "90.0 to 297.0", or "90.0" where that is all, from 0.1 mm; empty where both ends are 0.
Cell SizeRangeCell(int64_t smallest, int64_t largest) {
    if (smallest == 0 && largest == 0) {
        return EmptyCell();
    }
    const Cell ends[] = {MillimetreCell(smallest), MillimetreCell(largest)};
    return {smallest == largest ? ends[0].text : ends[0].text + " to " + ends[1].text,
            Json::array({ends[0].json, ends[1].json})};
}

// What a tray must find installed, one of these; nothing where it shares one of the bits that are always set.
std::vector<std::string> TrayNeeds(uint32_t mask) {
    return (mask & kAlwaysInstalled) != 0 ? std::vector<std::string>() : TrayOptionNames(mask);
}

// Device options by name; the mask in JSON.
Cell DeviceOptionsCell(uint32_t mask) {
    return {ListCell(DeviceOptionNames(mask)).text, mask};
}

Table ReportPapers(const PrinterModel& model) {
    return ReportRecords<PaperRecord>(
        "Papers", "papers", model, model->paperTable,
        {{{"ID", "id"}, VELMORA_CELL(PaperRecord, NumberCell(r.paperId))},
         {{"Name", "name"}, VELMORA_CELL(PaperRecord, TextOrNull(m.Localized(static_cast<int16_t>(r.nameRef))))},
         {{"Width mm", "widthMm"}, VELMORA_CELL(PaperRecord, MillimetreCell(r.width))},
         {{"Length mm", "lengthMm"}, VELMORA_CELL(PaperRecord, MillimetreCell(r.length))},
         {{"Metric", "isMetric"}, VELMORA_CELL(PaperRecord, FlagCell(r.isMetric != 0))},
         {{"PCL code", "pclSizeCode"}, VELMORA_CELL(PaperRecord, NumberCell(r.pclSizeCode))},
         {{"Scaled to", "fitPaperId"},
          VELMORA_CELL(PaperRecord,
                       (Cell{r.fitPaperId == 0 ? std::string() : m.PaperName(r.fitPaperId), r.fitPaperId}))},
         {{"Renderer", "rendererName"}, VELMORA_CELL(PaperRecord, TextOrNull(m.Name(r.rendererNameRef)))},
         {{"Keyword", "keyword"}, VELMORA_CELL(PaperRecord, TextOrNull(m.Name(r.keywordRef)))},
         {{"Ticket", "ticketValues"}, VELMORA_CELL(PaperRecord, TicketCell(r))}});
}

Table ReportTrays(const PrinterModel& model) {
    return ReportRecords<BinRecord>(
        "Trays", "trays", model, model->binTable,
        {{{"ID", "id"}, VELMORA_CELL(BinRecord, NumberCell(r.binId))},
         {{"Name", "name"}, VELMORA_CELL(BinRecord, TextOrNull(m.Localized(r.nameRef)))},
         {{"Mask", "optionMask"}, VELMORA_CELL(BinRecord, MaskCell(r.optionMask))},
         {{"Needs one of", "needs"}, VELMORA_CELL(BinRecord, ListCell(TrayNeeds(r.optionMask)))},
         {{"Offered", "isOffered"},
          VELMORA_CELL(BinRecord, FlagCell((r.optionMask & m.Options().installedOptions) != 0))},
         {{"Keyword", "keyword"}, VELMORA_CELL(BinRecord, TextOrNull(m.Name(r.keywordRef)))}});
}

Table ReportExtraKeywords(const PrinterModel& model) {
    return ReportRecords<ExtraKeywordRecord>(
        "Extra keywords", "extraKeywords", model, model->extraKeywordTable,
        {{{"ID", "id"}, VELMORA_CELL(ExtraKeywordRecord, NumberCell(r.id))},
         {{"Name", "name"}, VELMORA_CELL(ExtraKeywordRecord, TextOrNull(m.Localized(static_cast<int16_t>(r.nameRef))))},
         {{"Mask", "optionMask"}, VELMORA_CELL(ExtraKeywordRecord, MaskCell(r.optionMask))},
         {{"Job value", "jobValue"}, VELMORA_CELL(ExtraKeywordRecord, TextOrNull(m.Text(r.id)))},
         {{"Keyword", "keyword"}, VELMORA_CELL(ExtraKeywordRecord, TextOrNull(m.Name(r.keywordRef)))}});
}

Table ReportMedia(const PrinterModel& model) {
    return ReportRecords<MediaRecord>(
        "Media", "media", model, model->mediaTable,
        {{{"No.", "number"}, VELMORA_CELL(MediaRecord, NumberCell(static_cast<int64_t>(i) + 1))},
         {{"Name", "name"}, VELMORA_CELL(MediaRecord, TextOrNull(m.Localized(r.nameRef)))},
         {{"ID", "id"}, VELMORA_CELL(MediaRecord, NumberCell(r.mediaId))},
         {{"Mask", "mask"}, VELMORA_CELL(MediaRecord, MaskCell(r.mark))},
         {{"Job command", "jobText"}, VELMORA_CELL(MediaRecord, TextOrNull(m.Text(r.jobTextRef)))},
         {{"Renderer", "rendererName"}, VELMORA_CELL(MediaRecord, TextOrNull(m.Name(r.rendererNameRef)))},
         {{"Keyword", "keyword"}, VELMORA_CELL(MediaRecord, TextOrNull(m.Name(r.keywordRef)))},
         {{"Ticket", "ticketValues"}, VELMORA_CELL(MediaRecord, TicketCell(r))}});
}

Table ReportResolutions(const PrinterModel& model) {
    return ReportRecords<ResolutionRecord>(
        "Resolutions", "resolutions", model, model->resolutionTable,
        {{{"Index", "index"}, VELMORA_CELL(ResolutionRecord, NumberCell(static_cast<int64_t>(i)))},
         {{"Name", "name"}, VELMORA_CELL(ResolutionRecord, TextOrNull(m.Localized(static_cast<int16_t>(r.nameRef))))},
         {{"ID", "id"}, VELMORA_CELL(ResolutionRecord, NumberCell(r.resolutionId))},
         {{"X dpi", "xDpi"}, VELMORA_CELL(ResolutionRecord, NumberCell(r.xDpi))},
         {{"Y dpi", "yDpi"}, VELMORA_CELL(ResolutionRecord, NumberCell(r.yDpi))},
         {{"Pattern k", "patternSize"}, VELMORA_CELL(ResolutionRecord, OptionalNumberCell(r.patternSize))},
         {{"Pattern", "patternIndex"},
          VELMORA_CELL(ResolutionRecord, r.patternSize == 0 ? EmptyCell() : NumberCell(r.patternIndex))},
         {{"Job command", "jobText"}, VELMORA_CELL(ResolutionRecord, TextOrNull(m.Text(r.jobTextRef)))},
         {{"Keyword", "keyword"}, VELMORA_CELL(ResolutionRecord, TextOrNull(m.Name(r.keywordRef)))},
         {{"Ticket", "ticketValues"}, VELMORA_CELL(ResolutionRecord, TicketCell(r))}});
}

// The key of a new printer; one that no record has stands for the first record.
bool IsDefaultMemory(const PrinterModel& model, const MemoryRecord& record, size_t index) {
    const auto isDefaultKey = [&](const MemoryRecord& other) {
        return other.key == model->memoryKeyBase + model->memoryKeyStep;
    };
    const RecordList<MemoryRecord> records(model->memoryTable);
    for (const MemoryRecord& other : records) {
        if (isDefaultKey(other)) {
            return &other == &record;
        }
    }
    return index == 0;
}

Table ReportMemory(const PrinterModel& model) {
    return ReportRecords<MemoryRecord>(
        "Memory", "memory", model, model->memoryTable,
        {{{"Key", "key"}, VELMORA_CELL(MemoryRecord, NumberCell(r.key))},
         {{"MB", "megabytes"}, VELMORA_CELL(MemoryRecord, NumberCell(r.megabytes))},
         {{"Default", "isDefault"}, VELMORA_CELL(MemoryRecord, FlagCell(IsDefaultMemory(m, r, i)))}});
}

// The papers of a record by name, ids that the model doesn't list by number. With the custom sizes come the papers
// whose ids a set can't hold: they are found by their sizes.
template <class Record>
Cell PapersCell(const PrinterModel& model, const Record& record) {
    constexpr int kCustomSizes = 0;
    constexpr int kIds = static_cast<int>(sizeof(record.papers) * 8);
    std::vector<std::string> names;
    for (const PaperRecord& paper : RecordList(model->paperTable)) {
        const bool isFound = paper.paperId >= kIds
                                 ? ContainsPaper(record.papers, kCustomSizes) && paper.width >= record.minWidth &&
                                       paper.width <= record.maxWidth && paper.length >= record.minLength &&
                                       paper.length <= record.maxLength
                                 : paper.paperId > kCustomSizes && ContainsPaper(record.papers, paper.paperId);
        if (isFound) {
            names.push_back(model.Localized(static_cast<int16_t>(paper.nameRef)));
        }
    }
    for (int id = 0; id < kIds; ++id) {
        if (ContainsPaper(record.papers, id) && model.PaperName(id).empty()) {
            names.push_back(id == kCustomSizes ? "custom sizes" : "paper " + std::to_string(id));
        }
    }
    return ListCell(names);
}

Cell MarginCell(const MarginRecord& record, int16_t margin) {
    return record.unit == 0 ? EmptyCell() : DecimalCell(margin * kMillimetresPerInch / record.unit, 2);
}

}  // namespace

Table ReportMarginRecords(std::string title, std::string key, const PrinterModel& model, const MarginRecord* records) {
    return ReportRecords<MarginRecord>(
        std::move(title), std::move(key), model, records,
        {{{"Papers", "papers"}, VELMORA_CELL(MarginRecord, PapersCell(m, r))},
         {{"Widths", "widthsMm"}, VELMORA_CELL(MarginRecord, SizeRangeCell(r.minWidth, r.maxWidth))},
         {{"Lengths", "lengthsMm"}, VELMORA_CELL(MarginRecord, SizeRangeCell(r.minLength, r.maxLength))},
         {{"For", "orientations"},
          VELMORA_CELL(MarginRecord, TextOrNull(WordsForBits(kOrientationWords, r.orientationMask)))},
         {{"Left", "leftMm"}, VELMORA_CELL(MarginRecord, MarginCell(r, r.leftMargin))},
         {{"Top", "topMm"}, VELMORA_CELL(MarginRecord, MarginCell(r, r.topMargin))},
         {{"Right", "rightMm"}, VELMORA_CELL(MarginRecord, MarginCell(r, r.rightMargin))},
         {{"Bottom", "bottomMm"}, VELMORA_CELL(MarginRecord, MarginCell(r, r.bottomMargin))},
         {{"Per inch", "unitsPerInch"}, VELMORA_CELL(MarginRecord, NumberCell(r.unit))}});
}

namespace {

Table ReportMargins(const PrinterModel& model) {
    return ReportMarginRecords("Margins, mm", "margins", model, model->marginTable);
}

// The names of the records of a list whose mask, which `maskOf` reads, shares a bit with `mask`. A mask that finds none
// is told as it is.
template <class Record, class MaskOf>
Cell MatchingCell(const PrinterModel& model, const Record* table, uint32_t mask, MaskOf maskOf) {
    std::vector<std::string> names;
    for (const Record& record : RecordList(table)) {
        if ((maskOf(record) & mask) != 0) {
            names.push_back(model.Localized(static_cast<int16_t>(record.nameRef)));
        }
    }
    if (names.empty() && mask != 0) {
        names.push_back("none, mask " + HexNumber(mask));
    }
    return ListCell(names);
}

Cell TraysCell(const PrinterModel& model, uint32_t mask) {
    return MatchingCell(model, model->binTable, mask, [](const BinRecord& tray) { return tray.optionMask; });
}

Cell MediaCell(const PrinterModel& model, uint32_t mask) {
    return MatchingCell(model, model->mediaTable, mask, [](const MediaRecord& medium) { return medium.mark; });
}

Cell ExtraKeywordsCell(const PrinterModel& model, uint32_t mask) {
    return MatchingCell(model, model->extraKeywordTable, mask,
                        [](const ExtraKeywordRecord& keyword) { return keyword.optionMask; });
}

Table ReportConstraints(const PrinterModel& model) {
    return ReportRecords<ConstraintRecord>(
        "Combinations that can't be printed", "constraints", model, model->constraintTable,
        {{{"Papers", "papers"}, VELMORA_CELL(ConstraintRecord, PapersCell(m, r))},
         {{"Widths mm", "widthsMm"}, VELMORA_CELL(ConstraintRecord, SizeRangeCell(r.minWidth, r.maxWidth))},
         {{"Lengths mm", "lengthsMm"}, VELMORA_CELL(ConstraintRecord, SizeRangeCell(r.minLength, r.maxLength))},
         {{"Trays", "trays"}, VELMORA_CELL(ConstraintRecord, TraysCell(m, r.binMask))},
         {{"Media", "media"}, VELMORA_CELL(ConstraintRecord, MediaCell(m, r.mediaMask))},
         {{"Extra keywords", "extraKeywords"},
          VELMORA_CELL(ConstraintRecord, ExtraKeywordsCell(m, r.extraKeywordMask))},
         {{"Both sides", "onlyBothSides"}, VELMORA_CELL(ConstraintRecord, FlagCell((r.flags & kOnlyOnBothSides) != 0))},
         {{"Options", "optionMask"}, VELMORA_CELL(ConstraintRecord, DeviceOptionsCell(r.flags & ~kOnlyOnBothSides))},
         {{"Tray mask", "trayMask"}, VELMORA_CELL(ConstraintRecord, HiddenMaskCell(r.binMask))},
         {{"Media mask", "mediaMask"}, VELMORA_CELL(ConstraintRecord, HiddenMaskCell(r.mediaMask))},
         {{"Extra-keyword mask", "extraKeywordMask"},
          VELMORA_CELL(ConstraintRecord, HiddenMaskCell(r.extraKeywordMask))},
         {{"Message", "message"},
          VELMORA_CELL(ConstraintRecord, TextOrNull(m.Localized(static_cast<int16_t>(r.messageRef))))}});
}

Table ReportFeatures(const PrinterModel& model) {
    return ReportRecords<FeatureRecord>(
        "Features", "features", model, model->featureTable,
        {{{"Index", "index"}, VELMORA_CELL(FeatureRecord, NumberCell(static_cast<int64_t>(i)))},
         {{"Name", "name"}, VELMORA_CELL(FeatureRecord, TextOrNull(m.Localized(static_cast<int16_t>(r.nameRef))))},
         {{"Needs", "featureMask"}, VELMORA_CELL(FeatureRecord, DeviceOptionsCell(r.featureMask))},
         {{"Options", "optionCount"},
          VELMORA_CELL(FeatureRecord, NumberCell(static_cast<int64_t>(CountOptions(*m, r))))},
         {{"Job key", "jobKey"}, VELMORA_CELL(FeatureRecord, TextOrNull(m.Text(r.jobKeyRef)))},
         {{"Keyword", "keyword"}, VELMORA_CELL(FeatureRecord, TextOrNull(m.Name(r.keywordRef)))}});
}

Table ReportOptions(const PrinterModel& model) {
    Table table = {"Options of the features",
                   "featureOptions",
                   {{"Feature", "feature"},
                    {"Index", "index"},
                    {"Name", "name"},
                    {"Job value", "jobValue"},
                    {"Keyword", "keyword"}}};
    for (const FeatureRecord& feature : RecordList(model->featureTable)) {
        const size_t count = CountOptions(*model, feature);
        for (size_t i = 0; i < count; ++i) {
            const OptionRecord* const option = OptionAt(*model, feature.firstOption + static_cast<int32_t>(i));
            table.rows.push_back(
                {TextCell(model.Localized(static_cast<int16_t>(feature.nameRef))), NumberCell(static_cast<int64_t>(i)),
                 TextOrNull(model.Localized(static_cast<int16_t>(option->nameRef))),
                 TextOrNull(model.Text(option->jobValueRef)), TextOrNull(model.Name(option->keywordRef))});
        }
    }
    return table;
}

}  // namespace

std::vector<Table> ReportModelRecords(const PrinterModel& model) {
    std::vector<Table> tables;
    for (const auto report : {ReportPapers, ReportTrays, ReportExtraKeywords, ReportMedia, ReportResolutions,
                              ReportMemory, ReportMargins, ReportConstraints, ReportFeatures, ReportOptions}) {
        tables.push_back(report(model));
    }
    return tables;
}

}  // namespace velmora
