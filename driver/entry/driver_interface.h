// The printer-driver user-interface DDI as far as the driver serves it, for SDKs whose winddiui.h doesn't declare it:
// the published structures and entry points.
#pragma once

#include <windows.h>

#include <compstui.h>
#include <prsht.h>
#include <winddiui.h>
#include <winspool.h>

#include <cstddef>

extern "C" {

// lParamInit of a device (printer) property sheet.
typedef struct DEVICEPROPERTYHEADER {
    WORD cbSize;
    WORD Flags;
    HANDLE hPrinter;
    LPWSTR pszPrinterName;
} DEVICEPROPERTYHEADER, *PDEVICEPROPERTYHEADER;

// lParamInit of a document property sheet.
typedef struct DOCUMENTPROPERTYHEADER {
    WORD cbSize;
    WORD Reserved;
    HANDLE hPrinter;
    LPWSTR pszPrinterName;
    PDEVMODEW pdmIn;
    PDEVMODEW pdmOut;
    DWORD cbOut;
    DWORD fMode;
} DOCUMENTPROPERTYHEADER, *PDOCUMENTPROPERTYHEADER;

// What DevQueryPrintEx is asked with; no field of it is read.
typedef struct DEVQUERYPRINT_INFO DEVQUERYPRINT_INFO, *PDEVQUERYPRINT_INFO;

BOOL WINAPI DevQueryPrint(HANDLE hPrinter, LPDEVMODEW pDevMode, DWORD* pResID);
BOOL WINAPI DevQueryPrintEx(PDEVQUERYPRINT_INFO pDQPInfo);
BOOL WINAPI DrvUpgradePrinter(DWORD Level, LPBYTE pDriverUpgradeInfo);
LONG WINAPI DrvAdvancedDocumentProperties(HWND hWnd, HANDLE hPrinter, LPWSTR pDeviceName, PDEVMODEW pDevModeOutput,
                                          PDEVMODEW pDevModeInput);
LONG WINAPI DrvDocumentProperties(HWND hWnd, HANDLE hPrinter, LPWSTR pDeviceName, PDEVMODEW pDevModeOutput,
                                  PDEVMODEW pDevModeInput, DWORD fMode);
LONG WINAPI DrvDocumentPropertySheets(PPROPSHEETUI_INFO pPSUIInfo, LPARAM lParam);
LONG WINAPI DrvDevicePropertySheets(PPROPSHEETUI_INFO pPSUIInfo, LPARAM lParam);
BOOL WINAPI DrvConvertDevMode(LPWSTR pszPrinterName, PDEVMODEW pdmIn, PDEVMODEW pdmOut, PLONG pcbNeeded, DWORD fMode);
DWORD WINAPI DrvDeviceCapabilities(HANDLE hPrinter, LPWSTR pDeviceName, WORD iDevCap, VOID* pOutput,
                                   PDEVMODEW pDevMode);

// The job hooks of the rendering side. `record` is the byte-packed job-hook record; sizes are in and out, in bytes.
int WINAPI GuiStartJob(PDEVMODEW devMode, char* buffer, DWORD* size, void* record);
int WINAPI GuiStartSheet(PDEVMODEW devMode, void* record);
int WINAPI GuiEndJob(PDEVMODEW devMode, char* buffer, DWORD* size, void* record);

}  // extern "C"

static_assert(sizeof(DEVICEPROPERTYHEADER) == 24 && offsetof(DEVICEPROPERTYHEADER, hPrinter) == 8);
static_assert(sizeof(DOCUMENTPROPERTYHEADER) == 48 && offsetof(DOCUMENTPROPERTYHEADER, cbOut) == 40);
