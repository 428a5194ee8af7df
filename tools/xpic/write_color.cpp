// Colour correction: the command blob with its slices, the features with their values, and the colour modes.
#include <algorithm>
#include <map>
#include <set>

#include "tools/xpic/model_limits.h"
#include "tools/xpic/source_writer.h"

namespace velmora {
namespace {

using Slice = std::pair<size_t, size_t>;  // start, length

Slice SliceOf(const CommandSlice& slice) {
    return {slice.start, slice.length};
}

bool IsAbsent(const CommandSlice& slice) {
    return slice.start == 0 && slice.length == 0;
}

// The names of the slices that values use, after the first value that does.
class CommandNames {
  public:
    void Add(const CommandSlice& slice, const std::string& wanted) {
        if (IsAbsent(slice) || names_.count(SliceOf(slice)) != 0) {
            return;
        }
        names_.emplace(SliceOf(slice), Unused(wanted));
    }

    std::string Unused(const std::string& wanted) {
        std::string name = wanted;
        for (size_t count = 2; !taken_.insert(name).second; ++count) {
            name = wanted + " " + std::to_string(count);
        }
        return name;
    }

    const std::string& Of(const CommandSlice& slice) const { return names_.at(SliceOf(slice)); }
    // By their place in the blob.
    const std::map<Slice, std::string>& All() const { return names_; }

  private:
    std::map<Slice, std::string> names_;
    std::set<std::string> taken_;
};

CommandNames NameCommands(const ModelSource& model) {
    CommandNames names;
    for (const Word& group : kColorGroupWords) {
        for (const ColorFeatureSource& feature : model.colorFeatures[static_cast<size_t>(group.value - 1)]) {
            for (const ColorValueSource& value : feature.values) {
                const std::string name = std::string(group.name) + " " + feature.name + " " + value.name;
                names.Add(value.first, name);
                names.Add(value.second, name + " object");
            }
        }
    }
    return names;
}

// Whether the slices can be laid one behind the other, in the order of their places.
bool AreApart(const std::map<Slice, std::string>& slices) {
    size_t end = 0;
    for (const auto& [slice, name] : slices) {
        if (slice.first < end) {
            return false;
        }
        end = slice.first + slice.second;
    }
    return true;
}

Json WriteCommand(SourceWriter& writer, size_t start, size_t length) {
    const std::string fileName = "command-" + std::to_string(writer.root["commands"].size() + 1) + ".bin";
    return WriteBytes(writer, std::span(writer.model.blob).subspan(start, length), fileName);
}

// What stands between commands and is none of them.
void WriteGap(SourceWriter& writer, CommandNames& names, size_t start, size_t end) {
    while (start < end) {
        const size_t length = std::min<size_t>(end - start, kLongestCommand);
        const std::string name = names.Unused("unused");
        Json command = WriteCommand(writer, start, length);
        writer.root["commands"][name] = std::move(command);
        start += length;
    }
}

void WriteCommands(SourceWriter& writer, CommandNames& names) {
    const Bytes& blob = writer.model.blob;
    const std::map<Slice, std::string> slices = names.All();
    if (blob.empty()) {
        return;
    }
    if (slices.empty() || !AreApart(slices)) {
        writer.root["commandBlob"] = WriteBytes(writer, blob, "commands.bin");
        for (const auto& [slice, name] : slices) {
            writer.root["commands"][name] = {{"at", slice.first}, {"length", slice.second}};
        }
        return;
    }
    size_t end = 0;
    for (const auto& [slice, name] : slices) {
        WriteGap(writer, names, end, slice.first);
        Json command = WriteCommand(writer, slice.first, slice.second);
        writer.root["commands"][name] = std::move(command);
        end = slice.first + slice.second;
    }
    WriteGap(writer, names, end, blob.size());
}

Json WriteValue(SourceWriter& writer, const CommandNames& names, const ColorValueSource& value) {
    Json record = {{"name", value.name}};
    WriteLabel(writer, record, value.label, value.name);
    if (!value.jobValue.empty()) {
        record["jobValue"] = writer.texts.Fixed(value.jobValue);
    }
    for (const auto& [key, slice] : {std::pair("command", &value.first), std::pair("objectCommand", &value.second)}) {
        if (!IsAbsent(*slice)) {
            record[key] = names.Of(*slice);
        }
    }
    return record;
}

void WriteFeatures(SourceWriter& writer, const CommandNames& names) {
    for (const Word& group : kColorGroupWords) {
        for (const ColorFeatureSource& feature : writer.model.colorFeatures[static_cast<size_t>(group.value - 1)]) {
            Json record = {{"name", feature.name}};
            WriteLabel(writer, record, feature.label, feature.name);
            for (const ColorValueSource& value : feature.values) {
                record["values"].push_back(WriteValue(writer, names, value));
            }
            writer.root["colorFeatures"][std::string(group.name)].push_back(std::move(record));
        }
    }
}

// {"text": {"FEATURE": "VALUE"}}. Nothing where that doesn't say the settings: they name what isn't there, or stand in
// another order than the groups do.
std::optional<Json> SelectsOf(const ModelSource& model, const std::vector<PresetSettingRecord>& settings) {
    Json selects = Json::object();
    int16_t lastGroup = 0;
    for (const PresetSettingRecord& setting : settings) {
        if (setting.group < std::max<int16_t>(lastGroup, 1) || setting.group > kColorGroupCount) {
            return std::nullopt;
        }
        lastGroup = setting.group;
        const auto& features = model.colorFeatures[static_cast<size_t>(setting.group - 1)];
        const auto position = static_cast<size_t>(setting.feature);
        if (setting.feature < 0 || position >= features.size() || setting.option >= features[position].values.size()) {
            return std::nullopt;
        }
        Json& group = selects[std::string(WordOrNumber(setting.group, kColorGroupWords).get<std::string>())];
        if (group.contains(features[position].name)) {
            return std::nullopt;
        }
        group[features[position].name] = features[position].values[setting.option].name;
    }
    return selects;
}

Json WriteMode(SourceWriter& writer, const ColorModeSource& mode) {
    Json record = {{"name", mode.name}};
    WriteLabel(writer, record, mode.label, mode.name);
    const uint32_t settingsFlag = mode.kind & kColorModeHasDefaults;
    const uint32_t managing = mode.kind & (kColorModeSystem | kColorModeManual);
    const uint32_t said = managing | settingsFlag;
    if (mode.kind == (said != 0 ? said : kPlainColorMode) && (settingsFlag != 0 || mode.settings.empty())) {
        if ((managing & kColorModeSystem) != 0) {
            record["systemManaged"] = true;
        }
        if ((managing & kColorModeManual) != 0) {
            record["manual"] = true;
        }
    } else {
        record["kind"] = mode.kind;
    }
    if (settingsFlag == 0 && mode.settings.empty()) {
        return record;
    }
    if (std::optional<Json> selects = SelectsOf(writer.model, mode.settings)) {
        record["selects"] = std::move(*selects);
        return record;
    }
    for (const PresetSettingRecord& setting : mode.settings) {
        record["settings"].push_back({{"group", WordOrNumber(setting.group, kColorGroupWords)},
                                      {"feature", int16_t{setting.feature}},
                                      {"option", uint16_t{setting.option}}});
    }
    return record;
}

}  // namespace

void WriteColors(SourceWriter& writer) {
    CommandNames names = NameCommands(writer.model);
    WriteCommands(writer, names);
    WriteFeatures(writer, names);
    for (const ColorModeSource& mode : writer.model.colorModes) {
        writer.root["colorModes"].push_back(WriteMode(writer, mode));
    }
}

}  // namespace velmora
