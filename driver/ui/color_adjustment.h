// What the values of a colour adjustment do to a picture on the screen: the sample pictures of the adjustment dialog.
// Made anew after every change of a value: BuildAdjustmentTable, then MapPixels over the sample's rows.
#pragma once

#include <cstddef>
#include <cstdint>

namespace velmora {

inline constexpr int kMostAdjustment = 10;  // the least is -10

// Values beyond their range count as the nearest in it; a base colour that isn't 1 to 4 as 3.
struct ColorAdjustment {
    int baseColor;   // 1 to 4
    int brightness;  // this and the others -kMostAdjustment to kMostAdjustment
    int contrast;
    int saturation;
    int cyanRed;
    int magentaGreen;
    int yellowBlue;
};

inline constexpr size_t kAdjustmentSteps = 17;  // nodes along each axis: 0, 16, 32, ... 240 and 255

// What becomes of the colours at the nodes: red, green and blue by red, green and blue. 14739 bytes.
struct AdjustmentTable {
    uint8_t nodes[kAdjustmentSteps][kAdjustmentSteps][kAdjustmentSteps][3];
};

void BuildAdjustmentTable(const ColorAdjustment& values, AdjustmentTable* table);

// A pixel of a 32-bit DIB, 0x00RRGGBB, through the table. The high byte stays.
uint32_t MapPixel(const AdjustmentTable& table, uint32_t pixel);

// `count` pixels in place.
void MapPixels(const AdjustmentTable& table, uint32_t* pixels, size_t count);

}  // namespace velmora
