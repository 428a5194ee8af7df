// The output options page through real windows of the layer.
#include <algorithm>
#include <iterator>

#include "driver/devmode/default_devmode.h"
#include "driver/ui/controls.h"
#include "driver/ui/output_page.h"
#include "driver/ui/output_rules.h"
#include "driver/ui/paper_choices.h"
#include "platform/user/controls/clipboard.h"
#include "tests/driver/changed_devmode.h"
#include "tests/driver/machine.h"
#include "tests/driver/sheet_host.h"
#include "tests/driver/sheet_package.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

constexpr int kFlagA = 9003, kSide = 9008, kFlagB = 9009, kText = 9010, kFlagC = 9015, kRestore = 9017;

// The boxes and radio buttons 9003 to 9015 as X or O, checked or not, and the other controls as E; small letters for
// disabled ones.
std::string StatesOf(HWND page) {
    std::string states;
    for (const int control : {9003, 9004, 9005, 9006, 9007, 9008, 9009, 9010, 9012, 9013, 9014, 9015}) {
        const bool hasMark = control != 9007 && control != kSide && control != kText;
        const char state = !hasMark ? 'E' : IsDlgButtonChecked(page, control) == BST_CHECKED ? 'X' : 'O';
        states += IsWindowEnabled(GetDlgItem(page, control)) ? state : static_cast<char>(state - 'A' + 'a');
    }
    return states;
}

void Select(HWND page, int control, uint32_t value) {
    EXPECT_GE(SelectComboByData(page, control, value), 0) << value;
    SendMessageW(page, WM_COMMAND, MAKEWPARAM(control, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(GetDlgItem(page, control)));
}

class OutputPageTest : public MachineTest {
  protected:
    void SetUp() override {
        Install(SheetPackage());
        host_ = std::make_unique<SheetHost>(&machine_, Printer());
        BuildDefaultDevMode(Printer(), kPrinterName, &input_);
    }
    void SetSecondTray(uint32_t state) { SetDeviceInfo(Printer(), {3, state, 0, 0}); }
    // A step that uses a page.
    void ThenUse(int slot, std::function<void(HWND page)> use) {
        host_->Then([=, this](HWND sheet) {
            const SheetContext& context = host_->Context();
            SendMessageW(sheet, PSM_SETCURSEL, 0, context.hostPages[slot]);
            UpdateWindow(context.dialogs[slot]);
            use(context.dialogs[slot]);
        });
    }
    void ThenPress(int button) {
        host_->Then([=](HWND sheet) { SendMessageW(sheet, PSM_PRESSBUTTON, static_cast<WPARAM>(button), 0); });
    }
    const VelmoraDevMode& Run() {
        EXPECT_EQ(host_->RunDocumentSheet(&input_.publicPart, &output_), 1);
        return output_;
    }
    bool IsChanged() const { return host_->Context().isChanged[kOutputSlot]; }

    std::unique_ptr<SheetHost> host_;
    VelmoraDevMode input_;
    VelmoraDevMode output_ = {};
};

TEST_F(OutputPageTest, ShowsTheDeviceMode) {
    const std::string second = "finishFlagA=1 finishChoice=1 finishSide=2 finishFlagB=1 finishFlags=1 finishFlagC=0";
    const struct {
        uint32_t secondTray;
        std::string settings;
        std::string states;
        LRESULT sides;
        uint32_t side;
    } cases[] = {
        {0, "", "OxooeeOeOOOX", 1, 1},
        {1, "finishChoice=2", "OooxeeOeOOOX", 2, 1},
        {1, second, "XOXOEEXEXOOO", 2, 2},
        {0, second, "XOXOEEXEXOOO", 1, 1},
        {UINT32_MAX, "finishFlagA=1 finishSide=2", "XXOOEEOeOOOX", 1, 1},
    };
    std::copy_n("Job-1", 6, input_.privatePart.outputText);
    const VelmoraDevMode input = input_;
    for (const auto& c : cases) {
        SetSecondTray(c.secondTray);
        input_ = With(input, c.settings);
        ThenUse(kOutputSlot, [&](HWND page) {
            EXPECT_EQ(StatesOf(page), c.states) << c.settings;
            EXPECT_EQ(ToText(TextOf(page, kText)), "Job-1");
            EXPECT_EQ(SendDlgItemMessageW(page, kSide, CB_GETCOUNT, 0, 0), c.sides);
            EXPECT_EQ(GetComboData(page, kSide), c.side);
            EXPECT_EQ(ValueOf(host_->Context().devMode->privatePart.finishSide), c.side);
            EXPECT_FALSE(IsChanged());
            SheetContext& context = host_->Context();
            context.replacedCursor = LoadCursorW(nullptr, IDC_ARROW);
            SetCursor(context.handCursor);
            SendMessageW(page, WM_MOUSEMOVE, 0, 0);
            EXPECT_EQ(GetCursor(), context.replacedCursor);
        });
        Run();
    }
}

TEST_F(OutputPageTest, WritesWhatIsClickedAtApply) {
    SetSecondTray(1);
    input_ = With(input_, "finishFlagA=1 finishFlagB=1 finishSide=2 optionFlags=0x210");
    ThenPress(PSBTN_OK);
    const VelmoraDevMode before = Run();
    const struct {
        std::vector<int> clicks;
        std::string states;
        std::string settings;
        size_t flag = 0;  // of finishFlags, from 1 on
    } cases[] = {
        {{}, "XXOOEEXEOOOX", ""},
        {{kFlagA}, "OxooeeXEOOOX", "finishFlagA=0"},
        {{kFlagB}, "XXOOEEOeOOOX", "finishFlagB=0"},
        {{9005}, "XOXOEEXEOOOX", "finishChoice=1"},
        {{9005, 9006}, "XOOXEEXEOOOX", "finishChoice=2"},
        {{9012}, "XXOOEEXEXOOX", "", 1},
        {{9013}, "XXOOEEXEOXOX", "", 2},
        {{9014}, "XXOOEEXEOOXX", "", 3},
        {{kFlagC}, "XXOOEEXEOOOO", "finishFlagC=0 optionFlags=0x10"},
        {{kFlagC, 9013, 9006, kRestore}, "OxooeeOeOOOX", "finishFlagA=0 finishFlagB=0 finishSide=1 "},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.states);
        ThenUse(kOutputSlot, [&](HWND page) {
            for (const int control : c.clicks) {
                Click(page, control);
            }
            EXPECT_EQ(StatesOf(page), c.states);
            EXPECT_EQ(IsChanged(), !c.clicks.empty());
            EXPECT_EQ(std::memcmp(host_->Context().devMode, &before, sizeof(before)), 0);
        });
        ThenPress(PSBTN_OK);
        VelmoraDevMode expected = With(before, c.settings);
        if (c.flag > 0) {
            expected.privatePart.finishFlags[c.flag - 1] = 1;
        }
        EXPECT_EQ(std::memcmp(&Run(), &expected, sizeof(expected)), 0);
        EXPECT_EQ(host_->results.size(), c.clicks.empty() ? 0u : 1u);
    }
}

TEST_F(OutputPageTest, IsChangedByOtherValuesAlone) {
    SetSecondTray(1);
    input_ = With(input_, "finishSide=2");
    std::copy_n("AB", 3, input_.privatePart.outputText);
    ThenUse(kOutputSlot, [&](HWND page) {
        Select(page, kSide, 2);
        SetDlgItemTextW(page, kText, TEXT("AB"));
        EXPECT_FALSE(IsChanged());
        SetDlgItemTextW(page, kText, TEXT("C"));
        EXPECT_TRUE(IsChanged());
        host_->Context().isChanged[kOutputSlot] = false;
        Select(page, kSide, 1);
        EXPECT_TRUE(IsChanged());
    });
    ThenPress(PSBTN_OK);
    const PrivateDevMode& own = Run().privatePart;
    EXPECT_EQ(ValueOf(own.finishSide), 1);
    EXPECT_EQ(std::string(own.outputText, 3), std::string("C\0\0", 3));
}

TEST_F(OutputPageTest, CustomSizesAreNotFinished) {
    input_ = With(input_, "finishFlagA=1");
    ThenUse(kOutputSlot, [](HWND page) { EXPECT_EQ(StatesOf(page), "XXOOEEOeOOOX"); });
    ThenUse(kPaperSlot, [](HWND page) { Select(page, kPaperControl, kCustomSizePaper); });
    host_->Then([](HWND) { Click(FrontDialog(), 5317); });
    ThenUse(kOutputSlot, [&](HWND page) {
        EXPECT_EQ(StatesOf(page), "oxooeeOeOOOX");
        EXPECT_FALSE(IsChanged());
        Click(page, 9012);
    });
    ThenUse(kPaperSlot, [](HWND page) { Select(page, kPaperControl, DMPAPER_A4); });
    ThenUse(kOutputSlot, [](HWND page) { EXPECT_EQ(StatesOf(page), "OxooeeOeXOOX"); });
    ThenPress(PSBTN_OK);
    EXPECT_EQ(ValueOf(Run().privatePart.finishFlagA), 0);
}

TEST_F(OutputPageTest, TextHasCertainCharactersThatFit) {
    const auto type = [&](const std::u16string& text) {
        ThenUse(kOutputSlot, [=](HWND page) {
            if (IsDlgButtonChecked(page, kFlagB) != BST_CHECKED) {
                Click(page, kFlagB);
            }
            for (const WCHAR c : text) {
                SendDlgItemMessageW(page, kText, WM_CHAR, c, 1);
            }
        });
    };
    type(u"a\u00e9bcdefghij\b0123456789");
    ThenUse(kOutputSlot, [](HWND page) {
        EXPECT_EQ(ToText(TextOf(page, kText)), "abcdefghi0123456");
        host::SetClipboardText(u"\u00e9X!yZ");
        SendDlgItemMessageW(page, kText, EM_SETSEL, 1, 3);
        SendDlgItemMessageW(page, kText, WM_PASTE, 0, 0);
        EXPECT_EQ(ToText(TextOf(page, kText)), "aXydefghi0123456");
        SendDlgItemMessageW(page, kText, EM_SETSEL, 1, 3);
        SendDlgItemMessageW(page, kText, WM_CHAR, 0x16, 1);
        EXPECT_EQ(ToText(TextOf(page, kText)), "aXydefghi0123456");
    });
    ThenPress(PSBTN_APPLYNOW);
    ThenUse(kOutputSlot, [](HWND page) {
        Click(page, kRestore);
        EXPECT_EQ(ToText(TextOf(page, kText)), "");
    });
    EXPECT_STREQ(Run().privatePart.outputText, "aXydefghi0123456");

    // Two bytes a character: no half of one.
    machine_.SetAnsiCodePage(932);
    ThenUse(kOutputSlot,
            [](HWND page) { SetDlgItemTextW(page, kText, u"a\u30a2\u30a2\u30a2\u30a2\u30a2\u30a2\u30a2\u30a2"); });
    ThenPress(PSBTN_OK);
    EXPECT_STREQ(Run().privatePart.outputText, "a\x83\x41\x83\x41\x83\x41\x83\x41\x83\x41\x83\x41\x83\x41");
}

}  // namespace
}  // namespace velmora
