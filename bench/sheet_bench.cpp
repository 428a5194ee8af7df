#include "bench/sheet_bench.h"

#include <prsht.h>
#include <winspool.h>

#include "bench/bench_printer.h"
#include "bench/call_tables.h"
#include "driver/base/text.h"
#include "driver/devmode/default_devmode.h"
#include "driver/devmode/private_devmode.h"
#include "driver/ui/page_preview.h"
#include "driver/ui/paper_preview.h"
#include "driver/ui/pictures.h"
#include "tools/xpic/compile.h"

namespace velmora {
namespace {

constexpr int kSheetOpenings = 1000;
constexpr size_t kSamplePixels = 256 * 256;

constexpr const char* kSheetOpening = "document sheets opened and closed, C5400";
constexpr const char* kDrawing = "device page drawn to PNG";
constexpr const char* kPaperPass = "paper choices brought into line";
constexpr const char* kAdjustmentTable = "colour adjustment computed";
constexpr const char* kPaperPreview = "paper page's pictures drawn";
constexpr const char* kPagePreview = "watermark's preview drawn";
constexpr const char* kMapping = "a sample of 256 x 256 pixels adjusted";

// The most that each may take.
constexpr struct {
    const char* work;
    double microseconds;
} kLimits[] = {
    {kSheetOpening, 20000},   {kDrawing, 50000},     {kPaperPass, 30},     {kMapping, 2000},
    {kAdjustmentTable, 2000}, {kPaperPreview, 3000}, {kPagePreview, 5000},
};

constexpr const char* kModel = "velmora-c5400.json";
constexpr const char* kName = "SHEET";

void CancelSheet() {
    SendMessageW(GetActiveWindow(), PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
}

WatermarkRecord SlantedWatermark() {
    WatermarkRecord watermark = {};
    watermark.type = kTextWatermark;
    CopyText(watermark.text, std::size(watermark.text), TEXT("CONFIDENTIAL"));
    CopyText(watermark.style.face, std::size(watermark.style.face), TEXT("Arial"));
    watermark.style.size = 72;
    watermark.style.color = RGB(255, 0, 0);
    return watermark;
}

}  // namespace

void OpenDocumentSheet(host::Machine& machine, HANDLE printer, const std::string& name) {
    machine.SetUser(CancelSheet);
    std::u16string wideName(name.begin(), name.end());
    VelmoraDevMode devMode;
    Require(DocumentPropertiesW(nullptr, printer, wideName.data(), &devMode.publicPart, nullptr,
                                DM_OUT_BUFFER | DM_PROMPT) == IDCANCEL,
            "the document sheet doesn't open");
}

// A dialog with the controls that previews are drawn in, and what they are drawn on.
struct SheetBench::Previews {
    explicit Previews(HANDLE printer) {
        BuildDefaultDevMode(printer, TEXT(""), &devMode);
        context = OwnedSheetContext(CreateSheetContext(printer, nullptr, &devMode));
        Require(context && LoadImageModule(*context.Get()), "the pictures aren't there");
        dialog = CreateWindowExW(0, TEXT("Static"), TEXT(""), WS_POPUP, 0, 0, kSide, kSide, nullptr, nullptr, nullptr,
                                 nullptr);
        for (const INT_PTR control : {5002, 5020, 7029}) {
            CreateWindowExW(0, TEXT("Static"), TEXT(""), WS_CHILD, 10, 10, 140, 150, dialog,
                            reinterpret_cast<HMENU>(control), nullptr, nullptr);
        }
        bitmap = OwnedBitmap(CreateBitmap(kSide, kSide, 1, 32, nullptr));
        target = OwnedDeviceContext(CreateCompatibleDC(nullptr));
        SelectObject(target.Get(), bitmap.Get());
    }
    ~Previews() { DestroyWindow(dialog); }
    Previews(const Previews&) = delete;
    Previews& operator=(const Previews&) = delete;

    static constexpr int kSide = 200;

    VelmoraDevMode devMode;
    OwnedSheetContext context;
    HWND dialog;
    OwnedBitmap bitmap;
    OwnedDeviceContext target;  // ends before what it has selected
};

SheetBench::~SheetBench() = default;

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
        OpenDocumentSheet(machine, printer_.Get(), kName);
    }
    leftOpen_ = static_cast<double>(host::StillOpen().size()) - static_cast<double>(openBefore);
    RegisterWork(kSheetOpening, [this] { OpenDocumentSheet(machine_, printer_.Get(), kName); });
    RegisterWork(kDrawing, [this] { DrawDevicePage(); });
    RegisterPageWorks();
    RegisterPreviewWorks();
}

void SheetBench::RegisterPreviewWorks() {
    previews_ = std::make_unique<Previews>(printer_.Get());
    const Previews& drawn = *previews_;
    drawn.context.Get()->paper = choices_;
    RegisterWork(kPaperPreview, [&drawn] { PaintPaperPreview(drawn.dialog, drawn.context.Get(), drawn.target.Get()); });
    // With four pages on a sheet, a step of the angle at each redraw: the font is made anew.
    PreviewRequest request = MakePreviewRequest(*drawn.context.Get(), SlantedWatermark());
    request.pagesPerSheet = 4;
    RegisterWork(kPagePreview, [&drawn, request]() mutable {
        request.watermark.angle = static_cast<uint16_t>((request.watermark.angle + 1) % 3600);
        PaintPagePreview(drawn.dialog, drawn.context.Get(), drawn.target.Get(), request);
    });
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

void SheetBench::DrawDevicePage() {
    bool isDrawn = false;
    machine_.SetUser([&] {
        const LRESULT page = SendMessageW(GetActiveWindow(), PSM_GETCURRENTPAGEHWND, 0, 0);
        isDrawn = host::SavePicture(reinterpret_cast<HWND>(page), folder_.Path() / "page.png");
        CancelSheet();
    });
    Require(PrinterProperties(nullptr, printer_.Get()) && isDrawn, "the device page isn't drawn");
}

bool SheetBench::Judge(const Times&) const {
    return PrintFigure("open things left by " + std::to_string(kSheetOpenings) + " document sheets", leftOpen_, "", 0);
}

void SheetBench::AddRows(CallTables* tables) const {
    for (const auto& limit : kLimits) {
        tables->Add(CallRow{CallGroup::kSheets, limit.work, limit.work, "", "", MostMicroseconds(limit.microseconds)});
    }
}

}  // namespace velmora
