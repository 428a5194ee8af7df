#include "driver/devmode/devmode_field_table.h"
#include "driver/devmode/field_check.h"
#include "driver/devmode/private_check.h"

namespace velmora {
namespace {

// Fill patterns are for monochrome PCL 5 models only. With a bad value of theirs they are switched off.
bool CheckPattern(const PrivateCheck& check, const FieldDescriptor& field, bool isInRange) {
    const bool hasPatterns = check.model.pdlType == kPdlPcl5 && check.model.colorCapability == kColorNone;
    const bool isAccepted = isInRange && (hasPatterns || ReadFieldNumber(field, &check.devMode, 0) == 0);
    if (!isAccepted) {
        check.devMode.patternMode = 0;
    }
    return RepairUnless(check, isAccepted, field, 0);
}

}  // namespace

bool CheckFontDataOffset(const PrivateCheck& check) {
    const bool isAccepted = check.devMode.fontDataOffset <= check.facts.dataFileSize;
    if (!isAccepted) {
        check.devMode.fontRecordCount = 0;
    }
    return RepairUnless(check, isAccepted, PrivateField("fontDataOffset"), 0);
}

bool CheckFontRecordCount(const PrivateCheck& check) {
    const uint32_t records = check.devMode.fontRecordCount;
    const auto count = static_cast<uint32_t>(check.model.fontCount);
    return RepairUnless(check, records == 0 || records == count, PrivateField("fontRecordCount"), count);
}

bool CheckPatternMode(const PrivateCheck& check) {
    constexpr const FieldDescriptor& kField = PrivateField("patternMode");
    return CheckPattern(check, kField, IsAccepted(kField, &check.devMode));
}

bool CheckPatternOffset(const PrivateCheck& check) {
    return CheckPattern(check, PrivateField("patternOffset"), check.devMode.patternOffset <= check.facts.dataFileSize);
}

bool CheckPatternSize(const PrivateCheck& check) {
    constexpr const FieldDescriptor& kField = PrivateField("patternSize");
    return CheckPattern(check, kField, IsAccepted(kField, &check.devMode));
}

}  // namespace velmora
