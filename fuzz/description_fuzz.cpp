// The reader of description files and what is built on it, on any bytes as a printer's description file: no read
// outside what was read, no list without end, nothing left open. One machine and one printer serve the whole run; an
// input takes the place of the printer's file.
//
// Seeds are compiled models (*.XPI); -max_len should be above their size.
#include <windows.h>

#include <cstdint>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "driver/devdesc/description_file.h"
#include "driver/devdesc/description_format.h"
#include "driver/devdesc/model_tables.h"
#include "driver/devdesc/paper_lookup.h"
#include "driver/devmode/color_preset.h"
#include "driver/devmode/default_devmode.h"
#include "driver/devmode/device_capabilities.h"
#include "driver/install/renderer_data.h"
#include "driver/ptprovider/printer_snapshot.h"
#include "driver/settings/device_info.h"
#include "fuzz/stop.h"
#include "platform/host.h"
#include "tests/driver/package.h"

namespace {

using namespace velmora;  // NOLINT(google-build-using-namespace): the operations under test
using fuzz::Stop;

// The printer whose description file the inputs become.
struct Target {
    host::Machine machine;
    OwnedPrinter printer;
    std::filesystem::path file;

    Target() {
        const driver_test::DriverPackage package = driver_test::PackageOf("none yet");
        driver_test::InstallPrinter(package);
        printer = driver_test::OpenWithAllAccess(driver_test::kPrinterName);
        file = driver_test::DrivePath(driver_test::InstalledPath(package.data.name));
    }
};

Target& TheTarget() {
    static Target target;
    return target;
}

// The reference of a record that is looked up in the file, of whatever kind its field is.
int16_t Reference(unsigned value) {
    return static_cast<int16_t>(value);
}

void ReadByReference(HANDLE file, int16_t reference) {
    WCHAR wide[80];
    char ansi[80];
    char text[kTextCapacity];
    for (const WORD language : {WORD{0}, WORD{LANG_ENGLISH}, WORD{1023}}) {
        ReadLocalizedString(file, language, nullptr, reference, wide, ARRAYSIZE(wide));
    }
    ReadName(file, reference, wide, ARRAYSIZE(wide));
    ReadName(file, reference, ansi, sizeof(ansi));
    ReadText(file, reference, text);
    ReadShortText(file, reference, text);
}

void ReadPools(HANDLE file) {
    for (const int reference : {-1, 0, 1, 2, 3, 10, 100, 1000, 32767}) {
        ReadByReference(file, Reference(static_cast<unsigned>(reference)));
    }
    char block[32 * 8 * 8];
    for (const uint16_t index : {0, 1, 2, 0xFFFF}) {
        ReadImage(file, index);
        ReadPatternBlock(file, static_cast<int16_t>(index), block, sizeof(block));
    }
    static char blob[0x10000];
    ReadBlob(file, blob, sizeof(blob));
    ReadBlob(file, nullptr, 0);
}

// A paper by its table alone: without a printer there are no custom sizes and forms, which have nothing to do with the
// input and take most of a lookup's time.
void LookUpPaper(const DeviceModel& model, int paperId) {
    LookupPaperSize(INVALID_HANDLE_VALUE, &model, paperId);
    GetPrintableMargins(INVALID_HANDLE_VALUE, &model, paperId, kPortraitMargins, 25400);
    GetPrintableMargins(INVALID_HANDLE_VALUE, &model, -paperId, kLandscapeMargins, 600);
}

// Every table to its end, and from each record what it names.
void WalkTables(HANDLE printer, HANDLE file, const DeviceModel& model) {
    for (const PaperRecord& paper : RecordList(model.paperTable)) {
        LookUpPaper(model, paper.paperId);
    }
    for (const FeatureRecord& feature : RecordList(model.featureTable)) {
        CountOptions(model, feature);
    }
    const size_t lists =
        CountRecords(model.binTable) + CountRecords(model.extraKeywordTable) + CountRecords(model.mediaTable) +
        CountRecords(model.resolutionTable) + CountRecords(model.marginTable) + CountRecords(model.constraintTable) +
        CountRecords(model.colorModeTable) + CountRecords(model.textColorFeatures) +
        CountRecords(model.imageColorFeatures) + CountRecords(model.graphicsColorFeatures) +
        CountRecords(model.generalColorFeatures) + CountRecords(model.photoIntentList) +
        CountRecords(model.signatureOptionList) + CountRecords(model.extraListA) + CountRecords(model.extraListB) +
        CountRecords(model.mediaColorList) + CountRecords(model.extraListC) + CountRecords(model.memoryTable);
    if (lists > 18 * 0x10000) {
        Stop("a list that runs out of its block");
    }
    for (const int id : {0, 1, 9, 256, 448, 449, 500, 511, 512, 600, 32767, -9, -448}) {
        LookUpPaper(model, id);
    }
    LookupMemorySize(model, model.memoryKeyBase + model.memoryKeyStep);
    GetPatternDataSize(model);
    GetFontDataSize(file, model);
    GetDeviceInfo(printer, &model);
    for (const uint16_t reference : {model.pageLabelRef, model.linkRef, model.oemNamespaceRef, model.jobTextRef}) {
        ReadByReference(file, Reference(reference));
    }
    PrivateDevMode devMode = {};
    for (uint16_t mode = 0; mode < 8; ++mode) {
        ApplyColorModeSelections(model, mode, &devMode);
    }
}

// What applications and the print system are told, which copies the tables: a list as long as was told before.
void AnswerByTables(HANDLE printer) {
    const WORD lists[][2] = {{DC_PAPERS, sizeof(WORD)},           {DC_PAPERSIZE, sizeof(POINT)},
                             {DC_PAPERNAMES, 64 * sizeof(WCHAR)}, {DC_BINS, sizeof(WORD)},
                             {DC_BINNAMES, 24 * sizeof(WCHAR)},   {DC_ENUMRESOLUTIONS, 2 * sizeof(LONG)},
                             {DC_MEDIATYPES, sizeof(DWORD)},      {DC_MEDIATYPENAMES, 64 * sizeof(WCHAR)}};
    for (const auto& [capability, entrySize] : lists) {
        const DWORD count = GetDeviceCapability(printer, capability, nullptr);
        if (count != static_cast<DWORD>(-1)) {
            std::vector<BYTE> entries(size_t{count} * entrySize);
            GetDeviceCapability(printer, capability, entries.data());
        }
    }
    LoadPrinterSnapshot(printer);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Target& target = TheTarget();
    std::ofstream(target.file, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    const fuzz::OpenCheck open;
    {
        const OwnedFile file = OpenDescriptionFile(target.printer.Get());
        if (!file) {
            Stop("the description file can't be opened");
        }
        ReadPools(file.Get());
        if (const HeapOwner<DeviceModel> model = LoadDeviceModel(file.Get())) {
            WalkTables(target.printer.Get(), file.Get(), *model);
            InitializePrinterData(target.printer.Get(), file.Get(), *model);
        }
    }
    AnswerByTables(target.printer.Get());
    VelmoraDevMode devMode;
    BuildDefaultDevMode(target.printer.Get(), driver_test::kPrinterName, &devMode);
    if (devMode.publicPart.dmSize != kPublicDevModeSize || devMode.privatePart.privateSignature != kPrivateSignature) {
        Stop("the default device mode is damaged");
    }
    return 0;
}
