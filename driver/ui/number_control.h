// Edits with a number and the spin control beside them, as windows of a NumberField.
#pragma once

#include <windows.h>

#include "driver/ui/number_field.h"

namespace velmora {

struct NumberControl {
    int edit;
    int spin;
};

// Opens both: at most three characters, steps of one, the field's range and text.
void InitNumber(HWND dialog, const NumberControl& control, const NumberField& field);

// Shows the field's range, position and text. A position that isn't the text is the edit's text in between, of which
// the dialog is told as of any other.
void ShowNumber(HWND dialog, const NumberControl& control, const NumberField& field);

// Takes what stands in the edit into the field: its text and, where that is no number of the range, the spin control's
// position. Returns whether the text is another than the field's, which stays as it is otherwise.
bool TakeNumber(HWND dialog, const NumberControl& control, NumberField* field);

}  // namespace velmora
