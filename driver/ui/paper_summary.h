// What the Paper page says of all settings: rows of a label and a value.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/ui/paper_rules.h"

namespace velmora {

// A row's three controls stand side by side: label, separator, value. Rows that aren't used are cleared.
inline constexpr int kFirstSummaryControl = 5036;
inline constexpr int kLastSummaryControl = 5068;
inline constexpr uint16_t kSummarySeparator = 5085;  // string

// Strings are of the language module.
struct SummaryRow {
    uint16_t label;
    uint16_t value;     // 0 where the value is `text`
    const WCHAR* text;  // of the settings that the row was made from
};
inline constexpr size_t kMostSummaryRows = 9;

// The settings of the other pages: from their controls while they are open, else from the device mode.
struct OtherSettings {
    int colorPreset;
    bool isAdvanced;          // colorFlagB
    const WCHAR* presetName;  // of colorPreset 5
    int baseColor;            // colorChoiceB
    int resolutionIndex;
    int colorRendering;
    int colorChoiceA;
    const WCHAR* watermark;  // name; null where there is none
};

// The rows in their order; returns how many. A setting that isn't known has an empty value.
size_t MakeSummary(const PaperChoices& choices, const OtherSettings& other, SummaryRow (&rows)[kMostSummaryRows]);

}  // namespace velmora
