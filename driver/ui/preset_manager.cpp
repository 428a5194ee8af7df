#include "driver/ui/preset_manager.h"

#include "driver/base/text.h"
#include "driver/ui/clipboard_text.h"
#include "driver/ui/controls.h"
#include "driver/ui/modal_dialog.h"
#include "driver/ui/page.h"
#include "driver/ui/preset_rules.h"

namespace velmora {
namespace {

constexpr UINT kTemplate = 6300;
constexpr UINT kTitle = 6301;
constexpr UINT kCancelText = 6310;
constexpr UINT kDuplicateCaption = 6311;
constexpr UINT kDuplicateText = 6312;

// Controls. Labels and buttons have the text of the string of their own number.
constexpr int kList = 6303;
constexpr int kName = 6306;
constexpr int kSave = 6307;
constexpr int kOverwrite = 6308;
constexpr int kDelete = 6309;
constexpr int kTexts[] = {6302, 6304, 6305, kSave, kOverwrite, kDelete};

constexpr size_t kEditCapacity = 64;  // characters, more than the field takes or a stored name has

bool Accepts(HWND edit, UINT message, WPARAM wParam) {
    if (message != WM_CHAR && message != WM_PASTE && message != WM_CUT && message != WM_COPY) {
        return true;
    }
    WCHAR text[kEditCapacity];
    GetWindowTextW(edit, text, ARRAYSIZE(text));
    DWORD start = 0;
    DWORD end = 0;
    SendMessageW(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    const NameEdit name = {text, start, end};
    switch (message) {
        case WM_CHAR:
            return AcceptsCharacter(name, static_cast<WCHAR>(wParam));
        case WM_PASTE: {
            WCHAR pasted[kEditCapacity];
            return AcceptsPaste(name, ReadClipboardText(edit, pasted, ARRAYSIZE(pasted)) ? pasted : nullptr);
        }
        default:
            return AcceptsCutOrCopy(name);
    }
}

// The edit's procedure before that of its class, which is kept in the window's user data.
LRESULT CALLBACK NameProc(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) {
    if (!Accepts(edit, message, wParam)) {
        MessageBeep(0);
        return 0;
    }
    return CallWindowProcW(reinterpret_cast<WNDPROC>(GetWindowLongPtrW(edit, GWLP_USERDATA)), edit, message, wParam,
                           lParam);
}

void FilterName(HWND edit) {
    SetWindowLongPtrW(edit, GWLP_USERDATA, GetWindowLongPtrW(edit, GWLP_WNDPROC));
    SetWindowLongPtrW(edit, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(NameProc));
    SendMessageW(edit, EM_LIMITTEXT, kPresetNameLength, 0);
}

// What the controls show; the buttons follow from it.
PresetManager ReadManager(HWND dialog) {
    PresetManager manager = {};
    WCHAR name[ARRAYSIZE(manager.name)];
    GetDlgItemTextW(dialog, kName, name, ARRAYSIZE(name));
    manager.selected = static_cast<int>(SendDlgItemMessageW(dialog, kList, LB_GETCURSEL, 0, 0));
    TypePresetName(ColorPresetTable(), name, &manager);
    return manager;
}

void ShowButtons(HWND dialog, const PresetManager& manager) {
    EnableControl(dialog, kSave, manager.canSave);
    EnableControl(dialog, kOverwrite, manager.canChange);
    EnableControl(dialog, kDelete, manager.canChange);
}

void FillList(HWND dialog, const PresetManager& manager) {
    SendDlgItemMessageW(dialog, kList, LB_RESETCONTENT, 0, 0);
    for (int i = 0; const ColorPreset* const preset = NamedPreset(ColorPresetTable(), i); ++i) {
        SendDlgItemMessageW(dialog, kList, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(preset->name));
    }
    SendDlgItemMessageW(dialog, kList, LB_SETCURSEL, static_cast<WPARAM>(manager.selected), 0);
}

void InitDialog(HWND dialog) {
    SetDialogTitle(dialog, kTitle);
    SetOwnTexts(dialog, kTexts);
    SetControlText(dialog, IDCANCEL, kCancelText);
    FilterName(GetDlgItem(dialog, kName));
    ReadColorPresetsAgain();
    const PresetManager manager = OpenPresetManager(ColorPresetTable());
    FillList(dialog, manager);
    SetDlgItemTextW(dialog, kName, manager.name);
    ShowButtons(dialog, manager);
    PlaceDialog(dialog, kCentred, kCentredDown);
}

// Ends the dialog where a preset of this name has its values.
void Finish(HWND dialog, SheetContext* context, PresetSaving saving, const WCHAR* name) {
    if (saving == PresetSaving::kDuplicate) {
        WCHAR text[kMessageCapacity];
        WCHAR caption[kMessageCapacity];
        LoadText(*context, kDuplicateText, text, ARRAYSIZE(text));
        LoadText(*context, kDuplicateCaption, caption, ARRAYSIZE(caption));
        MessageBoxW(dialog, text, caption, MB_OK | MB_ICONWARNING);
    } else if (saving == PresetSaving::kDone) {
        SaveColorPreset(name);
        MarkColorPageChanged(context);
        EndDialog(dialog, IDOK);
    }
}

void OnOverwrite(HWND dialog, SheetContext* context, const PresetManager& manager) {
    ColorPreset* const presets = ColorPresetTable();
    const PresetSaving saving = OverwritePreset(presets, manager, &context->devMode->privatePart);
    if (const ColorPreset* const preset = NamedPreset(presets, manager.selected)) {
        Finish(dialog, context, saving, preset->name);
    }
}

void OnDelete(HWND dialog, PresetManager* manager) {
    ColorPreset* const presets = ColorPresetTable();
    if (const ColorPreset* const preset = NamedPreset(presets, manager->selected)) {
        DeleteColorPreset(preset->name);
        DeletePreset(presets, manager);
        FillList(dialog, *manager);
        if (!manager->canChange) {  // a button that is disabled while it has the focus leaves the keyboard nowhere
            SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, kName)), TRUE);
        }
        ShowButtons(dialog, *manager);
    }
}

void OnListCommand(HWND dialog, int code) {
    PresetManager manager = ReadManager(dialog);
    if (code == LBN_DBLCLK) {
        TakePresetName(ColorPresetTable(), &manager);
        SetDlgItemTextW(dialog, kName, manager.name);
    }
    ShowButtons(dialog, manager);
}

void OnClick(HWND dialog, SheetContext* context, int id) {
    PresetManager manager = ReadManager(dialog);
    switch (id) {
        case kSave: {
            const PresetSaving saving = SaveNewPreset(ColorPresetTable(), &manager, &context->devMode->privatePart);
            ShowButtons(dialog, manager);
            Finish(dialog, context, saving, manager.name);
            break;
        }
        case kOverwrite:
            OnOverwrite(dialog, context, manager);
            break;
        case kDelete:
            OnDelete(dialog, &manager);
            break;
        case IDCANCEL:
            EndDialog(dialog, IDCANCEL);
            break;
        default:
            break;
    }
}

INT_PTR AnswerPresets(HWND dialog, SheetContext* context, UINT message, WPARAM wParam, LPARAM) {
    if (message != WM_COMMAND) {
        return FALSE;
    }
    const int id = LOWORD(wParam);
    const int code = HIWORD(wParam);
    if (id == kList && (code == LBN_SELCHANGE || code == LBN_DBLCLK)) {
        OnListCommand(dialog, code);
    } else if (id == kName && code == EN_CHANGE) {
        ShowButtons(dialog, ReadManager(dialog));
    } else if (code == BN_CLICKED) {
        OnClick(dialog, context, id);
    }
    return TRUE;
}

BOOL Open(HWND dialog, SheetContext*) {
    InitDialog(dialog);
    return TRUE;
}

constexpr DialogFunctions kDialog = {kColorDialogsSlot, Open, AnswerPresets};

INT_PTR CALLBACK PresetManagerProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return RouteDialogMessage(kDialog, dialog, message, wParam, lParam);
}

}  // namespace

void RunPresetManager(HWND colorPage, SheetContext* context) {
    RunDialog(context, kTemplate, colorPage, PresetManagerProc);
}

}  // namespace velmora
