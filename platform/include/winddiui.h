// The printer-driver interface of the user-interface half, as far as the cross compiler's header of this name has it.
#pragma once

#include <compstui.h>
#include <windows.h>

// Events of DrvPrinterEvent.
#define PRINTER_EVENT_ADD_CONNECTION 1
#define PRINTER_EVENT_DELETE_CONNECTION 2
#define PRINTER_EVENT_INITIALIZE 3
#define PRINTER_EVENT_DELETE 4
#define PRINTER_EVENT_CACHE_REFRESH 5
#define PRINTER_EVENT_CACHE_DELETE 6
#define PRINTER_EVENT_ATTRIBUTES_CHANGED 7

// Flags of DrvPrinterEvent.
#define PRINTER_EVENT_FLAG_NO_UI 1

#ifdef __cplusplus
extern "C" {
#endif

BOOL WINAPI DrvPrinterEvent(LPWSTR pPrinterName, INT DriverEvent, DWORD Flags, LPARAM lParam);

#ifdef __cplusplus
}
#endif
