// Modules that programs loaded, and the system's own.
#pragma once

#include <windows.h>

#include <memory>

namespace host {

class ResourceFile;

// The resources of a module: empty for a module without any. Null (last error ERROR_INVALID_HANDLE) where the handle is
// no module. To be called and used under the machine's lock.
std::shared_ptr<const ResourceFile> ResourcesOf(HMODULE module);

// Unloads what programs left loaded, detach routines included. For the machine's end, before everything is closed.
void UnloadModules();

}  // namespace host
