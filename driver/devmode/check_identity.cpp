#include "driver/base/text.h"
#include "driver/devmode/devmode_field_table.h"
#include "driver/devmode/field_check.h"
#include "driver/devmode/private_check.h"

namespace velmora {

bool CheckIdentity(const PrivateCheck& check) {
    constexpr uint16_t kNegatedExceptionAreaOffset = 0x10000 - kExceptionAreaOffset;
    const PrivateDevMode& devMode = check.devMode;
    if (devMode.privateVersion != kPrivateVersion) {
        return check.report.Reject("privateVersion");
    }
    if (devMode.privateSignature != kPrivateSignature) {
        return check.report.Reject("privateSignature");
    }
    if (devMode.optionAreaOffset != kOptionAreaOffset) {
        return check.report.Reject("optionAreaOffset");
    }
    if (devMode.sliceTableOffset != kSliceTableOffset) {
        return check.report.Reject("sliceTableOffset");
    }
    const uint16_t exceptions = devMode.exceptionAreaOffset;
    if (exceptions != 0 && exceptions != kExceptionAreaOffset &&
        (exceptions != kNegatedExceptionAreaOffset || check.HasExceptions())) {
        return check.report.Reject("exceptionAreaOffset");
    }
    if (!IsAccepted(PrivateField("extensionMagicA"), &devMode)) {
        return check.report.Reject("extensionMagicA");
    }
    return IsAccepted(PrivateField("extensionMagicB"), &devMode) || check.report.Reject("extensionMagicB");
}

bool CheckDescriptionPath(const PrivateCheck& check) {
    constexpr const FieldDescriptor& kField = PrivateField("descriptionPath");
    PrivateDevMode& devMode = check.devMode;
    if (!RequireTerminated(check, kField)) {
        return false;
    }
    WCHAR path[ARRAYSIZE(devMode.descriptionPath)];
    CopyText<WCHAR>(path, std::size(path), devMode.descriptionPath);
    if (!TextsEqual(FileNamePart(path), FileNamePart(check.facts.descriptionPath))) {
        return check.report.Reject(kField.name);
    }
    if (!TextsEqual<WCHAR>(path, check.facts.descriptionPath)) {
        CopyText(devMode.descriptionPath, std::size(devMode.descriptionPath), check.facts.descriptionPath);
    }
    return true;
}

}  // namespace velmora
