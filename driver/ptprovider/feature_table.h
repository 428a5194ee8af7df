// The features that print tickets share with the device mode: one table that conversions walk in both directions.
#pragma once

#include "driver/ptprovider/feature_row.h"

namespace velmora {

inline constexpr size_t kFeatureCount = 37;

// The features in the order in which they are written and read, then a row without writer and reader.
extern const FeatureRow FeatureTable[kFeatureCount + 1];

// Writes each feature that the ticket has under none of its names.
void WriteFeatures(FeatureWriter& writer, const WorkingDevMode& working);

// Lists every feature with all its options.
void ListFeatures(FeatureWriter& writer);

void ReadFeatures(FeatureReader& reader, WorkingDevMode& working);

}  // namespace velmora
