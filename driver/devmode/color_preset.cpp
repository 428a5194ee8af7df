#include "driver/devmode/color_preset.h"

#include <iterator>

#include "driver/devdesc/model_tables.h"
#include "driver/devmode/color_groups.h"

namespace velmora {
namespace {

void CopyOptionDefaults(const DeviceModel& model, const ColorModeRecord& mode, PrivateDevMode* devMode) {
    if (mode.firstSetting < 0) {
        return;
    }
    for (int32_t index = mode.firstSetting;; ++index) {
        const PresetSettingRecord* setting = PresetSettingAt(model, index);
        if (!setting || EndsList(*setting)) {
            return;
        }
        const bool isGroup = setting->group > 0 && static_cast<size_t>(setting->group) <= std::size(kColorGroups);
        if (isGroup && setting->feature >= 0 && static_cast<size_t>(setting->feature) < kColorFeaturesPerGroup) {
            SetColorSelection(devMode, kColorGroups[setting->group - 1], static_cast<size_t>(setting->feature),
                              static_cast<int16_t>(setting->option));
        }
    }
}

}  // namespace

void ApplyColorModeSelections(const DeviceModel& model, uint16_t index, PrivateDevMode* devMode) {
    const ColorModeRecord* mode = RecordAt(model.colorModeTable, index);
    if (!mode || (mode->kind & (kColorModeManual | kColorModeHasDefaults)) == 0) {
        return;
    }
    if ((mode->kind & kColorModeManual) == 0) {
        CopyOptionDefaults(model, *mode, devMode);
    }
    CompileColorSelections(model, devMode);
}

void CompileColorSelections(const DeviceModel& model, PrivateDevMode* devMode) {
    if (model.pdlType > kPdlPostScript) {
        return;
    }
    memset(devMode->blobRefs, 0, sizeof(devMode->blobRefs));
    memset(devMode->blobSlices, 0, sizeof(devMode->blobSlices));
    int16_t slices = 0;
    for (const ColorGroup& group : kColorGroups) {
        const ColorFeatureRecord* features = ColorFeatures(model, group);
        for (size_t k = 0; k < kColorFeaturesPerGroup; ++k) {
            const ColorFeatureRecord* feature = RecordAt(features, k);
            const ColorValueRecord* value =
                feature ? ColorValueAt(model, feature->firstValue + ColorSelection(*devMode, group, k)) : nullptr;
            if (!value || EndsList(*value)) {
                continue;
            }
            if (group.firstPair >= 0 && value->secondLength != 0) {
                devMode->blobRefs[group.firstPair] = {static_cast<int16_t>(value->firstStart),
                                                      static_cast<int16_t>(value->firstLength)};
                devMode->blobRefs[group.secondPair] = {static_cast<int16_t>(value->secondStart),
                                                       static_cast<int16_t>(value->secondLength)};
            } else {
                devMode->blobSlices[slices++] = {static_cast<int16_t>(value->firstStart),
                                                 static_cast<uint16_t>(value->firstLength | group.sliceFlag)};
            }
        }
    }
    devMode->sliceCount = slices;
}

}  // namespace velmora
