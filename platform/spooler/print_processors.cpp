// Print processors: the list of those that are installed.
#include <windows.h>
#include <winspool.h>

#include <filesystem>
#include <system_error>

#include "platform/kernel/drive.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"
#include "platform/spooler/directories.h"
#include "platform/spooler/failures.h"
#include "platform/spooler/info_buffer.h"
#include "platform/spooler/state.h"

using namespace host;

extern "C" {

BOOL WINAPI EnumPrintProcessorsW(LPWSTR pName, LPWSTR pEnvironment, DWORD Level, LPBYTE pPrintProcessorInfo,
                                 DWORD cbBuf, LPDWORD pcbNeeded, LPDWORD pcReturned) {
    if (FaultAsked("EnumPrintProcessorsW") || !IsThisMachine(pName) || !IsThisEnvironment(pEnvironment) ||
        !IsSupportedLevel("EnumPrintProcessorsW", Level, 1, 1)) {
        return FALSE;
    }
    const MachineLock lock;
    InfoBuffer<PRINTPROCESSOR_INFO_1W> buffer;
    for (const PrintProcessor& processor : Spooler().processors) {
        buffer.Add();
        buffer.Text(&PRINTPROCESSOR_INFO_1W::pName, processor.name);
    }
    return buffer.CopyTo(pPrintProcessorInfo, cbBuf, pcbNeeded, pcReturned, true);
}

BOOL WINAPI AddPrintProcessorW(LPWSTR pName, LPWSTR pEnvironment, LPWSTR pPathName, LPWSTR pPrintProcessorName) {
    if (FaultAsked("AddPrintProcessorW") || !IsThisMachine(pName) || !IsThisEnvironment(pEnvironment)) {
        return FALSE;
    }
    if (!pPathName || !*pPathName || !pPrintProcessorName || !*pPrintProcessorName) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    const MachineLock lock;
    if (FindPrintProcessor(pPrintProcessorName)) {
        return Fail(ERROR_PRINT_PROCESSOR_ALREADY_INSTALLED);
    }
    const auto path = HostPath(PrintProcessorDirectory() + u"\\" + pPathName);
    std::error_code ignored;
    if (!path || !std::filesystem::is_regular_file(*path, ignored)) {
        return Fail(ERROR_MOD_NOT_FOUND);
    }
    auto more = Spooler().processors;
    more.push_back({pPrintProcessorName, pPathName});
    return Replace(Spooler().processors, std::move(more));
}

BOOL WINAPI GetPrintProcessorDirectoryW(LPWSTR pName, LPWSTR pEnvironment, DWORD Level, LPBYTE pPrintProcessorInfo,
                                        DWORD cbBuf, LPDWORD pcbNeeded) {
    if (FaultAsked("GetPrintProcessorDirectoryW") || !IsThisMachine(pName) || !IsThisEnvironment(pEnvironment)) {
        return FALSE;
    }
    return CopyDirectory(PrintProcessorDirectory(), Level, pPrintProcessorInfo, cbBuf, pcbNeeded);
}

}  // extern "C"
