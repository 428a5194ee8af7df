// Dialogs: made from templates, run until they end, and what DefDlgProcW does for their procedures.
#include "platform/user/dialogs.h"

#include <algorithm>

#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/modules.h"
#include "platform/kernel/settings.h"
#include "platform/resources/resource_file.h"

namespace host {
namespace {

constexpr int kPointsOfInch = 72;
constexpr int kUnitsAcross = 4;  // of an average character's width
constexpr int kUnitsDown = 8;    // of its height

int Scale(int value, LONG numerator, int denominator) {
    const int64_t product = static_cast<int64_t>(value) * numerator;
    return static_cast<int>((product + (product < 0 ? -denominator : denominator) / 2) / denominator);
}

HFONT MakeFont(const DialogFont& font, int dotsPerInch) {
    LOGFONTW logical = {};
    logical.lfHeight = -Scale(font.points, dotsPerInch, kPointsOfInch);
    logical.lfWeight = font.weight;
    logical.lfItalic = font.italic;
    logical.lfCharSet = font.charSet;
    font.face.copy(logical.lfFaceName, LF_FACESIZE - 1);
    return CreateFontIndirectW(&logical);
}

// The average width of the letters of the alphabet in both cases, and the height.
SIZE MeasureUnits(HDC context) {
    constexpr WCHAR kLetters[] = TEXT("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    constexpr int kCount = 52;
    SIZE size = {};
    TEXTMETRICW metrics = {};
    GetTextExtentPoint32W(context, kLetters, kCount, &size);
    GetTextMetricsW(context, &metrics);
    return {(size.cx / (kCount / 2) + 1) / 2, metrics.tmHeight};
}

RECT ToPixels(const SIZE& units, int x, int y, int width, int height) {
    const LONG left = Scale(x, units.cx, kUnitsAcross);
    const LONG top = Scale(y, units.cy, kUnitsDown);
    return {left, top, left + Scale(width, units.cx, kUnitsAcross), top + Scale(height, units.cy, kUnitsDown)};
}

// Fonts and units are asked for on the screen. False where there is no memory for that.
bool SetFont(const DialogTemplate& dialogTemplate, DialogState* state) {
    const HDC context = OpenContext(nullptr, false);
    if (context == nullptr) {
        return false;
    }
    HFONT font = static_cast<HFONT>(GetStockObject(SYSTEM_FONT));
    if (dialogTemplate.font) {
        state->font = MakeFont(*dialogTemplate.font, GetDeviceCaps(context, LOGPIXELSY));
        font = state->font != nullptr ? state->font : font;
    }
    const HGDIOBJ before = SelectObject(context, font);
    state->units = MeasureUnits(context);
    SelectObject(context, before);
    CloseContext(context);
    return true;
}

// Where the dialog's window comes: in its parent, over its owner or on the screen, and wholly on that.
RECT PlaceOf(const DialogTemplate& dialogTemplate, const SIZE& units, DWORD style, DWORD exStyle, HWND parent) {
    RECT rect = ToPixels(units, dialogTemplate.x, dialogTemplate.y, dialogTemplate.width, dialogTemplate.height);
    const POINT corner = {rect.left, rect.top};
    AdjustWindowRectEx(&rect, style, FALSE, exStyle);
    rect = Moved(rect, corner.x - rect.left, corner.y - rect.top);
    if ((style & WS_CHILD) != 0) {
        return rect;
    }
    const LONG width = rect.right - rect.left;
    const LONG height = rect.bottom - rect.top;
    POINT at = corner;
    if ((dialogTemplate.style & DS_CENTER) != 0) {
        at = {(kScreenWidth - width) / 2, (kScreenHeight - height) / 2};
    } else if (const Window* const owner = parent != nullptr ? FindWindowObject(parent) : nullptr) {
        const POINT origin = ClientOrigin(*owner);
        at = {origin.x + corner.x, origin.y + corner.y};
    }
    at = {std::max<LONG>(0, std::min(at.x, kScreenWidth - width)),
          std::max<LONG>(0, std::min(at.y, kScreenHeight - height))};
    return {at.x, at.y, at.x + width, at.y + height};
}

bool MakeControls(HWND dialog, HINSTANCE instance, const DialogTemplate& dialogTemplate) {
    for (const DialogItem& item : dialogTemplate.items) {
        DialogState* state = FindDialog(dialog);
        if (state == nullptr) {
            return false;
        }
        const HFONT font = state->font;
        const RECT rect = ToPixels(state->units, item.x, item.y, item.width, item.height);
        const HWND control = CreateWindowExW(
            item.exStyle | WS_EX_NOPARENTNOTIFY, item.className.c_str(), item.text.c_str(), item.style | WS_CHILD,
            rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, dialog,
            reinterpret_cast<HMENU>(static_cast<UINT_PTR>(item.id)), instance, const_cast<BYTE*>(item.data));
        if (control == nullptr) {
            return false;
        }
        if (font != nullptr) {
            Send(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
        }
        state = FindDialog(dialog);
        if (state != nullptr && (DialogCode(control) & DLGC_DEFPUSHBUTTON) != 0) {
            state->defaultId = static_cast<WORD>(item.id);
        }
    }
    return true;
}

// Null where it can't be made. Modal dialogs are shown whatever their style.
HWND MakeDialog(HINSTANCE instance, const DialogTemplate& dialogTemplate, HWND parent, DLGPROC proc, LPARAM parameter,
                const std::shared_ptr<ModalLoop>& loop) {
    if (dialogTemplate.hasMenu) {
        FailUnsupported("a dialog with a menu");
        return nullptr;
    }
    auto made = std::make_unique<DialogState>();
    if (!SetFont(dialogTemplate, made.get())) {
        return nullptr;
    }
    made->loop = loop;
    const DWORD style = dialogTemplate.style & ~WS_VISIBLE;
    DWORD exStyle = dialogTemplate.exStyle;
    exStyle |= (style & DS_MODALFRAME) != 0 ? WS_EX_DLGMODALFRAME : 0;
    exStyle |= (style & DS_CONTROL) != 0 ? WS_EX_CONTROLPARENT : 0;
    const RECT rect = PlaceOf(dialogTemplate, made->units, style, exStyle, parent);
    const LPCWSTR className = dialogTemplate.className.empty() ? TEXT("#32770") : dialogTemplate.className.c_str();
    const HWND dialog =
        CreateWindowExW(exStyle, className, dialogTemplate.title.c_str(), style, rect.left, rect.top,
                        rect.right - rect.left, rect.bottom - rect.top, parent, nullptr, instance, nullptr);
    if (dialog == nullptr) {
        return nullptr;
    }
    const HFONT font = made->font;
    FindWindowObject(dialog)->dialog = std::move(made);
    SetWindowLongPtrW(dialog, DWLP_DLGPROC, reinterpret_cast<LONG_PTR>(proc));
    if (font != nullptr) {
        Send(dialog, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    }
    if (!MakeControls(dialog, instance, dialogTemplate)) {
        if (IsWindow(dialog)) {
            DestroyWindow(dialog);
        }
        return nullptr;
    }
    const HWND first = GetNextDlgTabItem(dialog, nullptr, FALSE);
    const bool takesFocus = Send(dialog, WM_INITDIALOG, reinterpret_cast<WPARAM>(first), parameter) != FALSE &&
                            ((style & DS_CONTROL) == 0 || (dialogTemplate.style & WS_VISIBLE) != 0);
    if (!IsWindow(dialog) || (loop != nullptr && loop->hasEnded)) {
        return IsWindow(dialog) ? dialog : nullptr;
    }
    if (takesFocus) {
        const HWND control = GetNextDlgTabItem(dialog, nullptr, FALSE);
        FocusControl(control != nullptr ? control : dialog);
        ShowDefaultButton(dialog, control);
    }
    if (IsWindow(dialog) && (loop != nullptr || (dialogTemplate.style & WS_VISIBLE) != 0)) {
        ShowWindow(dialog, SW_SHOWNORMAL);
    }
    return IsWindow(dialog) ? dialog : nullptr;
}

// Runs until the dialog ends, is destroyed, or nobody is there any more.
void RunLoop(HWND dialog, HWND owner, ModalLoop* loop) {
    const auto idle = [=] {
        if (owner != nullptr && IsWindow(owner)) {
            constexpr WPARAM kDialogIdle = 0;  // MSGF_DIALOGBOX
            Send(owner, WM_ENTERIDLE, kDialogIdle, reinterpret_cast<LPARAM>(dialog));
        }
    };
    while (!loop->hasEnded && IsWindow(dialog)) {
        MSG message;
        const Wait wait = WaitForMessage(&message, idle);
        if (wait == Wait::kQuit) {
            PostQuitMessage(static_cast<int>(message.wParam));
        }
        if (wait != Wait::kMessage) {
            return;
        }
        if (!IsDialogMessageW(dialog, &message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

// --- What dialogs do by themselves -----------------------------------------------------------------------------------

void KeepFocus(HWND dialog, DialogState* state) {
    const HWND focus = GetFocus();
    if (IsInside(focus, dialog) && focus != dialog) {
        state->focus = focus;
    }
}

void RestoreFocus(HWND dialog, const DialogState& state) {
    HWND control = state.focus;
    if (control == nullptr || !IsInside(control, dialog) || !IsWindowVisible(control) || !IsWindowEnabled(control)) {
        control = GetNextDlgTabItem(dialog, nullptr, FALSE);
    }
    SetFocus(control != nullptr ? control : dialog);
}

// Messages whose answer is what the dialog's procedure returns.
bool IsAnsweredDirectly(UINT message) {
    switch (message) {
        case WM_CTLCOLORMSGBOX:
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORLISTBOX:
        case WM_CTLCOLORBTN:
        case WM_CTLCOLORDLG:
        case WM_CTLCOLORSCROLLBAR:
        case WM_CTLCOLORSTATIC:
        case WM_COMPAREITEM:
        case WM_VKEYTOITEM:
        case WM_CHARTOITEM:
        case WM_QUERYDRAGICON:
        case WM_INITDIALOG:
            return true;
        default:
            return false;
    }
}

void Cancel(HWND dialog) {
    const HWND button = GetDlgItem(dialog, IDCANCEL);
    if (button != nullptr && !IsWindowEnabled(button)) {
        MessageBeep(0);
        return;
    }
    PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), reinterpret_cast<LPARAM>(button));
}

LRESULT SetDefault(HWND dialog, DialogState* state, WORD id) {
    const HWND before = GetDlgItem(dialog, state->defaultId);
    state->defaultId = id;
    if (before != nullptr && (DialogCode(before) & DLGC_DEFPUSHBUTTON) != 0) {
        Send(before, BM_SETSTYLE, BS_PUSHBUTTON, TRUE);
    }
    const HWND after = GetDlgItem(dialog, id);
    if (after != nullptr && (DialogCode(after) & DLGC_UNDEFPUSHBUTTON) != 0) {
        Send(after, BM_SETSTYLE, BS_DEFPUSHBUTTON, TRUE);
    }
    return TRUE;
}

LRESULT MoveFocus(HWND dialog, WPARAM wParam, bool isControl) {
    const HWND next =
        isControl ? reinterpret_cast<HWND>(wParam) : GetNextDlgTabItem(dialog, GetFocus(), wParam != FALSE);
    if (next != nullptr) {
        FocusControl(next);
        ShowDefaultButton(dialog, next);
    }
    return 0;
}

LRESULT EraseDialog(HWND dialog, WPARAM context) {
    const auto brush =
        reinterpret_cast<HBRUSH>(Send(dialog, WM_CTLCOLORDLG, context, reinterpret_cast<LPARAM>(dialog)));
    const Window* const window = IsWindow(dialog) ? FindWindowObject(dialog) : nullptr;
    if (brush != nullptr && window != nullptr) {
        const SIZE size = ClientSize(*window);
        const RECT client = {0, 0, size.cx, size.cy};
        FillRect(reinterpret_cast<HDC>(context), &client, brush);
    }
    return TRUE;
}

LRESULT Default(HWND dialog, DialogState* state, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_ERASEBKGND:
            return EraseDialog(dialog, wParam);
        case WM_SHOWWINDOW:
            if (wParam == FALSE) {
                KeepFocus(dialog, state);
            }
            return DefWindowProcW(dialog, message, wParam, lParam);
        case WM_ACTIVATE:
            if (LOWORD(wParam) != WA_INACTIVE) {
                RestoreFocus(dialog, *state);
            } else {
                KeepFocus(dialog, state);
            }
            return 0;
        case WM_SETFOCUS:
            RestoreFocus(dialog, *state);
            return 0;
        case DM_SETDEFID:
            return SetDefault(dialog, state, LOWORD(wParam));
        case DM_GETDEFID:
            return state->defaultId != 0 ? MAKELRESULT(state->defaultId, DC_HASDEFID) : 0;
        case WM_NEXTDLGCTL:
            return MoveFocus(dialog, wParam, LOWORD(lParam) != FALSE);
        case WM_CLOSE:
            Cancel(dialog);
            return 0;
        case WM_GETFONT:
            return reinterpret_cast<LRESULT>(state->font);
        default:
            return DefWindowProcW(dialog, message, wParam, lParam);
    }
}

}  // namespace

DialogState::~DialogState() {
    if (font != nullptr) {
        DeleteObject(font);
    }
}

DialogState* FindDialog(HWND dialog) {
    const Window* const window = IsWindow(dialog) ? FindWindowObject(dialog) : nullptr;
    return window != nullptr ? window->dialog.get() : nullptr;
}

std::optional<DialogTemplate> LoadDialogTemplate(HINSTANCE module, LPCWSTR name) {
    const MachineLock lock;
    const auto resources = ResourcesOf(module);
    const ResourceEntry* const entry =
        resources != nullptr ? resources->Find(ResourceKey::FromArgument(RT_DIALOG), ResourceKey::FromArgument(name),
                                               CurrentSettings().language)
                             : nullptr;
    return entry != nullptr ? ParseDialogTemplate(entry->data.data(), entry->data.size()) : std::nullopt;
}

HWND MakeModelessDialog(HINSTANCE instance, const DialogTemplate& dialogTemplate, HWND parent, DLGPROC proc,
                        LPARAM parameter) {
    return MakeDialog(instance, dialogTemplate, parent, proc, parameter, nullptr);
}

INT_PTR RunDialog(HINSTANCE instance, const DialogTemplate& dialogTemplate, HWND owner, DLGPROC proc,
                  LPARAM parameter) {
    Window* const found = owner != nullptr ? FindWindowObject(owner) : nullptr;
    if (owner != nullptr && (found == nullptr || found->thread == 0)) {
        owner = nullptr;
    }
    const HWND top = owner != nullptr ? RootOf(*found).handle : nullptr;
    const auto loop = std::make_shared<ModalLoop>();
    if (top != nullptr && EnableWindow(top, FALSE) == FALSE) {
        loop->disabledOwner = top;
    }
    const HWND dialog = MakeDialog(instance, dialogTemplate, owner, proc, parameter, loop);
    if (dialog != nullptr) {
        RunLoop(dialog, top, loop.get());
    }
    if (loop->disabledOwner != nullptr && IsWindow(loop->disabledOwner)) {
        EnableWindow(loop->disabledOwner, TRUE);
    }
    if (dialog != nullptr && IsWindow(dialog)) {
        DestroyWindow(dialog);
    }
    return loop->result;
}

}  // namespace host

using namespace host;

extern "C" {

LRESULT WINAPI DefDlgProcW(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto proc = reinterpret_cast<DLGPROC>(GetWindowLongPtrW(dialog, DWLP_DLGPROC));
    SetWindowLongPtrW(dialog, DWLP_MSGRESULT, 0);
    const INT_PTR handled = proc != nullptr ? proc(dialog, message, wParam, lParam) : FALSE;
    if (!IsWindow(dialog)) {
        return handled;
    }
    if (handled != FALSE) {
        return IsAnsweredDirectly(message) ? handled : GetWindowLongPtrW(dialog, DWLP_MSGRESULT);
    }
    DialogState* const state = FindDialog(dialog);
    return state != nullptr ? Default(dialog, state, message, wParam, lParam)
                            : DefWindowProcW(dialog, message, wParam, lParam);
}

HWND WINAPI CreateDialogParamW(HINSTANCE instance, LPCWSTR name, HWND parent, DLGPROC proc, LPARAM parameter) {
    if (FaultAsked("CreateDialogParamW")) {
        return nullptr;
    }
    const auto dialogTemplate = LoadDialogTemplate(instance, name);
    return dialogTemplate ? MakeModelessDialog(instance, *dialogTemplate, parent, proc, parameter) : nullptr;
}

HWND WINAPI CreateDialogIndirectParamW(HINSTANCE instance, LPCDLGTEMPLATEW dialogTemplate, HWND parent, DLGPROC proc,
                                       LPARAM parameter) {
    if (FaultAsked("CreateDialogIndirectParamW")) {
        return nullptr;
    }
    if (dialogTemplate == nullptr) {
        Fail(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    // How long it is, only the template itself says.
    const auto parsed = ParseDialogTemplate(reinterpret_cast<const BYTE*>(dialogTemplate), SIZE_MAX / 2);
    return parsed ? MakeModelessDialog(instance, *parsed, parent, proc, parameter) : nullptr;
}

INT_PTR WINAPI DialogBoxParamW(HINSTANCE instance, LPCWSTR name, HWND owner, DLGPROC proc, LPARAM parameter) {
    if (FaultAsked("DialogBoxParamW")) {
        return -1;
    }
    const auto dialogTemplate = LoadDialogTemplate(instance, name);
    return dialogTemplate ? RunDialog(instance, *dialogTemplate, owner, proc, parameter) : -1;
}

BOOL WINAPI EndDialog(HWND dialog, INT_PTR result) {
    const DialogState* const state = FindDialog(dialog);
    if (state == nullptr) {
        return Fail(ERROR_INVALID_WINDOW_HANDLE);
    }
    const std::shared_ptr<ModalLoop> loop = state->loop;
    if (loop != nullptr) {
        loop->hasEnded = true;
        loop->result = result;
        if (loop->disabledOwner != nullptr && IsWindow(loop->disabledOwner)) {
            EnableWindow(loop->disabledOwner, TRUE);
            loop->disabledOwner = nullptr;
        }
    }
    ++ThisThread().changes;
    ShowWindow(dialog, SW_HIDE);
    if (IsWindow(dialog)) {
        ActivateAnother(dialog);
    }
    return TRUE;
}

BOOL WINAPI MapDialogRect(HWND dialog, LPRECT rect) {
    const DialogState* const state = FindDialog(dialog);
    if (state == nullptr) {
        return Fail(ERROR_INVALID_WINDOW_HANDLE);
    }
    *rect = {Scale(rect->left, state->units.cx, kUnitsAcross), Scale(rect->top, state->units.cy, kUnitsDown),
             Scale(rect->right, state->units.cx, kUnitsAcross), Scale(rect->bottom, state->units.cy, kUnitsDown)};
    return TRUE;
}

}  // extern "C"
