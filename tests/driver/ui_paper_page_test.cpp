// The Paper page and its dialogs through real windows of the layer: what they show, what they write.
#include <commctrl.h>

#include <algorithm>

#include "driver/base/text.h"
#include "driver/ui/paper_choices.h"
#include "driver/ui/paper_preview.h"
#include "tests/driver/changed_devmode.h"
#include "tests/driver/document_sheet.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

// Controls that the rules don't name.
constexpr int kCopiesSpin = 5018;

class PaperPageTest : public DocumentSheetTest {
  protected:
    void SetUp() override {
        DocumentSheetTest::SetUp();
        SetDeviceInfo(Printer(), {3, 0, 1, 0});
    }
    // What the user does on the page, then OK. The steps in between are those of dialogs that the first one
    // opens.
    void Use(std::function<void(HWND page)> use, std::vector<std::function<void(HWND)>> inner = {}) {
        host_->Then([=, this](HWND) { use(host_->Page()); });
        for (const auto& step : inner) {
            host_->Then([=](HWND) { step(FrontDialog()); });
        }
        ThenPress(PSBTN_OK);
        Run();
        host_->ForgetSteps();
    }
    // Runs it on the input with other numbers in some fields.
    void Edit(const std::string& settings, std::function<void(HWND page)> use,
              std::vector<std::function<void(HWND)>> inner = {}) {
        BuildDefaultDevMode(Printer(), kPrinterName, &input_);
        input_ = With(input_, settings);
        Use(std::move(use), std::move(inner));
    }
};

std::string Shown(HWND dialog, int control) {
    return ToText(TextOf(dialog, control));
}

// Gives the page's update region to the test instead of painting it.
RECT g_updated;
LRESULT CALLBACK TakeUpdate(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_PAINT) {
        PAINTSTRUCT paint;
        BeginPaint(page, &paint);
        g_updated = paint.rcPaint;
        EndPaint(page, &paint);
        return 0;
    }
    return DefDlgProcW(page, message, wParam, lParam);
}

TEST_F(PaperPageTest, RepaintsPicturesThatChange) {
    const struct {
        const char* settings;
        int control;
        uint32_t value;
        int picture;
        bool isRepainted;
    } cases[] = {
        {"uiPageLayout=2 dmCollate=1", kLayoutControl, kPoster2x2, kCollatePictureControl, true},
        {"uiPageLayout=2", kLayoutControl, kPoster2x2, kCollatePictureControl, false},
        {"dmPaperSize=13 uiDuplex=1", kMediumControl, 2, kPreviewControl, true},
        {"dmPaperSize=13", kMediumControl, 2, kPreviewControl, false},
    };
    for (const auto& c : cases) {
        Edit(c.settings, [&](HWND page) {
            UpdateWindow(page);
            const LONG_PTR painter = SetWindowLongPtrW(page, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(TakeUpdate));
            g_updated = {};
            Choose(page, c.control, c.value);
            UpdateWindow(page);
            SetWindowLongPtrW(page, GWLP_WNDPROC, painter);
            const RECT picture = ControlRect(page, c.picture);
            const POINT middle = {(picture.left + picture.right) / 2, (picture.top + picture.bottom) / 2};
            EXPECT_EQ(PtInRect(&g_updated, middle) != FALSE, c.isRepainted) << c.settings;
        });
    }
}

// Codes and labels end with a whole character.
TEST_F(PaperPageTest, CutsNoCharacters) {
    machine_.SetAnsiCodePage(932);
    char code[5];
    StoreAnsiText(code, sizeof(code), "abc\x83\x41");
    EXPECT_STREQ(code, "abc");
    StoreAnsiText(code, sizeof(code), "\x83\x41\x83\x42\x83");
    EXPECT_STREQ(code, "\x83\x41\x83\x42");
}

TEST_F(PaperPageTest, StepsNumbers) {
    std::copy_n("A-1", 4, input_.privatePart.uiCode);
    Use([&](HWND page) {
        EXPECT_EQ(Shown(page, kCodeControl), "A-1");
        const auto press = [&](WPARAM key) { SendDlgItemMessageW(page, kCopiesControl, WM_KEYDOWN, key, 1); };
        SetDlgItemTextW(page, kCopiesControl, TEXT("7"));
        SetDlgItemTextW(page, kCopiesControl, TEXT(""));
        press(VK_UP);
        EXPECT_EQ(Shown(page, kCopiesControl), "8") << "a step from the last number";
        SendDlgItemMessageW(page, kCopiesControl, WM_MOUSEWHEEL, MAKEWPARAM(0, 3 * WHEEL_DELTA), 0);
        EXPECT_EQ(Shown(page, kCopiesControl), "9");
        press(VK_DOWN);
        EXPECT_EQ(SendDlgItemMessageW(page, kCopiesSpin, UDM_GETPOS32, 0, 0), 8);
        // What the spin control reads is its position, what it can't read stays in the edit.
        for (const WCHAR* const text : {TEXT("1,2"), TEXT("7 "), TEXT("08")}) {
            SetDlgItemTextW(page, kCopiesControl, text);
            EXPECT_EQ(TextOf(page, kCopiesControl), text);
        }
        // A filtered edit that outlives its sheet's context.
        const LONG_PTR context = SetWindowLongPtrW(page, DWLP_USER, 0);
        SendDlgItemMessageW(page, kCopiesControl, WM_CHAR, '7', 1);
        press(VK_UP);
        SetWindowLongPtrW(page, DWLP_USER, context);
        EXPECT_EQ(Shown(page, kCopiesControl), "08");
    });
    EXPECT_EQ(ValueOf(output_.publicPart.dmCopies), 8);
}

TEST_F(PaperPageTest, StepsACustomSize) {
    constexpr int kWidth = 5302;
    constexpr int kWidthSpin = 5303;
    constexpr int kInchRadio = 5313;
    const auto step = [](HWND dialog, int delta) {
        NMUPDOWN change = {{GetDlgItem(dialog, kWidthSpin), kWidthSpin, UDN_DELTAPOS}, 1, delta};
        SendMessageW(dialog, WM_NOTIFY, kWidthSpin, reinterpret_cast<LPARAM>(&change));
    };
    Edit("dmPaperSize=9 uiDuplex=1", [](HWND page) { Choose(page, kPaperControl, kCustomSizePaper); },
         {[&](HWND dialog) {
             step(dialog, 1);
             EXPECT_EQ(Shown(dialog, kWidth), "210.1");
             Click(dialog, kInchRadio);
             Click(dialog, kInchRadio);
             SetDlgItemTextW(dialog, kWidth, TEXT("6.91"));
             step(dialog, -1);
             EXPECT_EQ(Shown(dialog, kWidth), "6.93") << "the least width, rounded up";
             Click(dialog, 5317);
         }});
}

TEST(PaperPreview, IsNamedByTheSheet) {
    const struct {
        PreviewSheet sheet;
        std::u16string_view name;
        std::u16string_view edge;
    } cases[] = {
        {{kOnePage, 0, 0, false, false, false}, u"IDB_PORT_A", u"IDB_PORT_LEFT"},
        {{kOnePage, 0, 1, true, false, false}, u"IDB_LAND_A", u"IDB_LAND_BOTTOM"},
        {{kOnePage, 0, 2, false, true, false}, u"IDB_PORT_DUP_A", u"IDB_PORT_DUP_BOTTOM"},
        {{kOnePage, 0, 3, true, true, true}, u"IDB_LAND_DUP_RA", u"IDB_LAND_DUP_RIGHT"},
        {{kTwoPages, 2, 0, false, false, false}, u"IDB_PORT_AB", u"IDB_LAND_TOP"},
        {{kTwoPages, 3, 3, true, false, true}, u"IDB_LAND_RBA", u"IDB_PORT_TOP"},
        {{kFourPages, 3, 1, false, true, false}, u"IDB_PORT_DUP_CADB", u"IDB_PORT_DUP_RIGHT"},
        {{kPoster4x4, 0, 0, true, false, false}, u"IDB_LAND_P4X4", u""},
    };
    for (const auto& c : cases) {
        const PreviewNames names = NamePreview(c.sheet);
        EXPECT_EQ(ToText(reinterpret_cast<const char16_t*>(names.sheet)), ToText(c.name));
        EXPECT_EQ(ToText(reinterpret_cast<const char16_t*>(names.edge)), ToText(c.edge));
    }
    // Each layout keeps its order while another one's is in the device mode.
    PreviewOrders orders = {};
    EXPECT_EQ(TakePreviewOrder(kFourPages, 7, &orders), 2u);
    EXPECT_EQ(TakePreviewOrder(kTwoPages, 2, &orders), 1u);
    EXPECT_EQ(TakePreviewOrder(kFourPages, 1, &orders), 2u);
    EXPECT_EQ(TakePreviewOrder(kTwoPages, 9, &orders), 0u);
}

}  // namespace
}  // namespace velmora
