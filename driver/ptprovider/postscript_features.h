// What only PostScript models have beside their plain features: halftones, contrast and brightness.
#pragma once

#include "driver/ptprovider/feature_row.h"

namespace velmora {

void WriteHalftone(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadHalftone(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);

// Two parameters of the whole document that no feature refers to. A value that a ticket has already stays.
void WriteContrastAndBrightness(FeatureWriter& writer, const WorkingDevMode* working);
void ReadContrastAndBrightness(FeatureReader& reader, WorkingDevMode& working);

inline bool IsPostScript(const PrinterSnapshot& printer) {
    return printer.model->pdlType == kPdlPostScript;
}

}  // namespace velmora
