// The system's own icons, drawn at any size.
#pragma once

#include <windows.h>

#include <optional>

#include "platform/gdi/dibs.h"

namespace host {

// Alpha is multiplied in. None: the layer doesn't have the icon.
std::optional<Picture> DrawSystemIcon(WORD id, int width, int height);

}  // namespace host
