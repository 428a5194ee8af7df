#include "tests/contract/driver_exports.h"

#include <stdexcept>
#include <string>

namespace contract {
namespace {

template <class Function>
void Resolve(HMODULE driver, const char* name, Function* function) {
    const auto address = GetProcAddress(driver, name);
    if (address == nullptr) {
        throw std::runtime_error("the driver has no export " + std::string(name));
    }
    *function = reinterpret_cast<Function>(reinterpret_cast<void*>(address));
}

}  // namespace

DriverExports ResolveExports(HMODULE driver) {
    DriverExports exports = {};
    Resolve(driver, "DevQueryPrint", &exports.DevQueryPrint);
    Resolve(driver, "DevQueryPrintEx", &exports.DevQueryPrintEx);
    Resolve(driver, "DllCanUnloadNow", &exports.DllCanUnloadNow);
    Resolve(driver, "DllGetClassObject", &exports.DllGetClassObject);
    Resolve(driver, "DrvAdvancedDocumentProperties", &exports.DrvAdvancedDocumentProperties);
    Resolve(driver, "DrvConvertDevMode", &exports.DrvConvertDevMode);
    Resolve(driver, "DrvDeviceCapabilities", &exports.DrvDeviceCapabilities);
    Resolve(driver, "DrvDevicePropertySheets", &exports.DrvDevicePropertySheets);
    Resolve(driver, "DrvDocumentProperties", &exports.DrvDocumentProperties);
    Resolve(driver, "DrvDocumentPropertySheets", &exports.DrvDocumentPropertySheets);
    Resolve(driver, "DrvPrinterEvent", &exports.DrvPrinterEvent);
    Resolve(driver, "DrvUpgradePrinter", &exports.DrvUpgradePrinter);
    Resolve(driver, "GuiEndJob", &exports.GuiEndJob);
    Resolve(driver, "GuiStartJob", &exports.GuiStartJob);
    Resolve(driver, "GuiStartSheet", &exports.GuiStartSheet);
    Resolve(driver, "PrinterProperties", &exports.PrinterProperties);
    return exports;
}

}  // namespace contract
