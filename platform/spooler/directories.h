// Where the spooler keeps files of drivers and print processors on drive C:.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace host {

// "C:\Windows\System32\spool\drivers\x64": where a package may put its files before it is installed.
std::u16string DriverDirectory();

// The path that a driver's file of this name has once it is installed, in the folder of version-3 drivers.
std::u16string InstalledDriverPath(std::u16string_view fileName);

// "C:\Windows\System32\spool\prtprocs\x64".
std::u16string PrintProcessorDirectory();

// What the published calls for a directory do with it, having checked server and environment: at level 1 its path goes
// into the caller's buffer (sizes in bytes), and the folder exists from then on. False with the last error set.
bool CopyDirectory(const std::u16string& directory, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed);

}  // namespace host
