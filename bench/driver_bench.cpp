// What the driver's basic work costs beside the least that it could cost, and how it grows with the model. Prints one
// table and exits with 1 where a figure is above its limit.
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "driver/devdesc/description_file.h"
#include "driver/devdesc/paper_lookup.h"
#include "driver/devmode/default_devmode.h"
#include "platform/host.h"
#include "tools/velmora/driver_package.h"
#include "tools/velmora/spooler_client.h"
#include "tools/xpic/compile.h"

extern char** environ;

namespace {

using namespace velmora;

constexpr double kMostLoadRatio = 3;
constexpr double kMostDefaultRatio = 5;
// Twice the model may cost this much more than twice the time, measured beside the smallest model's fixed part.
constexpr double kMostGrowth = 2.5;
constexpr long kMostPeakKilobytes = 30 * 1024;

constexpr int kFirstPaperId = 1000;  // beyond the ids that PCL models give a meaning of their own

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

std::filesystem::path ProgramFolder() {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

std::filesystem::path WorkbenchFolder() {
    return ProgramFolder().parent_path() / "tools" / "velmora";
}

// A printer of a model with this many papers, opened.
class BenchPrinter {
  public:
    BenchPrinter(const host::Machine& machine, int papers) : name_("Bench " + std::to_string(papers)), papers_(papers) {
        const CompileResult compiled = CompileModelText(SourceOf(papers), "bench.json");
        if (!compiled.Succeeded()) {
            std::fprintf(stderr, "velmora_bench: the generated model of %d papers doesn't compile:\n%s\n", papers,
                         FormatDiagnostic(compiled.diagnostics.front()).c_str());
            std::exit(1);
        }
        const std::string driver = "BENCH" + std::to_string(papers);
        InstallPrinter(machine, FindBuiltFiles(WorkbenchFolder()),
                       {"bench.json", compiled.bytes, driver + ".XPI", driver, driver}, name_);
        printer_ = OpenNamedPrinter(name_);
        FindDescriptionFile(printer_.Get(), path_);
    }

    // The least that loading can cost: the whole file, opened and read at once.
    void ReadWhole() const {
        const OwnedFile file(
            CreateFileW(path_, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        const DWORD size = GetFileSize(file.Get(), nullptr);
        const auto bytes = HeapOwner<char>::AllocateSize(size);
        DWORD arrived = 0;
        ReadFile(file.Get(), bytes.Get(), size, &arrived, nullptr);
        Require(arrived == size && size > 0, "the description file reads short");
    }

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
    static void Require(bool holds, const char* what) {
        if (!holds) {
            std::fprintf(stderr, "velmora_bench: %s\n", what);
            std::exit(1);
        }
    }

    std::string name_;
    int papers_;
    OwnedPrinter printer_;
    WCHAR path_[MAX_PATH];
};

// Keeps each run's time, in nanoseconds.
class Collector : public benchmark::BenchmarkReporter {
  public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.aggregate_name == "median" || run.repetitions == 1) {
                times[run.run_name.function_name] = run.GetAdjustedRealTime();
            }
        }
    }
    std::map<std::string, double> times;
};

// Peak memory of the workbench showing a device mode, in kilobytes; negative where it can't be run.
long PeakOfDevMode(const std::filesystem::path& machine) {
    const std::string program = (WorkbenchFolder() / "velmora").string();
    const std::string source = (machine / "bench.json").string();
    std::FILE* file = std::fopen(source.c_str(), "w");
    const std::string text = SourceOf(kFullSize);
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
    const std::string folder = (machine / "machine").string();
    const std::vector<std::vector<std::string>> commands = {
        {program, "--machine", folder, "install", source, "--name", "Peak"},
        {program, "--machine", folder, "devmode", "Peak"},
    };
    rusage usage = {};
    for (const auto& command : commands) {
        std::vector<char*> arguments;
        for (const std::string& argument : command) {
            arguments.push_back(const_cast<char*>(argument.c_str()));
        }
        arguments.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", 1, 0);
        pid_t child = 0;
        int status = 0;
        const int result = posix_spawn(&child, program.c_str(), &actions, nullptr, arguments.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        if (result != 0 || wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) ||
            WEXITSTATUS(status) != 0) {
            return -1;
        }
    }
    return usage.ru_maxrss;
}

bool PrintRow(const char* what, double value, const char* unit, double limit) {
    const bool holds = value <= limit;
    std::printf("  %-58s %8.2f %-4s at most %6.1f  %s\n", what, value, unit, limit, holds ? "ok" : "ABOVE");
    return holds;
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const host::Machine machine;
    std::vector<std::unique_ptr<BenchPrinter>> printers;
    struct Work {
        const char* name;
        void (BenchPrinter::*run)() const;
    };
    const Work works[] = {{"read", &BenchPrinter::ReadWhole},
                          {"load", &BenchPrinter::LoadAndLookUp},
                          {"default", &BenchPrinter::BuildDefault}};
    for (const int papers : kPaperCounts) {
        printers.push_back(std::make_unique<BenchPrinter>(machine, papers));
        const BenchPrinter* printer = printers.back().get();
        for (const Work& work : works) {
            benchmark::RegisterBenchmark((work.name + std::to_string(papers)).c_str(),
                                         [=](benchmark::State& state) {
                                             for (auto step : state) {
                                                 (printer->*work.run)();
                                             }
                                         })
                ->Repetitions(5)
                ->ReportAggregatesOnly(true);
        }
    }
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);

    std::printf("\n  %-10s %14s %22s %22s\n", "papers", "file read, us", "load and lookup, us", "default devmode, us");
    const auto time = [&](const char* work, int papers) { return collector.times[work + std::to_string(papers)]; };
    for (const int papers : kPaperCounts) {
        std::printf("  %-10d %14.2f %22.2f %22.2f\n", papers, time("read", papers) / 1000, time("load", papers) / 1000,
                    time("default", papers) / 1000);
    }
    std::printf("\n");
    bool holds = PrintRow("open, load and look up, against reading the file (64 KiB)",
                          time("load", kFullSize) / time("read", kFullSize), "x", kMostLoadRatio);
    holds &= PrintRow("default device mode, against reading the file (64 KiB)",
                      time("default", kFullSize) / time("read", kFullSize), "x", kMostDefaultRatio);
    for (const char* work : {"load", "default"}) {
        for (size_t i = 1; i < std::size(kPaperCounts); ++i) {
            const std::string what = std::string(work) + ", " + std::to_string(kPaperCounts[i]) + " papers against " +
                                     std::to_string(kPaperCounts[i - 1]);
            holds &=
                PrintRow(what.c_str(), time(work, kPaperCounts[i]) / time(work, kPaperCounts[i - 1]), "x", kMostGrowth);
        }
    }
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("velmora-bench-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    const long peak = PeakOfDevMode(folder);
    std::filesystem::remove_all(folder);
    if (peak < 0) {
        std::fprintf(stderr, "velmora_bench: the workbench can't be run\n");
        return 1;
    }
    holds &= PrintRow("peak memory of velmora devmode", static_cast<double>(peak) / 1024, "MiB",
                      static_cast<double>(kMostPeakKilobytes) / 1024);
    return holds ? 0 : 1;
}
