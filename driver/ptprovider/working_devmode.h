// The device mode that one call of the print-ticket provider works on: whole, valid for its printer, with what a ticket
// carries beside the settings.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/devmode/private_devmode.h"
#include "driver/job/job_printer.h"
#include "driver/ptprovider/printer_snapshot.h"
#include "driver/ptprovider/text_list.h"

namespace velmora {

// The lists, in the order of their names.
enum TextListId {
    kDocumentStartOcmData,
    kDocumentSheetOcmData,
    kDocumentEndOcmData,
    kDocumentStartColorCorrectionCommands,
    kDocumentPageColorCorrectionCommands,
    kDocumentTextColorCorrectionCommands,
    kDocumentImageColorCorrectionCommands,
    kDocumentGraphicsColorCorrectionCommands,
    kDocumentStartPjl,
    kDocumentEndPjl,
    kTextListCount,
};

// The root properties of a ticket that carry the lists.
inline constexpr const WCHAR* kTextListNames[] = {
    TEXT("DocumentStartOCMData"),
    TEXT("DocumentSheetOCMData"),
    TEXT("DocumentEndOCMData"),
    TEXT("DocumentStartColorCorrectionCommands"),
    TEXT("DocumentPageColorCorrectionCommands"),
    TEXT("DocumentTextColorCorrectionCommands"),
    TEXT("DocumentImageColorCorrectionCommands"),
    TEXT("DocumentGraphicsColorCorrectionCommands"),
    TEXT("DocumentStartPJL"),
    TEXT("DocumentEndPJL"),
};
static_assert(sizeof(kTextListNames) / sizeof(kTextListNames[0]) == kTextListCount);

enum ExceptionKind : uint8_t {
    kNoException = 0,
    kMediaException = 1,
    kBlankSheetBefore = 2,
    kBlankSheetAfter = 3,
    kOverlayException = 5,
    kWatermarkException = 6,
};

enum ExceptionUsage : uint8_t {
    kSpecifiedPages = 0,
    kOddPages = 1,
    kEvenPages = 2,
    kNotSpecifiedPages = 3,
};

#pragma pack(push, 1)

// An exception: pages that are printed otherwise than the rest. In a device mode's exception area a record may be
// shorter, or longer, than this; what it lacks is 0.
struct ExceptionRecord {
    uint16_t length;  // of the whole record, in bytes
    uint8_t kind;     // ExceptionKind
    uint8_t usage;    // ExceptionUsage
    uint16_t paper;   // 65535: the pages' own
    uint16_t media;   // from 1
    uint16_t bin;
    uint16_t underlay;  // 1: the overlay lies under the page
    WCHAR overlayName[13];
    uint16_t watermark;  // number in the list of watermarks, from 0
};
static_assert(sizeof(ExceptionRecord) == 40);

#pragma pack(pop)

inline constexpr size_t kExceptionSlots = 3;
inline constexpr size_t kExceptionPages = 8;

struct ExceptionPageList {
    uint8_t count;
    uint16_t pages[kExceptionPages];
};

// The paper of a device mode, in its units.
struct PaperChoice {
    int16_t size;
    int16_t width;
    int16_t length;
};

// Where a working device mode comes from.
enum class DevModeSource : uint8_t {
    kGiven,   // the caller's
    kStored,  // the printer's own
    kBuilt,   // the default that is built for the printer
};

class WorkingDevMode {
  public:
    WorkingDevMode();
    WorkingDevMode(const WorkingDevMode&) = delete;
    WorkingDevMode& operator=(const WorkingDevMode&) = delete;
    ~WorkingDevMode();

    // The printer stays the caller's. The snapshot, which lives as long as this, may be null.
    void Bind(HANDLE hPrinter, const PrinterSnapshot* printer);

    // Chooses the device mode: the caller's `size` bytes at `input` (null: none), where both validations accept it,
    // which may repair it in its place; else the printer's own; else the built default. Fills the lists and the
    // exceptions from it. Does nothing where there was no memory for the device mode.
    DevModeSource Prepare(DEVMODEW* input, size_t size);

    // Null where there was no memory for it.
    VelmoraDevMode* DevMode() const { return devMode_; }
    // Gives the device mode, task memory of 4088 bytes, to the caller.
    VelmoraDevMode* Detach();

    const PrinterSnapshot* printer = nullptr;
    HANDLE hPrinter = nullptr;
    // The paper as it was prepared; the locale's default paper before.
    PaperChoice preparedPaper;
    ExceptionRecord exceptions[kExceptionSlots] = {};  // kNoException: an unused slot
    ExceptionPageList exceptionPages[kExceptionSlots] = {};
    TextList lists[kTextListCount];

  private:
    DevModeSource ChooseDevMode(DEVMODEW* input, size_t size, const WCHAR* printerName, VelmoraDevMode* stored);
    bool Accepts(VelmoraDevMode* devMode, bool needsBoth) const;

    VelmoraDevMode* devMode_;
};

// The exception records and page lists of a device mode, each slot cleared first. Nothing in the area is trusted.
void UnpackExceptions(const PrivateDevMode& devMode, ExceptionRecord (&exceptions)[kExceptionSlots],
                      ExceptionPageList (&pages)[kExceptionSlots]);

// Fills the ten lists, which are empty, for a printer with a model. Of the device mode uiFlagD changes where the model
// describes jobs by a record.
void FillTextLists(const PrinterSnapshot& snapshot, const JobPrinter& printer, VelmoraDevMode* devMode,
                   TextList (&lists)[kTextListCount]);

}  // namespace velmora
