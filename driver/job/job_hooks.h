// What the rendering side asks for at print time: the block of bytes at the start of a job, before each sheet and at
// the end of the job.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/devmode/private_devmode.h"

namespace velmora {

#pragma pack(push, 1)

// What a caller hands to each hook of a job. Its pointers lie unaligned.
struct JobHookRecord {
    uint8_t reserved0[10];
    const WCHAR* printerName;
    uint8_t reserved18[4];
    void* jobState;  // set by StartJob: null where no job was started; cleared by EndJob
    union {
        uint32_t promptFlag;  // StartJob: nonzero asks for a prompt instead of a block
        char* sheetBuffer;    // StartSheet: where the sheet's block goes
    };
    uint32_t sheetSize;  // StartSheet: capacity of that buffer; then the bytes needed
    uint32_t result;     // set to 0 by StartJob
    uint8_t reserved46[2];
    const WCHAR* jobName;  // null: none
};

#pragma pack(pop)

static_assert(offsetof(JobHookRecord, printerName) == 10);
static_assert(offsetof(JobHookRecord, jobState) == 22);
static_assert(offsetof(JobHookRecord, promptFlag) == 30);
static_assert(offsetof(JobHookRecord, sheetBuffer) == 30);
static_assert(offsetof(JobHookRecord, sheetSize) == 38);
static_assert(offsetof(JobHookRecord, result) == 42);
static_assert(offsetof(JobHookRecord, jobName) == 48);
static_assert(sizeof(JobHookRecord) == 56);

enum JobHookResult : int {
    kJobPrompted = -1,   // the prompt was shown; there is no block and no job
    kJobImpossible = 0,  // no description file, or no memory
    kJobDone = 1,
    kJobBlockTooLarge = 2,  // the size says what is needed: the hook is to be called again
};

// `devMode`, 4088 bytes, is repaired where it stands; null stands for the printer's own. `buffer` is empty text of
// `*size` bytes (null only with 0); `*size` becomes the bytes that the block needs, its terminator included. Sheets and
// the end of a job that wasn't started are done and write nothing. A started job keeps the description file open, and
// some memory, until its end.
int StartJob(VelmoraDevMode* devMode, char* buffer, DWORD* size, JobHookRecord* record);
int StartSheet(VelmoraDevMode* devMode, JobHookRecord* record);
int EndJob(VelmoraDevMode* devMode, char* buffer, DWORD* size, JobHookRecord* record);

}  // namespace velmora
