// How the spooler's calls fail.
#pragma once

#include <windows.h>

#include "platform/kernel/failures.h"

namespace host {

// True where a call's level is the one that is supported. Otherwise false: a level that is published (up to
// `highestPublished`) is unsupported, any other is ERROR_INVALID_LEVEL.
bool IsSupportedLevel(const char* call, DWORD level, DWORD supported, DWORD highestPublished);

// True where a server name means this machine: null, empty, or two backslashes and the computer's name. Otherwise
// false, with RPC_S_SERVER_UNAVAILABLE.
bool IsThisMachine(LPCWSTR serverName);

// True where an environment is this machine's: null, empty or "Windows x64". Otherwise false, with
// ERROR_INVALID_ENVIRONMENT.
bool IsThisEnvironment(LPCWSTR environment);

inline constexpr WCHAR kThisEnvironment[] = TEXT("Windows x64");

// What follows "\\COMPUTER\" where a printer's name has this computer's name before it; otherwise the name itself.
LPCWSTR LocalPrinterName(LPCWSTR name);

}  // namespace host
