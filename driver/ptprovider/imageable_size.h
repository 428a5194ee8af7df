// The part of the selected paper that can be printed on, in print capabilities.
#pragma once

#include "driver/ptprovider/feature_writer.h"
#include "driver/ptprovider/working_devmode.h"

namespace velmora {

// Nothing where the printer has no papers; no size where the selected paper is none of them.
void WriteImageableSize(FeatureWriter& writer, const WorkingDevMode& working);

}  // namespace velmora
