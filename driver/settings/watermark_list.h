// The named watermarks that a user has for a printer: texts and pictures, kept in the section "Watermarks" of the
// printer's settings file. The first ones are built in: their texts come from the language module, and are rewritten
// when the module's language changes, while the user's own stay.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/settings/stored_list.h"

namespace velmora {

// WatermarkRecord::type; 0 is a blank record, which ends a list.
inline constexpr uint32_t kTextWatermark = 1;
inline constexpr uint32_t kImageWatermark = 2;

// Built-in watermarks of a language; fewer of Japanese.
inline constexpr uint16_t kBuiltInWatermarks = 8;
inline constexpr uint16_t kJapaneseBuiltIns = 6;

// How the built-in ones are drawn; a blank record has this colour and angle, too.
inline constexpr UINT kBuiltInFaceString = 2498;  // of the language module
inline constexpr uint16_t kBuiltInPoints = 50;
inline constexpr uint32_t kWatermarkColor = 0x7070FF;  // a light red
inline constexpr uint16_t kWatermarkAngle = 450;       // 0.1 degree

// What a colour (wingdi.h) becomes in a file without colours: 0 black to 255 white.
constexpr uint8_t GrayOf(COLORREF color) {
    return static_cast<uint8_t>((74u * GetRValue(color) + 155u * GetGValue(color) + 27u * GetBValue(color)) / 256);
}

// How the text of a text watermark is drawn.
struct WatermarkStyle {
    WCHAR face[32];
    uint8_t charSet;  // the font's (wingdi.h)
    uint8_t reserved1[3];
    uint32_t bold;  // 0 or 1, as the next
    uint32_t italic;
    uint16_t size;  // points
    uint16_t reserved2;
    uint32_t outline;      // 0 or 1
    uint32_t color;        // 0x00BBGGRR
    uint32_t rightToLeft;  // 0 or 1
};

// A watermark. The record has no padding, and texts of the store are zero behind their terminators, so two lists can be
// compared byte for byte.
struct WatermarkRecord {
    uint32_t type;
    WCHAR text[64];  // the name and, of a text watermark, what is drawn
    union {
        WatermarkStyle style;       // of a text watermark
        WCHAR imageName[MAX_PATH];  // of an image watermark, its picture file
    };
    uint32_t scaleX;  // percent, of an image watermark, as the next
    uint32_t scaleY;
    uint16_t angle;      // 0.1 degree
    uint16_t placement;  // where on the page: the device mode's watermarkPosition
    int32_t positionX;   // offset
    int32_t positionY;
    uint32_t resolution;  // dpi of the rendered files, as the next two
    uint32_t width;       // dots
    uint32_t height;
    WCHAR fileName[MAX_PATH];       // path of the rendered monochrome file; empty: not rendered
    WCHAR colorFileName[MAX_PATH];  // path of the rendered colour file, or empty
    uint32_t needsRemake;           // 1: the files are to be rendered (again); not stored
};

static_assert(sizeof(WatermarkStyle) == 32 * sizeof(WCHAR) + 7 * sizeof(uint32_t));
static_assert(sizeof(WatermarkRecord) == (64 + 3 * MAX_PATH) * sizeof(WCHAR) + 10 * sizeof(uint32_t));

using WatermarkList = StoredList<WatermarkRecord>;

// The printer's watermarks, the built-in ones brought up to date first. A printer without a settings file has none.
WatermarkList LoadWatermarkList(const WCHAR* printerName);

// The watermarks of an INI file. A list with one invalid entry reads as empty.
WatermarkList ReadWatermarkList(const WCHAR* iniFile);

// Stores the printer's watermarks; does nothing where it has no settings file name.
void SaveWatermarkList(const WCHAR* printerName, const WatermarkRecord* records, uint16_t count);

// Replaces the watermarks of an INI file. The built-in ones are taken to be in the language of the printer's module.
void WriteWatermarkList(const WCHAR* printerName, const WCHAR* iniFile, const WatermarkRecord* records, uint16_t count);

// Writes the built-in watermarks of an INI file anew where it has none yet or they are in another language than the
// printer's module, and moves the user's own where a language has more of them or fewer. Does nothing without a module.
void UpdateWatermarkDefaults(const WCHAR* printerName, const WCHAR* iniFile);

// Deletes an INI file and the rendered files of the watermarks in it.
void DeleteWatermarkFiles(const WCHAR* iniFile);

// Deletes a watermark's rendered files and forgets their paths.
void DeleteRenderedFiles(WatermarkRecord* record);

// The record that a new watermark starts from: no type and no text, Arial in 72 points at 45 degrees, to be rendered.
void MakeBlankWatermark(WatermarkRecord* record);

// The built-in watermarks of a language module, null for none. Without a face to draw them in there are none.
WatermarkList BuildDefaultWatermarkList(HMODULE module);

// The first watermark one of whose rendered files has this path, or null where there is none or `file` is empty. As
// much of a path counts as a device mode has room for, 95 characters; `file` needs no terminator behind them.
const WatermarkRecord* FindWatermarkByFile(const WatermarkList& list, const WCHAR* file);

}  // namespace velmora
