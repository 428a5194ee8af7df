// The order in which characters are drawn: Hebrew and Arabic letters run from right to left, numbers in them don't.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace host {

struct OrderedCharacter {
    char32_t character;  // U+FFFD for an unpaired surrogate
    size_t first;        // its first unit in the text
    size_t units;        // 1 or 2
};

OrderedCharacter CharacterAt(std::u16string_view text, size_t index);

// From the left. `rightToLeft`: the reading order of the text as a whole.
std::vector<OrderedCharacter> VisualOrder(std::u16string_view text, bool rightToLeft);

}  // namespace host
