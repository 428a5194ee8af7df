// Calls into a printer driver's configuration file, the library that holds its user-interface half.
#pragma once

#include <winddiui.h>
#include <windows.h>

#include <string>

#include "platform/spooler/state.h"

namespace host {

// The configuration file of the printer's driver; empty where there is no such driver. Under the MachineLock.
std::u16string ConfigFileOf(const Printer& printer);

// Tells the driver of an event (DrvPrinterEvent, without user interface). A configuration file that isn't a library or
// doesn't have the entry point isn't told, which is no failure. False with the last error set where the library can't
// be loaded or the driver says so. Never called under the MachineLock: the driver calls the spooler.
bool SendPrinterEvent(const std::u16string& configFile, const std::u16string& printerName, INT event);

}  // namespace host
