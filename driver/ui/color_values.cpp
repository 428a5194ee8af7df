#include "driver/ui/color_values.h"

#include <iterator>

#include "driver/devmode/devmode_field_table.h"
#include "driver/devmode/devmode_fields.h"

namespace velmora {
namespace {

// Where the device mode holds a value.
struct AdjustmentField {
    int32_t ColorPreset::*value;
    const FieldDescriptor& field;
    size_t index;  // element of the field
    AdjustmentPart part;
};
constexpr AdjustmentField kFields[] = {
    {&ColorPreset::colorSample, PrivateField("outputSetting"), 0, kAdjustmentPart},
    {&ColorPreset::baseColor, PrivateField("colorChoiceB"), 0, kAdjustmentPart},
    {&ColorPreset::brightness, PrivateField("colorAdjust"), 0, kAdjustmentPart},
    {&ColorPreset::saturation, PrivateField("colorAdjust"), 2, kAdjustmentPart},
    {&ColorPreset::contrast, PrivateField("colorAdjust"), 1, kAdjustmentPart},
    {&ColorPreset::cyanRed, PrivateField("colorBalance"), 0, kAdjustmentPart},
    {&ColorPreset::magentaGreen, PrivateField("colorBalance"), 1, kAdjustmentPart},
    {&ColorPreset::yellowBlue, PrivateField("colorBalance"), 2, kAdjustmentPart},
    {&ColorPreset::workingValue, PrivateField("imageValueB"), 0, kHiddenPart},
    {&ColorPreset::gamma, PrivateField("colorFlagA"), 0, kCmykPart},
    {&ColorPreset::black, PrivateField("colorLevels"), 0, kCmykPart},
    {&ColorPreset::cyan, PrivateField("colorLevels"), 1, kCmykPart},
    {&ColorPreset::magenta, PrivateField("colorLevels"), 2, kCmykPart},
    {&ColorPreset::yellow, PrivateField("colorLevels"), 3, kCmykPart},
};

// In the order of ObjectColor.values.
constexpr int32_t ColorPreset::*kObjectValues[] = {
    &ColorPreset::brightness, &ColorPreset::contrast,     &ColorPreset::saturation, &ColorPreset::baseColor,
    &ColorPreset::cyanRed,    &ColorPreset::magentaGreen, &ColorPreset::yellowBlue,
};
static_assert(std::size(kObjectValues) == std::size(ObjectColor{}.values));

int64_t AcceptedValue(const ColorPreset& values, const AdjustmentField& row) {
    const int32_t value = values.*row.value;
    return row.field.Accepts(value) ? value : row.field.defaultValue;
}

}  // namespace

void ReadAdjustment(const PrivateDevMode& devMode, ColorPreset* values) {
    for (const AdjustmentField& row : kFields) {
        values->*row.value = static_cast<int32_t>(ReadFieldNumber(row.field, &devMode, row.index));
    }
}

void WriteAdjustment(const ColorPreset& values, uint32_t parts, PrivateDevMode* devMode) {
    for (const AdjustmentField& row : kFields) {
        if ((row.part & parts) != 0) {
            WriteFieldNumber(row.field, devMode, row.index, AcceptedValue(values, row));
        }
    }
}

void ResetAdjustment(uint32_t parts, ColorPreset* values) {
    for (const AdjustmentField& row : kFields) {
        if ((row.part & parts) != 0) {
            values->*row.value = static_cast<int32_t>(row.field.defaultValue);
        }
    }
}

void WriteObjectValues(const ColorPreset& values, ObjectColor* object) {
    for (size_t i = 0; i < std::size(kObjectValues); ++i) {
        for (const AdjustmentField& row : kFields) {
            if (row.value == kObjectValues[i]) {
                object->values[i] = static_cast<uint16_t>(AcceptedValue(values, row));
            }
        }
    }
}

ColorAdjustment AdjustmentOf(const ColorPreset& values) {
    return {values.baseColor, values.brightness,   values.contrast,  values.saturation,
            values.cyanRed,   values.magentaGreen, values.yellowBlue};
}

}  // namespace velmora
