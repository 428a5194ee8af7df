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

// Shows the field's range and text; the spin control's position is the number in the edit.
void ShowNumber(HWND dialog, const NumberControl& control, const NumberField& field);

// Takes what stands in the edit into the field, and the spin control's position where that is no number of the range.
// Returns whether the text is another than before.
bool TakeNumber(HWND dialog, const NumberControl& control, NumberField* field);

}  // namespace velmora
