// Features that say how pages lie on sheets: several on one, one on several, scaled, and bound.
#pragma once

#include "driver/ptprovider/feature_row.h"

namespace velmora {

void WritePagesPerSheet(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadPagesPerSheet(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);

void WritePoster(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadPoster(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);

// Reading relies on the paper that the ticket says being read already.
void WriteScaling(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadScaling(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);

void WriteBinding(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadBinding(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);

}  // namespace velmora
