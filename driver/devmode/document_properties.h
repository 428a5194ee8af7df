// Document settings without property sheets, and the device mode that document settings start from.
#pragma once

#include <windows.h>

#include "driver/devdesc/device_model.h"
#include "driver/devmode/private_devmode.h"
#include "driver/entry/driver_interface.h"

namespace velmora {

// Fills `source` with the device mode that a request starts from: `input` where both its parts are valid; its public
// part with the private part of the printer's device mode where only that is; else the printer's device mode. `input`
// is repaired where it stands. `input` and `model` may be null, `file` the invalid handle: the printer's are then used.
// False, and `source` undefined, where the printer's device mode is needed and the printer can't be read.
bool ChooseSourceDevMode(HANDLE printer, DEVMODEW* input, HANDLE file, const DeviceModel* model,
                         VelmoraDevMode* source);

// Answers a document-property request: writes the source device mode, brought into line with the printer, into the
// header's output. A request that asks for none, an output below 4088 bytes, and a printer that can't be read leave the
// output as it is. An input without this driver's private part only sets the main settings of the output's public part.
void DocumentPropertiesNoUI(const DOCUMENTPROPERTYHEADER& header);

}  // namespace velmora
