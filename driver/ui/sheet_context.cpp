#include "driver/ui/sheet_context.h"

#include <winspool.h>

#include <new>

#include "driver/base/text.h"
#include "driver/devdesc/description_file.h"
#include "driver/devmode/default_devmode.h"
#include "driver/entry/printer_access.h"
#include "driver/entry/stored_devmode.h"
#include "driver/settings/settings_folder.h"

namespace velmora {
namespace {

SheetContext* MakeContext(HANDLE printer) {
    void* const block = AllocateBytes(sizeof(SheetContext));
    SheetContext* const context = block ? new (block) SheetContext() : nullptr;
    if (context) {
        context->printer = printer;
    }
    return context;
}

void FillPrinterName(const WCHAR* printerName, SheetContext* context) {
    if (printerName) {
        CopyText(context->printerName, ARRAYSIZE(context->printerName), printerName);
    } else if (const HeapOwner<PRINTER_INFO_2W> info = GetPrinterInfo2(context->printer)) {
        CopyText(context->printerName, ARRAYSIZE(context->printerName), info->pPrinterName);
    }
}

FontList ReadDisplayFonts() {
    const OwnedDeviceContext display(CreateDCW(TEXT("DISPLAY"), nullptr, nullptr, nullptr));
    return BuildFontList(display.Get());
}

bool IsFolder(const WCHAR* path) {
    const DWORD attributes = GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// Device modes travel between users and machines: a settings folder that isn't there, and can't be made, is replaced by
// this user's.
void CheckSettingsFolder(const SheetContext& context) {
    WCHAR* const folder = context.devMode->privatePart.settingsFolder;
    constexpr size_t kCapacity = ARRAYSIZE(context.devMode->privatePart.settingsFolder);
    folder[kCapacity - 1] = 0;
    if (folder[0] == 0 || (!IsFolder(folder) && !CreateDirectoryW(folder, nullptr))) {
        ZeroMemory(folder, kCapacity * sizeof(WCHAR));
        CopyText(folder, kCapacity, context.settingsFolder);
    }
}

}  // namespace

SheetContext* CreateSheetContext(HANDLE printer, const WCHAR* printerName, VelmoraDevMode* devMode) {
    OwnedSheetContext context(MakeContext(printer));
    if (!context) {
        return nullptr;
    }
    SheetContext& made = *context.Get();
    FillPrinterName(printerName, &made);
    made.isDeviceSheet = devMode == nullptr;
    if (made.isDeviceSheet) {
        made.ownDevMode = HeapOwner<VelmoraDevMode>::Allocate();
        devMode = made.ownDevMode.Get();
        if (!devMode) {
            return nullptr;
        }
        BuildDefaultDevMode(printer, made.printerName, devMode);
        GetPrinterDevMode(printer, devMode);
    }
    made.devMode = devMode;
    made.descriptionFile = OpenDescriptionFile(printer);
    made.model = LoadDeviceModel(made.descriptionFile.Get());
    GetSettingsFolder(made.printerName, made.settingsFolder, ARRAYSIZE(made.settingsFolder));
    PrepareSettingsFile(made.printerName);
    made.resources = LoadResourceModule(printer, &made.locale);
    made.handCursor = LoadCursorW(nullptr, IDC_HAND);
    if (!made.handCursor) {
        made.handCursor = LoadCursorW(nullptr, IDC_SIZEWE);
    }
    made.watermarks = LoadWatermarkList(made.printerName);
    made.fonts = ReadDisplayFonts();
    made.deviceInfo = ReadDeviceInfo(printer, made.model.Get());
    // Forms are those of the print server, whose paper ids follow the custom sizes' wherever a paper is looked up.
    made.forms = EnumUserForms(printer);
    made.customSizes = LoadCustomSizes(made.printerName);
    CheckSettingsFolder(made);
    FindDriverFile(printer, TEXT("RenderLib"), TEXT("IME.DLL"), made.renderLibrary);
    made.committedPrivate = devMode->privatePart;
    made.committedDeviceInfo = made.deviceInfo;
    return context.Release();
}

SheetContext* CreateNoticeContext(HANDLE printer) {
    SheetContext* const context = MakeContext(printer);
    if (context) {
        context->resources = LoadResourceModule(printer, &context->locale);
    }
    return context;
}

void DestroySheetContext(SheetContext* context) {
    if (context) {
        for (const HWND dialog : context->dialogs) {
            if (dialog) {
                SetWindowLongPtrW(dialog, DWLP_USER, 0);
            }
        }
        context->~SheetContext();
        HeapFree(GetProcessHeap(), 0, context);
    }
}

void LoadText(const SheetContext& context, UINT id, WCHAR* text, int capacity) {
    if (!context.resources || LoadStringW(context.resources.Get(), id, text, capacity) == 0) {
        *text = 0;
    }
}

}  // namespace velmora
