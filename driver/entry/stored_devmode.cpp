#include "driver/entry/stored_devmode.h"

#include <cstring>

#include "driver/devmode/default_devmode.h"
#include "driver/devmode/validate_devmode.h"
#include "driver/entry/printer_access.h"

namespace velmora {

int GetPrinterDevMode(HANDLE printer, VelmoraDevMode* devMode) {
    const HeapOwner<PRINTER_INFO_2W> info = GetPrinterInfo2(printer);
    if (!info) {
        return 0;
    }
    auto* const stored = reinterpret_cast<VelmoraDevMode*>(info->pDevMode);
    if (stored && ValidatePublicDevMode(printer, &stored->publicPart, nullptr) &&
        ValidatePrivateDevMode(printer, &stored->privatePart, INVALID_HANDLE_VALUE, nullptr)) {
        memcpy(devMode, stored, sizeof(*devMode));
        return 1;
    }
    BuildDefaultDevMode(printer, info->pPrinterName ? info->pPrinterName : TEXT(""), devMode);
    return stored ? 1 : 0;
}

}  // namespace velmora
