// The device mode: all settings of a document in 4088 bytes. The published 220-byte DEVMODEW (wingdi.h) is followed by
// this driver's private part. The spooler stores it per printer and job and applications copy it, so every offset and
// width is binding. What each field means, defaults to and may hold: devmode_fields.h.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

namespace velmora {

#pragma pack(push, 1)

// A pair of values of the model's command blob: two positions, or a start and a length.
struct BlobRef {
    int16_t first;
    int16_t second;
};

// A slice of the model's command blob.
struct BlobSlice {
    int16_t start;
    uint16_t length;  // low 13 bits: length in bytes; top 3 bits: flags
};

// Colour treatment of one kind of object.
struct ObjectColor {
    uint16_t mode;
    uint8_t reserved2[2];
    uint32_t flag;
    uint16_t values[7];
    uint8_t reserved22[2];
};

// The private part, 3868 bytes. Bytes named reserved hold no field and are 0 in a new device mode.
struct PrivateDevMode {
    uint16_t privateVersion;
    uint16_t privateSignature;
    uint32_t fontRecordCount;
    uint32_t fontDataOffset;
    WCHAR primaryFont[32];
    WCHAR secondaryFont[32];
    int32_t defaultFontSize;
    uint32_t patternMode;
    uint32_t patternOffset;
    uint32_t patternSize;
    uint32_t reserved156;
    int16_t resolutionId;
    uint8_t reserved162[2];
    uint16_t rotate180;
    uint16_t collateCopy;
    uint16_t scaleMode;
    int16_t scaleValue;
    int16_t scaleLength;
    int16_t scaleWidth;
    int16_t booklet;
    uint16_t layoutMode;
    uint32_t pagesPerSheet;
    int32_t gutterShiftX;
    int32_t gutterShiftY;
    uint32_t watermarkFlags;
    int32_t watermarkOffsetX;
    int32_t watermarkOffsetY;
    uint16_t watermarkPages;
    int16_t watermarkIndex;
    union {
        struct {
            WCHAR watermarkText[64];  // text of a text watermark
            WCHAR watermarkFont[32];  // font of a text watermark
        };
        WCHAR watermarkFile[96];  // file path of an image watermark
    };
    int32_t watermarkFontSize;
    int32_t watermarkAngle;
    uint32_t watermarkColor;
    int16_t watermarkBold;
    int16_t watermarkItalic;
    uint32_t watermarkPosition;
    uint8_t reserved420[8];
    uint16_t frontCoverMode;
    uint16_t frontCoverBin;
    int16_t frontCoverPaper;
    int16_t frontCoverLength;
    int16_t frontCoverWidth;
    uint16_t frontCoverNup;
    uint16_t frontCoverBothSides;
    uint16_t backCoverMode;
    uint16_t backCoverBin;
    int16_t backCoverPaper;
    int16_t backCoverLength;
    int16_t backCoverWidth;
    uint16_t interleaveMode;
    uint16_t interleaveBin;
    int16_t interleavePaper;
    int16_t interleaveLength;
    int16_t interleaveWidth;
    uint16_t marginMode;
    char extraText[12];
    char auxText[128];
    char pjlJobStart[640];
    char pjlJobEnd[256];
    uint32_t colorMode;
    int16_t mediaIndex;
    uint8_t reserved1506[14];
    int16_t frontCoverMedia;
    uint8_t reserved1522[14];
    int16_t backCoverMedia;
    uint8_t reserved1538[14];
    int16_t interleaveMedia;
    uint8_t reserved1554[14];
    uint16_t modelCode;
    int16_t customMargins[4];
    uint16_t optionAreaOffset;
    uint16_t noJobName;
    uint16_t blackText;
    uint16_t outputOption;
    uint16_t backCoverBothSides;
    uint16_t nupOrder;
    uint16_t pageOrderFlags;
    uint16_t trueTypeMode;
    int16_t psContrast;
    int16_t psBrightness;
    int16_t psHalftoneFrequency;
    int16_t psHalftoneAngle;
    int16_t psHalftoneExtra;
    uint32_t optionFlags;
    uint16_t overlayMode;
    WCHAR overlayName[13];
    BlobRef blobRefs[6];
    uint16_t nonPostScriptFlag;
    int16_t nupBorderWidth;
    uint16_t separatorMode;
    uint16_t exceptionAreaOffset;
    uint16_t separatorBin;
    int16_t separatorMedia;
    uint8_t reserved1672[14];
    uint16_t bookletGutter;
    uint16_t bookletValue;
    int16_t separatorPaper;
    int16_t separatorLength;
    int16_t separatorWidth;
    WCHAR overlayName2[13];
    uint16_t sliceTableOffset;
    int16_t sliceCount;
    uint16_t posterMode;
    uint8_t reserved1728[4];
    uint16_t finishingOption;
    uint8_t reserved1734[8];
    int16_t finishingA;
    int16_t finishingB;
    uint16_t finishingSide;
    int16_t marginValue;
    uint8_t reserved1750[53];
    uint8_t acceptMark;
    uint8_t reserved1804[16];
    uint32_t extensionTag;
    uint32_t extensionMagicA;
    uint32_t extensionMagicB;
    WCHAR descriptionPath[160];
    WCHAR settingsFolder[160];
    uint32_t imageMode;
    int16_t imageValueA;
    int16_t imageValueB;
    BlobSlice blobSlices[16];
    int16_t featureSelection[32];
    int16_t extraKeywordIndex;
    uint16_t extraFlag;
    int16_t colorModeIndex;
    uint8_t reserved2614[12];
    int16_t textColorOptions[4];
    int16_t graphicsColorOptions[4];
    int16_t imageColorOptions[4];
    int16_t generalColorOptions[4];
    uint16_t uiFitToPaper;
    uint16_t uiMediaValue;
    uint16_t uiFlagA;
    char uiCode[5];
    uint8_t uiZoomOn;
    uint8_t reserved2670[1];
    uint16_t uiZoomPercent;
    uint16_t uiRotate180;
    uint16_t uiDuplex;
    uint16_t uiFlagB;
    char uiLabel[5];
    uint16_t uiFlagC;
    uint32_t uiPageLayout;
    uint16_t uiFlagD;
    uint16_t uiBinding;
    int16_t uiShiftX;
    int16_t uiShiftY;
    uint16_t uiPageOrder;
    uint16_t uiFlagE;
    uint16_t uiChoice;
    int32_t customWidth;
    int32_t customLength;
    uint16_t customUnit;
    uint16_t colorPreset;
    uint16_t colorRendering;
    uint8_t reserved2718[4];
    uint32_t colorAuto;
    int16_t colorAdjust[3];
    uint16_t colorChoiceA;
    uint16_t colorChoiceB;
    int16_t colorBalance[3];
    uint16_t colorFlagA;
    int16_t colorLevels[4];
    uint16_t colorFlagB;
    uint8_t reserved2754[76];
    WCHAR colorPresetName[32];
    int16_t resolutionIndex;
    uint16_t resolutionFlag;
    ObjectColor objectColor[3];
    WCHAR objectPresetNames[3][11];
    uint16_t outputSetting;
    uint8_t reserved3038[2];
    uint16_t outputFlag;
    int16_t outputLevel;
    int16_t outputStep;
    uint8_t finishFlagA;
    uint8_t finishChoice;
    uint8_t finishSide;
    uint8_t finishFlagB;
    char outputText[17];
    uint8_t finishFlags[3];
    uint8_t finishFlagC;
    uint8_t shadeMaxFlag;
    uint8_t reserved3072[1];
    uint8_t uiStale;
    uint8_t reserved3074[1];
    uint8_t exceptionCount;
    uint8_t pageListCount;
    uint8_t exceptionArea[734];
    uint8_t reserved3811[3];
    uint16_t separatorSheet;
    uint16_t photoIntentIndex;
    uint16_t signatureOptionIndex;
    uint16_t mediaColorIndex;
    uint16_t jobInterleaving;
    uint16_t jobImageType;
    uint8_t reserved3826[42];
};

#pragma pack(pop)

// The whole device mode, aligned as DEVMODEW is.
struct VelmoraDevMode {
    DEVMODEW publicPart;
    PrivateDevMode privatePart;
};

inline constexpr WORD kDevModeSpecVersion = 0x401;
inline constexpr WORD kPublicDevModeSize = 220;
inline constexpr WORD kPrivateDevModeSize = 3868;
inline constexpr DWORD kDevModeSize = kPublicDevModeSize + kPrivateDevModeSize;

inline constexpr uint16_t kPrivateVersion = 1;
inline constexpr uint16_t kPrivateSignature = 0xCACA;

// Bit values of colour devices in dmFields (wingdi.h).
inline constexpr DWORD kColorFields = DM_COLOR | DM_ICMMETHOD | DM_ICMINTENT | DM_MEDIATYPE;

// Values of scaleMode that more than the renderer tells apart.
enum ScaleMode : uint16_t {
    kScaleFitCentred = 1,
    kScaleZoomTopLeft = 2,
    kScaleCustomTopLeft = 4,
    kScaleFitTopLeft = 33,
    kScaleZoomCentred = 66,
    kScaleCustomCentred = 68,
};

// True for the modes whose scaleValue is a percentage.
constexpr bool IsZoom(uint16_t scaleMode) {
    return scaleMode == kScaleZoomTopLeft || scaleMode == kScaleZoomCentred;
}

// True for the modes that scale documents onto another paper, scaleValue.
constexpr bool IsFitToPaper(uint16_t scaleMode) {
    return scaleMode == kScaleFitCentred || scaleMode == kScaleFitTopLeft || scaleMode == kScaleCustomTopLeft ||
           scaleMode == kScaleCustomCentred;
}

// Bit values of watermarkFlags.
enum WatermarkFlag : uint32_t {
    kWatermarkIsText = 1u << 0,
    kWatermarkIsImage = 1u << 1,
    kWatermarkUnderPage = 1u << 2,
    kWatermarkIsOutline = 1u << 4,
    kWatermarkIsRendered = 1u << 5,  // a rendered file of the watermark list
};

// The offsets that three fields hold: where areas begin, counted from extensionTag.
inline constexpr uint16_t kOptionAreaOffset =
    offsetof(PrivateDevMode, settingsFolder) - offsetof(PrivateDevMode, extensionTag);
inline constexpr uint16_t kSliceTableOffset =
    offsetof(PrivateDevMode, blobSlices) - offsetof(PrivateDevMode, extensionTag);
inline constexpr uint16_t kExceptionAreaOffset =
    offsetof(PrivateDevMode, exceptionCount) - offsetof(PrivateDevMode, extensionTag);

static_assert(sizeof(DEVMODEW) == kPublicDevModeSize);
static_assert(offsetof(VelmoraDevMode, privatePart) == kPublicDevModeSize);
static_assert(sizeof(VelmoraDevMode) == 4088);
static_assert(kOptionAreaOffset == 332 && kSliceTableOffset == 660 && kExceptionAreaOffset == 1255);
static_assert(kColorFields == 0x3800800);

static_assert(sizeof(BlobRef) == 4 && sizeof(BlobSlice) == 4);
static_assert(offsetof(ObjectColor, flag) == 4);
static_assert(offsetof(ObjectColor, values) == 8);
static_assert(sizeof(ObjectColor) == 24);
static_assert(offsetof(PrivateDevMode, privateVersion) == 0);
static_assert(offsetof(PrivateDevMode, privateSignature) == 2);
static_assert(offsetof(PrivateDevMode, fontRecordCount) == 4);
static_assert(offsetof(PrivateDevMode, fontDataOffset) == 8);
static_assert(offsetof(PrivateDevMode, primaryFont) == 12);
static_assert(offsetof(PrivateDevMode, secondaryFont) == 76);
static_assert(offsetof(PrivateDevMode, defaultFontSize) == 140);
static_assert(offsetof(PrivateDevMode, patternMode) == 144);
static_assert(offsetof(PrivateDevMode, patternOffset) == 148);
static_assert(offsetof(PrivateDevMode, patternSize) == 152);
static_assert(offsetof(PrivateDevMode, reserved156) == 156);
static_assert(offsetof(PrivateDevMode, resolutionId) == 160);
static_assert(offsetof(PrivateDevMode, rotate180) == 164);
static_assert(offsetof(PrivateDevMode, collateCopy) == 166);
static_assert(offsetof(PrivateDevMode, scaleMode) == 168);
static_assert(offsetof(PrivateDevMode, scaleValue) == 170);
static_assert(offsetof(PrivateDevMode, scaleLength) == 172);
static_assert(offsetof(PrivateDevMode, scaleWidth) == 174);
static_assert(offsetof(PrivateDevMode, booklet) == 176);
static_assert(offsetof(PrivateDevMode, layoutMode) == 178);
static_assert(offsetof(PrivateDevMode, pagesPerSheet) == 180);
static_assert(offsetof(PrivateDevMode, gutterShiftX) == 184);
static_assert(offsetof(PrivateDevMode, gutterShiftY) == 188);
static_assert(offsetof(PrivateDevMode, watermarkFlags) == 192);
static_assert(offsetof(PrivateDevMode, watermarkOffsetX) == 196);
static_assert(offsetof(PrivateDevMode, watermarkOffsetY) == 200);
static_assert(offsetof(PrivateDevMode, watermarkPages) == 204);
static_assert(offsetof(PrivateDevMode, watermarkIndex) == 206);
static_assert(offsetof(PrivateDevMode, watermarkText) == 208);
static_assert(offsetof(PrivateDevMode, watermarkFile) == 208);
static_assert(offsetof(PrivateDevMode, watermarkFont) == 336);
static_assert(offsetof(PrivateDevMode, watermarkFontSize) == 400);
static_assert(offsetof(PrivateDevMode, watermarkAngle) == 404);
static_assert(offsetof(PrivateDevMode, watermarkColor) == 408);
static_assert(offsetof(PrivateDevMode, watermarkBold) == 412);
static_assert(offsetof(PrivateDevMode, watermarkItalic) == 414);
static_assert(offsetof(PrivateDevMode, watermarkPosition) == 416);
static_assert(offsetof(PrivateDevMode, frontCoverMode) == 428);
static_assert(offsetof(PrivateDevMode, frontCoverBin) == 430);
static_assert(offsetof(PrivateDevMode, frontCoverPaper) == 432);
static_assert(offsetof(PrivateDevMode, frontCoverLength) == 434);
static_assert(offsetof(PrivateDevMode, frontCoverWidth) == 436);
static_assert(offsetof(PrivateDevMode, frontCoverNup) == 438);
static_assert(offsetof(PrivateDevMode, frontCoverBothSides) == 440);
static_assert(offsetof(PrivateDevMode, backCoverMode) == 442);
static_assert(offsetof(PrivateDevMode, backCoverBin) == 444);
static_assert(offsetof(PrivateDevMode, backCoverPaper) == 446);
static_assert(offsetof(PrivateDevMode, backCoverLength) == 448);
static_assert(offsetof(PrivateDevMode, backCoverWidth) == 450);
static_assert(offsetof(PrivateDevMode, interleaveMode) == 452);
static_assert(offsetof(PrivateDevMode, interleaveBin) == 454);
static_assert(offsetof(PrivateDevMode, interleavePaper) == 456);
static_assert(offsetof(PrivateDevMode, interleaveLength) == 458);
static_assert(offsetof(PrivateDevMode, interleaveWidth) == 460);
static_assert(offsetof(PrivateDevMode, marginMode) == 462);
static_assert(offsetof(PrivateDevMode, extraText) == 464);
static_assert(offsetof(PrivateDevMode, auxText) == 476);
static_assert(offsetof(PrivateDevMode, pjlJobStart) == 604);
static_assert(offsetof(PrivateDevMode, pjlJobEnd) == 1244);
static_assert(offsetof(PrivateDevMode, colorMode) == 1500);
static_assert(offsetof(PrivateDevMode, mediaIndex) == 1504);
static_assert(offsetof(PrivateDevMode, frontCoverMedia) == 1520);
static_assert(offsetof(PrivateDevMode, backCoverMedia) == 1536);
static_assert(offsetof(PrivateDevMode, interleaveMedia) == 1552);
static_assert(offsetof(PrivateDevMode, modelCode) == 1568);
static_assert(offsetof(PrivateDevMode, customMargins) == 1570);
static_assert(offsetof(PrivateDevMode, optionAreaOffset) == 1578);
static_assert(offsetof(PrivateDevMode, noJobName) == 1580);
static_assert(offsetof(PrivateDevMode, blackText) == 1582);
static_assert(offsetof(PrivateDevMode, outputOption) == 1584);
static_assert(offsetof(PrivateDevMode, backCoverBothSides) == 1586);
static_assert(offsetof(PrivateDevMode, nupOrder) == 1588);
static_assert(offsetof(PrivateDevMode, pageOrderFlags) == 1590);
static_assert(offsetof(PrivateDevMode, trueTypeMode) == 1592);
static_assert(offsetof(PrivateDevMode, psContrast) == 1594);
static_assert(offsetof(PrivateDevMode, psBrightness) == 1596);
static_assert(offsetof(PrivateDevMode, psHalftoneFrequency) == 1598);
static_assert(offsetof(PrivateDevMode, psHalftoneAngle) == 1600);
static_assert(offsetof(PrivateDevMode, psHalftoneExtra) == 1602);
static_assert(offsetof(PrivateDevMode, optionFlags) == 1604);
static_assert(offsetof(PrivateDevMode, overlayMode) == 1608);
static_assert(offsetof(PrivateDevMode, overlayName) == 1610);
static_assert(offsetof(PrivateDevMode, blobRefs) == 1636);
static_assert(offsetof(PrivateDevMode, nonPostScriptFlag) == 1660);
static_assert(offsetof(PrivateDevMode, nupBorderWidth) == 1662);
static_assert(offsetof(PrivateDevMode, separatorMode) == 1664);
static_assert(offsetof(PrivateDevMode, exceptionAreaOffset) == 1666);
static_assert(offsetof(PrivateDevMode, separatorBin) == 1668);
static_assert(offsetof(PrivateDevMode, separatorMedia) == 1670);
static_assert(offsetof(PrivateDevMode, bookletGutter) == 1686);
static_assert(offsetof(PrivateDevMode, bookletValue) == 1688);
static_assert(offsetof(PrivateDevMode, separatorPaper) == 1690);
static_assert(offsetof(PrivateDevMode, separatorLength) == 1692);
static_assert(offsetof(PrivateDevMode, separatorWidth) == 1694);
static_assert(offsetof(PrivateDevMode, overlayName2) == 1696);
static_assert(offsetof(PrivateDevMode, sliceTableOffset) == 1722);
static_assert(offsetof(PrivateDevMode, sliceCount) == 1724);
static_assert(offsetof(PrivateDevMode, posterMode) == 1726);
static_assert(offsetof(PrivateDevMode, finishingOption) == 1732);
static_assert(offsetof(PrivateDevMode, finishingA) == 1742);
static_assert(offsetof(PrivateDevMode, finishingB) == 1744);
static_assert(offsetof(PrivateDevMode, finishingSide) == 1746);
static_assert(offsetof(PrivateDevMode, marginValue) == 1748);
static_assert(offsetof(PrivateDevMode, acceptMark) == 1803);
static_assert(offsetof(PrivateDevMode, extensionTag) == 1820);
static_assert(offsetof(PrivateDevMode, extensionMagicA) == 1824);
static_assert(offsetof(PrivateDevMode, extensionMagicB) == 1828);
static_assert(offsetof(PrivateDevMode, descriptionPath) == 1832);
static_assert(offsetof(PrivateDevMode, settingsFolder) == 2152);
static_assert(offsetof(PrivateDevMode, imageMode) == 2472);
static_assert(offsetof(PrivateDevMode, imageValueA) == 2476);
static_assert(offsetof(PrivateDevMode, imageValueB) == 2478);
static_assert(offsetof(PrivateDevMode, blobSlices) == 2480);
static_assert(offsetof(PrivateDevMode, featureSelection) == 2544);
static_assert(offsetof(PrivateDevMode, extraKeywordIndex) == 2608);
static_assert(offsetof(PrivateDevMode, extraFlag) == 2610);
static_assert(offsetof(PrivateDevMode, colorModeIndex) == 2612);
static_assert(offsetof(PrivateDevMode, textColorOptions) == 2626);
static_assert(offsetof(PrivateDevMode, graphicsColorOptions) == 2634);
static_assert(offsetof(PrivateDevMode, imageColorOptions) == 2642);
static_assert(offsetof(PrivateDevMode, generalColorOptions) == 2650);
static_assert(offsetof(PrivateDevMode, uiFitToPaper) == 2658);
static_assert(offsetof(PrivateDevMode, uiMediaValue) == 2660);
static_assert(offsetof(PrivateDevMode, uiFlagA) == 2662);
static_assert(offsetof(PrivateDevMode, uiCode) == 2664);
static_assert(offsetof(PrivateDevMode, uiZoomOn) == 2669);
static_assert(offsetof(PrivateDevMode, uiZoomPercent) == 2671);
static_assert(offsetof(PrivateDevMode, uiRotate180) == 2673);
static_assert(offsetof(PrivateDevMode, uiDuplex) == 2675);
static_assert(offsetof(PrivateDevMode, uiFlagB) == 2677);
static_assert(offsetof(PrivateDevMode, uiLabel) == 2679);
static_assert(offsetof(PrivateDevMode, uiFlagC) == 2684);
static_assert(offsetof(PrivateDevMode, uiPageLayout) == 2686);
static_assert(offsetof(PrivateDevMode, uiFlagD) == 2690);
static_assert(offsetof(PrivateDevMode, uiBinding) == 2692);
static_assert(offsetof(PrivateDevMode, uiShiftX) == 2694);
static_assert(offsetof(PrivateDevMode, uiShiftY) == 2696);
static_assert(offsetof(PrivateDevMode, uiPageOrder) == 2698);
static_assert(offsetof(PrivateDevMode, uiFlagE) == 2700);
static_assert(offsetof(PrivateDevMode, uiChoice) == 2702);
static_assert(offsetof(PrivateDevMode, customWidth) == 2704);
static_assert(offsetof(PrivateDevMode, customLength) == 2708);
static_assert(offsetof(PrivateDevMode, customUnit) == 2712);
static_assert(offsetof(PrivateDevMode, colorPreset) == 2714);
static_assert(offsetof(PrivateDevMode, colorRendering) == 2716);
static_assert(offsetof(PrivateDevMode, colorAuto) == 2722);
static_assert(offsetof(PrivateDevMode, colorAdjust) == 2726);
static_assert(offsetof(PrivateDevMode, colorChoiceA) == 2732);
static_assert(offsetof(PrivateDevMode, colorChoiceB) == 2734);
static_assert(offsetof(PrivateDevMode, colorBalance) == 2736);
static_assert(offsetof(PrivateDevMode, colorFlagA) == 2742);
static_assert(offsetof(PrivateDevMode, colorLevels) == 2744);
static_assert(offsetof(PrivateDevMode, colorFlagB) == 2752);
static_assert(offsetof(PrivateDevMode, colorPresetName) == 2830);
static_assert(offsetof(PrivateDevMode, resolutionIndex) == 2894);
static_assert(offsetof(PrivateDevMode, resolutionFlag) == 2896);
static_assert(offsetof(PrivateDevMode, objectColor) == 2898);
static_assert(offsetof(PrivateDevMode, objectPresetNames) == 2970);
static_assert(offsetof(PrivateDevMode, outputSetting) == 3036);
static_assert(offsetof(PrivateDevMode, outputFlag) == 3040);
static_assert(offsetof(PrivateDevMode, outputLevel) == 3042);
static_assert(offsetof(PrivateDevMode, outputStep) == 3044);
static_assert(offsetof(PrivateDevMode, finishFlagA) == 3046);
static_assert(offsetof(PrivateDevMode, finishChoice) == 3047);
static_assert(offsetof(PrivateDevMode, finishSide) == 3048);
static_assert(offsetof(PrivateDevMode, finishFlagB) == 3049);
static_assert(offsetof(PrivateDevMode, outputText) == 3050);
static_assert(offsetof(PrivateDevMode, finishFlags) == 3067);
static_assert(offsetof(PrivateDevMode, finishFlagC) == 3070);
static_assert(offsetof(PrivateDevMode, shadeMaxFlag) == 3071);
static_assert(offsetof(PrivateDevMode, uiStale) == 3073);
static_assert(offsetof(PrivateDevMode, exceptionCount) == 3075);
static_assert(offsetof(PrivateDevMode, pageListCount) == 3076);
static_assert(offsetof(PrivateDevMode, exceptionArea) == 3077);
static_assert(offsetof(PrivateDevMode, separatorSheet) == 3814);
static_assert(offsetof(PrivateDevMode, photoIntentIndex) == 3816);
static_assert(offsetof(PrivateDevMode, signatureOptionIndex) == 3818);
static_assert(offsetof(PrivateDevMode, mediaColorIndex) == 3820);
static_assert(offsetof(PrivateDevMode, jobInterleaving) == 3822);
static_assert(offsetof(PrivateDevMode, jobImageType) == 3824);
static_assert(sizeof(PrivateDevMode) == kPrivateDevModeSize);

}  // namespace velmora
