// The document sheet as an application shows it.
#include <string>
#include <vector>

#include "tests/contract/sheet_test.h"
#include "tests/contract/transcript.h"

namespace contract {
namespace {

constexpr int kLayout = 5033;
constexpr int kDetails = 5034;
constexpr int kPaper = 5006;
constexpr int kCustomSize = 13;  // item, behind all papers, of which there is one less in Japanese
constexpr int kCustomSizeOk = 5317;

constexpr int kColorPage = 1;  // of the sheet
constexpr int kManualColor = 6012;
constexpr int kPresets = 6014;
constexpr int kPresetName = 6306;
constexpr int kMatchedColor = 6016;
constexpr int kIntent = 6017;
constexpr int kAdjust = 6026;
constexpr int kTonersPage = 1;  // of the sheet of adjustments
constexpr int kGamma = 6204;

// The user's choice of an item, which its page is told of as by the keyboard.
Step Choose(int comboBox, int item) {
    return [=] {
        SendMessageW(Control(comboBox), CB_SETCURSEL, static_cast<WPARAM>(item), 0);
        SendMessageW(FrontPage(), WM_COMMAND, MAKEWPARAM(comboBox, CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(Control(comboBox)));
    };
}

Step Press(int button) {
    return [button] { PressButton(button); };
}

// Another page of the sheet in front.
Step GoTo(int page) {
    return [page] { SendMessageW(FrontDialog(), PSM_SETCURSEL, static_cast<WPARAM>(page), 0); };
}

// Pastes a part of a text behind the whole, which is refused where that becomes too long, and in its own place.
void CopyInPresetName() {
    const HWND edit = Control(kPresetName);
    SetWindowTextW(edit, TEXT("ABCDEF"));
    SendMessageW(edit, EM_SETSEL, 1, 6);
    SendMessageW(edit, WM_COPY, 0, 0);
    SendMessageW(edit, EM_SETSEL, 6, 6);
    SendMessageW(edit, WM_PASTE, 0, 0);
    Record("  pasted behind: " + Printable(TextOf(edit)));
    SendMessageW(edit, EM_SETSEL, 0, 3);
    SendMessageW(edit, WM_PASTE, 0, 0);
    Record("  pasted over: " + Printable(TextOf(edit)));
}

class DocumentSheet : public SheetTest {};

TEST_F(DocumentSheet, PaperInEveryLanguage) {
    InstalledPrinter printer(*environment_, PackageOf("VELMORA-C3200.XPI"));
    for (const Language& language : kLanguages) {
        SCOPED_TRACE(language.name);
        Record(language.name);
        environment_->SetLanguage(language.id);
        const std::string suffix = std::string("-") + language.name;
        const std::vector<Step> steps = {
            Describe("page"),
            TakePicture(*environment_, "paper" + suffix),
            Choose(kLayout, 2),
            Press(kDetails),
            Describe("details"),
            TakePicture(*environment_, "layout" + suffix),
            Press(IDOK),
            Choose(kPaper, language.id == 0x0411 ? kCustomSize - 1 : kCustomSize),
            Describe("custom size"),
            TakePicture(*environment_, "custom-size" + suffix),
            Press(kCustomSizeOk),
            Describe("page"),
            InSheet(PSBTN_OK),
        };
        EXPECT_EQ(ShowDocumentSheet(printer, steps), IDOK);
    }
}

TEST_F(DocumentSheet, ColorInEveryLanguage) {
    InstalledPrinter printer(*environment_, PackageOf("VELMORA-C3200.XPI"));
    for (const Language& language : kLanguages) {
        SCOPED_TRACE(language.name);
        Record(language.name);
        environment_->SetLanguage(language.id);
        const std::string suffix = std::string("-") + language.name;
        const std::vector<Step> steps = {
            GoTo(kColorPage),
            TakePicture(*environment_, "color" + suffix),
            Press(kManualColor),
            Describe("page"),
            Press(kAdjust),
            Describe("image"),
            TakePicture(*environment_, "color-image" + suffix),
            GoTo(kTonersPage),
            [] { SetFocus(Control(kGamma)); },
            Describe("toners"),
            TakePicture(*environment_, "color-toners" + suffix),
            InSheet(PSBTN_OK),
            Press(kPresets),
            CopyInPresetName,
            Describe("presets"),
            TakePicture(*environment_, "color-presets" + suffix),
            Press(IDCANCEL),
            Press(kMatchedColor),
            Press(kIntent),
            Describe("intent"),
            Press(IDOK),
            InSheet(PSBTN_OK),
        };
        EXPECT_EQ(ShowDocumentSheet(printer, steps), IDOK);
    }
}

}  // namespace
}  // namespace contract
