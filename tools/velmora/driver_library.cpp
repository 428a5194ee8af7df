#include "tools/velmora/driver_library.h"

#include "driver/entry/driver_interface.h"
#include "platform/kernel/text.h"
#include "tools/velmora/command_error.h"

namespace velmora {
namespace {

// DrvConvertDevMode's modes CDM_CONVERT and CDM_DRIVER_DEFAULT (winddiui.h).
constexpr DWORD kConvert = 1;
constexpr DWORD kDriverDefault = 4;

}  // namespace

OwnedModule LoadDriverOf(HANDLE printer, const std::string& printerName) {
    OwnedModule driver(LoadLibraryW(DriverOf(printer).configFile.c_str()));
    if (!driver) {
        ThrowRefused("LoadLibraryW of the driver of \"" + printerName + "\"");
    }
    return driver;
}

Conversion ConvertByDriver(HANDLE printer, const std::string& printerName, const VelmoraDevMode* input) {
    const OwnedModule driver = LoadDriverOf(printer, printerName);
    const auto convert = DriverExport<decltype(&DrvConvertDevMode)>(driver, "DrvConvertDevMode");
    std::u16string name = host::ToWide(printerName);
    VelmoraDevMode given = input ? *input : VelmoraDevMode{};  // the driver may repair it in place
    DEVMODEW* const in = input ? &given.publicPart : nullptr;
    const DWORD mode = input ? kConvert : kDriverDefault;
    LONG size = 0;
    if (convert(name.data(), in, nullptr, &size, mode) || GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
        ThrowRefused("DrvConvertDevMode, asked for the size");
    }
    if (size != static_cast<LONG>(sizeof(VelmoraDevMode))) {
        throw CommandError("the driver of \"" + printerName + "\" has device modes of " + std::to_string(size) +
                           " bytes; this workbench knows those of " + std::to_string(sizeof(VelmoraDevMode)));
    }
    Conversion conversion = {};
    conversion.isDone = convert(name.data(), in, &conversion.output.publicPart, &size, mode) != FALSE;
    conversion.lastError = GetLastError();
    conversion.neededBytes = size;
    return conversion;
}

VelmoraDevMode DefaultByDriver(HANDLE printer, const std::string& printerName) {
    const Conversion conversion = ConvertByDriver(printer, printerName, nullptr);
    if (!conversion.isDone) {
        ThrowRefused("DrvConvertDevMode", conversion.lastError);
    }
    return conversion.output;
}

}  // namespace velmora
