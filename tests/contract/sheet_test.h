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

    // The document sheet as an application shows it: DocumentPropertiesW with DM_PROMPT, over a device mode. What that
    // returns; `output` takes the device mode that the application gets.
    LONG ShowDocumentSheet(InstalledPrinter& printer, std::vector<Step> steps, const velmora::VelmoraDevMode& input,
                           DevModeBuffer* output);
    // The same over the printer's default, of which nothing is kept.
    LONG ShowDocumentSheet(InstalledPrinter& printer, std::vector<Step> steps);

    // What an application gets from pages that were changed and changed back: what each application of them writes is
    // in it.
    velmora::VelmoraDevMode AppliedDevMode(InstalledPrinter& printer);

    // A run of the sheet: what its user does and sees, and what the application gets.
    struct DocumentCase {
        const char* title;
        const char* settings;     // of the device mode that the sheet opens with, over AppliedDevMode
        std::vector<Step> steps;  // OK follows
        std::string written;      // the Changes that the application gets
    };
    void RunCases(InstalledPrinter& printer, const std::vector<DocumentCase>& cases);
    // `base` in place of AppliedDevMode.
    void RunCase(InstalledPrinter& printer, const velmora::VelmoraDevMode& base, const DocumentCase& documentCase);
};

// The fields of a device mode that differ from before, in their order: "dmCopies=2 colorAdjust[1]=10 uiCode="7"".
// Of a rendered watermark's path only the extension stands, "*.WM".
std::string Changes(const velmora::VelmoraDevMode& before, const velmora::VelmoraDevMode& after);

// Steps. Controls are those of the front page.

// Presses a button of a sheet: PSBTN_ (prsht.h).
Step InSheet(int button);
// Turns to a page of a sheet, counted from 0, and to its first control.
inline constexpr int kPaperTab = 0;  // of document sheets
inline constexpr int kColorTab = 1;
inline constexpr int kWatermarkTab = 2;
inline constexpr int kOutputTab = 3;
inline constexpr int kInformationTab = 4;
Step TurnTo(int page);
Step Press(int button);
// Chooses an item of a combo box as the keyboard does, so that its page is told: the item that has a value, or one by
// its place from 0.
Step Choose(int comboBox, int value);
Step ChooseItem(int comboBox, int item);
// Types characters in place of the text of an edit or editable combo box, and stays in it.
Step Type(int edit, const WideText& text);
// Moves the focus on.
Step Leave();

// Checks the state of a control, and notes it in the transcript: "hidden"; "off" where it can't be used and "on"
// otherwise; after that "checked" or "unchecked", a combo box's selected value, a list's "item 0 of 4", a spin
// control's "25..400 at 100", and an edit's or label's text.
Step See(int control, const std::string& expected);
// Checks the values that a combo box offers, "263 257", and notes them in the transcript.
Step SeeOffered(int comboBox, const std::string& expected);

}  // namespace contract
