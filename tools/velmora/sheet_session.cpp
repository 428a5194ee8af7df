#include "tools/velmora/sheet_session.h"

#include <commctrl.h>
#include <prsht.h>
#include <winspool.h>

#include <algorithm>
#include <exception>

#include "driver/entry/resource_module.h"
#include "platform/kernel/text.h"
#include "tools/velmora/command_error.h"
#include "tools/velmora/driver_library.h"
#include "tools/velmora/sheet_controls.h"
#include "tools/velmora/spooler_client.h"

namespace velmora {
namespace {

struct PageName {
    const char* name;
    UINT title;  // string of the language module
    bool isOnDeviceSheet;
};
constexpr PageName kPages[] = {
    {"paper", 5001, false},        {"color", 6001, false},  {"watermark", 7001, false}, {"output", 9001, false},
    {"information", 10001, false}, {"device", 11001, true}, {"about", 1099, false},
};

constexpr int kTabs = 0x3020;  // a sheet's own controls
constexpr int kApplyButton = 0x3021;

constexpr int kMostTries = 3;  // to close a dialog by its own means

const PageName& FindPageName(const SheetStep& step) {
    std::string known;
    for (const PageName& page : kPages) {
        if (step.text == page.name) {
            return page;
        }
        known += std::string(known.empty() ? "" : ", ") + page.name;
    }
    throw UsageError(step.place + ": there is no page \"" + step.text + "\"; expected one of " + known);
}

bool IsSheet(HWND window) {
    return GetDlgItem(window, kTabs) != nullptr;
}

HWND CurrentPage(HWND sheet) {
    return reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETCURRENTPAGEHWND, 0, 0));
}

std::vector<std::string> TabTitles(HWND sheet) {
    std::vector<std::string> titles;
    const HWND tabs = GetDlgItem(sheet, kTabs);
    const LRESULT count = SendMessageW(tabs, TCM_GETITEMCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        WCHAR text[128] = {};
        TCITEMW item = {};
        item.mask = TCIF_TEXT;
        item.pszText = text;
        item.cchTextMax = 128;
        SendMessageW(tabs, TCM_GETITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
        titles.push_back(host::ToUtf8(text));
    }
    return titles;
}

// What a dialog says: its caption, and the texts that it shows.
std::string DescribeDialog(HWND dialog) {
    std::string texts;
    for (HWND control = GetWindow(dialog, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
        WCHAR className[16] = {};
        GetClassNameW(control, className, 16);
        const std::string text = WindowText(control);
        if (std::u16string_view(className) == u"Static" && IsWindowVisible(control) && !text.empty()) {
            texts += (texts.empty() ? ": " : " ") + text;
        }
    }
    return "the dialog \"" + WindowText(dialog) + "\"" + texts;
}

// The machine's user. Called when a window waits for input, also from inside of what it has started itself.
class SheetUser {
  public:
    SheetUser(HANDLE printer, const std::vector<SheetStep>& steps) : steps_(steps) {
        const OwnedModule texts = LoadResourceModule(printer, nullptr);
        for (const PageName& page : kPages) {
            WCHAR title[128] = {};
            LoadStringW(texts.Get(), page.title, title, 128);
            titles_.push_back(host::ToUtf8(title));
        }
    }

    void Act() {
        const HWND front = GetActiveWindow();
        if (!front) {
            return;
        }
        if (error_ || next_ == steps_.size()) {
            Leave(front);
            return;
        }
        const SheetStep& step = steps_[next_++];
        // Nothing may be thrown through the windows' procedures.
        try {
            lastVerb_ = step.verb;
            Do(step, front);
        } catch (const CommandError& error) {
            Note(CommandError(step.place + ": " + error.what()));
        }
    }

    // To be called when the sheet is closed: what went wrong, and what came of the steps.
    void RethrowError() const {
        if (error_) {
            std::rethrow_exception(error_);
        }
    }
    void TakeResults(SheetSession* session) {
        if (next_ < steps_.size()) {
            throw CommandError(steps_[next_].place + ": the sheet was closed before this step");
        }
        session->pictures = std::move(pictures_);
        session->controls = std::move(controls_);
        session->end = lastVerb_ == SheetVerb::kOk ? SheetEnd::kOk
                       : hasApplied_               ? SheetEnd::kApplied
                                                   : SheetEnd::kCancelled;
    }

  private:
    void Note(const CommandError& error) {
        if (!error_) {
            error_ = std::make_exception_ptr(error);
        }
    }

    void Do(const SheetStep& step, HWND front) {
        const HWND dialog = IsSheet(front) ? CurrentPage(front) : front;
        switch (step.verb) {
            case SheetVerb::kPage:
                GoTo(RequireSheet(front), step);
                break;
            case SheetVerb::kSet:
                SetControl(FindControl(dialog, step.control), step.text);
                break;
            case SheetVerb::kPress:
                PressButton(FindControl(dialog, step.control));
                break;
            case SheetVerb::kControls:
                controls_.push_back(ReportControls(dialog, Title(front)));
                break;
            case SheetVerb::kPicture:
                Draw(dialog, step.text, Title(front));
                break;
            case SheetVerb::kSheetPicture:
                Draw(front, step.text, "\"" + WindowText(front) + "\"");
                break;
            case SheetVerb::kApply:
                PressApply(RequireSheet(front));
                break;
            case SheetVerb::kOk:
                PressButton(FindControl(RequireSheet(front), IDOK));
                break;
            case SheetVerb::kCancel:
                PressButton(FindControl(RequireSheet(front), IDCANCEL));
                break;
        }
    }

    static HWND RequireSheet(HWND front) {
        if (!IsSheet(front)) {
            throw CommandError("the sheet waits for " + DescribeDialog(front));
        }
        return front;
    }

    void GoTo(HWND sheet, const SheetStep& step) {
        const std::string& title = titles_[static_cast<size_t>(&FindPageName(step) - kPages)];
        const std::vector<std::string> tabs = TabTitles(sheet);
        const auto found = std::ranges::find(tabs, title);
        if (found == tabs.end()) {
            std::string known;
            for (const std::string& tab : tabs) {
                const auto name = std::ranges::find(titles_, tab);
                known += (known.empty() ? "" : ", ") +
                         (name != titles_.end() ? kPages[name - titles_.begin()].name : "\"" + tab + "\"");
            }
            throw CommandError("the sheet has no page \"" + step.text + "\"; it has " + known +
                               (step.text == "paper" ? "; models without custom sizes have no Paper page" : ""));
        }
        const auto index = static_cast<WPARAM>(found - tabs.begin());
        if (!SendMessageW(sheet, PSM_SETCURSEL, index, 0)) {
            throw CommandError("the page \"" + step.text + "\" can't be shown");
        }
    }

    void PressApply(HWND sheet) {
        const HWND button = GetDlgItem(sheet, kApplyButton);
        if (!button || !IsWindowEnabled(button)) {
            throw CommandError("there is nothing to apply");
        }
        PressButton(button);
        hasApplied_ |= !IsWindowEnabled(button);
    }

    void Draw(HWND window, const std::string& file, const std::string& what) {
        if (!host::SavePicture(window, file)) {
            throw CommandError("the picture " + file + " can't be written");
        }
        RECT rect;
        GetWindowRect(window, &rect);
        pictures_.push_back(file + ": " + what + ", " + std::to_string(rect.right - rect.left) + " x " +
                            std::to_string(rect.bottom - rect.top) + " pixels");
    }

    // The page's title; the dialog's caption.
    static std::string Title(HWND front) {
        if (!IsSheet(front)) {
            return WindowText(front);
        }
        const auto index = static_cast<size_t>(SendDlgItemMessageW(front, kTabs, TCM_GETCURSEL, 0, 0));
        const std::vector<std::string> titles = TabTitles(front);
        return index < titles.size() ? titles[index] : "";
    }

    // When the steps are done or one has failed: closes whatever is open, and says where a step left that.
    void Leave(HWND front) {
        tries_ = front == leaving_ ? tries_ + 1 : 0;
        leaving_ = front;
        const std::string place = steps_.empty() ? "" : steps_[next_ - 1].place + ": ";
        if (tries_ == kMostTries) {
            Note(CommandError(place + DescribeDialog(front) + " doesn't close"));
            EndDialog(front, -1);
            DestroyWindow(front);
        } else if (IsSheet(front)) {
            if (lastVerb_ == SheetVerb::kOk) {
                Note(CommandError(place + "the sheet stays open: a page doesn't take its settings"));
            }
            SendMessageW(front, PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
        } else {
            Note(CommandError(place + "no step answers " + DescribeDialog(front)));
            SendMessageW(front, WM_COMMAND, IDCANCEL, 0);
        }
    }

    const std::vector<SheetStep>& steps_;
    std::vector<std::string> titles_;  // of kPages, in the user's language
    size_t next_ = 0;
    SheetVerb lastVerb_ = SheetVerb::kPage;
    bool hasApplied_ = false;
    std::vector<std::string> pictures_;
    std::vector<Table> controls_;
    std::exception_ptr error_;
    HWND leaving_ = nullptr;
    int tries_ = 0;
};

bool IsOnDeviceSheet(const std::vector<SheetStep>& steps) {
    const auto first = std::ranges::find_if(steps, [](const SheetStep& step) { return step.verb == SheetVerb::kPage; });
    for (const SheetStep& step : steps) {
        if (step.verb == SheetVerb::kPage) {
            FindPageName(step);  // all of them, before anything is done
        }
    }
    return first != steps.end() && FindPageName(*first).isOnDeviceSheet;
}

// While it lives, the machine has this user.
class UserInFront {
  public:
    UserInFront(host::Machine& machine, SheetUser& user) : machine_(machine) {
        machine_.SetUser([&user] { user.Act(); });
    }
    ~UserInFront() { machine_.SetUser(nullptr); }
    UserInFront(const UserInFront&) = delete;
    UserInFront& operator=(const UserInFront&) = delete;

  private:
    host::Machine& machine_;
};

}  // namespace

SheetSession RunSheet(host::Machine& machine, HANDLE printer, const std::string& printerName,
                      const std::vector<SheetStep>& steps, const VelmoraDevMode& devMode) {
    SheetSession session = {IsOnDeviceSheet(steps), SheetEnd::kCancelled, {}, {}, devMode, {}};
    const std::vector<std::string> openBefore = host::StillOpen();
    SheetUser user(printer, steps);
    const UserInFront inFront(machine, user);
    bool isShown = false;
    if (session.isDeviceSheet) {
        isShown = PrinterProperties(nullptr, printer) != FALSE;
    } else {
        std::u16string name = host::ToWide(printerName);
        VelmoraDevMode input = devMode;
        isShown = DocumentPropertiesW(nullptr, printer, name.data(), &session.devMode.publicPart, &input.publicPart,
                                      DM_IN_BUFFER | DM_OUT_BUFFER | DM_PROMPT) >= 0;
    }
    const DWORD error = GetLastError();
    user.RethrowError();
    if (!isShown) {
        ThrowRefused(session.isDeviceSheet ? "PrinterProperties" : "DocumentPropertiesW", error);
    }
    user.TakeResults(&session);
    session.leftOpen = OpenedSince(openBefore);
    return session;
}

}  // namespace velmora
