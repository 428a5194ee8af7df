// The commands and texts of a job as the entries of the lists that a print ticket carries. No memory, or nothing to
// encode: no entry.
#pragma once

#include <windows.h>

#include <cstddef>

#include "driver/devmode/private_devmode.h"
#include "driver/ptprovider/printer_snapshot.h"
#include "driver/ptprovider/text_list.h"

namespace velmora {

// Bytes as one entry in Base64.
void AppendBase64(const BYTE* bytes, size_t length, TextList* list);

// The texts of a buffer of NUL-terminated 8-bit ones (ANSI code page), an entry for each that isn't empty. The last one
// may end with the buffer.
void AppendTexts(const char* buffer, size_t size, TextList* list);

// The lines of such texts, an entry for each that isn't empty. Every LF ends a line; a CR just before it, or else just
// behind it, belongs to it.
void AppendTextLines(const char* buffer, size_t size, TextList* list);

// What a slice of the snapshot's command blob holds: lines on PostScript models, on others one entry in Base64. The
// slice ends where the blob does; an empty one has no entry.
void AppendCommandSlice(const PrinterSnapshot& snapshot, size_t start, size_t length, TextList* list);

// The lists that take a job's colour-correction commands; none is null.
struct ColorCommandLists {
    TextList* documentStart;
    TextList* page;
    TextList* text;
    TextList* image;
    TextList* graphics;
};

// Appends the slices that a device mode refers to; none without a model or a blob.
void AppendColorCommands(const PrinterSnapshot& snapshot, const PrivateDevMode& devMode,
                         const ColorCommandLists& lists);

}  // namespace velmora
