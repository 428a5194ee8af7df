// The Color page, its sheet and its dialogs through real windows of the layer.
#include <algorithm>

#include "driver/devmode/default_devmode.h"
#include "driver/settings/color_presets.h"
#include "driver/settings/settings_folder.h"
#include "driver/ui/color_page.h"
#include "platform/user/controls/clipboard.h"
#include "tests/driver/machine.h"
#include "tests/driver/sheet_host.h"
#include "tests/driver/sheet_package.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

// Controls.
constexpr int kAutomatic = 6004, kMonochrome = 6010, kManual = 6012, kMatched = 6016;
constexpr int kPresets = 6013, kManagePresets = 6014, kSetIntent = 6017;
constexpr int kFirstTreatment = 6021, kAdjust = 6026, kResolution = 6028, kChoiceA = 6032;
constexpr int kResolutionFlag = 6033, kAdvanced = 6034, kRestore = 6035;
constexpr int kPresetName = 6306, kSavePreset = 6307, kOverwritePreset = 6308, kDeletePreset = 6309;

bool IsOn(HWND dialog, int control) {
    const HWND window = GetDlgItem(dialog, control);
    return IsWindowVisible(window) && IsWindowEnabled(window);
}

// A user's selection in a combo box.
void Select(HWND page, int control, int item) {
    SendDlgItemMessageW(page, control, CB_SETCURSEL, static_cast<WPARAM>(item), 0);
    SendMessageW(page, WM_COMMAND, MAKEWPARAM(control, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(GetDlgItem(page, control)));
}

LRESULT Ask(HWND dialog, int control, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendDlgItemMessageW(dialog, control, message, wParam, lParam);
}

COLORREF ColorInMiddle(HWND dialog, int control) {
    RECT place = {};
    GetWindowRect(GetDlgItem(dialog, control), &place);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
    UpdateWindow(dialog);
    const HDC context = GetDC(dialog);
    const COLORREF color = GetPixel(context, (place.left + place.right) / 2, (place.top + place.bottom) / 2);
    ReleaseDC(dialog, context);
    return color;
}

class ColorPageWindow : public MachineTest {
  protected:
    void SetUp() override {
        Install(SheetPackage());
        host_ = std::make_unique<SheetHost>(&machine_, Printer());
        BuildDefaultDevMode(Printer(), kPrinterName, &input_);
        open_ = host::StillOpen();
    }

    // A step that uses the Color page.
    void ThenUse(std::function<void(HWND page)> use) {
        host_->Then([this, use](HWND sheet) {
            SendMessageW(sheet, PSM_SETCURSEL, 0, reinterpret_cast<LPARAM>(ColorPageHandle()));
            use(host_->Context().dialogs[kColorSlot]);
        });
    }
    // A step that uses the dialog in front: one that the page has opened.
    void ThenInDialog(std::function<void(HWND dialog)> use) {
        host_->Then([use](HWND) { use(FrontDialog()); });
    }
    // A step that uses the page in front of the adjustment sheet.
    void ThenInAdjustments(std::function<void(HWND page, HWND sheet)> use) {
        ThenInDialog([use](HWND sheet) {
            use(reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETCURRENTPAGEHWND, 0, 0)), sheet);
        });
    }
    void ThenPress(int button) {
        host_->Then([=](HWND sheet) { SendMessageW(sheet, PSM_PRESSBUTTON, static_cast<WPARAM>(button), 0); });
    }
    // Runs the steps over the input device mode; what the sheet left of it.
    const PrivateDevMode& Run() {
        host_->RunDocumentSheet(&input_.publicPart, &output_);
        return output_.privatePart;
    }

    HPROPSHEETPAGE ColorPageHandle() {
        return reinterpret_cast<HPROPSHEETPAGE>(host_->Context().hostPages[kColorSlot]);
    }

    std::unique_ptr<SheetHost> host_;
    VelmoraDevMode input_;
    VelmoraDevMode output_ = {};
    Texts open_;  // before any sheet
};

TEST_F(ColorPageWindow, ShowsTheDeviceModeAndThePanelsOfItsMode) {
    input_.privatePart.colorPreset = 4;
    input_.privatePart.colorChoiceA = 3;  // not offered in monochrome
    input_.privatePart.resolutionIndex = 2;
    ThenUse([&](HWND page) {
        EXPECT_EQ(IsDlgButtonChecked(page, kMonochrome), UINT{BST_CHECKED});
        EXPECT_EQ(Ask(page, kResolution, CB_GETCURSEL), 2);
        EXPECT_EQ(Ask(page, kChoiceA, CB_GETCOUNT), 2);
        EXPECT_EQ(ToText(TextOf(page, kChoiceA)), "Normal");
        EXPECT_FALSE(IsOn(page, kPresets));
        Click(page, kManual);
        EXPECT_EQ(Ask(page, kChoiceA, CB_GETCOUNT), 3);
        EXPECT_TRUE(IsOn(page, kPresets));
        EXPECT_TRUE(IsOn(page, kManagePresets));
        EXPECT_FALSE(IsOn(page, kSetIntent));
        Click(page, kMatched);
        EXPECT_FALSE(IsOn(page, kPresets));
        EXPECT_TRUE(IsOn(page, kSetIntent));
        EXPECT_FALSE(IsOn(page, kFirstTreatment));
        Click(page, kAdvanced);
        EXPECT_FALSE(IsWindowVisible(GetDlgItem(page, kMatched)));
        EXPECT_TRUE(IsOn(page, kFirstTreatment));
        EXPECT_EQ(ToText(TextOf(page, kFirstTreatment)), "Deep");
    });
    Run();
}

TEST_F(ColorPageWindow, ChoicesReachTheDeviceModeAtApply) {
    ThenUse([&](HWND page) {
        const SheetContext& context = host_->Context();
        context.devMode->privatePart.uiFlagE = 1;
        context.devMode->privatePart.uiChoice = 3;
        Select(page, kFirstTreatment, 1);  // of a panel that isn't shown
        EXPECT_FALSE(context.isChanged[kColorSlot]);
        Click(page, kMatched);
        EXPECT_TRUE(context.isChanged[kColorSlot]);
        EXPECT_EQ(ValueOf(context.devMode->publicPart.dmICMMethod), DWORD{DMICMMETHOD_SYSTEM});
        Select(page, kResolution, 0);
        EXPECT_EQ(ValueOf(context.devMode->privatePart.marginValue), 59);
        Select(page, kChoiceA, 0);
        Click(page, kResolutionFlag);
        EXPECT_EQ(ValueOf(context.devMode->privatePart.colorPreset), 1);
    });
    ThenPress(PSBTN_APPLYNOW);
    host_->Then([&](HWND) {
        EXPECT_FALSE(host_->Context().isChanged[kColorSlot]);
        EXPECT_EQ(host_->results.size(), 1u);
    });
    const PrivateDevMode& own = Run();
    EXPECT_EQ(ValueOf(own.colorPreset), 6);
    EXPECT_EQ(ValueOf(own.resolutionIndex), 0);
    EXPECT_EQ(ValueOf(own.colorChoiceA), 2);
    EXPECT_EQ(ValueOf(own.resolutionFlag), 1);
    EXPECT_EQ(ValueOf(own.objectColor[0].mode), 2);

    ThenUse([&](HWND page) {
        Click(page, kAdvanced);
        Click(page, kRestore);
        EXPECT_EQ(IsDlgButtonChecked(page, kAutomatic), UINT{BST_CHECKED});
        EXPECT_EQ(Ask(page, kChoiceA, CB_GETCOUNT), 3);
        EXPECT_TRUE(IsOn(page, kAutomatic));
        Click(page, kMonochrome);
        RestoreColorDefaults(page, &host_->Context());
        EXPECT_EQ(IsDlgButtonChecked(page, kAutomatic), UINT{BST_CHECKED});
    });
    ThenPress(PSBTN_OK);
    Run();
    EXPECT_EQ(ValueOf(own.colorPreset), 1);
    EXPECT_EQ(ValueOf(own.resolutionIndex), 1);
    EXPECT_EQ(ValueOf(own.objectColor[0].mode), 1);
}

TEST_F(ColorPageWindow, AdjustmentsFollowSlidersAndEdits) {
    constexpr int kBrightness = 6112, kBrightnessEdit = 6113, kContrastEdit = 6125, kCyanRed = 6136, kReset = 6148;
    constexpr int kSample = 6107, kPlainSample = 6149, kBlack = 6212, kBlackEdit = 6211, kGamma = 6204;
    COLORREF plain = 0;
    ThenUse([&](HWND page) {
        Click(page, kManual);
        Click(page, kAdjust);
    });
    ThenInAdjustments([&](HWND page, HWND) {
        plain = ColorInMiddle(page, kPlainSample);
        const COLORREF fresh = ColorInMiddle(page, kSample);
        EXPECT_NE(plain, GetSysColor(COLOR_3DFACE));
        SetDlgItemTextW(page, kBrightnessEdit, TEXT("-9"));
        EXPECT_EQ(Ask(page, kBrightness, SBM_GETPOS), -9);
        EXPECT_NE(ColorInMiddle(page, kSample), fresh);
        EXPECT_EQ(ColorInMiddle(page, kPlainSample), plain);
        const auto scroll = [&](int bar, int code, int position = 0) {
            SendMessageW(page, WM_HSCROLL, MAKEWPARAM(code, position), reinterpret_cast<LPARAM>(GetDlgItem(page, bar)));
        };
        scroll(kBrightness, SB_THUMBTRACK, -4);
        EXPECT_EQ(ToText(TextOf(page, kBrightnessEdit)), "-4");
        scroll(kBrightness, SB_THUMBPOSITION, -9);
        scroll(kBrightness, SB_LINELEFT);
        scroll(kBrightness, SB_LINELEFT);
        EXPECT_EQ(ToText(TextOf(page, kBrightnessEdit)), "-10");
        scroll(kCyanRed, SB_PAGERIGHT);
        SetDlgItemTextW(page, kContrastEdit, TEXT("44"));  // taken for the most
    });
    ThenInAdjustments([&](HWND, HWND sheet) { SendMessageW(sheet, PSM_SETCURSEL, 1, 0); });
    ThenInAdjustments([&](HWND page, HWND sheet) {
        Click(page, kGamma);
        SetDlgItemTextW(page, kBlackEdit, TEXT("3"));
        EXPECT_EQ(Ask(page, kBlack, SBM_GETPOS), 3);
        SendMessageW(sheet, PSM_PRESSBUTTON, PSBTN_OK, 0);
    });
    host_->Then([&](HWND) {
        const SheetContext& context = host_->Context();
        EXPECT_TRUE(context.isChanged[kColorSlot]);
        EXPECT_EQ(ValueOf(context.devMode->privatePart.colorAdjust[0]), -10);
    });
    ThenPress(PSBTN_OK);
    const PrivateDevMode& own = Run();
    EXPECT_EQ(ValueOf(own.colorAdjust[1]), 10);
    EXPECT_EQ(ValueOf(own.colorBalance[0]), 5);
    EXPECT_EQ(ValueOf(own.colorFlagA), 0);
    EXPECT_EQ(ValueOf(own.colorLevels[0]), 3);

    // The values come back, and go by the page's button; without OK nothing is written.
    input_ = output_;
    ThenUse([&](HWND page) { Click(page, kAdjust); });
    ThenInAdjustments([&](HWND page, HWND sheet) {
        EXPECT_EQ(ToText(TextOf(page, kBrightnessEdit)), "-10");
        Click(page, kReset);
        EXPECT_EQ(ToText(TextOf(page, kBrightnessEdit)), "0");
        SendMessageW(sheet, PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
    });
    host_->Then([&](HWND) { EXPECT_FALSE(host_->Context().isChanged[kColorSlot]); });
    EXPECT_EQ(ValueOf(Run().colorAdjust[0]), -10);

    // In other modes there are the toners alone.
    ThenUse([&](HWND page) {
        Click(page, kAutomatic);
        Click(page, kAdjust);
    });
    ThenInAdjustments([&](HWND page, HWND sheet) {
        EXPECT_NE(GetDlgItem(page, kGamma), nullptr);
        SendMessageW(sheet, PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
    });
    Run();
}

TEST_F(ColorPageWindow, PresetsAreSavedUnderNamesThatFit) {
    const auto manage = [&](std::function<void(HWND dialog)> use) {
        ThenUse([&](HWND page) {
            Click(page, kManual);
            Click(page, kManagePresets);
        });
        ThenInDialog(std::move(use));
    };
    manage([&](HWND dialog) {
        EXPECT_FALSE(IsOn(dialog, kSavePreset));
        EXPECT_FALSE(IsOn(dialog, kDeletePreset));
        for (const WCHAR c : std::u16string_view(TEXT("abcdefghijk"))) {
            Ask(dialog, kPresetName, WM_CHAR, c);
        }
        EXPECT_EQ(ToText(TextOf(dialog, kPresetName)), "abcdefghij");
        Ask(dialog, kPresetName, EM_SETSEL, 0, 4);
        host::SetClipboardText(TEXT("12345"));
        Ask(dialog, kPresetName, WM_PASTE);
        EXPECT_EQ(ToText(TextOf(dialog, kPresetName)), "abcdefghij");
        host::SetClipboardText(TEXT("1234"));
        Ask(dialog, kPresetName, WM_PASTE);
        EXPECT_EQ(ToText(TextOf(dialog, kPresetName)), "1234efghij");
        SetDlgItemTextW(dialog, kPresetName, TEXT("Warm"));
        EXPECT_TRUE(IsOn(dialog, kSavePreset));
        Click(dialog, kSavePreset);
    });
    ThenUse([&](HWND page) {
        EXPECT_TRUE(host_->Context().isChanged[kColorSlot]);
        EXPECT_EQ(Ask(page, kPresets, CB_GETCOUNT), 2);
        EXPECT_EQ(Ask(page, kFirstTreatment, CB_GETCOUNT), 4);
        EXPECT_EQ(ToText(TextOf(page, kFirstTreatment)), "Deep");
    });
    manage([&](HWND dialog) {
        EXPECT_EQ(ToText(TextOf(dialog, kPresetName)), "Warm");
        Click(dialog, kSavePreset);
    });
    ThenInDialog([&](HWND message) {
        EXPECT_EQ(ToText(TextOf(message)), "Color presets");
        SendMessageW(message, WM_COMMAND, IDOK, 0);
    });
    ThenInDialog([&](HWND dialog) {
        host_->Context().devMode->privatePart.colorAdjust[0] = 7;
        Click(dialog, kOverwritePreset);
    });
    Run();
    EXPECT_EQ(ColorPresetTable()[0].brightness, 7);

    // Another sheet knows the preset, uses it, and deletes it.
    ThenUse([&](HWND page) {
        Click(page, kManual);
        Select(page, kPresets, 1);
        EXPECT_FALSE(IsOn(page, kManagePresets));
    });
    ThenPress(PSBTN_APPLYNOW);
    ThenUse([&](HWND page) {
        EXPECT_EQ(ValueOf(host_->Context().devMode->privatePart.colorAdjust[0]), 7);
        Select(page, kPresets, 0);
        ColorPresetTable()[0].workingValue = 9;
        WritePrivateProfileStringW(TEXT("UserEnt5"), TEXT("UserEntName"), nullptr, CurrentSettingsFile());
    });
    manage([&](HWND dialog) {
        EXPECT_EQ(ToText(TextOf(dialog, kPresetName)), "Warm");
        EXPECT_EQ(ColorPresetTable()[0].workingValue, 9);
        SetFocus(GetDlgItem(dialog, kDeletePreset));
        Click(dialog, kDeletePreset);
        EXPECT_FALSE(IsOn(dialog, kOverwritePreset));
        EXPECT_EQ(GetFocus(), GetDlgItem(dialog, kPresetName));
        SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    });
    ThenUse([&](HWND page) { EXPECT_EQ(Ask(page, kPresets, CB_GETCOUNT), 1); });
    Run();
}

TEST_F(ColorPageWindow, IntentIsStoredByTheDialog) {
    constexpr int kVivid = 6402, kPhoto = 6403, kExact = 6404, kRestoreIntent = 6405;
    input_.publicPart.dmICMIntent = 3;
    ThenUse([&](HWND page) {
        Click(page, kMatched);
        Click(page, kSetIntent);
    });
    const auto intent = [&] { return ValueOf(host_->Context().devMode->publicPart.dmICMIntent); };
    ThenInDialog([&](HWND dialog) {
        EXPECT_EQ(IsDlgButtonChecked(dialog, kExact), UINT{BST_CHECKED});
        Click(dialog, kRestoreIntent);
        EXPECT_EQ(IsDlgButtonChecked(dialog, kPhoto), UINT{BST_CHECKED});
        EXPECT_EQ(intent(), 2u);
        Click(dialog, kVivid);
        Click(dialog, IDOK);
    });
    ThenPress(PSBTN_OK);
    EXPECT_EQ(ValueOf(Run().colorPreset), 6);
    EXPECT_EQ(ValueOf(output_.publicPart.dmICMIntent), 1u);
}

// Allocations fail one after the other, a prime's steps apart: nothing crashes, nothing stays open.
TEST_F(ColorPageWindow, SurvivesAllocationsThatFail) {
    constexpr uint64_t kStride = 7;
    uint64_t allocations = kStride;
    for (uint64_t nth = 1; nth <= allocations; nth += kStride) {
        ThenUse([&](HWND page) {
            Click(page, kManual);
            Click(page, kAdjust);
        });
        ThenInAdjustments([](HWND page, HWND sheet) {
            UpdateWindow(page);
            SendMessageW(sheet, PSM_PRESSBUTTON, PSBTN_OK, 0);
        });
        ThenUse([](HWND page) { Click(page, kManagePresets); });
        ThenInDialog([](HWND dialog) {
            SetDlgItemTextW(dialog, kPresetName, TEXT("Warm"));
            SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
        });
        host::FailAllocation(nth);
        host_->RunDocumentSheet(&input_.publicPart, &output_);
        host_->ForgetSteps();
        allocations = host::AllocationsSoFar();
        host::ClearFaults();
        ASSERT_EQ(host::StillOpen(), open_) << "allocation " << nth;
    }
}

}  // namespace
}  // namespace velmora
