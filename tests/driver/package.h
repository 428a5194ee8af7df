// Driver packages of a few small files, and printers installed from them by published calls.
#pragma once

#include <windows.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "driver/entry/printer_access.h"

namespace driver_test {

using WideText = WideText;

struct PackageFile {
    WideText name;  // empty: the package has no such file
    std::string bytes;
};

struct DriverPackage {
    WideText driverName = TEXT("Velmora Test");
    PackageFile core;           // the rendering core
    PackageFile configuration;  // the library's own place; not loaded
    PackageFile data;
    PackageFile help;
    std::vector<PackageFile> dependent;
};

inline constexpr WCHAR kPrinterName[] = TEXT("Test Printer");

// A rendering core of version 10.0 and a U.S. English resource module. The description, where there is one, is the data
// file KV62.XPI, as packages are shipped; without one the data file is the empty KV62.DAT. `iniFile`, where it isn't
// empty, comes along as KV62.INI.
DriverPackage PackageOf(const std::string& description, const std::string& iniFile = "");

// Installs the driver and a printer of it. Throws std::runtime_error, naming the call and its error, where the spooler
// refuses something.
void InstallPrinter(const DriverPackage& package, const WideText& printerName = kPrinterName);

// Opens a printer with full access. Throws std::runtime_error where it can't be opened.
velmora::OwnedPrinter OpenWithAllAccess(WideText printerName);

// The path that a package's file has once it is installed.
WideText InstalledPath(const WideText& fileName);

// Files on the machine's drive by their paths there. WriteDriveFile makes the folders; ReadDriveFile gives the empty
// string for a missing file.
std::filesystem::path DrivePath(const WideText& path);
void WriteDriveFile(const WideText& path, const std::string& bytes);
std::string ReadDriveFile(const WideText& path);
bool DriveFileExists(const WideText& path);

// Printer data. Null: no such value.
std::optional<std::string> GetData(HANDLE printer, WideText name);
void SetData(HANDLE printer, WideText name, DWORD type, const void* data, size_t size);
void SetString(HANDLE printer, const WideText& name, const WideText& text);

}  // namespace driver_test
