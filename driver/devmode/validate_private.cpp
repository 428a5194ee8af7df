#include "driver/devdesc/description_file.h"
#include "driver/devdesc/model_tables.h"
#include "driver/devmode/devmode_field_table.h"
#include "driver/devmode/field_check.h"
#include "driver/devmode/private_check.h"
#include "driver/settings/printer_data_file.h"

namespace velmora {
namespace {

bool CheckZoom(const PrivateCheck& check) {
    constexpr int kLeastPercent = 20;
    constexpr int kMostPercent = 500;
    return RepairUnless(
        check, !IsZoom(check.devMode.scaleMode) || IsBetween(check.devMode.scaleValue, kLeastPercent, kMostPercent),
        PrivateField("scaleMode"), 0);
}

bool CheckScaleTarget(const PrivateCheck& check) {
    const PrivateDevMode& devMode = check.devMode;
    if (devMode.scaleMode == 0 || IsZoom(devMode.scaleMode)) {
        return true;
    }
    const bool isPaper = devMode.scaleValue == kDocumentPaper || PublicField("dmPaperSize").Accepts(devMode.scaleValue);
    const bool isAccepted = isPaper && (devMode.scaleWidth == 0 || IsCustomWidth(check.model, devMode.scaleWidth)) &&
                            (devMode.scaleLength == 0 || IsCustomLength(check.model, devMode.scaleLength));
    return RepairUnless(check, isAccepted, PrivateField("scaleMode"), 0);
}

bool CheckNupOrder(const PrivateCheck& check) {
    return check.devMode.pagesPerSheet <= 1 || CheckField(PrivateField("nupOrder"), &check.devMode, 0, &check.report);
}

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

bool CheckFinishingSide(const PrivateCheck& check) {
    return check.devMode.finishingA == 0 || check.devMode.finishingB == 0 ||
           CheckField(PrivateField("finishingSide"), &check.devMode, 1, &check.report);
}

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
    Rule(CheckFrontCover),
    Rule(CheckBackCover),
    Rule(CheckInterleave),
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
    Rule(CheckSeparator),
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
