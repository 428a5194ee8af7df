// Access to a printer through the spooler client interface (winspool.h): opening it, its data, its driver's files, and
// a few facts of the user's system. Nothing is kept between calls; every operation may be called from any thread. Paths
// and names are bounded by MAX_PATH (260) characters, the terminator included.
#pragma once

#include <windows.h>
#include <winspool.h>

#include "driver/base/handles.h"
#include "driver/base/heap.h"

namespace velmora {

struct PrinterTraits {
    using Handle = HANDLE;
    static Handle None() { return INVALID_HANDLE_VALUE; }
    static void Close(Handle printer) { ClosePrinter(printer); }
};
using OwnedPrinter = HandleOwner<PrinterTraits>;

// The printer of this name with the most access that is granted, or the invalid handle. A name of this computer's
// printer may carry its server; what follows ",Local", ",DrvConvert" or ",DEVMODE" is not part of the name.
OwnedPrinter OpenPrinterLocal(const WCHAR* name);

// True where the name begins with a server's.
bool NamesServer(const WCHAR* printerName);

// Characters in front of a printer's name that name this computer as its server, "\\\\COMPUTER\\"; 0 where the name
// begins otherwise.
size_t OwnServerLength(const WCHAR* printerName);

// PRINTER_INFO_2 of the printer, strings behind the structure in one block; empty on failure.
HeapOwner<PRINTER_INFO_2W> GetPrinterInfo2(HANDLE printer);

// DRIVER_INFO_3 of the printer's driver in this environment, strings behind the structure in one block. Empty where it
// isn't known how large it is or there is no memory; all null where it then could not be read.
HeapOwner<DRIVER_INFO_3W> GetDriverInfo3(HANDLE printer);

// Copies the printer's driver name; false, and empty, on failure. `name` has MAX_PATH characters.
bool GetPrinterDriverName(HANDLE printer, WCHAR* name);

// Makes `devMode` (its dmSize + dmDriverExtra bytes) the printer's own. False where the printer can't be read or
// written.
bool SetPrinterDevMode(HANDLE printer, DEVMODEW* devMode);

// Makes the installed print processor of this name the printer's own. False where the printer can't be read or written.
bool SetPrinterPrintProcessor(HANDLE printer, const WCHAR* name);

// Reads a value of the printer's data whole: the block, 0 for two whole characters behind the value, and the value's
// bytes in `*size`. Empty and 0 where there is none of this type (REG_, winnt.h), it is empty, or memory runs out.
HeapOwner<BYTE> ReadPrinterValue(HANDLE printer, const WCHAR* valueName, DWORD type, DWORD* size);

// True where the printer's data has no such value; false where it has one, and where that can't be told.
bool LacksPrinterValue(HANDLE printer, const WCHAR* valueName);

// True where the printer's data has no such value or an empty one; false where that can't be told.
bool IsPrinterValueEmpty(HANDLE printer, const WCHAR* valueName);

// Stores a value of `size` bytes in the printer's data. False where the spooler refuses it.
bool WritePrinterValue(HANDLE printer, const WCHAR* valueName, DWORD type, const void* value, size_t size);

// Reads a string of the printer's data. False, and `text` empty, where there is none or it has more than `capacity` - 1
// characters.
bool ReadPrinterString(HANDLE printer, const WCHAR* valueName, WCHAR* text, DWORD capacity);

// Stores a string of the printer's data, its terminator included. False where the spooler refuses it.
bool WritePrinterString(HANDLE printer, const WCHAR* valueName, const WCHAR* text);

// Reads a value of exactly `size` bytes. False, and `record` undefined, where there is none of this type and size.
bool ReadPrinterRecord(HANDLE printer, const WCHAR* valueName, DWORD type, void* record, DWORD size);

// Reads a DWORD of the printer's data. False, and `*value` unchanged, where there is none of this type.
bool ReadPrinterDword(HANDLE printer, const WCHAR* valueName, DWORD* value);

// The files of a printer's driver, asked for once where several are looked for.
class DriverFiles {
  public:
    DriverFiles() = default;  // none
    explicit DriverFiles(HANDLE printer);

    // The full path, upper-cased, of the first driver file that contains the fragment: dependent files, data file, help
    // file, configuration file, in this order. The fragment is the printer-data string `valueName` where there is one
    // (null or empty: none is looked for), else `fragment` (null: none). True and the path in `path` (MAX_PATH
    // characters), or false and the empty string.
    bool Find(const WCHAR* valueName, const WCHAR* fragment, WCHAR* path) const;

  private:
    HANDLE printer_ = INVALID_HANDLE_VALUE;
    HeapOwner<DRIVER_INFO_3W> info_;  // those paths upper-cased
};

// The same for one file.
inline bool FindDriverFile(HANDLE printer, const WCHAR* valueName, const WCHAR* fragment, WCHAR* path) {
    return DriverFiles(printer).Find(valueName, fragment, path);
}

// True where the driver brings the file of print pipelines, "PipelineConfig.xml": its renderer then works on XPS.
bool HasPipelineConfig(const DriverFiles& files);
bool HasPipelineConfig(HANDLE printer);

// The path of the rendering core in `path` (MAX_PATH characters); false and the empty string where there is none.
bool GetRenderCorePath(HANDLE printer, WCHAR* path);

// The driver's data file as its DRIVER_INFO_3 names it, upper-cased; false and the empty string where there is none.
bool GetDriverDataFile(HANDLE printer, WCHAR* path);

// Version of a file: major number in the high byte, minor in the low, from the text "FileVersion" of its version
// resource; 0 where it has none.
WORD GetDriverVersion(const WCHAR* path);

// 0 where the caller may write the printer's data, 1 where not.
int TestPrinterDataAccess(HANDLE printer);

// Values of the printer's data.
inline constexpr const WCHAR* kMemoryValue = TEXT("Memory");
inline constexpr const WCHAR* kFontSubsValue = TEXT("FontSubs");

// Printer memory in megabytes; an absent value reads as 0.
DWORD GetMemorySetting(HANDLE printer);
bool SetMemorySetting(HANDLE printer, DWORD megabytes);

// The font substitution table as a multi-string: its length in characters, terminators included, and the block; 0 and
// empty where there is none.
DWORD GetFontSubs(HANDLE printer, HeapOwner<WCHAR>* table);
bool SetFontSubs(HANDLE printer, const WCHAR* table, DWORD length);

// File name of the printer's per-user settings file. LacksSettingsString as LacksPrinterValue.
bool GetSettingsString(HANDLE printer, WCHAR* name, DWORD capacity);
bool LacksSettingsString(HANDLE printer);
bool SetSettingsString(HANDLE printer, const WCHAR* name);

// True where the user's measurement system is metric.
bool IsMetricLocale();

// DMPAPER_A4 where the locale is metric, else DMPAPER_LETTER (wingdi.h).
SHORT DefaultPaperForLocale();

// What follows the last backslash, cut at ",Local" and to `limit` - 1 characters.
void DeviceNameFromPrinterName(WCHAR* destination, const WCHAR* printerName, size_t limit);

}  // namespace velmora
