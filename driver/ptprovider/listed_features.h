// Features whose options are the model's lists: resolutions, media colours, photo intents, and what becomes of digital
// signatures.
#pragma once

#include "driver/ptprovider/feature_row.h"

namespace velmora {

void WriteResolution(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadResolution(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);

void WriteMediaColor(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadMediaColor(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);

// Both have one option where the model lists none.
void WritePhotoIntent(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadPhotoIntent(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);
void WriteSignatureProcessing(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadSignatureProcessing(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);

}  // namespace velmora
