// The Watermark page through real windows of the layer.
#include <commctrl.h>

#include <cstring>

#include "driver/settings/settings_folder.h"
#include "driver/ui/watermark_page.h"
#include "driver/ui/watermark_rules.h"
#include "tests/driver/document_sheet.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

constexpr int kAdd = 7006, kFace = 7010, kStyle = 7012, kFamily = 7017, kPosition = 7019;
constexpr int kAngle = 7025, kAngleSlider = 7026, kPreview = 7029, kReady = 3107;

LRESULT Ask(HWND page, int control, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendDlgItemMessageW(page, control, message, wParam, lParam);
}

void Notify(HWND page, int control, int code) {
    SendMessageW(page, WM_COMMAND, MAKEWPARAM(control, code), reinterpret_cast<LPARAM>(GetDlgItem(page, control)));
}

// The edit within the name's combo box.
HWND NameEdit(HWND page) {
    return GetWindow(GetDlgItem(page, kWatermarkName), GW_CHILD);
}

bool ReadsNameFromRight(HWND page) {
    return (GetWindowLongPtrW(NameEdit(page), GWL_EXSTYLE) & WS_EX_RTLREADING) != 0;
}

// Whether something black, a sheet's edge, is drawn in the picture.
bool DrawsSheet(HWND page) {
    UpdateWindow(page);
    const RECT place = ControlRect(page, kPreview);
    const HDC context = GetDC(page);
    bool isDrawn = false;
    for (int x = place.left; x < place.right && !isDrawn; ++x) {
        isDrawn = GetPixel(context, x, (place.top + place.bottom) / 2) == RGB(0, 0, 0);
    }
    ReleaseDC(page, context);
    return isDrawn;
}

class WatermarkPage : public DocumentSheetTest {
  protected:
    void SetUp() override {
        DriverPackage package = SheetPackage();
        package.dependent.push_back({u"KV62WM.EXE", "program"});
        Prepare(package);
        machine_.SetWaitsElapseAtOnce(true);
    }
    // The program that renders watermarks: makes one file a call.
    void UseRenderer() {
        machine_.SetProgram(u"KV62WM.EXE", [](const std::string& command) {
            const std::string job = command.substr(command.find(".EXE ") + 5);
            const WideText file(job.begin(), job.end());
            WCHAR output[MAX_PATH];
            GetPrivateProfileStringW(TEXT("MAKEWM"), TEXT("OutputFile"), TEXT(""), output, MAX_PATH, file.c_str());
            WriteDriveFile(output, "");
            for (const WCHAR* key : {TEXT("Size.x"), TEXT("Size.y"), TEXT("Result")}) {
                WritePrivateProfileStringW(TEXT("MAKEWM"), key, TEXT("7"), file.c_str());
            }
        });
    }
};

TEST_F(WatermarkPage, GivesTheListOfRenderedOnesTheFocus) {
    // Sheets give the focus to the first control of a page that they show.
    host_->Then([&](HWND sheet) {
        PROPSHEETPAGEW page = {};
        page.lParam = reinterpret_cast<LPARAM>(&Context());
        const HWND dialog = CreateDialogParamW(Context().resources.Get(), MAKEINTRESOURCEW(7000), sheet,
                                               WatermarkPageProc, reinterpret_cast<LPARAM>(&page));
        EXPECT_EQ(GetFocus(), GetDlgItem(dialog, kReady));
        DestroyWindow(dialog);
    });
    Run();
}

TEST_F(WatermarkPage, TakesOnlyWhatIsChosenOrTyped) {
    input_.privatePart.outputFlag = 1;
    ThenUse(kWatermarkSlot, [&](HWND page) {
        const WatermarkRecord shown = ShownWatermark(Context());
        for (const int combo : {kWatermarkName, kFace, kStyle, kFamily, kPosition}) {
            Ask(page, combo, CB_SETCURSEL, static_cast<WPARAM>(-1));
            Notify(page, combo, CBN_SELCHANGE);
            const WatermarkRecord now = ShownWatermark(Context());
            EXPECT_EQ(memcmp(&now, &shown, sizeof(now)), 0) << combo;
        }
        EXPECT_EQ(Context().watermarkEdit.current, 0u);
        EXPECT_FALSE(Context().isChanged[kWatermarkSlot]);
        EXPECT_GE(Ask(page, kFace, CB_SELECTSTRING, static_cast<WPARAM>(-1),
                      reinterpret_cast<LPARAM>(TEXT("Times New Roman"))),
                  0);
        Notify(page, kFace, CBN_SELCHANGE);
        EXPECT_EQ(ToText(Context().watermarkEdit.choices.face), "Times New Roman");
        SetDlgItemTextW(page, kAngle, TEXT("400"));
        EXPECT_EQ(Ask(page, kAngleSlider, TBM_GETPOS), 355);
        SetDlgItemTextW(page, kAngle, TEXT("-"));
        Notify(page, kAngle, EN_KILLFOCUS);
        EXPECT_EQ(ToText(TextOf(page, kAngle)), "355");
        EXPECT_TRUE(DrawsSheet(page));
        Click(page, kWatermarkSwitch);
        EXPECT_FALSE(DrawsSheet(page));
    });
    Run();
}

TEST_F(WatermarkPage, KeepsANamesReadingOrder) {
    UseRenderer();
    ThenUse(kWatermarkSlot, [&](HWND page) {
        Click(page, kWatermarkSwitch);
        SetWindowTextW(NameEdit(page), TEXT("Mine"));
        Notify(page, kWatermarkName, CBN_EDITCHANGE);
        const HWND edit = NameEdit(page);
        SetWindowLongPtrW(edit, GWL_EXSTYLE, GetWindowLongPtrW(edit, GWL_EXSTYLE) | WS_EX_RTLREADING);
        UpdateWindow(page);
        EXPECT_FALSE(Context().watermarkEdit.choices.isRightToLeft);  // painting takes nothing
        Click(page, kAdd);
        Choose(page, kWatermarkName, 0);
        EXPECT_FALSE(ReadsNameFromRight(page));
        Choose(page, kWatermarkName, 8);
        EXPECT_TRUE(ReadsNameFromRight(page));
    });
    // The Paper page says what this one shows.
    ThenUse(kPaperSlot, [&](HWND page) {
        std::string summary;
        for (int control = 5036; control <= 5068; ++control) {
            summary += ToText(TextOf(page, control)) + '\n';
        }
        EXPECT_NE(summary.find("\nMine\n"), std::string::npos) << summary;
    });
    ThenPress(PSBTN_OK);
    Run();
    input_ = output_;
    ThenUse(kWatermarkSlot, [&](HWND page) {
        EXPECT_EQ(ToText(TextOf(page, kWatermarkName)), "Mine");
        EXPECT_TRUE(ReadsNameFromRight(page));
        EXPECT_EQ(ItemsOf(page, kReady), Texts({"None", "Mine"}));
        EXPECT_EQ(Ask(page, kReady, LB_GETCURSEL), 1);
    });
    Run();
}

}  // namespace
}  // namespace velmora
