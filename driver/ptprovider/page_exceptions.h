// Exceptions: pages of a document that are printed on other media, with blank sheets around them, or with a watermark
// or an overlay of their own. A device mode has three of them, numbered from 1 in print tickets.
#pragma once

#include "driver/ptprovider/feature_reader.h"
#include "driver/ptprovider/feature_writer.h"
#include "driver/ptprovider/working_devmode.h"

namespace velmora {

// The exceptions of the device mode that the ticket doesn't have yet.
void WritePageExceptions(FeatureWriter& writer, const WorkingDevMode& working);

// What exceptions there can be, each kind under each number.
void ListPageExceptions(FeatureWriter& writer);

// The ticket's exceptions in the place of the device mode's; one that can't be read whole is none.
void ReadPageExceptions(FeatureReader& reader, WorkingDevMode& working);

}  // namespace velmora
