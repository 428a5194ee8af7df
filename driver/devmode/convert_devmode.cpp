#include "driver/devmode/convert_devmode.h"

#include "driver/devmode/default_devmode.h"
#include "driver/entry/printer_access.h"

namespace velmora {

bool ConvertDevMode(const WCHAR* printerName, DEVMODEW* output, LONG* neededBytes) {
    if (!neededBytes) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return false;
    }
    const bool fits = *neededBytes >= static_cast<LONG>(kDevModeSize);
    *neededBytes = kDevModeSize;
    if (!fits || !output) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return false;
    }
    OwnedPrinter printer = printerName ? OpenPrinterLocal(printerName) : OwnedPrinter();
    if (!printer) {
        SetLastError(ERROR_INVALID_PRINTER_NAME);
        return false;
    }
    BuildDefaultDevMode(printer.Get(), printerName, reinterpret_cast<VelmoraDevMode*>(output));
    printer.Close();
    SetLastError(ERROR_SUCCESS);
    return true;
}

}  // namespace velmora
