// What happens to a printer as the spooler tells it: connecting to it, installing it, and the ends of both.
#pragma once

#include <windows.h>

namespace velmora {

// A printer of another machine was connected, or the connection is removed.
void OnAddConnection(const WCHAR* printerName);
void OnDeleteConnection(const WCHAR* printerName);

// The printer was installed, or its driver was: prepares all that renderer and sheets rely on. False where the printer
// can't be opened, there is no memory, or the renderer's user-mode part can't be named in the printer's data. What is
// missing of the driver's files is left out.
bool OnInitialize(const WCHAR* printerName);

// The printer is deleted: removes what every user of this machine has stored for it.
void OnDelete(const WCHAR* printerName);

}  // namespace velmora
