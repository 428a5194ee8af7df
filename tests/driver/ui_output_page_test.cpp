// What only the driver's own process sees of the output options page, through real windows of the layer.
#include <algorithm>

#include "driver/ui/output_page.h"
#include "driver/ui/output_rules.h"
#include "platform/user/controls/clipboard.h"
#include "tests/driver/changed_devmode.h"
#include "tests/driver/document_sheet.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

constexpr int kSide = 9008, kFlagB = 9009, kText = 9010, kRestore = 9017;

class OutputPageTest : public DocumentSheetTest {
  protected:
    void SetUp() override {
        DocumentSheetTest::SetUp();
        SetDeviceInfo(Printer(), {3, 1, 0, 0});
        input_ = With(input_, "finishSide=2");
        std::copy_n("AB", 3, input_.privatePart.outputText);
    }
    bool IsChanged() const { return Context().isChanged[kOutputSlot]; }
};

TEST_F(OutputPageTest, IsChangedByOtherValuesAloneAndWritesAtApply) {
    ThenUse(kOutputSlot, [&](HWND page) {
        Choose(page, kSide, 2);
        SetDlgItemTextW(page, kText, TEXT("AB"));
        EXPECT_FALSE(IsChanged());
        SetDlgItemTextW(page, kText, TEXT("C"));
        EXPECT_TRUE(IsChanged());
        Context().isChanged[kOutputSlot] = false;
        Choose(page, kSide, 1);
        EXPECT_TRUE(IsChanged());
    });
    ThenPress(PSBTN_OK);
    EXPECT_EQ(std::string(Run().outputText, 3), std::string("C\0\0", 3));
}

TEST_F(OutputPageTest, TextHasCertainCharactersThatFit) {
    ThenUse(kOutputSlot, [](HWND page) {
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
    ThenUse(kOutputSlot, [](HWND page) {
        Click(page, kRestore);
        EXPECT_EQ(ToText(TextOf(page, kText)), "");
    });
    EXPECT_STREQ(Run().outputText, "aXydefghi0123456");

    // Two bytes a character: no half of one.
    machine_.SetAnsiCodePage(932);
    ThenUse(kOutputSlot,
            [](HWND page) { SetDlgItemTextW(page, kText, u"a\u30a2\u30a2\u30a2\u30a2\u30a2\u30a2\u30a2\u30a2"); });
    ThenPress(PSBTN_OK);
    EXPECT_STREQ(Run().outputText, "a\x83\x41\x83\x41\x83\x41\x83\x41\x83\x41\x83\x41\x83\x41");
}

TEST_F(OutputPageTest, LeavesLinksTheirCursor) {
    ThenUse(kOutputSlot, [&](HWND page) {
        SheetContext& context = Context();
        context.replacedCursor = LoadCursorW(nullptr, IDC_ARROW);
        SetCursor(context.handCursor);
        SendMessageW(page, WM_MOUSEMOVE, 0, 0);
        EXPECT_EQ(GetCursor(), context.replacedCursor);
    });
    Run();
}

}  // namespace
}  // namespace velmora
