#include "driver/devmode/private_check.h"

#include "driver/devdesc/model_tables.h"
#include "driver/devmode/field_check.h"

namespace velmora {

bool RepairUnless(const PrivateCheck& check, bool isAccepted, const FieldDescriptor& field, int64_t repair,
                  const char* name) {
    if (isAccepted) {
        return true;
    }
    WriteFieldNumber(field, &check.devMode, 0, repair);
    return check.report.CountRepair(name);
}

bool RequireTerminated(const PrivateCheck& check, const FieldDescriptor& text) {
    return LastCharacter(text, &check.devMode) == 0 || check.report.Reject(text.name);
}

bool IsMedium(const DeviceModel& model, int64_t index) {
    const auto count = static_cast<int64_t>(CountRecords(model.mediaTable));
    return IsBetween(index, count > 0 ? 1 : 0, count);
}

bool IsCustomWidth(const DeviceModel& model, int64_t width) {
    const CustomLimits limits = GetCustomLimits(model);
    return IsBetween(width, limits.minWidth, limits.maxWidth);
}

bool IsCustomLength(const DeviceModel& model, int64_t length) {
    const CustomLimits limits = GetCustomLimits(model);
    return IsBetween(length, limits.minLength, limits.maxLength);
}

}  // namespace velmora
