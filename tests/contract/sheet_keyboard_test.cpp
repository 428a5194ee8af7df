// The sheets' pages by the keyboard alone: the Tab key reaches each control in the order of the page, and each access
// key its control.
#include <windows.h>

#include <commctrl.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/contract/sheet_test.h"
#include "tests/contract/transcript.h"

namespace contract {
namespace {

constexpr int kMostPages = 5;
constexpr int kMostStops = 40;  // of the Tab key on a page, with the sheet's own
constexpr int kMostKeys = 30;   // access keys of a page

bool Has(HWND window, LONG_PTR styles) {
    return (GetWindowLongPtrW(window, GWL_STYLE) & styles) == styles;
}

bool CanBeUsed(HWND window) {
    return Has(window, WS_VISIBLE) && !Has(window, WS_DISABLED);
}

std::vector<HWND> ControlsOf(HWND page) {
    std::vector<HWND> controls;
    for (HWND child = GetWindow(page, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        controls.push_back(child);
    }
    return controls;
}

// The page's control that has the focus, itself or by what is in it; null where it is elsewhere.
HWND FocusOn(HWND page) {
    for (HWND window = GetFocus(); window != nullptr; window = GetParent(window)) {
        if (GetParent(window) == page) {
            return window;
        }
    }
    return nullptr;
}

// Where an access key leads: the control whose text has it, or, from a label, the one after it.
HWND TargetOf(const std::vector<HWND>& controls, size_t index) {
    const LRESULT code = SendMessageW(controls[index], WM_GETDLGCODE, 0, 0);
    return (code & DLGC_STATIC) == 0 ? controls[index] : index + 1 < controls.size() ? controls[index + 1] : nullptr;
}

// The access key of a text as a virtual key; 0: none.
WORD AccessKeyOf(const WideText& text) {
    const size_t mark = text.find('&');
    if (mark == WideText::npos || mark + 1 == text.size()) {
        return 0;
    }
    const WCHAR key = text[mark + 1];
    return static_cast<WORD>(key >= 'a' && key <= 'z' ? key - ('a' - 'A') : key);
}

HWND TabsOf(HWND sheet) {
    return reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETTABCONTROL, 0, 0));
}

class SheetKeyboard : public SheetTest {
  protected:
    // Steps that walk over the front page by the Tab key until it comes back to where it began.
    void WalkByTab() {
        struct Walk {
            std::vector<HWND> stops;  // that are to be reached
            std::vector<HWND> reached;
            std::string line;
            bool isOver = false;
        };
        const auto walk = std::make_shared<Walk>();
        steps_.push_back([walk] {
            for (const HWND control : ControlsOf(FrontPage())) {
                if (CanBeUsed(control) && Has(control, WS_TABSTOP)) {
                    walk->stops.push_back(control);
                }
            }
            SetFocus(walk->stops.front());
        });
        for (int i = 0; i < kMostStops; ++i) {
            steps_.push_back([walk] {
                const HWND control = FocusOn(FrontPage());
                walk->isOver = walk->isOver || (!walk->reached.empty() && control == walk->stops.front());
                if (walk->isOver) {
                    return;
                }
                if (control != nullptr) {
                    walk->reached.push_back(control);
                }
                walk->line += ' ' + std::to_string(control != nullptr ? GetDlgCtrlID(control) : FocusedControl());
                PressKey(VK_TAB);
            });
        }
        steps_.push_back([walk] {
            Record("  Tab:" + walk->line);
            EXPECT_TRUE(walk->isOver) << "Tab doesn't come back:" << walk->line;
            EXPECT_EQ(walk->reached, walk->stops) << "Tab leaves something out:" << walk->line;
        });
    }

    // Steps that press the access keys of the front page. What was checked by them is unchecked again, and a dialog
    // that was opened is closed.
    void PressAccessKeys() {
        struct Keys {
            HWND sheet = nullptr;
            std::string line;
        };
        const auto keys = std::make_shared<Keys>();
        steps_.push_back([keys] { keys->sheet = FrontDialog(); });
        for (int n = 0; n < kMostKeys; ++n) {
            const auto target = std::make_shared<HWND>(nullptr);
            const auto key = std::make_shared<WORD>(WORD{0});
            steps_.push_back([n, target, key] {
                const std::vector<HWND> controls = ControlsOf(FrontPage());
                int left = n;
                for (size_t i = 0; i < controls.size(); ++i) {
                    const WORD found = AccessKeyOf(TextOf(controls[i]));
                    if (found == 0 || left-- > 0) {
                        continue;
                    }
                    *target = TargetOf(controls, i);
                    if (*target != nullptr && CanBeUsed(controls[i]) && CanBeUsed(*target)) {
                        *key = found;
                        SetFocus(nullptr);
                        SetFocus(GetNextDlgTabItem(FrontPage(), nullptr, TRUE));
                        PressKey(*key, {VK_MENU});
                    }
                    return;
                }
            });
            steps_.push_back([keys, target, key] {
                if (*key == 0) {
                    return;
                }
                const std::string id = std::to_string(GetDlgCtrlID(*target));
                keys->line += ' ' + id;
                if (FrontDialog() != keys->sheet) {
                    keys->line += " opens a dialog,";
                    PressKey(VK_ESCAPE);
                    return;
                }
                // A button that is pressed may take itself off.
                EXPECT_TRUE(FocusOn(FrontPage()) == *target || !CanBeUsed(*target))
                    << id << " isn't reached by " << static_cast<char>(*key) << ", but " << FocusedControl();
                const bool isCheckBox = (SendMessageW(*target, WM_GETDLGCODE, 0, 0) & DLGC_BUTTON) != 0 &&
                                        (GetWindowLongPtrW(*target, GWL_STYLE) & BS_TYPEMASK) == BS_AUTOCHECKBOX;
                if (isCheckBox) {
                    keys->line += SendMessageW(*target, BM_GETCHECK, 0, 0) == BST_CHECKED ? " checked" : " unchecked";
                    PressKey(VK_SPACE);
                }
            });
        }
        steps_.push_back([keys] { Record("  access keys:" + keys->line); });
    }

    std::vector<Step> steps_;
};

TEST_F(SheetKeyboard, ReachesEverything) {
    struct Device {
        DWORD installedOptions;
        DWORD secondTray;
        DWORD duplexUnit;
        DWORD memoryKey;
    };
    constexpr Device kBare = {3, 0, 0, 5};
    constexpr Device kWhole = {7, 1, 1, 5};
    const struct {
        const char* model;
        Device device;
        Language language;
    } sheets[] = {
        {"VELMORA-C3200.XPI", kBare, kLanguages[0]},  {"VELMORA-C3200.XPI", kWhole, kLanguages[1]},
        {"VELMORA-I700.XPI", kWhole, kLanguages[0]},  {"VELMORA-M2100.XPI", kBare, kLanguages[1]},
        {"VELMORA-M2100.XPI", kWhole, kLanguages[2]},
    };
    for (const auto& sheet : sheets) {
        const std::string title = std::string(sheet.model) + ' ' + sheet.language.name;
        SCOPED_TRACE(title);
        Record(title);
        environment_->SetLanguage(sheet.language.id);
        InstalledPrinter printer(*environment_, PackageOf(sheet.model));
        printer.SetData(TEXT("DeviceInfo"), REG_BINARY, &sheet.device, sizeof(sheet.device));
        steps_.clear();
        for (int page = 0; page < kMostPages; ++page) {
            if (page > 0) {
                steps_.push_back([] {
                    SetFocus(TabsOf(FrontDialog()));
                    PressKey(VK_RIGHT);
                });
            }
            steps_.push_back(
                [] { Record(" page " + std::to_string(SendMessageW(TabsOf(FrontDialog()), TCM_GETCURSEL, 0, 0))); });
            WalkByTab();
            PressAccessKeys();
        }
        steps_.push_back([] { PressKey(VK_ESCAPE); });
        ShowDocumentSheet(printer, steps_);
    }
}

}  // namespace
}  // namespace contract
