#include "driver/settings/printer_data_file.h"

#include "driver/base/text.h"
#include "driver/entry/printer_access.h"

namespace velmora {
namespace {

// The path of the printer data file in `path` (MAX_PATH characters); false where the data file is the description file
// or missing.
bool FindPrinterDataFile(HANDLE printer, WCHAR* path) {
    return GetDriverDataFile(printer, path) && !FindText<WCHAR>(path, TEXT(".XPI"));
}

OwnedFile OpenDataFile(HANDLE printer, DWORD access) {
    WCHAR path[MAX_PATH];
    if (!FindPrinterDataFile(printer, path)) {
        return {};
    }
    const DWORD attributes = GetFileAttributesW(path);
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        SetFileAttributesW(path, attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    }
    return OwnedFile(CreateFileW(path, access, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

// Bytes of a file, or -1 where it can't be opened.
LONGLONG FileSize(const WCHAR* path) {
    const OwnedFile file(CreateFileW(path, FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                     OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size;
    return file && GetFileSizeEx(file.Get(), &size) ? size.QuadPart : -1;
}

}  // namespace

OwnedFile OpenPrinterDataFile(const WCHAR* printerName, DWORD access) {
    const OwnedPrinter printer = OpenPrinterLocal(printerName);
    return OpenDataFile(printer.Get(), access);
}

DWORD GetPrinterDataFileSize(const WCHAR* printerName) {
    const OwnedPrinter printer = OpenPrinterLocal(printerName);
    return MeasurePrinterDataFile(printer.Get());
}

DWORD MeasurePrinterDataFile(HANDLE printer) {
    const OwnedFile file = OpenDataFile(printer, FILE_READ_ATTRIBUTES);
    return file ? GetFileSize(file.Get(), nullptr) : kNoPrinterDataFile;
}

DWORD GetBasePdfSize(HANDLE printer) {
    DWORD size = 0;
    if (ReadPrinterDword(printer, kBasePdfSizeValue, &size)) {
        return size;
    }
    size = MeasurePrinterDataFile(printer);
    return size != kNoPrinterDataFile ? size : 0;
}

bool SetBasePdfSize(HANDLE printer, DWORD size) {
    return WritePrinterValue(printer, kBasePdfSizeValue, REG_DWORD, &size, sizeof(size));
}

void SyncPrinterDataFileCopies(const WCHAR* printerName) {
    const OwnedPrinter printer = OpenPrinterLocal(printerName);
    const DWORD size = MeasurePrinterDataFile(printer.Get());
    WCHAR path[MAX_PATH];
    if (size == kNoPrinterDataFile || !FindPrinterDataFile(printer.Get(), path)) {
        return;
    }
    static constexpr const WCHAR* kDirectory = TEXT("\\W32X86\\");
    WCHAR copy[MAX_PATH];
    CopyText<WCHAR>(copy, ARRAYSIZE(copy), path);
    WCHAR* version = FindText<WCHAR>(copy, kDirectory);
    if (!version) {
        return;
    }
    version += TextLength(kDirectory);
    if (*version == 0) {
        return;
    }
    for (const WCHAR number : {TEXT('2'), TEXT('3'), TEXT('4')}) {
        *version = number;
        const LONGLONG copySize = FileSize(copy);
        if (copySize >= 0 && copySize < static_cast<LONGLONG>(size)) {
            CopyFileW(path, copy, FALSE);
        }
    }
}

}  // namespace velmora
