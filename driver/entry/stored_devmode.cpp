#include "driver/entry/stored_devmode.h"

#include <cstring>

#include "driver/devmode/default_devmode.h"
#include "driver/devmode/validate_devmode.h"
#include "driver/entry/printer_access.h"

namespace velmora {

VelmoraDevMode* FindStoredDevMode(const HeapOwner<PRINTER_INFO_2W>& info) {
    auto* const stored = reinterpret_cast<VelmoraDevMode*>(info->pDevMode);
    if (!stored) {
        return nullptr;
    }
    // What the spooler keeps may be another driver's and shorter: the block it lies in has to hold all of it.
    const auto* const block = reinterpret_cast<const char*>(info.Get());
    const auto offset = static_cast<size_t>(reinterpret_cast<const char*>(stored) - block);
    const size_t size = HeapSize(GetProcessHeap(), 0, block);
    const bool isWhole = size != static_cast<size_t>(-1) && offset <= size && size - offset >= sizeof(VelmoraDevMode);
    return isWhole ? stored : nullptr;
}

int GetPrinterDevMode(HANDLE printer, VelmoraDevMode* devMode) {
    const HeapOwner<PRINTER_INFO_2W> info = GetPrinterInfo2(printer);
    if (!info) {
        return 0;
    }
    VelmoraDevMode* const stored = FindStoredDevMode(info);
    if (stored && ValidatePublicDevMode(printer, &stored->publicPart, nullptr) &&
        ValidatePrivateDevMode(printer, &stored->privatePart, INVALID_HANDLE_VALUE, nullptr)) {
        memcpy(devMode, stored, sizeof(*devMode));
        return 1;
    }
    BuildDefaultDevMode(printer, info->pPrinterName ? info->pPrinterName : TEXT(""), devMode);
    return info->pDevMode ? 1 : 0;
}

}  // namespace velmora
