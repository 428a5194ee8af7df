// The sheets through real windows of the layer: how the host drives them, what they commit, what they tell.
#include "driver/base/text.h"
#include "driver/devmode/default_devmode.h"
#include "driver/ui/about_page.h"
#include "driver/ui/controls.h"
#include "driver/ui/notice.h"
#include "driver/ui/page.h"
#include "tests/driver/machine.h"
#include "tests/driver/sheet_host.h"
#include "tests/driver/sheet_package.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

// Controls of the device page and of notices.
constexpr int kAvailable = 11004;
constexpr int kInstall = 11005;
constexpr int kInstalled = 11007;
constexpr int kRemove = 11008;
constexpr int kModelMessage = 1816;
constexpr int kFirstLine = 1821;

class Sheets : public MachineTest {
  protected:
    void SetUp() override {
        Install(SheetPackage());
        host_ = std::make_unique<SheetHost>(&machine_, Printer());
    }
    // The sheet's printer has these options.
    void SetOptions(uint32_t secondTray, uint32_t duplexUnit) {
        SetDeviceInfo(Printer(), {3, secondTray, duplexUnit, 0});
    }
    // Makes the printer's own device mode one that its model can't print, or one that it can.
    void SetPaper(SHORT paper) {
        VelmoraDevMode devMode;
        BuildDefaultDevMode(Printer(), kPrinterName, &devMode);
        devMode.publicPart.dmPaperSize = paper;
        ASSERT_TRUE(SetPrinterDevMode(Printer(), &devMode.publicPart));
    }
    // Selects an item of a list and presses the button that moves it.
    static void Move(HWND page, int list, int button, int item = 0) {
        SendDlgItemMessageW(page, list, LB_SETCURSEL, static_cast<WPARAM>(item), 0);
        Click(page, button);
    }
    void ThenPress(int button) {
        host_->Then([=](HWND sheet) { SendMessageW(sheet, PSM_PRESSBUTTON, static_cast<WPARAM>(button), 0); });
    }

    std::unique_ptr<SheetHost> host_;
};

// The page of a sheet that has no other: its link opens the model's web page in the user's browser.
TEST_F(Sheets, AboutOpensTheModelsWebPage) {
    constexpr int kLink = 1570;
    const OwnedSheetContext context(CreateSheetContext(Printer(), kPrinterName, nullptr));
    Texts started;
    machine_.SetProgram(u"browser.exe", [&](const std::string& command) { started.push_back(command); });
    const struct {
        HKEY root;
        const WCHAR* key;
        std::u16string_view command;
        std::string started;
    } cases[] = {
        {HKEY_CLASSES_ROOT, TEXT("http\\shell\\open\\command"), u"browser.exe \"%1\" -new",
         std::string("browser.exe \"") + kModelLink + "\" -new"},
        {HKEY_CURRENT_USER, TEXT("SOFTWARE\\Classes\\http\\shell\\open\\command"), u"browser.exe -url",
         std::string("browser.exe -url \"") + kModelLink + '"'},
    };
    for (const auto& c : cases) {
        HKEY key = nullptr;
        RegCreateKeyExW(c.root, c.key, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, &key, nullptr);
        RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(c.command.data()),
                       static_cast<DWORD>((c.command.size() + 1) * sizeof(WCHAR)));
        RegCloseKey(key);
        machine_.SetUser([&] {
            const auto page = reinterpret_cast<HWND>(SendMessageW(FrontDialog(), PSM_GETCURRENTPAGEHWND, 0, 0));
            const RECT link = ControlRect(page, kLink);
            SendMessageW(page, WM_LBUTTONUP, 0, MAKELPARAM(link.left + 2, link.top + 2));
            Click(page, 1602);
        });
        PROPSHEETPAGEW page = {};
        page.dwSize = sizeof(page);
        page.hInstance = context.Get()->resources.Get();
        page.pszTemplate = MAKEINTRESOURCEW(1004);
        page.pfnDlgProc = AboutPageProc;
        page.lParam = reinterpret_cast<LPARAM>(context.Get());
        PROPSHEETHEADERW sheet = {};
        sheet.dwSize = sizeof(sheet);
        sheet.dwFlags = PSH_PROPSHEETPAGE;
        sheet.nPages = 1;
        sheet.ppsp = &page;
        EXPECT_EQ(PropertySheetW(&sheet), 0);
        ASSERT_EQ(started.size(), 1u);
        EXPECT_EQ(started[0], c.started);
        started.clear();
    }
    machine_.SetUser(nullptr);
}

// The last changed page to be applied commits, once, for all.
TEST_F(Sheets, ChangedPagesCommitTogether) {
    constexpr int kOtherSlot = 1;
    SetOptions(0, 0);
    host_->Then([&](HWND) {
        SheetContext& context = host_->Context();
        context.isChanged[kOtherSlot] = true;
        context.devMode->publicPart.dmICMMethod = DMICMMETHOD_USER;
        Move(host_->Page(), kAvailable, kInstall);
    });
    ThenPress(PSBTN_APPLYNOW);
    host_->Then([&](HWND) {
        EXPECT_EQ(host_->results.size(), 0u);
        EXPECT_EQ(ValueOf(host_->Context().committedDeviceInfo.secondTray), 0u);
        host_->Context().isChanged[kOtherSlot] = false;
        Move(host_->Page(), kAvailable, kInstall);
    });
    ThenPress(PSBTN_APPLYNOW);
    host_->Then([&](HWND) {
        EXPECT_EQ(host_->results.size(), 1u);
        EXPECT_EQ(ValueOf(host_->Context().devMode->publicPart.dmICMMethod), DWORD{DMICMMETHOD_USER});
        host_->Context().devMode->publicPart.dmICMMethod = DMICMMETHOD_USER + 1;
        Move(host_->Page(), kInstalled, kRemove);
    });
    ThenPress(PSBTN_APPLYNOW);
    host_->Then([&](HWND) {
        EXPECT_EQ(host_->results.size(), 2u);
        EXPECT_EQ(ValueOf(host_->Context().devMode->publicPart.dmICMMethod), DWORD{DMICMMETHOD_NONE});
    });
    host_->RunDeviceSheet();
}

TEST_F(Sheets, AConflictIsToldInTheModelsWords) {
    SetPaper(kConflictPaper);
    SetOptions(0, 0);
    host_->Then([&](HWND) { Move(host_->Page(), kAvailable, kInstall); });
    ThenPress(PSBTN_OK);
    host_->Then([&](HWND) {
        const HWND notice = FrontDialog();
        EXPECT_EQ(ToText(TextOf(notice, kModelMessage)), kConflictMessage);
        EXPECT_TRUE(IsWindowVisible(GetDlgItem(notice, kModelMessage)));
        EXPECT_FALSE(IsWindowVisible(GetDlgItem(notice, kFirstLine)));
        Click(notice, 1604);
    });
    host_->RunDeviceSheet();
    EXPECT_EQ(host_->results.size(), 0u);
}

TEST_F(Sheets, NoticesSayAndAsk) {
    using Answers = std::vector<std::pair<int, INT_PTR>>;  // by button
    const Answers message = {{1604, 1}, {IDCANCEL, 1}};
    const Answers question = {{1602, 0}, {1603, 1}, {IDCANCEL, 1}};
    const struct {
        NoticeKind kind;
        const char* firstLine;
        const char* lastLine;
        const Answers& answers;
    } cases[] = {
        {kNoticeError, "The settings weren't saved.", "Check the printer, or ask its administrator for access.",
         message},
        {kNoticeCustomLimits, "Minimum width: 3.55 in (90.0 mm)", "Maximum length: 17.00 in (432.0 mm)", message},
        {kNoticeQuestion, "This setting can't be combined with others you selected.",
         "To keep all settings as they are, select Cancel.", question},
        {kNoticeSecondQuestion, "The selected entry will be deleted.", "To keep it, select Cancel.", question},
    };
    const OwnedSheetContext context(CreateSheetContext(Printer(), kPrinterName, nullptr));
    for (const auto& c : cases) {
        for (const auto& [button, result] : c.answers) {
            machine_.SetUser([&, pressed = button] {
                const HWND notice = FrontDialog();
                EXPECT_EQ(ToText(TextOf(notice, kFirstLine)), c.firstLine);
                EXPECT_EQ(ToText(TextOf(notice, kFirstLine + 3)), c.lastLine);
                for (const int shown : {1602, 1603, 1604}) {
                    const HWND window = GetDlgItem(notice, shown);
                    EXPECT_EQ(IsWindowVisible(window) != FALSE, (shown != 1604) == (&c.answers == &question))
                        << c.kind << shown;
                }
                SendMessageW(notice, WM_COMMAND, static_cast<WPARAM>(pressed), 0);
            });
            EXPECT_EQ(ShowNotice(context.Get(), nullptr, c.kind), result) << c.kind << button;
        }
    }
    machine_.SetUser(nullptr);
}

}  // namespace
}  // namespace velmora
