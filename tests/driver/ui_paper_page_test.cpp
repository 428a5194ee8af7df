// The Paper page and its dialogs through real windows of the layer: what they show, what they write.
#include <commctrl.h>

#include <algorithm>

#include "driver/base/text.h"
#include "driver/devmode/default_devmode.h"
#include "driver/ui/controls.h"
#include "driver/ui/paper_choices.h"
#include "driver/ui/paper_preview.h"
#include "tests/driver/changed_devmode.h"
#include "tests/driver/machine.h"
#include "tests/driver/sheet_host.h"
#include "tests/driver/sheet_package.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

// Controls that the rules don't name.
constexpr int kCopiesSpin = 5018;
constexpr int kZoomSpin = 5023;
constexpr int kDetails = 5034;

class PaperPageTest : public MachineTest {
  protected:
    void SetUp() override {
        Install(SheetPackage());
        SetInstalled(0, 1);
        host_ = std::make_unique<SheetHost>(&machine_, Printer());
        BuildDefaultDevMode(Printer(), kPrinterName, &input_);
        open_ = host::StillOpen();
    }
    void SetInstalled(uint32_t secondTray, uint32_t optionFlags) {
        SetDeviceInfo(Printer(), {3, secondTray, optionFlags, 0});
    }
    // What the user does on the page, then OK or Cancel. The steps in between are those of dialogs that the first one
    // opens.
    void Run(std::function<void(HWND page)> use, int button = PSBTN_OK,
             std::vector<std::function<void(HWND)>> inner = {}) {
        host_->Then([=, this](HWND) { use(host_->Page()); });
        for (const auto& step : inner) {
            host_->Then([=](HWND) { step(FrontDialog()); });
        }
        host_->Then([=](HWND sheet) { SendMessageW(sheet, PSM_PRESSBUTTON, static_cast<WPARAM>(button), 0); });
        EXPECT_EQ(host_->RunDocumentSheet(&input_.publicPart, &output_), 1);
        host_->ForgetSteps();
    }
    // Runs it on the input with other numbers in some fields; gives what comes out.
    const VelmoraDevMode& Edit(const std::string& settings, std::function<void(HWND page)> use,
                               std::vector<std::function<void(HWND)>> inner = {}) {
        BuildDefaultDevMode(Printer(), kPrinterName, &input_);
        input_ = With(input_, settings);
        Run(std::move(use), PSBTN_OK, std::move(inner));
        return output_;
    }

    VelmoraDevMode input_;
    VelmoraDevMode output_ = {};
    std::unique_ptr<SheetHost> host_;
    Texts open_;
};

// The user's choice of an item of a combo box, which the page is told of as by the keyboard.
void Choose(HWND page, int control, uint32_t value) {
    EXPECT_GE(SelectComboByData(page, control, value), 0) << control << " has no " << value;
    SendMessageW(page, WM_COMMAND, MAKEWPARAM(control, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(GetDlgItem(page, control)));
}

void Type(HWND dialog, int control, const WCHAR* text) {
    SetFocus(GetDlgItem(dialog, control));
    SendDlgItemMessageW(dialog, control, EM_SETSEL, 0, -1);
    for (; *text != 0; ++text) {
        SendDlgItemMessageW(dialog, control, WM_CHAR, *text, 1);
    }
}

void Leave(HWND dialog, int control) {
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(control, EN_KILLFOCUS),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, control)));
}

std::string Shown(HWND dialog, int control) {
    return ToText(TextOf(dialog, control));
}

bool IsBoxChecked(HWND dialog, int control) {
    return IsDlgButtonChecked(dialog, control) == BST_CHECKED;
}

bool IsOn(HWND dialog, int control) {
    return IsWindowEnabled(GetDlgItem(dialog, control)) != FALSE;
}

std::vector<uint32_t> ValuesOf(HWND dialog, int control) {
    std::vector<uint32_t> values;
    const LRESULT count = SendDlgItemMessageW(dialog, control, CB_GETCOUNT, 0, 0);
    for (WPARAM i = 0; i < static_cast<WPARAM>(count); ++i) {
        values.push_back(static_cast<uint32_t>(SendDlgItemMessageW(dialog, control, CB_GETITEMDATA, i, 0)));
    }
    return values;
}

TEST_F(PaperPageTest, ShowsTheDeviceMode) {
    SetInstalled(1, 1);
    std::copy_n("A-1", 4, input_.privatePart.uiCode);
    input_ = With(input_,
                  "dmPaperSize=258 customWidth=15000 customLength=29700 customUnit=0 dmCopies=12 "
                  "dmCollate=1 uiFlagA=1 uiRotate180=1 dmOrientation=2 colorPreset=4 resolutionIndex=2");
    Run(
        [&](HWND page) {
            EXPECT_EQ(Shown(page, kPaperControl), "Custom (5.91 x 11.69 in)");
            EXPECT_EQ(Shown(page, kFitPaperControl), "Same size");
            EXPECT_EQ(Shown(page, kSourceControl), "Automatic");
            EXPECT_EQ(Shown(page, kCopiesControl), "12");
            EXPECT_EQ(Shown(page, kCodeControl), "A-1");
            EXPECT_EQ(Shown(page, kZoomPercentControl), "100");
            EXPECT_FALSE(IsOn(page, kZoomSpin));
            for (const int box : {kCollateControl, kFlagAControl, kRotate180Control, kLandscapeControl}) {
                EXPECT_TRUE(IsBoxChecked(page, box)) << box;
            }
            EXPECT_FALSE(IsOn(page, kDuplexControl)) << "the size is too small for both sides";
            EXPECT_FALSE(IsOn(page, kFlagCControl));
            EXPECT_EQ(ValuesOf(page, kLayoutControl), std::vector<uint32_t>{kOnePage});
            Texts summary;
            for (int control = 5036; control <= 5068; ++control) {
                summary.push_back(Shown(page, control));
            }
            EXPECT_EQ(Texts(summary.begin(), summary.begin() + 12),
                      (Texts{"Paper size", ":", "Custom", "Fit to", ":", "Same size", "Color", ":", "Monochrome",
                             "Resolution", ":", "Fine"}));
            EXPECT_EQ(Texts(summary.begin() + 21, summary.begin() + 27), (Texts{"Watermark", ":", "Off", "", "", ""}));
            EXPECT_FALSE(host_->Context().isChanged[kPaperSlot]);
        },
        PSBTN_OK);
    EXPECT_EQ(host_->results.size(), 0u);
    EXPECT_EQ(host::StillOpen(), open_);
}

TEST_F(PaperPageTest, FollowsOtherPages) {
    Run([&](HWND page) {
        Choose(page, kLayoutControl, kPoster3x3);
        EXPECT_EQ(Shown(page, 5053), "Poster 3x3") << "in the summary";
        // Another page restores all defaults.
        Choose(page, kPaperControl, DMPAPER_LETTER);
        host_->Context().devMode->privatePart.uiStale = 1;
        host_->Context().paper.layout.selected = kTwoPages;
        NMHDR activated = {GetParent(page), 0, static_cast<UINT>(PSN_SETACTIVE)};
        SendMessageW(page, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&activated));
        EXPECT_EQ(GetComboData(page, kLayoutControl), uint32_t{kTwoPages});
        EXPECT_FALSE(IsWindowVisible(GetDlgItem(page, kZoomControl)));
    });
}

// The device mode is also the other pages' while this one is open.
TEST_F(PaperPageTest, WritesNothingButChanges) {
    Edit("uiFlagE=1 layoutMode=3 uiBinding=2 uiFlagC=1", [&](HWND page) {
        PrivateDevMode& own = host_->Context().devMode->privatePart;
        EXPECT_EQ(ValueOf(own.uiFlagE), 0);
        EXPECT_EQ(ValueOf(own.uiFlagC), 0);
        own.uiBinding = 3;
        own.layoutMode = 1;
        NMHDR activated = {GetParent(page), 0, static_cast<UINT>(PSN_SETACTIVE)};
        SendMessageW(page, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&activated));
        Click(page, kDuplexControl);
        EXPECT_EQ(ValueOf(own.uiBinding), 3);
        EXPECT_EQ(ValueOf(own.layoutMode), 1);
    });
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
    constexpr int kPreview = 5002;
    constexpr int kCollatePicture = 5020;
    const struct {
        const char* settings;
        int control;
        uint32_t value;
        int picture;
        bool isRepainted;
    } cases[] = {
        {"uiPageLayout=2 dmCollate=1", kLayoutControl, kPoster2x2, kCollatePicture, true},
        {"uiPageLayout=2", kLayoutControl, kPoster2x2, kCollatePicture, false},
        {"dmPaperSize=13 uiDuplex=1", kMediumControl, 2, kPreview, true},
        {"dmPaperSize=13", kMediumControl, 2, kPreview, false},
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

TEST_F(PaperPageTest, OutlivesItsContext) {
    Run([&](HWND page) {
        const LONG_PTR context = SetWindowLongPtrW(page, DWLP_USER, 0);
        SendDlgItemMessageW(page, kCopiesControl, WM_CHAR, '7', 1);
        SendDlgItemMessageW(page, kCopiesControl, WM_KEYDOWN, VK_UP, 1);
        SetWindowLongPtrW(page, DWLP_USER, context);
        EXPECT_EQ(Shown(page, kCopiesControl), "1");
    });
}

TEST_F(PaperPageTest, StepsNumbers) {
    Run([&](HWND page) {
        const auto press = [&](WPARAM key) { SendDlgItemMessageW(page, kCopiesControl, WM_KEYDOWN, key, 1); };
        SetDlgItemTextW(page, kCopiesControl, TEXT("7"));
        SetDlgItemTextW(page, kCopiesControl, TEXT(""));
        press(VK_UP);
        EXPECT_EQ(Shown(page, kCopiesControl), "8") << "a step from the last number";
        SendDlgItemMessageW(page, kCopiesControl, WM_MOUSEWHEEL, MAKEWPARAM(0, 3 * WHEEL_DELTA), 0);
        EXPECT_EQ(Shown(page, kCopiesControl), "9");
        press(VK_DOWN);
        EXPECT_EQ(SendDlgItemMessageW(page, kCopiesSpin, UDM_GETPOS32, 0, 0), 8);
        SetDlgItemTextW(page, kCopiesControl, TEXT("-"));
        Leave(page, kCopiesControl);
        EXPECT_EQ(Shown(page, kCopiesControl), "8");
        // What the spin control reads is its position, what it can't read stays in the edit.
        for (const WCHAR* const text : {TEXT("1,2"), TEXT("7 "), TEXT("08")}) {
            SetDlgItemTextW(page, kCopiesControl, text);
            EXPECT_EQ(TextOf(page, kCopiesControl), text);
        }
    });
    EXPECT_EQ(ValueOf(output_.publicPart.dmCopies), 8);
}

TEST_F(PaperPageTest, ShowsACustomSizeInItsUnit) {
    constexpr int kWidth = 5302;
    constexpr int kWidthSpin = 5303;
    constexpr int kLength = 5307;
    constexpr int kInchRadio = 5313;
    const auto step = [](HWND dialog, int delta) {
        NMUPDOWN change = {{GetDlgItem(dialog, kWidthSpin), kWidthSpin, UDN_DELTAPOS}, 1, delta};
        SendMessageW(dialog, WM_NOTIFY, kWidthSpin, reinterpret_cast<LPARAM>(&change));
    };
    Edit("dmPaperSize=9 uiDuplex=1", [](HWND page) { Choose(page, kPaperControl, kCustomSizePaper); },
         {[&](HWND dialog) {
             EXPECT_EQ(Shown(dialog, kWidth), "210.0");
             EXPECT_EQ(Shown(dialog, 5305), "(176.0 - 215.9 mm)");
             EXPECT_EQ(Shown(dialog, kInchRadio), "0.01 &in");
             step(dialog, 1);
             EXPECT_EQ(Shown(dialog, kWidth), "210.1");
             Type(dialog, kLength, TEXT("200.0"));
             EXPECT_EQ(Shown(dialog, 5316), "Long edge first");
             Click(dialog, kInchRadio);
             EXPECT_EQ(Shown(dialog, kWidth), "8.27");
             EXPECT_EQ(Shown(dialog, kLength), "7.87");
             EXPECT_EQ(Shown(dialog, 5310), "(9.85 - 11.69 in)");
             Click(dialog, kInchRadio);
             EXPECT_EQ(Shown(dialog, kWidth), "8.27");
             Type(dialog, kWidth, TEXT("6.91"));
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
