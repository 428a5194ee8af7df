#include <algorithm>

#include "driver/devdesc/description_file.h"
#include "driver/devdesc/model_tables.h"
#include "driver/devdesc/paper_lookup.h"
#include "driver/devmode/devmode_field_table.h"
#include "driver/devmode/field_check.h"
#include "driver/entry/printer_access.h"

namespace velmora {
namespace {

struct PublicCheck {
    HANDLE printer;
    const DeviceModel& model;
    DEVMODEW& devMode;
    ValidationReport& report;
};

// Fields that every device mode of this driver carries.
constexpr DWORD kCarriedFields = DM_ORIENTATION | DM_PAPERSIZE | DM_COPIES | DM_DEFAULTSOURCE | DM_COLLATE;

bool CheckHeader(DEVMODEW* devMode, ValidationReport* report) {
    if (devMode->dmDeviceName[0] == 0) {
        return report->Reject("dmDeviceName");
    }
    if (devMode->dmSpecVersion != kDevModeSpecVersion) {
        return report->Reject("dmSpecVersion");
    }
    if (devMode->dmSize == kDevModeSize && devMode->dmDriverExtra == 0) {
        // The whole device mode counted as public part.
        devMode->dmSize = kPublicDevModeSize;
        devMode->dmDriverExtra = kPrivateDevModeSize;
    }
    if (devMode->dmSize != kPublicDevModeSize) {
        return report->Reject("dmSize");
    }
    if (devMode->dmDriverExtra != kPrivateDevModeSize) {
        return report->Reject("dmDriverExtra");
    }
    return devMode->dmFields != 0 || report->Reject("dmFields");
}

void CompleteFields(const DeviceModel& model, DEVMODEW* devMode) {
    devMode->dmFields |= kCarriedFields;
    if (model.colorCapability == kColor) {
        devMode->dmFields |= DM_COLOR;
    } else if ((devMode->dmFields & DM_COLOR) != 0) {
        devMode->dmFields &= ~static_cast<DWORD>(DM_COLOR);
        devMode->dmColor = 0;
    }
}

bool CheckDriverVersion(const PublicCheck& check) {
    if (check.devMode.dmDriverVersion != 0) {
        return true;
    }
    WCHAR corePath[MAX_PATH];
    GetRenderCorePath(check.printer, corePath);
    check.devMode.dmDriverVersion = GetDriverVersion(corePath);
    return check.report.CountRepair("dmDriverVersion");
}

bool CheckPaperSize(const PublicCheck& check) {
    constexpr const FieldDescriptor& kField = PublicField("dmPaperSize");
    if (IsAccepted(kField, &check.devMode)) {
        return true;
    }
    check.devMode.dmPaperSize = DefaultPaperForLocale();
    return check.report.CountRepair(kField.name);
}

bool CheckPaperDimensions(const PublicCheck& check) {
    DEVMODEW& devMode = check.devMode;
    if (devMode.dmDefaultSource == kAnySizeSource) {
        return true;
    }
    const CustomLimits limits = GetCustomLimits(check.model);
    const int least = std::min(limits.minWidth, limits.minLength);
    const int most = std::max(limits.maxWidth, limits.maxLength);
    const auto fits = [&](SHORT dimension) { return dimension >= least && dimension <= most; };
    if (fits(devMode.dmPaperLength) && fits(devMode.dmPaperWidth)) {
        return true;
    }
    const PaperSize size = LookupPaperSize(check.printer, &check.model, devMode.dmPaperSize);
    const bool isLandscape = devMode.dmOrientation == DMORIENT_LANDSCAPE;
    devMode.dmPaperWidth = static_cast<SHORT>(isLandscape ? size.length : size.width);
    devMode.dmPaperLength = static_cast<SHORT>(isLandscape ? size.width : size.length);
    return check.report.CountRepair("dmPaperLength, dmPaperWidth");
}

bool HasSource(const DeviceModel& model, SHORT source) {
    if (source >= kFirstMediumSource) {
        return RecordAt(model.mediaTable, static_cast<size_t>(source - kFirstMediumSource)) != nullptr;
    }
    for (const BinRecord& bin : RecordList(model.binTable)) {
        if (static_cast<SHORT>(bin.binId) == source) {
            return true;
        }
    }
    return source == kAnySizeSource;
}

bool CheckDefaultSource(const PublicCheck& check) {
    if (HasSource(check.model, check.devMode.dmDefaultSource)) {
        return true;
    }
    check.devMode.dmDefaultSource = static_cast<SHORT>(check.model.defaultBin);
    return check.report.CountRepair("dmDefaultSource");
}

bool CheckResolution(const PublicCheck& check) {
    if (FindResolution(check.model, check.devMode.dmPrintQuality, check.devMode.dmYResolution)) {
        return true;
    }
    // A model without resolutions has nothing to put there.
    if (const ResolutionRecord* resolution = DefaultResolution(check.model)) {
        check.devMode.dmPrintQuality = static_cast<SHORT>(resolution->xDpi);
        check.devMode.dmYResolution = static_cast<SHORT>(resolution->yDpi);
    }
    return check.report.CountRepair("dmPrintQuality, dmYResolution");
}

bool CheckColor(const PublicCheck& check) {
    SHORT color = check.devMode.dmColor;
    if (check.model.colorCapability == kColor) {
        color = color == DMCOLOR_MONOCHROME ? SHORT{DMCOLOR_MONOCHROME} : SHORT{DMCOLOR_COLOR};
    } else {
        color = 0;
    }
    if (color == check.devMode.dmColor) {
        return true;
    }
    check.devMode.dmColor = color;
    return check.report.CountRepair("dmColor");
}

bool CheckFormName(const PublicCheck& check) {
    constexpr size_t kClearedCharacters = 16;
    if (check.devMode.dmFormName[0] == 0) {
        return true;
    }
    std::fill_n(check.devMode.dmFormName, kClearedCharacters, WCHAR{0});
    return check.report.CountRepair("dmFormName");
}

// A check: a rule of its own, or the field's row in the table of fields with what a bad value becomes: 1 where dmFields
// has `fieldBit`, else `repair`.
struct Row {
    bool (*rule)(const PublicCheck& check);
    const FieldDescriptor* field;
    int64_t repair;
    DWORD fieldBit;
};

constexpr Row Rule(bool (*rule)(const PublicCheck& check)) {
    return {rule, nullptr, 0, 0};
}

consteval Row Plain(std::string_view name, int64_t repair, DWORD fieldBit = 0) {
    return {nullptr, &PublicField(name), repair, fieldBit};
}

// In the order of checking.
constexpr Row kRows[] = {
    Rule(CheckDriverVersion),
    Plain("dmOrientation", DMORIENT_PORTRAIT),
    Rule(CheckPaperSize),
    Rule(CheckPaperDimensions),
    Plain("dmScale", 100),
    Plain("dmCopies", 1),
    Rule(CheckDefaultSource),
    Rule(CheckResolution),
    Rule(CheckColor),
    Plain("dmDuplex", 0, DM_DUPLEX),
    Plain("dmTTOption", DMTT_DOWNLOAD),
    Plain("dmCollate", 0),
    Rule(CheckFormName),
    Plain("dmLogPixels", 0),
    Plain("dmBitsPerPel", 0),
    Plain("dmPelsWidth", 0),
    Plain("dmPelsHeight", 0),
    Plain("dmNup", 0),
    Plain("dmDisplayFrequency", 0),
    Plain("dmICMMethod", 0, DM_ICMMETHOD),
    Plain("dmICMIntent", 0, DM_ICMINTENT),
    Plain("dmMediaType", 0, DM_MEDIATYPE),
    Plain("dmDitherType", 0),
    Plain("dmReserved1", 0),
    Plain("dmReserved2", 0),
    Plain("dmPanningWidth", 0),
    Plain("dmPanningHeight", 0),
};

bool RunRow(const Row& row, const PublicCheck& check) {
    if (row.rule) {
        return row.rule(check);
    }
    const bool isSet = (check.devMode.dmFields & row.fieldBit) != 0;
    return CheckField(*row.field, &check.devMode, isSet ? 1 : row.repair, &check.report);
}

}  // namespace

void CheckPublicDevMode(HANDLE printer, const DeviceModel& model, DEVMODEW* devMode, ValidationReport* report) {
    if (!CheckHeader(devMode, report)) {
        return;
    }
    CompleteFields(model, devMode);
    const PublicCheck check = {printer, model, *devMode, *report};
    for (const Row& row : kRows) {
        if (!RunRow(row, check)) {
            return;
        }
    }
}

int ValidatePublicDevMode(HANDLE printer, DEVMODEW* devMode, const DeviceModel* model, ValidationReport* report) {
    ValidationReport unasked;
    ValidationReport& result = report ? *report : unasked;
    result = {};
    HeapOwner<DeviceModel> own;
    if (!model) {
        own = LoadDeviceModel(OpenDescriptionFile(printer).Get());
        model = own.Get();
    }
    if (model) {
        CheckPublicDevMode(printer, *model, devMode, &result);
    } else {
        result.Reject("description file");
    }
    return result.IsAccepted() ? 1 : 0;
}

}  // namespace velmora
