// Driver packages and the printers installed from them, by published calls only.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <map>
#include <string>
#include <vector>

#include "tests/contract/driver_exports.h"
#include "tests/contract/environment.h"

namespace contract {

// A file of a driver package: a copy of a built file, or a text of the test's own.
struct PackageFile {
    WideText name;          // empty: the package has no such file
    std::string builtFile;  // file name below "package" in the current directory; empty: the text is the file
    std::string text;
};

struct DriverPackage {
    WideText driverName = TEXT("Velmora Contract");
    PackageFile renderingCore = {TEXT("KV62R.DLL"), "KV62R.DLL", {}};
    PackageFile configurationFile = {TEXT("KV62U.DLL"), "KV62U.DLL", {}};
    PackageFile dataFile;
    PackageFile helpFile;
    std::vector<PackageFile> dependentFiles;
};

// A package as the maker ships it: the description file is the data file. `descriptionFile` is one of DescriptionFiles.
DriverPackage PackageOf(const std::string& descriptionFile);

// Names of the built description files (*.XPI), sorted.
std::vector<std::string> DescriptionFiles();

struct PrinterValue {
    DWORD type;
    std::vector<BYTE> bytes;

    bool operator==(const PrinterValue&) const = default;
};
using PrinterData = std::map<WideText, PrinterValue>;  // by name

// A driver and a printer of it. Both are removed at the end, and the driver's files with them.
class InstalledPrinter {
  public:
    // Throws std::runtime_error, naming the call and its error, where the spooler refuses something.
    InstalledPrinter(ContractEnvironment& environment, const DriverPackage& package,
                     const WideText& printerName = TEXT("Contract"));
    ~InstalledPrinter();
    InstalledPrinter(const InstalledPrinter&) = delete;
    InstalledPrinter& operator=(const InstalledPrinter&) = delete;

    const WideText& Name() const { return name_; }
    // The name as a published call's parameter, which is never const.
    WCHAR* NameArgument() { return name_.data(); }
    HANDLE Handle() const { return printer_; }
    const DriverExports& Driver() const { return exports_; }
    // Full path of an installed file by its file name; throws std::runtime_error where there is none.
    WideText File(const WideText& fileName) const;

    // All printer-data values but "FontSubs", which depends on the host's fonts. Throws std::runtime_error where the
    // spooler refuses.
    PrinterData Data() const;
    // PRINTER_INFO_2W with what it points to.
    std::vector<BYTE> Info() const;
    // Makes a device mode the printer's own.
    void SetDevMode(const DEVMODEW& devMode);
    // Whether the driver answers a printer event (winddiui.h) with success.
    bool Send(int event);

    // Stores a printer-data value. Throws std::runtime_error where the spooler refuses it.
    void SetData(const WideText& value, DWORD type, const void* data, size_t size);
    void SetString(const WideText& value, const WideText& text);

  private:
    void Remove();

    ContractEnvironment& environment_;
    WideText name_;
    WideText driverName_;
    std::vector<WideText> files_;  // full paths of the installed files
    bool driverAdded_ = false;
    HANDLE printer_ = nullptr;
    HMODULE module_ = nullptr;
    DriverExports exports_ = {};
};

}  // namespace contract
