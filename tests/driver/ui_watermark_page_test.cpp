// The Watermark page through real windows of the layer.
#include <commctrl.h>

#include <cstring>
#include <fstream>

#include "driver/devmode/default_devmode.h"
#include "driver/settings/settings_folder.h"
#include "driver/ui/controls.h"
#include "driver/ui/watermark_page.h"
#include "driver/ui/watermark_rules.h"
#include "tests/driver/machine.h"
#include "tests/driver/sheet_host.h"
#include "tests/driver/sheet_package.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

constexpr int kSwitch = 7003, kName = 7005, kAdd = 7006, kChange = 7007, kDelete = 7008;
constexpr int kFace = 7010, kStyle = 7012, kSize = 7014, kSizeSpin = 7015, kFamily = 7017, kPosition = 7019;
constexpr int kShade = 7023, kAngle = 7025, kAngleSlider = 7026, kPreview = 7029, kRestore = 7030, kReady = 3107;

LRESULT Ask(HWND page, int control, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendDlgItemMessageW(page, control, message, wParam, lParam);
}

void Notify(HWND page, int control, int code) {
    SendMessageW(page, WM_COMMAND, MAKEWPARAM(control, code), reinterpret_cast<LPARAM>(GetDlgItem(page, control)));
}

void Select(HWND page, int control, uint32_t value) {
    EXPECT_GE(SelectComboByData(page, control, value), 0) << value;
    Notify(page, control, CBN_SELCHANGE);
}

void Slide(HWND page, int slider, int code, int position) {
    SendMessageW(page, WM_HSCROLL, MAKEWPARAM(code, position), reinterpret_cast<LPARAM>(GetDlgItem(page, slider)));
}

// The edit within a combo box.
HWND EditOf(HWND page, int combo) {
    return GetWindow(GetDlgItem(page, combo), GW_CHILD);
}

void TypeName(HWND page, const WCHAR* name) {
    SendMessageW(EditOf(page, kName), EM_SETSEL, 0, -1);
    for (; *name != 0; ++name) {
        SendMessageW(EditOf(page, kName), WM_CHAR, *name, 0);
    }
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

// The buttons that can be pressed: Add, Change, Delete.
std::string ButtonsOf(HWND page) {
    std::string buttons;
    for (const int button : {kAdd, kChange, kDelete}) {
        buttons += IsWindowEnabled(GetDlgItem(page, button)) ? "acd"[button - kAdd] : '-';
    }
    return buttons;
}

class WatermarkPage : public MachineTest {
  protected:
    void SetUp() override {
        DriverPackage package = SheetPackage();
        package.dependent.push_back({u"KV62WM.EXE", "program"});
        Install(package);
        host_ = std::make_unique<SheetHost>(&machine_, Printer());
        BuildDefaultDevMode(Printer(), kPrinterName, &input_);
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
    // A step that uses a page.
    void ThenUse(int slot, std::function<void(HWND page)> use) {
        host_->Then([=, this](HWND sheet) {
            SendMessageW(sheet, PSM_SETCURSEL, 0, host_->Context().hostPages[slot]);
            UpdateWindow(host_->Context().dialogs[slot]);
            use(host_->Context().dialogs[slot]);
        });
    }
    void ThenUse(std::function<void(HWND page)> use) { ThenUse(kWatermarkSlot, std::move(use)); }
    void ThenPress(int button) {
        host_->Then([=](HWND sheet) { SendMessageW(sheet, PSM_PRESSBUTTON, static_cast<WPARAM>(button), 0); });
    }
    const PrivateDevMode& Run() {
        EXPECT_EQ(host_->RunDocumentSheet(&input_.publicPart, &output_), 1);
        return output_.privatePart;
    }
    bool IsChanged() const { return host_->Context().isChanged[kWatermarkSlot]; }
    const WatermarkRecord& Entry(size_t index) const { return host_->Context().watermarks.records.Get()[index]; }

    // Stores a watermark of the user behind the built-in ones, rendered.
    void AddUsers(const WCHAR* name) {
        PrepareSettingsFile(kPrinterName);
        const WatermarkList list = LoadWatermarkList(kPrinterName);
        std::vector<WatermarkRecord> records(list.records.Get(), list.records.Get() + list.count);
        records.push_back(records[0]);
        WatermarkRecord& record = records.back();
        memset(record.text, 0, sizeof(record.text));
        memcpy(record.text, name, WideText(name).size() * sizeof(WCHAR));
        memcpy(record.fileName, kFile, sizeof(kFile));
        record.resolution = record.width = record.height = 600;
        record.style.rightToLeft = 1;
        SaveWatermarkList(kPrinterName, records.data(), static_cast<uint16_t>(records.size()));
        WriteDriveFile(kFile, "");
    }
    static constexpr WCHAR kFile[] = u"C:\\mine.WM";
    static size_t StoredCount() { return LoadWatermarkList(kPrinterName).count; }

    std::unique_ptr<SheetHost> host_;
    VelmoraDevMode input_;
    VelmoraDevMode output_ = {};
};

TEST_F(WatermarkPage, ShowsTheDeviceModesWatermark) {
    AddUsers(TEXT("Mine"));
    PrivateDevMode& own = input_.privatePart;
    own.outputFlag = 1;
    own.outputLevel = 8;
    own.watermarkFlags = 36;
    own.watermarkIndex = 600;
    own.watermarkFontSize = own.watermarkAngle = 600;
    memcpy(own.watermarkFile, kFile, sizeof(kFile));
    // Sheets give the focus to the first control of a page that they show.
    host_->Then([&](HWND sheet) {
        PROPSHEETPAGEW page = {};
        page.lParam = reinterpret_cast<LPARAM>(&host_->Context());
        const HWND dialog = CreateDialogParamW(host_->Context().resources.Get(), MAKEINTRESOURCEW(7000), sheet,
                                               WatermarkPageProc, reinterpret_cast<LPARAM>(&page));
        EXPECT_EQ(GetFocus(), GetDlgItem(dialog, kReady));
        DestroyWindow(dialog);
    });
    ThenUse([&](HWND page) {
        EXPECT_EQ(ToText(TextOf(page, kName)), "Mine");
        EXPECT_EQ(Ask(page, kName, CB_GETCOUNT), 9);
        EXPECT_EQ(ToText(TextOf(page, kFace)), "Arial");
        EXPECT_EQ(Ask(page, kFace, CB_GETCOUNT), 4);
        EXPECT_EQ(GetComboData(page, kStyle), 0u);
        EXPECT_EQ(ToText(TextOf(page, kSize)), "50");
        EXPECT_EQ(Ask(page, kSizeSpin, UDM_GETPOS32), 50);
        EXPECT_EQ(GetComboData(page, kFamily), 1u);
        EXPECT_EQ(Ask(page, kShade, TBM_GETPOS), 8);
        EXPECT_EQ(GetComboData(page, kPosition), 0u);
        EXPECT_EQ(ToText(TextOf(page, kAngle)), "45");
        EXPECT_EQ(Ask(page, kAngleSlider, TBM_GETPOS), 45);
        EXPECT_NE(GetWindowLongPtrW(EditOf(page, kName), GWL_EXSTYLE) & WS_EX_RTLREADING, 0);
        EXPECT_EQ(ItemsOf(page, kReady), Texts({"None", "Mine"}));
        EXPECT_EQ(Ask(page, kReady, LB_GETCURSEL), 1);
        EXPECT_EQ(Ask(page, kReady, LB_GETITEMDATA, 0), -1);
        EXPECT_EQ(ButtonsOf(page), "--d");
        EXPECT_TRUE(IsWindowEnabled(GetDlgItem(page, kSizeSpin)));
        EXPECT_TRUE(DrawsSheet(page));
        Click(page, kSwitch);
        EXPECT_FALSE(DrawsSheet(page));
        EXPECT_EQ(ButtonsOf(page), "---");
        for (int control = kName; control <= kAngleSlider; ++control) {
            EXPECT_FALSE(IsWindowEnabled(GetDlgItem(page, control))) << control;
        }
        EXPECT_TRUE(IsChanged());
    });
    Run();
}

TEST_F(WatermarkPage, EditsFollowEachOther) {
    input_.privatePart.outputFlag = 1;
    ThenUse([&](HWND page) {
        EXPECT_FALSE(IsChanged());
        Slide(page, kAngleSlider, TB_THUMBTRACK, 47);
        EXPECT_FALSE(IsChanged());
        EXPECT_EQ(ToText(TextOf(page, kAngle)), "45");
        EXPECT_EQ(Ask(page, kAngleSlider, TBM_GETPOS), 45);
        Slide(page, kAngleSlider, TB_THUMBPOSITION, 359);
        EXPECT_EQ(ToText(TextOf(page, kAngle)), "355");
        EXPECT_TRUE(IsChanged());
        Ask(page, kAngleSlider, TBM_SETPOS, TRUE, 52);
        Slide(page, kAngleSlider, TB_LINEDOWN, 0);
        EXPECT_EQ(ToText(TextOf(page, kAngle)), "52");
        SetDlgItemTextW(page, kAngle, TEXT("400"));
        EXPECT_EQ(Ask(page, kAngleSlider, TBM_GETPOS), 355);

        Select(page, kFamily, 0);
        Slide(page, kShade, TB_THUMBTRACK, 15);
        EXPECT_EQ(host_->Context().watermarkEdit.choices.color, RGB(0, 0, 0));
        EXPECT_EQ(host_->Context().devMode->privatePart.shadeMaxFlag, 1);

        const struct {
            const WCHAR* typed;
            const char* shown;
        } sizes[] = {{TEXT("7"), "8"}, {TEXT("999"), "400"}, {TEXT("40"), "40"}, {TEXT(""), "40"}};
        for (const auto& size : sizes) {
            SetDlgItemTextW(page, kSize, size.typed);
            Notify(page, kSize, EN_KILLFOCUS);
            EXPECT_EQ(ToText(TextOf(page, kSize)), size.shown);
        }
        SendMessageW(page, WM_VSCROLL, SB_LINEUP, reinterpret_cast<LPARAM>(GetDlgItem(page, kSizeSpin)));
        EXPECT_EQ(ToText(TextOf(page, kSize)), "40");
        Ask(page, kSize, WM_KEYDOWN, VK_UP);
        EXPECT_EQ(host_->Context().watermarkEdit.choices.size.position, 41);
    });
    Run();
}

TEST_F(WatermarkPage, NamesAreTypedAddedRenamedAndDeleted) {
    UseRenderer();
    ThenUse([&](HWND page) {
        Click(page, kSwitch);
        TypeName(page, TEXT("New"));
        EXPECT_EQ(ButtonsOf(page), "a--");
        const HWND edit = EditOf(page, kName);
        SetWindowLongPtrW(edit, GWL_EXSTYLE, GetWindowLongPtrW(edit, GWL_EXSTYLE) | WS_EX_RTLREADING);
        Select(page, kStyle, 3);
        Select(page, kPosition, 9);
        Click(page, kAdd);
        EXPECT_EQ(ButtonsOf(page), "-cd");
        EXPECT_EQ(Ask(page, kName, CB_GETCURSEL), 8);
        EXPECT_EQ(ToText(TextOf(page, kName)), "New");
        EXPECT_EQ(Entry(8).style.rightToLeft, 1u);
        EXPECT_EQ(Entry(8).style.bold + Entry(8).style.italic, 2u);
        Select(page, kName, 0);
        EXPECT_EQ(GetComboData(page, kStyle), 0u);
        EXPECT_EQ(ButtonsOf(page), "---");
        Select(page, kName, 8);
        EXPECT_EQ(GetComboData(page, kPosition), 9u);
        TypeName(page, TEXT("Other"));
        EXPECT_EQ(ButtonsOf(page), "ac-");
        Click(page, kChange);
        EXPECT_EQ(ToText(Entry(8).text), "Other");
        TypeName(page, TEXT("Third"));
        Click(page, kAdd);
        EXPECT_EQ(Ask(page, kName, CB_GETCOUNT), 10);
        Click(page, kDelete);
        EXPECT_EQ(Ask(page, kName, CB_GETCOUNT), 9);
        EXPECT_EQ(ToText(TextOf(page, kName)), "Confidential");
        EXPECT_EQ(ButtonsOf(page), "---");
        Select(page, kName, 8);
    });
    // The Paper page says what this one shows.
    ThenUse(kPaperSlot, [&](HWND page) {
        std::string summary;
        for (int control = 5036; control <= 5068; ++control) {
            summary += ToText(TextOf(page, control)) + '\n';
        }
        EXPECT_NE(summary.find("\nOther\n"), std::string::npos) << summary;
    });
    ThenPress(PSBTN_APPLYNOW);
    ThenUse([&](HWND page) {
        EXPECT_FALSE(IsChanged());
        EXPECT_EQ(ItemsOf(page, kReady), Texts({"None", "Other"}));
        EXPECT_EQ(StoredCount(), 9u);
        Click(page, kRestore);
        EXPECT_EQ(IsDlgButtonChecked(page, kSwitch), UINT{BST_UNCHECKED});
        EXPECT_EQ(ToText(TextOf(page, kName)), "Confidential");
    });
    EXPECT_EQ(ValueOf(Run().watermarkPosition), 9u);
}

TEST_F(WatermarkPage, CancelLeavesTheStoreAndTheFiles) {
    AddUsers(TEXT("Mine"));
    input_.privatePart.outputFlag = 1;
    input_.privatePart.outputLevel = 8;
    for (const int button : {PSBTN_CANCEL, PSBTN_OK}) {
        ThenUse([&](HWND page) { Click(page, kDelete); });
        ThenPress(button);
        Run();
        const bool isCancelled = button == PSBTN_CANCEL;
        EXPECT_EQ(StoredCount(), isCancelled ? 9u : 8u);
        EXPECT_EQ(DriveFileExists(kFile), isCancelled);
    }
}

}  // namespace
}  // namespace velmora
