// Rendered files of watermarks. Another program of the driver package, found by the printer-data value "MakeWM" or by
// "WM.EXE" in its name, makes them: it is told by an INI file what to render, signals an event when it is done, and
// leaves its answer in the same file.
#pragma once

#include <windows.h>

#include <cstdint>

#include "driver/settings/watermark_list.h"
#include "driver/ui/sheet_context.h"

namespace velmora {

// Has a watermark's files made in the user's settings folder and fills in the record's resolution, fileName,
// colorFileName (empty where the printer needs none, or `isMonochromeOnly`), width and height; of a text needsRemake
// too. Files that the record named before are neither used nor deleted. Blocks for at most 10 seconds for each file.
//
// Returns what the program answers for the first file, above 0 where it is made (docs/watermarks.md); -1 where it
// answers nothing in time, and 0 where it can't be started or memory runs out. The record may have been changed by
// then: use a copy where the old one must stay.
int32_t MakeWatermarkFile(const SheetContext& context, WatermarkRecord* record, bool isMonochromeOnly);

}  // namespace velmora
