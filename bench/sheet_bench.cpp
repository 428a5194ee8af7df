#include "bench/sheet_bench.h"

#include <prsht.h>
#include <winspool.h>

#include "bench/bench_printer.h"
#include "driver/devmode/private_devmode.h"
#include "tools/xpic/compile.h"

namespace velmora {
namespace {

constexpr double kMostOpeningMilliseconds = 20;
constexpr double kMostDrawingMilliseconds = 50;
constexpr int kOpenings = 1000;

constexpr const char* kOpening = "document sheet opened and closed";
constexpr const char* kDrawing = "device page drawn to PNG";

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
    for (int i = 0; i < kOpenings; ++i) {
        OpenDocumentSheet();
    }
    leftOpen_ = static_cast<double>(host::StillOpen().size()) - static_cast<double>(openBefore);
    RegisterWork(kOpening, [this] { OpenDocumentSheet(); });
    RegisterWork(kDrawing, [this] { DrawDevicePage(); });
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
    constexpr double kNanosecondsPerMillisecond = 1e6;
    bool holds = PrintFigure(kOpening, times.at(kOpening) / kNanosecondsPerMillisecond, "ms", kMostOpeningMilliseconds);
    holds &= PrintFigure(kDrawing, times.at(kDrawing) / kNanosecondsPerMillisecond, "ms", kMostDrawingMilliseconds);
    return PrintFigure("open things left by " + std::to_string(kOpenings) + " document sheets", leftOpen_, "", 0) &&
           holds;
}

}  // namespace velmora
