// The spool directory of image printers.
#pragma once

#include <windows.h>

namespace velmora {

// Stores the server's default spool directory as that of an image printer, on system versions from 5.1 on; does nothing
// for other printers and where anything of it can't be had.
void RegisterSpoolDirectory(HANDLE printer, const WCHAR* printerName);

}  // namespace velmora
