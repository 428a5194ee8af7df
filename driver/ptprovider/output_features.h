// Features whose options depend on what the model can do: printing on both sides and in colour.
#pragma once

#include "driver/ptprovider/feature_row.h"

namespace velmora {

void WriteDuplex(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadDuplex(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);

void WriteOutputColor(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadOutputColor(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);

}  // namespace velmora
