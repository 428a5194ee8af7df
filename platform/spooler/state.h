// What the spooler of the machine knows: printers with their data, drivers, forms, print processors. Everything here is
// read and changed under the MachineLock, kept in the machine's store, and gone with the machine.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/kernel/store.h"

namespace host {

// A device mode with a smaller dmSize doesn't reach to the end of dmFields.
inline constexpr size_t kLeastDeviceModeSize = offsetof(DEVMODEW, dmFields) + sizeof(DWORD);

struct DataValue {
    std::u16string name;
    DWORD type = REG_NONE;
    std::vector<BYTE> bytes;
};

struct Printer {
    std::u16string name;
    std::u16string shareName;
    std::u16string portName;
    std::u16string driverName;
    std::u16string comment;
    std::u16string location;
    std::u16string separatorFile;
    std::u16string printProcessor;
    std::u16string datatype;
    std::u16string parameters;
    DWORD attributes = 0;
    DWORD priority = 0;
    DWORD defaultPriority = 0;
    DWORD startTime = 0;  // minutes after midnight UTC
    DWORD untilTime = 0;
    DWORD averagePpm = 0;
    std::vector<BYTE> deviceMode;  // dmSize + dmDriverExtra bytes; empty: none
    std::vector<DataValue> data;   // in the order in which the values were first written
    bool isDeleted = false;        // gone, but a handle is still open
};

// Files are full paths on the drive; the optional ones are empty where there is none.
struct Driver {
    DWORD version = 0;
    std::u16string name;
    std::u16string driverPath;
    std::u16string dataFile;
    std::u16string configFile;
    std::u16string helpFile;
    std::vector<std::u16string> dependentFiles;
    std::u16string monitorName;
    std::u16string defaultDatatype;
};

struct Form {
    std::u16string name;
    DWORD flags = FORM_USER;
    SIZEL size = {};  // thousandths of a millimetre
    RECTL imageableArea = {};
};

struct PrintProcessor {
    std::u16string name;
    std::u16string file;  // name in the print-processor directory
};

struct SpoolerState {
    std::vector<std::shared_ptr<Printer>> printers;  // handles share them
    std::vector<Driver> drivers;
    std::vector<Form> forms;
    std::vector<PrintProcessor> processors;
};

SpoolerState& Spooler();

// Texts and numbers that a printer and a driver have in common with their published records.
template <class Record, class Info>
struct TextField {
    const char* key;  // in the store
    std::u16string Record::*text;
    LPWSTR Info::*published;
};
template <class Record, class Info>
struct NumberField {
    const char* key;
    DWORD Record::*number;
    DWORD Info::*published;
};

inline constexpr TextField<Printer, PRINTER_INFO_2W> kPrinterTexts[] = {
    {"name", &Printer::name, &PRINTER_INFO_2W::pPrinterName},
    {"shareName", &Printer::shareName, &PRINTER_INFO_2W::pShareName},
    {"portName", &Printer::portName, &PRINTER_INFO_2W::pPortName},
    {"driverName", &Printer::driverName, &PRINTER_INFO_2W::pDriverName},
    {"comment", &Printer::comment, &PRINTER_INFO_2W::pComment},
    {"location", &Printer::location, &PRINTER_INFO_2W::pLocation},
    {"separatorFile", &Printer::separatorFile, &PRINTER_INFO_2W::pSepFile},
    {"printProcessor", &Printer::printProcessor, &PRINTER_INFO_2W::pPrintProcessor},
    {"datatype", &Printer::datatype, &PRINTER_INFO_2W::pDatatype},
    {"parameters", &Printer::parameters, &PRINTER_INFO_2W::pParameters},
};
inline constexpr NumberField<Printer, PRINTER_INFO_2W> kPrinterNumbers[] = {
    {"attributes", &Printer::attributes, &PRINTER_INFO_2W::Attributes},
    {"priority", &Printer::priority, &PRINTER_INFO_2W::Priority},
    {"defaultPriority", &Printer::defaultPriority, &PRINTER_INFO_2W::DefaultPriority},
    {"startTime", &Printer::startTime, &PRINTER_INFO_2W::StartTime},
    {"untilTime", &Printer::untilTime, &PRINTER_INFO_2W::UntilTime},
    {"averagePpm", &Printer::averagePpm, &PRINTER_INFO_2W::AveragePPM},
};
inline constexpr TextField<Driver, DRIVER_INFO_3W> kDriverTexts[] = {
    {"name", &Driver::name, &DRIVER_INFO_3W::pName},
    {"driverPath", &Driver::driverPath, &DRIVER_INFO_3W::pDriverPath},
    {"dataFile", &Driver::dataFile, &DRIVER_INFO_3W::pDataFile},
    {"configFile", &Driver::configFile, &DRIVER_INFO_3W::pConfigFile},
    {"helpFile", &Driver::helpFile, &DRIVER_INFO_3W::pHelpFile},
    {"monitorName", &Driver::monitorName, &DRIVER_INFO_3W::pMonitorName},
    {"defaultDatatype", &Driver::defaultDatatype, &DRIVER_INFO_3W::pDefaultDataType},
};

// The printer, driver, form or processor of this name, case ignored; null where there is none.
std::shared_ptr<Printer> FindPrinter(std::u16string_view name);
Driver* FindDriver(std::u16string_view name);
Form* FindForm(std::u16string_view name);
PrintProcessor* FindPrintProcessor(std::u16string_view name);

// Puts `changed` in the place of a piece of the state and writes the store. False (last error set), and all as it was,
// where the store could not be written.
template <class T>
bool Replace(T& piece, T changed) {
    std::swap(piece, changed);
    if (StoreChanged()) {
        return true;
    }
    std::swap(piece, changed);
    return false;
}

}  // namespace host
