#include "driver/job/job_hooks.h"

#include "driver/base/handles.h"
#include "driver/base/heap.h"
#include "driver/devdesc/description_file.h"
#include "driver/devmode/default_devmode.h"
#include "driver/devmode/validate_devmode.h"
#include "driver/entry/printer_access.h"
#include "driver/entry/stored_devmode.h"
#include "driver/job/job_description.h"
#include "driver/job/pjl_block.h"
#include "driver/ui/notice.h"

namespace velmora {
namespace {

// What is kept of a job between its hooks.
struct JobState {
    uint32_t sheetNumber;  // from 1
    uint16_t frontCoverMode;
    DeviceModel* model;      // owned
    HANDLE descriptionFile;  // owned; or the invalid handle
};

void DiscardJobState(JobState* state) {
    HeapOwner<DeviceModel>(state->model).Reset(nullptr);
    OwnedFile(state->descriptionFile).Close();
    HeapOwner<JobState>(state).Reset(nullptr);
}

// A record's pointers lie unaligned: they are read and written whole.
JobState* StateOf(const JobHookRecord& record) {
    return static_cast<JobState*>(record.jobState);
}

const WCHAR* PrinterNameOf(const JobHookRecord& record) {
    return record.printerName ? record.printerName : TEXT("");
}

// The printer's own device mode, or the built default where it can't be read.
void FillPrinterDevMode(const JobPrinter& printer, VelmoraDevMode* devMode) {
    *devMode = {};
    GetPrinterDevMode(printer.printer, devMode);
    if (devMode->publicPart.dmSize == 0) {
        BuildDefaultDevMode(printer.printer, printer.name, devMode);
    }
}

// The device mode that a hook works by: the caller's, repaired in its place, or the printer's in `own`.
VelmoraDevMode* RepairDevMode(const JobPrinter& printer, VelmoraDevMode* devMode, VelmoraDevMode* own) {
    if (!devMode) {
        FillPrinterDevMode(printer, own);
        return own;
    }
    if (!ValidatePublicDevMode(printer.printer, &devMode->publicPart, &printer.model)) {
        FillPrinterDevMode(printer, own);
        *devMode = *own;
    } else if (!ValidatePrivateDevMode(printer.printer, &devMode->privatePart, printer.descriptionFile,
                                       &printer.model)) {
        FillPrinterDevMode(printer, own);
        devMode->privatePart = own->privatePart;
    }
    return devMode;
}

// What a hook of a started job works with.
struct JobCall {
    OwnedPrinter opened;
    JobPrinter printer;
    VelmoraDevMode own = {};
    VelmoraDevMode* devMode;

    JobCall(const JobHookRecord& record, const JobState& state, VelmoraDevMode* given)
        : opened(OpenPrinterLocal(PrinterNameOf(record))),
          printer{opened.Get(), PrinterNameOf(record), state.descriptionFile, *state.model},
          devMode(RepairDevMode(printer, given, &own)) {}
};

}  // namespace

int StartJob(VelmoraDevMode* devMode, char* buffer, DWORD* size, JobHookRecord* record) {
    record->result = 0;
    // Whatever the record held before: the later hooks go by what this one says.
    record->jobState = nullptr;
    const WCHAR* const name = PrinterNameOf(*record);
    const OwnedPrinter opened = OpenPrinterLocal(name);
    if (record->promptFlag != 0) {
        *size = 0;
        ShowJobPrompt(opened.Get());
        return kJobPrompted;
    }
    OwnedFile file = OpenDescriptionFile(opened.Get());
    HeapOwner<DeviceModel> model = LoadDeviceModel(file.Get());
    HeapOwner<JobState> state = model ? HeapOwner<JobState>::Allocate() : HeapOwner<JobState>();
    if (!state) {
        return kJobImpossible;
    }
    const JobPrinter printer = {opened.Get(), name, file.Get(), *model};
    VelmoraDevMode own;
    VelmoraDevMode* const repaired = RepairDevMode(printer, devMode, &own);
    const bool fits = model->pdlType == kPdlImage
                          ? BuildJobDescription(buffer, size, record->jobName, printer, repaired)
                          : BuildPjlStart(buffer, size, nullptr, printer, *repaired);
    if (!fits) {
        return kJobBlockTooLarge;
    }
    *state = {1, repaired->privatePart.frontCoverMode, model.Release(), file.Release()};
    record->jobState = state.Release();
    return kJobDone;
}

int StartSheet(VelmoraDevMode* devMode, JobHookRecord* record) {
    JobState* const state = StateOf(*record);
    if (!state) {
        return kJobDone;
    }
    JobCall call(*record, *state, devMode);
    DWORD size = state->model->pdlType == kPdlImage ? record->sheetSize : 0;
    const bool fits = state->model->pdlType != kPdlImage ||
                      BuildJobDescription(record->sheetBuffer, &size, nullptr, call.printer, call.devMode);
    record->sheetSize = size;
    if (!fits) {
        return kJobBlockTooLarge;
    }
    ++state->sheetNumber;
    return kJobDone;
}

int EndJob(VelmoraDevMode* devMode, char* buffer, DWORD* size, JobHookRecord* record) {
    JobState* const state = StateOf(*record);
    if (!state) {
        return kJobDone;
    }
    JobCall call(*record, *state, devMode);
    const bool fits = state->model->pdlType == kPdlImage
                          ? BuildJobDescription(buffer, size, nullptr, call.printer, call.devMode)
                          : BuildPjlEnd(buffer, size, call.printer, *call.devMode);
    if (!fits) {
        return kJobBlockTooLarge;
    }
    DiscardJobState(state);
    record->jobState = nullptr;
    return kJobDone;
}

}  // namespace velmora
