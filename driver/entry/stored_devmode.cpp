#include "driver/entry/stored_devmode.h"

#include <cstring>

#include "driver/devmode/default_devmode.h"
#include "driver/devmode/validate_devmode.h"
#include "driver/entry/printer_access.h"

namespace velmora {

namespace {

// True where the block of the printer's information holds as many bytes as a device mode of this driver has.
bool LiesWhole(const VelmoraDevMode& devMode, const HeapOwner<PRINTER_INFO_2W>& info) {
    const auto* block = reinterpret_cast<const char*>(info.Get());
    const auto offset = static_cast<size_t>(reinterpret_cast<const char*>(&devMode) - block);
    const size_t size = HeapSize(GetProcessHeap(), 0, block);
    return size != static_cast<size_t>(-1) && offset <= size && size - offset >= sizeof(devMode);
}

}  // namespace

int GetPrinterDevMode(HANDLE printer, VelmoraDevMode* devMode) {
    const HeapOwner<PRINTER_INFO_2W> info = GetPrinterInfo2(printer);
    if (!info) {
        return 0;
    }
    auto* const stored = reinterpret_cast<VelmoraDevMode*>(info->pDevMode);
    if (stored && LiesWhole(*stored, info) && ValidatePublicDevMode(printer, &stored->publicPart, nullptr) &&
        ValidatePrivateDevMode(printer, &stored->privatePart, INVALID_HANDLE_VALUE, nullptr)) {
        memcpy(devMode, stored, sizeof(*devMode));
        return 1;
    }
    BuildDefaultDevMode(printer, info->pPrinterName ? info->pPrinterName : TEXT(""), devMode);
    return stored ? 1 : 0;
}

}  // namespace velmora
