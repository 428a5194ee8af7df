// The four groups of colour-correction features: where the model lists each group's features, where the device mode
// holds its selections, and where its values go. The description file and the device mode keep the groups in different
// orders; this is the one place that pairs them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "driver/devdesc/device_model.h"
#include "driver/devmode/private_devmode.h"

namespace velmora {

// Features of a group, and its selections in the device mode, at most.
inline constexpr size_t kColorFeaturesPerGroup = 4;

struct ColorGroup {
    size_t featuresSlot;      // pointer slot of the feature list in DeviceModel
    size_t selectionsOffset;  // int16_t[kColorFeaturesPerGroup] in PrivateDevMode
    int firstPair;            // the group's two pairs of blobRefs, -1 for none
    int secondPair;
    uint16_t sliceFlag;  // marks the group's slices in blobSlices
};

// In the order of PresetSettingRecord.group, whose first is 1, and of compiling.
inline constexpr ColorGroup kColorGroups[] = {
    {offsetof(DeviceModel, textColorFeatures), offsetof(PrivateDevMode, textColorOptions), 0, 3, 0x8000},
    {offsetof(DeviceModel, imageColorFeatures), offsetof(PrivateDevMode, imageColorOptions), 1, 4, 0x4000},
    {offsetof(DeviceModel, graphicsColorFeatures), offsetof(PrivateDevMode, graphicsColorOptions), 2, 5, 0x2000},
    {offsetof(DeviceModel, generalColorFeatures), offsetof(PrivateDevMode, generalColorOptions), -1, -1, 0},
};

enum class ColorGroupId : uint8_t { kText, kImage, kGraphics, kGeneral };  // index into kColorGroups

constexpr const ColorGroup& ColorGroupOf(ColorGroupId id) {
    return kColorGroups[static_cast<size_t>(id)];
}

// The group's feature list in a loaded model, or null.
inline const ColorFeatureRecord* ColorFeatures(const DeviceModel& model, const ColorGroup& group) {
    const ColorFeatureRecord* features = nullptr;
    memcpy(&features, reinterpret_cast<const char*>(&model) + group.featuresSlot, sizeof(void*));
    return features;
}

// The group's selection for feature `feature`, below kColorFeaturesPerGroup.
inline int16_t ColorSelection(const PrivateDevMode& devMode, const ColorGroup& group, size_t feature) {
    int16_t selection = 0;
    memcpy(&selection, reinterpret_cast<const char*>(&devMode) + group.selectionsOffset + feature * sizeof(selection),
           sizeof(selection));
    return selection;
}

inline void SetColorSelection(PrivateDevMode* devMode, const ColorGroup& group, size_t feature, int16_t selection) {
    memcpy(reinterpret_cast<char*>(devMode) + group.selectionsOffset + feature * sizeof(selection), &selection,
           sizeof(selection));
}

}  // namespace velmora
