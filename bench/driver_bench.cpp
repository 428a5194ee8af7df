// What the driver's basic work costs beside the least that it could cost, and how it grows with the model.
#include <algorithm>
#include <cstdio>
#include <iterator>
#include <tuple>
#include <utility>

#include "bench/bench.h"
#include "bench/bench_printer.h"
#include "bench/call_bench.h"
#include "bench/call_tables.h"
#include "bench/conversion_bench.h"
#include "bench/generated_model.h"
#include "bench/install_bench.h"
#include "bench/job_bench.h"
#include "bench/sheet_bench.h"
#include "bench/ticket_bench.h"
#include "bench/validation_bench.h"
#include "driver/devdesc/description_file.h"
#include "driver/devdesc/paper_lookup.h"
#include "driver/devmode/default_devmode.h"
#include "platform/host.h"
#include "tools/velmora/capability_formats.h"
#include "tools/xpic/compile.h"

namespace velmora {
namespace {

constexpr double kMostLoadRatio = 3;
constexpr double kMostDefaultRatio = 5;
constexpr double kMostCapabilityMicroseconds = 150;
constexpr double kMostPeakMegabytes = 30;

constexpr WORD kShownCapabilities[] = {
    DC_SIZE, DC_PAPERS, DC_PAPERNAMES, DC_BINNAMES, DC_ENUMRESOLUTIONS, DC_MEDIATYPENAMES, DC_FILEDEPENDENCIES};
constexpr const char* kRichestRead = "file of the richest model read";

// Papers by which the device block grows to about 64 KiB; each record has 32 bytes.
constexpr int kPaperCounts[] = {250, 500, 1000, 2000};
constexpr int kFullSize = 2000;

std::string SourceOf(int papers) {
    std::string text = R"({"modelName": "Bench", "pdl": "postscript", "color": "color", "papers": ["A4")";
    for (int i = 0; i < papers; ++i) {
        text += ", {\"name\": \"Paper " + std::to_string(i) + "\", \"id\": " + std::to_string(kFirstPaperId + i) +
                ", \"label\": \"P\", \"widthMm\": 100, \"lengthMm\": 200}";
    }
    text += R"(], "resolutions": [{"name": "Draft", "dpi": 300}, {"name": "Fine", "dpi": 600}],
        "margins": [{"papers": ["A4"], "allMm": 4.2}]})";
    return text;
}

// A printer of a model with this many papers, opened.
class BenchPrinter {
  public:
    BenchPrinter(const host::Machine& machine, int papers) : papers_(papers) {
        const CompileResult compiled = CompileModelText(SourceOf(papers), "bench.json");
        Require(compiled.Succeeded(), "the generated model of " + std::to_string(papers) + " papers doesn't compile");
        printer_ = InstallDescription(machine, "BENCH" + std::to_string(papers), compiled.bytes);
        FindDescriptionFile(printer_.Get(), path_);
    }

    void ReadWhole() const { ReadWholeDescription(path_); }

    void LoadAndLookUp() const {
        const OwnedFile file = OpenDescriptionFile(printer_.Get());
        const HeapOwner<DeviceModel> model = LoadDeviceModel(file.Get());
        const PaperSize size = LookupPaperSize(printer_.Get(), model.Get(), kFirstPaperId + papers_ - 1);
        Require(size.width == 1000 && size.length == 2000, "the paper lookup fails");
    }

    void BuildDefault() const {
        VelmoraDevMode devMode;
        BuildDefaultDevMode(printer_.Get(), u"Bench", &devMode);
        Require(devMode.publicPart.dmPrintQuality == 600, "the default device mode fails");
    }

  private:
    int papers_;
    OwnedPrinter printer_;
    WCHAR path_[MAX_PATH];
};

// A printer of one of the project's models, opened, and room for all that it answers.
class CapabilityPrinter {
  public:
    CapabilityPrinter(const host::Machine& machine, const std::filesystem::path& source) {
        const CompileResult compiled = CompileModel(source);
        Require(compiled.Succeeded(), source.string() + " doesn't compile");
        printer_ = InstallDescription(machine, source.stem().string(), compiled.bytes);
        FindDescriptionFile(printer_.Get(), path_);
        size_t most = 0;
        for (const CapabilityFormat& format : kCapabilityFormats) {
            const size_t size = EntrySize(format) * GetDeviceCapability(printer_.Get(), format.index, nullptr);
            most = std::max(most, size);
            size_ += size;
        }
        output_.resize(most);
    }

    // Bytes of all lists.
    size_t Size() const { return size_; }

    void ReadWhole() const { ReadWholeDescription(path_); }
    void Ask(const CapabilityFormat& format) { GetDeviceCapability(printer_.Get(), format.index, output_.data()); }

  private:
    OwnedPrinter printer_;
    WCHAR path_[MAX_PATH];
    size_t size_ = 0;
    std::vector<BYTE> output_;
};

// Keeps each run's time, in nanoseconds.
class DriverBench : public Bench {
  public:
    DriverBench() : peakOfDevMode_(PeakOfDevMode()) {
        struct Work {
            const char* name;
            void (BenchPrinter::*run)() const;
        };
        const Work works[] = {{"read", &BenchPrinter::ReadWhole},
                              {"load", &BenchPrinter::LoadAndLookUp},
                              {"default", &BenchPrinter::BuildDefault}};
        for (const int papers : kPaperCounts) {
            printers_.push_back(std::make_unique<BenchPrinter>(machine_, papers));
            const BenchPrinter* printer = printers_.back().get();
            for (const Work& work : works) {
                RegisterWork(work.name + std::to_string(papers), [=] { (printer->*work.run)(); });
            }
        }
        for (const std::filesystem::path& source : ProjectModels()) {
            auto printer = std::make_unique<CapabilityPrinter>(machine_, source);
            if (!richest_ || printer->Size() > richest_->Size()) {
                richest_ = std::move(printer);
                richestModel_ = source.filename().string();
            }
        }
        RegisterWork(kRichestRead, [this] { richest_->ReadWhole(); });
        for (const CapabilityFormat& format : kCapabilityFormats) {
            constexpr double kSeconds = 0.02;
            RegisterWork(
                format.name, [this, &format] { richest_->Ask(format); }, kSeconds);
        }
    }

    bool Judge(const Times& times) const override {
        const auto time = [&](const char* work, int papers) { return times.at(work + std::to_string(papers)); };
        std::printf("\n");
        bool holds = true;
        for (const char* work : {"load", "default"}) {
            for (size_t i = 1; i < std::size(kPaperCounts); ++i) {
                holds &= PrintFigure(std::string(work) + ", " + std::to_string(kPaperCounts[i]) + " papers against " +
                                         std::to_string(kPaperCounts[i - 1]),
                                     time(work, kPaperCounts[i]) / time(work, kPaperCounts[i - 1]), "x", kMostGrowth);
            }
        }
        std::vector<std::string> capabilities;
        for (const CapabilityFormat& format : kCapabilityFormats) {
            capabilities.emplace_back(format.name);
        }
        const std::string& slowest = times.Slowest(capabilities);
        holds &= PrintFigure("slowest capability of " + richestModel_ + ", " + slowest, times.at(slowest) / 1000, "us",
                             kMostCapabilityMicroseconds);
        holds &= PrintFigure("peak memory of velmora devmode", peakOfDevMode_, "MiB", kMostPeakMegabytes);
        for (const Bench* bench : Parts()) {
            holds &= bench->Judge(times);
        }
        return holds;
    }

    void AddRows(CallTables* tables) const override {
        const std::string size = std::to_string(kFullSize);
        for (const auto& [group, call, work, most] :
             {std::tuple(CallGroup::kModel, "model loaded and a paper looked up, 64 KiB", "load", kMostLoadRatio),
              {CallGroup::kDeviceModes, "default device mode, model of 64 KiB", "default", kMostDefaultRatio}}) {
            tables->Add(CallRow{group, call, work + size, "its file read", "read" + size, MostRatio(most)});
        }
        for (const CapabilityFormat& format : kCapabilityFormats) {
            if (std::ranges::find(kShownCapabilities, format.index) != std::end(kShownCapabilities)) {
                tables->Add(CallRow{CallGroup::kCapabilities, format.name + (" of " + richestModel_), format.name,
                                    "its file read", kRichestRead, MostMicroseconds(kMostCapabilityMicroseconds)});
            }
        }
        for (const Bench* bench : Parts()) {
            bench->AddRows(tables);
        }
    }

  private:
    std::vector<const Bench*> Parts() const {
        return {&validation_, &jobs_, &installation_, &sheets_, &tickets_, &conversions_, &calls_};
    }

    static double PeakOfDevMode() {
        const TemporaryFolder folder("velmora-bench");
        const std::string program = (ToolsFolder() / "velmora" / "velmora").string();
        const std::string source = (folder.Path() / "bench.json").string();
        const std::string machine = (folder.Path() / "machine").string();
        WriteText(source, SourceOf(kFullSize));
        PeakOf({program, "--machine", machine, "install", source, "--name", "Peak"});
        return PeakOf({program, "--machine", machine, "devmode", "Peak"});
    }

    double peakOfDevMode_;
    host::Machine machine_;
    std::vector<std::unique_ptr<BenchPrinter>> printers_;
    std::unique_ptr<CapabilityPrinter> richest_;
    std::string richestModel_;
    ValidationBench validation_{machine_};
    JobBench jobs_{machine_};
    InstallBench installation_{machine_};
    SheetBench sheets_{machine_};
    TicketBench tickets_;
    ConversionBench conversions_{machine_};
    CallBench calls_{machine_};
};

}  // namespace

std::unique_ptr<Bench> MakeDriverBench() {
    return std::make_unique<DriverBench>();
}

}  // namespace velmora
