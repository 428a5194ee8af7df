// A common property-sheet host for the sheet exports, and the user in front of the sheets.
#pragma once

#include <windows.h>

#include <prsht.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "driver/entry/driver_interface.h"
#include "driver/ui/sheet_context.h"
#include "platform/host.h"
#include "tests/driver/package.h"

namespace driver_test {

// Runs a sheet as the host does: INIT, the pages, DESTROY.
class SheetHost {
  public:
    SheetHost(host::Machine* machine, HANDLE printer, WideText printerName = kPrinterName);

    // What the user does, a step each time that a window waits for it. A sheet that is still open when there are no
    // steps left is cancelled.
    void Then(std::function<void(HWND sheet)> step) { steps_.push_back(std::move(step)); }

    // What a failed sheet didn't come to.
    void ForgetSteps() { steps_.clear(); }

    // Opens the device sheet, or the document sheet over `input` (null: none), and returns when it is closed and
    // destroyed: what INIT returned. The sheet isn't shown where INIT fails.
    LONG RunDeviceSheet();
    LONG RunDocumentSheet(DEVMODEW* input, velmora::VelmoraDevMode* output);

    // What the steps see.
    HWND Page() const;  // the current page
    velmora::SheetContext& Context() const { return *reinterpret_cast<velmora::SheetContext*>(info_.UserData); }

    // The page that the sheet opens with.
    UINT startPage = 0;
    // The pages of CPSFUNC_SET_RESULT and their results.
    std::vector<std::pair<LPARAM, LPARAM>> results;

  private:
    using Entry = LONG(WINAPI*)(PPROPSHEETUI_INFO, LPARAM);

    static LONG_PTR CALLBACK Callback(HANDLE host, UINT function, LPARAM first, LPARAM second);
    LONG Run(Entry entry, void* header);
    void Act();

    host::Machine* machine_;
    HANDLE printer_;
    WideText printerName_;
    PROPSHEETUI_INFO info_ = {};
    std::deque<std::function<void(HWND)>> steps_;
    std::vector<HPROPSHEETPAGE> handles_;
    HWND sheet_ = nullptr;
};

// The text of a window, and of a control.
WideText TextOf(HWND window);
WideText TextOf(HWND dialog, int control);

// A click on a button.
void Click(HWND dialog, int control);

// The items of a list box.
std::vector<std::string> ItemsOf(HWND dialog, int control);

// The dialog in front of all others of this thread.
HWND FrontDialog();

}  // namespace driver_test
