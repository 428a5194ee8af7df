// Colour correction: features with their values, and the colour modes that select among them.
#include "tools/xpic/model_reader.h"

namespace velmora {
namespace {

// Only what the page description language makes of a value can be given: image models get a word of the job
// description, all others slices of the command blob.
ColorValueSource ReadColorValue(ModelReader& reader, const SourceValue& element, size_t group, NameIndex& names) {
    ObjectReader object(reader.context, element);
    const std::string name = object.Name();
    names.Add(reader.context, element.path, name);
    ColorValueSource value;
    value.name = name;
    value.label = object.Label(name, TextLimit::kLabel);
    if (reader.model.device.pdlType == kPdlImage) {
        value.jobValue = object.FixedText("jobValue", TextLimit::kJobWord);
        return value;
    }
    const auto slice = [&](std::string_view key) {
        const std::optional<SourceValue> given = object.Find(key);
        const std::optional<size_t> command =
            given ? reader.names.commands.Resolve(reader.context, *given) : std::nullopt;
        return command ? reader.names.commandSlices[*command] : CommandSlice{};
    };
    value.first = slice("command");
    if (group != kGeneralGroup) {
        value.second = slice("objectCommand");
    }
    return value;
}

void ReadColorGroup(ModelReader& reader, const SourceValue& list, size_t group) {
    const std::vector<SourceValue> elements = ReadElements(reader.context, list);
    if (elements.size() > kMostColorFeatures) {
        reader.context.Report(list.path, std::to_string(elements.size()) + " color features",
                              "at most " + std::to_string(kMostColorFeatures));
    }
    for (const SourceValue& element : elements) {
        ObjectReader object(reader.context, element);
        const std::string name = object.Name();
        reader.names.colorFeatures[group].Add(reader.context, element.path, name);
        ColorFeatureSource feature;
        feature.name = name;
        feature.label = object.Label(name, TextLimit::kLabel);
        NameIndex values("a color value");
        for (const SourceValue& valueElement : object.Elements("values")) {
            feature.values.push_back(ReadColorValue(reader, valueElement, group, values));
        }
        reader.names.colorValues[group].push_back(std::move(values));
        reader.model.colorFeatures[group].push_back(std::move(feature));
    }
}

// {"text": {"FEATURE": "VALUE", …}, "image": …}
std::vector<PresetSettingRecord> ReadSettings(ModelReader& reader, const SourceValue& selects) {
    std::vector<PresetSettingRecord> settings;
    ObjectReader object(reader.context, selects);
    for (const Word& word : kColorGroupWords) {
        const auto group = static_cast<size_t>(word.value - 1);
        for (const auto& [featureName, valueName] : object.Members(word.name)) {
            const Json nameJson = featureName;
            const std::optional<size_t> feature =
                reader.names.colorFeatures[group].Resolve(reader.context, {&nameJson, valueName.path});
            const std::optional<size_t> value =
                feature ? reader.names.colorValues[group][*feature].Resolve(reader.context, valueName) : std::nullopt;
            if (value) {
                settings.push_back(
                    {static_cast<int16_t>(word.value), static_cast<int16_t>(*feature), static_cast<uint16_t>(*value)});
            }
        }
    }
    return settings;
}

// The records themselves, for selections that no names stand for.
std::vector<PresetSettingRecord> ReadRawSettings(ModelReader& reader, const std::vector<SourceValue>& elements) {
    constexpr Range kAnyI16 = {INT16_MIN, INT16_MAX};
    std::vector<PresetSettingRecord> settings;
    for (const SourceValue& element : elements) {
        ObjectReader object(reader.context, element);
        const auto group = static_cast<int16_t>(object.Choice("group", kColorGroupWords, kAnyI16, {}));
        const auto feature = static_cast<int16_t>(object.Integer("feature", kAnyI16, {}));
        const auto option = static_cast<uint16_t>(object.Integer("option", {0, UINT16_MAX}, {}));
        if (const std::optional<SourceValue> given = object.Find("group"); given && *given->json == 0) {
            reader.context.Report(object.PathOf("group"), "0", "a group: 0 ends the settings");
        }
        settings.push_back({group, feature, option});
    }
    return settings;
}

}  // namespace

void ReadColorFeatures(ModelReader& reader) {
    const std::optional<SourceValue> groups = reader.root.Find("colorFeatures");
    if (!groups) {
        return;
    }
    ObjectReader object(reader.context, *groups);
    for (const Word& word : kColorGroupWords) {
        if (const std::optional<SourceValue> list = object.Find(word.name)) {
            ReadColorGroup(reader, *list, static_cast<size_t>(word.value - 1));
        }
    }
}

void ReadColorModes(ModelReader& reader) {
    for (const SourceValue& element : reader.root.Elements("colorModes")) {
        ObjectReader object(reader.context, element);
        ColorModeSource mode;
        mode.name = object.Name();
        reader.names.colorModes.Add(reader.context, element.path, mode.name);
        mode.label = object.LabelOrNone(mode.name, TextLimit::kLabel);
        mode.kind |= object.Flag("systemManaged", false) ? kColorModeSystem : 0;
        mode.kind |= object.Flag("manual", false) ? kColorModeManual : 0;
        if (const std::optional<SourceValue> selects = object.Find("selects")) {
            mode.kind |= kColorModeHasDefaults;
            mode.settings = ReadSettings(reader, *selects);
        } else if (object.Has("settings")) {
            mode.kind |= kColorModeHasDefaults;
            mode.settings = ReadRawSettings(reader, object.Elements("settings"));
        }
        mode.kind = static_cast<uint32_t>(
            object.Integer("kind", {1, UINT32_MAX}, mode.kind != 0 ? mode.kind : kPlainColorMode));
        reader.model.colorModes.push_back(std::move(mode));
    }
}

}  // namespace velmora
