// A driver's configuration file for the tests: it answers with what it was given, and leaves traces by published calls.
#include <prsht.h>
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

struct DeviceHeader {
    WORD cbSize;
    WORD flags;
    HANDLE hPrinter;
    LPWSTR pszPrinterName;
};

constexpr LONG kDeviceModeSize = sizeof(DEVMODEW) + 16;

// What a run of sheets has, as its UserData.
struct Run {
    PROPSHEETUI_INFO* info;
    HMODULE pages;
    HPROPSHEETPAGE page;
    DEVMODEW* edited;  // null: the device sheet
};

// Appends to the environment's variable SHEET_CALLS.
void Trace(const std::u16string& call) {
    WCHAR calls[200] = {};
    GetEnvironmentVariableW(TEXT("SHEET_CALLS"), calls, 200);
    SetEnvironmentVariableW(TEXT("SHEET_CALLS"), (calls + call + u";").c_str());
}

// A page that edits the device mode when it is opened and says that it holds when it is applied.
INT_PTR CALLBACK PageProc(HWND page, UINT message, WPARAM, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        const LPARAM run = reinterpret_cast<const PROPSHEETPAGEW*>(lParam)->lParam;
        SetWindowLongPtrW(page, DWLP_USER, run);
        if (DEVMODEW* const edited = reinterpret_cast<Run*>(run)->edited) {
            edited->dmCopies = 9;
        }
    } else if (message == WM_NOTIFY && reinterpret_cast<NMHDR*>(lParam)->code == PSN_APPLY) {
        auto& run = *reinterpret_cast<Run*>(GetWindowLongPtrW(page, DWLP_USER));
        const LONG_PTR told = run.info->pfnComPropSheet(run.info->hComPropSheet, CPSFUNC_SET_RESULT,
                                                        reinterpret_cast<LPARAM>(run.page), CPSUI_OK);
        Trace(told == 1 ? u"told" : u"not told");
        if (run.edited) {
            run.edited->dmCopies = 10;  // not applied yet
        }
    }
    return FALSE;
}

// `isWilling` false: INIT fails behind its page.
LONG RunSheets(PPROPSHEETUI_INFO info, LPARAM lParam, bool isWilling, DEVMODEW* edited) {
    auto* const run = reinterpret_cast<Run*>(info->UserData);
    switch (info->Reason) {
        case PROPSHEETUI_REASON_INIT: {
            auto* const made = new Run{info, LoadLibraryW(TEXT("C:\\Package\\pages.dll")), nullptr, edited};
            PROPSHEETPAGEW page = {};
            page.dwSize = sizeof(page);
            page.hInstance = made->pages;
            page.pszTemplate = MAKEINTRESOURCEW(100);
            page.pfnDlgProc = PageProc;
            page.lParam = reinterpret_cast<LPARAM>(made);
            const LONG_PTR handle = info->pfnComPropSheet(info->hComPropSheet, CPSFUNC_ADD_PROPSHEETPAGEW,
                                                          reinterpret_cast<LPARAM>(&page), 0);
            made->page = handle > 0 ? reinterpret_cast<HPROPSHEETPAGE>(handle) : nullptr;
            info->UserData = reinterpret_cast<ULONG_PTR>(made);
            info->Result = CPSUI_OK;
            Trace(made->page ? u"init" : u"no page");
            return made->page && isWilling ? 1 : 0;
        }
        case PROPSHEETUI_REASON_SET_RESULT:
            info->Result = static_cast<ULONG_PTR>(reinterpret_cast<const SETRESULT_INFO*>(lParam)->Result);
            Trace(u"result");
            return 1;
        case PROPSHEETUI_REASON_DESTROY:
            Trace(u"destroy");
            FreeLibrary(run->pages);
            delete run;
            return 1;
        default:
            return 0;
    }
}

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

// Answers a size query; otherwise stores what the header says in the output's public part.
LONG WINAPI DrvDocumentPropertySheets(PPROPSHEETUI_INFO sheet, LPARAM lParam) {
    const auto* const header = reinterpret_cast<const DocumentHeader*>(sheet ? sheet->lParamInit : lParam);
    if (header->cbSize != sizeof(DocumentHeader)) {
        return -1;
    }
    if (header->fMode == 0 || !header->pdmOut) {
        return kDeviceModeSize;
    }
    DEVMODEW* const out = header->pdmOut;
    if (sheet) {
        return RunSheets(sheet, lParam, header->pszPrinterName[0] != u'R', out);
    }
    out->dmFields = header->fMode;
    out->dmSize = static_cast<WORD>(header->cbOut);
    out->dmCopies = header->pdmIn ? header->pdmIn->dmCopies : -1;
    DWORD needed = 0;
    out->dmColor = !GetPrinterW(header->hPrinter, 2, nullptr, 0, &needed) && needed != 0;
    out->dmDuplex = static_cast<SHORT>(header->pszPrinterName[0]);
    return 1;
}

LONG WINAPI DrvDevicePropertySheets(PPROPSHEETUI_INFO sheet, LPARAM lParam) {
    const auto* const header = reinterpret_cast<const DeviceHeader*>(sheet->lParamInit);
    if (sheet->Reason == PROPSHEETUI_REASON_INIT) {
        Trace(std::u16string(header->pszPrinterName) + (header->flags != 0 ? u", to look at" : u""));
    }
    return header->cbSize == sizeof(DeviceHeader) ? RunSheets(sheet, lParam, true, nullptr) : -1;
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
