// What compiling a model costs, and how it grows with the model.
#include <algorithm>
#include <cstdio>
#include <iterator>
#include <span>

#include "bench/bench.h"
#include "tools/xpic/compile.h"

namespace velmora {
namespace {

constexpr double kMostProjectMilliseconds = 30;
constexpr double kMostFullMilliseconds = 300;
constexpr double kMostPeakMegabytes = 64;

constexpr int kFirstPaperId = 1000;  // beyond the ids that PCL models give a meaning of their own
constexpr int kFeatures = 25;
constexpr int kConstraints = 20;

// Records of a generated model.
struct Extent {
    int papers;
    int media;
    int options;

    std::string Name() const {
        return std::to_string(papers) + " papers, " + std::to_string(media) + " media, " + std::to_string(options) +
               " options";
    }
};

// The whole model up to the largest that is asked for, and papers alone up to what a device block holds.
constexpr Extent kWhole[] = {{125, 25, 62}, {250, 50, 125}, {500, 100, 250}, {1000, 200, 500}};
constexpr Extent kPapers[] = {{250, 0, 0}, {500, 0, 0}, {1000, 0, 0}, {2000, 0, 0}};
constexpr Extent kFull = kWhole[std::size(kWhole) - 1];

std::string Label(const char* english, const char* german, const char* japanese, int number) {
    const std::string digits = std::to_string(number);
    return std::string("\"label\": {\"en\": \"") + english + digits + "\", \"de\": \"" + german + digits +
           "\", \"ja\": \"" + japanese + digits + "\"}";
}

template <class Element>
std::string List(int first, int end, Element element) {
    std::string list = "[";
    for (int i = first; i < end; ++i) {
        list += (i > first ? ", " : "") + element(i);
    }
    return list + "]";
}

// Labels differ, and are short: those of the largest models have to lie within the 65535 bytes of the string pool.
std::string SourceOf(const Extent& extent) {
    const auto paper = [](int i) {
        const std::string number = std::to_string(i);
        return "{\"name\": \"Size " + number + "\", \"id\": " + std::to_string(kFirstPaperId + i) + ", " +
               Label("Size ", "Maß ", "寸法 ", i) + ", \"keyword\": \"vb:S" + number +
               "\", \"widthMm\": " + std::to_string(90 + i % 200) + ", \"lengthMm\": " + std::to_string(150 + i % 250) +
               "}";
    };
    const auto medium = [](int i) {
        const std::string number = std::to_string(i);
        return "{\"name\": \"Medium " + number + "\", " + Label("Medium ", "Material ", "用紙 ", i) +
               ", \"keyword\": \"vb:M" + number + "\", \"jobText\": \"@PJL SET MEDIATYPE=M" + number + "\\r\\n\"}";
    };
    const auto option = [](int i) {
        const std::string number = std::to_string(i);
        return "{\"name\": \"Option " + number + "\", " + Label("Option ", "Auswahl ", "設定 ", i) +
               ", \"keyword\": \"vb:O" + number + "\", \"jobValue\": \"V" + number + "\"}";
    };
    const auto feature = [&](int i) {
        const std::string number = std::to_string(i);
        return "{\"name\": \"Feature " + number + "\", \"jobKey\": \"F" + number + "\", \"options\": " +
               List(i * extent.options / kFeatures, (i + 1) * extent.options / kFeatures, option) + "}";
    };
    const auto constraint = [&](int i) {
        return "{\"papers\": [\"Size " + std::to_string(i * extent.papers / kConstraints) + "\"]" +
               (extent.media > 0 ? ", \"media\": [\"Medium " + std::to_string(i * extent.media / kConstraints) + "\"]"
                                 : "") +
               ", \"duplex\": true}";
    };
    return R"({"modelName": "Bench", "pdl": "pcl6", "languages": ["en", "de", "ja"], "resolutions": [{"name": "Draft",
        "dpi": 300}, {"name": "Fine", "dpi": 600}], "margins": [{"allMm": 4.2}], "customSizes": {"minWidthMm": 76,
        "maxWidthMm": 297, "minLengthMm": 127, "maxLengthMm": 1200}, "papers": )" +
           List(0, extent.papers, paper) + ", \"media\": " + List(0, extent.media, medium) +
           ", \"features\": " + List(0, extent.options > 0 ? kFeatures : 0, feature) +
           ", \"constraints\": " + List(0, extent.media > 0 ? kConstraints : 0, constraint) + "}";
}

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
        for (const auto& series : {std::span(kWhole), std::span(kPapers)}) {
            for (const Extent& extent : series) {
                RegisterWork(extent.Name(),
                             [source = SourceOf(extent)] { RequireCompiled(CompileModelText(source, "bench.json")); });
            }
        }
    }

    bool Judge(const Times& times) const override {
        constexpr double kNanosecondsPerMillisecond = 1e6;
        const auto time = [&](const std::string& work) { return times.at(work) / kNanosecondsPerMillisecond; };
        std::filesystem::path richest = models_.front();
        for (const std::filesystem::path& model : models_) {
            richest = time(model.stem().string()) > time(richest.stem().string()) ? model : richest;
        }
        std::printf("\n");
        bool holds = PrintFigure("compile " + richest.filename().string() + ", the slowest of the models",
                                 time(richest.stem().string()), "ms", kMostProjectMilliseconds);
        holds &= PrintFigure("compile " + kFull.Name(), time(kFull.Name()), "ms", kMostFullMilliseconds);
        for (const auto& series : {std::span(kWhole), std::span(kPapers)}) {
            for (size_t i = 1; i < series.size(); ++i) {
                holds &= PrintFigure(series[i].Name() + " against half of it",
                                     time(series[i].Name()) / time(series[i - 1].Name()), "x", kMostGrowth);
            }
        }
        holds &= PrintFigure("peak memory of xpic, most of the models", peakOfModels_, "MiB", kMostPeakMegabytes);
        holds &= PrintFigure("peak memory of xpic, " + kFull.Name(), peakOfFull_, "MiB", kMostPeakMegabytes);
        return holds;
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
        WriteText(generated, SourceOf(kFull));
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
