// Bringing a device mode into line with its printer: the installed options, the model's colour ability and resolutions,
// and fields that follow from others.
#pragma once

#include <windows.h>

#include "driver/devdesc/device_model.h"
#include "driver/devmode/private_devmode.h"

namespace velmora {

// The printer that a device mode is brought into line with.
struct AdjustedPrinter {
    HANDLE printer;
    const WCHAR* name;         // null: it has no watermarks
    HANDLE descriptionFile;    // or the invalid handle
    const DeviceModel* model;  // null: not known, taken as monochrome
};

// Adjusts a whole device mode, 4088 bytes.
void AdjustDevMode(const AdjustedPrinter& printer, VelmoraDevMode* devMode);

// Converts the fields in device dots from one resolution to another, both in dots per inch. `from` isn't 0.
void RescaleDots(PrivateDevMode* devMode, int16_t from, int16_t to);

}  // namespace velmora
