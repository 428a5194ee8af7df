#include "driver/job/job_printer.h"

#include "driver/devdesc/model_tables.h"

namespace velmora {

FeatureLine SelectedFeatureLine(const DeviceModel& model, const FeatureRecord& feature, size_t index,
                                const DeviceInfo& installed, const PrivateDevMode& devMode) {
    const bool isInstalled = (feature.featureMask & installed.optionFlags) == feature.featureMask;
    return isInstalled && index < ARRAYSIZE(devMode.featureSelection)
               ? LineOfOption(model, feature, devMode.featureSelection[index])
               : FeatureLine{};
}

FeatureLine LineOfOption(const DeviceModel& model, const FeatureRecord& feature, int option) {
    if (option < 0 || static_cast<size_t>(option) >= CountOptions(model, feature)) {
        return {};
    }
    const OptionRecord* const record = OptionAt(model, feature.firstOption + option);
    return {feature.jobKeyRef, record ? record->jobValueRef : uint16_t{0}};
}

}  // namespace velmora
