// The job description of image printers, whose raster is rendered on the host: the settings that the renderer needs, as
// entries of text or as a record of fixed size, whichever the model says. Texts are in the ANSI code page.
#pragma once

#include <windows.h>

#include "driver/devmode/private_devmode.h"
#include "driver/job/job_printer.h"

namespace velmora {

// Describes a job. `buffer` is cleared over its whole capacity first; it may be null. `*size` is, coming in, the
// capacity in bytes and, going out, the bytes needed: 1229 for the record, never 1229 for text. True where they fit; a
// second call with the size that the first one told fits. Text that doesn't fit is cut between entries; a record that
// doesn't fit isn't written. Without memory false, and `*size` stays as it is. The job's name may be null. Of the
// device mode uiFlagD changes where the model describes jobs by the record.
bool BuildJobDescription(char* buffer, DWORD* size, const WCHAR* jobName, const JobPrinter& printer,
                         VelmoraDevMode* devMode);

}  // namespace velmora
