// The project's benchmarks. Prints their figures and exits with 1 where one is above its limit.
#include "bench/bench.h"

#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "bench/call_tables.h"

extern char** environ;

namespace velmora {
namespace {

constexpr const char* kLeast = "least";  // what else the machine does only makes a work slower

class Collector : public benchmark::BenchmarkReporter {
  public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.aggregate_name == kLeast || run.repetitions == 1) {
                times.Set(run.run_name.function_name, run.GetAdjustedRealTime());
            }
        }
    }
    Times times;
};

size_t registeredWorks = 0;

}  // namespace

const std::string& Times::Slowest(const std::vector<std::string>& works) const {
    return *std::ranges::max_element(works, {}, [this](const std::string& work) {
        const double time = at(work);
        return std::isnan(time) ? 0 : time;
    });
}

void RegisterWork(const std::string& name, std::function<void()> work, double seconds) {
    ++registeredWorks;
    benchmark::RegisterBenchmark(name.c_str(),
                                 [work = std::move(work)](benchmark::State& state) {
                                     for (auto step : state) {
                                         work();
                                     }
                                 })
        ->MinTime(seconds)
        ->Repetitions(5)
        ->ComputeStatistics(kLeast, [](const std::vector<double>& times) { return *std::ranges::min_element(times); })
        ->ReportAggregatesOnly(true);
}

void Require(bool holds, std::string_view what) {
    if (!holds) {
        std::fprintf(stderr, "velmora_bench: %.*s\n", static_cast<int>(what.size()), what.data());
        std::exit(1);
    }
}

bool PrintFigure(const std::string& what, double value, const char* unit, double limit) {
    if (std::isnan(value)) {
        return true;
    }
    const bool holds = value <= limit;
    std::printf("  %-58s %8.2f %-4s at most %6.1f  %s\n", what.c_str(), value, unit, limit, holds ? "ok" : "ABOVE");
    return holds;
}

std::vector<std::filesystem::path> ProjectModels() {
    std::vector<std::filesystem::path> models;
    for (const auto& entry : std::filesystem::directory_iterator(VELMORA_MODELS_SOURCE_DIR)) {
        const std::string name = entry.path().filename().string();
        if (name.ends_with(".json") && !name.ends_with("schema.json")) {
            models.push_back(entry.path());
        }
    }
    Require(!models.empty(), "there are no models");
    return models;
}

std::filesystem::path ToolsFolder() {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path() / "tools";
}

TemporaryFolder::TemporaryFolder(const std::string& name)
    : path_(std::filesystem::temp_directory_path() / (name + "-" + std::to_string(getpid()))) {
    std::filesystem::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void WriteText(const std::filesystem::path& file, const std::string& text) {
    std::ofstream stream(file, std::ios::binary);
    stream << text;
    Require(static_cast<bool>(stream.flush()), "can't write " + file.string());
}

double PeakOf(const std::vector<std::string>& command) {
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
    rusage usage = {};
    const int result = posix_spawn(&child, command[0].c_str(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    Require(result == 0 && wait4(child, &status, 0, &usage) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0,
            command[0] + " can't be run");
    constexpr double kKilobytesPerMegabyte = 1024;
    return static_cast<double>(usage.ru_maxrss) / kKilobytesPerMegabyte;
}

}  // namespace velmora

int main(int argc, char** argv) {
    using namespace velmora;  // NOLINT(google-build-using-namespace): the program's own
    benchmark::Initialize(&argc, argv);
    const std::unique_ptr<Bench> benches[] = {MakeXpicBench(), MakeDriverBench()};
    Collector collector;
    collector.times.isWhole = benchmark::RunSpecifiedBenchmarks(&collector) == registeredWorks;
    if (!collector.times.isWhole) {
        for (const auto& [work, nanoseconds] : collector.times.All()) {
            std::printf("  %-58s %12.1f us\n", work.c_str(), nanoseconds / 1000);
        }
    }
    bool holds = true;
    for (const std::unique_ptr<Bench>& bench : benches) {
        holds &= bench->Judge(collector.times);
    }
    CallTables tables;
    for (const std::unique_ptr<Bench>& bench : benches) {
        bench->AddRows(&tables);
    }
    holds &= tables.Print(collector.times);
    return holds ? 0 : 1;
}
