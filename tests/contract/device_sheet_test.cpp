// The printer's own sheet: which options are installed, and what follows from changing that.
#include <cstring>
#include <string>
#include <vector>

#include "tests/contract/sheet_test.h"
#include "tests/contract/transcript.h"
#include "tests/driver/changed_devmode.h"

namespace contract {
namespace {

using driver_test::With;

constexpr const char* kModel = "VELMORA-C3200.XPI";
constexpr WCHAR kDeviceInfo[] = TEXT("DeviceInfo");

// Controls of the page and of notices.
constexpr int kAvailable = 11004;
constexpr int kInstall = 11005;
constexpr int kInstalled = 11007;
constexpr int kRemove = 11008;
constexpr int kNoticeOk = 1604;

// Words of the printer data "DeviceInfo".
struct DeviceInfo {
    DWORD installedOptions;
    DWORD secondTray;
    DWORD optionFlags;
    DWORD memoryKey;

    bool operator==(const DeviceInfo&) const = default;
};
constexpr DWORD kNotApplicable = 0xFFFFFFFF;

DeviceInfo StoredInfo(const InstalledPrinter& printer) {
    DeviceInfo info = {};
    const PrinterData data = printer.Data();
    const auto value = data.find(kDeviceInfo);
    if (value != data.end() && value->second.bytes.size() == sizeof(info)) {
        memcpy(&info, value->second.bytes.data(), sizeof(info));
    }
    return info;
}

std::string Text(const DeviceInfo& info) {
    return std::to_string(info.installedOptions) + ' ' + std::to_string(info.secondTray) + ' ' +
           std::to_string(info.optionFlags) + ' ' + std::to_string(info.memoryKey);
}

// A top-level window that keeps which printers it is told of.
class ChangeListener {
  public:
    ChangeListener() {
        WNDCLASSW windowClass = {};
        windowClass.lpfnWndProc = Receive;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = kClass;
        RegisterClassW(&windowClass);
        window_ = CreateWindowExW(0, kClass, TEXT("Listener"), WS_OVERLAPPED, 0, 0, 10, 10, nullptr, nullptr,
                                  windowClass.hInstance, nullptr);
        SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }
    ~ChangeListener() {
        DestroyWindow(window_);
        UnregisterClassW(kClass, GetModuleHandleW(nullptr));
    }
    ChangeListener(const ChangeListener&) = delete;
    ChangeListener& operator=(const ChangeListener&) = delete;

    const std::vector<WideText>& Printers() const { return printers_; }

  private:
    static constexpr WCHAR kClass[] = TEXT("VelmoraChangeListener");

    static LRESULT CALLBACK Receive(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == WM_DEVMODECHANGE) {
            auto* const self = reinterpret_cast<ChangeListener*>(GetWindowLongPtrW(window, GWLP_USERDATA));
            self->printers_.emplace_back(reinterpret_cast<const WCHAR*>(lParam));
            return 0;
        }
        return DefWindowProcW(window, message, wParam, lParam);
    }

    HWND window_ = nullptr;
    std::vector<WideText> printers_;
};

// Moves an item of one list to the other.
Step Install(int item) {
    return [item] {
        SelectInList(kAvailable, item);
        PressButton(kInstall);
    };
}
Step Remove(int item) {
    return [item] {
        SelectInList(kInstalled, item);
        PressButton(kRemove);
    };
}

class DeviceSheet : public SheetTest {};

TEST_F(DeviceSheet, KeepsWhatIsInstalled) {
    const Step ok = InSheet(PSBTN_OK);
    const Step apply = InSheet(PSBTN_APPLYNOW);
    const Step cancel = InSheet(PSBTN_CANCEL);
    const Step pressBoth = [] {
        PressButton(kInstall);
        PressButton(kRemove);
    };
    const DeviceInfo bare = {3, 0, 0, 5};
    const DeviceInfo whole = {7, 1, 1, 5};
    const struct {
        const char* title;
        DeviceInfo before;
        std::vector<Step> steps;
        LONG result;
        size_t commits;
        DeviceInfo after;
    } cases[] = {
        {"nothing changed", bare, {ok}, CPSUI_OK, 0, bare},
        {"nothing selected", bare, {pressBoth, Describe("pressed"), ok}, CPSUI_OK, 0, bare},
        {"the tray", bare, {Install(0), Describe("installed"), ok}, CPSUI_OK, 1, {7, 1, 0, 5}},
        {"the duplex unit", bare, {Install(1), Describe("installed"), ok}, CPSUI_OK, 1, {3, 0, 1, 5}},
        {"one by one", bare, {Install(0), apply, Describe("applied"), Install(0), apply, ok}, CPSUI_OK, 2, whole},
        {"there and back", bare, {Install(0), Remove(0), apply, ok}, CPSUI_OK, 1, bare},
        {"removed", whole, {Remove(1), Remove(0), Describe("removed"), ok}, CPSUI_OK, 1, bare},
        {"cancelled", bare, {Install(0), Install(0), cancel}, CPSUI_CANCEL, 0, bare},
        {"cancelled after applying", bare, {Install(1), apply, Remove(0), cancel}, CPSUI_OK, 1, {3, 0, 1, 5}},
        {"no tray can be",
         {3, kNotApplicable, 0, 5},
         {Describe("shown"), Install(0), ok},
         CPSUI_OK,
         1,
         {7, kNotApplicable, 1, 5}},
        {"no duplex unit can be", {3, 0, kNotApplicable, 5}, {Install(0), ok}, CPSUI_OK, 1, {7, 1, kNotApplicable, 5}},
        {"the stapler stays", {3, 0, 4, 5}, {Install(1), ok}, CPSUI_OK, 1, {3, 0, 5, 5}},
    };
    InstalledPrinter printer(*environment_, PackageOf(kModel));
    for (const auto& c : cases) {
        SCOPED_TRACE(c.title);
        Record(c.title);
        printer.SetData(kDeviceInfo, REG_BINARY, &c.before, sizeof(c.before));
        const PrinterData before = printer.Data();
        const ChangeListener listener;
        EXPECT_EQ(ShowDeviceSheet(printer, c.steps), c.result);
        EXPECT_EQ(Text(StoredInfo(printer)), Text(c.after));
        EXPECT_EQ(listener.Printers(), std::vector<WideText>(c.commits, printer.Name()));
        PrinterData after = printer.Data();
        after[kDeviceInfo] = before.at(kDeviceInfo);
        EXPECT_TRUE(after == before) << "other printer data has changed";
    }
}

TEST_F(DeviceSheet, InEveryLanguage) {
    // A device mode that the model refuses: a banner on both sides.
    InstalledPrinter printer(*environment_, PackageOf(kModel));
    const DeviceInfo info = {3, 0, 1, 0};
    printer.SetData(kDeviceInfo, REG_BINARY, &info, sizeof(info));
    printer.SetDevMode(With(*DefaultDevMode(printer, printer.Name()).content, "dmPaperSize=600 dmDuplex=2").publicPart);
    for (const Language& language : kLanguages) {
        SCOPED_TRACE(language.name);
        Record(language.name);
        environment_->SetLanguage(language.id);
        printer.SetData(kDeviceInfo, REG_BINARY, &info, sizeof(info));
        const ChangeListener listener;
        const std::string suffix = std::string("-") + language.name;
        // Away from the screen's edges: the notice is wider than the sheet that it is centred on.
        const Step move = [] {
            SetWindowPos(FrontDialog(), nullptr, 100, 100, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        };
        const std::vector<Step> steps = {
            move,
            Describe("page"),
            TakePicture(*environment_, "device" + suffix),
            Install(0),
            InSheet(PSBTN_OK),
            Describe("notice"),
            TakePicture(*environment_, "conflict" + suffix),
            [] { PressButton(kNoticeOk); },
            Describe("after the notice"),
            InSheet(PSBTN_OK),  // the page still counts as changed
            [] { PressKey(VK_ESCAPE); },
            InSheet(PSBTN_CANCEL),
        };
        EXPECT_EQ(ShowDeviceSheet(printer, steps), CPSUI_CANCEL);
        EXPECT_EQ(listener.Printers().size(), 0u);
    }
}

TEST_F(DeviceSheet, ByTheKeyboardAlone) {
    InstalledPrinter printer(*environment_, PackageOf(kModel));
    const DeviceInfo bare = {3, 0, 0, 5};
    printer.SetData(kDeviceInfo, REG_BINARY, &bare, sizeof(bare));
    std::vector<Step> steps;
    const auto press = [&steps](const char* name, WORD key, std::initializer_list<WORD> modifiers = {}) {
        const std::vector<WORD> held = modifiers;
        steps.push_back([key, held] { held.empty() ? PressKey(key) : PressKey(key, {held[0]}); });
        steps.push_back([name] { Record(std::string(name) + ": focus " + std::to_string(FocusedControl())); });
    };
    steps.push_back([] { Record("opened: focus " + std::to_string(FocusedControl())); });
    for (int i = 0; i < 9; ++i) {
        press("Tab", VK_TAB);
    }
    press("Shift+Tab", VK_TAB, {VK_SHIFT});
    // The access keys of the two lists are those of the labels before them.
    const auto accessKey = [&steps](int control) {
        steps.push_back([control] {
            const WideText text = TextOf(Control(control));
            const size_t mark = text.find('&');
            ASSERT_LT(mark + 1, text.size()) << "no access key";
            const WCHAR key = text[mark + 1];
            PressKey(static_cast<WORD>(key >= 'a' && key <= 'z' ? key - ('a' - 'A') : key), {VK_MENU});
        });
        steps.push_back([control] {
            Record("access key of " + std::to_string(control) + ": focus " + std::to_string(FocusedControl()));
        });
    };
    accessKey(11003);
    press("Down", VK_DOWN);
    press("End", VK_END);
    steps.push_back(Describe("selected"));
    accessKey(kInstall);
    steps.push_back(Describe("installed"));
    accessKey(11003);
    press("Home", VK_HOME);
    press("Tab", VK_TAB);
    press("Space", VK_SPACE);
    steps.push_back(Describe("both installed"));
    // Enter presses the button that has the focus; from elsewhere, OK.
    accessKey(11003);
    steps.push_back([] { PressKey(VK_RETURN); });
    EXPECT_EQ(ShowDeviceSheet(printer, steps), CPSUI_OK);
    EXPECT_EQ(Text(StoredInfo(printer)), Text({7, 1, 1, 5}));

    EXPECT_EQ(ShowDeviceSheet(printer, {[] { PressKey(VK_ESCAPE); }}), CPSUI_CANCEL);
}

TEST_F(DeviceSheet, RefusedByItsHost) {
    InstalledPrinter printer(*environment_, PackageOf(kModel));
    EXPECT_LT(ShowDeviceSheet(printer, {}, 1), 0);
}

TEST_F(DeviceSheet, ByPrinterProperties) {
    InstalledPrinter printer(*environment_, PackageOf(kModel));
    const DeviceInfo bare = {3, 0, 0, 5};
    printer.SetData(kDeviceInfo, REG_BINARY, &bare, sizeof(bare));
    // The driver's export hands on to the spooler's client.
    BOOL shown = FALSE;
    RunWithUser(*environment_, {Install(0), InSheet(PSBTN_OK)},
                [&] { shown = printer.Driver().PrinterProperties(nullptr, printer.Handle()); });
    EXPECT_TRUE(shown);
    EXPECT_EQ(Text(StoredInfo(printer)), Text({7, 1, 0, 5}));
}

}  // namespace
}  // namespace contract
