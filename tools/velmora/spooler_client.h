// The machine's printers by the published calls of the spooler's client interface.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <string>
#include <string_view>
#include <vector>

#include "driver/base/handles.h"
#include "driver/entry/printer_access.h"

namespace velmora {

// "error 5, access denied".
std::string DescribeError(DWORD error);

// "CALL failed: error 5, access denied". The error is the last error unless given.
[[noreturn]] void ThrowRefused(std::string_view call, DWORD error = GetLastError());

// Names and paths are UTF-8, paths those of the machine.
struct PrinterEntry {
    std::string name;
    std::string driver;
    std::string port;
};

// In the spooler's order.
std::vector<PrinterEntry> ListPrinters();

struct DriverEntry {
    std::string name;
    std::u16string configFile;
    std::string dataFile;
    std::string modelFile;  // the description file: the data file, or one that comes beside a separate data file
};

std::vector<DriverEntry> ListDrivers();

// The driver behind a printer.
DriverEntry DriverOf(HANDLE printer);

// Opens the printer for administering it, or throws a CommandError that names the printers there are.
OwnedPrinter OpenNamedPrinter(const std::string& name);

// The forms of the machine that drivers made, by name.
std::vector<std::string> ListPrinterForms(HANDLE printer);

// The name of the printer's print processor.
std::string PrintProcessorOf(HANDLE printer);

struct PrinterValue {
    std::string name;
    DWORD type;  // REG_ (winnt.h)
    std::vector<BYTE> bytes;
};

// The printer's data, in the spooler's order.
std::vector<PrinterValue> ListPrinterData(HANDLE printer);

// True where the names are the same to the spooler.
bool SameName(const std::string& a, const std::string& b);

}  // namespace velmora
