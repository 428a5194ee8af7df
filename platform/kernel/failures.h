// How published calls fail.
#pragma once

#include <windows.h>

namespace host {

// Sets the last error. Always false, for the call to return.
bool Fail(DWORD error);

// For what is published but not supported by this layer: says on the standard error stream what was asked for, and
// fails with ERROR_NOT_SUPPORTED.
bool FailUnsupported(const char* what);

}  // namespace host
