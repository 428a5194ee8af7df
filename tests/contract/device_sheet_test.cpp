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

constexpr WCHAR kDeviceInfo[] = TEXT("DeviceInfo");

// Controls of the page and of notices.
constexpr int kAvailable = 11004, kInstall = 11005, kInstalled = 11007, kRemove = 11008, kNoticeOk = 1604;

constexpr DWORD kNotApplicable = 0xFFFFFFFF;

std::string Text(const Device& device) {
    return Hex(reinterpret_cast<const BYTE*>(&device), sizeof(device));
}

// The printer data "DeviceInfo" as text.
std::string StoredText(const InstalledPrinter& printer) {
    const std::vector<BYTE> bytes = printer.Data().at(kDeviceInfo).bytes;
    return Hex(bytes.data(), bytes.size());
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
Step Add(int item) {
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
    InstalledPrinter printer(*environment_, PackageOf(kColorModel));
    // Over a device, `commits` times of a change, after which the device is another.
    const auto check = [&](const char* title, const Device& device, std::vector<Step> steps, size_t commits,
                           const Device& after, LONG result = CPSUI_OK) {
        SCOPED_TRACE(title);
        Record(title);
        Install(printer, device);
        const PrinterData before = printer.Data();
        const ChangeListener listener;
        EXPECT_EQ(ShowDeviceSheet(printer, std::move(steps)), result);
        EXPECT_EQ(StoredText(printer), Text(after));
        EXPECT_EQ(listener.Printers(), std::vector<WideText>(commits, printer.Name()));
        PrinterData data = printer.Data();
        data[kDeviceInfo] = before.at(kDeviceInfo);
        EXPECT_TRUE(data == before) << "other printer data has changed";
    };
    const Step ok = InSheet(PSBTN_OK);
    const Step apply = InSheet(PSBTN_APPLYNOW);
    const Step cancel = InSheet(PSBTN_CANCEL);
    check("nothing changed", kBare, {ok}, 0, kBare);
    check("nothing selected", kBare, {Press(kInstall), Press(kRemove), Describe("pressed"), ok}, 0, kBare);
    check("the tray", kBare, {Add(0), Describe("installed"), ok}, 1, {7, 1, 0, 5});
    check("the duplex unit", kBare, {Add(1), Describe("installed"), ok}, 1, kWithDuplex);
    check("one by one", kBare, {Add(0), apply, Describe("applied"), Add(0), apply, ok}, 2, kWhole);
    check("there and back", kBare, {Add(0), Remove(0), apply, ok}, 1, kBare);
    check("removed", kWhole, {Remove(1), Remove(0), Describe("removed"), ok}, 1, kBare);
    check("cancelled", kBare, {Add(0), Add(0), cancel}, 0, kBare, CPSUI_CANCEL);
    check("cancelled after applying", kBare, {Add(1), apply, Remove(0), cancel}, 1, kWithDuplex);
    check("no tray can be", {3, kNotApplicable, 0, 5}, {Describe("shown"), Add(0), ok}, 1, {7, kNotApplicable, 1, 5});
    check("no duplex unit can be", {3, 0, kNotApplicable, 5}, {Add(0), ok}, 1, {7, 1, kNotApplicable, 5});
    check("the stapler stays", {3, 0, 4, 5}, {Add(1), ok}, 1, {3, 0, 5, 5});
}

TEST_F(DeviceSheet, InEveryLanguage) {
    // A device mode that the model refuses: a banner on both sides.
    InstalledPrinter printer(*environment_, PackageOf(kColorModel));
    constexpr Device kDevice = {3, 0, 1, 0};
    Install(printer, kDevice);
    printer.SetDevMode(With(*DefaultDevMode(printer, printer.Name()).content, "dmPaperSize=600 dmDuplex=2").publicPart);
    InEachLanguage([&] {
        Install(printer, kDevice);
        const ChangeListener listener;
        // Away from the screen's edges: the notice is wider than the sheet that it is centred on.
        const Step move = [] {
            SetWindowPos(FrontDialog(), nullptr, 100, 100, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        };
        const std::vector<Step> steps = {
            move,
            Describe("page"),
            Picture("device"),
            Add(0),
            InSheet(PSBTN_OK),
            Describe("notice"),
            Picture("conflict"),
            Press(kNoticeOk),
            Describe("after the notice"),
            InSheet(PSBTN_OK),  // the page still counts as changed
            [] { PressKey(VK_ESCAPE); },
            InSheet(PSBTN_CANCEL),
        };
        EXPECT_EQ(ShowDeviceSheet(printer, steps), CPSUI_CANCEL);
        EXPECT_EQ(listener.Printers().size(), 0u);
    });
}

TEST_F(DeviceSheet, ByTheKeyboardAlone) {
    InstalledPrinter printer(*environment_, PackageOf(kColorModel));
    Install(printer, kBare);
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
            const WORD key = AccessKeyOf(TextOf(Control(control)));
            ASSERT_NE(key, 0) << "no access key";
            PressKey(key, {VK_MENU});
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
    EXPECT_EQ(StoredText(printer), Text({7, 1, 1, 5}));

    EXPECT_EQ(ShowDeviceSheet(printer, {[] { PressKey(VK_ESCAPE); }}), CPSUI_CANCEL);
}

TEST_F(DeviceSheet, RefusedByItsHost) {
    InstalledPrinter printer(*environment_, PackageOf(kColorModel));
    EXPECT_LT(ShowDeviceSheet(printer, {}, 1), 0);
}

TEST_F(DeviceSheet, ByPrinterProperties) {
    InstalledPrinter printer(*environment_, PackageOf(kColorModel));
    Install(printer, kBare);
    // The driver's export hands on to the spooler's client.
    BOOL shown = FALSE;
    RunWithUser(*environment_, {Add(0), InSheet(PSBTN_OK)},
                [&] { shown = printer.Driver().PrinterProperties(nullptr, printer.Handle()); });
    EXPECT_TRUE(shown);
    EXPECT_EQ(StoredText(printer), Text({7, 1, 0, 5}));
}

}  // namespace
}  // namespace contract
