#include "driver/devdesc/model_tables.h"
#include "driver/devmode/devmode_field_table.h"
#include "driver/devmode/private_check.h"

namespace velmora {

bool CheckBlobRefs(const PrivateCheck& check) {
    const int blobSize = check.facts.blobSize;
    for (BlobRef& ref : check.devMode.blobRefs) {
        for (const bool isFirst : {true, false}) {
            const int16_t value = isFirst ? ref.first : ref.second;
            if (IsBetween(value, 0, blobSize)) {
                continue;
            }
            ref = {};
            if (!check.report.CountRepair("blobRefs")) {
                return false;
            }
        }
    }
    return true;
}

bool CheckSliceCount(const PrivateCheck& check) {
    return RepairUnless(check, IsBetween(check.devMode.sliceCount, 0, check.facts.blobSize), PrivateField("sliceCount"),
                        0);
}

bool CheckBlobSlices(const PrivateCheck& check) {
    const int blobSize = check.facts.blobSize;
    for (BlobSlice& slice : check.devMode.blobSlices) {
        const int end = slice.start + (slice.length & kSliceLengthMask);
        if (IsBetween(slice.start, 0, blobSize) && end <= blobSize) {
            continue;
        }
        slice = {};
        if (!check.report.CountRepair("blobSlices")) {
            return false;
        }
    }
    return true;
}

bool CheckMediaIndex(const PrivateCheck& check) {
    return RepairUnless(check, IsMedium(check.model, check.devMode.mediaIndex), PrivateField("mediaIndex"),
                        check.model.defaultMedia);
}

// A selection may stand one past the feature's last option: whoever uses it reads the record that ends the run.
bool CheckFeatureSelections(const PrivateCheck& check) {
    size_t i = 0;
    for (const FeatureRecord& feature : RecordList(check.model.featureTable)) {
        if (i == std::size(check.devMode.featureSelection)) {
            return true;
        }
        const auto options = static_cast<int64_t>(CountOptions(check.model, feature));
        if (!IsBetween(check.devMode.featureSelection[i], 0, options)) {
            check.devMode.featureSelection[i] = 0;
            if (!check.report.CountRepair("featureSelection")) {
                return false;
            }
        }
        ++i;
    }
    return true;
}

// Without colour modes 0 is the one index. Without resolutions there is none: such a model costs a repair each time.
bool CheckColorModeIndex(const PrivateCheck& check) {
    const int16_t index = check.devMode.colorModeIndex;
    const auto count = static_cast<int64_t>(CountRecords(check.model.colorModeTable));
    return RepairUnless(check, index == 0 || IsBetween(index, 0, count - 1), PrivateField("colorModeIndex"),
                        check.model.defaultColorMode);
}

bool CheckResolutionIndex(const PrivateCheck& check) {
    const auto count = static_cast<int64_t>(CountRecords(check.model.resolutionTable));
    return RepairUnless(check, IsBetween(check.devMode.resolutionIndex, 0, count - 1), PrivateField("resolutionIndex"),
                        check.model.defaultResolution);
}

bool CheckColorOptions(const PrivateCheck& check) {
    // Checked in the order in which the device mode holds them.
    constexpr struct {
        ColorGroupId group;
        const char* name;
    } kSelections[] = {{ColorGroupId::kText, "textColorOptions"},
                       {ColorGroupId::kGraphics, "graphicsColorOptions"},
                       {ColorGroupId::kImage, "imageColorOptions"},
                       {ColorGroupId::kGeneral, "generalColorOptions"}};
    for (const auto& selection : kSelections) {
        const int repairs = ValidateColorOptions(check.model, ColorGroupOf(selection.group), &check.devMode);
        bool goesOn = true;
        for (int i = 0; i < repairs; ++i) {
            goesOn = check.report.CountRepair(selection.name);
        }
        if (!goesOn) {
            return false;
        }
    }
    return true;
}

int ValidateColorOptions(const DeviceModel& model, const ColorGroup& group, PrivateDevMode* devMode) {
    constexpr int kLimit = ValidationReport::kRepairLimit;
    const ColorFeatureRecord* feature = ColorFeatures(model, group);
    int repairs = 0;
    for (size_t k = 0; k < kColorFeaturesPerGroup && repairs < kLimit; ++k) {
        size_t values = 0;
        if (feature && !EndsList(*feature)) {
            values = CountColorValues(model, *feature);
            ++feature;
        }
        // Without a feature, and of one without values, 0 is the one selection.
        const int16_t selection = ColorSelection(*devMode, group, k);
        if (selection != 0 && !IsBetween(selection, 0, static_cast<int64_t>(values) - 1)) {
            SetColorSelection(devMode, group, k, 0);
            ++repairs;
        }
    }
    return repairs;
}

}  // namespace velmora
