// The conversions: a print ticket into a device mode, a device mode into a print ticket, and a printer's print
// capabilities. What can't be read or written is skipped; nothing is reported. Without a snapshot of the printer, or a
// device mode, nothing is read and only the documents' frames are written; without a model there are only copies.
#pragma once

#include "driver/ptprovider/conversion_context.h"
#include "driver/ptprovider/working_devmode.h"

namespace velmora {

// What the context's document says goes into the device mode, which stays as it is where the document says nothing.
void ReadTicket(ConversionContext& context, WorkingDevMode& working);

// Writes the device mode into the context's document. What the document has already stays.
void WriteTicket(ConversionContext& context, const WorkingDevMode& working);

// Writes what the printer offers into the context's document, or into a new one where it has none.
void BuildPrintCapabilities(ConversionContext& context, const WorkingDevMode& working);

}  // namespace velmora
