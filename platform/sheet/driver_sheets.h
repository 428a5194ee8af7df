// The common property-sheet host: shows the sheets that a printer's driver makes.
#pragma once

#include <compstui.h>
#include <windows.h>

#include <functional>
#include <string>

namespace host {

struct DriverSheets {
    PFNPROPSHEETUI entry;  // the driver's function for the sheets
    LPARAM header;         // its PROPSHEETUI_INFO.lParamInit
    std::u16string caption;
    HWND owner;
    // Called whenever the driver says, by its PROPSHEETUI_INFO.Result, that what was changed in the sheets holds, and
    // when they are ended by OK.
    std::function<void()> onAccepted;
};

// The driver's function is called
//   with INIT, in which it adds its pages;
//   with SET_RESULT, while the sheets are shown, each time that a page says its result (CPSFUNC_SET_RESULT);
//   with DESTROY, once, when the pages are gone, also where INIT failed or no sheet could be shown.
// Returns CPSUI_OK where the sheets were ended by OK or something was accepted before they were ended otherwise, else
// CPSUI_CANCEL; ERR_CPSUI_GETLASTERROR where there are none to show.
LONG RunDriverSheets(const DriverSheets& sheets);

}  // namespace host
