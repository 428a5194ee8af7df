// Printers of models that works are measured on.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "driver/entry/printer_access.h"
#include "platform/host.h"

namespace velmora {

// Installs a printer of this description by the built driver and opens it. `name` is the driver's too.
OwnedPrinter InstallDescription(const host::Machine& machine, const std::string& name,
                                const std::vector<std::byte>& description);

// The least that a call costs which reads the printer's model: the whole file, opened and read at once.
void ReadWholeDescription(const WCHAR* path);

}  // namespace velmora
