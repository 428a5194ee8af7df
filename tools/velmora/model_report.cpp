#include "tools/velmora/model_report.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string_view>

#include "driver/devdesc/description_file.h"
#include "driver/devdesc/model_tables.h"
#include "driver/devmode/color_groups.h"
#include "platform/kernel/text.h"
#include "tools/velmora/description_report.h"
#include "tools/velmora/escapes.h"
#include "tools/velmora/printer_model.h"
#include "tools/xpic/model_limits.h"
#include "tools/xpic/vocabulary.h"

namespace velmora {
namespace {

constexpr double kMillimetresPerInch = 25.4;

Cell TextOrNull(std::string text) {
    return text.empty() ? EmptyCell() : TextCell(std::move(text));
}

Cell MaskCell(uint32_t mask) {
    return {HexNumber(mask), mask};
}

// In JSON only: what the names in another column were found by.
Cell HiddenMaskCell(uint32_t mask) {
    return {"", mask};
}

Cell OptionalNumberCell(int64_t number) {
    return number == 0 ? Cell{"", 0} : NumberCell(number);
}

// From 0.1 mm.
Cell MillimetreCell(int64_t tenths) {
    return DecimalCell(static_cast<double>(tenths) / 10, 1);
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

// The values of a record for the PrintTicket provider; no text where all are 0.
template <class Record>
Cell TicketCell(const Record& record) {
    uint32_t values[3];
    static_assert(sizeof(values) == sizeof(record.ticketValues));
    memcpy(values, &record.ticketValues, sizeof(values));
    const bool isUsed = std::ranges::any_of(values, [](uint32_t value) { return value != 0; });
    std::string text;
    for (const uint32_t value : values) {
        text += (text.empty() ? "" : " ") + std::to_string(value);
    }
    return {isUsed ? text : "", values};
}

// The word for a value; empty where there is none.
std::string WordFor(Words words, int64_t value) {
    const auto word = std::ranges::find(words, value, &Word::value);
    return word != words.end() ? std::string(word->name) : std::string();
}

// The words for the bits that are set; bits without a word in hexadecimal.
std::string WordsForBits(Words words, uint64_t bits) {
    std::string text;
    const auto add = [&](const std::string& word) { text += (text.empty() ? "" : ", ") + word; };
    for (const Word& word : words) {
        const auto bit = static_cast<uint64_t>(word.value);
        if (bit != 0 && (bits & bit) == bit) {
            add(std::string(word.name));
            bits &= ~bit;
        }
    }
    if (bits != 0) {
        add(HexNumber(bits));
    }
    return text;
}

// The options whose bits are set, by their words, whose values are bit numbers; "bit 5" for one that has no word.
std::vector<std::string> OptionNames(Words bitNumbers, uint32_t mask) {
    std::vector<std::string> names;
    for (int bit = 0; bit < 32; ++bit) {
        if ((mask >> bit & 1) != 0) {
            const std::string word = WordFor(bitNumbers, bit);
            names.push_back(word.empty() ? "bit " + std::to_string(bit) : word);
        }
    }
    return names;
}

}  // namespace

std::vector<std::string> TrayOptionNames(uint32_t mask) {
    return OptionNames(kTrayOptionWords, mask);
}

std::vector<std::string> DeviceOptionNames(uint32_t mask) {
    return OptionNames(kDeviceOptionWords, mask);
}

namespace {

// What a tray must find installed, one of these; nothing where it shares one of the bits that are always set.
std::vector<std::string> TrayNeeds(uint32_t mask) {
    return (mask & kAlwaysInstalled) != 0 ? std::vector<std::string>() : TrayOptionNames(mask);
}

// Device options by name; the mask in JSON.
Cell DeviceOptionsCell(uint32_t mask) {
    return {ListCell(DeviceOptionNames(mask)).text, mask};
}

// A plain value of the model: as it stands there, and what that means.
struct Value {
    Cell cell;
    std::string name = {};
};

Value WordValue(Words words, int64_t value) {
    return {NumberCell(value), WordFor(words, value)};
}

Value BitsValue(Words words, uint32_t bits) {
    return {MaskCell(bits), WordsForBits(words, bits)};
}

struct ValueRow {
    const char* name;
    Value (*read)(const PrinterModel& model);
    const char* meaning;
};

#define NUMBER(member, meaning)                                                                      \
    {                                                                                                \
#member, [](const PrinterModel& model) { return Value{NumberCell(model->member)}; }, meaning \
    }
#define TENTHS(member, meaning)                                                                                          \
    {                                                                                                                    \
#member,                                                                                                         \
            [](const PrinterModel&                                                                                       \
                   model) { return Value{NumberCell(model->member), MillimetreCell(model->member).text + " mm"}; },      \
                                                                                                                 meaning \
    }
#define WORD_OF(member, words, meaning)                                                             \
    {                                                                                               \
#member, [](const PrinterModel& model) { return WordValue(words, model->member); }, meaning \
    }
#define BITS_OF(member, words, meaning)                                                             \
    {                                                                                               \
#member, [](const PrinterModel& model) { return BitsValue(words, model->member); }, meaning \
    }
#define LOCALIZED(member, meaning)                                                                                             \
    {                                                                                                                          \
#member,                                                                                                               \
            [](const PrinterModel&                                                                                             \
                   model) { return Value{NumberCell(model->member), model.Localized(static_cast<int>(model->member))}; },      \
                                                                                                                       meaning \
    }
#define NAME(member, meaning)                                                                                   \
    {                                                                                                           \
#member, [](const PrinterModel&                                                                         \
                        model) { return Value{NumberCell(model->member), model.Name(model->member)}; }, meaning \
    }
#define TEXT_OF(member, meaning)                                                                                \
    {                                                                                                           \
#member, [](const PrinterModel&                                                                         \
                        model) { return Value{NumberCell(model->member), model.Text(model->member)}; }, meaning \
    }
#define FONT(member, meaning)                                                                                \
    {                                                                                                        \
#member,                                                                                                   \
     [](const PrinterModel& model) {                                                                            \
         return Value{model->member ? TextCell(host::ToUtf8(FromAnsi(model->member))) : EmptyCell()};           \
     },                                                                                                         \
     meaning \
    }

constexpr Word kDuplexBits[] = {{"duplexUnit", 1}};
constexpr Word kJobNameBits[] = {{"duplexUnit", 1}, {"display", kJobNamedByDisplay}};
constexpr Word kDescriptionBits[] = {{"jobSetsDataMode", kJobSetsDataMode}, {"text", kDescriptionsAreText}};

constexpr ValueRow kValues[] = {
    WORD_OF(pdlType, kPdlWords, "page description language"),
    NUMBER(modelCode, "the model's code"),
    WORD_OF(colorCapability, kColorWords, "colour"),
    NUMBER(pagesPerMinute, "pages a minute"),
    TENTHS(customMinWidth, "smallest custom width, 0.1 mm"),
    TENTHS(customMaxWidth, "largest custom width, 0.1 mm; 0: no custom sizes"),
    TENTHS(customMinLength, "smallest custom length, 0.1 mm"),
    TENTHS(customMaxLength, "largest custom length, 0.1 mm; 0: no custom sizes"),
    {"defaultBin",
     [](const PrinterModel& model) {
         return Value{NumberCell(model->defaultBin), model.TrayName(model->defaultBin)};
     },
     "default tray"},
    {"defaultMedia",
     [](const PrinterModel& model) {
         return Value{NumberCell(model->defaultMedia), model.MediumName(model->defaultMedia - 1)};
     },
     "default medium, 1-based"},
    {"defaultResolution",
     [](const PrinterModel& model) {
         const ResolutionRecord* const resolution =
             model->defaultResolution >= 0
                 ? RecordAt(model->resolutionTable, static_cast<size_t>(model->defaultResolution))
                 : nullptr;
         return Value{NumberCell(model->defaultResolution),
                      resolution ? model.Localized(resolution->nameRef) : std::string()};
     },
     "resolution that stands in for one the model doesn't have"},
    {"defaultColorMode",
     [](const PrinterModel& model) {
         const ColorModeRecord* const mode = RecordAt(model->colorModeTable, model->defaultColorMode);
         return Value{NumberCell(model->defaultColorMode), mode ? model.ColorModeName(*mode) : std::string()};
     },
     "default colour mode"},
    {"defaultOptionMask",
     [](const PrinterModel& model) {
         return Value{MaskCell(model->defaultOptionMask),
                      ListCell(TrayOptionNames(model->defaultOptionMask & ~kAlwaysInstalled)).text};
     },
     "tray options installed by default"},
    BITS_OF(defaultOptionFlags, kOptionFlagWords, "option flags of a new device mode"),
    BITS_OF(jobNameFlags, kJobNameBits, "how the job is named, and the duplex unit"),
    BITS_OF(duplexFlagsA, kDuplexBits, "the duplex unit again"),
    BITS_OF(duplexFlagsB, kDuplexBits, "the duplex unit again"),
    BITS_OF(descriptionFlags, kDescriptionBits, "how job settings are described"),
    WORD_OF(icmIntentFlags, kIcmOfferWords, "rendering intents offered"),
    WORD_OF(defaultIcmIntent, kIcmIntentWords, "default rendering intent"),
    BITS_OF(imageModeDefault, kImageModeWords, "raster format of image models"),
    NUMBER(memoryKeyBase, "with memoryKeyStep the default memory key"),
    NUMBER(memoryKeyStep, "with memoryKeyBase the default memory key"),
    NUMBER(extraMemory, "megabytes more with the extra option"),
    NUMBER(fontCount, "font records"),
    {"fontBytes", [](const PrinterModel& model) { return Value{NumberCell(GetFontDataSize(model.File(), *model))}; },
     "bytes of all font records"},
    {"patternBytes", [](const PrinterModel& model) { return Value{NumberCell(GetPatternDataSize(*model))}; },
     "bytes of all pattern blocks"},
    {"blobBytes", [](const PrinterModel& model) { return Value{NumberCell(ReadBlob(model.File(), nullptr, 0))}; },
     "bytes of the command blob"},
    NUMBER(defaultFontSize, "size of the default font"),
    FONT(defaultFontA, "default text font"),
    FONT(defaultFontB, "second default text font"),
    TEXT_OF(jobTextRef, "key of the extra keyword's job line"),
    TEXT_OF(extraTextRef, "text of the extra option"),
    LOCALIZED(pageLabelRef, "page label"),
    LOCALIZED(linkRef, "web address"),
    NAME(oemNamespaceRef, "the model's private namespace"),
    NAME(oemPrefixRef, "its prefix"),
};
#undef NUMBER
#undef TENTHS
#undef WORD_OF
#undef BITS_OF
#undef LOCALIZED
#undef NAME
#undef TEXT_OF
#undef FONT

Table ReportValues(const PrinterModel& model) {
    Table table = {"Values",
                   "values",
                   {{"Name", "field"}, {"Value", "value"}, {"Stands for", "valueName"}, {"Meaning", "meaning"}}};
    table.isKeyed = true;
    for (const ValueRow& row : kValues) {
        Value value = row.read(model);
        table.rows.push_back(
            {TextCell(row.name), std::move(value.cell), TextOrNull(std::move(value.name)), TextCell(row.meaning)});
    }
    return table;
}

// A column of a table whose rows are a model's records: heading, JSON name, and the cell of a record.
template <class Record>
struct RecordColumn {
    Column column;
    Cell (*cell)(const PrinterModel& model, const Record& record, size_t index);
};

template <class Record>
Table ReportRecords(std::string title, std::string key, const PrinterModel& model, const Record* records,
                    std::initializer_list<RecordColumn<Record>> columns) {
    Table table = {std::move(title), std::move(key), {}};
    for (const RecordColumn<Record>& column : columns) {
        table.columns.push_back(column.column);
    }
    for (const Record& record : RecordList(records)) {
        std::vector<Cell> row;
        for (const RecordColumn<Record>& column : columns) {
            row.push_back(column.cell(model, record, table.rows.size()));
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

// A column's cell: an expression over the model `m`, the record `r` and its position `i`.
#define CELL(Record, expression)                                          \
    [](const PrinterModel& m, const Record& r, size_t i) -> Cell {        \
        static_cast<void>(m), static_cast<void>(r), static_cast<void>(i); \
        return expression;                                                \
    }

Table ReportPapers(const PrinterModel& model) {
    return ReportRecords<PaperRecord>(
        "Papers", "papers", model, model->paperTable,
        {{{"ID", "id"}, CELL(PaperRecord, NumberCell(r.paperId))},
         {{"Name", "name"}, CELL(PaperRecord, TextOrNull(m.Localized(static_cast<int16_t>(r.nameRef))))},
         {{"Width mm", "widthMm"}, CELL(PaperRecord, MillimetreCell(r.width))},
         {{"Length mm", "lengthMm"}, CELL(PaperRecord, MillimetreCell(r.length))},
         {{"Metric", "isMetric"}, CELL(PaperRecord, FlagCell(r.isMetric != 0))},
         {{"PCL code", "pclSizeCode"}, CELL(PaperRecord, NumberCell(r.pclSizeCode))},
         {{"Scaled to", "fitPaperId"},
          CELL(PaperRecord, (Cell{r.fitPaperId == 0 ? std::string() : m.PaperName(r.fitPaperId), r.fitPaperId}))},
         {{"Renderer", "rendererName"}, CELL(PaperRecord, TextOrNull(m.Name(r.rendererNameRef)))},
         {{"Keyword", "keyword"}, CELL(PaperRecord, TextOrNull(m.Name(r.keywordRef)))},
         {{"Ticket", "ticketValues"}, CELL(PaperRecord, TicketCell(r))}});
}

Table ReportTrays(const PrinterModel& model) {
    return ReportRecords<BinRecord>(
        "Trays", "trays", model, model->binTable,
        {{{"ID", "id"}, CELL(BinRecord, NumberCell(r.binId))},
         {{"Name", "name"}, CELL(BinRecord, TextOrNull(m.Localized(r.nameRef)))},
         {{"Mask", "optionMask"}, CELL(BinRecord, MaskCell(r.optionMask))},
         {{"Needs one of", "needs"}, CELL(BinRecord, ListCell(TrayNeeds(r.optionMask)))},
         {{"Offered", "isOffered"}, CELL(BinRecord, FlagCell((r.optionMask & m.Options().installedOptions) != 0))},
         {{"Keyword", "keyword"}, CELL(BinRecord, TextOrNull(m.Name(r.keywordRef)))}});
}

Table ReportExtraKeywords(const PrinterModel& model) {
    return ReportRecords<ExtraKeywordRecord>(
        "Extra keywords", "extraKeywords", model, model->extraKeywordTable,
        {{{"ID", "id"}, CELL(ExtraKeywordRecord, NumberCell(r.id))},
         {{"Name", "name"}, CELL(ExtraKeywordRecord, TextOrNull(m.Localized(static_cast<int16_t>(r.nameRef))))},
         {{"Mask", "optionMask"}, CELL(ExtraKeywordRecord, MaskCell(r.optionMask))},
         {{"Job value", "jobValue"}, CELL(ExtraKeywordRecord, TextOrNull(m.Text(r.id)))},
         {{"Keyword", "keyword"}, CELL(ExtraKeywordRecord, TextOrNull(m.Name(r.keywordRef)))}});
}

Table ReportMedia(const PrinterModel& model) {
    return ReportRecords<MediaRecord>(
        "Media", "media", model, model->mediaTable,
        {{{"No.", "number"}, CELL(MediaRecord, NumberCell(static_cast<int64_t>(i) + 1))},
         {{"Name", "name"}, CELL(MediaRecord, TextOrNull(m.Localized(r.nameRef)))},
         {{"ID", "id"}, CELL(MediaRecord, NumberCell(r.mediaId))},
         {{"Mask", "mask"}, CELL(MediaRecord, MaskCell(r.mark))},
         {{"Job command", "jobText"}, CELL(MediaRecord, TextOrNull(m.Text(r.jobTextRef)))},
         {{"Renderer", "rendererName"}, CELL(MediaRecord, TextOrNull(m.Name(r.rendererNameRef)))},
         {{"Keyword", "keyword"}, CELL(MediaRecord, TextOrNull(m.Name(r.keywordRef)))},
         {{"Ticket", "ticketValues"}, CELL(MediaRecord, TicketCell(r))}});
}

Table ReportResolutions(const PrinterModel& model) {
    return ReportRecords<ResolutionRecord>(
        "Resolutions", "resolutions", model, model->resolutionTable,
        {{{"Index", "index"}, CELL(ResolutionRecord, NumberCell(static_cast<int64_t>(i)))},
         {{"Name", "name"}, CELL(ResolutionRecord, TextOrNull(m.Localized(static_cast<int16_t>(r.nameRef))))},
         {{"ID", "id"}, CELL(ResolutionRecord, NumberCell(r.resolutionId))},
         {{"X dpi", "xDpi"}, CELL(ResolutionRecord, NumberCell(r.xDpi))},
         {{"Y dpi", "yDpi"}, CELL(ResolutionRecord, NumberCell(r.yDpi))},
         {{"Pattern k", "patternSize"}, CELL(ResolutionRecord, OptionalNumberCell(r.patternSize))},
         {{"Pattern", "patternIndex"},
          CELL(ResolutionRecord, r.patternSize == 0 ? EmptyCell() : NumberCell(r.patternIndex))},
         {{"Job command", "jobText"}, CELL(ResolutionRecord, TextOrNull(m.Text(r.jobTextRef)))},
         {{"Keyword", "keyword"}, CELL(ResolutionRecord, TextOrNull(m.Name(r.keywordRef)))},
         {{"Ticket", "ticketValues"}, CELL(ResolutionRecord, TicketCell(r))}});
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
        {{{"Key", "key"}, CELL(MemoryRecord, NumberCell(r.key))},
         {{"MB", "megabytes"}, CELL(MemoryRecord, NumberCell(r.megabytes))},
         {{"Default", "isDefault"}, CELL(MemoryRecord, FlagCell(IsDefaultMemory(m, r, i)))}});
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
        {{{"Papers", "papers"}, CELL(MarginRecord, PapersCell(m, r))},
         {{"Widths", "widthsMm"}, CELL(MarginRecord, SizeRangeCell(r.minWidth, r.maxWidth))},
         {{"Lengths", "lengthsMm"}, CELL(MarginRecord, SizeRangeCell(r.minLength, r.maxLength))},
         {{"For", "orientations"}, CELL(MarginRecord, TextOrNull(WordsForBits(kOrientationWords, r.orientationMask)))},
         {{"Left", "leftMm"}, CELL(MarginRecord, MarginCell(r, r.leftMargin))},
         {{"Top", "topMm"}, CELL(MarginRecord, MarginCell(r, r.topMargin))},
         {{"Right", "rightMm"}, CELL(MarginRecord, MarginCell(r, r.rightMargin))},
         {{"Bottom", "bottomMm"}, CELL(MarginRecord, MarginCell(r, r.bottomMargin))},
         {{"Per inch", "unitsPerInch"}, CELL(MarginRecord, NumberCell(r.unit))}});
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
        {{{"Papers", "papers"}, CELL(ConstraintRecord, PapersCell(m, r))},
         {{"Widths mm", "widthsMm"}, CELL(ConstraintRecord, SizeRangeCell(r.minWidth, r.maxWidth))},
         {{"Lengths mm", "lengthsMm"}, CELL(ConstraintRecord, SizeRangeCell(r.minLength, r.maxLength))},
         {{"Trays", "trays"}, CELL(ConstraintRecord, TraysCell(m, r.binMask))},
         {{"Media", "media"}, CELL(ConstraintRecord, MediaCell(m, r.mediaMask))},
         {{"Extra keywords", "extraKeywords"}, CELL(ConstraintRecord, ExtraKeywordsCell(m, r.extraKeywordMask))},
         {{"Both sides", "onlyBothSides"}, CELL(ConstraintRecord, FlagCell((r.flags & kOnlyOnBothSides) != 0))},
         {{"Options", "optionMask"}, CELL(ConstraintRecord, DeviceOptionsCell(r.flags & ~kOnlyOnBothSides))},
         {{"Tray mask", "trayMask"}, CELL(ConstraintRecord, HiddenMaskCell(r.binMask))},
         {{"Media mask", "mediaMask"}, CELL(ConstraintRecord, HiddenMaskCell(r.mediaMask))},
         {{"Extra-keyword mask", "extraKeywordMask"}, CELL(ConstraintRecord, HiddenMaskCell(r.extraKeywordMask))},
         {{"Message", "message"},
          CELL(ConstraintRecord, TextOrNull(m.Localized(static_cast<int16_t>(r.messageRef))))}});
}

Table ReportFeatures(const PrinterModel& model) {
    return ReportRecords<FeatureRecord>(
        "Features", "features", model, model->featureTable,
        {{{"Index", "index"}, CELL(FeatureRecord, NumberCell(static_cast<int64_t>(i)))},
         {{"Name", "name"}, CELL(FeatureRecord, TextOrNull(m.Localized(static_cast<int16_t>(r.nameRef))))},
         {{"Needs", "featureMask"}, CELL(FeatureRecord, DeviceOptionsCell(r.featureMask))},
         {{"Options", "optionCount"}, CELL(FeatureRecord, NumberCell(static_cast<int64_t>(CountOptions(*m, r))))},
         {{"Job key", "jobKey"}, CELL(FeatureRecord, TextOrNull(m.Text(r.jobKeyRef)))},
         {{"Keyword", "keyword"}, CELL(FeatureRecord, TextOrNull(m.Name(r.keywordRef)))}});
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

const ColorGroup* GroupOf(int16_t number) {
    return number >= 1 && static_cast<size_t>(number) <= std::size(kColorGroups) ? &kColorGroups[number - 1] : nullptr;
}

// "text Black: Rich", for a selection that a colour mode makes.
std::string DescribeSetting(const PrinterModel& model, const PresetSettingRecord& setting) {
    const ColorGroup* const group = GroupOf(setting.group);
    const ColorFeatureRecord* const feature =
        group && setting.feature >= 0 ? RecordAt(ColorFeatures(*model, *group), static_cast<size_t>(setting.feature))
                                      : nullptr;
    const ColorValueRecord* const value =
        feature ? ColorValueAt(*model, feature->firstValue + int32_t{setting.option}) : nullptr;
    const std::string groupName = WordFor(kColorGroupWords, setting.group);
    return (groupName.empty() ? "group " + std::to_string(setting.group) : groupName) + " " +
           (feature ? model.Localized(static_cast<int16_t>(feature->nameRef))
                    : "feature " + std::to_string(setting.feature)) +
           ": " +
           (value ? model.Localized(static_cast<int16_t>(value->nameRef)) : "value " + std::to_string(setting.option));
}

Cell SettingsCell(const PrinterModel& model, const ColorModeRecord& mode) {
    std::vector<std::string> settings;
    for (int32_t index = mode.firstSetting; index >= 0; ++index) {
        const PresetSettingRecord* const setting = PresetSettingAt(*model, index);
        if (!setting || EndsList(*setting)) {
            break;
        }
        settings.push_back(DescribeSetting(model, *setting));
    }
    return ListCell(settings);
}

Cell ColorKindCell(uint32_t kind) {
    constexpr Word kKinds[] = {{"system colour management", kColorModeSystem},
                               {"manual settings", kColorModeManual},
                               {"option defaults", kColorModeHasDefaults}};
    return {WordsForBits(kKinds, kind), kind};
}

Table ReportColorModes(const PrinterModel& model) {
    return ReportRecords<ColorModeRecord>(
        "Colour modes", "colorModes", model, model->colorModeTable,
        {{{"Index", "index"}, CELL(ColorModeRecord, NumberCell(static_cast<int64_t>(i)))},
         {{"Name", "name"}, CELL(ColorModeRecord, TextOrNull(m.ColorModeName(r)))},
         {{"Kind", "kind"}, CELL(ColorModeRecord, ColorKindCell(r.kind))},
         {{"Selects", "settings"}, CELL(ColorModeRecord, SettingsCell(m, r))}});
}

// "120, 34 bytes": a slice of the command blob.
Cell SliceCell(uint16_t start, uint16_t length) {
    if (length == 0) {
        return EmptyCell();
    }
    const int bytes = length & kSliceLengthMask;
    return {std::to_string(start) + ", " + std::to_string(bytes) + " bytes", Json::array({start, bytes})};
}

// The records of a feature's run of values.
std::vector<const ColorValueRecord*> ColorValues(const PrinterModel& model, const ColorFeatureRecord& feature) {
    std::vector<const ColorValueRecord*> values;
    const ColorValueRecord* value = ColorValueAt(*model, feature.firstValue);
    while (value && !EndsList(*value)) {
        values.push_back(value);
        value = ColorValueAt(*model, feature.firstValue + static_cast<int32_t>(values.size()));
    }
    return values;
}

Table ReportColorFeatures(const PrinterModel& model) {
    Table table = {"Colour features",
                   "colorFeatures",
                   {{"Group", "group"}, {"Index", "index"}, {"Name", "name"}, {"Values", "valueCount"}}};
    for (size_t group = 0; group < std::size(kColorGroups); ++group) {
        int64_t index = 0;
        for (const ColorFeatureRecord& feature : RecordList(ColorFeatures(*model, kColorGroups[group]))) {
            table.rows.push_back({TextCell(WordFor(kColorGroupWords, static_cast<int64_t>(group) + 1)),
                                  NumberCell(index++),
                                  TextOrNull(model.Localized(static_cast<int16_t>(feature.nameRef))),
                                  NumberCell(static_cast<int64_t>(ColorValues(model, feature).size()))});
        }
    }
    return table;
}

Table ReportColorValues(const PrinterModel& model) {
    Table table = {"Values of the colour features",
                   "colorValues",
                   {{"Group", "group"},
                    {"Feature", "feature"},
                    {"Index", "index"},
                    {"Value", "name"},
                    {"Job value", "jobValue"},
                    {"Commands", "firstSlice"},
                    {"More", "secondSlice"}}};
    const bool isImage = model->pdlType == kPdlImage;
    for (size_t group = 0; group < std::size(kColorGroups); ++group) {
        for (const ColorFeatureRecord& feature : RecordList(ColorFeatures(*model, kColorGroups[group]))) {
            int64_t index = 0;
            for (const ColorValueRecord* const value : ColorValues(model, feature)) {
                table.rows.push_back({TextCell(WordFor(kColorGroupWords, static_cast<int64_t>(group) + 1)),
                                      TextCell(model.Localized(static_cast<int16_t>(feature.nameRef))),
                                      NumberCell(index++),
                                      TextOrNull(model.Localized(static_cast<int16_t>(value->nameRef))),
                                      isImage ? TextOrNull(model.Text(value->firstStart)) : EmptyCell(),
                                      isImage ? EmptyCell() : SliceCell(value->firstStart, value->firstLength),
                                      isImage ? EmptyCell() : SliceCell(value->secondStart, value->secondLength)});
            }
        }
    }
    return table;
}

Table ReportFontSubstitutions(const PrinterModel& model) {
    Table table = {"Font substitutions", "fontSubstitutions", {{"Font", "font"}, {"Printed with", "printerFont"}}};
    const char* text = model->defaultFontSubs;
    const auto next = [&] {
        const std::string_view part = text;
        text += part.size() + 1;
        return host::ToUtf8(FromAnsi(part));
    };
    while (text && *text) {
        std::string font = next();
        std::string printerFont = next();
        table.rows.push_back({TextCell(std::move(font)), TextOrNull(std::move(printerFont))});
    }
    return table;
}

struct KeywordTable {
    const char* title;
    const char* key;
    const KeywordRecord* (*list)(const DeviceModel& model);
};

#define LIST(member) [](const DeviceModel& model) { return model.member; }
constexpr KeywordTable kKeywordTables[] = {
    {"Photo intents of a ticket", "photoIntents", LIST(photoIntentList)},
    {"Digital-signature processing of a ticket", "signatureOptions", LIST(signatureOptionList)},
    {"Extra list A of a ticket", "extraListA", LIST(extraListA)},
    {"Extra list B of a ticket", "extraListB", LIST(extraListB)},
    {"Media colours of a ticket", "mediaColors", LIST(mediaColorList)},
    {"Extra list C of a ticket", "extraListC", LIST(extraListC)},
};
#undef LIST

Table ReportKeywords(const PrinterModel& model, const KeywordTable& list) {
    return ReportRecords<KeywordRecord>(
        list.title, list.key, model, list.list(*model),
        {{{"Index", "index"}, CELL(KeywordRecord, NumberCell(static_cast<int64_t>(i)))},
         {{"Name", "name"}, CELL(KeywordRecord, TextOrNull(m.Localized(static_cast<int16_t>(r.nameRef))))},
         {{"Keyword", "keyword"}, CELL(KeywordRecord, TextOrNull(m.Name(r.keywordRef)))},
         {{"Ticket", "ticketValues"}, CELL(KeywordRecord, TicketCell(r))}});
}
#undef CELL

}  // namespace

std::vector<Table> ReportModel(const std::string& printerName) {
    const PrinterModel model(printerName);
    std::vector<Table> tables;
    for (const auto report :
         {ReportValues, ReportPapers, ReportTrays, ReportExtraKeywords, ReportMedia, ReportResolutions, ReportMemory,
          ReportMargins, ReportConstraints, ReportFeatures, ReportOptions, ReportColorModes, ReportColorFeatures,
          ReportColorValues, ReportFontSubstitutions}) {
        tables.push_back(report(model));
    }
    for (const KeywordTable& list : kKeywordTables) {
        tables.push_back(ReportKeywords(model, list));
    }
    std::ranges::move(ReportDescription(model), std::back_inserter(tables));
    return tables;
}

}  // namespace velmora
