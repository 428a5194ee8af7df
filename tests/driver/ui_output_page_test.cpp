// What only the driver's own process sees of the output options page, through real windows of the layer.
#include <algorithm>
#include <cstring>

#include "driver/devmode/default_devmode.h"
#include "driver/ui/controls.h"
#include "driver/ui/output_page.h"
#include "driver/ui/output_rules.h"
#include "platform/user/controls/clipboard.h"
#include "tests/driver/changed_devmode.h"
#include "tests/driver/machine.h"
#include "tests/driver/sheet_host.h"
#include "tests/driver/sheet_package.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

constexpr int kSide = 9008, kFlagB = 9009, kText = 9010, kRestore = 9017;

void Select(HWND page, int control, uint32_t value) {
    EXPECT_GE(SelectComboByData(page, control, value), 0) << value;
    SendMessageW(page, WM_COMMAND, MAKEWPARAM(control, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(GetDlgItem(page, control)));
}

class OutputPageTest : public MachineTest {
  protected:
    void SetUp() override {
        Install(SheetPackage());
        SetDeviceInfo(Printer(), {3, 1, 0, 0});
        host_ = std::make_unique<SheetHost>(&machine_, Printer());
        BuildDefaultDevMode(Printer(), kPrinterName, &input_);
        input_ = With(input_, "finishSide=2");
        std::copy_n("AB", 3, input_.privatePart.outputText);
    }
    // A step that uses the page.
    void ThenUse(std::function<void(HWND page)> use) {
        host_->Then([=, this](HWND sheet) {
            SendMessageW(sheet, PSM_SETCURSEL, 0, host_->Context().hostPages[kOutputSlot]);
            use(host_->Context().dialogs[kOutputSlot]);
        });
    }
    void ThenPress(int button) {
        host_->Then([=](HWND sheet) { SendMessageW(sheet, PSM_PRESSBUTTON, static_cast<WPARAM>(button), 0); });
    }
    const PrivateDevMode& Run() {
        EXPECT_EQ(host_->RunDocumentSheet(&input_.publicPart, &output_), 1);
        return output_.privatePart;
    }
    bool IsChanged() const { return host_->Context().isChanged[kOutputSlot]; }

    std::unique_ptr<SheetHost> host_;
    VelmoraDevMode input_;
    VelmoraDevMode output_ = {};
};

TEST_F(OutputPageTest, IsChangedByOtherValuesAloneAndWritesAtApply) {
    ThenUse([&](HWND page) {
        const VelmoraDevMode before = *host_->Context().devMode;
        Select(page, kSide, 2);
        SetDlgItemTextW(page, kText, TEXT("AB"));
        EXPECT_FALSE(IsChanged());
        SetDlgItemTextW(page, kText, TEXT("C"));
        EXPECT_TRUE(IsChanged());
        host_->Context().isChanged[kOutputSlot] = false;
        Select(page, kSide, 1);
        EXPECT_TRUE(IsChanged());
        EXPECT_EQ(std::memcmp(host_->Context().devMode, &before, sizeof(before)), 0);
    });
    ThenPress(PSBTN_OK);
    EXPECT_EQ(ValueOf(Run().finishSide), 1);
    EXPECT_EQ(std::string(output_.privatePart.outputText, 3), std::string("C\0\0", 3));
    EXPECT_EQ(host_->results.size(), 1u);
}

TEST_F(OutputPageTest, TextHasCertainCharactersThatFit) {
    ThenUse([](HWND page) {
        EXPECT_EQ(ToText(TextOf(page, kText)), "AB");
        Click(page, kFlagB);
        for (const WCHAR c : {u'x', u'\u00e9', u'y', u'\b'}) {
            SendDlgItemMessageW(page, kText, WM_CHAR, c, 1);
        }
        EXPECT_EQ(ToText(TextOf(page, kText)), "xAB");
        SetDlgItemTextW(page, kText, TEXT("abcdefghi0123456"));
        for (const bool isKey : {false, true}) {
            host::SetClipboardText(u"\u00e9X!yZ");
            SendDlgItemMessageW(page, kText, EM_SETSEL, 1, 3);
            SendDlgItemMessageW(page, kText, isKey ? WM_CHAR : WM_PASTE, isKey ? 0x16 : 0, isKey ? 1 : 0);
            EXPECT_EQ(ToText(TextOf(page, kText)), "aXydefghi0123456");
        }
    });
    ThenPress(PSBTN_APPLYNOW);
    ThenUse([](HWND page) {
        Click(page, kRestore);
        EXPECT_EQ(ToText(TextOf(page, kText)), "");
    });
    EXPECT_STREQ(Run().outputText, "aXydefghi0123456");

    // Two bytes a character: no half of one.
    machine_.SetAnsiCodePage(932);
    ThenUse([](HWND page) { SetDlgItemTextW(page, kText, u"a\u30a2\u30a2\u30a2\u30a2\u30a2\u30a2\u30a2\u30a2"); });
    ThenPress(PSBTN_OK);
    EXPECT_STREQ(Run().outputText, "a\x83\x41\x83\x41\x83\x41\x83\x41\x83\x41\x83\x41\x83\x41");
}

TEST_F(OutputPageTest, LeavesLinksTheirCursor) {
    ThenUse([&](HWND page) {
        SheetContext& context = host_->Context();
        context.replacedCursor = LoadCursorW(nullptr, IDC_ARROW);
        SetCursor(context.handCursor);
        SendMessageW(page, WM_MOUSEMOVE, 0, 0);
        EXPECT_EQ(GetCursor(), context.replacedCursor);
    });
    Run();
}

}  // namespace
}  // namespace velmora
