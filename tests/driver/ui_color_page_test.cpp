// The Color page, its sheet and its dialogs through real windows of the layer.
#include "platform/user/controls/clipboard.h"
#include "tests/driver/document_sheet.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

// Controls.
constexpr int kManual = 6012, kManagePresets = 6014, kAdjust = 6026;
constexpr int kPresetName = 6306, kSavePreset = 6307, kDeletePreset = 6309;

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

// The page that a sheet shows.
HWND PageOf(HWND sheet) {
    return reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETCURRENTPAGEHWND, 0, 0));
}

class ColorPageWindow : public DocumentSheetTest {
  protected:
    // A step that uses the dialog in front: one that the page has opened.
    void ThenInDialog(std::function<void(HWND dialog)> use) {
        host_->Then([use](HWND) { use(FrontDialog()); });
    }
};

TEST_F(ColorPageWindow, AdjustmentsFollowSliders) {
    constexpr int kBrightness = 6112, kBrightnessEdit = 6113, kCyanRed = 6136, kCyanRedEdit = 6135;
    constexpr int kSample = 6107, kPlainSample = 6149;
    ThenUse(kColorSlot, [&](HWND page) {
        Click(page, kManual);
        Click(page, kAdjust);
    });
    ThenInDialog([&](HWND sheet) {
        const auto page = PageOf(sheet);
        const COLORREF plain = ColorInMiddle(page, kPlainSample);
        const COLORREF fresh = ColorInMiddle(page, kSample);
        EXPECT_NE(plain, GetSysColor(COLOR_3DFACE));
        const auto scroll = [&](int bar, int code, int position = 0) {
            SendMessageW(page, WM_HSCROLL, MAKEWPARAM(code, position), reinterpret_cast<LPARAM>(GetDlgItem(page, bar)));
        };
        scroll(kBrightness, SB_THUMBTRACK, -4);
        EXPECT_EQ(ToText(TextOf(page, kBrightnessEdit)), "-4");
        scroll(kBrightness, SB_THUMBPOSITION, -9);
        EXPECT_NE(ColorInMiddle(page, kSample), fresh);
        EXPECT_EQ(ColorInMiddle(page, kPlainSample), plain);
        scroll(kBrightness, SB_LINELEFT);
        scroll(kBrightness, SB_LINELEFT);
        EXPECT_EQ(ToText(TextOf(page, kBrightnessEdit)), "-10");
        EXPECT_EQ(Ask(page, kBrightness, SBM_GETPOS), -10);
        scroll(kCyanRed, SB_PAGERIGHT);
        EXPECT_EQ(ToText(TextOf(page, kCyanRedEdit)), "5");
        SendMessageW(sheet, PSM_PRESSBUTTON, PSBTN_OK, 0);
    });
    host_->Then([&](HWND) { EXPECT_TRUE(host_->Context().isChanged[kColorSlot]); });
    Run();
}

TEST_F(ColorPageWindow, PresetsAreNamedAndReadAgain) {
    const auto manage = [&](std::function<void(HWND dialog)> use) {
        ThenUse(kColorSlot, [&](HWND page) {
            Click(page, kManual);
            Click(page, kManagePresets);
        });
        ThenInDialog(std::move(use));
    };
    manage([&](HWND dialog) {
        SetDlgItemTextW(dialog, kPresetName, TEXT("abcdefghij"));
        Ask(dialog, kPresetName, EM_SETSEL, 0, 4);
        for (const auto& [pasted, name] : {std::pair(u"12345", "abcdefghij"), std::pair(u"1234", "1234efghij")}) {
            host::SetClipboardText(pasted);
            Ask(dialog, kPresetName, WM_PASTE);
            EXPECT_EQ(ToText(TextOf(dialog, kPresetName)), name);
        }
        Click(dialog, kSavePreset);
    });
    manage([&](HWND dialog) {
        EXPECT_EQ(ToText(TextOf(dialog, kPresetName)), "1234efghij");
        SetFocus(GetDlgItem(dialog, kDeletePreset));
        Click(dialog, kDeletePreset);
        EXPECT_EQ(GetFocus(), GetDlgItem(dialog, kPresetName));
        SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    });
    Run();
}

}  // namespace
}  // namespace velmora
