// What the driver's INI data file gives every user to begin with.
#pragma once

#include <windows.h>

#include "driver/devdesc/device_model.h"

namespace velmora {

// Stores the custom sizes and watermarks of the driver's INI data file as the user's own, makes printer forms of the
// custom sizes and adds them to the papers that the renderer is told of. Without watermarks there the built-in
// ones are stored. Does nothing where the driver has no such file. `model` may be null.
void SyncDriverIniSettings(HANDLE printer, const WCHAR* printerName, const DeviceModel* model);

}  // namespace velmora
