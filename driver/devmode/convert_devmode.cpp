#include "driver/devmode/convert_devmode.h"

#include <cstring>

#include "driver/devdesc/description_file.h"
#include "driver/devmode/default_devmode.h"
#include "driver/devmode/validate_devmode.h"
#include "driver/entry/connection_marker.h"
#include "driver/entry/printer_access.h"

namespace velmora {
namespace {

bool Answer(bool result, DWORD error) {
    SetLastError(error);
    return result;
}

// True, and `input` repaired, where both its parts are valid for the printer.
bool IsValid(HANDLE printer, DEVMODEW* input) {
    const OwnedFile file = OpenDescriptionFile(printer);
    const HeapOwner<DeviceModel> model = LoadDeviceModel(file.Get());
    return model && ValidatePublicDevMode(printer, input, model.Get()) &&
           ValidatePrivateDevMode(printer, &reinterpret_cast<VelmoraDevMode*>(input)->privatePart, file.Get(),
                                  model.Get());
}

bool FillOutput(const WCHAR* printerName, DEVMODEW* input, DEVMODEW* output) {
    OwnedPrinter printer = printerName ? OpenPrinterLocal(printerName) : OwnedPrinter();
    if (!printer) {
        return Answer(false, ERROR_INVALID_PRINTER_NAME);
    }
    if (input && IsValid(printer.Get(), input)) {
        memmove(output, input, sizeof(VelmoraDevMode));
    } else {
        BuildDefaultDevMode(printer.Get(), printerName, reinterpret_cast<VelmoraDevMode*>(output));
    }
    printer.Close();
    return Answer(true, ERROR_SUCCESS);
}

bool AnswerWithoutOutput(const WCHAR* printerName) {
    constexpr DWORD kUsual = ERROR_INSUFFICIENT_BUFFER;
    if (!printerName || !SystemMarksConnections() || !IsConnectionName(printerName) ||
        HasConnectionMarker(printerName)) {
        return Answer(false, kUsual);
    }
    OwnedPrinter printer = OpenPrinterLocal(printerName);
    if (!printer) {
        return Answer(true, ERROR_INVALID_PRINTER_NAME);
    }
    const NetworkInstall install = ReadNetworkInstall(printer.Get());
    printer.Close();
    switch (install) {
        case NetworkInstall::kUnreadable:
            return Answer(false, ERROR_FILE_NOT_FOUND);
        case NetworkInstall::kThisComputer:
            CreateConnectionMarker(printerName);
            return Answer(false, kUsual);
        case NetworkInstall::kNone:
        case NetworkInstall::kOthers:
            break;
    }
    return Answer(true, kUsual);
}

}  // namespace

bool ConvertDevMode(const WCHAR* printerName, DEVMODEW* input, DEVMODEW* output, LONG* neededBytes) {
    if (!neededBytes) {
        return Answer(false, ERROR_INVALID_PARAMETER);
    }
    const bool fits = *neededBytes >= static_cast<LONG>(kDevModeSize);
    *neededBytes = kDevModeSize;
    return fits && output ? FillOutput(printerName, input, output) : AnswerWithoutOutput(printerName);
}

}  // namespace velmora
