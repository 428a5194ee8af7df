// The notice dialog: what the driver has to tell the user and, in some kinds, to ask.
#pragma once

#include <windows.h>

#include <cstdint>

#include "driver/ui/sheet_context.h"

namespace velmora {

// Kinds of notices; the value is the title's string in the language module.
enum NoticeKind : uint16_t {
    kNoticeError = 1093,
    kNoticeConflict = 1094,      // the device can't print what is asked
    kNoticeCustomLimits = 1095,  // the limits of custom sizes
    kNoticeQuestion = 1096,
    kNoticeJobPrompt = 1097,  // at print time, when no sheet is open
    kNoticeSecondQuestion = 1098,
};

// Shows a notice until the user closes it. Returns 0 where a question was answered with its first button, 1 otherwise,
// and -1 where the dialog can't be shown. `owner` may be null.
INT_PTR ShowNotice(SheetContext* context, HWND owner, NoticeKind kind);

// Shows the notice that a job gives at print time, in the language of the printer's user; nothing where there is no
// memory for it.
void ShowJobPrompt(HANDLE printer);

}  // namespace velmora
