// Captions and borders of windows.
#pragma once

#include "platform/user/windows.h"

namespace host {

// What lies around the client area, on the screen.
void DrawFrame(Window& window);
// HT value of a point on the screen.
LRESULT HitFrame(const Window& window, POINT screen);

}  // namespace host
