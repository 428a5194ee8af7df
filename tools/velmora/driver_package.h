// Driver packages: the built files that make a driver with a model, and installing and removing printers of one.
#pragma once

#include <windows.h>

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/host.h"

namespace velmora {

// The files of the build that every package has.
struct BuiltFiles {
    std::filesystem::path renderingCore;
    std::filesystem::path configurationFile;  // the driver
    std::vector<std::filesystem::path> languageModules;
    std::filesystem::path printProcessor;  // of image models
    std::filesystem::path imageModule;
};

// Where the build puts them, seen from the folder of the workbench's program. Throws a CommandError for one that isn't
// there.
BuiltFiles FindBuiltFiles(const std::filesystem::path& programFolder);

// A model as it goes into a package. Its data file gives the driver its name: printers of one model share a driver, and
// installing a model again renews it for all of them.
struct PackagedModel {
    std::filesystem::path file;  // where it comes from
    std::vector<std::byte> description;
    std::string dataFile;    // file name in the driver's folder, "VELMORA-C3200.XPI"
    std::string driverName;  // the same without the extension
    std::string modelName;   // as the source gives it, else the driver's name
};

// Compiles a model source (.json) or reads a compiled description (.XPI). Throws a CommandError where that fails; for a
// faulty source its details are what the compiler says, a line a fault.
PackagedModel ReadModel(const std::filesystem::path& file);

// Files that a driver package may bring beside its model.
struct PackageExtras {
    std::optional<std::filesystem::path> iniFile;   // the driver's INI data file
    std::optional<std::filesystem::path> dataFile;  // a separate printer data file
};

struct Installation {
    std::string printer;
    std::string driver;
    bool renewedDriver;                      // the driver was there before
    std::vector<std::string> otherPrinters;  // of the same driver
    // What the driver did when it was told of the printer.
    size_t valueCount = 0;                 // values of printer data that it wrote
    std::vector<std::string> forms = {};   // made of the model's own papers and of shipped custom sizes
    std::optional<int64_t> appended = {};  // bytes of patterns and fonts appended to a separate printer data file
    std::string printProcessor = {};       // the one that it installed and chose; empty: none
    bool hasStoredSettings = false;        // the user's settings file is written
};

// Drivers name settings files by the tick count, which stands still on a machine that is kept between commands: one
// that no printer's settings file is named by.
DWORD UnusedTickCount();

// Installs the driver and a printer of it by the published calls. Throws a CommandError where anything is refused; a
// driver that wasn't there before isn't there then either.
Installation InstallPrinter(const host::Machine& machine, const BuiltFiles& files, const PackagedModel& model,
                            const std::string& printerName, const PackageExtras& extras = {});

// True where the printer's driver is the build's, byte for byte: printers keep the driver that they were installed
// with.
bool HasBuiltDriver(HANDLE printer, const BuiltFiles& files);

struct Removal {
    bool driver;    // went too
    bool settings;  // the driver removed the user's settings file
};

// Removes the printer, and its driver where no printer of it is left. Throws a CommandError for an unknown printer and
// where the spooler refuses it.
Removal RemovePrinter(const std::string& printerName);

}  // namespace velmora
