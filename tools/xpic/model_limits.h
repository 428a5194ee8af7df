// What a model can hold: the longest texts and the ranges of numbers that its readers take. A source beyond them is
// refused, and a description file beyond them isn't well formed.
#pragma once

#include <cstddef>
#include <cstdint>

#include "driver/devdesc/device_model.h"

namespace velmora {

// Longest texts, in bytes without the terminator, as their readers hold them.
struct TextLimit {
    static constexpr size_t kLabel = 63;
    static constexpr size_t kPaperLabel = 127;  // media and messages too
    static constexpr size_t kTrayLabel = 47;
    static constexpr size_t kLink = 255;
    static constexpr size_t kKeyword = 119;
    static constexpr size_t kKeywordName = 79;  // the part of a keyword behind its colon
    static constexpr size_t kNamespace = 159;
    static constexpr size_t kRendererPaper = 14;
    static constexpr size_t kRendererMedium = 63;
    static constexpr size_t kJobWord = 127;   // a key or a value of a job line
    static constexpr size_t kJobText = 1023;  // a whole job command
    static constexpr size_t kExtraText = 11;  // the device mode's extraText
    static constexpr size_t kFontFace = 31;   // the device mode's font names
    static constexpr size_t kSubstitution = 63;
};

// Ids of papers: the published ones, and from kFirstOwnPaperId the model's own.
inline constexpr int kLastStandardPaperId = 118;
inline constexpr int kFirstOwnPaperId = 256;
inline constexpr int kFirstCustomId = 448;  // of the users' custom sizes

inline constexpr int kA4 = 9;  // of new device modes, for every locale

// dmDefaultSource values of trays, likewise.
inline constexpr int kLastStandardBin = 15;
inline constexpr int kFirstOwnBin = 256;

// dmMediaType of the model's own media, DMMEDIA_USER (wingdi.h).
inline constexpr uint32_t kFirstOwnMedium = 256;

// dmMediaType and dmICMIntent: published values up to `lastPublished`, or the model's own. Others are repaired.
constexpr bool IsDeviceModeValue(uint32_t value, uint32_t lastPublished) {
    return value <= lastPublished || value >= kFirstOwnMedium;
}
inline constexpr uint32_t kLastPublishedMedium = 3;
inline constexpr uint32_t kLastPublishedIntent = 4;

// The mask of a record that every printer has.
inline constexpr uint32_t kPlainMask = 1;
// The kind of a color mode that is nothing special: 0 would end the table.
inline constexpr uint32_t kPlainColorMode = 1;
// Bits of the installed tray options that stand for what every printer has.
inline constexpr uint32_t kAlwaysInstalled = 3;

// The constraint check looks for the selected extra keyword among these many.
inline constexpr size_t kSearchedExtraKeywords = 32;

// ConstraintRecord.flags: only when printing on both sides. The other bits are device options.
inline constexpr uint32_t kOnlyOnBothSides = 1;

// The unit of margins in 0.1 mm.
inline constexpr int16_t kTenthsPerInch = 254;

// MarginRecord.orientationMask.
inline constexpr uint16_t kBothOrientations = 3;

// What the device mode has room for.
inline constexpr size_t kMostFeatures = 32;
inline constexpr size_t kMostColorFeatures = 4;  // a group
inline constexpr size_t kPatternSizes[] = {8, 16, 32};

// Bytes of a command: the 13 bits of a slice's length.
inline constexpr uint16_t kLongestCommand = kSliceLengthMask;

// Bytes of the pattern block of a resolution whose pattern has this size.
constexpr size_t PatternBlockSize(size_t size) {
    return 32 * size * size;
}

}  // namespace velmora
