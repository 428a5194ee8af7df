// Where a user's settings for a printer are kept: a folder named after the maker and the driver below the user's
// application data, with one small INI file a printer. Paths are bounded by MAX_PATH (260) characters.
#pragma once

#include <windows.h>

#include <cstddef>

#include "driver/entry/printer_access.h"

namespace velmora {

// The maker's folder below a user's application data, and the folder of those below a user's profile as systems without
// the variable "APPDATA" have it.
inline constexpr const WCHAR* kMakerFolder = TEXT("Kestranix Inc.");
inline constexpr const WCHAR* kApplicationDataFolder = TEXT("Application Data");

// Writes the settings folder's path, without a backslash at its end, and makes every level of it. The empty string
// where the printer or its driver's name can't be had. `capacity` is at most MAX_PATH characters.
void GetSettingsFolder(const WCHAR* printerName, WCHAR* folder, size_t capacity);

// The full path of the printer's settings file, which need not exist yet. False, and the empty string, where the
// printer has none or the path has no room.
bool GetSettingsFilePath(const WCHAR* printerName, WCHAR* path, size_t capacity);

// The name of the printer's settings file. False, and empty, where it has none, or one that would lead out of a folder.
bool ReadSettingsFileName(HANDLE printer, WCHAR* name, DWORD capacity);

// Gives the printer a settings file name where it has none and makes its file the current settings file. The file
// itself is made by the first store that writes. No name is given where it can't be told whether the printer has one,
// which must not be lost, and where the path has no room; there is no current settings file then. Always 0.
int PrepareSettingsFile(const WCHAR* printerName);

// The process's current settings file, that of the printer prepared last; empty where there is none. User-interface
// thread only.
const WCHAR* CurrentSettingsFile();

// Names of the printer's and the screen's colour profile; empty where there is none. Writing does nothing where the
// printer has no settings file name.
void ReadProfileName(const WCHAR* printerName, WCHAR* profile, size_t capacity);
void ReadScreenProfileName(const WCHAR* printerName, WCHAR* profile, size_t capacity);
void WriteProfileName(const WCHAR* printerName, const WCHAR* profile);
void WriteScreenProfileName(const WCHAR* printerName, const WCHAR* profile);

// The value of an environment variable; false, and empty, where it has none or it has more than `capacity` - 1
// characters.
bool ReadVariable(const WCHAR* name, WCHAR* value, size_t capacity);

// The path "FOLDER\\NUMBER.EXTENSION" of a file that the driver numbers, in eight hexadecimal digits. False, and the
// empty string, where it has no room.
bool FormNumberedPath(const WCHAR* folder, DWORD number, const WCHAR* extension, WCHAR (&path)[MAX_PATH]);

// Replaces what a file name can't hold, in place, up to `capacity` characters or the terminator.
void CleanFileName(WCHAR* text, size_t capacity);

// Rewrites a path in place into its short form; what doesn't exist of it stays as it is. A path whose short form has
// more than `capacity` - 1 characters is cut.
void GetShortPath(WCHAR* path, size_t capacity);

// The driver's INI data file, which carries the defaults shipped with the driver, in `path` (MAX_PATH characters).
// False, and the empty string, where the driver has none.
bool FindDriverIniFile(const DriverFiles& files, WCHAR* path);
bool FindDriverIniFile(HANDLE printer, WCHAR* path);

// The file that a store of the printer is read from: the user's settings file where it is known and exists, else the
// driver's INI data file; false, and the empty string, where there is neither. `path` has MAX_PATH characters.
bool FindStoreToRead(const WCHAR* printerName, WCHAR* path);

// The settings folder and the file to read at once, as GetSettingsFolder and FindStoreToRead give them, of a printer
// whose PRINTER_INFO_2 (with a printer's name) and driver's files are known. Both have MAX_PATH characters.
void FindStores(const PRINTER_INFO_2W& printer, const DriverFiles& files, WCHAR* folder, WCHAR* storeToRead);

}  // namespace velmora
