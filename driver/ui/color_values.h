// The values of a colour adjustment: in the device mode, in the user's presets, and in the two pages of the adjustment
// sheet. What a page's controls show is a ColorPreset without name: read from the device mode when the page opens, and
// from the controls when the page's apply writes its part.
#pragma once

#include <windows.h>

#include <cstdint>

#include "driver/devmode/private_devmode.h"
#include "driver/settings/color_presets.h"
#include "driver/ui/color_adjustment.h"
#include "driver/ui/controls.h"

namespace velmora {

enum AdjustmentPart : uint32_t {
    kAdjustmentPart = 1u << 0,  // sample picture, base colour and six sliders: the adjustment page
    kCmykPart = 1u << 1,        // gamma and four sliders: the CMYK page
    kHiddenPart = 1u << 2,      // what no page shows
    kWholeAdjustment = kAdjustmentPart | kCmykPart | kHiddenPart,
};

// Reads all values; the name stays.
void ReadAdjustment(const PrivateDevMode& devMode, ColorPreset* values);

// Writes the values of these parts. What a field doesn't take becomes its default: files of presets may hold anything.
void WriteAdjustment(const ColorPreset& values, uint32_t parts, PrivateDevMode* devMode);

// Gives the values of these parts their defaults, as buttons 6148 and 6226 do.
void ResetAdjustment(uint32_t parts, ColorPreset* values);

// Writes the values that one kind of objects is treated with.
void WriteObjectValues(const ColorPreset& values, ObjectColor* object);

// What the adjusted sample picture shows.
ColorAdjustment AdjustmentOf(const ColorPreset& values);

// Combo box 6104 (colorSample), 6106 (baseColor).
inline constexpr ChoiceEntry kSampleChoices[] = {
    {kAlwaysOffered, 6150, 0}, {kAlwaysOffered, 6151, 1}, {kAlwaysOffered, 6152, 2}, {kAlwaysOffered, 6153, 3}, {}};
inline constexpr ChoiceEntry kBaseColorChoices[] = {
    {kAlwaysOffered, 6154, 3}, {kAlwaysOffered, 6155, 1}, {kAlwaysOffered, 6156, 2}, {kAlwaysOffered, 6157, 4}, {}};

// A horizontal scroll bar with an edit of its number, both from -kMostAdjustment to kMostAdjustment, and a picture of
// what it changes.
struct AdjustmentSlider {
    int scrollBar;
    int edit;
    int picture;
    int32_t ColorPreset::*value;
    const WCHAR* bitmap;  // of the module with the pictures
};
inline constexpr AdjustmentSlider kAdjustmentSliders[] = {
    {6112, 6113, 6116, &ColorPreset::brightness, TEXT("IDB_BRIGHTNESS_16M")},
    {6118, 6119, 6122, &ColorPreset::saturation, TEXT("IDB_SATURATION_16M")},
    {6124, 6125, 6128, &ColorPreset::contrast, TEXT("IDB_CONTRAST_16M")},
    {6136, 6135, 6137, &ColorPreset::cyanRed, TEXT("IDB_CYAN2RED_16M")},
    {6141, 6140, 6142, &ColorPreset::magentaGreen, TEXT("IDB_MAGENTA2GREEN_16M")},
    {6146, 6145, 6147, &ColorPreset::yellowBlue, TEXT("IDB_YELLOW2BLUE_16M")},
};
inline constexpr AdjustmentSlider kCmykSliders[] = {
    {6212, 6211, 6213, &ColorPreset::black, TEXT("IDB_BLACK")},
    {6216, 6215, 6217, &ColorPreset::cyan, TEXT("IDB_CYAN")},
    {6220, 6219, 6221, &ColorPreset::magenta, TEXT("IDB_MAGENTA")},
    {6224, 6223, 6225, &ColorPreset::yellow, TEXT("IDB_YELLOW")},
};

// Sample pictures of the module: control 6149 shows the plain one, 6107 the one of colorSample, adjusted.
inline constexpr const WCHAR* kPlainSample = TEXT("M7700_B1");
inline constexpr const WCHAR* kAdjustedSamples[] = {TEXT("M7700_D1"), TEXT("M7700_D2"), TEXT("M7700_D3"),
                                                    TEXT("M7700_D4")};

}  // namespace velmora
