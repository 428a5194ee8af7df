// What tests of property sheets share.
#pragma once

#include <string>
#include <vector>

#include "tests/contract/contract_test.h"
#include "tests/contract/sheet_host.h"
#include "tests/contract/user.h"

namespace contract {

// The languages that there are modules for.
struct Language {
    LANGID id;
    const char* name;
};
inline constexpr Language kLanguages[] = {{0x0409, "EN"}, {0x0407, "DE"}, {0x0411, "JA"}};

class SheetTest : public ContractTest {
  protected:
    // Shows the printer's device sheet to a user who takes the steps; notes what went over between driver and host in
    // the transcript. The host's result.
    LONG ShowDeviceSheet(InstalledPrinter& printer, std::vector<Step> steps, size_t refusedPage = 0);

    // The document sheet as an application shows it: DocumentPropertiesW with DM_PROMPT, over the printer's default.
    // What that returns.
    LONG ShowDocumentSheet(InstalledPrinter& printer, std::vector<Step> steps);
};

// A step that presses a button of a sheet: PSBTN_ (prsht.h).
Step InSheet(int button);

}  // namespace contract
