// What the Watermark page's controls hold, and what it keeps while its sheet is open.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/base/heap.h"
#include "driver/settings/watermark_list.h"
#include "driver/ui/number_field.h"
#include "driver/ui/watermark_colors.h"

namespace velmora {

struct WatermarkChoices {
    bool isOn;                                     // 7003
    WCHAR name[ARRAYSIZE(WatermarkRecord::text)];  // 7005
    bool isRightToLeft;                            // its reading order
    WCHAR face[ARRAYSIZE(WatermarkStyle::face)];   // 7010; empty: a font that the list doesn't have
    uint32_t style;                                // 7012
    NumberField size;                              // 7014 and 7015
    ShadedColor shade;                             // 7017 and 7023
    COLORREF color;                                // that the two stand for, or the watermark's own
    uint32_t position;                             // 7019
    int angle;                                     // 7025 and 7026, degrees
};

// Which of the buttons 7006 to 7008 can be pressed.
struct WatermarkButtons {
    bool canAdd;
    bool canChange;
    bool canDelete;

    bool operator==(const WatermarkButtons&) const = default;
};

struct WatermarkEdit {
    WatermarkChoices choices;
    WatermarkButtons buttons;
    size_t current;           // index of the entry that the page shows
    uint16_t committedCount;  // of the list, when the page was opened or last applied
    bool isFillingNames;      // 7005's text isn't the user's
    size_t deletedCount;
    HeapOwner<WatermarkRecord> deleted;  // their rendered files go at the next apply
};

}  // namespace velmora
