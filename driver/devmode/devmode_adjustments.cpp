#include "driver/devmode/devmode_adjustments.h"

#include <cstring>

#include "driver/base/handles.h"
#include "driver/base/text.h"
#include "driver/devdesc/description_file.h"
#include "driver/devdesc/model_tables.h"
#include "driver/devdesc/paper_lookup.h"
#include "driver/devmode/devmode_fields.h"
#include "driver/entry/printer_access.h"
#include "driver/settings/device_info.h"
#include "driver/settings/watermark_list.h"

namespace velmora {
namespace {

struct Adjustment {
    const AdjustedPrinter& printer;
    uint32_t options;  // DeviceInfoOption bits
    DEVMODEW& open;
    PrivateDevMode& own;

    bool Has(DeviceInfoOption option) const { return (options & option) != 0; }
    PaperSize SizeOf(int paperId) const { return LookupPaperSize(printer.printer, printer.model, paperId); }
};

void SetPaperDimensions(const Adjustment& a) {
    const PaperSize size = a.SizeOf(a.open.dmPaperSize);
    a.open.dmPaperWidth = static_cast<SHORT>(size.width);
    a.open.dmPaperLength = static_cast<SHORT>(size.length);
}

void ReplaceUnnamedPaper(const Adjustment& a) {
    if (a.open.dmPaperSize >= kFirstNoPaper && a.open.dmPaperSize < DMPAPER_USER) {
        a.open.dmPaperSize = DefaultPaperForLocale();
    }
}

// Documents of some papers are scaled onto another paper, unless the user has them scaled already.
void FitToPaper(const Adjustment& a) {
    const PaperRecord* paper = FindPaperRecord(a.printer.model, a.open.dmPaperSize);
    if (!paper || paper->fitPaperId == 0 || a.own.scaleMode == kScaleFitCentred ||
        a.own.scaleMode == kScaleFitTopLeft) {
        return;
    }
    const PaperSize target = a.SizeOf(paper->fitPaperId);
    a.own.scaleMode = kScaleFitCentred;
    a.own.scaleValue = paper->fitPaperId;
    a.own.scaleWidth = static_cast<int16_t>(target.width);
    a.own.scaleLength = static_cast<int16_t>(target.length);
}

void FollowPaper(const Adjustment& a) {
    if (a.open.dmPaperSize != DMPAPER_USER) {
        SetPaperDimensions(a);
        FitToPaper(a);
    } else if (a.open.dmPaperWidth == 0 || a.open.dmPaperLength == 0) {
        a.open.dmPaperSize = DefaultPaperForLocale();
        SetPaperDimensions(a);
    }
}

void FollowMediumSource(const Adjustment& a) {
    const SHORT source = a.open.dmDefaultSource;
    if (source < kFirstMediumSource || !a.printer.model) {
        return;
    }
    const auto index = static_cast<size_t>(source - kFirstMediumSource);
    if (const MediaRecord* medium = RecordAt(a.printer.model->mediaTable, index)) {
        a.own.mediaIndex = static_cast<int16_t>(index + 1);
        a.open.dmMediaType = medium->mediaId;
    }
}

// The watermark must be one of the list's, and where the renderer takes it from a file, from the one for the colours
// that are printed.
void FollowWatermarkList(const Adjustment& a) {
    const WatermarkList list = a.printer.name ? LoadWatermarkList(a.printer.name) : WatermarkList();
    const WatermarkRecord* watermark = FindWatermarkByFile(list, a.own.watermarkFile);
    if (!watermark) {
        a.own.watermarkFlags = 0;
        return;
    }
    const uint16_t pdlType = a.printer.model->pdlType;
    if (pdlType == kPdlImage || pdlType == kPdlXps || HasPipelineConfig(a.printer.printer)) {
        return;
    }
    CopyText<WCHAR>(a.own.watermarkFile, std::size(a.own.watermarkFile),
                    a.open.dmColor == DMCOLOR_COLOR ? watermark->colorFileName : watermark->fileName);
    if (a.own.watermarkFile[0] == 0) {
        a.own.watermarkFlags = 0;
    }
}

void FollowColor(const Adjustment& a) {
    a.open.dmFields |= kColorFields;
    if (a.open.dmColor != DMCOLOR_MONOCHROME || a.own.colorMode == kColorSecondKind) {
        a.open.dmColor = DMCOLOR_COLOR;
    }
    if (a.own.watermarkFlags != 0) {
        FollowWatermarkList(a);
    }
    if (a.open.dmMediaType == 0) {
        a.open.dmFields &= ~static_cast<DWORD>(DM_MEDIATYPE);
    }
}

void DropColor(const Adjustment& a) {
    a.open.dmFields &= ~kColorFields;
    a.open.dmColor = 0;
    a.open.dmICMMethod = 0;
    a.open.dmICMIntent = 0;
}

void FollowColorCapability(const Adjustment& a) {
    if (a.printer.model && !IsMonochrome(a.printer.model->colorCapability)) {
        FollowColor(a);
    } else {
        DropColor(a);
    }
}

void FollowColorPreset(const Adjustment& a) {
    constexpr uint16_t kSystemPreset = 6;
    a.open.dmICMMethod = a.own.colorPreset == kSystemPreset ? DMICMMETHOD_SYSTEM : DMICMMETHOD_NONE;
}

void FollowCollation(const Adjustment& a) {
    a.open.dmCollate = a.own.collateCopy == 1 ? SHORT{DMCOLLATE_TRUE} : SHORT{DMCOLLATE_FALSE};
}

void FollowResolution(const Adjustment& a) {
    if (!a.printer.model || !a.printer.model->resolutionTable) {
        return;
    }
    const DeviceModel& model = *a.printer.model;
    const ResolutionRecord* const chosen =
        a.own.resolutionIndex >= 0 ? RecordAt(model.resolutionTable, static_cast<size_t>(a.own.resolutionIndex))
                                   : nullptr;
    if (chosen && IsResolution(*chosen, a.open.dmPrintQuality, a.open.dmYResolution)) {
        return;
    }
    const ResolutionRecord* resolution = FindResolution(model, a.open.dmPrintQuality, a.open.dmYResolution);
    if (!resolution) {
        resolution = DefaultResolution(model);
        if (!resolution) {
            return;
        }
        a.open.dmPrintQuality = static_cast<SHORT>(resolution->xDpi);
        a.open.dmYResolution = static_cast<SHORT>(resolution->yDpi);
    }
    if (a.own.resolutionId != 0 && a.own.resolutionId != resolution->resolutionId) {
        RescaleDots(&a.own, a.own.resolutionId, resolution->resolutionId);
    }
    a.own.resolutionIndex = static_cast<int16_t>(resolution - model.resolutionTable);
    a.own.resolutionId = resolution->resolutionId;
}

void FollowExtraOption(const Adjustment& a) {
    const DeviceModel* model = a.printer.model;
    if (!model || model->extraTextRef == 0) {
        return;
    }
    char text[kTextCapacity] = "";
    if (a.Has(kExtraInstalled)) {
        ReadText(a.printer.descriptionFile, static_cast<int16_t>(model->extraTextRef), text);
    }
    memset(a.own.extraText, 0, sizeof(a.own.extraText));
    CopyText<char>(a.own.extraText, std::size(a.own.extraText), text);
}

void FollowDuplexUnit(const Adjustment& a) {
    if (!a.Has(kDuplexInstalled)) {
        a.open.dmFields &= ~static_cast<DWORD>(DM_DUPLEX);
        a.open.dmDuplex = 0;
        a.own.booklet = 0;
        return;
    }
    a.open.dmFields |= DM_DUPLEX;
    if (a.own.booklet != 0) {
        a.open.dmDuplex = DMDUP_HORIZONTAL;
        a.open.dmCollate = DMCOLLATE_TRUE;
    }
}

// Whether the overlay that the job is to create is there already.
bool HasOverlayFile(const PrivateDevMode& devMode) {
    WCHAR path[ARRAYSIZE(devMode.settingsFolder) + ARRAYSIZE(devMode.overlayName)];
    WCHAR name[ARRAYSIZE(devMode.overlayName)];
    CopyText<WCHAR>(path, std::size(devMode.settingsFolder), devMode.settingsFolder);
    CopyText<WCHAR>(name, std::size(name), devMode.overlayName);
    AppendText(path, std::size(path), TEXT("\\"));
    AppendText<WCHAR>(path, std::size(path), name);
    return static_cast<bool>(OwnedFile(
        CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)));
}

void DropCreatedOverlay(const Adjustment& a) {
    constexpr uint16_t kCreateOverlay = 1;
    constexpr uint32_t kImageOverlayOption = 1u << 0;  // of defaultOptionFlags and optionFlags
    if (a.own.overlayMode != kCreateOverlay || a.own.overlayName[0] == 0 || !HasOverlayFile(a.own)) {
        return;
    }
    a.own.overlayMode = 0;
    a.own.overlayName[0] = 0;
    a.own.watermarkText[0] = 0;
    const DeviceModel* model = a.printer.model;
    if (model && model->pdlType == kPdlImage && model->colorCapability == kColor &&
        (model->defaultOptionFlags & kImageOverlayOption) != 0) {
        a.own.optionFlags |= kImageOverlayOption;
    }
}

// In their order: later ones build on what earlier ones set.
constexpr void (*kAdjustments[])(const Adjustment& a) = {
    ReplaceUnnamedPaper, FollowPaper,      FollowMediumSource, FollowColorCapability, FollowColorPreset,
    FollowCollation,     FollowResolution, FollowExtraOption,  FollowDuplexUnit,      DropCreatedOverlay,
};

}  // namespace

void AdjustDevMode(const AdjustedPrinter& printer, VelmoraDevMode* devMode) {
    const HeapOwner<DeviceInfo> info = GetDeviceInfo(printer.printer, printer.model);
    const Adjustment adjustment = {printer, info ? info->optionFlags : 0, devMode->publicPart, devMode->privatePart};
    for (const auto adjust : kAdjustments) {
        adjust(adjustment);
    }
}

void RescaleDots(PrivateDevMode* devMode, int16_t from, int16_t to) {
    for (const FieldDescriptor& field : PrivateFields()) {
        for (size_t i = 0; field.isInDots && i < field.count; ++i) {
            // The product is kept in 32 bits, whatever the field held.
            const auto dots = static_cast<uint32_t>(ReadFieldNumber(field, devMode, i));
            const auto product = static_cast<int32_t>(dots * static_cast<uint32_t>(to));
            WriteFieldNumber(field, devMode, i, int64_t{product} / from);
        }
    }
}

}  // namespace velmora
