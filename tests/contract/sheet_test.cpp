#include "tests/contract/sheet_test.h"

#include <commctrl.h>

#include <cstring>
#include <type_traits>
#include <utility>

#include "tests/contract/transcript.h"
#include "tests/driver/changed_devmode.h"

namespace contract {
namespace {

using velmora::VelmoraDevMode;

// The part of an editable combo box that is typed into.
HWND EditOf(HWND comboBox) {
    HWND child = GetWindow(comboBox, GW_CHILD);
    while (child != nullptr && ClassOf(child) != TEXT("Edit")) {
        child = GetWindow(child, GW_HWNDNEXT);
    }
    return child;
}

std::string Number(HWND window, UINT message, WPARAM wParam = 0) {
    return std::to_string(static_cast<int>(SendMessageW(window, message, wParam, 0)));
}

std::string ItemValue(HWND comboBox, WPARAM item) {
    return Number(comboBox, CB_GETITEMDATA, item);
}

std::string ContentOf(HWND window) {
    const WideText windowClass = ClassOf(window);
    if (windowClass == TEXT("ComboBox")) {
        const LRESULT item = SendMessageW(window, CB_GETCURSEL, 0, 0);
        return item < 0 ? "nothing" : ItemValue(window, static_cast<WPARAM>(item));
    }
    if (windowClass == TEXT("ListBox")) {
        return "item " + Number(window, LB_GETCURSEL) + " of " + Number(window, LB_GETCOUNT);
    }
    if (windowClass == TEXT("ScrollBar")) {
        return "at " + Number(window, SBM_GETPOS);
    }
    if (windowClass == TEXT("msctls_updown32")) {
        int lowest = 0;
        int highest = 0;
        SendMessageW(window, UDM_GETRANGE32, reinterpret_cast<WPARAM>(&lowest), reinterpret_cast<LPARAM>(&highest));
        return std::to_string(lowest) + ".." + std::to_string(highest) + " at " + Number(window, UDM_GETPOS32);
    }
    if (windowClass == TEXT("Button")) {
        const LRESULT code = SendMessageW(window, WM_GETDLGCODE, 0, 0);
        const bool isPushButton = (code & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0;
        return isPushButton ? "" : SendMessageW(window, BM_GETCHECK, 0, 0) == BST_CHECKED ? "checked" : "unchecked";
    }
    return Printable(TextOf(window));
}

std::string StateOf(HWND window) {
    const LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE);
    const std::string content = ContentOf(window);
    return std::string((style & WS_VISIBLE) == 0    ? "hidden"
                       : (style & WS_DISABLED) != 0 ? "off"
                                                    : "on") +
           (content.empty() ? "" : ' ' + content);
}

// Of a rendered watermark's path, which is named by the time, only the extension stands.
VelmoraDevMode WithoutPath(const VelmoraDevMode& devMode) {
    VelmoraDevMode changed = devMode;
    const WideText path = TextOf(devMode.privatePart.watermarkFile);
    if (path.find('\\') != WideText::npos) {
        WCHAR name[std::extent_v<decltype(devMode.privatePart.watermarkFile)>] = {'*'};
        path.substr(path.rfind('.')).copy(name + 1, std::size(name) - 2);
        memcpy(changed.privatePart.watermarkFile, name, sizeof(name));
    }
    return changed;
}

}  // namespace

void Install(InstalledPrinter& printer, const Device& device) {
    printer.SetData(TEXT("DeviceInfo"), REG_BINARY, &device, sizeof(device));
}

std::vector<Step> operator+(std::vector<Step> steps, const std::vector<Step>& more) {
    steps.insert(steps.end(), more.begin(), more.end());
    return steps;
}

void SheetTest::InEachLanguage(const std::function<void()>& show) {
    for (const Language& language : kLanguages) {
        SCOPED_TRACE(language.name);
        Record(language.name);
        language_ = language;
        environment_->SetLanguage(language.id);
        show();
    }
}

Step SheetTest::Picture(const std::string& name) {
    return TakePicture(*environment_, name + '-' + language_.name);
}

std::vector<Step> SheetTest::Look(const std::string& name, const std::vector<int>& hostsOwn) {
    return {Describe(name, hostsOwn), Picture(name)};
}

LONG SheetTest::ShowDeviceSheet(InstalledPrinter& printer, std::vector<Step> steps, size_t refusedPage) {
    DEVICEPROPERTYHEADER header = {};
    header.cbSize = sizeof(header);
    header.hPrinter = printer.Handle();
    header.pszPrinterName = printer.NameArgument();
    SheetHost host(printer.Driver().DrvDevicePropertySheets, &header);
    host.RefusePage(refusedPage);
    LONG result = 0;
    RunWithUser(*environment_, std::move(steps), [&] { result = host.Run(); });
    for (const std::string& call : host.Calls()) {
        Record("  " + call);
    }
    return result;
}

LONG SheetTest::ShowDocumentSheet(InstalledPrinter& printer, std::vector<Step> steps, const VelmoraDevMode& input,
                                  DevModeBuffer* output) {
    VelmoraDevMode given = input;
    LONG result = 0;
    RunWithUser(*environment_, std::move(steps), [&] {
        result = DocumentPropertiesW(nullptr, printer.Handle(), printer.NameArgument(), output->Get(),
                                     &given.publicPart, DM_IN_BUFFER | DM_OUT_BUFFER | DM_PROMPT);
    });
    return result;
}

LONG SheetTest::ShowDocumentSheet(InstalledPrinter& printer, std::vector<Step> steps) {
    DevModeBuffer output;
    return ShowDocumentSheet(printer, std::move(steps), *DefaultDevMode(printer, printer.Name()).content, &output);
}

VelmoraDevMode SheetTest::AppliedDevMode(InstalledPrinter& printer) {
    constexpr int kCollate = 5019;
    constexpr int kResolutionFlag = 6033;
    const DevModeBuffer input = DefaultDevMode(printer, printer.Name());
    DevModeBuffer output;
    const std::vector<Step> steps = {Press(kCollate),        Press(kCollate),        TurnTo(1),
                                     Press(kResolutionFlag), Press(kResolutionFlag), InSheet(PSBTN_OK)};
    EXPECT_EQ(ShowDocumentSheet(printer, steps, *input.content, &output), IDOK);
    return *output.content;
}

void SheetTest::CheckSheet(InstalledPrinter& printer, const char* title, const VelmoraDevMode& devMode,
                           std::vector<Step> steps, const std::string& written) {
    SCOPED_TRACE(title);
    Record(title);
    steps.push_back(InSheet(PSBTN_OK));
    DevModeBuffer output;
    EXPECT_EQ(ShowDocumentSheet(printer, std::move(steps), devMode, &output), IDOK);
    const std::string changes = Changes(devMode, *output.content);
    EXPECT_EQ(changes, written);
    Record("  gets " + changes);
}

void DocumentSheetTest::InstallDevice(const Device& device) {
    Install(printer_, device);
    applied_.reset();
}

void DocumentSheetTest::Check(const char* title, const char* settings, std::vector<Step> steps,
                              const std::string& written) {
    if (!applied_) {
        applied_ = AppliedDevMode(printer_);
    }
    CheckSheet(printer_, title, driver_test::With(*applied_, settings), std::move(steps), written);
}

std::string Changes(const VelmoraDevMode& before, const VelmoraDevMode& after) {
    static constexpr std::string_view kIs = " is ";
    static constexpr std::string_view kFirst = "[0]";
    std::string text;
    for (const std::string& line : Differences(WithoutPath(before), WithoutPath(after))) {
        const size_t is = line.find(kIs);
        std::string name = line.substr(0, is);
        if (name.ends_with(kFirst)) {
            name.resize(name.size() - kFirst.size());
        }
        const size_t value = is + kIs.size();
        text += (text.empty() ? "" : " ") + name +
                (is == std::string::npos ? "" : '=' + line.substr(value, line.rfind(", not ") - value));
    }
    return text;
}

Step InSheet(int button) {
    return [button] { PressInSheet(button); };
}

Step TurnTo(int page) {
    return [page] {
        SendMessageW(FrontDialog(), PSM_SETCURSEL, static_cast<WPARAM>(page), 0);
        // Hosts differ in where the focus is then.
        SetFocus(GetNextDlgTabItem(FrontPage(), nullptr, FALSE));
    };
}

Step Press(int button) {
    return [button] { PressButton(button); };
}

Step Choose(int comboBox, int value) {
    return [=] {
        const HWND box = Control(comboBox);
        const LRESULT count = SendMessageW(box, CB_GETCOUNT, 0, 0);
        for (WPARAM item = 0; item < static_cast<WPARAM>(count); ++item) {
            if (ItemValue(box, item) == std::to_string(value)) {
                ChooseItem(comboBox, static_cast<int>(item))();
                return;
            }
        }
        ADD_FAILURE() << comboBox << " doesn't offer " << value;
    };
}

Step ChooseItem(int comboBox, int item) {
    return [=] {
        const HWND box = Control(comboBox);
        EXPECT_EQ(SendMessageW(box, CB_SETCURSEL, static_cast<WPARAM>(item), 0), item);
        SendMessageW(FrontPage(), WM_COMMAND, MAKEWPARAM(comboBox, CBN_SELCHANGE), reinterpret_cast<LPARAM>(box));
    };
}

Step Type(int edit, const WideText& text) {
    return [=] {
        const HWND control = Control(edit);
        const HWND window = ClassOf(control) == TEXT("ComboBox") ? EditOf(control) : control;
        SetFocus(window);
        SendMessageW(window, EM_SETSEL, 0, -1);
        SendMessageW(window, WM_CLEAR, 0, 0);
        for (const WCHAR character : text) {
            SendMessageW(window, WM_CHAR, character, 1);
        }
    };
}

Step Leave() {
    return [] { SendMessageW(FrontPage(), WM_NEXTDLGCTL, 0, 0); };
}

Step See(int control, const std::string& expected) {
    return [=] {
        const std::string seen = StateOf(Control(control));
        EXPECT_EQ(seen, expected) << "control " << control;
        Record("  " + std::to_string(control) + ' ' + seen);
    };
}

Step SeeOffered(int comboBox, const std::string& expected) {
    return [=] {
        const HWND box = Control(comboBox);
        std::string offered;
        const LRESULT count = SendMessageW(box, CB_GETCOUNT, 0, 0);
        for (WPARAM item = 0; item < static_cast<WPARAM>(count); ++item) {
            offered += (item > 0 ? " " : "") + ItemValue(box, item);
        }
        EXPECT_EQ(offered, expected) << "control " << comboBox;
        Record("  " + std::to_string(comboBox) + " offers " + offered);
    };
}

}  // namespace contract
