// Colour correction: features, modes and the commands that they send.
#include <algorithm>
#include <bit>

#include "tools/xpic/model_checker.h"
#include "tools/xpic/source_document.h"

namespace velmora {
namespace {

constexpr size_t kReferable = INT16_MAX;  // bytes of the blob that a device mode can refer to

bool SendsNothing(const ColorValueSource& value) {
    return value.first.length == 0 && value.second.length == 0 && value.jobValue.empty();
}

}  // namespace

void ModelChecker::CheckCommands() {
    if (model_.blob.size() > UINT16_MAX) {
        Report("command-blob-size", "$.commands", std::to_string(model_.blob.size()) + " bytes of commands");
    } else if (model_.blob.size() > kReferable) {
        Report("command-blob", "$.commands", std::to_string(model_.blob.size()) + " bytes of commands");
    }
    bool isUsed = false;
    for (const auto& group : model_.colorFeatures) {
        for (const ColorFeatureSource& feature : group) {
            for (const ColorValueSource& value : feature.values) {
                isUsed |= value.first.length != 0 || value.second.length != 0;
            }
        }
    }
    if (!model_.blob.empty() && !isUsed) {
        Report("commands-unused", "$.commands", std::to_string(model_.blob.size()) + " bytes of commands");
    }
}

void ModelChecker::CheckColorFeatures() {
    const bool isMonochrome = IsMonochrome(model_.device.colorCapability);
    for (const Word& word : kColorGroupWords) {
        const auto& features = model_.colorFeatures[static_cast<size_t>(word.value - 1)];
        const std::string groupPath = MemberPath("$.colorFeatures", word.name);
        if (!features.empty() && isMonochrome) {
            Report("color-unused", groupPath, "colour features");
        }
        List list;
        bool hasObjectCommands = false;
        for (size_t i = 0; i < features.size(); ++i) {
            const ColorFeatureSource& feature = features[i];
            const std::string path = ElementPath(groupPath, i);
            CheckLabel(feature.name, feature.label, path, list);
            if (feature.values.empty()) {
                Report("color-feature-without-values", path, Called(feature) + " has no values");
            } else if (std::all_of(feature.values.begin(), feature.values.end(), SendsNothing)) {
                Report("color-feature-sends-nothing", path, Called(feature) + " sends nothing");
            }
            const bool isForObjects =
                std::any_of(feature.values.begin(), feature.values.end(),
                            [](const ColorValueSource& value) { return value.second.length != 0; });
            if (isForObjects && hasObjectCommands) {
                Report("object-commands-twice", path,
                       Called(feature) + " isn't the group's first feature with object commands");
            }
            hasObjectCommands |= isForObjects;
            List values;
            for (size_t j = 0; j < feature.values.size(); ++j) {
                const ColorValueSource& value = feature.values[j];
                const std::string valuePath = ElementPath(path + ".values", j);
                CheckLabel(value.name, value.label, valuePath, values);
                if (value.first.length == 0 && value.first.start != 0 && value.second.length == 0) {
                    Report("command-empty", valuePath, Called(value) + " has a command of no bytes");
                }
            }
        }
    }
}

void ModelChecker::CheckColorModes() {
    constexpr uint32_t kKnownKinds = 1 | kColorModeSystem | kColorModeManual | kColorModeHasDefaults;
    if (!model_.colorModes.empty() && IsMonochrome(model_.device.colorCapability)) {
        Report("color-unused", "$.colorModes", "colour modes");
    }
    const bool hasFeatures = std::any_of(model_.colorFeatures.begin(), model_.colorFeatures.end(),
                                         [](const auto& features) { return !features.empty(); });
    List list;
    for (size_t i = 0; i < model_.colorModes.size(); ++i) {
        const ColorModeSource& mode = model_.colorModes[i];
        const std::string path = ElementPath("$.colorModes", i);
        const std::string called = Called(mode);
        if (!mode.label.Absent()) {  // else the mode is named by its kind
            CheckLabel(mode.name, mode.label, path, list);
        }
        const bool sets = (mode.kind & kColorModeHasDefaults) != 0;
        const bool isManual = (mode.kind & kColorModeManual) != 0;
        if ((mode.kind & ~kKnownKinds) != 0 || std::popcount(mode.kind) != 1) {
            Report("color-mode-kind", path, called + " has the kind " + std::to_string(mode.kind));
        }
        if (isManual && !hasFeatures) {
            Report("manual-without-features", path, called + " is manual, and there are no colour features");
        }
        if (sets && mode.settings.empty()) {
            Report("preset-without-settings", path, called + " selects nothing");
        } else if (!sets && !mode.settings.empty()) {
            Report("preset-settings-unused", path, called + " has selections without the flag");
        }
        for (const PresetSettingRecord& setting : mode.settings) {
            const bool isGroup = setting.group >= 1 && setting.group <= kColorGroupCount;
            const auto* features = isGroup ? &model_.colorFeatures[static_cast<size_t>(setting.group - 1)] : nullptr;
            const bool isFeature =
                isGroup && setting.feature >= 0 && static_cast<size_t>(setting.feature) < features->size();
            if (!isFeature || setting.option >= (*features)[static_cast<size_t>(setting.feature)].values.size()) {
                Report("preset-selects-nothing", path,
                       called + " selects value " + std::to_string(setting.option) + " of feature " +
                           std::to_string(setting.feature) + " of group " + std::to_string(setting.group));
            }
        }
    }
}

}  // namespace velmora
