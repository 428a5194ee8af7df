#include "driver/entry/stored_devmode.h"

#include "driver/devmode/default_devmode.h"
#include "driver/entry/printer_access.h"

namespace velmora {

int GetPrinterDevMode(HANDLE printer, VelmoraDevMode* devMode) {
    const HeapOwner<PRINTER_INFO_2W> info = GetPrinterInfo2(printer);
    if (!info) {
        return 0;
    }
    BuildDefaultDevMode(printer, info->pPrinterName ? info->pPrinterName : TEXT(""), devMode);
    return info->pDevMode ? 1 : 0;
}

}  // namespace velmora
