// The words of print tickets, whatever printer they are for.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace fuzz {

using Text = std::u16string;
using Texts = std::vector<Text>;

// The printer's lists that name options besides the words.
enum OptionList : uint8_t { kNoList, kPapers, kMedia, kTrays, kResolutions, kColors, kIntents, kSignatures };

// '#' in a word stands for the step's number.
struct FeatureWords {
    const WCHAR* space;
    bool isPart;  // of another feature
    const char* name;
    OptionList list;
    const char* options;
    const char* properties;
};

extern const std::span<const FeatureWords> kFeatures;

extern const char kParameterWords[];
extern const char kPropertyWords[];
extern const char kElementWords[];

// The namespaces of tickets, an unknown one, and none.
extern const std::span<const WCHAR* const> kSpaces;

// One of the words between the blanks, counted round about; a few `digits` stand for '#'.
Text WordOf(const char* words, size_t number, int32_t digits);

}  // namespace fuzz
