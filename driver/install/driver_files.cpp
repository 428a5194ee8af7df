#include "driver/install/driver_files.h"

#include <winspool.h>

#include "driver/base/format.h"
#include "driver/base/heap.h"
#include "driver/base/text.h"
#include "driver/entry/printer_access.h"
#include "driver/settings/settings_folder.h"

namespace velmora {
namespace {

struct RendererName {
    const WCHAR* value;
    const WCHAR* fileName;
};
constexpr RendererName kRendererNames[] = {
    {TEXT("FontLst"), TEXT("KV62.fl")},
    {TEXT("Ocm"), TEXT("KV62o.dll")},
    {TEXT("RenderLib"), TEXT("KV62E.DLL")},
};

// Names of print processors differ by more than case.
bool IsSameProcessor(WCHAR* name, const WCHAR* upperCaseName) {
    return name && TextsEqual<WCHAR>(CharUpperW(name), upperCaseName);
}

bool IsInstalledProcessor(const WCHAR* name) {
    DWORD needed = 0;
    DWORD count = 0;
    if (EnumPrintProcessorsW(nullptr, nullptr, 1, nullptr, 0, &needed, &count) ||
        needed < sizeof(PRINTPROCESSOR_INFO_1W)) {
        return false;
    }
    const auto processors = HeapOwner<PRINTPROCESSOR_INFO_1W>::AllocateSize(needed);
    if (!processors || !EnumPrintProcessorsW(nullptr, nullptr, 1, reinterpret_cast<BYTE*>(processors.Get()), needed,
                                             &needed, &count)) {
        return false;
    }
    for (DWORD i = 0; i < count; ++i) {
        if (IsSameProcessor(processors.Get()[i].pName, name)) {
            return true;
        }
    }
    return false;
}

}  // namespace

void SetRendererNames(HANDLE printer) {
    WCHAR path[MAX_PATH];
    if (!FindDriverIniFile(printer, path)) {
        return;
    }
    for (const RendererName& name : kRendererNames) {
        WritePrinterString(printer, name.value, name.fileName);
    }
}

bool SetUserModePart(HANDLE printer) {
    WCHAR path[MAX_PATH];
    return !FindDriverFile(printer, nullptr, TEXT("UMPD.DLL"), path) ||
           WritePrinterString(printer, TEXT("SPLUserModePrinterDriver"), FileNamePart(path));
}

void RunFontInstaller(HANDLE printer) {
    WCHAR path[MAX_PATH];
    if (!FindDriverFile(printer, TEXT("FontInstaller"), TEXT("FONT.EXE"), path)) {
        return;
    }
    // In quotes, so that no part of a path with blanks is taken for the program.
    WCHAR commandLine[MAX_PATH + 2];
    FormatWide(commandLine, ARRAYSIZE(commandLine), TEXT("\"%s\""), path);
    if (const HeapOwner<char> narrow = Narrow(commandLine)) {
        WinExec(narrow.Get(), SW_HIDE);
    }
}

void InstallPrintProcessor(HANDLE printer) {
    WCHAR path[MAX_PATH];
    if (!FindDriverFile(printer, TEXT("PrintProcessor"), TEXT("PPR.DLL"), path)) {
        return;
    }
    WCHAR fileName[MAX_PATH];
    WCHAR name[MAX_PATH];
    CopyText(fileName, ARRAYSIZE(fileName), FileNamePart(path));
    CopyText<WCHAR>(name, ARRAYSIZE(name), fileName);
    if (WCHAR* const dot = FindText<WCHAR>(name, TEXT("."))) {
        *dot = 0;
    }
    {
        const HeapOwner<PRINTER_INFO_2W> info = GetPrinterInfo2(printer);
        if (!info || IsSameProcessor(info->pPrintProcessor, name)) {
            return;
        }
    }
    if (!IsInstalledProcessor(name)) {
        AddPrintProcessorW(nullptr, nullptr, fileName, name);
    }
    SetPrinterPrintProcessor(printer, name);
}

}  // namespace velmora
