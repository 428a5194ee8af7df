// The sheets' pages by the keyboard alone: the Tab key reaches each control in the order of the page, and each access
// key its control.
#include <windows.h>

#include <commctrl.h>

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

HWND TabsOf(HWND sheet) {
    return reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETTABCONTROL, 0, 0));
}

class SheetKeyboard : public SheetTest {
  protected:
    // Steps that walk over the front page by the Tab key until it comes back to where it began.
    void WalkByTab() {
        steps_.push_back([this] {
            stops_.clear();
            reached_.clear();
            line_.clear();
            for (const HWND control : ControlsOf(FrontPage())) {
                if (CanBeUsed(control) && Has(control, WS_TABSTOP)) {
                    stops_.push_back(control);
                }
            }
            SetFocus(stops_.front());
        });
        for (int i = 0; i < kMostStops; ++i) {
            steps_.push_back([this] {
                const HWND control = FocusOn(FrontPage());
                if (IsBack(control)) {
                    return;
                }
                if (control != nullptr) {
                    reached_.push_back(control);
                }
                line_ += ' ' + std::to_string(control != nullptr ? GetDlgCtrlID(control) : FocusedControl());
                PressKey(VK_TAB);
            });
        }
        steps_.push_back([this] {
            Record("  Tab:" + line_);
            EXPECT_TRUE(IsBack(FocusOn(FrontPage()))) << "Tab doesn't come back:" << line_;
            EXPECT_EQ(reached_, stops_) << "Tab leaves something out:" << line_;
        });
    }
    bool IsBack(HWND control) const { return !reached_.empty() && control == stops_.front(); }

    // Steps that press the access keys of the front page. What was checked by them is unchecked again, and a dialog
    // that was opened is closed.
    void PressAccessKeys() {
        steps_.push_back([this] {
            sheet_ = FrontDialog();
            line_.clear();
        });
        for (int n = 0; n < kMostKeys; ++n) {
            steps_.push_back([this, n] { PressAccessKey(n); });
            steps_.push_back([this] { CheckReached(); });
        }
        steps_.push_back([this] { Record("  access keys:" + line_); });
    }

    // The nth of the front page, where its control can be used.
    void PressAccessKey(int n) {
        key_ = 0;
        const std::vector<HWND> controls = ControlsOf(FrontPage());
        for (size_t i = 0; i < controls.size(); ++i) {
            const WORD found = AccessKeyOf(TextOf(controls[i]));
            if (found == 0 || n-- > 0) {
                continue;
            }
            target_ = TargetOf(controls, i);
            if (target_ != nullptr && CanBeUsed(controls[i]) && CanBeUsed(target_)) {
                key_ = found;
                SetFocus(nullptr);
                SetFocus(GetNextDlgTabItem(FrontPage(), nullptr, TRUE));
                PressKey(key_, {VK_MENU});
            }
            return;
        }
    }

    void CheckReached() {
        if (key_ == 0) {
            return;
        }
        const std::string id = std::to_string(GetDlgCtrlID(target_));
        line_ += ' ' + id;
        if (FrontDialog() != sheet_) {
            line_ += " opens a dialog,";
            PressKey(VK_ESCAPE);
            return;
        }
        // A button that is pressed may take itself off.
        EXPECT_TRUE(FocusOn(FrontPage()) == target_ || !CanBeUsed(target_))
            << id << " isn't reached by " << static_cast<char>(key_) << ", but " << FocusedControl();
        const bool isCheckBox = (SendMessageW(target_, WM_GETDLGCODE, 0, 0) & DLGC_BUTTON) != 0 &&
                                (GetWindowLongPtrW(target_, GWL_STYLE) & BS_TYPEMASK) == BS_AUTOCHECKBOX;
        if (isCheckBox) {
            line_ += SendMessageW(target_, BM_GETCHECK, 0, 0) == BST_CHECKED ? " checked" : " unchecked";
            PressKey(VK_SPACE);
        }
    }

    std::vector<HWND> stops_;  // that are to be reached
    std::vector<HWND> reached_;
    std::string line_;
    HWND sheet_ = nullptr;
    HWND target_ = nullptr;  // of the access key
    WORD key_ = 0;           // 0: none was pressed
    std::vector<Step> steps_;
};

TEST_F(SheetKeyboard, ReachesEverything) {
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
        Install(printer, sheet.device);
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
