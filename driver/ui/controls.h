// Controls of dialogs: lists of choices, texts of the language module, places.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <span>

#include "driver/ui/choice_list.h"

namespace velmora {

// Appends an item to a combo box.
void AddComboItem(HWND dialog, int control, const WCHAR* text, uint32_t value);

// Gives a combo box the entries of a list that the filter lets through, in place of what it has. Texts have at most 127
// characters.
void FillChoiceCombo(HWND dialog, int control, const ChoiceEntry* choices, uint32_t filter);

// Selects the first item of a combo box or list box with this data and returns its index. None has it: selects the
// first item and returns -1.
int SelectComboByData(HWND dialog, int control, uint32_t value);
int SelectListByData(HWND dialog, int control, uint32_t value);

// The data of a combo box's selection; -1 as a number, 0xFFFFFFFF, where nothing is selected.
uint32_t GetComboData(HWND dialog, int control);

// Gives a control the text of a string of the language module. Does nothing where the dialog has no such control.
void SetControlText(HWND dialog, int control, UINT stringId);

// Gives a dialog the title that is a string of the language module.
void SetDialogTitle(HWND dialog, UINT stringId);

// As SetControlText for each of some controls, whose texts are the strings of their own numbers.
void SetOwnTexts(HWND dialog, std::span<const int> controls);

// Gives a control a text that it doesn't have already.
void UpdateControlText(HWND dialog, int control, const WCHAR* text);

// Fills a field of `size` bytes with the text of an edit in the ANSI code page: with the whole characters that leave
// room for a terminator, and with 0 after them.
void ReadAnsiText(HWND dialog, int control, char* field, size_t size);

// Whether a check box or radio button is checked.
bool IsChecked(HWND dialog, int control);
void CheckControl(HWND dialog, int control, bool isChecked);

// The value of the radio button that is checked, `otherwise` where none is.
uint16_t CheckedRadio(HWND dialog, std::span<const RadioValue> radios, uint16_t otherwise);

// Checks the radio button of a value and no other of its group; none where none has the value.
void CheckRadio(HWND dialog, std::span<const RadioValue> radios, uint16_t value);

void EnableControl(HWND dialog, int control, bool isEnabled);

// A control that shows nothing can't be reached either, and the reverse.
void ShowControl(HWND dialog, int control, bool isShown);

// A control's place in its dialog's client area; empty where the dialog has none.
RECT ControlRect(HWND dialog, int control);

// Repaints a control's place in its dialog, background included.
void InvalidateControl(HWND dialog, int control);

inline constexpr int kCentred = -1;          // PlaceDialog's x
inline constexpr int kCentredDown = 0xFFFF;  // PlaceDialog's y

// Places a dialog against its parent's, or owner's, normal rectangle: x and y pixels right of and below its upper left
// corner, or in its middle. The size stays. Does nothing without a parent.
void PlaceDialog(HWND dialog, int x, int y);

}  // namespace velmora
