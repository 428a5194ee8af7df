// The fixed form of the job description of image printers: a byte-packed record of what the raster renderer needs of
// the device mode. Texts are 8-bit in the ANSI code page, terminated within their width. A field that is named as one
// of the device mode holds that one's value.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/devmode/private_devmode.h"

namespace velmora {

#pragma pack(push, 1)

struct ImageJobRecord {
    char driverName[32];  // of the printer
    char descriptionPath[200];
    uint32_t imageMode;
    uint8_t reserved236[698];
    uint16_t paper;      // dmPaperSize
    int32_t paperWidth;  // 0.1 mm, as the next
    int32_t paperLength;
    uint16_t targetPaper;  // what the pages are scaled to; 65535: nothing
    uint16_t targetWidth;  // 0.1 mm, of a size that a paper id doesn't tell, as the next
    uint16_t targetLength;
    uint16_t scaleValue;
    uint8_t reserved952[2];
    uint16_t uiMediaValue;
    uint16_t uiFlagA;
    char uiCode[5];    // only with uiFlagA
    uint16_t collate;  // dmCollate
    uint16_t scaleMode;
    uint16_t orientation;  // dmOrientation
    uint16_t rotate180;
    uint16_t uiDuplex;
    uint16_t uiFlagB;
    char uiLabel[5];
    uint16_t uiFlagC;
    uint16_t uiPageLayout;
    uint16_t paperMatches;  // 1 where the paper is the one that is fed
    uint16_t uiBinding;
    int16_t uiShiftX;
    int16_t uiShiftY;
    uint16_t uiPageOrder;
    uint16_t uiFlagE;
    uint16_t uiChoice;
    uint16_t colorPreset;
    uint16_t colorRendering;
    uint8_t reserved1002[4];
    uint32_t colorAuto;
    int16_t colorAdjust[3];
    uint16_t colorChoiceA;
    uint16_t colorChoiceB;
    int16_t colorBalance[3];
    uint16_t colorFlagA;
    int16_t colorLevels[4];
    uint16_t colorFlagB;
    uint8_t reserved1038[76];
    ObjectColor objectColor[3];
    int16_t resolutionIndex;
    uint16_t resolutionFlag;
    uint8_t reserved1190[2];
    uint16_t icmIntent;  // dmICMIntent, only with colour preset 6
    uint16_t outputFlag;
    uint16_t zero1196;   // always 0
    uint16_t finishing;  // 0 none, else 1 + finishChoice
    int16_t finishSide;
    int16_t finishFlagB;
    char outputText[17];
    int16_t finishFlags[3];
    int16_t finishFlagC;
};

#pragma pack(pop)

static_assert(offsetof(ImageJobRecord, driverName) == 0);
static_assert(offsetof(ImageJobRecord, descriptionPath) == 32);
static_assert(offsetof(ImageJobRecord, imageMode) == 232);
static_assert(offsetof(ImageJobRecord, paper) == 934);
static_assert(offsetof(ImageJobRecord, paperWidth) == 936);
static_assert(offsetof(ImageJobRecord, paperLength) == 940);
static_assert(offsetof(ImageJobRecord, targetPaper) == 944);
static_assert(offsetof(ImageJobRecord, targetWidth) == 946);
static_assert(offsetof(ImageJobRecord, targetLength) == 948);
static_assert(offsetof(ImageJobRecord, scaleValue) == 950);
static_assert(offsetof(ImageJobRecord, uiMediaValue) == 954);
static_assert(offsetof(ImageJobRecord, uiFlagA) == 956);
static_assert(offsetof(ImageJobRecord, uiCode) == 958);
static_assert(offsetof(ImageJobRecord, collate) == 963);
static_assert(offsetof(ImageJobRecord, scaleMode) == 965);
static_assert(offsetof(ImageJobRecord, orientation) == 967);
static_assert(offsetof(ImageJobRecord, rotate180) == 969);
static_assert(offsetof(ImageJobRecord, uiDuplex) == 971);
static_assert(offsetof(ImageJobRecord, uiFlagB) == 973);
static_assert(offsetof(ImageJobRecord, uiLabel) == 975);
static_assert(offsetof(ImageJobRecord, uiFlagC) == 980);
static_assert(offsetof(ImageJobRecord, uiPageLayout) == 982);
static_assert(offsetof(ImageJobRecord, paperMatches) == 984);
static_assert(offsetof(ImageJobRecord, uiBinding) == 986);
static_assert(offsetof(ImageJobRecord, uiShiftX) == 988);
static_assert(offsetof(ImageJobRecord, uiShiftY) == 990);
static_assert(offsetof(ImageJobRecord, uiPageOrder) == 992);
static_assert(offsetof(ImageJobRecord, uiFlagE) == 994);
static_assert(offsetof(ImageJobRecord, uiChoice) == 996);
static_assert(offsetof(ImageJobRecord, colorPreset) == 998);
static_assert(offsetof(ImageJobRecord, colorRendering) == 1000);
static_assert(offsetof(ImageJobRecord, colorAuto) == 1006);
static_assert(offsetof(ImageJobRecord, colorAdjust) == 1010);
static_assert(offsetof(ImageJobRecord, colorChoiceA) == 1016);
static_assert(offsetof(ImageJobRecord, colorChoiceB) == 1018);
static_assert(offsetof(ImageJobRecord, colorBalance) == 1020);
static_assert(offsetof(ImageJobRecord, colorFlagA) == 1026);
static_assert(offsetof(ImageJobRecord, colorLevels) == 1028);
static_assert(offsetof(ImageJobRecord, colorFlagB) == 1036);
static_assert(offsetof(ImageJobRecord, objectColor) == 1114);
static_assert(offsetof(ImageJobRecord, resolutionIndex) == 1186);
static_assert(offsetof(ImageJobRecord, resolutionFlag) == 1188);
static_assert(offsetof(ImageJobRecord, icmIntent) == 1192);
static_assert(offsetof(ImageJobRecord, outputFlag) == 1194);
static_assert(offsetof(ImageJobRecord, zero1196) == 1196);
static_assert(offsetof(ImageJobRecord, finishing) == 1198);
static_assert(offsetof(ImageJobRecord, finishSide) == 1200);
static_assert(offsetof(ImageJobRecord, finishFlagB) == 1202);
static_assert(offsetof(ImageJobRecord, outputText) == 1204);
static_assert(offsetof(ImageJobRecord, finishFlags) == 1221);
static_assert(offsetof(ImageJobRecord, finishFlagC) == 1227);
static_assert(sizeof(ImageJobRecord) == 1229);

// Fills a record that is all 0. Sets the device mode's uiFlagD to what the record says of the paper.
void FillImageJobRecord(const char* driverName, const char* descriptionPath, VelmoraDevMode* devMode,
                        ImageJobRecord* record);

}  // namespace velmora
