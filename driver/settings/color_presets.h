// Named manual colour adjustments that a user has for a printer, up to ten: one section a slot of the current settings
// file, mirrored in a table of the process that the colour page fills and reads. User-interface thread only.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

namespace velmora {

struct ColorPreset {
    WCHAR name[20];  // 17 characters are kept; empty: none
    int32_t colorSample;
    int32_t baseColor;
    int32_t brightness;
    int32_t saturation;
    int32_t contrast;
    int32_t cyanRed;
    int32_t magentaGreen;
    int32_t yellowBlue;
    int32_t workingValue;  // the colour page's own; not stored
    int32_t gamma;
    int32_t black;
    int32_t cyan;
    int32_t magenta;
    int32_t yellow;
};

inline constexpr size_t kColorPresets = 10;

// The process's table, kColorPresets records.
ColorPreset* ColorPresetTable();

// Fills the table from the current settings file: the record of every named slot; the others stay as they are. A file
// that lacks a slot is given ten free ones. Always 1.
int LoadColorPresets();

// Makes the table what the current settings file holds, which isn't changed: the record of a slot that is free or that
// the file lacks becomes empty. A record whose slot has its name still keeps its working value.
void ReadColorPresetsAgain();

// Writes the table's record of this name into the slot of this name, or else into the first free one. False where the
// table has no such record or no slot is free.
BOOL SaveColorPreset(const WCHAR* name);

// Frees the slot of this name; its numbers stay in the file. False where there is none.
BOOL DeleteColorPreset(const WCHAR* name);

}  // namespace velmora
