// Property sheets: the pages' windows, which of them is shown, what they are told and when.
#include <commctrl.h>
#include <prsht.h>
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/sheet/pages.h"
#include "platform/sheet/sheet_texts.h"
#include "platform/sheet/sheet_window.h"
#include "platform/user/dialogs.h"

namespace host {
namespace {

constexpr DWORD kKnownFlags = PSH_PROPTITLE | PSH_PROPSHEETPAGE | PSH_NOAPPLYNOW | PSH_HASHELP | PSH_NOCONTEXTHELP;

// A page is a child without a frame, hidden at first, whose controls the keyboard reaches from its sheet.
constexpr DWORD kNoPageStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_DISABLED | WS_VISIBLE;
constexpr DWORD kPageStyle = WS_CHILD | DS_CONTROL | DS_3DLOOK;

constexpr UINT kFirstSheetMessage = WM_USER + 100;
constexpr UINT kLastSheetMessage = WM_USER + 150;

constexpr LRESULT kActivateAnother = -1;  // answer to PSN_SETACTIVE

constexpr INT_PTR kSaved = 1;
constexpr INT_PTR kNotSaved = 0;
constexpr INT_PTR kFailed = -1;

// Of a sheet whose first page names none.
const DialogFont kSheetFont = {.points = 8, .face = u"MS Shell Dlg"};

struct Page {
    HPROPSHEETPAGE handle;
    const PROPSHEETPAGEW* given;
    DialogTemplate dialog;
    HWND window = nullptr;  // null: not made yet
    bool isChanged = false;

    bool HasHelp() const { return (given->dwFlags & PSP_HASHELP) != 0; }
};

// A sheet from its opening to its end. It owns its pages. Windows may go with any message that is sent.
class PropertySheet {
  public:
    explicit PropertySheet(const PROPSHEETHEADERW& header) : header_(header) {}
    ~PropertySheet();
    PropertySheet(const PropertySheet&) = delete;
    PropertySheet& operator=(const PropertySheet&) = delete;

    // A page whose dialog can't be loaded is left out.
    void Take(HPROPSHEETPAGE handle);
    INT_PTR Run();

  private:
    static INT_PTR CALLBACK Proc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
    // False: not the sheet's to answer.
    bool Answer(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* answer);
    void OnCommand(int id);
    LRESULT OnTabs(UINT code);

    bool Open();
    void WaitForEnd();
    bool TakeKey(const MSG& message);

    bool Make(size_t index);
    void Remove(size_t index);
    void Show(size_t index);
    void FocusPage();
    LRESULT Notify(size_t index, UINT code, LPARAM parameter = 0);
    bool MayLeave();
    bool Activate(size_t index, bool backwards);
    bool Select(size_t index, bool backwards);
    void Step(bool backwards);
    size_t IndexOf(HPROPSHEETPAGE handle) const;

    void Mark(HWND page, bool isChanged);
    void EnableApply();
    bool Apply(bool isLast);
    void Cancel(bool isClosed);
    void End(INT_PTR result);

    HWND Control(int id) const { return GetDlgItem(sheet_, id); }
    bool IsOpen() const { return !isEnded_ && IsWindow(sheet_); }

    const PROPSHEETHEADERW& header_;
    std::vector<Page> pages_;
    HWND sheet_ = nullptr;
    RECT place_ = {};        // of the pages in the sheet
    size_t active_ = kNone;  // index of the page that is shown
    size_t making_ = kNone;  // of the page whose window is being made
    bool isEnded_ = false;
    INT_PTR result_ = kFailed;

    static constexpr size_t kNone = static_cast<size_t>(-1);
};

PropertySheet::~PropertySheet() {
    if (sheet_) {
        DestroyWindow(sheet_);
    }
    for (const Page& page : pages_) {
        DestroyPropertySheetPage(page.handle);
    }
}

void PropertySheet::Take(HPROPSHEETPAGE handle) {
    const PropertyPage* const page = FindPage(handle);
    if (!page) {
        return;
    }
    std::optional<DialogTemplate> dialog = LoadDialogTemplate(page->given.hInstance, page->given.pszTemplate);
    if (!dialog) {
        DestroyPropertySheetPage(handle);
        return;
    }
    dialog->style = (dialog->style & ~kNoPageStyle) | kPageStyle;
    pages_.push_back({handle, &page->given, std::move(*dialog)});
}

INT_PTR PropertySheet::Run() {
    if (!Open()) {
        return kFailed;
    }
    const HWND owner = GetWindow(sheet_, GW_OWNER);
    const bool ownerWasEnabled = owner && !EnableWindow(owner, FALSE);
    ShowWindow(sheet_, SW_SHOW);
    FocusPage();
    WaitForEnd();
    if (ownerWasEnabled) {
        EnableWindow(owner, TRUE);
    }
    return result_;
}

bool PropertySheet::Open() {
    if (pages_.empty()) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return false;
    }
    std::u16string caption = header_.pszCaption ? TextOrString(header_.hInstance, header_.pszCaption) : u"";
    if ((header_.dwFlags & PSH_PROPTITLE) != 0) {
        caption = Caption(TextsOfUser().properties, caption);
    }
    SheetLook look = {caption,
                      pages_.front().dialog.font.value_or(kSheetFont),
                      {},
                      (header_.dwFlags & PSH_NOAPPLYNOW) == 0,
                      (header_.dwFlags & PSH_HASHELP) != 0};
    for (const Page& page : pages_) {
        look.pageUnits.cx = std::max<LONG>(look.pageUnits.cx, page.dialog.width);
        look.pageUnits.cy = std::max<LONG>(look.pageUnits.cy, page.dialog.height);
        look.hasHelp |= page.HasHelp();
    }
    sheet_ = CreateSheetWindow(look, header_.hwndParent, Proc, reinterpret_cast<LPARAM>(this));
    if (!sheet_) {
        return false;
    }
    for (size_t i = 0; i < pages_.size(); ++i) {
        const PROPSHEETPAGEW& given = *pages_[i].given;
        std::u16string title = (given.dwFlags & PSP_USETITLE) != 0 ? TextOrString(given.hInstance, given.pszTitle)
                                                                   : pages_[i].dialog.title;
        TCITEMW item = {};
        item.mask = TCIF_TEXT;
        item.pszText = title.data();
        SendMessageW(Control(kSheetTabs), TCM_INSERTITEMW, i, reinterpret_cast<LPARAM>(&item));
    }
    place_ = LayOutSheet(sheet_, look);
    for (size_t i = 0; i < pages_.size();) {
        if ((pages_[i].given->dwFlags & PSP_PREMATURE) == 0 || Make(i)) {
            ++i;
        } else {
            Remove(i);
        }
    }
    return Activate(std::min<size_t>(header_.nStartPage, pages_.size() - 1), false);
}

// Until the sheet is ended, by itself or by whoever destroys its window.
void PropertySheet::WaitForEnd() {
    while (IsOpen()) {
        MSG message = {};
        switch (WaitForMessage(&message, {})) {
            case Wait::kMessage:
                if (!TakeKey(message) && !IsDialogMessageW(sheet_, &message)) {
                    TranslateMessage(&message);
                    DispatchMessageW(&message);
                }
                break;
            case Wait::kQuit:
                PostQuitMessage(static_cast<int>(message.wParam));  // for the program's own loop
                End(kNotSaved);
                break;
            case Wait::kNobody:
                End(kFailed);
                break;
        }
    }
}

// Ctrl+Tab and Ctrl+Page Down go to the next page, with Shift and Ctrl+Page Up to the one before.
bool PropertySheet::TakeKey(const MSG& message) {
    if (message.message != WM_KEYDOWN || GetKeyState(VK_CONTROL) >= 0 || !IsChild(sheet_, message.hwnd)) {
        return false;
    }
    switch (message.wParam) {
        case VK_TAB:
            Step(GetKeyState(VK_SHIFT) < 0);
            return true;
        case VK_PRIOR:
        case VK_NEXT:
            Step(message.wParam == VK_PRIOR);
            return true;
        default:
            return false;
    }
}

INT_PTR CALLBACK PropertySheet::Proc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        auto* const sheet = reinterpret_cast<PropertySheet*>(lParam);
        sheet->sheet_ = dialog;
        SetWindowLongPtrW(dialog, DWLP_USER, lParam);
        return FALSE;  // the focus comes with the first page
    }
    auto* const sheet = reinterpret_cast<PropertySheet*>(GetWindowLongPtrW(dialog, DWLP_USER));
    LRESULT answer = 0;
    if (!sheet || !sheet->Answer(message, wParam, lParam, &answer)) {
        return FALSE;
    }
    SetWindowLongPtrW(dialog, DWLP_MSGRESULT, answer);
    return TRUE;
}

bool PropertySheet::Answer(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* answer) {
    switch (message) {
        case WM_COMMAND:
            OnCommand(LOWORD(wParam));
            return true;
        case WM_CLOSE:
            Cancel(true);
            return true;
        case WM_NOTIFY:
            if (reinterpret_cast<const NMHDR*>(lParam)->idFrom != kSheetTabs) {
                return false;
            }
            *answer = OnTabs(reinterpret_cast<const NMHDR*>(lParam)->code);
            return true;
        case PSM_CHANGED:
        case PSM_UNCHANGED:
            Mark(reinterpret_cast<HWND>(wParam), message == PSM_CHANGED);
            return true;
        case PSM_SETCURSEL: {
            const size_t index = lParam ? IndexOf(reinterpret_cast<HPROPSHEETPAGE>(lParam)) : wParam;
            *answer = index < pages_.size() && Select(index, false);
            return true;
        }
        case PSM_APPLY:
            *answer = Apply(false);
            return true;
        case PSM_PRESSBUTTON: {
            constexpr std::pair<WPARAM, int> kButtons[] = {
                {PSBTN_OK, IDOK}, {PSBTN_APPLYNOW, kSheetApply}, {PSBTN_CANCEL, IDCANCEL}, {PSBTN_HELP, kSheetHelp}};
            for (const auto& [number, id] : kButtons) {
                if (number == wParam) {
                    OnCommand(id);
                    return true;
                }
            }
            break;
        }
        case PSM_SETTITLEW: {
            const std::u16string text = TextOrString(header_.hInstance, reinterpret_cast<LPCWSTR>(lParam));
            SetWindowTextW(sheet_,
                           ((wParam & PSH_PROPTITLE) != 0 ? Caption(TextsOfUser().properties, text) : text).c_str());
            return true;
        }
        case PSM_GETTABCONTROL:
            *answer = reinterpret_cast<LRESULT>(Control(kSheetTabs));
            return true;
        case PSM_GETCURRENTPAGEHWND:
            *answer = active_ == kNone ? 0 : reinterpret_cast<LRESULT>(pages_[active_].window);
            return true;
        case PSM_INDEXTOHWND:
            *answer = wParam < pages_.size() ? reinterpret_cast<LRESULT>(pages_[wParam].window) : 0;
            return true;
        default:
            break;
    }
    if (message >= kFirstSheetMessage && message <= kLastSheetMessage) {
        char name[64];
        snprintf(name, sizeof(name), "message WM_USER + %u (%#zx) to a property sheet", message - WM_USER, wParam);
        FailUnsupported(name);
        return true;
    }
    return false;
}

void PropertySheet::OnCommand(int id) {
    switch (id) {
        case IDOK:
            if (Apply(true)) {
                End(kSaved);
            }
            break;
        case IDCANCEL:
            Cancel(false);
            break;
        case kSheetApply:
            Apply(false);
            break;
        case kSheetHelp:
            Notify(active_, PSN_HELP);
            break;
        default:
            break;
    }
}

LRESULT PropertySheet::OnTabs(UINT code) {
    if (code == TCN_SELCHANGING) {
        return !MayLeave();
    }
    if (code == TCN_SELCHANGE) {
        const auto index = static_cast<size_t>(SendMessageW(Control(kSheetTabs), TCM_GETCURSEL, 0, 0));
        Activate(index, active_ != kNone && index < active_);
    }
    return 0;
}

bool PropertySheet::Make(size_t index) {
    Page& page = pages_[index];
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

bool PropertySheet::Select(size_t index, bool backwards) {
    return index == active_ || (MayLeave() && Activate(index, backwards));
}

void PropertySheet::Step(bool backwards) {
    const size_t count = pages_.size();
    Select((active_ + (backwards ? count - 1 : 1)) % count, backwards);
}

size_t PropertySheet::IndexOf(HPROPSHEETPAGE handle) const {
    return static_cast<size_t>(
        std::find_if(pages_.begin(), pages_.end(), [handle](const Page& page) { return page.handle == handle; }) -
        pages_.begin());
}

// A page may speak of itself while it is being made.
void PropertySheet::Mark(HWND window, bool isChanged) {
    for (size_t i = 0; i < pages_.size(); ++i) {
        if (pages_[i].window ? pages_[i].window == window : i == making_ && window) {
            pages_[i].isChanged = isChanged;
        }
    }
    EnableApply();
}

// While any page is changed.
void PropertySheet::EnableApply() {
    const HWND apply = Control(kSheetApply);
    if (!apply) {
        return;
    }
    const bool isChanged = std::any_of(pages_.begin(), pages_.end(), [](const Page& page) { return page.isChanged; });
    if (!isChanged && GetFocus() == apply) {
        SendMessageW(sheet_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Control(IDOK)), TRUE);
    }
    EnableWindow(apply, isChanged);
}

// False where a page doesn't agree. `isLast`: the sheet is about to end.
bool PropertySheet::Apply(bool isLast) {
    if (!MayLeave()) {
        return false;
    }
    for (size_t i = 0; i < pages_.size(); ++i) {
        const LRESULT answer = Notify(i, PSN_APPLY, isLast);
        if (!IsOpen()) {
            return false;
        }
        if (answer == PSNRET_INVALID) {
            Activate(i, false);
        }
        if (answer != PSNRET_NOERROR) {
            return false;
        }
    }
    for (Page& page : pages_) {
        page.isChanged = false;
    }
    if (!isLast) {
        EnableApply();
        Notify(active_, PSN_SETACTIVE);
    }
    return true;
}

// `isClosed`: by the cross in the caption.
void PropertySheet::Cancel(bool isClosed) {
    if (Notify(active_, PSN_QUERYCANCEL) != 0 || !IsOpen()) {
        return;
    }
    for (size_t i = 0; i < pages_.size(); ++i) {
        Notify(i, PSN_RESET, isClosed);
    }
    End(kNotSaved);
}

void PropertySheet::End(INT_PTR result) {
    isEnded_ = true;
    result_ = result;
    PostMessageW(sheet_, WM_NULL, 0, 0);  // for the loop to see it
}

bool IsSupported(LPCPROPSHEETHEADERW header) {
    if (!header || (header->dwSize != PROPSHEETHEADERW_V1_SIZE && header->dwSize != sizeof(PROPSHEETHEADERW))) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return false;
    }
    return (header->dwFlags & ~kKnownFlags) == 0 ||
           FailUnsupported(
               "PropertySheetW with flags other than PSH_PROPTITLE, PSH_PROPSHEETPAGE, PSH_NOAPPLYNOW, "
               "PSH_HASHELP and PSH_NOCONTEXTHELP");
}

}  // namespace
}  // namespace host

using namespace host;

extern "C" INT_PTR WINAPI PropertySheetW(LPCPROPSHEETHEADERW header) {
    if (FaultAsked("PropertySheetW") || !IsSupported(header)) {
        return kFailed;
    }
    PropertySheet sheet(*header);
    const BYTE* nextPage = reinterpret_cast<const BYTE*>(header->ppsp);
    for (UINT i = 0; i < header->nPages; ++i) {
        if ((header->dwFlags & PSH_PROPSHEETPAGE) != 0) {
            const auto* const page = reinterpret_cast<LPCPROPSHEETPAGEW>(nextPage);
            sheet.Take(CreatePropertySheetPageW(page));
            nextPage += page->dwSize;
        } else {
            sheet.Take(header->phpage[i]);
        }
    }
    return sheet.Run();
}
