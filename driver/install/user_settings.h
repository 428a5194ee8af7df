// The settings of a printer that the users of this machine have.
#pragma once

#include <windows.h>

namespace velmora {

// Removes the printer's settings file and the rendered watermark files that it lists from every profile beside the
// current user's, whose folder of profiles becomes the current directory. Does nothing for a printer without a settings
// file name.
void RemoveUserSettings(HANDLE printer);

}  // namespace velmora
