#include "bench/sheet_bench.h"

#include <prsht.h>
#include <winspool.h>

#include "bench/bench_printer.h"
#include "driver/devmode/default_devmode.h"
#include "driver/devmode/private_devmode.h"
#include "tools/xpic/compile.h"

namespace velmora {
namespace {

constexpr int kSheetOpenings = 1000;
constexpr size_t kSamplePixels = 256 * 256;

constexpr const char* kSheetOpening = "document sheet opened and closed";
constexpr const char* kDrawing = "device page drawn to PNG";
constexpr const char* kPaperPass = "paper choices brought into line";
constexpr const char* kAdjustmentTable = "colour adjustment computed";
constexpr const char* kMapping = "a sample of 256 x 256 pixels adjusted";

// The most that each may take.
constexpr struct {
    const char* work;
    const char* unit;
    double nanoseconds;  // of the unit
    double most;
} kLimits[] = {
    {kSheetOpening, "ms", 1e6, 20}, {kDrawing, "ms", 1e6, 50},        {kPaperPass, "us", 1e3, 30},
    {kMapping, "ms", 1e6, 2},       {kAdjustmentTable, "ms", 1e6, 2},
};

constexpr const char* kModel = "velmora-c5400.json";
constexpr const char* kName = "SHEET";

void CancelSheet() {
    SendMessageW(GetActiveWindow(), PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
}

}  // namespace

SheetBench::SheetBench(host::Machine& machine) : machine_(machine) {
    for (const std::filesystem::path& source : ProjectModels()) {
        if (source.filename() == kModel) {
            const CompileResult compiled = CompileModel(source);
            Require(compiled.Succeeded(), source.string() + " doesn't compile");
            printer_ = InstallDescription(machine, kName, compiled.bytes);
        }
    }
    Require(static_cast<bool>(printer_), "the model of the sheets isn't there");
    const size_t openBefore = host::StillOpen().size();
    for (int i = 0; i < kSheetOpenings; ++i) {
        OpenDocumentSheet();
    }
    leftOpen_ = static_cast<double>(host::StillOpen().size()) - static_cast<double>(openBefore);
    RegisterWork(kSheetOpening, [this] { OpenDocumentSheet(); });
    RegisterWork(kDrawing, [this] { DrawDevicePage(); });
    RegisterPageWorks();
}

void SheetBench::RegisterPageWorks() {
    VelmoraDevMode devMode;
    BuildDefaultDevMode(printer_.Get(), TEXT(""), &devMode);
    InitPaperChoices(&choices_, &devMode, {7, 1, 1, 0}, false);
    RegisterWork(kPaperPass, [this] { UpdatePaperDependencies(&choices_, kEveryChange); });
    const ColorAdjustment values = {3, 4, -3, 5, 2, -6, 7};
    RegisterWork(kAdjustmentTable, [this, values] { BuildAdjustmentTable(values, &table_); });
    // Neighbouring pixels far apart in the table.
    for (uint32_t i = 0; i < kSamplePixels; ++i) {
        sample_.push_back(i * 2654435761u & 0xFFFFFF);
    }
    BuildAdjustmentTable(values, &table_);
    RegisterWork(kMapping, [this] { MapPixels(table_, sample_.data(), sample_.size()); });
}

void SheetBench::OpenDocumentSheet() {
    machine_.SetUser(CancelSheet);
    std::u16string name(kName, kName + std::char_traits<char>::length(kName));
    VelmoraDevMode devMode;
    Require(DocumentPropertiesW(nullptr, printer_.Get(), name.data(), &devMode.publicPart, nullptr,
                                DM_OUT_BUFFER | DM_PROMPT) == IDCANCEL,
            "the document sheet doesn't open");
}

void SheetBench::DrawDevicePage() {
    bool isDrawn = false;
    machine_.SetUser([&] {
        const LRESULT page = SendMessageW(GetActiveWindow(), PSM_GETCURRENTPAGEHWND, 0, 0);
        isDrawn = host::SavePicture(reinterpret_cast<HWND>(page), folder_.Path() / "page.png");
        CancelSheet();
    });
    Require(PrinterProperties(nullptr, printer_.Get()) && isDrawn, "the device page isn't drawn");
}

bool SheetBench::Judge(const Times& times) const {
    bool holds =
        PrintFigure("open things left by " + std::to_string(kSheetOpenings) + " document sheets", leftOpen_, "", 0);
    for (const auto& limit : kLimits) {
        holds &= PrintFigure(limit.work, times.at(limit.work) / limit.nanoseconds, limit.unit, limit.most);
    }
    return holds;
}

}  // namespace velmora
