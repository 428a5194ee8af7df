// The common property-sheet host, as the published interface describes it (compstui.h), over PropertySheetW.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "tests/contract/driver_exports.h"

namespace contract {

class SheetHost {
  public:
    using SheetFunction = decltype(&::DrvDevicePropertySheets);

    // `header` is what `function` gets as PROPSHEETUI_INFO.lParamInit; both outlive the host.
    SheetHost(SheetFunction function, void* header, HWND owner = nullptr);
    SheetHost(const SheetHost&) = delete;
    SheetHost& operator=(const SheetHost&) = delete;

    // The nth page that the driver adds, counted from 1, is refused.
    void RefusePage(size_t nth) { refusedPage_ = nth; }

    // Asks for the pages, shows them until the user closes the sheet, and has the driver leave. CPSUI_OK or
    // CPSUI_CANCEL; negative where the driver adds no page or the sheet can't be shown.
    LONG Run();

    // What went over between driver and host, a line each, in order.
    const std::vector<std::string>& Calls() const { return calls_; }

  private:
    static LONG_PTR CALLBACK Call(HANDLE host, UINT function, LPARAM first, LPARAM second);
    LONG_PTR AddPage(const PROPSHEETPAGEW& page);
    LONG_PTR SetResult(LPARAM page, LPARAM result);
    LONG Tell(WORD reason, LPARAM parameter);

    const SheetFunction function_;
    const HWND owner_;
    PROPSHEETUI_INFO info_ = {};
    std::vector<HPROPSHEETPAGE> pages_;
    size_t refusedPage_ = 0;
    LONG result_ = CPSUI_CANCEL;
    std::vector<std::string> calls_;
};

}  // namespace contract
