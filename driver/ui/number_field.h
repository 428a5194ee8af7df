// Edits with a number of at most three characters and a spin control, or a scroll bar, beside them, apart from the
// windows.
#pragma once

#include <windows.h>

#include <cstddef>

namespace velmora {

struct NumberField {
    static constexpr size_t kCapacity = 4;

    WCHAR text[kCapacity];  // as it stands in the edit, terminated
    int position;           // of the spin control: the last number that was within its range
    int lowest;             // the spin control's range
    int highest;

    bool operator==(const NumberField&) const = default;
};

// Reads a text that is one decimal number: digits after an optional sign, with blanks around. False for any other text.
// More than a million is a million.
bool ReadNumber(const WCHAR* text, int* number);

// Puts a number, limited to the range, into both the edit and the spin control.
void SetNumber(NumberField* field, int number);

// What the user typed, cut to the field. The spin control follows where it is a number of its range.
void TypeNumber(NumberField* field, const WCHAR* text);

// What an edit shows once the user has left it: a number from `lowest` to `highest` as it was typed, one beyond them as
// the nearest, any other text as the spin control's position. These limits may be wider than the spin control's range.
void SettleNumber(NumberField* field, int lowest, int highest);

// The number that an edit holds, limited, or `otherwise` where it holds none. That is what the edit shows then; the
// spin control follows where its range has it.
int ApplyNumber(NumberField* field, int lowest, int highest, int otherwise);

}  // namespace velmora
