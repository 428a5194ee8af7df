// What a colour mode of the model (a colour-correction preset) does to a device mode.
#pragma once

#include "driver/devdesc/device_model.h"
#include "driver/devmode/private_devmode.h"

namespace velmora {

// Makes the selections that the colour mode at `index` carries and compiles them. colorModeIndex and dmFields stay as
// they are; an index that names no colour mode changes nothing.
void ApplyColorModeSelections(const DeviceModel& model, uint16_t index, PrivateDevMode* devMode);

// Turns the selected value of every colour feature into blobRefs and blobSlices, whose old contents go. Only the page
// languages with colour commands (PCL 6, PCL 5, PostScript) have them; on other models nothing changes.
void CompileColorSelections(const DeviceModel& model, PrivateDevMode* devMode);

}  // namespace velmora
