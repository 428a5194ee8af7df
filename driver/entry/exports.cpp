// The library's sixteen exports and its entry routine. Each export opens what it needs and closes it before it returns.
#include <objbase.h>
#include <windows.h>

#include <cstring>

#include "driver/devmode/convert_devmode.h"
#include "driver/devmode/default_devmode.h"
#include "driver/devmode/device_capabilities.h"
#include "driver/devmode/document_properties.h"
#include "driver/devmode/private_devmode.h"
#include "driver/entry/driver_interface.h"
#include "driver/entry/printer_access.h"
#include "driver/entry/spool_directory.h"
#include "driver/install/printer_events.h"
#include "driver/job/job_hooks.h"
#include "driver/ptprovider/class_factory.h"
#include "driver/settings/printer_data_file.h"
#include "driver/ui/sheet_context.h"
#include "driver/ui/sheet_pages.h"

namespace velmora {
namespace {

constexpr const WCHAR* kSpoolerClient = TEXT("winspool.drv");
constexpr LONG kAdvancedAnswer = 10;

// The spooler client library's own function of a name that this library exports too; null where it has none.
template <class Function>
Function SpoolerFunction(const OwnedModule& module, const char* name) {
    return module ? reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module.Get(), name))) : nullptr;
}

// Device modes are 4088 bytes at every export; the header's cbOut says no less where the caller asks for the size.
LONG AnswerSize(DOCUMENTPROPERTYHEADER* header) {
    header->cbOut = kDevModeSize;
    return kDevModeSize;
}

// INIT of a sheet: its context, over `devMode` or the printer's own device mode, and its pages. Without memory there is
// neither, and the host gets failure.
LONG OpenSheets(PROPSHEETUI_INFO* info, HANDLE printer, const WCHAR* printerName, VelmoraDevMode* devMode) {
    SheetContext* const context = CreateSheetContext(printer, printerName, devMode);
    info->UserData = 0;
    info->Result = 0;
    return context ? AddSheetPages(context, info) : 0;
}

// DESTROY of a sheet. A sheet whose INIT failed has no context.
void CloseSheets(PROPSHEETUI_INFO* info, const WCHAR* printerName) {
    auto* const context = reinterpret_cast<SheetContext*>(info->UserData);
    if (!printerName && context) {
        printerName = context->printerName;
    }
    if (printerName) {
        SyncPrinterDataFileCopies(printerName);
    }
    DestroySheetContext(context);
    info->UserData = 0;
}

// Device modes that cross an export have all of their 4088 bytes.
VelmoraDevMode* WholeDevMode(DEVMODEW* devMode) {
    return reinterpret_cast<VelmoraDevMode*>(devMode);
}

// INIT of the document sheets: the output receives the device mode that they start from and edit.
LONG PrepareDocumentSheets(PROPSHEETUI_INFO* info, const DOCUMENTPROPERTYHEADER& header) {
    VelmoraDevMode source = {};
    if (!ChooseSourceDevMode(header.hPrinter, header.pdmIn, INVALID_HANDLE_VALUE, nullptr, &source)) {
        BuildDefaultDevMode(header.hPrinter, header.pszPrinterName ? header.pszPrinterName : TEXT(""), &source);
    }
    memcpy(header.pdmOut, &source, sizeof(source));
    return OpenSheets(info, header.hPrinter, header.pszPrinterName, WholeDevMode(header.pdmOut));
}

LONG RunDocumentSheets(PROPSHEETUI_INFO* info, const DOCUMENTPROPERTYHEADER& header) {
    LONG result = 1;
    if (info->Reason == PROPSHEETUI_REASON_INIT) {
        result = PrepareDocumentSheets(info, header);
    } else if (info->Reason == PROPSHEETUI_REASON_DESTROY) {
        CloseSheets(info, header.pszPrinterName);
    }
    info->Result = static_cast<ULONG_PTR>(result);
    return result;
}

}  // namespace
}  // namespace velmora

using namespace velmora;  // NOLINT(google-build-using-namespace): the exports are the library's outside

extern "C" {

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    return reason == DLL_PROCESS_ATTACH || reason == DLL_PROCESS_DETACH || reason == DLL_THREAD_ATTACH ||
           reason == DLL_THREAD_DETACH;
}

BOOL WINAPI DevQueryPrint(HANDLE hPrinter, LPDEVMODEW pDevMode, DWORD* pResID) {
    const OwnedModule module(LoadLibraryW(kSpoolerClient));
    const auto function = SpoolerFunction<BOOL(WINAPI*)(HANDLE, LPDEVMODEW, DWORD*)>(module, "DevQueryPrint");
    return function ? function(hPrinter, pDevMode, pResID) : FALSE;
}

BOOL WINAPI PrinterProperties(HWND hWnd, HANDLE hPrinter) {
    const OwnedModule module(LoadLibraryW(kSpoolerClient));
    const auto function = SpoolerFunction<BOOL(WINAPI*)(HWND, HANDLE)>(module, "PrinterProperties");
    return function ? function(hWnd, hPrinter) : FALSE;
}

BOOL WINAPI DevQueryPrintEx(PDEVQUERYPRINT_INFO) {
    return TRUE;
}

BOOL WINAPI DrvUpgradePrinter(DWORD, LPBYTE) {
    return TRUE;
}

LONG WINAPI DrvAdvancedDocumentProperties(HWND, HANDLE, LPWSTR, PDEVMODEW, PDEVMODEW) {
    return kAdvancedAnswer;
}

LONG WINAPI DrvDocumentProperties(HWND, HANDLE hPrinter, LPWSTR pDeviceName, PDEVMODEW pDevModeOutput,
                                  PDEVMODEW pDevModeInput, DWORD fMode) {
    DOCUMENTPROPERTYHEADER header = {};
    header.cbSize = sizeof(header);
    header.hPrinter = hPrinter;
    header.pszPrinterName = pDeviceName;
    header.pdmIn = pDevModeInput;
    header.pdmOut = pDevModeOutput;
    header.cbOut = (fMode & DM_IN_BUFFER) != 0 && pDevModeInput ? pDevModeInput->dmSize : kPublicDevModeSize;
    header.fMode = fMode;
    return DrvDocumentPropertySheets(nullptr, reinterpret_cast<LPARAM>(&header));
}

LONG WINAPI DrvDocumentPropertySheets(PPROPSHEETUI_INFO pPSUIInfo, LPARAM lParam) {
    auto* header = reinterpret_cast<DOCUMENTPROPERTYHEADER*>(pPSUIInfo ? pPSUIInfo->lParamInit : lParam);
    if (!header) {
        return 0;
    }
    if (header->fMode == 0 || !header->pdmOut) {
        return AnswerSize(header);
    }
    if (!pPSUIInfo) {
        DocumentPropertiesNoUI(*header);
        return 1;
    }
    if ((header->fMode & DM_PROMPT) == 0) {
        return 1;
    }
    return RunDocumentSheets(pPSUIInfo, *header);
}

LONG WINAPI DrvDevicePropertySheets(PPROPSHEETUI_INFO pPSUIInfo, LPARAM) {
    if (!pPSUIInfo) {
        return 0;
    }
    const auto* header = reinterpret_cast<const DEVICEPROPERTYHEADER*>(pPSUIInfo->lParamInit);
    switch (pPSUIInfo->Reason) {
        case PROPSHEETUI_REASON_INIT:
            return header ? OpenSheets(pPSUIInfo, header->hPrinter, header->pszPrinterName, nullptr) : 0;
        case PROPSHEETUI_REASON_DESTROY:
            CloseSheets(pPSUIInfo, header ? header->pszPrinterName : nullptr);
            return 1;
        default:
            return 1;
    }
}

BOOL WINAPI DrvConvertDevMode(LPWSTR pszPrinterName, PDEVMODEW pdmIn, PDEVMODEW pdmOut, PLONG pcbNeeded, DWORD) {
    return ConvertDevMode(pszPrinterName, pdmIn, pdmOut, pcbNeeded);
}

DWORD WINAPI DrvDeviceCapabilities(HANDLE hPrinter, LPWSTR pDeviceName, WORD iDevCap, VOID* pOutput, PDEVMODEW) {
    const DWORD answer = GetDeviceCapability(hPrinter, iDevCap, pOutput);
    if (iDevCap == DC_VERSION && pDeviceName) {
        RegisterSpoolDirectory(hPrinter, pDeviceName);
    }
    return answer;
}

BOOL WINAPI DrvPrinterEvent(LPWSTR printerName, INT event, DWORD, LPARAM) {
    if (!printerName) {
        return event == PRINTER_EVENT_INITIALIZE ? FALSE : TRUE;
    }
    switch (event) {
        case PRINTER_EVENT_ADD_CONNECTION:
            OnAddConnection(printerName);
            return TRUE;
        case PRINTER_EVENT_DELETE_CONNECTION:
            OnDeleteConnection(printerName);
            return TRUE;
        case PRINTER_EVENT_INITIALIZE:
            return OnInitialize(printerName) ? TRUE : FALSE;
        case PRINTER_EVENT_DELETE:
            OnDelete(printerName);
            return TRUE;
        default:
            return TRUE;
    }
}

int WINAPI GuiStartJob(PDEVMODEW devMode, char* buffer, DWORD* size, void* record) {
    DWORD none = 0;
    return record ? StartJob(WholeDevMode(devMode), buffer, size ? size : &none, static_cast<JobHookRecord*>(record))
                  : kJobImpossible;
}

int WINAPI GuiStartSheet(PDEVMODEW devMode, void* record) {
    return record ? StartSheet(WholeDevMode(devMode), static_cast<JobHookRecord*>(record)) : kJobDone;
}

int WINAPI GuiEndJob(PDEVMODEW devMode, char* buffer, DWORD* size, void* record) {
    DWORD none = 0;
    return record ? EndJob(WholeDevMode(devMode), buffer, size ? size : &none, static_cast<JobHookRecord*>(record))
                  : kJobDone;
}

HRESULT WINAPI DllGetClassObject(REFCLSID rclsid, REFIID riid, LPVOID* ppv) {
    return GetClassObject(rclsid, riid, ppv);
}

HRESULT WINAPI DllCanUnloadNow() {
    return CanUnloadNow() ? S_OK : S_FALSE;
}

}  // extern "C"
