#include "driver/ui/default_settings.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "driver/base/text.h"
#include "driver/devmode/devmode_field_table.h"
#include "driver/devmode/devmode_fields.h"
#include "driver/ui/color_rules.h"
#include "driver/ui/nup_border.h"
#include "driver/ui/output_rules.h"
#include "driver/ui/paper_choices.h"

namespace velmora {
namespace {

// A number for each element of a field.
struct FieldValue {
    const FieldDescriptor& field;
    int64_t value;
};
constexpr FieldValue kLayoutSettings[] = {
    {PrivateField("customUnit"), kMillimetres},
    {PrivateField("customWidth"), kUsualCustomWidth},
    {PrivateField("customLength"), kUsualCustomLength},
    {PrivateField("uiBinding"), 0},
    {PrivateField("uiShiftX"), 0},
    {PrivateField("uiShiftY"), 0},
    {PrivateField("uiPageOrder"), 0},
    {PrivateField("uiFlagE"), 0},
    {PrivateField("layoutMode"), kNoBorder},
    {PrivateField("uiChoice"), kPlainBorder},
};
constexpr int64_t kResolution = 600;  // dots per inch, whatever the model's first resolution is
constexpr FieldValue kPublicColorSettings[] = {
    {PublicField("dmColor"), DMCOLOR_COLOR},      {PublicField("dmPrintQuality"), kResolution},
    {PublicField("dmYResolution"), kResolution},  {PublicField("dmICMMethod"), DMICMMETHOD_NONE},
    {PublicField("dmICMIntent"), kDefaultIntent},
};
constexpr FieldValue kColorSettings[] = {
    {PrivateField("colorPreset"), kPageModeFirst},
    {PrivateField("colorMode"), 1},
    {PrivateField("colorAuto"), 1},
    {PrivateField("resolutionIndex"), 1},
    {PrivateField("resolutionId"), kResolution},
    {PrivateField("colorRendering"), 1},
    {PrivateField("colorChoiceA"), 1},
    {PrivateField("resolutionFlag"), 0},
    {PrivateField("colorFlagB"), 0},
    {PrivateField("outputSetting"), 0},
    {PrivateField("colorChoiceB"), 0},
    {PrivateField("colorAdjust"), 0},
    {PrivateField("colorBalance"), 0},
    {PrivateField("colorLevels"), 0},
    {PrivateField("colorFlagA"), 1},
};
constexpr FieldValue kOutputSettings[] = {
    {PrivateField("finishFlagA"), 0}, {PrivateField("finishChoice"), 0}, {PrivateField("finishSide"), 0},
    {PrivateField("finishFlagB"), 0}, {PrivateField("finishFlags"), 0},
};

void WriteFields(std::span<const FieldValue> rows, void* part) {
    for (const FieldValue& row : rows) {
        for (size_t i = 0; i < row.field.count; ++i) {
            WriteFieldNumber(row.field, part, i, row.value);
        }
    }
}

// The text of a choice, cut to the field, and 0 behind it.
template <size_t length>
void StoreChoiceText(const SheetContext& context, const ChoiceEntry& choice, WCHAR (&field)[length]) {
    WCHAR text[kChoiceTextCapacity];
    LoadText(context, choice.stringId, text, ARRAYSIZE(text));
    std::fill(std::begin(field), std::end(field), WCHAR{0});
    CopyText<WCHAR>(field, length, text);
}

void ResetTreatment(const SheetContext& context, size_t kind, PrivateDevMode* devMode) {
    ObjectColor& object = devMode->objectColor[kind];
    object.mode = kDefaultTreatments[kind];
    object.flag = 0;
    std::fill(std::begin(object.values), std::end(object.values), uint16_t{0});
    for (const ChoiceEntry& choice : kTreatmentChoices) {
        if (choice.value == object.mode) {
            StoreChoiceText(context, choice, devMode->objectPresetNames[kind]);
        }
    }
}

}  // namespace

void ResetLayoutSettings(PrivateDevMode* devMode) {
    WriteFields(kLayoutSettings, devMode);
}

void ResetColorSettings(SheetContext* context) {
    PrivateDevMode& own = context->devMode->privatePart;
    WriteFields(kPublicColorSettings, &context->devMode->publicPart);
    WriteFields(kColorSettings, &own);
    StoreChoiceText(*context, kPresetChoices[0], own.colorPresetName);
    for (size_t kind = 0; kind < kObjectKinds; ++kind) {
        ResetTreatment(*context, kind, &own);
    }
    // Goes back with outputSetting, though no page edits it.
    std::fill(std::begin(own.reserved3038), std::end(own.reserved3038), uint8_t{0});
}

void ResetOutputSettings(PrivateDevMode* devMode) {
    WriteFields(kOutputSettings, devMode);
    std::fill_n(devMode->outputText, sizeof(devMode->outputText) - 1, '\0');
    SetFinishFlagC(true, devMode);
}

}  // namespace velmora
