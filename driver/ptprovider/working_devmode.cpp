#include "driver/ptprovider/working_devmode.h"

#include <objbase.h>

#include <algorithm>
#include <cstring>

#include "driver/base/heap.h"
#include "driver/base/text.h"
#include "driver/devmode/default_devmode.h"
#include "driver/devmode/validate_devmode.h"
#include "driver/entry/printer_access.h"
#include "driver/entry/stored_devmode.h"
#include "driver/job/job_description.h"
#include "driver/job/pjl_block.h"
#include "driver/ptprovider/command_lists.h"

namespace velmora {
namespace {

// The line of a job text in whose place the job's block belongs.
constexpr char kStartMarker[] = "@PJL SET GUISTARTJOB=1\r\n";
constexpr char kEndMarker[] = "@PJL SET GUIENDJOB=1\r\n";

bool BuildStart(char* buffer, DWORD* size, const JobPrinter& printer, const VelmoraDevMode& devMode) {
    return BuildPjlStart(buffer, size, nullptr, printer, devMode);
}

// A job text of the device mode, and what stands for its marker.
struct JobText {
    const char* text;
    size_t capacity;
    const char* marker;
    bool (*build)(char* buffer, DWORD* size, const JobPrinter& printer, const VelmoraDevMode& devMode);
    TextListId list;
};

void AppendJobText(const JobText& job, const JobPrinter& printer, const VelmoraDevMode& devMode, TextList* list) {
    const size_t length = TextLength(job.text, job.capacity);
    // The field need not be terminated.
    const auto text = HeapOwner<char>::Allocate(length + 1);
    if (!text) {
        return;
    }
    memcpy(text.Get(), job.text, length);
    char* const marker = FindText(text.Get(), job.marker);
    DWORD blockSize = 0;
    if (marker) {
        job.build(nullptr, &blockSize, printer, devMode);
    }
    const size_t size = length + 1 + blockSize;
    const auto whole = HeapOwner<char>::Allocate(size);
    if (!whole) {
        return;
    }
    if (!marker) {
        memcpy(whole.Get(), text.Get(), length);
    } else {
        const auto before = static_cast<size_t>(marker - text.Get());
        const char* const rest = marker + TextLength(job.marker);
        memcpy(whole.Get(), text.Get(), before);
        job.build(whole.Get() + before, &blockSize, printer, devMode);
        AppendText(whole.Get(), size, before + TextLength(whole.Get() + before, size - before), rest);
    }
    AppendTextLines(whole.Get(), size, list);
}

// Describing a job by a record notes so in the device mode.
void AppendDescription(const JobPrinter& printer, VelmoraDevMode* devMode, TextList* list) {
    DWORD size = 0;
    BuildJobDescription(nullptr, &size, nullptr, printer, devMode);
    const auto buffer = size > 0 ? HeapOwner<char>::Allocate(size) : HeapOwner<char>();
    if (!buffer || !BuildJobDescription(buffer.Get(), &size, nullptr, printer, devMode)) {
        return;
    }
    if ((printer.model.descriptionFlags & kDescriptionsAreText) != 0) {
        AppendTexts(buffer.Get(), size, list);
    } else {
        AppendBase64(reinterpret_cast<const BYTE*>(buffer.Get()), size, list);
    }
}

}  // namespace

void UnpackExceptions(const PrivateDevMode& devMode, ExceptionRecord (&exceptions)[kExceptionSlots],
                      ExceptionPageList (&pages)[kExceptionSlots]) {
    std::fill(std::begin(exceptions), std::end(exceptions), ExceptionRecord{});
    std::fill(std::begin(pages), std::end(pages), ExceptionPageList{});
    // Both counts and the area lie where the offset says; they have their fields where it is the driver's own.
    if (devMode.exceptionAreaOffset != kExceptionAreaOffset) {
        return;
    }
    const uint8_t* const area = devMode.exceptionArea;
    constexpr size_t kAreaSize = sizeof(devMode.exceptionArea);
    size_t place = 0;
    for (size_t i = 0; i < std::min<size_t>(devMode.exceptionCount, kExceptionSlots); ++i) {
        if (place + offsetof(ExceptionRecord, usage) > kAreaSize) {
            return;
        }
        uint16_t length = 0;
        memcpy(&length, area + place, sizeof(length));
        memcpy(&exceptions[i], area + place,
               std::min({static_cast<size_t>(length), sizeof(ExceptionRecord), kAreaSize - place}));
        place += length;
    }
    for (size_t i = 0; i < std::min<size_t>(devMode.pageListCount, kExceptionSlots); ++i) {
        if (place + 2 > kAreaSize) {
            return;
        }
        const size_t slot = area[place];
        const size_t size = area[place + 1] * sizeof(uint16_t);
        place += 2;
        if (slot < kExceptionSlots) {
            const size_t held = std::min({size, sizeof(pages[slot].pages), kAreaSize - place});
            pages[slot].count = static_cast<uint8_t>(held / sizeof(uint16_t));
            memcpy(pages[slot].pages, area + place, held);
        }
        place += size;
    }
}

void FillTextLists(const PrinterSnapshot& snapshot, const JobPrinter& printer, VelmoraDevMode* devMode,
                   TextList (&lists)[kTextListCount]) {
    if (printer.model.pdlType == kPdlImage) {
        for (const TextListId id : {kDocumentStartOcmData, kDocumentSheetOcmData, kDocumentEndOcmData}) {
            AppendDescription(printer, devMode, &lists[id]);
        }
    } else {
        AppendColorCommands(
            snapshot, devMode->privatePart,
            {&lists[kDocumentStartColorCorrectionCommands], &lists[kDocumentPageColorCorrectionCommands],
             &lists[kDocumentTextColorCorrectionCommands], &lists[kDocumentImageColorCorrectionCommands],
             &lists[kDocumentGraphicsColorCorrectionCommands]});
    }
    const PrivateDevMode& part = devMode->privatePart;
    const JobText jobTexts[] = {
        {part.pjlJobStart, sizeof(part.pjlJobStart), kStartMarker, BuildStart, kDocumentStartPjl},
        {part.pjlJobEnd, sizeof(part.pjlJobEnd), kEndMarker, BuildPjlEnd, kDocumentEndPjl},
    };
    for (const JobText& text : jobTexts) {
        AppendJobText(text, printer, *devMode, &lists[text.list]);
    }
}

WorkingDevMode::WorkingDevMode()
    : preparedPaper{DefaultPaperForLocale(), 0, 0},
      devMode_(static_cast<VelmoraDevMode*>(CoTaskMemAlloc(sizeof(VelmoraDevMode)))) {
    if (devMode_) {
        *devMode_ = {};
    }
}

WorkingDevMode::~WorkingDevMode() {
    CoTaskMemFree(devMode_);
}

void WorkingDevMode::Bind(HANDLE printerHandle, const PrinterSnapshot* snapshot) {
    hPrinter = printerHandle;
    printer = snapshot;
}

// Whether both validations accept a device mode, or either does.
bool WorkingDevMode::Accepts(VelmoraDevMode* devMode, bool needsBoth) const {
    const DeviceModel* const model = printer ? printer->model.Get() : nullptr;
    const HANDLE file = printer ? printer->descriptionFile.Get() : INVALID_HANDLE_VALUE;
    const bool acceptsPublic = ValidatePublicDevMode(hPrinter, &devMode->publicPart, model) == 1;
    if (acceptsPublic != needsBoth) {
        return acceptsPublic;
    }
    if (!model || file == INVALID_HANDLE_VALUE) {
        return ValidatePrivateDevMode(hPrinter, &devMode->privatePart, file, model) == 1;
    }
    ValidationReport report;
    CheckPrivateDevMode(ReadPrivateFacts(hPrinter, printer->files, file), *model, &devMode->privatePart, &report);
    return report.IsAccepted();
}

DevModeSource WorkingDevMode::ChooseDevMode(DEVMODEW* input, size_t size, const WCHAR* printerName,
                                            VelmoraDevMode* stored) {
    auto* const given = reinterpret_cast<VelmoraDevMode*>(input);
    // One that is shorter than the driver's own can't be whole.
    if (given && size >= sizeof(VelmoraDevMode) && Accepts(given, true)) {
        memcpy(devMode_, given, sizeof(*devMode_));
        return DevModeSource::kGiven;
    }
    if (stored && Accepts(stored, false)) {
        memcpy(devMode_, stored, sizeof(*devMode_));
        return DevModeSource::kStored;
    }
    BuildDefaultDevMode(hPrinter, printerName, devMode_);
    return DevModeSource::kBuilt;
}

DevModeSource WorkingDevMode::Prepare(DEVMODEW* input, size_t size) {
    if (!devMode_) {
        return DevModeSource::kBuilt;
    }
    const HeapOwner<PRINTER_INFO_2W> info = GetPrinterInfo2(hPrinter);
    const WCHAR* const name = info && info->pPrinterName ? info->pPrinterName : TEXT("");
    const DevModeSource source = ChooseDevMode(input, size, name, info ? FindStoredDevMode(info) : nullptr);

    const DEVMODEW& chosen = devMode_->publicPart;
    preparedPaper = {chosen.dmPaperSize, chosen.dmPaperWidth, chosen.dmPaperLength};
    UnpackExceptions(devMode_->privatePart, exceptions, exceptionPages);
    if (printer && printer->model) {
        const JobPrinter job = {hPrinter, name, printer->descriptionFile.Get(), *printer->model};
        FillTextLists(*printer, job, devMode_, lists);
    }
    return source;
}

VelmoraDevMode* WorkingDevMode::Detach() {
    VelmoraDevMode* const devMode = devMode_;
    devMode_ = nullptr;
    return devMode;
}

}  // namespace velmora
