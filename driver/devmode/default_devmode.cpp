#include "driver/devmode/default_devmode.h"

#include <iterator>

#include "driver/base/format.h"
#include "driver/base/text.h"
#include "driver/devdesc/description_file.h"
#include "driver/devdesc/model_tables.h"
#include "driver/devdesc/paper_lookup.h"
#include "driver/devmode/color_preset.h"
#include "driver/devmode/devmode_fields.h"
#include "driver/entry/printer_access.h"
#include "driver/settings/printer_data_file.h"

namespace velmora {
namespace {

constexpr uint16_t kMonochromePostScriptOutput = 2;  // outputOption
constexpr uint32_t kPatternsUsed = 2;                // patternMode
constexpr DWORD kDefaultMediaType = 1;               // dmMediaType without a medium (DMMEDIA_STANDARD, wingdi.h)

// A description file and its model, as a builder's steps share them.
struct ModelSource {
    HANDLE printer;
    HANDLE file;
    const DeviceModel& model;
};

// What doesn't depend on the model: the template, and what it can't hold.
void SetFixedValues(HANDLE printer, const WCHAR* printerName, VelmoraDevMode* devMode) {
    WriteDevModeTemplate(devMode);
    WCHAR corePath[MAX_PATH];
    DeviceNameFromPrinterName(devMode->publicPart.dmDeviceName, printerName,
                              std::size(devMode->publicPart.dmDeviceName));
    GetRenderCorePath(printer, corePath);
    devMode->publicPart.dmDriverVersion = GetDriverVersion(corePath);

    constexpr uint16_t kObjectModes[] = {1, 3, 2};
    static_assert(std::size(kObjectModes) == std::extent_v<decltype(PrivateDevMode::objectColor)>);
    for (size_t i = 0; i < std::size(kObjectModes); ++i) {
        devMode->privatePart.objectColor[i].mode = kObjectModes[i];
    }
}

void SetOptions(const DeviceModel& model, PrivateDevMode* devMode) {
    if (model.pdlType == kPdlPostScript) {
        devMode->nonPostScriptFlag = 0;
        if (IsMonochrome(model.colorCapability)) {
            devMode->outputOption = kMonochromePostScriptOutput;
        }
    }
    devMode->optionFlags |= model.defaultOptionFlags;
    devMode->modelCode = model.modelCode;
}

// Where the printer data file holds the model's patterns and fonts, and the default fonts.
void SetPatternsAndFonts(const ModelSource& source, PrivateDevMode* devMode) {
    const DeviceModel& model = source.model;
    const DWORD baseSize = GetBasePdfSize(source.printer);
    uint32_t patternBytes = 0;
    if (model.pdlType == kPdlPcl5 && model.colorCapability == kColorNone) {
        const ResolutionRecord* resolution =
            model.defaultResolution >= 0 ? RecordAt(model.resolutionTable, static_cast<size_t>(model.defaultResolution))
                                         : nullptr;
        if (resolution && resolution->patternSize != 0) {
            devMode->patternSize = static_cast<uint32_t>(resolution->patternSize);
            devMode->patternMode = kPatternsUsed;
            devMode->patternOffset = ReadPatternBlock(source.file, resolution->patternIndex, nullptr, 0) + baseSize;
        }
        patternBytes = GetPatternDataSize(model);
    }
    devMode->fontDataOffset = baseSize + patternBytes;
    devMode->fontRecordCount = static_cast<uint32_t>(model.fontCount);
    devMode->defaultFontSize = model.defaultFontSize;
    const auto setFont = [](const char* name, WCHAR* font, size_t capacity) {
        if (name) {
            WidenText(font, capacity, name, SIZE_MAX);
        }
    };
    setFont(model.defaultFontA, devMode->primaryFont, std::size(devMode->primaryFont));
    setFont(model.defaultFontB, devMode->secondaryFont, std::size(devMode->secondaryFont));
}

void SetSourcesAndMedia(const DeviceModel& model, VelmoraDevMode* devMode) {
    PrivateDevMode& own = devMode->privatePart;
    devMode->publicPart.dmDefaultSource = static_cast<SHORT>(model.defaultBin);
    own.interleaveBin = model.defaultBin;
    own.separatorBin = model.defaultBin;
    const auto medium = static_cast<int16_t>(model.defaultMedia);
    own.mediaIndex = medium;
    own.frontCoverMedia = medium;
    own.backCoverMedia = medium;
    own.interleaveMedia = medium;
    own.separatorMedia = medium;
}

// The second resolution of the model. A model that has only one takes that, so that the device mode names a resolution
// it has.
void SetResolution(const DeviceModel& model, VelmoraDevMode* devMode) {
    PrivateDevMode& own = devMode->privatePart;
    const ResolutionRecord* resolution = RecordAt(model.resolutionTable, static_cast<size_t>(own.resolutionIndex));
    if (!resolution) {
        resolution = RecordAt(model.resolutionTable, 0);
        if (!resolution) {
            return;
        }
        own.resolutionIndex = 0;
    }
    own.resolutionId = resolution->resolutionId;
    devMode->publicPart.dmPrintQuality = static_cast<SHORT>(resolution->xDpi);
    devMode->publicPart.dmYResolution = static_cast<SHORT>(resolution->yDpi);
}

void SetPaper(const ModelSource& source, DEVMODEW* devMode) {
    devMode->dmPaperSize = DMPAPER_A4;
    const PaperSize size = LookupPaperSize(source.printer, &source.model, DMPAPER_A4);
    devMode->dmPaperWidth = static_cast<SHORT>(size.width);
    devMode->dmPaperLength = static_cast<SHORT>(size.length);
}

void SetColor(const DeviceModel& model, VelmoraDevMode* devMode) {
    DEVMODEW& open = devMode->publicPart;
    PrivateDevMode& own = devMode->privatePart;
    own.colorMode = model.colorCapability;
    if (model.colorCapability != kColor) {
        return;
    }
    open.dmColor = DMCOLOR_COLOR;
    own.colorModeIndex = static_cast<int16_t>(model.defaultColorMode);
    ApplyColorModeSelections(model, model.defaultColorMode, &own);
    if (model.pdlType == kPdlImage) {
        open.dmFields |= DM_COLOR;
        own.imageMode = model.imageModeDefault;
        return;
    }
    open.dmFields |= kColorFields;
    const ColorModeRecord* mode = RecordAt(model.colorModeTable, model.defaultColorMode);
    open.dmICMMethod = mode && mode->kind == kColorModeSystem ? DMICMMETHOD_SYSTEM : DMICMMETHOD_NONE;
    open.dmICMIntent = model.defaultIcmIntent;
    const MediaRecord* medium =
        model.defaultMedia > 0 ? RecordAt(model.mediaTable, static_cast<size_t>(model.defaultMedia) - 1) : nullptr;
    open.dmMediaType = medium ? medium->mediaId : kDefaultMediaType;
}

void SetJobText(const DeviceModel& model, PrivateDevMode* devMode) {
    if (model.pdlType == kPdlPostScript && (model.defaultOptionFlags & kModelNoPostScriptJobName) != 0) {
        devMode->noJobName = 1;
    } else {
        const char* nameLine =
            (model.jobNameFlags & kJobNamedByDisplay) != 0 ? "@PJL JOB DISPLAY=\"%s\"\r\n" : "@PJL JOB NAME=\"%s\"\r\n";
        // The placeholder becomes the job's name when the job is printed.
        FormatAnsi(devMode->pjlJobStart, std::size(devMode->pjlJobStart), nameLine, "!JOBNAME");
    }
    AppendText(devMode->pjlJobStart, std::size(devMode->pjlJobStart), "@PJL SET GUISTARTJOB=1\r\n");
}

// Features whose first option record is empty are numbered from 65535 down instead of holding a selection.
void SetFeatureSelections(const DeviceModel& model, PrivateDevMode* devMode) {
    size_t i = 0;
    uint16_t withoutOptions = 65535;
    for (const FeatureRecord& feature : RecordList(model.featureTable)) {
        if (i == std::size(devMode->featureSelection)) {
            return;
        }
        const OptionRecord* first = OptionAt(model, feature.firstOption);
        if (!first || EndsList(*first)) {
            devMode->featureSelection[i] = static_cast<int16_t>(withoutOptions--);
        }
        ++i;
    }
}

}  // namespace

void BuildDefaultDevMode(HANDLE printer, const WCHAR* printerName, VelmoraDevMode* devMode) {
    SetFixedValues(printer, printerName, devMode);
    PrivateDevMode& own = devMode->privatePart;
    WCHAR path[MAX_PATH];
    const bool isFound = FindDescriptionFile(printer, path);
    CopyText<WCHAR>(own.descriptionPath, std::size(own.descriptionPath), path);
    const OwnedFile file = isFound ? OpenDescriptionFileAt(path) : OwnedFile();
    const HeapOwner<DeviceModel> model = LoadDeviceModel(file.Get());
    if (!model) {
        return;
    }
    const ModelSource source = {printer, file.Get(), *model};
    SetOptions(*model, &own);
    SetPatternsAndFonts(source, &own);
    SetSourcesAndMedia(*model, devMode);
    SetResolution(*model, devMode);
    SetPaper(source, &devMode->publicPart);
    SetColor(*model, devMode);
    SetJobText(*model, &own);
    SetFeatureSelections(*model, &own);
}

}  // namespace velmora
