#include "driver/ui/custom_size.h"

#include <algorithm>

#include "driver/base/format.h"
#include "driver/base/text.h"

namespace velmora {
namespace {

constexpr int kPerMillimetre = 100;  // 0.01 mm

constexpr int32_t kStepInMillimetres = 10;
constexpr int32_t kStepInInches = 25;

constexpr CustomSizeTexts kPlainTexts[] = {
    {{5343, 5344, 5345}, {5354, 5355, 5356}, 5320},  // inches
    {{5339, 5340, 5341}, {5348, 5349, 5350}, 5319},  // millimetres
};
constexpr CustomSizeTexts kBothSidesTexts[] = {
    {{5346, 5347, 5345}, {5357, 5358, 5356}, 5320},
    {{5342, 5340, 5341}, {5351, 5349, 5350}, 5319},
};

bool IsDigit(WCHAR character) {
    return character >= TEXT('0') && character <= TEXT('9');
}

// The digits in front of `*text`, which moves behind them.
int64_t TakeDigits(const WCHAR** text) {
    constexpr int64_t kMost = 100000;
    int64_t number = 0;
    for (; IsDigit(**text); ++*text) {
        number = (std::min)(number * 10 + (**text - TEXT('0')), kMost);
    }
    return number;
}

// The first `digits` decimals in front of `*text`, as if that many were there. `*text` moves behind all of them.
int64_t TakeDecimals(const WCHAR** text, int digits) {
    int64_t decimals = 0;
    for (int i = 0; i < digits; ++i) {
        decimals *= 10;
        if (IsDigit(**text)) {
            decimals += **text - TEXT('0');
            ++*text;
        }
    }
    TakeDigits(text);
    return decimals;
}

// Whole inches or millimetres, and the decimals that are shown of them.
struct ShownLength {
    int64_t whole;
    int64_t decimals;
};

ShownLength ShowMillimetres(int64_t length) {
    return {length / kPerMillimetre, length % kPerMillimetre / 10};
}

ShownLength ShowInches(int64_t length, LengthRounding rounding) {
    constexpr int64_t kPerHundredth = 254;  // tenths of 0.01 mm
    const int64_t added = rounding == LengthRounding::kNearest ? kPerHundredth / 2
                          : rounding == LengthRounding::kUp    ? kPerHundredth - 1
                                                               : 0;
    const int64_t hundredths = (length * 10 + added) / kPerHundredth;
    return {hundredths / 100, hundredths % 100};
}

}  // namespace

const CustomSizeLimits& CustomSizeLimitsOf(const PaperChoices& choices) {
    if (choices.duplex.isChecked) {
        return kDuplexSizeLimits;
    }
    return choices.flagB.isChecked ? kFlagBSizeLimits : kCustomSizeLimits;
}

CustomSize StartCustomSize(const PaperChoices& choices) {
    const CustomSizeLimits& limits = CustomSizeLimitsOf(choices);
    const bool isOnBothSides = choices.duplex.isChecked || choices.flagB.isChecked;
    const PageDetails& details = choices.details;
    return {isOnBothSides ? (std::max)(details.customWidth, limits.minWidth) : details.customWidth,
            isOnBothSides ? (std::max)(details.customLength, limits.minLength) : details.customLength,
            details.customUnit};
}

void StoreCustomSize(PaperChoices* choices, const CustomSize& size) {
    const CustomSizeLimits& limits = CustomSizeLimitsOf(*choices);
    choices->details.customWidth = std::clamp(size.width, limits.minWidth, limits.maxWidth);
    choices->details.customLength = std::clamp(size.length, limits.minLength, limits.maxLength);
    choices->details.customUnit = size.unit;
    choices->paper.selected = kCustomSizePaper;
    RefillPapers(choices);
}

void FormatLength(int32_t length, uint16_t unit, const WCHAR* separator, LengthRounding rounding, WCHAR* text,
                  size_t capacity) {
    const int64_t size = length < 0 ? -int64_t{length} : int64_t{length};
    const WCHAR* const sign = length < 0 ? TEXT("-") : TEXT("");
    if (unit == kInches) {
        const ShownLength shown = ShowInches(size, rounding);
        FormatWide(text, capacity, TEXT("%s%d%s%02d"), sign, shown.whole, separator, shown.decimals);
    } else {
        const ShownLength shown = ShowMillimetres(size);
        FormatWide(text, capacity, TEXT("%s%d%s%d"), sign, shown.whole, separator, shown.decimals);
    }
}

int32_t ReadLength(const WCHAR* text, uint16_t unit, const WCHAR* separator) {
    while (*text == TEXT(' ') || *text == TEXT('\t')) {
        ++text;
    }
    const bool isNegative = *text == TEXT('-');
    if (isNegative || *text == TEXT('+')) {
        ++text;
    }
    const int64_t whole = TakeDigits(&text);
    const int digits = unit == kInches ? 2 : 1;
    int64_t decimals = 0;
    if (*separator != 0 && TextBeginsWith(text, separator)) {
        text += TextLength(separator);
        decimals = TakeDecimals(&text, digits);
    }
    if (*text != 0 && *text != TEXT(' ') && *text != TEXT('\t') && *text != TEXT('\r') && *text != TEXT('\n')) {
        return 0;
    }
    const int64_t length = unit == kInches ? (whole * 100 + decimals) * 254 / 10 : (whole * 10 + decimals) * 10;
    return static_cast<int32_t>(isNegative ? -length : length);
}

SteppedLength StepLength(int32_t length, uint16_t unit, bool isUp, int32_t lowest, int32_t highest) {
    const int64_t step = unit == kInches ? kStepInInches : kStepInMillimetres;
    const int64_t stepped = isUp ? length + step : length - step;
    if (stepped <= lowest) {
        return {lowest, LengthRounding::kUp};
    }
    if (stepped >= highest) {
        return {highest, LengthRounding::kDown};
    }
    return {static_cast<int32_t>(stepped), LengthRounding::kNearest};
}

const CustomSizeTexts& CustomSizeTextsOf(const PaperChoices& choices, uint16_t unit) {
    const bool isOnBothSides = choices.duplex.isChecked || choices.flagB.isChecked;
    return (isOnBothSides ? kBothSidesTexts : kPlainTexts)[unit == kInches ? 0 : 1];
}

FeedDirection FeedDirectionOf(int32_t width, int32_t length) {
    return length < width ? FeedDirection{TEXT("ICO_LANDSCAPE_FEED"), 5338}
                          : FeedDirection{TEXT("ICO_PORTRAIT_FEED"), 5337};
}

void FormatCustomSizeEntry(const PageDetails& details, const WCHAR* name, const WCHAR* unitName, const WCHAR* separator,
                           WCHAR* text, size_t capacity) {
    constexpr size_t kLengthCapacity = 24;
    WCHAR width[kLengthCapacity];
    WCHAR length[kLengthCapacity];
    FormatLength(details.customWidth, details.customUnit, separator, LengthRounding::kNearest, width, kLengthCapacity);
    FormatLength(details.customLength, details.customUnit, separator, LengthRounding::kNearest, length,
                 kLengthCapacity);
    FormatWide(text, capacity, TEXT("%s (%s x %s %s)"), name, width, length, unitName);
}

}  // namespace velmora
