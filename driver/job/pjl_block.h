// The printer-job-language blocks around a job, 8-bit text in the ANSI code page: what printers with command languages
// receive before the job's pages and behind them.
#pragma once

#include <windows.h>

#include <cstddef>

#include "driver/devmode/private_devmode.h"
#include "driver/job/job_printer.h"

namespace velmora {

// Both append to the terminated text in `buffer`, which callers pass empty; it may be null where `*size` is 0. `*size`
// is, coming in, the buffer's capacity in bytes and, going out, the bytes that the whole block needs with its
// terminator; 0 for no block. True where they fit. Lines that don't fit aren't written.

// The lines that begin a job. The job's name may be null: the job then isn't named here. A name too long for its line
// is cut, so that the line still ends.
bool BuildPjlStart(char* buffer, DWORD* size, const WCHAR* jobName, const JobPrinter& printer,
                   const VelmoraDevMode& devMode);

// The line that ends a job; none on XPS printers and where the device mode asks for no job name.
bool BuildPjlEnd(char* buffer, DWORD* size, const JobPrinter& printer, const VelmoraDevMode& devMode);

// Appends `text` to the terminated text in a buffer of `capacity` bytes where, with `offset` bytes before it, it fits
// with its terminator. Returns its length either way, so that adding up tells what is needed.
size_t AppendText(char* buffer, size_t capacity, size_t offset, const char* text);

}  // namespace velmora
