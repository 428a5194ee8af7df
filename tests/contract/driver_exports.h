// The driver's exports, as a client gets them.
#pragma once

#include <objbase.h>
#include <windows.h>

#include "driver/entry/driver_interface.h"

namespace contract {

struct DriverExports {
    decltype(&::DevQueryPrint) DevQueryPrint;
    decltype(&::DevQueryPrintEx) DevQueryPrintEx;
    decltype(&::DllCanUnloadNow) DllCanUnloadNow;
    decltype(&::DllGetClassObject) DllGetClassObject;
    decltype(&::DrvAdvancedDocumentProperties) DrvAdvancedDocumentProperties;
    decltype(&::DrvConvertDevMode) DrvConvertDevMode;
    decltype(&::DrvDeviceCapabilities) DrvDeviceCapabilities;
    decltype(&::DrvDevicePropertySheets) DrvDevicePropertySheets;
    decltype(&::DrvDocumentProperties) DrvDocumentProperties;
    decltype(&::DrvDocumentPropertySheets) DrvDocumentPropertySheets;
    decltype(&::DrvPrinterEvent) DrvPrinterEvent;
    decltype(&::DrvUpgradePrinter) DrvUpgradePrinter;
    decltype(&::GuiEndJob) GuiEndJob;
    decltype(&::GuiStartJob) GuiStartJob;
    decltype(&::GuiStartSheet) GuiStartSheet;
    decltype(&::PrinterProperties) PrinterProperties;
};

// Throws std::runtime_error, naming the export, where the module lacks one.
DriverExports ResolveExports(HMODULE driver);

}  // namespace contract
