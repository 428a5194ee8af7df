#include "platform/sheet/property_sheet.h"

#include <commctrl.h>

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

// Of a sheet whose first page names none.
const DialogFont kSheetFont = {.points = 8, .face = u"MS Shell Dlg"};

}  // namespace

PropertySheet::~PropertySheet() {
    if (sheet_) {
        DestroyWindow(sheet_);
    }
    for (const SheetPage& page : pages_) {
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
    for (const SheetPage& page : pages_) {
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
    const bool isChanged =
        std::any_of(pages_.begin(), pages_.end(), [](const SheetPage& page) { return page.isChanged; });
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
    for (SheetPage& page : pages_) {
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

namespace {

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
        return PropertySheet::kFailed;
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
