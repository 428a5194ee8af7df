// The font substitution table: which printer font stands for which font of the system. A packed sequence of terminated
// texts, system face then printer font, pair after pair, ended by an empty text.
#pragma once

#include <windows.h>

#include "driver/base/heap.h"
#include "driver/devdesc/device_model.h"

namespace velmora {

// Reads the table of the driver's INI data file: its size in characters, terminators included, and the table. -1 and
// empty where the file has none or an incomplete one, 0 and empty without memory. Pairs that the size which the file
// tells has no room for are left out, as are those without a printer font, here and in what follows.
int ReadFontSubstitutionIni(const WCHAR* iniFile, HeapOwner<WCHAR>* table);

// Builds the printer's table in `buffer`, `capacity` characters: the INI data file's with `usesIni`, where there is
// one; else the pairs of the model's default list whose system face the display has. Returns the characters that it may
// take; null only asks for them. Of what doesn't fit, the model's pairs are written up to the last whole one and the
// INI data file's not at all. 0 without a display.
DWORD BuildFontSubstitutionTable(HANDLE printer, const DeviceModel& model, WCHAR* buffer, DWORD capacity, bool usesIni);

// Appends the pair at `end`, cut to 31 characters each, unless the table has the system face already. `end` is where
// the table's terminator goes; two times 32 characters have to be free from there on. Returns the new end.
WCHAR* AddSubstitutionPair(WCHAR* table, WCHAR* end, const WCHAR* systemFace, const WCHAR* printerFont);

}  // namespace velmora
