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

}  // namespace
}  // namespace contract
