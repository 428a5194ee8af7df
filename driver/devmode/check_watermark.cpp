#include "driver/devmode/devmode_field_table.h"
#include "driver/devmode/field_check.h"
#include "driver/devmode/private_check.h"

namespace velmora {
namespace {

// Switches the watermark off for a value that isn't accepted.
bool KeepWatermark(const PrivateCheck& check, bool isAccepted, const char* name) {
    return RepairUnless(check, isAccepted, PrivateField("watermarkFlags"), 0, name);
}

// The same for a text that isn't terminated, which becomes empty.
bool KeepWatermarkText(const PrivateCheck& check, const FieldDescriptor& text) {
    const bool isTerminated = LastCharacter(text, &check.devMode) == 0;
    if (!isTerminated) {
        ClearText(text, &check.devMode);
    }
    return KeepWatermark(check, isTerminated, text.name);
}

bool CheckRenderedWatermark(const PrivateCheck& check) {
    const PrivateDevMode& devMode = check.devMode;
    return KeepWatermark(check, devMode.watermarkIndex > 0, "watermarkIndex") &&
           KeepWatermark(check, devMode.watermarkFontSize > 0, "watermarkFontSize") &&
           KeepWatermark(check, devMode.watermarkAngle > 0, "watermarkAngle") &&
           KeepWatermarkText(check, PrivateField("watermarkFile"));
}

bool CheckTextWatermark(const PrivateCheck& check) {
    constexpr int kFullCircle = 3600;
    const PrivateDevMode& devMode = check.devMode;
    return KeepWatermark(check, devMode.watermarkIndex >= 0, "watermarkIndex") &&
           KeepWatermarkText(check, PrivateField("watermarkText")) &&
           KeepWatermarkText(check, PrivateField("watermarkFont")) &&
           KeepWatermark(check, devMode.watermarkFontSize != 0, "watermarkFontSize") &&
           KeepWatermark(check, devMode.watermarkAngle < kFullCircle, "watermarkAngle") &&
           KeepWatermark(check, IsAccepted(PrivateField("watermarkColor"), &devMode), "watermarkColor") &&
           KeepWatermark(check, IsAccepted(PrivateField("watermarkBold"), &devMode), "watermarkBold") &&
           KeepWatermark(check, IsAccepted(PrivateField("watermarkItalic"), &devMode), "watermarkItalic");
}

// The checks of the watermark's kind. One that fails doesn't end the others.
bool CheckWatermarkKind(const PrivateCheck& check) {
    const uint32_t flags = check.devMode.watermarkFlags;
    if ((flags & kWatermarkIsRendered) != 0) {
        return CheckRenderedWatermark(check);
    }
    if ((flags & kWatermarkIsImage) != 0) {
        return KeepWatermarkText(check, PrivateField("watermarkFile"));
    }
    return (flags & kWatermarkIsText) == 0 || CheckTextWatermark(check);
}

}  // namespace

bool CheckWatermark(const PrivateCheck& check) {
    PrivateDevMode* const devMode = &check.devMode;
    if (!CheckField(PrivateField("watermarkFlags"), devMode, 0, &check.report)) {
        return false;
    }
    return devMode->watermarkFlags == 0 ||
           (CheckField(PrivateField("watermarkPages"), devMode, 0, &check.report) && CheckWatermarkKind(check) &&
            CheckField(PrivateField("watermarkPosition"), devMode, 0, &check.report));
}

}  // namespace velmora
