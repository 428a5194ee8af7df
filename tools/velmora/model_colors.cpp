#include "tools/velmora/model_colors.h"

#include <iterator>
#include <string>

#include "driver/devdesc/model_tables.h"
#include "driver/devmode/color_groups.h"
#include "tools/velmora/model_cells.h"
#include "tools/xpic/model_limits.h"
#include "tools/xpic/vocabulary.h"

namespace velmora {
namespace {

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
        {{{"Index", "index"}, VELMORA_CELL(ColorModeRecord, NumberCell(static_cast<int64_t>(i)))},
         {{"Name", "name"}, VELMORA_CELL(ColorModeRecord, TextOrNull(m.ColorModeName(r)))},
         {{"Kind", "kind"}, VELMORA_CELL(ColorModeRecord, ColorKindCell(r.kind))},
         {{"Selects", "settings"}, VELMORA_CELL(ColorModeRecord, SettingsCell(m, r))}});
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

}  // namespace

std::vector<Table> ReportModelColors(const PrinterModel& model) {
    return {ReportColorModes(model), ReportColorFeatures(model), ReportColorValues(model)};
}

}  // namespace velmora
