// A driver's configuration file for the tests: it answers with what it was given, and leaves traces by published calls.
#include <winddiui.h>
#include <windows.h>
#include <winspool.h>

#include <string>

namespace {

// The driver's own view of the published records.
struct DocumentHeader {
    WORD cbSize;
    WORD reserved;
    HANDLE hPrinter;
    LPWSTR pszPrinterName;
    PDEVMODEW pdmIn;
    PDEVMODEW pdmOut;
    DWORD cbOut;
    DWORD fMode;
};
struct QueryPrintInfo {
    WORD cbSize;
    WORD level;
    HANDLE hPrinter;
    PDEVMODEW pDevMode;
};

constexpr LONG kDeviceModeSize = sizeof(DEVMODEW) + 16;

}  // namespace

extern "C" {

// Writes the event's number into the printer's data, or, for a printer that goes, adds a form of its name. Says no to
// printers whose name begins with "Refused".
BOOL WINAPI DrvPrinterEvent(LPWSTR name, INT event, DWORD flags, LPARAM lParam) {
    const std::u16string_view text = name;
    if (text.starts_with(u"Refused")) {
        SetLastError(text == u"Refused silently" ? ERROR_SUCCESS : ERROR_DISK_FULL);
        return FALSE;
    }
    PRINTER_DEFAULTSW defaults = {nullptr, nullptr, PRINTER_ALL_ACCESS};
    HANDLE printer = nullptr;
    if (!OpenPrinterW(name, &printer, &defaults)) {
        return FALSE;
    }
    DWORD record[] = {static_cast<DWORD>(event), flags, static_cast<DWORD>(lParam)};
    std::u16string value = u"Event";
    SetPrinterDataW(printer, value.data(), REG_BINARY, reinterpret_cast<BYTE*>(record), sizeof(record));
    if (event == PRINTER_EVENT_DELETE) {
        FORM_INFO_1W form = {FORM_USER, name, {1, 1}, {0, 0, 1, 1}};
        AddFormW(printer, 1, reinterpret_cast<BYTE*>(&form));
    }
    return ClosePrinter(printer);
}

// Refuses sheets and answers a size query; otherwise stores what the header says in the output's public part.
LONG WINAPI DrvDocumentPropertySheets(PPROPSHEETUI_INFO sheet, LPARAM lParam) {
    const auto* const header = reinterpret_cast<const DocumentHeader*>(lParam);
    if (sheet || header->cbSize != sizeof(DocumentHeader)) {
        return 0;
    }
    if (header->fMode == 0 || !header->pdmOut) {
        return kDeviceModeSize;
    }
    DEVMODEW* const out = header->pdmOut;
    out->dmFields = header->fMode;
    out->dmSize = static_cast<WORD>(header->cbOut);
    out->dmCopies = header->pdmIn ? header->pdmIn->dmCopies : -1;
    DWORD needed = 0;
    out->dmColor = !GetPrinterW(header->hPrinter, 2, nullptr, 0, &needed) && needed != 0;
    out->dmDuplex = static_cast<SHORT>(header->pszPrinterName[0]);
    return 1;
}

DWORD WINAPI DrvDeviceCapabilities(HANDLE printer, LPWSTR name, WORD capability, LPVOID output, PDEVMODEW devMode) {
    DWORD needed = 0;
    if (GetPrinterW(printer, 2, nullptr, 0, &needed) || needed == 0) {
        return static_cast<DWORD>(-1);
    }
    if (output) {
        *static_cast<WORD*>(output) = static_cast<WORD>(devMode ? devMode->dmCopies : name[0]);
    }
    return 1000u + capability;
}

// Jobs of one copy can be printed.
BOOL WINAPI DevQueryPrintEx(QueryPrintInfo* info) {
    return info->pDevMode->dmCopies == 1;
}

}  // extern "C"
