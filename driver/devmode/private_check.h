// The checks of the private part that take more than a field's row in the table of fields. Each repairs what it doesn't
// accept, and is false once the validation is over. validate_private.cpp has their order.
#pragma once

#include "driver/devmode/devmode_fields.h"
#include "driver/devmode/validate_devmode.h"

namespace velmora {

struct PrivateCheck {
    const PrivateFacts& facts;
    const DeviceModel& model;
    PrivateDevMode& devMode;
    ValidationReport& report;

    // Whether the printer's XPS pipeline or its host-rendered images make it carry exception records.
    bool HasExceptions() const { return model.pdlType == kPdlImage || facts.hasPipelineConfig; }
};

// A device mode that isn't this driver's, of this layout, or for this printer's description file is rejected. Where the
// description file has moved, its path follows it.
bool CheckIdentity(const PrivateCheck& check);
bool CheckDescriptionPath(const PrivateCheck& check);

// Where the printer data file holds the model's fonts and patterns.
bool CheckFontDataOffset(const PrivateCheck& check);
bool CheckFontRecordCount(const PrivateCheck& check);
bool CheckPatternMode(const PrivateCheck& check);
bool CheckPatternOffset(const PrivateCheck& check);
bool CheckPatternSize(const PrivateCheck& check);

// A watermark with a bad value is switched off, and its other values are still checked.
bool CheckWatermark(const PrivateCheck& check);

// Sheets that are put in are left out where they have no paper or medium; their other values are still checked.
bool CheckFrontCover(const PrivateCheck& check);
bool CheckBackCover(const PrivateCheck& check);
bool CheckInterleave(const PrivateCheck& check);
bool CheckSeparator(const PrivateCheck& check);

// Places in the model's command blob.
bool CheckBlobRefs(const PrivateCheck& check);
bool CheckSliceCount(const PrivateCheck& check);
bool CheckBlobSlices(const PrivateCheck& check);

// Indices of the model's tables.
bool CheckMediaIndex(const PrivateCheck& check);
bool CheckFeatureSelections(const PrivateCheck& check);
bool CheckColorModeIndex(const PrivateCheck& check);
bool CheckResolutionIndex(const PrivateCheck& check);
bool CheckColorOptions(const PrivateCheck& check);

// Exception records and page lists, or what models without them have in their place.
bool CheckExceptionArea(const PrivateCheck& check);

// What several of them need.

inline constexpr int16_t kDocumentPaper = -1;  // 65535 as a paper id: no paper but the document's

constexpr bool IsBetween(int64_t value, int64_t low, int64_t high) {
    return value >= low && value <= high;
}

// Where what is looked at isn't accepted, the field's number becomes `repair`, which is reported as a repair of `name`.
bool RepairUnless(const PrivateCheck& check, bool isAccepted, const FieldDescriptor& field, int64_t repair,
                  const char* name);
inline bool RepairUnless(const PrivateCheck& check, bool isAccepted, const FieldDescriptor& field, int64_t repair) {
    return RepairUnless(check, isAccepted, field, repair, field.name);
}

// A text that rejects the private part where it isn't terminated.
bool RequireTerminated(const PrivateCheck& check, const FieldDescriptor& text);

// True for a number of media, 1-based; 0 alone where the model has none.
bool IsMedium(const DeviceModel& model, int64_t index);

// True for what the model takes of custom sizes, 0.1 mm.
bool IsCustomWidth(const DeviceModel& model, int64_t width);
bool IsCustomLength(const DeviceModel& model, int64_t length);

}  // namespace velmora
