// The container format of description files (".XPI"): what stands where in the file, apart from the device block
// (device_model.h). Everything is little-endian; offsets are absolute file positions unless said otherwise.
#pragma once

#include <cstddef>
#include <cstdint>

#include "driver/devdesc/device_model.h"

namespace velmora {

#pragma pack(push, 1)

struct DescriptionFileHeader {
    uint32_t reserved0;
    uint32_t reserved1;
    uint32_t deviceBlockOffset;
    uint32_t languageTableOffset;  // u16 base indexes by primary language; also the end of the device block
    uint32_t stringIndexOffset;    // u16 offsets into the string pool
    uint32_t stringPoolOffset;     // localised strings, 8-bit, NUL-terminated
    uint32_t textIndexOffset;      // u16 offsets into the text pool
    uint32_t textPoolOffset;       // text blocks, 8-bit, NUL-terminated
    uint32_t fontIndexOffset;      // fontCount + 1 u32 offsets into the font pool, ascending
    uint32_t fontPoolOffset;       // also the end of the text pool
    uint32_t imageIndexOffset;     // u32 offsets into the image pool
    uint32_t imagePoolOffset;      // whole bitmap files
    uint32_t blobOffset;
    uint32_t blobSize;            // bytes, 0 for none
    uint32_t patternIndexOffset;  // u32 offsets into the pattern pool
    uint32_t patternPoolOffset;   // pattern blocks, 32*k*k bytes each
    uint32_t nameIndexOffset;     // u16 offsets into the name pool
    uint32_t namePoolOffset;      // names, 8-bit, NUL-terminated
};

#pragma pack(pop)

static_assert(offsetof(DescriptionFileHeader, reserved0) == 0);
static_assert(offsetof(DescriptionFileHeader, reserved1) == 4);
static_assert(offsetof(DescriptionFileHeader, deviceBlockOffset) == 8);
static_assert(offsetof(DescriptionFileHeader, languageTableOffset) == 12);
static_assert(offsetof(DescriptionFileHeader, stringIndexOffset) == 16);
static_assert(offsetof(DescriptionFileHeader, stringPoolOffset) == 20);
static_assert(offsetof(DescriptionFileHeader, textIndexOffset) == 24);
static_assert(offsetof(DescriptionFileHeader, textPoolOffset) == 28);
static_assert(offsetof(DescriptionFileHeader, fontIndexOffset) == 32);
static_assert(offsetof(DescriptionFileHeader, fontPoolOffset) == 36);
static_assert(offsetof(DescriptionFileHeader, imageIndexOffset) == 40);
static_assert(offsetof(DescriptionFileHeader, imagePoolOffset) == 44);
static_assert(offsetof(DescriptionFileHeader, blobOffset) == 48);
static_assert(offsetof(DescriptionFileHeader, blobSize) == 52);
static_assert(offsetof(DescriptionFileHeader, patternIndexOffset) == 56);
static_assert(offsetof(DescriptionFileHeader, patternPoolOffset) == 60);
static_assert(offsetof(DescriptionFileHeader, nameIndexOffset) == 64);
static_assert(offsetof(DescriptionFileHeader, namePoolOffset) == 68);
static_assert(sizeof(DescriptionFileHeader) == 72);

// The device block's pointer slots, 8 bytes each: offset from the block's start in the low 32 bits, 0 in the high ones.
inline constexpr size_t kPointerSlots[] = {
    offsetof(DeviceModel, paperTable),           offsetof(DeviceModel, binTable),
    offsetof(DeviceModel, extraKeywordTable),    offsetof(DeviceModel, reserved40),
    offsetof(DeviceModel, mediaTable),           offsetof(DeviceModel, memoryTable),
    offsetof(DeviceModel, reserved104),          offsetof(DeviceModel, defaultFontA),
    offsetof(DeviceModel, defaultFontB),         offsetof(DeviceModel, fontGroups),
    offsetof(DeviceModel, defaultFontSubs),      offsetof(DeviceModel, constraintTable),
    offsetof(DeviceModel, marginTable),          offsetof(DeviceModel, resolutionTable),
    offsetof(DeviceModel, featureTable),         offsetof(DeviceModel, optionTable),
    offsetof(DeviceModel, colorModeTable),       offsetof(DeviceModel, textColorFeatures),
    offsetof(DeviceModel, imageColorFeatures),   offsetof(DeviceModel, graphicsColorFeatures),
    offsetof(DeviceModel, generalColorFeatures), offsetof(DeviceModel, colorOptionValues),
    offsetof(DeviceModel, presetSettings),       offsetof(DeviceModel, reserved284),
    offsetof(DeviceModel, photoIntentList),      offsetof(DeviceModel, signatureOptionList),
    offsetof(DeviceModel, extraListA),           offsetof(DeviceModel, extraListB),
    offsetof(DeviceModel, mediaColorList),       offsetof(DeviceModel, extraListC),
};

// Entries of a language table that serves every primary language identifier (PRIMARYLANGID, winnt.h: the low 10 bits of
// a language id).
inline constexpr size_t kPrimaryLanguages = 1024;

}  // namespace velmora
