// Device modes for the spooler.
#pragma once

#include <windows.h>

namespace velmora {

// Answers DrvConvertDevMode: fills `output`, whose bytes are in `*neededBytes`, with a device mode of the printer: with
// `input` where that is valid, repaired where it stands, else with the default. `input` may be null and may be
// `output`. On return `*neededBytes` is 4088. False with the last error: 87 without `neededBytes`, 122 where `output`
// is missing or too small, 1801 where the printer can't be opened.
//
// Without an output large enough, on systems of version 4, the call is a question: whether a connection to a printer of
// another machine has yet to be installed on this computer. True: it has (last error 122; 1801 where the printer can't
// be opened). False: it hasn't, and isn't asked again for this connection in this process, or that can't be told (last
// error 2).
bool ConvertDevMode(const WCHAR* printerName, DEVMODEW* input, DEVMODEW* output, LONG* neededBytes);

}  // namespace velmora
