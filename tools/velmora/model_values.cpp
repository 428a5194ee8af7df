#include "tools/velmora/model_values.h"

#include <string>
#include <utility>

#include "driver/devdesc/description_file.h"
#include "driver/devdesc/model_tables.h"
#include "platform/kernel/text.h"
#include "tools/velmora/escapes.h"
#include "tools/velmora/model_cells.h"
#include "tools/xpic/model_limits.h"
#include "tools/xpic/vocabulary.h"

namespace velmora {
namespace {

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

}  // namespace

Table ReportModelValues(const PrinterModel& model) {
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

}  // namespace velmora
