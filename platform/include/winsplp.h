// The spooler's interface for drivers and providers, as far as the driver's side uses it.
#pragma once

#include <windows.h>
#include <winspool.h>

#ifdef __cplusplus
extern "C" {
#endif

// Asks the printer's driver (DevQueryPrintEx of its configuration file) whether a job with this device mode can be
// printed. TRUE: it can, and *pResID is 0.
BOOL WINAPI DevQueryPrint(HANDLE hPrinter, LPDEVMODEW pDevMode, DWORD* pResID);

#ifdef __cplusplus
}
#endif
