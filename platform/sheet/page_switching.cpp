// Which page of a sheet is shown, and how another comes in its place.
#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "platform/kernel/failures.h"
#include "platform/sheet/property_sheet.h"
#include "platform/sheet/sheet_window.h"
#include "platform/user/dialogs.h"

namespace host {
namespace {

constexpr LRESULT kActivateAnother = -1;  // answer to PSN_SETACTIVE

}  // namespace

bool PropertySheet::Make(size_t index) {
    SheetPage& page = pages_[index];
    if (!page.window) {
        const size_t before = std::exchange(making_, index);
        const HWND window = MakeModelessDialog(page.given->hInstance, page.dialog, sheet_, page.given->pfnDlgProc,
                                               reinterpret_cast<LPARAM>(page.given));
        making_ = before;
        page.window = window;
    }
    return IsWindow(page.window);
}

void PropertySheet::Remove(size_t index) {
    SendMessageW(Control(kSheetTabs), TCM_DELETEITEM, index, 0);
    DestroyPropertySheetPage(pages_[index].handle);
    pages_.erase(pages_.begin() + static_cast<ptrdiff_t>(index));
    if (active_ != kNone && active_ >= index) {
        active_ = active_ == index ? kNone : active_ - 1;
    }
}

void PropertySheet::Show(size_t index) {
    const HWND before = active_ != kNone && active_ != index ? pages_[active_].window : nullptr;
    const HWND page = pages_[index].window;
    active_ = index;
    SendMessageW(Control(kSheetTabs), TCM_SETCURSEL, index, 0);
    if (const HWND help = Control(kSheetHelp)) {
        EnableWindow(help, pages_[index].HasHelp());
    }
    SetWindowPos(page, HWND_TOP, place_.left, place_.top, place_.right - place_.left, place_.bottom - place_.top,
                 SWP_NOACTIVATE | SWP_SHOWWINDOW);
    if (IsWindowVisible(sheet_) && GetFocus() != Control(kSheetTabs)) {
        FocusPage();
    }
    if (before) {
        ShowWindow(before, SW_HIDE);
    }
}

void PropertySheet::FocusPage() {
    HWND control = active_ == kNone ? nullptr : GetNextDlgTabItem(pages_[active_].window, nullptr, FALSE);
    if (!control) {
        control = Control(kSheetTabs);
    }
    SendMessageW(sheet_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control), TRUE);
}

// 0 where the page has no window.
LRESULT PropertySheet::Notify(size_t index, UINT code, LPARAM parameter) {
    if (index == kNone || !IsWindow(pages_[index].window)) {
        return 0;
    }
    PSHNOTIFY notification = {{sheet_, 0, code}, parameter};
    return SendMessageW(pages_[index].window, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&notification));
}

bool PropertySheet::MayLeave() {
    return Notify(active_, PSN_KILLACTIVE) == 0 && IsOpen();
}

// Shows the page, or the next one (the one before) where the page can't be made or asks for another. The page that is
// left has agreed before.
bool PropertySheet::Activate(size_t index, bool backwards) {
    for (size_t asked = 0; asked < pages_.size();) {
        if (!Make(index)) {
            Remove(index);
            index = backwards || index == pages_.size() ? index - 1 : index;
        } else {
            const LRESULT answer = Notify(index, PSN_SETACTIVE);
            if (!IsOpen()) {
                return false;
            }
            if (answer != kActivateAnother) {
                if (answer != 0) {
                    FailUnsupported("an answer to PSN_SETACTIVE other than 0 and -1");
                }
                Show(index);
                return true;
            }
            ++asked;
            index = backwards ? index - 1 : index + 1;
        }
        // Behind the last comes the first.
        if (index >= pages_.size()) {
            index = backwards ? pages_.size() - 1 : 0;
        }
    }
    return false;
}

// Not while a page is being made: its place isn't certain yet.
bool PropertySheet::Select(size_t index, bool backwards) {
    return index == active_ || (making_ == kNone && MayLeave() && Activate(index, backwards));
}

void PropertySheet::Step(bool backwards) {
    const size_t count = pages_.size();
    Select((active_ + (backwards ? count - 1 : 1)) % count, backwards);
}

size_t PropertySheet::IndexOf(HPROPSHEETPAGE handle) const {
    return static_cast<size_t>(
        std::find_if(pages_.begin(), pages_.end(), [handle](const SheetPage& page) { return page.handle == handle; }) -
        pages_.begin());
}

}  // namespace host
