#include "driver/base/text.h"
#include "driver/devdesc/description_file.h"
#include "driver/devdesc/model_tables.h"
#include "driver/devmode/devmode_field_table.h"
#include "driver/devmode/field_check.h"
#include "driver/settings/printer_data_file.h"

namespace velmora {
namespace {

struct PrivateCheck {
    const PrivateFacts& facts;
    const DeviceModel& model;
    PrivateDevMode& devMode;
    ValidationReport& report;

    // Whether the printer's XPS pipeline or its host-rendered images make it carry exception records.
    bool HasExceptions() const { return model.pdlType == kPdlImage || facts.hasPipelineConfig; }
    // Fill patterns are for these models only.
    bool HasPatterns() const { return model.pdlType == kPdlPcl5 && model.colorCapability == kColorNone; }
};

constexpr bool IsBetween(int64_t value, int64_t low, int64_t high) {
    return value >= low && value <= high;
}

// --- What the private part is known by

// A text that rejects the private part where it isn't terminated.
bool RequireTerminated(const PrivateCheck& check, const FieldDescriptor& text) {
    return LastCharacter(text, &check.devMode) == 0 || check.report.Reject(text.name);
}

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

// The description file must be the printer's by its name; where it has moved, the path follows it.
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

// --- Printer data file, fonts and patterns

bool CheckFontDataOffset(const PrivateCheck& check) {
    if (check.devMode.fontDataOffset <= check.facts.dataFileSize) {
        return true;
    }
    check.devMode.fontRecordCount = 0;
    check.devMode.fontDataOffset = 0;
    return check.report.CountRepair("fontDataOffset");
}

bool CheckFontRecordCount(const PrivateCheck& check) {
    const auto count = static_cast<uint32_t>(check.model.fontCount);
    if (check.devMode.fontRecordCount == 0 || check.devMode.fontRecordCount == count) {
        return true;
    }
    check.devMode.fontRecordCount = count;
    return check.report.CountRepair("fontRecordCount");
}

bool CheckPatternMode(const PrivateCheck& check) {
    constexpr const FieldDescriptor& kField = PrivateField("patternMode");
    if (IsAccepted(kField, &check.devMode) && (check.devMode.patternMode == 0 || check.HasPatterns())) {
        return true;
    }
    check.devMode.patternMode = 0;
    return check.report.CountRepair(kField.name);
}

bool CheckPatternOffset(const PrivateCheck& check) {
    const uint32_t offset = check.devMode.patternOffset;
    if (offset <= check.facts.dataFileSize && (offset == 0 || check.HasPatterns())) {
        return true;
    }
    check.devMode.patternMode = 0;
    check.devMode.patternOffset = 0;
    return check.report.CountRepair("patternOffset");
}

bool CheckPatternSize(const PrivateCheck& check) {
    constexpr const FieldDescriptor& kField = PrivateField("patternSize");
    if (IsAccepted(kField, &check.devMode) && (check.devMode.patternSize == 0 || check.HasPatterns())) {
        return true;
    }
    check.devMode.patternMode = 0;
    check.devMode.patternSize = 0;
    return check.report.CountRepair(kField.name);
}

// --- Ranges that the model sets

constexpr int16_t kSameAsDocument = -1;  // 65535 as a paper id

// True for a number of media, 1-based; 0 alone where the model has none.
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

// --- Scaling and pages on a sheet

bool CheckZoom(const PrivateCheck& check) {
    constexpr int kLeastPercent = 20;
    constexpr int kMostPercent = 500;
    if (!IsZoom(check.devMode.scaleMode) || IsBetween(check.devMode.scaleValue, kLeastPercent, kMostPercent)) {
        return true;
    }
    check.devMode.scaleMode = 0;
    return check.report.CountRepair("scaleMode");
}

bool CheckScaleTarget(const PrivateCheck& check) {
    PrivateDevMode& devMode = check.devMode;
    if (devMode.scaleMode == 0 || IsZoom(devMode.scaleMode)) {
        return true;
    }
    const bool isPaper =
        devMode.scaleValue == kSameAsDocument || PublicField("dmPaperSize").Accepts(devMode.scaleValue);
    if (isPaper && (devMode.scaleWidth == 0 || IsCustomWidth(check.model, devMode.scaleWidth)) &&
        (devMode.scaleLength == 0 || IsCustomLength(check.model, devMode.scaleLength))) {
        return true;
    }
    devMode.scaleMode = 0;
    return check.report.CountRepair("scaleMode");
}

bool CheckNupOrder(const PrivateCheck& check) {
    return check.devMode.pagesPerSheet <= 1 || CheckField(PrivateField("nupOrder"), &check.devMode, 0, &check.report);
}

// --- Watermark

// Switches the watermark off for a value that isn't accepted.
bool KeepWatermark(const PrivateCheck& check, bool isAccepted, const char* name) {
    if (isAccepted) {
        return true;
    }
    check.devMode.watermarkFlags = 0;
    return check.report.CountRepair(name);
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

bool CheckWatermark(const PrivateCheck& check) {
    PrivateDevMode* const devMode = &check.devMode;
    if (!CheckField(PrivateField("watermarkFlags"), devMode, 0, &check.report)) {
        return false;
    }
    return devMode->watermarkFlags == 0 ||
           (CheckField(PrivateField("watermarkPages"), devMode, 0, &check.report) && CheckWatermarkKind(check) &&
            CheckField(PrivateField("watermarkPosition"), devMode, 0, &check.report));
}

// --- Sheets that are put in: covers, interleaved sheets, separators

// The fields that describe them, null where they have none of the kind, and the tray that takes the place of a bad one.
struct SheetFields {
    const FieldDescriptor* mode;
    const FieldDescriptor* bin;
    int64_t binRepair;
    const FieldDescriptor* paper;
    const FieldDescriptor* width;
    const FieldDescriptor* length;
    const FieldDescriptor* pages = nullptr;
    const FieldDescriptor* bothSides = nullptr;
    const FieldDescriptor* media;
};

constexpr SheetFields kFrontCover = {
    .mode = &PrivateField("frontCoverMode"),
    .bin = &PrivateField("frontCoverBin"),
    .binRepair = 261,
    .paper = &PrivateField("frontCoverPaper"),
    .width = &PrivateField("frontCoverWidth"),
    .length = &PrivateField("frontCoverLength"),
    .pages = &PrivateField("frontCoverNup"),
    .bothSides = &PrivateField("frontCoverBothSides"),
    .media = &PrivateField("frontCoverMedia"),
};
constexpr SheetFields kBackCover = {
    .mode = &PrivateField("backCoverMode"),
    .bin = &PrivateField("backCoverBin"),
    .binRepair = 264,
    .paper = &PrivateField("backCoverPaper"),
    .width = &PrivateField("backCoverWidth"),
    .length = &PrivateField("backCoverLength"),
    .bothSides = &PrivateField("backCoverBothSides"),
    .media = &PrivateField("backCoverMedia"),
};
constexpr SheetFields kInterleave = {
    .mode = &PrivateField("interleaveMode"),
    .bin = &PrivateField("interleaveBin"),
    .binRepair = kAutomaticSource,
    .paper = &PrivateField("interleavePaper"),
    .width = &PrivateField("interleaveWidth"),
    .length = &PrivateField("interleaveLength"),
    .media = &PrivateField("interleaveMedia"),
};
constexpr SheetFields kSeparator = {
    .mode = &PrivateField("separatorMode"),
    .bin = &PrivateField("separatorBin"),
    .binRepair = kAutomaticSource,
    .paper = &PrivateField("separatorPaper"),
    .width = &PrivateField("separatorWidth"),
    .length = &PrivateField("separatorLength"),
    .media = &PrivateField("separatorMedia"),
};

// Leaves the sheets out for a value that isn't accepted.
bool KeepSheets(const PrivateCheck& check, const SheetFields& fields, bool isAccepted, const char* name) {
    if (isAccepted) {
        return true;
    }
    WriteFieldNumber(*fields.mode, &check.devMode, 0, 0);
    return check.report.CountRepair(name);
}

bool HasSheetPaper(const PrivateCheck& check, const SheetFields& fields) {
    const auto number = [&](const FieldDescriptor* field) { return ReadFieldNumber(*field, &check.devMode, 0); };
    return number(fields.paper) == kSameAsDocument ||
           (fields.paper->Accepts(number(fields.paper)) && IsCustomWidth(check.model, number(fields.width)) &&
            IsCustomLength(check.model, number(fields.length)));
}

template <const SheetFields& fields>
bool CheckSheets(const PrivateCheck& check) {
    PrivateDevMode* const devMode = &check.devMode;
    const auto checkField = [&](const FieldDescriptor* field, int64_t repair) {
        return !field || CheckField(*field, devMode, repair, &check.report);
    };
    if (!checkField(fields.mode, 0)) {
        return false;
    }
    if (ReadFieldNumber(*fields.mode, devMode, 0) == 0) {
        return true;
    }
    return checkField(fields.bin, fields.binRepair) &&
           KeepSheets(check, fields, HasSheetPaper(check, fields), fields.paper->name) && checkField(fields.pages, 1) &&
           checkField(fields.bothSides, 1) &&
           KeepSheets(check, fields, IsMedium(check.model, ReadFieldNumber(*fields.media, devMode, 0)),
                      fields.media->name);
}

// --- Margins, media, overlays

bool CheckCustomMargins(const PrivateCheck& check) {
    constexpr uint16_t kCustomMargins = 2;
    constexpr const FieldDescriptor& kField = PrivateField("customMargins");
    if (check.devMode.marginMode != kCustomMargins) {
        return true;
    }
    const CustomLimits limits = GetCustomLimits(check.model);
    bool isAccepted = true;
    for (size_t i = 0; i < kField.count; ++i) {
        const int most = (i % 2 == 0 ? limits.maxWidth : limits.maxLength) / 2;
        isAccepted = isAccepted && IsBetween(check.devMode.customMargins[i], 0, most);
    }
    if (isAccepted) {
        return true;
    }
    check.devMode.marginMode = 0;
    for (size_t i = 0; i < kField.count; ++i) {
        check.devMode.customMargins[i] = 0;
    }
    return check.report.CountRepair(kField.name);
}

bool CheckMediaIndex(const PrivateCheck& check) {
    if (IsMedium(check.model, check.devMode.mediaIndex)) {
        return true;
    }
    check.devMode.mediaIndex = static_cast<int16_t>(check.model.defaultMedia);
    return check.report.CountRepair("mediaIndex");
}

bool KeepOverlayName(const PrivateCheck& check, const FieldDescriptor& name) {
    if (check.devMode.overlayMode == 0 || LastCharacter(name, &check.devMode) == 0) {
        return true;
    }
    ClearText(name, &check.devMode);
    check.devMode.overlayMode = 0;
    return check.report.CountRepair(name.name);
}

bool CheckOverlayName(const PrivateCheck& check) {
    return KeepOverlayName(check, PrivateField("overlayName"));
}

bool CheckOverlayName2(const PrivateCheck& check) {
    return KeepOverlayName(check, PrivateField("overlayName2"));
}

// --- The command blob

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
    if (IsBetween(check.devMode.sliceCount, 0, check.facts.blobSize)) {
        return true;
    }
    check.devMode.sliceCount = 0;
    return check.report.CountRepair("sliceCount");
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

bool CheckFinishingSide(const PrivateCheck& check) {
    return check.devMode.finishingA == 0 || check.devMode.finishingB == 0 ||
           CheckField(PrivateField("finishingSide"), &check.devMode, 1, &check.report);
}

// --- Indices of the model's tables

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
    if (index == 0 || IsBetween(index, 0, static_cast<int64_t>(CountRecords(check.model.colorModeTable)) - 1)) {
        return true;
    }
    check.devMode.colorModeIndex = static_cast<int16_t>(check.model.defaultColorMode);
    return check.report.CountRepair("colorModeIndex");
}

bool CheckResolutionIndex(const PrivateCheck& check) {
    const auto count = static_cast<int64_t>(CountRecords(check.model.resolutionTable));
    if (IsBetween(check.devMode.resolutionIndex, 0, count - 1)) {
        return true;
    }
    check.devMode.resolutionIndex = check.model.defaultResolution;
    return check.report.CountRepair("resolutionIndex");
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

// --- Exception area

constexpr const char* kExceptionArea = "exceptionArea";
constexpr size_t kExceptionStart = offsetof(PrivateDevMode, exceptionArea);
constexpr size_t kExceptionEnd = kExceptionStart + sizeof(PrivateDevMode::exceptionArea);  // none begins beyond it
constexpr int kMostKind = 6;                                                               // kind codes of records
constexpr int kMostSlot = 3;                                                               // slots of page lists

bool EmptyExceptionArea(const PrivateCheck& check) {
    check.devMode.exceptionCount = 0;
    check.devMode.pageListCount = 0;
    return check.report.CountRepair(kExceptionArea);
}

// Models without exception records: one byte of the area that must be 0.
bool CheckUnusedExceptionArea(const PrivateCheck& check) {
    constexpr size_t kCheckedByte = 3091;
    uint8_t& byte = check.devMode.exceptionArea[kCheckedByte - kExceptionStart];
    if (byte == 0) {
        return true;
    }
    byte = 0;
    return check.report.CountRepair(kExceptionArea);
}

// A byte of the area that may hold 0 to `most`.
bool CheckAreaByte(const PrivateCheck& check, size_t place, int most) {
    auto* const byte = reinterpret_cast<uint8_t*>(&check.devMode) + place;
    if (*byte <= most) {
        return true;
    }
    *byte = 0;
    return check.report.CountRepair(kExceptionArea);
}

// Lengths come from outside: a record or list may claim any. One whose successor would begin beyond the area empties
// it. What follows a record of length 0 lies at the same place; the counts bound the walk.
bool CheckExceptionArea(const PrivateCheck& check) {
    if (!check.HasExceptions()) {
        return CheckUnusedExceptionArea(check);
    }
    PrivateDevMode& devMode = check.devMode;
    for (const FieldDescriptor* count : {&PrivateField("exceptionCount"), &PrivateField("pageListCount")}) {
        if (!IsAccepted(*count, &devMode) && !EmptyExceptionArea(check)) {
            return false;
        }
    }
    const auto* const part = reinterpret_cast<const uint8_t*>(&devMode);
    size_t place = kExceptionStart;
    for (int i = 0; i < devMode.exceptionCount; ++i) {
        const size_t length = part[place] | static_cast<size_t>(part[place + 1]) << 8;
        if (!CheckAreaByte(check, place + sizeof(uint16_t), kMostKind)) {
            return false;
        }
        place += length;
        if (place > kExceptionEnd) {
            return EmptyExceptionArea(check);
        }
    }
    for (int i = 0; i < devMode.pageListCount; ++i) {
        const size_t pages = part[place + 1];
        if (!CheckAreaByte(check, place, kMostSlot)) {
            return false;
        }
        place += 2 * sizeof(uint8_t) + pages * sizeof(uint16_t);
        if (place > kExceptionEnd) {
            return EmptyExceptionArea(check);
        }
    }
    return true;
}

// --- The sheets' own fields

bool CheckPaperMatch(const PrivateCheck& check) {
    return CheckField(PrivateField("uiFlagD"), &check.devMode, check.devMode.uiZoomOn == 0 ? 1 : 0, &check.report);
}

bool CheckColorPreset(const PrivateCheck& check) {
    if (IsAccepted(PrivateField("colorPreset"), &check.devMode)) {
        return true;
    }
    check.devMode.colorPreset = 1;
    check.devMode.colorAuto = 1;
    return check.report.CountRepair("colorPreset");
}

bool CheckColorAuto(const PrivateCheck& check) {
    constexpr uint16_t kMonochromePreset = 4;
    return CheckField(PrivateField("colorAuto"), &check.devMode, check.devMode.colorPreset != kMonochromePreset ? 1 : 0,
                      &check.report);
}

// --- The table

// A check: a rule of its own, or the field's row in the table of fields with what a bad number becomes.
struct Row {
    bool (*rule)(const PrivateCheck& check);
    const FieldDescriptor* field;
    int64_t repair;
    bool rejects;  // what the field's row doesn't accept isn't repaired but rejects
};

constexpr Row Rule(bool (*rule)(const PrivateCheck& check)) {
    return {rule, nullptr, 0, false};
}

consteval Row Plain(std::string_view name, int64_t repair) {
    return {nullptr, &PrivateField(name), repair, false};
}

// A text, which becomes empty where it isn't terminated.
consteval Row Text(std::string_view name) {
    return Plain(name, 0);
}

consteval Row RequiredText(std::string_view name) {
    return {nullptr, &PrivateField(name), 0, true};
}

bool RunRow(const Row& row, const PrivateCheck& check) {
    if (row.rule) {
        return row.rule(check);
    }
    return row.rejects ? RequireTerminated(check, *row.field)
                       : CheckField(*row.field, &check.devMode, row.repair, &check.report);
}

// Counted repairs, in the order of checking.
constexpr Row kRows[] = {
    Rule(CheckFontDataOffset),
    Plain("trueTypeMode", 0),
    Plain("nonPostScriptFlag", 0),
    Rule(CheckFontRecordCount),
    Rule(CheckPatternMode),
    Rule(CheckPatternOffset),
    Rule(CheckPatternSize),
    Plain("reserved156", 0),
    Plain("rotate180", 0),
    Plain("collateCopy", 0),
    Plain("scaleMode", 0),
    Rule(CheckZoom),
    Rule(CheckScaleTarget),
    Plain("booklet", 0),
    Plain("pagesPerSheet", 1),
    Plain("layoutMode", 0),
    Rule(CheckNupOrder),
    Plain("nupBorderWidth", 0),
    Rule(CheckWatermark),
    Rule(CheckSheets<kFrontCover>),
    Rule(CheckSheets<kBackCover>),
    Rule(CheckSheets<kInterleave>),
    Plain("marginMode", 0),
    Rule(CheckCustomMargins),
    Text("extraText"),
    Text("auxText"),
    Text("pjlJobStart"),
    Text("pjlJobEnd"),
    Plain("noJobName", 0),
    Plain("colorMode", 0),
    Rule(CheckMediaIndex),
    Plain("blackText", 0),
    Plain("outputOption", 0),
    Plain("pageOrderFlags", 0),
    Plain("psContrast", 0),
    Plain("psBrightness", 0),
    Plain("psHalftoneFrequency", 0),
    Plain("psHalftoneAngle", 0),
    Plain("psHalftoneExtra", 0),
    Plain("overlayMode", 0),
    Rule(CheckOverlayName),
    Rule(CheckOverlayName2),
    Rule(CheckBlobRefs),
    Rule(CheckSliceCount),
    Rule(CheckSheets<kSeparator>),
    Plain("posterMode", 0),
    Plain("finishingA", 0),
    Plain("finishingB", 0),
    Rule(CheckFinishingSide),
    Plain("finishingOption", 0),
    Plain("imageValueA", 0),
    Plain("imageValueB", 0),
    Rule(CheckBlobSlices),
    Rule(CheckFeatureSelections),
    Plain("extraKeywordIndex", 0),
    Plain("customUnit", 0),
    Plain("extraFlag", 0),
    Rule(CheckColorModeIndex),
    Rule(CheckResolutionIndex),
    Rule(CheckColorOptions),
    Rule(CheckExceptionArea),
    RequiredText("uiCode"),  // byte 2668
    Plain("uiFlagA", 0),
    Plain("uiZoomOn", 0),
    Plain("uiZoomPercent", 100),
    Plain("uiRotate180", 0),
    Plain("uiDuplex", 0),
    Plain("uiFlagB", 0),
    RequiredText("uiLabel"),  // byte 2683
    Plain("uiFlagC", 0),
    Plain("uiPageLayout", 1),
    Rule(CheckPaperMatch),
    Plain("uiBinding", 0),
    Plain("uiShiftX", 0),
    Plain("uiShiftY", 0),
    Plain("uiPageOrder", 0),
    Plain("uiFlagE", 0),
    Plain("uiChoice", 1),
    Plain("customWidth", 21000),
    Plain("customLength", 29700),
    Rule(CheckColorPreset),
    Rule(CheckColorAuto),
    Plain("colorAdjust", 0),
    Plain("colorRendering", 1),
    Plain("colorChoiceA", 1),
    Plain("colorChoiceB", 3),
    Plain("colorBalance", 0),
    Plain("colorFlagA", 1),
    Plain("colorLevels", 0),
    Plain("colorFlagB", 0),
    RequiredText("colorPresetName"),  // character at 2892
    Plain("resolutionFlag", 0),
    Plain("outputSetting", 0),
    Plain("outputFlag", 0),
    Plain("outputLevel", 0),
    Plain("outputStep", 7),
    Plain("finishFlagA", 0),
    Plain("finishChoice", 0),
    Plain("finishSide", 1),
    Plain("finishFlagB", 0),
    RequiredText("outputText"),  // byte 3066
    Plain("finishFlags", 0),
    Plain("finishFlagC", 1),
};

}  // namespace

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

PrivateFacts ReadPrivateFacts(HANDLE printer, const DriverFiles& files, HANDLE file) {
    PrivateFacts facts = {};
    FindDescriptionFile(files, facts.descriptionPath);
    facts.hasPipelineConfig = HasPipelineConfig(files);
    facts.dataFileSize = MeasurePrinterDataFile(printer);
    facts.blobSize = ReadBlob(file, nullptr, 0);
    return facts;
}

PrivateFacts ReadPrivateFacts(HANDLE printer, HANDLE file) {
    return ReadPrivateFacts(printer, DriverFiles(printer), file);
}

void CheckPrivateDevMode(const PrivateFacts& facts, const DeviceModel& model, PrivateDevMode* devMode,
                         ValidationReport* report) {
    constexpr uint8_t kAcceptUnchecked = 0x42;  // acceptMark
    const PrivateCheck check = {facts, model, *devMode, *report};
    if (!CheckIdentity(check) || !CheckDescriptionPath(check) ||
        !RequireTerminated(check, PrivateField("settingsFolder")) || devMode->acceptMark == kAcceptUnchecked) {
        return;
    }
    for (const Row& row : kRows) {
        if (!RunRow(row, check)) {
            return;
        }
    }
}

int ValidatePrivateDevMode(HANDLE printer, PrivateDevMode* devMode, HANDLE file, const DeviceModel* model,
                           ValidationReport* report) {
    ValidationReport unasked;
    ValidationReport& result = report ? *report : unasked;
    result = {};
    OwnedFile ownFile;
    if (file == INVALID_HANDLE_VALUE) {
        ownFile = OpenDescriptionFile(printer);
        file = ownFile.Get();
    }
    HeapOwner<DeviceModel> ownModel;
    if (!model) {
        ownModel = LoadDeviceModel(file);
        model = ownModel.Get();
    }
    if (file != INVALID_HANDLE_VALUE && model) {
        CheckPrivateDevMode(ReadPrivateFacts(printer, file), *model, devMode, &result);
    } else {
        result.Reject("description file");
    }
    return result.IsAccepted() ? 1 : 0;
}

}  // namespace velmora
