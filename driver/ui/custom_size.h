// The rules of the dialog for the Paper page's custom size, apart from its window.
//
// The dialog's window keeps unit and texts: it shows StartCustomSize's size with FormatLength, reads its edits with
// ReadLength, and ends with StoreCustomSize. Lengths are 0.01 mm; units are values of the device mode's customUnit.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/ui/paper_choices.h"
#include "driver/ui/paper_rules.h"

namespace velmora {

struct CustomSize {
    int32_t width;
    int32_t length;
    uint16_t unit;
};

// Within what the size is, as the page's other choices stand.
const CustomSizeLimits& CustomSizeLimitsOf(const PaperChoices& choices);

// What the dialog begins with: the record's size, not below the limits.
CustomSize StartCustomSize(const PaperChoices& choices);

// The dialog's end: the size, limited, goes into the record, and the custom size is selected in the list of papers.
void StoreCustomSize(PaperChoices* choices, const CustomSize& size);

// How a length is shown in inches whose hundredths it doesn't hit. Millimetres are cut to tenths.
enum class LengthRounding : uint8_t { kNearest, kDown, kUp };

// Writes a length in its unit without the unit's name, at most `capacity` characters with the terminator. `separator`
// stands before the decimals and may have several characters, or none.
void FormatLength(int32_t length, uint16_t unit, const WCHAR* separator, LengthRounding rounding, WCHAR* text,
                  size_t capacity);

// Reads a text in a unit; what it hits no 0.01 mm with is cut. 0 for a text that isn't a length. More than 100,000
// units are 100,000.
int32_t ReadLength(const WCHAR* text, uint16_t unit, const WCHAR* separator);

// A step of a spin control: up or down, within limits. At a limit the length is rounded so that what is shown is within
// it.
struct SteppedLength {
    int32_t length;
    LengthRounding rounding;
};
SteppedLength StepLength(int32_t length, uint16_t unit, bool isUp, int32_t lowest, int32_t highest);

// Strings of the module between which the decimal separator stands, and the last one.
struct RangeTexts {
    uint16_t beforeFirst;
    uint16_t beforeSecond;
    uint16_t end;
};
struct CustomSizeTexts {
    RangeTexts width;
    RangeTexts length;
    uint16_t unit;
};
// What is said of the limits, in a unit.
const CustomSizeTexts& CustomSizeTextsOf(const PaperChoices& choices, uint16_t unit);

// How paper of a size is fed: icon of the module and string beside it.
struct FeedDirection {
    const WCHAR* icon;
    uint16_t text;
};
FeedDirection FeedDirectionOf(int32_t width, int32_t length);

// What the entry of the custom size shows in the list of papers: the string kCustomSizeChoice.stringId, `name`, and the
// size in the record's unit, whose name is the string CustomSizeUnitText.
void FormatCustomSizeEntry(const PageDetails& details, const WCHAR* name, const WCHAR* unitName, const WCHAR* separator,
                           WCHAR* text, size_t capacity);
constexpr uint16_t CustomSizeUnitText(uint16_t unit) {
    return unit == kInches ? 2455 : 2456;
}

}  // namespace velmora
