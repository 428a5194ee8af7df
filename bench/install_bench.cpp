#include "bench/install_bench.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iterator>

#include "bench/call_tables.h"
#include "driver/install/printer_events.h"
#include "platform/kernel/drive.h"
#include "platform/spooler/state.h"
#include "tools/velmora/driver_package.h"
#include "tools/xpic/compile.h"

namespace velmora {
namespace {

constexpr int kCounts[] = {250, 500, 1000};
constexpr double kSeconds = 0.1;
constexpr const char* kWritten = ", bytes written";

constexpr uintmax_t kLargeBase = uintmax_t{40} << 20;
constexpr size_t kLargeFont = 32000;
constexpr double kMostMegabytes = 8;

constexpr size_t kFont = 3000;  // bytes of each font record of the series

// A model with this many of the same fonts and of resolutions with the same pattern of 32768 bytes.
std::string SourceOf(int fonts, const std::string& fontFile, int patterns) {
    std::string text = R"({"modelName": "Bench", "pdl": "pcl6", "papers": ["A4"],
        "margins": [{"papers": ["A4"], "allMm": 4.2}], "patterns": {"p": {"shape": "dispersed", "size": 32}},
        "resolutions": [{"name": "Normal", "dpi": 600})";
    for (int i = 0; i < patterns; ++i) {
        text += ", {\"name\": \"R" + std::to_string(i) + "\", \"dpi\": " + std::to_string(700 + i) +
                ", \"pattern\": \"p\"}";
    }
    text += "], \"fonts\": [";
    for (int i = 0; i < fonts; ++i) {
        text += std::string(i > 0 ? "," : "") + "{\"file\": \"" + fontFile + "\"}";
    }
    return text + "]}";
}

// A driver whose data file is a printer data file of its own: everything is appended to its base.
class DataPrinter {
  public:
    DataPrinter(const host::Machine& machine, const std::string& name, const std::string& source, uintmax_t baseSize,
                const std::filesystem::path& folder)
        : name_(name.begin(), name.end()), baseSize_(baseSize) {
        const CompileResult compiled = CompileModelText(source, folder / "bench.json");
        Require(compiled.Succeeded(), "the generated model " + name + " doesn't compile");
        InstallPrinter(machine, FindBuiltFiles(ToolsFolder() / "velmora"),
                       {name + ".json", compiled.bytes, name + ".XPI", name, name}, name);
        host::Driver* const driver = host::FindDriver(name_);
        driver->dependentFiles.push_back(driver->dataFile);
        driver->dataFile.replace(driver->dataFile.rfind(u'.'), driver->dataFile.npos, u".DAT");
        dataFile_ = host::HostPath(driver->dataFile).value();
    }

    void MakeBase() const {
        std::ofstream(dataFile_, std::ios::binary | std::ios::trunc).close();
        std::filesystem::resize_file(dataFile_, baseSize_);
    }
    void Initialize() const { Require(OnInitialize(name_.c_str()), "a printer can't be installed"); }
    void RequireAppended(uintmax_t bytes) const {
        Require(std::filesystem::file_size(dataFile_) == baseSize_ + bytes, "the printer data file lacks something");
    }

  private:
    std::u16string name_;
    uintmax_t baseSize_;
    std::filesystem::path dataFile_;
};

// A figure of this process's memory, in MiB: "VmHWM" its peak, "VmRSS" what it has.
double MemoryOf(const std::string& figure) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(figure + ":")) {
            constexpr double kKilobytesPerMegabyte = 1024;
            return std::stod(line.substr(figure.size() + 1)) / kKilobytesPerMegabyte;
        }
    }
    Require(false, "no " + figure);
    return 0;
}

// The least that as many bytes appended cost. A new file: one that is cut to nothing and written is waited for when it
// is closed.
void WriteBlocks(const std::filesystem::path& file, uintmax_t size) {
    static const std::string block(size_t{64} << 10, 'f');
    std::filesystem::remove(file);
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    for (uintmax_t written = 0; written < size; written += block.size()) {
        stream.write(block.data(), static_cast<std::streamsize>(std::min<uintmax_t>(block.size(), size - written)));
    }
    Require(static_cast<bool>(stream.flush()), "a file can't be written");
}

std::string NameOf(const char* what, int count) {
    return std::string("INSTALL-") + what + std::to_string(count);
}

}  // namespace

InstallBench::InstallBench(const host::Machine& machine) {
    WriteText(folder_.Path() / "font.bin", std::string(kFont, 'f'));
    constexpr size_t kPattern = 32768;
    for (const int count : kCounts) {
        const std::pair<std::string, uintmax_t> series[] = {{SourceOf(count, "font.bin", 0), count * kFont},
                                                            {SourceOf(1, "font.bin", count), count * kPattern + kFont}};
        for (size_t i = 0; i < std::size(series); ++i) {
            const auto& [source, appended] = series[i];
            const std::string name = NameOf(i == 0 ? "fonts" : "patterns", count);
            const auto printer = std::make_shared<DataPrinter>(machine, name, source, 1, folder_.Path());
            RegisterWork(
                name,
                [printer, appended] {
                    printer->MakeBase();
                    printer->Initialize();
                    printer->RequireAppended(appended);
                },
                kSeconds);
            if (count == *std::ranges::max_element(kCounts)) {
                const std::filesystem::path file = folder_.Path() / name;
                RegisterWork(
                    name + kWritten, [file, size = appended] { WriteBlocks(file, size); }, kSeconds);
            }
        }
    }
    WriteText(folder_.Path() / "large.bin", std::string(kLargeFont, 'f'));
    constexpr int kLargeFonts = static_cast<int>(kLargeBase / kLargeFont) + 1;
    const DataPrinter large(machine, "INSTALL-LARGE", SourceOf(kLargeFonts, "large.bin", 0), kLargeBase,
                            folder_.Path());
    large.MakeBase();
    std::ofstream("/proc/self/clear_refs") << "5";  // the peak from here on
    const double before = MemoryOf("VmRSS");
    const auto start = std::chrono::steady_clock::now();
    large.Initialize();
    milliseconds_ = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    megabytes_ = MemoryOf("VmHWM") - before;
    large.RequireAppended(kLargeFonts * kLargeFont);
}

bool InstallBench::Judge(const Times& times) const {
    bool holds = true;
    for (const char* what : {"fonts", "patterns"}) {
        for (size_t i = 1; i < std::size(kCounts); ++i) {
            const double time = times.at(NameOf(what, kCounts[i]));
            holds &= PrintFigure("installation, " + std::to_string(kCounts[i]) + " " + what + " against half of them",
                                 time / times.at(NameOf(what, kCounts[i - 1])), "x", kMostGrowth);
        }
    }
    std::printf("\n  installation with 40 MiB appended to a file of 40 MiB: %.0f ms\n", milliseconds_);
    return PrintFigure("peak memory that it adds", megabytes_, "MiB", kMostMegabytes) && holds;
}

void InstallBench::AddRows(CallTables* tables) const {
    for (const char* what : {"fonts", "patterns"}) {
        const int most = *std::ranges::max_element(kCounts);
        tables->Add(CallRow{CallGroup::kInstallation, "printer with " + std::to_string(most) + " " + what,
                            NameOf(what, most), "its bytes written", NameOf(what, most) + kWritten});
    }
}

}  // namespace velmora
