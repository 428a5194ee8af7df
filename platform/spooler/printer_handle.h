// What a printer handle leads to.
#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "platform/kernel/objects.h"
#include "platform/spooler/state.h"

namespace host {

// A handle for the printer of this name (which may have this computer's name before it), noted in the ledger; null with
// ERROR_INVALID_PRINTER_NAME or, where the panel doesn't grant all of `access`, ERROR_ACCESS_DENIED.
HANDLE OpenPrinterByName(LPCWSTR name, ACCESS_MASK access);

// The same for a printer at hand, without regard to what the panel grants.
HANDLE OpenPrinterHandle(std::shared_ptr<Printer> printer, ACCESS_MASK access);

// The printer behind a handle. Null where it is none (ERROR_INVALID_HANDLE), its printer is gone
// (ERROR_PRINTER_DELETED) or the handle lacks a right of `neededAccess` (ERROR_ACCESS_DENIED).
std::shared_ptr<Printer> OpenedPrinter(HANDLE handle, ACCESS_MASK neededAccess = 0);

}  // namespace host
