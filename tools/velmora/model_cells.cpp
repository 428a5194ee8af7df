#include "tools/velmora/model_cells.h"

#include "tools/velmora/escapes.h"

namespace velmora {
namespace {

// The options whose bits are set, by their words, whose values are bit numbers; "bit 5" for one that has no word.
std::vector<std::string> OptionNames(Words bitNumbers, uint32_t mask) {
    std::vector<std::string> names;
    for (int bit = 0; bit < 32; ++bit) {
        if ((mask >> bit & 1) != 0) {
            const std::string word = WordFor(bitNumbers, bit);
            names.push_back(word.empty() ? "bit " + std::to_string(bit) : word);
        }
    }
    return names;
}

}  // namespace

Cell TextOrNull(std::string text) {
    return text.empty() ? EmptyCell() : TextCell(std::move(text));
}

Cell MaskCell(uint32_t mask) {
    return {HexNumber(mask), mask};
}

Cell MillimetreCell(int64_t tenths) {
    return DecimalCell(static_cast<double>(tenths) / 10, 1);
}

std::string WordFor(Words words, int64_t value) {
    const auto word = std::ranges::find(words, value, &Word::value);
    return word != words.end() ? std::string(word->name) : std::string();
}

std::string WordsForBits(Words words, uint64_t bits) {
    std::string text;
    const auto add = [&](const std::string& word) { text += (text.empty() ? "" : ", ") + word; };
    for (const Word& word : words) {
        const auto bit = static_cast<uint64_t>(word.value);
        if (bit != 0 && (bits & bit) == bit) {
            add(std::string(word.name));
            bits &= ~bit;
        }
    }
    if (bits != 0) {
        add(HexNumber(bits));
    }
    return text;
}

std::vector<std::string> TrayOptionNames(uint32_t mask) {
    return OptionNames(kTrayOptionWords, mask);
}

std::vector<std::string> DeviceOptionNames(uint32_t mask) {
    return OptionNames(kDeviceOptionWords, mask);
}

}  // namespace velmora
