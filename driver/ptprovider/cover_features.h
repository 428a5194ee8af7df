// Sheets that aren't pages of the document, with papers, media and trays of their own: the covers and the interleaves.
#pragma once

#include "driver/ptprovider/feature_row.h"

namespace velmora {

void WriteFrontCover(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadFrontCover(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);
void WriteBackCover(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadBackCover(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);
void WriteInterleaves(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadInterleaves(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);

}  // namespace velmora
