// Device modes for the spooler.
#pragma once

#include <windows.h>

namespace velmora {

// Answers DrvConvertDevMode: fills `output`, whose bytes are in `*neededBytes`, with the device mode of a printer. On
// return
// `*neededBytes` is 4088. False with the last error: 87 without `neededBytes`, 122 where `output` is missing or too
// small, 1801 where the printer can't be opened.
bool ConvertDevMode(const WCHAR* printerName, DEVMODEW* output, LONG* neededBytes);

}  // namespace velmora
