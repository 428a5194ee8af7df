// The driver's other files, which are named in the printer's data, started or installed with a printer. What the driver
// doesn't bring is left out.
#pragma once

#include <windows.h>

namespace velmora {

// Names the renderer's files in the printer's data, for drivers that bring an INI data file.
void SetRendererNames(HANDLE printer);

// Names the renderer's user-mode part in the printer's data where the driver brings one. False where it can't be named.
bool SetUserModePart(HANDLE printer);

// Starts the driver's font installer, its window hidden, and doesn't wait for it.
void RunFontInstaller(HANDLE printer);

// Installs the driver's print processor where this machine lacks it, and makes it the printer's.
void InstallPrintProcessor(HANDLE printer);

}  // namespace velmora
