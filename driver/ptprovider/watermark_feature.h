// The watermark of the pages in print tickets, and what it shares with those of exceptions.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>

#include "driver/ptprovider/feature_row.h"

namespace velmora {

void WriteWatermark(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadWatermark(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);

// The colour of a device's watermarks unless the user says otherwise, 0x00RRGGBB.
uint32_t DefaultWatermarkColor(const DeviceModel& model);

// A colour between 0x00BBGGRR, as it is stored (COLORREF, wingdi.h), and 0x00RRGGBB, as tickets have it.
constexpr uint32_t SwapRedAndBlue(uint32_t color) {
    return ((color & 0xFF) << 16) | (color & 0xFF00) | ((color >> 16) & 0xFF);
}

// Whether a watermark lies on the page or under it.
inline constexpr uint32_t kOverPage = 0;
inline constexpr uint32_t kUnderPage = 1;
inline constexpr PlainOption kLayers[] = {{TEXT("Overlay"), kOverPage}, {TEXT("Underlay"), kUnderPage}};

}  // namespace velmora
