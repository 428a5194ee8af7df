#include "driver/devmode/document_properties.h"

#include <algorithm>
#include <cstring>

#include "driver/devdesc/description_file.h"
#include "driver/devdesc/paper_lookup.h"
#include "driver/devmode/devmode_adjustments.h"
#include "driver/devmode/validate_devmode.h"
#include "driver/entry/printer_access.h"
#include "driver/entry/spool_directory.h"
#include "driver/entry/stored_devmode.h"

namespace velmora {
namespace {

// What a device mode of another driver sets.
constexpr DWORD kForeignFields =
    DM_ORIENTATION | DM_PAPERSIZE | DM_PAPERLENGTH | DM_PAPERWIDTH | DM_COPIES | DM_DEFAULTSOURCE | DM_COLLATE;
static_assert(kForeignFields == 0x830F);

bool IsForeign(const DEVMODEW& devMode) {
    return DWORD{devMode.dmSize} + devMode.dmDriverExtra < kDevModeSize;
}

SHORT PositiveOr(SHORT value, SHORT otherwise) {
    return value >= 1 ? value : otherwise;
}

// Takes the main settings of a device mode of another driver, of which only its own bytes are read: what it lacks is 0.
void TakeForeignSettings(HANDLE printer, const DeviceModel* model, const DEVMODEW& foreign, DEVMODEW* output) {
    DEVMODEW input = {};
    memcpy(&input, &foreign, std::min<size_t>(foreign.dmSize, sizeof(input)));
    output->dmFields = kForeignFields;
    output->dmCopies = PositiveOr(input.dmCopies, 1);
    output->dmCollate = input.dmCollate == DMCOLLATE_TRUE ? SHORT{DMCOLLATE_TRUE} : SHORT{DMCOLLATE_FALSE};
    output->dmDefaultSource = PositiveOr(
        input.dmDefaultSource, model ? static_cast<SHORT>(model->defaultBin) : static_cast<SHORT>(kAutomaticSource));
    output->dmOrientation =
        input.dmOrientation == DMORIENT_LANDSCAPE ? SHORT{DMORIENT_LANDSCAPE} : SHORT{DMORIENT_PORTRAIT};
    output->dmPaperSize = PositiveOr(input.dmPaperSize, DefaultPaperForLocale());
    const PaperSize size = LookupPaperSize(printer, model, output->dmPaperSize);
    output->dmPaperWidth = static_cast<SHORT>(size.width);
    output->dmPaperLength = static_cast<SHORT>(size.length);
    if (model && model->colorCapability == kColor) {
        output->dmFields |= DM_COLOR;
        if (output->dmColor != DMCOLOR_MONOCHROME) {
            output->dmColor = DMCOLOR_COLOR;
        }
    }
}

void WriteOutput(const DOCUMENTPROPERTYHEADER& header, const WCHAR* printerName, HANDLE file,
                 const DeviceModel* model) {
    if (header.cbOut < kDevModeSize || !header.pdmOut) {
        return;
    }
    DEVMODEW* const input = (header.fMode & DM_IN_BUFFER) != 0 ? header.pdmIn : nullptr;
    if (input && IsForeign(*input)) {
        TakeForeignSettings(header.hPrinter, model, *input, header.pdmOut);
        return;
    }
    VelmoraDevMode source;
    if (!ChooseSourceDevMode(header.hPrinter, input, file, model, &source) ||
        (header.fMode & (DM_UPDATE | DM_COPY)) == 0) {
        return;
    }
    AdjustDevMode({header.hPrinter, printerName, file, model}, &source);
    memcpy(header.pdmOut, &source, sizeof(source));
}

}  // namespace

bool ChooseSourceDevMode(HANDLE printer, DEVMODEW* input, HANDLE file, const DeviceModel* model,
                         VelmoraDevMode* source) {
    auto* const whole = reinterpret_cast<VelmoraDevMode*>(input);
    const bool takesPublic = input && ValidatePublicDevMode(printer, input, model);
    if (takesPublic && ValidatePrivateDevMode(printer, &whole->privatePart, file, model)) {
        memcpy(source, whole, sizeof(*source));
        return true;
    }
    source->publicPart.dmSize = 0;
    GetPrinterDevMode(printer, source);
    if (source->publicPart.dmSize == 0) {
        return false;
    }
    if (takesPublic) {
        source->publicPart = *input;
    }
    return true;
}

void DocumentPropertiesNoUI(const DOCUMENTPROPERTYHEADER& header) {
    // Callers may leave the name out: the printer is open.
    const HeapOwner<PRINTER_INFO_2W> info =
        header.pszPrinterName ? HeapOwner<PRINTER_INFO_2W>() : GetPrinterInfo2(header.hPrinter);
    const WCHAR* const printerName = info ? info->pPrinterName : header.pszPrinterName;
    {
        const OwnedFile file = OpenDescriptionFile(header.hPrinter);
        const HeapOwner<DeviceModel> model = LoadDeviceModel(file.Get());
        WriteOutput(header, printerName, file.Get(), model.Get());
    }
    if (printerName) {
        RegisterSpoolDirectory(header.hPrinter, printerName);
    }
}

}  // namespace velmora
