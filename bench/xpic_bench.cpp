// What compiling a model costs, and how it grows with the model.
#include <algorithm>
#include <cstdio>
#include <iterator>
#include <nlohmann/json.hpp>
#include <span>

#include "bench/bench.h"
#include "bench/call_tables.h"
#include "bench/generated_model.h"
#include "tools/xpic/compile.h"

namespace velmora {
namespace {

constexpr double kMostProjectMicroseconds = 30000;
constexpr double kMostFullMicroseconds = 300000;
constexpr double kMostPeakMegabytes = 64;

// The whole model up to the largest that is asked for, and papers alone up to what a device block holds.
constexpr ModelExtent kWhole[] = {{125, 25, 62}, {250, 50, 125}, {500, 100, 250}, {1000, 200, 500}};
constexpr ModelExtent kPapers[] = {{250, 0, 0}, {500, 0, 0}, {1000, 0, 0}, {2000, 0, 0}};
using Series = std::span<const ModelExtent>;
constexpr ModelExtent kFull = kWhole[std::size(kWhole) - 1];
constexpr const char* kFullParsed = "JSON of the full model parsed";

void RequireCompiled(const CompileResult& result) {
    if (!result.Succeeded()) {
        Require(false, FormatDiagnostic(result.diagnostics.front()));
    }
}

class XpicBench : public Bench {
  public:
    XpicBench() : models_(ProjectModels()) {
        MeasurePeaks();
        for (const std::filesystem::path& model : models_) {
            RegisterWork(model.stem().string(), [model] { RequireCompiled(CompileModel(model)); });
        }
        for (const auto& series : {Series(kWhole), Series(kPapers), Series(kTenfolds)}) {
            for (const ModelExtent& extent : series) {
                RegisterWork(extent.Name(), [source = GeneratedSource(extent)] {
                    RequireCompiled(CompileModelText(source, "bench.json"));
                });
            }
        }
        RegisterWork(kFullParsed, [source = GeneratedSource(kFull)] {
            Require(nlohmann::json::parse(source).is_object(), "JSON isn't parsed");
        });
    }

    bool Judge(const Times& times) const override {
        std::printf("\n");
        bool holds = true;
        for (const auto& series : {Series(kWhole), Series(kPapers)}) {
            for (size_t i = 1; i < series.size(); ++i) {
                holds &= PrintFigure(series[i].Name() + " against half of it",
                                     times.at(series[i].Name()) / times.at(series[i - 1].Name()), "x", kMostGrowth);
            }
        }
        holds &= PrintFigure("peak memory of xpic, most of the models", peakOfModels_, "MiB", kMostPeakMegabytes);
        holds &= PrintFigure("peak memory of xpic, " + kFull.Name(), peakOfFull_, "MiB", kMostPeakMegabytes);
        return holds;
    }

    void AddRows(CallTables* tables) const override {
        for (const std::filesystem::path& model : models_) {
            tables->Add(CallRow{CallGroup::kCompiler, model.filename().string() + " compiled", model.stem().string(),
                                "", "", MostMicroseconds(kMostProjectMicroseconds)});
        }
        tables->Add(CallRow{CallGroup::kCompiler, kFull.Name(), kFull.Name(), "its JSON parsed", kFullParsed,
                            MostMicroseconds(kMostFullMicroseconds)});
        GrowthRow growth = {"model compiled", {}};
        for (const ModelExtent& extent : kTenfolds) {
            growth.works.push_back(extent.Name());
        }
        tables->Add(std::move(growth));
    }

  private:
    void MeasurePeaks() {
        const TemporaryFolder folder("velmora-xpic-bench");
        const auto peakOf = [&](const std::filesystem::path& source) {
            return PeakOf({(ToolsFolder() / "xpic" / "xpic").string(), "build", source.string(), "-o",
                           (folder.Path() / "BENCH.XPI").string()});
        };
        for (const std::filesystem::path& model : models_) {
            peakOfModels_ = std::max(peakOfModels_, peakOf(model));
        }
        const std::filesystem::path generated = folder.Path() / "bench.json";
        WriteText(generated, GeneratedSource(kFull));
        peakOfFull_ = peakOf(generated);
    }

    double peakOfModels_ = 0;
    double peakOfFull_ = 0;
    std::vector<std::filesystem::path> models_;
};

}  // namespace

std::unique_ptr<Bench> MakeXpicBench() {
    return std::make_unique<XpicBench>();
}

}  // namespace velmora
