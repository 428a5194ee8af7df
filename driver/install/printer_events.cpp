#include "driver/install/printer_events.h"

#include "driver/base/text.h"
#include "driver/devdesc/description_file.h"
#include "driver/devmode/default_devmode.h"
#include "driver/entry/connection_marker.h"
#include "driver/entry/printer_access.h"
#include "driver/entry/stored_devmode.h"
#include "driver/install/device_data.h"
#include "driver/install/driver_files.h"
#include "driver/install/driver_ini_settings.h"
#include "driver/install/printer_forms.h"
#include "driver/install/renderer_data.h"
#include "driver/install/user_settings.h"
#include "driver/settings/printer_data_file.h"
#include "driver/settings/settings_folder.h"
#include "driver/settings/watermark_list.h"

namespace velmora {
namespace {

// What the driver's data file is.
enum class DataFile {
    kNone,
    kDescription,  // the description file itself
    kSeparate,     // a printer data file
};

// Names a separate data file in the printer's data.
DataFile RegisterDataFile(HANDLE printer) {
    WCHAR path[MAX_PATH];
    if (!GetDriverDataFile(printer, path)) {
        return DataFile::kNone;
    }
    const WCHAR* const name = FileNamePart(path);
    if (FindText(name, TEXT(".XPI"))) {
        return DataFile::kDescription;
    }
    WritePrinterString(printer, TEXT("PDFName"), name);
    return DataFile::kSeparate;
}

}  // namespace

bool OnInitialize(const WCHAR* printerName) {
    const OwnedPrinter printer = OpenPrinterLocal(printerName);
    const auto devMode = HeapOwner<VelmoraDevMode>::Allocate();
    if (!printer || !devMode) {
        return false;
    }
    SetRendererNames(printer.Get());
    if (!SetUserModePart(printer.Get())) {
        return false;
    }
    const DataFile dataFile = RegisterDataFile(printer.Get());
    DWORD dataFileSize = 0;
    if (dataFile != DataFile::kDescription) {
        dataFileSize = GetPrinterDataFileSize(printerName);
        SetBasePdfSize(printer.Get(), dataFileSize);
    }
    RunFontInstaller(printer.Get());
    const OwnedFile file = OpenDescriptionFile(printer.Get());
    const HeapOwner<DeviceModel> model = LoadDeviceModel(file.Get());
    if (model) {
        InitializePrinterData(printer.Get(), file.Get(), *model);
        if (dataFile != DataFile::kDescription) {
            AppendDeviceData(printer.Get(), printerName, file.Get(), *model, dataFileSize);
        }
    }
    BuildDefaultDevMode(printer.Get(), printerName, devMode.Get());
    SetPrinterDevMode(printer.Get(), &devMode->publicPart);
    if (model) {
        AddDriverForms(printer.Get(), file.Get(), *model);
    }
    PrepareSettingsFile(printerName);
    SyncDriverIniSettings(printer.Get(), printerName, model.Get());
    if (model && model->pdlType == kPdlImage) {
        InstallPrintProcessor(printer.Get());
    }
    return true;
}

void OnAddConnection(const WCHAR* printerName) {
    const OwnedPrinter printer = OpenPrinterLocal(printerName);
    if (!printer) {
        return;
    }
    RunFontInstaller(printer.Get());
    if (SystemMarksConnections()) {
        CreateConnectionMarker(printerName);
        AddNetworkInstall(printer.Get());
    }
    {
        const OwnedFile file = OpenDescriptionFile(printer.Get());
        const HeapOwner<DeviceModel> model = LoadDeviceModel(file.Get());
        DWORD baseSize = 0;
        ReadPrinterDword(printer.Get(), kBasePdfSizeValue, &baseSize);
        const DWORD size =
            model && model->pdlType != kPdlImage ? GetPrinterDataFileSize(printerName) : kNoPrinterDataFile;
        if (size != kNoPrinterDataFile && size <= baseSize) {
            AppendDeviceData(printer.Get(), printerName, file.Get(), *model, baseSize);
        }
    }
    VelmoraDevMode devMode;
    GetPrinterDevMode(printer.Get(), &devMode);
    PrepareSettingsFile(printerName);
}

void OnDeleteConnection(const WCHAR* printerName) {
    {
        const OwnedPrinter printer = OpenPrinterLocal(printerName);
        if (printer && SystemMarksConnections()) {
            RemoveNetworkInstall(printer.Get());
        }
    }
    WCHAR path[MAX_PATH];
    if (GetSettingsFilePath(printerName, path, ARRAYSIZE(path))) {
        DeleteWatermarkFiles(path);
    }
}

void OnDelete(const WCHAR* printerName) {
    const OwnedPrinter printer = OpenPrinterLocal(printerName);
    if (printer) {
        RemoveUserSettings(printer.Get());
    }
}

}  // namespace velmora
