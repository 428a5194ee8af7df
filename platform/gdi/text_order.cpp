#include "platform/gdi/text_order.h"

#include <algorithm>
#include <cstdint>

namespace host {
namespace {

enum class Direction : uint8_t { kNeutral, kLeftToRight, kRightToLeft, kNumber };

bool IsIn(char32_t c, char32_t first, char32_t last) {
    return c >= first && c <= last;
}

Direction DirectionOf(char32_t c) {
    if (IsIn(c, U'0', U'9') || IsIn(c, 0x0660, 0x0669) || IsIn(c, 0x06F0, 0x06F9)) {
        return Direction::kNumber;
    }
    if (IsIn(c, 0x0590, 0x08FF) || IsIn(c, 0xFB1D, 0xFDFF) || IsIn(c, 0xFE70, 0xFEFE) || c == 0x200F) {
        return Direction::kRightToLeft;
    }
    const bool letter = IsIn(c, U'A', U'Z') || IsIn(c, U'a', U'z') || (c >= 0xC0 && !IsIn(c, 0x2000, 0x206F));
    return letter ? Direction::kLeftToRight : Direction::kNeutral;
}

char32_t Mirrored(char32_t c) {
    constexpr std::u32string_view kPairs = U"()[]{}<>«»";
    const size_t at = kPairs.find(c);
    return at == std::u32string_view::npos ? c : kPairs[at ^ 1];
}

}  // namespace

OrderedCharacter CharacterAt(std::u16string_view text, size_t index) {
    const char16_t unit = text[index];
    if ((unit & 0xF800) != 0xD800) {
        return {unit, index, 1};
    }
    if ((unit & 0xFC00) == 0xD800 && index + 1 < text.size() && (text[index + 1] & 0xFC00) == 0xDC00) {
        return {0x10000u + ((static_cast<char32_t>(unit) & 0x3FF) << 10) + (text[index + 1] & 0x3FFu), index, 2};
    }
    return {0xFFFD, index, 1};
}

std::vector<OrderedCharacter> VisualOrder(std::u16string_view text, bool rightToLeft) {
    std::vector<OrderedCharacter> characters;
    std::vector<Direction> directions;
    characters.reserve(text.size());
    bool anyRightToLeft = rightToLeft;
    for (size_t i = 0; i < text.size(); i += characters.back().units) {
        characters.push_back(CharacterAt(text, i));
        directions.push_back(DirectionOf(characters.back().character));
        anyRightToLeft |= directions.back() == Direction::kRightToLeft;
    }
    if (!anyRightToLeft) {
        return characters;
    }

    // Each character's level: even ones run from left to right. Neutral ones take the side of both their neighbours, or
    // the whole text's where those differ; numbers keep their own order at the place that the letters before give them.
    const Direction whole = rightToLeft ? Direction::kRightToLeft : Direction::kLeftToRight;
    const size_t count = characters.size();
    std::vector<uint8_t> levels(count);
    Direction strong = whole;
    for (size_t i = 0; i < count;) {
        if (directions[i] != Direction::kNeutral) {
            if (directions[i] != Direction::kNumber) {
                strong = directions[i];
            }
            const bool odd = strong == Direction::kRightToLeft;
            levels[i] = directions[i] == Direction::kNumber && odd ? 2 : odd ? 1 : rightToLeft ? 2 : 0;
            ++i;
            continue;
        }
        size_t end = i;
        while (end < count && directions[end] == Direction::kNeutral) {
            ++end;
        }
        Direction after = end == count ? whole : directions[end] == Direction::kNumber ? strong : directions[end];
        const Direction side = (i == 0 ? whole : strong) == after ? after : whole;
        std::fill(levels.begin() + static_cast<ptrdiff_t>(i), levels.begin() + static_cast<ptrdiff_t>(end),
                  side == Direction::kRightToLeft ? 1
                  : rightToLeft                   ? 2
                                                  : 0);
        i = end;
    }
    for (size_t i = 0; i < count; ++i) {
        if (levels[i] == 1) {
            characters[i].character = Mirrored(characters[i].character);
        }
    }
    for (uint8_t level = 2; level > 0; --level) {
        for (size_t begin = 0; begin < count;) {
            size_t end = begin;
            while (end < count && levels[end] >= level) {
                ++end;
            }
            std::reverse(characters.begin() + static_cast<ptrdiff_t>(begin),
                         characters.begin() + static_cast<ptrdiff_t>(end));
            std::reverse(levels.begin() + static_cast<ptrdiff_t>(begin), levels.begin() + static_cast<ptrdiff_t>(end));
            begin = std::max(end, begin + 1);
        }
    }
    return characters;
}

}  // namespace host
