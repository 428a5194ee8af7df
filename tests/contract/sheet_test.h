// What tests of property sheets share.
#pragma once

#include <functional>
#include <optional>
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

// What a device has: the words of the printer data "DeviceInfo".
struct Device {
    DWORD installedOptions;
    DWORD secondTray;
    DWORD duplexUnit;
    DWORD memoryKey;
};
inline constexpr Device kBare = {3, 0, 0, 5};
inline constexpr Device kWithDuplex = {3, 0, 1, 5};
inline constexpr Device kWhole = {7, 1, 1, 5};
void Install(InstalledPrinter& printer, const Device& device);

inline constexpr const char* kColorModel = "VELMORA-C3200.XPI";

class SheetTest : public ContractTest {
  protected:
    // Calls `show` once for each language, which is the user's meanwhile.
    void InEachLanguage(const std::function<void()>& show);
    // A step that takes a picture of the front dialog, NAME-LANGUAGE.png, and steps that describe it before.
    Step Picture(const std::string& name);
    std::vector<Step> Look(const std::string& name, const std::vector<int>& hostsOwn = {});

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

    // Checks a run of the document sheet over a device mode: OK follows the steps, and what the application gets
    // differs from the device mode by the Changes `written`.
    void CheckSheet(InstalledPrinter& printer, const char* title, const velmora::VelmoraDevMode& devMode,
                    std::vector<Step> steps, const std::string& written);

    Language language_ = kLanguages[0];  // the user's
};

// The document sheet of a printer for colour.
class DocumentSheetTest : public SheetTest {
  protected:
    void InstallDevice(const Device& device);
    // CheckSheet over AppliedDevMode with other settings.
    void Check(const char* title, const char* settings, std::vector<Step> steps, const std::string& written);

    InstalledPrinter printer_{*environment_, PackageOf(kColorModel)};

  private:
    std::optional<velmora::VelmoraDevMode> applied_;  // AppliedDevMode with this device
};

// Steps and those after them.
std::vector<Step> operator+(std::vector<Step> steps, const std::vector<Step>& more);

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
