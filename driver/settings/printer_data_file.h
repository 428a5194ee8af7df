// The printer data file: the driver's data file where it is a file of its own rather than the description file. At
// installation the model's patterns and fonts are appended to it for the renderer.
#pragma once

#include <windows.h>

#include "driver/base/handles.h"

namespace velmora {

// Bytes of a printer data file that can't be measured.
inline constexpr DWORD kNoPrinterDataFile = 0xFFFFFFFF;

// Opens the file for the given access, existing and unshared, its read-only attribute taken away; the invalid handle
// where the printer has no such file or it can't be opened.
OwnedFile OpenPrinterDataFile(const WCHAR* printerName, DWORD access);

// Its size in bytes, or kNoPrinterDataFile.
DWORD GetPrinterDataFileSize(const WCHAR* printerName);
DWORD MeasurePrinterDataFile(HANDLE printer);

// The printer-data value that holds the size of the file before patterns and fonts were appended.
inline constexpr const WCHAR* kBasePdfSizeValue = TEXT("BasePDFSize");

// That size as installation stored it; without that the file's size, 0 where there is none.
DWORD GetBasePdfSize(HANDLE printer);
bool SetBasePdfSize(HANDLE printer, DWORD size);

// Copies the file over the smaller copies of it that other versions of the driver directory hold.
void SyncPrinterDataFileCopies(const WCHAR* printerName);

}  // namespace velmora
