// Edits that take certain characters alone, and whose arrow keys and wheel step the number in them.
#pragma once

#include <windows.h>

#include <cstdint>

namespace velmora {

struct EditFilter {
    uint16_t allowed;  // string of the language module: the characters
    int spin;          // spin control of the edit, which shows its position as the edit's text; 0 for none
};

inline constexpr uint16_t kCodeCharacters = 11020;  // strings for EditFilter.allowed
inline constexpr uint16_t kDigits = 11024;

// Puts the filter before an edit of a page or dialog with a context. `filter` must outlive the edit. Of what is pasted
// the allowed characters are taken; text that is set isn't filtered. Keys that type nothing work as ever (Backspace,
// Ctrl+C).
void FilterEdit(HWND dialog, int edit, const EditFilter* filter);

}  // namespace velmora
