// The model's patterns and fonts in the printer data file, where the renderer reads them: the base file, then the
// pattern block of every resolution that has one, in the order of the resolutions, then the font records.
#pragma once

#include <windows.h>

#include "driver/devdesc/device_model.h"

namespace velmora {

// Appends patterns and fonts to the printer data file behind its first `size` bytes, where the file is too small to
// hold them already; else the bytes in front of them become the printer's base size. Does nothing for image models, and
// where there is no such file (`size` kNoPrinterDataFile). A pattern that can't be written ends the patterns; the fonts
// follow what was written. What lies in the first `size` bytes is never touched. Nothing is read whole into memory but
// a pattern at a time.
void AppendDeviceData(HANDLE printer, const WCHAR* printerName, HANDLE descriptionFile, const DeviceModel& model,
                      DWORD size);

}  // namespace velmora
