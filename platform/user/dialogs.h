// What dialogs have beside their windows.
#pragma once

#include <windows.h>

#include <memory>

#include "platform/user/dialog_template.h"
#include "platform/user/windows.h"

namespace host {

// A modal dialog's loop, which outlives the window.
struct ModalLoop {
    bool hasEnded = false;
    INT_PTR result = -1;
    HWND disabledOwner = nullptr;
};

struct DialogState {
    ~DialogState();

    HFONT font = nullptr;             // owned; null: the system's
    SIZE units = {};                  // pixels of 4 units across, of 8 units down
    WORD defaultId = 0;               // 0: none
    HWND focus = nullptr;             // when the dialog was last active
    std::shared_ptr<ModalLoop> loop;  // null: modeless
};

// The dialog's state, or null where the window is no dialog.
DialogState* FindDialog(HWND dialog);

// The template of a module; none, with the last error set, where it has none of this name.
std::optional<DialogTemplate> LoadDialogTemplate(HINSTANCE module, LPCWSTR name);

// Makes a modeless dialog, which is shown where its style says so. Null where it can't be made.
HWND MakeModelessDialog(HINSTANCE instance, const DialogTemplate& dialogTemplate, HWND parent, DLGPROC proc,
                        LPARAM parameter);

// Runs a modal dialog until it ends; what EndDialog was given. -1 where it can't be made or nobody ends it.
INT_PTR RunDialog(HINSTANCE instance, const DialogTemplate& dialogTemplate, HWND owner, DLGPROC proc, LPARAM parameter);

// Gives a control the focus as the keyboard does: an edit's text is selected.
void FocusControl(HWND control);
// The push button that Enter presses is drawn as such: the one with the focus, or the dialog's default.
void ShowDefaultButton(HWND dialog, HWND focus);
LRESULT DialogCode(HWND control, const MSG* message = nullptr);

}  // namespace host
