#include "tests/contract/sheet_test.h"

#include <utility>

#include "tests/contract/transcript.h"

namespace contract {

LONG SheetTest::ShowDeviceSheet(InstalledPrinter& printer, std::vector<Step> steps, size_t refusedPage) {
    DEVICEPROPERTYHEADER header = {};
    header.cbSize = sizeof(header);
    header.hPrinter = printer.Handle();
    header.pszPrinterName = printer.NameArgument();
    SheetHost host(printer.Driver().DrvDevicePropertySheets, &header);
    host.RefusePage(refusedPage);
    LONG result = 0;
    RunWithUser(*environment_, std::move(steps), [&] { result = host.Run(); });
    for (const std::string& call : host.Calls()) {
        Record("  " + call);
    }
    return result;
}

LONG SheetTest::ShowDocumentSheet(InstalledPrinter& printer, std::vector<Step> steps) {
    DevModeBuffer input = DefaultDevMode(printer, printer.Name());
    DevModeBuffer output;
    LONG result = 0;
    RunWithUser(*environment_, std::move(steps), [&] {
        result = DocumentPropertiesW(nullptr, printer.Handle(), printer.NameArgument(), output.Get(), input.Get(),
                                     DM_IN_BUFFER | DM_OUT_BUFFER | DM_PROMPT);
    });
    return result;
}

Step InSheet(int button) {
    return [button] { PressInSheet(button); };
}

}  // namespace contract
